// SPDX-License-Identifier: MIT
// Dialogs of the Qt module that are made from forms.
#include <new>
#include <random>

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListView>
#include <QPixmap>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QWindow>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"
#include "tests/platform/temporary_folder.h"

// Of the leak checker, where the program is built with it.
extern "C" {
[[gnu::weak]] void __lsan_disable();
[[gnu::weak]] void __lsan_enable();
}

namespace korvel::platform {
namespace {

using test::clickOn;
using test::qtDesktop;
using test::QtPerson;
using test::RecordedHits;
using test::widgetOf;
using Lines = std::vector<std::string>;

// ---- Pieces of forms ----

std::string rect(int x, int y, int width, int height) {
  return "<property name=\"geometry\"><rect><x>" + std::to_string(x) + "</x><y>" +
         std::to_string(y) + "</y><width>" + std::to_string(width) + "</width><height>" +
         std::to_string(height) + "</height></rect></property>";
}

std::string string(const std::string &name, const std::string &value) {
  return "<property name=\"" + name + "\"><string>" + value + "</string></property>";
}

std::string property(const std::string &name, const std::string &kind, const std::string &value) {
  return "<property name=\"" + name + "\"><" + kind + ">" + value + "</" + kind + "></property>";
}

std::string item(const std::string &number) {
  return "<property name=\"item\" stdset=\"0\"><number>" + number + "</number></property>";
}

std::string widget(const std::string &className, const std::string &name,
                   const std::string &inside = "") {
  return "<widget class=\"" + className + "\" name=\"" + name + "\">" + inside + "</widget>\n";
}

std::string entry(const std::string &text) { return "<item>" + string("text", text) + "</item>"; }

std::string page(const std::string &name, const std::string &title, const std::string &inside) {
  return widget("QWidget", name,
                "<attribute name=\"title\"><string>" + title + "</string></attribute>" + inside);
}

std::string connection(const std::string &sender, const std::string &signal,
                       const std::string &receiver, const std::string &slot) {
  return "<connection><sender>" + sender + "</sender><signal>" + signal + "</signal><receiver>" +
         receiver + "</receiver><slot>" + slot + "</slot></connection>\n";
}

std::string connections(const std::string &inside) {
  return "<connections>" + inside + "</connections>";
}

std::string form(const std::string &inside, const std::string &behind = "") {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ui version=\"4.0\">\n<class>F</class>\n" +
         widget("QDialog", "F",
                rect(0, 0, 400, 300) + string("windowTitle", "Fiche d’entrée") + "\n" + inside) +
         behind + "</ui>\n";
}

const std::string kPair =
    widget("QPushButton", "ok",
           rect(200, 260, 80, 24) + string("text", "&amp;Valider") + item("1")) +
    widget("QPushButton", "no", rect(300, 260, 80, 24) + string("text", "Quitter") + item("2"));

class QtTemplate : public testing::Test {
 protected:
  void TearDown() override {
    if (hasRun_) person_.finish();
  }

  // Null when there is something wrong with the form; `problem_` then says what.
  bool read(const std::string &content) {
    problem_.clear();
    path_ = folder_.add("forms/f.ui", content);
    dialog_ = desktop_.newDialogFromTemplate(path_, nullptr, problem_);
    EXPECT_EQ(dialog_ == nullptr, !problem_.empty()) << problem_;
    return dialog_ != nullptr;
  }
  QWidget *window() { return widgetOf(dialog_->window()); }
  template <typename Widget>
  Widget &widgetNamed(const char *name) {
    auto *found = window()->findChild<Widget *>(QString::fromLatin1(name));
    if (found == nullptr) {
      ADD_FAILURE() << "no " << name;
      std::abort();
    }
    return *found;
  }
  Lines run() {
    hasRun_ = true;
    hits_.record(*dialog_);
    return hits_.lines();
  }
  QtPerson &person() { return person_; }
  // A step on the widget of this name.
  template <typename Act>
  void on(const char *name, Act act) {
    person_.act(0, [this, name, act](QWidget *) { act(widgetNamed<QWidget>(name)); });
  }
  void typeInto(const char *name, const QString &text) {
    on(name, [text](QWidget &edit) {
      edit.setFocus();
      test::typeText(&edit, text);
    });
  }
  void tick(const char *name) {
    on(name, [](QWidget &box) { clickOn(&box, {8, 11}); });
  }
  void press(const char *name) {
    on(name, [](QWidget &button) { clickOn(&button, button.rect().center()); });
  }

  Desktop &desktop_ = qtDesktop();  // the person needs it
  test::TemporaryFolder folder_;
  std::unique_ptr<Dialog> dialog_;
  std::string path_;
  std::string problem_;
  RecordedHits hits_;

