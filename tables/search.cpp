// SPDX-License-Identifier: MIT
// From a label to its code: searches by one column, with and without regard to case, and by several
// criteria.
#include <algorithm>
#include <cstdint>
#include <numeric>
#include <span>
#include <string_view>

#include <korvel/tables.h>

#include "base/views.h"
#include "strings/capitals.h"
#include "strings/compare.h"
#include "strings/copy.h"
#include "tables/line.h"
#include "tables/misuse.h"
#include "tables/pattern.h"
#include "tables/state.h"
#include "tables/walk.h"

namespace korvel::tables {
namespace {

using Out = std::span<char>;

class LabelTest final : public LineTest {
 public:
  LabelTest(std::string_view label, int column, int skipped)
      : LineTest(label, lineWithField(label), skipped), label_(label), column_(column) {}
  bool mayBeginAt(const char *field) const override {
    return strings::matches(label_, {field, label_.size()});
  }
  bool accepts(std::string_view text) const override {
    return strings::matches(label_, examinedColumn(RawFields(text), column_));
  }

 private:
  std::string_view label_;
  int column_;
};

// Capitals byte by byte, as strupr writes them.
const Folding &folding() {
  static constinit Folding table = {};
  if (table['A'] == 0) {
    std::iota(table.begin(), table.end(), std::uint8_t{0});
    strings::capitalise({reinterpret_cast<char *>(table.data()), table.size()});
  }
  return table;
}

class FoldedLabelTest final : public LineTest {
 public:
  // label: folded
  FoldedLabelTest(std::string_view label, int column)
      : LineTest(label, lineWithFoldedField(label, folding()), 0),
        folding_(folding()),
        label_(label),
        column_(column) {}
  bool mayBeginAt(const char *field) const override { return matches({field, label_.size()}); }
  bool accepts(std::string_view text) const override {
    return matches(examinedColumn(RawFields(text), column_));
  }

 private:
  bool matches(std::string_view field) const {
    return field.size() == label_.size() &&
           std::equal(field.begin(), field.end(), label_.begin(), [this](char c, char wanted) {
             return c == '?' || wanted == '?' ||
                    folding_[static_cast<std::uint8_t>(c)] == static_cast<std::uint8_t>(wanted);
           });
  }

  const Folding &folding_;
  std::string_view label_;
  int column_;
};

// Labels and columns up to the end of the shorter list.
struct Criteria {
  const char *const *labels;
  const int *columns;

  bool areComplete() const { return labels != nullptr && columns != nullptr; }
  bool endAt(std::size_t i) const { return columns[i] < 0 || labels[i] == nullptr; }
  // Behind the neighbours of one column that begin at i.
  std::size_t groupEnd(std::size_t i) const {
    std::size_t end = i + 1;
    while (!endAt(end) && columns[end] == columns[i]) ++end;
    return end;
  }
  std::span<const char *const> group(std::size_t begin) const {
    return {labels + begin, labels + groupEnd(begin)};
  }
};

class CriteriaTest final : public LineTest {
 public:
  CriteriaTest(Criteria criteria, int skipped) : LineTest(skipped), criteria_(criteria) {
    for (std::size_t i = 0; !criteria.endAt(i); i = criteria.groupEnd(i)) considerGroup(i);
  }
  bool mayBeginAt(const char *field) const override {
    if (pattern_.bytes == Pattern::Bytes::Any) return true;
    return std::ranges::any_of(searched_, [field](std::string_view label) {
      if (label.ends_with('*')) label.remove_suffix(1);
      return label.size() < kLineSize && strings::matches(label, {field, label.size()});
    });
  }
  bool accepts(std::string_view text) const override {
    for (std::size_t i = 0; !criteria_.endAt(i); i = criteria_.groupEnd(i)) {
      if (!isGroupMet(text, i)) return false;
    }
    return true;
  }

 private:
  bool isGroupMet(std::string_view text, std::size_t begin) const {
    const int column = criteria_.columns[begin];
    const std::string_view field =
        column == 0 ? codeOf(text) : examinedColumn(RawFields(text), column);
    return std::ranges::any_of(criteria_.group(begin), [field](std::string_view label) {
      return strings::matchesWithStar(label, field);
    });
  }

