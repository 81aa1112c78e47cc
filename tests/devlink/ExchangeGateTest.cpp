// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "devlink/ExchangeGate.h"

namespace quillon {
namespace {

TEST(ExchangeGate, LetsOneInAndLetsWhatBelongsToItNest) {
  ExchangeGate gate;
  {
    auto outer = gate.TryEnter();
    ASSERT_TRUE(outer);
    EXPECT_FALSE(gate.TryEnter());
    { const auto box = gate.Enter(); }
    EXPECT_FALSE(gate.IsOpen()) << "the outer hold goes on";
    const auto moved = std::move(outer);
    outer = std::nullopt;
    EXPECT_FALSE(gate.IsOpen()) << "a hold that was moved still holds";
  }
  EXPECT_TRUE(gate.IsOpen());
  EXPECT_TRUE(gate.TryEnter());
}

TEST(ExchangeGate, RunsARequestOnceWhenTheLastHoldGoes) {
  ExchangeGate gate;
  int runs = 0;
  gate.Request();  // nobody named an action yet: nothing to run, nothing kept
  gate.SetAction([&] {
    EXPECT_TRUE(gate.IsOpen());
    ++runs;
  });
  gate.Request();
  EXPECT_EQ(runs, 1);
  {
    const auto outer = gate.Enter();
    {
      const auto inner = gate.Enter();
      gate.Request();
      gate.Request();
    }
    EXPECT_EQ(runs, 1);
  }
  EXPECT_EQ(runs, 2);
  { const auto again = gate.Enter(); }
  EXPECT_EQ(runs, 2) << "a request is used up";
}

TEST(ExchangeGate, ARequestFromWithinTheActionIsNotLost) {
  ExchangeGate gate;
  int runs = 0;
  gate.SetAction([&] {
    if (++runs > 1) return;
    const auto detection = gate.Enter();
    gate.Request();
  });
  {
    const auto hold = gate.Enter();
    gate.Request();
  }
  EXPECT_EQ(runs, 2);
  EXPECT_TRUE(gate.IsOpen());
}

}  // namespace
}  // namespace quillon
