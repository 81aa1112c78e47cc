// SPDX-License-Identifier: MIT
#include "firmware/KvxImage.h"

#include <algorithm>

#include "devlink/Products.h"

namespace quillon {
namespace {

using Reason = KvxProblem::Reason;

constexpr std::size_t kNodeVersionAt = 2;
constexpr std::size_t kRecordHeader = 4;

static_assert(sizeof(KvxRecord) == 63, "a record fills a packet's data bytes and header");

std::optional<std::uint16_t> WordAt(std::span<const std::uint8_t> file, std::size_t at) {
  if (file.size() < at + 2) return std::nullopt;
  return static_cast<std::uint16_t>(file[at] | file[at + 1] << 8);
}

std::uint8_t LowByte(unsigned word) { return static_cast<std::uint8_t>(word & 0xFF); }
std::uint8_t HighByte(unsigned word) { return static_cast<std::uint8_t>(word >> 8 & 0xFF); }

KvxRecord RecordOf(std::span<const std::uint8_t> bytes, std::size_t length) {
  KvxRecord record{.length = static_cast<std::uint8_t>(length),
                   .address_low = bytes[3],
                   .address_high = bytes[2],
                   .type = bytes[0]};
  std::ranges::copy(bytes.subspan(kRecordHeader, length), record.data.begin());
  return record;
}

// Takes the records into the image; what keeps it from being accepted comes back.
std::optional<KvxProblem> ReadRecords(std::span<const std::uint8_t> rest, KvxImage& image) {
  const std::size_t most = image.IsForNodes() ? KvxRecord::kMostNodeBytes : KvxRecord::kMostBytes;
  std::size_t count = 0;
  while (!rest.empty() && rest[0] != kKvxEnd) {
    const std::size_t length = rest.size() > 1 ? rest[1] : 0;
    const bool too_long = length > most;
    if (too_long && count <= KvxImage::kMostRecords) {
      return KvxProblem{Reason::kRecordTooLong, length, count + 1, most};
    }
    image.cut_at_end = rest.size() < kRecordHeader + length;
    if (too_long || image.cut_at_end) break;
    if (++count <= KvxImage::kMostRecords) image.records.push_back(RecordOf(rest, length));
    rest = rest.subspan(kRecordHeader + length);
  }
  if (count > KvxImage::kMostRecords) return KvxProblem{Reason::kTooManyRecords, count};
  return std::nullopt;
}

}  // namespace

std::optional<std::uint16_t> ReadKvxDeviceId(std::span<const std::uint8_t> file) {
  return WordAt(file, 0);
}

KvxFileKind KvxKindOf(std::span<const std::uint8_t> file) {
  const auto device_id = ReadKvxDeviceId(file);
  if (!device_id || FamilyOf(*device_id) != BoardFamily::kNodeSystem) return KvxFileKind::kPlain;
  return WordAt(file, kNodeVersionAt).value_or(0) == 0 ? KvxFileKind::kCore : KvxFileKind::kNode;
}

std::variant<KvxHeader, KvxProblem> ReadKvxHeader(std::span<const std::uint8_t> file,
                                                  KvxFileKind kind) {
  const auto device_id = ReadKvxDeviceId(file);
  if (!device_id) return KvxProblem{Reason::kTooShort, file.size()};
  KvxHeader header{.device_id = *device_id, .node_version = {}};
  if (kind == KvxFileKind::kPlain) return header;
  header.node_version = WordAt(file, kNodeVersionAt);
  if (!header.node_version) return KvxProblem{Reason::kTooShort, file.size()};
  if (header.IsForNodes() && kind == KvxFileKind::kCore) {
    return KvxProblem{Reason::kNodeFile, *header.node_version};
  }
  if (!header.IsForNodes() && kind == KvxFileKind::kNode) return KvxProblem{Reason::kCoreFile};
  return header;
}

std::variant<KvxImage, KvxProblem> ReadKvxImage(std::span<const std::uint8_t> file,
                                                KvxFileKind kind) {
  const auto header = ReadKvxHeader(file, kind);
  if (const auto* problem = std::get_if<KvxProblem>(&header)) return *problem;
  KvxImage image{std::get<KvxHeader>(header), {}, false};
  const std::size_t begin = image.node_version ? kNodeVersionAt + 2 : kNodeVersionAt;
  if (const auto problem = ReadRecords(file.subspan(begin), image)) return *problem;
  return image;
}

std::string DescribeKvxProblem(const KvxProblem& problem) {
  const std::string number = std::to_string(problem.number);
  switch (problem.reason) {
    case Reason::kTooShort:
      return "It is too short for a KVX file: it has " + number + " bytes.";
    case Reason::kNodeFile:
      return "It is a node update file, not a core update file.";
    case Reason::kCoreFile:
      return "It is a core update file, not a node update file.";
    case Reason::kRecordTooLong:
      return "Record " + std::to_string(problem.record) + " has " + number + " data bytes; " +
             (problem.most_bytes == KvxRecord::kMostNodeBytes
                  ? "of a record only " + std::to_string(problem.most_bytes) + " reach a node."
                  : "a record has at most " + std::to_string(problem.most_bytes) + ".");
    case Reason::kTooManyRecords:
      return "It has at least " + number + " records; a file has at most " +
             std::to_string(KvxImage::kMostRecords) + ".";
  }
  return {};
}

std::vector<std::uint8_t> WriteKvx(const KvxImage& image) {
  std::vector<std::uint8_t> file = {LowByte(image.device_id), HighByte(image.device_id)};
  if (image.node_version) {
    file.push_back(LowByte(*image.node_version));
    file.push_back(HighByte(*image.node_version));
  }
  for (const KvxRecord& record : image.records) {
    file.insert(file.end(), {record.type, record.length, record.address_high, record.address_low});
    const auto data = record.Data();
    file.insert(file.end(), data.begin(), data.end());
  }
  file.push_back(kKvxEnd);
  return file;
}

}  // namespace quillon
