// SPDX-License-Identifier: MIT
// The Qt module's fields for people who see little or nothing: marks, names, and use by other ways
// than keys and clicks.
#include <cmath>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextDocumentFragment>
#include <QTimer>
#include <QToolTip>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/contrast.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {
namespace {

using test::contrast;
using test::qtDesktop;
using test::QtPerson;
using test::RecordedHits;
using test::widgetOf;
using Lines = std::vector<std::string>;

const QColor kMarkColor(0xC2, 0x78, 0x03);

class QtAccess : public testing::Test {
 protected:
  QtAccess() : dialog_(qtDesktop().newDialog({100, 100, 600, 500}, nullptr, "Fiche")) {
    dialog_->addItem(ItemKind::PushButton, {50, 360, 130, 380}, "OK");
    dialog_->addItem(ItemKind::PushButton, {150, 360, 230, 380}, "Annuler");
  }
  void TearDown() override {
    if (hasRun_) person_.finish();
  }

  Lines run() {
    hasRun_ = true;
    return hits_.recordUntilEscape(*dialog_, person_);
  }
  QWidget *window() { return widgetOf(dialog_->window()); }
  template <typename Widget = QWidget>
  Widget &widget(int item) {
    return dynamic_cast<Widget &>(*test::itemWidgets(window())[static_cast<std::size_t>(item) - 1]);
  }
  int addField(Rect rect, ItemKind kind = ItemKind::EditText) {
    return dialog_->addItem(kind, rect, "");
  }
  int addList(const std::vector<std::string> &rows, Rect rect = {20, 200, 150, 260}) {
    const int item = addField(rect, ItemKind::ListBox);
    dialog_->setEntries(item, rows);
    return item;
  }
  int addPopUp(const std::vector<std::string> &entries, Rect rect = {20, 100, 150, 114}) {
    const int item = addField(rect, ItemKind::PopUp);
    dialog_->setEntries(item, entries);
    return item;
  }
  QAccessibleInterface &access(int item) {
    return *QAccessible::queryAccessibleInterface(&widget(item));
  }
  QtPerson &person() { return person_; }
  // Something that happens while the dialog is up, by no key and no click.
  QtPerson &use(std::function<void()> action) {
    return person_.act(0, [action = std::move(action)](QWidget *) { action(); });
  }

  std::unique_ptr<Dialog> dialog_;
  RecordedHits hits_;

 private:
  QtPerson person_{"Fiche"};
  bool hasRun_ = false;
};

// ---- Marks ----

class QtMark : public QtAccess {
 protected:
  QImage shown(int item) { return widget(item).grab().toImage(); }
  static int barWidth(const QImage &image) {
    int width = 0;
    while (width < image.width() && image.pixelColor(width, image.height() / 2) == kMarkColor)
      ++width;
    return width;
  }
};

TEST_F(QtMark, IsSeenAndDescribedOnEveryKindOfField) {
  const int items[] = {addField({20, 20, 150, 35}), addPopUp({"Madame"}), addList({"a", "b"})};
  for (const int item : items) {
    auto *area = qobject_cast<QAbstractScrollArea *>(&widget(item));
    QWidget &surface = area != nullptr ? *area->viewport() : widget(item);
    const QImage before = surface.grab().toImage();
    EXPECT_EQ(barWidth(before), 0) << item;
    dialog_->setAcceptable(item, false);
    EXPECT_EQ(barWidth(surface.grab().toImage()), 2) << item;
    EXPECT_EQ(widget(item).accessibleDescription(), QStringLiteral("À compléter ou à corriger"));
    dialog_->setAcceptable(item, true);
    EXPECT_EQ(surface.grab().toImage(), before) << item;
    EXPECT_EQ(widget(item).accessibleDescription(), "");
  }
}

// As it is shown: a long one is rich text, which is wrapped.
QString toolTipOf(const QWidget &widget) {
  const QString told = widget.toolTip();
  return Qt::mightBeRichText(told) ? QTextDocumentFragment::fromHtml(told).toRawText() : told;
}

TEST_F(QtMark, TellsWhatIsExpectedWhereTheMouseRests) {
  const struct {
    Expected expected;
    int bound;
    const char *words;
  } kCases[] = {
      {Expected::Text, 0, "À compléter ou à corriger"},
      {Expected::TextUpTo, 40, "À compléter ou à corriger : 40 caractères au plus"},
      {Expected::TextUpTo, 1, "À compléter ou à corriger : un seul caractère"},
      {Expected::Date, 0, "À compléter ou à corriger : date (jour, mois, année à quatre chiffres)"},
      {Expected::Integer, 0, "À compléter ou à corriger : nombre entier"},
      {Expected::IntegerFrom, 1, "À compléter ou à corriger : nombre entier, 1 ou plus"},
      {Expected::Number, 0, "À compléter ou à corriger : nombre (par exemple 36,5)"},
      {Expected::NumberFrom, 0, "À compléter ou à corriger : nombre, 0 ou plus (par exemple 36,5)"},
      {Expected::NumberAbove, 0,
       "À compléter ou à corriger : nombre supérieur à 0 (par exemple 36,5)"},
  };
  const int item = addField({20, 20, 150, 35});
  widget(item).setToolTip("l'aide du formulaire");
  for (const auto &[expected, bound, words] : kCases) {
    dialog_->setExpected(item, expected, bound);
    EXPECT_EQ(widget(item).toolTip(), "l'aide du formulaire") << words;
    dialog_->setAcceptable(item, false);
    EXPECT_EQ(toolTipOf(widget(item)), words);
    EXPECT_EQ(widget(item).accessibleDescription(), words);
    dialog_->setAcceptable(item, true);
  }
}

TEST_F(QtMark, WhatIsExpectedMayChangeWhileTheMarkIsShown) {
  const int item = addField({20, 20, 150, 35});
  dialog_->setExpected(item, Expected::Integer, 0);
  dialog_->setAcceptable(item, false);
  const QString before = widget(item).toolTip();
  dialog_->setExpected(item, Expected::IntegerFrom, 7);
  EXPECT_NE(widget(item).toolTip(), before);
  EXPECT_TRUE(widget(item).toolTip().contains(QStringLiteral("7 ou plus")));
  EXPECT_EQ(widget(item).accessibleDescription(), widget(item).toolTip());
}

TEST_F(QtMark, APartOfADateTellsThatADateIsExpected) {
  const int parts[] = {addField({20, 20, 40, 35}), addField({50, 20, 70, 35}),
                       addField({80, 20, 120, 35})};
  dialog_->setDateParts(parts[0], parts[1], parts[2]);
  for (const int part : parts) {
    dialog_->setAcceptable(part, false);
    EXPECT_TRUE(toolTipOf(widget(part)).contains("date (jour,")) << part;
  }
}

class QtGreyOk : public QtAccess {
 protected:
  QtGreyOk() {
    dialog_->addStaticText({20, 50, 100, 65}, "Entr\x8E le :");
    for (int n = 0; n < 3; ++n) date_[n] = addField({110 + 50 * n, 50, 140 + 50 * n, 65});
    dialog_->setDateParts(date_[0], date_[1], date_[2]);
    dialog_->addStaticText({20, 20, 100, 35}, "Poids <kg> & taille");
    weight_ = addField({110, 20, 200, 35});
    hits_.on(weight_, [this] { setAll(dialog_->text(weight_) == "7"); });
  }
  // As the library does: the button first.
  void setAll(bool acceptable) {
    dialog_->setEnabled(kOkItem, acceptable);
    for (const int part : date_) dialog_->setAcceptable(part, acceptable);
    dialog_->setAcceptable(weight_, acceptable);
  }
  void expectWhy(const char *words) {
    EXPECT_EQ(toolTipOf(widget(kOkItem)), words);
    EXPECT_EQ(widget(kOkItem).accessibleDescription(), words);
  }

