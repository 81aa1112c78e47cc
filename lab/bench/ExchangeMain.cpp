// SPDX-License-Identifier: MIT
//
// Measures what the program adds to an exchange, over a library that answers at once.
#include <benchmark/benchmark.h>

#include <cstdio>

#include "devlink/Exchange.h"
#include "devlink/LoadedLibrary.h"

namespace quillon::bench {
namespace {

constexpr std::uint8_t kCommand = 0x11;

HidLibrary* library = nullptr;

void Query(benchmark::State& state) {
  DeviceRecord record{};
  for (auto unused : state) {
    static_cast<void>(unused);
    HidPacket packet{};
    packet[kCommandByte] = kCommand;
    if (!QueryPacket(*library, record, packet)) state.SkipWithError("the exchange failed");
    benchmark::DoNotOptimize(packet);
  }
}

void Send(benchmark::State& state) {
  DeviceRecord record{};
  for (auto unused : state) {
    static_cast<void>(unused);
    HidPacket packet{};
    packet[kCommandByte] = kCommand;
    if (!SendPacket(*library, record, packet)) state.SkipWithError("the exchange failed");
    benchmark::DoNotOptimize(packet);
  }
}

BENCHMARK(Query);
BENCHMARK(Send);

}  // namespace
}  // namespace quillon::bench

// quillon-bench-exchange <library> [option of the benchmark library...]
int main(int argc, char** argv) {
  using namespace quillon;
  auto loaded = LoadLibraryFile(argc > 1 ? argv[1] : "");
  if (auto* const reason = std::get_if<std::string>(&loaded)) {
    std::fprintf(stderr, "%s\n", reason->c_str());
    return 1;
  }
  bench::library = std::get<std::unique_ptr<HidLibrary>>(loaded).get();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
