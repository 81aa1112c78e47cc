// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstdint>
#include <variant>

#include "firmware/KvxImage.h"

namespace quillon {

// A path or the name of a file, made fit to be shown: it may hold anything.
QString ShownPath(const QString& path);

// Why a file was not loaded, as a message box says it.
struct FileRefusal {
  QString text;
  QString caption;
};

// Reads the firmware of a board, not of its nodes, from a KVX file meant for this product.
std::variant<KvxImage, FileRefusal> ReadFirmwareFile(const QString& path, std::uint16_t product_id);

// Reads firmware for the nodes of a board of this product.
std::variant<KvxImage, FileRefusal> ReadNodeFirmwareFile(const QString& path,
                                                         std::uint16_t product_id);

// How much was loaded, and whether the file's end was cut.
QString DescribeLoaded(const KvxImage& image);

}  // namespace quillon
