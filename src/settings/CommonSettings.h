// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "settings/Setting.h"

// Settings and lists that the tables of several families have in common.
namespace quillon::common {

// Groups of settings, one behind the other.
template <std::size_t... Sizes>
constexpr auto Join(const std::array<Setting, Sizes>&... groups) {
  std::array<Setting, (Sizes + ...)> all{};
  auto place = all.begin();
  ((place = std::copy(groups.begin(), groups.end(), place)), ...);
  return all;
}

inline constexpr std::array kOff{0U};
inline constexpr std::array kOn{1U};

// ---- Digital inputs ----

constexpr Setting InputOn(Field field) {
  return {.id = "on",
          .title = "ON",
          .purpose = "Switches the input on.",
          .field = field,
          .factory = kOn};
}

constexpr Setting InputInvert(Field field) {
  return {.id = "invert",
          .title = "Invert",
          .purpose = "Reverses the input: open counts as pressed.",
          .field = field,
          .factory = kOff};
}

inline constexpr std::array<Choice, 5> kInputModes{{{.text = "Normal"},
                                                    {.text = "Toggle", .first = 1},
                                                    {.text = "Pulse", .first = 2},
                                                    {.text = "Momentary", .first = 3},
                                                    {.text = "Rotary", .first = 4}}};
constexpr Setting InputMode(Field field, std::string_view title, std::span<const Choice> modes) {
  return {.id = "mode",
          .title = title,
          .purpose =
              "What the board makes of the input. A pair of inputs is Rotary on both or on "
              "neither.",
          .field = field,
          .choices = modes,
          .most = modes.back().last,
          .factory = kOff};
}

constexpr Setting PulseWidth(Field field) {
  return {.id = "pulse_width",
          .title = "Pulse (x 10ms)",
          .purpose = "How long a pulse lasts, in units of 10 ms.",
          .field = field,
          .factory = kOff};
}

inline constexpr std::array<Choice, 4> kLineA{{{.text = "None"},
                                               {.text = "GRAY 1X - A", .first = 1},
                                               {.text = "GRAY 2X - A", .first = 2},
                                               {.text = "GRAY 4X - A", .first = 3}}};
inline constexpr std::array<Choice, 4> kLineB{
    {{.text = "None", .offered = false},
     {.text = "GRAY 1X - B", .first = 1, .offered = false},
     {.text = "GRAY 2X - B", .first = 2, .offered = false},
     {.text = "GRAY 4X - B", .first = 3, .offered = false}}};

constexpr Setting Decoding(Field field, std::string_view title, std::span<const Choice> line) {
  return {.id = "encoder",
          .title = title,
          .purpose =
              "How the board decodes a rotary encoder on a pair of inputs: line A on the odd "
              "one, where it is chosen, line B on the even one.",
          .field = field,
          .choices = line,
          .most = 3,
          .factory = kOff};
}

// Inputs of 3 bytes each, which may carry an encoder in pairs: its two lines are two tables on the
// same rows.
constexpr std::array<Table, 3> PairedInputs(std::uint16_t first_bit, std::uint16_t rows,
                                            std::span<const Setting> inputs,
                                            std::span<const Setting> line_a,
                                            std::span<const Setting> line_b,
                                            int last_named = std::numeric_limits<int>::max()) {
  constexpr std::uint16_t kBits = 24;
  const auto pairs = static_cast<std::uint16_t>(rows / 2);
  const auto names = [=](int first, int step) {
    return RowNames{.pattern = "Input %1", .first = first, .step = step, .last_named = last_named};
  };
  return {{{.id = "input",
            .names = names(1, 1),
            .first_bit = first_bit,
            .bits_a_row = kBits,
            .rows = rows,
            .settings = inputs},
           {.id = "input",
            .names = names(1, 2),
            .first_bit = first_bit,
            .bits_a_row = 2 * kBits,
            .rows = pairs,
            .settings = line_a},
           {.id = "input",
            .names = names(2, 2),
            .first_bit = static_cast<std::uint16_t>(first_bit + kBits),
            .bits_a_row = 2 * kBits,
            .rows = pairs,
            .settings = line_b}}};
}

// ---- Outputs ----

inline constexpr std::array<Choice, 4> kDampings{{{.text = "HI", .first = 3},
                                                  {.text = "MID", .first = 2},
                                                  {.text = "LO", .first = 1},
                                                  {.text = "OFF", .first = 0}}};
inline constexpr std::array kMid{2U};

}  // namespace quillon::common
