// SPDX-License-Identifier: MIT
// Tests of the searches by label and by criteria, one case a line.
#include <korvel/tables.h>

#include "tests/tables/tables.h"

namespace korvel {
namespace {

using namespace std::string_view_literals;

using test::Answer;
using test::Criterion;
using test::idem;
using test::kUntouched;
using test::lines;
using test::search;
using test::state;
using test::State;

class Search : public test::Tables {
 protected:
  Search() {
    table("actes", lines({"Actes", "Version: 2", "#DEBUT", "01,Consultation,A,X", "02,Visite,B,Y",
                          "03,Consultation,B,X", "04,Consult\xE9,A", "#FIN"}));
  }
};

TEST_F(Search, GivesTheCodeOfTheLineWithTheLabel) {
  EXPECT_EQ(search(ZRV_Code_NC, "Consultation", 1, "actes"), (Answer{1, "01"}));
  EXPECT_EQ(state(), (State{4, 1, "01|Consultation|A|X"}));
  EXPECT_EQ(search(ZRV_Code_NC, "B", 2, "actes"), (Answer{1, "02"}));
  EXPECT_EQ(search(ZRV_Code_NC, "Y", 3, "actes"), (Answer{1, "02"}));
  EXPECT_EQ(idem(2, 1, "actes"), (Answer{1, "Visite"}));
}

TEST_F(Search, IsCaseSensitiveUnlessAsked) {
  // Without a match out holds the code of the last line.
  EXPECT_EQ(search(ZRV_Code_NC, "consultation", 1, "actes"), (Answer{0, "#FIN"}));
  EXPECT_EQ(state(), (State{8, 1, "#FIN"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "consultation", 1, "actes"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "CONSULTATION", 1, "actes"), (Answer{1, "01"}));
}

TEST_F(Search, InAnyCaseLeavesTheColumnInCapitals) {
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "vISITE", 1, "actes"), (Answer{1, "02"}));
  EXPECT_EQ(state(), (State{5, 1, "02|VISITE|B|Y"}));
  // Kept: the examined column of the last line is written in capitals even without a match.
  table("t", lines({"T", "01,first", "02,last"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "nothing", 1, "t"), (Answer{0, "02"}));
  EXPECT_EQ(state(), (State{3, 1, "02|LAST"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "", 1, "t"), (Answer{0, "02"}));
  EXPECT_EQ(state(), (State{3, 1, "02|LAST"}));
}

TEST_F(Search, InAnyCaseDropsAccentsAsCapitalsDo) {
  // Mac bytes: 8E is e acute, 83 E acute.
  table("t", lines({"01,caf\x8E", "02,TH\x83"}));
  for (const char *label : {"CAFE", "cafe", "Caf\x8E", "caf\x83"}) {
    EXPECT_EQ(search(ZRV_CodeNCS_NC, label, 1, "t"), (Answer{1, "01"})) << label;
  }
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "the", 1, "t"), (Answer{1, "02"}));
  EXPECT_EQ(state(), (State{2, 1, "02|THE"}));
}

TEST_F(Search, InAnyCaseTakesLabelsOfUpTo255Characters) {
  const std::string label(255, 'l');
  table("t", lines({"01," + label, "02," + label + "l"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, label, 1, "t"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, label + "l", 1, "t"), (Answer{0, "02"}));
  EXPECT_EQ(search(ZRV_Code_NC, label + "l", 1, "t"), (Answer{1, "02"}));
}

TEST_F(Search, QuestionMarkMatchesAnyCharacterOnBothSides) {
  table("t", lines({"T", "01,Vis?te", "02,Consult??", "03,?"}));
  EXPECT_EQ(search(ZRV_Code_NC, "Visite", 1, "t"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC, "?is?te", 1, "t"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC, "Consulter", 1, "t"), (Answer{1, "02"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "VISITE", 1, "t"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "consultEZ", 1, "t"), (Answer{1, "02"}));
  EXPECT_EQ(search(ZRV_Code_NC, "x", 1, "t"), (Answer{1, "03"}));
  // A line of one field is compared by it, whatever the column.
  EXPECT_EQ(search(ZRV_Code_NC, "?", 1, "t"), (Answer{1, "T"}));
}

TEST_F(Search, StarIsNoWildcardForOneLabel) {
  EXPECT_EQ(search(ZRV_Code_NC, "Consult*", 1, "actes").result, 0);
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "Consult*", 1, "actes").result, 0);
  table("t", lines({"01,Consult*"}));
  EXPECT_EQ(search(ZRV_Code_NC, "Consult*", 1, "t"), (Answer{1, "01"}));
}

TEST_F(Search, HeadingTakesPart) {
  EXPECT_EQ(search(ZRV_Code_NC, "Version: 2", 1, "actes"), (Answer{1, "Version: 2"}));
  EXPECT_EQ(ZRV_Libelle_NC_il, 2);
  EXPECT_EQ(search(ZRV_Code_NC, "#FIN", 7, "actes"), (Answer{1, "#FIN"}));
}

TEST_F(Search, LineWithoutTheColumnIsComparedByItsLastField) {
  EXPECT_EQ(search(ZRV_Code_NC, "A", 9, "actes"), (Answer{1, "04"}));
  EXPECT_EQ(search(ZRV_Code_NC, "X", 3, "actes"), (Answer{1, "01"}));
  table("t", lines({"01,a,,b", "02,b"}));
  EXPECT_EQ(search(ZRV_Code_NC, "b", 3, "t"), (Answer{1, "02"}));
  // Kept: column 0 walks to the last field.
  EXPECT_EQ(search(ZRV_Code_NC, "A", 0, "actes"), (Answer{1, "04"}));
  EXPECT_EQ(search(ZRV_Code_NC, "A", -3, "actes"), (Answer{1, "04"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "a", 0, "actes"), (Answer{1, "04"}));
}

TEST_F(Search, EmptyLabelMatchesNothing) {
  table("t", lines({",", "", "01,,x"}));
  EXPECT_EQ(search(ZRV_Code_NC, "", 1, "t"), (Answer{0, "01"}));
  EXPECT_EQ(state(), (State{3, 1, "01"}));
  EXPECT_EQ(
      test::answerOf([](char *out, int size) { return ZRV_Code_NC(nullptr, 1, "t", out, size); }),
      (Answer{0, "01"}));
}

TEST_F(Search, LabelWithASeparatorMatchesNoField) {
  EXPECT_EQ(search(ZRV_Code_NC, "Visite,B", 1, "actes").result, 0);
  table("t", lines({"01,A?B,C"}));
  EXPECT_EQ(search(ZRV_Code_NC, "A,B", 1, "t"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC, "A\nB", 1, "t"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC, "A\rB", 1, "t"), (Answer{1, "01"}));
}

TEST_F(Search, LongLabelsMatchUpToTheLimit) {
  const std::string label(1019, 'l');
  table("t", lines({"01," + label + "tail", "02,x"}));
  EXPECT_EQ(search(ZRV_Code_NC, label, 1, "t"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC, label + "t", 1, "t").result, 0);
  EXPECT_EQ(search(ZRV_Code_NC, std::string(5000, 'l'), 1, "t").result, 0);
}

TEST_F(Search, CodeIsCutToTheBuffer) {
  char out[3] = "zz";
  EXPECT_EQ(ZRV_Code_NC("Version: 2", 1, "actes", out, sizeof out), 1);
  EXPECT_STREQ(out, "Ve");
  EXPECT_EQ(ZRV_Code_NC("Visite", 1, "actes", out, 1), 1);
  EXPECT_STREQ(out, "");
  out[0] = 'z';
  EXPECT_EQ(ZRV_Code_NC("Visite", 1, "actes", out, 0), 1);
  EXPECT_EQ(ZRV_Code_NC("Visite", 1, "actes", out, -1), 1);
  EXPECT_EQ(out[0], 'z');
  EXPECT_EQ(ZRV_Code_NC("Visite", 1, "actes", nullptr, 5), 1);
}

TEST_F(Search, MissingTableLeavesNoCurrentLine) {
  search(ZRV_Code_NC, "Visite", 1, "actes");
  EXPECT_EQ(search(ZRV_Code_NC, "Visite", 1, "nowhere"), (Answer{0, kUntouched}));
  EXPECT_EQ(state(), (State{0, 0, "02|Visite|B|Y"}));
  search(ZRV_Code_NC, "Visite", 1, "actes");
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "Visite", 1, nullptr), (Answer{0, kUntouched}));
  EXPECT_EQ(state(), (State{0, 0, "02|Visite|B|Y"}));
}

