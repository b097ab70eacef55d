// Making requests: the small one, one with 27 parameters of every simple type, and a large
// document.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <string>

#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "common/replies.h"

namespace {

using bvconn::SoapEnvelope;
using bvconn::SoapNodes;
using bvconn::Variant;

SoapEnvelope new_request() {
  auto envelope = SoapEnvelope::make();
  envelope.Headers().Create("userID", bench::kSession);
  return envelope;
}

void small_request(benchmark::State& state) {
  for (auto round : state) {
    const SoapEnvelope envelope = new_request();
    envelope.SetMethod("getInvoice", bench::kService);
    envelope.Parameters().Create("param", bench::kInvoice);
    benchmark::DoNotOptimize(envelope.Serialize());
  }
}
BENCHMARK(small_request);

void request_of_27_nodes(benchmark::State& state) {
  const std::array<Variant, 9> values{"4711",
                                      "Harrow & Finch Supply",
                                      "K\xC3\xB6ln",
                                      true,
                                      std::int16_t{7},
                                      std::int32_t{128},
                                      12.25,
                                      bvconn::from_civil({.year = 2007, .month = 1, .day = 5}),
                                      Variant::Missing{}};
  for (auto round : state) {
    const SoapEnvelope envelope = new_request();
    envelope.SetMethod("searchForOrders", "urn:SearchService");
    SoapNodes& parameters = envelope.Parameters();
    for (int times = 0; times < 3; ++times) {
      for (const Variant& value : values) parameters.Create("param", value);
    }
    benchmark::DoNotOptimize(envelope.Serialize());
  }
}
BENCHMARK(request_of_27_nodes);

void write_200_rows(benchmark::State& state) {
  const auto read = SoapEnvelope::make();
  read.Parse(bench::rows_envelope(200), "UTF-8");
  const SoapEnvelope envelope = new_request();
  envelope.SetMethod("saveInvoices", bench::kService);
  envelope.Parameters().Append(read.Parameters().Item(0));
  std::size_t bytes = 0;
  for (auto round : state) bytes += envelope.Serialize().size();
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}
BENCHMARK(write_200_rows);

}  // namespace

BENCHMARK_MAIN();
