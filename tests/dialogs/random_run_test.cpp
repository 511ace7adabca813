// SPDX-License-Identifier: MIT
// Thousands of random hits. After each, every item on the screen and every table is compared with a
// model on plain values, which follows the public header step by step and field by field.
#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/codecs.h>
#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

// CP1252 letters whose bytes the screen shows as the same letters.
const std::string kLetters = "0123456789*-+,. aZ\xE9\xEA\xEF\xC9";

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }
  bool oneIn(int n) { return below(n) == 0; }
  std::string text(int longest) {
    std::string text;
    for (int n = below(longest + 1); n > 0; --n) {
      text += kLetters[static_cast<std::size_t>(below(static_cast<int>(kLetters.size())))];
    }
    return text;
  }

 private:
  std::mt19937 engine_;
};

// ---- The model ----

enum class Kind { Edit, PopUp, List };

struct Text {
  bool isSet, isMandatory, isMasked, ok = true;
  Kind kind;
  std::size_t longest, room;
  std::string value;
  std::vector<std::string> choices;  // on the screen
  std::vector<std::string> listed;   // in the list string
  int item = 0;
};
struct Check {
  int value, item = 0;
};
struct Integer {
  bool isSet, isMandatory, isMasked, ok = true;
  int value, lastLength = 0;
  ValidInt_t validator;
  int item = 0;
};
struct Number {
  bool isSet, isMandatory, ok = true;
  double value;
  int decimals;
  ValidNum_t validator;
  int item = 0;
};
struct Date {
  bool isSet, isMandatory, ok = true;
  int value;
  ValidInt_t validator;
  int item = 0;
};

constexpr int kTextId = 1000, kCheckId = 1100, kIntegerId = 1200, kNumberId = 1300, kDateId = 1400,
              kPushId = 1500;

// A change of field i by a function that the callback called.
struct Change {
  enum What { TextSet, ChoicesRebuilt, NumberSet } what;
  int i;
  std::string text;
};

// What the global callback changed: tables first, then fields by functions.
struct Reaction {
  int item = 0;
  std::vector<Change> changes;
  std::vector<int> redisplay;
  std::map<int, std::string> texts;
  std::map<int, int> checks, integers, dates;
  std::map<int, double> numbers;
};

std::string stars(std::size_t n) { return std::string(n, '*'); }

struct Model {
  std::vector<Text> texts;
  std::vector<Check> checks;
  std::vector<Integer> integers;
  std::vector<Number> numbers;
  std::vector<Date> dates;
  int pushItem = 0;

  std::map<int, std::string> shown;  // edit-text items
  std::map<int, int> chosen;         // check boxes and pop-ups
  bool hasEnded = false;
  std::vector<int> told;  // identifiers with which the global callback was called
  std::size_t finalCalls = 0;

  // ---- Values as text ----

  static std::string asText(int value) {
    char text[256];
    intdco_i(value, text, 256);
    return text;
  }
  static std::string asLongText(int value) {
    char text[256];
    intdco_l(value, text, 256);
    return text;
  }
  static std::string asText(const Number &number) {
    char text[256];
    realdco_d(number.value, text, 256, number.decimals);
    return text;
  }
  template <typename Validator, typename Value>
  static bool accepts(Validator validator, const std::string &entered, Value &value) {
    std::vector<char> text(entered.begin(), entered.end());
    text.push_back('\0');
    return validator(text.data(), &value) == 0;
  }

  bool mayStand(const Text &text, const std::string &value) const {
    return !(text.isMandatory && value.empty()) && value.size() <= text.longest;
  }

  // ---- Filling and showing ----

