/* SPDX-License-Identifier: MIT */
/* What the showcase's window shows, with every function that draws. */
#include "page.h"

#include <stdio.h>
#include <string.h>

#include <korvel/desktop.h>
#include <korvel/draw.h>
#include <korvel/strings.h>

#include "common/richline.h"

/* Left edge of everything, and of the right half. */
enum { kLeft = 16, kRight = 340 };

/* The CP1252 form of a UTF-8 text, until the next call. */
static const char *french(const char *utf8) {
  static char text[256];
  if (KorvelFromUtf8(utf8, text, sizeof text) < 0) text[0] = '\0';
  return text;
}

static void text(CGrafPtr port, int x, int y, const char *utf8) {
  const char *string = french(utf8);
  TextOut_0(port, x, y, string, (int)strlen(string));
}

static void heading(CGrafPtr port, int x, int y, const char *title) {
  ch_font_set_ext(port, "Arial", KorvelNavy, KorvelTransparent, 14, KorvelBold);
  text(port, x, y, title);
  Line_Ex(port, x, y + 20, x + 303, y + 20, KorvelSilver, 1);
}

static void drawPalette(CGrafPtr port, int y) {
  heading(port, kLeft, y, "Palette");
  for (int index = 0; index < KorvelColours; ++index) {
    const int x = kLeft + index % 8 * 38;
    const int top = y + 28 + index / 8 * 44;
    char number[4];
    snprintf(number, sizeof number, "%d", index);
    Rectangle_Ex(port, x, top, 34, 22, index);
    ch_font_printstr(port, x, top + 23, 34, KorvelBlack, KorvelTransparent, 11, number);
  }
}

typedef struct Sample {
  const char *font;
  int size;
  int style;
  int fore;
  int back;
  const char *text;
} Sample;

static const Sample kSamples[] = {
    {"Arial", 11, KorvelPlain, KorvelBlack, KorvelTransparent,
     "Arial 11\u00A0: Portez ce vieux whisky"},
    {"Arial", 13, KorvelBold, KorvelBlack, KorvelTransparent,
     "Arial 13 gras\u00A0: Été, Noël, garçon"},
    {"Times New Roman", 16, KorvelItalic, KorvelNavy, KorvelTransparent,
     "Times 16 italique\u00A0: cœur, 5\u00A0€"},
    {"Courier New", 13, KorvelPlain, KorvelBlack, KorvelYellow, " Courier 13 sur fond jaune "},
    {"Arial", 13, KorvelUnderlined, KorvelRed, KorvelTransparent, "Arial 13 souligné, en rouge"},
    {"Arial", 13, KorvelCondensed, KorvelBlack, KorvelTransparent, "Arial 13 condensé"},
    {"Arial", 13, KorvelExtended, KorvelBlack, KorvelTransparent, "Arial 13 étendu"},
};

static void drawFonts(CGrafPtr port, int y) {
  heading(port, kRight, y, "Polices");
  int top = y + 26;
  for (size_t n = 0; n < sizeof kSamples / sizeof *kSamples; ++n) {
    const Sample *sample = &kSamples[n];
    ch_font_set_ext(port, sample->font, sample->fore, sample->back, sample->size, sample->style);
    text(port, kRight, top, sample->text);
    top += sample->size + 7;
  }
}

typedef struct Folder {
  int closed;
  int opened;
  const char *label;
} Folder;

static const Folder kFolders[] = {
    {KorvelBlueFolderEscape, KorvelBlueOpenFolderEscape, "bleu"},
    {KorvelRedFolderEscape, KorvelRedOpenFolderEscape, "rouge"},
    {KorvelGreenFolderEscape, KorvelGreenOpenFolderEscape, "vert"},
    {KorvelYellowFolderEscape, KorvelYellowOpenFolderEscape, "jaune"},
    {KorvelOrangeFolderEscape, KorvelOrangeOpenFolderEscape, "orange"},
    {KorvelLilacFolderEscape, KorvelLilacOpenFolderEscape, "lilas"},
    {KorvelWhiteBlueFolderEscape, KorvelWhiteRedFolderEscape, "bleu, rouge"},
};

/* Icons and texts in columns: a table whose columns are tab positions. */
static void drawFolders(CGrafPtr port, int y) {
  heading(port, kLeft, y, "Dossiers et tabulations");
  ch_font_set(port, "Arial", KorvelBlack, KorvelTransparent, 13);
  for (size_t n = 0; n < sizeof kFolders / sizeof *kFolders; ++n) {
    RichLine line;
    lineStart(&line);
    lineEscape(&line, kFolders[n].closed);
    lineTab(&line, 6);
    lineEscape(&line, kFolders[n].opened);
    lineTab(&line, 12);
    lineText(&line, kFolders[n].label);
    lineTab(&line, 36);
    lineEscape(&line, KorvelDotEscape);
    lineText(&line, "puce");
    lineDraw(&line, port, kLeft, y + 28 + (int)n * 20);
  }
}

