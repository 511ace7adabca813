// SPDX-License-Identifier: MIT
// Items of the Qt module other than edit text, and how all of them are placed.
#include <sys/inotify.h>
#include <unistd.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {
namespace {

using test::clickOn;
using test::pressKey;
using test::qtDesktop;
using test::QtPerson;
using test::RecordedHits;
using test::widgetOf;
using Lines = std::vector<std::string>;

// Where a widget shows a colour that nothing else in it has.
QRect inkOf(QWidget &widget, const QColor &ink) {
  const QImage image = widget.grab().toImage();
  QRect found;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixelColor(x, y) == ink) found |= QRect(x, y, 1, 1);
  return found;
}

class QtItems : public testing::Test {
 protected:
  QtItems() : dialog_(qtDesktop().newDialog({100, 100, 500, 500}, nullptr, "Fiche")) {
    dialog_->addItem(ItemKind::PushButton, {50, 360, 130, 380}, "OK");
    dialog_->addItem(ItemKind::PushButton, {150, 360, 230, 380}, "Annuler");
  }
  void TearDown() override {
    if (hasRun_) person_.finish();
  }

  Lines run() {
    hasRun_ = true;
    hits_.record(*dialog_);
    return hits_.lines();
  }
  QWidget *window() { return widgetOf(dialog_->window()); }
  template <typename Widget>
  Widget &widget(int item) {
    return dynamic_cast<Widget &>(*test::itemWidgets(window())[static_cast<std::size_t>(item) - 1]);
  }
  int addList(const std::vector<std::string> &rows, Rect rect = {20, 20, 150, 80}) {
    const int item = dialog_->addItem(ItemKind::ListBox, rect, "");
    dialog_->setEntries(item, rows);
    return item;
  }
  int addPopUp(const std::vector<std::string> &entries) {
    const int item = dialog_->addItem(ItemKind::PopUp, {20, 20, 150, 34}, "");
    dialog_->setEntries(item, entries);
    return item;
  }
  QtPerson &person() { return person_; }

  std::unique_ptr<Dialog> dialog_;
  RecordedHits hits_;

 private:
  QtPerson person_{"Fiche"};
  bool hasRun_ = false;
};

// ---- Titles ----

TEST_F(QtItems, AnAmpersandIsACharacterLikeAnyOther) {
  const int button = dialog_->addItem(ItemKind::PushButton, {20, 20, 100, 40}, "A & B");
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 50, 100, 62}, "C & D");
  EXPECT_EQ(widget<QPushButton>(button).text(), "A && B");
  EXPECT_EQ(widget<QCheckBox>(box).text(), "C && D");
  EXPECT_TRUE(widget<QPushButton>(button).shortcut().isEmpty());
  EXPECT_EQ(widget<QPushButton>(button).accessibleName(), "A & B");
  EXPECT_EQ(widget<QCheckBox>(box).accessibleName(), "C & D");
}

TEST_F(QtItems, AStaticTextIsPlain) {
  dialog_->addStaticText({20, 20, 100, 35}, "<b>A & B</b>");
  const auto *label = window()->findChild<QLabel *>();
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->textFormat(), Qt::PlainText);
  EXPECT_EQ(label->text(), "<b>A & B</b>");
}

// ---- Check boxes and buttons ----

TEST_F(QtItems, TheSpaceBarIsAClickOnACheckBox) {
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 50, 100, 62}, "Fumeur");
  person().key(Qt::Key_Space).key(Qt::Key_Escape);
  EXPECT_EQ(run(), (Lines{std::to_string(box) + " value 0", "2"}));
}

TEST_F(QtItems, SettingACheckBoxIsNoHit) {
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 50, 100, 62}, "Fumeur");
  person().check([&] {
    dialog_->setValue(box, 1);
    dialog_->setValue(box, 0);
    dialog_->setValue(box, 1);
  });
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

// ---- Pop-ups ----

