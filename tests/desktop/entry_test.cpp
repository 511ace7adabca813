// SPDX-License-Identifier: MIT
// What is entered with real keys and clicks, and what the application then holds.
#include "tests/desktop/dialog_host.h"

namespace korvel::test {
namespace {

// The pixels in which two pictures of one place differ.
int differing(const Picture &a, const Picture &b) {
  int count = 0;
  for (std::size_t n = 0; n < a.pixels.size(); ++n) count += a.pixels[n] == b.pixels[n] ? 0 : 1;
  return count;
}

// A tooltip lies below the pointer.
Picture belowThe(Place pointer) { return picture(pointer.x, pointer.y + 18, 200, 30); }

// A tooltip comes and goes after a moment.
bool comesUp(Place pointer, const Picture &before) {
  constexpr int kSome = 1500;
  return waitUntil(kPatience, [&] { return differing(belowThe(pointer), before) > kSome; });
}

bool goesAway(Place pointer, const Picture &before) {
  return waitUntil(kPatience, [&] { return differing(belowThe(pointer), before) == 0; });
}

TEST(Entry, WhereTheMouseRestsOnAMarkedFieldAndOnTheGreyOkItTellsWhy) {
  DialogHost host;
  for (const Place place : {kPlainField, kOkButton}) {
    const Picture before = belowThe(place);
    restOn(place);
    EXPECT_TRUE(comesUp(place, before)) << place.y;
    restOn(kCancelButton);
    EXPECT_TRUE(goesAway(place, before)) << place.y;
  }
  const Picture before = belowThe(kOkButton);
  restOn(kOkButton);
  EXPECT_TRUE(comesUp(kOkButton, before));
  write("x");
  EXPECT_TRUE(goesAway(kOkButton, before)) << "OK is no longer grey";
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 x"}));
}

TEST(Entry, AccentsComeBackAsTheirStoredBytes) {
  DialogHost host;
  write("Élodie Lefèvre, ça où ê ï œ 37°");
  press("Return");
  EXPECT_TRUE(host.endedWith(
      {"result 1", "text 0 \\xC9lodie Lef\\xE8vre, \\xE7a o\\xF9 \\xEA \\xEF \\x9C 37\\xB0"}));
}

TEST(Entry, OpeningAndAcceptingChangesNoByteOfATextNobodyEdited) {
  DialogHost host("no-edit");
  press("Return");
  std::string bytes;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    char text[8];
    std::snprintf(text, sizeof text, "\\x%02X", byte);
    bytes += text;
  }
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 " + bytes, "text 1 " + bytes}));
}

TEST(Entry, EveryKeyIsAHitOfItsOwn) {
  DialogHost host;
  write("abcde");
  press("BackSpace Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 abcd"}));
  EXPECT_EQ(host.count("hit 100"), 6);
}

TEST(Entry, AComposedCharacterIsOneHit) {
  DialogHost host;
  press("dead_circumflex e Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 \\xEA"}));
  EXPECT_EQ(host.count("hit 100"), 1);
}

TEST(Entry, CharactersWithoutAByteAreRefusedAndTheRestStays) {
  DialogHost host;
  write("aŽb•c¡dˆe中f");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 abcdef"}));
  EXPECT_EQ(host.count("hit 100"), 6);
}

TEST(Entry, APasteIsOneHitAndLosesItsLineEnd) {
  DialogHost host;
  setClipboard("Crémieux\n");
  press("ctrl+v Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 Cr\\xE9mieux"}));
  EXPECT_EQ(host.count("hit 100"), 1);
}

TEST(Entry, TheMiddleButtonAndItsKeysPasteWhatIsSelectedElsewhere) {
  DialogHost host;
  setClipboard("ailleurs");
  setSelection("Crémieux\n");
  clickMiddle(kPlainField);
  press("ctrl+shift+Insert Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 Cr\\xE9mieuxCr\\xE9mieux"}));
  EXPECT_EQ(host.count("hit 100"), 2);
}

TEST(Entry, APasteWithACharacterWithoutAByteIsRefusedWhole) {
  DialogHost host;
  write("ab");
  setClipboard("x中y");
  press("ctrl+v");
  write("c");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 abc"}));
}

TEST(Entry, UndoIsAHitAndBringsTheTextBack) {
  DialogHost host;
  write("abc");
  press("ctrl+a");
  write("x");
  press("ctrl+z Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 abc"}));
  EXPECT_EQ(host.count("hit 100"), 5);
}

// The line of the output with the first text.
std::string firstText(const DialogHost &host) {
  for (const std::string &line : host.output())
    if (line.starts_with("text 0 ")) return line;
  return {};
}

TEST(Entry, ATextOfSeveralLinesIsEnteredAsOneAndWrapped) {
  constexpr int kLeft = 227, kTop = 101, kLineHeight = 15;  // of the text
  DialogHost host("lines");
  const auto inkOfLine = [](int line) {
    return picture(kLeft, kTop + kLineHeight * line, 150, kLineHeight).darkPixels();
  };
  setClipboard("libre\n");
  write("Patient apyrétique");
  press("space dead_circumflex e");
  write("tre ausculté, rien de plus ");
  press("ctrl+v Tab");
  for (const int line : {0, 1}) EXPECT_GT(inkOfLine(line), 10) << line;
  press("shift+Tab ctrl+Home Down");
  write("2 ");
  press("Return");
  ASSERT_TRUE(host.endedWith({"result 1"}));
  std::string text = firstText(host);
  const std::size_t at = text.find("2 ");
  ASSERT_NE(at, std::string::npos) << text;
  EXPECT_EQ(text[at - 1], ' ') << "a line begins with a word: " << text;
  EXPECT_EQ(text.erase(at, 2),
            "text 0 Patient apyr\\xE9tique \\xEAtre auscult\\xE9, rien de plus libre");
  EXPECT_EQ(host.count("hit 100"), 50);
}

