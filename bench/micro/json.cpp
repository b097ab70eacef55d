// A line of a batch: a call whose transport sends nothing, answered as JSON. What the call itself
// takes, reading included, is measured beside it.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "batch.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/platform/platform.h"
#include "common/replies.h"
#include "micro/idle_platform.h"

namespace {

constexpr std::string_view kLine =
    R"({"id":1,"call":"BVInvoiceConnector.GetInvoice","args":{"aServerURL":"http://127.0.0.1/soap","aSessionID":"S-1","strInvoiceUID":"U-2"}})";

std::string reply(const benchmark::State& state) {
  return bench::rows_envelope(static_cast<std::size_t>(state.range(0)));
}

void call_alone(benchmark::State& state) {
  bench::use_own_files("0");
  const bvconn::platform::ScopedPlatform platform(bench::idle_platform(reply(state)));
  bvconn::BVInvoiceConnector connector;
  for (auto round : state) {
    benchmark::DoNotOptimize(
        connector.GetInvoice("http://127.0.0.1/soap", bench::kSession, bench::kInvoice));
  }
}
BENCHMARK(call_alone)->ArgName("rows")->Arg(200)->Arg(20'000);

void call_answered_as_json(benchmark::State& state) {
  bench::use_own_files("0");
  const bvconn::platform::ScopedPlatform platform(bench::idle_platform(reply(state)));
  std::size_t bytes = 0;
  bvconn::tool::Batch batch([&](std::string_view piece) { bytes += piece.size(); });
  for (auto round : state) batch.run(kLine);
  if (batch.some_failed() || batch.status() != 0) state.SkipWithError("the call has failed");
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}
BENCHMARK(call_answered_as_json)->ArgName("rows")->Arg(200)->Arg(20'000);

}  // namespace

BENCHMARK_MAIN();
