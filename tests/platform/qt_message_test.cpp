// SPDX-License-Identifier: MIT
// Message boxes of the Qt module: how the lines look, what keys do, what assistive software reads.
#include <string>

#include <QAccessible>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"

namespace korvel::platform {
namespace {

using test::pressKey;
using test::qtDesktop;
using test::QtPerson;
using test::RecordedHits;
using test::typeText;
using test::widgetOf;
using Lines = std::vector<std::string>;

// A message box of the library, with two lines of text.
constexpr Rect kBounds{200, 150, 600, 240};
constexpr Rect kPane{80, 12, 392, 55};
constexpr Rect kIcon{18, 18, 50, 50};
constexpr MessageStyle kStyle{"Lucida Grande", 13, 14, 14};
// A button pressed by its shortcut looks pressed for a moment before its hit.
constexpr int kShortcutTime = 250;  // ms
constexpr int kYesItem = kOkItem, kNoItem = kCancelItem;

std::unique_ptr<Dialog> newBox(std::string_view text, int defaultItem = kYesItem) {
  auto dialog = qtDesktop().newDialog(kBounds, nullptr, "Fin");
  dialog->addItem(ItemKind::PushButton, {200, 58, 280, 78}, "Oui");
  dialog->addItem(ItemKind::PushButton, {300, 58, 380, 78}, "Non");
  dialog->addMessage(kPane, text, kStyle);
  dialog->setDefaultItem(defaultItem);
  return dialog;
}

std::string lines(int count, const std::string &line) {
  std::string text = line;
  for (int n = 1; n < count; ++n) text += "\r" + line;
  return text;
}

QScrollArea &paneOf(Dialog &dialog) {
  return *widgetOf(dialog.window())->findChild<QScrollArea *>();
}
QScrollBar &bar(Dialog &dialog, Qt::Orientation orientation) {
  QScrollArea &pane = paneOf(dialog);
  return orientation == Qt::Horizontal ? *pane.horizontalScrollBar() : *pane.verticalScrollBar();
}

// The hits of a box while a person acts on it.
Lines hitsOf(Dialog &dialog, QtPerson &person) {
  RecordedHits hits;
  hits.record(dialog);
  person.finish();
  return hits.lines();
}

// Scroll bars get their places only when the box is shown.
void showAndLeave(Dialog &dialog, const std::function<void()> &checks) {
  QtPerson person("Fin");
  person.check(checks).pressEscape();
  EXPECT_EQ(hitsOf(dialog, person), Lines{"2"});
}

// ---- The lines ----

bool isDark(QRgb pixel) { return qGray(pixel) < 140; }

bool hasInk(const QImage &image, int y) {
  for (int x = 0; x < image.width(); ++x)
    if (isDark(image.pixel(x, y))) return true;
  return false;
}

TEST(QtMessage, TheFirstBaselineIsAt26AndTheNextOne14Below) {
  const auto dialog = newBox("HHH\rHHH");
  showAndLeave(*dialog, [&] {
    const QImage box = widgetOf(dialog->window())->grab(QRect(60, 0, 200, 56)).toImage();
    for (const int baseline : {26, 40}) {
      EXPECT_TRUE(hasInk(box, baseline - 1)) << baseline;
      EXPECT_FALSE(hasInk(box, baseline)) << baseline;
    }
    EXPECT_FALSE(hasInk(box.copy(0, 0, 20, 56), 24)) << "left of the lines there is nothing";
    EXPECT_TRUE(hasInk(box.copy(20, 0, 4, 56), 24)) << "the lines begin at their left edge";
  });
}

TEST(QtMessage, NothingOfTheToldLinesIsCutOff) {
  const auto dialog = newBox("\xC9\xC0\xCA jgpq\r\xC9\xC0\xCA jgpq");
  showAndLeave(*dialog, [&] {
    EXPECT_FALSE(bar(*dialog, Qt::Vertical).isVisible());
    EXPECT_FALSE(bar(*dialog, Qt::Horizontal).isVisible());
    QWidget &lines = *paneOf(*dialog).widget();
    EXPECT_TRUE(paneOf(*dialog).viewport()->rect().contains(lines.geometry()));
    const QImage shown = lines.grab().toImage();
    EXPECT_FALSE(hasInk(shown, 0)) << "accents on capitals have their room";
  });
}

TEST(QtMessage, TheFivePixelsBelowTheLinesAreBlankOrTheBars) {
  const QRect whole(kPane.left, kPane.top, kPane.width(), kPane.height());
  EXPECT_EQ(paneOf(*newBox("un")).geometry(), whole.adjusted(0, 0, 0, -5));
  EXPECT_EQ(paneOf(*newBox(std::string(200, 'x'))).geometry(), whole);
}

TEST(QtMessage, AccentsShowAndControlsDoNot) {
  const auto dialog = newBox("\x8E\xC9\x80\t|\x01|");
  const auto *label = qobject_cast<QLabel *>(paneOf(*dialog).widget());
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->text(), QStringLiteral("éÉ€    | |"));
}

TEST(QtMessage, LinesEndAtCarriageReturnsOnly) {
  const auto dialog = newBox("un\r\rtrois\nencore");
  const auto *label = qobject_cast<QLabel *>(paneOf(*dialog).widget());
  EXPECT_EQ(label->text(), "un\n\ntrois encore");
}

// The stretch of the letters of a text without scroll bar, in percent.
int stretchOf(std::string_view text) {
  const auto dialog = newBox(text);
  showAndLeave(*dialog, [&] {
    EXPECT_LE(paneOf(*dialog).widget()->width(), kPane.width());
    EXPECT_FALSE(bar(*dialog, Qt::Horizontal).isVisible());
  });
  const int stretch = paneOf(*dialog).widget()->font().stretch();
  return stretch == QFont::AnyStretch ? 100 : stretch;
}

TEST(QtMessage, LinesThatAreALittleTooLongAreNarrowed) {
  // Fifty letters, as in the narrower of the boxes. In some fonts they fit.
  EXPECT_GE(stretchOf("Voulez-vous enregistrer les modifications faites ?"), 80);
  QFont font = QApplication::font();
  font.setPixelSize(kStyle.fontSize);
  QString text;
  while (QFontMetrics(font).horizontalAdvance(text) <= kPane.width())
    text += text.size() % 6 == 5 ? u' ' : u'e';
  const int stretch = stretchOf(text.toStdString());
  EXPECT_GE(stretch, 80);
  EXPECT_LT(stretch, 100);
}

TEST(QtMessage, NobodyCanSelectTheText) {
  const auto dialog = newBox("Texte");
  const auto *label = qobject_cast<QLabel *>(paneOf(*dialog).widget());
  EXPECT_EQ(label->textInteractionFlags(), Qt::NoTextInteraction);
  EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

TEST(QtMessage, MarkupIsShownAsPlainText) {
  const auto dialog = newBox("<b>1 < 2 & 3</b>");
  const auto *label = qobject_cast<QLabel *>(paneOf(*dialog).widget());
  EXPECT_EQ(label->text(), "<b>1 < 2 & 3</b>");
  EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

// ---- Scrolling ----

TEST(QtMessage, TooManyLinesScrollByKeysWhicheverButtonHasTheFocus) {
  const auto dialog = newBox(lines(20, "Ligne"), kNoItem);
  const auto position = [&] { return bar(*dialog, Qt::Vertical).value(); };
  QtPerson person("Fin");
  int most = 0, below = 0;
  person.check([&] {
    EXPECT_TRUE(bar(*dialog, Qt::Vertical).isVisible());
    EXPECT_FALSE(bar(*dialog, Qt::Horizontal).isVisible());
    most = bar(*dialog, Qt::Vertical).maximum();
    const int shown = paneOf(*dialog).viewport()->height();
    EXPECT_EQ(most + shown, paneOf(*dialog).widget()->height()) << "the last line is reached";
  });
  person.key(Qt::Key_Down).check([&] { EXPECT_EQ(position(), 14); });
  person.key(Qt::Key_Up).check([&] { EXPECT_EQ(position(), 0); });
  person.key(Qt::Key_PageDown).check([&] { below = position(); });
  person.check([&] { EXPECT_GT(below, 14); });
  person.key(Qt::Key_PageUp).check([&] { EXPECT_EQ(position(), 0); });
  person.key(Qt::Key_Left);  // to the other button
  person.key(Qt::Key_End).check([&] { EXPECT_EQ(position(), most); });
  person.key(Qt::Key_Home).check([&] { EXPECT_EQ(position(), 0); });
  person.pressReturn();
  EXPECT_EQ(hitsOf(*dialog, person), Lines{"1"});
}

TEST(QtMessage, ALineThatIsFarTooLongScrollsSideways) {
  const auto dialog = newBox(std::string(200, 'x') + "\rjgpq");
  QtPerson person("Fin");
  person.check([&] {
    EXPECT_TRUE(bar(*dialog, Qt::Horizontal).isVisible());
    EXPECT_FALSE(bar(*dialog, Qt::Vertical).isVisible()) << "both lines are whole above the bar";
    EXPECT_EQ(paneOf(*dialog).widget()->font().stretch(), QFont().stretch())
        << "narrowing would not help";
  });
  person.key(Qt::Key_Tab).key(Qt::Key_Tab).key(Qt::Key_Right);  // past the buttons, to the lines
  person.check([&] { EXPECT_GT(bar(*dialog, Qt::Horizontal).value(), 0); });
  person.pressReturn();
  EXPECT_EQ(hitsOf(*dialog, person), Lines{"1"}) << "Return is the default button there";
}

TEST(QtMessage, TheWheelScrolls) {
  const auto dialog = newBox(lines(20, "Ligne"));
  QtPerson person("Fin");
  person.act(0, [&](QWidget *window) {
    const QPointF place(100, 30);
    QWheelEvent wheel(place, window->mapToGlobal(place), {}, {0, -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(paneOf(*dialog).viewport(), &wheel);
    EXPECT_GT(bar(*dialog, Qt::Vertical).value(), 0);
  });
  person.pressEscape();
  EXPECT_EQ(hitsOf(*dialog, person), Lines{"2"});
}

TEST(QtMessage, ATextOfAnyLengthIsTaken) {
  const auto dialog = newBox(std::string(2000000, '\r'));
  EXPECT_GT(paneOf(*dialog).widget()->height(), 1000000);
  const auto wide = newBox(std::string(500000, 'W'));
  EXPECT_GT(paneOf(*wide).widget()->width(), 1000000);
  const auto empty = newBox("");
  EXPECT_EQ(paneOf(*empty).focusPolicy(), Qt::NoFocus);
}

// ---- Keys ----

TEST(QtMessage, KeysPressTheButtonsThatTheyStandFor) {
  using Keys = std::vector<std::pair<Qt::Key, Qt::KeyboardModifiers>>;
  const struct {
    const char *name;
    int defaultItem;
    Keys keys;
    const char *hit;
  } cases[] = {
      {"Return is the default", kYesItem, {{Qt::Key_Return, {}}}, "1"},
      {"and the other one", kNoItem, {{Qt::Key_Return, {}}}, "2"},
      {"Enter too", kNoItem, {{Qt::Key_Enter, Qt::KeypadModifier}}, "2"},
      {"space too", kYesItem, {{Qt::Key_Space, {}}}, "1"},
      {"Tab moves to the other", kYesItem, {{Qt::Key_Tab, {}}, {Qt::Key_Return, {}}}, "2"},
      {"back from the first",
       kYesItem,
       {{Qt::Key_Backtab, Qt::ShiftModifier}, {Qt::Key_Space, {}}},
       "2"},
      {"Tab goes round", kNoItem, {{Qt::Key_Tab, {}}, {Qt::Key_Return, {}}}, "1"},
      {"right", kYesItem, {{Qt::Key_Right, {}}, {Qt::Key_Return, {}}}, "2"},
      {"left", kNoItem, {{Qt::Key_Left, {}}, {Qt::Key_Space, {}}}, "1"},
      {"right twice",
       kYesItem,
       {{Qt::Key_Right, {}}, {Qt::Key_Right, {}}, {Qt::Key_Return, {}}},
       "1"},
      {"Escape", kYesItem, {{Qt::Key_Escape, {}}}, "2"},
      {"Alt and the first letter", kYesItem, {{Qt::Key_N, Qt::AltModifier}}, "2"},
      {"and of the first", kNoItem, {{Qt::Key_O, Qt::AltModifier}}, "1"},
      {"a letter typed on answers nothing",
       kYesItem,
       {{Qt::Key_N, {}}, {Qt::Key_O, {}}, {Qt::Key_Escape, {}}},
       "2"},
      {"up and down where nothing scrolls",
       kYesItem,
       {{Qt::Key_Down, {}}, {Qt::Key_Up, {}}, {Qt::Key_Down, {}}, {Qt::Key_Return, {}}},
       "2"},
  };
  for (const auto &row : cases) {
    const auto dialog = newBox("Quitter ?", row.defaultItem);
    QtPerson person("Fin");
    for (const auto &[key, modifiers] : row.keys) person.key(key, modifiers);
    if (row.keys.back().second == Qt::AltModifier)
      person.act(0, [](QWidget *) { QTest::qWait(kShortcutTime); });
    EXPECT_EQ(hitsOf(*dialog, person), Lines{row.hit}) << row.name;
  }
}

// The same key of the keyboard, which means another thing without Shift.
TEST(QtMessage, AHeldKeyGoesOnWhenShiftIsLetGo) {
  constexpr quint32 kPlace = 10, kOther = 11;
  const auto dialog = newBox("Quitter ?", kYesItem);
  QtPerson person("Fin");
  const auto press = [&person](Qt::Key key, quint32 place, bool isRepeat) {
    person.act(0, [=](QWidget *window) {
      QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, place, 0, 0, QString(), isRepeat);
      QCoreApplication::sendEvent(window->windowHandle(), &event);
    });
  };
  press(Qt::Key_1, kPlace, false);
  press(Qt::Key_Return, kOther, true);
  person.check([&] { EXPECT_TRUE(widgetOf(dialog->window())->isVisible()); });
  press(Qt::Key_Return, kPlace, true);
  EXPECT_EQ(hitsOf(*dialog, person), Lines{"1"});
}

TEST(QtMessage, AKeyHeldDownSinceBeforeAnswersNothing) {
  const auto dialog = newBox("Quitter ?", kYesItem);
  QtPerson person("Fin");
  const auto repeat = [&person](Qt::Key key) {
    person.act(0, [key](QWidget *w) {
      QTest::simulateEvent(w->windowHandle(), true, key, Qt::NoModifier, {}, true);
    });
  };
  repeat(Qt::Key_Return);
  person.key(Qt::Key_Tab);
  repeat(Qt::Key_Return);
  repeat(Qt::Key_Tab);
  person.key(Qt::Key_Tab);
  person.key(Qt::Key_Return);
  EXPECT_EQ(hitsOf(*dialog, person), Lines{"2"}) << "three times Tab, of which one is a repeat";
}

TEST(QtMessage, TheButtonThatReturnWouldPressLooksLikeIt) {
  const auto dialog = newBox("Quitter ?", kNoItem);
  const auto buttons = test::itemWidgets(widgetOf(dialog->window()));
  const auto isDefault = [&](std::size_t n) {
    return qobject_cast<QPushButton *>(buttons[n])->isDefault();
  };
  QtPerson person("Fin");
  person.check([&] { EXPECT_TRUE(!isDefault(0) && isDefault(1)); });
  person.key(Qt::Key_Tab);
  person.check([&] { EXPECT_TRUE(isDefault(0) && !isDefault(1)); });
  person.pressEscape();
  EXPECT_EQ(hitsOf(*dialog, person), Lines{"2"});
}

// ---- In front of a dialog ----

// The focus is gone when the key comes up.
TEST(QtMessage, AKeyPressedBeforeItComesUpIsTheDialogs) {
  const auto dialog = qtDesktop().newDialog({100, 100, 500, 400}, nullptr, "Fiche");
  dialog->addItem(ItemKind::PushButton, {50, 260, 130, 280}, "OK");
  dialog->addItem(ItemKind::PushButton, {150, 260, 230, 280}, "Annuler");
  const int field = dialog->addItem(ItemKind::EditText, {20, 20, 120, 35}, "");
  const int check = dialog->addItem(ItemKind::CheckBox, {20, 50, 120, 65}, "Fumeur");
  QWidget *window = widgetOf(dialog->window());
  QtPerson person("Fiche");
  RecordedHits hits, answer;
  hits.on(field, [&] {
    test::itemWidgets(window)[static_cast<std::size_t>(check) - 1]->setFocus();
    QTest::keyClick(window->windowHandle(), Qt::Key_B);
    QTest::keyPress(window->windowHandle(), Qt::Key_Space);
    answer.record(*newBox("Vraiment ?"));
  });
  person.type(field, "!");
  person.key(Qt::Key_Escape);  // the box
  person.act(0, [&](QWidget *front) { EXPECT_EQ(front, window); });
  person.pressEscape();
  hits.record(*dialog);
  person.finish();
  EXPECT_EQ(answer.lines(), Lines{"2"});
  EXPECT_EQ(hits.lines(), (Lines{"3 text !", "4 value 0", "2"}));
}

TEST(QtMessage, OutOfAHitItComesUpInFrontAndGivesTheFocusBack) {
  const auto dialog = qtDesktop().newDialog({100, 100, 500, 400}, nullptr, "Fiche");
  dialog->addItem(ItemKind::PushButton, {50, 260, 130, 280}, "OK");
  dialog->addItem(ItemKind::PushButton, {150, 260, 230, 280}, "Annuler");
  dialog->addItem(ItemKind::EditText, {20, 20, 120, 35}, "");
  const int second = dialog->addItem(ItemKind::EditText, {20, 50, 120, 65}, "");
  QtPerson person("Fiche");
  person.type(second, "!");
  Lines answers;
  RecordedHits hits;
  hits.on(second, [&] {
    for (int n = 0; n < 2; ++n) {
      const auto box = newBox("Vraiment ?");
      EXPECT_EQ(widgetOf(box->window())->windowHandle()->transientParent(),
                widgetOf(dialog->window())->windowHandle());
      RecordedHits answer;
      answer.record(*box);
      answers.insert(answers.end(), answer.lines().begin(), answer.lines().end());
    }
    hits.on(second, [] {});
  });
  person.key(Qt::Key_Return);                   // "Oui"
  person.key(Qt::Key_Tab).key(Qt::Key_Return);  // "Non"
  person.act(0, [&](QWidget *window) {
    EXPECT_EQ(window, widgetOf(dialog->window()));
    EXPECT_EQ(window->focusWidget(),
              test::itemWidgets(window)[static_cast<std::size_t>(second) - 1]);
    test::typeText(window, "x");
  });
  person.pressEscape();
  hits.record(*dialog);
  person.finish();
  EXPECT_EQ(answers, (Lines{"1", "2"}));
  EXPECT_EQ(hits.lines(), (Lines{"4 text !", "4 text !x", "2"}));
}

// ---- What assistive software reads ----

TEST(QtMessage, AssistiveSoftwareIsToldTitleAndText) {
  const auto dialog = newBox("Une ligne\ret une autre : \xC9");
  const QString text = QStringLiteral("Une ligne\net une autre : É");
  QAccessibleInterface *box = QAccessible::queryAccessibleInterface(widgetOf(dialog->window()));
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->role(), QAccessible::Dialog);
  EXPECT_EQ(box->text(QAccessible::Name), "Fin");
  EXPECT_EQ(box->text(QAccessible::Description), text);
  QAccessibleInterface *label = QAccessible::queryAccessibleInterface(paneOf(*dialog).widget());
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->role(), QAccessible::StaticText);
  EXPECT_EQ(label->text(QAccessible::Name), text);
}

TEST(QtMessage, ASecondTextIsNotTaken) {
  const auto dialog = newBox("Quitter ?");
  QWidget *box = widgetOf(dialog->window());
  const qsizetype parts = box->findChildren<QWidget *>().size();
  dialog->addMessage(kPane, "Rester ?", kStyle);
  EXPECT_EQ(box->findChildren<QWidget *>().size(), parts);
  EXPECT_EQ(box->accessibleDescription(), "Quitter ?");
}

TEST(QtMessage, ButtonsKeepTheirNames) {
  const auto dialog = newBox("Quitter ?");
  showAndLeave(*dialog, [&] {
    Lines names;
    for (QWidget *button : test::itemWidgets(widgetOf(dialog->window())))
      names.push_back(
          QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name).toStdString());
    EXPECT_EQ(names, (Lines{"Oui", "Non"}));
  });
}

// ---- The window ----

TEST(QtMessage, IsNotMinimised) {
  const auto dialog = newBox("x");
  showAndLeave(*dialog, [&] {
    QWidget *window = widgetOf(dialog->window());
    window->setWindowState(Qt::WindowMinimized);
    EXPECT_FALSE(window->isMinimized());
    EXPECT_FALSE(window->windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
  });
}

// ---- Icons ----

QImage pictured(AlertIcon icon) {
  const auto dialog = newBox("x");
  dialog->addAlertIcon(kIcon, icon);
  QWidget *window = widgetOf(dialog->window());
  window->ensurePolished();
  return window->grab(QRect(kIcon.left, kIcon.top, kIcon.width(), kIcon.height())).toImage();
}

bool isPlain(const QImage &image) {
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixel(x, y) != image.pixel(0, 0)) return false;
  return true;
}

// True for a picture that was only enlarged: each of its 2 x 2 blocks has one colour.
bool isMadeOfBlocks(const QImage &image) {
  for (int y = 0; y < image.height(); y += 2)
    for (int x = 0; x < image.width(); x += 2)
      if (image.copy(x, y, 2, 2) != QImage(image.copy(x, y, 1, 1)).scaled(2, 2)) return false;
  return true;
}

TEST(QtMessage, TheThreeIconsDiffer) {
  const QImage stop = pictured(AlertIcon::Stop);
  const QImage note = pictured(AlertIcon::Note);
  const QImage caution = pictured(AlertIcon::Caution);
  EXPECT_EQ(stop.size(), QSize(32, 32));
  for (const QImage &icon : {stop, note, caution}) EXPECT_FALSE(isPlain(icon));
  EXPECT_NE(stop, note);
  EXPECT_NE(note, caution);
  EXPECT_NE(caution, stop);
}

// The colours of an icon's ground and sign, and a place for each in a square of 32.
constexpr struct {
  AlertIcon icon;
  QRgb ground;
  QPoint onGround;
  QRgb sign;
  QPoint onSign;
} kDesigns[] = {
    {AlertIcon::Stop, qRgb(0xCC, 0x22, 0x2A), {16, 5}, qRgb(255, 255, 255), {16, 16}},
    {AlertIcon::Note, qRgb(0x2B, 0x6C, 0xB0), {8, 16}, qRgb(255, 255, 255), {16, 19}},
    {AlertIcon::Caution, qRgb(0xF5, 0xB8, 0x00), {10, 24}, qRgb(0x33, 0x2B, 0x00), {16, 15}},
    // The dot, and the gap between it and the stroke.
    {AlertIcon::Note, qRgb(0x2B, 0x6C, 0xB0), {16, 12}, qRgb(255, 255, 255), {16, 9}},
    {AlertIcon::Caution, qRgb(0xF5, 0xB8, 0x00), {16, 21}, qRgb(0x33, 0x2B, 0x00), {16, 23}},
};

// Also tells the icons apart: a red disc with a cross, a blue one with an "i", a yellow triangle
// with an exclamation mark.
void expectTheDesigns(double scale) {
  for (const auto &[icon, ground, onGround, sign, onSign] : kDesigns) {
    const QImage picture = pictured(icon);
    const int number = static_cast<int>(icon);
    ASSERT_EQ(picture.size(), QSize(32, 32) * scale);
    const auto at = [&](const QPoint &place) {
      return picture.pixel((QPointF(place) * scale).toPoint());
    };
    EXPECT_EQ(at(onGround), ground) << number;
    EXPECT_EQ(at(onSign), sign) << number;
    EXPECT_NE(at({1, 1}), ground) << number;
  }
}

TEST(QtMessage, IconsAreOfOneDesignAtScale1) { expectTheDesigns(1); }

// A process has one scale: these need a process to themselves, which CTest gives every test.
TEST(QtMessage, IconsAreOfOneDesignAtScale1AndAHalf) {
  setenv("QT_SCALE_FACTOR", "1.5", 1);
  expectTheDesigns(1.5);
}

TEST(QtMessage, IconsAreOfOneDesignAtScale2) {
  setenv("QT_SCALE_FACTOR", "2", 1);
  expectTheDesigns(2);
}

TEST(QtMessage, AtScale2TheIconsAreSharp) {
  setenv("QT_SCALE_FACTOR", "2", 1);
  for (const AlertIcon icon : {AlertIcon::Stop, AlertIcon::Note, AlertIcon::Caution}) {
    const QImage picture = pictured(icon);
    ASSERT_EQ(picture.size(), QSize(64, 64));
    EXPECT_FALSE(isPlain(picture));
    EXPECT_FALSE(isMadeOfBlocks(picture));
  }
}

// ---- The window of a long work ----

// A window with a bar and a button, which a work shows now and then.
class QtProgress : public testing::Test {
 protected:
  QtProgress() {
    dialog_->addItem(ItemKind::PushButton, {260, 50, 340, 70}, "Annuler");
    dialog_->addProgressBar({20, 18, 340, 36});
    dialog_->addProgressBar({0, 0, 1, 1});
  }

