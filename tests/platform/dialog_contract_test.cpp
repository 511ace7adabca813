// SPDX-License-Identifier: MIT
// The promises of platform/desktop.h; compiled once for each desktop.
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/screentext.h"
#include "tests/platform/dialog_world.h"
#include "tests/platform/recorded_hits.h"

namespace korvel::platform {
namespace {

using test::Person;
using test::RecordedHits;

constexpr Rect kAnywhere{20, 20, 120, 35};

class DialogContract : public testing::Test {
 protected:
  void SetUp() override {
    dialog_ = world_->desktop().newDialog({200, 200, 600, 500}, nullptr, "Fiche");
    ASSERT_NE(dialog_, nullptr);
    EXPECT_EQ(dialog_->addItem(ItemKind::PushButton, {100, 250, 180, 270}, "OK"), kOkItem);
    EXPECT_EQ(dialog_->addItem(ItemKind::PushButton, {200, 250, 280, 270}, "Annuler"), kCancelItem);
  }
  void TearDown() override {
    dialog_.reset();
    world_->finish();
  }

  // Items are one below the other, in the order in which they are added.
  int add(ItemKind kind, std::string_view title = "") {
    const Rect rect{20, top_, 160, top_ + (kind == ItemKind::ListBox ? 60 : 15)};
    top_ = rect.bottom + 10;
    return dialog_->addItem(kind, rect, title);
  }
  int addText(std::string_view text) {
    const int item = add(ItemKind::EditText);
    dialog_->setText(item, text);
    return item;
  }
  int addEntries(ItemKind kind, const std::vector<std::string> &entries) {
    const int item = add(kind);
    dialog_->setEntries(item, entries);
    return item;
  }

  Person &person() { return world_->expectDialog("Fiche"); }

  // Runs the dialog; OK and Cancel end it. Returns the hits.
  std::vector<std::string> run() {
    hits_.record(*dialog_);
    return hits_.lines();
  }

  const std::unique_ptr<test::DialogWorld> world_ = test::makeDialogWorld();
  std::unique_ptr<Dialog> dialog_;
  RecordedHits hits_;

 private:
  int top_ = 10;
};

using Lines = std::vector<std::string>;

// ---- Numbers ----

TEST_F(DialogContract, ItemsAreNumberedInTheirOrderAndKeepTheirKind) {
  const ItemKind kinds[] = {ItemKind::EditText, ItemKind::CheckBox, ItemKind::PopUp,
                            ItemKind::ListBox, ItemKind::PushButton};
  int number = kCancelItem;
  for (const ItemKind kind : kinds) {
    EXPECT_EQ(add(kind), ++number);
    EXPECT_EQ(dialog_->kind(number), kind);
  }
}

TEST_F(DialogContract, NoKindIsNoItem) {
  EXPECT_EQ(add(ItemKind::None), 0);
  EXPECT_EQ(addText(""), 3);
}

TEST_F(DialogContract, DecorationHasNoNumber) {
  dialog_->addGroupBox({10, 10, 200, 100}, "Antécédents");
  dialog_->addStaticText(kAnywhere, "Nom :");
  dialog_->addIcon({10, 10, 42, 42}, "/nowhere/2.svg");
  dialog_->addMessage({80, 10, 380, 60}, "Nom ?", {"Arial", 13, 14, 14});
  dialog_->addAlertIcon({10, 10, 42, 42}, AlertIcon::Caution);
  EXPECT_EQ(add(ItemKind::None), 0);
  EXPECT_EQ(addText(""), 3);
}

TEST_F(DialogContract, ItemsThatDoNotExistAreEmptyAndTakeNothing) {
  for (const int item : {-1, 0, 3, 4711}) {
    EXPECT_EQ(dialog_->kind(item), ItemKind::None);
    dialog_->setText(item, "x");
    dialog_->selectText(item);
    dialog_->setSecret(item);
    dialog_->setValue(item, 1);
    dialog_->setEntries(item, {"a"});
    dialog_->setEnabled(item, false);
    EXPECT_EQ(dialog_->text(item), "");
    EXPECT_EQ(dialog_->value(item), 0);
    EXPECT_EQ(dialog_->entry(item, 0), "");
    EXPECT_EQ(dialog_->lastClick(item).row, -1);
  }
}

TEST_F(DialogContract, AnItemOfAnotherKindTakesNothing) {
  const int box = add(ItemKind::CheckBox, "Fumeur");
  dialog_->setText(box, "x");
  dialog_->setEntries(box, {"a"});
  dialog_->setSecret(box);
  EXPECT_EQ(dialog_->text(box), "");
  EXPECT_EQ(dialog_->entry(box, 0), "");
  EXPECT_EQ(dialog_->lastClick(box).row, -1);
  const int text = addText("x");
  dialog_->setValue(text, 1);
  EXPECT_EQ(dialog_->value(text), 0);
  EXPECT_EQ(dialog_->text(text), "x");
}

TEST_F(DialogContract, RowsThatDoNotExistAreEmpty) {
  const int list = addEntries(ItemKind::ListBox, {"a", "b"});
  EXPECT_EQ(dialog_->entry(list, 1), "b");
  EXPECT_EQ(dialog_->entry(list, 2), "");
  EXPECT_EQ(dialog_->entry(list, -1), "");
}

// ---- Text ----

TEST_F(DialogContract, ATextIsReadBackAsAPersonWouldHaveEnteredIt) {
  const int item = add(ItemKind::EditText);
  EXPECT_EQ(dialog_->text(item), "");
  for (int byte = 1; byte < 0x100; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    dialog_->setText(item, text);
    EXPECT_EQ(dialog_->text(item), asReadBack(text)) << byte;
  }
}

TEST_F(DialogContract, ALongTextIsKeptWhole) {
  const int item = add(ItemKind::EditText);
  const std::string text(100000, 'x');
  dialog_->setText(item, text);
  EXPECT_EQ(dialog_->text(item), text);
}

TEST_F(DialogContract, EveryTypedCharacterIsAHitThatSeesIt) {
  const int item = addText("");
  person().type(item, "aéê").pressReturn().pressEscape();
  EXPECT_EQ(run(), (Lines{"3 text a", "3 text aé", "3 text aéê", "2"}));
  EXPECT_EQ(dialog_->text(item), "a\x8E\xEA");
}

TEST_F(DialogContract, TheFirstEditTextStartsWithAllOfItSelected) {
  add(ItemKind::CheckBox, "Fumeur");
  const int first = addText("Dupont");
  addText("Marie");
  person().type(first, "a").press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"4 text a", "2"}));
}