 private:
  QtPerson person_{"Fiche d’entrée"};
  bool hasRun_ = false;
};

// ---- What a form becomes ----

TEST_F(QtTemplate, EachClassIsItsKindOfItem) {
  ASSERT_TRUE(
      read(form(kPair + widget("QLineEdit", "a", item("12")) + widget("QCheckBox", "b", item("5")) +
                widget("QComboBox", "c", item("7")) + widget("QListWidget", "d", item("100")) +
                widget("QLabel", "e", item("8")) + widget("QGroupBox", "f", item("9")))));
  EXPECT_EQ(dialog_->kind(1), ItemKind::PushButton);
  EXPECT_EQ(dialog_->kind(12), ItemKind::EditText);
  EXPECT_EQ(dialog_->kind(5), ItemKind::CheckBox);
  EXPECT_EQ(dialog_->kind(7), ItemKind::PopUp);
  EXPECT_EQ(dialog_->kind(100), ItemKind::ListBox);
  for (const int none : {-1, 0, 3, 8, 9, 11, 13, 99, 101, 32767}) {
    EXPECT_EQ(dialog_->kind(none), ItemKind::None) << none;
    dialog_->setText(none, "x");
    dialog_->setEnabled(none, false);
    EXPECT_EQ(dialog_->text(none), "");
  }
}

TEST_F(QtTemplate, TheNumbersOfALayoutAndOfTheWindowAreNotLookedAt) {
  ASSERT_TRUE(read(form(item("2") + kPair +
                        widget("QWidget", "w",
                               "<layout class=\"QVBoxLayout\" name=\"v\">" + item("3") + "<item>" +
                                   widget("QLineEdit", "e", item("3")) + "</item></layout>"))));
  EXPECT_EQ(dialog_->kind(2), ItemKind::PushButton);
  EXPECT_EQ(dialog_->kind(3), ItemKind::EditText);
  EXPECT_EQ(problem_, "");
}

TEST_F(QtTemplate, EverythingIsAsDesigned) {
  const std::string bold = property("font", "font", "<pointsize>17</pointsize><bold>true</bold>");
  ASSERT_TRUE(read(form(
      kPair +
      widget("QLabel", "title",
             rect(10, 12, 200, 30) + string("text", "Œdème &lt;b&gt;中&lt;/b&gt;") + bold +
                 property("alignment", "set", "Qt::AlignRight|Qt::AlignVCenter") +
                 property("wordWrap", "bool", "true")) +
      widget("QGroupBox", "group",
             rect(5, 50, 300, 200) + string("title", "Antécédents") +
                 widget("QLineEdit", "edit",
                        rect(10, 20, 123, 21) + item("3") + string("text", "é中") +
                            property("alignment", "set", "Qt::AlignRight") +
                            property("maxLength", "number", "5")) +
                 widget("QCheckBox", "box",
                        item("4") + string("text", "A &amp;&amp; B") +
                            property("checked", "bool", "true"))) +
      widget("QComboBox", "popup",
             item("5") + property("currentIndex", "number", "1") + entry("été") + entry("中")) +
      widget("QListWidget", "list", item("6") + entry("un") + entry("deux")) +
      widget("Line", "line",
             rect(0, 250, 400, 3) + property("orientation", "enum", "Qt::Horizontal")))));
  EXPECT_EQ(window()->windowTitle(), "Fiche d’entrée");
  EXPECT_EQ(window()->size(), QSize(400, 300));
  const QLabel &title = widgetNamed<QLabel>("title");
  EXPECT_EQ(title.geometry(), QRect(10, 12, 200, 30));
  EXPECT_EQ(title.text(), "Œdème <b>中</b>") << "a text of the form is no text of the library";
  EXPECT_EQ(title.font().pointSize(), 17);
  EXPECT_TRUE(title.font().bold());
  EXPECT_FALSE(title.font().italic());
  EXPECT_EQ(title.alignment(), Qt::AlignRight | Qt::AlignVCenter);
  EXPECT_TRUE(title.wordWrap());
  EXPECT_EQ(widgetNamed<QGroupBox>("group").title(), "Antécédents");
  const QLineEdit &edit = widgetNamed<QLineEdit>("edit");
  EXPECT_EQ(edit.geometry(), QRect(10, 20, 123, 21));
  EXPECT_EQ(edit.parentWidget(), &widgetNamed<QGroupBox>("group"));
  EXPECT_EQ(edit.alignment() & Qt::AlignRight, Qt::AlignRight);
  EXPECT_EQ(edit.maxLength(), 5);
  EXPECT_EQ(dialog_->text(3), "\x8E?") << "what has no byte cannot stand in a field";
  EXPECT_EQ(widgetNamed<QCheckBox>("box").text(), "A && B");
  EXPECT_EQ(dialog_->value(4), 1);
  EXPECT_EQ(dialog_->entryCount(5), 2);
  EXPECT_EQ(dialog_->entry(5, 0), "\x8Et\x8E");
  EXPECT_EQ(dialog_->value(5), 2);
  EXPECT_EQ(dialog_->entryCount(6), 2);
  EXPECT_EQ(dialog_->entry(6, 1), "deux");
  EXPECT_EQ(dialog_->lastClick(6).row, -1);
  EXPECT_EQ(widgetNamed<QFrame>("line").frameShape(), QFrame::HLine);
}

TEST_F(QtTemplate, APopUpStartsWithItsFirstEntryUnlessDesignedOtherwise) {
  ASSERT_TRUE(read(form(
      kPair + widget("QComboBox", "a", item("3") + entry("x") + entry("y")) +
      widget("QComboBox", "b", item("4") + property("currentIndex", "number", "-1") + entry("x")) +
      widget("QComboBox", "c", item("5") + property("currentIndex", "number", "99") + entry("x")) +
      widget("QComboBox", "d", item("6")))));
  EXPECT_EQ(dialog_->value(3), 1);
  EXPECT_EQ(dialog_->value(4), 0);
  EXPECT_EQ(dialog_->value(5), 0);
  EXPECT_EQ(dialog_->value(6), 0);
}

TEST_F(QtTemplate, LayoutsPlaceTheirCells) {
  const std::string cell = "<item row=\"";
  const std::string grid =
      "<layout class=\"QGridLayout\" name=\"g\" columnstretch=\"0,1\">"
      "<property name=\"leftMargin\"><number>30</number></property>" +
      cell + "0\" column=\"0\">" + widget("QLabel", "l", string("text", "Nom")) + "</item>" + cell +
      "0\" column=\"1\">" + widget("QLineEdit", "e", item("3")) + "</item>" + cell +
      "1\" column=\"0\" colspan=\"2\">" + widget("QListWidget", "v", item("4")) + "</item>" + cell +
      "2\" column=\"0\" colspan=\"2\"><layout class=\"QHBoxLayout\" name=\"h\"><item>"
      "<spacer name=\"s\"><property name=\"orientation\"><enum>Qt::Horizontal</enum></property>"
      "<property name=\"sizeHint\" stdset=\"0\"><size><width>40</width><height>20</height></size>"
      "</property></spacer></item><item>" +
      widget("QPushButton", "ok", item("1") + string("text", "OK")) + "</item><item>" +
      widget("QPushButton", "no", item("2") + string("text", "Non")) +
      "</item></layout></item></layout>";
  ASSERT_TRUE(read(form(grid)));
  person().check([&] {
    const QRect label = widgetNamed<QLabel>("l").geometry();
    const QRect edit = widgetNamed<QLineEdit>("e").geometry();
    const QRect list = widgetNamed<QListView>("v").geometry();
    const QRect ok = widgetNamed<QPushButton>("ok").geometry();
    const QRect no = widgetNamed<QPushButton>("no").geometry();
    EXPECT_EQ(label.left(), 30);
    EXPECT_GT(edit.left(), label.right());
    EXPECT_GT(edit.width(), 200) << "the second column takes what is left";
    EXPECT_GT(list.top(), edit.bottom());
    EXPECT_EQ(list.right(), edit.right());
    EXPECT_GT(ok.top(), list.bottom());
    EXPECT_GT(ok.left(), 150) << "pushed to the right";
    EXPECT_GT(no.left(), ok.right());
  });
  press("no");
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtTemplate, AFormLayoutHasLabelsAndFields) {
  ASSERT_TRUE(read(form(
      "<layout class=\"QFormLayout\" name=\"f\"><item row=\"0\" column=\"0\">" +
      widget("QLabel", "l", string("text", "Nom")) + "</item><item row=\"0\" column=\"1\">" +
      widget("QLineEdit", "e", item("3")) + "</item><item row=\"1\" column=\"0\" colspan=\"2\">" +
      widget("QPushButton", "ok", item("1")) + "</item><item row=\"2\" column=\"1\">" +
      widget("QPushButton", "no", item("2")) + "</item></layout>")));
  window()->layout()->activate();
  EXPECT_GT(widgetNamed<QLineEdit>("e").x(), widgetNamed<QLabel>("l").x());
  EXPECT_GT(widgetNamed<QPushButton>("no").y(), widgetNamed<QPushButton>("ok").y());
}

TEST_F(QtTemplate, ALayoutGetsTheRoomThatItNeeds) {
  std::string fields;
  for (int n = 0; n < 20; ++n)
    fields +=
        "<item>" + widget("QLineEdit", std::string("e").append(std::to_string(n))) + "</item>";
  ASSERT_TRUE(read(form("<layout class=\"QVBoxLayout\" name=\"v\">" + fields + "<item>" +
                        widget("QPushButton", "ok", item("1")) + "</item><item>" +
                        widget("QPushButton", "no", item("2")) + "</item></layout>")));
  EXPECT_GT(window()->height(), 400);
  EXPECT_EQ(window()->width(), 400);
}

// The editor marks what is more than its own frame around a layout.
TEST_F(QtTemplate, ALayoutHasMarginsInAWidgetThatIsMarked) {
  const std::string label = "<layout class=\"QVBoxLayout\"><item>" +
                            widget("QLabel", "", string("text", "Nom")) + "</item></layout>";
  ASSERT_TRUE(read(form(kPair + widget("QWidget", "frame", rect(0, 0, 100, 100) + label) +
                        widget("QWidget", "own\" native=\"true", rect(100, 0, 100, 100) + label))));
  const auto leftMargin = [&](const char *name) {
    return widgetNamed<QWidget>(name).layout()->contentsMargins().left();
  };
  EXPECT_EQ(leftMargin("frame"), 0);
  EXPECT_GT(leftMargin("own"), 0);
}

TEST_F(QtTemplate, OfTwoLabelsAboveAFieldTheFirstNamesIt) {
  ASSERT_TRUE(
      read(form(kPair + widget("QLabel", "a", rect(20, 20, 60, 20) + string("text", "Adresse")) +
                widget("QLabel", "b", rect(90, 20, 60, 20) + string("text", "actuelle")) +
                widget("QLineEdit", "e", rect(20, 42, 150, 24) + item("3")))));
  person().check([&] { EXPECT_EQ(widgetNamed<QLineEdit>("e").accessibleName(), "Adresse"); });
  press("no");
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtTemplate, ACustomClassIsAsGoodAsItsBase) {
  ASSERT_TRUE(
      read(form(kPair + widget("MyEdit", "e", item("3")) + widget("Loop", "l"),
                "<customwidgets>"
                "<customwidget><class>MyEdit</class><extends>Middle</extends></customwidget>"
                "<customwidget><class>Middle</class><extends>QLineEdit</extends></customwidget>"
                "<customwidget><class>Loop</class><extends>Loop</extends></customwidget>"
                "</customwidgets>")));
  EXPECT_EQ(dialog_->kind(3), ItemKind::EditText);
}

TEST_F(QtTemplate, ButtonsOfAGroupAreItems) {
  const std::string grouped =
      R"(<attribute name="buttonGroup"><string notr="true">group</string></attribute>)";
  ASSERT_TRUE(read(form(kPair + widget("QCheckBox", "b", item("3") + grouped) +
                            widget("QPushButton", "p", item("4") + grouped),
                        R"(<buttongroups><buttongroup name="group"/></buttongroups>)")));
  EXPECT_EQ(dialog_->kind(3), ItemKind::CheckBox);
  EXPECT_EQ(dialog_->kind(4), ItemKind::PushButton);
}

// ---- How it behaves ----

TEST_F(QtTemplate, ItsItemsAreThoseOfEveryDialog) {
  ASSERT_TRUE(read(form(kPair + widget("QLineEdit", "e", rect(10, 10, 100, 22) + item("30")) +
                        widget("QCheckBox", "b", rect(10, 40, 100, 22) + item("20")) +
                        widget("QPushButton", "p", rect(10, 70, 100, 22) + item("10")) +
                        widget("QPushButton", "unnumbered", rect(10, 100, 100, 22)) +
                        widget("QLineEdit", "unnumberedEdit", rect(10, 130, 100, 22)))));
  typeInto("e", "a中é");
  on("b", [](QWidget &box) { clickOn(&box, {8, 11}); });
  press("p");
  press("unnumbered");
  typeInto("unnumberedEdit", "x");
  person().check([&] { dialog_->setSecret(30); });
  typeInto("e", "z");
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"30 text a", "30 text aé", "20 value 0", "10", "30 text aéz", "2"}));
}