  int date_[3] = {};
  int weight_ = 0;
};

TEST_F(QtGreyOk, NamesTheFirstFieldThatKeepsItSo) {
  setAll(false);
  person().check([this] { expectWhy("À compléter ou à corriger : Entré le"); });
  hits_.on(date_[0], [this] {
    for (const int part : date_) dialog_->setAcceptable(part, true);
  });
  person().type(date_[0], "1").check([this] {
    expectWhy("À compléter ou à corriger : Poids <kg> & taille");
  });
  person().type(weight_, "7").check([this] { expectWhy(""); });
  person().type(weight_, "0").check([this] { expectWhy("À compléter ou à corriger : Entré le"); });
  run();
}

TEST_F(QtGreyOk, ALongNameIsWrapped) {
  const std::string label(100, 'm');
  dialog_->addStaticText({300, 20, 380, 35}, label);
  const int field = addField({390, 20, 420, 35});
  dialog_->setEnabled(kOkItem, false);
  dialog_->setAcceptable(field, false);
  person().check([&] {
    EXPECT_TRUE(Qt::mightBeRichText(widget(kOkItem).toolTip()));
    expectWhy(("À compléter ou à corriger : " + label).c_str());
  });
  run();
}

TEST_F(QtGreyOk, TellsThatThereIsSuchAFieldWhereNoneIsShown) {
  dialog_->setEnabled(kOkItem, false);
  person().check([this] { expectWhy("À compléter ou à corriger"); });
  run();
}

TEST_F(QtGreyOk, ADateWithoutALabelIsNamedByItsFirstPart) {
  const int other = addField({300, 140, 320, 155});
  dialog_->setDateParts(other, 0, 0);
  dialog_->setEnabled(kOkItem, false);
  dialog_->setAcceptable(other, false);
  person().check([this] { expectWhy("À compléter ou à corriger : jour"); });
  run();
}

TEST_F(QtGreyOk, HasItsOwnWordsBackWhenItIsNot) {
  widget(kOkItem).setToolTip("Enregistre la fiche");
  widget(kOkItem).setAccessibleDescription("Enregistre");
  setAll(false);
  person().type(weight_, "7").check([this] {
    EXPECT_EQ(widget(kOkItem).toolTip(), "Enregistre la fiche");
    EXPECT_EQ(widget(kOkItem).accessibleDescription(), "Enregistre");
  });
  run();
}

// As when the mouse rests on the widget.
void restOn(QWidget &widget) {
  const QPoint middle = widget.rect().center();
  const QPoint place = widget.mapToGlobal(middle);
  QCursor::setPos(place);
  widget.setAttribute(Qt::WA_UnderMouse);
  QHelpEvent event(QEvent::ToolTip, middle, place);
  QCoreApplication::sendEvent(&widget, &event);
}

TEST_F(QtGreyOk, ATooltipThatIsUpFollows) {
  setAll(false);
  person().check([this] {
    restOn(widget(kOkItem));
    EXPECT_TRUE(QToolTip::text().contains("Entré le")) << QToolTip::text().toStdString();
  });
  hits_.on(date_[0], [this] {
    for (const int part : date_) dialog_->setAcceptable(part, true);
  });
  person().type(date_[0], "1").check([] {
    EXPECT_TRUE(QToolTip::isVisible());
    EXPECT_TRUE(QToolTip::text().contains("Poids")) << QToolTip::text().toStdString();
  });
  person().type(weight_, "7").check([this] {
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
    widget(kOkItem).setAttribute(Qt::WA_UnderMouse, false);
  });
  run();
}

TEST_F(QtMark, OtherItemsHaveNone) {
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 50, 100, 62}, "Fumeur");
  for (const int item : {kOkItem, box}) {
    const QImage before = shown(item);
    dialog_->setAcceptable(item, false);
    EXPECT_EQ(shown(item), before);
    EXPECT_EQ(widget(item).accessibleDescription(), "");
  }
  dialog_->setAcceptable(0, false);
  dialog_->setAcceptable(99, false);
}

