// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QUrl>

#include "update/Fetch.h"
#include "update/RequestWait.h"

class QNetworkAccessManager;

namespace quillon {

// Fetch over Qt Network. Follows redirects itself: Qt would first read the body of each, and stop
// where it is longer than what may be read.
class FetchQt : public Fetch {
 public:
  explicit FetchQt(std::chrono::milliseconds time_limit = kFetchLimit);
  ~FetchQt() override;

  Fetched Get(const QString& address, std::size_t limit) override;
  void Stop() override { wait_.Stop(); }
  bool LeavesWorkBehind() const override { return left_behind_; }

 private:
  struct Answer {
    Fetched fetched;
    QUrl next;  // where a redirect leads
  };

  bool UseProxiesFor(const QUrl& address);
  Answer Ask(const QUrl& address, std::size_t limit);
  bool Wait(QEventLoop& loop);

  std::chrono::milliseconds time_limit_;
  // Lives on after a request: when it goes, it may wait seconds for its thread.
  std::unique_ptr<QNetworkAccessManager> manager_;
  RequestWait wait_;
  QDeadlineTimer deadline_;  // of the Get() that is under way
  bool left_behind_ = false;
};

}  // namespace quillon