TEST(Entry, CopyAndPasteWorkBetweenFields) {
  DialogHost host;
  write("Anaïs");
  press("ctrl+a ctrl+c Right space ctrl+v Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 Ana\\xEFs Ana\\xEFs"}));
}

TEST(Entry, AMaskedTextGivesOutOnlyItsAsterisks) {
  DialogHost host;
  setClipboard("before");
  write("x");
  press("Tab");
  write("secret");
  press("ctrl+a ctrl+c");
  EXPECT_EQ(clipboard(), "******");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 1 secret"}));
}

TEST(Entry, AMaskedTextLooksTheSameWhateverItIs) {
  DialogHost host;
  press("Tab");
  write("iiiiiiiiii");
  press("Tab");
  const Picture thin = picture(110, 36, 220, 26);
  press("shift+Tab");
  write("WWWWWWWWWW");
  press("Tab");
  const Picture wide = picture(110, 36, 220, 26);
  EXPECT_GT(thin.darkPixels(), 20);
  EXPECT_TRUE(thin.pixels == wide.pixels);
  press("Escape");
  EXPECT_TRUE(host.endedWith({"result 0", "text 1 WWWWWWWWWW"}));
}

TEST(Entry, TheCursorStaysInItsPlaceInAMaskedText) {
  DialogHost host;
  write("x");
  press("Tab");
  write("abcdef");
  press("Home Right");
  write("X");
  press("Return");
  // What follows the new character is matched by position, so "b" is gone and "f" stays.
  EXPECT_TRUE(host.endedWith({"result 1", "text 1 aXcdef"}));
}

TEST(Entry, AMaskedIntegerKeepsItsDigits) {
  DialogHost host;
  write("x");
  press("Tab Tab Tab End");
  write("56");
  press("BackSpace");
  write("7");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "int 1 123457"}));
}

TEST(Entry, ABurstOfKeysIntoAMaskedIntegerLosesNone) {
  DialogHost host;
  write("x");
  press("Tab Tab Tab ctrl+a");
  burst("1234567890");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "int 1 1234567890"}));
}

TEST(Entry, NumbersTakeAPointOrAComma) {
  DialogHost host;
  write("x");
  press("Tab Tab Tab Tab");
  write("2,75");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "num 0 2.75"}));
}

TEST(Entry, ADateIsThreeFieldsAndChecked) {
  DialogHost host;
  write("x");
  press("Tab Tab Tab Tab Tab Tab Tab");  // the year
  write("1999");
  press("Return");  // the 29th of February: not accepted
  EXPECT_EQ(activeWindow(), kTitle);
  press("shift+Tab shift+Tab");
  write("28");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "date 0 19990228"}));
}

TEST(Entry, APopUpIsChosenFromWithKeysAndMouse) {
  DialogHost host;
  write("x");
  click({200, 161});
  press("Down Return");
  EXPECT_TRUE(host.says("hit 102"));
  EXPECT_EQ(activeWindow(), kTitle);
  click({200, 161});
  press("Up Escape");
  EXPECT_EQ(activeWindow(), kTitle);
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 2 No\\xEBl"}));
}

TEST(Entry, ChoicesWithCircumflexAndDiaeresisAreFoundAgain) {
  DialogHost host;
  write("x");
  click({200, 161});
  press("End Return Return");
  EXPECT_TRUE(host.endedWith({"result 1",
                              "text 2 Na\\xEF"
                              "f"}));
}

TEST(Entry, AClickInAListChoosesItsRow) {
  DialogHost host;
  write("x");
  click(listRow(2));
  EXPECT_TRUE(host.says("hit 103"));
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 3 Chlo\\xEB"}));
}

TEST(Entry, ADoubleClickInAListAccepts) {
  DialogHost host;
  write("x");
  click(listRow(0), 2);
  EXPECT_TRUE(host.endedWith({"result 1", "text 3 F\\xE9minin"}));
}

TEST(Entry, ACheckBoxTurnsWithClickAndSpace) {
  DialogHost host;
  write("x");
  click(kCheckBox);
  EXPECT_TRUE(host.says("hit 500"));
  press("space space Return");
  EXPECT_TRUE(host.endedWith({"result 1", "bool 0 1"}));
  EXPECT_EQ(host.count("hit 500"), 3);
}

TEST(Entry, APushButtonRunsItsActionThenTheGlobalCallback) {
  DialogHost host;
  click(kActionButton);
  EXPECT_TRUE(host.says("hit 600"));
  press("Escape");
  EXPECT_TRUE(host.endedWith({"action 1", "hit 600", "result 0"}));
}

TEST(Entry, ARefusedEntryStaysOpen) {
  DialogHost host("refuse");
  write("non");
  press("Return");
  EXPECT_TRUE(host.says("final 0"));
  EXPECT_EQ(activeWindow(), kTitle);
  press("ctrl+a");
  write("oui");
  click(kOkButton);
  EXPECT_TRUE(host.endedWith({"final 0", "final 1", "result 1", "text 0 oui"}));
}

}  // namespace
}  // namespace korvel::test
