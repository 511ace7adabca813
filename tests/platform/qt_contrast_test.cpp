// SPDX-License-Identifier: MIT
// What carries a meaning is told apart under light, dark and high-contrast themes: contrasts are
// measured in pictures of a dialog.
#include <map>

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionButton>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/contrast.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"
#include "tests/platform/slider.h"

namespace korvel::platform {
namespace {

using test::contrast;
using test::qtDesktop;
using test::QtPerson;
using test::RecordedHits;
using test::widgetOf;

// What the web accessibility guidelines ask for.
constexpr double kTextContrast = 4.5;
constexpr double kLineContrast = 3;

struct Theme {
  const char *name;
  QRgb window, field, text, disabled, selection, selected;
};

void PrintTo(const Theme &theme, std::ostream *out) { *out << theme.name; }

// The toolkit's own, then colours of desktops. Their disabled texts are too pale, as is common.
constexpr Theme kThemes[] = {
    {"Default", 0, 0, 0, 0, 0, 0},
    {"Light", 0xEFF0F1, 0xFCFCFC, 0x232629, 0xA0A2A4, 0x3DAEE9, 0xFCFCFC},
    {"Dark", 0x31363B, 0x232629, 0xEFF0F1, 0x6E7275, 0x3DAEE9, 0xEFF0F1},
    {"WhiteOnBlack", 0x000000, 0x000000, 0xFFFFFF, 0x404040, 0x800080, 0xFFFFFF},
    {"BlackOnWhite", 0xFFFFFF, 0xFFFFFF, 0x000000, 0xC0C0C0, 0x000000, 0xFFFFFF},
    {"BlackFieldsOnWhite", 0xFFFFFF, 0x000000, 0xFFFFFF, 0x404040, 0x800080, 0xFFFFFF},
};

QPalette paletteOf(const Theme &theme) {
  const QColor window(theme.window), text(theme.text), field(theme.field);
  static const QPalette own = QApplication::palette();
  if (theme.window == theme.text) return own;
  // Texts beside fields are told apart in each of these themes.
  const QColor title = contrast(text, window) > 2 ? text : field;
  QPalette palette(title, window, window.lighter(150), window.darker(), window.darker(150), text,
                   text, field, window);
  palette.setColor(QPalette::Highlight, QColor(theme.selection));
  palette.setColor(QPalette::HighlightedText, QColor(theme.selected));
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(theme.disabled));
  return palette;
}

class QtThemes : public testing::TestWithParam<Theme> {
 protected:
  QtThemes() {
    qtDesktop();
    QApplication::setPalette(paletteOf(GetParam()));
    dialog_ = qtDesktop().newDialog({100, 60, 500, 660}, nullptr, "Fiche");
    dialog_->addItem(ItemKind::PushButton, {50, 560, 130, 580}, "OK");
    dialog_->addItem(ItemKind::PushButton, {150, 560, 230, 580}, "Annuler");
  }

  QWidget *window() { return widgetOf(dialog_->window()); }
  QWidget &widget(int item) {
    return *test::itemWidgets(window())[static_cast<std::size_t>(item) - 1];
  }
  // The whole dialog: a widget alone lacks the ground that it lies on.
  QImage shown() { return window()->grab().toImage(); }

  int add(ItemKind kind, const std::string &content = "") {
    const Rect rect{20, place_, 150, place_ + (kind == ItemKind::ListBox ? 50 : 15)};
    place_ = rect.bottom + 15;
    const int item = dialog_->addItem(kind, rect, content);
    dialog_->setText(item, content);
    dialog_->setEntries(item, {content});
    dialog_->setValue(item, kind == ItemKind::PopUp && !content.empty() ? 1 : 0);
    return item;
  }
  std::map<std::string, int> addAll(const std::string &content) {
    return {{"field", add(ItemKind::EditText, content)},
            {"pop-up", add(ItemKind::PopUp, content)},
            {"check box", add(ItemKind::CheckBox, content)},
            {"list", add(ItemKind::ListBox, content)},
            {"button", add(ItemKind::PushButton, content)}};
  }
  // Where an item shows what it is: of a check box, its box.
  QRect outside(int item) {
    QWidget &shown = widget(item);
    if (dialog_->kind(item) != ItemKind::CheckBox) return shown.geometry();
    QStyleOptionButton option;
    option.initFrom(&shown);
    return shown.style()
        ->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &shown)
        .translated(shown.pos());
  }
  // Plays `act` in the dialog while it is open.
  void whileOpen(std::function<void()> act) {
    QtPerson person("Fiche");
    person.check(std::move(act));
    person.pressEscape();
    RecordedHits hits;
    hits.record(*dialog_);
    person.finish();
  }

