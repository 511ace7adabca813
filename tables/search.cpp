// From a label to its code: searches by one column, with and without regard to case, and by several
// criteria.
#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>

#include <korvel/strings.h>
#include <korvel/tables.h>

#include "tables/line.h"
#include "tables/pattern.h"
#include "tables/state.h"
#include "tables/walk.h"

namespace korvel::tables {
namespace {

int lengthOf(std::string_view s) { return static_cast<int>(s.size()); }

bool matches(std::string_view label, std::string_view field) {
  return szcompex(label.data(), lengthOf(label), field.data(), lengthOf(field)) == 1;
}

bool isPossible(std::string_view label) { return !label.empty() && label.size() < kLineSize; }

class LabelTest final : public LineTest {
 public:
  LabelTest(std::string_view label, int column, int skipped)
      : LineTest(skipped), label_(label), column_(column) {
    if (isPossible(label)) {
      pattern_ = lineWithField(label);
    } else {
      skipped_ = kEveryLine;
    }
  }
  bool mayBeginAt(const char *field) const override {
    return matches(label_, {field, label_.size()});
  }
  bool accepts(std::string_view text) const override {
    return matches(label_, examinedColumn(RawFields(text), column_));
  }

 private:
  std::string_view label_;
  int column_;
};

// strupr as a table.
const Folding &folding() {
  static constinit Folding table = {};
  if (table['A'] == 0) {
    char bytes[256];
    for (int i = 1; i < 256; ++i) bytes[i - 1] = static_cast<char>(i);
    bytes[255] = '\0';
    strupr(bytes);
    for (int i = 1; i < 256; ++i) {
      table[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(bytes[i - 1]);
    }
  }
  return table;
}

class FoldedLabelTest final : public LineTest {
 public:
  // label: folded
  FoldedLabelTest(std::string_view label, int column)
      : LineTest(0), folding_(folding()), label_(label), column_(column) {
    if (isPossible(label)) {
      pattern_ = lineWithFoldedField(label, folding_);
    } else {
      skipped_ = kEveryLine;
    }
  }
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

  bool complete() const { return labels != nullptr && columns != nullptr; }
  bool endAt(std::size_t i) const { return columns[i] < 0 || labels[i] == nullptr; }
  // Behind the neighbours of one column that begin at i.
  std::size_t groupEnd(std::size_t i) const {
    std::size_t end = i + 1;
    while (!endAt(end) && columns[end] == columns[i]) ++end;
    return end;
  }
};

class CriteriaTest final : public LineTest {
 public:
  CriteriaTest(Criteria criteria, int skipped) : LineTest(skipped), criteria_(criteria) {
    for (std::size_t i = 0; !criteria.endAt(i); i = criteria.groupEnd(i)) considerGroup(i);
  }
  bool mayBeginAt(const char *field) const override {
    if (pattern_.bytes == Pattern::Bytes::Any) return true;
    return anyLabel(probed_, [field](std::string_view label) {
      if (label.ends_with('*')) label.remove_suffix(1);
      return label.size() < kLineSize && matches(label, {field, label.size()});
    });
  }
  bool accepts(std::string_view text) const override {
    for (std::size_t i = 0; !criteria_.endAt(i); i = criteria_.groupEnd(i)) {
      if (!meetsGroup(text, i)) return false;
    }
    return true;
  }

 private:
  static std::string_view fieldOf(std::string_view text, int column) {
    return column == 0 ? codeOf(text) : examinedColumn(RawFields(text), column);
  }

  // Of the group that begins there.
  template <typename Predicate>
  bool anyLabel(std::size_t begin, Predicate predicate) const {
    const std::size_t end = criteria_.groupEnd(begin);
    return std::any_of(criteria_.labels + begin, criteria_.labels + end, predicate);
  }

  bool meetsGroup(std::string_view text, std::size_t begin) const {
    const std::string_view field = fieldOf(text, criteria_.columns[begin]);
    return anyLabel(begin, [field](std::string_view label) {
      return szcompex2(label.data(), lengthOf(label), field.data(), lengthOf(field)) == 1;
    });
  }

  // The file is searched for the group whose labels say most.
  void considerGroup(std::size_t begin) {
    const std::size_t count = criteria_.groupEnd(begin) - begin;
    const Pattern pattern =
        lineWithOneOf({criteria_.labels + begin, count}, criteria_.columns[begin] == 0);
    if (pattern.bytes == Pattern::Bytes::Any) return;
    std::size_t fixed = kLineSize;
    for (std::size_t i = begin; i != begin + count; ++i) {
      fixed = std::min(fixed, fixedCharacters(criteria_.labels[i]));
    }
    if (fixed <= fixed_) return;
    fixed_ = fixed;
    probed_ = begin;
    pattern_ = pattern;
  }

  Criteria criteria_;
  std::size_t probed_ = 0;  // where the group begins that is searched for
  std::size_t fixed_ = 0;   // how many characters it fixes at least
};

enum class From { FirstLine, BehindCurrent };

int skippedLines(From from) { return from == From::FirstLine ? 0 : std::max(ZRV_Libelle_NC_il, 0); }

struct SearchEnd {
  bool found = false;
  bool atLine = false;  // a line stands in the buffer
};

// Walks to the first line that passes. The line at which the walk ends stands in the buffer then,
// its code in out.
SearchEnd search(const LineTest &test, From from, const char *table, char *out, int outSize) {
  if (from == From::FirstLine) forgetLine();
  TableWalk walk;
  if (!walk.open(table)) return {};
  const bool found = walk.find(test);
  const bool atLine = walk.line() > 0;
  if (atLine) {
    storeSplit(walk.kept());
    // Kept: the code is given before its line is compared.
    copyOut(codeOf(textOf(walk.kept())), out, outSize);
  }
  if (found || from == From::FirstLine) setCurrentLine(walk.line());
  return {found, atLine};
}

int resultOf(SearchEnd end) { return end.found ? 1 : 0; }

int searchLabel(const char *label, int column, From from, const char *table, char *out,
                int outSize) {
  const std::string_view wanted = label == nullptr ? "" : label;
  return resultOf(search(LabelTest(wanted, column, skippedLines(from)), from, table, out, outSize));
}

int searchCriteria(Criteria criteria, From from, const char *table, char *out, int outSize) {
  if (!criteria.complete()) {
    if (from == From::FirstLine) forgetLine();
    return 0;
  }
  return resultOf(search(CriteriaTest(criteria, skippedLines(from)), from, table, out, outSize));
}

// In the buffer.
void capitaliseExaminedColumn(int column) {
  const SplitFields fields({ZRV_Libelle_NC_szBuffer, sizeof ZRV_Libelle_NC_szBuffer});
  strupr(ZRV_Libelle_NC_szBuffer +
         (examinedColumn(fields, column).data() - ZRV_Libelle_NC_szBuffer));
}

int searchAnyCase(const char *label, int column, const char *table, char *out, int outSize) {
  char wanted[256] = "";
  if (label != nullptr) secure_lstrcpy(wanted, sizeof wanted, label);
  strupr(wanted);
  const SearchEnd end =
      search(FoldedLabelTest(wanted, column), From::FirstLine, table, out, outSize);
  // Kept: the examined column of the last line is written in capitals even without a match.
  if (end.atLine) capitaliseExaminedColumn(column);
  return resultOf(end);
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel::tables;

int ZRV_Code_NC(const char *label, int column, const char *table, char *out, int outSize) {
  return searchLabel(label, column, From::FirstLine, table, out, outSize);
}

int ZRV_Code_NC_next(const char *label, int column, const char *table, char *out, int outSize) {
  return searchLabel(label, column, From::BehindCurrent, table, out, outSize);
}

int ZRV_CodeNCS_NC(const char *label, int column, const char *table, char *out, int outSize) {
  return searchAnyCase(label, column, table, out, outSize);
}

int ZRV_Code_NC_ex(const char *const *labels, const int *columns, const char *table, char *out,
                   int outSize) {
  return searchCriteria({labels, columns}, From::FirstLine, table, out, outSize);
}

int ZRV_Code_NC_ex_next(const char *const *labels, const int *columns, const char *table, char *out,
                        int outSize) {
  return searchCriteria({labels, columns}, From::BehindCurrent, table, out, outSize);
}
