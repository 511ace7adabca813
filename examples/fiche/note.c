/* SPDX-License-Identifier: MIT */
/* The note as a page: headings, paragraphs, measures and fees, mostly in rich text. */
#include "note.h"

#include <stdio.h>
#include <string.h>

#include <korvel/codecs.h>
#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "common/richline.h"
#include "doctors.h"
#include "drugs.h"
#include "french.h"

/* The page in pixels: margins, type sizes, and from one line to the next. */
enum { kMargin = 20, kSize = 13, kSmall = 11, kPitch = 19 };

/* A page while it is drawn: the next line goes to y. */
typedef struct Page {
  CGrafPtr port;
  int left, y;
  int width, bottom;
  int unit; /* pixels of two half characters, in which rich text places its tabs */
  const Sheet *sheet;
} Page;

/* What has no room above the bottom goes to the next page, if there may be one. */
static void needRoom(Page *page, int height) {
  if (!page->sheet->nextPage || page->y + height <= page->bottom) return;
  page->sheet->nextPage(page->sheet->printer);
  page->y = page->sheet->y;
}

static void chooseFont(const Page *page, int size, int style, int colour) {
  ch_font_set_ext(page->port, "Arial", colour, KorvelTransparent, size, style);
}

static int widthOf(const Page *page, const char *text, int length) {
  int cx = 0, cy = 0;
  return GetTextExtent_0(page->port, text, length, &cx, &cy);
}

/* Tabs count in halves of the width of an X, which is at least 8 pixels. */
static void measureUnit(Page *page) {
  chooseFont(page, kSize, KorvelPlain, KorvelBlack);
  page->unit = widthOf(page, "X", 1);
  if (page->unit < 8) page->unit = 8;
}

static int halfCharacters(const Page *page, int pixels) { return 2 * pixels / page->unit; }

static void addTab(RichLine *line, const Page *page, int pixels) {
  lineTab(line, halfCharacters(page, pixels));
}

/* A text that ends at a place. */
static void addRightAligned(RichLine *line, const Page *page, int pixels, const char *text) {
  addTab(line, page, pixels);
  lineEscape(line, KorvelRightAlignEscape);
  lineText(line, text);
}

static void drawRow(Page *page, const RichLine *line) {
  needRoom(page, kPitch);
  chooseFont(page, kSize, KorvelPlain, KorvelBlack);
  lineDraw(line, page->port, page->left, page->y);
  page->y += kPitch;
}

static void drawText(Page *page, const char *text, int size, int style, int colour) {
  chooseFont(page, size, style, colour);
  TextOut_0(page->port, page->left, page->y, text, (int)strlen(text));
}

/* Not without the line below it. */
static void drawHeading(Page *page, const char *title) {
  needRoom(page, 8 + 24 + kPitch);
  page->y += 8;
  drawText(page, french(title), kSize, KorvelBold, KorvelNavy);
  Line_Ex(page->port, page->left, page->y + 18, page->left + page->width - 1, page->y + 18,
          KorvelSilver, 1);
  page->y += 24;
}

/* ---- Paragraphs ---- */

/* A blank that was typed where French wants one that does not break ends no line. */
static int mayBreakAt(const char *text, int blank) {
  static const char kClosing[] = "?!:;\xBB";
  const char next = text[blank + (int)strspn(text + blank, " ")];
  if (next == '\0') return 1;
  return !strchr(kClosing, next) && (blank == 0 || text[blank - 1] != '\xAB');
}

/* As many bytes of whole words as fit; of a longer word what it has. */
static int fittingLength(const Page *page, const char *text, int width) {
  int fitting = 0, length = 0;
  while (text[length]) {
    length += (int)strcspn(text + length, " ");
    if (fitting > 0 && widthOf(page, text, length) > width) break;
    if (mayBreakAt(text, length)) fitting = length;
    length += (int)strspn(text + length, " ");
  }
  return fitting;
}

