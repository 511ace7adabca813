// SPDX-License-Identifier: MIT
// Dialogs on screens of every scale, and what moves to a screen of another one: frames, texts and
// pictures in the pixels of the screen. A process has one scale; CTest gives every test a process.
#include <QAbstractScrollArea>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/slider.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {
namespace {

using test::qtDesktop;
using test::widgetOf;

// Lengths of items are odd, so that every edge comes to lie between two pixels of some scale.
class ScaledDialog {
 public:
  static constexpr std::size_t kItems = 9;
  // Its items lie in the upper part.
  explicit ScaledDialog(int height = 400)
      : dialog_(qtDesktop().newDialog({101, 101, 502, 101 + height}, nullptr, "Fiche")) {
    dialog_->addItem(ItemKind::PushButton, {51, 350, 132, 371}, "OK");
    dialog_->addItem(ItemKind::PushButton, {151, 350, 232, 371}, "Annuler");
    dialog_->addItem(ItemKind::EditText, {21, 20, 150, 35}, "");
    dialog_->addItem(ItemKind::EditText, {22, 51, 151, 66}, "");
    dialog_->addItem(ItemKind::PopUp, {23, 80, 150, 94}, "");
    dialog_->addItem(ItemKind::CheckBox, {21, 111, 100, 123}, "Fumeur");
    dialog_->addItem(ItemKind::CheckBox, {22, 130, 100, 142}, "Fumeur");
    dialog_->addItem(ItemKind::ListBox, {201, 21, 330, 80}, "");
    dialog_->addItem(ItemKind::ListBox, {202, 102, 331, 160}, "");
    dialog_->addGroupBox({201, 181, 331, 240}, "");
  }

  Dialog &operator*() { return *dialog_; }
  QWidget *window() { return widgetOf(dialog_->window()); }
  // Of one that scrolls.
  QScrollBar &bar() {
    return *window()
                ->findChild<QAbstractScrollArea *>(QString(), Qt::FindDirectChildrenOnly)
                ->verticalScrollBar();
  }
  std::vector<QWidget *> items() {
    auto all = test::itemWidgets(window());
    all.resize(kItems);
    return all;
  }

  // What the window shows on its screen.
  QImage shown() {
    window()->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window()));
    QWidget *focus = QApplication::focusWidget();
    if (focus != nullptr) focus->clearFocus();
    QCoreApplication::processEvents();
    return onScreen();
  }

  // The toolkit's platform without a screen keeps no pixels of its own but at scale 1.
  QImage onScreen() {
    return window()->devicePixelRatioF() == 1
               ? window()->screen()->grabWindow(window()->winId()).toImage()
               : window()->grab().toImage();
  }

 private:
  std::unique_ptr<Dialog> dialog_;
};

// The pixels of the screen nearest to a rectangle of the dialog.
QRect pixelsOf(const QRect &rect, double scale) {
  const auto place = [scale](int length) { return static_cast<int>(std::lround(length * scale)); };
  return {QPoint(place(rect.left()), place(rect.top())),
          QPoint(place(rect.right() + 1) - 1, place(rect.bottom() + 1) - 1)};
}

// In its window.
QRect placeOf(const QWidget &widget) {
  return {widget.mapTo(widget.window(), QPoint(0, 0)), widget.size()};
}

// Of a check box, its box.
QRect frameOf(QWidget &item) {
  if (qobject_cast<QCheckBox *>(&item) == nullptr) return placeOf(item);
  QStyleOptionButton option;
  option.initFrom(&item);
  return item.style()
      ->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &item)
      .translated(placeOf(item).topLeft());
}

// How many pixels have the colour of the first one on the way inside.
int thickness(const QImage &image, QPoint place, const QPoint &step) {
  const QRgb colour = image.pixel(place);
  int count = 0;
  while (count < 20 && image.pixel(place) == colour) {
    ++count;
    place += step;
  }
  return count;
}