TEST_F(QtItems, ArrowsAndLettersChooseInAPopUp) {
  const int popUp = addPopUp({"Madame", "Monsieur", "Docteur"});
  person().key(Qt::Key_Down).key(Qt::Key_Down).key(Qt::Key_Up).key(Qt::Key_D).pressEscape();
  const std::string item = std::to_string(popUp);
  EXPECT_EQ(run(), (Lines{item + " value 1", item + " value 2", item + " value 1",
                          item + " value 3", "2"}));
}

TEST_F(QtItems, TheWheelOverAClosedPopUpDoesNothing) {
  const int popUp = addPopUp({"Madame", "Monsieur"});
  dialog_->setValue(popUp, 1);
  person().with<QComboBox>(popUp, [](QComboBox &box) {
    const QPointF place = box.rect().center();
    QWheelEvent wheel(place, box.mapToGlobal(place), {0, 0}, {0, -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&box, &wheel);
  });
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
  EXPECT_EQ(dialog_->value(popUp), 1);
}

TEST_F(QtItems, EscapeInAnOpenPopUpClosesOnlyThat) {
  const int popUp = addPopUp({"Madame", "Monsieur"});
  person().act(popUp, [](QWidget *box) {
    clickOn(box, box->rect().center());
    QWidget *list = QApplication::activePopupWidget();
    ASSERT_NE(list, nullptr);
    QTest::keyClick(list->windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  });
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

// Also where the list has no keys of its own, and the dialog's window gets them.
TEST_F(QtItems, AKeyThatClosesAnOpenPopUpIsNothingElse) {
  const int popUp = addPopUp({"Madame", "Monsieur"});
  dialog_->setValue(popUp, 1);
  dialog_->setDefaultItem(kOkItem);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape})
    person().act(popUp, [key](QWidget *box) {
      clickOn(box, box->rect().center());
      ASSERT_NE(QApplication::activePopupWidget(), nullptr);
      pressKey(box, Qt::Key_Down);
      pressKey(box, key);
      EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << key;
    });
  person().pressReturn();
  const std::string item = std::to_string(popUp);
  EXPECT_EQ(run(), (Lines{item + " value 2", item + " value 2", "1"}));
}

TEST_F(QtItems, AValueOutsideThePopUpChangesNothing) {
  const int popUp = addPopUp({"Madame", "Monsieur"});
  dialog_->setValue(popUp, 2);
  dialog_->setValue(popUp, 3);
  dialog_->setValue(popUp, -1);
  EXPECT_EQ(dialog_->value(popUp), 2);
}

// ---- Lists ----

TEST_F(QtItems, ArrowsSelectRowsFromTheFirstOn) {
  const int list = addList({"a", "b", "c"});
  person().key(Qt::Key_Down).key(Qt::Key_Down).key(Qt::Key_Up).key(Qt::Key_Up).key(Qt::Key_End);
  person().key(Qt::Key_Home).pressEscape();
  const std::string item = std::to_string(list);
  EXPECT_EQ(run(), (Lines{item + " row 0 a", item + " row 1 b", item + " row 0 a",
                          item + " row 2 c", item + " row 0 a", "2"}));
}

TEST_F(QtItems, TheUpArrowStartsAtTheLastRow) {
  const int list = addList({"a", "b", "c"});
  person().key(Qt::Key_Up).pressEscape();
  EXPECT_EQ(run(), (Lines{std::to_string(list) + " row 2 c", "2"}));
}

TEST_F(QtItems, KeysInAnEmptyListAreNothing) {
  addList({});
  person().key(Qt::Key_Down).key(Qt::Key_End).key(Qt::Key_A).pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtItems, ALetterSelectsTheRowThatBeginsWithIt) {
  const int list = addList({"Albert", "Berthe", "Claude"});
  person().key(Qt::Key_C).pressEscape();
  EXPECT_EQ(run(), (Lines{std::to_string(list) + " row 2 Claude", "2"}));
}

TEST_F(QtItems, APageIsWhatIsInView) {
  std::vector<std::string> rows;
  for (int n = 0; n < 100; ++n) rows.push_back(std::to_string(n));
  const int list = addList(rows);
  person().key(Qt::Key_Down).key(Qt::Key_PageDown).pressEscape();
  const Lines lines = run();
  ASSERT_EQ(lines.size(), 3u);
  const int page = dialog_->lastClick(list).row;
  EXPECT_GE(page, 3);
  EXPECT_LE(page, 5);
  EXPECT_TRUE(widget<QListView>(list).viewport()->rect().contains(
      widget<QListView>(list)
          .visualRect(widget<QListView>(list).model()->index(page, 0))
          .center()));
}

TEST_F(QtItems, APageUpEndsAtTheFirstRow) {
  const int list = addList({"a", "b", "c"});
  person().key(Qt::Key_End).key(Qt::Key_PageUp).pressEscape();
  const std::string name = std::to_string(list);
  EXPECT_EQ(run(), (Lines{name + " row 2 c", name + " row 0 a", "2"}));
}

TEST_F(QtItems, AClickBelowTheRowsIsNothing) {
  const int list = addList({"a", "b"});
  person().clickRow(list, 1);
  person().clickAt(list, {20, 55}).pressEscape();
  EXPECT_EQ(run(), (Lines{std::to_string(list) + " row 1 b", "2"}));
  EXPECT_EQ(widget<QListView>(list).selectionModel()->selectedRows().size(), 1);
}

TEST_F(QtItems, AnotherMouseButtonIsNothing) {
  const int list = addList({"a", "b"});
  person().clickAt(list, {20, 10}, Qt::RightButton).clickAt(list, {20, 10}, Qt::MiddleButton);
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtItems, ADragSelectsTheRowUnderTheMouseAtItsEnd) {
  const int list = addList({"a", "b", "c"});
  person().with<QListView>(list, [](QListView &view) {
    QWindow *screen = view.window()->windowHandle();
    const auto place = [&view](int row) {
      return view.viewport()->mapTo(view.window(),
                                    view.visualRect(view.model()->index(row, 0)).center());
    };
    QTest::mousePress(screen, Qt::LeftButton, Qt::NoModifier, place(0));
    QTest::mouseMove(screen, place(1));
    QTest::mouseMove(screen, place(2));
    QTest::mouseRelease(screen, Qt::LeftButton, Qt::NoModifier, place(2));
  });
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{std::to_string(list) + " row 2 c", "2"}));
}

