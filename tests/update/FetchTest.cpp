// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPushButton>
#include <QTest>

#include "update/FetchFixture.h"

namespace quillon::testing {
namespace {

using namespace std::chrono_literals;

// How it ends when a good answer began and nothing follows.
#ifdef _WIN32
constexpr FetchEnd kNothingCame = FetchEnd::kText;  // the system takes any end for the right one
#else
constexpr FetchEnd kNothingCame = FetchEnd::kReadFailed;
#endif

}  // namespace

TEST_F(FetchOverLoopback, TellsHowAnAnswerEnds) {
  using enum FetchEnd;
  const struct {
    const char* address;
    FetchEnd end;
    std::string text;
  } cases[]{{"/good", kText, "hello"},
            {"/slow", kText, "hello"},
            {"/5", kText, "hello"},
            {"/short", kText, "hello"},
            {"/big", kText, std::string(512, 'z')},
            {"/empty", kText, ""},
            {"/head", kNothingCame, ""},
            {"/404", kNotOpened, ""},
            {"/6", kNotOpened, ""},
            {"/loop", kNotOpened, ""},
            {"/file", kNotOpened, ""},
            {"/close", kNotOpened, ""},
            {"data:,hello", kNotOpened, ""},
            {"file:///dev/null", kNotOpened, ""},
            {"http://[::1]:1/", kNotOpened, ""}};
  for (const auto& c : cases) {
    const QDeadlineTimer much_later(5s);
    const Fetched fetched = Get(c.address);
    EXPECT_EQ(fetched.end, c.end) << c.address;
    EXPECT_EQ(fetched.text, c.text) << c.address;
    EXPECT_FALSE(much_later.hasExpired()) << c.address;
  }
}

TEST_F(FetchOverLoopback, LeavesAServerWhenItIsToldTo) {
  const QDeadlineTimer much_later(5s);
  EXPECT_FALSE(fetch_->LeavesWorkBehind());
  QTimer::singleShot(20, [&] {
    EXPECT_EQ(Get("/good").end, FetchEnd::kNotOpened) << "inside another";
    fetch_->Stop();
  });
  EXPECT_EQ(Get("/never").end, FetchEnd::kNotOpened);
  EXPECT_EQ(Get("/good").text, "hello") << "after Stop()";
  QTimer::singleShot(0, [&] {
    QTimer::singleShot(20, [] { QCoreApplication::exit(); });
    EXPECT_EQ(Get("/never").end, FetchEnd::kNotOpened);
  });
  QCoreApplication::exec();
  EXPECT_FALSE(much_later.hasExpired());
}

TEST_F(FetchOverLoopback, LosesClicksAndKeysButLetsAButtonUp) {
  QPushButton button;
  button.show();
  QPushButton held;
  held.show();
  int clicks = 0;
  QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
  QTest::mousePress(held.windowHandle(), Qt::LeftButton, {}, held.rect().center());
  ASSERT_TRUE(held.isDown());
  QTimer::singleShot(0, &button, [&] {
    QTest::mouseRelease(held.windowHandle(), Qt::LeftButton, {}, held.rect().center());
    QTest::mouseClick(button.windowHandle(), Qt::LeftButton, {}, button.rect().center());
    QTest::keyClick(button.windowHandle(), Qt::Key_Space);
  });
  EXPECT_EQ(Get("/slow").text, "hello");
  QCoreApplication::processEvents();
  EXPECT_EQ(clicks, 0);
  EXPECT_FALSE(held.isDown());
}

}  // namespace quillon::testing