  void writeText(Text &text) {
    if (text.kind == Kind::Edit) {
      shown[text.item] = text.isMasked ? stars(text.value.size()) : text.value;
    }
    if (text.kind == Kind::PopUp) {
      chosen[text.item] = 0;
      for (std::size_t k = 0; k < text.choices.size(); ++k) {
        if (text.choices[k] == text.value) chosen[text.item] = static_cast<int>(k) + 1;
      }
    }
  }
  void writeInteger(Integer &field) {
    const std::string text = asText(field.value);
    shown[field.item] = field.isMasked ? stars(text.size()) : text;
    if (field.isMasked) field.lastLength = static_cast<int>(text.size());
  }
  bool integerIsAcceptable(Integer &field) {
    return accepts(field.validator, asText(field.value), field.value);
  }
  void writeNumber(Number &field) { shown[field.item] = asText(field); }
  bool numberIsAcceptable(Number &field) {
    return accepts(field.validator, asText(field), field.value);
  }
  void writeDate(Date &field) {
    shown[field.item] = asLongText(field.value % 100);
    shown[field.item + 1] = asLongText(field.value / 100 % 100);
    shown[field.item + 2] = asLongText(field.value / 10000 % 10000);
  }
  bool dateIsAcceptable(Date &field) {
    return accepts(field.validator, asLongText(field.value), field.value);
  }

  void fill() {
    for (Text &text : texts) {
      if (text.kind == Kind::Edit) shown[text.item] = "";
      if (text.kind == Kind::PopUp) chosen[text.item] = 0;
      if (!text.isSet) {
        if (text.kind == Kind::PopUp) text.choices.clear();
        if (text.kind == Kind::List) text.choices.clear();
        continue;
      }
      writeText(text);
      if (!mayStand(text, text.value)) text.ok = false;
    }
    for (Check &check : checks) chosen[check.item] = check.value;
    for (Integer &field : integers) {
      shown[field.item] = "";
      if (field.isSet) {
        writeInteger(field);
        if (!integerIsAcceptable(field)) field.ok = false;
      } else if (field.isMandatory) {
        field.ok = false;
      }
    }
    for (Number &field : numbers) {
      shown[field.item] = "";
      if (field.isSet) {
        writeNumber(field);
        if (!numberIsAcceptable(field)) field.ok = false;
      } else if (field.isMandatory) {
        field.ok = false;
      }
    }
    for (Date &field : dates) {
      for (int part = 0; part < 3; ++part) shown[field.item + part] = "";
      if (field.isSet) {
        writeDate(field);
        if (!dateIsAcceptable(field)) field.ok = false;
      } else if (field.isMandatory) {
        field.ok = false;
      }
    }
  }

  // ---- Events ----

  void storeText(Text &text, const std::string &entered) {
    text.ok = mayStand(text, entered) && entered.size() < text.room;
    text.value = entered.substr(0, text.room - 1);
  }

  void editText(Text &text) {
    std::string entered = shown[text.item];
    if (text.isMasked) {
      std::string unmasked;
      for (std::size_t j = 0; j < entered.size(); ++j) {
        if (entered[j] != '*') {
          unmasked += entered[j];
        } else if (j < text.value.size()) {
          unmasked += text.value[j];
        } else {
          break;
        }
      }
      entered = unmasked;
      shown[text.item] = stars(entered.size());
    }
    storeText(text, entered);
  }

  void editInteger(Integer &field) {
    std::string entered = shown[field.item];
    if (field.isMasked) {
      const std::string value = asText(field.value);
      const int m = static_cast<int>(value.size());
      const int n = static_cast<int>(entered.size());
      int k = n > field.lastLength ? m - 1 : m - 2;
      field.lastLength = n;
      for (int j = n - 1; j >= 0; --j) {
        char &c = entered[static_cast<std::size_t>(j)];
        if (c != '*') continue;
        c = k < 0 ? '0' : value[static_cast<std::size_t>(k)];
        --k;
      }
      shown[field.item] = stars(entered.size());
    }
    field.ok =
        entered.empty() ? !field.isMandatory : accepts(field.validator, entered, field.value);
  }

  void editNumber(Number &field) {
    const std::string entered = shown[field.item];
    field.ok =
        entered.empty() ? !field.isMandatory : accepts(field.validator, entered, field.value);
  }

