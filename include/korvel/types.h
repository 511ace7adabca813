/* SPDX-License-Identifier: MIT */
/* Types that several public headers share, and the export macro. */
#ifndef KORVEL_TYPES_H
#define KORVEL_TYPES_H

/* Marks what the library exports. */
#define KORVEL_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* A colour; each component from 0 (none) to 65535 (full). */
typedef struct RGBColor {
  unsigned short red;
  unsigned short green;
  unsigned short blue;
} RGBColor;

/* A window on the screen, the library's or the application's (see desktop.h); null for none. */
typedef struct KorvelWindow *WindowRef;

/* A port to draw on: an image, a window's surface or a painter of the host (see desktop.h); null
   for none. */
typedef struct KorvelPort *CGrafPtr;

/* A data-entry dialog while it runs; owned by the library. */
typedef struct KorvelDialog *DialogRef;

/* A loaded library of the system (see shell.h): a dynamic linker handle, good for dlsym; null for
   none. */
typedef struct KorvelBundle *CFBundleRef;

#ifdef __cplusplus
}
#endif

#endif
