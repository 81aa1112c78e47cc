// SPDX-License-Identifier: MIT
#include "update/UpdateAddresses.h"

#include <QtGlobal>

namespace quillon {
namespace {

// Whatever is asked of a server of the vendor's stands here.
constexpr struct {
  int list;
  const char* file;
} kFiles[]{
    {kProgramList, "update.txt"},
    {kFirmwareList, "firmupdate.txt"},
    {kNodeList, "nodeupdate.txt"},
};

constexpr char kBaseVariable[] = "QUILLON_UPDATE_BASE";

QString Base() {
  const QString set = qEnvironmentVariable(kBaseVariable);
  return set.isEmpty() ? QString::fromUtf8(QUILLON_UPDATE_BASE) : set;
}

}  // namespace

QString UpdateAddress(int list) {
  QString base = Base();
  if (base.isEmpty()) return {};
  if (!base.endsWith(QLatin1Char('/'))) base += QLatin1Char('/');
  for (const auto& row : kFiles) {
    if (row.list == list) return base + QLatin1String(row.file);
  }
  return {};
}

}  // namespace quillon
