// SPDX-License-Identifier: MIT
// For tests/desktop/: a person in front of a real screen. The application under test is another
// process; keys, clicks and pictures come from outside of it.
#ifndef KORVEL_TESTS_DESKTOP_SCREEN_USER_H
#define KORVEL_TESTS_DESKTOP_SCREEN_USER_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace korvel::test {

// A program started with its standard output and error read. Killed when destroyed while running.
class Application {
 public:
  // `environment`: entries "NAME=value" added to the test's own; "NAME" alone removes one.
  explicit Application(const std::vector<std::string> &command,
                       std::vector<std::string> environment = {});
  ~Application();
  Application(const Application &) = delete;
  Application &operator=(const Application &) = delete;

  // Waits for the end (-1 where it does not come). Returns the exit status.
  int wait();
  // The lines written so far; all of them after wait().
  std::vector<std::string> output() const;
  std::vector<std::string> errors() const;
  // True when `line` was written, waiting for it.
  bool says(const std::string &line) const;
  // How many lines of the output begin with `start`.
  int count(const std::string &start) const;

  // Has it do nothing until it goes on: what is typed meanwhile waits for it.
  void pause() const;
  void goOn() const;
  // True when it has stopped itself, waiting for it.
  bool stops() const;

 private:
  pid_t process_ = -1;
  std::string folder_;
};

struct Place {
  int x = 0;
  int y = 0;
  friend bool operator==(const Place &, const Place &) = default;
};

struct Colour {
  std::uint8_t red = 0, green = 0, blue = 0;
  friend bool operator==(const Colour &, const Colour &) = default;
};

// A picture of a part of the screen.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<Colour> pixels;

  Colour at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
  // How many pixels are darker than mid-grey.
  int darkPixels() const;
};

// How many seconds anything may take on a machine that is slow and busy.
inline constexpr int kPatience = 60;
// Waits up to so many seconds until the condition holds; whether it does.
bool waitUntil(int seconds, const std::function<bool()> &condition);
void rest(int milliseconds);
// Waits until the screen and the applications have done all that was asked of them, and painted it.
void settle();

// Waits until a window with this title, of an application that runs, has the focus, and all is at
// rest.
bool waitForWindow(const std::string &title);
// Waits until one of an application that works on and on, and never is at rest, has the focus and
// its place.
bool waitForWindowAtWork(const std::string &title);
std::string activeWindow();

// Whether the active window of the application has told the screen which window it stands in front
// of. The application has this in its environment.
inline constexpr char kSaysOwners[] = "WAYLAND_DEBUG=1";
bool isOwned(const Application &application);

// Each of these, but for the bursts and the click meanwhile, waits until all that comes of it is
// done. Names of keys as X has them, separated by blanks: "Tab ctrl+a eacute".
void press(const std::string &keys);
// Types a UTF-8 text.
void write(const std::string &text);
// Types an ASCII text, or presses keys, as fast as it can be done.
void burst(const std::string &text);
void burstOfKeys(const std::string &keys);
// Clicks while the application works on and on.
void clickMeanwhile(Place place);
// Clicks at a place of the active window's content; `times` in quick succession.
void click(Place place, int times = 1);
// Clicks with the middle button, which pastes what is selected elsewhere.
void clickMiddle(Place place);
void turnWheelDown(Place place, int steps);
// Moves the mouse to a place of the active window's content.
void restOn(Place place);
// Closes the active window by its frame, or what stands for one.
void closeWindow();
// Has the window manager minimise the active window.
void minimiseWindow();

// The active window's content on the screen: its top left corner and its size.
struct Content {
  Place corner;
  int width = 0;
  int height = 0;
  friend bool operator==(const Content &, const Content &) = default;
};
Content activeContent();

// A rectangle of the active window's content, once all is at rest.
Picture picture(int left, int top, int width, int height);

// What the clipboard holds, as UTF-8.
std::string clipboard();
void setClipboard(const std::string &text);
// Has another application select this text.
void setSelection(const std::string &text);

}  // namespace korvel::test

#endif