  std::unique_ptr<Dialog> dialog_;

 private:
  int place_ = 20;
};

INSTANTIATE_TEST_SUITE_P(Of, QtThemes, testing::ValuesIn(kThemes),
                         [](const auto &theme) { return theme.param.name; });

// The contrast of what stands out most in a part of the picture with the shades of its ground,
// which are those of the column `free` of that part beside the text.
double inkContrast(const QImage &image, const QRect &part, int free) {
  const QImage text = image.copy(part);
  const QColor ground = text.pixelColor(free, text.height() / 2);
  QColor ink = ground;
  for (int y = 0; y < text.height(); ++y)
    for (int x = free; x < text.width(); ++x)
      if (contrast(text.pixelColor(x, y), ground) > contrast(ink, ground))
        ink = text.pixelColor(x, y);
  double least = 21;
  for (int y = 0; y < text.height(); ++y)
    least = std::min(least, contrast(ink, text.pixelColor(free, y)));
  return least;
}

TEST_P(QtThemes, TextsAreToldFromTheirGrounds) {
  auto items = addAll("Mille");
  for (const auto &[name, item] : addAll("Mille")) {
    dialog_->setEnabled(item, false);
    items["disabled " + name] = item;
  }
  dialog_->setEnabled(kOkItem, false);
  items["disabled OK"] = kOkItem;
  const QImage image = shown();
  for (const auto &[name, item] : items) {
    const bool isBox = dialog_->kind(item) == ItemKind::CheckBox;
    const QRect part = widget(item).geometry().adjusted(isBox ? 18 : 2, 4, -25, -4);
    EXPECT_GE(inkContrast(image, part, 0), kTextContrast) << name;
  }
}

TEST_P(QtThemes, StaticTextsAndTitlesOfGroupsAreToldFromTheWindow) {
  dialog_->addStaticText({20, 20, 100, 35}, "Mille");
  dialog_->addGroupBox({20, 60, 200, 120}, "Mille");
  const QImage image = shown();
  const auto *label = window()->findChild<QLabel *>();
  EXPECT_GE(inkContrast(image, label->geometry().adjusted(-2, 0, 0, 0), 0), kTextContrast);
  const QRect title(window()->findChild<QGroupBox *>()->pos() + QPoint(5, 0), QSize(35, 16));
  EXPECT_GE(inkContrast(image, title, 1), kTextContrast);
}

TEST_P(QtThemes, TextsOfADialogThatScrollsAreToldFromTheirGrounds) {
  dialog_ = qtDesktop().newDialog({100, 60, 500, 1660}, nullptr, "Fiche");
  dialog_->addItem(ItemKind::PushButton, {50, 1560, 130, 1580}, "Mille");
  dialog_->addItem(ItemKind::PushButton, {150, 1560, 230, 1580}, "Mille");
  dialog_->setEnabled(kOkItem, false);
  dialog_->addStaticText({20, 20, 100, 35}, "Mille");
  whileOpen([&] {
    const QImage image = shown();
    for (const int item : {kOkItem, kCancelItem}) {
      const QRect button(widget(item).mapTo(window(), QPoint(0, 0)), widget(item).size());
      EXPECT_GT(button.top(), 400) << "in the foot";
      EXPECT_GE(inkContrast(image, button.adjusted(2, 4, -25, -4), 0), kTextContrast) << item;
    }
    const auto *label = window()->findChild<QLabel *>();
    const QRect text(label->mapTo(window(), QPoint(-2, 0)), label->size());
    EXPECT_GE(inkContrast(image, text, 0), kTextContrast);
  });
}

TEST_P(QtThemes, SelectedTextsAreToldFromTheirSelection) {
  const int field = add(ItemKind::EditText, " Mille"), list = add(ItemKind::ListBox, "Mille");
  whileOpen([&] {
    dialog_->selectText(field);
    const QRect text = widget(field).geometry().adjusted(5, 4, -100, -4);
    EXPECT_GE(inkContrast(shown(), text, 0), kTextContrast);
    auto &view = dynamic_cast<QListView &>(widget(list));
    view.selectionModel()->select(view.model()->index(0, 0), QItemSelectionModel::Select);
    const QRect row(view.pos() + QPoint(3, 4), QSize(60, 10));
    EXPECT_GE(inkContrast(shown(), row, 0), kTextContrast);
  });
}

