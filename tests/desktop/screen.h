// SPDX-License-Identifier: MIT
// For tests/desktop/: what a person in front of a screen needs of it, with the usual tools of each
// kind of screen.
#ifndef KORVEL_TESTS_DESKTOP_SCREEN_H
#define KORVEL_TESTS_DESKTOP_SCREEN_H

#include <string>

#include "tests/desktop/screen_user.h"

namespace korvel::test {

// A window that has the focus, and the process whose it is.
struct ActiveWindow {
  std::string title;
  pid_t process = 0;
};

class Screen {
 public:
  virtual ~Screen() = default;

  // Nothing of it while no window has the focus.
  virtual ActiveWindow active() const = 0;
  virtual Content activeContent() const = 0;
  virtual bool isOwned(const Application &application) const = 0;
  // One key with its modifiers, as in "ctrl+a".
  virtual void press(const std::string &key) const = 0;
  // A UTF-8 text, with a rest of so many milliseconds after each character.
  virtual void write(const std::string &text, int rest) const = 0;
  // The mouse, to a place of the screen.
  virtual void moveTo(Place place) const = 0;
  // At a place of the screen; button 1 is the left one, 2 the middle one, 5 the wheel downwards.
  virtual void click(int button, Place place, int times) const = 0;
  virtual void closeWindow() const = 0;
  virtual void minimiseWindow() const = 0;
  // A rectangle of the screen as a binary PPM file.
  virtual std::string picture(Place corner, int width, int height) const = 0;
  // "clipboard", or "primary" for what is selected.
  virtual std::string held(const std::string &selection) const = 0;
  virtual void hold(const std::string &selection, const std::string &text) const = 0;
};

// The screen that the environment names.
const Screen &screen();

// ---- For its implementations ----

bool run(const std::string &command);
std::string outputOf(const std::string &command);
std::string firstLineOf(const std::string &command);
std::string shellQuoted(const std::string &text);

const Screen &xScreen();
const Screen &waylandScreen();

}  // namespace korvel::test

#endif
