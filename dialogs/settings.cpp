// SPDX-License-Identifier: MIT
// Title, size, background and the button pair of later dialogs.
#include <algorithm>
#include <iterator>

#include <korvel/dialogs.h>

#include "base/views.h"
#include "dialogs/misuse.h"
#include "dialogs/stored_text.h"
#include "strings/copy.h"

constinit int HDB = 0;
constinit char HDB_szHeader[128] = "";
constinit int LDB = 0;
constinit int LDB_cx = 0;
constinit int LDB_cy = 0;
constinit int FDB = 0;
constinit RGBColor FDB_bkgcol = {};
constinit int FDB_hbrbkg = 0;
constinit char OK_sz1[16] = "OK";
constinit char OK_sz2[16] = "Annuler";
constinit char OK_sz1_bak[16] = "";
constinit char OK_sz2_bak[16] = "";
constinit int OK_def = 1;
constinit int OK_x = 0;
constinit int OK_y = 0;
constinit int OK_xt = 0;
constinit int OK_yt = 0;
constinit int OK_shadow = 0;
constinit int OK_shadow_dx = 0;
constinit int OK_shadow_dy = 0;
constinit RGBColor OK_shadow_c = {};

namespace korvel::dialogs {

namespace {

void setTitle(const char *text) {
  HDB = 1;
  strings::copyTerminated(HDB_szHeader, text);
}

void setButtonTexts(const char *text1, const char *text2) {
  std::copy(std::begin(OK_sz1), std::end(OK_sz1), OK_sz1_bak);
  std::copy(std::begin(OK_sz2), std::end(OK_sz2), OK_sz2_bak);
  if (text1 != nullptr) strings::copyTerminated(OK_sz1, text1);
  if (text2 != nullptr) strings::copyTerminated(OK_sz2, text2);
}

}  // namespace

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int TitreDlgBox_set(const char *text) {
  lookForMisuse(
      [=] { needsText(Call("TitreDlgBox_set", {text}), text, std::size(HDB_szHeader) - 1); });
  if (text != nullptr) setTitle(text);
  return 0;
}

int TitreDlgBox_retrieve(char *dst, int size) {
  lookForMisuse([=] {
    needsRoomFor(Call("TitreDlgBox_retrieve", {filled(dst), size}),
                 boundedText(HDB_szHeader).size(), size);
  });
  korvel::strings::copyWhole(korvel::base::roomOf(dst, size), boundedText(HDB_szHeader));
  return 0;
}

int TailleDlgBox_set(int cx, int cy) {
  lookForMisuse([=] { needsSize(Call("TailleDlgBox_set", {cx, cy}), cx, cy); });
  LDB = 1;
  LDB_cx = cx;
  LDB_cy = cy;
  return 0;
}

int ColorDlgBox_bkg(RGBColor colour) {
  FDB_bkgcol = colour;
  FDB = 1;
  return 0;
}

int BOKDlgBox_set_geo(int x, int y) {
  OK_x = x;
  OK_y = y;
  return 0;
}

int BOKDlgBox_pos(int x, int y) {
  OK_xt = x;
  OK_yt = y;
  return 0;
}

int BOKDlgBox_textes(const char *text1, const char *text2) {
  lookForMisuse([=] {
    needsButtonTexts(Call("BOKDlgBox_textes", {orNull(text1), orNull(text2)}), text1, text2);
  });
  setButtonTexts(text1, text2);
  return 0;
}

int BOKDlgBox_textes_reset() {
  std::copy(std::begin(OK_sz1_bak), std::end(OK_sz1_bak), OK_sz1);
  std::copy(std::begin(OK_sz2_bak), std::end(OK_sz2_bak), OK_sz2);
  return 0;
}

int BOKDlgBox_def(int n) {
  lookForMisuse([=] { needsButton(Call("BOKDlgBox_def", {n}), n); });
  if (n == 1 || n == 2) OK_def = n;
  return 0;
}

int BOKDlgBox_def_reset() {
  OK_def = 1;
  return 0;
}

int BOKDlgBox_shadow(int dx, int dy, RGBColor colour) {
  OK_shadow_dx = dx;
  OK_shadow_dy = dy;
  OK_shadow_c = colour;
  OK_shadow = 1;
  return 0;
}
