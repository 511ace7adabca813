// SPDX-License-Identifier: MIT
// Tests of a line with one field replaced, or all of them.
#include "tables/rebuild.h"

#include <climits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace korvel::tables {
namespace {

class Text final : public LineSink {
 public:
  void write(std::string_view piece) override { all += piece; }
  std::string all;
};

struct Rebuilt {
  bool hadField;
  std::string text;

  friend bool operator==(const Rebuilt &, const Rebuilt &) = default;
  friend std::ostream &operator<<(std::ostream &to, const Rebuilt &rebuilt) {
    return to << rebuilt.hadField << ' ' << rebuilt.text;
  }
};

Rebuilt withField(std::string_view text, FieldChoice choice, std::string_view value) {
  Text sink;
  const bool hadField = writeWithField(text, choice, value, sink);
  return {hadField, sink.all};
}
Rebuilt withColumn(std::string_view text, int column, std::string_view value = "NEW") {
  return withField(text, currentLineChoice(2, column), value);
}
Rebuilt withCode(std::string_view text, std::string_view value = "NEW") {
  return withField(text, currentLineChoice(0, 0), value);
}
std::string withFields(std::string_view text, std::string_view fields) {
  Text sink;
  writeWithFields(text, fields, sink);
  return sink.all;
}

TEST(RebuiltLine, HasTheColumnReplaced) {
  constexpr struct {
    std::string_view text;
    int column;
    std::string_view expected;
  } kCases[] = {
      {"07,Visite,01/01/95", 1, "07,NEW,01/01/95"},
      {"07,Visite,01/01/95", 2, "07,Visite,NEW"},
      {"07,V", 1, "07,NEW"},
      {"a,b,c,d,e,f", 3, "a,b,c,NEW,e,f"},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(withColumn(row.text, row.column), (Rebuilt{true, std::string(row.expected)}));
  }
}

TEST(RebuiltLine, HasCommasOnly) {
  EXPECT_EQ(withColumn("07+Visite+x,y", 1), (Rebuilt{true, "07,NEW,x,y"}));
  EXPECT_EQ(withColumn("07+Visite+x,y", 3), (Rebuilt{true, "07,Visite,x,NEW"}));
  EXPECT_EQ(withCode("07+Visite+x"), (Rebuilt{true, "NEW,Visite,x"}));
  EXPECT_EQ(withColumn("07+Visite", 5), (Rebuilt{false, "07,Visite"}));
}

TEST(RebuiltLine, IsTheOldOneWithoutTheColumn) {
  for (const int column : {3, 4, 5, 1000, INT_MAX, 0, -1, INT_MIN}) {
    EXPECT_EQ(withColumn("07,Visite,x", column), (Rebuilt{false, "07,Visite,x"})) << column;
  }
  EXPECT_EQ(withColumn("07", 1), (Rebuilt{false, "07"}));
  EXPECT_EQ(withColumn("", 1), (Rebuilt{false, ""}));
}

TEST(RebuiltLine, HasTheCodeReplaced) {
  EXPECT_EQ(withCode("07,Visite,x"), (Rebuilt{true, "NEW,Visite,x"}));
  EXPECT_EQ(withCode("07"), (Rebuilt{true, "NEW"}));
  EXPECT_EQ(withCode(""), (Rebuilt{true, "NEW"}));
  EXPECT_EQ(withCode(",x,y"), (Rebuilt{true, "NEW,x,y"}));
  EXPECT_EQ(withCode("++x"), (Rebuilt{true, "NEW++x"}));
}

TEST(RebuiltLine, TakesTheValueAsItIs) {
  EXPECT_EQ(withColumn("07,Visite,x", 1, ""), (Rebuilt{true, "07,,x"}));
  EXPECT_EQ(withColumn("07,Visite,x", 1, "a+b,c"), (Rebuilt{true, "07,a+b,c,x"}));
  const std::string longValue(5000, 'v');
  EXPECT_EQ(withColumn("07,Visite,x", 1, longValue), (Rebuilt{true, "07," + longValue + ",x"}));
}

TEST(RebuiltLine, KeepsWhatStandsFromTheFirstEmptyFieldOn) {
  constexpr struct {
    std::string_view text;
    int column;
    bool hadField;
    std::string_view expected;
  } kCases[] = {
      {"07,Visite,,secret", 1, true, "07,NEW,,secret"},
      {"07,Visite,,secret", 2, false, "07,Visite,,secret"},
      {"07,Visite,,secret", 3, false, "07,Visite,,secret"},
      // The separator before the empty field joins the fields, those after it are as they were.
      {"07+Visite++a+b", 1, true, "07,NEW,+a+b"},
      {"07,Visite,", 1, true, "07,NEW,"},
      {"07,Visite,,", 1, true, "07,NEW,,"},
      {"07,", 1, false, "07,"},
      {"07+", 1, false, "07,"},
      {",x+y", 1, false, ",x+y"},
      {"+", 1, false, "+"},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(withColumn(row.text, row.column), (Rebuilt{row.hadField, std::string(row.expected)}))
        << row.text;
  }
}

TEST(RebuiltLine, WithOtherFieldsKeepsWhatStandsFromTheFirstEmptyFieldOn) {
  constexpr struct {
    std::string_view text;
    std::string_view fields;
    std::string_view expected;
  } kCases[] = {
      {"07,Visite,x", "08,Acte", "08,Acte"},
      {"07,Visite,,secret", "08,Acte", "08,Acte,,secret"},
      {"07+Visite++a+b", "08", "08,+a+b"},
      {"07,", "08,Acte", "08,Acte,"},
      {"07,", "", ","},
      {"", "08,Acte", "08,Acte"},
      {"", "", ""},
      {",x", "08", "08,x"},
      {",x", "", ",x"},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(withFields(row.text, row.fields), row.expected) << row.text;
  }
}

}  // namespace
}  // namespace korvel::tables
