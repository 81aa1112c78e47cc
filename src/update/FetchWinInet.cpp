// SPDX-License-Identifier: MIT
#include <windows.h>
// After it, because it needs its types.
#include <wininet.h>

#include <QEventLoop>
#include <QTimer>
#include <QUrl>
#include <array>
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

struct Request : Handover<Fetched> {
  Request(QEventLoop& loop, std::string where, std::size_t most)
      : Handover(loop), address(std::move(where)), limit(most) {}

  const std::string address;
  const std::size_t limit;
  int redirects = 0;
};

// The end of a request that is sent on too often, or that nobody waits for any more.
void CALLBACK OnStatus(HINTERNET handle, DWORD_PTR context, DWORD status, LPVOID, DWORD) {
  if (status != INTERNET_STATUS_REDIRECT) return;
  auto& request = *reinterpret_cast<Request*>(context);
  if (request.IsAwaited() && ++request.redirects <= kMostRedirects) return;
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
  const Internet answer(InternetOpenUrlA(session.get(), request->address.c_str(), nullptr, 0,
                                         kOpenFlags, reinterpret_cast<DWORD_PTR>(request.get())));
  // Before the handles are closed, because that may take in the rest of a long answer.
  request->Deliver(answer ? ReadAnswer(answer.get(), request->limit) : Fetched{});
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
    const auto fetched = request->Leave();
    left_behind_ = left_behind_ || !fetched;
    return fetched && !stopped ? *fetched : Fetched{};
  }

  void Stop() override { wait_.Stop(); }
  bool LeavesWorkBehind() const override { return left_behind_; }

 private:
  RequestWait wait_;
  bool left_behind_ = false;
};

}  // namespace

std::unique_ptr<Fetch> MakeFetch() { return std::make_unique<FetchWinInet>(); }

}  // namespace quillon