TEST_F(DialogContract, ACharacterWithoutAByteIsRefusedAndTheRestStays) {
  const int item = addText("ab");
  person().moveTo(item, 1).type(item, "Ž¡•ˆ中").type(item, "x").press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 text axb", "2"}));
}

TEST_F(DialogContract, APasteIsOneHit) {
  const int item = addText("ab");
  person().moveTo(item, 1).paste(item, "élan").press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 text aélanb", "2"}));
}

TEST_F(DialogContract, APasteWithACharacterWithoutAByteIsRefusedWhole) {
  const int item = addText("ab");
  person().select(item, 0, 1).paste(item, "x中y").press(kCancelItem);
  EXPECT_EQ(run(), Lines{"2"});
  EXPECT_EQ(dialog_->text(item), "ab");
}

TEST_F(DialogContract, APasteReplacesTheSelection) {
  const int item = addText("abcd");
  person().select(item, 1, 3).paste(item, "x").press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 text axd", "2"}));
}

TEST_F(DialogContract, ADeletionIsAHitAndNothingToDeleteIsNone) {
  const int item = addText("ab");
  person()
      .moveTo(item, 1)
      .deleteBack(item)
      .deleteBack(item)
      .select(item, 0, 1)
      .deleteBack(item)
      .press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 text b", "3 text", "2"}));
}

TEST_F(DialogContract, SettingATextIsNoHit) {
  const int text = addText("");
  const int box = add(ItemKind::CheckBox, "Fumeur");
  hits_.on(box, [&] { dialog_->setText(text, "mis"); });
  person().click(box).press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"4 value 0", "2"}));
  EXPECT_EQ(dialog_->text(text), "mis");
}

TEST_F(DialogContract, TheCursorSurvivesARewrittenText) {
  const int item = addText("****");
  dialog_->setSecret(item);
  hits_.on(item, [&] { dialog_->setText(item, std::string(dialog_->text(item).size(), '*')); });
  person().moveTo(item, 2).type(item, "567").deleteBack(item).press(kCancelItem);
  EXPECT_EQ(run(),
            (Lines{"3 text **5**", "3 text ***6**", "3 text ****7**", "3 text ******", "2"}));
}

TEST_F(DialogContract, TheSelectionSurvivesARewrittenText) {
  const int item = addText("abcdef");
  const int box = add(ItemKind::CheckBox, "Fumeur");
  hits_.on(item, [&] { dialog_->setText(item, "ABCDEFG"); });
  hits_.on(box, [&] { dialog_->setText(item, "xyz"); });
  person()
      .moveTo(item, 6)
      .type(item, "g")
      .select(item, 1, 3)
      .check([&] { dialog_->setText(item, "uvwxyz"); })
      .type(item, "-")
      .press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 text abcdefg", "3 text u-xyz", "2"}));
}

