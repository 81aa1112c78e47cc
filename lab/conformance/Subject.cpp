// SPDX-License-Identifier: MIT
#include "conformance/Subject.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>

#include "conformance/Questions.h"
#include "devlink/DeviceTable.h"
#include "devlink/DeviceText.h"
#include "kvusb/host/OpenLibrary.h"

namespace quillon::conformance {
namespace {

constexpr std::uint32_t kUnsetCount = 0xA5A5A5A5;
constexpr std::uint8_t kUnreadByte = 0xC3;

const DeviceRecord& Blank() {
  static const DeviceRecord record = [] {
    DeviceRecord blank;
    std::memset(&blank, std::to_integer<int>(kTablePattern), sizeof blank);
    return blank;
  }();
  return record;
}

bool IsBlank(const DeviceRecord& record) {
  return std::memcmp(&record, &Blank(), sizeof record) == 0;
}

ThrowHandler NoteIn(const std::shared_ptr<Subject::Thrown>& thrown) {
  return
      [thrown](const char* function, const std::string& text) { thrown->emplace(function, text); };
}

template <typename Call>
Clock::duration Timed(Call call) {
  const auto begin = Clock::now();
  call();
  return Clock::now() - begin;
}

}  // namespace

std::string HexWord(unsigned value, int digits) {
  char text[16] = "";
  std::snprintf(text, sizeof text, "%0*X", digits, value);
  return text;
}

std::string TypeName(std::uint32_t type) {
  return type == KVUSB_TYPE_LOADER     ? "loader"
         : type == KVUSB_TYPE_FIRMWARE ? "firmware"
                                       : "firmware-id";
}

std::variant<std::unique_ptr<Subject>, std::string> Subject::Load(
    const std::filesystem::path& file, const std::filesystem::path& program_folder) {
  auto thrown = std::make_shared<Thrown>();
  auto loaded = OpenLibraryFile(file, {.program_folder = program_folder, .thrown = NoteIn(thrown)});
  if (auto* problem = std::get_if<std::string>(&loaded)) return std::move(*problem);
  auto library = std::get<std::unique_ptr<HidLibrary>>(std::move(loaded));
  return std::unique_ptr<Subject>(new Subject(std::move(library), file, std::move(thrown)));
}

Subject::Subject(std::unique_ptr<HidLibrary> library, const std::filesystem::path& file,
                 std::shared_ptr<Thrown> thrown)
    : table_(DeviceTable::kRoom + DeviceTable::kMargin, Blank()),
      thrown_(std::move(thrown)),
      library_(std::move(library)) {
  if (NeedsHost(file)) return;
  object_.emplace(file);
  describe_ = object_->Find<DescribeProblemFunction>("DescribeProblem");
}

Subject::~Subject() { Close(); }

DetectionFaults Subject::Detect() {
  DetectionFaults faults;
  std::fill(table_.begin(), table_.end(), Blank());
  boards_.clear();
  std::size_t found = 0;
  for (const std::uint32_t type :
       {KVUSB_TYPE_LOADER, KVUSB_TYPE_FIRMWARE, KVUSB_TYPE_FIRMWARE_ID}) {
    const std::size_t end = DetectType(found, type, faults);
    Describe(found, end, type);
    found = end;
  }
  return faults;
}

// Returns the end of what was written and counted.
std::size_t Subject::DetectType(std::size_t base, std::uint32_t type, DetectionFaults& faults) {
  const std::string where = "Type " + std::to_string(type) + ": ";
  const std::span<DeviceRecord> free = std::span(table_).subspan(base);
  std::uint32_t count = kUnsetCount;
  std::int32_t result = 0;
  faults.took += Timed([&] { result = library_->DetectHID(count, free, type); });

  std::size_t counted = result == 0 ? 0 : count;
  if (result != 0 && (count == 0 || count > DeviceTable::kRoom - base)) {
    faults.counts.push_back(where + "the result is " + std::to_string(result) +
                            (count == kUnsetCount ? ", but the count was not set."
                                                  : ", but the count " + std::to_string(count)) +
                            (count == kUnsetCount ? "" : "."));
    counted = 0;
  }
  const auto blank = std::find_if(free.begin(), free.end(), IsBlank);
  const auto written = std::min(counted, static_cast<std::size_t>(blank - free.begin()));
  if (written < counted) {
    faults.counts.push_back(where + std::to_string(counted) + " boards are counted, but " +
                            std::to_string(written) + " records were written.");
  }
  const auto behind = free.subspan(counted);
  if (!std::all_of(behind.begin(), behind.end(), IsBlank)) {
    faults.guard.push_back(where + "bytes behind the " + std::to_string(counted) +
                           " counted records were written.");
  }
  for (DeviceRecord& record : free.first(written)) {
    if (std::memcmp(&record.queried_version, &Blank().queried_version, 3) != 0) {
      faults.program_bytes.push_back(where + "bytes 42 to 44 of a record were written.");
    }
    record.queried_version = 0;
    record.firmware_present = 1;
  }
  std::fill(free.begin() + static_cast<std::ptrdiff_t>(written), free.end(), Blank());
  return base + written;
}

void Subject::Describe(std::size_t first, std::size_t last, std::uint32_t type) {
  for (std::size_t i = first; i < last; ++i) {
    DeviceRecord& record = table_[i];
    FoundBoard board;
    board.record = &record;
    board.type = type;
    const std::string product = HexWord(record.product_id, 4);
    board.name = "Board " + std::to_string(i + 1) + " (" + product + ")";
    board.key = std::to_string(type) + " " + product + " " + ShownText(record.product_text) + " " +
                ShownText(record.manufacturer) + " " + ShownText(record.serial_number);
    board.problem = library_->DescribeProblem(&record);
    if (board.IsBarred()) board.key += " barred";
    board.questions = HarmlessQuestions(type, record.product_id);
    boards_.push_back(std::move(board));
  }
}

bool Subject::Close() {
  return library_->CloseDevices(std::span(table_).first(boards_.size())) != 0;
}

void Subject::Refresh() {
  Close();
  Detect();
}

std::vector<std::string> Subject::Keys() const {
  std::vector<std::string> keys;
  keys.reserve(boards_.size());
  for (const FoundBoard& board : boards_) keys.push_back(board.key);
  std::sort(keys.begin(), keys.end());
  return keys;
}

std::int32_t Subject::Write(const FoundBoard& board, HidPacket& packet, Clock::duration& took) {
  std::int32_t result = 0;
  took = Timed([&] { result = library_->WriteData(*board.record, packet); });
  return result;
}

bool Subject::Read(const FoundBoard& board, HidPacket& packet, Clock::duration& took) {
  std::int32_t result = 0;
  took = Timed([&] { result = library_->ReadData(*board.record, packet); });
  return result != KVUSB_READ_FAILED && result != KVUSB_READ_TIMEOUT;
}

Exchange Subject::Ask(const FoundBoard& board, const HidPacket& question) {
  Exchange out;
  out.as_written = question;
  out.written = Write(board, out.as_written, out.write_time) != KVUSB_WRITE_FAILED;
  out.before_read = out.as_written;
  out.before_read.back() = kUnreadByte;
  out.buffer = out.before_read;
  out.answered = Read(board, out.buffer, out.read_time);
  return out;
}

// An event for which there is no memory is lost: nothing may be thrown into the library.
void Subject::OnChange(std::uint32_t event, std::uint32_t type, const char* path,
                       void* context) try {
  auto* self = static_cast<Subject*>(context);
  const std::lock_guard lock(self->mutex_);
  self->events_.push_back({event, type, path == nullptr ? "" : path});
} catch (const std::exception&) {
}

std::vector<ChangeEvent> Subject::Events() {
  const std::lock_guard lock(mutex_);
  return events_;
}

bool Subject::ListenForEvents(bool listen) {
  return listen ? library_->SetDeviceChangeHandler(OnChange, this)
                : library_->SetDeviceChangeHandler(nullptr, nullptr);
}

std::int32_t Subject::DescribeInto(const DeviceRecord* record, char* text,
                                   std::uint32_t size) const {
  return GuardedCall("DescribeProblem", KVUSB_PROBLEM_NONE, NoteIn(thrown_),
                     [&] { return describe_(record, text, size); });
}

}  // namespace quillon::conformance
