// SPDX-License-Identifier: MIT
// Message boxes as real windows.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/desktop/screen_user.h"

namespace korvel::test {
namespace {

using Lines = std::vector<std::string>;

constexpr int kScreenWidth = 1280, kScreenHeight = 1024;

// Places inside the buttons of a box of 400 x 90, and around its text and icon.
constexpr Place kYesButton{240, 68}, kNoButton{340, 68}, kOkButton{340, 68};

class MessageHost : public Application {
 public:
  explicit MessageHost(std::vector<std::string> arguments, std::vector<std::string> own = {})
      : Application(command(std::move(arguments)), environment(std::move(own))) {}

  // Waits for the end; what the application wrote.
  Lines ended() {
    EXPECT_EQ(wait(), 0);
    return output();
  }

 private:
  static std::vector<std::string> command(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), MESSAGE_HOST);
    return arguments;
  }
  static std::vector<std::string> environment(std::vector<std::string> own) {
    own.push_back("LC_ALL=C.UTF-8");
    return own;
  }
};

TEST(Message, ComesUpCentredOnTheScreenInItsToldSize) {
  MessageHost host({"box", "0x10", "Fin", "Quitter ?"});
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  const Content content = activeContent();
  EXPECT_EQ(content.width, 400);
  EXPECT_EQ(content.height, 90);
  EXPECT_EQ(content.corner.x, (kScreenWidth - 400) / 2);
  EXPECT_NEAR(content.corner.y, (kScreenHeight - 90) / 2, 1);
  press("Escape");
  EXPECT_EQ(host.ended(), Lines{"result 3"});
}

TEST(Message, KeysAnswer) {
  const struct {
    const char *name, *flags, *keys, *result;
  } cases[] = {
      {"Return is Oui", "0x10", "Return", "result 2"},
      {"Enter on the keypad too", "0x10", "KP_Enter", "result 2"},
      {"Return is Non", "0x50", "Return", "result 3"},
      {"Return is Oui again", "0x70", "Return", "result 2"},
      {"Escape is Non", "0x10", "Escape", "result 3"},
      {"Tab and Return", "0x10", "Tab Return", "result 3"},
      {"Tab and space", "0x50", "Tab space", "result 2"},
      {"arrows", "0x10", "Right Left Right Return", "result 3"},
      {"Alt and a letter", "0x10", "alt+n", "result 3"},
      {"Alt and the other", "0x50", "alt+o", "result 2"},
      {"letters alone answer nothing", "0x50", "o n Return", "result 3"},
      {"a note: Return", "0x01", "Return", "result 1"},
      {"a note: Escape", "0x01", "Escape", "result 1"},
      {"a note: space", "0x01", "space", "result 1"},
  };
  for (const auto &row : cases) {
    MessageHost host({"box", row.flags, "Fin", "Quitter ?"});
    ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
    press(row.keys);
    EXPECT_EQ(host.ended(), Lines{row.result}) << row.name;
  }
}

TEST(Message, ClicksAnswer) {
  const struct {
    const char *name, *flags;
    Place place;
    const char *result;
  } cases[] = {{"Oui", "0x50", kYesButton, "result 2"},
               {"Non", "0x10", kNoButton, "result 3"},
               {"OK", "0x02", kOkButton, "result 1"}};
  for (const auto &row : cases) {
    MessageHost host({"box", row.flags, "Fin", "Quitter ?"});
    ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
    click(row.place);
    EXPECT_EQ(host.ended(), Lines{row.result}) << row.name;
  }
}

TEST(Message, TheCloseBoxAnswersAsEscapeDoes) {
  for (const auto &[flags, result] : {std::pair("0x10", "result 3"), std::pair("0", "result 1")}) {
    MessageHost host({"box", flags, "Fin", "Quitter ?"});
    ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
    closeWindow();
    EXPECT_EQ(host.ended(), Lines{result});
  }
}

TEST(Message, CannotBeMinimised) {
  MessageHost host({"box", "0x10", "Fin", "Quitter ?"});
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  minimiseWindow();
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  press("Return");
  EXPECT_EQ(host.ended(), Lines{"result 2"});
}

TEST(Message, SeveralComeInARow) {
  MessageHost host({"box", "0", "Un", "1", "0x10", "Deux", "2", "0x10", "", "3"});
  ASSERT_TRUE(waitForWindow("Un")) << activeWindow();
  press("Return");
  ASSERT_TRUE(waitForWindow("Deux")) << activeWindow();
  press("Return");
  ASSERT_TRUE(waitForWindow("Dialogue utilisateur")) << activeWindow();
  press("Escape");
  EXPECT_EQ(host.ended(), (Lines{"result 1", "result 2", "result 3"}));
}

// ---- In front of a data-entry dialog ----

