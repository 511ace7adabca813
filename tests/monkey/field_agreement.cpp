// SPDX-License-Identifier: MIT
// Agreement of the dialog with fields of every type.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <regex>

#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/monkey/agreement.h"
#include "tests/monkey/application.h"

namespace korvel::test {
namespace {

std::string trimmed(const std::string &text) {
  const auto begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? ""
                                    : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

struct Whole {
  bool isWhole = false;
  double value = 0;
};

Whole wholeNumber(const std::string &text) {
  static const std::regex kDigits("[+-]?[0-9]+");
  const std::string digits = trimmed(text);
  if (!std::regex_match(digits, kDigits)) return {};
  const double value = std::strtod(digits.c_str(), nullptr);
  return {std::fabs(value) <= 2147483647.0, value};
}

bool isDay(int value) {
  const int day = value % 100, month = value / 100 % 100, year = value / 10000 % 10000;
  if (value < 0 || year < 1800 || year > 2100 || month < 1 || month > 12 || day < 1) return false;
  const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  const int days = month == 2                                              ? (isLeap ? 29 : 28)
                   : month == 4 || month == 6 || month == 9 || month == 11 ? 30
                                                                           : 31;
  return day <= days;
}

std::vector<std::string> pieces(const std::string &list, const char *separators) {
  std::vector<std::string> found(1);
  for (const char c : list) {
    if (std::strchr(separators, c) != nullptr)
      found.emplace_back();
    else
      found.back() += c;
  }
  return found;
}

bool agree(double shown, double value) {
  if (std::isinf(shown) || std::fabs(shown) > 1e300) return std::fabs(value) > 1e299;
  return std::fabs(shown - value) <= 1e-9 * std::max(1e-280, std::fabs(shown));
}

class FieldAgreement final : public Agreement {
 public:
  explicit FieldAgreement(const std::vector<QWidget *> &items) : items_(items) {
    EXPECT_EQ(items_.size(), static_cast<std::size_t>(kItems));
    std::copy_n(IDB_iInts, kInts, ints_);
    std::copy_n(NDB_dNums, kNums, nums_);
    std::copy_n(DDB_lDates, kDates, dates_);
  }

  void check(bool withPaint) const override {
    checkText(kShort, true, 12);
    checkText(kFree, false, 255);
    checkMaskedText();
    checkPopUp();
    checkList();
    checkInteger();
    checkMaskedInteger();
    for (int i = 0; i < kNums; ++i) checkNumber(i);
    for (int i = 0; i < kDates; ++i) checkDate(i);
    for (int i = 0; i < kBools; ++i) checkBox(i);
    checkOk();
    checkMarks(withPaint);
  }

 private:
  QWidget *at(int item) const { return items_[static_cast<std::size_t>(item) - 1]; }
  std::string shown(int item) const { return stored(dynamic_cast<QLineEdit &>(*at(item)).text()); }

  void checkText(int i, bool mandatory, std::size_t longest) const {
    const std::string text = shown(kFirstText + i);
    const std::size_t room = static_cast<std::size_t>(TDB_BUFFERSIZE) - 1;
    EXPECT_EQ(TDB_pszBuffer[i], text.substr(0, room)) << "text " << i;
    EXPECT_EQ(TDB_bOK[i], (!mandatory || !text.empty()) && text.size() <= longest) << "text " << i;
  }

  void checkMaskedText() const {
    EXPECT_EQ(shown(kFirstText + kMasked), std::string(std::strlen(TDB_pszBuffer[kMasked]), '*'));
    EXPECT_EQ(TDB_bOK[kMasked], std::strlen(TDB_pszBuffer[kMasked]) <= 255);
  }

  void checkPopUp() const {
    const auto &popUp = dynamic_cast<QComboBox &>(*at(kFirstText + kPopUp));
    std::vector<std::string> choices;
    for (int i = 0; i < popUp.count(); ++i) choices.push_back(stored(popUp.itemText(i)));
    EXPECT_EQ(choices, pieces(TDB_PSZLBUFFER[kPopUp], "+,"));
    EXPECT_EQ(stored(popUp.currentText()), TDB_pszBuffer[kPopUp]);
    EXPECT_EQ(TDB_bOK[kPopUp], TDB_pszBuffer[kPopUp][0] != '\0');
  }

  void checkList() const {
    const std::string rows = TDB_PSZLBUFFER[kList];
    EXPECT_EQ(rowsOf(at(kFirstText + kList)),
              rows.empty() ? std::vector<std::string>() : pieces(rows, "$"));
    checkChosenRow(at(kFirstText + kList), TDB_pszBuffer[kList]);
    EXPECT_EQ(TDB_bOK[kList], TDB_pszBuffer[kList][0] != '\0');
  }

  void checkInteger() const {
    const std::string text = shown(kFirstInt);
    const Whole number = wholeNumber(text);
    const bool isAccepted = number.isWhole && number.value >= 0;
    EXPECT_EQ(IDB_bOK[kPlainInt], isAccepted) << text;
    if (text.empty()) {
      EXPECT_EQ(IDB_iInts[kPlainInt], ints_[kPlainInt]);
    }
    if (isAccepted) {
      EXPECT_EQ(IDB_iInts[kPlainInt], number.value) << text;
    }
  }

  // Its digits are hidden; they went through the validation function.
  void checkMaskedInteger() const {
    const std::string text = shown(kFirstInt + kMaskedInt);
    EXPECT_EQ(text.find_first_not_of('*'), std::string::npos) << text;
    if (text.empty()) {
      EXPECT_EQ(IDB_bOK[kMaskedInt], 0);
      EXPECT_EQ(IDB_iInts[kMaskedInt], ints_[kMaskedInt]);
      return;
    }
    const Whole number = wholeNumber(application->maskedInt);
    EXPECT_EQ(application->maskedInt.size(), text.size());
    EXPECT_EQ(IDB_bOK[kMaskedInt], number.isWhole && number.value >= 0) << application->maskedInt;
    if (IDB_bOK[kMaskedInt] == 1) {
      EXPECT_EQ(IDB_iInts[kMaskedInt], number.value);
    }
  }

  void checkNumber(int i) const {
    const std::string text = shown(kFirstNum + i);
    if (text.empty()) {
      EXPECT_EQ(NDB_bOK[i], i == kOptional);
      EXPECT_EQ(NDB_dNums[i], nums_[i]);
      return;
    }
    static const std::regex kNumber("([+-]?)(?=.)([0-9]*)([.,][0-9]*)?([eE]( *[+-]?[0-9]+)?)?");
    std::smatch parts;
    std::string number = trimmed(text);
    const bool isNumber = std::regex_match(number, parts, kNumber) &&
                          (!parts[5].matched || wholeNumber(parts[5]).isWhole);
    EXPECT_EQ(NDB_bOK[i], isNumber) << text;
    if (!isNumber) return;
    std::string fraction = parts[3];
    if (!fraction.empty()) fraction[0] = '.';
    number = std::string(parts[1]) + "0" + std::string(parts[2]) + fraction +
             (parts[5].matched ? "e" + trimmed(parts[5]) : "");
    EXPECT_TRUE(agree(std::strtod(number.c_str(), nullptr), NDB_dNums[i]))
        << text << " against " << NDB_dNums[i];
  }

  void checkDate(int i) const {
    bool hasError = false, hasAll = true, isEmpty = true;
    unsigned long long date = 0;  // wraps, as the tables' arithmetic does
    for (const int factor : {1, 100, 10000}) {
      const std::string text = shown(kFirstDate + 3 * i +
                                     (factor == 1     ? 0
                                      : factor == 100 ? 1
                                                      : 2));
      const bool isBlank = trimmed(text).empty();
      const Whole part = wholeNumber(text);
      hasError |= isBlank ? i == kMandatory && text.empty() : !part.isWhole;
      hasAll &= !isBlank && part.value >= 1;
      isEmpty &= text.empty();
      date += static_cast<unsigned>(factor) * static_cast<unsigned long long>(part.value);
    }
    const bool isStored = !hasError && hasAll;
    const int value = static_cast<int>(date);
    EXPECT_EQ(DDB_bOK[i], !hasError && (!hasAll || isDay(value))) << "date " << i << ' ' << date;
    if (isStored && isDay(value)) {
      EXPECT_EQ(DDB_lDates[i], value);
    }
    if (isEmpty) {
      EXPECT_EQ(DDB_lDates[i], dates_[i]) << "date " << i;
    }
  }

  void checkBox(int i) const {
    EXPECT_EQ(dynamic_cast<QCheckBox &>(*at(kFirstBool + i)).isChecked(), BDB_bFlags[i] != 0);
  }

  void checkOk() const {
    bool isEnabled = true;
    for (int i = 0; i < kTexts; ++i) isEnabled &= TDB_bOK[i] == 1;
    for (int i = 0; i < kInts; ++i) isEnabled &= IDB_bOK[i] == 1;
    for (int i = 0; i < kNums; ++i) isEnabled &= NDB_bOK[i] == 1;
    for (int i = 0; i < kDates; ++i) isEnabled &= DDB_bOK[i] == 1;
    EXPECT_EQ(at(1)->isEnabled(), isEnabled);
    EXPECT_TRUE(at(2)->isEnabled());
  }

  void checkMarks(bool withPaint) const {
    for (int i = 0; i < kTexts; ++i) checkMark(kFirstText + i, TDB_bOK[i] != 1, withPaint);
    for (int i = 0; i < kInts; ++i) checkMark(kFirstInt + i, IDB_bOK[i] != 1, withPaint);
    for (int i = 0; i < kNums; ++i) checkMark(kFirstNum + i, NDB_bOK[i] != 1, withPaint);
    for (int i = 0; i < 3 * kDates; ++i) checkMark(kFirstDate + i, DDB_bOK[i / 3] != 1, withPaint);
  }

  void checkMark(int item, bool isMarked, bool withPaint) const {
    QWidget *field = at(item);
    EXPECT_EQ(!field->accessibleDescription().isEmpty(), isMarked) << "item " << item;
    if (!withPaint) return;
    if (auto *area = qobject_cast<QAbstractScrollArea *>(field)) field = area->viewport();
    const QImage edge = field->grab({0, field->height() / 2, 1, 1}).toImage();
    EXPECT_EQ(edge.pixelColor(0, 0) == QColor(0xC2, 0x78, 0x03), isMarked) << "item " << item;
  }

  const std::vector<QWidget *> items_;
  int ints_[kInts];
  double nums_[kNums];
  int dates_[kDates];
};

}  // namespace

std::unique_ptr<Agreement> agreementOnFields(const std::vector<QWidget *> &items) {
  return std::make_unique<FieldAgreement>(items);
}

}  // namespace korvel::test
