// SPDX-License-Identifier: MIT
#include "pages/nodes/NodeRun.h"

#include <algorithm>
#include <utility>

#include "devlink/DeviceText.h"
#include "pages/common/StackRun.h"
#include "pages/nodes/CNodeList.h"

namespace quillon {
namespace {

constexpr int kWhole = 100;

}  // namespace

NodeRun::NodeRun(BoardLink& link, StackRun& run, CNodeList& list, Events events)
    : link_(link), run_(run), list_(list), events_(std::move(events)) {
  clock_.start();
}

void NodeRun::Update(const KvxImage& image, bool force) {
  DeviceTable& table = link_.table;
  board_ = QString::fromStdString(BoardLabel(table.CurrentRecord())).trimmed();
  ends_ = {};
  choice_.force = force;
  choice_.checked = table.CheckedNodes();
  NodeUpdate(link_.library, table.CurrentRecord(), table.CurrentNodes(), image, choice_, *this)
      .Run();
}

QString NodeRun::Summary() const {
  const auto ended = [this](NodeEnd end) {
    return QString::number(std::ranges::count(ends_, std::optional(end)));
  };
  int not_reached = 0;
  for (std::size_t node = 0; node < ends_.size(); ++node) {
    if (choice_.checked[node] && !ends_[node]) ++not_reached;
  }
  return QStringLiteral("%1 updated, %2 skipped, %3 aborted, %4 failed, %5 not reached on %6")
      .arg(ended(NodeEnd::kCompleted), ended(NodeEnd::kSkipped), ended(NodeEnd::kAborted),
           ended(NodeEnd::kFailed), QString::number(not_reached), board_);
}

QString NodeRun::TimeOf() const {
  return QString::fromStdString(pace_.Describe(kWhole, Now()));  // says nothing of what is left
}

void NodeRun::OnBegun(std::size_t node) {
  list_.ShowPercent(node, 0, TimeOf());
  events_.begun();
}

void NodeRun::OnProgress(std::size_t node, int percent) {
  if (pace_.IsDue(percent, Now())) list_.ShowPercent(node, percent, TimeOf());
}

void NodeRun::OnVersion(std::size_t node, VersionWord version) { list_.ShowVersion(node, version); }

void NodeRun::OnEnded(std::size_t node, NodeEnd end, std::string_view text) {
  ends_[node] = end;
  const bool skipped = end == NodeEnd::kSkipped;
  list_.ShowEnd(node, end, QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())),
                skipped ? QString() : TimeOf());
  if (skipped) events_.skipped();
}

bool NodeRun::AbortRequested() { return run_.IsToStop(); }

// Comes before each node's erase, so a node's time begins here.
void NodeRun::ForgetAbort() {
  run_.BeginItem();
  pace_.Begin(kWhole, Now());
}

bool NodeRun::StopRequested() { return run_.IsRunToStop(); }

void NodeRun::Pump() {
  run_.TurnEventLoop();
  choice_.checked = link_.table.CheckedNodes();
}

}  // namespace quillon
