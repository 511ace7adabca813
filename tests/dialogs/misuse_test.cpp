// SPDX-License-Identifier: MIT
// What is told of fields that are not there, of places and texts, and of descriptions whose fields
// get in each other's way.
#include "dialogs/misuse.h"

#include <climits>
#include <string>

#include <korvel/codecs.h>

#include "tests/dialogs/dialog_fixture.h"
#include "tests/files/volumes.h"
#include "tests/support/page_end.h"
#include "tests/support/told.h"

namespace korvel::test {
namespace {

using platform::ItemKind;

int callbackOfNothing(int, int, int, char **, int, int, int, int *, int, int, int, int *, int, int,
                      int, double *, int, int, int, int *, int, int *, int) {
  return 0;
}

class DialogsMisuse : public DialogTest {
 protected:
  // Runs a dialog of a push button, whose action is this.
  void during(std::function<void()> action) {
    PushDlgBox_param(1, 600);
    PushDlgBox_set_geo(0, "b", 1, 1, 1, 1, 5);
    PushDlgBox_set_fvalid(0, Callbacks::action);
    Callbacks::onAction = std::move(action);
    desk.expectDialog("T").press(3).press(kCancel);
    ZRVDlgBoxEx("T", nullptr);
  }

  char text_[128] = "";
  int value_ = 0;
  double number_ = 0;
};

TEST_F(DialogsMisuse, ACountThatIsOutOfRange) {
  EXPECT_FAILS(TexteDlgBox_param(0, 100), -1,
               "TexteDlgBox_param(0, 100): a count of 0 is out of range: 1 to 20 are possible");
  EXPECT_FAILS(TexteDlgBox_param(21, 100), -1,
               "TexteDlgBox_param(21, 100): a count of 21 is out of range: 1 to 20 are possible");
  EXPECT_FAILS(BoolDlgBox_param(65, 1), -1,
               "BoolDlgBox_param(65, 1): a count of 65 is out of range: 0 to 64 are possible");
  EXPECT_FAILS(IntDlgBox_param(-1, 1), -1,
               "IntDlgBox_param(-1, 1): a count of -1 is out of range: 0 to 128 are possible");
  EXPECT_FAILS(NumDlgBox_param(129, 1), -1,
               "NumDlgBox_param(129, 1): a count of 129 is out of range: 0 to 128 are possible");
  EXPECT_FAILS(DateDlgBox_param(21, 1), -1,
               "DateDlgBox_param(21, 1): a count of 21 is out of range: 0 to 20 are possible");
  EXPECT_FAILS(PushDlgBox_param(11, 1), -1,
               "PushDlgBox_param(11, 1): a count of 11 is out of range: 0 to 10 are possible");
  EXPECT_FAILS(StaticDlgBox_param(129), -1,
               "StaticDlgBox_param(129): a count of 129 is out of range: 0 to 128 are possible");
  EXPECT_TOLD(TexteDlgBox_param(20, 100), "");
}

TEST_F(DialogsMisuse, AFieldThatIsSetBeforeParam) {
  EXPECT_TOLD(TexteDlgBox_set(0, "x"),
              "TexteDlgBox_set(0, \"x\"): no text field is in use: TexteDlgBox_param comes first, "
              "and clears what was set before it");
  EXPECT_TOLD(BoolDlgBox_set(0, 1),
              "BoolDlgBox_set(0, 1): no check box is in use: BoolDlgBox_param comes first, and "
              "clears what was set before it");
  EXPECT_TOLD(
      IntDlgBox_set(0, 1, 0),
      "IntDlgBox_set(0, 1, 0): no integer field is in use: IntDlgBox_param comes first, and "
      "clears what was set before it");
  EXPECT_TOLD(NumDlgBox_set(0, 1.5, 0),
              "NumDlgBox_set(0, 1.5, 0): no number field is in use: NumDlgBox_param comes first, "
              "and clears what was set before it");
  EXPECT_TOLD(DateDlgBox_set(0, 20040307, 1),
              "DateDlgBox_set(0, 20040307, 1): no date field is in use: DateDlgBox_param comes "
              "first, and clears what was set before it");
  EXPECT_TOLD(PushDlgBox_set_fvalid(0, nullptr),
              "PushDlgBox_set_fvalid(0, null): no push button is in use: PushDlgBox_param comes "
              "first, and clears what was set before it");
  EXPECT_TOLD(StaticDlgBox_set(0, "x"),
              "StaticDlgBox_set(0, \"x\"): no static text is in use: StaticDlgBox_param comes "
              "first, and clears what was set before it");
  EXPECT_FAILS(TexteDlgBox_get_valid(0), 0,
               "TexteDlgBox_get_valid(0): there is no text field at all: TexteDlgBox_param comes "
               "first");
}

TEST_F(DialogsMisuse, ValuesOutlastTheRun) {
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set(0, "x");
  TDB = 0;
  EXPECT_TOLD(TexteDlgBox_retrieve(0, text_, 128), "");
  EXPECT_TOLD(TexteDlgBox_get_valid(0), "");
}

TEST_F(DialogsMisuse, ATextFieldThatThereIsNot) {
  TexteDlgBox_param(2, 100);
  const std::string two = "): there is no text field 2: 2 are in use, from 0 to 1";
  EXPECT_TOLD(TexteDlgBox_set(2, "x"), "TexteDlgBox_set(2, \"x\"" + two);
  EXPECT_TOLD(TexteDlgBox_set_geo(2, 0, 0, 0, 0, 0), "TexteDlgBox_set_geo(2, 0, 0, 0, 0, 0" + two);
  EXPECT_TOLD(TexteDlgBox_set_ncarac(2, 5), "TexteDlgBox_set_ncarac(2, 5" + two);
  EXPECT_TOLD(TexteDlgBox_set_liste(2, "a"), "TexteDlgBox_set_liste(2, \"a\"" + two);
  EXPECT_TOLD(TexteDlgBox_change_liste(2), "TexteDlgBox_change_liste(2" + two);
  EXPECT_TOLD(TexteDlgBox_set_liste_buffer(2, text_), "TexteDlgBox_set_liste_buffer(2, ..." + two);
  EXPECT_TOLD(TexteDlgBox_retrieve(2, text_, 5), "TexteDlgBox_retrieve(2, ..., 5" + two);
  EXPECT_TOLD(TexteDlgBox_retrieve_liste(2, text_), "TexteDlgBox_retrieve_liste(2, ..." + two);
  EXPECT_TOLD(TexteDlgBox_mandatory(2, 0), "TexteDlgBox_mandatory(2, 0" + two);
  EXPECT_TOLD(TexteDlgBox_password(2, 1), "TexteDlgBox_password(2, 1" + two);
  EXPECT_TOLD(TexteDlgBox_set_tabstops(2, &value_), "TexteDlgBox_set_tabstops(2, ..." + two);
  EXPECT_FAILS(TexteDlgBox_get_valid(2), 0, "TexteDlgBox_get_valid(2" + two);
  EXPECT_TOLD(TexteDlgBox_global(2), "TexteDlgBox_global(2" + two);
  EXPECT_TOLD(TexteDlgBox_global_ex(2, callbackOfNothing), "TexteDlgBox_global_ex(2, ..." + two);
  EXPECT_FAILS(TexteDlgBox_get_valid(-1), 0,
               "TexteDlgBox_get_valid(-1): there is no text field -1: 2 are in use, from 0 to 1");
}

TEST_F(DialogsMisuse, AnyOtherFieldThatThereIsNot) {
  BoolDlgBox_param(1, 200);
  IntDlgBox_param(1, 300);
  NumDlgBox_param(1, 400);
  DateDlgBox_param(1, 500);
  PushDlgBox_param(1, 600);
  StaticDlgBox_param(1);
  const auto no = [](const char *name) {
    return std::string("): there is no ") + name + " 1: 1 are in use, from 0 to 0";
  };
  EXPECT_TOLD(BoolDlgBox_set_geo(1, "l", 0, 0, 0, 0, 0),
              "BoolDlgBox_set_geo(1, \"l\", 0, 0, 0, 0, 0" + no("check box"));
  EXPECT_TOLD(BoolDlgBox_retrieve(1, &value_), "BoolDlgBox_retrieve(1, ..." + no("check box"));
  EXPECT_TOLD(BoolDlgBox_global(1), "BoolDlgBox_global(1" + no("check box"));
  EXPECT_TOLD(IntDlgBox_set_geo(1, 0, 0, 0, 0, 0),
              "IntDlgBox_set_geo(1, 0, 0, 0, 0, 0" + no("integer field"));
  EXPECT_TOLD(IntDlgBox_set_fvalid(1, intcod_i),
              "IntDlgBox_set_fvalid(1, ..." + no("integer field"));
  EXPECT_TOLD(IntDlgBox_retrieve(1, &value_), "IntDlgBox_retrieve(1, ..." + no("integer field"));
  EXPECT_TOLD(IntDlgBox_mandatory(1, 0), "IntDlgBox_mandatory(1, 0" + no("integer field"));
  EXPECT_TOLD(IntDlgBox_password(1, 0), "IntDlgBox_password(1, 0" + no("integer field"));
  EXPECT_FAILS(IntDlgBox_get_valid(1), 0, "IntDlgBox_get_valid(1" + no("integer field"));
  EXPECT_TOLD(IntDlgBox_global(1), "IntDlgBox_global(1" + no("integer field"));
  EXPECT_TOLD(NumDlgBox_set_nchiff(1, 2), "NumDlgBox_set_nchiff(1, 2" + no("number field"));
  EXPECT_TOLD(NumDlgBox_set_geo(1, 0, 0, 0, 0, 0),
              "NumDlgBox_set_geo(1, 0, 0, 0, 0, 0" + no("number field"));
  EXPECT_TOLD(NumDlgBox_set_fvalid(1, realcod_d),
              "NumDlgBox_set_fvalid(1, ..." + no("number field"));
  EXPECT_TOLD(NumDlgBox_retrieve(1, &number_), "NumDlgBox_retrieve(1, ..." + no("number field"));
  EXPECT_TOLD(NumDlgBox_mandatory(1, 0), "NumDlgBox_mandatory(1, 0" + no("number field"));
  EXPECT_FAILS(NumDlgBox_get_valid(1), 0, "NumDlgBox_get_valid(1" + no("number field"));
  EXPECT_TOLD(NumDlgBox_global(1), "NumDlgBox_global(1" + no("number field"));
  EXPECT_TOLD(DateDlgBox_set_geo(1, 0, 0, 0, 0, 0),
              "DateDlgBox_set_geo(1, 0, 0, 0, 0, 0" + no("date field"));
  EXPECT_TOLD(DateDlgBox_set_fvalid(1, intcod_l),
              "DateDlgBox_set_fvalid(1, ..." + no("date field"));
  EXPECT_TOLD(DateDlgBox_retrieve(1, &value_), "DateDlgBox_retrieve(1, ..." + no("date field"));
  EXPECT_TOLD(DateDlgBox_mandatory(1, 0), "DateDlgBox_mandatory(1, 0" + no("date field"));
  EXPECT_FAILS(DateDlgBox_get_valid(1), 0, "DateDlgBox_get_valid(1" + no("date field"));
  EXPECT_TOLD(DateDlgBox_global(1), "DateDlgBox_global(1" + no("date field"));
  EXPECT_TOLD(PushDlgBox_set_geo(1, "l", 0, 0, 0, 0, 0),
              "PushDlgBox_set_geo(1, \"l\", 0, 0, 0, 0, 0" + no("push button"));
  EXPECT_TOLD(StaticDlgBox_set_geo(1, 0, 0, 0, 0),
              "StaticDlgBox_set_geo(1, 0, 0, 0, 0" + no("static text"));
  EXPECT_TOLD(StaticDlgBox_set_type(1, 0), "StaticDlgBox_set_type(1, 0" + no("static text"));
}

TEST_F(DialogsMisuse, ATextThatIsCut) {
  TexteDlgBox_param(20, 100);
  const std::string text(409, 'a');
  const std::string end = "\"" + text.substr(0, 60) + "\"..., ";
  EXPECT_NE(told([&] {
              TexteDlgBox_set(0, text.c_str());
            }).find("the text has 409 characters and is cut to 408"),
            std::string::npos);
  EXPECT_TOLD(TexteDlgBox_set(0, text.c_str() + 1), "");
  EXPECT_TOLD(TexteDlgBox_set_liste(0, text.c_str()), "");
  BoolDlgBox_param(1, 200);
  EXPECT_NE(told([&] {
              BoolDlgBox_set_geo(0, text.c_str() + 361, 1, 1, 1, 1, 0);
            }).find("the text has 48 characters and is cut to 47"),
            std::string::npos);
  EXPECT_TOLD(BoolDlgBox_set_geo(0, nullptr, 1, 1, 1, 1, 0), "");
  PushDlgBox_param(1, 600);
  EXPECT_TOLD(PushDlgBox_set_geo(0, "Un libelle long.", 1, 1, 1, 1, 0),
              "PushDlgBox_set_geo(0, \"Un libelle long.\", 1, 1, 1, 1, 0): the text has 16 "
              "characters and is cut to 15");
  StaticDlgBox_param(1);
  EXPECT_TOLD(StaticDlgBox_set(0, "\xC3\x89t\xC3\xA9"),
              "StaticDlgBox_set(0, \"Ã‰tÃ©\"): the text looks like UTF-8: texts are CP1252");
  EXPECT_TOLD(BOKDlgBox_textes("Un libelle long.", nullptr),
              "BOKDlgBox_textes(\"Un libelle long.\", null): the text has 16 characters and is cut "
              "to 15");
  EXPECT_NE(told([&] {
              TitreDlgBox_set(text.c_str() + 281);
            }).find("the text has 128 characters and is cut to 127"),
            std::string::npos);
  EXPECT_NE(told([&] {
              DlgBoxFinal_Erreur_set(text.c_str() + 153);
            }).find("the text has 256 characters and is cut to 255"),
            std::string::npos);
}

TEST_F(DialogsMisuse, NoText) {
  TexteDlgBox_param(1, 100);
  EXPECT_TOLD(TexteDlgBox_set(0, nullptr), "TexteDlgBox_set(0, null): argument 2 is null");
  EXPECT_TOLD(TitreDlgBox_set(nullptr), "TitreDlgBox_set(null): argument 1 is null");
  EXPECT_TOLD(DlgBoxFinal_Erreur_set(nullptr), "");
  EXPECT_TOLD(DlgBoxFinal_Erreur_set("\xC3\xA9"),
              "DlgBoxFinal_Erreur_set(\"Ã©\"): the text looks like UTF-8: texts are CP1252");
  EXPECT_FAILS(intcod_l_date(nullptr, &value_), 1, "intcod_l_date(null, ...): argument 1 is null");
  EXPECT_FAILS(KorvelItemName(100, nullptr), 0, "KorvelItemName(100, null): argument 2 is null");
  IntDlgBox_param(1, 300);
  EXPECT_TOLD(IntDlgBox_set_fvalid(0, nullptr),
              "IntDlgBox_set_fvalid(0, null): argument 2 is null");
}

TEST_F(DialogsMisuse, ABufferThatIsTooSmall) {
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set(0, "abc");
  EXPECT_TOLD(TexteDlgBox_retrieve(0, text_, 3),
              "TexteDlgBox_retrieve(0, ..., 3): nothing is copied into 3 bytes: the text needs 4");
  EXPECT_TOLD(TexteDlgBox_retrieve(0, text_, 4), "");
  TitreDlgBox_set("abc");
  EXPECT_TOLD(TitreDlgBox_retrieve(text_, 3),
              "TitreDlgBox_retrieve(..., 3): nothing is copied into 3 bytes: the text needs 4");
  EXPECT_TOLD(TitreDlgBox_retrieve(text_, 4), "");
  EXPECT_TOLD(TitreDlgBox_retrieve(nullptr, 200),
              "TitreDlgBox_retrieve(null, 200): argument 1 is null");
}

TEST_F(DialogsMisuse, APlaceModeOrLimitThatIsNone) {
  TexteDlgBox_param(6, 100);
  IntDlgBox_param(1, 300);
  NumDlgBox_param(1, 400);
  EXPECT_TOLD(
      TexteDlgBox_set_geo(0, 40000, 0, 0, 0, 0),
      "TexteDlgBox_set_geo(0, 40000, 0, 0, 0, 0): 40000 is not from -32768 to 32767, and is "
      "kept as -25536");
  EXPECT_TOLD(TexteDlgBox_set_geo(0, 0, 0, 0, 0, 128),
              "TexteDlgBox_set_geo(0, 0, 0, 0, 0, 128): there is no rank 128: ranks are from 0 to "
              "127");
  EXPECT_TOLD(IntDlgBox_set(0, 1, 3),
              "IntDlgBox_set(0, 1, 3): there is no mode 3: 0 to 2, or -1 to keep the validation "
              "function");
  EXPECT_TOLD(IntDlgBox_set(0, 1, -1), "");
  EXPECT_TOLD(NumDlgBox_set_nchiff(0, -1), "NumDlgBox_set_nchiff(0, -1): -1 decimals count as 0");
  EXPECT_TOLD(TexteDlgBox_set_ncarac(0, -1),
              "TexteDlgBox_set_ncarac(0, -1): a limit of -1 characters counts as 0");
  EXPECT_TOLD(TexteDlgBox_set_ncarac(1, 5000),
              "TexteDlgBox_set_ncarac(1, 5000): the limit is never raised: it stays at 1364 "
              "characters");
  EXPECT_TOLD(TexteDlgBox_set_ncarac(1, 5), "");
  EXPECT_TOLD(TexteDlgBox_change_liste(0),
              "TexteDlgBox_change_liste(0): text field 0 is neither a pop-up nor a list: "
              "TexteDlgBox_set_liste comes first");
  // As many as are read.
  PageEnd stops(std::string(127 * sizeof(int), '\1'));
  const auto *row = reinterpret_cast<const int *>(stops.data());
  EXPECT_TOLD(
      TexteDlgBox_set_tabstops(5, row),
      "TexteDlgBox_set_tabstops(5, ...): text field 5 has no tab stops: fields 0 to 4 have");
  EXPECT_TOLD(TexteDlgBox_set_tabstops(0, row), "");
  EXPECT_TOLD(TailleDlgBox_set(-1, 5),
              "TailleDlgBox_set(-1, 5): a size below 0 shows room for the button pair");
  EXPECT_TOLD(TailleDlgBox_set(8192, 5),
              "TailleDlgBox_set(8192, 5): no side is shown longer than 16384 pixels");
  EXPECT_TOLD(TailleDlgBox_set(0, 0), "");
  EXPECT_TOLD(BOKDlgBox_def(3), "BOKDlgBox_def(3): there is no button 3: 1 accepts and 2 cancels");
  EXPECT_FAILS(KorvelItemName(99, "x"), 0,
               "KorvelItemName(99, \"x\"): no field in use has the identifier 99");
  EXPECT_TOLD(KorvelItemName(105, "\xC3\xA9"),
              "KorvelItemName(105, \"Ã©\"): the text looks like UTF-8: texts are CP1252");
  EXPECT_FAILS(DlgBoxFinal_MessageBox(nullptr, "x", "y", 0), 0,
               "DlgBoxFinal_MessageBox(null, \"x\", \"y\", 0): argument 1 is null");
}

TEST_F(DialogsMisuse, NoDialogRuns) {
  TexteDlgBox_param(1, 100);
  EXPECT_TOLD(ZRVDlgBox_texte_set(0, "x"),
              "ZRVDlgBox_texte_set(0, \"x\"): no dialog runs: this is for its callbacks and "
              "actions");
  EXPECT_TOLD(
      ZRVDlgBox_texte_set_liste(0),
      "ZRVDlgBox_texte_set_liste(0): no dialog runs: this is for its callbacks and actions");
  EXPECT_TOLD(ZRVDlgBox_num_set(0, "1"),
              "ZRVDlgBox_num_set(0, \"1\"): no dialog runs: this is for its callbacks and actions");
  EXPECT_TOLD(DlgBoxFunc(nullptr),
              "DlgBoxFunc(null): this is for the library: ZRVDlgBoxEx and ZRVDlgBox run dialogs");
  EXPECT_TOLD(listeNoms(text_), "listeNoms(\"\"): no call of SelectMT reads its table");
  const std::string way =
      "): this changes nothing: write the value into its table and name the field in redisplay, in "
      "the global callback";
  EXPECT_TOLD(ZRVDlgBox_bool_set(0, 1), "ZRVDlgBox_bool_set(0, 1" + way);
  EXPECT_TOLD(ZRVDlgBox_int_set(0, 1), "ZRVDlgBox_int_set(0, 1" + way);
}

TEST_F(DialogsMisuse, WhileADialogRuns) {
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set_geo(0, 1, 1, 1, 1, 6);
  NumDlgBox_param(1, 400);
  NumDlgBox_set_geo(0, 1, 1, 1, 1, 7);
  during([&] {
    EXPECT_FAILS(ZRVDlgBoxEx("U", nullptr), 0,
                 "ZRVDlgBoxEx(\"U\", null): a dialog is up already, and one runs at a time");
    EXPECT_FAILS(ZRVDlgBox("u"), 0,
                 "ZRVDlgBox(\"u\"): a dialog is up already, and one runs at a time");
    EXPECT_TOLD(SelectMT(nullptr, nullptr, ""),
                "SelectMT(null, null, \"\"): a dialog is up already, and one runs at a time");
    EXPECT_FAILS(KorvelItemName(100, "x"), 0,
                 "KorvelItemName(100, \"x\"): a dialog runs: fields are named before");
    EXPECT_TOLD(ZRVDlgBox_texte_set(1, "x"),
                "ZRVDlgBox_texte_set(1, \"x\"): there is no text field 1: 1 are in use, from 0 to "
                "0");
    EXPECT_TOLD(ZRVDlgBox_texte_set_liste(0),
                "ZRVDlgBox_texte_set_liste(0): text field 0 is neither a pop-up nor a list: "
                "TexteDlgBox_set_liste comes first");
    EXPECT_TOLD(ZRVDlgBox_num_set(0, nullptr), "ZRVDlgBox_num_set(0, null): argument 2 is null");
    EXPECT_TOLD(ZRVDlgBox_texte_set(0, "x"), "");
    EXPECT_TOLD(ZRVDlgBox_num_set(0, "1"), "");
  });
}

TEST_F(DialogsMisuse, ADescription) {
  TexteDlgBox_param(2, 100);
  TexteDlgBox_set_geo(0, 1, 1, 1, 1, 0);
  TexteDlgBox_set_geo(1, 1, 1, 1, 1, KorvelNoRank);
  BoolDlgBox_param(1, 101);
  BoolDlgBox_set_geo(0, "b", 0, 0, 0, 0, 0);
  DateDlgBox_param(1, 300);
  DateDlgBox_set_geo(0, 1, 1, 1, 1, 2);
  PushDlgBox_param(1, 298);
  PushDlgBox_set_geo(0, "p", 1, 1, 1, 1, 3);
  desk.expectDialog("T").press(kCancel);
  EXPECT_EQ(
      told([] { ZRVDlgBoxEx("T", nullptr); }),
      "korvel: ZRVDlgBoxEx(\"T\", null): text field 1 and check box 0 both have the "
      "identifier 101: TexteDlgBox_param and BoolDlgBox_param need identifiers that do not "
      "overlap\n"
      "korvel: ZRVDlgBoxEx(\"T\", null): push button 0 has the identifier 298, which counts as "
      "date field 0: its first identifier is 300\n"
      "korvel: ZRVDlgBoxEx(\"T\", null): text field 0 and check box 0 both have the rank 0: "
      "each field needs one of its own\n"
      "korvel: ZRVDlgBoxEx(\"T\", null): text field 1 has no rank, and so is not shown: give "
      "it one from 0 on\n"
      "korvel: ZRVDlgBoxEx(\"T\", null): check box 0 has no place and no size\n");
}

TEST_F(DialogsMisuse, ADescriptionAsItShouldBe) {
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set_geo(0, 1, 1, 1, 1, 0);
  DateDlgBox_param(2, 101);
  DateDlgBox_set_geo(0, 1, 1, 1, 1, 1);
  DateDlgBox_set_geo(1, 1, 1, 1, 1, 2);
  PushDlgBox_param(1, 107);
  PushDlgBox_set_geo(0, "p", 1, 1, 1, 1, 3);
  desk.expectDialog("T").press(kCancel);
  EXPECT_TOLD(ZRVDlgBoxEx("T", nullptr), "");
  const std::string title(256, 'a');
  desk.expectDialog(title.substr(1)).press(kCancel);
  EXPECT_NE(told([&] {
              ZRVDlgBoxEx(title.c_str(), nullptr);
            }).find("the text has 256 characters and is cut to 255"),
            std::string::npos);
}

TEST_F(DialogsMisuse, ChoicesThatAreCut) {
  std::string choices(409, 'a');
  const auto describe = [&](std::size_t size) {
    TexteDlgBox_param(20, 100);
    for (int i = 0; i < 20; ++i) TexteDlgBox_set_geo(i, 1, 1, 1, 1, i);
    TexteDlgBox_set_liste(0, choices.substr(0, size).c_str());
    desk.expectDialog("T").press(kCancel);
  };
  for (const std::size_t fitting : {407U, 408U}) {
    describe(fitting);
    EXPECT_TOLD(ZRVDlgBoxEx("T", nullptr), "");
  }
  describe(409);
  EXPECT_FAILS(ZRVDlgBoxEx("T", nullptr), 0,
               "ZRVDlgBoxEx(\"T\", null): the choices of text field 0 are cut to 408 characters: "
               "TexteDlgBox_set_liste_buffer takes more");
  describe(409);
  TexteDlgBox_set_liste_buffer(0, choices.data());
  EXPECT_TOLD(ZRVDlgBoxEx("T", nullptr), "");
}

// An application fills its own buffer when it likes.
TEST_F(DialogsMisuse, ChoicesInABufferOfTheApplication) {
  char choices[64] = "";
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set_geo(0, 1, 1, 1, 1, 0);
  TexteDlgBox_set_liste(0, "a");
  EXPECT_TOLD(TexteDlgBox_set_liste_buffer(0, choices), "");
  std::strcpy(choices, "\xC3\xA9+\xC3\xA8");
  desk.expectDialog("T").press(kCancel);
  EXPECT_TOLD(ZRVDlgBoxEx("T", nullptr),
              "ZRVDlgBoxEx(\"T\", null): a choice looks like UTF-8: texts are CP1252");
}

TEST_F(DialogsMisuse, ThreeKindsWithOneIdentifier) {
  TexteDlgBox_param(3, 100);
  IntDlgBox_param(3, 100);
  NumDlgBox_param(3, 100);
  for (int i = 0; i < 3; ++i) {
    TexteDlgBox_set_geo(i, 1, 1, 1, 1, i);
    IntDlgBox_set_geo(i, 1, 1, 1, 1, i + 3);
    NumDlgBox_set_geo(i, 1, 1, 1, 1, i + 6);
  }
  desk.expectDialog("T").press(kCancel);
  const std::string lines = told([] { ZRVDlgBoxEx("T", nullptr); });
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 3) << lines;
}

TEST_F(DialogsMisuse, FieldsWithoutASize) {
  IntDlgBox_param(1, 100);
  IntDlgBox_set_geo(0, 10, 10, 0, 0, 0);
  StaticDlgBox_param(1);
  StaticDlgBox_set(0, "a");
  desk.expectDialog("T").press(kCancel);
  EXPECT_EQ(told([] { ZRVDlgBoxEx("T", nullptr); }),
            "korvel: ZRVDlgBoxEx(\"T\", null): integer field 0 has no size\n"
            "korvel: ZRVDlgBoxEx(\"T\", null): static text 0 has no place and no size\n");
}

TEST_F(DialogsMisuse, AFormAndWhatItLacks) {
  TemplateFolder templates;
  templates.add(desk, "f",
                {"F",
                 {{1, ItemKind::PushButton, "OK"},
                  {2, ItemKind::PushButton, "Non"},
                  {3, ItemKind::EditText, ""},
                  {7, ItemKind::EditText, ""}}});
  TexteDlgBox_param(1, 3);
  IntDlgBox_param(1, 50);
  IntDlgBox_set_geo(0, 0, 0, 0, 0, 3);
  BoolDlgBox_param(1, 20);
  DateDlgBox_param(1, 7);
  DateDlgBox_mandatory(0, 0);
  PushDlgBox_param(1, 6);
  desk.expectDialog("F").press(kCancel);
  EXPECT_EQ(told([] { ZRVDlgBox("f"); }),
            "korvel: ZRVDlgBox(\"f\"): push button 0 has the identifier 6, which counts as date "
            "field 0: its first identifier is 7\n"
            "korvel: ZRVDlgBox(\"f\"): text field 0 and integer field 0 both lead to item 3 of the "
            "form: a rank is the number of an item there\n"
            "korvel: ZRVDlgBox(\"f\"): check box 0 is not in the form: there is no item 20\n"
            "korvel: ZRVDlgBox(\"f\"): date field 0 is not in the form: there is no item 8\n"
            "korvel: ZRVDlgBox(\"f\"): push button 0 is not in the form: there is no item 6\n");
}

TEST_F(DialogsMisuse, AForm) {
  TemplateFolder templates;
  templates.add(desk, "f",
                {"F",
                 {{1, ItemKind::PushButton, "OK"},
                  {2, ItemKind::PushButton, "Non"},
                  {3, ItemKind::EditText, ""},
                  {9, ItemKind::EditText, ""}}});
  EXPECT_FAILS(ZRVDlgBox(nullptr), 0, "ZRVDlgBox(null): argument 1 is null");
  TexteDlgBox_param(2, 3);
  TexteDlgBox_mandatory(1, 0);
  IntDlgBox_param(1, 4);
  desk.expectDialog("F").press(kCancel);
  EXPECT_NE(told([] { ZRVDlgBox("f"); })
                .find("korvel: ZRVDlgBox(\"f\"): text field 1 and integer field 0 both have the "
                      "identifier 4: TexteDlgBox_param and IntDlgBox_param need identifiers that "
                      "do not overlap\n"
                      "korvel: ZRVDlgBox(\"f\"): item 9 of the form belongs to no field: no _param "
                      "covers it\n"
                      "korvel: ZRVDlgBox(\"f\"): text field 1 is not in the form: there is no item "
                      "4\n"),
            std::string::npos);
  TexteDlgBox_param(1, 3);
  IntDlgBox_param(1, 9);
  desk.expectDialog("F").press(kCancel);
  EXPECT_TOLD(ZRVDlgBox("f"), "");
}

TEST_F(DialogsMisuse, PractitionersThatAreNotThere) {
  Volumes volumes;
  EXPECT_TOLD(SelectMT(nullptr, nullptr, "Data:none"),
              "SelectMT(null, null, \"Data:none\"): there is no folder \"Data:none\"");
  EXPECT_TOLD(SelectMT(nullptr, nullptr, "Data"),
              "SelectMT(null, null, \"Data\"): there is no table \"Data:MT.par\"");
}

}  // namespace
}  // namespace korvel::test
