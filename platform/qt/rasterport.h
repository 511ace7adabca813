// SPDX-License-Identifier: MIT
// For platform/qt/: ports that keep their pixels in memory.
#ifndef KORVEL_PLATFORM_QT_RASTERPORT_H
#define KORVEL_PLATFORM_QT_RASTERPORT_H

#include <memory>

#include "platform/qt/qtport.h"
#include "platform/qt/raster.h"

namespace korvel::platform::qt {

class RasterPort : public QtPort {
 public:
  bool save(const std::string &path) const override;
  std::optional<RGBColor> pixel(int x, int y) const override;

 protected:
  PixelGrid grid() final;
  void paintPixels(const QRect &pixels, QRgb colour) final;
  void paintGlyphs(int x, int y, std::string_view text, const Rect &bounds) final;
  void paintSlantedStroke(const Stroke &stroke) final;
  void paintPicture(const QtPicture &picture, int x, int y) final;

  // The raster, made ready for a drawing; null when there is none.
  virtual Raster *prepared() = 0;
  // The raster as drawn on so far; null when nothing was drawn.
  virtual const Raster *drawn() const = 0;
  // Pixels of the raster to one of the port's, as of the last prepared().
  virtual qreal scale() const { return 1; }
  // Called after each drawing with the part of the raster that it may have changed.
  virtual void touched(const QRect &) {}

 private:
  void blendGlyphs(Raster &raster, InkTable &inks, int x, int y, std::string_view text);
};

// A white surface off screen.
class ImagePort final : public RasterPort {
 public:
  // Null when a side is too long or too short, or without memory.
  static std::unique_ptr<ImagePort> make(int width, int height);

 protected:
  Raster *prepared() override { return raster_.get(); }
  const Raster *drawn() const override { return raster_.get(); }

 private:
  explicit ImagePort(std::unique_ptr<Raster> raster) : raster_(std::move(raster)) {}

  const std::unique_ptr<Raster> raster_;
};

}  // namespace korvel::platform::qt

#endif