TEST_F(QtMark, LeavesTheTextInItsPlaceAndInView) {
  const int item = addField({20, 20, 150, 35});
  dialog_->setText(item, "Mmmm");
  const QImage before = shown(item);
  dialog_->setAcceptable(item, false);
  const QImage marked = shown(item);
  const QRect text(3, 3, 130, 15);  // the item's own rectangle
  EXPECT_EQ(marked.copy(text), before.copy(text));
  EXPECT_NE(marked, before);
}

TEST_F(QtMark, LeavesTheFocusFrameInView) {
  const int first = addField({20, 20, 150, 35});
  const int second = addField({20, 60, 150, 75});
  person().check([&] {
    for (const int item : {first, second}) dialog_->setAcceptable(item, false);
    const QImage focused = shown(first), idle = shown(second);
    int differing = 0;
    for (int y = 0; y < focused.height(); ++y)
      differing += focused.pixel(focused.width() - 1, y) != idle.pixel(idle.width() - 1, y) ? 1 : 0;
    EXPECT_GT(differing, focused.height() / 2) << "the right edge tells where the focus is";
    EXPECT_EQ(barWidth(focused), 2);
    EXPECT_EQ(barWidth(idle), 2);
  });
  run();
}

// Web accessibility guidelines ask for a contrast of 3 to 1 where a line carries a meaning.
TEST_F(QtMark, StandsOutFromLightAndDarkGrounds) {
  EXPECT_GE(contrast(kMarkColor, Qt::white), 3.0);
  EXPECT_GE(contrast(kMarkColor, QColor(0x23, 0x26, 0x29)), 3.0);
}

// Without red or green receptors, only blue against yellow remains of a hue.
TEST_F(QtMark, DiffersFromTheFocusFrameInBlueAgainstYellow) {
  const QColor focus = QApplication::palette().color(QPalette::Highlight);
  const auto blueness = [](const QColor &c) { return c.blueF() - (c.redF() + c.greenF()) / 2; };
  EXPECT_GT(blueness(focus) - blueness(kMarkColor), 0.5);
}

TEST_F(QtMark, StaysInPlaceWhenAListScrolls) {
  std::vector<std::string> rows;
  for (int n = 0; n < 50; ++n) rows.push_back(std::to_string(n));
  const int item = addList(rows);
  person().check([&] {
    dialog_->setAcceptable(item, false);
    auto &list = widget<QListView>(item);
    list.viewport()->repaint();
    list.verticalScrollBar()->setValue(3);
    QCoreApplication::processEvents();
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(window()->winId()).toImage();
    const QPoint corner = list.viewport()->mapTo(window(), QPoint(0, 0));
    const QImage shown = screen.copy(QRect(corner, list.viewport()->size()));
    EXPECT_EQ(shown, list.viewport()->grab().toImage().convertToFormat(shown.format()));
  });
  run();
}

TEST_F(QtMark, MarkingIsNoHit) {
  const int item = addField({20, 20, 150, 35});
  use([=, this] {
    dialog_->setAcceptable(item, false);
    dialog_->setAcceptable(item, true);
  });
  EXPECT_EQ(run(), Lines{});
}

// ---- Names ----

class QtNames : public QtAccess {
 protected:
  QString nameOf(int item) { return widget(item).accessibleName(); }
  void expectNames(const std::vector<std::pair<int, const char *>> &names) {
    person().check([this, names] {
      for (const auto &[item, name] : names)
        EXPECT_EQ(nameOf(item), QString::fromUtf8(name)) << item;
    });
    run();
  }
};

TEST_F(QtNames, AFieldIsNamedByTheTextOnItsLeft) {
  dialog_->addStaticText({20, 20, 60, 35}, "Nom");
  dialog_->addStaticText({20, 50, 60, 65}, "Pr\xE9nom :");
  const int name = addField({70, 20, 170, 35});
  const int firstName = addField({70, 50, 170, 65});
  const int title = addPopUp({"Madame"}, {250, 20, 330, 34});
  dialog_->addStaticText({190, 20, 240, 35}, "Titre");
  expectNames({{name, "Nom"}, {firstName, "Prénom"}, {title, "Titre"}});
}

