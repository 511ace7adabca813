// SPDX-License-Identifier: MIT
// What is told of texts, lengths and buffers that cannot be meant.
#include "strings/misuse.h"

#include <climits>
#include <cstdlib>
#include <cstring>

#include <korvel/strings.h>

#include "tests/support/page_end.h"
#include "tests/support/told.h"

namespace korvel::test {
namespace {

char *const kNone = nullptr;

class StringsMisuse : public testing::Test {
 protected:
  // A buffer that holds this text.
  char *with(const char *text) { return std::strcpy(buffer_, text); }

 private:
  char buffer_[128] = "";
};

TEST_F(StringsMisuse, NoText) {
  EXPECT_FAILS(chelibl_f(kNone), 0, "chelibl_f(null): argument 1 is null");
  EXPECT_TOLD(chelibl_d(kNone), "chelibl_d(null): argument 1 is null");
  EXPECT_FAILS(chelicar_f(kNone, '0'), 0, "chelicar_f(null, 48): argument 1 is null");
  EXPECT_TOLD(chelicar_d(kNone, '0'), "chelicar_d(null, 48): argument 1 is null");
  EXPECT_TOLD(chcomp("a", nullptr), "chcomp(\"a\", null): argument 2 is null");
  EXPECT_FAILS(chcher(nullptr, "a"), -1, "chcher(null, \"a\"): argument 1 is null");
  EXPECT_FAILS(chcher_c('a', nullptr), -1, "chcher_c(97, null): argument 2 is null");
  EXPECT_TOLD(chdelch(kNone, 1, 0), "chdelch(null, 1, 0): argument 1 is null");
  EXPECT_FAILS(chinsch(kNone, 5, "a", 0), 0, "chinsch(null, 5, \"a\", 0): argument 1 is null");
  EXPECT_FAILS(chinsch_c(kNone, 5, 'a', 0), 0, "chinsch_c(null, 5, 97, 0): argument 1 is null");
  EXPECT_TOLD(w2mstr(kNone), "w2mstr(null): argument 1 is null");
  EXPECT_TOLD(m2wstr(kNone), "m2wstr(null): argument 1 is null");
  EXPECT_TOLD(strupr(kNone), "strupr(null): argument 1 is null");
  EXPECT_FAILS(Teste_liste(nullptr), 0, "Teste_liste(null): argument 1 is null");
  EXPECT_FAILS(Teste_item_liste("a", nullptr, 0), 0,
               "Teste_item_liste(\"a\", null, 0): argument 2 is null");
  EXPECT_FAILS(Teste_item_szliste(nullptr, 0, "a", 1), 0,
               "Teste_item_szliste(null, 0, \"a\", 1): argument 1 is null");
  EXPECT_FAILS(Get_item_liste(nullptr, 0), nullptr, "Get_item_liste(null, 0): argument 1 is null");
  EXPECT_TOLD(ChCh_Put_00(kNone, 5), "ChCh_Put_00(null, 5): argument 1 is null");
  EXPECT_TOLD(ChCh_Is_00(nullptr), "ChCh_Is_00(null): argument 1 is null");
  EXPECT_TOLD(ChCh_Get_Next_Item(nullptr), "ChCh_Get_Next_Item(null): argument 1 is null");
  EXPECT_TOLD(ChCh_Count_Item(nullptr), "ChCh_Count_Item(null): argument 1 is null");
  EXPECT_TOLD(ChCh_Cut(kNone), "ChCh_Cut(null): argument 1 is null");
  EXPECT_TOLD(ChCh_Cut_sep(kNone, ';'), "ChCh_Cut_sep(null, 59): argument 1 is null");
  EXPECT_TOLD(ChCh_Bind(kNone), "ChCh_Bind(null): argument 1 is null");
  EXPECT_TOLD(ChCh_Bind_sep(kNone, ';'), "ChCh_Bind_sep(null, 59): argument 1 is null");
  EXPECT_TOLD(ChCh_Delete_Item(kNone), "ChCh_Delete_Item(null): argument 1 is null");
  EXPECT_TOLD(secure_lstrcpy(with(""), 5, nullptr),
              "secure_lstrcpy(..., 5, null): argument 3 is null");
  EXPECT_TOLD(secure_lstrcat(kNone, 5, "a"), "secure_lstrcat(null, 5, \"a\"): argument 1 is null");
}

TEST_F(StringsMisuse, ACharacterThatNoByteEquals) {
  EXPECT_TOLD(chelicar_f(with("a"), 0xE9),
              "chelicar_f(\"a\", 233): 233 equals no byte: bytes are signed, so this one is -23");
  EXPECT_FAILS(chcher_c(256, "a"), -1,
               "chcher_c(256, \"a\"): 256 equals no byte: bytes are from -128 to 127");
  EXPECT_TOLD(ChCh_Cut_sep(with("a"), -129),
              "ChCh_Cut_sep(\"a\", -129): -129 equals no byte: bytes are from -128 to 127");
  EXPECT_TOLD(chcher_c(-128, "a"), "");
}

TEST_F(StringsMisuse, ALengthBelow0) {
  EXPECT_FAILS(szcomp("ab", -1, "ab", 2), 0, "szcomp(..., -1, \"ab\", 2): there is no length -1");
  EXPECT_FAILS(szcompex("ab", 2, "ab", -2), 0,
               "szcompex(\"ab\", 2, ..., -2): there is no length -2");
  EXPECT_FAILS(szcompex2("ab", -1, "ab", 2), 0,
               "szcompex2(..., -1, \"ab\", 2): there is no length -1");
  EXPECT_FAILS(szincl("ab", -1, "ab", 2), 0, "szincl(..., -1, \"ab\", 2): there is no length -1");
  EXPECT_TOLD(szcnum(with(" "), -1), "szcnum(..., -1): there is no length -1");
  EXPECT_FAILS(Teste_item_liste("a", "a", -1), 0,
               "Teste_item_liste(\"a\", ..., -1): there is no length -1");
  EXPECT_FAILS(Teste_item_szliste("a", -1, "a", 1), 0,
               "Teste_item_szliste(..., -1, \"a\", 1): there is no length -1");
  EXPECT_FAILS(szcopy(with(""), 5, "ab", -1), 0, "szcopy(..., 5, ..., -1): there is no length -1");
  EXPECT_FAILS(szconcat_0t(with(""), 5, "ab", -1), 0,
               "szconcat_0t(..., 5, ..., -1): there is no length -1");
}

TEST_F(StringsMisuse, ABufferThatIsTooSmall) {
  EXPECT_FAILS(szcopy(with(""), 0, "ab", 2), 0,
               "szcopy(..., 0, \"ab\", 2): a buffer of 0 bytes holds nothing");
  EXPECT_FAILS(szcopy(with(""), 1, "ab", 2), 0,
               "szcopy(..., 1, \"ab\", 2): a buffer of 1 bytes is too small: 2 are needed");
  EXPECT_TOLD(szcopy(with(""), 2, "ab", 2), "");
  EXPECT_FAILS(szcopy_overlap(with(""), 1, "ab", 2), 0,
               "szcopy_overlap(..., 1, \"ab\", 2): a buffer of 1 bytes is too small: 2 are needed");
  EXPECT_FAILS(szcopy_0t(with(""), 2, "ab", 2), 0,
               "szcopy_0t(..., 2, \"ab\", 2): a buffer of 2 bytes is too small: 3 are needed");
  EXPECT_TOLD(szcopy_0t(with(""), 3, "ab", 2), "");
  EXPECT_FAILS(szconcat_0t(with("xy"), 4, "ab", 2), 0,
               "szconcat_0t(..., 4, \"ab\", 2): a buffer of 4 bytes is too small: 5 are needed");
  EXPECT_TOLD(szconcat_0t(with("xy"), 5, "ab", 2), "");
  EXPECT_FAILS(chinsch(with("ad"), 4, "bc", 1), 0,
               "chinsch(\"ad\", 4, \"bc\", 1): a buffer of 4 bytes is too small: 5 are needed");
  EXPECT_TOLD(chinsch(with("ad"), 5, "bc", 1), "");
  EXPECT_FAILS(chinsch_c(with("ad"), 3, 'b', 1), 0,
               "chinsch_c(\"ad\", 3, 98, 1): a buffer of 3 bytes is too small: 4 are needed");
  PageEnd unread("xxxx");
  EXPECT_TOLD(chinsch(unread.data(), 0, "bc", 1),
              "chinsch(..., 0, \"bc\", 1): a buffer of 0 bytes holds nothing");
  EXPECT_TOLD(chinsch_c(unread.data(), -1, 'b', 1),
              "chinsch_c(..., -1, 98, 1): a buffer of -1 bytes holds nothing");
  EXPECT_TOLD(secure_lstrcpy(with("xy"), 3, "abc"),
              "secure_lstrcpy(..., 3, \"abc\"): a buffer of 3 bytes is too small: 4 are needed");
  EXPECT_TOLD(secure_lstrcpy(with("xy"), 4, "abc"), "");
  EXPECT_TOLD(secure_lstrcat(with("ab"), 4, "cd"),
              "secure_lstrcat(..., 4, \"cd\"): a buffer of 4 bytes is too small: 5 are needed");
  EXPECT_TOLD(secure_lstrcat(with("ab"), 5, "cd"), "");
  EXPECT_TOLD(ChCh_Put_00(with("ab"), 3),
              "ChCh_Put_00(..., 3): a buffer of 3 bytes is too small: 4 are needed");
  EXPECT_TOLD(ChCh_Put_00(with("ab"), 4), "");
}

TEST_F(StringsMisuse, MoreThanThereIs) {
  EXPECT_TOLD(chdelch(with("abc"), 4, 0),
              "chdelch(\"abc\", 4, 0): nothing is deleted: 4 characters are more than the 3 of the "
              "text");
  EXPECT_TOLD(chdelch(with("abc"), 3, 0), "");
  EXPECT_TOLD(chdelch(with("abc"), -1, 0), "chdelch(\"abc\", -1, 0): there is no length -1");
  EXPECT_FAILS(Get_item_liste("a+b", 2), nullptr,
               "Get_item_liste(\"a+b\", 2): there is no item 2: the list has 2, from 0 to 1");
  EXPECT_FAILS(Get_item_liste("a+b", -1), nullptr,
               "Get_item_liste(\"a+b\", -1): there is no item -1: the list has 2, from 0 to 1");
  EXPECT_TOLD(Get_item_liste("a+b", 1), "");
  const std::string item(64, 'a');
  EXPECT_TOLD(Get_item_liste(item.c_str(), 0),
              "Get_item_liste(\"" + item.substr(0, 60) +
                  "\"..., 0): the item has 64 characters and is cut to 63");
}

TEST_F(StringsMisuse, AGrowableBufferOfOtherSizes) {
  char *buffer = nullptr;
  int capacity = 0;
  EXPECT_FAILS(szcopyex(&buffer, &capacity, -1, "a", 1), 0,
               "szcopyex(..., ..., -1, \"a\", 1): there is no length -1");
  EXPECT_FAILS(szcopyex(&buffer, &capacity, 0, "a", -1), 0,
               "szcopyex(..., ..., 0, ..., -1): there is no length -1");
  EXPECT_FAILS(szcopyex(&buffer, &capacity, 1, "a", 1), 0,
               "szcopyex(..., ..., 1, \"a\", 1): 1 bytes cannot be in use: the buffer has 0");
  EXPECT_FAILS(szcopyex(nullptr, &capacity, 0, "a", 1), 0,
               "szcopyex(null, ..., 0, \"a\", 1): argument 1 is null");
  EXPECT_TOLD(szcopyex(&buffer, &capacity, 0, "a", 1), "");
  capacity = INT_MAX - 1;
  EXPECT_FAILS(
      szcopyex(&buffer, &capacity, INT_MAX - 1, "a", 1), 0,
      "szcopyex(..., ..., 2147483646, \"a\", 1): the buffer would have more than 2147483647 "
      "bytes");
  std::free(buffer);
}

TEST_F(StringsMisuse, AConversion) {
  char out[4];
  EXPECT_FAILS(KorvelFromUtf8(nullptr, out, 4), -1,
               "KorvelFromUtf8(null, ..., 4): argument 1 is null");
  EXPECT_FAILS(KorvelFromUtf8("abcd", out, 4), -1,
               "KorvelFromUtf8(..., ..., 4): the converted text has no room in 4 bytes: 5 are "
               "needed");
  EXPECT_FAILS(KorvelToUtf8("\xE9\xE9", out, 4), -1,
               "KorvelToUtf8(\"éé\", ..., 4): the converted text has no room in 4 bytes: 5 are "
               "needed");
  EXPECT_FAILS(KorvelToUtf8("\xC3\xA9", out, 4), -1,
               "KorvelToUtf8(\"Ã©\", ..., 4): the text looks like UTF-8: texts are CP1252");
  char longer[8];
  EXPECT_TOLD(KorvelToUtf8("\xC3\xA9", longer, 8),
              "KorvelToUtf8(\"Ã©\", ..., 8): the text looks like UTF-8: texts are CP1252");
  EXPECT_TOLD(KorvelFromUtf8("\xC3\xA9", out, 4), "");
}

TEST_F(StringsMisuse, OrdinaryAnswersAreNone) {
  EXPECT_TOLD(chcher("x", "abc"), "");
  EXPECT_TOLD(chcher_c('x', "abc"), "");
  EXPECT_TOLD(szcomp("ab", 2, "a", 1), "");
  EXPECT_TOLD(szincl("ab", 0, "a", 1), "");
  EXPECT_TOLD(Teste_item_liste("a+b", "c", 1), "");
  EXPECT_TOLD(ChCh_Is_00("a\0b\0"), "");
}

}  // namespace
}  // namespace korvel::test