TEST_F(QtTemplate, APlainTextEditIsAnItemOfSeveralLines) {
  ASSERT_TRUE(
      read(form(kPair +
                widget("QPlainTextEdit", "e",
                       rect(10, 10, 200, 60) + item("30") + string("plainText", "un\ndeux")) +
                widget("QPlainTextEdit", "unnumbered", rect(10, 80, 200, 60)) +
                widget("QPlainTextEdit", "bare",
                       rect(10, 150, 200, 60) + item("31") +
                           property("frameShape", "enum", "QFrame::NoFrame")))));
  EXPECT_EQ(dialog_->kind(30), ItemKind::EditText);
  EXPECT_EQ(dialog_->text(30), "un\rdeux");
  EXPECT_NE(widgetNamed<QWidget>("e").grab().toImage().pixelColor(0, 30),
            widgetNamed<QWidget>("bare").grab().toImage().pixelColor(0, 30));
  person().check([this] { dialog_->setText(30, "deux"); });
  typeInto("e", "a中é");
  typeInto("unnumbered", "x");
  person().check([this] { dialog_->setSecret(31); });
  typeInto("bare", "z");
  person().pressReturn();
  EXPECT_EQ(run(), (Lines{"30 text a", "30 text aé", "31 text z", "1"}));
}

TEST_F(QtTemplate, ListsAndPopUpsOfTheFormAreChosenFrom) {
  ASSERT_TRUE(read(form(
      kPair +
      widget("QListWidget", "list",
             rect(10, 60, 100, 80) + item("5") + entry("un") + entry("deux")) +
      widget("QComboBox", "popup", rect(10, 10, 100, 24) + item("4") + entry("x") + entry("y")))));
  on("popup", [](QWidget &popUp) {
    popUp.setFocus();
    test::pressKey(&popUp, Qt::Key_Down);
  });
  on("list", [](QWidget &list) {
    auto &view = dynamic_cast<QListView &>(list);
    const QRect row = view.visualRect(view.model()->index(1, 0));
    clickOn(view.viewport(), row.center());
  });
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"4 value 2", "5 row 1 deux", "2"}));
}

TEST_F(QtTemplate, ReturnIsTheButtonDesignedForIt) {
  const std::string isDefault = property("default", "bool", "true");
  ASSERT_TRUE(read(form(kPair + widget("QPushButton", "p", item("9") + isDefault))));
  hits_.stopAt(9);
  person().pressReturn();
  EXPECT_EQ(run(), Lines{"9"});
}

TEST_F(QtTemplate, ReturnIsItem1WhenNoneIsDesigned) {
  ASSERT_TRUE(read(form(kPair + widget("QPushButton", "p", item("9")))));
  person().pressReturn();
  EXPECT_EQ(run(), Lines{"1"});
}

TEST_F(QtTemplate, TheTabKeyFollowsTheDesign) {
  ASSERT_TRUE(read(form(kPair + widget("QLineEdit", "a", rect(10, 10, 100, 22) + item("3")) +
                            widget("QLineEdit", "b", rect(10, 40, 100, 22) + item("4")) +
                            widget("QLineEdit", "c", rect(10, 70, 100, 22) + item("5")),
                        "<tabstops><tabstop>c</tabstop><tabstop>a</tabstop>"
                        "<tabstop>nobody</tabstop><tabstop>b</tabstop></tabstops>")));
  dialog_->setText(5, "vieux");
  person().act(0, [](QWidget *w) {
    for (const QChar letter : QStringLiteral("123")) {
      test::typeText(w, QString(letter));
      test::pressKey(w, Qt::Key_Tab);
    }
  });
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"5 text 1", "3 text 2", "4 text 3", "2"}))
      << "starts in the first one, whose text is selected";
}

TEST_F(QtTemplate, ALabelsShortcutLeadsToItsBuddy) {
  ASSERT_TRUE(read(
      form(kPair + widget("QLineEdit", "a", rect(10, 10, 100, 22) + item("3")) +
           widget("QLineEdit", "b", rect(10, 40, 100, 22) + item("4")) +
           widget("QLabel", "l", string("text", "&amp;Nom") + property("buddy", "cstring", "b")))));
  EXPECT_EQ(widgetNamed<QLabel>("l").buddy(), &widgetNamed<QLineEdit>("b"));
}

TEST_F(QtTemplate, PagesOfATabWidgetHoldItems) {
  ASSERT_TRUE(read(form(
      kPair +
      widget(
          "QTabWidget", "tabs",
          rect(0, 0, 390, 200) + property("currentIndex", "number", "1") +
              page("one", "État", widget("QLineEdit", "a", rect(10, 10, 90, 22) + item("3"))) +
              page("two", "Suite", widget("QLineEdit", "b", rect(10, 10, 90, 22) + item("4")))))));
  EXPECT_EQ(widgetNamed<QTabWidget>("tabs").tabText(0), "État");
  person().act(0, [](QWidget *w) { test::typeText(w, "x"); });
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"4 text x", "2"})) << "the focus starts on the page in front";
}

