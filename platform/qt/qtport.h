// SPDX-License-Identifier: MIT
// For platform/qt/: what all ports have in common. Each kind of port paints pixels, glyphs, strokes
// and pictures on its own surface.
#ifndef KORVEL_PLATFORM_QT_QTPORT_H
#define KORVEL_PLATFORM_QT_QTPORT_H

#include <string>
#include <string_view>

#include <QRgb>

#include "platform/drawing.h"
#include "platform/qt/picture.h"
#include "platform/qt/pixelgrid.h"
#include "platform/qt/screenfont.h"
#include "platform/qt/strokes.h"

namespace korvel::platform::qt {

class QtPort : public Port {
 public:
  QtPort();
  QtPort(const QtPort &) = delete;
  QtPort &operator=(const QtPort &) = delete;

  bool setFont(std::string_view family, unsigned face) final;
  void setFontSize(int points) final;
  FontMetrics fontMetrics() const final { return font_->metrics(); }
  int textWidth(std::string_view text) const final { return font_->width(text); }
  int drawText(int x, int y, std::string_view text) final;
  void setForeground(const RGBColor &colour) final;
  void setBackground(const RGBColor &colour) final;
  void setOpaqueText(bool isOpaque) final { isOpaque_ = isOpaque; }
  void drawLine(int x1, int y1, int x2, int y2, int width) final;
  void fillRect(const Rect &rect) final;
  void frameRect(const Rect &rect) final;
  bool drawPicture(const Picture &picture, int x, int y) final;

 protected:
  // The pixels of the surface as it is now; those to paint are never empty.
  virtual PixelGrid grid() = 0;
  virtual void paintPixels(const QRect &pixels, QRgb colour) = 0;
  // In coordinates of the port, which may lie anywhere. Glyphs and strokes are drawn in the
  // foreground colour; the glyphs stay within `bounds`.
  virtual void paintGlyphs(int x, int y, std::string_view text, const Rect &bounds) = 0;
  virtual void paintSlantedStroke(const Stroke &stroke) = 0;
  virtual void paintPicture(const QtPicture &picture, int x, int y) = 0;

  const ScreenFont &font() const { return *font_; }
  QRgb foreground() const { return foreground_; }

 private:
  void paintIfAny(const QRect &pixels, QRgb colour);
  void select(const QString *family, unsigned face, int size);
  void paintText(int x, int y, std::string_view text, int width);

  const QString *family_ = nullptr;  // the system's
  unsigned face_ = 0;
  int size_;
  const ScreenFont *font_;
  QRgb foreground_;
  QRgb background_;
  bool isOpaque_ = false;
};

// Colours of the seam have 16 bits a component, of which a surface keeps the upper eight.
QRgb toQt(const RGBColor &colour);
RGBColor fromQt(QRgb colour);

}  // namespace korvel::platform::qt

#endif