// ---- Fields that are not acceptable, and dates ----

TEST_F(DialogContract, MarkingAFieldChangesNothingElse) {
  const int text = addText("abc");
  const int popUp = addEntries(ItemKind::PopUp, {"a", "b"});
  const int list = addEntries(ItemKind::ListBox, {"a", "b"});
  const int box = add(ItemKind::CheckBox, "Fumeur");
  dialog_->setValue(popUp, 2);
  person()
      .check([&] {
        for (const int item : {text, popUp, list, box, kOkItem, 0, 99}) {
          dialog_->setExpected(item, Expected::TextUpTo, 3);
          dialog_->setAcceptable(item, false);
        }
      })
      .type(text, "d")
      .choose(popUp, "a")
      .clickRow(list, 1)
      .check([&] {
        for (const int item : {text, popUp, list, box, kOkItem, 0, 99})
          dialog_->setAcceptable(item, true);
      })
      .press(kOkItem);
  EXPECT_EQ(run(), (Lines{"3 text d", "4 value 1", "5 row 1 b", "1"}));
}

TEST_F(DialogContract, ThePartsOfADateAreItemsLikeOthers) {
  const int day = addText("1"), month = addText("2"), year = addText("2003");
  dialog_->setDateParts(day, month, year);
  dialog_->setDateParts(0, -1, 99);
  dialog_->setDateParts(kOkItem, year + 1, kCancelItem);
  person().moveTo(year, 4).type(year, "9").press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"5 text 20039", "2"}));
}

TEST_F(DialogContract, NamingAnItemChangesNothingElse) {
  const int text = addText("abc");
  const int list = addEntries(ItemKind::ListBox, {"a", "b"});
  for (const int item : {text, list, kOkItem, 0, -1, 99}) dialog_->setName(item, "Pr\xE9nom");
  person().moveTo(text, 3).type(text, "d").clickRow(list, 1).press(kOkItem);
  EXPECT_EQ(run(), (Lines{"3 text abcd", "4 row 1 b", "1"}));
}

// ---- Buttons ----

TEST_F(DialogContract, APressedButtonIsAHit) {
  const int button = add(ItemKind::PushButton, "Calculer");
  person().press(button).press(kOkItem);
  EXPECT_EQ(run(), (Lines{"3", "1"}));
}

TEST_F(DialogContract, ReturnPressesTheDefaultItem) {
  addText("");
  dialog_->setDefaultItem(kOkItem);
  person().pressReturn();
  EXPECT_EQ(run(), Lines{"1"});
}

TEST_F(DialogContract, ReturnDoesNothingWithoutADefaultItem) {
  addText("");
  person().pressReturn().press(kCancelItem);
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(DialogContract, ReturnDoesNothingWhileTheDefaultItemIsDisabled) {
  const int item = addText("");
  dialog_->setDefaultItem(kOkItem);
  dialog_->setEnabled(kOkItem, false);
  hits_.on(item, [&] { dialog_->setEnabled(kOkItem, true); });
  person().pressReturn().type(item, "a").pressReturn();
  EXPECT_EQ(run(), (Lines{"3 text a", "1"}));
}

TEST_F(DialogContract, EscapeIsTheCancelItem) {
  addText("");
  dialog_->setDefaultItem(kOkItem);
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(DialogContract, TheCloseBoxIsTheCancelItem) {
  person().closeBox();
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(DialogContract, AMessageBoxIsAnsweredByTheSameKeysAndButtons) {
  const struct {
    void (*act)(Person &);
    const char *hit;
  } cases[] = {{[](Person &p) { p.pressReturn(); }, "2"},
               {[](Person &p) { p.pressEscape(); }, "2"},
               {[](Person &p) { p.closeBox(); }, "2"},
               {[](Person &p) { p.press(kOkItem); }, "1"}};
  for (const auto &row : cases) {
    SetUp();
    dialog_->addMessage({80, 10, 380, 60}, "Quitter\rou non ?", {"Arial", 13, 14, 14});
    dialog_->setDefaultItem(kCancelItem);
    RecordedHits hits;
    row.act(person());
    hits.record(*dialog_);
    EXPECT_EQ(hits.lines(), Lines{row.hit});
  }
}

TEST_F(DialogContract, AMessageBoxWithOneButtonCanBeCancelled) {
  dialog_ = world_->desktop().newDialog({200, 200, 600, 290}, nullptr, "Fiche");
  dialog_->addItem(ItemKind::PushButton, {300, 58, 380, 78}, "OK");
  dialog_->addMessage({80, 12, 392, 55}, "Fini.", {"Arial", 13, 14, 14});
  dialog_->setDefaultItem(kOkItem);
  person().pressEscape();
  EXPECT_EQ(run(), Lines{"2"});
}

TEST_F(DialogContract, ADialogStaysOpenUntilItIsStopped) {
  hits_.keepOpen(kOkItem);
  person().press(kOkItem).press(kOkItem).press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"1", "1", "2"}));
}