  void editDate(Date &field) {
    int parts[3] = {0, 0, 0};
    int errors = 0;
    for (int part = 0; part < 3; ++part) {
      const std::string entered = shown[field.item + part];
      if (field.isMandatory && entered.empty()) {
        ++errors;
        continue;
      }
      std::vector<char> text(entered.begin(), entered.end());
      text.push_back('\0');
      if (intcod_l_sup0(text.data(), &parts[part]) > 1) ++errors;
    }
    if (errors > 0) {
      field.ok = false;
    } else if (parts[0] < 1 || parts[1] < 1 || parts[2] < 1) {
      field.ok = true;
    } else {
      const auto date = static_cast<unsigned>(parts[0]) + 100U * static_cast<unsigned>(parts[1]) +
                        10000U * static_cast<unsigned>(parts[2]);
      field.ok = accepts(field.validator, asLongText(static_cast<int>(date)), field.value);
    }
  }

  // After a change of an edit-text item: its field's identifier, and whether it is valid.
  void edited(int item) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      if (texts[i].item != item) continue;
      editText(texts[i]);
      tell(kTextId + static_cast<int>(i), texts[i].ok);
    }
    for (std::size_t i = 0; i < integers.size(); ++i) {
      if (integers[i].item != item) continue;
      editInteger(integers[i]);
      tell(kIntegerId + static_cast<int>(i), integers[i].ok);
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      if (numbers[i].item != item) continue;
      editNumber(numbers[i]);
      tell(kNumberId + static_cast<int>(i), numbers[i].ok);
    }
    for (std::size_t i = 0; i < dates.size(); ++i) {
      if (item < dates[i].item || item > dates[i].item + 2) continue;
      editDate(dates[i]);
      // The global callback gets the identifier of the date's item.
      tell(kDateId + 3 * static_cast<int>(i), dates[i].ok);
    }
  }

  void tell(int identifier, bool isValid) {
    if (isValid) told.push_back(identifier);
  }

  // ---- What the global callback asked for ----

  void react(const Reaction &reaction) {
    for (const auto &[i, value] : reaction.texts) texts[static_cast<std::size_t>(i)].value = value;
    for (const auto &[i, value] : reaction.checks)
      checks[static_cast<std::size_t>(i)].value = value;
    for (const auto &[i, value] : reaction.integers) {
      integers[static_cast<std::size_t>(i)].value = value;
    }
    for (const auto &[i, value] : reaction.numbers) {
      numbers[static_cast<std::size_t>(i)].value = value;
    }
    for (const auto &[i, value] : reaction.dates) dates[static_cast<std::size_t>(i)].value = value;
    for (const Change &change : reaction.changes) apply(change);
    for (const int identifier : reaction.redisplay) redisplay(identifier);
  }

  void apply(const Change &change) {
    const auto i = static_cast<std::size_t>(change.i);
    if (change.what == Change::TextSet) setText(texts[i], change.text);
    if (change.what == Change::ChoicesRebuilt) rebuild(texts[i]);
    if (change.what == Change::NumberSet) setNumber(numbers[i], change.text);
  }

  void setText(Text &text, const std::string &given) {
    text.value = given.substr(0, text.room - 1);
    if (text.kind == Kind::Edit) {
      shown[text.item] = text.isMasked ? stars(text.value.size()) : text.value;
    }
    if (text.kind == Kind::PopUp) {
      // Numbered by the list string. A number without an entry in the pop-up is not chosen.
      for (std::size_t k = 0; k < text.listed.size(); ++k) {
        if (text.listed[k] == given && k < text.choices.size()) {
          chosen[text.item] = static_cast<int>(k) + 1;
        }
      }
    }
    if (!mayStand(text, given) || given.size() >= text.room) text.ok = false;
  }

  void rebuild(Text &text) {
    if (text.kind == Kind::Edit) return;
    text.choices = text.listed;
    if (text.kind == Kind::PopUp) chosen[text.item] = 0;
  }

  void setNumber(Number &field, const std::string &given) {
    shown[field.item] = given;
    field.ok =
        (!field.isMandatory || !given.empty()) && accepts(field.validator, given, field.value);
  }

  template <typename Fields>
  static auto named(Fields &fields, int identifier, int base, int itemsPerField = 1)
      -> decltype(&fields[0]) {
    const int index = (identifier - base) / itemsPerField;
    if (index < 0 || index >= static_cast<int>(fields.size())) return nullptr;
    return &fields[static_cast<std::size_t>(index)];
  }

  void redisplay(int identifier) {
    const bool clears = identifier < 0;
    const int name = clears ? -identifier : identifier;
    if (Text *text = named(texts, name, kTextId)) {
      if (clears) {
        if (text->kind == Kind::Edit) shown[text->item] = "";
        if (text->kind == Kind::PopUp) chosen[text->item] = 0;
        text->ok = !text->isMandatory;
      } else {
        writeText(*text);
        text->ok = mayStand(*text, text->value);
      }
    } else if (Check *check = named(checks, name, kCheckId)) {
      chosen[check->item] = check->value;
    } else if (Integer *integer = named(integers, name, kIntegerId)) {
      if (clears) {
        shown[integer->item] = "";
        if (integer->isMasked) integer->lastLength = 0;
        integer->ok = !integer->isMandatory;
      } else {
        writeInteger(*integer);
        integer->ok = integerIsAcceptable(*integer);
      }
    } else if (Number *number = named(numbers, name, kNumberId)) {
      if (clears) {
        shown[number->item] = "";
        number->ok = !number->isMandatory;
      } else {
        writeNumber(*number);
        number->ok = numberIsAcceptable(*number);
      }
    } else if (Date *date = named(dates, name, kDateId, 3)) {
      if (clears) {
        for (int part = 0; part < 3; ++part) shown[date->item + part] = "";
        date->ok = !date->isMandatory;
      } else {
        writeDate(*date);
        date->ok = dateIsAcceptable(*date);
      }
    }
  }

  bool everythingIsValid() const {
    const auto ok = [](const auto &field) { return field.ok; };
    return std::all_of(texts.begin(), texts.end(), ok) &&
           std::all_of(integers.begin(), integers.end(), ok) &&
           std::all_of(numbers.begin(), numbers.end(), ok) &&
           std::all_of(dates.begin(), dates.end(), ok);
  }
};

