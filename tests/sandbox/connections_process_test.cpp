#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

constexpr std::size_t kConnections = 1'200;
/// Of this process, beside the connections.
constexpr rlim_t kOthers = 100;
/// Fewer than there are connections; what a shell starts programs with is often not many more.
constexpr rlim_t kFewDescriptors = 256;

/// The soft limit of descriptors as long as this object lives.
class SoftLimit {
 public:
  explicit SoftLimit(rlim_t descriptors) {
    ::getrlimit(RLIMIT_NOFILE, &before_);
    rlimit now = before_;
    now.rlim_cur = descriptors;
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &now), 0);
  }
  ~SoftLimit() { ::setrlimit(RLIMIT_NOFILE, &before_); }
  SoftLimit(const SoftLimit&) = delete;
  SoftLimit& operator=(const SoftLimit&) = delete;

 private:
  rlimit before_{};
};

rlim_t hard_limit() {
  rlimit files{};
  ::getrlimit(RLIMIT_NOFILE, &files);
  return files.rlim_max;
}

TEST(SandboxConnections, MayBeMoreThanTheDescriptorsThatItIsStartedWith) {
  if (hard_limit() < kConnections + kOthers) {
    GTEST_SKIP() << "a process may have only " << hard_limit() << " descriptors here";
  }
  std::unique_ptr<SandboxProcess> sandbox;
  {
    const SoftLimit few(kFewDescriptors);
    sandbox = std::make_unique<SandboxProcess>();
  }
  const SoftLimit own(kConnections + kOthers);
  std::vector<std::unique_ptr<RawClient>> clients;
  for (std::size_t i = 0; i < kConnections; ++i) {
    clients.push_back(std::make_unique<RawClient>(sandbox->port()));
    ASSERT_TRUE(clients.back()->connected()) << i;
  }
  // The last first, which is open while all the others are.
  for (std::size_t i = kConnections; i-- > 0;) {
    ASSERT_TRUE(clients[i]->send(http_request("GET", "/admin/faults", "", ""))) << i;
    ASSERT_EQ(clients[i]->receive().status, 200) << i;
  }
}

#ifndef BVCONN_SANITIZED

/// The largest piece of address space that is set aside and not in use, as a thread's own heap has
/// it.
std::size_t largest_reserve(pid_t process) {
  std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
  std::size_t largest = 0;
  for (std::string line; std::getline(maps, line);) {
    char* end = nullptr;
    const std::size_t from = std::strtoull(line.c_str(), &end, 16);
    const std::size_t to = std::strtoull(end + 1, &end, 16);
    if (std::string_view(end).starts_with(" ---p")) largest = std::max(largest, to - from);
  }
  return largest;
}

TEST(SandboxConnections, AreServedFromOneHeap) {
  SandboxProcess sandbox;
  std::vector<std::thread> clients;
  for (int i = 0; i < 8; ++i) {
    clients.emplace_back([&] {
      for (int call = 0; call < 20; ++call) {
        const std::string uid = "<param xsi:type=\"xsd:string\">INV-1001</param>";
        EXPECT_EQ(sandbox.soap("urn:InvoiceService", "getInvoice", uid).status, 200);
      }
    });
  }
  for (std::thread& each : clients) each.join();
  constexpr std::size_t kHeapOfAThread = 32U * 1024 * 1024;
  EXPECT_LT(largest_reserve(sandbox.process()), kHeapOfAThread);
}

#endif

}  // namespace
}  // namespace bvconn::test
