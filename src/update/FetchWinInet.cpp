// SPDX-License-Identifier: MIT
#include <windows.h>
// After it, because it needs its types.
#include <wininet.h>

#include <QEventLoop>
#include <QTimer>
#include <QUrl>
#include <array>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "update/Fetch.h"
#include "update/RequestWait.h"
#include "update/WebAddress.h"

namespace quillon {
namespace {

// Loaded anew, kept in no cache, and caches on the way are told not to answer.
constexpr DWORD kOpenFlags = 0x84000101;

struct CloseInternet {
  void operator()(HINTERNET handle) const { InternetCloseHandle(handle); }
};
using Internet = std::unique_ptr<void, CloseInternet>;

// What the window's thread and the one that asks share. Both may be gone before the other.
class Request {
 public:
  Request(QEventLoop& loop, std::string address, std::size_t limit)
      : address_(std::move(address)), limit_(limit), loop_(&loop) {}

  const std::string& Address() const { return address_; }
  std::size_t Limit() const { return limit_; }

  // Whether one more redirect may be followed.
  bool MayFollow() {
    const std::lock_guard lock(mutex_);
    return loop_ != nullptr && ++redirects_ <= kMostRedirects;
  }

  void Deliver(Fetched fetched) {
    const std::lock_guard lock(mutex_);
    if (loop_ == nullptr) return;
    fetched_ = std::move(fetched);
    QMetaObject::invokeMethod(loop_, &QEventLoop::quit, Qt::QueuedConnection);
  }

  // What was delivered so far, which is what counts. The loop may go now.
  Fetched Leave() {
    const std::lock_guard lock(mutex_);
    loop_ = nullptr;
    return std::exchange(fetched_, {});
  }

 private:
  const std::string address_;
  const std::size_t limit_;
  std::mutex mutex_;
  QEventLoop* loop_;  // none when nobody waits any more
  Fetched fetched_;
  int redirects_ = 0;
};

// The end of a request that is sent on too often, or that nobody waits for any more.
void CALLBACK OnStatus(HINTERNET handle, DWORD_PTR context, DWORD status, LPVOID, DWORD) {
  if (status != INTERNET_STATUS_REDIRECT) return;
  auto& request = *reinterpret_cast<Request*>(context);
  if (request.MayFollow()) return;
  request.Deliver({});  // at once, because closing the handle need not end the call
  InternetCloseHandle(handle);
}

bool IsGoodAnswer(HINTERNET answer) {
  DWORD status = 0;
  DWORD size = sizeof status;
  return HttpQueryInfoA(answer, HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &size,
                        nullptr) != 0 &&
         status >= 200 && status < 300;
}

// Whether it came from a web server, after all redirects.
bool IsFromTheWeb(HINTERNET answer) {
  std::array<char, INTERNET_MAX_URL_LENGTH + 1> address{};
  DWORD size = INTERNET_MAX_URL_LENGTH;
  return InternetQueryOptionA(answer, INTERNET_OPTION_URL, address.data(), &size) != 0 &&
         IsWebAddress(QString::fromLatin1(address.data()));
}

Fetched ReadAnswer(HINTERNET answer, std::size_t limit) {
  if (!IsGoodAnswer(answer) || !IsFromTheWeb(answer)) return {};
  std::string text(limit, '\0');
  std::size_t size = 0;
  bool read = true;
  DWORD more = 1;
  while (size < limit && read && more > 0) {
    more = 0;
    read =
        InternetReadFile(answer, text.data() + size, static_cast<DWORD>(limit - size), &more) != 0;
    size += more;
  }
  if (!read && size == 0) return {FetchEnd::kReadFailed};
  text.resize(size);
  return {FetchEnd::kText, std::move(text)};
}

void Ask(const std::shared_ptr<Request>& request) {
  const Internet session(
      InternetOpenA(kFetchAgent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
  if (!session) return request->Deliver({});
  InternetSetStatusCallbackA(session.get(), OnStatus);
  const Internet answer(InternetOpenUrlA(session.get(), request->Address().c_str(), nullptr, 0,
                                         kOpenFlags, reinterpret_cast<DWORD_PTR>(request.get())));
  // Before the handles are closed, because that may take in the rest of a long answer.
  request->Deliver(answer ? ReadAnswer(answer.get(), request->Limit()) : Fetched{});
}

// Fetch over the system's own functions. They keep to no limit of time, not even when their handle
// is closed, so each request has a thread of its own, which is left alone when the time is over.
class FetchWinInet : public Fetch {
 public:
  Fetched Get(const QString& address, std::size_t limit) override {
    if (wait_.IsUnderWay() || !IsWebAddress(address)) return {};
    QEventLoop loop;
    QTimer::singleShot(kFetchLimit, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    const auto request = std::make_shared<Request>(
        loop, QUrl(address).toEncoded(QUrl::FullyEncoded).toStdString(), limit);
    try {
      std::thread(Ask, request).detach();
    } catch (const std::system_error&) {
      return {};
    }
    const bool stopped = !wait_.Run(loop);
    Fetched fetched = request->Leave();
    return stopped ? Fetched{} : fetched;
  }

  void Stop() override { wait_.Stop(); }

 private:
  RequestWait wait_;
};

}  // namespace

std::unique_ptr<Fetch> MakeFetch() { return std::make_unique<FetchWinInet>(); }

}  // namespace quillon