TEST_F(QtNames, OfTwoTextsOnItsLeftTheNearerOneNamesAField) {
  dialog_->addStaticText({20, 20, 60, 35}, "Nom");
  dialog_->addStaticText({65, 20, 100, 35}, "usuel");
  const int name = addField({105, 20, 170, 35});
  dialog_->addStaticText({65, 50, 100, 65}, "fixe");
  dialog_->addStaticText({20, 50, 60, 65}, "T\xE9l.");
  const int number = addField({105, 50, 170, 65});
  expectNames({{name, "usuel"}, {number, "fixe"}});
}

TEST_F(QtNames, AFieldWithNothingOnItsLeftIsNamedByTheTextAboveIt) {
  dialog_->addStaticText({20, 20, 120, 35}, "Adresse");
  const int address = addField({20, 40, 170, 55});
  dialog_->addStaticText({200, 20, 300, 35}, "Motif de la visite");
  const int reasons = addList({"a", "b"}, {200, 40, 330, 120});
  expectNames({{address, "Adresse"}, {reasons, "Motif de la visite"}});
}

TEST_F(QtNames, OfTwoTextsAboveItTheNearerOneNamesAField) {
  dialog_->addStaticText({20, 16, 120, 26}, "Patient");
  dialog_->addStaticText({20, 22, 120, 32}, "Adresse");
  const int address = addField({20, 40, 170, 55});
  expectNames({{address, "Adresse"}});
}

TEST_F(QtNames, AHeadingAboveComesBeforeTheLabelOfTheRow) {
  dialog_->addStaticText({70, 20, 110, 35}, "Matin");
  dialog_->addStaticText({130, 20, 170, 35}, "Soir");
  dialog_->addStaticText({20, 40, 60, 55}, "Tension");
  const int morning = addField({70, 40, 110, 55});
  const int evening = addField({130, 40, 170, 55});
  expectNames({{morning, "Tension"}, {evening, "Soir"}});
}

TEST_F(QtNames, FieldsOfOneRowShareItsLabel) {
  dialog_->addStaticText({20, 20, 60, 35}, "T\xE9l.");
  const int first = addField({70, 20, 110, 35});
  const int second = addField({130, 20, 170, 35});
  expectNames({{first, "Tél."}, {second, "Tél."}});
}

TEST_F(QtNames, ATallListIsNamedByTheTextBesideItsFirstLine) {
  dialog_->addStaticText({20, 60, 60, 75}, "Ville");
  dialog_->addStaticText({20, 120, 60, 135}, "Autre");
  const int list = addList({"a"}, {70, 60, 170, 150});
  expectNames({{list, "Ville"}});
}

TEST_F(QtNames, ThePartsOfADateSayWhichTheyAre) {
  dialog_->addStaticText({20, 20, 60, 35}, "N\xE9(e) le");
  const int day = addField({70, 20, 90, 35});
  const int month = addField({100, 20, 120, 35});
  const int year = addField({130, 20, 170, 35});
  const int alone[] = {addField({70, 120, 90, 135}), addField({100, 120, 120, 135}),
                       addField({130, 120, 170, 135})};
  dialog_->setDateParts(day, month, year);
  dialog_->setDateParts(alone[0], alone[1], alone[2]);
  dialog_->setDateParts(0, 99, kOkItem);
  expectNames({{day, "Né(e) le : jour"},
               {month, "Né(e) le : mois"},
               {year, "Né(e) le : année"},
               {alone[0], "jour"},
               {alone[1], "mois"},
               {alone[2], "année"},
               {kOkItem, "OK"}});
}

TEST_F(QtNames, AFieldWithoutATextIsNamedByItsGroup) {
  dialog_->addGroupBox({10, 10, 590, 340}, "Dossier");
  dialog_->addGroupBox({20, 20, 290, 200}, "Adresse :");
  dialog_->addGroupBox({300, 20, 580, 200}, "");
  const int street = addField({40, 40, 170, 55});
  const int other = addField({320, 40, 450, 55});
  const int outside = addField({40, 345, 170, 355});
  expectNames({{street, "Adresse"}, {other, "Dossier"}, {outside, ""}});
}

TEST_F(QtNames, ATextInsideAGroupNamesNothingOutside) {
  dialog_->addGroupBox({20, 20, 200, 100}, "Identit\xE9");
  dialog_->addStaticText({30, 45, 80, 60}, "Nom");
  dialog_->addStaticText({30, 80, 80, 95}, "Note");
  dialog_->addGroupBox({210, 20, 400, 100}, "Adresse");
  const int street = addField({220, 45, 330, 60});
  const int below = addField({30, 103, 130, 118});
  expectNames({{street, "Adresse"}, {below, ""}});
}

TEST_F(QtNames, ATextInTheGroupComesBeforeItsTitle) {
  dialog_->addGroupBox({20, 10, 290, 200}, "Adresse");
  dialog_->addStaticText({30, 45, 80, 60}, "Rue");
  const int street = addField({100, 45, 250, 60});
  expectNames({{street, "Rue"}});
}

TEST_F(QtNames, FieldsUnderEachOtherShareTheirHeading) {
  dialog_->addStaticText({10, 5, 100, 18}, "Dossier");
  dialog_->addGroupBox({20, 20, 290, 300}, "Patient");
  dialog_->addStaticText({40, 40, 170, 55}, "Adresse");
  dialog_->addStaticText({40, 130, 80, 145}, "Ville");
  const int first = addField({40, 60, 170, 75});
  const int second = addField({40, 80, 170, 95});
  const int third = addField({40, 100, 170, 115});
  const int town = addField({90, 130, 170, 145});
  const int last = addField({40, 180, 80, 195});
  expectNames({{first, "Adresse"},
               {second, "Adresse"},
               {third, "Adresse"},
               {town, "Ville"},
               {last, "Adresse"}});
}

