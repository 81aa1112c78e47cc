// SPDX-License-Identifier: MIT
//
// Measures what the program adds to an exchange, over a library that answers at once: in this
// process, and in one of its own.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "devlink/Exchange.h"
#include "devlink/LoadedLibrary.h"
#include "kvusb/host/HostedLibrary.h"

namespace quillon::bench {
namespace {

constexpr std::uint8_t kCommand = 0x11;

std::unique_ptr<HidLibrary> direct;
std::unique_ptr<HidLibrary> hosted;

using Exchange = bool (*)(HidLibrary&, DeviceRecord&, std::span<std::uint8_t>);

void Measure(benchmark::State& state, const std::unique_ptr<HidLibrary>& library,
             Exchange exchange) {
  DeviceRecord record{};
  for (auto unused : state) {
    static_cast<void>(unused);
    HidPacket packet{};
    packet[kCommandByte] = kCommand;
    if (!exchange(*library, record, packet)) state.SkipWithError("the exchange failed");
    benchmark::DoNotOptimize(packet);
  }
}

BENCHMARK_CAPTURE(Measure, Query, direct, QueryPacket);
BENCHMARK_CAPTURE(Measure, Send, direct, SendPacket);
BENCHMARK_CAPTURE(Measure, SendHosted, hosted, SendPacket)->UseRealTime();

std::unique_ptr<HidLibrary> Opened(std::variant<std::unique_ptr<HidLibrary>, std::string> opened) {
  if (const auto* const reason = std::get_if<std::string>(&opened)) {
    std::fprintf(stderr, "%s\n", reason->c_str());
    std::exit(1);
  }
  return std::get<std::unique_ptr<HidLibrary>>(std::move(opened));
}

}  // namespace
}  // namespace quillon::bench

// quillon-bench-exchange <library> [option of the benchmark library...]; the host program is beside
// it
int main(int argc, char** argv) {
  using namespace quillon;
  const std::filesystem::path file = argc > 1 ? argv[1] : "";
  const auto host = std::filesystem::absolute(argv[0]).parent_path() / "kvusb-host";
  bench::direct = bench::Opened(LoadLibraryFile(file));
  bench::hosted = bench::Opened(host::HostedLibrary::Start({.program = host, .library = file}));
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  bench::hosted.reset();
  return 0;
}