TEST_F(QtTemplate, AScrollAreaHoldsItems) {
  ASSERT_TRUE(read(form(
      kPair +
      widget("QScrollArea", "area",
             rect(10, 10, 200, 100) + property("widgetResizable", "bool", "true") +
                 widget("QWidget", "inside",
                        property("minimumSize", "size", "<width>150</width><height>600</height>") +
                            widget("QLineEdit", "top", rect(5, 5, 90, 22) + item("3")) +
                            widget("QLineEdit", "bottom", rect(5, 500, 90, 22) + item("4")))))));
  auto &area = widgetNamed<QScrollArea>("area");
  EXPECT_EQ(area.widget(), &widgetNamed<QWidget>("inside"));
  person().act(0, [](QWidget *w) {
    test::typeText(w, "a");
    test::pressKey(w, Qt::Key_Tab);
    test::typeText(w, "b");
  });
  person().check([&] {
    EXPECT_FALSE(widgetNamed<QLineEdit>("top").visibleRegion().contains(QPoint(5, 5)));
    EXPECT_TRUE(widgetNamed<QLineEdit>("bottom").visibleRegion().contains(QPoint(5, 5)))
        << "the area follows the focus";
  });
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"3 text a", "4 text b", "2"}));
}

TEST_F(QtTemplate, AStyleSheetPaints) {
  const std::string red = "QLabel { background-color: #ff0000 } #own { background: #0000ff }";
  ASSERT_TRUE(read(
      "<ui>" +
      widget("QDialog", "F",
             rect(0, 0, 400, 300) + string("styleSheet", red) + kPair +
                 widget("QLabel", "l", rect(0, 0, 50, 20)) +
                 widget("QLabel", "own", rect(0, 30, 50, 20)) +
                 widget("QLabel", "self",
                        rect(0, 60, 50, 20) + string("styleSheet", "background: rgb(0, 255, 0)"))) +
      "</ui>"));
  const QImage image = window()->grab().toImage();
  EXPECT_EQ(image.pixelColor(40, 10), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(40, 40), QColor(Qt::blue));
  EXPECT_EQ(image.pixelColor(40, 70), QColor(Qt::green));
}

TEST_F(QtTemplate, ALabelShowsAPictureOfTheResourceFolder) {
  QImage picture(7, 5, QImage::Format_RGB32);
  picture.fill(Qt::red);
  folder_.add("icons/rouge.png");
  ASSERT_TRUE(picture.save(QString::fromStdString(folder_.path() + "/icons/rouge.png")));
  ASSERT_TRUE(read(
      form(kPair + widget("QLabel", "l", property("pixmap", "pixmap", "../icons/rouge.png")))));
  EXPECT_EQ(widgetNamed<QLabel>("l").pixmap().size(), QSize(7, 5));
}

// ---- Connections ----

TEST_F(QtTemplate, AConnectionEnablesAndShowsItems) {
  ASSERT_TRUE(read(
      form(kPair + widget("QCheckBox", "more", rect(10, 100, 100, 22)) +
               widget("QPushButton", "hide", rect(10, 130, 100, 22)) +
               widget("QLineEdit", "e",
                      rect(10, 10, 100, 22) + item("3") + property("enabled", "bool", "false")) +
               widget("QLineEdit", "f", rect(10, 40, 100, 22) + item("4")),
           connections(connection("more", "toggled(bool)", "e", "setEnabled(bool)") +
                       connection("hide", "clicked()", "f", "hide()") +
                       connection("more", "toggled(bool)", "e", "setFocus()")))));
  tick("more");
  person().check([&] {
    EXPECT_TRUE(widgetNamed<QCheckBox>("more").isChecked()) << "it is the form's own";
    EXPECT_TRUE(widgetNamed<QLineEdit>("e").isEnabled());
    EXPECT_TRUE(widgetNamed<QLineEdit>("e").hasFocus());
  });
  person().act(0, [](QWidget *w) { test::typeText(w, "x"); });
  press("hide");
  person().check([&] { EXPECT_FALSE(widgetNamed<QLineEdit>("f").isVisible()); });
  tick("more");
  person().check([&] { EXPECT_FALSE(widgetNamed<QLineEdit>("e").isEnabled()); });
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"3 text x", "2"}));
}

TEST_F(QtTemplate, AConnectionSetsWhatIsNoItem) {
  ASSERT_TRUE(read(form(
      kPair + widget("QLineEdit", "e", rect(10, 10, 100, 22) + item("3")) +
          widget("QLabel", "echo") + widget("QLabel", "n") +
          widget("QSlider", "s",
                 property("orientation", "enum", "Qt::Horizontal") +
                     property("minimum", "number", "-5") + property("maximum", "number", "50")) +
          widget("QSpinBox", "v") +
          widget("QComboBox", "c", rect(10, 40, 100, 22) + item("4") + entry("x") + entry("y")) +
          widget("QTabWidget", "t",
                 rect(0, 100, 100, 80) + page("one", "1", "") + page("two", "2", "")),
      connections(connection("e", "textChanged(QString)", "echo", "setText(QString)") +
                  connection("s", "valueChanged(int)", "v", "setValue(int)") +
                  connection("s", "valueChanged(int)", "n", "setNum(int)") +
                  connection("c", "currentIndexChanged(int)", "t", "setCurrentIndex(int)")))));
  typeInto("e", "<b>a");
  on("s", [](QWidget &slider) { dynamic_cast<QSlider &>(slider).setValue(12); });
  on("c", [](QWidget &popUp) {
    popUp.setFocus();
    test::pressKey(&popUp, Qt::Key_Down);
  });
  person().check([&] {
    EXPECT_EQ(widgetNamed<QLabel>("echo").text(), "<b>a");
    EXPECT_EQ(widgetNamed<QLabel>("echo").textFormat(), Qt::PlainText) << "typed is no markup";
    EXPECT_EQ(widgetNamed<QSpinBox>("v").value(), 12);
    EXPECT_EQ(widgetNamed<QLabel>("n").text(), "12");
    EXPECT_EQ(widgetNamed<QTabWidget>("t").currentIndex(), 1);
  });
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"3 text <", "3 text <b", "3 text <b>", "3 text <b>a", "4 value 2", "2"}));
}

TEST_F(QtTemplate, AConnectionReachesNeitherTheWindowNorItsButtons) {
  std::string all;
  for (const char *slot : {"close()", "hide()", "accept()", "reject()", "done(int)",
                           "deleteLater()", "setDisabled(bool)", "setVisible(bool)", "lower()"})
    for (const char *receiver : {"F", "ok", "no", "twin"}) {
      all += connection("p", "clicked()", receiver, slot);
      all += connection("p", "clicked(bool)", receiver, slot);
      all += connection("b", "toggled(bool)", receiver, slot);
    }
  all += connection("b", "toggled(bool)", "ok", "setEnabled(bool)");
  all += connection("p", "clicked()", "ok", "click()");
  ASSERT_TRUE(
      read(form(kPair + widget("QPushButton", "p", rect(10, 70, 100, 22) + item("9")) +
                    widget("QCheckBox", "b", rect(10, 40, 100, 22)) + widget("QLabel", "twin") +
                    widget("QLabel", "twin") + widget("QLabel", "F"),
                connections(all))));
  dialog_->setEnabled(1, false);
  press("p");
  tick("b");
  person().check([&] {
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(window()->isEnabled());
    EXPECT_FALSE(widgetNamed<QPushButton>("ok").isEnabled());
    EXPECT_TRUE(widgetNamed<QPushButton>("ok").isVisible());
    EXPECT_TRUE(widgetNamed<QPushButton>("no").isEnabled());
    EXPECT_TRUE(widgetNamed<QPushButton>("no").isVisible());
    EXPECT_TRUE(widgetNamed<QLabel>("twin").isVisible()) << "which of them is meant?";
  });
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"9", "2"}));
}