TEST_F(QtNames, TheApplicationNamesAFieldBeforeAllElse) {
  dialog_->addStaticText({20, 20, 60, 35}, "Nom");
  const int name = addField({70, 20, 170, 35});
  widget(name).setAccessibleName("Patronyme");
  const int day = addField({70, 50, 90, 65});
  const int month = addField({100, 50, 120, 65});
  const int year = addField({130, 50, 170, 65});
  dialog_->setDateParts(day, month, year);
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 80, 100, 92}, "");
  dialog_->setName(name, "Nom d'usage");
  for (const int part : {day, month, year}) dialog_->setName(part, "N\xE9(e) le");
  dialog_->setName(box, "Fumeur");
  expectNames({{name, "Nom d'usage"},
               {day, "Né(e) le : jour"},
               {month, "Né(e) le : mois"},
               {year, "Né(e) le : année"},
               {box, "Fumeur"}});
}

TEST_F(QtNames, AFieldFarFromEveryTextHasNoName) {
  dialog_->addStaticText({20, 20, 60, 35}, "Nom");
  dialog_->addStaticText({300, 120, 360, 135}, "plus loin");
  const int field = addField({70, 120, 170, 135});
  expectNames({{field, ""}});
}

TEST_F(QtNames, AnAmpersandOfAStaticTextIsACharacter) {
  dialog_->addStaticText({20, 20, 60, 35}, "Poids & taille");
  const int field = addField({70, 20, 170, 35});
  expectNames({{field, "Poids & taille"}});
}

TEST_F(QtNames, ALabelMadeForAFieldComesFirst) {
  dialog_->addStaticText({20, 20, 60, 35}, "Nom");
  const int field = addField({70, 20, 170, 35});
  auto *label = new QLabel("Nom de &naissance :", window());
  label->setBuddy(&widget(field));
  label->setGeometry(300, 300, 100, 20);
  expectNames({{field, "Nom de naissance"}});
}

TEST_F(QtNames, ARichLabelIsReadAsItsWords) {
  auto *label = new QLabel("<b>Nom</b> <i>complet</i>", window());
  label->setGeometry(20, 20, 45, 15);
  const int field = addField({70, 20, 170, 35});
  expectNames({{field, "Nom complet"}});
}

TEST_F(QtNames, ANameThatTheFieldHasIsKept) {
  dialog_->addStaticText({20, 20, 60, 35}, "Nom");
  const int field = addField({70, 20, 170, 35});
  widget(field).setAccessibleName("Patronyme");
  expectNames({{field, "Patronyme"}});
}

// ---- Dialogs made from forms ----

constexpr const char *kForm = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0"><class>F</class><widget class="QDialog" name="F">
<property name="geometry"><rect><x>0</x><y>0</y><width>400</width><height>200</height></rect></property>
<widget class="QPushButton" name="ok"><property name="item" stdset="0"><number>1</number></property>
<property name="geometry"><rect><x>50</x><y>160</y><width>80</width><height>24</height></rect></property></widget>
<widget class="QPushButton" name="no"><property name="item" stdset="0"><number>2</number></property>
<property name="geometry"><rect><x>150</x><y>160</y><width>80</width><height>24</height></rect></property></widget>
<widget class="QGroupBox" name="box">
<property name="geometry"><rect><x>0</x><y>0</y><width>400</width><height>140</height></rect></property>
<widget class="QLabel" name="label"><property name="text"><string>&amp;Nom de naissance :</string></property>
<property name="buddy"><cstring>name</cstring></property>
<property name="geometry"><rect><x>300</x><y>90</y><width>90</width><height>20</height></rect></property></widget>
<widget class="QLineEdit" name="name"><property name="item" stdset="0"><number>3</number></property>
<property name="geometry"><rect><x>90</x><y>20</y><width>100</width><height>24</height></rect></property></widget>
<widget class="QLabel" name="beside"><property name="text"><string>Titre</string></property>
<property name="geometry"><rect><x>20</x><y>60</y><width>60</width><height>20</height></rect></property></widget>
<widget class="QComboBox" name="title"><property name="item" stdset="0"><number>7</number></property>
<property name="geometry"><rect><x>90</x><y>60</y><width>100</width><height>24</height></rect></property>
<item><property name="text"><string>Madame</string></property></item></widget>
<widget class="QCheckBox" name="smokes"><property name="item" stdset="0"><number>9</number></property>
<property name="checked"><bool>true</bool></property>
<property name="geometry"><rect><x>90</x><y>100</y><width>100</width><height>24</height></rect></property></widget>
</widget></widget></ui>
)";

class QtFormAccess : public QtAccess {
 protected:
  QtFormAccess() {
    std::string problem;
    const test::TemporaryFolder folder;
    dialog_ = qtDesktop().newDialogFromTemplate(folder.add("f.ui", kForm), nullptr, problem);
    EXPECT_EQ(problem, "");
    dialog_->setTitle("Fiche");
  }
  template <typename Widget = QWidget>
  Widget &named(const char *name) {
    return *window()->findChild<Widget *>(name);
  }
};

