// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QDeadlineTimer>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include "update/FetchQt.h"

namespace quillon::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using namespace std::chrono_literals;

const QByteArray kGood = "HTTP/1.1 200 OK\r\nSet-Cookie: a=b\r\nConnection: close\r\n";
const QByteArray kGoTo = "HTTP/1.1 302 Found\r\nContent-Length: 20000\r\nLocation: ";
const QByteArray kToItsBody = "\r\n\r\n" + QByteArray(20000, 'z');

QByteArray AnswerTo(const QByteArray& path) {
  if (path == "/close") return {};
  if (path == "/404") return "HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\n\r\ngone";
  if (path == "/empty") return kGood + "Content-Length: 0\r\n\r\n";
  if (path == "/big") return kGood + "\r\n" + QByteArray(10 << 20, 'z');
  if (path == "/short") return kGood + "Content-Length: 100\r\n\r\nhello";
  if (path == "/stuck") return kGood + "\r\nhello";
  if (path == "/head") return kGood + "Content-Length: 100\r\n\r\n";
  if (path == "/loop") return kGoTo + "/loop" + kToItsBody;
  if (path == "/file") return kGoTo + "file:///dev/null" + kToItsBody;
  if (const int n = path.mid(1).toInt(); n > 0)
    return kGoTo + QByteArray::number(n - 1) + kToItsBody;
  return kGood + "Content-Length: 5\r\n\r\nhello";
}

void SendByteByByte(QTcpSocket* socket, const QByteArray& text) {
  if (text.isEmpty()) return socket->disconnectFromHost();
  socket->write(text.left(1));
  QTimer::singleShot(1, socket, [=] { SendByteByByte(socket, text.mid(1)); });
}

class FetchOverLoopback : public ::testing::Test {
 protected:
  FetchOverLoopback() {
    for (const char* name : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"}) qunsetenv(name);
    server_.listen(QHostAddress::LocalHost);
    QObject::connect(&server_, &QTcpServer::newConnection, [this] {
      QTcpSocket* const socket = server_.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::readyRead, [this, socket] { Serve(socket); });
    });
  }

  void Serve(QTcpSocket* socket) {
    asked_ = socket->readAll();
    const QByteArray path = asked_.split(' ').value(1);
    if (path == "/never") return;
    if (path == "/slow") return SendByteByByte(socket, kGood + "\r\nhello");
    socket->write(AnswerTo(path));
    if (path == "/stuck") return;
    socket->disconnectFromHost();
  }

  Fetched Get(const QString& path) {
    return fetch_.Get(path.startsWith('/') ? Server() + path : path, 512);
  }
  QString Server() const { return "http://127.0.0.1:" + QString::number(server_.serverPort()); }

  QTcpServer server_;
  QByteArray asked_;  // the last request
  FetchQt fetch_;
};

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
            {"/head", kReadFailed, ""},
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
  EXPECT_FALSE(fetch_.LeavesWorkBehind());
  EXPECT_TRUE(impatient.LeavesWorkBehind());
  QTimer::singleShot(20, [&] {
    EXPECT_EQ(Get("/good").end, FetchEnd::kNotOpened) << "inside another";
    fetch_.Stop();
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