  // The file is searched for the group whose labels fix the most characters.
  void considerGroup(std::size_t begin) {
    const std::span labels = criteria_.group(begin);
    const Pattern pattern = lineWithOneOf(labels, criteria_.columns[begin] == 0);
    if (pattern.bytes == Pattern::Bytes::Any) return;
    std::size_t fixed = kLineSize;
    for (const char *label : labels) fixed = std::min(fixed, fixedCharacters(label));
    if (fixed <= fixed_) return;
    fixed_ = fixed;
    searched_ = labels;
    pattern_ = pattern;
  }

  Criteria criteria_;
  std::span<const char *const> searched_;  // the group that the file is searched for
  std::size_t fixed_ = 0;                  // how many characters its labels fix at least
};

// Kept: the code is given before its line is compared.
SearchEnd searchCode(const LineTest &test, From from, const char *table, Out out) {
  const SearchEnd end = search(test, from, table);
  if (end.atLine) strings::copyTerminated(out, bufferFields().field());
  return end;
}

bool searchLabel(const char *label, int column, From from, const char *table, Out out) {
  const LabelTest test(base::textOf(label), column, skippedLines(from));
  return searchCode(test, from, table, out).found;
}

bool searchCriteria(Criteria criteria, From from, const char *table, Out out) {
  if (criteria.areComplete()) {
    return searchCode(CriteriaTest(criteria, skippedLines(from)), from, table, out).found;
  }
  if (from == From::FirstLine) forgetLine();
  return false;
}

void capitaliseExaminedColumn(int column) {
  const std::string_view field = examinedColumn(bufferFields(), column);
  const auto begin = static_cast<std::size_t>(field.data() - ZRV_Libelle_NC_szBuffer);
  strings::capitalise(std::span(ZRV_Libelle_NC_szBuffer).subspan(begin, field.size()));
}

bool searchAnyCase(const char *label, int column, const char *table, Out out) {
  char wanted[256] = "";
  strings::copyWhole(wanted, base::textOf(label));
  strings::capitalise(wanted);
  const SearchEnd end = searchCode(FoldedLabelTest(wanted, column), From::FirstLine, table, out);
  // Kept: the examined column of the last line is written in capitals even without a match.
  if (end.atLine) capitaliseExaminedColumn(column);
  return end.found;
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel::base;
using namespace korvel::tables;

int ZRV_Code_NC(const char *label, int column, const char *table, char *out, int outSize) {
  const auto work = [=] {
    return searchLabel(label, column, From::FirstLine, table, roomOf(out, outSize));
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldLabelSearch(Call("ZRV_Code_NC", {label, column, table, filled(out), outSize}),
                             label, table, out, outSize, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Code_NC_next(const char *label, int column, const char *table, char *out, int outSize) {
  const auto work = [=] {
    return searchLabel(label, column, From::BehindCurrent, table, roomOf(out, outSize));
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldLabelSearch(Call("ZRV_Code_NC_next", {label, column, table, filled(out), outSize}),
                             label, table, out, outSize, work);
    });
  return work() ? 1 : 0;
}

int ZRV_CodeNCS_NC(const char *label, int column, const char *table, char *out, int outSize) {
  const auto work = [=] { return searchAnyCase(label, column, table, roomOf(out, outSize)); };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldAnyCaseSearch(Call("ZRV_CodeNCS_NC", {label, column, table, filled(out), outSize}),
                               label, table, out, outSize, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Code_NC_ex(const char *const *labels, const int *columns, const char *table, char *out,
                   int outSize) {
  const auto work = [=] {
    return searchCriteria({labels, columns}, From::FirstLine, table, roomOf(out, outSize));
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldCriteriaSearch(
          Call("ZRV_Code_NC_ex", {filled(labels), filled(columns), table, filled(out), outSize}),
          labels, columns, table, out, outSize, work);
    });
  return work() ? 1 : 0;
}

int ZRV_Code_NC_ex_next(const char *const *labels, const int *columns, const char *table, char *out,
                        int outSize) {
  const auto work = [=] {
    return searchCriteria({labels, columns}, From::BehindCurrent, table, roomOf(out, outSize));
  };
  if (tellsMisuse())
    return outOfLine([=] {
      return toldCriteriaSearch(Call("ZRV_Code_NC_ex_next", {filled(labels), filled(columns), table,
                                                             filled(out), outSize}),
                                labels, columns, table, out, outSize, work);
    });
  return work() ? 1 : 0;
}
