// SPDX-License-Identifier: MIT
#include "update/FetchQt.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QTimer>
#include <system_error>
#include <thread>
#include <utility>

#include "update/WebAddress.h"

namespace quillon {
namespace {

using Proxies = QList<QNetworkProxy>;

// Always the same ones.
class TheseProxies : public QNetworkProxyFactory {
 public:
  explicit TheseProxies(Proxies proxies) : proxies_(std::move(proxies)) {}
  Proxies queryProxy(const QNetworkProxyQuery& /*query*/) override { return proxies_; }

 private:
  Proxies proxies_;
};

QNetworkRequest RequestFor(const QUrl& address) {
  QNetworkRequest request(address);
  request.setHeader(QNetworkRequest::UserAgentHeader, QLatin1String(kFetchAgent));
  // Sends "Pragma: no-cache" too.
  request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
  request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  // Otherwise few packed bytes may become very many.
  request.setRawHeader("Accept-Encoding", "identity");
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::ManualRedirectPolicy);
  return request;
}

bool IsGoodAnswer(const QNetworkReply& reply) {
  const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  return status >= 200 && status < 300;
}

}  // namespace

FetchQt::FetchQt(std::chrono::milliseconds time_limit) : time_limit_(time_limit) {}

FetchQt::~FetchQt() = default;

// Turns the loop until it is quit or the time is over. False if that was for nothing.
bool FetchQt::Wait(QEventLoop& loop) {
  QTimer::singleShot(std::chrono::milliseconds(deadline_.remainingTime()), Qt::PreciseTimer, &loop,
                     &QEventLoop::quit);
  return wait_.Run(loop);
}

// A desktop may name a script that knows the proxies. It is fetched and run without a limit, so in
// a thread that is left alone when the time is over.
bool FetchQt::UseProxiesFor(const QUrl& address) {
  QEventLoop loop;
  const auto look_up = std::make_shared<Handover<Proxies>>(loop);
  try {
    std::thread([look_up, query = QNetworkProxyQuery(address)] {
      look_up->Deliver(QNetworkProxyFactory::systemProxyForQuery(query));
    }).detach();
  } catch (const std::system_error&) {
    return false;
  }
  const bool waited = Wait(loop);
  auto proxies = look_up->Leave();
  left_behind_ = left_behind_ || !proxies;
  if (!proxies || !waited) return false;
  if (!manager_) manager_ = std::make_unique<QNetworkAccessManager>();
  manager_->setProxyFactory(new TheseProxies(std::move(*proxies)));  // which it owns
  return true;
}

FetchQt::Answer FetchQt::Ask(const QUrl& address, std::size_t limit) {
  Answer answer;
  std::string& text = answer.fetched.text;
  QEventLoop loop;
  const std::unique_ptr<QNetworkReply> reply(manager_->get(RequestFor(address)));
  reply->setReadBufferSize(static_cast<qint64>(limit));
  const auto look_at_head = [&] {
    answer.next = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!answer.next.isEmpty()) loop.quit();
  };
  const auto take = [&] {
    text += reply->read(static_cast<qint64>(limit - text.size())).toStdString();
    if (text.size() == limit) loop.quit();
  };
  QObject::connect(reply.get(), &QNetworkReply::metaDataChanged, &loop, look_at_head);
  QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, take);
  QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
  if (!reply->isFinished() && !Wait(loop)) {
    left_behind_ = true;
    return {};
  }
  if (!answer.next.isEmpty()) return answer;
  // The loop also ends when the time is over, and when the program quits.
  const bool full = text.size() == limit;
  if (!full && !reply->isFinished()) left_behind_ = true;
  if ((!full && !reply->isFinished()) || !IsGoodAnswer(*reply)) return {};
  if (!full) take();
  const bool failed = text.empty() && reply->error() != QNetworkReply::NoError;
  answer.fetched.end = failed ? FetchEnd::kReadFailed : FetchEnd::kText;
  return answer;
}

Fetched FetchQt::Get(const QString& address, std::size_t limit) {
  if (wait_.IsUnderWay()) return {};
  deadline_ = QDeadlineTimer(time_limit_, Qt::PreciseTimer);
  QUrl next(address);
  for (int redirects = 0; redirects <= kMostRedirects; ++redirects) {
    if (!IsWebAddress(next.toString(QUrl::FullyEncoded)) || !UseProxiesFor(next)) return {};
    const Answer answer = Ask(next, limit);
    if (answer.next.isEmpty()) return answer.fetched;
    next = next.resolved(answer.next);
  }
  return {};
}

std::unique_ptr<Fetch> MakeFetch() { return std::make_unique<FetchQt>(); }

}  // namespace quillon
