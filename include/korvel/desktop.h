/* SPDX-License-Identifier: MIT */
/* What a Linux host application needs beyond the library's own interface: where resources are
   found, windows and painters of its toolkit given to the library, and ports to draw on.

   Windows are windows of Qt 6 Widgets, which is loaded at the first dialog or drawing. An
   application that uses Qt itself makes its QApplication before that; for any other one the library
   makes it. */
#ifndef KORVEL_DESKTOP_H
#define KORVEL_DESKTOP_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Folder of the volumes, a NUL-terminated POSIX path with or without a final '/',
   initially "/Volumes". A volume is a folder or a link in it:
   - with root rights: mkdir /Volumes, then  ln -s /srv/cabinet /Volumes/Data  (or a mount point);
   - without: the application sets szVolumes to a folder of the user, say "/home/u/volumes", and
     the user makes the links there;  ln -s ~/cabinet ~/volumes/Data  makes "Data:" a volume.
   Written by the application at any time; the library reads it at each use and never writes it. */
KORVEL_API extern char szVolumes[256];

/* Folder of the application's resources, a NUL-terminated POSIX path, initially "": then it is the
   folder "resources" beside the executable. In it stand icons/<number>.svg or .png,
   pictures/<name>.svg or .png, and dialogs/<name>.ui (names in UTF-8). A resource that is not there
   is taken from the default set installed with the library. Written by the application at any time;
   the library reads it at each use and never writes it. */
KORVEL_API extern char szResources[256];

/* Gives the library a window of the host application, for example as the parent of a dialog.
   qwidget: a QWidget * of a Qt 6 application, or null; any widget of the window will do.
   Returns the window, valid as long as the widget; the widget stays the caller's. Returns null for
   null, and where no desktop can be had. */
KORVEL_API WindowRef KorvelWidgetWindow(void *qwidget);

/* --- Ports -----------------------------------------------------------------------------------

   A port is a surface to draw on with the functions of draw.h, with a font, two colours and a text
   mode of its own: at first the system's font at 12 points, black on white, transparent. Ports of
   images and painters belong to the application, until KorvelPortRelease; the port of a window
   belongs to the window and disappears with it. A port that is gone counts as null, until another
   one takes its place.

   Needs no screen. Where no desktop can be had there are no ports; standard error then says why,
   once. */

/* Makes a white image off screen. width, height: 1 to 32767 pixels, and at most 2^28 pixels in all.
   Returns its port; null where it cannot be had. */
KORVEL_API CGrafPtr KorvelImagePort(int width, int height);

/* Lends the library a painter. qpainter: an active QPainter * of a Qt 6 application, which stays
   the caller's and must stay active until KorvelPortRelease; its own settings are left as they are.
   Returns its port; null for null. */
KORVEL_API CGrafPtr KorvelPainterPort(void *qpainter);

/* The port of a window: what is drawn there stays until something else is drawn over it, whatever
   covers the window meanwhile. What is drawn while the window paints itself shows with that paint.
   Returns the same port at each call; null for null and for a window that is gone. */
KORVEL_API CGrafPtr GetWindowPort(WindowRef window);

/* Gives back a port of KorvelImagePort or KorvelPainterPort. When it is the current one, none is
   current any more. Null, a port given back before and a window's port: does nothing. */
KORVEL_API void KorvelPortRelease(CGrafPtr port);

/* Writes what was drawn as a PNG file. pngPath: a POSIX path.
   Returns 1; 0 when the file cannot be written, for a painter's port and for null. */
KORVEL_API int KorvelPortSave(CGrafPtr port, const char *pngPath);

/* Reads the colour of a pixel into colour.
   Returns 1; 0, with colour as it was, outside the port, where nothing was drawn on a window, for
   a painter's port and for null. */
KORVEL_API int KorvelPortPixel(CGrafPtr port, int x, int y, RGBColor *colour);

/* Makes a port the current one, null none: the one whose font ch_font_metrics reads, and that
   drawing code of the application shares by GetPort. All other functions of draw.h draw in the port
   they are given and leave the current one alone. */
KORVEL_API void SetPort(CGrafPtr port);

/* Sets port to the current port; to null when there is none or it is gone. */
KORVEL_API void GetPort(CGrafPtr *port);

#ifdef __cplusplus
}
#endif

#endif
