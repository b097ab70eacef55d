#include <sys/resource.h>

#include <fstream>
#include <ostream>

#include "http/gzip_text.h"
#include "http/transport_fixture.h"

// A program of its own, since it measures the memory of its whole process.
namespace bvconn::test {
namespace {

/// A value of the process's own status, in bytes.
std::uint64_t memory_of_process(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) {
      return std::stoull(line.substr(name.size() + 1)) << 10;
    }
  }
  ADD_FAILURE() << "the system does not tell " << name;
  return 0;
}

/// Sets the peak back to what is in use now.
void forget_peak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

struct Limit {
  const char* name;
  std::uint64_t bytes;
};
void PrintTo(const Limit& limit, std::ostream* out) {
  *out << limit.name;
}

class Memory : public TransportTest, public testing::WithParamInterface<Limit> {
 protected:
  // How far the peak of the process rises while the server gives this answer.
  std::uint64_t rise_over(const Answer& answer) {
    server.answer(answer);
    transport->Option("http.max_reply_bytes", std::to_string(GetParam().bytes));
    forget_peak();
    const std::uint64_t before = memory_of_process("VmRSS");
    EXPECT_EQ(hex_number(error_of([&] { call(); }).number), "0x80044306");
    return memory_of_process("VmHWM") - before;
  }

  static constexpr std::uint64_t kSlack = std::uint64_t{64} << 20;
};

TEST_P(Memory, OfAGzipBombIsTheLimitAndLittleMore) {
  static const std::string bomb = gzip_of_repeated(std::string(1 << 20, ' '), 500);
  ASSERT_LT(bomb.size(), std::size_t{4} << 20);
  const std::uint64_t rise =
      rise_over(answers::reply(bomb, "200 OK", answers::kXml, {{"Content-Encoding", "gzip"}}));
  RecordProperty("rise_mib", static_cast<int>(rise >> 20));
  EXPECT_LE(rise, GetParam().bytes + kSlack);
  expect_next_call_works();
}

TEST_P(Memory, OfAnEndlessReplyIsTheLimitAndLittleMore) {
  const std::uint64_t rise =
      rise_over(answers::raw("HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n\r\n") +
                Answer{{.kind = Step::Kind::kRepeat, .bytes = std::string(1 << 16, ' ')}});
  RecordProperty("rise_mib", static_cast<int>(rise >> 20));
  EXPECT_LE(rise, GetParam().bytes + kSlack);
  expect_next_call_works();
}

using ClaimedLength = TransportTest;

TEST_F(ClaimedLength, CostsNoMemoryBeforeBytesArrive) {
  server.answer(answers::raw("HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n"
                             "Content-Length: 1073741824\r\n\r\n<a/>") +
                Answer{{.kind = Step::Kind::kClose}});
  forget_peak();
  const std::uint64_t before = memory_of_process("VmRSS");
  EXPECT_EQ(hex_number(error_of([&] { call(); }).number), "0x80044307");
  EXPECT_LT(memory_of_process("VmHWM") - before, std::uint64_t{8} << 20);
  expect_next_call_works();
}

/// Address space for so much more than is in use, as long as it lives.
class ScarceMemory {
 public:
  explicit ScarceMemory(std::uint64_t bytes_more) {
    getrlimit(RLIMIT_AS, &before_);
    rlimit scarce = before_;
    scarce.rlim_cur = memory_of_process("VmSize") + bytes_more;
    EXPECT_EQ(setrlimit(RLIMIT_AS, &scarce), 0);
  }
  ~ScarceMemory() { setrlimit(RLIMIT_AS, &before_); }
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;

 private:
  rlimit before_{};
};

using NoMemory = TransportTest;

TEST_F(NoMemory, ForAReplyIsError7AndTheNextCallWorks) {
  server.answer(answers::raw("HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n\r\n") +
                Answer{{.kind = Step::Kind::kRepeat, .bytes = std::string(1 << 16, ' ')}});
  {
    const ScarceMemory scarce(std::uint64_t{256} << 20);
    const Error error = error_of([&] { call(); });
    EXPECT_EQ(error.number, 7) << error.description;
    EXPECT_EQ(error.source, "BVConn");
  }
  expect_next_call_works();
}

// At what doubling from small sizes comes to, beside it, and between.
INSTANTIATE_TEST_SUITE_P(Limits, Memory,
                         testing::Values(Limit{"PowerOfTwo", std::uint64_t{256} << 20},
                                         Limit{"JustAbove", (std::uint64_t{256} << 20) + 100'000},
                                         Limit{"JustBelow", (std::uint64_t{256} << 20) - 100'000},
                                         Limit{"Between", 400'000'000}),
                         [](const auto& limit) { return limit.param.name; });

}  // namespace
}  // namespace bvconn::test
