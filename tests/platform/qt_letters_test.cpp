// SPDX-License-Identifier: MIT
// The letters that press buttons and check boxes with the Alt key.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {
namespace {

using test::qtDesktop;
using test::QtPerson;
using test::RecordedHits;
using test::widgetOf;
using Lines = std::vector<std::string>;

class QtLetters : public testing::Test {
 protected:
  QtLetters() : dialog_(qtDesktop().newDialog({100, 100, 600, 500}, nullptr, "Fiche")) {
    dialog_->addItem(ItemKind::PushButton, {50, 360, 130, 380}, "OK");
    dialog_->addItem(ItemKind::PushButton, {150, 360, 230, 380}, "Annuler");
  }
  void TearDown() override { person_.finish(); }

  int add(ItemKind kind, const char *label) {
    top_ += 30;
    return dialog_->addItem(kind, {20, top_, 150, top_ + 20}, label);
  }
  QtPerson &press(Qt::Key letter, Qt::KeyboardModifiers others = {}) {
    return person_.key(letter, Qt::AltModifier | others);
  }
  Lines run() { return hits_.recordUntilEscape(*dialog_, person_); }
  QWidget *window() { return widgetOf(dialog_->window()); }
  QWidget &widget(int item) {
    return *test::itemWidgets(window())[static_cast<std::size_t>(item) - 1];
  }
  QImage shown(int item) { return widget(item).grab().toImage(); }

  std::unique_ptr<Dialog> dialog_;
  RecordedHits hits_;
  QtPerson person_{"Fiche"};

