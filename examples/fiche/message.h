/* SPDX-License-Identifier: MIT */
/* Message boxes in front of the window that is active. Caption and format are UTF-8; what the
   format takes in is CP1252. */
#ifndef FICHE_MESSAGE_H
#define FICHE_MESSAGE_H

/* Values follow their format, as for printf. */
#define FICHE_SENTENCE __attribute__((format(printf, 2, 3)))

/* Something that is good to know, to be corrected, or that failed. */
void tell(const char *caption, const char *format, ...) FICHE_SENTENCE;
void warn(const char *caption, const char *format, ...) FICHE_SENTENCE;
void tellFailure(const char *caption, const char *format, ...) FICHE_SENTENCE;

/* Asks a question. Returns 1 for "Oui", which Return answers, else 0. */
int agrees(const char *caption, const char *format, ...) FICHE_SENTENCE;

/* Asks before something is lost: Return answers "Non". Returns 1 for "Oui", else 0. */
int agreesToLose(const char *caption, const char *format, ...) FICHE_SENTENCE;

#endif