TEST_F(QtItems, ADragBeyondTheViewMovesOnRowByRow) {
  const int list = addList({"0", "1", "2", "3", "4", "5", "6", "7"}, {20, 60, 150, 113});
  person().with<QListView>(list, [](QListView &view) {
    QWindow *screen = view.window()->windowHandle();
    const auto place = [&view](int x, int y) {
      return view.viewport()->mapTo(view.window(), QPoint(x, y));
    };
    const int below = view.viewport()->height() + 10;
    QTest::mousePress(screen, Qt::LeftButton, Qt::NoModifier, place(10, 5));
    for (int x = 11; x < 20; ++x) QTest::mouseMove(screen, place(x, below));
    EXPECT_EQ(view.currentIndex().row(), 7) << "there is no row behind the last";
    EXPECT_GT(view.verticalScrollBar()->value(), 0);
    for (int x = 11; x < 15; ++x) QTest::mouseMove(screen, place(x, -10));
    QTest::mouseRelease(screen, Qt::LeftButton, Qt::NoModifier, place(14, -10));
  });
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{std::to_string(list) + " row 3 3", "2"}));
}

TEST_F(QtItems, ARowHalfInViewStaysInPlaceBetweenTwoClicks) {
  // No whole number of rows of 14 to 18 pixels.
  const int list = addList({"0", "1", "2", "3", "4", "5", "6", "7"}, {20, 20, 150, 73});
  int lowest = -1;
  person().with<QListView>(list, [&lowest](QListView &view) {
    const QPoint bottom(10, view.viewport()->height() - 1);
    const QModelIndex half = view.indexAt(bottom);
    ASSERT_GT(view.visualRect(half).bottom(), bottom.y()) << "it is not half in view";
    lowest = half.row();
    const int before = view.verticalScrollBar()->value();
    QTest::mouseDClick(view.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                       view.viewport()->mapTo(view.window(), bottom));
    EXPECT_EQ(view.verticalScrollBar()->value(), before);
  });
  person().pressEscape();
  const Lines lines = run();
  const std::string row = std::to_string(lowest);
  const std::string line = std::to_string(list) + " row " + row + " " + row;
  EXPECT_EQ(lines, (Lines{line, line + " double", "2"}));
}

