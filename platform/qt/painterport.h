// SPDX-License-Identifier: MIT
// For platform/qt/: a port that draws by a painter of the host application.
#ifndef KORVEL_PLATFORM_QT_PAINTERPORT_H
#define KORVEL_PLATFORM_QT_PAINTERPORT_H

#include <QPainter>

#include "platform/qt/qtport.h"

namespace korvel::platform::qt {

class PainterPort final : public QtPort {
 public:
  explicit PainterPort(QPainter *painter) : painter_(painter) {}

  bool save(const std::string &) const override { return false; }
  std::optional<RGBColor> pixel(int, int) const override { return std::nullopt; }

 protected:
  PixelGrid grid() override;
  void paintPixels(const QRect &pixels, QRgb colour) override;
  void paintGlyphs(int x, int y, std::string_view text, const Rect &bounds) override;
  void paintSlantedStroke(const Stroke &stroke) override;
  void paintPicture(const QtPicture &picture, int x, int y) override;

 private:
  QPainter *const painter_;
};

}  // namespace korvel::platform::qt

#endif
