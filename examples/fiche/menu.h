/* SPDX-License-Identifier: MIT */
/* The menu of the practice: the window from which everything is started. */
#ifndef FICHE_MENU_H
#define FICHE_MENU_H

/* Shows the menu and does what is chosen there, until the user leaves. */
void runMenu(void);

#endif
