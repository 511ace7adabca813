// SPDX-License-Identifier: MIT
// Edit-text items of the Qt module: every way in which a person changes a text.
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"

namespace korvel::platform {
namespace {

using test::qtDesktop;
using test::QtPerson;
using test::RecordedHits;
using test::widgetOf;
using Lines = std::vector<std::string>;

constexpr int kField = 3;
constexpr int kOtherField = 4;

class QtTextItem : public testing::Test {
 protected:
  QtTextItem() : dialog_(qtDesktop().newDialog({100, 100, 400, 300}, nullptr, "Fiche")) {
    dialog_->addItem(ItemKind::PushButton, {50, 160, 130, 180}, "OK");
    dialog_->addItem(ItemKind::PushButton, {150, 160, 230, 180}, "Annuler");
    dialog_->addItem(ItemKind::EditText, {20, 20, 220, 35}, "");
    dialog_->addItem(ItemKind::EditText, {20, 50, 220, 65}, "");
  }
  void TearDown() override { person_.finish(); }

  Lines run() { return hits_.recordUntilEscape(*dialog_, person_); }
  QLineEdit &field(int item = kField) {
    return dynamic_cast<QLineEdit &>(
        *test::itemWidgets(widgetOf(dialog_->window()))[static_cast<std::size_t>(item) - 1]);
  }
  QtPerson &at(int position) {
    person_.moveTo(kField, position);
    return person_;
  }
  QtPerson &edit(std::function<void(QLineEdit &)> action) {
    return person_.with<QLineEdit>(kField, std::move(action));
  }
  void masked() {
    dialog_->setSecret(kField);
    hits_.on(kField,
             [this] { dialog_->setText(kField, std::string(dialog_->text(kField).size(), '*')); });
  }