static void drawParagraph(Page *page, const char *text) {
  chooseFont(page, kSize, KorvelPlain, KorvelBlack);
  while (*text) {
    int length = fittingLength(page, text, page->width);
    needRoom(page, kPitch - 2);
    TextOut_0(page->port, page->left, page->y, text, length);
    page->y += kPitch - 2;
    text += length;
    text += strspn(text, " ");
  }
}

/* ---- The parts of the page ---- */

static void drawPractice(Page *page, const Settings *settings, const Visit *visit) {
  char line[160], date[11];
  drawText(page, settings->cabinet, 18, KorvelBold, KorvelNavy);
  showDate(visit->date, date);
  chooseFont(page, kSize, KorvelPlain, KorvelBlack);
  TextOut_0(page->port, page->left + page->width - widthOf(page, date, (int)strlen(date)),
            page->y + 4, date, (int)strlen(date));
  page->y += 24;
  snprintf(line, sizeof line, "%s%s%s", settings->praticien,
           *settings->praticien && *settings->adresse ? ", " : "", settings->adresse);
  drawText(page, line, kSmall, KorvelPlain, KorvelGrey);
  page->y += 15;
  snprintf(line, sizeof line, "%s%s", *settings->telephone ? french("Téléphone\u00A0: ") : "",
           settings->telephone);
  drawText(page, line, kSmall, KorvelPlain, KorvelGrey);
  page->y += 20;
  Line_Ex(page->port, page->left, page->y, page->left + page->width - 1, page->y, KorvelNavy, 2);
  page->y += 10;
}

static void drawPatient(Page *page, const Record *record) {
  enum { kIndent = 28 };
  char name[140], birth[11], card[160];
  RichLine line;
  fullName(record, name, sizeof name);
  showDate(record->naissance, birth);
  lineStart(&line);
  lineEscape(&line, KorvelBlueOpenFolderEscape);
  addTab(&line, page, kIndent);
  lineText(&line, name);
  lineText(&line, french(", né(e) le "));
  lineText(&line, birth);
  drawRow(page, &line);
  if (!doctorCard(record->medecin, card, sizeof card)) return;
  page->left += kIndent;
  drawText(page, french("Médecin traitant\u00A0: "), kSmall, KorvelItalic, KorvelGrey);
  page->left += widthOf(page, french("Médecin traitant\u00A0: "), 19);
  drawText(page, card, kSmall, KorvelItalic, KorvelGrey);
  page->left -= kIndent + widthOf(page, french("Médecin traitant\u00A0: "), 19);
  page->y += kPitch - 3;
}

/* A bullet, what was measured, and the number in a column of numbers. */
static void drawMeasure(Page *page, const char *label, const char *value, const char *unit) {
  RichLine line;
  lineStart(&line);
  lineEscape(&line, KorvelDotEscape);
  lineText(&line, french(label));
  addRightAligned(&line, page, 190, value);
  lineEscape(&line, KorvelLeftAlignEscape);
  addTab(&line, page, 200);
  lineText(&line, french(unit));
  drawRow(page, &line);
}

static void drawNumber(Page *page, const char *label, double value, int decimals,
                       const char *unit) {
  char text[32];
  if (value <= 0) return;
  realdco_d(value, text, sizeof text, decimals);
  char *point = strchr(text, '.');
  if (point) *point = ',';
  drawMeasure(page, label, text, unit);
}

static void drawExamination(Page *page, const Visit *visit, const Record *record) {
  drawHeading(page, "Examen");
  drawNumber(page, "Poids", visit->poids, 1, "kg");
  drawNumber(page, "IMC", bodyMassIndex(visit->poids, record->taille), 1, "kg/m²");
  if (*visit->tension) drawMeasure(page, "Tension", visit->tension, "cm Hg");
  drawNumber(page, "Pouls", visit->pouls, 0, "par minute");
  drawNumber(page, "Température", visit->temperature, 1, "°C");
}