  QProgressBar &bar() { return *widgetOf(dialog_->window())->findChild<QProgressBar *>(); }
  // Goes on until there were so many hits.
  void work(std::size_t hits) {
    for (int n = 0; n < 5000 && hits_.lines().size() < hits; ++n) {
      hits_.recordStep(*dialog_);
      QTest::qSleep(1);
    }
  }

  const std::unique_ptr<Dialog> dialog_ =
      qtDesktop().newDialog({200, 150, 560, 232}, nullptr, "Importation");
  RecordedHits hits_;
};

TEST_F(QtProgress, KeysThatAreMeantForAnotherWindowPressNothing) {
  QtPerson person("Importation");
  person.key(Qt::Key_Space).key(Qt::Key_Return).key(Qt::Key_A).key(Qt::Key_Enter).pressEscape();
  work(1);
  EXPECT_EQ(hits_.lines(), Lines{"2"});
}

TEST_F(QtProgress, TabLeadsToTheButton) {
  QtPerson person("Importation");
  hits_.keepOpen(1);
  person.key(Qt::Key_Tab).key(Qt::Key_Space).key(Qt::Key_Return).pressEscape();
  work(3);
  EXPECT_EQ(hits_.lines(), (Lines{"1", "1", "2"}));
}

TEST_F(QtProgress, TheBarFollowsWhatIsDone) {
  constexpr struct {
    int done, total, value, maximum;
  } kCases[] = {{0, 100, 0, 100},
                {37, 100, 37, 100},
                {-5, 100, 0, 100},
                {200, 100, 100, 100},
                {7, 0, 0, 0},
                {7, -1, 0, 0},
                {2'000'000'000, 2'147'483'647, 2'000'000'000, 2'147'483'647}};
  for (const auto &row : kCases) {
    dialog_->setProgress(row.done, row.total);
    EXPECT_EQ(bar().value(), row.value) << row.done;
    EXPECT_EQ(bar().maximum(), row.maximum) << row.total;
  }
  dialog_->setProgress(1, 4);
  EXPECT_EQ(bar().text(), QString("25\u00A0%"));
}

TEST_F(QtProgress, WithoutATotalTheBarMovesByItself) {
  dialog_->setProgress(0, 0);
  hits_.recordStep(*dialog_);
  const QImage first = bar().grab().toImage();
  int waits = 0;
  while (waits < 5000 && bar().grab().toImage() == first) {
    hits_.recordStep(*dialog_);
    QTest::qSleep(1);
    ++waits;
  }
  EXPECT_LT(waits, 5000);
}

TEST_F(QtProgress, AssistiveSoftwareKnowsWhatTheBarIsOf) {
  QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(&this->bar());
  EXPECT_EQ(bar->role(), QAccessible::ProgressBar);
  EXPECT_EQ(bar->text(QAccessible::Name), QString("Importation"));
  dialog_->setTitle("Recherche");
  EXPECT_EQ(bar->text(QAccessible::Name), QString("Recherche"));
  dialog_->setProgress(3, 4);
  EXPECT_EQ(bar->valueInterface()->currentValue().toInt(), 3);
}

TEST_F(QtProgress, ADialogBelowTakesNoInputUntilTheWindowIsGone) {
  const auto below = qtDesktop().newDialog({200, 200, 600, 500}, nullptr, "Fiche");
  below->addItem(ItemKind::PushButton, {100, 250, 180, 270}, "OK");
  below->addItem(ItemKind::PushButton, {200, 250, 280, 270}, "Annuler");
  const int text = below->addItem(ItemKind::EditText, {20, 20, 120, 35}, "");
  below->setDefaultItem(1);
  RecordedHits belowHits;
  QtPerson person("Fiche");
  belowHits.on(text, [&] { work(1); });
  person.type(text, "a");
  person.act(0, [&](QWidget *window) {
    EXPECT_TRUE(QTest::qWaitForWindowActive(window)) << "before, keys still go to the dialog below";
    typeText(widgetOf(below->window()), "xyz");
  });
  person.pressEscape().pressReturn();
  belowHits.record(*below);
  person.finish();
  EXPECT_EQ(hits_.lines(), Lines{"2"});
  EXPECT_EQ(belowHits.lines(), (Lines{"3 text a", "1"}));
}

}  // namespace
}  // namespace korvel::platform
