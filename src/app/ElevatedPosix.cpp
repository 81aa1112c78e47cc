// SPDX-License-Identifier: MIT
#include <QProcess>
#include <memory>
#include <utility>

#include "app/Elevated.h"

namespace quillon {
namespace {

constexpr int kLongestLine = 300;

class Pkexec {
 public:
  using Done = std::function<void(const ElevatedResult&)>;

  Pkexec() {
    process_->setStandardInputFile(QProcess::nullDevice());
    process_->setStandardOutputFile(QProcess::nullDevice());
    QObject::connect(process_.get(), &QProcess::finished, process_.get(),
                     [this](int code, QProcess::ExitStatus status) {
                       End(status == QProcess::NormalExit ? EndOf(code) : ElevatedEnd::kFailed);
                     });
    QObject::connect(process_.get(), &QProcess::errorOccurred, process_.get(),
                     [this](QProcess::ProcessError error) {
                       if (error == QProcess::FailedToStart)
                         Finish({ElevatedEnd::kFailed, QStringLiteral("There is no pkexec.")});
                     });
  }
  Pkexec(const Pkexec&) = delete;
  Pkexec& operator=(const Pkexec&) = delete;

  // While pkexec asks for the password, this ends it. After that the process belongs to root, goes
  // on and may take a minute. Nothing waits for it, neither here nor ~QProcess.
  ~Pkexec() {
    if (process_->state() == QProcess::NotRunning) return;
    process_->disconnect();
    process_->kill();
    // Kept for the rest of the program and never destroyed. Volatile, so that it is kept at all.
    [[maybe_unused]] static QProcess* volatile abandoned;
    abandoned = process_.release();
  }

  void Run(const QStringList& arguments, Done done) {
    done_ = std::move(done);
    process_->start(QStringLiteral("pkexec"), arguments);
  }

 private:
  static ElevatedEnd EndOf(int code) {
    switch (code) {
      case 0:
        return ElevatedEnd::kDone;
      case 126:
        return ElevatedEnd::kDismissed;
      default:
        return ElevatedEnd::kFailed;
    }
  }

  void End(ElevatedEnd end) {
    const QString said = QString::fromUtf8(process_->readAllStandardError()).trimmed();
    Finish({end, said.section(QLatin1Char('\n'), 0, 0).left(kLongestLine)});
  }

  void Finish(const ElevatedResult& result) {
    if (const Done done = std::exchange(done_, nullptr)) done(result);
  }

  std::unique_ptr<QProcess> process_ = std::make_unique<QProcess>();
  Done done_;
};

}  // namespace

AccessHelp SystemAccessHelp() {
  auto pkexec = std::make_shared<Pkexec>();
  return {[] { return FindRule(); },
          [pkexec](const QStringList& arguments, Pkexec::Done done) {
            pkexec->Run(arguments, std::move(done));
          }};
}

}  // namespace quillon
