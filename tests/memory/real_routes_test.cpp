#include <curl/curl.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <string>

#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "files/temp_folder.h"
#include "live/own_files.h"
#include "support/misbehaving_server.h"
#include "support/watched_memory.h"

// Whole calls over the real clients, files and log, with each allocation failing in turn: the
// library's own and those of libcurl.
namespace bvconn::test {
namespace {

using error_numbers::from_bits;

// What libcurl takes goes through operator new too, so that it can be made to fail.

void* take(std::size_t size) {
  try {
    return ::operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void give_back(void* memory) {
  ::operator delete(memory);
}

void* take_again(void* old, std::size_t size) {
  void* const memory = take(size);
  if (memory == nullptr || old == nullptr) return memory;
  std::memcpy(memory, old, (std::min)(size, malloc_usable_size(old)));
  give_back(old);
  return memory;
}

char* take_text(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  void* const memory = take(size);
  return static_cast<char*>(memory == nullptr ? nullptr : std::memcpy(memory, text, size));
}

void* take_zeroed(std::size_t count, std::size_t size) {
  void* const memory = take(count * size);
  return memory == nullptr ? nullptr : std::memset(memory, 0, count * size);
}

class RealRoutes : public testing::Test {
 protected:
  RealRoutes() {
    static const CURLcode started = curl_global_init_mem(CURL_GLOBAL_DEFAULT, &take, &give_back,
                                                         &take_again, &take_text, &take_zeroed);
    EXPECT_EQ(started, CURLE_OK);
    files.write("machine.toml",
                "['Software\\Brimvale\\Torvex\\AppData']\ndefaultTimeOut = 60000\n");
    files.write("user.toml",
                "['Software\\Brimvale\\Torvex\\AppData']\nTraceSoapTraffic = 'False'\n");
    server.otherwise(answers::brands());
  }

  void use_dal() {
    BVConnectorObject().UserName("anna");
    BVConnectorObject().Password("secret");
    BVConnectorObject().InitTorvexDAL(server.url());
    BVConnectorObject().UseTorvexDAL();
  }

  std::optional<std::int32_t> error_number() {
    std::optional<std::int32_t> number;
    try {
      const SoapNode brands = BVSearchConnector().SearchForBrands("S1", url);
      if (brands.Name() != "return") number = -1;
    } catch (const Error& error) {
      number = error.number;
    }
    return number;
  }

  /// On a session that is new, or on one that has its objects and a kept connection.
  void expect_errors_alone(bool dal, bool fresh) {
    for (const Shortage shortage : {Shortage::kOnce, Shortage::kOnward}) {
      expect_errors_alone(dal, fresh, shortage);
    }
  }

  void expect_errors_alone(bool dal, bool fresh, Shortage shortage) {
    if (dal) use_dal();
    ASSERT_EQ(error_number(), good);
    std::size_t number = 1;
    for (;; ++number) {
      ASSERT_LT(number, 20'000U) << "more than a call can take";
      if (fresh) {
        session() = SessionState();
        if (dal) use_dal();
      }
      std::optional<std::int32_t> failed;
      bool struck = false;
      {
        const FailingMemory memory(number, shortage);
        failed = error_number();
        struck = FailingMemory::has_struck();
      }
      if (!struck) break;
      SCOPED_TRACE("allocation " + std::to_string(number));
      expect_told(failed);
      ASSERT_EQ(error_number(), good) << "the next call";
    }
    RecordProperty("allocations", std::to_string(number - 1));
    EXPECT_GT(number, 50U);
  }

  /// libcurl reports some of its own shortages as what it could not do for them; from 8.14 on, one
  /// while it takes a good URL apart as a URL that is bad.
  void expect_told(const std::optional<std::int32_t>& failed) const {
    if (failed == good) return;  // the setting for tracing, the record, the log: they fail no call
    ASSERT_TRUE(failed);
    const bool is_of_libcurl = *failed >= from_bits(0x80044301) && *failed <= from_bits(0x80044308);
    EXPECT_TRUE(*failed == error_numbers::kOutOfMemory || is_of_libcurl) << *failed;
  }

  /// How the call ends with all the memory that it takes.
  std::optional<std::int32_t> good;
  OwnFiles files;
  files_test::ScopedEnvironment exchanges{"BVCONN_EXCHANGES", files.path("exchanges.jsonl")};
  MisbehavingServer server;
  std::string url = server.url("/soap");
};

TEST_F(RealRoutes, LetErrorsAloneOutWithASessionThatIsNew) {
  expect_errors_alone(false, true);
}

TEST_F(RealRoutes, LetErrorsAloneOutWithASessionThatHasAConnection) {
  expect_errors_alone(false, false);
}

TEST_F(RealRoutes, LetErrorsAloneOutOfTheDataAccessLayerWithASessionThatIsNew) {
  expect_errors_alone(true, true);
}

TEST_F(RealRoutes, LetErrorsAloneOutOfTheDataAccessLayerWithASessionThatHasAConnection) {
  expect_errors_alone(true, false);
}

TEST_F(RealRoutes, LetErrorsAloneOutWhereTheDataAccessLayerReportsOne) {
  use_dal();
  server.otherwise(answers::reply(R"({"number":-2147200000,"source":"SearchService",)"
                                  R"("description":"no brands","more":[1,{"a":2}]})",
                                  "500 Internal Server Error", "application/json"));
  good = -2147200000;
  for (const Shortage shortage : {Shortage::kOnce, Shortage::kOnward}) {
    expect_errors_alone(false, false, shortage);
  }
}

}  // namespace
}  // namespace bvconn::test