  std::unique_ptr<Dialog> dialog_;
  QtPerson person_{"Fiche"};
  RecordedHits hits_;
};

// ---- Selection and cursor ----

TEST_F(QtTextItem, TheFirstFieldHasTheFocusAndAllOfItsTextSelected) {
  dialog_->setText(kField, "Dupont");
  edit([](QLineEdit &first) {
    EXPECT_TRUE(first.hasFocus());
    EXPECT_EQ(first.selectedText(), "Dupont");
  });
  run();
}

TEST_F(QtTextItem, TabIntoAFieldSelectsItsText) {
  dialog_->setText(kOtherField, "Marie");
  person_.key(Qt::Key_Tab).check([this] { EXPECT_EQ(field(4).selectedText(), "Marie"); });
  run();
}

TEST_F(QtTextItem, AClickPlacesTheCursor) {
  dialog_->setText(kOtherField, "Marie");
  person_.clickAt(kOtherField, {4, 10}).check([this] {
    EXPECT_TRUE(field(4).hasFocus());
    EXPECT_EQ(field(4).selectedText(), "");
    EXPECT_EQ(field(4).cursorPosition(), 0);
  });
  run();
}

TEST_F(QtTextItem, SelectingTheTextShowsOnlyWhereTheFocusIs) {
  dialog_->setText(kField, "Dupont");
  dialog_->setText(kOtherField, "Marie");
  at(2).check([this] {
    dialog_->selectText(kField);
    dialog_->selectText(kOtherField);
    EXPECT_EQ(field().selectedText(), "Dupont");
    EXPECT_EQ(field(4).selectedText(), "");
  });
  run();
}

TEST_F(QtTextItem, SettingTheSameTextChangesNothing) {
  dialog_->setText(kField, "Dupont");
  at(3).type(kField, "x");
  edit([this](QLineEdit &shown) {
    dialog_->setText(kField, "Dupxont");
    EXPECT_EQ(shown.cursorPosition(), 4);
    EXPECT_TRUE(shown.isUndoAvailable());
  });
  run();
}

TEST_F(QtTextItem, ASelectionMadeBackwardsStaysSo) {
  dialog_->setText(kField, "Dupont");
  edit([this](QLineEdit &shown) {
    shown.setSelection(4, -2);
    dialog_->setText(kField, "Durand");
    EXPECT_EQ(shown.selectedText(), "ra");
    EXPECT_EQ(shown.cursorPosition(), 2);
    dialog_->setText(kField, "Dur");
    EXPECT_EQ(shown.selectedText(), "r");
    dialog_->setText(kField, "D");
    EXPECT_EQ(shown.selectedText(), "");
    EXPECT_EQ(shown.cursorPosition(), 1);
  });
  run();
}

// ---- Keys ----

TEST_F(QtTextItem, EveryWayToDeleteIsAHit) {
  dialog_->setText(kField, "un deux trois");
  at(7).key(Qt::Key_Delete);
  person_.key(Qt::Key_Backspace, Qt::ControlModifier);
  EXPECT_EQ(run(), (Lines{"3 text un deuxtrois", "3 text un trois"}));
}

TEST_F(QtTextItem, KeysThatMoveTheCursorAreNoHits) {
  dialog_->setText(kField, "Dupont");
  at(3).key(Qt::Key_Left).key(Qt::Key_Home, Qt::ShiftModifier).key(Qt::Key_End);
  person_.key(Qt::Key_A, Qt::ControlModifier).key(Qt::Key_Delete, Qt::AltModifier);
  EXPECT_LE(run().size(), 1u) << "at most the deletion";
}

TEST_F(QtTextItem, ARefusedKeyKeepsCursorSelectionAndUndo) {
  dialog_->setText(kField, "Dupont");
  at(6).type(kField, "s");
  person_.select(kField, 1, 3).type(kField, "Ž中");
  edit([](QLineEdit &shown) {
    EXPECT_EQ(shown.selectedText(), "up");
    EXPECT_EQ(shown.cursorPosition(), 3);
    EXPECT_TRUE(shown.isUndoAvailable());
  });
  person_.key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(run(), (Lines{"3 text Duponts", "3 text Dupont"}));
}

TEST_F(QtTextItem, CharactersBeyondTheFirstPlaneAreRefused) {
  at(0).act(kField, [](QWidget *widget) {
    QTest::sendKeyEvent(QTest::Click, widget->window()->windowHandle(), Qt::Key_unknown,
                        QStringLiteral("😀"), Qt::NoModifier);
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtTextItem, AKeyThatTypesADecomposedLetterTypesTheLetter) {
  at(0).act(kField, [](QWidget *widget) {
    QTest::sendKeyEvent(QTest::Click, widget->window()->windowHandle(), Qt::Key_unknown,
                        QStringLiteral("e\u0301"), Qt::NoModifier);
  });
  EXPECT_EQ(run(), Lines{"3 text é"});
}

TEST_F(QtTextItem, EachStepOfUndoAndRedoIsAHit) {
  dialog_->setText(kField, "ab");
  at(2).type(kField, "c");
  person_.paste(kField, "de");
  person_.key(Qt::Key_Z, Qt::ControlModifier).key(Qt::Key_Z, Qt::ControlModifier);
  person_.key(Qt::Key_Z, Qt::ControlModifier);  // nothing is left to undo
  person_.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(run(), (Lines{"3 text abc", "3 text abcde", "3 text abc", "3 text ab", "3 text abc"}));
}

// ---- Clipboard and drop ----

TEST_F(QtTextItem, APastedTextIsTakenAsItsCharacters) {
  const struct {
    const char *pasted;
    const char *entered;
  } kCases[] = {
      // Letters are composed.
      {"e\u0301te\u0301", "été"},
      // A final line break is dropped, others and tabs become blanks.
      {"ligne\n", "ligne"},
      {"un\r\ndeux\r\n", "un deux"},
      {"un\ndeux\rtrois\u2028quatre\u2029", "un deux trois quatre"},
      {"a\tb", "a b"},
      {"a\n\nb\n\n", "a  b "},
      // Other control characters are left out.
      {"a\x01\x1B\x7F\u0085"
       "b",
       "ab"},
  };
  for (const auto &each : kCases) {
    person_.check([this] { dialog_->setText(kField, ""); });
    person_.paste(kField, each.pasted);
  }
  const Lines lines = run();
  ASSERT_EQ(lines.size(), std::size(kCases));
  for (std::size_t n = 0; n < lines.size(); ++n)
    EXPECT_EQ(lines[n], std::string("3 text ") + kCases[n].entered);
}

TEST_F(QtTextItem, APasteOfNothingOnlyReplacesTheSelection) {
  dialog_->setText(kField, "Dupont");
  at(6).paste(kField, "\n");
  person_.select(kField, 1, 3).paste(kField, "\n");
  EXPECT_EQ(run(), Lines{"3 text Dont"});
}

TEST_F(QtTextItem, TheOtherKeysOfTheClipboardWorkToo) {
  at(0).act(kField, [](QWidget *) { QGuiApplication::clipboard()->setText("mis\n"); });
  person_.key(Qt::Key_Insert, Qt::ShiftModifier);
  person_.select(kField, 0, 2);
  person_.key(Qt::Key_Insert, Qt::ControlModifier).key(Qt::Key_X, Qt::ControlModifier);
  person_.check([] { EXPECT_EQ(QGuiApplication::clipboard()->text(), "mi"); });
  EXPECT_EQ(run(), (Lines{"3 text mis", "3 text s"}));
}

void drop(QLineEdit &field, const QString &text, QPoint place) {
  QMimeData data;
  data.setText(text);
  QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&field, &enter);
  QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&field, &drop);
}

TEST_F(QtTextItem, ADroppedTextIsOneHitAtItsPlace) {
  dialog_->setText(kField, "Dupont");
  at(6).with<QLineEdit>(kField, [](QLineEdit &shown) {
    drop(shown, QStringLiteral("é\n"), {4, 10});
    drop(shown, QStringLiteral("中"), {4, 10});
  });
  EXPECT_EQ(run(), Lines{"3 text éDupont"});
}

TEST_F(QtTextItem, ADropIntoAnotherFieldBringsTheFocusThere) {
  person_.with<QLineEdit>(kOtherField, [](QLineEdit &shown) {
    drop(shown, QStringLiteral("Marie"), {4, 10});
    EXPECT_TRUE(shown.hasFocus());
  });
  EXPECT_EQ(run(), Lines{"4 text Marie"});
}

// ---- Context menu ----

QAction *actionOf(QLineEdit &field, const QString &title) {
  QContextMenuEvent event(QContextMenuEvent::Keyboard, {5, 5}, field.mapToGlobal(QPoint(5, 5)));
  QCoreApplication::sendEvent(&field, &event);
  auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
  if (menu == nullptr) return nullptr;
  for (QAction *action : menu->actions())
    if (action->text() == title) return action;
  return nullptr;
}

void chooseInMenu(QLineEdit &field, const QString &title) {
  QAction *action = actionOf(field, title);
  ASSERT_NE(action, nullptr) << title.toStdString();
  EXPECT_TRUE(action->isEnabled()) << title.toStdString();
  action->trigger();
  QApplication::activePopupWidget()->close();
}

TEST_F(QtTextItem, ActionsOfTheContextMenuAreHits) {
  dialog_->setText(kField, "Dupont");
  at(6).type(kField, "s");
  edit([](QLineEdit &shown) {
    chooseInMenu(shown, "Annuler");
    chooseInMenu(shown, QStringLiteral("Rétablir"));
    shown.setSelection(0, 3);
    chooseInMenu(shown, "Copier");
    chooseInMenu(shown, "Couper");
    chooseInMenu(shown, "Coller");
    shown.setSelection(0, 1);
    chooseInMenu(shown, "Supprimer");
    chooseInMenu(shown, QStringLiteral("Tout sélectionner"));
    EXPECT_EQ(shown.selectedText(), "uponts");
  });
  EXPECT_EQ(run(), (Lines{"3 text Duponts", "3 text Dupont", "3 text Duponts", "3 text onts",
                          "3 text Duponts", "3 text uponts"}));
}

TEST_F(QtTextItem, TheContextMenuPastesAsTheKeysDo) {
  at(0).act(kField, [](QWidget *) { QGuiApplication::clipboard()->setText("a\nb\n"); });
  edit([](QLineEdit &shown) { chooseInMenu(shown, "Coller"); });
  edit([](QLineEdit &shown) {
    QGuiApplication::clipboard()->setText(QStringLiteral("中"));
    chooseInMenu(shown, "Coller");
  });
  EXPECT_EQ(run(), Lines{"3 text a b"});
}

TEST_F(QtTextItem, TheContextMenuOffersOnlyWhatIsPossible) {
  edit([](QLineEdit &shown) {
    QGuiApplication::clipboard()->clear();
    for (const QString &title :
         {QStringLiteral("Annuler"), QStringLiteral("Rétablir"), QStringLiteral("Couper"),
          QStringLiteral("Copier"), QStringLiteral("Coller"), QStringLiteral("Supprimer"),
          QStringLiteral("Tout sélectionner")}) {
      QAction *action = actionOf(shown, title);
      ASSERT_NE(action, nullptr) << title.toStdString();
      EXPECT_FALSE(action->isEnabled()) << title.toStdString();
      QApplication::activePopupWidget()->close();
    }
  });
  EXPECT_EQ(run(), Lines{});
}

// ---- Input methods ----

void compose(QLineEdit &field, const QString &preedit, const QString &commit = {}) {
  QInputMethodEvent event(preedit, {});
  event.setCommitString(commit);
  QCoreApplication::sendEvent(&field, &event);
}

TEST_F(QtTextItem, ComposedCharactersAreAHitWhenTheyAreEntered) {
  edit([this](QLineEdit &shown) {
    compose(shown, "^");
    compose(shown, QStringLiteral("ê"));
    EXPECT_TRUE(hits_.lines().empty());
    compose(shown, "", QStringLiteral("ê"));
  });
  EXPECT_EQ(run(), Lines{"3 text ê"});
}

TEST_F(QtTextItem, AComposedTextOfSeveralCharactersIsOneHit) {
  edit([](QLineEdit &shown) { compose(shown, "", QStringLiteral("e\u0301te\u0301")); });
  EXPECT_EQ(run(), Lines{"3 text été"});
}

TEST_F(QtTextItem, ComposingOverASelectionIsOneHit) {
  dialog_->setText(kField, "Dupont");
  edit([this](QLineEdit &shown) {
    shown.setSelection(0, 3);
    compose(shown, "x");
    EXPECT_TRUE(hits_.lines().empty());
    compose(shown, "", "D");
  });
  EXPECT_EQ(run(), Lines{"3 text Dont"});
}

TEST_F(QtTextItem, ComposingThatIsGivenUpTellsTheLossOfTheSelection) {
  dialog_->setText(kField, "Dupont");
  edit([](QLineEdit &shown) {
    shown.setSelection(0, 3);
    compose(shown, "x");
    compose(shown, "");
  });
  EXPECT_EQ(run(), Lines{"3 text ont"});
}

TEST_F(QtTextItem, ComposedCharactersWithoutAByteAreRefusedAndTheRestStays) {
  dialog_->setText(kField, "Dupont");
  edit([](QLineEdit &shown) {
    shown.setSelection(0, 3);
    compose(shown, "zhong");
    compose(shown, "", QStringLiteral("中"));
    EXPECT_EQ(shown.text(), "Dupont");
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtTextItem, WhatIsComposedDuringAHitIsToldAfterIt) {
  bool isInHit = false;
  hits_.on(kField, [&] {
    EXPECT_FALSE(isInHit) << "a hit within a hit";
    isInHit = true;
    if (hits_.lines().size() == 1) compose(field(), "", "b");
    isInHit = false;
  });
  at(0).type(kField, "a");
  EXPECT_EQ(run(), (Lines{"3 text a", "3 text ab"}));
}

TEST_F(QtTextItem, AReplacementByTheInputMethodIsOneHit) {
  dialog_->setText(kField, "oeuf");
  edit([](QLineEdit &shown) {
    shown.setCursorPosition(2);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("œ"), -2, 2);
    QCoreApplication::sendEvent(&shown, &event);
  });
  EXPECT_EQ(run(), Lines{"3 text œuf"});
}

// ---- A field of a form that is read only ----

class QtReadOnlyTextItem : public QtTextItem {
 protected:
  void takesNothing() {
    dialog_->setText(kField, "Dupont");
    field().setReadOnly(true);
    QGuiApplication::clipboard()->setText("x");
    person_.select(kField, 0, 6).type(kField, "x").paste(kField, "x").deleteBack(kField);
    person_.key(Qt::Key_Insert, Qt::ShiftModifier).key(Qt::Key_X, Qt::ControlModifier);
    person_.clickAt(kField, {4, 10}, Qt::MiddleButton);
    edit([](QLineEdit &shown) {
      drop(shown, "x", {4, 10});
      compose(shown, "", "x");
      shown.selectAll();
      for (const char16_t *title : {u"Couper", u"Coller", u"Supprimer"}) {
        const QAction *action = actionOf(shown, QString::fromUtf16(title));
        ASSERT_NE(action, nullptr);
        EXPECT_FALSE(action->isEnabled());
        QApplication::activePopupWidget()->close();
      }
    });
    EXPECT_EQ(run(), Lines{});
    EXPECT_EQ(dialog_->text(kField), "Dupont");
  }
};

TEST_F(QtReadOnlyTextItem, TakesNothing) { takesNothing(); }

TEST_F(QtReadOnlyTextItem, TakesNothingAsASecretEither) {
  dialog_->setSecret(kField);
  takesNothing();
}

// ---- Secrets ----

TEST_F(QtTextItem, ASecretIsMaskedBeforeItCanBeSeen) {
  masked();
  dialog_->setText(kField, "****");
  QStringList seen;
  hits_.on(kField, [&] {
    seen << field().text();
    dialog_->setText(kField, std::string(dialog_->text(kField).size(), '*'));
  });
  at(4).type(kField, "5");
  edit([](QLineEdit &shown) { EXPECT_EQ(shown.text(), "*****"); });
  EXPECT_EQ(run(), Lines{"3 text ****5"});
  EXPECT_EQ(seen, QStringList{"*****"}) << "while its hit was handled";
}

TEST_F(QtTextItem, ASecretCannotBeUndone) {
  masked();
  dialog_->setText(kField, "****");
  at(4).type(kField, "5").deleteBack(kField);
  edit([](QLineEdit &shown) {
    EXPECT_FALSE(shown.isUndoAvailable());
    EXPECT_FALSE(actionOf(shown, "Annuler")->isEnabled());
    QApplication::activePopupWidget()->close();
  });
  person_.key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(run(), (Lines{"3 text ****5", "3 text ****"}));
}

TEST_F(QtTextItem, ASecretThatTheProgramLeavesAloneCannotBeUndoneEither) {
  dialog_->setSecret(kField);
  at(0).type(kField, "a");
  edit([](QLineEdit &shown) { EXPECT_FALSE(shown.isUndoAvailable()); });
  person_.key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(run(), Lines{"3 text a"});
}

TEST_F(QtTextItem, WhatBecomesASecretForgetsItsEarlierSteps) {
  at(0).type(kField, "a");
  edit([this](QLineEdit &shown) {
    ASSERT_TRUE(shown.isUndoAvailable());
    dialog_->setSecret(kField);
    EXPECT_FALSE(shown.isUndoAvailable());
  });
  EXPECT_EQ(run(), Lines{"3 text a"});
}

TEST_F(QtTextItem, AMaskedFieldGivesOutOnlyItsAsterisks) {
  masked();
  at(0).type(kField, "123");
  person_.select(kField, 0, 3);
  person_.key(Qt::Key_C, Qt::ControlModifier).check([] {
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "***");
  });
  run();
}

TEST_F(QtTextItem, ABurstOfKeysInAMaskedFieldIsOneHitEach) {
  masked();
  at(0).type(kField, "0123456789");
  const Lines lines = run();
  ASSERT_EQ(lines.size(), 10u);
  for (std::size_t n = 0; n < lines.size(); ++n)
    EXPECT_EQ(lines[n], "3 text " + std::string(n, '*') + std::to_string(n));
}

TEST_F(QtTextItem, AnInputMethodLearnsNothingOfASecret) {
  masked();
  dialog_->setText(kField, "**");
  edit([this](QLineEdit &shown) {
    EXPECT_TRUE(shown.inputMethodHints().testFlag(Qt::ImhHiddenText));
    EXPECT_TRUE(shown.inputMethodHints().testFlag(Qt::ImhNoPredictiveText));
    EXPECT_EQ(shown.inputMethodQuery(Qt::ImSurroundingText).toString(), "");
    compose(shown, "^");
    EXPECT_EQ(shown.text(), "**");
    EXPECT_EQ(shown.displayText(), "**") << "what is being composed is not shown";
    EXPECT_TRUE(hits_.lines().empty());
    compose(shown, "", "5");
  });
  const Lines lines = run();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].size(), std::string("3 text ***").size() - 2)
      << "all was selected, so that the secret was replaced";
}

TEST_F(QtTextItem, AnOrdinaryFieldTellsTheInputMethodItsText) {
  dialog_->setText(kField, "Dupont");
  edit([](QLineEdit &shown) {
    EXPECT_EQ(shown.inputMethodQuery(Qt::ImSurroundingText).toString(), "Dupont");
  });
  run();
}

}  // namespace
}  // namespace korvel::platform
