// SPDX-License-Identifier: MIT
// The choice of a practitioner as a real window, with real keys and clicks.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/desktop/screen_user.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {
namespace {

constexpr char kTitle[] = "Sélection de praticien en base";

// The table's rows as the list shows them: in the order of their bytes, which are signed.
constexpr char kTable[] =
    "Praticiens\r\nVersion: 1\r\n#DEBUT\r\n"
    "DUB,Dr Dubois\r\nDUP,Dr Ana\xEFs Dupr\xE9\r\nAB,Dr Abel\r\n"
    "\xC9L,Dr \xC9lise L\xE9vy\r\nDub,Dr Dubreuil\r\n"
    "#FIN\r\n";
enum Row { kElise, kAbel, kDubois, kDupre, kDubreuil };

// Places inside the items.
constexpr Place kInitials{50, 38}, kOkButton{150, 238}, kCancelButton{250, 238};
constexpr Place listRow(int row) { return {150, 17 + 8 + 14 * row}; }

class Chooser : public testing::Test {
 protected:
  Chooser() { EXPECT_TRUE(waitForWindow(kTitle)) << "active is: " << activeWindow(); }

  // The one line that the application writes at its end.
  std::string outcome() {
    const int status = host_.wait();
    const std::vector<std::string> lines = host_.output();
    if (status != 0 || lines.size() != 1) return "exit status " + std::to_string(status);
    return lines.front();
  }
  bool hasEnded() const { return !host_.output().empty(); }

 private:
  static std::string volumes(const TemporaryFolder &folder) {
    folder.add("Data/MT.par", kTable);
    return folder.path();
  }

  TemporaryFolder folder_;
  Application host_{{PRACTITIONERS_HOST, volumes(folder_)}, {"LC_ALL=C.UTF-8"}};
};

TEST_F(Chooser, ADoubleClickChooses) {
  click(listRow(kDupre), 2);
  EXPECT_EQ(outcome(), "chosen DUP;Dr Ana\\xEFs Dupr\\xE9");
}

TEST_F(Chooser, AClickSelectsAndOkChooses) {
  click(listRow(kElise));
  click(kOkButton);
  EXPECT_EQ(outcome(), "chosen \\xC9L;Dr \\xC9lise L\\xE9vy");
}

TEST_F(Chooser, ArrowsSelectAndReturnChooses) {
  press("Tab Down Down Down Up Return");
  EXPECT_EQ(outcome(), "chosen AB;Dr Abel");
}

TEST_F(Chooser, InitialsNarrowTheListAtEachKey) {
  write("D");
  write("U");
  press("Tab End Return");
  EXPECT_EQ(outcome(), "chosen DUP;Dr Ana\\xEFs Dupr\\xE9");
}

TEST_F(Chooser, InitialsWithAccentsAreFound) {
  write("É");
  click(listRow(0), 2);
  EXPECT_EQ(outcome(), "chosen \\xC9L;Dr \\xC9lise L\\xE9vy");
}

TEST_F(Chooser, ARowIsChosenByTheLettersThatItBeginsWith) {
  press("Tab");
  write("du");
  press("Return");
  EXPECT_EQ(outcome(), "chosen DUB;Dr Dubois");
}

TEST_F(Chooser, OkWaitsForARowOfTheNarrowedList) {
  click(listRow(kDubois));
  click(kInitials);
  write("D");
  press("Return");
  click(kOkButton);
  EXPECT_EQ(activeWindow(), kTitle);
  EXPECT_FALSE(hasEnded());
  click(listRow(2));
  press("Return");
  EXPECT_EQ(outcome(), "chosen Dub;Dr Dubreuil");
}

TEST_F(Chooser, CancellingChoosesNothing) {
  click(listRow(kAbel));
  click(kCancelButton);
  EXPECT_EQ(outcome(), "chosen ");
}

TEST_F(Chooser, EscapeChoosesNothingWhereverTheFocusIs) {
  click(listRow(kAbel));
  press("Down Escape");
  EXPECT_EQ(outcome(), "chosen ");
}

}  // namespace
}  // namespace korvel::test
