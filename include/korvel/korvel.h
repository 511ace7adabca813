/* SPDX-License-Identifier: MIT */
/* Everything that Korvel declares. */
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
