// SPDX-License-Identifier: MIT
// For tests/desktop/: what dialog_host shows, and where.
#ifndef KORVEL_TESTS_DESKTOP_DIALOG_HOST_H
#define KORVEL_TESTS_DESKTOP_DIALOG_HOST_H

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/desktop/screen_user.h"

namespace korvel::test {

inline constexpr char kTitle[] = "Essai à l'écran";

// Size of the dialog's content, and places inside its items, in pixels.
inline constexpr int kWidth = 400, kHeight = 350;
inline constexpr Place kPlainField{200, 21}, kMaskedField{200, 49}, kPopUp{160, 189},
    kCheckBox{128, 266}, kActionButton{180, 296}, kOkButton{150, 326}, kCancelButton{250, 326};

// The row of the list, numbered from 0.
inline constexpr Place listRow(int row) { return {150, 182 + 8 + 14 * row}; }

// dialog_host with its window up and the focus where it starts.
class DialogHost : public Application {
 public:
  explicit DialogHost(const std::string &scenario = "plain",
                      const std::vector<std::string> &environment = {"LC_ALL=C.UTF-8"})
      : Application({DIALOG_HOST, scenario}, environment) {
    EXPECT_TRUE(waitForWindow(kTitle)) << "active is: " << activeWindow();
  }

  // Waits for the end; true when the application ended well and wrote every one of the lines.
  testing::AssertionResult endedWith(const std::vector<std::string> &lines) {
    if (const int status = wait(); status != 0)
      return testing::AssertionFailure() << "exit status " << status << "\n" << everything();
    const auto written = output();
    for (const std::string &line : lines)
      if (std::find(written.begin(), written.end(), line) == written.end())
        return testing::AssertionFailure() << "no line \"" << line << "\" in\n" << everything();
    return testing::AssertionSuccess();
  }

 private:
  std::string everything() const {
    std::string text;
    for (const auto &lines : {output(), errors()})
      for (const std::string &line : lines) text += "  " + line + "\n";
    return text;
  }
};

}  // namespace korvel::test

#endif