TEST(Message, OutOfADialogItTakesTheKeysAndGivesThemBack) {
  MessageHost host({"dialog"});
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  const Content dialog = activeContent();
  write("abc!");
  ASSERT_TRUE(waitForWindow("Saisie")) << activeWindow();
  const Content box = activeContent();
  EXPECT_EQ(box.corner.x, dialog.corner.x + (dialog.width - 400) / 2);
  EXPECT_NEAR(box.corner.y, dialog.corner.y + (dialog.height - 90) / 2, 1);
  press("Return");
  EXPECT_TRUE(host.says("edited 2"));
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  write("de");  // goes on where it was

  press("Return");
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  press("Return");  // "Non"
  EXPECT_TRUE(host.says("final 3"));
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  press("Return");
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  press("Tab Return");
  EXPECT_EQ(host.ended(), (Lines{"edited 2", "final 3", "final 2", "result 1 text abc!de"}));
}

TEST(Message, TellsTheScreenWhichDialogItStandsInFrontOf) {
  MessageHost host({"dialog"}, {kSaysOwners});
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  EXPECT_FALSE(isOwned(host));
  write("!");
  ASSERT_TRUE(waitForWindow("Saisie")) << activeWindow();
  EXPECT_TRUE(isOwned(host));
}

TEST(Message, TheDialogBehindItIsBlocked) {
  MessageHost host({"dialog"});
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  write("a!");
  ASSERT_TRUE(waitForWindow("Saisie")) << activeWindow();
  const Content box = activeContent();
  click({50, -63});  // the dialog's second field, which lies above the box
  write("xyz");
  EXPECT_EQ(activeWindow(), "Saisie");
  EXPECT_EQ(activeContent().corner.y, box.corner.y);
  press("Escape");
  EXPECT_TRUE(host.says("edited 3"));
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  write("b");
  press("Return");
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  press("alt+o");
  EXPECT_EQ(host.ended(), (Lines{"edited 3", "final 2", "result 1 text a!b"}));
}

TEST(Message, WhatIsTypedBeforeItComesUpGoesToTheDialogBehind) {
  MessageHost host({"slow"});
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  write("a!");
  ASSERT_TRUE(host.stops());
  write("bc");
  press("Return");
  host.goOn();
  ASSERT_TRUE(waitForWindow("Saisie")) << activeWindow();
  EXPECT_EQ(host.count("edited"), 0);
  press("Escape");
  EXPECT_TRUE(host.says("edited 3"));
  // The Return that was typed presses "OK", which asks.
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  press("alt+o");
  EXPECT_EQ(host.ended(), (Lines{"edited 3", "final 2", "result 1 text a!bc"}));
}

// ---- What it looks like ----

Picture iconOf(const char *flags) {
  MessageHost host({"box", flags, "Fin", "Voir"});
  EXPECT_TRUE(waitForWindow("Fin")) << activeWindow();
  Picture icon = picture(18, 18, 32, 32);
  press("Escape");
  host.ended();
  return icon;
}

bool isPlain(const Picture &picture) {
  return std::all_of(picture.pixels.begin(), picture.pixels.end(),
                     [&](Colour c) { return c == picture.pixels.front(); });
}

TEST(Message, EachIconIsItsOwn) {
  const Picture none = iconOf("0"), note = iconOf("0x01"), stop = iconOf("0x04"),
                caution = iconOf("0x02"), asked = iconOf("0x18");
  EXPECT_TRUE(isPlain(none));
  EXPECT_FALSE(isPlain(note));
  EXPECT_FALSE(note.pixels == stop.pixels);
  EXPECT_FALSE(stop.pixels == caution.pixels);
  EXPECT_FALSE(caution.pixels == note.pixels);
  EXPECT_TRUE(asked.pixels == caution.pixels);
}

// The rows of a picture that hold dark pixels: the first, and the one after the last.
std::pair<int, int> inkRows(const Picture &shown) {
  int first = -1, behind = -1;
  for (int y = 0; y < shown.height; ++y)
    for (int x = 0; x < shown.width; ++x) {
      const Colour c = shown.at(x, y);
      if (c.red + c.green + c.blue >= 3 * 128) continue;
      if (first < 0) first = y;
      behind = y + 1;
    }
  return {first, behind};
}

TEST(Message, LinesStandOnTheirBaselines) {
  MessageHost host({"box", "0", "Fin", "HHHH\nHHHH\nHHHH"});
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  EXPECT_EQ(activeContent().height, 104);
  for (int line = 0; line < 3; ++line) {
    const int baseline = 26 + 14 * line;
    const auto [top, bottom] = inkRows(picture(80, baseline - 13, 200, 14));
    EXPECT_EQ(bottom, 13) << line;
    EXPECT_GE(top, 1) << line;
  }
  EXPECT_TRUE(isPlain(picture(52, 8, 27, 60))) << "nothing left of the text";
  press("Return");
  EXPECT_EQ(host.ended(), Lines{"result 1"});
}

