// SPDX-License-Identifier: MIT
#include "settings/JoystickSettings.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "settings/AnalogBlocks.h"
#include "settings/CommonSettings.h"
#include "settings/DigitalBlock.h"
#include "settings/ExpansionBlock.h"
#include "settings/HatBlock.h"
#include "settings/JoystickRules.h"
#include "settings/ScanMatrixBlocks.h"
#include "settings/TweakBlock.h"

namespace quillon {
namespace {

using namespace common;

constexpr std::array<std::string_view, kAxes> kAxisNames{"X",  "Y",  "Z",  "Rx",
                                                         "Ry", "Rz", "S1", "S2"};

// ---- Analog Channels ----

constexpr std::string_view kDrives =
    "The channel drives this axis. One channel at most drives an axis; a channel may drive "
    "several.";

// Each analog input drives its own axis in the factory; no encoder does.
constexpr auto kOwnAxis = [] {
  std::array<std::array<std::uint32_t, kAxes>, kAxes> own{};
  for (std::size_t axis = 0; axis < kAxes; ++axis) own[axis][axis] = 1;
  return own;
}();

constexpr std::array<Setting, kAxes> AxisSettings(bool own_axis) {
  constexpr std::array<std::string_view, kAxes> kIds{"axis_x",  "axis_y",  "axis_z",  "axis_rx",
                                                     "axis_ry", "axis_rz", "axis_s1", "axis_s2"};
  std::array<Setting, kAxes> settings{};
  for (std::size_t axis = 0; axis < kAxes; ++axis) {
    settings[axis] = {.id = kIds[axis],
                      .title = kAxisNames[axis],
                      .purpose = kDrives,
                      .field = AxisBit(axis),
                      .most = 1,
                      .factory = kOff};
    if (own_axis) settings[axis].factory = kOwnAxis[axis];
  }
  return settings;
}

constexpr std::array<Setting, 2> ChannelSettings(Field on, Field invert, bool on_in_factory) {
  return {{{.id = "on",
            .title = "ON",
            .purpose = "Switches the channel on. One that drives no axis is sent as off.",
            .field = on,
            .factory = on_in_factory ? std::span(kOn) : std::span(kOff)},
           {.id = "invert",
            .title = "Invert",
            .purpose = "Reverses the direction of the axis.",
            .field = invert,
            .factory = kOff}}};
}

// Resolutions are stored as bits - 1 and listed from the finest on.
constexpr std::uint32_t kFourBits = 3, kTwelveBits = 11, kThirteenBits = 12, kSixteenBits = 15;
constexpr std::array kTwelve{kTwelveBits};
constexpr std::array kSixteen{kSixteenBits};
constexpr std::array<Choice, 1> kAnalogResolutions{
    {{.text = "%1 Bits", .first = kTwelveBits, .last = kFourBits, .offset = 1}}};
constexpr std::array<Choice, 2> kEncoderResolutions{
    {{.text = "%1 Bits", .first = kThirteenBits, .last = kFourBits, .offset = 1},
     {.text = "%1 Bits",
      .first = kThirteenBits + 1,
      .last = kSixteenBits,
      .offset = 1,
      .offered = false}}};
constexpr std::array<Choice, 1> kIncrementalResolutions{
    {{.text = "%1 Bits", .first = kSixteenBits, .last = kFourBits, .offset = 1}}};

constexpr Setting Resolution(Field field, std::span<const Choice> choices, std::uint32_t most,
                             std::span<const std::uint32_t> factory) {
  return {.id = "resolution",
          .title = "Resolution",
          .purpose = "Bits of the channel's value.",
          .field = field,
          .choices = choices,
          .least = kFourBits,
          .most = most,
          .foreign = Foreign::kClamped,
          .factory = factory};
}

constexpr std::array<Choice, 1> kFilters{{{.text = "%1", .first = 10, .last = 0}}};
constexpr std::array kFilterFive{5U};
constexpr auto kAnalogSettings =
    Join(ChannelSettings(analog::kOn, analog::kInvert, true), AxisSettings(true),
         std::array<Setting, 3>{
             {{.id = "spike",
               .title = "Spike",
               .purpose = "Suppresses single values that stand out.",
               .field = analog::kSpike,
               .factory = kOff},
              {.id = "filter",
               .title = " Filter ",
               .purpose = "How strongly the value is smoothed.",
               .field = analog::kFilter,
               .choices = kFilters,
               .most = 10,
               .foreign = Foreign::kClamped,
               .factory = kFilterFive},
              Resolution(analog::kResolution, kAnalogResolutions, kTwelveBits, kTwelve)}});

constexpr std::array<Choice, 3> kCenteringButtons{
    {{.text = "None"},
     {.text = "Button %1", .first = 1, .last = 16},
     {.text = "Button %1", .first = 17, .last = 31, .offered = false}}};
constexpr Setting kCentering{.id = "centering_button",
                             .title = "Centering Button",
                             .purpose = "The button that centres the channel.",
                             .field = encoder::kCentering,
                             .choices = kCenteringButtons,
                             .factory = kOff};
constexpr auto kEncoderSettings =
    Join(ChannelSettings(encoder::kOn, encoder::kInvert, false), AxisSettings(false),
         std::array<Setting, 3>{
             {Resolution(encoder::kResolution, kEncoderResolutions, kSixteenBits, kTwelve),
              {.id = "incremental",
               .title = "Incremental",
               .purpose = "The encoder counts steps instead of its absolute position.",
               .field = encoder::kIncremental,
               .factory = kOff},
              kCentering}});
constexpr auto kIncrementalSettings =
    Join(ChannelSettings(encoder::kOn, encoder::kInvert, false), AxisSettings(false),
         std::array<Setting, 2>{
             {Resolution(encoder::kResolution, kIncrementalResolutions, kSixteenBits, kSixteen),
              kCentering}});
constexpr std::array kIncrementalZeros{encoder::kIncremental};
constexpr std::array<std::string_view, 1> kIncrementalName{"INC CH 1"};

constexpr std::array<Table, 1> kAnalogTables{{{.id = "analog",
                                               .names = {.pattern = "Analog %1"},
                                               .bits_a_row = 24,
                                               .rows = 8,
                                               .settings = kAnalogSettings}}};
constexpr std::array<Table, 2> kEncoderTables{{{.id = "encoder",
                                                .names = {.pattern = "AE SSI %1"},
                                                .bits_a_row = 24,
                                                .rows = 6,
                                                .settings = kEncoderSettings},
                                               {.id = "incremental",
                                                .names = {.pattern = "", .names = kIncrementalName},
                                                .first_bit = 6 * 24,
                                                .bits_a_row = 24,
                                                .settings = kIncrementalSettings,
                                                .zeros = kIncrementalZeros}}};
constexpr std::array<Block, 2> kAnalogBlocks{{{.id = "analog",
                                               .read = analog::kRead,
                                               .write = analog::kWrite,
                                               .bytes = 24,
                                               .tables = kAnalogTables},
                                              {.id = "encoders",
                                               .read = encoder::kRead,
                                               .write = encoder::kWrite,
                                               .bytes = 21,
                                               .tables = kEncoderTables}}};

// ---- Axis Tweaking ----

constexpr std::array<Choice, kAxes> kCombinations{{{.text = "X"},
                                                   {.text = "Y", .first = 1},
                                                   {.text = "Z", .first = 2},
                                                   {.text = "Rx", .first = 3},
                                                   {.text = "Ry", .first = 4},
                                                   {.text = "Rz", .first = 5},
                                                   {.text = "S1", .first = 6},
                                                   {.text = "S2", .first = 7}}};
constexpr std::array<std::uint32_t, kAxes> kItself{0, 1, 2, 3, 4, 5, 6, 7};

constexpr Setting Percentage(std::string_view id, std::string_view title, std::string_view purpose,
                             Field field) {
  return {.id = id,
          .title = title,
          .purpose = purpose,
          .field = field,
          .most = 100,
          .foreign = Foreign::kShown,
          .factory = kOff};
}

constexpr std::array<Setting, 6> kTweakSettings{
    {{.id = "active",
      .title = "Active",
      .purpose = "Switches the axis on in the board.",
      .field = tweak::kActive,
      .factory = kOff},
     Percentage("trim_min", "Trim Min %", "Cuts this much off the lower end of the axis.",
                tweak::kTrimMin),
     Percentage("deadzone", "Deadzone %", "Around the center this much counts as centered.",
                tweak::kDeadzone),
     Percentage("trim_max", "Trim Max %", "Cuts this much off the upper end of the axis.",
                tweak::kTrimMax),
     {.id = "combine",
      .title = "Combine",
      .purpose = "The axis that the board combines this one with.",
      .field = tweak::kCombine,
      .choices = kCombinations,
      .factory = kItself},
     {.id = "calibrate",
      .title = "Calibrate",
      .purpose = "Opens the calibration of the axis. The board begins to measure it at once, and "
                 "keeps the "
                 "result when it is accepted.",
      .field = tweak::kCalibrate,
      .factory = kOff,
      .state_only = true}}};
constexpr std::array<Table, 1> kTweakTables{{{.id = "axis",
                                              .names = {.pattern = "", .names = kAxisNames},
                                              .bits_a_row = 32,
                                              .rows = 8,
                                              .settings = kTweakSettings}}};
constexpr std::array<Block, 1> kTweakBlocks{{{.id = "axis_tweak",
                                              .read = tweak::kRead,
                                              .write = tweak::kWrite,
                                              .bytes = 32,
                                              .tables = kTweakTables}}};

// ---- Digital Channels ----

constexpr std::array<Setting, 3> InputSettings(Field on, Field master, Field invert) {
  return {
      {InputOn(on),
       {.id = "master",
        .title = "Master",
        .purpose = "Makes the input the board's master switch. A click leaves one master at most.",
        .field = master,
        .factory = kOff},
       InputInvert(invert)}};
}
constexpr std::string_view kWideMode = "       Mode       ";

constexpr auto kDigitalSettings =
    Join(InputSettings(digital::kOn, digital::kMaster, digital::kInvert),
         std::array<Setting, 2>{{InputMode(digital::kMode, kWideMode, kInputModes),
                                 PulseWidth(digital::kPulseWidth)}});
constexpr std::string_view kWideRotary = "            Rotary            ";
constexpr std::array<Setting, 1> kDigitalLineA{Decoding(digital::kEncoder, kWideRotary, kLineA)};
constexpr std::array<Setting, 1> kDigitalLineB{Decoding(digital::kEncoder, kWideRotary, kLineB)};

constexpr auto kDigitalTables = PairedInputs(0, 16, kDigitalSettings, kDigitalLineA, kDigitalLineB);
constexpr std::array<Block, 1> kDigitalBlocks{{{.id = "digital",
                                                .read = digital::kRead,
                                                .write = digital::kWrite,
                                                .bytes = 48,
                                                .tables = kDigitalTables}}};

// Boards with a scan matrix mode have a byte for it in front. Defaults leave it alone.
constexpr std::array<Setting, 1> kScanMatrixSettings{
    {{.id = "scan_matrix",
      .title = "Scan matrix mode.",
      .purpose = "The board reads its inputs as a scan matrix.",
      .field = digital::kScanMatrix}}};
constexpr std::array<Field, 1> kScanMatrixZeros{{{0, 1, 7}}};
constexpr std::array<std::string_view, 1> kBoardName{"Board"};
constexpr auto kSmallInputTables =
    PairedInputs(8, 16, kDigitalSettings, kDigitalLineA, kDigitalLineB);
constexpr std::array<Table, 4> kSmallDigitalTables{{{.id = "board",
                                                     .names = {.pattern = "", .names = kBoardName},
                                                     .bits_a_row = 8,
                                                     .settings = kScanMatrixSettings,
                                                     .zeros = kScanMatrixZeros},
                                                    kSmallInputTables[0],
                                                    kSmallInputTables[1],
                                                    kSmallInputTables[2]}};
constexpr std::array<Block, 1> kSmallDigitalBlocks{{{.id = "digital",
                                                     .read = digital::kRead,
                                                     .write = digital::kWrite,
                                                     .bytes = 49,
                                                     .tables = kSmallDigitalTables}}};

// ---- HAT Channels ----

// The codes that an update sends. What a board reports is shown by another table, on purpose:
// boards report HAT 1's incremental input, stored as 3, as 2, and are shown their DACs as the TARN.
enum HatMode : std::uint32_t { kPov, kDigital, kOrbShifter, kIncremental, kFalco, kOrbDacs, kTarn };
constexpr Choice kPovChoice{.text = "POV", .first = kPov};
constexpr Choice kDigitalChoice{.text = "Digital", .first = kDigital};
constexpr Choice kFalcoChoice{.text = "FALCO", .first = kFalco};
constexpr std::array<Choice, 6> kHat1Modes{{kPovChoice,
                                            kDigitalChoice,
                                            {.text = "Incremental", .first = kIncremental},
                                            kFalcoChoice,
                                            {.text = "ORB : 12-Bit DACs", .first = kOrbDacs},
                                            {.text = "TARN20-XY", .first = kTarn}}};
constexpr std::array<Choice, 4> kHat2Modes{{kPovChoice,
                                            kDigitalChoice,
                                            {.text = "ORB : Shifter Display", .first = kOrbShifter},
                                            kFalcoChoice}};
constexpr std::array<Choice, 2> kInputHatModes{{kPovChoice, kDigitalChoice}};
constexpr std::array<std::uint32_t, 8> kHat1Shown{kPov,   kDigital, kIncremental, kUnshown,
                                                  kFalco, kTarn,    kTarn,        kUnshown};
constexpr std::array<std::uint32_t, 8> kHat2Shown{kPov,   kDigital, kOrbShifter, kUnshown,
                                                  kFalco, kUnshown, kUnshown,    kUnshown};

constexpr std::array<Setting, 2> HatSettings(std::span<const Choice> modes,
                                             std::span<const std::uint32_t> shown) {
  return {
      {{.id = "on",
        .title = "ON",
        .purpose = "Switches the HAT connector on.",
        .field = hat::kOn,
        .factory = kOn},
       {.id = "mode",
        .title = "            Mode            ",
        .purpose = shown.empty() ? "A POV hat switch or four plain digital inputs."
                                 : "A POV hat switch, four plain digital inputs, or what else the "
                                   "connector can be. A FALCO takes both.",
        .field = hat::kMode,
        .choices = modes,
        .factory = kOff,
        .shown = shown}}};
}
constexpr auto kHat1Settings = HatSettings(kHat1Modes, kHat1Shown);
constexpr auto kHat2Settings = HatSettings(kHat2Modes, kHat2Shown);
constexpr auto kInputHatSettings = HatSettings(kInputHatModes, {});

constexpr std::array<Setting, 1> kDampingSettings{
    {{.id = "damping",
      .title = " Damping ",
      .purpose = "How strongly the output channel of a FALCO or ORB is damped.",
      .field = {0, 0, 2},
      .choices = kDampings,
      .factory = kMid}}};
constexpr std::array<Table, 4> kHatTables{
    {{.id = "hat", .names = {.pattern = "HAT %1"}, .bits_a_row = 16, .settings = kHat1Settings},
     {.id = "hat",
      .names = {.pattern = "HAT %1", .first = 2},
      .first_bit = 16,
      .bits_a_row = 16,
      .settings = kHat2Settings},
     {.id = "damping",
      .names = {.pattern = "CH %1"},
      .first_bit = 8,
      .bits_a_row = 2,
      .rows = 4,
      .settings = kDampingSettings},
     {.id = "damping",
      .names = {.pattern = "CH %1", .first = 5},
      .first_bit = 24,
      .bits_a_row = 2,
      .rows = 4,
      .settings = kDampingSettings}}};
constexpr std::array<Block, 1> kHatBlocks{
    {{.id = "hat", .read = hat::kRead, .write = hat::kWrite, .bytes = 4, .tables = kHatTables}}};

// Without outputs there is nothing to damp.
constexpr std::array kNoDamping{hat::kAllDamping};
constexpr std::array<Table, 1> kInputHatTables{{{.id = "hat",
                                                 .names = {.pattern = "HAT %1"},
                                                 .bits_a_row = 16,
                                                 .rows = 2,
                                                 .settings = kInputHatSettings,
                                                 .zeros = kNoDamping}}};
constexpr std::array<Block, 1> kInputHatBlocks{{{.id = "hat",
                                                 .read = hat::kRead,
                                                 .write = hat::kWrite,
                                                 .bytes = 4,
                                                 .tables = kInputHatTables}}};

// ---- Expansion Port ----

constexpr std::array<Choice, 5> kModules{{{.text = "Lumen Card", .first = 1},
                                          {.text = "Absolute SSI Encoders", .first = 2},
                                          {.text = "Absolute Tarn Encoders", .first = 3},
                                          {.text = "Zephyr Card", .first = 4},
                                          {.text = "Character LCD 20 x 4", .first = 5}}};
constexpr std::array<Choice, 2> kScanMatrixModules{
    {{.text = "8x6 Scan Matrix", .first = 1}, {.text = "Zephyr Card", .first = 2}}};
constexpr std::array kFirstModule{1U};

// Intended: while the port is off a module is not shown, and an update sends what the page shows.
constexpr std::array<Setting, 2> ExpansionSettings(std::span<const Choice> modules) {
  return {{{.id = "active",
            .title = "Activate Expansion Port.",
            .purpose = "Switches the board's expansion port on.",
            .field = expansion::kActive,
            .factory = kOff},
           {.id = "module",
            .title = "Module :",
            .purpose = "Tells the board which module is plugged into its expansion port.",
            .field = expansion::kModule,
            .choices = modules,
            .least = 1,
            .most = modules.back().last,
            .foreign = Foreign::kKept,
            .factory = kFirstModule}}};
}
constexpr auto kExpansionSettings = ExpansionSettings(kModules);
constexpr auto kScanMatrixExpansionSettings = ExpansionSettings(kScanMatrixModules);
constexpr std::array kExpansionZeros{expansion::kUnused};
constexpr std::array<std::string_view, 1> kPortName{"Expansion port"};

constexpr std::array<Table, 1> ExpansionTables(std::span<const Setting> settings) {
  return {{{.id = "port",
            .names = {.pattern = "", .names = kPortName},
            .bits_a_row = 16,
            .settings = settings,
            .zeros = kExpansionZeros}}};
}
constexpr std::array<Block, 1> ExpansionBlocks(std::span<const Table> tables) {
  return {{{.id = "expansion",
            .read = expansion::kRead,
            .write = expansion::kWrite,
            .bytes = 2,
            .tables = tables}}};
}
constexpr auto kExpansionTables = ExpansionTables(kExpansionSettings);
constexpr auto kScanMatrixExpansionTables = ExpansionTables(kScanMatrixExpansionSettings);
constexpr auto kExpansionBlocks = ExpansionBlocks(kExpansionTables);
constexpr auto kScanMatrixExpansionBlocks = ExpansionBlocks(kScanMatrixExpansionTables);

// ---- Digital Channels of the scan matrix controller ----

constexpr std::array<Choice, 3> kMatrixModes{
    {{.text = "Normal"}, {.text = "Toggle", .first = 1}, {.text = "Rotary", .first = 2}}};
constexpr auto kMatrixInputSettings =
    Join(InputSettings(matrix_input::kOn, matrix_input::kMaster, matrix_input::kInvert),
         std::array<Setting, 1>{InputMode(matrix_input::kMode, kWideMode, kMatrixModes)});
constexpr std::array<Choice, 2> kButtons{
    {{.text = "None"}, {.text = "Button %1", .first = 1, .last = 64}}};

constexpr Setting Button(std::string_view id, std::string_view title, std::string_view purpose,
                         Field field) {
  return {.id = id,
          .title = title,
          .purpose = purpose,
          .field = field,
          .choices = kButtons,
          .most = 64,
          .foreign = Foreign::kClamped,
          .factory = kOff};
}
constexpr std::array<Setting, 4> kMatrixPairSettings{
    {Decoding(matrix_pair::kEncoder, "       Rotary       ", kLineA),
     Button("push", "       Push       ",
            "The button that the board keeps for Push of the pair's "
            "encoder.",
            matrix_pair::kPush),
     Button("pull", "        Pull        ",
            "The button that the board keeps for Pull of the pair's "
            "encoder.",
            matrix_pair::kPull),
     {.id = "hold",
      .title = "Hold",
      .purpose = "Hold for the push and pull buttons of the pair's encoder.",
      .field = matrix_pair::kHold,
      .factory = kOff}}};
constexpr std::array<Table, 1> kMatrixInputTables{{{.id = "input",
                                                    .names = {.pattern = "Input %1"},
                                                    .bits_a_row = 8,
                                                    .rows = 64,
                                                    .settings = kMatrixInputSettings}}};
// A pair stands in the row of its odd input.
constexpr std::array<Table, 1> kMatrixPairTables{
    {{.id = "input",
      .names = {.pattern = "Input %1", .first = 1, .step = 2},
      .bits_a_row = 24,
      .rows = 32,
      .settings = kMatrixPairSettings}}};
constexpr std::array<Block, 2> kMatrixBlocks{{{.id = "inputs",
                                               .way = Way::kRange,
                                               .read = matrix_input::kRead,
                                               .write = matrix_input::kWrite,
                                               .start = matrix_input::kStart,
                                               .end = matrix_input::kEnd,
                                               .bytes = 64,
                                               .tables = kMatrixInputTables},
                                              {.id = "pairs",
                                               .way = Way::kRange,
                                               .read = matrix_pair::kRead,
                                               .write = matrix_pair::kWrite,
                                               .start = matrix_pair::kStart,
                                               .end = matrix_pair::kEnd,
                                               .bytes = 96,
                                               .tables = kMatrixPairTables}}};

// ---- The pages ----

constexpr Page Analog(std::span<const Block> blocks) {
  return {"analog", "Analog Channels", blocks, &kAnalogRules};
}
constexpr Page kTweakPage{"axis_tweak", "Axis Tweaking", kTweakBlocks};
constexpr Page Digital(std::span<const Block> blocks, const Rules* rules) {
  return {"digital", "Digital Channels", blocks, rules};
}
constexpr Page Hat(std::span<const Block> blocks) {
  return {"hat", "HAT Channels", blocks, &kHatRules};
}
constexpr Page Expansion(std::span<const Block> blocks) {
  return {"expansion", "Expansion Port", blocks, &kExpansionRules};
}

// The small controller has the analog inputs only.
constexpr std::array kJoystickPages{Analog(kAnalogBlocks), kTweakPage,
                                    Digital(kDigitalBlocks, &kDigitalRules), Hat(kHatBlocks),
                                    Expansion(kExpansionBlocks)};
constexpr std::array kSmallJoystickPages{Analog(std::span(kAnalogBlocks).first(1)), kTweakPage,
                                         Digital(kSmallDigitalBlocks, &kDigitalRules),
                                         Hat(kInputHatBlocks)};
constexpr std::array kScanMatrixPages{Digital(kMatrixBlocks, &kMatrixInputRules),
                                      Expansion(kScanMatrixExpansionBlocks)};

constexpr bool AreSound(std::span<const Page> pages) {
  for (const Page& page : pages) {
    for (const Block& block : page.blocks) {
      if (!IsSound(block)) return false;
    }
  }
  return true;
}
static_assert(AreSound(kJoystickPages) && AreSound(kSmallJoystickPages) &&
              AreSound(kScanMatrixPages));

}  // namespace

std::span<const std::string_view> AxisNames() { return kAxisNames; }

std::span<const Page> JoystickPages() { return kJoystickPages; }
std::span<const Page> SmallJoystickPages() { return kSmallJoystickPages; }
std::span<const Page> ScanMatrixPages() { return kScanMatrixPages; }

}  // namespace quillon
