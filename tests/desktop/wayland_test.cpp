// What a compositor is told, as the connection to it writes it down.
#include <algorithm>

#include "tests/desktop/dialog_host.h"

namespace korvel::test {
namespace {

const std::vector<std::string> kWritesDown{"WAYLAND_DEBUG=1", "LC_ALL=C.UTF-8"};

// How many windows named another one as theirs.
auto ownedWindows(const Application &application) {
  const auto lines = application.errors();
  return std::count_if(lines.begin(), lines.end(), [](const std::string &line) {
    return line.find("set_parent(xdg_toplevel@") != line.npos;
  });
}

TEST(Wayland, ADialogHasItsParentForOwner) {
  Application application({WINDOW_HOST}, kWritesDown);
  ASSERT_TRUE(waitForWindow("Derrière")) << activeWindow();
  EXPECT_EQ(ownedWindows(application), 0);
  press("Return");
  ASSERT_TRUE(waitForWindow("Devant")) << activeWindow();
  EXPECT_EQ(ownedWindows(application), 1);
}

TEST(Wayland, AMessageHasItsDialogForOwner) {
  Application application({MESSAGE_HOST, "dialog"}, kWritesDown);
  ASSERT_TRUE(waitForWindow("Fiche")) << activeWindow();
  EXPECT_EQ(ownedWindows(application), 0);
  write("!");
  ASSERT_TRUE(waitForWindow("Saisie")) << activeWindow();
  EXPECT_EQ(ownedWindows(application), 1);
}

}  // namespace
}  // namespace korvel::test
