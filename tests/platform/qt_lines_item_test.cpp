// SPDX-License-Identifier: MIT
// Edit-text items of several lines: what they show, and that they are entered like those of one.
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
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

constexpr int kLines = 3;
constexpr int kLine = 4;

class QtLinesItem : public testing::Test {
 protected:
  QtLinesItem() : dialog_(qtDesktop().newDialog({100, 100, 500, 400}, nullptr, "Fiche")) {
    dialog_->addItem(ItemKind::PushButton, {50, 260, 130, 280}, "OK");
    dialog_->addItem(ItemKind::PushButton, {150, 260, 230, 280}, "Annuler");
    dialog_->addItem(ItemKind::EditText, {20, 20, 220, 70}, "");
    dialog_->addItem(ItemKind::EditText, {20, 100, 220, 115}, "");
  }
  void TearDown() override { person_.finish(); }

  Lines run() { return hits_.recordUntilEscape(*dialog_, person_); }
  QWidget &widget(int item) {
    return *test::itemWidgets(widgetOf(dialog_->window()))[static_cast<std::size_t>(item) - 1];
  }
  QPlainTextEdit &field() { return dynamic_cast<QPlainTextEdit &>(widget(kLines)); }
  QtPerson &at(int position) {
    person_.moveTo(kLines, position);
    return person_;
  }
  QtPerson &edit(std::function<void(QPlainTextEdit &)> action) {
    return person_.with<QPlainTextEdit>(kLines, std::move(action));
  }
  void masked() {
    dialog_->setSecret(kLines);
    hits_.on(kLines,
             [this] { dialog_->setText(kLines, std::string(dialog_->text(kLines).size(), '*')); });
  }

  std::unique_ptr<Dialog> dialog_;
  QtPerson person_{"Fiche"};
  RecordedHits hits_;
};

std::string words(int count) {
  std::string text;
  for (int n = 0; n < count; ++n) text += "douleur ";
  return text;
}

// The lines that a text is shown in.
QStringList shownLines(const QPlainTextEdit &edit) {
  QStringList lines;
  for (QTextBlock block = edit.document()->begin(); block.isValid(); block = block.next())
    for (int n = 0; n < block.layout()->lineCount(); ++n) {
      const QTextLine line = block.layout()->lineAt(n);
      lines << block.text().mid(line.textStart(), line.textLength());
    }
  return lines;
}

QString selected(const QPlainTextEdit &edit) { return edit.textCursor().selectedText(); }

// ---- What is shown ----

TEST_F(QtLinesItem, IsAsHighAsTwoLinesOfItsFontOrMore) {
  const int line = QFontMetrics(widgetOf(dialog_->window())->font()).height();
  const int low = dialog_->addItem(ItemKind::EditText, {250, 20, 350, 20 + 2 * line - 1}, "");
  const int high = dialog_->addItem(ItemKind::EditText, {250, 100, 350, 100 + 2 * line}, "");
  EXPECT_NE(qobject_cast<QLineEdit *>(&widget(low)), nullptr);
  auto *edit = qobject_cast<QPlainTextEdit *>(&widget(high));
  ASSERT_NE(edit, nullptr);
  person_.check([&] {
    dialog_->setText(high, "a\nb");
    EXPECT_EQ(edit->verticalScrollBar()->maximum(), 0) << "two lines fit";
    dialog_->setText(high, "a\nb\nc");
    EXPECT_EQ(edit->verticalScrollBar()->maximum(), 1);
  });
  run();
}

