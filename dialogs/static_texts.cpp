// SPDX-License-Identifier: MIT
// Static texts, group boxes and icons: what a dialog shows besides its items.
#include "dialogs/static_texts.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "dialogs/build.h"
#include "dialogs/misuse.h"
#include "dialogs/stored_text.h"
#include "platform/resources.h"
#include "strings/charsets.h"

constinit int SDB = 0;
constinit int SDB_N = 0;
constinit int SDB_BUFFERSIZE = 0;
constinit short SDB_x[128] = {};
constinit short SDB_y[128] = {};
constinit short SDB_cx[128] = {};
constinit short SDB_cy[128] = {};
constinit short SDB_type[128] = {};
constinit char *SDB_pszBuffer[128] = {};
constinit char SDB_szBuffer[65536] = {};

namespace korvel::dialogs {

namespace {

constexpr TextStore kTexts{SDB_szBuffer, std::size(SDB_szBuffer), &SDB_BUFFERSIZE, SDB_pszBuffer};
constexpr int kTextSize = 512;
constexpr int kLowestText = 15;
constexpr const char *kIconName = "icons/2";

void setType(int i, int type) {
  if (hasField(kStaticTexts, i)) SDB_type[i] = static_cast<short>(type);
}

// Kept: the text is converted in the table itself.
std::string_view convertedText(int i) {
  const std::string shown = strings::toMac(storedText(kTexts, i));
  if (!shown.empty()) std::copy(shown.begin(), shown.end(), SDB_pszBuffer[i]);
  return storedText(kTexts, i);
}

Rect rectOf(const Builder &builder, int i, int height) {
  Rect rect = fieldRect(kStaticTexts, i);
  rect.bottom = rect.top + height;
  return heldInside(rect, builder.size);
}

void add(Builder &builder, int i) {
  const int height = fieldRect(kStaticTexts, i).height();
  if (SDB_type[i] < 0) {
    builder.dialog.addGroupBox(rectOf(builder, i, height * 14 / 10), convertedText(i));
  } else if (SDB_type[i] == 0) {
    const Rect rect = rectOf(builder, i, std::max(height, kLowestText));
    builder.dialog.addStaticText(rect, convertedText(i));
  } else {
    builder.dialog.addIcon(rectOf(builder, i, 2 * SDB_cy[i]),
                           platform::findResource(kIconName, {".svg", ".png"}));
  }
}

}  // namespace

bool defineStatics(int n) {
  constexpr int kNoItem = 0;
  if (!define(kStaticTexts, n, kNoItem)) return false;
  cutSlices(kTexts, n, kTextSize);
  std::fill_n(SDB_type, n, short{0});
  return true;
}

void setStatic(int i, const char *text) {
  if (hasField(kStaticTexts, i)) storeText(kTexts, i, text);
}

void addStatics(Builder &builder) {
  for (int i = 0; isInUse(kStaticTexts, i); ++i) add(builder, i);
}

constinit const FieldType kStaticTexts{
    .name = "static text",
    .definedBy = "StaticDlgBox_param",
    .capacity = std::size(SDB_x),
    .use = {&SDB, &SDB_N},
    .place = {SDB_x, SDB_y, SDB_cx, SDB_cy},
};

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int StaticDlgBox_param(int n) {
  lookForMisuse([=] { needsCount(Call("StaticDlgBox_param", {n}), kStaticTexts, n); });
  return defineStatics(n) ? 0 : kRefused;
}

int StaticDlgBox_set(int i, const char *text) {
  lookForMisuse([=] {
    needsText(Call("StaticDlgBox_set", {i, text}), kStaticTexts, i, text, kTextSize - 1);
  });
  if (text != nullptr) setStatic(i, text);
  return 0;
}

int StaticDlgBox_set_geo(int i, int x, int y, int cx, int cy) {
  lookForMisuse([=] {
    needsPlace(Call("StaticDlgBox_set_geo", {i, x, y, cx, cy}), kStaticTexts, i, {x, y, cx, cy});
  });
  place(kStaticTexts, i, x, y, cx, cy);
  return 0;
}

int StaticDlgBox_set_type(int i, int type) {
  lookForMisuse([=] {
    needsPlace(Call("StaticDlgBox_set_type", {i, type}), kStaticTexts, i, {type});
  });
  setType(i, type);
  return 0;
}
