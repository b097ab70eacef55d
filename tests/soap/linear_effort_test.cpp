// Whether reading a reply is linear, by what can be counted: allocations, pages that the system had
// to bring, and instructions. What time it takes has only a bound, which no quadratic effort keeps.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "bvconn/platform/soap/envelope_access.h"
#include "bvconn/platform/text_buffer.h"
#include "soap/soap_test.h"
#include "support/watched_memory.h"

namespace bvconn {
namespace {

using soap_test::reply_text;

/// A list of so many items.
std::string rows(std::size_t count) {
  std::string body = "<r><list>";
  for (std::size_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    body += "<row><number xsi:type='xsd:string'>" + number +
            "</number><customer>Harrow &amp; Finch</customer><total xsi:type='xsd:double'>" +
            number + ".25</total><open xsi:type='xsd:boolean'>true</open></row>";
  }
  return reply_text(body + "</list></r>");
}

/// So many references, each to an element of its own.
std::string references(std::size_t count, bool targets_first) {
  std::string method = "<r><list>";
  std::string targets;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    method += "<item href='#i" + number + "'/>";
    targets += "<m id='i" + number + "' soapenc:root='0'><n>7</n></m>";
  }
  method += "</list></r>";
  return reply_text(targets_first ? targets + method : method + targets);
}
std::string references_ahead(std::size_t count) {
  return references(count, false);
}
std::string references_back(std::size_t count) {
  return references(count, true);
}

/// One kind of reply.
struct Kind {
  std::string_view name;
  std::string (*text)(std::size_t count);
};
constexpr Kind kKinds[] = {
    {"Rows", rows}, {"ReferencesAhead", references_ahead}, {"ReferencesBack", references_back}};

detail::TextBuffer as_received(std::string_view text) {
  detail::TextBuffer received;
  received.reserve(text.size());
  received.append(text);
  return received;
}

/// What is counted from outside; it is found by its name.
[[gnu::noinline]] std::size_t counted_reading(detail::TextBuffer text) {
  const SoapEnvelope reply = SoapEnvelope::make();
  EnvelopeAccess::read(reply, std::move(text), "");
  return reply.Parameters().Item(0).Nodes().Count();
}

std::int64_t faults() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt + usage.ru_majflt;
}

std::int64_t processor_seconds() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return time.tv_sec;
}

class LinearEffort : public testing::TestWithParam<Kind> {
 protected:
  struct Cost {
    std::size_t allocations = 0;
    std::int64_t faults = 0;
  };
  static Cost cost_of(std::size_t count) {
    detail::TextBuffer text = as_received(GetParam().text(count));
    const test::MemoryCount memory;
    const std::int64_t before = faults();
    EXPECT_EQ(counted_reading(std::move(text)), count);
    return {.allocations = memory.made(), .faults = faults() - before};
  }
};

TEST_P(LinearEffort, TakesAHandfulOfAllocationsWhateverTheSize) {
  for (const std::size_t count : {10U, 1'000U, 20'000U, 200'000U}) {
    EXPECT_LT(cost_of(count).allocations, 100U) << count;
  }
}

TEST_P(LinearEffort, TakesNoMorePagesForAnItemOfMany) {
  cost_of(20'000);
  const std::int64_t some = cost_of(20'000).faults;
  const std::int64_t many = cost_of(200'000).faults;
  // A few are taken up whatever the size; and memory that doubles may have just done so.
  EXPECT_LE(many, 10 * some + 10 * some / 2 + 100) << "20,000: " << some;
}

TEST_P(LinearEffort, ReadsAMillionInTimeThatNoQuadraticEffortKeeps) {
  const std::size_t count = GetParam().name == "Rows" ? 200'000 : 1'000'000;
  detail::TextBuffer text = as_received(GetParam().text(count));
  const std::int64_t before = processor_seconds();
  EXPECT_EQ(counted_reading(std::move(text)), count);
  EXPECT_LT(processor_seconds() - before, 20);
}

constexpr const char* kCountedKind = "BVCONN_TEST_COUNTED_KIND";
constexpr const char* kCountedItems = "BVCONN_TEST_COUNTED_ITEMS";

/// The instructions of one reading, by callgrind, which runs this program anew; 0 where it failed.
std::uint64_t instructions(std::string_view kind, std::size_t count) {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe");
  const std::string command = std::string(kCountedKind) + "=" + std::string(kind) + " " +
                              kCountedItems + "=" + std::to_string(count) +
                              " valgrind --tool=callgrind --toggle-collect='*counted_reading*'"
                              " --callgrind-out-file=/dev/null '" +
                              program + "' --gtest_filter=CountedReading.* 2>&1";
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  std::uint64_t found = 0;
  for (char line[512]; pipe != nullptr && std::fgets(line, sizeof(line), pipe.get()) != nullptr;) {
    const std::string_view text = line;
    const std::size_t at = text.find("Collected : ");
    if (at != std::string_view::npos) found = std::strtoull(line + at + 12, nullptr, 10);
  }
  return found;
}

TEST_P(LinearEffort, TakesNoMoreInstructionsForAnItemOfMany) {
  if (std::system("valgrind --version > /dev/null 2>&1") != 0) {
    GTEST_SKIP() << "valgrind, which counts instructions, is not installed";
  }
  const auto each = [](std::size_t from, std::size_t to) {
    const std::uint64_t fewer = instructions(GetParam().name, from);
    const std::uint64_t more = instructions(GetParam().name, to);
    EXPECT_GT(fewer, from * 100);
    EXPECT_GT(more, fewer);
    return static_cast<double>(more - fewer) / static_cast<double>(to - from);
  };
  const double of_some = each(500, 2'000);
  const double of_many = each(5'000, 20'000);
  RecordProperty("InstructionsOfOne", std::to_string(of_some));
  RecordProperty("InstructionsOfOneOfMany", std::to_string(of_many));
  EXPECT_LT(of_many, 1.1 * of_some) << of_some;
}

std::string name_of_kind(const testing::TestParamInfo<Kind>& kind) {
  return std::string(kind.param.name);
}
INSTANTIATE_TEST_SUITE_P(Of, LinearEffort, testing::ValuesIn(kKinds), name_of_kind);

/// What `instructions` runs; by itself it reads ten rows.
TEST(CountedReading, IsOfWhatTheEnvironmentNames) {
  const char* const name = std::getenv(kCountedKind);
  const char* const items = std::getenv(kCountedItems);
  const std::size_t count = items == nullptr ? 10 : std::strtoull(items, nullptr, 10);
  for (const Kind& kind : kKinds) {
    if (kind.name != (name == nullptr ? "Rows" : name)) continue;
    EXPECT_EQ(counted_reading(as_received(kind.text(count))), count);
  }
}

}  // namespace
}  // namespace bvconn