typedef struct Act {
  const char *name;
  const char *fee;
} Act;

static const Act kActs[] = {
    {"Consultation", "26,50"}, {"Visite à domicile", "36,50"}, {"Total", "63,00"}};

/* Fees end at one tab position, under a rule and in a frame drawn by the text itself. */
static void drawFees(CGrafPtr port, int y) {
  enum { kFeeEnd = 56, kTotal = 2, kLines = 3 };
  heading(port, kRight, y, "Filets, cadres, nombres à droite");
  ch_font_set(port, "Arial", KorvelBlack, KorvelTransparent, 13);
  RichLine line;
  lineStart(&line);
  linePen(&line, 0, 0);
  lineFrameTo(&line, kFeeEnd + 4, 18);
  linePen(&line, 2, 11);
  lineDrawTo(&line, kFeeEnd + 2, 11);
  lineDraw(&line, port, kRight, y + 30);
  for (int n = 0; n < kLines; ++n) {
    lineStart(&line);
    lineTab(&line, 3);
    lineText(&line, french(kActs[n].name));
    lineTab(&line, kFeeEnd);
    lineEscape(&line, KorvelRightAlignEscape);
    lineText(&line, kActs[n].fee);
    lineDraw(&line, port, kRight, y + 34 + n * 19 + (n == kTotal ? 5 : 0));
  }
}

static void drawBullets(CGrafPtr port, int y) {
  heading(port, kRight, y, "Puces et colonnes");
  ch_font_set(port, "Arial", KorvelBlack, KorvelTransparent, 13);
  RichLine line;
  lineStart(&line);
  lineEscape(&line, KorvelBulletEscape);
  lineText(&line, "Tension");
  lineTabEvery(&line, 20);
  lineText(&line, "13/8");
  lineTabEvery(&line, 20);
  lineText(&line, "assis");
  lineDraw(&line, port, kRight, y + 28);
  lineStart(&line);
  lineEscape(&line, KorvelBulletEscape);
  lineText(&line, "Pouls");
  lineTabEvery(&line, 20);
  lineText(&line, "72");
  lineTabEvery(&line, 20);
  lineText(&line, french("régulier"));
  lineDraw(&line, port, kRight, y + 50);
}

static void drawLines(CGrafPtr port, int y) {
  heading(port, kLeft, y, "Traits et textes centrés");
  for (int width = 1; width <= 4; ++width) {
    const int x = kLeft + (width - 1) * 30;
    Line_Ex(port, x, y + 30, x + 22, y + 30, KorvelBlue, width);
    Line_Ex(port, x, y + 40, x, y + 76, KorvelRed, width);
    Line_Ex(port, x + 8, y + 40, x + 24, y + 76, KorvelBlack, width);
  }
  ch_font_set(port, "Arial", KorvelBlack, KorvelTransparent, 13);
  Rectangle_Ex(port, kLeft + 132, y + 30, 170, 20, KorvelWhite);
  ch_font_printstr(port, kLeft + 132, y + 31, 170, KorvelNavy, KorvelTransparent, 13, "au milieu");
  Rectangle_Ex(port, kLeft + 132, y + 56, 170, 20, KorvelSilver);
  ch_font_printstr(port, kLeft + 132, y + 57, 170, KorvelBlack, KorvelTransparent, 13,
                   "et ici, sur fond gris");
}

/* One picture in its frame, with its size. */
static void drawPicture(CGrafPtr port, const char *name, int x, int y) {
  int cx = 0, cy = 0;
  if (BMP_affic_dimfond0(name, &cx, &cy) != 0) return;
  Rectangle_Ex(port, x, y, cx + 8, cy + 8, KorvelWhite);
  BMP_affic_desfond0(name, port, x + 4, y + 4);
}

static void drawPictures(CGrafPtr port, int y) {
  static const char *const kNames[] = {"repferb", "repouvb", "repferr", "repouvr", "repferv",
                                       "repouvv", "repferj", "repouvj", "repfero", "repouvo",
                                       "repferl", "repouvl", "repfebb", "repfebr", "puceb"};
  heading(port, kLeft, y, "Images");
  for (size_t n = 0; n < sizeof kNames / sizeof *kNames; ++n)
    drawPicture(port, kNames[n], kLeft + (int)n * 28, y + 30);
}

void drawPage(CGrafPtr port) {
  CGrafPtr before = NULL;
  GetPort(&before);
  SetPort(port);
  drawPalette(port, 12);
  drawFonts(port, 12);
  drawFolders(port, 150);
  drawFees(port, 190);
  drawBullets(port, 308);
  drawLines(port, 340);
  drawPictures(port, 440);
  SetPort(before);
}