TEST_F(DialogContract, ARunEndsWhenTheDesktopGoesDown) {
  const int item = addText("");
  person().type(item, "a").goDown();
  EXPECT_EQ(run(), Lines{"3 text a"});
}

// ---- Check boxes, pop-ups, lists ----

TEST_F(DialogContract, AClickOnACheckBoxLeavesItsValueToTheProgram) {
  const int box = add(ItemKind::CheckBox, "Fumeur");
  EXPECT_EQ(dialog_->value(box), 0);
  person().click(box).check([&] { dialog_->setValue(box, 1); }).click(box).press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 value 0", "3 value 1", "2"}));
  EXPECT_EQ(dialog_->value(box), 1);
}

TEST_F(DialogContract, AChosenEntryIsTheValueOfThePopUp) {
  const int popUp = addEntries(ItemKind::PopUp, {"Madame", "Monsieur", "Ma\xEEtre"});
  EXPECT_EQ(dialog_->value(popUp), 0);
  person().choose(popUp, "Monsieur").choose(popUp, "Maître").press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 value 2", "3 value 3", "2"}));
}

TEST_F(DialogContract, SettingAPopUpIsNoHit) {
  const int popUp = addEntries(ItemKind::PopUp, {"a", "b"});
  person()
      .check([&] {
        dialog_->setValue(popUp, 2);
        EXPECT_EQ(dialog_->value(popUp), 2);
        dialog_->setValue(popUp, 0);
        EXPECT_EQ(dialog_->value(popUp), 0);
        dialog_->setValue(popUp, 1);
      })
      .press(kCancelItem);
  EXPECT_EQ(run(), Lines{"2"});
  EXPECT_EQ(dialog_->value(popUp), 1);
}

TEST_F(DialogContract, ANumberBeyondTheEntriesIsNotTaken) {
  const int popUp = addEntries(ItemKind::PopUp, {"a", "b"});
  dialog_->setValue(popUp, 2);
  for (const int number : {3, 4711, -1}) {
    dialog_->setValue(popUp, number);
    EXPECT_EQ(dialog_->value(popUp), 2) << number;
  }
}

TEST_F(DialogContract, EntriesAreCounted) {
  EXPECT_EQ(dialog_->entryCount(addEntries(ItemKind::PopUp, {"a", "b", ""})), 3);
  EXPECT_EQ(dialog_->entryCount(addEntries(ItemKind::ListBox, {"a"})), 1);
  EXPECT_EQ(dialog_->entryCount(add(ItemKind::PopUp)), 0);
  EXPECT_EQ(dialog_->entryCount(addText("a")), 0);
  EXPECT_EQ(dialog_->entryCount(kOkItem), 0);
  EXPECT_EQ(dialog_->entryCount(4711), 0);
}

TEST_F(DialogContract, NewEntriesLeaveNothingChosen) {
  const int popUp = addEntries(ItemKind::PopUp, {"a", "b"});
  dialog_->setValue(popUp, 2);
  dialog_->setEntries(popUp, {"c", "d", "e"});
  EXPECT_EQ(dialog_->value(popUp), 0);
  EXPECT_EQ(dialog_->entry(popUp, 2), "e");

  const int list = addEntries(ItemKind::ListBox, {"a", "b"});
  EXPECT_EQ(dialog_->lastClick(list).row, -1);
  hits_.on(list, [&] { dialog_->setEntries(list, {"x"}); });
  person().clickRow(list, 1).press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"4 row 1 b", "2"}));
  EXPECT_EQ(dialog_->lastClick(list).row, -1);
  EXPECT_EQ(dialog_->entry(list, 1), "");
}

TEST_F(DialogContract, EntriesAreReadBackAsTexts) {
  const int list = addEntries(ItemKind::ListBox, {"\xE9t\xE9", "\x90tre", ""});
  EXPECT_EQ(dialog_->entry(list, 0), "\x8Et\x8E");
  EXPECT_EQ(dialog_->entry(list, 1), "\xEAtre");
  EXPECT_EQ(dialog_->entry(list, 2), "");
}

