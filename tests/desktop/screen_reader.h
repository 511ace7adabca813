// SPDX-License-Identifier: MIT
// For tests/desktop/: a screen reader, which sees an application by its accessibility interface
// only.
#ifndef KORVEL_TESTS_DESKTOP_SCREEN_READER_H
#define KORVEL_TESTS_DESKTOP_SCREEN_READER_H

#include <functional>
#include <string>
#include <vector>

namespace korvel::test {

// What the application's environment needs for it.
inline constexpr char kTellsScreenReaders[] = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1";

// One at a time, on a message bus of the test's own. Fields are named as they are read out.
class ScreenReader {
 public:
  ScreenReader();
  ~ScreenReader();
  ScreenReader(const ScreenReader &) = delete;
  ScreenReader &operator=(const ScreenReader &) = delete;

  // Waits for a dialog of this title, which is the one that is read from then on.
  bool finds(const std::string &title);
  // Looks again at each event of an application, until the condition holds or a minute has passed.
  // Returns whether it held.
  bool waitUntil(const std::function<bool()> &condition);

  // What the dialog tells besides its title: the text of a message.
  std::string message() const;
  // "<role> <name>" of everything in the dialog that can have the focus, in order.
  std::vector<std::string> fields() const;
  // What a text field, a pop-up or a password field reveals as its text.
  std::string text(const std::string &field) const;
  std::string description(const std::string &field) const;
  bool isEnabled(const std::string &field) const;
  bool isChecked(const std::string &field) const;
  // The rows of a list or the entries of a pop-up.
  std::vector<std::string> rows(const std::string &field) const;

  // Each returns whether the application allowed it.
  bool setText(const std::string &field, const std::string &text);
  bool insertText(const std::string &field, int at, const std::string &text);
  bool deleteText(const std::string &field, int begin, int end);
  bool act(const std::string &field, const std::string &action);
  bool actOnRow(const std::string &field, const std::string &row, const std::string &action);

  // All texts that the application told as inserted or removed.
  const std::vector<std::string> &toldTexts() const;
};

}  // namespace korvel::test

#endif
