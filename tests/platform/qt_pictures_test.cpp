// SPDX-License-Identifier: MIT
// The pictures of docs/desktops.md: one dialog under several scales and themes, and one on a small
// screen. Each is drawn anew and compared by cells, so that another version of a font or of the
// toolkit's style may differ in single pixels.
#include <QApplication>
#include <QImage>
#include <QTest>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {
namespace {

using test::qtDesktop;
using test::widgetOf;

struct Look {
  const char *name;
  double scale;
  QRgb window, field, text, selection;  // all 0: the toolkit's own
};

constexpr Look kLooks[] = {
    {"scale-100", 1, 0, 0, 0, 0},
    {"scale-125", 1.25, 0, 0, 0, 0},
    {"scale-150", 1.5, 0, 0, 0, 0},
    {"scale-200", 2, 0, 0, 0, 0},
    {"dark", 1, 0x31363B, 0x232629, 0xEFF0F1, 0x3DAEE9},
    {"white-on-black", 1, 0x000000, 0x000000, 0xFFFFFF, 0x800080},
    {"black-on-white", 1, 0xFFFFFF, 0xFFFFFF, 0x000000, 0x000000},
};

void PrintTo(const Look &look, std::ostream *out) { *out << look.name; }

void wear(const Look &look) {
  if (look.window == look.text) return;
  const QColor window(look.window), text(look.text);
  QPalette palette(text, window, window.lighter(150), window.darker(), window.darker(150), text,
                   text, QColor(look.field), window);
  palette.setColor(QPalette::Highlight, QColor(look.selection));
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, Qt::gray);
  QApplication::setPalette(palette);
}

// Texts are CP1252. Nothing has the focus, whose cursor blinks.
std::unique_ptr<Dialog> sample() {
  auto dialog = qtDesktop().newDialog({100, 100, 441, 341}, nullptr, "Fiche");
  dialog->addItem(ItemKind::PushButton, {150, 205, 230, 225}, "OK");
  dialog->addItem(ItemKind::PushButton, {245, 205, 325, 225}, "Annuler");
  dialog->setEnabled(kOkItem, false);
  dialog->addGroupBox({11, 11, 191, 121}, "Identit\xE9");
  dialog->addStaticText({21, 31, 70, 46}, "Nom");
  dialog->setText(dialog->addItem(ItemKind::EditText, {75, 31, 178, 46}, ""), "\xC9lgard");
  dialog->addStaticText({21, 61, 70, 76}, "Pr\xE9nom");
  dialog->setAcceptable(dialog->addItem(ItemKind::EditText, {75, 61, 178, 76}, ""), false);
  dialog->addStaticText({21, 91, 70, 106}, "Titre");
  const int title = dialog->addItem(ItemKind::PopUp, {75, 91, 178, 105}, "");
  dialog->setEntries(title, {"Madame", "Monsieur"});
  dialog->setValue(title, 1);
  dialog->setValue(dialog->addItem(ItemKind::CheckBox, {21, 133, 120, 145}, "Fumeuse"), 1);
  dialog->addItem(ItemKind::CheckBox, {121, 133, 190, 145}, "Enceinte");
  const int closed = dialog->addItem(ItemKind::EditText, {75, 161, 178, 176}, "");
  dialog->addStaticText({21, 161, 70, 176}, "Dossier");
  dialog->setText(closed, "2004-0317");
  dialog->setEnabled(closed, false);
  const int acts = dialog->addItem(ItemKind::ListBox, {211, 18, 326, 121}, "");
  dialog->setEntries(acts, {"Consultation", "Visite", "Vaccination", "Certificat",
                            "\xC9"
                            "chographie",
                            "Suture", "Pansement", "Injection"});
  const int none = dialog->addItem(ItemKind::ListBox, {211, 136, 326, 186}, "");
  dialog->setEntries(none, {"Aucune", "Allergie"});
  dialog->setAcceptable(none, false);
  dialog->addAlertIcon({15, 195, 47, 227}, AlertIcon::Stop);
  dialog->addAlertIcon({57, 195, 89, 227}, AlertIcon::Note);
  dialog->addAlertIcon({99, 195, 131, 227}, AlertIcon::Caution);
  return dialog;
}

