// SPDX-License-Identifier: MIT
#include "cli/KvxReport.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "devlink/Products.h"
#include "firmware/ImageSource.h"
#include "firmware/VersionWord.h"

namespace quillon {
namespace {

// Addresses from `begin` up to, but not including, `end`. `record` counts from 1.
struct Range {
  std::size_t begin, end, record;
};

std::string Hex(std::size_t value) {
  std::array<char, 20> text{};
  std::snprintf(text.data(), text.size(), "0x%04zX", value);
  return text.data();
}

std::string Text(const Range& range) { return Hex(range.begin) + "-" + Hex(range.end - 1); }

std::string Line(std::string_view title, const std::string& value) {
  std::string line(title);
  line.resize(12, ' ');
  return line + value + "\n";
}

// What each record that stores data covers, by address.
std::vector<Range> RangesOf(const KvxImage& image) {
  std::vector<Range> ranges;
  for (std::size_t i = 0; i < image.records.size(); ++i) {
    const KvxRecord& record = image.records[i];
    if (record.type != 0 || record.length == 0) continue;
    const std::size_t begin = record.Address();
    ranges.push_back({begin, begin + record.length, i + 1});
  }
  std::ranges::stable_sort(ranges, {}, &Range::begin);
  return ranges;
}

std::vector<Range> Joined(const std::vector<Range>& ranges) {
  std::vector<Range> joined;
  for (const Range& range : ranges) {
    if (joined.empty() || range.begin > joined.back().end) {
      joined.push_back(range);
    } else {
      joined.back().end = std::max(joined.back().end, range.end);
    }
  }
  return joined;
}

std::string KindText(const KvxImage& image) {
  if (!image.node_version) {
    const bool known = FamilyOf(image.device_id) != BoardFamily::kNone;
    return known ? "firmware of the board" : "firmware of a board that this version does not know";
  }
  if (*image.node_version == 0) return "firmware of the board, node I/O system (core)";
  return "firmware of nodes, version " + VersionText(*image.node_version);
}

void AddOverlaps(const KvxImage& image, std::vector<std::string>& faults) {
  Range former{};
  for (const Range& range : RangesOf(image)) {
    if (former.record != 0 && range.begin < former.end) {
      faults.push_back("Records " + std::to_string(former.record) + " and " +
                       std::to_string(range.record) + " both have the byte at " + Hex(range.begin) +
                       ".");
    }
    if (range.end > former.end) former = range;
  }
}

void AddFaultsOf(const KvxRecord& record, const std::string& name,
                 std::vector<std::string>& faults) {
  if (record.type != 0) {
    faults.push_back(name + " has the type " + std::to_string(record.type) +
                     ", which a board would take as that command; data have type 0.");
  }
  if (record.Address() + std::size_t{record.length} > kFlashAddresses) {
    faults.push_back(name + " reaches beyond the last address, 0xFFFF.");
  }
}

// A file has no checksum. Only the end record, with nothing after it, tells a whole file from a
// part of one.
void AddFaultsOfEnd(const KvxImage& image, std::size_t file_size,
                    std::vector<std::string>& faults) {
  const std::size_t end = WriteKvx(image).size();
  if (image.cut_at_end) {
    faults.push_back("It is cut in the middle of record " +
                     std::to_string(image.records.size() + 1) + ".");
  } else if (file_size < end) {
    faults.emplace_back("The end record is missing; the file may have been cut.");
  } else if (file_size > end) {
    faults.push_back("Bytes follow the end record, which nobody reads: " +
                     std::to_string(file_size - end) + ".");
  }
}

}  // namespace

std::string DescribeKvxImage(const KvxImage& image) {
  std::size_t bytes = 0;
  for (const KvxRecord& record : image.records) bytes += record.length;
  std::array<char, 8> id{};
  std::snprintf(id.data(), id.size(), "%04X", unsigned{image.device_id});

  std::string text =
      Line("Device id", id.data()) + Line("Kind", KindText(image)) +
      Line("Records", std::to_string(image.records.size()) +
                          (image.cut_at_end ? ", the file is cut behind them" : "")) +
      Line("Size", std::to_string(bytes) + " bytes");
  const auto ranges = Joined(RangesOf(image));
  for (const Range& range : ranges) text += Line("Addresses", Text(range));
  for (std::size_t i = 1; i < ranges.size(); ++i) {
    text += Line("Gap", Text({ranges[i - 1].end, ranges[i].begin, 0}));
  }
  return text;
}

std::vector<std::string> FaultsOf(const KvxImage& image, std::size_t file_size) {
  std::vector<std::string> faults;
  AddFaultsOfEnd(image, file_size, faults);
  if (image.records.empty()) {
    faults.emplace_back("It has no records: programming it would only erase a board.");
  } else if (std::ranges::all_of(image.records, [](const auto& r) { return r.length == 0; })) {
    faults.emplace_back("Its records are all empty: programming it would only erase a board.");
  }
  for (std::size_t i = 0; i < image.records.size(); ++i) {
    AddFaultsOf(image.records[i], "Record " + std::to_string(i + 1), faults);
  }
  AddOverlaps(image, faults);
  return faults;
}

}  // namespace quillon