TEST_F(QtLinesItem, ALongTextIsWrappedAtWordsAndScrolls) {
  dialog_->setText(kLines, words(30));
  edit([](QPlainTextEdit &shown) {
    const QStringList lines = shownLines(shown);
    EXPECT_GT(lines.size(), 4);
    for (const QString &line : lines) EXPECT_TRUE(line.endsWith(' ')) << line.toStdString();
    EXPECT_GT(shown.verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(shown.horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(shown.verticalScrollBar()->contextMenuPolicy(), Qt::PreventContextMenu);
  });
  run();
  EXPECT_EQ(dialog_->text(kLines), words(30));
}

TEST_F(QtLinesItem, AWordThatIsLongerThanALineIsWrappedToo) {
  dialog_->setText(kLines, std::string(60, 'm'));
  edit([](QPlainTextEdit &shown) {
    EXPECT_GT(shownLines(shown).size(), 1);
    const QTextLayout &layout = *shown.document()->firstBlock().layout();
    for (int n = 0; n < layout.lineCount(); ++n)
      EXPECT_LE(layout.lineAt(n).naturalTextRect().right(), shown.viewport()->width());
    EXPECT_EQ(shown.horizontalScrollBar()->maximum(), 0)
        << shown.document()->size().width() << " in " << shown.viewport()->width();
  });
  run();
}

TEST_F(QtLinesItem, AStoredLineEndIsShownAsOneAndKept) {
  dialog_->setText(kLines, "un\ndeux\rtrois\tet");
  edit([](QPlainTextEdit &shown) { EXPECT_EQ(shownLines(shown).size(), 3); });
  at(15).type(kLines, "!");
  EXPECT_EQ(run(), Lines{"3 text un\ndeux\rtrois\te!t"});
}

TEST_F(QtLinesItem, TheFirstLineIsWhereThatOfOneLineIs) {
  for (const int item : {kLines, kLine}) dialog_->setText(item, "Mmm");
  const QRect text(3, 3, 100, 14);
  const QImage lines = widget(kLines).grab().toImage().copy(text);
  EXPECT_EQ(lines, widget(kLine).grab().toImage().copy(text));
  EXPECT_NE(lines, widget(kLines).grab().toImage().copy(text.translated(0, 16)));
  person_.check([] {});
  run();
}

TEST_F(QtLinesItem, TheFrameShowsTheFocusAsThatOfOneLine) {
  person_.check([this] {
    const auto frameOf = [this](int item) {
      const QImage image = widget(item).grab().toImage();
      return image.pixelColor(image.width() - 1, 9);
    };
    const QColor withFocus = frameOf(kLines), without = frameOf(kLine);
    EXPECT_NE(withFocus, without);
    widget(kLine).setFocus();
    EXPECT_EQ(frameOf(kLines), without);
    EXPECT_EQ(frameOf(kLine), withFocus);
  });
  run();
}

TEST_F(QtLinesItem, IsMarkedLikeOneLine) {
  const QImage before = field().grab().toImage();
  dialog_->setAcceptable(kLines, false);
  const QImage marked = field().grab().toImage();
  const QColor bar(0xC2, 0x78, 0x03);
  for (const int x : {0, 1}) EXPECT_EQ(marked.pixelColor(x, 30), bar);
  EXPECT_EQ(marked.copy(2, 2, 196, 46), before.copy(2, 2, 196, 46));
  EXPECT_EQ(field().toolTip(), QStringLiteral("À compléter ou à corriger"));
  dialog_->setAcceptable(kLines, true);
  EXPECT_EQ(field().grab().toImage(), before);
  person_.check([] {});
  run();
}

// ---- Cursor and selection ----

TEST_F(QtLinesItem, KeysIntoItSelectItsTextAndLeavingItSelectsNothing) {
  dialog_->setText(kLines, "Dupont");
  edit([](QPlainTextEdit &shown) { EXPECT_EQ(selected(shown), "Dupont"); });
  person_.key(Qt::Key_Tab).check([this] {
    EXPECT_EQ(selected(field()), "");
    EXPECT_TRUE(widget(kLine).hasFocus());
  });
  person_.key(Qt::Key_Backtab, Qt::ShiftModifier).check([this] {
    EXPECT_EQ(selected(field()), "Dupont");
  });
  run();
}

TEST_F(QtLinesItem, AClickPlacesTheCursor) {
  dialog_->setText(kLines, "Dupont");
  person_.key(Qt::Key_Tab).clickAt(kLines, {4, 10}).check([this] {
    EXPECT_EQ(selected(field()), "");
    EXPECT_EQ(field().textCursor().position(), 0);
  });
  run();
}

TEST_F(QtLinesItem, SettingATextKeepsCursorSelectionAndPlace) {
  dialog_->setText(kLines, words(30));
  edit([this](QPlainTextEdit &shown) {
    shown.moveCursor(QTextCursor::Start);
    shown.moveCursor(QTextCursor::WordRight, QTextCursor::KeepAnchor);
    shown.verticalScrollBar()->setValue(2);
    dialog_->setText(kLines, "Une " + words(30));
    EXPECT_EQ(selected(shown), "Une doul");
    EXPECT_EQ(shown.textCursor().position(), 8);
    dialog_->setText(kLines, "Un");
    EXPECT_EQ(selected(shown), "Un");
    dialog_->setText(kLines, "");
    EXPECT_FALSE(shown.textCursor().hasSelection());
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtLinesItem, UpAndDownGoFromLineToLine) {
  dialog_->setText(kLines, "abc\ndef");
  at(1).key(Qt::Key_Down).type(kLines, "-");
  person_.key(Qt::Key_Up).type(kLines, "+");
  EXPECT_EQ(run(), (Lines{"3 text abc\nd-ef", "3 text ab+c\nd-ef"}));
}

// ---- Keys ----

TEST_F(QtLinesItem, ReturnIsOks) {
  dialog_->setDefaultItem(kOkItem);
  person_.type(kLines, "a").pressReturn();
  hits_.record(*dialog_);
  EXPECT_EQ(hits_.lines(), (Lines{"3 text a", "1"}));
}

TEST_F(QtLinesItem, NoKeyEntersALineEndOrATab) {
  at(0).key(Qt::Key_Return, Qt::ShiftModifier).key(Qt::Key_Return, Qt::ControlModifier);
  person_.key(Qt::Key_Enter, Qt::ShiftModifier).key(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtLinesItem, EachChangeIsAHit) {
  dialog_->setText(kLines, "un deux trois");
  at(7).key(Qt::Key_Delete);
  person_.key(Qt::Key_Backspace, Qt::ControlModifier).key(Qt::Key_Left);
  person_.select(kLines, 0, 2).type(kLines, "é");
  EXPECT_EQ(run(), (Lines{"3 text un deuxtrois", "3 text un trois", "3 text é trois"}));
}

TEST_F(QtLinesItem, ARefusedKeyKeepsCursorSelectionAndUndo) {
  dialog_->setText(kLines, "Dupont");
  at(6).type(kLines, "s");
  person_.select(kLines, 1, 3).type(kLines, "Ž中");
  edit([](QPlainTextEdit &shown) {
    EXPECT_EQ(selected(shown), "up");
    EXPECT_TRUE(shown.document()->isUndoAvailable());
  });
  person_.key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(run(), (Lines{"3 text Duponts", "3 text Dupont"}));
}

TEST_F(QtLinesItem, EachStepOfUndoAndRedoIsAHit) {
  dialog_->setText(kLines, "ab");
  at(2).type(kLines, "c");
  person_.paste(kLines, "de");
  person_.key(Qt::Key_Z, Qt::ControlModifier).key(Qt::Key_Z, Qt::ControlModifier);
  person_.key(Qt::Key_Z, Qt::ControlModifier);  // nothing is left to undo
  person_.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(run(), (Lines{"3 text abc", "3 text abcde", "3 text abc", "3 text ab", "3 text abc"}));
}

TEST_F(QtLinesItem, ATextThatTheProgramSetsDuringTheHitStays) {
  hits_.on(kLines, [this] { dialog_->setText(kLines, dialog_->text(kLines) + "\nbas"); });
  at(0).type(kLines, "a");
  person_.type(kLines, "b");
  EXPECT_EQ(run(), (Lines{"3 text a", "3 text ab\nbas"}));
  EXPECT_EQ(dialog_->text(kLines), "ab\nbas\nbas");
}

// ---- Clipboard and drop ----

TEST_F(QtLinesItem, APastedTextIsTakenAsInOneLine) {
  const struct {
    const char *pasted;
    const char *entered;
  } kCases[] = {
      {"e\u0301te\u0301", "été"},
      {"ligne\n", "ligne"},
      {"un\r\ndeux\r\n", "un deux"},
      {"un\ndeux\rtrois\u2028quatre\u2029", "un deux trois quatre"},
      {"a\tb", "a b"},
      {"a\x01\x1B\x7F\u0085"
       "b",
       "ab"},
  };
  for (const auto &each : kCases) {
    person_.check([this] { dialog_->setText(kLines, ""); });
    person_.paste(kLines, each.pasted);
  }
  person_.paste(kLines, "中");
  const Lines lines = run();
  ASSERT_EQ(lines.size(), std::size(kCases));
  for (std::size_t n = 0; n < lines.size(); ++n)
    EXPECT_EQ(lines[n], std::string("3 text ") + kCases[n].entered);
}

TEST_F(QtLinesItem, HoldsAsManyCharactersAsOneLine) {
  const std::string most(32767, 'x');
  at(0).paste(kLines, most + "yz").type(kLines, "z");
  person_.select(kLines, 0, 1).type(kLines, "-");
  const Lines lines = run();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0], "3 text " + most);
  EXPECT_EQ(lines[1], "3 text -" + most.substr(1));
  dialog_->setText(kLines, most + most);
  EXPECT_EQ(dialog_->text(kLines).size(), 2 * most.size()) << "the program may set more";
}

TEST_F(QtLinesItem, WhatIsCopiedKeepsItsBlanksAndLineEnds) {
  dialog_->setText(kLines, "10\xA0kg\nsoit");
  edit([](QPlainTextEdit &shown) {
    shown.selectAll();
    shown.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("10\u00A0kg\nsoit"));
  });
  EXPECT_EQ(run(), Lines{});
}

TEST_F(QtLinesItem, ADroppedTextIsOneHitAtItsPlace) {
  dialog_->setText(kLines, "Dupont");
  at(6).with<QPlainTextEdit>(kLines, [](QPlainTextEdit &shown) {
    QMimeData data;
    for (const QString &text : {QStringLiteral("é\n"), QStringLiteral("中")}) {
      data.setText(text);
      QDragEnterEvent enter({2, 8}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
      QCoreApplication::sendEvent(shown.viewport(), &enter);
      QDropEvent drop(QPointF(2, 8), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
      QCoreApplication::sendEvent(shown.viewport(), &drop);
    }
  });
  EXPECT_EQ(run(), Lines{"3 text éDupont"});
}

TEST_F(QtLinesItem, TheMiddleButtonPlacesTheCursorForItsPaste) {
  dialog_->setText(kLines, "Dupont");
  at(6).clickAt(kLines, {4, 10}, Qt::MiddleButton);
  edit([](QPlainTextEdit &shown) { EXPECT_EQ(shown.textCursor().position(), 0); });
  run();
}

QAction *actionOf(QPlainTextEdit &field, const QString &title) {
  QContextMenuEvent event(QContextMenuEvent::Keyboard, {5, 5}, field.mapToGlobal(QPoint(5, 5)));
  QCoreApplication::sendEvent(field.viewport(), &event);
  auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
  if (menu == nullptr) return nullptr;
  for (QAction *action : menu->actions())
    if (action->text() == title) return action;
  return nullptr;
}

void chooseInMenu(QPlainTextEdit &field, const QString &title) {
  QAction *action = actionOf(field, title);
  ASSERT_NE(action, nullptr) << title.toStdString();
  EXPECT_TRUE(action->isEnabled()) << title.toStdString();
  action->trigger();
  QApplication::activePopupWidget()->close();
}

TEST_F(QtLinesItem, ActionsOfTheContextMenuAreHits) {
  dialog_->setText(kLines, "Dupont");
  at(6).type(kLines, "s");
  edit([](QPlainTextEdit &shown) {
    chooseInMenu(shown, "Annuler");
    chooseInMenu(shown, QStringLiteral("Rétablir"));
    chooseInMenu(shown, QStringLiteral("Tout sélectionner"));
    chooseInMenu(shown, "Couper");
    chooseInMenu(shown, "Coller");
    chooseInMenu(shown, QStringLiteral("Tout sélectionner"));
    chooseInMenu(shown, "Supprimer");
  });
  EXPECT_EQ(run(), (Lines{"3 text Duponts", "3 text Dupont", "3 text Duponts", "3 text",
                          "3 text Duponts", "3 text"}));
}

// ---- Input methods ----

void compose(QPlainTextEdit &field, const QString &preedit, const QString &commit = {}) {
  QInputMethodEvent event(preedit, {});
  event.setCommitString(commit);
  QCoreApplication::sendEvent(&field, &event);
}

TEST_F(QtLinesItem, ComposedCharactersAreAHitWhenTheyAreEntered) {
  edit([this](QPlainTextEdit &shown) {
    compose(shown, "^");
    compose(shown, QStringLiteral("ê"));
    EXPECT_TRUE(hits_.lines().empty());
    compose(shown, "", QStringLiteral("e\u0302te"));
  });
  EXPECT_EQ(run(), Lines{"3 text ête"});
}

TEST_F(QtLinesItem, ComposingOverASelectionIsOneHit) {
  dialog_->setText(kLines, "Dupont");
  person_.select(kLines, 0, 3);
  edit([this](QPlainTextEdit &shown) {
    compose(shown, "x");
    EXPECT_TRUE(hits_.lines().empty());
    compose(shown, "", "D");
  });
  EXPECT_EQ(run(), Lines{"3 text Dont"});
}

TEST_F(QtLinesItem, ComposedCharactersWithoutAByteAreRefusedAndTheRestStays) {
  dialog_->setText(kLines, "Dupont");
  person_.select(kLines, 0, 3);
  edit([](QPlainTextEdit &shown) {
    compose(shown, "zhong");
    compose(shown, "", QStringLiteral("中"));
    EXPECT_EQ(shown.toPlainText(), "Dupont");
  });
  EXPECT_EQ(run(), Lines{});
}

// ---- Secrets ----

TEST_F(QtLinesItem, ASecretStaysOnOneLineAndHidden) {
  masked();
  dialog_->setText(kLines, std::string(200, '*'));
  QStringList seen;
  hits_.on(kLines, [&] {
    seen << field().toPlainText();
    dialog_->setText(kLines, std::string(dialog_->text(kLines).size(), '*'));
  });
  at(4).type(kLines, "5");
  edit([](QPlainTextEdit &shown) {
    EXPECT_EQ(shownLines(shown).size(), 1);
    EXPECT_FALSE(shown.verticalScrollBar()->isVisible());
    EXPECT_FALSE(shown.document()->isUndoAvailable());
  });
  EXPECT_EQ(run(), Lines{"3 text ****5" + std::string(196, '*')});
  EXPECT_EQ(seen, QStringList{QString(201, '*')}) << "while its hit was handled";
}

TEST_F(QtLinesItem, ASecretReplacedByAsManyCharactersIsAnother) {
  masked();
  dialog_->setText(kLines, "****");
  hits_.on(kLines,
           [&] { dialog_->setText(kLines, std::string(dialog_->text(kLines).size(), '*')); });
  edit([](QPlainTextEdit &shown) { shown.selectAll(); });
  person_.paste(kLines, "9876");
  EXPECT_EQ(run(), Lines{"3 text 9876"});
}

TEST_F(QtLinesItem, ACharacterTypedOverItselfIsAHit) {
  dialog_->setText(kLines, "a");
  edit([](QPlainTextEdit &shown) { shown.selectAll(); });
  person_.type(kLines, "a");
  EXPECT_EQ(run(), Lines{"3 text a"});
}

}  // namespace
}  // namespace korvel::platform