// ---- A random dialog and a random user ----

const std::vector<std::string> kChoices = {"a",         "for\xEAt", "ma\xEFs",
                                           "\xE9t\xE9", "a",        "long texte"};

std::string joined(const std::vector<std::string> &pieces, char separator) {
  std::string all;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i > 0) all += separator;
    all += pieces[i];
  }
  return all;
}

class RandomRun : public DialogTest, public ::testing::WithParamInterface<int> {
 protected:
  RandomRun() : random(static_cast<unsigned>(GetParam())), isSmall(GetParam() % 2 == 1) {}

  // Every second dialog is a small one, in which all fields are valid now and then.
  int textCount() const { return isSmall ? 5 : 20; }
  int integerCount() const { return isSmall ? 1 : 12; }
  int numberCount() const { return isSmall ? 1 : 5; }
  int dateCount() const { return isSmall ? 1 : 4; }

  int integerValue() {
    constexpr int kValues[] = {0, 1, -1, 7, 1234, 32767, 32768, -40000, 2147483647};
    return kValues[random.below(9)];
  }
  int dateValue() {
    constexpr int kValues[] = {0, 20240229, 20230229, 19890714, 101, -5, 99999999, 21001231};
    return kValues[random.below(8)];
  }
  double numberValue() {
    constexpr double kValues[] = {0, 1.5, -2.25, 70.123456, 1e12, 0.004, -0.4};
    return kValues[random.below(7)];
  }

