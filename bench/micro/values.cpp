// Taking values from a reply: each kind of field, and all rows of a large one by index, by range
// and by name.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "common/replies.h"

namespace {

using bvconn::SoapNode;
using bvconn::SoapNodes;

/// The rows of a reply.
SoapNodes rows(std::size_t count) {
  const auto envelope = bvconn::SoapEnvelope::make();
  envelope.Parse(bench::rows_envelope(count), "UTF-8");
  return envelope.Parameters().Item(0).Nodes();
}

void value_of(benchmark::State& state, std::string_view name) {
  const SoapNode field = rows(1).Item(0).Nodes().ItemByName(name);
  for (auto round : state) benchmark::DoNotOptimize(field.Value());
}
BENCHMARK_CAPTURE(value_of, string, "remark");
BENCHMARK_CAPTURE(value_of, short_string, "city");
BENCHMARK_CAPTURE(value_of, int32, "status");
BENCHMARK_CAPTURE(value_of, double, "total");
BENCHMARK_CAPTURE(value_of, date, "entered");
BENCHMARK_CAPTURE(value_of, boolean, "open");

/// Every field of 200 rows, one after another: the time is that of a field.
void values_of_all_fields(benchmark::State& state) {
  const SoapNodes all = rows(200);
  std::int64_t fields = 0;
  for (auto round : state) {
    for (const SoapNode& row : all) {
      for (const SoapNode& field : row.Nodes()) {
        benchmark::DoNotOptimize(field.Value());
        ++fields;
      }
    }
  }
  state.SetItemsProcessed(fields);
}
BENCHMARK(values_of_all_fields);

// 20,000 rows of eight fields each, nothing taken from them. Items are fields.

constexpr std::size_t kRows = 20'000;
constexpr std::int64_t kFields = 8;

void walk_by_index(benchmark::State& state) {
  const SoapNodes all = rows(kRows);
  for (auto round : state) {
    for (std::size_t row = 0; row < all.Count(); ++row) {
      const SoapNodes fields = all.Item(row).Nodes();
      for (std::size_t field = 0; field < fields.Count(); ++field) {
        benchmark::DoNotOptimize(fields.Item(field));
      }
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFields *
                          static_cast<std::int64_t>(kRows));
}
BENCHMARK(walk_by_index);

void walk_by_range(benchmark::State& state) {
  const SoapNodes all = rows(kRows);
  for (auto round : state) {
    for (const SoapNode& row : all) {
      for (const SoapNode& field : row.Nodes()) benchmark::DoNotOptimize(field);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFields *
                          static_cast<std::int64_t>(kRows));
}
BENCHMARK(walk_by_range);

void walk_by_name(benchmark::State& state) {
  const SoapNodes all = rows(kRows);
  for (auto round : state) {
    for (const SoapNode& row : all) {
      const SoapNodes fields = row.Nodes();
      for (const char* name :
           {"number", "customer", "city", "status", "total", "entered", "open", "remark"}) {
        benchmark::DoNotOptimize(fields.ItemByName(name));
      }
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFields *
                          static_cast<std::int64_t>(kRows));
}
BENCHMARK(walk_by_name);

}  // namespace

BENCHMARK_MAIN();
