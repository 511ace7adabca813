/* SPDX-License-Identifier: MIT */
/* Sentences put together as by printf, each kind with the flags of its box. */
#include "message.h"

#include <stdarg.h>
#include <stdio.h>

#include <korvel/messages.h>

#include "french.h"

static int show(const char *caption, unsigned flags, const char *format, va_list arguments) {
  char text[1024];
  vsnprintf(text, sizeof text, french(format), arguments);
  return MessageBox(NULL, text, french(caption), flags);
}

void tell(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  show(caption, KorvelNoteIcon, format, arguments);
  va_end(arguments);
}

void warn(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  show(caption, KorvelCautionIcon, format, arguments);
  va_end(arguments);
}

void tellFailure(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  show(caption, KorvelStopIcon, format, arguments);
  va_end(arguments);
}

int agrees(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  int answer = show(caption, KorvelQuestion, format, arguments);
  va_end(arguments);
  return answer == KorvelOuiAnswer;
}

int agreesToLose(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  int answer =
      show(caption, KorvelQuestion | KorvelCautionIcon | KorvelDefaultNon, format, arguments);
  va_end(arguments);
  return answer == KorvelOuiAnswer;
}
