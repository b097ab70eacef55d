#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>

#include "hostile/hostile_calls.h"
#include "hostile/hostile_file.h"

namespace bvconn::test {
namespace {

namespace fs = std::filesystem;

/// Every file of the catalogue by its path below the folder.
const std::map<std::string, HostileFile>& catalogue() {
  static const std::map<std::string, HostileFile> files = [] {
    std::map<std::string, HostileFile> read;
    for (const auto& entry : fs::recursive_directory_iterator(BVCONN_HOSTILE_FOLDER)) {
      if (entry.path().extension() != ".hostile") continue;
      std::ifstream stream(entry.path(), std::ios::binary);
      const std::string text{std::istreambuf_iterator<char>(stream), {}};
      read[fs::relative(entry.path(), BVCONN_HOSTILE_FOLDER).string()] = read_hostile_file(text);
    }
    return read;
  }();
  return files;
}

TEST(HostileCatalogue, IsUnderstoodThroughout) {
  for (const auto& [path, file] : catalogue()) {
    EXPECT_THAT(file.problems, testing::ElementsAre()) << path;
    for (const HostileCase& hostile : file.cases) {
      EXPECT_TRUE(call_of(hostile.call)) << path << ": " << hostile.claim;
    }
  }
}

TEST(HostileCatalogue, MakesNoClaimTwiceInAFile) {
  for (const auto& [path, file] : catalogue()) {
    std::set<std::string> claims;
    for (const HostileCase& hostile : file.cases) {
      EXPECT_TRUE(claims.insert(hostile.claim).second) << path << ": " << hostile.claim;
    }
  }
}

TEST(HostileCatalogue, HasCasesOfEveryFamilyOnBothRoutes) {
  std::map<std::string, std::size_t> by_family;
  std::map<std::string, std::size_t> by_route;
  for (const auto& [path, file] : catalogue()) {
    by_family[path.substr(0, path.find('/'))] += file.cases.size();
    for (const HostileCase& hostile : file.cases) {
      for (const std::string& route : hostile.routes) ++by_route[route];
    }
  }
  for (const char* family : {"connect", "dal", "http", "proxy", "soap", "tls", "xml"}) {
    EXPECT_GE(by_family[family], 30U) << family;
    by_family.erase(family);
  }
  EXPECT_TRUE(by_family.empty()) << by_family.begin()->first << " is no family";
  EXPECT_GE(by_route["soap"], 200U);
  EXPECT_GE(by_route["dal"], 200U);
}

}  // namespace
}  // namespace bvconn::test