TEST_F(QtItems, ScrollBarsComeAsNeeded) {
  const int small = addList({"a"});
  const int large =
      addList({std::string(200, 'x'), "b", "c", "d", "e", "f", "g"}, {200, 20, 330, 80});
  person().check([&] {
    EXPECT_FALSE(widget<QListView>(small).verticalScrollBar()->isVisible());
    EXPECT_FALSE(widget<QListView>(small).horizontalScrollBar()->isVisible());
    EXPECT_TRUE(widget<QListView>(large).verticalScrollBar()->isVisible());
    EXPECT_TRUE(widget<QListView>(large).horizontalScrollBar()->isVisible());
  });
  person().pressEscape();
  run();
}

TEST_F(QtItems, WhereAListHasNoRowADoubleClickIsNothing) {
  const int empty = addList({}, {200, 20, 330, 80});
  const int list = addList({"a"});
  for (const int item : {empty, list}) {
    person().act(item, [](QWidget *widget) {
      auto *rows = qobject_cast<QListView *>(widget)->viewport();
      QTest::mouseDClick(rows, Qt::LeftButton, {}, rows->rect().bottomLeft() + QPoint(5, -3));
    });
  }
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"2"}));
}

TEST_F(QtItems, ReturnInAListWithoutRowsIsNothing) {
  dialog_->setDefaultItem(kOkItem);
  const int list = addList({}, {200, 20, 330, 80});
  person().act(list, [](QWidget *widget) { widget->setFocus(); });
  person().key(Qt::Key_Return).key(Qt::Key_Enter, Qt::KeypadModifier);
  person().check([=, this] { dialog_->setEntries(list, {"a"}); });
  person().key(Qt::Key_Return);
  EXPECT_EQ(run(), (Lines{"1"}));
}

TEST_F(QtItems, NothingCanBeEditedOrMovedInAList) {
  const int list = addList({"a", "b"});
  person().clickRow(list, 0);
  person().key(Qt::Key_F2).key(Qt::Key_Delete).key(Qt::Key_A, Qt::ControlModifier).pressEscape();
  EXPECT_EQ(run(), (Lines{std::to_string(list) + " row 0 a", "2"}));
  EXPECT_EQ(dialog_->entry(list, 0), "a");
  EXPECT_EQ(dialog_->entry(list, 1), "b");
}

// ---- Keys of the whole dialog ----

TEST_F(QtItems, ReturnAndEscapeReachTheDialogFromEveryKindOfItem) {
  dialog_->setDefaultItem(kOkItem);
  hits_.keepOpen(kOkItem);
  hits_.keepOpen(kCancelItem);
  const int items[] = {dialog_->addItem(ItemKind::CheckBox, {20, 100, 100, 112}, "Fumeur"),
                       addPopUp({"Madame", "Monsieur"}), addList({"a", "b"}, {200, 20, 330, 80}),
                       dialog_->addItem(ItemKind::PushButton, {20, 140, 100, 160}, "Calculer"),
                       dialog_->addItem(ItemKind::EditText, {20, 180, 100, 195}, "")};
  for (const int item : items) {
    person().act(item, [](QWidget *widget) { widget->setFocus(); });
    person().key(Qt::Key_Return).key(Qt::Key_Escape);
  }
  person().check([this] { hits_.stopAt(kOkItem); });
  person().pressReturn();
  Lines expected;
  for (std::size_t n = 0; n < std::size(items); ++n) expected.insert(expected.end(), {"1", "2"});
  expected.push_back("1");
  EXPECT_EQ(run(), expected);
}