TEST_F(Search, EmptyTableLeavesOutAndBufferAlone) {
  search(ZRV_Code_NC, "Visite", 1, "actes");
  table("none", "");
  EXPECT_EQ(search(ZRV_Code_NC, "Visite", 1, "none"), (Answer{0, kUntouched}));
  EXPECT_EQ(state(), (State{0, 1, "02|Visite|B|Y"}));
  EXPECT_EQ(search(ZRV_CodeNCS_NC, "Visite", 1, "none"), (Answer{0, kUntouched}));
  EXPECT_EQ(state(), (State{0, 1, "02|Visite|B|Y"}));
}

TEST_F(Search, NextGoesOnBehindTheCurrentLine) {
  EXPECT_EQ(search(ZRV_Code_NC, "Consultation", 1, "actes"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC_next, "Consultation", 1, "actes"), (Answer{1, "03"}));
  EXPECT_EQ(state(), (State{6, 1, "03|Consultation|B|X"}));
  // Kept: number and flag stay, buffer and out are the last line's.
  EXPECT_EQ(search(ZRV_Code_NC_next, "Consultation", 1, "actes"), (Answer{0, "#FIN"}));
  EXPECT_EQ(state(), (State{6, 1, "#FIN"}));
  ZRV_Libelle_NC_set_ligne(100);
  EXPECT_EQ(search(ZRV_Code_NC_next, "Consultation", 1, "actes"), (Answer{0, "#FIN"}));
  EXPECT_EQ(state(), (State{100, 0, "#FIN"}));
  EXPECT_EQ(search(ZRV_Code_NC_next, "Consultation", 1, "nowhere"), (Answer{0, kUntouched}));
  EXPECT_EQ(state(), (State{100, 0, "#FIN"}));
}

