// SPDX-License-Identifier: MIT
#include "devlink/BoardIdentity.h"

#include <algorithm>
#include <span>

namespace quillon {
namespace {

// The raw bytes: cleaned for showing, different bytes could become the same text.
std::string Raw(std::span<const char> field) {
  return {field.begin(), std::find(field.begin(), field.end(), '\0')};
}

BoardIdentity Said(const DeviceTable& table, std::uint32_t index) {
  const DeviceRecord& record = table.Record(index);
  return {.type = table.Type(index),
          .product_id = record.product_id,
          .product_text = Raw(record.product_text),
          .manufacturer = Raw(record.manufacturer),
          .serial_number = Raw(record.serial_number)};
}

}  // namespace

BoardIdentity CurrentBoard(const DeviceTable& table) {
  if (table.IsEmpty()) return {};
  const BoardIdentity said = Said(table, table.Current());
  BoardIdentity board = said;
  for (std::uint32_t i = 0; i < table.Count(); ++i) {
    if (Said(table, i) != said) continue;
    ++board.alike;
    if (i < table.Current()) ++board.place;
  }
  return board;
}

}  // namespace quillon