// One that a netbook's screen cannot show whole.
std::unique_ptr<Dialog> largeSample() {
  constexpr int kBottom = 780;
  auto dialog = qtDesktop().newDialog({100, 20, 500, 20 + kBottom}, nullptr, "Visite");
  dialog->addItem(ItemKind::PushButton, {110, kBottom - 34, 190, kBottom - 14}, "OK");
  dialog->addItem(ItemKind::PushButton, {210, kBottom - 34, 290, kBottom - 14}, "Annuler");
  const auto addField = [&](int top, const char *name, const char *text) {
    dialog->addStaticText({25, top, 125, top + 15}, name);
    const int item = dialog->addItem(ItemKind::EditText, {135, top, 370, top + 15}, "");
    dialog->setText(item, text);
    return item;
  };
  dialog->setEnabled(kOkItem, false);
  dialog->addGroupBox({11, 11, 389, 145}, "Identit\xE9");
  addField(35, "Nom", "\xC9lgard");
  dialog->setAcceptable(addField(70, "Pr\xE9nom", ""), false);
  addField(105, "Adresse", "3, rue du Ch\xE2teau");
  dialog->addGroupBox({11, 160, 389, 330}, "Mesures");
  addField(185, "Poids", "72,5");
  addField(220, "Taille", "174");
  addField(255, "Tension", "13/8");
  addField(290, "Temp\xE9rature", "36,8");
  dialog->addGroupBox({11, 345, 389, 735}, "Examen");
  dialog->addStaticText({25, 370, 125, 385}, "Acte");
  const int acts = dialog->addItem(ItemKind::ListBox, {135, 370, 370, 445}, "");
  dialog->setEntries(acts, {"Consultation", "Visite", "Vaccination", "Certificat", "Suture",
                            "Pansement", "Injection"});
  dialog->setValue(dialog->addItem(ItemKind::CheckBox, {135, 460, 300, 475}, "Apyr\xE9tique"), 1);
  for (const int top : {495, 530, 565, 600, 635, 670, 705}) addField(top, "Remarque", "");
  return dialog;
}

constexpr int kCell = 8;
// Of 255, in one channel of a cell's mean.
constexpr int kTolerance = 20;

QImage cellsOf(const QImage &image) {
  return image.convertToFormat(QImage::Format_RGB32)
      .scaled(image.width() / kCell, image.height() / kCell, Qt::IgnoreAspectRatio,
              Qt::SmoothTransformation);
}

int difference(QRgb a, QRgb b) {
  return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                   std::abs(qBlue(a) - qBlue(b))});
}

class QtPicturesOfDocs : public testing::TestWithParam<Look> {};

INSTANTIATE_TEST_SUITE_P(Of, QtPicturesOfDocs, testing::ValuesIn(kLooks), [](const auto &look) {
  std::string name = look.param.name;
  std::erase(name, '-');
  return name;
});

// The desktop at this scale, or on this platform of the toolkit.
void useDesktop(const char *variable, const std::string &value) {
  ASSERT_EQ(QCoreApplication::instance(), nullptr);
  setenv("FONTCONFIG_FILE", KORVEL_TEST_PICTURE_FONT, 1);
  setenv(variable, value.c_str(), 1);
  qtDesktop();
  ASSERT_EQ(QFontInfo(QApplication::font()).family(), "Liberation Sans");
}

QImage drawn(Dialog &dialog) {
  QWidget *window = widgetOf(dialog.window());
  window->show();
  EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
  if (QWidget *focus = window->focusWidget()) focus->clearFocus();
  return window->grab().toImage();
}

void expectAsKept(const QImage &drawn, const std::string &name) {
  const QString file = QString::fromStdString(name) + ".png";
  const QString renewed = QStringLiteral(KORVEL_TEST_PICTURES_DRAWN "/") + file;
  ASSERT_TRUE(drawn.convertToFormat(QImage::Format_RGB888).save(renewed, nullptr, 0));
  const QImage kept(QStringLiteral(KORVEL_TEST_PICTURES_KEPT "/") + file);
  ASSERT_EQ(kept.size(), drawn.size()) << "drawn: " << renewed.toStdString();
  const QImage then = cellsOf(kept), now = cellsOf(drawn);
  int different = 0;
  for (int y = 0; y < now.height(); ++y)
    for (int x = 0; x < now.width(); ++x)
      if (difference(then.pixel(x, y), now.pixel(x, y)) > kTolerance) ++different;
  EXPECT_EQ(different, 0) << "cells; where that is meant, " << renewed.toStdString()
                          << " takes the place of the picture in docs/desktops";
}

TEST_P(QtPicturesOfDocs, ShowWhatIsDrawn) {
  const Look &look = GetParam();
  useDesktop("QT_SCALE_FACTOR", std::to_string(look.scale));
  wear(look);
  expectAsKept(drawn(*sample()), look.name);
}

class NoHits final : public HitHandler {
  Run hit(int) override { return Run::Stop; }
};

TEST(QtPictureOfDocs, ShowsADialogOnASmallScreen) {
  const test::TemporaryFolder folder;
  const std::string screens = folder.add("screens.json", R"({"screens": [
    {"name": "netbook", "x": 0, "y": 0, "width": 1024, "height": 600}]})");
  useDesktop("QT_QPA_PLATFORM", "offscreen:configfile=" + screens);
  const auto dialog = largeSample();
  NoHits none;
  dialog->runStep(none);
  expectAsKept(drawn(*dialog), "small-screen");
}

}  // namespace
}  // namespace korvel::platform
