// SPDX-License-Identifier: MIT
// A screen of a Wayland compositor, sway, with a pointer that POINTER names (see
// scripts/with-wayland).
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/desktop/screen.h"

namespace korvel::test {
namespace {

// What sway tells of the window that has the focus, from there on.
std::string focusedNode() {
  const std::string tree = outputOf("swaymsg -t get_tree");
  const auto at = tree.find("\"focused\": true");
  return at == std::string::npos ? std::string() : tree.substr(at);
}

std::string behind(const std::string &text, const std::string &label) {
  const auto at = text.find(label);
  return at == std::string::npos ? std::string() : text.substr(at + label.size());
}

struct Rectangle {
  int x = 0, y = 0, width = 0, height = 0;
};

Rectangle rectangle(const std::string &node, const std::string &name) {
  Rectangle read;
  std::sscanf(behind(node, "\"" + name + "\": {").c_str(),
              " \"x\": %d, \"y\": %d, \"width\": %d, \"height\": %d", &read.x, &read.y, &read.width,
              &read.height);
  return read;
}

class WaylandScreen final : public Screen {
 public:
  // Titles of windows alone: the focus is a workspace's where no window has it.
  ActiveWindow active() const override {
    const std::string node = focusedNode();
    if (rectangle(node, "window_rect").width == 0) return {};
    const std::string name = behind(node, "\"name\": \"");
    return {name.substr(0, name.find("\",\n")), std::atoi(behind(node, "\"pid\": ").c_str())};
  }

  Content activeContent() const override {
    const std::string node = focusedNode();
    const Rectangle frame = rectangle(node, "rect"), inside = rectangle(node, "window_rect");
    return {{frame.x + inside.x, frame.y + inside.y}, inside.width, inside.height};
  }

  // As the application's connection writes it down. Windows are not told apart.
  bool isOwned(const Application &application) const override {
    const auto lines = application.errors();
    return std::any_of(lines.begin(), lines.end(), [](const std::string &line) {
      return line.find("set_parent(xdg_toplevel@") != line.npos;
    });
  }

  void press(const std::string &key) const override {
    std::string down, up, name;
    std::istringstream parts(key);
    while (std::getline(parts, name, '+')) {
      if (parts.eof()) break;
      down += " -M " + name;
      up += " -m " + name;
    }
    run("wtype" + down + " -k " + shellQuoted(name) + up);
  }

  void write(const std::string &text, int rest) const override {
    const std::string pace = rest == 0 ? "" : "-d " + std::to_string(rest);
    run("wtype " + pace + " -- " + shellQuoted(text));
  }

  void moveTo(Place place) const override { click(1, place, 0); }

  void click(int button, Place place, int times) const override {
    std::ofstream(std::getenv("POINTER"))
        << place.x << ' ' << place.y << ' ' << button << ' ' << times << std::endl;
  }

  // Windows have no button for it here; the compositor has a key.
  void closeWindow() const override { run("swaymsg -q kill"); }

  void minimiseWindow() const override { run("swaymsg -q move scratchpad"); }

  std::string picture(Place corner, int width, int height) const override {
    return outputOf("grim -t ppm -g '" + std::to_string(corner.x) + "," + std::to_string(corner.y) +
                    " " + std::to_string(width) + "x" + std::to_string(height) + "' -");
  }

  std::string held(const std::string &selection) const override {
    return outputOf("timeout 30 wl-paste --no-newline --type 'text/plain;charset=utf-8'" +
                    option(selection) + " 2>/dev/null");
  }

  void hold(const std::string &selection, const std::string &text) const override {
    run("printf %s " + shellQuoted(text) + " | wl-copy --type 'text/plain;charset=utf-8'" +
        option(selection) + " >/dev/null 2>&1");
  }

 private:
  static std::string option(const std::string &selection) {
    return selection == "primary" ? " --primary" : "";
  }
};

}  // namespace

const Screen &waylandScreen() {
  static const WaylandScreen made;
  return made;
}

}  // namespace korvel::test
