/* SPDX-License-Identifier: MIT */
/* Which Korvel this is: the version of these headers, which an application is compiled with, and
   that of the library, which it runs with. */
#ifndef KORVEL_VERSION_H
#define KORVEL_VERSION_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The version of these headers, as numbers that the preprocessor compares and as a text. An
   application runs with each library of the same major version that is not older than its
   headers. */
#define KORVEL_VERSION_MAJOR 1 /* differs: not to be run with one another */
#define KORVEL_VERSION_MINOR 0 /* more: there is more to call */
#define KORVEL_VERSION_PATCH 0 /* more: mended only */
#define KORVEL_VERSION "1.0.0" /* the three, with points between them */

/* The version of the library that runs, in the form of KORVEL_VERSION. Returns a text of the
   library, which never changes. */
KORVEL_API const char *KorvelVersion(void);

#ifdef __cplusplus
}
#endif

#endif
