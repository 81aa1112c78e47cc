// SPDX-License-Identifier: MIT
#include <QDeadlineTimer>

#include "update/FetchFixture.h"
#include "update/FetchQt.h"

namespace quillon::testing {

using ::testing::HasSubstr;
using ::testing::Not;
using namespace std::chrono_literals;

TEST_F(FetchOverLoopback, AsksTheServerItselfAndKeepsNothing) {
  Get("/good");
  Get("/good");
  EXPECT_THAT(asked_.toStdString(),
              AllOf(HasSubstr("User-Agent: Update search\r\n"), HasSubstr("Pragma: no-cache\r\n"),
                    HasSubstr("Accept-Encoding: identity\r\n"), Not(HasSubstr("Cookie"))));
  qputenv("http_proxy", Server().toUtf8());
  EXPECT_EQ(Get("http://lists.invalid/good").text, "hello");
  EXPECT_THAT(asked_.toStdString(), HasSubstr("GET http://lists.invalid/good HTTP"));
}

TEST_F(FetchOverLoopback, LeavesAServerThatNeverAnswers) {
  const QDeadlineTimer much_later(5s);
  FetchQt impatient(50ms);
  EXPECT_EQ(impatient.Get(Server() + "/never", 512).end, FetchEnd::kNotOpened);
  EXPECT_EQ(impatient.Get(Server() + "/stuck", 512).end, FetchEnd::kNotOpened);
  EXPECT_TRUE(impatient.LeavesWorkBehind());
  EXPECT_FALSE(much_later.hasExpired());
}

// As long as the script does not come, only another thread may wait for it.
TEST_F(FetchOverLoopback, LeavesAProxyScriptThatNeverComes) {
  qputenv("http_proxy", ("pac+" + Server() + "/never").toUtf8());
  const QDeadlineTimer much_later(5s);
  int turns = 0;
  QTimer timer;
  timer.callOnTimeout([&] { ++turns; });
  timer.start(10);
  EXPECT_EQ(FetchQt(200ms).Get(Server() + "/good", 512).end, FetchEnd::kNotOpened);
  EXPECT_FALSE(much_later.hasExpired());
  EXPECT_GT(turns, 1) << "the window goes on";
}

}  // namespace quillon::testing
