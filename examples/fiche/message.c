#include "message.h"

#include <stdarg.h>
#include <stdio.h>

#include <korvel/messages.h>

#include "french.h"

/* The bits of a box (messages.h). */
enum { kNoteIcon = 0x01, kCautionIcon = 0x02, kStopIcon = 0x04, kQuestion = 0x10, kNoFirst = 0x40 };

/* The answer of MessageBox for "Oui". */
enum { kYes = 2 };

static int show(const char *caption, unsigned flags, const char *format, va_list arguments) {
  char text[1024];
  vsnprintf(text, sizeof text, french(format), arguments);
  return MessageBox(NULL, text, french(caption), flags);
}

void tell(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  show(caption, kNoteIcon, format, arguments);
  va_end(arguments);
}

void warn(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  show(caption, kCautionIcon, format, arguments);
  va_end(arguments);
}

void tellFailure(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  show(caption, kStopIcon, format, arguments);
  va_end(arguments);
}

int agrees(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  int answer = show(caption, kQuestion, format, arguments);
  va_end(arguments);
  return answer == kYes;
}

int agreesToLose(const char *caption, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  int answer = show(caption, kQuestion | kCautionIcon | kNoFirst, format, arguments);
  va_end(arguments);
  return answer == kYes;
}
