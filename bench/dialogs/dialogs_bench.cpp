// SPDX-License-Identifier: MIT
// A data-entry dialog of the library beside the same dialog made by hand with the toolkit, in one
// process, on the toolkit's platform without a screen. Both are painted into memory.
#include <string>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include <korvel/dialogs.h>

#include "bench/dialogs/screen.h"

namespace {

using benchmark::State;
using korvel::bench::goal;
using korvel::bench::measureFirstFrame;
using korvel::bench::named;
using korvel::bench::OnFirstFrame;
using korvel::bench::PaintWatch;
using korvel::bench::pressKey;

// ---- The dialog, in dialog units ----

constexpr int kWidth = 380;
constexpr int kHeight = 420;
constexpr int kColumns = 8;
constexpr int kColumnWidth = 46;
constexpr int kRowHeight = 15;
constexpr int kFieldWidth = 38;
constexpr int kFieldHeight = 12;
constexpr int kBottom = 280;  // where the pop-up and the list stand

constexpr int kTextEdits = 18;  // the rest of a dialog's edits are integer fields
constexpr int kPopUpIndex = kTextEdits;
constexpr int kListIndex = kTextEdits + 1;
constexpr int kChoices = 20;

// The largest dialog there is: with two buttons, pop-up and list it has 127 items.
constexpr int kManyEdits = 123;
constexpr int kFewEdits = 10;

struct Place {
  int x;
  int y;
};
Place placeOf(int edit) {
  return {4 + kColumnWidth * (edit % kColumns), 4 + kRowHeight * (edit / kColumns)};
}

std::string choices(char separator) {
  std::string all;
  for (int n = 0; n < kChoices; ++n) {
    if (n > 0) all += separator;
    all += "Choix " + std::to_string(n);
  }
  return all;
}

// ---- The library's dialog ----

constexpr int kFirstText = 100;
constexpr int kFirstInt = 200;

void defineTexts(int edits, bool withLists) {
  TexteDlgBox_param(edits + (withLists ? 2 : 0), kFirstText);
  for (int i = 0; i < edits; ++i) {
    const Place at = placeOf(i);
    TexteDlgBox_set(i, "Dupont");
    TexteDlgBox_set_geo(i, at.x, at.y, kFieldWidth, kFieldHeight, i);
  }
}

void defineIntegers(int first, int edits) {
  if (edits <= first) return;
  IntDlgBox_param(edits - first, kFirstInt);
  for (int edit = first; edit < edits; ++edit) {
    const Place at = placeOf(edit);
    IntDlgBox_set(edit - first, edit, 1);
    IntDlgBox_set_geo(edit - first, at.x, at.y, kFieldWidth, kFieldHeight, edit);
  }
}

void defineLists() {
  static const std::string popUp = choices('+');
  static const std::string list = choices('$');
  TexteDlgBox_set(kPopUpIndex, "Choix 3");
  TexteDlgBox_set_liste(kPopUpIndex, popUp.c_str());
  TexteDlgBox_set_geo(kPopUpIndex, 10, kBottom, 80, kFieldHeight, 126);
  TexteDlgBox_set(kListIndex, "");
  TexteDlgBox_set_liste(kListIndex, list.c_str());
  TexteDlgBox_change_liste(kListIndex);
  TexteDlgBox_set_geo(kListIndex, 120, kBottom, 120, 100, 127);
}

void define(int edits) {
  const bool withLists = edits == kManyEdits;
  const int texts = withLists ? kTextEdits : edits;
  TailleDlgBox_set(kWidth, kHeight);
  defineTexts(texts, withLists);
  if (withLists) defineLists();
  defineIntegers(texts, edits);
}

void runLibraryDialog(int edits) {
  define(edits);
  ZRVDlgBoxEx("Fiche", nullptr);
}

// ---- The same by hand ----

// Where the library's fields have their frames.
QRect frameOf(const Place &at, int cx, int cy) {
  return QRect(2 * at.x, 7 * at.y / 4, 2 * cx, 5 * cy / 4).adjusted(-3, -3, 3, 3);
}

void addEdits(QDialog &dialog, int edits) {
  for (int n = 0; n < edits; ++n) {
    auto *edit = new QLineEdit(&dialog);
    edit->setGeometry(frameOf(placeOf(n), kFieldWidth, kFieldHeight));
    edit->setText(n < kTextEdits ? QStringLiteral("Dupont") : QString::number(n));
  }
}

void addLists(QDialog &dialog) {
  QStringList entries;
  for (int n = 0; n < kChoices; ++n) entries << QStringLiteral("Choix %1").arg(n);
  auto *popUp = new QComboBox(&dialog);
  popUp->setGeometry(frameOf({10, kBottom}, 80, kFieldHeight));
  popUp->addItems(entries);
  popUp->setCurrentIndex(3);
  auto *list = new QListWidget(&dialog);
  list->setGeometry(frameOf({120, kBottom}, 120, 100));
  list->addItems(entries);
}

void addButton(QDialog &dialog, const QString &title, int left) {
  auto *button = new QPushButton(title, &dialog);
  button->setGeometry(left, 7 * kHeight / 4 - 35, 80, 22);
}

void runToolkitDialog(int edits) {
  QDialog dialog;
  dialog.setWindowTitle(QStringLiteral("Fiche"));
  dialog.setFixedSize(2 * kWidth, 7 * kHeight / 4);
  addEdits(dialog, edits);
  if (edits == kManyEdits) addLists(dialog);
  addButton(dialog, QStringLiteral("OK"), kWidth - 90);
  addButton(dialog, QStringLiteral("Annuler"), kWidth + 10);
  dialog.findChild<QLineEdit *>()->selectAll();
  dialog.findChild<QLineEdit *>()->setFocus();
  dialog.exec();
}

// ---- What is measured ----

using RunDialog = void (*)(int edits);

// Where the characters go: in place of the text, which leaves the field empty at every other key,
// so that the library marks it and takes the mark off again; or behind it, where no mark changes.
enum class Typed { InPlace, Behind };

// A character typed and taken back in turns.
void typeKeys(State &state, Typed where) {
  PaintWatch painted(QApplication::focusWidget());
  if (where == Typed::Behind) {
    pressKey(Qt::Key_End);
    painted.await();
  }
  bool isTyped = false;
  for (auto _ : state) {
    if (isTyped)
      pressKey(Qt::Key_Backspace);
    else
      pressKey(Qt::Key_A, QStringLiteral("a"));
    isTyped = !isTyped;
    painted.await();
  }
}

void keystroke(State &state, RunDialog run, int edits, Typed where) {
  const OnFirstFrame shown([&] {
    typeKeys(state, where);
    pressKey(Qt::Key_Escape);
  });
  run(edits);
}

const char *const kFrameWorkload = "123 edits, pop-up, list to first frame";
const char *const kKeyWorkload = "one keystroke to painted field";
const char *const kPlainKeyWorkload = "one keystroke that changes no mark";

[[maybe_unused]] const bool kGoals[] = {
    goal(kFrameWorkload, "qt", 1.05),
    goal(kKeyWorkload, "qt", 1.1),
    goal(kKeyWorkload, "with 10 edits", 1.05),
    goal(kPlainKeyWorkload, "qt", 1.1),
};

void registerWorkloads() {
  const auto frame = [](const char *who, RunDialog run) {
    benchmark::RegisterBenchmark(
        named(kFrameWorkload, who).c_str(),
        [run](State &state) { measureFirstFrame(state, [run] { run(kManyEdits); }); })
        ->UseManualTime()
        ->MinTime(0.3);
  };
  frame("korvel", runLibraryDialog);
  frame("qt", runToolkitDialog);
  const auto key = [](const char *workload, const char *who, RunDialog run, int edits,
                      Typed where) {
    benchmark::RegisterBenchmark(named(workload, who).c_str(), keystroke, run, edits, where)
        ->MinTime(0.3);
  };
  key(kKeyWorkload, "korvel", runLibraryDialog, kManyEdits, Typed::InPlace);
  key(kKeyWorkload, "qt", runToolkitDialog, kManyEdits, Typed::InPlace);
  key(kKeyWorkload, "with 10 edits", runLibraryDialog, kFewEdits, Typed::InPlace);
  key(kPlainKeyWorkload, "korvel", runLibraryDialog, kManyEdits, Typed::Behind);
  key(kPlainKeyWorkload, "qt", runToolkitDialog, kManyEdits, Typed::Behind);
}

}  // namespace

int main(int argc, char **argv) {
  return korvel::bench::runOffScreen(argc, argv, registerWorkloads);
}
