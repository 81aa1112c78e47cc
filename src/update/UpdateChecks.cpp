// SPDX-License-Identifier: MIT
#include "update/UpdateChecks.h"

#include <utility>

#include "devlink/DeviceText.h"
#include "devlink/Products.h"
#include "firmware/NodeStatus.h"
#include "firmware/VersionWord.h"
#include "pages/common/Vendor.h"
#include "update/WaitCursor.h"
#include "update/WebAddress.h"

namespace quillon {

using Icon = UserPrompts::Icon;

UpdateChecks::UpdateChecks(DeviceTable& table, UserPrompts& prompts, UpdateServices services)
    : table_(table), prompts_(prompts), services_(std::move(services)) {}

bool UpdateChecks::CheckForUpdates(int list) {
  switch (list) {
    case kProgramList:
      return CheckProgram();
    case kFirmwareList:
      return CheckFirmware();
    case kNodeList:
      return CheckNodes();
    default:
      return false;
  }
}

void UpdateChecks::Abandon() {
  abandoned_ = true;
  services_.fetch.Stop();
}

bool UpdateChecks::CheckProgram() {
  if (!services_.installed) return false;
  const auto list = ReadList(kProgramList, kProgramListBytes);
  if (list) Show(CompareProgram(*list, *services_.installed));
  return list.has_value();
}

bool UpdateChecks::CheckFirmware() {
  const auto list = ReadList(kFirmwareList, kGroupListBytes);
  const DeviceRecord& board = table_.CurrentRecord();
  // Only boards of the other types are asked for their identity.
  const bool asked = table_.CurrentType() != KVUSB_TYPE_FIRMWARE;
  const VersionWord installed = asked ? board.queried_version : board.version;
  if (list) Show(CompareFirmware(*list, board.product_id, installed));
  return list.has_value();
}

bool UpdateChecks::CheckNodes() {
  const auto list = ReadList(kNodeList, kGroupListBytes);
  if (!list) return false;
  if (const auto version = ListedNodeVersion(*list, table_.CurrentRecord().product_id)) {
    SetOnlineNodeVersion(*version);
  }
  return true;
}

Fetched UpdateChecks::Ask(const QString& address, std::size_t limit) {
  const WaitCursor cursor;
  abandoned_ = false;
  waiting_ = true;
  Fetched fetched = services_.fetch.Get(address, limit);
  waiting_ = false;
  return fetched;
}

// The text of a list. Without any, it has been said what is to be said.
std::optional<std::string> UpdateChecks::ReadList(int list, std::size_t limit) {
  const Fetched fetched = Ask(UpdateAddress(list), limit);
  // Intended: a read that fails ends the check without a word.
  if (abandoned_ || fetched.end == FetchEnd::kReadFailed) return std::nullopt;
  if (fetched.end == FetchEnd::kText && !fetched.text.empty()) return fetched.text;
  prompts_.Message(nullptr, QStringLiteral("Unable to check for updates."),
                   QStringLiteral("Version Check"), Icon::kInformation);
  return std::nullopt;
}

void UpdateChecks::Show(const Comparison& result) {
  if (const auto* const offer = std::get_if<UpdateOffer>(&result)) {
    Offer(*offer);
  } else if (std::holds_alternative<NoUpdates>(result)) {
    prompts_.Message(nullptr, QStringLiteral("No Updates available."),
                     QStringLiteral("Version Check"), Icon::kInformation);
  }
}

void UpdateChecks::Offer(const UpdateOffer& offer) {
  if (!prompts_.AskYesNo(nullptr, QString::fromStdString(offer.question),
                         QStringLiteral("Update Check"), Icon::kInformation)) {
    return;
  }
  const QString page = QString::fromStdString(ShownText(offer.page));
  if (IsWebAddress(page)) {
    const WaitCursor wait;
    services_.open_in_browser(page);
    return;
  }
  prompts_.Message(nullptr,
                   page.isEmpty()
                       ? QObject::tr("The version list names no update page.")
                       : QObject::tr("The update page was not opened, because its address is no "
                                     "web address:\n%1")
                             .arg(page),
                   QStringLiteral("Update Check"), Icon::kExclamation);
}

}  // namespace quillon
