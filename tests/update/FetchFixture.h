// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <memory>

#include "update/Fetch.h"

namespace quillon::testing {

inline const QByteArray kGood = "HTTP/1.1 200 OK\r\nSet-Cookie: a=b\r\nConnection: close\r\n";
inline const QByteArray kGoTo = "HTTP/1.1 302 Found\r\nContent-Length: 20000\r\nLocation: ";
inline const QByteArray kToItsBody = "\r\n\r\n" + QByteArray(20000, 'z');

inline QByteArray AnswerTo(const QByteArray& path) {
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

inline void SendByteByByte(QTcpSocket* socket, const QByteArray& text) {
  if (text.isEmpty()) return socket->disconnectFromHost();
  socket->write(text.left(1));
  QTimer::singleShot(1, socket, [=] { SendByteByByte(socket, text.mid(1)); });
}

// Asks a web server of the test's own, on the loopback device.
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
    return fetch_->Get(path.startsWith('/') ? Server() + path : path, 512);
  }
  QString Server() const { return "http://127.0.0.1:" + QString::number(server_.serverPort()); }

  QTcpServer server_;
  QByteArray asked_;  // the last request
  const std::unique_ptr<Fetch> fetch_ = MakeFetch();
};

}  // namespace quillon::testing