/* A speciality's name, without its form after a comma or semicolon, and the dose under it. */
static void drawPrescription(Page *page, const Prescription *prescribed) {
  enum { kIndent = 18 };
  char name[256], dose[112];
  RichLine line;
  needRoom(page, 2 * kPitch);
  drugName(prescribed->drug, name, sizeof name);
  name[strcspn(name, ",;")] = '\0';
  lineStart(&line);
  lineEscape(&line, KorvelDotEscape);
  lineText(&line, name);
  drawRow(page, &line);
  snprintf(dose, sizeof dose, "%s", prescribed->dose);
  if (prescribed->days > 0)
    snprintf(dose, sizeof dose, "%s, pendant %d jour%s", prescribed->dose, prescribed->days,
             prescribed->days > 1 ? "s" : "");
  page->left += kIndent;
  page->y -= 2;
  drawText(page, dose, kSmall, KorvelItalic, KorvelBlack);
  page->left -= kIndent;
  page->y += kPitch - 3;
}

static void drawPrescriptions(Page *page, const Record *record) {
  if (record->lignes == 0) return;
  drawHeading(page, "Ordonnance");
  for (int i = 0; i < record->lignes; i++) drawPrescription(page, &record->ordonnance[i]);
}

/* ---- The fees, in a frame at the foot of the page ---- */

static void drawFee(Page *page, const char *name, double fee, int right) {
  char text[32];
  RichLine line;
  realdco_d(fee, text, sizeof text, 2);
  char *point = strchr(text, '.');
  if (point) *point = ',';
  strcat(text, french("\u00A0€"));
  lineStart(&line);
  addTab(&line, page, 12);
  lineText(&line, french(name));
  addRightAligned(&line, page, right, text);
  drawRow(page, &line);
}

/* Frames and rules of rich text count in quarters of a line. */
static int quarterLines(const Page *page, int pixels) {
  int height = 0, widest = 0, leading = 0;
  ch_font_metrics(page->port, &height, &widest, &leading);
  return 4 * pixels / (height + leading);
}

static void drawFees(Page *page, const Visit *visit) {
  const int height = (visit->acts + 1) * kPitch + 18, right = page->width - 12;
  double total = 0;
  RichLine line;
  needRoom(page, height);
  page->y = page->bottom - height;
  chooseFont(page, kSize, KorvelPlain, KorvelBlack);
  lineStart(&line);
  linePen(&line, 0, 0);
  lineFrameTo(&line, halfCharacters(page, page->width), quarterLines(page, height));
  linePen(&line, halfCharacters(page, 12), quarterLines(page, visit->acts * kPitch + 9));
  lineDrawTo(&line, halfCharacters(page, right), quarterLines(page, visit->acts * kPitch + 9));
  lineDraw(&line, page->port, page->left, page->y);
  page->y += 5;
  for (int i = 0; i < visit->acts; i++) {
    drawFee(page, visit->act[i].name, visit->act[i].fee, right);
    total += visit->act[i].fee;
  }
  page->y += 6;
  drawFee(page, "Total", total, right);
}

void drawPages(const Sheet *sheet, const Visit *visit, const Record *record,
               const Settings *settings) {
  CGrafPtr before = NULL;
  Page page = {sheet->port, sheet->x, sheet->y, sheet->width, sheet->y + sheet->height, 0, sheet};
  GetPort(&before);
  SetPort(sheet->port);
  measureUnit(&page);
  drawPractice(&page, settings, visit);
  drawPatient(&page, record);
  drawHeading(&page, "Motif");
  drawParagraph(&page, visit->motif);
  drawExamination(&page, visit, record);
  drawPrescriptions(&page, record);
  drawHeading(&page, "Conclusion");
  drawParagraph(&page, visit->conclusion);
  if (visit->acts > 0) drawFees(&page, visit);
  SetPort(before);
}

void drawNote(CGrafPtr port, int x, int y, const Visit *visit, const Record *record,
              const Settings *settings) {
  const int top = kMargin - 6;
  const Sheet sheet = {
      port, x + kMargin, y + top, kNoteWidth - 2 * kMargin, kNoteHeight - kMargin - top,
      NULL, NULL};
  Rectangle_Ex(port, x, y, kNoteWidth, kNoteHeight, KorvelWhite);
  drawPages(&sheet, visit, record, settings);
}