TEST_F(QtTemplate, AConnectionLeavesWhatAnItemHoldsToTheProgram) {
  ASSERT_TRUE(read(form(
      kPair + widget("QPushButton", "p", rect(10, 70, 100, 22)) +
          widget("QCheckBox", "own", rect(10, 100, 100, 22)) +
          widget("QLineEdit", "source", rect(10, 130, 100, 22)) +
          widget("QLineEdit", "e", rect(10, 10, 100, 22) + item("3") + string("text", "a")) +
          widget("QCheckBox", "b", item("4")) +
          widget("QComboBox", "c", item("5") + entry("x") + entry("y")),
      connections(connection("p", "clicked()", "e", "clear()") +
                  connection("p", "clicked()", "e", "deleteLater()") +
                  connection("p", "clicked()", "e", "paste()") +
                  connection("p", "clicked()", "b", "toggle()") +
                  connection("p", "clicked()", "b", "click()") +
                  connection("own", "toggled(bool)", "b", "setChecked(bool)") +
                  connection("own", "stateChanged(int)", "c", "setCurrentIndex(int)") +
                  connection("source", "textChanged(QString)", "e", "setText(QString)") +
                  connection("source", "textChanged(QString)", "e", "setStyleSheet(QString)")))));
  press("p");
  tick("own");
  typeInto("source", "z");
  person().check([&] {
    EXPECT_EQ(dialog_->text(3), "a");
    EXPECT_EQ(dialog_->value(4), 0);
    EXPECT_EQ(dialog_->value(5), 1);
    EXPECT_EQ(widgetNamed<QLineEdit>("e").styleSheet(), "");
  });
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtTemplate, OkStaysDisabledInsideOfWhatAConnectionEnables) {
  ASSERT_TRUE(read(
      form(widget("QCheckBox", "b", rect(10, 10, 100, 22) + property("checked", "bool", "true")) +
               widget("QGroupBox", "group", rect(0, 40, 400, 260) + kPair),
           connections(connection("b", "toggled(bool)", "group", "setEnabled(bool)")))));
  tick("b");
  person().check([&] {
    EXPECT_FALSE(widgetNamed<QPushButton>("ok").isEnabled());
    dialog_->setEnabled(1, false);
  });
  tick("b");
  person().check([&] {
    EXPECT_TRUE(widgetNamed<QPushButton>("no").isEnabled());
    EXPECT_FALSE(widgetNamed<QPushButton>("ok").isEnabled());
    dialog_->setEnabled(1, true);
    EXPECT_TRUE(widgetNamed<QPushButton>("ok").isEnabled());
  });
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtTemplate, EscapeCancelsAlsoInsideOfWhatAConnectionDisables) {
  ASSERT_TRUE(read(
      form(widget("QCheckBox", "b", rect(10, 10, 100, 22) + property("checked", "bool", "true")) +
               widget("QGroupBox", "group", rect(0, 40, 400, 260) + kPair),
           connections(connection("b", "toggled(bool)", "group", "setEnabled(bool)")))));
  tick("b");
  person().check([&] { EXPECT_FALSE(widgetNamed<QPushButton>("no").isEnabled()); });
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtTemplate, ConnectionsThatAnswerEachOtherComeToAnEnd) {
  std::string all;
  for (const auto &[a, b] : {std::pair("a", "b"), std::pair("b", "a")}) {
    all += connection(a, "toggled(bool)", b, "setChecked(bool)");
    all += connection(a, "clicked()", b, "click()");
    all += connection(a, "toggled(bool)", b, "toggle()");
  }
  for (const auto &[s, v] : {std::pair("s", "v"), std::pair("v", "s")})
    all += connection(s, "valueChanged(int)", v, "setValue(int)");
  for (const auto &[e, f] : {std::pair("e", "f"), std::pair("f", "e")}) {
    all += connection(e, "textChanged(QString)", f, "setText(QString)");
    all += connection(e, "editingFinished()", e, "setFocus()");
  }
  all += connection("a", "destroyed()", "b", "setFocus()");
  ASSERT_TRUE(read(form(
      kPair + widget("QCheckBox", "a", rect(10, 10, 90, 22)) +
          widget("QCheckBox", "b", rect(10, 40, 90, 22)) +
          widget("QSlider", "s", rect(10, 70, 90, 22)) +
          widget("QSpinBox", "v", rect(10, 100, 90, 22) + property("minimum", "number", "30")) +
          widget("QLineEdit", "e", rect(10, 130, 90, 22)) +
          widget("QLineEdit", "f", rect(10, 160, 90, 22) + property("maxLength", "number", "2")),
      connections(all))));
  tick("a");
  on("s", [](QWidget &slider) { dynamic_cast<QSlider &>(slider).setValue(12); });
  typeInto("e", "abc");
  typeInto("f", "d");
  person().check([&] {
    EXPECT_TRUE(widgetNamed<QCheckBox>("b").isChecked());
    EXPECT_EQ(widgetNamed<QSpinBox>("v").value(), 30);
    EXPECT_EQ(widgetNamed<QLineEdit>("f").text().size(), 2);
  });
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

// ---- Where it comes up ----

TEST_F(QtTemplate, ComesUpInTheMiddleOfItsParent) {
  QWidget host;
  host.setGeometry(200, 200, 500, 400);
  host.show();
  folder_.add("forms/f.ui", form(kPair));
  dialog_ = desktop_.newDialogFromTemplate(folder_.path() + "/forms/f.ui",
                                           desktop_.hostWindow(&host), problem_);
  ASSERT_NE(dialog_, nullptr);
  EXPECT_EQ(window()->geometry(), QRect(250, 250, 400, 300));
}

// ---- What may be wrong with it ----

TEST_F(QtTemplate, AFaultIsNamedInOneLine) {
  const struct {
    const char *fault;
    std::string content;
    const char *said;
  } kCases[] = {
      {"empty", "", "Premature end of document"},
      {"no XML", "[dialog]\nitem=3\n", "line 1: "},
      {"cut", form(kPair).substr(0, 700), "Premature end of document"},
      {"not closed", "<ui><widget class=\"QDialog\" name=\"F\"></ui>", "line 1: "},
      {"another document", "<html><body/></html>", "not a form"},
      {"no window", "<ui version=\"4.0\"></ui>", "there is no window"},
      {"two windows", "<ui>" + widget("QDialog", "a") + widget("QDialog", "b") + "</ui>",
       "a second window"},
      {"no dialog", "<ui>" + widget("QMainWindow", "a") + "</ui>", "no dialog but a QMainWindow"},
      {"a number twice",
       form(kPair + widget("QLineEdit", "nom", item("3")) +
            widget("QCheckBox", "fumeur", item("3"))),
       "item 3 is there twice, as \"nom\" and as \"fumeur\""},
      {"a label's number twice",
       form(kPair + widget("QLabel", "l", item("3")) + widget("QLineEdit", "e", item("3"))),
       "item 3 is there twice"},
      {"number 0", form(kPair + widget("QLineEdit", "e", item("0"))),
       "\"e\" has the item number 0, which is not one of 1 to 32767"},
      {"a negative number", form(kPair + widget("QLineEdit", "e", item("-1"))), "number -1, which"},
      {"a large number", form(kPair + widget("QLineEdit", "e", item("32768"))),
       "number 32768, which"},
      {"a huge number", form(kPair + widget("QLineEdit", "e", item("99999999999999999999"))),
       "no number: \"99999999999999999999\""},
      {"no number", form(kPair + widget("QLineEdit", "e", string("item", "trois"))),
       "number trois, which"},
      {"an empty number", form(kPair + widget("QLineEdit", "e", item(""))), "no number: \"\""},
      {"a number where no item can be", form(kPair + widget("QSpinBox", "s", item("3"))),
       "\"s\" has an item number, but can be no item: it is shown as a QSpinBox"},
      {"a number of a class that no one knows", form(kPair + widget("Cadran", "c", item("3"))),
       "\"c\" has an item number, but can be no item: it is shown as a QWidget"},
      {"a cell far out",
       form("<layout class=\"QGridLayout\" name=\"g\"><item row=\"2000000000\" column=\"0\">" +
            widget("QLabel", "l") + "</item></layout>"),
       "a cell of a layout has no place"},
      {"a negative cell",
       form("<layout class=\"QGridLayout\" name=\"g\"><item row=\"-5\" column=\"0\">" +
            widget("QLabel", "l") + "</item></layout>"),
       "a cell of a layout has no place"},
      {"a cell taken twice",
       form("<layout class=\"QFormLayout\" name=\"f\"><item row=\"0\" column=\"0\">" +
            widget("QLabel", "l") +
            "</item><item row=\"0\" column=\"0\"><layout "
            "class=\"QHBoxLayout\" name=\"h\"/></item></layout>"),
       "two widgets stand in one cell"},
      {"a cell taken by a row",
       form("<layout class=\"QFormLayout\" name=\"f\"><item row=\"1\" column=\"0\" colspan=\"2\">" +
            widget("QLabel", "l") + "</item><item row=\"1\" column=\"1\">" + widget("QLabel", "m") +
            "</item></layout>"),
       "two widgets stand in one cell"},
      {"two layouts of one widget",
       form(kPair + widget("QWidget", "w",
                           "<layout class=\"QGridLayout\" name=\"a\"/>"
                           "<layout class=\"QGridLayout\" name=\"b\"/>")),
       "\"w\" has a layout too many"},
      {"a layout of a tab widget",
       form(kPair + widget("QTabWidget", "t", "<layout class=\"QVBoxLayout\" name=\"a\"/>")),
       "\"t\" has a layout too many"},
      {"a scroll area of two",
       form(kPair + widget("QScrollArea", "s", widget("QLabel", "l") + widget("QLabel", "m"))),
       "\"s\" scrolls two widgets"},
  };
  for (const auto &[fault, content, said] : kCases) {
    SCOPED_TRACE(fault);
    EXPECT_FALSE(read(content));
    EXPECT_NE(problem_.find(said), std::string::npos) << problem_;
    EXPECT_EQ(problem_.find('\n'), std::string::npos) << problem_;
  }
}

TEST_F(QtTemplate, AFileThatCannotBeReadIsAFault) {
  EXPECT_EQ(desktop_.newDialogFromTemplate(folder_.path() + "/absent.ui", nullptr, problem_),
            nullptr);
  EXPECT_NE(problem_, "");
  problem_.clear();
  EXPECT_EQ(desktop_.newDialogFromTemplate(folder_.path(), nullptr, problem_), nullptr);
  EXPECT_NE(problem_, "");
  problem_.clear();
  const std::string pipe = folder_.path() + "/pipe.ui";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(desktop_.newDialogFromTemplate(pipe, nullptr, problem_), nullptr);
  EXPECT_EQ(problem_, "not a file");
}

std::string repeated(const std::string &text, int times) {
  std::string all;
  for (int n = 0; n < times; ++n) all += text;
  return all;
}

TEST_F(QtTemplate, HugeAndDeepFormsAreRefused) {
  const struct {
    const char *what;
    std::string content;
    const char *said;
  } kCases[] = {
      {"deep",
       form(repeated("<widget class=\"QWidget\" name=\"w\">", 30000) +
            repeated("</widget>", 30000)),
       "nested too deeply"},
      {"deep layouts",
       form(repeated("<layout class=\"QVBoxLayout\" name=\"v\"><item>", 10000) +
            repeated("</item></layout>", 10000)),
       "nested too deeply"},
      {"many widgets", form(repeated("<widget class=\"QLabel\" name=\"w\"/>", 50000)),
       "too many widgets"},
      {"many entries", form(widget("QComboBox", "c", repeated("<item/>", 100000))),
       "too many entries"},
      {"large", form(std::string(5000000, ' ')), "too large"},
      {"entities without end",
       "<!DOCTYPE ui [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
       "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\"><!ENTITY d "
       "\"&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;\">"
       "<!ENTITY e \"&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;\">]><ui><widget class=\"QDialog\" "
       "name=\"F\"><property name=\"windowTitle\"><string>&e;&e;&e;</string></property></widget>"
       "</ui>",
       "line 1: "},
  };
  for (const auto &[what, content, said] : kCases) {
    SCOPED_TRACE(what);
    EXPECT_FALSE(read(content));
    EXPECT_NE(problem_.find(said), std::string::npos) << problem_;
  }
}

// As many as there may be, and one more.
TEST_F(QtTemplate, AFormMayHaveAsMuchAsItsLimitsSay) {
  const auto labels = [](int count) {
    return form(kPair + repeated("<widget class=\"QLabel\" name=\"w\"/>", count));
  };
  const auto entries = [](int count) {
    return form(kPair + widget("QComboBox", "c", repeated("<item/>", count)));
  };
  const auto rows = [](int count) {
    return form(kPair + widget("QWidget", "w",
                               "<layout class=\"QGridLayout\" name=\"g\"><item row=\"" +
                                   std::to_string(count - 1) + "\" column=\"0\">" +
                                   widget("QLabel", "l") + "</item></layout>"));
  };
  const struct {
    std::string whole;
    std::string oneMore;
  } kCases[] = {{labels(2000 - 3), labels(2001 - 3)},
                {entries(20000), entries(20001)},
                {rows(200), rows(201)}};
  for (const auto &[whole, oneMore] : kCases) {
    EXPECT_TRUE(read(whole)) << problem_;
    EXPECT_FALSE(read(oneMore)) << oneMore.substr(0, 600);
  }
}

// ---- What is left out, and does no harm ----

TEST_F(QtTemplate, NothingOfAFormTakesAnItemsRulesAway) {
  ASSERT_TRUE(read(form(
      kPair +
          widget("QLineEdit", "e",
                 rect(10, 10, 100, 22) + item("3") + string("inputMask", "999") +
                     property("echoMode", "enum", "QLineEdit::NoEcho") +
                     property("clearButtonEnabled", "bool", "true") +
                     string("styleSheet", "image: url(/etc/passwd)")) +
          widget("QComboBox", "c", item("4") + property("editable", "bool", "true") + entry("x")) +
          widget("QCheckBox", "b", item("5") + property("tristate", "bool", "true")),
      "<connections><connection><sender>e</sender><signal>textEdited(QString)</signal>"
      "<receiver>F</receiver><slot>close()</slot></connection></connections>"
      "<resources><include location=\"/etc/passwd\"/></resources>")));
  const QLineEdit &edit = widgetNamed<QLineEdit>("e");
  EXPECT_EQ(edit.inputMask(), "");
  EXPECT_EQ(edit.echoMode(), QLineEdit::Normal);
  EXPECT_FALSE(edit.isClearButtonEnabled());
  EXPECT_EQ(edit.styleSheet(), "");
  EXPECT_FALSE(widgetNamed<QComboBox>("c").isEditable());
  EXPECT_FALSE(widgetNamed<QCheckBox>("b").isTristate());
  typeInto("e", "a");
  person().pressEscape();
  EXPECT_EQ(run(), (Lines{"3 text a", "2"})) << "no signal of the form is connected";
}

TEST_F(QtTemplate, WildValuesAreSurvived) {
  const std::string wild =
      property("minimumSize", "size", "<width>2000000000</width><height>-7</height>");
  ASSERT_TRUE(read(form(
      kPair +
          widget("QLabel", "l",
                 rect(-2000000000, 2000000000, 2147483647, -5) + wild + string("margin", "x") +
                     property("margin", "number", "-2147483648") +
                     property("indent", "number", "2147483647") +
                     property("alignment", "set", "Qt::AlignNowhere|::") +
                     property("alignment", "number", "123456") +
                     property("font", "string", ",,,,") +
                     property("font", "font", "<pointsize>1000000</pointsize>") +
                     property("frameShape", "enum", "QFrame::") +
                     property("pixmap", "pixmap", "../../../../nowhere.png")) +
          widget(
              "QLineEdit", "e",
              item("3") + property("maxLength", "number", "-5") +
                  "<property name=\"sizePolicy\"><sizepolicy hsizetype=\"?\" vsizetype=\"Fixed\">"
                  "<horstretch>-1</horstretch></sizepolicy></property>") +
          widget("QComboBox", "c",
                 item("4") + property("minimumContentsLength", "number", "2147483647") +
                     property("currentIndex", "number", "2147483647") + entry("x")) +
          widget("QPluginLoader", "x",
                 widget("QWebEngineView", "y", widget("QLineEdit", "z", item("6")))) +
          widget("", "") + "<unknown><widget class=\"QLineEdit\" name=\"q\"/></unknown>",
      "<tabstops><tabstop>e</tabstop><tabstop>e</tabstop><tabstop>F</tabstop></tabstops>")));
  EXPECT_EQ(dialog_->kind(6), ItemKind::EditText);
  EXPECT_LE(widgetNamed<QLabel>("l").font().pointSize(), 200);
  EXPECT_GE(widgetNamed<QLabel>("l").margin(), 0);
  person().check([&] { window()->grab(); });
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(QtTemplate, AWindowOfWildSizeIsCut) {
  for (const char *size : {"<width>2000000000</width><height>2000000000</height>",
                           "<width>-1</width><height>0</height>", ""}) {
    ASSERT_TRUE(read("<ui>" + widget("QDialog", "F", property("geometry", "rect", size) + kPair) +
                     "</ui>"));
    EXPECT_GE(window()->width(), 1);
    EXPECT_LE(window()->width(), 4096);
    EXPECT_LE(window()->height(), 4096);
  }
}

TEST_F(QtTemplate, AStyleSheetThatReachesOutIsLeftOut) {
  for (const char *sheet :
       {"QLabel { image: url(/etc/passwd) }", "QLabel { background: URL (x.png) }",
        "@import 'x.qss'; QLabel { color: red }", "QLabel { image: \\75 rl(x.png) }",
        "QPushButton { qproperty-enabled: true }", "QLineEdit { QProperty-inputMask: '9' }",
        "QLabel { font-size: 20000px }", "QLabel { min-width: 99999.5 pt }"}) {
    ASSERT_TRUE(read("<ui>" +
                     widget("QDialog", "F",
                            rect(0, 0, 400, 300) + string("styleSheet", sheet) + kPair +
                                widget("QLabel", "l", string("styleSheet", sheet))) +
                     "</ui>"));
    EXPECT_EQ(window()->styleSheet(), "") << sheet;
    EXPECT_EQ(widgetNamed<QLabel>("l").styleSheet(), "") << sheet;
  }
}

TEST_F(QtTemplate, RichTextBringsInNoFile) {
  QImage picture(40, 40, QImage::Format_RGB32);
  picture.fill(Qt::red);
  const std::string file = folder_.path() + "/rouge.png";
  ASSERT_TRUE(picture.save(QString::fromStdString(file)));
  const std::string kMarkups[] = {
      "<img src='" + file + "'>Nom",
      "Nom<p style='background-image: url(" + file + ")'></p>",
      "<table background='" + file + "'><tr><td>Nom</td></tr></table>",
      "<html><head><link rel='stylesheet' type='text/css' href='" + file + "'></head>Nom</html>",
      "<style>p { background: &#117;rl(" + file + ") }</style><p>Nom</p>",
      "<p>&lt;img src='" + file + "'&gt;</p><img src='x'>Nom",
      "<span style='font-size: 9000pt'>Nom</span>",
      "<span style='font-size: 9000px'>Nom</span>",
      "<b>Nom</b>" + std::string(9991, 'x'),  // longer than what is looked into
  };
  for (const std::string &markup : kMarkups) {
    SCOPED_TRACE(markup);
    const QString text = QString::fromStdString(markup).toHtmlEscaped();
    const std::string told = text.toStdString();
    ASSERT_TRUE(read(form(
        kPair + widget("QLabel", "l",
                       rect(0, 0, 300, 200) + string("text", told) + string("toolTip", told)))));
    const auto &label = widgetNamed<QLabel>("l");
    EXPECT_TRUE(label.text().contains("Nom")) << label.text().toStdString();
    EXPECT_FALSE(label.text().contains("<")) << label.text().toStdString();
    EXPECT_FALSE(label.toolTip().contains("<")) << label.toolTip().toStdString();
    EXPECT_NE(window()->grab().toImage().pixelColor(5, 5), QColor(Qt::red));
  }
  ASSERT_TRUE(read(form(kPair + widget("QLabel", "l",
                                       string("text", "![x](" + file + ")") +
                                           property("textFormat", "enum", "Qt::MarkdownText")))));
  EXPECT_NE(widgetNamed<QLabel>("l").textFormat(), Qt::MarkdownText);
}

TEST_F(QtTemplate, RichTextOfWordsStaysRich) {
  const std::string kRich[] = {
      "<html><head/><body><p><span style=\" font-weight:600; color:#ff0000;\">Nom</span> "
      "<i>et</i> prénom</p></body></html>",
      "<b>Nom</b>" + std::string(9990, 'x'),
  };
  for (const std::string &rich : kRich) {
    const QString escaped = QString::fromStdString(rich).toHtmlEscaped();
    ASSERT_TRUE(read(form(kPair + widget("QLabel", "l", string("text", escaped.toStdString())))));
    EXPECT_EQ(widgetNamed<QLabel>("l").text().toStdString(), rich);
  }
}

TEST_F(QtTemplate, APictureIsAFileOfTheResourceFolder) {
  QImage picture(4, 4, QImage::Format_RGB32);
  picture.fill(Qt::red);
  folder_.add("res/dialogs/x");
  for (const char *name : {"/outside.png", "/res-other.png", "/res/dialogs/own.png"})
    ASSERT_TRUE(picture.save(QString::fromStdString(folder_.path() + name)));
  ASSERT_EQ(mkfifo((folder_.path() + "/res/pipe.png").c_str(), 0600), 0);
  const struct {
    std::string name;
    bool isShown;
  } kCases[] = {
      {"own.png", true},
      {"../dialogs/own.png", true},
      {"../../res/dialogs/own.png", true},
      {"../../outside.png", false},
      {"../../res-other.png", false},
      {folder_.path() + "/outside.png", false},
      {folder_.path() + "/res/dialogs/own.png", false},
      {"../pipe.png", false},
      {"..", false},
      {":/qt-project.org/styles/commonstyle/images/up-32.png", false},
      {"", false},
  };
  for (const auto &[name, isShown] : kCases) {
    problem_.clear();
    const std::string file = folder_.add(
        "res/dialogs/f.ui", form(kPair + widget("QLabel", "l", property("pixmap", "pixmap", name)) +
                                 widget("QPushButton", "p", property("icon", "iconset", name))));
    dialog_ = desktop_.newDialogFromTemplate(file, nullptr, problem_);
    ASSERT_NE(dialog_, nullptr) << problem_;
    EXPECT_EQ(!widgetNamed<QLabel>("l").pixmap().isNull(), isShown) << name;
    EXPECT_TRUE(widgetNamed<QPushButton>("p").icon().isNull()) << name;
  }
}

TEST_F(QtTemplate, AFormMakesNoSecondWindow) {
  for (const char *className : {"QDialog", "QMainWindow", "QDockWidget", "QMenu", "QWizard",
                                "QSplashScreen", "QMdiArea", "QTextBrowser", "QToolBar"}) {
    ASSERT_TRUE(
        read(form(kPair + widget(className, "w",
                                 property("visible", "bool", "true") +
                                     property("windowModality", "enum", "Qt::NonModal") +
                                     property("source", "url", "<string>/etc/passwd</string>") +
                                     widget("QLineEdit", "e", item("3"))))))
        << className;
    EXPECT_STREQ(widgetNamed<QWidget>("w").metaObject()->className(), "QWidget") << className;
    EXPECT_FALSE(widgetNamed<QWidget>("w").isWindow()) << className;
    EXPECT_EQ(dialog_->kind(3), ItemKind::EditText) << className;
  }
}

TEST_F(QtTemplate, TheWindowStaysTheDesktops) {
  ASSERT_TRUE(read("<ui>" +
                   widget("QDialog", "F",
                          rect(0, 0, 400, 300) + property("enabled", "bool", "false") +
                              property("modal", "bool", "false") +
                              property("windowModality", "enum", "Qt::NonModal") +
                              property("visible", "bool", "true") +
                              property("windowOpacity", "double", "0") +
                              property("item", "number", "7") + kPair) +
                   "</ui>"));
  EXPECT_TRUE(window()->isEnabled());
  EXPECT_FALSE(window()->isVisible());
  EXPECT_EQ(window()->windowModality(), Qt::ApplicationModal);
  EXPECT_EQ(window()->windowOpacity(), 1);
  EXPECT_EQ(dialog_->kind(7), ItemKind::None);
}

// Neither the loader's remarks on a form nor those on a folder of plugins may show.
TEST_F(QtTemplate, NothingIsWrittenOnStandardError) {
  const std::string odd =
      kPair + string("unknown", "x") + property("frameShape", "enum", "QFrame::Nothing") +
      widget("QFrame", "f", property("frameShape", "enum", "QFrame::Nothing")) +
      widget("QLabel", "l",
             property("alignment", "set", "Qt::AlignNowhere") +
                 property("buddy", "cstring", "nobody") +
                 property("font", "font", "<family></family>")) +
      widget("Unknown", "u") +
      "<layout class=\"QHBoxLayout\" name=\"h\" stretch=\"1,x,2\"><item/></layout>";
  ::testing::internal::CaptureStderr();
  EXPECT_TRUE(read(form(odd, "<tabstops><tabstop>nobody</tabstop></tabstops>" +
                                 connections(connection("l", "toggled(bool)", "f", "hide()")))));
  EXPECT_FALSE(read(form(odd + odd)));
  EXPECT_FALSE(read("<ui><widget>"));
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
  ::testing::internal::CaptureStderr();
  qWarning("heard");
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("heard"), std::string::npos);
}

class LibraryPaths : public QtTemplate {
 protected:
  LibraryPaths() {
    folder_.add("designer/libplugin.so", "none");
    QCoreApplication::addLibraryPath(QString::fromStdString(folder_.path()));
    watch_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    inotify_add_watch(watch_, (folder_.path() + "/designer").c_str(), IN_OPEN);
  }
  ~LibraryPaths() override {
    close(watch_);
    QCoreApplication::setLibraryPaths(before_);
  }
  // Whether a file was looked for there since the last call.
  bool wasLookedAt() const {
    alignas(inotify_event) char events[4096];
    return ::read(watch_, events, sizeof events) > 0;
  }
  const QStringList before_ = QCoreApplication::libraryPaths();

 private:
  int watch_ = -1;
};

TEST_F(LibraryPaths, NoPluginOfTheFormEditorIsLookedFor) {
  ASSERT_TRUE(read(form(kPair + widget("PluginWidget", "w"))));
  EXPECT_FALSE(wasLookedAt());
  EXPECT_EQ(QDir(QString::fromStdString(folder_.path() + "/designer")).entryList().size(), 3);
  EXPECT_TRUE(wasLookedAt()) << "else nothing is tested here";
}

TEST_F(LibraryPaths, StayAsTheyWere) {
  const QStringList before = QCoreApplication::libraryPaths();
  EXPECT_TRUE(read(form(kPair)));
  EXPECT_EQ(QCoreApplication::libraryPaths(), before);
  EXPECT_FALSE(read(form(kPair + kPair)));
  EXPECT_EQ(QCoreApplication::libraryPaths(), before);
}

class ThrowingFilter final : public QObject {
 public:
  ThrowingFilter() { qApp->installEventFilter(this); }
  bool eventFilter(QObject *object, QEvent *event) override {
    if (event->type() == QEvent::DynamicPropertyChange && object->inherits("QPushButton"))
      throw std::bad_alloc();
    return false;
  }
};

TEST_F(LibraryPaths, StayAsTheyWereWhenAnExceptionPasses) {
  const QStringList before = QCoreApplication::libraryPaths();
  {
    ThrowingFilter filter;
    // The toolkit's loader leaks what it had read so far.
    if (__lsan_disable != nullptr) __lsan_disable();
    EXPECT_THROW(read(form(kPair)), std::bad_alloc);
    if (__lsan_enable != nullptr) __lsan_enable();
  }
  EXPECT_EQ(QCoreApplication::libraryPaths(), before);
  ::testing::internal::CaptureStderr();
  qWarning("heard");
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("heard"), std::string::npos);
  EXPECT_TRUE(read(form(kPair)));
}

