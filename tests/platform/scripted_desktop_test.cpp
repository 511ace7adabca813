// SPDX-License-Identifier: MIT
// The scripted desktop itself: it keeps the contract of the seam, and fails a test for any
// departure from its script.
#include "tests/platform/scripted_desktop.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "platform/loader.h"

namespace korvel::test {
namespace {

using platform::Dialog;
using platform::ItemKind;
using platform::kCancelItem;
using platform::kOkItem;
using platform::Rect;
using platform::Run;

// Records hits, and stops at the button pair.
class Recorder final : public platform::HitHandler {
 public:
  Run hit(int item) override {
    hits += std::to_string(item) + ' ';
    if (onHit) onHit(item);
    return item == kOkItem || item == kCancelItem ? Run::Stop : Run::Continue;
  }
  std::string hits;
  std::function<void(int)> onHit;
};

// Items 1 and 2: the button pair, 3 and 4: edit text, 5: check box, 6: pop-up, 7: list box.
constexpr int kEdit = 3;
constexpr int kCheckBox = 5;
constexpr int kPopUp = 6;
constexpr int kList = 7;

struct Shown {
  explicit Shown(ScriptedDesktop &desk) {
    dialog = desk.newDialog({10, 20, 110, 220}, nullptr, "T");
    dialog->addItem(ItemKind::PushButton, {0, 0, 10, 10}, "OK");
    dialog->addItem(ItemKind::PushButton, {10, 0, 20, 10}, "Annuler");
    dialog->addItem(ItemKind::EditText, {0, 10, 10, 20}, "");
    dialog->addItem(ItemKind::EditText, {0, 20, 10, 30}, "");
    dialog->addItem(ItemKind::CheckBox, {0, 30, 10, 40}, "Case");
    dialog->addItem(ItemKind::PopUp, {0, 40, 10, 50}, "");
    dialog->addItem(ItemKind::ListBox, {0, 50, 10, 60}, "");
    dialog->setEntries(kPopUp, {"a", "for\xEAt", "a"});
    dialog->setEntries(kList, {"x", "y"});
  }
  std::string run() {
    dialog->runModal(recorder);
    return recorder.hits;
  }
  std::unique_ptr<Dialog> dialog;
  Recorder recorder;
};

// ---- For the library ----

TEST(ScriptedDesktop, IsTheDesktopAsLongAsItLives) {
  platform::Desktop *const before = platform::setDesktop(nullptr);
  platform::setDesktop(before);
  {
    ScriptedDesktop desk;
    EXPECT_EQ(platform::desktopWithScreen(), &desk);
    desk.finish();
  }
  platform::Desktop *const after = platform::setDesktop(nullptr);
  platform::setDesktop(after);
  EXPECT_EQ(before, after);
}

TEST(ScriptedDesktop, HasNoScreenWhenToldSo) {
  ScriptedDesktop desk;
  std::string problem;
  EXPECT_TRUE(desk.hasScreen(problem));
  EXPECT_EQ(problem, "");
  desk.takeScreenAway("unplugged");
  EXPECT_FALSE(desk.hasScreen(problem));
  EXPECT_EQ(problem, "unplugged");
  EXPECT_EQ(desk.newDialog({}, nullptr, "T"), nullptr);
  desk.finish();
}

TEST(ScriptedDesktop, KnowsItsWindows) {
  ScriptedDesktop desk;
  EXPECT_EQ(desk.frontWindow(), nullptr);
  EXPECT_EQ(desk.windowBounds(nullptr), std::nullopt);
  const WindowRef window = desk.addWindow({1, 2, 3, 4});
  desk.setFrontWindow(window);
  EXPECT_EQ(desk.frontWindow(), window);
  EXPECT_EQ(desk.windowBounds(window), (Rect{1, 2, 3, 4}));
  desk.closeWindow(window);
  EXPECT_EQ(desk.windowBounds(window), std::nullopt);
  desk.setScreenBounds({0, 0, 5, 6});
  EXPECT_EQ(desk.screenBounds(), (Rect{0, 0, 5, 6}));
  EXPECT_EQ(desk.hostWindow(nullptr), nullptr);
  desk.finish();
}

TEST(ScriptedDesktop, ADialogsWindowIsOpenAsLongAsItIs) {
  ScriptedDesktop desk;
  Shown shown(desk);
  const WindowRef window = shown.dialog->window();
  EXPECT_EQ(desk.windowBounds(window), (Rect{10, 20, 110, 220}));
  EXPECT_TRUE(desk.isDialogOpen());
  shown.dialog.reset();
  EXPECT_EQ(desk.windowBounds(window), std::nullopt);
  EXPECT_FALSE(desk.isDialogOpen());
  desk.finish();
}

TEST(ScriptedDesktop, PrintsWhatItShows) {
  ScriptedDesktop desk;
  {
    Shown shown(desk);
    shown.dialog->addStaticText({1, 2, 3, 4}, "\xC9t\x8E");
    shown.dialog->addGroupBox({1, 2, 3, 4}, "");
    shown.dialog->addIcon({1, 2, 3, 4}, "/some/where/2.svg");
    shown.dialog->setDefaultItem(2);
    shown.dialog->setTitle("Apr\x8Fs");
  }
  EXPECT_EQ(desk.layout(),
            "dialog (10,20)-(110,220) in front of everything \"Après\"\n"
            "1 push button (0,0)-(10,10) \"OK\"\n"
            "2 push button (10,0)-(20,10) \"Annuler\" default\n"
            "3 edit text (0,10)-(10,20)\n"
            "4 edit text (0,20)-(10,30)\n"
            "5 check box (0,30)-(10,40) \"Case\"\n"
            "6 pop-up (0,40)-(10,50)\n"
            "7 list box (0,50)-(10,60)\n"
            "static text (1,2)-(3,4) \"Été\"\n"
            "group box (1,2)-(3,4) \"\"\n"
            "icon (1,2)-(3,4) \"2.svg\"\n");
  EXPECT_EQ(desk.title(), "Après");
  desk.finish();
}

TEST(ScriptedDesktop, PrintsWhatAMessageBoxShows) {
  ScriptedDesktop desk;
  EXPECT_EQ(desk.message(), "");
  {
    const auto box = desk.newDialog({0, 0, 400, 90}, nullptr, "T");
    box->addMessage({80, 12, 392, 55}, "Pr\x8Et\rou non ?", {"Arial", 13, 14, 15});
    box->addAlertIcon({18, 18, 50, 50}, platform::AlertIcon::Stop);
    box->addAlertIcon({18, 18, 50, 50}, platform::AlertIcon::Note);
    box->addAlertIcon({18, 18, 50, 50}, platform::AlertIcon::Caution);
  }
  EXPECT_EQ(desk.layout(),
            "dialog (0,0)-(400,90) in front of everything \"T\"\n"
            "message (80,12)-(392,55) \"Arial\" 13, baselines 14 + 15 k\n"
            "alert icon (18,18)-(50,50) stop\n"
            "alert icon (18,18)-(50,50) note\n"
            "alert icon (18,18)-(50,50) caution\n");
  EXPECT_EQ(desk.message(), "Prét\rou non ?");
  desk.finish();
}

TEST(ScriptedDesktop, ItemsThatAreNotThereDoNothing) {
  ScriptedDesktop desk;
  Shown shown(desk);
  Dialog &dialog = *shown.dialog;
  for (const int item : {0, -1, 8, 1000}) {
    EXPECT_EQ(dialog.kind(item), ItemKind::None);
    dialog.setText(item, "x");
    dialog.selectText(item);
    dialog.setSecret(item);
    dialog.setValue(item, 1);
    dialog.setEntries(item, {"x"});
    dialog.setEnabled(item, false);
    EXPECT_EQ(dialog.text(item), "");
    EXPECT_EQ(dialog.value(item), 0);
    EXPECT_EQ(dialog.entry(item, 0), "");
    EXPECT_EQ(dialog.lastClick(item).row, -1);
  }
  EXPECT_EQ(dialog.entry(kList, 2), "");
  EXPECT_EQ(dialog.entry(kList, -1), "");
  shown.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, ItemsOfAnotherKindDoNothing) {
  ScriptedDesktop desk;
  Shown shown(desk);
  Dialog &dialog = *shown.dialog;
  desk.takeWrites();
  dialog.setText(kPopUp, "x");
  dialog.selectText(kOkItem);
  dialog.setSecret(kList);
  dialog.setValue(kEdit, 1);
  dialog.setEntries(kEdit, {"x"});
  EXPECT_EQ(desk.takeWrites(), "");
  EXPECT_EQ(dialog.text(kPopUp), "");
  EXPECT_EQ(dialog.value(kList), 0);
  EXPECT_EQ(dialog.entry(kEdit, 0), "");
  EXPECT_EQ(dialog.lastClick(kPopUp).row, -1);
  shown.dialog.reset();
  desk.finish();
}

// ---- Text ----

TEST(ScriptedDesktop, TextsAreReadBackAsTyped) {
  ScriptedDesktop desk;
  Shown shown(desk);
  for (int byte = 1; byte < 256; ++byte) {
    const std::string given(1, static_cast<char>(byte));
    shown.dialog->setText(kEdit, given);
    const std::string once = shown.dialog->text(kEdit);
    EXPECT_EQ(once.size(), 1U) << byte;
    const std::string seen = desk.text(kEdit);
    shown.dialog->setText(kEdit, once);
    EXPECT_EQ(desk.text(kEdit), seen) << byte << ": shown as before";
    EXPECT_EQ(shown.dialog->text(kEdit), once) << byte;
  }
  shown.dialog->setText(kEdit, "\x90\x95\x8E\xE9");
  EXPECT_EQ(shown.dialog->text(kEdit), "\xEA\xEF\x8E\x8E");
  EXPECT_EQ(shown.dialog->entry(kPopUp, 1), "for\xEAt");
  shown.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, TypingIsOneHitPerCharacter) {
  ScriptedDesktop desk;
  Shown shown(desk);
  std::string seen;
  shown.recorder.onHit = [&](int) { seen += desk.text(kEdit) + '|'; };
  desk.expectDialog("T").type(kEdit, "né").press(kOkItem);
  EXPECT_EQ(shown.run(), "3 3 1 ");
  EXPECT_EQ(seen, "n|né|né|");
  EXPECT_EQ(shown.dialog->text(kEdit), "n\x8E");
  shown.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, CharactersWithoutAByteAreRefused) {
  ScriptedDesktop desk;
  Shown shown(desk);
  desk.expectDialog("T")
      .type(kEdit, "aŽb語¡")
      .paste(kEdit, "c•d")
      .paste(kEdit, "ef")
      .press(kOkItem);
  EXPECT_EQ(shown.run(), "3 3 3 1 ");
  EXPECT_EQ(desk.text(kEdit), "abef");
  shown.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, EditsHappenAtTheCursor) {
  const struct {
    const char *name;
    std::function<void(DialogScript &)> edit;
    const char *text, *hits;
    int cursor;
  } kCases[] = {
      {"all is selected at first", [](auto &s) { s.type(kEdit, "x"); }, "x", "3 1 ", 1},
      {"at the end", [](auto &s) { s.moveToEnd(kEdit).type(kEdit, "x"); }, "abcdx", "3 1 ", 5},
      {"in the middle", [](auto &s) { s.moveTo(kEdit, 1).type(kEdit, "xy"); }, "axybcd", "3 3 1 ",
       3},
      {"over a selection", [](auto &s) { s.select(kEdit, 3, 1).type(kEdit, "x"); }, "axd", "3 1 ",
       2},
      {"paste", [](auto &s) { s.moveTo(kEdit, 1).paste(kEdit, "xy"); }, "axybcd", "3 1 ", 3},
      {"delete back", [](auto &s) { s.moveTo(kEdit, 2).deleteBack(kEdit); }, "acd", "3 1 ", 1},
      {"delete back at the front", [](auto &s) { s.moveTo(kEdit, 0).deleteBack(kEdit); }, "abcd",
       "1 ", 0},
      {"delete back a selection", [](auto &s) { s.select(kEdit, 1, 3).deleteBack(kEdit); }, "ad",
       "3 1 ", 1},
      {"delete back five times", [](auto &s) { s.moveToEnd(kEdit).deleteBack(kEdit, 5); }, "",
       "3 3 3 3 1 ", 0},
      {"delete forward", [](auto &s) { s.moveTo(kEdit, 2).deleteForward(kEdit); }, "abd", "3 1 ",
       2},
      {"delete forward at the end", [](auto &s) { s.moveToEnd(kEdit).deleteForward(kEdit); },
       "abcd", "1 ", 4},
      {"replace", [](auto &s) { s.replace(kEdit, "xyz"); }, "xyz", "3 1 ", 3},
      {"replace by nothing", [](auto &s) { s.replace(kEdit, ""); }, "", "3 1 ", 0},
      {"positions beyond the text", [](auto &s) { s.moveTo(kEdit, 99).type(kEdit, "x"); }, "abcdx",
       "3 1 ", 5},
  };
  for (const auto &each : kCases) {
    SCOPED_TRACE(each.name);
    ScriptedDesktop desk;
    Shown shown(desk);
    shown.dialog->setText(kEdit, "abcd");
    DialogScript &script = desk.expectDialog("T");
    each.edit(script);
    script.press(kOkItem);
    EXPECT_EQ(shown.run(), each.hits);
    EXPECT_EQ(desk.text(kEdit), each.text);
    EXPECT_EQ(desk.cursor(kEdit), each.cursor);
    shown.dialog.reset();
    desk.finish();
  }
}

TEST(ScriptedDesktop, SettingATextKeepsCursorAndSelection) {
  ScriptedDesktop desk;
  Shown shown(desk);
  shown.dialog->setText(kEdit, "abcd");
  shown.dialog->selectText(kEdit);
  EXPECT_EQ(desk.selectedText(kEdit), "abcd");
  shown.dialog->setText(kEdit, "xyzuvw");
  EXPECT_EQ(desk.selectedText(kEdit), "xyzu");
  shown.dialog->setText(kEdit, "12");
  EXPECT_EQ(desk.selectedText(kEdit), "12");
  EXPECT_EQ(desk.cursor(kEdit), 2);
  EXPECT_FALSE(desk.isSecret(kEdit));
  shown.dialog->setSecret(kEdit);
  EXPECT_TRUE(desk.isSecret(kEdit));
  shown.dialog.reset();
  desk.finish();
}

// ---- Other items ----

TEST(ScriptedDesktop, ChecksChoosesAndClicks) {
  ScriptedDesktop desk;
  Shown shown(desk);
  std::string clicks;
  shown.recorder.onHit = [&](int item) {
    if (item != kList) return;
    const auto click = shown.dialog->lastClick(kList);
    clicks += std::to_string(click.row) + (click.isDouble ? "double " : " ");
  };
  desk.expectDialog("T")
      .click(kCheckBox)
      .check([&] { EXPECT_EQ(desk.value(kCheckBox), 0) << "a click does not change it"; })
      .choose(kPopUp, "forêt")
      .check([&] { EXPECT_EQ(desk.value(kPopUp), 2); })
      .choose(kPopUp, "a")
      .check([&] { EXPECT_EQ(desk.value(kPopUp), 1); })
      .clickRow(kList, 1)
      .doubleClickRow(kList, 0)
      .press(kCancelItem);
  EXPECT_EQ(shown.run(), "5 6 6 7 7 7 2 ");
  EXPECT_EQ(clicks, "1 0 0double ");
  shown.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, SettingEntriesLeavesNothingChosen) {
  ScriptedDesktop desk;
  Shown shown(desk);
  EXPECT_EQ(shown.dialog->lastClick(kList).row, -1);
  shown.dialog->setValue(kPopUp, 2);
  EXPECT_EQ(shown.dialog->value(kPopUp), 2);
  EXPECT_EQ(shown.dialog->entryCount(kPopUp), 3);
  shown.dialog->setEntries(kPopUp, {"u"});
  EXPECT_EQ(shown.dialog->value(kPopUp), 0);
  EXPECT_EQ(desk.entries(kPopUp), std::vector<std::string>{"u"});
  shown.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, ReturnPressesTheDefaultButtonUnlessDisabled) {
  ScriptedDesktop desk;
  Shown shown(desk);
  shown.dialog->setDefaultItem(kOkItem);
  shown.dialog->setEnabled(kOkItem, false);
  desk.expectDialog("T")
      .pressReturn()
      .check([&] { shown.dialog->setEnabled(kOkItem, true); })
      .pressReturn();
  EXPECT_EQ(shown.run(), "1 ");
  EXPECT_EQ(desk.hits(), 1);
  shown.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, EscapeAndCloseBoxAreTheCancelItem) {
  ScriptedDesktop desk;
  Shown first(desk);
  desk.expectDialog("T").pressEscape();
  EXPECT_EQ(first.run(), "2 ");
  Shown second(desk);
  desk.expectDialog("T").closeBox();
  EXPECT_EQ(second.run(), "2 ");
  EXPECT_EQ(desk.dialogsShown(), 2);
  first.dialog.reset();
  second.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, GoingDownEndsTheRunWithoutAHit) {
  ScriptedDesktop desk;
  Shown shown(desk);
  desk.expectDialog("T").goDown();
  EXPECT_EQ(shown.run(), "");
  shown.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, RecordsMarksAndTheItemsOfDates) {
  ScriptedDesktop desk;
  Shown shown(desk);
  EXPECT_TRUE(desk.isAcceptable(kEdit));
  for (const int item : {kEdit, kPopUp, kList, kCheckBox, kOkItem, 0, 99})
    shown.dialog->setAcceptable(item, false);
  shown.dialog->setAcceptable(kList, true);
  EXPECT_FALSE(desk.isAcceptable(kEdit));
  EXPECT_FALSE(desk.isAcceptable(kPopUp));
  EXPECT_TRUE(desk.isAcceptable(kList));
  EXPECT_TRUE(desk.isAcceptable(kCheckBox));
  const auto line = [](int item, const char *what) { return std::to_string(item) + what; };
  EXPECT_EQ(desk.takeMarks(), line(kEdit, " unacceptable\n") + line(kPopUp, " unacceptable\n") +
                                  line(kList, " unacceptable\n") + line(kList, " acceptable\n"));
  EXPECT_EQ(desk.takeMarks(), "");
  EXPECT_EQ(desk.expected(kEdit), platform::Expected::Text);
  for (const int item : {kEdit, kList, 0, 99})
    shown.dialog->setExpected(item, platform::Expected::IntegerFrom, 1);
  EXPECT_EQ(desk.expected(kEdit), platform::Expected::IntegerFrom);
  EXPECT_EQ(desk.bound(kEdit), 1);
  EXPECT_EQ(desk.expected(kList), platform::Expected::Text);
  EXPECT_EQ(desk.bound(99), 0);
  shown.dialog->setDateParts(kOkItem, kEdit, 99);
  EXPECT_EQ(desk.datePart(kOkItem), "");
  EXPECT_EQ(desk.datePart(kEdit), "month");
  for (const int item : {kEdit, kOkItem, 0, 99}) shown.dialog->setName(item, "Pr\xE9nom");
  EXPECT_EQ(desk.name(kEdit), "Prénom");
  EXPECT_EQ(desk.name(kOkItem), "Prénom");
  EXPECT_EQ(desk.name(kCancelItem) + desk.name(99), "");
  shown.dialog.reset();
  desk.finish();
}

TEST(ScriptedDesktop, RecordsWrites) {
  ScriptedDesktop desk;
  Shown shown(desk);
  desk.takeWrites();
  shown.dialog->setText(kEdit, "\x8E");
  shown.dialog->selectText(kEdit);
  shown.dialog->setSecret(kEdit);
  shown.dialog->setValue(kCheckBox, 1);
  shown.dialog->setEntries(kList, {"a", "b"});
  shown.dialog->setEnabled(kOkItem, false);
  shown.dialog->setEnabled(kOkItem, true);
  EXPECT_EQ(desk.takeWrites(),
            "3 text \"é\"\n3 selected\n3 secret\n5 value 1\n7 entries 2\n1 enabled no\n1 enabled "
            "yes\n");
  EXPECT_EQ(desk.takeWrites(), "");
  shown.dialog.reset();
  desk.finish();
}

// ---- Failures ----

// A script that contradicts the desktop, and the failure expected of it.
void expectFailure(const std::function<void(DialogScript &)> &write, const std::string &message,
                   bool enableOk = true) {
  static const std::function<void(DialogScript &)> *s_write;
  static bool s_enableOk;
  s_write = &write;
  s_enableOk = enableOk;
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedDesktop desk;
        Shown shown(desk);
        shown.dialog->setEnabled(kOkItem, s_enableOk);
        DialogScript &script = desk.expectDialog("T");
        (*s_write)(script);
        shown.run();
        shown.dialog.reset();
        desk.finish();
      },
      message);
}