TEST(Message, ALongTextStaysOnTheScreenAndScrolls) {
  std::string text;
  for (int n = 0; n < 100; ++n) text += "Ligne " + std::to_string(n) + "\n";
  MessageHost host({"box", "0x10", "Fin", text});
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  const Content content = activeContent();
  EXPECT_EQ(content.width, 540);
  EXPECT_GE(content.corner.y, 0);
  EXPECT_LE(content.corner.y + content.height, kScreenHeight);
  EXPECT_GT(content.height, kScreenHeight - 60);
  const Picture before = picture(80, 40, 200, 200);
  press("End");
  const Picture after = picture(80, 40, 200, 200);
  EXPECT_FALSE(before.pixels == after.pixels);
  press("Home");
  EXPECT_TRUE(picture(80, 40, 200, 200).pixels == before.pixels);
  click({content.width - 60, content.height - 22});  // "Non"
  EXPECT_EQ(host.ended(), Lines{"result 3"});
}

TEST(Message, AtScale2EverythingIsTwiceAsLarge) {
  MessageHost host({"box", "0x12", "Fin", "Quitter ?"}, {"QT_SCALE_FACTOR=2"});
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  const Content content = activeContent();
  EXPECT_EQ(content.width, 800);
  EXPECT_EQ(content.height, 180);
  EXPECT_FALSE(isPlain(picture(36, 36, 64, 64)));
  EXPECT_GT(picture(160, 26, 200, 36).darkPixels(), 100);
  click({2 * kYesButton.x, 2 * kYesButton.y});
  EXPECT_EQ(host.ended(), Lines{"result 2"});
}

// ---- Without a screen ----

TEST(Message, WithoutADisplayItAnswersAsEscapeDoes) {
  MessageHost host({"box", "0x10", "Fin", "Quitter ?", "0x01", "Fin", "Bon"},
                   {"DISPLAY", "WAYLAND_DISPLAY"});
  EXPECT_EQ(host.ended(), (Lines{"result 3", "result 1"}));
  EXPECT_EQ(host.errors().size(), 2U) << "a line for each";
}

TEST(Message, TextsOfAnyKindAreTaken) {
  const std::string long4095(4095, 'm'), long4096(4096, 'm');
  MessageHost host({"box", "0", "Long", long4095, "0", "Trop", long4096, "0", "Signes",
                    "\x01\x02\t\x7F\x81\xFF<b>&"});
  for (const char *title : {"Long", "Erreur interne", "Signes"}) {
    ASSERT_TRUE(waitForWindow(title)) << activeWindow();
    press("Return");
  }
  EXPECT_EQ(host.ended(), (Lines{"result 1", "result 1", "result 1"}));
}

// ---- The window of a long work ----

// Whether the work was cancelled before its end, and where.
bool wasCancelled(const Lines &lines) {
  return lines.size() == 1 && lines[0].starts_with("cancelled ");
}

TEST(Work, IsShownAndCancelledInEachWay) {
  const struct {
    const char *name;
    void (*cancel)();
  } cases[] = {{"Escape", [] { press("Escape"); }},
               {"Tab and space", [] { burstOfKeys("Tab space"); }},
               {"the button",
                [] {
                  click({300, 60});
                }},
               {"the close box", [] { closeWindow(); }}};
  for (const auto &row : cases) {
    MessageHost host({"work", "Importation", "2000"});
    ASSERT_TRUE(waitForWindowAtWork("Importation")) << activeWindow();
    const Content content = activeContent();
    EXPECT_EQ(content.width, 360);
    EXPECT_EQ(content.height, 82);
    EXPECT_NEAR(content.corner.x, (kScreenWidth - 360) / 2, 1);
    row.cancel();
    EXPECT_TRUE(wasCancelled(host.ended())) << row.name;
  }
}

// What is typed before the window comes up is the dialog's, which has it when it goes on; what is
// typed after that goes nowhere.
TEST(Work, OfACallbackIsInFrontOfItsDialog) {
  MessageHost host({"dialog"});
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  host.pause();
  write("a?bc");
  host.goOn();
  ASSERT_TRUE(waitForWindowAtWork("Recherche")) << activeWindow();
  burst("xy z");
  burstOfKeys("Return space");
  clickMeanwhile({100, 200});
  ASSERT_TRUE(waitForWindowAtWork("Recherche")) << activeWindow();
  press("Escape");
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  write("d");
  press("Return");
  ASSERT_TRUE(waitForWindow("Fin")) << activeWindow();
  press("Left Return");
  const Lines lines = host.ended();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_TRUE(wasCancelled({lines[0]}));
  EXPECT_EQ(lines[2], "result 1 text a?bcd");
}

}  // namespace
}  // namespace korvel::test
