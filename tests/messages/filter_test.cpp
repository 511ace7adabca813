// SPDX-License-Identifier: MIT
// The event filter of the boxes: events to windows, keys to buttons.
#include <string>

#include <gtest/gtest.h>

#include <korvel/messages.h>

#include "tests/platform/scripted_desktop.h"

namespace korvel::test {
namespace {

constexpr int kUntouched = -77;
constexpr int kReturn = 13, kEnter = 3, kEscape = 27;

EventRecord *g_handled = nullptr;
int g_calls = 0;

void handle(EventRecord *event) {
  g_handled = event;
  ++g_calls;
}

// A window record of an application: ten fields as large as a pointer; the last is its handler.
struct WindowRecord {
  void *fields[9] = {};
  WindowEvent_t handler = handle;
};

struct Answer {
  int result;
  int item;
  friend bool operator==(const Answer &, const Answer &) = default;
};

Answer filtered(EventRecord event) {
  int item = kUntouched;
  const int result = MessageBoxFilter(nullptr, &event, &item);
  return {result, item};
}

constexpr Answer kNotHandled{0, kUntouched};

TEST(Filter, UpdateAndActivateEventsGoToTheHandlerOfTheirWindow) {
  WindowRecord record;
  for (const int what : {KorvelUpdateEvent, KorvelActivateEvent}) {
    EventRecord event{what, 0, nullptr, &record};
    int item = kUntouched;
    g_calls = 0;
    EXPECT_EQ(MessageBoxFilter(nullptr, &event, &item), 0) << "not handled by the box";
    EXPECT_EQ(item, kUntouched);
    EXPECT_EQ(g_calls, 1);
    EXPECT_EQ(g_handled, &event);
  }
}

TEST(Filter, OtherEventsDoNot) {
  WindowRecord record;
  g_calls = 0;
  for (const int what : {-1, 0, 1, 2, 3, 4, 5, 7, 9, 1000})
    EXPECT_EQ(filtered({what, 'x', nullptr, &record}), kNotHandled) << what;
  EXPECT_EQ(g_calls, 0);
}

TEST(Filter, AWindowWithoutARecordOrHandlerIsNotHandled) {
  WindowRecord record;
  record.handler = nullptr;
  for (const int what : {KorvelUpdateEvent, KorvelActivateEvent}) {
    EXPECT_EQ(filtered({what, kReturn, nullptr, nullptr}), kNotHandled);
    EXPECT_EQ(filtered({what, kReturn, nullptr, &record}), kNotHandled);
  }
}

TEST(Filter, KeysMeanWhatTheyMeanInAnyDialog) {
  for (const int what : {KorvelKeyEvent, KorvelRepeatedKeyEvent}) {
    EXPECT_EQ(filtered({what, kReturn, nullptr, nullptr}), (Answer{1, 1}));
    EXPECT_EQ(filtered({what, kEnter, nullptr, nullptr}), (Answer{1, 1}));
    EXPECT_EQ(filtered({what, kEscape, nullptr, nullptr}), (Answer{1, 2}));
    for (const int key : {0, int{'o'}, int{'n'}, int{' '}, -13, 256 + 13})
      EXPECT_EQ(filtered({what, key, nullptr, nullptr}), kNotHandled) << key;
  }
}

TEST(Filter, KeysMeanTheButtonsOfTheBoxThatIsUp) {
  const struct {
    unsigned flags;
    int ofReturn, ofEscape;
  } cases[] = {{0x00, 1, 1}, {0x10, 1, 2}, {0x50, 2, 2}, {0x70, 1, 2}};
  for (const auto &row : cases) {
    ScriptedDesktop desk;
    desk.expectDialog("T")
        .check([&] {
          EXPECT_EQ(filtered({KorvelKeyEvent, kReturn, nullptr, nullptr}),
                    (Answer{1, row.ofReturn}))
              << row.flags;
          EXPECT_EQ(filtered({KorvelKeyEvent, kEscape, nullptr, nullptr}),
                    (Answer{1, row.ofEscape}))
              << row.flags;
        })
        .press(1);
    MessageBox(nullptr, "x", "T", row.flags);
    desk.finish();
    EXPECT_EQ(filtered({KorvelKeyEvent, kEscape, nullptr, nullptr}), (Answer{1, 2}))
        << "after the box";
  }
}

TEST(Filter, NullPointersAreHarmless) {
  int item = kUntouched;
  EXPECT_EQ(MessageBoxFilter(nullptr, nullptr, &item), 0);
  EXPECT_EQ(item, kUntouched);
  EventRecord event{KorvelKeyEvent, kReturn, nullptr, nullptr};
  EXPECT_EQ(MessageBoxFilter(nullptr, &event, nullptr), 1);
}

}  // namespace
}  // namespace korvel::test
