// What stands around a request: the frame of an operation without a body, at the mask that is the
// default and at one that asks for everything, and the settings that one send asks for.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "bvconn/core/settings.h"
#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/platform.h"
#include "common/replies.h"
#include "micro/idle_platform.h"

namespace {

constexpr bvconn::Operation kNothing{
    .log = {.cls = "BVBenchConnector", .method = "Nothing"},
    .method = &bvconn::BVMethods::GetInvoice,
    .service = &bvconn::BVServices::Invoice,
};

void empty_frame(benchmark::State& state, const char* mask) {
  bench::use_own_files(mask);
  const bvconn::platform::ScopedPlatform platform(bench::idle_platform(""));
  for (auto round : state) {
    bvconn::ConnectorMethodFrame(kNothing, {"http://127.0.0.1/soap", bench::kSession},
                                 [](bvconn::Call& call) { benchmark::DoNotOptimize(&call); });
  }
}
BENCHMARK_CAPTURE(empty_frame, mask_0, "0");
BENCHMARK_CAPTURE(empty_frame, full_mask, "0xFFFF");

void settings_of_a_send(benchmark::State& state) {
  bench::use_own_files("0");
  const bvconn::platform::ScopedPlatform platform(bench::idle_platform(""));
  for (auto round : state) {
    benchmark::DoNotOptimize(bvconn::Global::TraceSoapTraffic());
    benchmark::DoNotOptimize(bvconn::Global::TracePort());
    benchmark::DoNotOptimize(bvconn::Global::DefaultTimeout());
  }
}
BENCHMARK(settings_of_a_send);

}  // namespace

BENCHMARK_MAIN();