// A frame of one colour and thickness between a rectangle's corners, none of which is lost.
void expectFrame(const QImage &image, const QRect &rect, int thick, const std::string &name) {
  const int corner = 4 + 2 * thick;
  const QRgb line = image.pixel(rect.left(), rect.center().y());
  const auto expectSide = [&](const QPoint &from, const QPoint &to, const QPoint &inside,
                              const char *side) {
    const QPoint along(from.x() < to.x() ? 1 : 0, from.y() < to.y() ? 1 : 0);
    for (QPoint at = from; at != to; at += along) {
      ASSERT_EQ(image.pixel(at), line) << name << ", " << side << " at " << at.x() << ' ' << at.y();
      ASSERT_NE(image.pixel(at - inside), line) << name << ", outside of " << side;
      ASSERT_EQ(thickness(image, at, inside), thick) << name << ", " << side;
    }
  };
  const int left = rect.left(), right = rect.right(), top = rect.top(), bottom = rect.bottom();
  expectSide({left + corner, top}, {right - corner, top}, {0, 1}, "top");
  expectSide({left + corner, bottom}, {right - corner, bottom}, {0, -1}, "bottom");
  expectSide({left, top + corner}, {left, bottom - corner}, {1, 0}, "left");
  expectSide({right, top + corner}, {right, bottom - corner}, {-1, 0}, "right");
}

void expectFrames(ScaledDialog &dialog, double scale) {
  const QImage image = dialog.shown();
  ASSERT_EQ(image.size(), dialog.window()->size() * scale);
  const int line = std::max(1, static_cast<int>(scale));
  int number = 0;
  for (QWidget *item : dialog.items())
    expectFrame(image, pixelsOf(frameOf(*item), scale), line, "item " + std::to_string(++number));
  QRect frame = placeOf(*dialog.window()->findChild<QGroupBox *>());
  while (image.pixel(pixelsOf(frame, scale).center().x(), pixelsOf(frame, scale).top()) ==
         image.pixel(0, 0))
    frame.setTop(frame.top() + 1);
  expectFrame(image, pixelsOf(frame, scale), line, "group");
}

// ---- Marks and alert icons ----

// Pixels of one colour along a line of this thickness, and none of it beside.
void expectLine(const QImage &image, const QPoint &from, const QPoint &to, const QPoint &inside,
                int thick, const std::string &name) {
  const QRgb line = image.pixel(from);
  const QPoint along(from.x() < to.x() ? 1 : 0, from.y() < to.y() ? 1 : 0);
  for (QPoint at = from; at != to; at += along) {
    ASSERT_EQ(image.pixel(at), line) << name << " at " << at.x() << ' ' << at.y();
    ASSERT_NE(image.pixel(at - inside), line) << name << ", outside";
    ASSERT_EQ(thickness(image, at, inside), thick) << name;
  }
}

// A bar at the left edge, and a thin frame behind the field's own, which lets the shades of a
// pop-up through.
void expectMark(const QImage &image, const QRect &field, double scale, const std::string &name,
                bool isShaded) {
  const int line = std::max(1, static_cast<int>(scale));
  const int inset = static_cast<int>(std::ceil(scale)),
            bar = static_cast<int>(std::ceil(2 * scale));
  const int corner = bar + 4, middle = field.center().y();
  const QRect frame = field.adjusted(inset, inset, -inset, -inset);
  expectLine(image, {field.left(), middle - line}, {field.left(), middle + line}, {1, 0}, bar,
             name + ", bar");
  EXPECT_EQ(image.pixel(field.left(), frame.top()), image.pixel(field.left(), middle))
      << name << ": the bar is as high as the frame";
  EXPECT_NE(image.pixel(field.left(), frame.top() - 1), image.pixel(field.left(), middle)) << name;
  expectLine(image, {frame.right(), middle}, {frame.right(), middle + 1}, {-1, 0}, line,
             name + ", right");
  if (isShaded) return;
  expectLine(image, {frame.left() + corner, frame.top()}, {frame.right() - corner, frame.top()},
             {0, 1}, line, name + ", top");
  expectLine(image, {frame.left() + corner, frame.bottom()},
             {frame.right() - corner, frame.bottom()}, {0, -1}, line, name + ", bottom");
}

// How many columns beside the first one of this row are neither ground nor icon.
int softPixels(const QImage &image, int row, QRgb ground, QRgb icon) {
  int count = 0;
  for (int x = 0; x < image.width() / 2 && image.pixel(x, row) != icon; ++x)
    count += image.pixel(x, row) == ground ? 0 : 1;
  return count;
}