TEST_P(QtThemes, OutlinesOfItemsAreToldFromBothSides) {
  auto items = addAll("");
  for (const auto &[name, item] : addAll("")) {
    dialog_->setEnabled(item, false);
    items["disabled " + name] = item;
  }
  const QImage image = shown();
  for (const auto &[name, item] : items) {
    const QRect rect = outside(item);
    const std::pair<QPoint, QPoint> inwards[] = {{{rect.left(), rect.center().y()}, {1, 0}},
                                                 {{rect.right(), rect.center().y()}, {-1, 0}},
                                                 {{rect.center().x(), rect.top()}, {0, 1}},
                                                 {{rect.center().x(), rect.bottom()}, {0, -1}}};
    for (const auto &[edge, step] : inwards) {
      const QColor before = image.pixelColor(edge - step);
      const QColor behind = image.pixelColor(edge + 4 * step);
      const QColor line = image.pixelColor(edge);
      // Where the ground of a field itself stands out from the window, it needs no other line.
      const bool isPlain = contrast(before, behind) >= kLineContrast;
      EXPECT_GE(contrast(line, before), isPlain ? 1 : kLineContrast) << name;
      EXPECT_GE(contrast(line, behind), isPlain ? 1 : kLineContrast) << name;
    }
  }
}

TEST_P(QtThemes, SlidersOfScrollBarsAreToldFromWhatTheySlideOn) {
  const int list = add(ItemKind::ListBox);
  dialog_->setEntries(list, std::vector<std::string>(20, std::string(60, 'W')));
  whileOpen([&] {
    auto &view = dynamic_cast<QListView &>(widget(list));
    for (QScrollBar *bar : {view.verticalScrollBar(), view.horizontalScrollBar()}) {
      bar->setValue(bar->maximum() / 2);
      const QRect slider = test::sliderOf(*bar);
      const QImage image = shown();
      const bool isUpright = bar->orientation() == Qt::Vertical;
      const QPoint middle = slider.center(), step = isUpright ? QPoint(0, 1) : QPoint(1, 0);
      const QPoint begin =
          isUpright ? QPoint(middle.x(), slider.top()) : QPoint(slider.left(), middle.y());
      const QPoint end =
          isUpright ? QPoint(middle.x(), slider.bottom()) : QPoint(slider.right(), middle.y());
      for (const auto &[edge, out] : {std::pair(begin, -step), std::pair(end, step)}) {
        const QColor line = image.pixelColor(edge);
        EXPECT_GE(contrast(line, image.pixelColor(edge + 3 * out)), kLineContrast);
        EXPECT_GE(contrast(line, image.pixelColor(edge - 3 * out)), kLineContrast);
      }
    }
  });
}

TEST_P(QtThemes, MarksAreToldFromTheWindowAndTheirFields) {
  for (const ItemKind kind : {ItemKind::EditText, ItemKind::PopUp, ItemKind::ListBox}) {
    const int item = add(kind);
    dialog_->setAcceptable(item, false);
    const QRect rect = widget(item).geometry();
    const QPoint edge(rect.left(), rect.center().y());
    const QImage image = shown();
    const QColor bar = image.pixelColor(edge + QPoint(1, 0));
    EXPECT_GE(contrast(bar, image.pixelColor(edge - QPoint(1, 0))), kLineContrast);
    EXPECT_GE(contrast(bar, image.pixelColor(edge + QPoint(6, 0))), kLineContrast);
  }
}

TEST_P(QtThemes, TheFocusInAListWithoutAChosenRowIsSeen) {
  add(ItemKind::EditText);
  const int list = add(ItemKind::ListBox);
  whileOpen([&] {
    const QRect rect = widget(list).geometry();
    const auto screen = [&] {
      QCoreApplication::processEvents();
      return window()->screen()->grabWindow(window()->winId()).toImage().copy(rect);
    };
    const QImage before = screen();
    widget(list).setFocus();
    const QImage after = screen();
    const auto change = [&](int x, int y) {
      return contrast(before.pixelColor(x, y), after.pixelColor(x, y));
    };
    const int right = rect.width() - 2, bottom = rect.height() - 2;
    EXPECT_GE(change(1, bottom / 2), kLineContrast);
    EXPECT_GE(change(right, bottom / 2), kLineContrast);
    EXPECT_GE(change(right / 2, 1), kLineContrast);
    EXPECT_GE(change(right / 2, bottom), kLineContrast);
  });
}

