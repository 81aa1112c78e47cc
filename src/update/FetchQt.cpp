// SPDX-License-Identifier: MIT
#include "update/FetchQt.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QTimer>

#include "update/WebAddress.h"

namespace quillon {
namespace {

class SystemProxies : public QNetworkProxyFactory {
 public:
  QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
    return systemProxyForQuery(query);
  }
};

QNetworkRequest RequestFor(const QString& address) {
  QNetworkRequest request{QUrl(address)};
  request.setHeader(QNetworkRequest::UserAgentHeader, QLatin1String(kFetchAgent));
  // Sends "Pragma: no-cache" too.
  request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
  request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  // Otherwise few packed bytes may become very many.
  request.setRawHeader("Accept-Encoding", "identity");
  // Keeps to http and https, and never goes back from https.
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::NoLessSafeRedirectPolicy);
  request.setMaximumRedirectsAllowed(kMostRedirects);
  return request;
}

bool IsGoodAnswer(const QNetworkReply& reply) {
  const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  return status >= 200 && status < 300;
}

}  // namespace

FetchQt::FetchQt(std::chrono::milliseconds time_limit) : time_limit_(time_limit) {}

FetchQt::~FetchQt() = default;

QNetworkAccessManager& FetchQt::Manager() {
  if (!manager_) {
    manager_ = std::make_unique<QNetworkAccessManager>();
    manager_->setProxyFactory(new SystemProxies);  // which it owns
  }
  return *manager_;
}

Fetched FetchQt::Get(const QString& address, std::size_t limit) {
  if (wait_.IsUnderWay() || !IsWebAddress(address)) return {};
  QEventLoop loop;
  QTimer::singleShot(time_limit_, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  const std::unique_ptr<QNetworkReply> reply(Manager().get(RequestFor(address)));
  reply->setReadBufferSize(static_cast<qint64>(limit));
  Fetched fetched;
  const auto take = [&] {
    fetched.text += reply->read(static_cast<qint64>(limit - fetched.text.size())).toStdString();
    if (fetched.text.size() == limit) loop.quit();
  };
  QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, take);
  QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
  if (!reply->isFinished() && !wait_.Run(loop)) return {};
  // The loop also ends when the time is over, and when the program quits.
  const bool full = fetched.text.size() == limit;
  if ((!full && !reply->isFinished()) || !IsGoodAnswer(*reply)) return {};
  if (!full) take();
  const bool failed = fetched.text.empty() && reply->error() != QNetworkReply::NoError;
  fetched.end = failed ? FetchEnd::kReadFailed : FetchEnd::kText;
  return fetched;
}

std::unique_ptr<Fetch> MakeFetch() { return std::make_unique<FetchQt>(); }

}  // namespace quillon