TEST_F(QtItems, ARowThatIsTooLongCanBeScrolledToItsEnd) {
  auto &list = widget<QListView>(addList({std::string(60, 'W')}));
  list.grab();
  const int needed = QFontMetrics(list.font()).horizontalAdvance(QString(60, 'W'));
  EXPECT_GT(list.horizontalScrollBar()->maximum() + list.viewport()->width(), needed);
}

// ---- Places ----

TEST_F(QtItems, FieldsHaveTheirFramesOutsideTheClassicRectangle) {
  const int text = dialog_->addItem(ItemKind::EditText, {20, 20, 80, 35}, "");
  const int popUp = dialog_->addItem(ItemKind::PopUp, {100, 20, 180, 34}, "");
  EXPECT_EQ(widget<QLineEdit>(text).geometry(), QRect(17, 17, 66, 21));
  EXPECT_EQ(widget<QComboBox>(popUp).geometry(), QRect(97, 17, 86, 21))
      << "a pop-up is as high as the field beside it";
}

TEST_F(QtItems, TheFontIsOneForAllAndFitsAOneLineField) {
  const int text = dialog_->addItem(ItemKind::EditText, {20, 20, 80, 35}, "");
  const QFont font = window()->font();
  EXPECT_LE(QFontMetrics(font).height(), 15);
  EXPECT_GE(font.pixelSize(), 9);
  EXPECT_EQ(widget<QLineEdit>(text).font(), font);
  EXPECT_LT(QFontMetrics(font).horizontalAdvance("00"), 20);
  EXPECT_LT(QFontMetrics(font).horizontalAdvance("0000"), 40);
}

// Texts in one colour without shades, so that their ink can be measured.
class QtInk : public QtItems {
 protected:
  QtInk() {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Text, Qt::magenta);
    palette.setColor(QPalette::WindowText, Qt::magenta);
    window()->setPalette(palette);
    QFont sharp = window()->font();
    sharp.setStyleStrategy(QFont::NoAntialias);
    window()->setFont(sharp);
  }

  // The room that the text needs when nothing limits it.
  QSize neededInk(const QString &text) {
    QLabel label(text, window());
    label.setMargin(10);
    label.resize(200, 60);
    return inkOf(label, Qt::magenta).size();
  }
};

constexpr const char *kTall = "\xC9\xC0\xC7gpq";  // ÉÀÇgpq

TEST_F(QtInk, ATextWithAccentsAndTailsIsShownWholeInAOneLineField) {
  const int field = dialog_->addItem(ItemKind::EditText, {20, 20, 100, 35}, "");
  dialog_->setText(field, kTall);
  const QRect shown = inkOf(widget<QLineEdit>(field), Qt::magenta);
  EXPECT_EQ(shown.size(), neededInk(QStringLiteral("ÉÀÇgpq")));
  EXPECT_GE(shown.left(), 3) << "the text begins at the left edge of the rectangle";
  EXPECT_LE(shown.left(), 4);
}

// Lets dialogs find this font on the desktop.
class DesktopFont {
 public:
  explicit DesktopFont(double points) : before_(QApplication::font()) {
    QFont font = before_;
    font.setPointSizeF(points);
    QApplication::setFont(font);
  }
  ~DesktopFont() { QApplication::setFont(before_); }
  DesktopFont(const DesktopFont &) = delete;
  DesktopFont &operator=(const DesktopFont &) = delete;

 private:
  const QFont before_;
};

