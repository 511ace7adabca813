// SPDX-License-Identifier: MIT
// Thousands of random keys and clicks on the application's windows, in the Qt module: after each of
// them all that is shown must agree with the tables. With the hand that the environment names: the
// toolkit's test kit, or a real screen, which is told with KORVEL_TEST_HAND=screen.
#include "tests/monkey/monkey.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <QGuiApplication>
#include <QStyleHints>
#include <gtest/gtest.h>

#include "tests/platform/qt_person.h"
#include "tests/support/sanitizer.h"

namespace korvel::test {
namespace {

constexpr unsigned kSeed = 20261121;

// Real windows take their time, and much more of it under the sanitizers.
bool isOnScreen() {
  const char *hand = std::getenv("KORVEL_TEST_HAND");
  return hand != nullptr && std::strcmp(hand, "screen") == 0;
}

TEST(Monkey, WhateverItDoesWhatIsShownAgreesWithTheTables) {
  if (isOnScreen()) setenv("QT_QPA_PLATFORM", "xcb", 1);
  const int events = isOnScreen() && kUnderSanitizer ? 1500 : 5200;
  std::printf("seed %u\n", kSeed);
  qtDesktop();
  // Pop-ups that a click has opened take the next one only after this time.
  QGuiApplication::styleHints()->setMouseDoubleClickInterval(20);
  const auto hand = isOnScreen() ? screenHand() : kitHand();
  EXPECT_EQ(QGuiApplication::platformName() == QLatin1String("xcb"), isOnScreen());
  Application app(kSeed);
  Monkey monkey(app, *hand, events);
  monkey.play();
  EXPECT_GE(monkey.events(), events);
  EXPECT_GE(monkey.dialogs(), 3) << "it has neither accepted nor cancelled";
  const int least = std::max(1, events / 2000);
  for (const int field :
       {kTextId + kShort, kTextId + kMasked, kTextId + kFree, kTextId + kPopUp, kTextId + kList,
        kIntId + kPlainInt, kIntId + kMaskedInt, kNumId + kMandatory, kNumId + kOptional, kDateId,
        kDateId + 3, kBoolId, kBoolId + 1, kPushId + kChange, kPushId + kRebuild, kPushId + kTell,
        kPushId + kChoose})
    EXPECT_GE(app.changes[field], least) << "field " << field << " was hardly changed";
  EXPECT_GE(app.told, least);
  EXPECT_GE(app.rebuilt, least);
  EXPECT_GE(app.refusedChoosers, least);
  EXPECT_GE(app.choosers, 1);
  std::printf("%d events on %d dialogs: %d messages, %d lists rebuilt, %d choosers\n",
              monkey.events(), monkey.dialogs(), app.told, app.rebuilt, app.choosers);
}

}  // namespace
}  // namespace korvel::test
