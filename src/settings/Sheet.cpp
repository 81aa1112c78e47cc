// SPDX-License-Identifier: MIT
#include "settings/Sheet.h"

#include <algorithm>

namespace quillon {
namespace {

constexpr std::size_t kPorts = 24;  // two of each of twelve nodes

// The bit of the block at which a row of a table starts.
std::size_t StartOf(const Table& table, std::size_t row) {
  return table.first_bit + row * table.bits_a_row;
}

// Bits of a block, low byte first, as records are.
std::uint32_t GetBits(std::span<const std::uint8_t> bytes, std::size_t at, unsigned width) {
  std::uint32_t value = 0;
  for (unsigned bit = 0; bit < width; ++bit, ++at) value |= (bytes[at / 8] >> at % 8 & 1U) << bit;
  return value;
}

void SetBits(std::span<std::uint8_t> bytes, std::size_t at, unsigned width, std::uint32_t value) {
  for (unsigned bit = 0; bit < width; ++bit, ++at) {
    const auto mask = static_cast<std::uint8_t>(1U << at % 8);
    const bool set = (value >> bit & 1U) != 0;
    bytes[at / 8] = static_cast<std::uint8_t>(set ? bytes[at / 8] | mask : bytes[at / 8] & ~mask);
  }
}

bool CanShow(const Setting& setting, std::uint32_t code) {
  return code != kUnshown && TextOf(setting, code).has_value();
}

// What stands for a code, with the code itself where the same text stands for another one too.
std::string Words(const Setting& setting, std::uint32_t code) {
  const auto text = TextOf(setting, code);
  std::string number = "code " + std::to_string(code);
  if (!text) return number;
  const bool shared = std::ranges::count(setting.choices, *text, &Choice::text) > 1;
  return shared ? *text + " (" + number + ')' : *text;
}

}  // namespace

Sheet::Sheet(const Page& page) : page_(&page) {
  const std::size_t ports = page.about == About::kAllPorts ? kPorts : 1;
  for (std::size_t port = 0; port < ports; ++port) {
    for (const Block& block : page.blocks) {
      exchanges_.push_back({&block,
                            {.node = static_cast<std::uint8_t>(port / 2),
                             .half = static_cast<std::uint8_t>(port % 2)}});
      bytes_.emplace_back(block.bytes);
      AddCells(exchanges_.size() - 1, port);
    }
  }
  FillInFactory();
}

void Sheet::AddCells(std::size_t exchange, std::size_t port) {
  for (const Table& table : exchanges_[exchange].block->tables) {
    for (std::size_t row = 0; row < table.rows; ++row) {
      const auto index = static_cast<int>(port * table.rows + row);
      const bool numbered = table.names.names.empty();
      const int line = numbered ? table.names.first + index * table.names.step : index + 1;
      for (const Setting& setting : table.settings)
        cells_.push_back({&table, &setting, exchange, row, line});
    }
  }
}

std::string Sheet::RowNameOf(Cell cell) const {
  const Value& value = cells_[cell];
  const RowNames& names = value.table->names;
  const auto offset = row_offsets_.find(value.table->id);
  const bool numbered = offset != row_offsets_.end();
  if (!numbered && value.line > names.last_named) return {};
  const NodePort port = exchanges_[value.exchange].port;
  const std::size_t row = names.by_port ? port.node * 2U + port.half : value.row;
  return NameOf(names, row, numbered ? offset->second : 0);
}

std::string_view Sheet::TitleOf(Cell cell) const {
  const Setting& setting = SettingOf(cell);
  const auto title = titles_.find(setting.id);
  return title == titles_.end() ? setting.title : title->second;
}

std::optional<Cell> Sheet::Find(std::string_view table, int line, std::string_view setting) const {
  for (Cell cell = 0; cell < cells_.size(); ++cell) {
    const Value& value = cells_[cell];
    if (value.line == line && value.setting->id == setting && value.table->id == table) return cell;
  }
  return std::nullopt;
}

std::optional<Cell> Sheet::Beside(Cell cell, std::string_view setting) const {
  const auto settings = cells_[cell].table->settings;
  const Cell first = cell - static_cast<Cell>(cells_[cell].setting - settings.data());
  const auto found = std::ranges::find(settings, setting, &Setting::id);
  if (found == settings.end()) return std::nullopt;
  return first + static_cast<Cell>(found - settings.begin());
}

std::string Sheet::TextOf(Cell cell) const {
  return quillon::TextOf(SettingOf(cell), Code(cell)).value_or("");
}

std::string Sheet::DescriptionOf(Cell cell) const {
  return quillon::DescriptionOf(SettingOf(cell), cells_[cell].row);
}

Mark Sheet::MarkOf(Cell cell) const {
  const Value& value = cells_[cell];
  if (!value.known || value.setting->state_only) return Mark::kNone;
  if (value.hidden) return Mark::kHidden;
  if (value.code != value.baseline) return Mark::kEdited;
  return Leaving(cell) != value.held ? Mark::kCorrected : Mark::kNone;
}

std::string Sheet::NoteOf(Cell cell) const {
  const Mark mark = MarkOf(cell);
  if (mark != Mark::kHidden && mark != Mark::kCorrected) return {};
  const Value& value = cells_[cell];
  std::string note = "The board holds ";
  if (value.hidden && value.setting->foreign == Foreign::kFactory)
    note += "a value that this page does not offer: ";
  note += Words(*value.setting, value.held) + '.';
  if (value.kept) return note + " It is kept until another value is chosen.";
  const std::uint32_t leaving = Leaving(cell);
  if (leaving != value.held)
    note += " Update replaces it by " + Words(*value.setting, leaving) + '.';
  return note;
}

bool Sheet::AnyEdited() const {
  for (Cell cell = 0; cell < cells_.size(); ++cell) {
    if (MarkOf(cell) == Mark::kEdited) return true;
  }
  return false;
}

int Sheet::Hidden() const {
  return static_cast<int>(std::ranges::count_if(
      cells_, [](const Value& value) { return value.known && value.hidden; }));
}

void Sheet::Edit(Cell cell, std::uint32_t code) {
  Set(cell, code);
  if (page_->rules != nullptr && page_->rules->edited != nullptr) page_->rules->edited(*this, cell);
}

void Sheet::Set(Cell cell, std::uint32_t code) {
  Value& value = cells_[cell];
  value.code = code;
  value.hidden = value.kept = false;
}

void Sheet::ShowInstead(Cell cell, std::uint32_t code) {
  Value& value = cells_[cell];
  value.code = code;
  value.hidden = code != value.held;
  value.kept = false;
  value.baseline = value.held;
}

void Sheet::LoadFactory() {
  FillInFactory();
  if (page_->rules != nullptr && page_->rules->defaulted != nullptr) page_->rules->defaulted(*this);
}

void Sheet::FillInFactory() {
  for (Cell cell = 0; cell < cells_.size(); ++cell) {
    const auto factory = FactoryOf(*cells_[cell].setting, cells_[cell].row);
    if (factory) Set(cell, *factory);
  }
}

void Sheet::SetPort(NodePort port) {
  for (Exchange& exchange : exchanges_) exchange.port = port;
  Forget();
}

void Sheet::Forget() {
  for (auto& bytes : bytes_) std::ranges::fill(bytes, std::uint8_t{0});
  for (Value& value : cells_) value.code = 0, value.known = value.hidden = value.kept = false;
  FillInFactory();
}

std::pair<Cell, Cell> Sheet::CellsOf(std::size_t exchange) const {
  const auto first = std::ranges::lower_bound(cells_, exchange, {}, &Value::exchange);
  const auto last = std::ranges::upper_bound(cells_, exchange, {}, &Value::exchange);
  return {static_cast<Cell>(first - cells_.begin()), static_cast<Cell>(last - cells_.begin())};
}

void Sheet::Retrieved(std::size_t exchange, std::span<const std::uint8_t> bytes) {
  std::ranges::copy(bytes, bytes_[exchange].begin());
  const auto [first, last] = CellsOf(exchange);
  for (Cell cell = first; cell < last; ++cell) {
    Value& value = cells_[cell];
    const Field field = value.setting->field;
    value.before = value.code;
    Take(value, GetBits(bytes, StartOf(*value.table, value.row) + field.Shift(), field.width));
  }
  if (page_->rules != nullptr && page_->rules->retrieved != nullptr)
    page_->rules->retrieved(*this, exchange);
}

void Sheet::Take(Value& value, std::uint32_t held) {
  const Setting& setting = *value.setting;
  std::uint32_t shown = held;
  if (!setting.shown.empty()) {
    shown = held < setting.shown.size() ? setting.shown[held] : kUnshown;
  } else if (setting.foreign == Foreign::kClamped) {
    shown = std::clamp(held, setting.least, setting.most);
  }
  // Nothing is hidden where the cell shows that very code already.
  if (!CanShow(setting, shown) && held == value.code && CanShow(setting, held)) shown = held;
  value.known = true;
  value.held = held;
  value.hidden = !CanShow(setting, shown);
  value.kept = value.hidden && setting.foreign == Foreign::kKept;
  if (!value.hidden) value.code = shown;
  if (value.hidden && setting.foreign == Foreign::kFactory)
    value.code = FactoryOf(setting, value.row).value_or(0);
  value.baseline = value.hidden ? held : shown;
}

std::uint32_t Sheet::Leaving(Cell cell) const {
  const Value& value = cells_[cell];
  if (value.kept) return value.held;
  if (value.setting->state_only) return 0;
  const bool ruled = page_->rules != nullptr && page_->rules->leaving != nullptr;
  return ruled ? page_->rules->leaving(*this, cell) : value.code;
}

std::vector<std::uint8_t> Sheet::Outgoing(std::size_t exchange) const {
  std::vector<std::uint8_t> bytes = bytes_[exchange];
  for (const Table& table : exchanges_[exchange].block->tables) {
    for (std::size_t row = 0; row < table.rows; ++row) {
      for (const Field zero : table.zeros)
        SetBits(bytes, StartOf(table, row) + zero.Shift(), zero.width, 0);
    }
  }
  const auto [first, last] = CellsOf(exchange);
  for (Cell cell = first; cell < last; ++cell) {
    const Value& value = cells_[cell];
    const Field field = value.setting->field;
    SetBits(bytes, StartOf(*value.table, value.row) + field.Shift(), field.width, Leaving(cell));
  }
  return bytes;
}

void Sheet::BeginUpdate() {
  for (Value& value : cells_) {
    if (value.setting->state_only) value.code = 0;
  }
}

void Sheet::Stored(std::size_t exchange, std::span<const std::uint8_t> bytes, std::size_t count) {
  std::copy_n(bytes.begin(), count, bytes_[exchange].begin());
  const auto [first, last] = CellsOf(exchange);
  for (Cell cell = first; cell < last; ++cell) {
    Value& value = cells_[cell];
    const Field field = value.setting->field;
    const std::size_t at = StartOf(*value.table, value.row) + field.Shift();
    if (at + field.width > count * 8) continue;
    value.known = true;
    value.held = GetBits(bytes, at, field.width);
    if (value.kept) continue;
    // A rule may have sent something else than what is shown.
    value.hidden = value.held != value.code;
    value.baseline = value.hidden ? value.held : value.code;
  }
}

}  // namespace quillon