TEST_F(Search, WithoutAFreeSlotFails) {
  for (int i = 0; i < 5; ++i) ASSERT_EQ(MFil_Open("", 0, 0), i);
  EXPECT_EQ(search(ZRV_Code_NC, "Visite", 1, "actes"), (Answer{0, kUntouched}));
  MFil_Close(0);
  EXPECT_EQ(search(ZRV_Code_NC, "Visite", 1, "actes"), (Answer{1, "02"}));
}

// --- Criteria ------------------------------------------------------------------------------------

TEST_F(Search, CriteriaOfOneColumnAreAlternativesAndColumnsMustAllBeMet) {
  const struct {
    std::vector<Criterion> criteria;
    Answer answer;
  } kCases[] = {
      {{{"Visite", 1}, {"Consultation", 1}, {"X", 3}}, {1, "01"}},
      {{{"Visite", 1}, {"Consultation", 1}, {"Y", 3}}, {1, "02"}},
      {{{"Consultation", 1}, {"B", 2}}, {1, "03"}},
      {{{"Consultation", 1}, {"Z", 2}}, {0, "#FIN"}},
      {{{"Visite", 1}, {"A", 2}}, {0, "#FIN"}},
      // Not neighbours: the same column in two groups, both of which must be met.
      {{{"Consultation", 1}, {"B", 2}, {"Visite", 1}}, {0, "#FIN"}},
      {{{"Consultation", 1}, {"B", 2}, {"Cons*", 1}}, {1, "03"}},
      // Column 0 is the code.
      {{{"03", 0}}, {1, "03"}},
      {{{"02", 0}, {"03", 0}, {"Consultation", 1}}, {1, "03"}},
      {{{"0*", 0}, {"B", 2}}, {1, "02"}},
      // More labels than are searched for at once.
      {{{"a", 1}, {"b", 1}, {"c", 1}, {"d", 1}, {"e", 1}, {"Visite", 1}}, {1, "02"}},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(search(ZRV_Code_NC_ex, row.criteria, "actes"), row.answer)
        << row.criteria.front().label << " and " << row.criteria.size() - 1 << " more";
  }
}

