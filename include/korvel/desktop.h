/* What a Linux host application needs beyond the library's own interface: where resources stand,
   and windows of its toolkit given to the library.

   Windows are those of Qt 6 Widgets, which is loaded at the first dialog. An application that uses
   Qt itself makes its QApplication before that; for any other one the library makes it. */
#ifndef KORVEL_DESKTOP_H
#define KORVEL_DESKTOP_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Folder under which volumes stand, a NUL-terminated POSIX path with or without a final '/',
   initially "/Volumes". A volume is a folder or a link in it:
   - with root rights: mkdir /Volumes, then  ln -s /srv/cabinet /Volumes/Data  (or a mount point);
   - without: the application sets szVolumes to a folder of the user, say "/home/u/volumes", and
     the user makes the links there;  ln -s ~/cabinet ~/volumes/Data  makes "Data:" a volume.
   Written by the application at any time; the library reads it at each use and never writes it. */
KORVEL_API extern char szVolumes[256];

/* Folder of the application's resources, a NUL-terminated POSIX path, initially "": then it is the
   folder "resources" beside the executable. In it stand icons/<number>.svg or .png and dialogs/<name>.ui
   (the name in UTF-8). A resource that is not there is taken from the default set installed with
   the library. Written by the application at any time; the library reads it at each use and never
   writes it. */
KORVEL_API extern char szResources[256];

/* Gives the library a window of the host application, for example as the parent of a dialog.
   qwidget: a QWidget * of a Qt 6 application, or null; any widget stands for its window.
   Returns the window, valid as long as the widget; the widget stays the caller's. Returns null for
   null, and where no desktop is to be had. */
KORVEL_API WindowRef KorvelWidgetWindow(void *qwidget);

#ifdef __cplusplus
}
#endif

#endif
