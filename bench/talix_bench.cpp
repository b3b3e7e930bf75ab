// Times of the mixture driver and of every flash, by number of components.
#include <benchmark/benchmark.h>

#include "bench_cases.h"

namespace {

using talix::bench::DriverCase;
using talix::bench::FlashCase;

void sizes(benchmark::internal::Benchmark* b) {
  b->ArgName("components");
  for (int count : talix::bench::kSizes) b->Arg(count);
}

void SHMIX0_fugacities(benchmark::State& state) {
  DriverCase driver(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(driver.fugacities());
}

void SHMIX0_thermal(benchmark::State& state) {
  DriverCase driver(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(driver.thermal());
}

void TALIX_isothermal(benchmark::State& state) {
  FlashCase flash(static_cast<int>(state.range(0)));
  if (!flash.run()) state.SkipWithError(flash.message().c_str());
  for (auto _ : state) benchmark::DoNotOptimize(flash.run());
  state.counters["vapour_fraction"] = static_cast<double>(flash.vapour_fraction());
}

// Time and calls of the mixture driver for one flash of a code.
void TALIX_code(benchmark::State& state) {
  FlashCase flash(static_cast<int>(state.range(1)), static_cast<int>(state.range(0)));
  if (!flash.run()) state.SkipWithError(flash.message().c_str());
  for (auto _ : state) benchmark::DoNotOptimize(flash.run());
  state.counters["engine_calls"] = static_cast<double>(flash.engine_calls());
  state.counters["vapour_fraction"] = static_cast<double>(flash.vapour_fraction());
}

void codes(benchmark::internal::Benchmark* b) {
  b->ArgNames({"code", "components"});
  for (int code : talix::bench::kCodes)
    for (int count : talix::bench::kCodeSizes) b->Args({code, count});
}

void TALIX_load_list(benchmark::State& state) {
  FlashCase flash(static_cast<int>(state.range(0)));
  if (!flash.run()) state.SkipWithError(flash.message().c_str());
  for (auto _ : state) {
    flash.forget_list();
    benchmark::DoNotOptimize(flash.run());
  }
}

BENCHMARK(SHMIX0_fugacities)->Apply(sizes);
BENCHMARK(SHMIX0_thermal)->Apply(sizes);
BENCHMARK(TALIX_isothermal)->Apply(sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(TALIX_code)->Apply(codes)->Unit(benchmark::kMicrosecond);
BENCHMARK(TALIX_load_list)->Apply(sizes)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
