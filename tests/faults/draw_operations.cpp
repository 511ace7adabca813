// SPDX-License-Identifier: MIT
// The functions that draw.
#include <cstring>

#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "tests/faults/operations.h"

namespace korvel::faults {
namespace {

using namespace korvel::faults::place;

CGrafPtr image;
WindowRef window;

void showDesktop() { desktop(); }
void makeImage() {
  showDesktop();
  image = KorvelImagePort(200, 100);
  ch_font_set(image, "Arial", KorvelBlack, KorvelTransparent, 12);
}
// A picture of 20 by 10 in the application's folder.
void putPicture() {
  makeImage();
  folder("pictures");
  put("pictures/puceb.png", "20x10");
  std::string_view resources = posix("");
  resources.copy(szResources, sizeof szResources - 1);
}

constexpr char kRich[] =
    "\xFF\x80$\xFF\x8Aun \xFF\x94 dossier\xFF\xC8!!\xFF\xCA,&\xFF\xD5.(\xFF\x82";
constexpr int kRichLength = sizeof kRich - 1;

Answer released(CGrafPtr port) {
  const Answer answer{port != nullptr ? 1 : 0};
  KorvelPortRelease(port);
  return answer;
}

Answer measured(int (*measure)(int *cx, int *cy)) {
  int cx = -1;
  int cy = -1;
  const int result = measure(&cx, &cy);
  return {result, cx, cy};
}

// What is drawn goes on without a picture, and a text without memory has no width.
constexpr Operation kDrawing[] = {
    {"KorvelWidgetWindow", showDesktop,
     [] { return Answer{KorvelWidgetWindow(nullptr) == nullptr ? 1 : 0}; }, "1", nullptr},
    {"KorvelImagePort", showDesktop, [] { return released(KorvelImagePort(20, 10)); }, "1", "0"},
    {"KorvelPainterPort", showDesktop, [] { return released(KorvelPainterPort(&image)); }, "1",
     "0"},
    {"GetWindowPort",
     [] {
       window = desktop().addWindow({0, 0, 100, 100});
     },
     [] { return Answer{GetWindowPort(window) != nullptr ? 1 : 0}; }, "1", "0"},
    {"KorvelPortRelease", makeImage,
     [] {
       KorvelPortRelease(image);
       return Answer{0};
     },
     "0", nullptr, kUsedUp},
    {"KorvelPortSave", makeImage, [] { return Answer{KorvelPortSave(image, "/nowhere/i.png")}; },
     "1", "0"},
    {"KorvelPortPixel", makeImage,
     [] {
       RGBColor colour = {};
       const int result = KorvelPortPixel(image, 3, 3, &colour);
       return Answer{result, colour.red};
     },
     "1", nullptr},
    {"SetPort", makeImage,
     [] {
       SetPort(image);
       CGrafPtr now = nullptr;
       GetPort(&now);
       return Answer{now == image ? 1 : 0};
     },
     "1", nullptr},
    {"GetPort", makeImage,
     [] {
       CGrafPtr now = image;
       GetPort(&now);
       return Answer{now == nullptr ? 1 : 0};
     },
     "1", nullptr},
    {"ch_font_set_ext", makeImage,
     [] { return Answer{ch_font_set_ext(image, "Courier New", 9, 255, 14, KorvelBold)}; }, "0",
     nullptr},
    {"ch_font_set", makeImage, [] { return Answer{ch_font_set(image, "Nowhere", 9, 255, 14)}; },
     "0", nullptr},
    {"ch_font_metrics", makeImage,
     [] {
       int height = 0, widest = 0, leading = 0;
       const int result = ch_font_metrics(image, &height, &widest, &leading);
       return Answer{result, height, widest, leading};
     },
     "0", nullptr},
    {"TextOut_0", makeImage, [] { return Answer{TextOut_0(image, 2, 2, "\xC9t\xE9", 3)}; }, "20",
     "0"},
    {"GetTextExtent_0", makeImage,
     [] {
       return measured([](int *cx, int *cy) { return GetTextExtent_0(image, "Fiche", 5, cx, cy); });
     },
     "27", "1"},
    {"TextOut_Ext", putPicture,
     [] { return Answer{TextOut_Ext(image, 2, 20, 2, 0, kRich, kRichLength)}; }, "109", nullptr,
     kAnyAnswer},
    {"GetTextExtent_Ext", putPicture,
     [] {
       return measured([](int *cx, int *cy) {
         return GetTextExtent_Ext(image, 2, 20, kRich, kRichLength, cx, cy);
       });
     },
     "0", nullptr, kAnyAnswer},
    {"ch_font_printstr", putPicture,
     [] {
       return Answer{ch_font_printstr(image, 2, 40, 150, KorvelRed, 255, 16, "\xFF\x8A Milieu")};
     },
     "107", nullptr, kAnyAnswer},
    {"vga_col", nullptr,
     [] {
       RGBColor colour = {};
       return Answer{vga_col(&colour, KorvelRed) == &colour ? 1 : 0, colour.red};
     },
     "1", nullptr},
    {"Line_Ex", makeImage,
     [] {
       Line_Ex(image, 2, 6, 9, 7, KorvelGreen, 2);
       return Answer{0};
     },
     "0", nullptr},
    {"LineC_Ex", makeImage,
     [] {
       LineC_Ex(image, 2, 6, 9, 7, RGBColor{1, 2, 3}, 2);
       return Answer{0};
     },
     "0", nullptr},
    {"Rectangle_Ex", makeImage,
     [] {
       Rectangle_Ex(image, 1, 6, 4, 2, KorvelSilver);
       return Answer{0};
     },
     "0", nullptr},
    {"BMP_affic_desfond0", putPicture,
     [] { return Answer{BMP_affic_desfond0("puceb", image, 15, 6)}; }, "0", "1"},
    {"BMP_affic_dimfond0", putPicture,
     [] { return measured([](int *cx, int *cy) { return BMP_affic_dimfond0("puceb", cx, cy); }); },
     "0", "1"},
};

}  // namespace

std::span<const Operation> drawOperations() { return kDrawing; }

}  // namespace korvel::faults
