/* SPDX-License-Identifier: MIT */
/* For tests/: a person in front of a plain C program, and the toolkit that gives her keys. */
#ifndef KORVEL_TESTS_SUPPORT_PERSON_AT_KEYS_H
#define KORVEL_TESTS_SUPPORT_PERSON_AT_KEYS_H

#ifdef __cplusplus
extern "C" {
#endif

/* Starts the toolkit, on its platform without a screen. */
void startToolkit(int argc, char **argv);

/* Has the person press keys, one after the other, in whatever window is modal at the time: '\t' is
   Tab, '\r' Return, '\v' the arrow down, '\033' Escape, every other character itself. She ends the
   program when keys are missing. */
void pressKeys(const char *keys);

/* Returns how many keys are left. */
int keysLeft(void);

#ifdef __cplusplus
}
#endif

#endif
