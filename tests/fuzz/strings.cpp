// SPDX-License-Identifier: MIT
// Strings, lists and paths of any bytes, in memory of exactly the size that is told, beside what
// the standard library makes of the same.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <korvel/files.h>
#include <korvel/strings.h>

#include "tests/files/volumes.h"
#include "tests/fuzz/target.h"

namespace korvel::test {
namespace {

int sizeOf(std::string_view text) { return static_cast<int>(text.size()); }

void trim(Input &input) {
  const std::string given = text(input, 300);
  const int c = input.ConsumeBool() ? ' ' : number(input, -128, 127);
  const bool isByte = c >= -128 && c <= 127 && c != 0;
  std::string front = given;
  std::string back = given;
  if (isByte) {
    front.erase(0, std::min(front.find_first_not_of(static_cast<char>(c)), front.size()));
    back.erase(back.find_last_not_of(static_cast<char>(c)) + 1);
  }
  Exactly first = Exactly::terminated(given);
  Exactly second = Exactly::terminated(given);
  require(chelicar_d(first.data(), c) == sizeOf(front) && first.text() == front);
  require(chelicar_f(second.data(), c) == sizeOf(back) && second.text() == back);
  if (c != ' ') return;
  first = Exactly::terminated(given);
  second = Exactly::terminated(given);
  require(chelibl_d(first.data()) == sizeOf(front) && first.text() == front);
  require(chelibl_f(second.data()) == sizeOf(back) && second.text() == back);
}

void compare(Input &input) {
  const std::string a = text(input, 300);
  const std::string b = input.ConsumeBool() ? a + text(input, 10) : text(input, 300);
  Exactly first = Exactly::terminated(a);
  Exactly second = Exactly::terminated(b);
  const int order = chcomp(first.data(), second.data());
  require((order == 0) == (a == b));
  require(chcomp(second.data(), first.data()) == -order);
  const std::size_t place = b.empty() ? std::string::npos : b.find(a);
  require(chcher(first.data(), second.data()) ==
          (place == std::string::npos ? -1 : static_cast<int>(place)));
  const int c = number(input, -128, 127);
  const bool isByte = c >= -128 && c <= 127 && c != 0;
  const std::size_t at = isByte ? a.find(static_cast<char>(c)) : std::string::npos;
  require(chcher_c(c, first.data()) == (at == std::string::npos ? -1 : static_cast<int>(at)));
}

void edit(Input &input) {
  const std::string given = text(input, 200);
  const std::string inserted = text(input, 100);
  const int room = sizeOf(given) + 1 + input.ConsumeIntegralInRange(0, 120);
  const int place = number(input, 0, 210);
  Exactly target(room);
  std::memcpy(target.data(), given.c_str(), given.size() + 1);
  Exactly source = Exactly::terminated(inserted);
  const bool fits = sizeOf(given) + sizeOf(inserted) <= room - 1;
  const int length = chinsch(target.data(), room, source.data(), place);
  require(length == (fits ? sizeOf(inserted) : 0));
  std::string expected = given;
  const auto at = static_cast<std::size_t>(std::clamp(place, 0, sizeOf(given)));
  if (fits) expected.insert(at, inserted);
  require(target.text() == expected);

  const int before = sizeOf(expected);
  const int added = chinsch_c(target.data(), room, number(input, -128, 127), place);
  require(added == (before + 1 <= room - 1 ? 1 : 0));

  Exactly shorter = Exactly::terminated(given);
  const int n = number(input, 0, 30);
  chdelch(shorter.data(), n, place);
  expected = given;
  if (n >= 1 && n <= sizeOf(given)) {
    expected.erase(static_cast<std::size_t>(std::clamp(place, 0, sizeOf(given) - 1)),
                   static_cast<std::size_t>(n));
  }
  require(shorter.text() == expected);
}

void runs(Input &input) {
  const std::string a = bytes(input, 100);
  const std::string b = input.ConsumeBool() ? a : bytes(input, 100);
  Exactly first = Exactly::holding(a);
  Exactly second = Exactly::holding(b);
  const int isSame = !a.empty() && a == b;
  require(szcomp(first.data(), first.size(), second.data(), second.size()) == isSame);
  const int likeness = szcompex(first.data(), first.size(), second.data(), second.size());
  require(likeness == szcompex(second.data(), second.size(), first.data(), first.size()));
  require(likeness >= isSame);
  const int open = szcompex2(first.data(), first.size(), second.data(), second.size());
  if (!a.ends_with('*') && !b.ends_with('*')) require(open == likeness);
  const bool isIn = !a.empty() && b.find(a) != std::string::npos;
  require(szincl(first.data(), first.size(), second.data(), second.size()) == isIn);

  const int room = input.ConsumeIntegralInRange(0, 120);
  Exactly target(room);
  const int copied = szcopy(target.data(), room, first.data(), first.size());
  require(copied == (room > 0 && first.size() <= room));
  require(target.bytes().substr(0, a.size()) == a.substr(0, static_cast<std::size_t>(room)));
  Exactly ended(room);
  const int fits = szcopy_0t(ended.data(), room, first.data(), first.size());
  require(fits == (first.size() + 1 <= room));
  if (room > 0) {
    require(ended.bytes().substr(0, static_cast<std::size_t>(std::min(first.size(), room - 1))) ==
            a.substr(0, static_cast<std::size_t>(room - 1)));
    szconcat_0t(ended.data(), room, second.data(), second.size());
    require(std::memchr(ended.data(), '\0', static_cast<std::size_t>(room)) != nullptr);
  }
  szcnum(first.data(), first.size());
  require(first.bytes().find(' ') == std::string::npos);
}

// In one block, where source and target overlap.
void overlaps(Input &input) {
  const std::string given = bytes(input, 200);
  const int from = input.ConsumeIntegralInRange(0, sizeOf(given));
  const int to = input.ConsumeIntegralInRange(0, sizeOf(given));
  const int n = input.ConsumeIntegralInRange(0, sizeOf(given) - from);
  const int room = input.ConsumeIntegralInRange(0, sizeOf(given) - to);
  Exactly block = Exactly::holding(given);
  std::string expected = given;
  const auto copied = static_cast<std::size_t>(std::min(n, room));
  expected.replace(static_cast<std::size_t>(to), copied,
                   given.substr(static_cast<std::size_t>(from), copied));
  if (input.ConsumeBool()) {
    szcopy_overlap(block.data() + to, room, block.data() + from, n);
    return require(block.bytes() == expected);
  }
  szconcat_0t(block.data() + to, room, block.data() + from, n);
  require(block.bytes().substr(0, static_cast<std::size_t>(to)) ==
          given.substr(0, static_cast<std::size_t>(to)));
}

void bounded(Input &input) {
  const std::string given = text(input, 60);
  const std::string added = text(input, 60);
  const int room = input.ConsumeIntegralInRange(0, 130);
  Exactly target(room);
  Exactly first = Exactly::terminated(given);
  Exactly second = Exactly::terminated(added);
  secure_lstrcpy(target.data(), room, first.data());
  if (sizeOf(given) >= room) return require(target.text() == std::string(target.bytes()));
  require(target.text() == given);
  secure_lstrcat(target.data(), room, second.data());
  require(target.text() == (sizeOf(added) < room - sizeOf(given) ? given + added : given));
}

void growing(Input &input) {
  char *buffer = nullptr;
  int capacity = 0;
  std::string all;
  for (int n = input.ConsumeIntegralInRange(0, 8); n > 0; --n) {
    const std::string piece = bytes(input, 60);
    Exactly source = Exactly::holding(piece);
    require(szcopyex(&buffer, &capacity, sizeOf(all), source.data(), source.size()) == 1);
    all += piece;
    require(capacity >= sizeOf(all));
    if (!all.empty()) require(std::memcmp(buffer, all.data(), all.size()) == 0);
  }
  std::free(buffer);
}

void utf8(Input &input, const std::string &given) {
  Exactly source = Exactly::terminated(given);
  Exactly there(3 * sizeOf(given) + 1);
  require(KorvelToUtf8(source.data(), there.data(), there.size()) == 0);
  Exactly back(sizeOf(given) + 1);
  require(KorvelFromUtf8(there.data(), back.data(), back.size()) == 0 && back.text() == given);
  const int lost = KorvelFromUtf8(source.data(), source.data(), source.size());
  const auto marks = std::count(source.data(), source.data() + source.text().size(), '?');
  require(lost >= 0 && lost <= marks && sizeOf(source.text()) <= sizeOf(given));
  Exactly tight(input.ConsumeIntegralInRange(0, 310));
  const int result = KorvelFromUtf8(given.c_str(), tight.data(), tight.size());
  require(result == (sizeOf(source.text()) < tight.size() ? lost : -1));
}

void characterSets(Input &input) {
  const std::string given = text(input, 300);
  Exactly first = Exactly::terminated(given);
  require(strupr(first.data()) == first.data());
  require(first.text().size() == given.size());
  const std::string capitals(first.text());
  strupr(first.data());
  require(first.text() == capitals);
  Exactly second = Exactly::terminated(given);
  w2mstr(second.data());
  m2wstr(second.data());
  require(second.text().size() == given.size());
  utf8(input, given);
}

std::vector<std::string> itemsOf(const std::string &list, const char *separators) {
  std::vector<std::string> items(1);
  for (const char c : list) {
    if (std::strchr(separators, c) != nullptr)
      items.emplace_back();
    else
      items.back() += c;
  }
  return items;
}

void separatedLists(Input &input) {
  const std::string given = text(input, 300);
  const std::vector<std::string> items = itemsOf(given, "+,-");
  Exactly list = Exactly::terminated(given);
  require(Teste_liste(list.data()) == static_cast<int>(items.size()));
  const int index = number(input, 0, static_cast<int>(items.size()));
  const char *item = Get_item_liste(list.data(), index);
  const bool isThere = index >= 0 && index < static_cast<int>(items.size());
  require((item != nullptr) == isThere);
  if (isThere) require(items[static_cast<std::size_t>(index)].substr(0, 63) == item);
  const std::string wanted =
      input.ConsumeBool() ? input.PickValueInArray({std::string("01"), items[0]}) : text(input, 10);
  Exactly run = Exactly::holding(wanted);
  const int found = std::find(items.begin(), items.end(), wanted) != items.end();
  require(Teste_item_liste(list.data(), run.data(), run.size()) == found);
  Exactly open = Exactly::holding(given);
  require(Teste_item_szliste(open.data(), open.size(), run.data(), run.size()) == found);
}

// The items of a list that holds one at least, its empty ones included.
std::vector<std::string> walked(const char *list) {
  std::vector<std::string> items{list};
  for (; ChCh_Is_00(list) == 0; items.emplace_back(list)) list = ChCh_Get_Next_Item(list);
  return items;
}

void deleteOne(Input &input, char *list) {
  std::vector<std::string> items = walked(list);
  const auto n = input.ConsumeIntegralInRange<std::size_t>(0, items.size() - 1);
  char *item = list;
  for (std::size_t before = 0; before < n; ++before) item = ChCh_Get_Next_Item(item);
  ChCh_Delete_Item(item);
  items.erase(items.begin() + static_cast<std::ptrdiff_t>(n));
  if (items.empty()) items.emplace_back();
  require(walked(list) == items);
}

void stringLists(Input &input) {
  const std::string given = text(input, 200);
  const int room = sizeOf(given) + 2 + input.ConsumeIntegralInRange(0, 3);
  Exactly list(room);
  std::memcpy(list.data(), given.c_str(), given.size() + 1);
  ChCh_Put_00(list.data(), room);
  const char separator = input.PickValueInArray({'+', ';', 'a', '\xE9'});
  ChCh_Cut_sep(list.data(), separator);
  require(ChCh_Count_Item(list.data()) == static_cast<int>(walked(list.data()).size()));
  if (input.ConsumeBool()) return deleteOne(input, list.data());
  ChCh_Bind_sep(list.data(), separator);
  const bool isWhole = given.find(std::string(2, separator)) == std::string::npos &&
                       (given.empty() || (given.front() != separator && given.back() != separator));
  if (isWhole) require(list.text() == given);
  Exactly tight(input.ConsumeIntegralInRange(1, 6), 'x');
  tight.data()[input.ConsumeIntegralInRange(0, tight.size() - 1)] = '\0';
  ChCh_Put_00(tight.data(), tight.size());
}

// A path is a name on the volume and nothing else.
void paths(Input &input) {
  static const Volumes volumes;
  const std::string given = input.ConsumeBool() ? "Data:" + text(input, 260) : text(input, 260);
  Exactly path = Exactly::terminated(given);
  Exactly out(256);
  const int length = MAC2UNIX(path.data(), out.data());
  require(length == sizeOf(out.text()));
  std::string expected = volumes.root() + "/";
  for (const char c : given) expected += c == ':' ? '/' : c == '/' ? ':' : c;
  require(out.text() == (expected.size() > 255 ? "" : expected));
  Exactly second(256);
  const int other = BSDMAC2UNIX(path.data(), second.data());
  require(other == sizeOf(second.text()));
  if (given.starts_with("Data:")) require(second.text() == out.text());
  Exactly own(256);
  std::memcpy(own.data(), given.c_str(), std::min<std::size_t>(given.size(), 255) + 1);
  own.data()[255] = '\0';
  MAC2UNIX(own.data(), own.data());
  require(File_Is_Existing(path.data()) + Dir_Is_Existing(path.data()) <= 1);
}

}  // namespace
}  // namespace korvel::test

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace korvel::test;
  Input input(data, size);
  constexpr void (*kParts[])(Input &) = {trim,           compare,     edit,    runs,
                                         overlaps,       bounded,     growing, characterSets,
                                         separatedLists, stringLists, paths};
  for (int parts = 0; parts < 3; ++parts) input.PickValueInArray(kParts)(input);
  return 0;
}