TEST_F(QtInk, FieldsFollowTheSizeOfTheDesktopsFontAndCutNothing) {
  int before = 0;
  for (const double points : {7.0, 8.0, 9.0, 9.5, 10.0, 10.5, 11.0, 12.0, 18.0}) {
    SCOPED_TRACE(points);
    const DesktopFont font(points);
    const auto dialog = qtDesktop().newDialog({100, 100, 300, 300}, nullptr, "Fiche");
    const int wide = dialog->addItem(ItemKind::EditText, {20, 20, 150, 35}, "");
    const int year = dialog->addItem(ItemKind::EditText, {20, 60, 60, 75}, "");
    dialog->setText(wide, kTall);
    dialog->setText(year, "2888");
    QWidget *fiche = widgetOf(dialog->window());
    fiche->setPalette(window()->palette());
    const auto items = test::itemWidgets(fiche);
    const int size = items[0]->font().pixelSize();
    EXPECT_GE(size, before);
    before = size;
    const bool isFollowed = points > 9 && points <= 11;
    EXPECT_GE(size, isFollowed ? static_cast<int>(points * 96 / 72) - 1 : 9);
    EXPECT_LE(fiche->font().pixelSize(), 12) << "the layout is made for it";
    for (QWidget *item : {items[0], items[1]}) {
      QFont sharp = item->font();
      sharp.setStyleStrategy(QFont::NoAntialias);
      item->setFont(sharp);
      QLabel roomy(dynamic_cast<QLineEdit &>(*item).text(), fiche);
      roomy.setFont(sharp);
      roomy.setMargin(10);
      roomy.resize(200, 60);
      EXPECT_EQ(inkOf(*item, Qt::magenta).size(), inkOf(roomy, Qt::magenta).size());
    }
  }
}

TEST_F(QtInk, ATextBeginsAtTheTopOfAFieldOfSeveralLines) {
  const int field = dialog_->addItem(ItemKind::EditText, {20, 20, 100, 60}, "");
  dialog_->setText(field, kTall);
  const QFontMetrics metrics(window()->font());
  const int above = metrics.ascent() + metrics.tightBoundingRect(QStringLiteral("ÉÀÇgpq")).top();
  const QRect shown = inkOf(widget<QWidget>(field), Qt::magenta);
  EXPECT_NEAR(shown.top(), 3 + above, 1) << "hinting moves the ink";
  EXPECT_EQ(shown.size(), neededInk(QStringLiteral("ÉÀÇgpq")));
}

// Under any font and style.
TEST_F(QtInk, TheCursorBeginsAtTheTopOfAFieldOfSeveralLines) {
  auto &field = widget<QPlainTextEdit>(dialog_->addItem(ItemKind::EditText, {20, 20, 100, 60}, ""));
  field.grab();  // which places the text
  const QPoint cursor = field.viewport()->mapTo(&field, field.cursorRect().topLeft());
  EXPECT_EQ(cursor.y(), 3);
}

TEST_F(QtInk, ATextWithAccentsAndTailsIsShownWholeInAStaticText) {
  dialog_->addStaticText({20, 20, 100, 30}, kTall);
  EXPECT_EQ(inkOf(*window()->findChild<QLabel *>(), Qt::magenta).size(),
            neededInk(QStringLiteral("ÉÀÇgpq")));
}

TEST_F(QtInk, ATextWithAccentsAndTailsIsShownWholeInAList) {
  const int list = addList({kTall, kTall});
  window()->grab();  // lays the rows out
  auto &view = widget<QListView>(list);
  const QRect shown = inkOf(*view.viewport(), Qt::magenta);
  const int rowHeight = view.visualRect(view.model()->index(0, 0)).height();
  EXPECT_EQ(shown.height() - rowHeight, neededInk(QStringLiteral("ÉÀÇgpq")).height());
}

