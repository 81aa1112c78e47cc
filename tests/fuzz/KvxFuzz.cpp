// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "firmware/KvxImage.h"

// Reads any bytes as a KVX file of every kind. Whatever is accepted keeps the promises of
// KvxImage.h, and is the same again once written and read.
namespace {

using quillon::KvxFileKind;
using quillon::KvxImage;
using quillon::KvxProblem;

void Require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "not true: %s\n", claim);
  std::abort();
}

void CheckProblem(const KvxProblem& problem) {
  using Reason = KvxProblem::Reason;
  Require(!quillon::DescribeKvxProblem(problem).empty(), "every problem has a sentence");
  if (problem.reason == Reason::kRecordTooLong) {
    Require(problem.most_bytes == 59 || problem.most_bytes == 56, "a record has its room");
    Require(problem.number > problem.most_bytes, "a record is refused only above its room");
    Require(problem.record >= 1 && problem.record <= 2047, "the record named is one that was read");
  }
  if (problem.reason == Reason::kTooManyRecords) {
    Require(problem.number > 2046, "a file is refused only above 2046 records");
  }
}

void CheckImage(const KvxImage& image, std::size_t size, KvxFileKind kind) {
  Require(image.records.size() <= 2046, "no more records than there is room for");
  for (const auto& record : image.records) {
    Require(record.length <= (kind == KvxFileKind::kNode ? 56 : 59),
            "no record is longer than its room");
    Require(record.type != 1, "the end is no record");
  }
  const auto written = quillon::WriteKvx(image);
  Require(written.size() <= size + 1, "nothing is made up but the end record");
  KvxImage expected = image;
  expected.cut_at_end = false;
  const auto again = quillon::ReadKvxImage(written, kind);
  Require(std::holds_alternative<KvxImage>(again), "what was accepted is accepted again");
  Require(std::get<KvxImage>(again) == expected, "an image survives its file");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::uint8_t> file(data, size);
  Require(quillon::ReadKvxDeviceId(file).has_value() == (size >= 2), "two bytes are a device id");
  static_cast<void>(quillon::KvxKindOf(file));
  for (const auto kind : {KvxFileKind::kPlain, KvxFileKind::kCore, KvxFileKind::kNode}) {
    const auto read = quillon::ReadKvxImage(file, kind);
    if (const auto* problem = std::get_if<KvxProblem>(&read)) {
      CheckProblem(*problem);
    } else {
      CheckImage(std::get<KvxImage>(read), size, kind);
    }
  }
  return 0;
}