constexpr const char *kPages = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0"><class>F</class><widget class="QDialog" name="F">
<property name="geometry"><rect><x>0</x><y>0</y><width>400</width><height>200</height></rect></property>
<widget class="QTabWidget" name="tabs">
<property name="geometry"><rect><x>0</x><y>0</y><width>390</width><height>150</height></rect></property>
<widget class="QWidget" name="one"><attribute name="title"><string>Un</string></attribute>
<widget class="QLabel" name="label"><property name="text"><string>Ville</string></property>
<property name="geometry"><rect><x>10</x><y>10</y><width>50</width><height>20</height></rect></property></widget>
<widget class="QLineEdit" name="town"><property name="item" stdset="0"><number>3</number></property>
<property name="geometry"><rect><x>70</x><y>10</y><width>90</width><height>22</height></rect></property></widget></widget>
<widget class="QWidget" name="two"><attribute name="title"><string>Deux</string></attribute>
<widget class="QLineEdit" name="other"><property name="item" stdset="0"><number>4</number></property>
<property name="geometry"><rect><x>70</x><y>10</y><width>90</width><height>22</height></rect></property></widget></widget>
</widget></widget></ui>
)";

TEST_F(QtFormAccess, ATextNamesNothingOnAnotherPage) {
  std::string problem;
  const test::TemporaryFolder folder;
  dialog_ = qtDesktop().newDialogFromTemplate(folder.add("f.ui", kPages), nullptr, problem);
  ASSERT_EQ(problem, "");
  dialog_->setTitle("Fiche");
  use([this] {
    EXPECT_EQ(named("town").accessibleName(), "Ville");
    EXPECT_EQ(named("other").accessibleName(), "");
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtFormAccess, ItsFieldsAreNamedAndMarked) {
  use([this] {
    EXPECT_EQ(named("name").accessibleName(), "Nom de naissance");
    EXPECT_EQ(named("title").accessibleName(), "Titre");
    for (const auto &[item, name] : {std::pair(3, "name"), std::pair(7, "title")}) {
      const QImage before = named(name).grab().toImage();
      dialog_->setAcceptable(item, false);
      EXPECT_EQ(named(name).accessibleDescription(), QStringLiteral("À compléter ou à corriger"));
      EXPECT_EQ(named(name).grab().toImage().pixelColor(0, 12), kMarkColor);
      dialog_->setAcceptable(item, true);
      EXPECT_EQ(named(name).grab().toImage(), before);
    }
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtFormAccess, ItsFieldsAreUsedByAScreenReader) {
  EXPECT_EQ(dialog_->value(9), 1) << "as designed";
  use([this] {
    QAccessible::queryAccessibleInterface(&named("name"))
        ->editableTextInterface()
        ->insertText(0, "Anne");
    QAccessible::queryAccessibleInterface(&named("title"))->setText(QAccessible::Value, "Madame");
    QAccessible::queryAccessibleInterface(&named("smokes"))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::toggleAction());
  });
  EXPECT_EQ(run(), (Lines{"3 text Anne", "7 value 1", "9 value 1"}));
}

// ---- Use by a screen reader ----

TEST_F(QtAccess, RolesAndStatesAreThoseOfTheItems) {
  const int text = addField({20, 20, 150, 35});
  const int secret = addField({20, 50, 150, 65});
  dialog_->setSecret(secret);
  const int popUp = addPopUp({"Madame"});
  const int list = addList({"a"});
  EXPECT_EQ(access(text).role(), QAccessible::EditableText);
  EXPECT_TRUE(access(text).state().editable);
  EXPECT_FALSE(access(text).state().passwordEdit);
  EXPECT_TRUE(access(secret).state().passwordEdit);
  const int lines = addField({20, 270, 150, 320}), secretLines = addField({160, 270, 290, 320});
  dialog_->setSecret(secretLines);
  EXPECT_EQ(access(lines).role(), QAccessible::EditableText);
  EXPECT_TRUE(access(lines).state().multiLine);
  EXPECT_FALSE(access(text).state().multiLine);
  EXPECT_TRUE(access(secretLines).state().passwordEdit);
  EXPECT_FALSE(access(secretLines).state().multiLine);
  EXPECT_EQ(access(lines).childCount(), 0) << "scroll bars are no fields";
  EXPECT_EQ(access(popUp).role(), QAccessible::ComboBox);
  EXPECT_EQ(access(list).role(), QAccessible::List);
}

// A field of one line and one of several.
class QtTextAccess : public QtAccess, public testing::WithParamInterface<Rect> {};
INSTANTIATE_TEST_SUITE_P(Both, QtTextAccess,
                         testing::Values(Rect{20, 20, 150, 35}, Rect{20, 20, 150, 80}));

TEST_P(QtTextAccess, ATextIsReadAndItsCharactersHavePlaces) {
  const int item = addField(GetParam());
  dialog_->setText(item, "D\x8Ej\x88 vu");
  use([=, this] {
    QAccessibleTextInterface &text = *access(item).textInterface();
    EXPECT_EQ(access(item).text(QAccessible::Value), QStringLiteral("Déjà vu"));
    EXPECT_EQ(text.characterCount(), 7);
    EXPECT_EQ(text.text(0, 2), QStringLiteral("Dé"));
    EXPECT_EQ(text.text(5, 99), "vu");
    EXPECT_EQ(text.text(3, 2), "");
    text.setCursorPosition(2);
    EXPECT_EQ(text.cursorPosition(), 2);
    text.setSelection(0, 1, 4);
    int begin = -1, end = -1;
    text.selection(1, &begin, &end);
    EXPECT_EQ(begin, 0) << "there is no second selection";
    EXPECT_EQ(end, 0);
    text.selection(0, &begin, &end);
    EXPECT_EQ(text.selectionCount(), 1);
    EXPECT_EQ(begin, 1);
    EXPECT_EQ(end, 4);
    text.addSelection(2, 5);
    text.selection(0, &begin, &end);
    EXPECT_EQ(begin, 2) << "there is one selection at most";
    EXPECT_EQ(end, 5);
    text.removeSelection(0);
    EXPECT_EQ(text.selectionCount(), 0);
    text.selection(0, &begin, &end);
    EXPECT_EQ(begin, 0);
    EXPECT_EQ(end, 0);
    EXPECT_EQ(text.attributes(3, &begin, &end), "");
    EXPECT_EQ(begin, 3);
    EXPECT_EQ(end, 3);
    text.scrollToSubstring(0, 2);
    for (const int offset : {0, 3, 6}) {
      const QRect place = text.characterRect(offset);
      EXPECT_EQ(text.offsetAtPoint({place.left() + 1, place.center().y()}), offset);
      EXPECT_TRUE(widget(item).rect().contains(widget(item).mapFromGlobal(place.center())));
      EXPECT_LT(text.characterRect(offset).left(), text.characterRect(6).right());
    }
    EXPECT_FALSE(text.characterRect(7).isValid());
  });
  EXPECT_EQ(run(), Lines{}) << "to look is no hit";
}

TEST_F(QtAccess, WhatElseIsSaidOfATextLeavesItAlone) {
  const int item = addField({20, 20, 150, 35});
  dialog_->setText(item, "Dupont");
  use([=, this] { access(item).setText(QAccessible::Description, "Nom"); });
  EXPECT_EQ(run(), Lines{});
  EXPECT_EQ(dialog_->text(item), "Dupont");
}

TEST_F(QtAccess, TheCharactersOfLaterLinesLieBelow) {
  const int item = addField({20, 20, 150, 80});
  dialog_->setText(item, "haut\nbas");
  use([=, this] {
    QAccessibleTextInterface &text = *access(item).textInterface();
    EXPECT_EQ(access(item).text(QAccessible::Value), "haut\nbas");
    const QRect first = text.characterRect(0), second = text.characterRect(5);
    EXPECT_EQ(second.left(), first.left());
    EXPECT_GE(second.top(), first.bottom());
    EXPECT_EQ(text.offsetAtPoint(second.center()), 5);
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_P(QtTextAccess, AChangeOfATextIsAHit) {
  const int item = addField(GetParam());
  dialog_->setText(item, "Duont");
  use([=, this] {
    QAccessibleEditableTextInterface &text = *access(item).editableTextInterface();
    text.insertText(2, "p");
    text.deleteText(0, 3);
    text.replaceText(0, 99, "Anne\n");
    text.replaceText(1, 1, "");  // nothing
    access(item).setText(QAccessible::Value, "fin");
  });
  EXPECT_EQ(run(), (Lines{"3 text Dupont", "3 text ont", "3 text Anne", "3 text fin"}));
}

TEST_F(QtAccess, AChangeToWhatHasNoByteIsRefusedWhole) {
  const int item = addField({20, 20, 150, 35});
  dialog_->setText(item, "Dupont");
  use([=, this] {
    access(item).editableTextInterface()->insertText(2, QStringLiteral("a中b"));
    access(item).editableTextInterface()->replaceText(0, 6, QStringLiteral("Ž"));
    EXPECT_EQ(widget<QLineEdit>(item).text(), "Dupont");
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtAccess, ADisabledFieldIsNotChanged) {
  const int item = addField({20, 20, 150, 35});
  const int popUp = addPopUp({"Madame", "Monsieur"});
  addField({20, 50, 150, 65});
  use([=, this] {
    dialog_->setEnabled(item, false);
    dialog_->setEnabled(popUp, false);
    access(item).editableTextInterface()->insertText(0, "x");
    access(popUp).editableTextInterface()->replaceText(0, 0, "Madame");
  });
  EXPECT_EQ(run(), Lines{});
  EXPECT_EQ(dialog_->text(item), "");
  EXPECT_EQ(dialog_->value(popUp), 0);
}

TEST_F(QtAccess, BehindAnotherDialogNothingIsChanged) {
  const int item = addField({20, 20, 150, 35});
  const int popUp = addPopUp({"Madame", "Monsieur"});
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 150, 100, 162}, "Fumeur");
  const int list = addList({"a", "b"});
  use([=, this] {
    QDialog front(window());
    front.setModal(true);
    QTimer::singleShot(0, &front, [&] {
      access(item).editableTextInterface()->insertText(0, "x");
      access(popUp).setText(QAccessible::Value, "Madame");
      access(box).actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
      widget<QListView>(list).selectionModel()->select(widget<QListView>(list).model()->index(1, 0),
                                                       QItemSelectionModel::ClearAndSelect);
      front.reject();
    });
    front.exec();
    widget<QListView>(list).clearSelection();
  });
  EXPECT_EQ(run(), Lines{});
  EXPECT_EQ(dialog_->text(item), "");
  EXPECT_EQ(dialog_->value(box), 0);
}

TEST_F(QtAccess, ASecretGivesOutItsStarsOnly) {
  const int item = addField({20, 20, 150, 35});
  dialog_->setSecret(item);
  QStringList given;
  hits_.on(item, [&] {
    given << access(item).text(QAccessible::Value)
          << access(item).textInterface()->text(0, access(item).textInterface()->characterCount());
    dialog_->setText(item, std::string(dialog_->text(item).size(), '*'));
  });
  person().type(item, "ab");
  use([=, this] { access(item).editableTextInterface()->insertText(2, "cd"); });
  person().select(item, 1, 3).type(item, "e");
  EXPECT_EQ(run(), (Lines{"3 text a", "3 text *b", "3 text **cd", "3 text *e*"}));
  EXPECT_EQ(given, (QStringList{"*", "*", "**", "**", "****", "****", "***", "***"}));
}

TEST_F(QtAccess, APopUpGivesOutItsChoiceAndItsEntries) {
  const int item = addPopUp({"Madame", "Ma\xEEtre"});
  dialog_->setValue(item, 2);
  EXPECT_EQ(access(item).text(QAccessible::Value), QStringLiteral("Maître"));
  EXPECT_EQ(access(item).textInterface()->text(0, 99), QStringLiteral("Maître"));
  ASSERT_EQ(access(item).childCount(), 1);
  QAccessibleInterface *entries = access(item).child(0);
  ASSERT_EQ(entries->childCount(), 2);
  EXPECT_EQ(entries->child(0)->text(QAccessible::Name), "Madame");
  EXPECT_EQ(access(item).indexOfChild(entries), 0);
  EXPECT_EQ(entries->parent(), &access(item));
}

TEST_F(QtAccess, AChoiceInAPopUpIsAHit) {
  const int item = addPopUp({"Madame", "Monsieur", "Docteur"});
  use([=, this] {
    QAccessibleActionInterface &actions = *access(item).actionInterface();
    access(item).setText(QAccessible::Value, "Monsieur");
    actions.doAction(QAccessibleActionInterface::increaseAction());
    actions.doAction(QAccessibleActionInterface::increaseAction());  // there is no next
    actions.doAction(QAccessibleActionInterface::decreaseAction());
    access(item).setText(QAccessible::Value, "Personne");
    access(item).setText(QAccessible::Value, "madame");
    access(item).editableTextInterface()->replaceText(-1, 99, "Docteur");
  });
  EXPECT_EQ(run(), (Lines{"3 value 2", "3 value 3", "3 value 2", "3 value 3"}));
}

TEST_F(QtAccess, APopUpHasNeitherCursorNorSelection) {
  const int item = addPopUp({"Madame", "Monsieur"});
  dialog_->setValue(item, 1);
  use([=, this] {
    QAccessibleTextInterface &text = *access(item).textInterface();
    text.setCursorPosition(2);
    text.setSelection(0, 1, 3);
    text.addSelection(1, 3);
    text.removeSelection(0);
    EXPECT_EQ(text.cursorPosition(), 0);
    EXPECT_EQ(text.selectionCount(), 0);
    int begin = -1, end = -1;
    text.selection(0, &begin, &end);
    EXPECT_EQ(begin, 0);
    EXPECT_EQ(end, 0);
    const QRect place = access(item).rect();
    EXPECT_EQ(text.characterRect(0), place);
    EXPECT_EQ(text.offsetAtPoint(place.center()), -1);
    EXPECT_EQ(access(item).childAt(place.center().x(), place.center().y()), nullptr);
  });
  EXPECT_EQ(run(), Lines{});
  EXPECT_EQ(dialog_->value(item), 1);
}

TEST_F(QtAccess, APopUpTakesTheFocus) {
  addField({20, 20, 150, 35});
  const int item = addPopUp({"Madame", "Monsieur"});
  use([=, this] {
    EXPECT_FALSE(widget(item).hasFocus());
    access(item).actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(widget(item).hasFocus());
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtAccess, APopUpIsOpenedAndClosed) {
  const int item = addPopUp({"Madame", "Monsieur"});
  use([=, this] {
    QAccessibleActionInterface &actions = *access(item).actionInterface();
    actions.doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(widget<QComboBox>(item).view()->isVisible());
    EXPECT_TRUE(access(item).state().expanded);
    actions.doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_FALSE(widget<QComboBox>(item).view()->isVisible());
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtAccess, ARowSelectedByAScreenReaderIsAHit) {
  const int item = addList({"a", "b", "c"});
  use([=, this] {
    QAccessibleInterface *row = access(item).child(1);
    ASSERT_EQ(row->text(QAccessible::Name), "b");
    row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  });
  EXPECT_EQ(run(), (Lines{"3 row 1 b"}));
}

TEST_F(QtAccess, ACheckBoxToggledByAScreenReaderIsAHitAndLeftToTheProgram) {
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 150, 100, 162}, "Fumeur");
  hits_.on(box, [&] { dialog_->setValue(box, 1 - dialog_->value(box)); });
  use([=, this] {
    QAccessibleActionInterface &actions = *access(box).actionInterface();
    actions.doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(dialog_->value(box), 1);
    actions.doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(dialog_->value(box), 0);
  });
  EXPECT_EQ(run(), (Lines{"3 value 0", "3 value 1"}));
}

}  // namespace
}  // namespace korvel::platform