TEST_F(Search, StarInCriteriaStandsForWhateverFollows) {
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"Consult*", 1}}, "actes"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"V*", 1}}, "actes"), (Answer{1, "Version: 2"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"*", 1}}, "actes"), (Answer{1, "Actes"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"Cons?ltation", 1}}, "actes"), (Answer{1, "01"}));
  // In the file too.
  table("t", lines({"T", "01,Cons*", "02,*"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"Consultation", 1}}, "t"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"Visite", 1}}, "t"), (Answer{1, "02"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"C", 1}}, "t"), (Answer{1, "02"}));
}

TEST_F(Search, EmptyCriteriaAcceptTheFirstLine) {
  EXPECT_EQ(search(ZRV_Code_NC_ex, {}, "actes"), (Answer{1, "Actes"}));
  EXPECT_EQ(state(), (State{1, 1, "Actes"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex_next, {}, "actes"), (Answer{1, "Version: 2"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex_next, {}, "actes"), (Answer{1, "#DEBUT"}));
}

TEST_F(Search, EitherEndMarkEndsTheCriteria) {
  const char *labels[] = {"Visite", "nothing", nullptr};
  const int columns[] = {1, -1};
  const auto byColumns = [&](char *out, int size) {
    return ZRV_Code_NC_ex(labels, columns, "actes", out, size);
  };
  EXPECT_EQ(test::answerOf(byColumns), (Answer{1, "02"}));
  const char *one[] = {"Visite", nullptr};
  const int more[] = {1, 1, 1};
  const auto byLabels = [&](char *out, int size) {
    return ZRV_Code_NC_ex(one, more, "actes", out, size);
  };
  EXPECT_EQ(test::answerOf(byLabels), (Answer{1, "02"}));
}

TEST_F(Search, EmptyLabelIsNotMet) {
  table("t", lines({",x", "", "01,,x"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"", 0}}, "t"), (Answer{0, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"", 1}, {"*", 1}}, "t"), (Answer{1, "01"}));
}

// Kept: the code is given before its line is compared.
TEST_F(Search, CriteriaWithoutMatchLeaveTheLastLine) {
  EXPECT_EQ(search(ZRV_Code_NC_ex, {{"nothing", 1}}, "actes"), (Answer{0, "#FIN"}));
  EXPECT_EQ(state(), (State{8, 1, "#FIN"}));
}

TEST_F(Search, CriteriaGoOnBehindTheCurrentLine) {
  const std::vector<Criterion> criteria = {{"Consult*", 1}, {"Consult\xE9", 1}};
  EXPECT_EQ(search(ZRV_Code_NC_ex, criteria, "actes"), (Answer{1, "01"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex_next, criteria, "actes"), (Answer{1, "03"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex_next, criteria, "actes"), (Answer{1, "04"}));
  EXPECT_EQ(search(ZRV_Code_NC_ex_next, criteria, "actes"), (Answer{0, "#FIN"}));
  EXPECT_EQ(state(), (State{7, 1, "#FIN"}));
}

TEST_F(Search, NullListsFail) {
  const char *labels[] = {"Visite", nullptr};
  const int columns[] = {1, -1};
  search(ZRV_Code_NC, "Visite", 1, "actes");
  EXPECT_EQ(ZRV_Code_NC_ex_next(nullptr, columns, "actes", nullptr, 0), 0);
  EXPECT_EQ(ZRV_Code_NC_ex_next(labels, nullptr, "actes", nullptr, 0), 0);
  EXPECT_EQ(state(), (State{5, 1, "02|Visite|B|Y"}));
  EXPECT_EQ(ZRV_Code_NC_ex(labels, nullptr, "actes", nullptr, 0), 0);
  EXPECT_EQ(state(), (State{0, 0, "02|Visite|B|Y"}));
}

}  // namespace
}  // namespace korvel
