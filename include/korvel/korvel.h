/* SPDX-License-Identifier: MIT */
/* Everything that Korvel declares.

   While the environment variable KORVEL_DEBUG is 1, each call that cannot be meant as it is (an
   index out of range, a table that is not there, a text that is cut) is told in one line on
   standard error, which names the function, its arguments and what would be right. */
#ifndef KORVEL_KORVEL_H
#define KORVEL_KORVEL_H

#include <korvel/codecs.h>
#include <korvel/dates.h>
#include <korvel/desktop.h>
#include <korvel/dialogs.h>
#include <korvel/draw.h>
#include <korvel/files.h>
#include <korvel/messages.h>
#include <korvel/profile.h>
#include <korvel/shell.h>
#include <korvel/strings.h>
#include <korvel/tables.h>
#include <korvel/types.h>
#include <korvel/version.h>

#endif
