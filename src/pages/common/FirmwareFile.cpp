// SPDX-License-Identifier: MIT
#include "pages/common/FirmwareFile.h"

#include <QFileInfo>
#include <QLocale>
#include <numeric>
#include <optional>
#include <vector>

#include "devlink/DeviceText.h"
#include "devlink/Products.h"
#include "firmware/NodeFile.h"
#include "storage/ReadFile.h"

namespace quillon {
namespace {

using Reason = KvxProblem::Reason;

constexpr std::size_t kHeader = 2, kNodeSystemHeader = 4;

FileRefusal Invalid(const QString& found) {
  return {
      QStringLiteral("This is an invalid or incompatible file and will not be loaded.\r\n\r\n") +
          found,
      QStringLiteral("Invalid KVX File!")};
}

FileRefusal ForOtherDevice(const QString& name, std::uint16_t product_id, std::uint16_t device_id) {
  return Invalid(QStringLiteral("Current Device ID :  %1\r\nDevice ID found in %2 : %3")
                     .arg(QString::number(product_id, 16).toUpper(), name,
                          QString::number(device_id, 16).toUpper()));
}

FileRefusal Refused(const QString& name, const KvxProblem& problem, std::size_t header) {
  const QString number = QString::number(problem.number);
  switch (problem.reason) {
    case Reason::kTooShort:
      return Invalid(QStringLiteral("Bytes found in %1 : %2 (at least %3)")
                         .arg(name, number, QString::number(header)));
    case Reason::kRecordTooLong:
      return Invalid(QStringLiteral("Data bytes found in record %1 of %2 : %3 (at most %4)")
                         .arg(QString::number(problem.record), name, number,
                              QString::number(problem.most_bytes)));
    case Reason::kTooManyRecords:
      return Invalid(QStringLiteral("Records found in %1 : %2 or more (at most %3)")
                         .arg(name, number, QString::number(KvxImage::kMostRecords)));
    case Reason::kNodeFile:
      return {QStringLiteral("This is a node update file and will not be loaded.\r\n"
                             "Please load core update file."),
              QStringLiteral("Invalid KVX File!")};
    case Reason::kCoreFile:
      break;
  }
  return {QStringLiteral("This is a flash core update file and will not be loaded.\r\n"
                         "Please load node update file."),
          QStringLiteral("Invalid KVX File!")};
}

FileRefusal CannotOpen(const QString& name) {
  return {QStringLiteral("Cannot open ") + name, QStringLiteral("File Load Error")};
}

// The file's bytes as far as a firmware file can go; nothing if it cannot be read.
std::optional<std::vector<std::uint8_t>> BytesOf(const QString& path) {
  const auto content = ReadFileFront(QFileInfo(path).filesystemFilePath(), kKvxMostBytes);
  const auto* const text = std::get_if<std::string>(&content);
  if (text == nullptr) return std::nullopt;
  return std::vector<std::uint8_t>(text->begin(), text->end());
}

}  // namespace

QString ShownPath(const QString& path) {
  return QString::fromStdString(ShownText(path.toStdString()));
}

std::variant<KvxImage, FileRefusal> ReadFirmwareFile(const QString& path,
                                                     std::uint16_t product_id) {
  const QString name = ShownPath(QFileInfo(path).fileName());
  const auto bytes = BytesOf(path);
  if (!bytes) return CannotOpen(name);
  const auto device_id = ReadKvxDeviceId(*bytes);
  if (device_id && *device_id != product_id) return ForOtherDevice(name, product_id, *device_id);
  const bool node_system = FamilyOf(product_id) == BoardFamily::kNodeSystem;
  auto read = ReadKvxImage(*bytes, node_system ? KvxFileKind::kCore : KvxFileKind::kPlain);
  if (const auto* problem = std::get_if<KvxProblem>(&read)) {
    return Refused(name, *problem, node_system ? kNodeSystemHeader : kHeader);
  }
  return std::get<KvxImage>(std::move(read));
}

std::variant<KvxImage, FileRefusal> ReadNodeFirmwareFile(const QString& path,
                                                         std::uint16_t product_id) {
  const QString name = ShownPath(QFileInfo(path).fileName());
  const auto bytes = BytesOf(path);
  if (!bytes) return CannotOpen(name);
  auto read = ReadNodeFile(*bytes, product_id);
  if (const auto* wrong = std::get_if<WrongDevice>(&read)) {
    return ForOtherDevice(name, product_id, wrong->device_id);
  }
  if (const auto* problem = std::get_if<KvxProblem>(&read)) {
    return Refused(name, *problem, kNodeSystemHeader);
  }
  if (std::holds_alternative<WrongNodeRelease>(read)) {
    return FileRefusal{
        QStringLiteral("This node update file is not compatible with this\r\nversion of "
                       "Quillon.\r\n\r\nPlease load a valid node update file."),
        QStringLiteral("Outdated KVX File!")};
  }
  return std::get<KvxImage>(std::move(read));
}

QString DescribeLoaded(const KvxImage& image) {
  const auto bytes =
      std::accumulate(image.records.begin(), image.records.end(), std::size_t{0},
                      [](std::size_t sum, const KvxRecord& record) { return sum + record.length; });
  const auto counted = [](std::size_t number, const QString& noun) {
    return QStringLiteral("%1 %2%3").arg(QLocale(QLocale::English).toString(number), noun,
                                         QLatin1String(number == 1 ? "" : "s"));
  };
  QString text = counted(image.records.size(), QStringLiteral("record")) + QStringLiteral(", ") +
                 counted(bytes, QStringLiteral("byte"));
  if (image.cut_at_end) text += QStringLiteral("; the file's end is cut off");
  return text;
}

}  // namespace quillon