TEST_F(QtInk, ATextWithAccentsAndTailsIsShownWholeInThePlacesOfTitles) {
  QPalette palette = window()->palette();
  palette.setColor(QPalette::ButtonText, Qt::magenta);
  window()->setPalette(palette);
  dialog_->addItem(ItemKind::CheckBox, {20, 20, 120, 32}, kTall);
  dialog_->addItem(ItemKind::PushButton, {20, 50, 120, 70}, kTall);
  const int popUp = dialog_->addItem(ItemKind::PopUp, {20, 80, 120, 94}, "");
  dialog_->setEntries(popUp, {kTall});
  dialog_->setValue(popUp, 1);
  dialog_->addGroupBox({20, 110, 120, 160}, kTall);
  const int needed = neededInk(QStringLiteral("ÉÀÇgpq")).height();
  for (const int item : {3, 4, 5})
    EXPECT_EQ(inkOf(widget<QWidget>(item), Qt::magenta).height(), needed) << item;
  EXPECT_EQ(inkOf(*window()->findChild<QGroupBox *>(), Qt::magenta).height(), needed);
}

TEST_F(QtItems, AGroupBoxHasADiscreetFrameWithRoundCorners) {
  window()->setPalette(QPalette(Qt::black, Qt::white, Qt::white, Qt::white, Qt::white, Qt::black,
                                Qt::black, Qt::white, Qt::white));
  dialog_->addGroupBox({20, 20, 120, 80}, "");
  const QImage shown = window()->grab(QRect(20, 20, 100, 60)).toImage();
  EXPECT_NEAR(qGray(shown.pixel(0, 30)), 191, 1) << "a quarter of the texts' black";
  EXPECT_EQ(shown.pixelColor(0, 59), QColor(Qt::white)) << "outside of the corner";
  int shades = 0;
  for (int x = 0; x < 3; ++x)
    for (int y = 57; y < 60; ++y) shades += qAbs(qGray(shown.pixel(x, y)) - 223) < 30 ? 1 : 0;
  EXPECT_GT(shades, 0) << "the corner is smooth";
}

TEST_F(QtInk, TwoAndFourDigitsAreShownWholeInTheItemsOfADate) {
  const int day = dialog_->addItem(ItemKind::EditText, {20, 20, 40, 35}, "");
  const int year = dialog_->addItem(ItemKind::EditText, {80, 20, 120, 35}, "");
  dialog_->setText(day, "28");
  dialog_->setText(year, "2888");
  EXPECT_EQ(inkOf(widget<QLineEdit>(day), Qt::magenta).size(), neededInk("28"));
  EXPECT_EQ(inkOf(widget<QLineEdit>(year), Qt::magenta).size(), neededInk("2888"));
}

TEST_F(QtInk, TwoLinesWithAccentsAndTailsAreShownWholeInTheHeightOfTwoFields) {
  dialog_->addStaticText({20, 20, 80, 50}, std::string(kTall) + " " + kTall);
  EXPECT_EQ(inkOf(*window()->findChild<QLabel *>(), Qt::magenta).size(),
            neededInk(QStringLiteral("ÉÀÇgpq\nÉÀÇgpq")));
}

TEST_F(QtItems, ASpaceThatDoesNotBreakTakesTheWordBeforeItsSignAlong) {
  const int width = window()->fontMetrics().horizontalAdvance(QStringLiteral("Ou vous")) + 2;
  dialog_->addStaticText({20, 20, 20 + width, 80}, "Ou vous\xA0?");
  auto *label = window()->findChild<QLabel *>();
  const QImage shown = label->grab().toImage();
  label->setText(QStringLiteral("Ou\nvous ?"));
  EXPECT_EQ(shown, label->grab().toImage());
}

TEST_F(QtItems, ATitleTooLongForItsButtonIsNarrowed) {
  const int item = dialog_->addItem(ItemKind::PushButton, {20, 20, 100, 40}, "Imprimer la fiche");
  const auto &button = widget<QPushButton>(item);
  EXPECT_LT(button.font().stretch(), 100);
  EXPECT_EQ(button.width(), 80);
}

TEST_F(QtItems, AOneLineStaticTextRunsOnBehindItsNeighbours) {
  const int field = dialog_->addItem(ItemKind::EditText, {70, 20, 170, 35}, "");
  dialog_->addStaticText({20, 20, 60, 35}, "Une tr\xE8s longue l\xE9gende");
  const auto *label = window()->findChild<QLabel *>();
  EXPECT_FALSE(label->wordWrap());
  EXPECT_GT(label->width(), 60);
  EXPECT_EQ(window()->childAt(75, 25), &widget<QLineEdit>(field));
}

