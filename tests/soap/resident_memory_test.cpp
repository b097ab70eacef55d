#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "bvconn/platform/soap/envelope_access.h"
#include "bvconn/platform/text_buffer.h"
#include "soap/soap_test.h"

// A program of its own, since it measures the memory of its whole process.
namespace bvconn {
namespace {

using soap_test::reply_text;

/// What the process has in memory, in bytes.
std::int64_t resident() {
  std::ifstream numbers("/proc/self/statm");
  std::int64_t all = 0;
  std::int64_t in_memory = 0;
  numbers >> all >> in_memory;
  return in_memory * sysconf(_SC_PAGESIZE);
}

constexpr std::int64_t kMebibyte = 1 << 20;

/// A reply of rows of eight fields, about 500 bytes each, as the transport hands it over: with an
/// entity in each field, since what the reader notes of them is memory too. Nothing of its size
/// comes from the process's allocator here, which may keep what it was given back.
detail::TextBuffer rows(int count) {
  detail::TextBuffer text;
  const auto append = [&text](const std::string& more) {
    if (text.size() + more.size() > text.capacity()) text.reserve(4 * (text.size() + more.size()));
    text.append(more);
  };
  const std::string around = reply_text("<r><list>|</list></r>");
  append(around.substr(0, around.find('|')));
  for (int i = 0; i < count; ++i) {
    std::string row = "<row>";
    for (int field = 0; field < 8; ++field) {
      const std::string name = "fieldName" + std::to_string(field);
      row += "<" + name + " xsi:type='xsd:string'>value &amp; " + std::to_string(i) + "</" + name +
             ">";
    }
    append(row + "</row>");
  }
  append(around.substr(around.find('|') + 1));
  return text;
}

std::size_t read(int row_count) {
  const SoapEnvelope reply = SoapEnvelope::make();
  EnvelopeAccess::read(reply, rows(row_count), "");
  return reply.Parameters().Item(0).Nodes().Count();
}

// The first of all, since what it is about stays for the life of the process.
TEST(ResidentMemory, IsNotKeptByTheAllocatorOverRepliesOfAnySize) {
  for (int count = 10; count < 3'000; count += count / 4 + 1) read(count);
  // Once it has no room left, the allocator asks the system for each such block, unless it has seen
  // a larger one of the system's go.
  constexpr std::size_t kBlocks = 32;
  const std::size_t before = mallinfo2().hblks;
  std::array<std::unique_ptr<char[]>, kBlocks> blocks;
  for (auto& block : blocks) block = std::make_unique_for_overwrite<char[]>(std::size_t{140} << 10);
  EXPECT_GE(mallinfo2().hblks - before, kBlocks / 2);
}

TEST(ResidentMemory, OfALargeReplyIsLessThanTwiceItsText) {
  read(10);
  const std::int64_t before = resident();
  detail::TextBuffer text = rows(20'000);
  const auto size = static_cast<std::int64_t>(text.size());
  const SoapEnvelope reply = SoapEnvelope::make();
  EnvelopeAccess::read(reply, std::move(text), "");
  EXPECT_EQ(reply.Parameters().Item(0).Nodes().Count(), 20'000U);
  EXPECT_LT(resident() - before, 2 * size);
}

TEST(ResidentMemory, IsBackWhenLargeRepliesAreGone) {
  read(10);
  const std::int64_t before = resident();
  for (const int count : {20'000, 19'000, 9'000, 3'000, 1'000, 14'000, 300, 20'000, 7'000}) {
    ASSERT_EQ(read(count), static_cast<std::size_t>(count));
    EXPECT_LT(resident() - before, kMebibyte) << count;
  }
}

TEST(ResidentMemory, IsBackWhenThreadsThatReadLargeRepliesHaveEnded) {
  std::thread([] { read(10); }).join();
  const std::int64_t before = resident();
  for (int i = 0; i < 5; ++i) {
    std::thread([i] {
      read(20'000 - i * 1'000);
      read(100);
    }).join();
    EXPECT_LT(resident() - before, kMebibyte);
  }
}

TEST(ResidentMemory, IsBackAfterManyReferencesAndAfterManyNames) {
  constexpr int kCount = 300'000;
  const auto text = [](bool references) {
    std::string body = "<r>";
    for (int i = 0; i < kCount; ++i) {
      const std::string number = std::to_string(i);
      body += references ? "<i href='#" + number + "'/>" : "<i" + number + "/>";
    }
    body += "</r>";
    for (int i = 0; references && i < kCount; ++i) {
      body += "<m id='" + std::to_string(i) + "'/>";
    }
    return reply_text(body);
  };
  for (const bool references : {true, false}) {
    const std::string reply = text(references);
    const auto once = [&] {
      detail::TextBuffer buffer;
      buffer.reserve(reply.size());
      buffer.append(reply);
      const SoapEnvelope envelope = SoapEnvelope::make();
      EnvelopeAccess::read(envelope, std::move(buffer), "");
      EXPECT_EQ(envelope.Parameters().Count(), static_cast<std::size_t>(kCount));
    };
    once();
    const std::int64_t before = resident();
    once();
    EXPECT_LT(resident() - before, kMebibyte);
  }
}

}  // namespace
}  // namespace bvconn
