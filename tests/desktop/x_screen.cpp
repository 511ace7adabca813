// SPDX-License-Identifier: MIT
// A screen of an X server with a window manager.
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "tests/desktop/screen.h"

namespace korvel::test {
namespace {

// The server says when a press came as it reads it: all of them go to it at once, so that a double
// click is one on a busy machine, too.
constexpr char kClick[] = R"(
import ctypes, sys
x, y, button, times = map(int, sys.argv[1:])
xlib, xtest = ctypes.CDLL('libX11.so.6'), ctypes.CDLL('libXtst.so.6')
xlib.XOpenDisplay.restype = ctypes.c_void_p
display = ctypes.c_void_p(xlib.XOpenDisplay(None))
now = ctypes.c_ulong(0)
xtest.XTestFakeMotionEvent(display, -1, x, y, now)
for _ in range(times):
    for pressed in 1, 0:
        xtest.XTestFakeButtonEvent(display, button, pressed, now)
xlib.XSync(display, 0)
)";

class XScreen final : public Screen {
 public:
  ActiveWindow active() const override {
    ActiveWindow window;
    std::istringstream lines(outputOf("xdotool getwindowfocus getwindowname getwindowpid 2>&1"));
    std::getline(lines, window.title);
    lines >> window.process;
    return window;
  }

  Content activeContent() const override {
    Content content;
    std::istringstream lines(outputOf("xwininfo -id $(xdotool getwindowfocus)"));
    for (std::string line; std::getline(lines, line);) {
      const auto read = [&](const char *label, int &value) {
        const auto at = line.find(label);
        if (at != std::string::npos) value = std::atoi(line.c_str() + at + std::strlen(label));
      };
      read("Absolute upper-left X:", content.corner.x);
      read("Absolute upper-left Y:", content.corner.y);
      read("Width:", content.width);
      read("Height:", content.height);
    }
    return content;
  }

  // The toolkit's own window, which nobody sees, is no owner.
  bool isOwned(const Application &) const override {
    const std::string owner = firstLineOf(
        "xprop -id $(xdotool getwindowfocus) -notype WM_TRANSIENT_FOR | grep -o '0x[0-9a-f]*'");
    return outputOf("xprop -id '" + owner + "' WM_STATE 2>&1").find("Normal") != owner.npos;
  }

  void press(const std::string &key) const override {
    run("xdotool key --clearmodifiers " + shellQuoted(key));
  }

  void write(const std::string &text, int rest) const override {
    run("xdotool type --delay " + std::to_string(rest) + " -- " + shellQuoted(text));
  }

  void moveTo(Place place) const override {
    run("xdotool mousemove " + std::to_string(place.x) + " " + std::to_string(place.y));
  }

  void click(int button, Place place, int times) const override {
    run("python3 -c " + shellQuoted(kClick) + " " + std::to_string(place.x) + " " +
        std::to_string(place.y) + " " + std::to_string(button) + " " + std::to_string(times));
  }

  // By its frame, which stands above the content.
  void closeWindow() const override {
    const Content content = activeContent();
    click(1, {content.corner.x + content.width - 8, content.corner.y - 11}, 1);
  }

  void minimiseWindow() const override { run("xdotool getwindowfocus windowminimize"); }

  std::string picture(Place corner, int width, int height) const override {
    return outputOf("import -window root -crop " + std::to_string(width) + "x" +
                    std::to_string(height) + "+" + std::to_string(corner.x) + "+" +
                    std::to_string(corner.y) + " -depth 8 ppm:-");
  }

  std::string held(const std::string &selection) const override {
    return outputOf("timeout 30 xclip -selection " + selection +
                    " -o -target UTF8_STRING 2>/dev/null");
  }

  void hold(const std::string &selection, const std::string &text) const override {
    run("printf %s " + shellQuoted(text) + " | xclip -selection " + selection +
        " -in >/dev/null 2>&1");
  }
};

}  // namespace

const Screen &xScreen() {
  static const XScreen made;
  return made;
}

}  // namespace korvel::test