  void describeTexts();
  void describeChecks();
  void describeIntegers();
  void describeNumbers();
  void describeDates();
  void numberItems();
  void expectSame();
  void writeSteps(DialogScript &script, int count);
  void writeStep(DialogScript &script);
  void writeEdit(DialogScript &script, int item);
  int reactTo(const GlobalCall &call);
  void change(Reaction &reaction);
  // The model's side of a step: what the user did, then what the callbacks did.
  void follow(const std::function<void()> &step);

  Random random;
  bool isSmall;
  Model model;
  std::vector<int> editItems;
  std::vector<Reaction> reactions;
};

void RandomRun::describeTexts() {
  TexteDlgBox_param(textCount(), kTextId);
  for (int i = 0; i < textCount(); ++i) {
    Text text{};
    text.kind = i % 5 == 3 ? Kind::PopUp : i % 5 == 4 ? Kind::List : Kind::Edit;
    text.isMasked = text.kind == Kind::Edit && random.oneIn(3);
    text.isMandatory = !random.oneIn(3);
    text.isSet = !random.oneIn(4);
    text.room = isSmall ? 1638 : 409;
    text.longest = random.oneIn(2) ? 5 : text.room - 1;
    text.ok = true;
    text.choices = text.listed = kChoices;
    TexteDlgBox_password(i, text.isMasked);
    TexteDlgBox_mandatory(i, text.isMandatory);
    if (text.kind != Kind::Edit) {
      TexteDlgBox_set_liste(i, joined(kChoices, text.kind == Kind::List ? '$' : ',').c_str());
    }
    if (text.kind == Kind::List) TexteDlgBox_change_liste(i);
    TexteDlgBox_set_ncarac(i, static_cast<int>(text.longest));
    if (text.isSet) {
      text.value =
          random.oneIn(2) ? kChoices[static_cast<std::size_t>(random.below(6))] : random.text(8);
      TexteDlgBox_set(i, text.value.c_str());
    }
    model.texts.push_back(text);
  }
}

void RandomRun::describeChecks() {
  BoolDlgBox_param(3, kCheckId);
  for (int i = 0; i < 3; ++i) {
    model.checks.push_back({random.below(2)});
    BoolDlgBox_set(i, model.checks.back().value);
  }
}

void RandomRun::describeIntegers() {
  constexpr ValidInt_t kValidators[] = {intcod_i, intcod_i_sup0, intcod_i_ssup0};
  IntDlgBox_param(integerCount(), kIntegerId);
  for (int i = 0; i < integerCount(); ++i) {
    Integer field{};
    field.ok = true;
    field.isMandatory = !random.oneIn(3);
    field.isMasked = random.oneIn(2);
    field.isSet = !random.oneIn(4);
    const int mode = random.below(3);
    field.validator = field.isSet ? kValidators[mode] : intcod_i;
    IntDlgBox_mandatory(i, field.isMandatory);
    IntDlgBox_password(i, field.isMasked);
    if (field.isSet) {
      field.value = integerValue();
      IntDlgBox_set(i, field.value, mode);
    }
    model.integers.push_back(field);
  }
}

void RandomRun::describeNumbers() {
  constexpr ValidNum_t kValidators[] = {realcod_d, realcod_d_sup0, realcod_d_ssup0};
  NumDlgBox_param(numberCount(), kNumberId);
  for (int i = 0; i < numberCount(); ++i) {
    Number field{};
    field.ok = true;
    field.isMandatory = !random.oneIn(3);
    field.isSet = !random.oneIn(4);
    field.decimals = random.below(6);
    const int mode = random.below(3);
    field.validator = field.isSet ? kValidators[mode] : realcod_d;
    NumDlgBox_mandatory(i, field.isMandatory);
    NumDlgBox_set_nchiff(i, field.decimals);
    if (field.isSet) {
      field.value = numberValue();
      NumDlgBox_set(i, field.value, mode);
    }
    model.numbers.push_back(field);
  }
}

