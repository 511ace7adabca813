// SPDX-License-Identifier: MIT
// The functions of texts, numbers and dates. Nearly all of them ask nobody for anything, which
// their rows hold.
#include <cstdlib>

#include <korvel/codecs.h>
#include <korvel/dates.h>
#include <korvel/strings.h>
#include <korvel/version.h>

#include "tests/faults/operations.h"

namespace korvel::faults {
namespace {

// A buffer that each call finds filled anew.
struct Text {
  Text(std::string_view content) { bytes[content.copy(bytes, sizeof bytes - 2)] = '\0'; }
  operator char *() { return bytes; }
  char bytes[64] = {};
};

using namespace std::string_view_literals;

// What a function of one text gives, and what it makes of the text.
template <typename Function, typename... Rest>
Answer changed(Function function, std::string_view content, Rest... rest) {
  Text text(content);
  if constexpr (std::is_void_v<decltype(function(text, rest...))>) {
    function(text, rest...);
    return {text.bytes};
  } else {
    return {function(text, rest...), text.bytes};
  }
}

// The same for a number, or two, read from a text.
template <typename Value>
Answer readBy(int (*function)(char *, Value *), std::string_view content) {
  Text text(content);
  Value value = 0;
  const int status = function(text, &value);
  return {status, value, text.bytes};
}
template <typename Value>
Answer readBy(int (*function)(const char *, int, Value *), std::string_view text) {
  Value value = 0;
  const int status = function(text.data(), static_cast<int>(text.size()), &value);
  return {status, value};
}

// A text written by a function into a buffer, its last parameter.
template <typename Function, typename... Arguments>
Answer writtenBy(Function function, Arguments... arguments) {
  Text out("");
  if constexpr (std::is_void_v<decltype(function(arguments..., out))>) {
    function(arguments..., out);
    return {out.bytes};
  } else {
    return {function(arguments..., out), out.bytes};
  }
}

constexpr Operation kStrings[] = {
    {"KorvelVersion", nullptr, [] { return Answer{KorvelVersion()}; }, KORVEL_VERSION, nullptr},
    {"chelibl_f", nullptr, [] { return changed(chelibl_f, "ab  "); }, "2", nullptr},
    {"chelibl_d", nullptr, [] { return changed(chelibl_d, "  ab"); }, "2", nullptr},
    {"chelicar_f", nullptr, [] { return changed(chelicar_f, "1500", '0'); }, "2", nullptr},
    {"chelicar_d", nullptr, [] { return changed(chelicar_d, "0015", '0'); }, "2", nullptr},
    {"chcomp", nullptr, [] { return Answer{chcomp("ab", "aa")}; }, "1", nullptr},
    {"chcher", nullptr, [] { return Answer{chcher("lo", "allo")}; }, "2", nullptr},
    {"chcher_c", nullptr, [] { return Answer{chcher_c('l', "allo")}; }, "1", nullptr},
    {"chdelch", nullptr, [] { return changed(chdelch, "abcdef", 2, 1); }, "adef", nullptr},
    {"chinsch", nullptr, [] { return changed(chinsch, "ad", 5, "bc", 1); }, "2", nullptr},
    {"chinsch_c", nullptr, [] { return changed(chinsch_c, "ab", 4, 'x', 0); }, "1", nullptr},
    {"szcnum", nullptr, [] { return changed(szcnum, "  15", 4); }, "1", nullptr},
    {"szcopy", nullptr, [] { return changed(szcopy, "", 3, "abcdef", 6); }, "0", nullptr},
    {"szcopy_overlap", nullptr, [] { return changed(szcopy_overlap, "", 9, "ab", 2); }, "1",
     nullptr},
    {"szcomp", nullptr, [] { return Answer{szcomp("AB", 2, "AB", 2)}; }, "1", nullptr},
    {"szcompex", nullptr, [] { return Answer{szcompex("A?C", 3, "ABC", 3)}; }, "1", nullptr},
    {"szcompex2", nullptr, [] { return Answer{szcompex2("AB*", 3, "ABCD", 4)}; }, "1", nullptr},
    {"szincl", nullptr, [] { return Answer{szincl("bc", 2, "abcd", 4)}; }, "1", nullptr},
    {"szcopy_0t", nullptr, [] { return changed(szcopy_0t, "", 4, "abcdef", 3); }, "1", nullptr},
    {"szconcat_0t", nullptr, [] { return changed(szconcat_0t, "ab", 8, "cd", 2); }, "1", nullptr},
    {"szcopyex", nullptr,
     [] {
       char *buffer = nullptr;
       int capacity = 0;
       const int result = szcopyex(&buffer, &capacity, 0, "abcdef", 6);
       const Answer answer{result, capacity,
                           result == 1 ? std::string_view(buffer, 6) : std::string_view()};
       std::free(buffer);
       return answer;
     },
     "1", "0"},
    {"szcopyex, in a larger buffer", nullptr,
     [] {
       int capacity = 2;
       auto *buffer = static_cast<char *>(std::malloc(2));
       if (buffer == nullptr) return Answer{0};
       buffer[0] = 'x';
       const int result = szcopyex(&buffer, &capacity, 1, "abcdef", 6);
       // Without room the old buffer stays.
       const Answer answer{result, capacity, std::string_view(buffer, result == 1 ? 7 : 1)};
       std::free(buffer);
       return answer;
     },
     "1", "0"},
    {"secure_lstrcpy", nullptr, [] { return changed(secure_lstrcpy, "xy", 4, "abc"); }, "abc",
     nullptr},
    {"secure_lstrcat", nullptr, [] { return changed(secure_lstrcat, "ab", 5, "cd"); }, "abcd",
     nullptr},
    {"w2mstr", nullptr, [] { return changed(w2mstr, "\xE9t\xE9"); }, "\x8Et\x8E", nullptr},
    {"m2wstr", nullptr, [] { return changed(m2wstr, "\x8Et\x8E"); }, "\xE9t\xE9", nullptr},
    {"strupr", nullptr, [] { return changed(strupr, "\x8Et\x8E"); }, "ETE", nullptr},
    {"KorvelFromUtf8", nullptr,
     [] {
       Text out("");
       const int lost = KorvelFromUtf8("\xC3\xA9t\xC3\xA9 \xCF\x80", out, sizeof out.bytes);
       return Answer{lost, out.bytes};
     },
     "1", nullptr},
    {"KorvelToUtf8", nullptr,
     [] {
       Text out("");
       const int lost = KorvelToUtf8("\xE9t\xE9", out, sizeof out.bytes);
       return Answer{lost, out.bytes};
     },
     "0", nullptr},
    {"Teste_liste", nullptr, [] { return Answer{Teste_liste("a+b,c-d")}; }, "4", nullptr},
    {"Teste_item_liste", nullptr, [] { return Answer{Teste_item_liste("ab+abc", "ab", 2)}; }, "1",
     nullptr},
    {"Teste_item_szliste", nullptr,
     [] { return Answer{Teste_item_szliste("ab+abc", 6, "abc", 3)}; }, "1", nullptr},
    {"Get_item_liste", nullptr, [] { return Answer{Get_item_liste("a+b,c", 2)}; }, "c", nullptr},
    {"ChCh_Put_00", nullptr, [] { return changed(ChCh_Put_00, "ab", 4); }, "ab", nullptr},
    {"ChCh_Is_00", nullptr, [] { return changed(ChCh_Is_00, "b\0"sv); }, "1", nullptr},
    {"ChCh_Get_Next_Item", nullptr, [] { return changed(ChCh_Get_Next_Item, "a\0b\0"sv); }, "b",
     nullptr},
    {"ChCh_Count_Item", nullptr, [] { return changed(ChCh_Count_Item, "a\0b\0"sv); }, "2", nullptr},
    {"ChCh_Cut", nullptr, [] { return changed(ChCh_Cut, "a+b-c"); }, "a", nullptr},
    {"ChCh_Cut_sep", nullptr, [] { return changed(ChCh_Cut_sep, "a;b+c", ';'); }, "a", nullptr},
    {"ChCh_Bind", nullptr, [] { return changed(ChCh_Bind, "a\0b\0"sv); }, "a+b", nullptr},
    {"ChCh_Bind_sep", nullptr, [] { return changed(ChCh_Bind_sep, "a\0b\0"sv, ';'); }, "a;b",
     nullptr},
    {"ChCh_Delete_Item", nullptr, [] { return changed(ChCh_Delete_Item, "a\0b\0"sv); }, "b",
     nullptr},
};

constexpr Operation kCodecs[] = {
    {"intcod_i", nullptr, [] { return readBy(intcod_i, " +12 "); }, "0", nullptr},
    {"intcod_l", nullptr, [] { return readBy(intcod_l, "032768"); }, "0", nullptr},
    {"intdco_i", nullptr,
     [] {
       Text out("");
       return Answer{intdco_i(-5, out, 7), out.bytes};
     },
     "0", nullptr},
    {"intdco_l", nullptr,
     [] {
       Text out("");
       return Answer{intdco_l(40000, out, 12), out.bytes};
     },
     "0", nullptr},
    {"intcod_i_sup0", nullptr, [] { return readBy(intcod_i_sup0, "-5"); }, "1", nullptr},
    {"intcod_i_ssup0", nullptr, [] { return readBy(intcod_i_ssup0, "5"); }, "0", nullptr},
    {"intcod_l_sup0", nullptr, [] { return readBy(intcod_l_sup0, "40000"); }, "0", nullptr},
    {"realcod_d", nullptr, [] { return readBy(realcod_d, " -1,5 "); }, "0", nullptr},
    {"realcod_d, many digits", nullptr,
     [] { return readBy(realcod_d, "123456789012345678901234567890,5e-20"); }, "0", nullptr},
    {"realcod_f", nullptr, [] { return readBy(realcod_f, "0,1"); }, "0", nullptr},
    {"realdco_d", nullptr,
     [] {
       Text out("");
       return Answer{realdco_d(1.25, out, 32, 1), out.bytes};
     },
     "0", nullptr},
    {"realdco_sd", nullptr,
     [] {
       Text out("");
       return Answer{realdco_sd(1e300, out, 32, 3), out.bytes};
     },
     "0", nullptr},
    {"realcod_d_sup0", nullptr, [] { return readBy(realcod_d_sup0, "0,5"); }, "0", nullptr},
    {"realcod_d_ssup0", nullptr, [] { return readBy(realcod_d_ssup0, "0"); }, "1", nullptr},
    {"utrealds", nullptr,
     [] {
       double x = -2.75, integral = 0, fraction = 0;
       utrealds(&x, &integral, &fraction);
       return Answer{integral, fraction};
     },
     "-2", nullptr},
    {"utrealfs", nullptr,
     [] {
       float x = 2.75F, integral = 0, fraction = 0;
       utrealfs(&x, &integral, &fraction);
       return Answer{integral, fraction};
     },
     "2", nullptr},
    {"LongToNUM", nullptr,
     [] {
       Text out("");
       return Answer{LongToNUM(7, out, 2), out.bytes};
     },
     "0", nullptr},
    {"IntToNUM", nullptr,
     [] {
       Text out("");
       return Answer{IntToNUM(2004, out, 4), out.bytes};
     },
     "0", nullptr},
    {"NUMToLong", nullptr, [] { return readBy(NUMToLong, " 042"); }, "0", nullptr},
    {"NUMToInt", nullptr, [] { return readBy(NUMToInt, "032767"); }, "0", nullptr},
    {"NUMP100ToLong", nullptr, [] { return readBy(NUMP100ToLong, "25 %"); }, "0", nullptr},
    {"NUMPInterToLong", nullptr,
     [] {
       int low = 0, high = 0;
       return Answer{NUMPInterToLong("[10-20]", 7, &low, &high), low, high};
     },
     "0", nullptr},
    {"DoubleToNUMD", nullptr,
     [] {
       Text out("");
       return Answer{DoubleToNUMD(2.5, out, 6, 1), out.bytes};
     },
     "1", nullptr},
    {"NUMDToDouble", nullptr, [] { return readBy(NUMDToDouble, "12,5%"); }, "0", nullptr},
    {"Teste_NUM_liste", nullptr, [] { return Answer{Teste_NUM_liste("1+2,3")}; }, "3", nullptr},
    {"Get_NUM_liste", nullptr, [] { return Answer{Get_NUM_liste("1+2,3", 1)}; }, "2", nullptr},
};

// The clock is read, but not told: it goes on.
template <typename Function>
Answer clockBy(Function function) {
  Text out("");
  const int status = function(out);
  return {status, static_cast<int>(std::string_view(out).size())};
}

constexpr Operation kDates[] = {
    {"ZRV_Build_Date", nullptr, [] { return writtenBy(ZRV_Build_Date, "07/03/2004"); }, "20040307",
     nullptr},
    {"ZRV_Build_Date_short", nullptr, [] { return writtenBy(ZRV_Build_Date_short, "07/03/04"); },
     "0", nullptr},
    {"ZRV_Build_Date_long", nullptr,
     [] { return writtenBy(ZRV_Build_Date_long, "07/03/04", "09:05"); }, "0", nullptr},
    {"ZRV_Build_Date_slong", nullptr,
     [] { return writtenBy(ZRV_Build_Date_slong, "07/03/04", "09:05:30"); }, "0", nullptr},
    {"ZRV_Build_Date_SV", nullptr, [] { return writtenBy(ZRV_Build_Date_SV, "07/03/04"); }, "0",
     nullptr},
    {"ZRV_Inv_Date", nullptr, [] { return writtenBy(ZRV_Inv_Date, "20040307"); }, "07/03/2004",
     nullptr},
    {"ZRV_Inv_Date_2", nullptr, [] { return writtenBy(ZRV_Inv_Date_2, "20040307"); }, "07/03/04",
     nullptr},
    {"ZRV_Inv_Date_Time", nullptr, [] { return writtenBy(ZRV_Inv_Date_Time, "20040307090530"); },
     "07/03/2004 09:05:30", nullptr},
    {"ZRV_Reduc_Date", nullptr, [] { return writtenBy(ZRV_Reduc_Date, "07/03/2004"); }, "10",
     nullptr},
    {"ZRV_Get_Date_short", nullptr, [] { return clockBy(ZRV_Get_Date_short); }, "0", nullptr},
    {"ZRV_Get_Date_long", nullptr, [] { return clockBy(ZRV_Get_Date_long); }, "0", nullptr},
    {"ZRV_Get_Date_slong", nullptr, [] { return clockBy(ZRV_Get_Date_slong); }, "0", nullptr},
    {"utdately", nullptr, [] { return Answer{utdately(2000)}; }, "1", nullptr},
    {"utdatedm", nullptr, [] { return Answer{utdatedm(2004, 2)}; }, "29", nullptr},
    {"utdatedw", nullptr, [] { return Answer{utdatedw(2000, 1, 1)}; }, "6", nullptr},
    {"Validate_Date", nullptr, [] { return Answer{Validate_Date(20000229)}; }, "1", nullptr},
    {"Get_Date_Incr", nullptr, [] { return Answer{Get_Date_Incr(20001231, 1)}; }, "20010101",
     nullptr},
    {"Get_Date_Diff", nullptr, [] { return Answer{Get_Date_Diff(20000315, 20)}; }, "20000224",
     nullptr},
    {"Min_depuis_org", nullptr, [] { return Answer{Min_depuis_org(19990101, 0, 1999)}; }, "1440",
     nullptr},
    {"utdatemy", nullptr, [] { return Answer{utdatemy(1)}; }, "Janvier", nullptr},
    {"utdatedn", nullptr, [] { return Answer{utdatedn(KorvelSaturday)}; }, "Samedi", nullptr},
    {"utdatemm", nullptr, [] { return Answer{utdatemm(1)}; }, "JAN", nullptr},
    {"utdatedd", nullptr, [] { return Answer{utdatedd(KorvelSunday)}; }, "DIM", nullptr},
};

}  // namespace

std::span<const Operation> stringOperations() { return kStrings; }
std::span<const Operation> codecOperations() { return kCodecs; }
std::span<const Operation> dateOperations() { return kDates; }

}  // namespace korvel::faults