// As drawn for the pixels of the screen: its edges lie where they belong and are as sharp as there.
void expectDisc(const QImage &image, double scale) {
  constexpr double kEdge = 1.5;  // from the icon's rectangle to the disc
  const int middle = image.height() / 2;
  const QRgb ground = image.pixel(0, 0), icon = image.pixel(static_cast<int>(4 * scale), middle);
  ASSERT_NE(icon, ground);
  EXPECT_LE(softPixels(image, middle, ground, icon), 1);
  const int first = static_cast<int>(kEdge * scale);
  for (const int x : {first - 1, image.width() - first}) EXPECT_EQ(image.pixel(x, middle), ground);
  for (const int x : {first + 1, image.width() - first - 2}) {
    EXPECT_EQ(image.pixel(x, middle), icon);
    EXPECT_EQ(image.pixel(middle, x), icon);
  }
}

int difference(QRgb a, QRgb b) {
  return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                   std::abs(qBlue(a) - qBlue(b))});
}

// The same icon four times as large, made as small, is the same but for the shades of edges.
void expectAsSharpAs(const QImage &large, const QImage &image, const std::string &name) {
  const QImage reduced =
      large.scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  int most = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      most = std::max(most, difference(image.pixel(x, y), reduced.pixel(x, y)));
  EXPECT_LE(most, 96) << name;
}

// A picture of one stripe for each pixel of the screen: any that is not in its place is grey.
void expectStripes(const QImage &image, const QRect &place) {
  for (int x = place.left(); x <= place.right(); ++x) {
    const bool isBlack = (x - place.left()) % 2 == 0;
    ASSERT_EQ(qGray(image.pixel(x, place.center().y())), isBlack ? 0 : 255) << x - place.left();
  }
}

std::string stripes(int pixels) {
  std::string svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" + std::to_string(pixels) +
                    R"(" height=")" + std::to_string(pixels) + R"("><rect width="100%" height=)" +
                    R"("100%" fill="#ffffff"/>)";
  for (int x = 0; x < pixels; x += 2)
    svg += "<rect x=\"" + std::to_string(x) + "\" width=\"1\" height=\"" + std::to_string(pixels) +
           "\"/>";
  return svg + "</svg>";
}

class QtScales : public testing::TestWithParam<double> {
 protected:
  void SetUp() override {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    setenv("QT_SCALE_FACTOR", std::to_string(GetParam()).c_str(), 1);
    const std::string screens = folder_.add("screens.json", R"({"screens": [
      {"name": "large", "x": 0, "y": 0, "width": 1600, "height": 1600}]})");
    setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + screens).c_str(), 1);
    qtDesktop();
  }

 private:
  const test::TemporaryFolder folder_;
};

std::string nameOfScale(const testing::TestParamInfo<double> &scale) {
  return std::to_string(static_cast<int>(100 * scale.param)) + "Percent";
}

INSTANTIATE_TEST_SUITE_P(Of, QtScales, testing::Values(1, 1.25, 1.5, 2), nameOfScale);

TEST_P(QtScales, FramesAreWholeAndEven) {
  ScaledDialog dialog;
  expectFrames(dialog, GetParam());
}

class NoHits final : public HitHandler {
  Run hit(int) override { return Run::Stop; }
};

// A dialog that is higher than the screen.
class QtScrolledScales : public QtScales {
 protected:
  void SetUp() override {
    QtScales::SetUp();
    dialog_ = std::make_unique<ScaledDialog>(1801);
    (**dialog_).addItem(ItemKind::EditText, {21, 1751, 150, 1766}, "");
    (**dialog_).runStep(none_);
    ASSERT_NE(dialog_->bar().maximum(), 0);
  }
  void TearDown() override { dialog_.reset(); }

  std::unique_ptr<ScaledDialog> dialog_;

 private:
  NoHits none_;
};

INSTANTIATE_TEST_SUITE_P(Of, QtScrolledScales, testing::Values(1.25, 1.5), nameOfScale);

