// Whether reading is linear: a row of ever larger replies, and a reference of ever more that lead
// to elements elsewhere. The time of an item should stay the same; what exceeds the processor's
// caches costs more, and pages that the kernel has to bring cost the same each.
//
// A reply is taken into the memory that the transport takes it into. As a `std::string` it would
// lie where the C library's allocator finds a place, whose time jumps where it begins to ask the
// system for each.
#include <benchmark/benchmark.h>

#include <string>
#include <utility>

#include "bvconn/platform/soap/envelope_access.h"
#include "bvconn/platform/text_buffer.h"
#include "common/replies.h"

namespace {

/// A list of references, each to an element of its own behind the method's.
std::string references(std::size_t count) {
  std::string text =
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><r><return>";
  for (std::size_t index = 0; index < count; ++index) {
    text.append("<item href=\"#i").append(std::to_string(index)).append("\"/>");
  }
  text.append("</return></r>");
  for (std::size_t index = 0; index < count; ++index) {
    text.append("<multiRef id=\"i").append(std::to_string(index)).append("\"><n>7</n></multiRef>");
  }
  return text + "</e:Body></e:Envelope>";
}

void read(benchmark::State& state, const std::string& text) {
  for (auto round : state) {
    bvconn::detail::TextBuffer reply;
    reply.reserve(text.size());
    reply.append(text);
    const auto envelope = bvconn::SoapEnvelope::make();
    bvconn::EnvelopeAccess::read(envelope, std::move(reply), "");
    benchmark::DoNotOptimize(envelope);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

void linear_rows(benchmark::State& state) {
  read(state, bench::rows_envelope(static_cast<std::size_t>(state.range(0))));
}
BENCHMARK(linear_rows)->RangeMultiplier(10)->Range(10, 100'000)->Arg(200'000);

void linear_references(benchmark::State& state) {
  read(state, references(static_cast<std::size_t>(state.range(0))));
}
BENCHMARK(linear_references)->RangeMultiplier(10)->Range(10, 1'000'000);

}  // namespace

BENCHMARK_MAIN();