TEST_P(QtThemes, AlertIconsAreToldFromTheWindowAndTheirSignsFromThem) {
  constexpr struct {
    AlertIcon icon;
    QPoint onIcon, onSign;
  } kIcons[] = {{AlertIcon::Stop, {16, 5}, {16, 16}},
                {AlertIcon::Note, {8, 16}, {16, 19}},
                {AlertIcon::Caution, {10, 24}, {16, 15}}};
  for (const auto &[icon, onIcon, onSign] : kIcons) {
    const int left = 20 + 50 * static_cast<int>(icon);
    dialog_->addAlertIcon({left, 200, left + 32, 232}, icon);
    const QImage shownIcon = shown().copy(left, 200, 32, 32);
    const QColor around = shownIcon.pixelColor(0, 0);
    double best = 1;
    for (int x = 0; x < 12; ++x)
      best = std::max(best, contrast(shownIcon.pixelColor(x, 20), around));
    EXPECT_GE(best, kLineContrast) << static_cast<int>(icon);
    EXPECT_GE(contrast(shownIcon.pixelColor(onIcon), shownIcon.pixelColor(onSign)), kLineContrast)
        << static_cast<int>(icon);
  }
}

TEST_P(QtThemes, WhatIsToldApartKeepsItsColour) {
  const QPalette theme = paletteOf(GetParam()), used = window()->palette();
  for (const auto role : {QPalette::Window, QPalette::WindowText, QPalette::Base, QPalette::Text,
                          QPalette::Button, QPalette::HighlightedText})
    EXPECT_EQ(used.color(QPalette::Active, role), theme.color(QPalette::Active, role)) << role;
}

TEST_P(QtThemes, AnOpenDialogFollowsAChangeOfTheTheme) {
  const int field = add(ItemKind::EditText);
  QApplication::setPalette(paletteOf(kThemes[2]));
  whileOpen([&] {
    for (const Theme &theme : {GetParam(), kThemes[3]}) {
      QApplication::setPalette(paletteOf(theme));
      QCoreApplication::processEvents();  // dialogs hear of it later
      EXPECT_EQ(widget(field).palette().color(QPalette::Base),
                paletteOf(theme).color(QPalette::Base));
    }
  });
  const QPalette used = window()->palette();
  EXPECT_GE(contrast(used.color(QPalette::Disabled, QPalette::WindowText), Qt::black),
            kTextContrast);
}

// Half-way between black and white, which both have little more contrast than is asked for.
constexpr Theme kGrey = {"Grey", 0x757575, 0xFFFFFF, 0x000000, 0x808080, 0x000080, 0xFFFFFF};
class QtGrey : public QtThemes {};
INSTANTIATE_TEST_SUITE_P(Of, QtGrey, testing::Values(kGrey),
                         [](const auto &theme) { return theme.param.name; });

TEST_P(QtGrey, ADisabledTextHasTheMostContrastThereIs) {
  const QPalette &used = window()->palette();
  EXPECT_EQ(used.color(QPalette::Disabled, QPalette::WindowText), QColor(Qt::white));
  EXPECT_GE(contrast(Qt::white, used.color(QPalette::Window)), kTextContrast);
}

// ---- Looks that others chose ----

class QtOwnLook : public QtThemes {};
INSTANTIATE_TEST_SUITE_P(Of, QtOwnLook, testing::Values(kThemes[0]),
                         [](const auto &theme) { return theme.param.name; });

TEST_P(QtOwnLook, AStyleSheetDrawsItsOutlinesAlone) {
  const auto items = addAll("");
  window()->setStyleSheet("QWidget, QCheckBox::indicator { border: 2px solid #00ff00; }");
  const QImage image = shown();
  for (const auto &[name, item] : items) {
    const QRect rect = outside(item);
    EXPECT_EQ(image.pixelColor(rect.left(), rect.center().y()), QColor(Qt::green)) << name;
    EXPECT_EQ(image.pixelColor(rect.center().x(), rect.bottom()), QColor(Qt::green)) << name;
  }
}

TEST_P(QtOwnLook, AnItemWithoutAFrameStaysSo) {
  const int field = add(ItemKind::EditText), list = add(ItemKind::ListBox),
            button = add(ItemKind::PushButton);
  dynamic_cast<QLineEdit &>(widget(field)).setFrame(false);
  dynamic_cast<QListView &>(widget(list)).setFrameShape(QFrame::NoFrame);
  dynamic_cast<QPushButton &>(widget(button)).setFlat(true);
  const QImage image = shown();
  for (const int item : {field, list, button}) {
    const QRect rect = widget(item).geometry();
    EXPECT_EQ(image.pixelColor(rect.left(), rect.center().y()),
              image.pixelColor(rect.left() + 4, rect.center().y()))
        << item;
  }
}

}  // namespace
}  // namespace korvel::platform