 private:
  int top_ = 0;
};

TEST_F(QtLetters, EachButtonHasTheFirstLetterThatNoneBeforeItHas) {
  add(ItemKind::PushButton, "Appeler");         // 3: P
  add(ItemKind::CheckBox, "\xC9tat & suite");   // 4: E
  add(ItemKind::PushButton, "Effacer");         // 5: F
  add(ItemKind::CheckBox, "1 \xE7 \xE9t\xE9");  // 6: C, as the c of a French keyboard
  add(ItemKind::PushButton, "\xC9t\xE9");       // 7: T
  add(ItemKind::PushButton, "Toto");            // 8: none is left
  add(ItemKind::PushButton, "12 + 3");          // 9: none
  for (const Qt::Key letter : {Qt::Key_P, Qt::Key_E, Qt::Key_F, Qt::Key_C, Qt::Key_T})
    press(letter);
  press(Qt::Key_B);
  press(Qt::Key_1);
  EXPECT_EQ(run(), (Lines{"3", "4 value 0", "5", "6 value 0", "7"}));
}

TEST_F(QtLetters, ThePairHasItsInitials) {
  add(ItemKind::PushButton, "Ouvrir");
  add(ItemKind::PushButton, "Annoncer");
  press(Qt::Key_U);
  press(Qt::Key_N, Qt::ShiftModifier);
  press(Qt::Key_O);
  hits_.record(*dialog_);
  EXPECT_EQ(hits_.lines(), (Lines{"3", "4", "1"}));
}

TEST_F(QtLetters, AltAndACancels) {
  press(Qt::Key_A);
  hits_.record(*dialog_);
  EXPECT_EQ(hits_.lines(), Lines{"2"});
}

TEST_F(QtLetters, AnAccentOnTheKeyboardCountsAsItsLetter) {
  add(ItemKind::PushButton, "Effacer");
  person_.act(0, [](QWidget *w) {
    QTest::sendKeyEvent(QTest::Click, w->windowHandle(), Qt::Key_Eacute, QStringLiteral("é"),
                        Qt::AltModifier);
  });
  EXPECT_EQ(run(), Lines{"3"});
}

TEST_F(QtLetters, WithAltNothingIsTyped) {
  const int field = add(ItemKind::EditText, "");
  const int list = add(ItemKind::ListBox, "");
  dialog_->setEntries(list, {"Zoo", "Bar"});
  for (const Qt::Key key : {Qt::Key_Z, Qt::Key_B, Qt::Key_5, Qt::Key_Space}) press(key);
  person_.act(list, [](QWidget *w) { w->setFocus(); });
  press(Qt::Key_Z);
  press(Qt::Key_B);
  person_.check([=, this] { EXPECT_EQ(dialog_->text(field), ""); });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtLetters, OtherKeysWithAltAreAsBefore) {
  const int popUp = add(ItemKind::PopUp, "");
  dialog_->setEntries(popUp, {"un", "deux"});
  add(ItemKind::PushButton, "Bas");
  person_.act(popUp, [](QWidget *w) { w->setFocus(); });
  press(Qt::Key_Down);
  person_.act(popUp, [](QWidget *w) {
    auto &box = dynamic_cast<QComboBox &>(*w);
    EXPECT_TRUE(box.view()->isVisible());
    // With its list open, a letter presses nothing.
    test::pressKey(w, Qt::Key_B, Qt::AltModifier);
    EXPECT_TRUE(box.view()->isVisible());
    box.hidePopup();
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtLetters, OnlyWhatCouldBeClickedIsPressed) {
  const int hidden = add(ItemKind::PushButton, "Bas");
  dialog_->setEnabled(kOkItem, false);
  person_.act(hidden, [](QWidget *w) { w->hide(); });
  press(Qt::Key_O);
  press(Qt::Key_B);
  person_.key(Qt::Key_B, Qt::AltModifier | Qt::ControlModifier);
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtLetters, ACheckBoxGetsTheFocusAndAButtonDoesNot) {
  const int field = add(ItemKind::EditText, "");
  const int box = add(ItemKind::CheckBox, "Fumeur");
  add(ItemKind::PushButton, "Calculer");
  press(Qt::Key_C);
  person_.act(field, [](QWidget *w) { EXPECT_TRUE(w->hasFocus()); });
  press(Qt::Key_F);
  person_.act(box, [](QWidget *w) { EXPECT_TRUE(w->hasFocus()); });
  EXPECT_EQ(run(), (Lines{"5", "4 value 0"}));
}

TEST_F(QtLetters, AreUnderlinedWhileAltIsHeld) {
  const int box = add(ItemKind::CheckBox, "\xC9tat");
  const int button = add(ItemKind::PushButton, "Action & C\xB0");
  const int none = add(ItemKind::PushButton, "12");
  person_.check([=, this] {
    const std::vector<int> items = {kOkItem, kCancelItem, box, button};
    std::vector<QImage> idle;
    for (const int item : items) idle.push_back(shown(item));
    const QImage without = shown(none);
    const auto expectUnderlined = [&](bool isUnderlined) {
      for (std::size_t n = 0; n < items.size(); ++n)
        EXPECT_EQ(shown(items[n]) != idle[n], isUnderlined) << items[n];
      EXPECT_EQ(shown(none), without);
    };
    expectUnderlined(false);
    QWindow *handle = window()->windowHandle();
    QTest::keyPress(handle, Qt::Key_Alt);
    expectUnderlined(true);
    QTest::keyRelease(handle, Qt::Key_Alt, Qt::AltModifier);
    expectUnderlined(false);
    QTest::keyPress(handle, Qt::Key_Alt);
    expectUnderlined(true);
    QFocusEvent leaving(QEvent::FocusOut);
    QCoreApplication::sendEvent(handle, &leaving);
    expectUnderlined(false);
  });
  EXPECT_EQ(run(), Lines{});
}

constexpr const char *kForm = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0"><class>F</class><widget class="QDialog" name="F">
<property name="geometry"><rect><x>0</x><y>0</y><width>400</width><height>200</height></rect></property>
<widget class="QPushButton" name="call"><property name="item" stdset="0"><number>7</number></property>
<property name="text"><string>Ap&amp;peler</string></property>
<property name="geometry"><rect><x>50</x><y>60</y><width>80</width><height>24</height></rect></property></widget>
<widget class="QCheckBox" name="box"><property name="item" stdset="0"><number>8</number></property>
<property name="text"><string>Noter</string></property>
<property name="geometry"><rect><x>150</x><y>60</y><width>80</width><height>24</height></rect></property></widget>
<widget class="QPushButton" name="ok"><property name="item" stdset="0"><number>1</number></property>
<property name="text"><string>Payer &amp;&amp; OK</string></property>
<property name="geometry"><rect><x>50</x><y>160</y><width>80</width><height>24</height></rect></property></widget>
<widget class="QPushButton" name="no"><property name="item" stdset="0"><number>2</number></property>
<property name="text"><string>Annuler</string></property>
<property name="geometry"><rect><x>150</x><y>160</y><width>80</width><height>24</height></rect></property></widget>
<widget class="QLabel" name="label"><property name="text"><string>&amp;Nom</string></property>
<property name="buddy"><cstring>name</cstring></property>
<property name="geometry"><rect><x>10</x><y>90</y><width>60</width><height>20</height></rect></property></widget>
<widget class="QLineEdit" name="name"><property name="item" stdset="0"><number>3</number></property>
<property name="geometry"><rect><x>90</x><y>90</y><width>100</width><height>24</height></rect></property></widget>
<widget class="QTabWidget" name="tabs">
<property name="geometry"><rect><x>250</x><y>0</y><width>140</width><height>80</height></rect></property>
<widget class="QWidget" name="page"><attribute name="title"><string>&amp;Total</string></attribute>
<widget class="QGroupBox" name="group"><property name="title"><string>R&amp;este</string></property>
<property name="geometry"><rect><x>0</x><y>0</y><width>90</width><height>40</height></rect></property></widget>
</widget></widget>
</widget></ui>
)";

// The form marks P, N, T and E; the pair has A and U.
TEST_F(QtLetters, AFormKeepsTheLettersThatItMarks) {
  std::string problem;
  const test::TemporaryFolder folder;
  dialog_ = qtDesktop().newDialogFromTemplate(folder.add("f.ui", kForm), nullptr, problem);
  ASSERT_EQ(problem, "");
  dialog_->setTitle("Fiche");
  for (const Qt::Key letter : {Qt::Key_O, Qt::Key_Y, Qt::Key_N, Qt::Key_T, Qt::Key_E, Qt::Key_P})
    press(letter);
  person_.act(0, [](QWidget *) { QTest::qWait(200); });  // the toolkit's shortcut takes its time
  press(Qt::Key_A);
  hits_.record(*dialog_);
  EXPECT_EQ(hits_.lines(), (Lines{"8 value 0", "7", "1"}));
}

}  // namespace
}  // namespace korvel::platform
