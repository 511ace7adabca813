/* SPDX-License-Identifier: MIT */
/* Variables with names of the library's: the first one clashes, the second is this file's own. */
int vi;
static int LDB;

int *address(int which);
int *address(int which) { return which ? &vi : &LDB; }
