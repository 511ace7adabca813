// SPDX-License-Identifier: MIT
// Draws into an image without a screen, and succeeds if no dialog can be shown after that, even
// when a screen comes up later. Standard error has the line of the first dialog.
#include <stdio.h>
#include <stdlib.h>

#include "platform/desktop.h"
#include "platform/loader.h"

namespace {

using namespace korvel::platform;

bool isInkedBy(Port &image) {
  image.setFont("Arial", 0);
  const int width = image.drawText(5, 20, "Bonjour");
  image.fillRect({90, 30, 95, 35});
  const auto inside = image.pixel(92, 32);
  const auto outside = image.pixel(80, 32);
  return width > 20 && width == image.textWidth("Bonjour") && inside && inside->red == 0 &&
         outside && outside->red == 0xFFFF;
}

}  // namespace

int main() {
  Desktop *drawing = desktop();
  if (drawing == nullptr) return 2;
  const auto image = drawing->newImage(100, 40);
  if (image == nullptr || !isInkedBy(*image)) return 3;
  if (desktopWithScreen() != nullptr) return 4;
  if (drawing->newDialog({0, 0, 100, 100}, nullptr, "Fiche") != nullptr) return 5;
  if (drawing->frontWindow() != nullptr || drawing->windowPort(nullptr) != nullptr) return 6;

  // These would be a screen.
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("KORVEL_UNSEEN", "1", 1);
  if (freopen("/dev/null", "w", stderr) == nullptr) return 7;
  if (desktopWithScreen() != nullptr) return 8;
  return isInkedBy(*image) && drawing->newImage(10, 10) != nullptr ? 0 : 9;
}
