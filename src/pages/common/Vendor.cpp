// SPDX-License-Identifier: MIT
#include "pages/common/Vendor.h"

#include <QtGlobal>

namespace quillon {
namespace {

// All that Quillon knows of its vendor; CMakeLists.txt has the three values.
constexpr char kName[] = QUILLON_VENDOR_NAME;
constexpr char kWebSite[] = QUILLON_VENDOR_SITE;
constexpr char kUpdateBase[] = QUILLON_UPDATE_BASE;
constexpr struct {
  int list;
  const char* file;
} kLists[]{
    {kProgramList, "update.txt"},
    {kFirmwareList, "firmupdate.txt"},
    {kNodeList, "nodeupdate.txt"},
};

QString UpdateBase() {
  const QString set = qEnvironmentVariable("QUILLON_UPDATE_BASE");
  return set.isEmpty() ? QString::fromUtf8(kUpdateBase) : set;
}

}  // namespace

QString VendorName() { return QString::fromUtf8(kName); }
QString VendorWebSite() { return QString::fromUtf8(kWebSite); }

QString UpdateAddress(int list) {
  QString base = UpdateBase();
  if (base.isEmpty()) return {};
  if (!base.endsWith(QLatin1Char('/'))) base += QLatin1Char('/');
  for (const auto& row : kLists) {
    if (row.list == list) return base + QLatin1String(row.file);
  }
  return {};
}

}  // namespace quillon