TEST_P(QtScrolledScales, FramesAreWholeAndEvenWhereverTheyAreScrolled) {
  for (const int place : {0, 1, 2, 3, 6, 9}) {
    SCOPED_TRACE(place);
    dialog_->bar().setValue(place);
    expectFrames(*dialog_, GetParam());
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_P(QtScrolledScales, TheSliderIsWholeAndEven) {
  const int line = std::max(1, static_cast<int>(GetParam()));
  for (const int place : {0, 101, dialog_->bar().maximum()}) {
    dialog_->bar().setValue(place);
    const QRect slider = test::sliderOf(dialog_->bar());
    EXPECT_EQ(placeOf(dialog_->bar()).right(), dialog_->window()->rect().right());
    expectFrame(dialog_->shown(), pixelsOf(slider, GetParam()), line,
                "slider at " + std::to_string(place));
  }
}

TEST_P(QtScrolledScales, TheLineAboveTheFootIsEven) {
  const int line = std::max(1, static_cast<int>(GetParam()));
  for (const int shorter : {0, 1, 2, 3}) {
    dialog_->window()->resize(dialog_->window()->size() - QSize(0, shorter > 0 ? 1 : 0));
    const QImage image = dialog_->shown();
    const QWidget &foot = *dialog_->items()[0]->parentWidget()->parentWidget();
    const QRect place = pixelsOf(placeOf(foot), GetParam());
    EXPECT_EQ(placeOf(foot).bottom(), dialog_->window()->rect().bottom());
    expectLine(image, place.topLeft(), place.topRight(), {0, 1}, line, "line");
  }
}

TEST_P(QtScales, TheFocusInAListIsEven) {
  ScaledDialog dialog;
  dialog.shown();
  QWidget *list = dialog.items()[7];
  list->setFocus();
  QCoreApplication::processEvents();
  const QImage image = dialog.onScreen();
  expectFrame(image, pixelsOf(list->geometry(), GetParam()),
              2 * std::max(1, static_cast<int>(GetParam())), "list");
}

TEST_P(QtScales, MarksAreWholeAndEven) {
  ScaledDialog dialog;
  constexpr std::pair<int, const char *> kFields[] = {
      {3, "field"}, {4, "field between pixels"}, {5, "pop-up"}, {8, "list"}, {9, "list between"}};
  for (const auto &[item, name] : kFields) (*dialog).setAcceptable(item, false);
  const QImage image = dialog.shown();
  const auto items = dialog.items();
  for (const auto &[item, name] : kFields) {
    QWidget *surface = items[static_cast<std::size_t>(item) - 1];
    if (auto *list = qobject_cast<QAbstractScrollArea *>(surface)) surface = list->viewport();
    const QRect place(surface->mapTo(dialog.window(), QPoint(0, 0)), surface->size());
    expectMark(image, pixelsOf(place, GetParam()), GetParam(), name,
               (*dialog).kind(item) == ItemKind::PopUp);
  }
}

TEST_P(QtScales, AlertIconsHaveThePixelsOfTheScreen) {
  constexpr AlertIcon kIcons[] = {AlertIcon::Stop, AlertIcon::Note, AlertIcon::Caution};
  const auto place = [](AlertIcon icon, int side) {
    return QRect(side * static_cast<int>(icon), side == 32 ? 0 : 40, side, side);
  };
  const auto dialog = qtDesktop().newDialog({101, 101, 501, 301}, nullptr, "Message");
  for (const int side : {32, 128})
    for (const AlertIcon icon : kIcons) {
      const QRect rect = place(icon, side);
      dialog->addAlertIcon({rect.left(), rect.top(), rect.right() + 1, rect.bottom() + 1}, icon);
    }
  const QImage image = widgetOf(dialog->window())->grab().toImage();
  const auto shown = [&](AlertIcon icon, int side) {
    return image.copy(pixelsOf(place(icon, side), GetParam()));
  };
  for (const AlertIcon icon : kIcons) {
    ASSERT_EQ(shown(icon, 32).size(), QSize(32, 32) * GetParam());
    expectAsSharpAs(shown(icon, 128), shown(icon, 32),
                    "icon " + std::to_string(static_cast<int>(icon)));
    if (icon != AlertIcon::Caution) expectDisc(shown(icon, 32), GetParam());
  }
}

TEST_P(QtScales, PicturesHaveThePixelsOfTheScreen) {
  const test::TemporaryFolder folder;
  const QRect rect(21, 201, 40, 40);
  const QSize pixels = rect.size() * GetParam();
  ScaledDialog dialog;
  (*dialog).addIcon({rect.left(), rect.top(), rect.right() + 1, rect.bottom() + 1},
                    folder.add("1.svg", stripes(pixels.width())));
  expectStripes(dialog.shown(), {pixelsOf(rect, GetParam()).topLeft(), pixels});
}

// The ink of a text in a part of a picture.
QRect inkOf(const QImage &image, const QRect &part) {
  QRect found;
  for (int y = part.top(); y <= part.bottom(); ++y)
    for (int x = part.left(); x <= part.right(); ++x)
      if (image.pixelColor(x, y) == Qt::magenta) found |= QRect(x, y, 1, 1);
  return found;
}

TEST_P(QtScales, TextsAreShownWhole) {
  constexpr const char *kTall = "\xC9\xC0\xC7gpq";  // ÉÀÇgpq
  ScaledDialog dialog;
  QPalette palette = QApplication::palette();
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    palette.setColor(role, Qt::magenta);
  dialog.window()->setPalette(palette);
  QFont sharp = dialog.window()->font();
  sharp.setStyleStrategy(QFont::NoAntialias);
  dialog.window()->setFont(sharp);
  for (const int item : {3, 4}) (*dialog).setText(item, kTall);
  for (const int item : {5, 8, 9}) (*dialog).setEntries(item, {kTall});
  (*dialog).setValue(5, 1);
  (*dialog).addStaticText({21, 260, 150, 275}, kTall);
  auto *roomy = new QLabel(QStringLiteral("ÉÀÇgpq"), dialog.window());
  roomy->setMargin(10);
  roomy->setGeometry(21, 281, 150, 60);
  const QImage image = dialog.shown();
  const auto ink = [&](const QWidget *widget) {
    return inkOf(image, pixelsOf(widget->geometry(), GetParam()) & image.rect()).size();
  };
  const QSize needed = ink(roomy);
  ASSERT_FALSE(needed.isEmpty());
  const auto items = dialog.items();
  std::vector<const QWidget *> texts{items[2], items[3], items[4], items[7], items[8]};
  for (const QLabel *label : dialog.window()->findChildren<QLabel *>()) texts.push_back(label);
  for (const QWidget *each : texts) {
    EXPECT_EQ(ink(each).height(), needed.height()) << each->y();
    EXPECT_NEAR(ink(each).width(), needed.width(), 1) << each->y();
  }
}

// ---- Two screens of different scales ----

class QtScreens : public testing::TestWithParam<double> {};

INSTANTIATE_TEST_SUITE_P(Of, QtScreens, testing::Values(1.25, 1.5, 2), nameOfScale);

TEST_P(QtScreens, ADialogIsWholeOnTheOtherOneAndBack) {
  const test::TemporaryFolder folder;
  const std::string screens = folder.add("screens.json", R"({"screens": [
    {"name": "a", "x": 0, "y": 0, "width": 800, "height": 800},
    {"name": "b", "x": 800, "y": 0, "width": 1600, "height": 1600, "dpr": )" +
                                                             std::to_string(GetParam()) + "}]}");
  const test::EnvironmentGuard chosen("QT_QPA_PLATFORM",
                                      ("offscreen:configfile=" + screens).c_str());
  qtDesktop();
  const QRect rect(21, 201, 40, 40);
  ScaledDialog dialog;
  (*dialog).addIcon({rect.left(), rect.top(), rect.right() + 1, rect.bottom() + 1},
                    folder.add("1.svg", stripes(static_cast<int>(40 * GetParam()))));
  expectFrames(dialog, 1);
  dialog.window()->windowHandle()->setScreen(QGuiApplication::screens().last());
  ASSERT_EQ(dialog.window()->devicePixelRatioF(), GetParam());
  expectFrames(dialog, GetParam());
  expectStripes(dialog.shown(), {pixelsOf(rect, GetParam()).topLeft(), rect.size() * GetParam()});
  dialog.window()->windowHandle()->setScreen(QGuiApplication::screens().first());
  expectFrames(dialog, 1);
}

}  // namespace
}  // namespace korvel::platform
