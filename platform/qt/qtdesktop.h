// SPDX-License-Identifier: MIT
// For platform/qt/: the desktop of the seam on Qt Widgets.
#ifndef KORVEL_PLATFORM_QT_QTDESKTOP_H
#define KORVEL_PLATFORM_QT_QTDESKTOP_H

#include "platform/desktop.h"

namespace korvel::platform::qt {

class QtDesktop final : public Desktop {
 public:
  bool hasScreen(std::string &problem) override;
  WindowRef frontWindow() override;
  std::optional<Rect> windowBounds(WindowRef window) override;
  Rect screenBounds() override;
  std::unique_ptr<Dialog> newDialog(const Rect &bounds, WindowRef parent,
                                    std::string_view title) override;
  std::unique_ptr<Dialog> newDialogFromTemplate(const std::string &path, WindowRef parent,
                                                std::string &problem) override;
  WindowRef hostWindow(void *widget) override;
  std::unique_ptr<Port> newImage(int width, int height) override;
  std::unique_ptr<Port> painterPort(void *painter) override;
  Port *windowPort(WindowRef window) override;
  std::unique_ptr<Picture> loadPicture(const std::string &path) override;
};

}  // namespace korvel::platform::qt

#endif