TEST_F(DialogContract, EveryClickOnARowIsAHit) {
  const int list = addEntries(ItemKind::ListBox, {"a", "b", "c"});
  person().clickRow(list, 1).clickRow(list, 1).clickRow(list, 0).press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 row 1 b", "3 row 1 b", "3 row 0 a", "2"}));
}

TEST_F(DialogContract, ADoubleClickIsTwoHits) {
  const int list = addEntries(ItemKind::ListBox, {"a", "b"});
  person().doubleClickRow(list, 1).press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 row 1 b", "3 row 1 b double", "2"}));
}

TEST_F(DialogContract, AClickAfterADoubleClickIsASingleOne) {
  const int list = addEntries(ItemKind::ListBox, {"a", "b"});
  person().doubleClickRow(list, 0).clickRow(list, 1).press(kCancelItem);
  EXPECT_EQ(run(), (Lines{"3 row 0 a", "3 row 0 a double", "3 row 1 b", "2"}));
}

TEST_F(DialogContract, AStopAtTheFirstHitOfADoubleClickIsTheEnd) {
  const int list = addEntries(ItemKind::ListBox, {"a", "b"});
  hits_.stopAt(list);
  person().doubleClickRow(list, 1);
  EXPECT_EQ(run(), Lines{"3 row 1 b"});
}

// ---- A run in steps ----

class StepContract : public DialogContract {
 protected:
  // A program that has something else to do between the steps, until there are so many hits.
  void stepUntil(std::size_t hits) {
    for (int n = 0; n < 5000 && hits_.lines().size() < hits; ++n) {
      hits_.recordStep(*dialog_);
      usleep(1000);
    }
  }
};

TEST_F(StepContract, TellsTheSameHitsAndLeavesTheScreenAtTheStop) {
  const int text = addText("a");
  hits_.keepOpen(kOkItem);
  person().moveTo(text, 1).type(text, "b").press(kOkItem).pressEscape();
  stepUntil(3);
  EXPECT_EQ(hits_.lines(), (Lines{"3 text ab", "1", "2"}));
  EXPECT_EQ(world_->desktop().windowBounds(dialog_->window()), std::nullopt);
}

TEST_F(StepContract, TheWindowStaysBetweenTheSteps) {
  hits_.keepOpen(kOkItem);
  person().press(kOkItem);
  stepUntil(1);
  EXPECT_EQ(world_->desktop().windowBounds(dialog_->window()), (Rect{200, 200, 600, 500}));
}

TEST_F(StepContract, AStepAfterTheStopDoesNothing) {
  person().pressEscape();
  stepUntil(1);
  hits_.recordStep(*dialog_);
  EXPECT_EQ(world_->desktop().windowBounds(dialog_->window()), std::nullopt);
}

TEST_F(StepContract, ADialogWithoutABarTakesNoProgress) {
  dialog_->setProgress(1, 2);
  person().pressEscape();
  stepUntil(1);
  EXPECT_EQ(hits_.lines(), Lines{"2"});
}

// ---- The desktop ----

TEST_F(DialogContract, ThereIsAScreen) {
  std::string problem = "untouched";
  EXPECT_TRUE(world_->desktop().hasScreen(problem));
  EXPECT_EQ(problem, "untouched");
  EXPECT_GT(world_->desktop().screenBounds().width(), 0);
  EXPECT_GT(world_->desktop().screenBounds().height(), 0);
}

TEST_F(DialogContract, NoWindowHasNoBounds) {
  EXPECT_EQ(world_->desktop().windowBounds(nullptr), std::nullopt);
  EXPECT_EQ(world_->desktop().hostWindow(nullptr), nullptr);
}

TEST_F(DialogContract, ADialogHasItsBoundsWhileItRuns) {
  person()
      .check([&] {
        const auto bounds = world_->desktop().windowBounds(dialog_->window());
        ASSERT_TRUE(bounds.has_value());
        EXPECT_EQ(*bounds, (Rect{200, 200, 600, 500}));
      })
      .press(kCancelItem);
  run();
}

TEST_F(DialogContract, ADestroyedDialogHasNoBounds) {
  const WindowRef window = dialog_->window();
  ASSERT_NE(window, nullptr);
  dialog_.reset();
  EXPECT_EQ(world_->desktop().windowBounds(window), std::nullopt);
}

}  // namespace
}  // namespace korvel::platform
