// Times of the mixture driver and of every flash, by number of components, and how often a flash calls the driver
// (engine_calls; the property columns of the results are part of both figures).
//
//   SHMIX0_fugacities, SHMIX0_thermal  components
//   TALIX_isothermal                   components/level     code 5 in two phases
//   TALIX_code                         code/components/level
//   TALIX_region                       code/region/components/level: codes 5 and 10 with
//                                      0 two phases, 1 gas, 2 dense gas, 3 liquid
//   TALIX_load_list                    components           a call that loads its list first
//   DCST_TRPVIS, DCST_THERMC           components           viscosity, conductivity of a gas
//   DCST_both                          components           both, with one search for the mixture factors
//
// Level 0 runs the flashes alone, level 1 with the check behind them (SETTALIXVERIFY).
#include <benchmark/benchmark.h>

#include "bench_cases.h"

namespace {

using talix::bench::DriverCase;
using talix::bench::FlashCase;
using talix::bench::TransportCase;

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

// Time and calls of the mixture driver for one flash.
void measure(benchmark::State& state, FlashCase& flash) {
  if (!flash.run()) state.SkipWithError(flash.message().c_str());
  for (auto _ : state) benchmark::DoNotOptimize(flash.run());
  state.counters["engine_calls"] = static_cast<double>(flash.engine_calls());
  state.counters["vapour_fraction"] = static_cast<double>(flash.vapour_fraction());
}

int argument(const benchmark::State& state, std::size_t position) {
  return static_cast<int>(state.range(position));
}

void TALIX_isothermal(benchmark::State& state) {
  FlashCase flash(argument(state, 0), 5, argument(state, 1));
  measure(state, flash);
}

void sizes_and_levels(benchmark::internal::Benchmark* b) {
  b->ArgNames({"components", "level"});
  for (int count : talix::bench::kSizes)
    for (int level : talix::bench::kLevels) b->Args({count, level});
}

void TALIX_code(benchmark::State& state) {
  FlashCase flash(argument(state, 1), argument(state, 0), argument(state, 2));
  measure(state, flash);
}

void codes(benchmark::internal::Benchmark* b) {
  b->ArgNames({"code", "components", "level"});
  for (int code : talix::bench::kCodes)
    for (int count : talix::bench::kCodeSizes)
      for (int level : talix::bench::kLevels) b->Args({code, count, level});
}

void TALIX_region(benchmark::State& state) {
  const auto region = talix::bench::kRegions[static_cast<std::size_t>(state.range(1))];
  FlashCase flash(argument(state, 2), argument(state, 0), argument(state, 3), region);
  measure(state, flash);
  state.SetLabel(talix::bench::name_of(region));
}

void regions(benchmark::internal::Benchmark* b) {
  b->ArgNames({"code", "region", "components", "level"});
  for (int code : {5, 10})
    for (std::size_t region = 0; region < talix::bench::kRegions.size(); ++region)
      for (int count : talix::bench::kCodeSizes)
        for (int level : talix::bench::kLevels) b->Args({code, static_cast<int>(region), count, level});
}

void TALIX_load_list(benchmark::State& state) {
  FlashCase flash(static_cast<int>(state.range(0)));
  if (!flash.run()) state.SkipWithError(flash.message().c_str());
  for (auto _ : state) {
    flash.forget_list();
    benchmark::DoNotOptimize(flash.run());
  }
}

void DCST_TRPVIS(benchmark::State& state) {
  TransportCase transport(argument(state, 0));
  for (auto _ : state) benchmark::DoNotOptimize(transport.viscosity());
}

void DCST_THERMC(benchmark::State& state) {
  TransportCase transport(argument(state, 0));
  for (auto _ : state) benchmark::DoNotOptimize(transport.conductivity());
}

void DCST_both(benchmark::State& state) {
  TransportCase transport(argument(state, 0));
  for (auto _ : state) benchmark::DoNotOptimize(transport.both());
}

void transport_sizes(benchmark::internal::Benchmark* b) {
  b->ArgName("components");
  for (int count : talix::bench::kTransportSizes) b->Arg(count);
}

BENCHMARK(SHMIX0_fugacities)->Apply(sizes);
BENCHMARK(SHMIX0_thermal)->Apply(sizes);
BENCHMARK(TALIX_isothermal)->Apply(sizes_and_levels)->Unit(benchmark::kMicrosecond);
BENCHMARK(TALIX_code)->Apply(codes)->Unit(benchmark::kMicrosecond);
BENCHMARK(TALIX_region)->Apply(regions)->Unit(benchmark::kMicrosecond);
BENCHMARK(DCST_TRPVIS)->Apply(transport_sizes);
BENCHMARK(DCST_THERMC)->Apply(transport_sizes);
BENCHMARK(DCST_both)->Apply(transport_sizes);
BENCHMARK(TALIX_load_list)->Apply(sizes)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