TEST_F(QtItems, AStaticTextOfSeveralLinesIsWrapped) {
  dialog_->addStaticText({20, 20, 100, 80}, "Un texte de plusieurs lignes");
  const auto *label = window()->findChild<QLabel *>();
  EXPECT_TRUE(label->wordWrap());
  EXPECT_EQ(label->contentsRect().translated(label->pos()), QRect(20, 20, 80, 60));
}

TEST_F(QtItems, AGroupBoxLiesBehindTheItemsWhenItComesLast) {
  const int box = dialog_->addItem(ItemKind::CheckBox, {30, 60, 130, 72}, "Fumeur");
  dialog_->addGroupBox({20, 20, 200, 120},
                       "Ant\xE9"
                       "c\xE9"
                       "dents & suivi");
  const auto *group = window()->findChild<QGroupBox *>();
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->geometry(), QRect(20, 20, 180, 100));
  EXPECT_EQ(group->accessibleName(), QStringLiteral("Antécédents & suivi"));
  EXPECT_EQ(window()->childAt(38, 66), &widget<QCheckBox>(box));
}

TEST_F(QtItems, ATitleWiderThanItsCheckBoxDoesNotCoverTheFieldBeside) {
  const int field = dialog_->addItem(ItemKind::EditText, {60, 50, 140, 65}, "");
  const int box = dialog_->addItem(ItemKind::CheckBox, {20, 50, 50, 62}, "Fumeur ou fumeuse");
  EXPECT_TRUE(widget<QCheckBox>(box).geometry().contains(70, 56));
  EXPECT_EQ(window()->childAt(70, 56), &widget<QLineEdit>(field));
}

TEST_F(QtItems, ACheckBoxWithinAGroupBoxCanBeClicked) {
  dialog_->addGroupBox({20, 20, 200, 120}, "Suivi");
  const int box = dialog_->addItem(ItemKind::CheckBox, {30, 60, 130, 72}, "Fumeur");
  person().click(box).pressEscape();
  EXPECT_EQ(run(), (Lines{std::to_string(box) + " value 0", "2"}));
}

TEST_F(QtItems, AnIconIsScaledIntoItsRectangle) {
  const test::TemporaryFolder folder;
  QImage picture(10, 5, QImage::Format_RGB32);
  picture.fill(Qt::red);
  const std::string path = folder.path() + "/2.png";
  ASSERT_TRUE(picture.save(QString::fromStdString(path)));
  dialog_->addIcon({20, 20, 60, 60}, path);
  const QRect red = inkOf(*window(), Qt::red);
  EXPECT_EQ(red, QRect(20, 30, 40, 20)) << "twice as wide as high, in the middle";
}

TEST_F(QtItems, AnIconThatCannotBeReadShowsNothing) {
  const test::TemporaryFolder folder;
  const QImage before = window()->grab().toImage();
  dialog_->addIcon({20, 20, 60, 60}, "/nowhere/2.svg");
  dialog_->addIcon({20, 20, 60, 60}, folder.add("2.png", "no picture"));
  dialog_->addIcon({20, 20, 60, 60}, "");
  EXPECT_EQ(window()->grab().toImage(), before);
}

TEST_F(QtItems, AnIconThatCannotBeReadIsNotReadAgain) {
  const test::TemporaryFolder folder;
  dialog_->addIcon({20, 20, 60, 60}, folder.add("2.png", "no picture"));
  const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  inotify_add_watch(watch, folder.path().c_str(), IN_OPEN);
  const auto wasOpened = [watch] {
    alignas(inotify_event) char events[4096];
    return read(watch, events, sizeof events) > 0;
  };
  window()->grab();
  EXPECT_TRUE(wasOpened());
  window()->grab();
  EXPECT_FALSE(wasOpened());
  close(watch);
}

}  // namespace
}  // namespace korvel::platform