void RandomRun::describeDates() {
  constexpr ValidInt_t kValidators[] = {intcod_l_sup0, intcod_l_date};
  DateDlgBox_param(dateCount(), kDateId);
  for (int i = 0; i < dateCount(); ++i) {
    Date field{};
    field.ok = true;
    field.isMandatory = !random.oneIn(3);
    field.isSet = !random.oneIn(4);
    const int mode = random.below(2);
    field.validator = field.isSet ? kValidators[mode] : intcod_l;
    DateDlgBox_mandatory(i, field.isMandatory);
    if (field.isSet) {
      field.value = dateValue();
      DateDlgBox_set(i, field.value, mode);
    }
    model.dates.push_back(field);
  }
}

// Gives every field a random rank of its own, and notes its items.
void RandomRun::numberItems() {
  struct Place {
    short *rank;
    int *item;
    int items;
    bool isEdit;
  };
  std::vector<Place> places;
  for (std::size_t i = 0; i < model.texts.size(); ++i) {
    places.push_back({&TDB_rk[i], &model.texts[i].item, 1, model.texts[i].kind == Kind::Edit});
  }
  for (std::size_t i = 0; i < model.checks.size(); ++i) {
    places.push_back({&BDB_rk[i], &model.checks[i].item, 1, false});
  }
  for (std::size_t i = 0; i < model.integers.size(); ++i) {
    places.push_back({&IDB_rk[i], &model.integers[i].item, 1, true});
  }
  for (std::size_t i = 0; i < model.numbers.size(); ++i) {
    places.push_back({&NDB_rk[i], &model.numbers[i].item, 1, true});
  }
  for (std::size_t i = 0; i < model.dates.size(); ++i) {
    places.push_back({&DDB_rk[i], &model.dates[i].item, 3, true});
  }
  places.push_back({&PDB_rk[0], &model.pushItem, 1, false});
  for (std::size_t n = places.size(); n > 1; --n) {
    std::swap(places[n - 1], places[static_cast<std::size_t>(random.below(static_cast<int>(n)))]);
  }
  int item = 3;
  int rank = 0;
  for (const Place &place : places) {
    rank += random.below(3);
    *place.rank = static_cast<short>(rank++);
    *place.item = item;
    for (int n = 0; n < place.items; ++n, ++item) {
      if (place.isEdit) editItems.push_back(item);
    }
  }
}

void RandomRun::expectSame() {
  for (const auto &[item, text] : model.shown) {
    ASSERT_EQ(desk.text(item), readable(std::string_view(text))) << "item " << item;
  }
  for (const auto &[item, value] : model.chosen) {
    ASSERT_EQ(desk.value(item), value) << "item " << item;
  }
  for (std::size_t i = 0; i < model.texts.size(); ++i) {
    ASSERT_EQ(std::string(TDB_pszBuffer[i]), model.texts[i].value) << "text " << i;
    ASSERT_EQ(TDB_bOK[i], model.texts[i].ok) << "text " << i;
  }
  for (std::size_t i = 0; i < model.checks.size(); ++i) {
    ASSERT_EQ(BDB_bFlags[i], model.checks[i].value) << "check box " << i;
  }
  for (std::size_t i = 0; i < model.integers.size(); ++i) {
    ASSERT_EQ(IDB_iInts[i], model.integers[i].value) << "integer " << i;
    ASSERT_EQ(IDB_bOK[i], model.integers[i].ok) << "integer " << i;
    ASSERT_EQ(IDB_lPassw[i], model.integers[i].lastLength) << "integer " << i;
  }
  for (std::size_t i = 0; i < model.numbers.size(); ++i) {
    ASSERT_EQ(NDB_dNums[i], model.numbers[i].value) << "number " << i;
    ASSERT_EQ(NDB_bOK[i], model.numbers[i].ok) << "number " << i;
  }
  for (std::size_t i = 0; i < model.dates.size(); ++i) {
    ASSERT_EQ(DDB_lDates[i], model.dates[i].value) << "date " << i;
    ASSERT_EQ(DDB_bOK[i], model.dates[i].ok) << "date " << i;
  }
  ASSERT_EQ(desk.isEnabled(kOk), model.everythingIsValid());
}

