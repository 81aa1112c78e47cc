// SPDX-License-Identifier: MIT
#include "firmware/NodeFile.h"

#include <utility>

#include "devlink/Products.h"

namespace quillon {

NodeFile ReadNodeFile(std::span<const std::uint8_t> file, std::uint16_t product_id) {
  const auto device_id = ReadKvxDeviceId(file);
  if (device_id && *device_id != product_id) return WrongDevice{*device_id};
  const auto header = ReadKvxHeader(file, KvxFileKind::kNode);
  if (const auto* problem = std::get_if<KvxProblem>(&header)) return *problem;
  const VersionWord version = std::get<KvxHeader>(header).node_version.value_or(0);
  if (ReleaseOf(version) != ReleaseOf(ProductOf(product_id).required.node)) {
    return WrongNodeRelease{version};
  }
  auto read = ReadKvxImage(file, KvxFileKind::kNode);
  if (const auto* problem = std::get_if<KvxProblem>(&read)) return *problem;
  return std::get<KvxImage>(std::move(read));
}

}  // namespace quillon
