// SPDX-License-Identifier: MIT
// Message, question and note boxes on a scripted desktop.
#include <functional>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <korvel/messages.h>

#include "tests/platform/scripted_desktop.h"

namespace korvel::test {
namespace {

using platform::Rect;

constexpr int kOk = 1, kYes = 2, kNo = 3;
constexpr int kFirst = 1, kSecond = 2;

// What MessageBox shows, answered by the first button.
std::string shownBy(const char *text, const char *caption, unsigned flags,
                    const char *title = nullptr) {
  ScriptedDesktop desk;
  desk.expectDialog(title != nullptr ? title : caption).press(kFirst);
  MessageBox(nullptr, text, caption, flags);
  desk.finish();
  return desk.layout();
}

bool has(const std::string &layout, const std::string &line) {
  return layout.find(line + '\n') != std::string::npos;
}

// ---- Layout ----

TEST(MessageBox, AQuestionAsAWhole) {
  EXPECT_EQ(shownBy("Voulez-vous quitter ?", "Fin", 0x12),
            "dialog (440,467)-(840,557) in front of everything \"Fin\"\n"
            "1 push button (200,58)-(280,78) \"Oui\" default\n"
            "2 push button (300,58)-(380,78) \"Non\"\n"
            "alert icon (18,18)-(50,50) caution\n"
            "message (80,12)-(392,55) \"Lucida Grande\" 13, baselines 14 + 14 k\n");
}

TEST(MessageBox, ANoteAsAWhole) {
  EXPECT_EQ(shownBy("Une\nDeux\nTrois\nQuatre", "Liste", 0x04),
            "dialog (440,453)-(840,571) in front of everything \"Liste\"\n"
            "1 push button (300,86)-(380,106) \"OK\" default\n"
            "alert icon (18,18)-(50,50) stop\n"
            "message (80,12)-(392,83) \"Lucida Grande\" 13, baselines 14 + 14 k\n");
}

TEST(MessageBox, AOneLineMessageIsTwoLinesHigh) {
  EXPECT_TRUE(has(shownBy("Une ligne", "T", 0x10),
                  "dialog (440,467)-(840,557) in front of everything \"T\""));
  EXPECT_TRUE(
      has(shownBy("Une ligne", "T", 0), "dialog (440,467)-(840,557) in front of everything \"T\""));
}

TEST(MessageBox, AQuestionGrowsBy20ALineAndANoteBy14) {
  EXPECT_TRUE(has(shownBy("1\r2\r3\r4\r5", "T", 0x10),
                  "dialog (440,437)-(840,587) in front of everything \"T\""));
  EXPECT_TRUE(has(shownBy("1\r2\r3\r4\r5", "T", 0),
                  "dialog (440,446)-(840,578) in front of everything \"T\""));
}

TEST(MessageBox, ACaptionOrTextOf51CharactersWidensIt) {
  const std::string c50(50, 'c'), c51(51, 'c');
  EXPECT_TRUE(has(shownBy(c50.c_str(), c50.c_str(), 0),
                  "dialog (440,467)-(840,557) in front of everything \"" + c50 + '"'));
  EXPECT_TRUE(has(shownBy("x", c51.c_str(), 0),
                  "dialog (370,467)-(910,557) in front of everything \"" + c51 + '"'));
  const std::string wide = shownBy(c51.c_str(), "T", 0x10);
  EXPECT_TRUE(has(wide, "dialog (370,467)-(910,557) in front of everything \"T\""));
  EXPECT_TRUE(has(wide, "1 push button (340,58)-(420,78) \"Oui\" default"));
  EXPECT_TRUE(has(wide, "2 push button (440,58)-(520,78) \"Non\""));
  EXPECT_TRUE(has(wide, "message (80,12)-(532,55) \"Lucida Grande\" 13, baselines 14 + 14 k"));
}

// ---- Flags ----

TEST(MessageBox, DefaultButtonByFlags) {
  constexpr struct {
    unsigned flags;
    const char *defaultLine;
  } kCases[] = {
      {0x10, "1 push button (200,58)-(280,78) \"Oui\" default"},
      {0x30, "1 push button (200,58)-(280,78) \"Oui\" default"},
      {0x50, "2 push button (300,58)-(380,78) \"Non\" default"},
      // Kept: KorvelDefaultOui takes back what KorvelDefaultNon says.
      {0x70, "1 push button (200,58)-(280,78) \"Oui\" default"},
      {0xFFFFFF5F, "2 push button (300,58)-(380,78) \"Non\" default"},
      {0xFFFFFFFF, "1 push button (200,58)-(280,78) \"Oui\" default"},
      {0x00, "1 push button (300,58)-(380,78) \"OK\" default"},
      {0x40, "1 push button (300,58)-(380,78) \"OK\" default"},
      {0x20, "1 push button (300,58)-(380,78) \"OK\" default"},
  };
  for (const auto &row : kCases)
    EXPECT_TRUE(has(shownBy("x", "T", row.flags), row.defaultLine)) << row.flags;
}

TEST(MessageBox, IconByFlags) {
  constexpr struct {
    unsigned flags;
    const char *icon;
  } kCases[] = {
      // Kept: a question knows no icon but the caution icon; two bits show it.
      {0x10, ""},
      {0x11, ""},
      {0x14, ""},
      {0x15, ""},
      {0x12, "caution"},
      {0x18, "caution"},
      {0x1A, "caution"},
      {0x1F, "caution"},
      {0x52, "caution"},
      {0x78, "caution"},
      // Notes: caution before stop before note.
      {0x00, ""},
      {0x08, ""},
      {0x40, ""},
      {0x01, "note"},
      {0x04, "stop"},
      {0x02, "caution"},
      {0x05, "stop"},
      {0x03, "caution"},
      {0x06, "caution"},
      {0x07, "caution"},
      {0x09, "note"},
  };
  for (const auto &row : kCases) {
    const std::string layout = shownBy("x", "T", row.flags);
    if (*row.icon == '\0')
      EXPECT_EQ(layout.find("icon"), std::string::npos) << row.flags;
    else
      EXPECT_TRUE(has(layout, std::string("alert icon (18,18)-(50,50) ") + row.icon)) << row.flags;
  }
}

// ---- Answers ----

TEST(MessageBox, AnswersOfAQuestion) {
  // Kept: "Oui" is answered as 2 and "Non" as 3.
  constexpr struct {
    const char *name;
    unsigned flags;
    DialogScript &(*act)(DialogScript &);
    int result;
  } kCases[] = {
      {"Oui", 0x10, [](DialogScript &d) -> DialogScript & { return d.press(kFirst); }, kYes},
      {"Non", 0x10, [](DialogScript &d) -> DialogScript & { return d.press(kSecond); }, kNo},
      {"Return", 0x10, [](DialogScript &d) -> DialogScript & { return d.pressReturn(); }, kYes},
      {"Return on Non", 0x50, [](DialogScript &d) -> DialogScript & { return d.pressReturn(); },
       kNo},
      {"Return with all bits", 0x70,
       [](DialogScript &d) -> DialogScript & { return d.pressReturn(); }, kYes},
      {"Escape", 0x10, [](DialogScript &d) -> DialogScript & { return d.pressEscape(); }, kNo},
      {"close box", 0x10, [](DialogScript &d) -> DialogScript & { return d.closeBox(); }, kNo},
      {"desktop goes down", 0x10, [](DialogScript &d) -> DialogScript & { return d.goDown(); },
       kNo},
  };
  for (const auto &row : kCases) {
    ScriptedDesktop desk;
    row.act(desk.expectDialog("T"));
    EXPECT_EQ(MessageBox(nullptr, "x", "T", row.flags), row.result) << row.name;
    desk.finish();
  }
}

TEST(MessageBox, EveryAnswerToANoteIsOk) {
  DialogScript &(*const acts[])(DialogScript &) = {
      [](DialogScript &d) -> DialogScript & { return d.press(kFirst); },
      [](DialogScript &d) -> DialogScript & { return d.pressReturn(); },
      [](DialogScript &d) -> DialogScript & { return d.pressEscape(); },
      [](DialogScript &d) -> DialogScript & { return d.closeBox(); },
      [](DialogScript &d) -> DialogScript & { return d.goDown(); },
  };
  for (const auto act : acts) {
    ScriptedDesktop desk;
    act(desk.expectDialog("T"));
    EXPECT_EQ(MessageBox(nullptr, "x", "T", 0), kOk);
    desk.finish();
  }
}

TEST(MessageBox, SeveralInARowAndFromWithinEachOther) {
  ScriptedDesktop desk;
  int inner = 0;
  desk.expectDialog("Un").press(kSecond);
  desk.expectDialog("Deux")
      .check([&] { inner = MessageBox(nullptr, "x", "Trois", 0x10); })
      .press(kFirst);
  desk.expectDialog("Trois").press(kSecond);
  EXPECT_EQ(MessageBox(nullptr, "x", "Un", 0x10), kNo);
  EXPECT_EQ(MessageBox(nullptr, "x", "Deux", 0x10), kYes);
  EXPECT_EQ(inner, kNo);
  desk.finish();
}

// ---- Texts ----

TEST(MessageBox, TextsAreShownInLines) {
  ScriptedDesktop desk;
  desk.expectDialog("Été à Noël").pressReturn();
  MessageBox(nullptr,
             "Pr\xE9nom :\nL\xE9"
             "a \x80",
             "\xC9t\xE9 \xE0 No\xEBl", 0);
  EXPECT_EQ(desk.message(), "Prénom :\rLéa €");
  desk.finish();
}

TEST(MessageBox, ALongSentenceIsBrokenAndTheBoxAsHighAsItsLines) {
  ScriptedDesktop desk;
  desk.expectDialog("T").pressReturn();
  MessageBox(nullptr,
             "Cette fiche contient des modifications qui ne sont pas encore enregistr\xE9"
             "es ; voulez-vous vraiment la fermer sans les enregistrer, "
             "comme vous l'avez demand\xE9 ?",
             "T", 0x10);
  EXPECT_EQ(desk.message(),
            "Cette fiche contient des modifications qui ne sont pas\rencore enregistrées ; "
            "voulez-vous vraiment la fermer\rsans les enregistrer, comme vous l'avez demandé ?");
  EXPECT_TRUE(has(desk.layout(), "dialog (370,457)-(910,567) in front of everything \"T\""));
  desk.finish();
}

TEST(MessageBox, AnEmptyCaptionLeavesTheUsualTitle) {
  shownBy("x", "", 0, "Dialogue utilisateur");
  shownBy("x", "", 0x10, "Dialogue utilisateur");
}

TEST(MessageBox, TextsTooLongToCopyAreReplaced) {
  const std::string c255(255, 'c'), c256(256, 'c'), t4095(4095, 't'), t4096(4096, 't');
  const struct {
    const std::string &caption, &text;
    bool fits;
  } cases[] = {{c255, t4095, true}, {c256, t4095, false}, {c255, t4096, false}};
  for (const auto &row : cases) {
    ScriptedDesktop desk;
    desk.expectDialog(row.fits ? row.caption : "Erreur interne").press(kSecond);
    EXPECT_EQ(MessageBox(nullptr, row.text.c_str(), row.caption.c_str(), 0x52), kNo);
    EXPECT_EQ(desk.message(), row.fits ? row.text : "MessageBox impossible");
    if (!row.fits) {
      EXPECT_EQ(desk.layout(),
                "dialog (440,467)-(840,557) in front of everything \"Erreur interne\"\n"
                "1 push button (200,58)-(280,78) \"Oui\"\n"
                "2 push button (300,58)-(380,78) \"Non\" default\n"
                "alert icon (18,18)-(50,50) caution\n"
                "message (80,12)-(392,55) \"Lucida Grande\" 13, baselines 14 + 14 k\n");
    }
    desk.finish();
  }
}

TEST(MessageBox, NullTextsAreEmpty) {
  ScriptedDesktop desk;
  desk.expectDialog("Dialogue utilisateur").pressReturn();
  desk.expectDialog("Dialogue utilisateur").pressReturn();
  desk.expectDialog("Dialogue utilisateur").pressReturn();
  EXPECT_EQ(MessageBox(nullptr, nullptr, nullptr, 0), kOk);
  EXPECT_EQ(QuestionDialog(nullptr, nullptr, nullptr, 2, 0), kYes);
  EXPECT_EQ(NoteDialog(nullptr, nullptr, nullptr, 2, 0), kOk);
  EXPECT_EQ(desk.message(), "");
  desk.finish();
}

TEST(MessageBox, IsNeverHigherThanTheScreen) {
  std::string text(2000, '\n');
  ScriptedDesktop desk;
  desk.setScreenBounds({0, 0, 1280, 800});
  desk.expectDialog("T").pressReturn();
  MessageBox(nullptr, text.c_str(), "T", 0x10);
  EXPECT_EQ(desk.layout(),
            "dialog (370,16)-(910,784) in front of everything \"T\"\n"
            "1 push button (340,736)-(420,756) \"Oui\" default\n"
            "2 push button (440,736)-(520,756) \"Non\"\n"
            "message (80,12)-(532,733) \"Lucida Grande\" 13, baselines 14 + 14 k\n");
  desk.finish();
}

TEST(MessageBox, IsNeverWiderThanTheScreen) {
  ScriptedDesktop desk;
  desk.setScreenBounds({0, 0, 320, 480});
  desk.expectDialog("T").pressReturn();
  MessageBox(nullptr, std::string(300, 'x').c_str(), "T", 0x10);
  EXPECT_EQ(desk.layout(),
            "dialog (0,195)-(320,285) in front of everything \"T\"\n"
            "1 push button (120,58)-(200,78) \"Oui\" default\n"
            "2 push button (220,58)-(300,78) \"Non\"\n"
            "message (80,12)-(312,55) \"Lucida Grande\" 13, baselines 14 + 14 k\n");
  desk.finish();
}

// ---- The two dialogs alone ----

TEST(QuestionDialog, TakesTextAndLinesAsTheyAre) {
  ScriptedDesktop desk;
  char caption[] =
      "Vu \xE0 l'\xE9"
      "cran",
       text[] = "Une ligne\r\rtrois\nencore";
  desk.expectDialog("Vu à l'écran").press(kSecond);
  EXPECT_EQ(QuestionDialog(nullptr, caption, text, 4, 0x40), kNo);
  EXPECT_EQ(desk.message(), "Une ligne\r\rtrois\nencore");
  EXPECT_TRUE(
      has(desk.layout(), "dialog (440,447)-(840,577) in front of everything \"Vu à l'écran\""));
  EXPECT_TRUE(has(desk.layout(), "2 push button (300,98)-(380,118) \"Non\" default"));
  EXPECT_STREQ(caption,
               "Vu \xE0 l'\xE9"
               "cran");
  EXPECT_STREQ(text, "Une ligne\r\rtrois\nencore");
  desk.finish();
}

TEST(NoteDialog, TakesTextAndLinesAsTheyAre) {
  ScriptedDesktop desk;
  char caption[] = "Note", text[] = "Une ligne";
  desk.expectDialog("Note").press(kFirst);
  EXPECT_EQ(NoteDialog(nullptr, caption, text, 7, 0x11), kOk);
  EXPECT_TRUE(has(desk.layout(), "dialog (440,432)-(840,592) in front of everything \"Note\""));
  EXPECT_TRUE(has(desk.layout(), "1 push button (300,128)-(380,148) \"OK\" default"));
  EXPECT_TRUE(has(desk.layout(), "alert icon (18,18)-(50,50) note"));
  desk.finish();
}

TEST(NoteDialog, AnyNumberOfLinesGivesABoxOnTheScreen) {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr struct {
    int lines;
    const char *box;
  } kCases[] = {{0, "(440,474)-(840,550)"},          {1, "(440,474)-(840,550)"},
                {-kMost - 1, "(440,474)-(840,550)"}, {kMost, "(440,16)-(840,1008)"},
                {66, "(440,19)-(840,1005)"},         {67, "(440,16)-(840,1008)"}};
  for (const auto &row : kCases) {
    ScriptedDesktop desk;
    char caption[] = "T", text[] = "x";
    desk.expectDialog("T").press(kFirst);
    EXPECT_EQ(NoteDialog(nullptr, caption, text, row.lines, 0), kOk);
    EXPECT_TRUE(
        has(desk.layout(), std::string("dialog ") + row.box + " in front of everything \"T\""))
        << row.lines << '\n'
        << desk.layout();
    desk.finish();
  }
}

// ---- The owner ----

TEST(MessageBox, IsCentredOnItsOwner) {
  ScriptedDesktop desk;
  const WindowRef owner = desk.addWindow({600, 500, 1000, 800});
  desk.setFrontWindow(desk.addWindow({0, 0, 100, 100}));
  desk.expectDialog("T").press(kFirst);
  MessageBox(owner, "x", "T", 0);
  EXPECT_TRUE(has(desk.layout(), "dialog (600,605)-(1000,695) in front of a window \"T\""));
  desk.finish();
}

TEST(MessageBox, WithoutAnOwnerItIsCentredOnTheFrontWindow) {
  ScriptedDesktop desk;
  desk.setFrontWindow(desk.addWindow({600, 500, 1000, 800}));
  desk.expectDialog("T").press(kFirst);
  MessageBox(nullptr, "x", "T", 0);
  EXPECT_TRUE(has(desk.layout(), "dialog (600,605)-(1000,695) in front of a window \"T\""));
  desk.finish();
}

TEST(MessageBox, AnOwnerThatHasGoneIsNone) {
  ScriptedDesktop desk;
  const WindowRef owner = desk.addWindow({600, 500, 1000, 800});
  desk.closeWindow(owner);
  desk.expectDialog("T").press(kFirst);
  MessageBox(owner, "x", "T", 0);
  EXPECT_TRUE(has(desk.layout(), "dialog (440,467)-(840,557) in front of everything \"T\""));
  desk.finish();
}

TEST(MessageBox, NearTheScreensEdgeItsCornerIsNotNegative) {
  ScriptedDesktop desk;
  const WindowRef owner = desk.addWindow({-50, -40, 150, 60});
  desk.expectDialog("T").press(kFirst);
  MessageBox(owner, "x", "T", 0);
  EXPECT_TRUE(has(desk.layout(), "dialog (0,0)-(400,90) in front of a window \"T\""));
  desk.finish();
}

TEST(QuestionDialog, DoesNotLookForTheFrontWindow) {
  ScriptedDesktop desk;
  desk.setFrontWindow(desk.addWindow({600, 500, 1000, 800}));
  char caption[] = "T", text[] = "x";
  desk.expectDialog("T").press(kFirst);
  QuestionDialog(nullptr, caption, text, 2, 0);
  EXPECT_TRUE(has(desk.layout(), "dialog (440,467)-(840,557) in front of everything \"T\""));
  desk.finish();
}

// ---- Without a screen ----

TEST(MessageBox, WithoutAScreenItAnswersAsEscapeDoes) {
  char caption[] = "T", text[] = "x";
  const struct {
    const char *name;
    std::function<int()> ask;
    int answer;
  } cases[] = {
      {"a question", [] { return MessageBox(nullptr, "x", "T", 0x10); }, kNo},
      {"a question with the other default", [] { return MessageBox(nullptr, "x", "T", 0x50); },
       kNo},
      {"a note", [] { return MessageBox(nullptr, "x", "T", 0); }, kOk},
      {"a question alone", [&] { return QuestionDialog(nullptr, caption, text, 2, 0); }, kNo},
      {"a note alone", [&] { return NoteDialog(nullptr, caption, text, 2, 0); }, kOk},
  };
  for (const auto &row : cases) {
    ScriptedDesktop desk;
    desk.takeScreenAway("unplugged");
    testing::internal::CaptureStderr();
    EXPECT_EQ(row.ask(), row.answer) << row.name;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "korvel: unplugged\n") << row.name;
    EXPECT_EQ(desk.dialogsShown(), 0);
    desk.finish();
  }
}

}  // namespace
}  // namespace korvel::test