TEST(ScriptedDesktop, FailsForStepsThatCannotBeTaken) {
  expectFailure([](auto &s) { s.press(kOkItem).pressEscape(); }, "the button is disabled", false);
  expectFailure([](auto &s) { s.choose(kPopUp, "b").press(kOkItem); }, "does not offer it");
  expectFailure([](auto &s) { s.clickRow(kList, 2).press(kOkItem); }, "no such row");
  expectFailure([](auto &s) { s.type(kPopUp, "b").press(kOkItem); }, "not edit text but pop-up");
  expectFailure([](auto &s) { s.press(kEdit).press(kOkItem); }, "not push button but edit text");
  expectFailure([](auto &s) { s.click(99).press(kOkItem); }, "not check box but nothing");
}

TEST(ScriptedDesktop, FailsForWhatIsLeftOver) {
  expectFailure([](auto &s) { s.press(kOkItem).press(kOkItem); }, "ended before \"press 1\"");
  expectFailure([](auto &s) { s.type(kEdit, "a"); }, "still open after its last step");
  expectFailure([](auto &s) { s.hit(kOkItem).check([] {}); }, "ended before \"check\"");
}

TEST(ScriptedDesktop, FailsForATypedTextThatTheEndCutsShort) {
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedDesktop desk;
        auto dialog = desk.newDialog({}, nullptr, "T");
        dialog->addItem(ItemKind::EditText, {}, "");  // item 1, whose hits stop the run
        Recorder recorder;
        desk.expectDialog("T").type(1, "ab");
        dialog->runModal(recorder);
        EXPECT_EQ(recorder.hits, "1 ");
        dialog.reset();
        desk.finish();
      },
      "ended before the rest of a typed text");
}

TEST(ScriptedDesktop, FailsForDialogsThatWereNotExpected) {
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedDesktop desk;
        Shown shown(desk);
        shown.run();
        shown.dialog.reset();
        desk.finish();
      },
      "unexpected dialog \"T\"");
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedDesktop desk;
        Shown shown(desk);
        desk.expectDialog("U").pressEscape();
        shown.run();
        shown.dialog.reset();
        desk.finish();
      },
      "expected dialog \"U\", got \"T\"");
}

TEST(ScriptedDesktop, FailsForDialogsThatNeverCame) {
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedDesktop desk;
        desk.expectDialog("T").pressEscape();
        desk.finish();
      },
      "dialog \"T\" never came");
}

TEST(ScriptedDesktop, FailsForDialogsThatStayOpen) {
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedDesktop desk;
        Shown shown(desk);
        desk.finish();
        shown.dialog.reset();
      },
      "never taken off the screen");
}

TEST(ScriptedDesktop, FailsWithoutAFinish) {
  EXPECT_NONFATAL_FAILURE({ ScriptedDesktop desk; }, "finish() was not called");
}

}  // namespace
}  // namespace korvel::test