void RandomRun::change(Reaction &reaction) {
  const std::string text = random.oneIn(2) ? kChoices[static_cast<std::size_t>(random.below(6))]
                                           : random.text(random.oneIn(20) ? 3000 : 6);
  switch (random.below(3)) {
    case 0:
      reaction.changes.push_back({Change::TextSet, random.below(textCount()), text});
      EXPECT_EQ(ZRVDlgBox_texte_set(reaction.changes.back().i, text.c_str()), 0);
      return;
    case 1:
      reaction.changes.push_back({Change::ChoicesRebuilt, random.below(textCount()), ""});
      EXPECT_EQ(ZRVDlgBox_texte_set_liste(reaction.changes.back().i), 0);
      return;
    default:
      reaction.changes.push_back({Change::NumberSet, random.below(numberCount()), text});
      EXPECT_EQ(ZRVDlgBox_num_set(reaction.changes.back().i, text.c_str()), 0);
  }
}

// The callback sometimes changes a value, and asks for fields to be shown or cleared.
int RandomRun::reactTo(const GlobalCall &call) {
  Reaction reaction;
  reaction.item = call.item;
  const auto pick = [&](int n) { return random.below(n); };
  if (random.oneIn(4)) {
    const int i = pick(textCount());
    reaction.texts[i] = random.oneIn(2) ? kChoices[static_cast<std::size_t>(pick(6))] : "";
    std::strcpy(call.texts[i], reaction.texts[i].c_str());
  }
  if (random.oneIn(4)) {
    const int i = pick(integerCount());
    call.ints[i] = reaction.integers[i] = integerValue();
  }
  if (random.oneIn(4)) {
    const int i = pick(numberCount());
    call.nums[i] = reaction.numbers[i] = numberValue();
  }
  if (random.oneIn(4)) {
    const int i = pick(dateCount());
    call.dates[i] = reaction.dates[i] = dateValue();
  }
  if (random.oneIn(4)) {
    const int i = pick(3);
    call.bools[i] = reaction.checks[i] = pick(2);
  }
  for (int n = random.oneIn(2) ? pick(4) : 0; n > 0; --n) change(reaction);
  if (random.oneIn(2)) {
    constexpr int kBases[] = {kTextId, kCheckId, kIntegerId, kNumberId, kDateId, kPushId};
    for (int n = pick(6); n > 0; --n) {
      const int identifier = kBases[pick(6)] + pick(22) - 1;
      reaction.redisplay.push_back(random.oneIn(3) ? -identifier : identifier);
    }
  }
  reactions.push_back(reaction);
  return redisplaying(reaction.redisplay)(call);
}

void RandomRun::follow(const std::function<void()> &step) {
  if (HasFatalFailure()) return;
  model.told.clear();
  step();
  // The calls are exactly those that the model expects, in order.
  std::vector<int> told;
  for (const Reaction &reaction : reactions) told.push_back(reaction.item);
  ASSERT_EQ(told, model.told);
  for (const Reaction &reaction : reactions) model.react(reaction);
  reactions.clear();
  expectSame();
}

