// SPDX-License-Identifier: MIT
// For tests/draw/: every test starts with an image of 12-point text on a scripted desktop, and
// leaves the globals and the state that outlasts a text as they are at load.
#ifndef KORVEL_TESTS_DRAW_DRAWING_FIXTURE_H
#define KORVEL_TESTS_DRAW_DRAWING_FIXTURE_H

#include <cstring>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "draw/pictures.h"
#include "tests/platform/scripted_desktop.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {

// Gives the exported variables of the drawing functions their first values, before and after.
class DrawingGlobals {
 public:
  DrawingGlobals() { reset(); }
  ~DrawingGlobals() { reset(); }
  DrawingGlobals(const DrawingGlobals &) = delete;
  DrawingGlobals &operator=(const DrawingGlobals &) = delete;

  static void reset() {
    std::memset(ch_font_FontName, 0, sizeof ch_font_FontName);
    std::memset(szResources, 0, sizeof szResources);
    char_dy = 0;
    SetPort(nullptr);
    draw::forgetPictures();
  }
};

// The pen at (0, 0), no run ending at x, all runs measured.
inline void resetTextState(CGrafPtr port) {
  constexpr std::string_view kReset = "\xFF\x82\xFF\xC9    ";
  TextOut_Ext(port, 0, 0, 0, 0, kReset.data(), static_cast<int>(kReset.size()));
  GetTextExtent_Ext(port, 0, 0, kReset.data(), 2, nullptr, nullptr);
}

class DrawTest : public ::testing::Test {
 protected:
  DrawTest() { resetTextState(port); }
  void TearDown() override {
    resetTextState(port);
    KorvelPortRelease(port);
    desk.finish();
  }

  // What was drawn on the image since the last call.
  std::string drawn() { return desk.drawn(0).takeLines(); }

  DrawingGlobals globals;
  ScriptedDesktop desk;
  CGrafPtr port = KorvelImagePort(200, 100);
};

// A resource folder with pictures, each a text of its size, which the scripted desktop reads.
class PictureFolder {
 public:
  PictureFolder() { choose(); }
  void add(const std::string &file, const std::string &size) {
    folder_.add("pictures/" + file, size);
  }
  std::string file(const std::string &name) const { return folder_.path() + "/pictures/" + name; }
  // Makes it the application's folder.
  void choose() {
    std::memset(szResources, 0, sizeof szResources);
    std::strncpy(szResources, folder_.path().c_str(), sizeof szResources - 1);
  }

 private:
  TemporaryFolder folder_;
};

}  // namespace korvel::test

#endif
