/* SPDX-License-Identifier: MIT */
/* The dialog in front of a print: where to, and the set-up of the page. */
#include "printing.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "form.h"
#include "french.h"
#include "message.h"
#include "printer.h"

enum { kImprimante, kPapier, kTexts };
enum { kCotes, kHautBas, kInts };
enum { kPaysage, kBools };
enum { kRankImprimante, kRankPapier, kRankPaysage, kRankCotes, kRankHautBas };

/* The layout, in dialog units. */
enum { kWidth = 220, kHeight = 156, kLabel = 16, kField = 110, kTop = 8, kPageY = 50 };

static const char kCaption[] = "Impression", kDone[] = "Impression terminée",
                  kPdf[] = "Fichier PDF";
static char papers[] = "A4+A5+Lettre";

/* As chosen last. */
static PageSetup setup = {"", kA4, 0, 20, 20};

/* What is printed. */
static const Visit *printed;
static const Record *patient;
static const Settings *practice;

static void drawOn(const Sheet *sheet) { drawPages(sheet, printed, patient, practice); }

/* ---- The dialog ---- */

/* The place of a paper among the papers. */
static int paperOf(const char *name) {
  const char *found = strstr(papers, name);
  int place = 0;
  for (const char *at = papers; at < found; at++) place += *at == '+';
  return place;
}

static PageSetup enteredSetup(void) {
  PageSetup entered = {.paper = kA4};
  char text[128] = "";
  TexteDlgBox_retrieve(kImprimante, text, sizeof text);
  if (strcmp(text, kPdf) != 0) strcpy(entered.printer, text);
  TexteDlgBox_retrieve(kPapier, text, sizeof text);
  entered.paper = paperOf(text);
  BoolDlgBox_retrieve(kPaysage, &entered.isLandscape);
  IntDlgBox_retrieve(kCotes, &entered.marginX);
  IntDlgBox_retrieve(kHautBas, &entered.marginY);
  return entered;
}

static const char *keepEntered(const Form *form) {
  const PageSetup entered = enteredSetup();
  (void)form;
  if (!hasRoom(&entered)) return "Les marges laissent trop peu de place sur la page.";
  setup = entered;
  return NULL;
}

static void defineMargin(int i, const char *label, int line, int rank, int margin) {
  formLabel(label, kLabel, formLine(kPageY, line), kField - kLabel);
  IntDlgBox_set_geo(i, kField, formLine(kPageY, line), 30, kLine, rank);
  IntDlgBox_set(i, margin, KorvelNotNegative);
}

static void defineDialog(void) {
  const FormFields fields = {.texts = kTexts, .ints = kInts, .bools = kBools};
  static const char *const kNames[] = {"A4", "A5", "Lettre"};
  static char printers[1024];
  char names[960];
  printerNames(names, sizeof names);
  snprintf(printers, sizeof printers, "%s%s%s", kPdf, *names ? "+" : "", names);
  formBegin(kWidth, kHeight, fields, "Imprimer", "Annuler", NULL, keepEntered);
  formGroup("Imprimante", 8, kTop, kWidth - 16, 1);
  formLabel("Imprimer sur", kLabel, formLine(kTop, 0), kField - kLabel);
  formPopUp(kImprimante, kField, formLine(kTop, 0), 94, kRankImprimante,
            *setup.printer ? setup.printer : kPdf, printers);
  formGroup("Page", 8, kPageY, kWidth - 16, 4);
  formLabel("Papier", kLabel, formLine(kPageY, 0), kField - kLabel);
  formPopUp(kPapier, kField, formLine(kPageY, 0), 60, kRankPapier, kNames[setup.paper], papers);
  BoolDlgBox_set_geo(kPaysage, "Paysage", kField, formLine(kPageY, 1), 60, kLine, kRankPaysage);
  BoolDlgBox_set(kPaysage, setup.isLandscape);
  defineMargin(kCotes, "Marges latérales (mm)", 2, kRankCotes, setup.marginX);
  defineMargin(kHautBas, "En haut et en bas (mm)", 3, kRankHautBas, setup.marginY);
}

/* ---- Printing ---- */

static int print(const char *pdfPath) {
  char posix[256], name[140], title[200];
  if (MAC2UNIX(pdfPath, posix) <= 0) return 0;
  fullName(patient, name, sizeof name);
  snprintf(title, sizeof title, french("Note de visite\u00A0: %s"), name);
  return printPages(&setup, title, posix, drawOn);
}

void enterPrinting(const Visit *visit, const Record *record, const Settings *settings,
                   const char *pdfPath) {
  printed = visit;
  patient = record;
  practice = settings;
  defineDialog();
  if (!formRun(french(kCaption))) return;
  if (!print(pdfPath))
    tellFailure(kCaption, "La note n’a pas pu être imprimée.");
  else if (*setup.printer)
    tell(kDone, "La note est envoyée à l’imprimante %s.", setup.printer);
  else
    tell(kDone, "La note est dans le dossier des notes, au format PDF.");
}
