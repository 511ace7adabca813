// SPDX-License-Identifier: MIT
// What is told of messages and titles that cannot be shown as they are.
#include "messages/misuse.h"

#include <string>

#include <korvel/messages.h>

#include "tests/platform/scripted_desktop.h"
#include "tests/support/told.h"

namespace korvel::test {
namespace {

constexpr int kOk = 1;

// One box, whose button is pressed.
class MessagesMisuse : public testing::Test {
 protected:
  template <typename Work>
  std::string toldBy(const char *title, Work work) {
    ScriptedDesktop desk;
    desk.expectDialog(title).press(kOk);
    const std::string line = told(work);
    desk.finish();
    return line;
  }

  char caption_[8] = "Fin";
  char text_[8] = "Texte";
};

TEST_F(MessagesMisuse, ATextThatIsNotShown) {
  const std::string text(4096, 'a'), caption(256, 'a');
  EXPECT_NE(toldBy("Erreur interne", [&] { MessageBox(nullptr, text.c_str(), "T", 0); })
                .find("a text of 4096 characters is not shown: at most 4095 are"),
            std::string::npos);
  EXPECT_NE(
      toldBy("Erreur interne", [&] { MessageBox(nullptr, "x", caption.c_str(), 0); })
          .find("with a caption of 256 characters nothing is shown: at most 255 are possible"),
      std::string::npos);
  EXPECT_EQ(toldBy("T", [&] { MessageBox(nullptr, text.c_str() + 1, "T", 0); }), "");
  EXPECT_EQ(toldBy("Dialogue utilisateur", [&] { MessageBox(nullptr, nullptr, nullptr, 0); }), "");
}

TEST_F(MessagesMisuse, Utf8) {
  ScriptedDesktop desk;
  desk.expectDialog("T").press(kOk);
  EXPECT_FAILS(MessageBox(nullptr, "\xC3\xA9", "T", 0), 1,
               "MessageBox(null, \"Ã©\", \"T\", 0): the text looks like UTF-8: texts are CP1252");
  desk.finish();
}

TEST_F(MessagesMisuse, NoLines) {
  EXPECT_EQ(toldBy("Fin", [&] { QuestionDialog(nullptr, caption_, text_, 0, 0); }),
            "QuestionDialog(null, \"Fin\", \"Texte\", 0, 0): a number of 0 lines counts as 1");
  EXPECT_EQ(toldBy("Fin", [&] { QuestionDialog(nullptr, caption_, text_, 1, 0); }), "");
  ScriptedDesktop desk;
  desk.expectDialog("Fin").press(kOk);
  desk.expectDialog("Fin").press(kOk);
  EXPECT_TOLD(QuestionDialog(nullptr, caption_, text_, -1, 0),
              "QuestionDialog(null, \"Fin\", \"Texte\", -1, 0): a number of -1 lines counts as 1");
  EXPECT_TOLD(NoteDialog(nullptr, caption_, text_, 0, 0),
              "NoteDialog(null, \"Fin\", \"Texte\", 0, 0): a number of 0 lines counts as 1");
  desk.finish();
}

TEST_F(MessagesMisuse, ATitleThatIsCut) {
  const std::string title(256, 'a');
  EXPECT_FAILS(KorvelProgress(title.c_str(), 1, 1), 0,
               "KorvelProgress(\"" + title.substr(0, 60) +
                   "\"..., 1, 1): the title has 256 characters and is cut to 255");
  EXPECT_FAILS(KorvelProgress("\xC3\xA9", 1, 1), 0,
               "KorvelProgress(\"Ã©\", 1, 1): the title looks like UTF-8: texts are CP1252");
  EXPECT_TOLD(KorvelProgress(nullptr, 1, 1), "");
}

TEST_F(MessagesMisuse, NoEvent) {
  EXPECT_FAILS(MessageBoxFilter(nullptr, nullptr, nullptr), 0,
               "MessageBoxFilter(null, null, null): argument 2 is null");
}

}  // namespace
}  // namespace korvel::test