// Pieces of a form in places where they do not belong.
TEST_F(QtTemplate, ShuffledFormsAreSurvived) {
  const std::vector<std::string> kPieces = {
      "<widget class=\"QWidget\" name=\"w\">",
      "<widget class=\"QScrollArea\" name=\"s\">",
      "<widget class=\"QTabWidget\" name=\"t\">",
      "<widget class=\"QLabel\" name=\"l\">",
      "<widget class=\"QToolBox\" name=\"x\">",
      "<widget class=\"QComboBox\" name=\"c\">",
      "<widget class=\"QStackedWidget\" name=\"k\">",
      "<widget class=\"Line\" name=\"i\">",
      "<widget class=\"QGroupBox\" name=\"g\">",
      "<widget class=\"QLineEdit\" name=\"e\">",
      "<widget class=\"QCheckBox\" name=\"b\">",
      "<widget class=\"QPushButton\" name=\"q\">",
      "<attribute name=\"buttonGroup\"><string notr=\"true\">g</string></attribute>",
      "<layout class=\"QFormLayout\" name=\"f\">",
      "<layout class=\"Unknown\" name=\"u\">",
      "<layout class=\"QGridLayout\" name=\"d\">",
      "<item row=\"1\" column=\"1\" rowspan=\"0\">",
      "<item>",
      "<spacer name=\"p\">",
      "</>",
      "</>",
      "</>",
      "</>",
      "</>",
      "<property name=\"buddy\"><cstring>e</cstring></property>",
      "<property name=\"currentIndex\"><number>1</number></property>",
      "<property name=\"orientation\"><enum>Qt::Vertical</enum></property>",
      "<attribute name=\"title\"><string>t</string></attribute>",
      "<attribute name=\"title\"></attribute>",
      "<attribute name=\"label\"><number>1</number></attribute>",
      "<property name=\"text\"></property>",
      "<property name=\"leftMargin\"></property>",
      "<property name=\"sizeHint\"></property>",
      "<property name=\"geometry\"><rect></rect></property>",
      "<zorder>e</zorder>"};
  std::mt19937 random(1);
  int made = 0;
  for (int n = 0; n < 1000; ++n) {
    std::string inside;
    std::vector<std::string> open;
    const auto close = [&] {
      inside += "</" + open.back() + ">";
      open.pop_back();
    };
    for (int piece = 0; piece < 25; ++piece) {
      const std::string &next = kPieces[random() % kPieces.size()];
      if (next == "</>") {
        if (!open.empty()) close();
        continue;
      }
      inside += next;
      if (next.find("</") == std::string::npos)
        open.push_back(next.substr(1, next.find_first_of(" >") - 1));
    }
    while (!open.empty()) close();
    if (!read(
            form(kPair + inside, "<tabstops><tabstop>e</tabstop><tabstop>c</tabstop></tabstops>")))
      continue;
    ++made;
    window()->grab();
  }
  EXPECT_GT(made, 100);
}

}  // namespace
}  // namespace korvel::platform