// One edit, that is one hit: a piece of the text is replaced.
void RandomRun::writeEdit(DialogScript &script, int item) {
  const std::string piece = random.oneIn(60)  ? std::string(model.texts[0].room + 40, 'm')
                            : random.oneIn(3) ? ""
                                              : random.text(3);
  const int from = random.oneIn(2) ? 1000 : random.below(6);
  const int length = random.oneIn(3) ? 1000 : random.below(3);
  script.select(item, from, from + length);
  if (piece.empty()) {
    script.deleteBack(item);
  } else {
    script.paste(item, readable(std::string_view(piece)));
  }
  script.check([=, this] {
    follow([&] {
      std::string &text = model.shown[item];
      const std::size_t begin = std::min(static_cast<std::size_t>(from), text.size());
      const std::size_t end = std::min(static_cast<std::size_t>(from + length), text.size());
      if (!piece.empty()) {
        text.replace(begin, end - begin, piece);
      } else if (begin < end) {
        text.erase(begin, end - begin);
      } else if (begin > 0) {
        text.erase(begin - 1, 1);
      } else {
        return;  // nothing to delete: no hit
      }
      model.edited(item);
    });
  });
}

void RandomRun::writeStep(DialogScript &script) {
  const int what = random.below(20);
  if (what == 0) {
    script.press(model.pushItem).check([this] { follow([&] { model.tell(kPushId, true); }); });
  } else if (what == 1) {
    const int i = random.below(3);
    Check &check = model.checks[static_cast<std::size_t>(i)];
    script.click(check.item).check([&check, i, this] {
      follow([&] {
        check.value = model.chosen[check.item] == 0 ? 1 : 0;
        model.chosen[check.item] = check.value;
        model.tell(kCheckId + i, true);
      });
    });
  } else if (what <= 3) {
    const int i = random.below(textCount() / 5) * 5 + 3;
    Text &text = model.texts[static_cast<std::size_t>(i)];
    if (!text.isSet) return;
    const int k = 1 + random.below(5);  // the script chooses the first of equal entries
    const std::string &choice = kChoices[static_cast<std::size_t>(k % 4)];
    script.choose(text.item, readable(std::string_view(choice))).check([&text, i, k, choice, this] {
      follow([&] {
        model.chosen[text.item] = k % 4 + 1;
        model.storeText(text, choice);
        model.tell(kTextId + i, text.ok);
      });
    });
  } else if (what <= 5) {
    const int i = random.below(textCount() / 5) * 5 + 4;
    Text &text = model.texts[static_cast<std::size_t>(i)];
    if (!text.isSet) return;
    const int row = random.below(6);
    const std::string &value = kChoices[static_cast<std::size_t>(row)];
    const bool isDouble = random.oneIn(3);
    const auto click = [&text, i, value, this] {
      model.storeText(text, value);
      model.tell(kTextId + i, text.ok);
    };
    if (!isDouble) {
      script.clickRow(text.item, row).check([click, this] { follow(click); });
      return;
    }
    // Refused: only the first of the two clicks counts.
    script.doubleClickRow(text.item, row).check([click, this] {
      ++model.finalCalls;
      follow(click);
      EXPECT_EQ(Callbacks::finalCalls.size(), model.finalCalls);
    });
  } else if (what == 6) {
    script.hit(130 + random.below(3)).check([this] { follow([] {}); });
  } else {
    writeEdit(
        script,
        editItems[static_cast<std::size_t>(random.below(static_cast<int>(editItems.size())))]);
  }
}

TEST_P(RandomRun, AgreesWithTheModelAfterEveryHit) {
  constexpr int kSteps = 300;
  describeTexts();
  describeChecks();
  describeIntegers();
  describeNumbers();
  describeDates();
  PushDlgBox_param(1, kPushId);
  numberItems();
  DlgBoxGlobal_set(Callbacks::global);
  DlgBoxFinal_set(Callbacks::final);
  Callbacks::onGlobal = [this](const GlobalCall &call) { return reactTo(call); };
  Callbacks::onFinal = [](const FinalCall &) { return 0; };
  model.fill();
  DialogScript &script = desk.expectDialog("T").check([this] { expectSame(); });
  for (int n = 0; n < kSteps; ++n) writeStep(script);
  script.press(kCancel);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomRun, ::testing::Range(0, 40));

}  // namespace
}  // namespace korvel::test
