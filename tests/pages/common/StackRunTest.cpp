// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QGuiApplication>
#include <QStyleHints>
#include <functional>

#include "pages/common/StackRun.h"

namespace quillon::testing {
namespace {

// A run of three items that is asked between them.
struct Items {
  Items() {
    QObject::connect(&run, &StackRun::Begun, [this] { log += "begun "; });
    QObject::connect(&run, &StackRun::Ended,
                     [this] { log += gate.IsOpen() ? "ended, open " : "ended, held "; });
  }

  // Runs the items, `wish` after the first of them; what happened.
  std::string Run(const std::function<void()>& wish) {
    log.clear();
    const auto work = [&] {
      for (int item = 1; item <= 3; ++item) {
        run.BeginItem();
        log += std::to_string(item) + (run.IsToStop() ? "- " : " ");
        if (item == 1) wish();
        if (item == 1 && run.IsToStop()) log += "stopping ";
      }
    };
    run.Run(work, [this] { log += "asked "; });
    return log;
  }

  ExchangeGate gate;
  std::chrono::milliseconds now{};
  StackRun run{gate, nullptr, [this] { return now; }};
  std::string log;
};

}  // namespace

TEST(StackRun, ForgetsAWishForOneItemButNeverOneForTheWholeRun) {
  const struct {
    const char* name;
    std::function<void(Items&)> wish;
    const char* log;
  } cases[]{
      {"none", [](Items&) {}, "begun 1 2 3 ended, open "},
      {"item", [](Items& i) { i.run.StopItem(); }, "begun 1 asked stopping 2 3 ended, open "},
      {"run", [](Items& i) { i.run.StopRun(); }, "begun 1 asked stopping 2- 3- ended, open "},
      {"item, then run",
       [](Items& i) {
         i.run.StopItem();
         i.run.StopRun();
       },
       "begun 1 asked stopping 2- 3- ended, open "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Items items;
    EXPECT_EQ(items.Run([&] { c.wish(items); }), c.log);
    items.now += std::chrono::hours(1);
    EXPECT_EQ(items.Run([] {}), "begun 1 2 3 ended, open ") << "the next run has no wishes yet";
  }
}

TEST(StackRun, BeginsNothingWhileTheGateIsHeldOrJustAfterAStop) {
  Items items;
  {
    const auto hold = items.gate.Enter();
    EXPECT_EQ(items.Run([] {}), "");
  }
  items.run.StopItem();  // without a run that says nothing
  const auto begin_another = [&] {
    EXPECT_TRUE(items.run.IsUnderWay());
    items.run.Run([] { ADD_FAILURE() << "two at once"; }, [] {});
    items.run.StopItem();
  };
  EXPECT_THAT(items.Run(begin_another), ::testing::StartsWith("begun 1 asked "));
  EXPECT_FALSE(items.run.IsUnderWay());
  const std::chrono::milliseconds interval(
      QGuiApplication::styleHints()->mouseDoubleClickInterval());
  items.now += interval - std::chrono::milliseconds(1);
  EXPECT_EQ(items.Run([] {}), "");
  items.now += std::chrono::milliseconds(1);
  EXPECT_EQ(items.Run([] {}), "begun 1 2 3 ended, open ");
}

}  // namespace quillon::testing
