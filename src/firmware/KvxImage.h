// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

// KVX files: the firmware of one product, as it is handed to users.
//
//   0         2                4
//  +---------+----------------+--------+--------+-----+--------+
//  | device  | node version   | record | record | ... | type 1 |
//  | id, LE  | LE, see below  |        |        |     |        |
//  +---------+----------------+--------+--------+-----+--------+
//
//   0      1        2         3         4
//  +------+--------+---------+---------+------------------+
//  | type | length | address | address | data, `length`   |   a record
//  |      |        | high    | low     | bytes            |
//  +------+--------+---------+---------+------------------+
//
// Only the files of the node I/O system have the word at 2: 0 in the firmware of the board itself,
// the version in the firmware of its nodes. A record of type 1 is that one byte and ends the file;
// it may be missing. A file has no checksum.
//
//   10 09  00 03 01 00 AA BB CC  01      product 0x0910, three bytes at 0x0100
namespace quillon {

// One record, with the bytes that a board is sent. Data beyond `length` are zero.
struct KvxRecord {
  static constexpr std::size_t kMostBytes = 59;
  // Node commands have a longer header, so fewer data bytes of a record reach a node.
  static constexpr std::size_t kMostNodeBytes = 56;

  std::uint8_t length = 0;
  std::uint8_t address_low = 0;
  std::uint8_t address_high = 0;
  std::uint8_t type = 0;  // goes to the board as the command: 0 stores data
  std::array<std::uint8_t, kMostBytes> data{};

  std::uint16_t Address() const {
    return static_cast<std::uint16_t>(address_high << 8 | address_low);
  }
  std::span<const std::uint8_t> Data() const { return std::span(data).first(length); }
  bool operator==(const KvxRecord&) const = default;
};

inline constexpr std::uint8_t kKvxEnd = 1;  // the type of a file's last record

// What a file begins with.
struct KvxHeader {
  std::uint16_t device_id = 0;
  // The word at offset 2, for the files that have it.
  std::optional<std::uint16_t> node_version;

  bool IsForNodes() const { return node_version.value_or(0) != 0; }
  bool operator==(const KvxHeader&) const = default;
};

struct KvxImage : KvxHeader {
  static constexpr std::size_t kMostRecords = 2046;

  std::vector<KvxRecord> records;
  // The file ended inside a record, which is left out here.
  bool cut_at_end = false;

  bool operator==(const KvxImage&) const = default;
};

// Which file is expected.
enum class KvxFileKind {
  kPlain,  // of a family without nodes: no word at offset 2
  kCore,   // of the node I/O system, for the board itself
  kNode,   // of the node I/O system, for its nodes
};

// Why a file is refused. Records are counted from 1.
struct KvxProblem {
  enum class Reason {
    kTooShort,        // ends before the first record could begin; `number` bytes long
    kNodeFile,        // for nodes, where one for the board was expected; `number` is its version
    kCoreFile,        // for the board, where one for nodes was expected
    kRecordTooLong,   // record `record` has `number` data bytes
    kTooManyRecords,  // `number` whole records were found in the bytes given
  };
  Reason reason = Reason::kTooShort;
  std::size_t number = 0;
  std::size_t record = 0;
  std::size_t most_bytes = KvxRecord::kMostBytes;  // that a record of this kind of file has

  bool operator==(const KvxProblem&) const = default;
};

// Reading this many bytes is enough for any file that is accepted.
inline constexpr std::size_t kKvxMostBytes =
    4 + (KvxImage::kMostRecords + 1) * (4 + KvxRecord::kMostBytes);

// The product that a file is for; nothing in a file of fewer than two bytes. This alone decides
// whether a file is for another product; nothing else in it is looked at before.
std::optional<std::uint16_t> ReadKvxDeviceId(std::span<const std::uint8_t> file);

// The kind of a file, by its device id and the word after it. A file too short to tell is kPlain,
// or kCore if only the word is missing.
KvxFileKind KvxKindOf(std::span<const std::uint8_t> file);

// What stands before the records, so that it can be judged before anything is wrong with those.
std::variant<KvxHeader, KvxProblem> ReadKvxHeader(std::span<const std::uint8_t> file,
                                                  KvxFileKind kind);

// The whole file. A record that would not reach a board, or a node, whole is refused: what would be
// programmed is not what the file holds.
std::variant<KvxImage, KvxProblem> ReadKvxImage(std::span<const std::uint8_t> file,
                                                KvxFileKind kind);

// A sentence on the problem, without the file's name.
std::string DescribeKvxProblem(const KvxProblem& problem);

// The bytes of an image's file. No record of the image may have type 1.
std::vector<std::uint8_t> WriteKvx(const KvxImage& image);

}  // namespace quillon
