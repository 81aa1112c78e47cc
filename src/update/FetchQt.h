// SPDX-License-Identifier: MIT
#pragma once

#include "update/Fetch.h"
#include "update/RequestWait.h"

class QNetworkAccessManager;

namespace quillon {

// Fetch over Qt Network.
class FetchQt : public Fetch {
 public:
  explicit FetchQt(std::chrono::milliseconds time_limit = kFetchLimit);
  ~FetchQt() override;

  Fetched Get(const QString& address, std::size_t limit) override;
  void Stop() override { wait_.Stop(); }

 private:
  QNetworkAccessManager& Manager();

  std::chrono::milliseconds time_limit_;
  // Lives on after a request: when it goes, it may wait seconds for its thread.
  std::unique_ptr<QNetworkAccessManager> manager_;
  RequestWait wait_;
};

}  // namespace quillon
