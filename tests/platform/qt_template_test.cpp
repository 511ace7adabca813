// Dialogs of the Qt module that are made from forms.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTabWidget>
#include <QWindow>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/recorded_hits.h"
#include "tests/platform/temporary_folder.h"

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
  const auto page = [](const std::string &name, const std::string &title, const std::string &in) {
    return "<widget class=\"QWidget\" name=\"" + name + "\"><attribute name=\"title\"><string>" +
           title + "</string></attribute>" + in + "</widget>";
  };
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
       "item number that is none: 0"},
      {"a negative number", form(kPair + widget("QLineEdit", "e", item("-1"))), "none: -1"},
      {"a large number", form(kPair + widget("QLineEdit", "e", item("32768"))), "none: 32768"},
      {"a huge number", form(kPair + widget("QLineEdit", "e", item("99999999999999999999"))),
       "a number is none"},
      {"no number", form(kPair + widget("QLineEdit", "e", string("item", "trois"))), "none: trois"},
      {"an empty number", form(kPair + widget("QLineEdit", "e", item(""))), "a number is none"},
      {"a number where no item can be", form(kPair + widget("QSpinBox", "s", item("3"))),
       "\"s\" has an item number and is no item: QSpinBox"},
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

}  // namespace
}  // namespace korvel::platform
