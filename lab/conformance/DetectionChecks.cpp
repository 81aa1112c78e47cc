// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "conformance/Checks.h"

namespace quillon::conformance {
namespace {

using FaultList = std::vector<std::string> DetectionFaults::*;

Check FaultCheck(Times& times, std::string name, FaultList list) {
  return {std::move(name), [&times, list](Subject& subject, Findings& findings) {
            const DetectionFaults faults = subject.Detect();
            times.detections.push_back(faults.took);
            findings.Tried();
            for (const std::string& fault : faults.*list) findings.Expect(false, fault);
          }};
}

// Whether a detection left all bytes as they were before it.
template <typename Item>
bool IsUntouched(std::span<const Item> field) {
  const auto bytes = std::as_bytes(field);
  return std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b == kTablePattern; });
}

void ExpectText(std::span<const char> text, const std::string& what, Findings& findings) {
  findings.Expect(!IsUntouched(text), what + " was not written.");
  if (std::find(text.begin(), text.end(), '\0') == text.end())
    findings.Note(what + " has no zero byte at its end.");
}

void RecordsAreFilled(Subject& subject, Findings& findings) {
  for (const FoundBoard& board : subject.Boards()) {
    const DeviceRecord& record = *board.record;
    findings.Expect(record.product_id != 0, board.name + ": the product id is 0.");
    findings.Expect(!IsUntouched(std::span(&record.version, 1)),
                    board.name + ": the version was not written.");
    ExpectText(record.product_text, board.name + ": the product text", findings);
    ExpectText(record.manufacturer, board.name + ": the manufacturer", findings);
    ExpectText(record.serial_number, board.name + ": the serial number", findings);
  }
}

void RecordsDiffer(Subject& subject, Findings& findings) {
  const auto& boards = subject.Boards();
  for (std::size_t i = 0; i < boards.size(); ++i) {
    for (std::size_t j = i + 1; j < boards.size(); ++j) {
      findings.Expect(
          std::memcmp(boards[i].record, boards[j].record, sizeof(DeviceRecord)) != 0,
          boards[i].name + " and board " + std::to_string(j + 1) + " have the same record.");
    }
  }
  if (boards.size() == 1) findings.NotTried("there is one board");
}

}  // namespace

std::vector<Check> DetectionChecks(Times& times) {
  return {
      FaultCheck(times, "detection: counts", &DetectionFaults::counts),
      FaultCheck(times, "detection: nothing behind the records", &DetectionFaults::guard),
      FaultCheck(times, "detection: the program's bytes", &DetectionFaults::program_bytes),
      {"records: filled in", RecordsAreFilled},
      {"records: all different", RecordsDiffer},
  };
}

}  // namespace quillon::conformance
