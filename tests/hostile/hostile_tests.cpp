#include "hostile/hostile_tests.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <utility>

#include "support/keyed_text.h"

namespace bvconn::test {
namespace {

class HostileTest : public ::testing::Test {
 public:
  HostileTest(HostileBody body, HostileCase hostile, std::string route)
      : body_(std::move(body)), case_(std::move(hostile)), route_(std::move(route)) {}
  void TestBody() override { body_(case_, route_); }

 private:
  HostileBody body_;
  HostileCase case_;
  std::string route_;
};

bool register_file(const char* path, const HostileBody& body) {
  std::ifstream stream(path, std::ios::binary);
  const HostileFile file = read_hostile_file(
      std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()));
  const std::string name(path);
  const std::string suite = name.substr(name.rfind('/') + 1, name.rfind('.') - name.rfind('/') - 1);
  for (const std::string& problem : file.problems) std::cerr << path << ": " << problem << "\n";
  for (const HostileCase& hostile : file.cases) {
    for (const std::string& route : hostile.routes) {
      ::testing::RegisterTest(suite.c_str(), test_name(hostile.claim + " " + route).c_str(),
                              nullptr, nullptr, path, hostile.line,
                              [body, hostile, route]() -> ::testing::Test* {
                                return new HostileTest(body, hostile, route);
                              });
    }
  }
  return file.problems.empty();
}

}  // namespace

int run_hostile_files(int argc, char** argv, const HostileBody& body) {
  ::testing::InitGoogleTest(&argc, argv);
  bool understood = argc > 1;
  for (int i = 1; i < argc; ++i) understood = register_file(argv[i], body) && understood;
  if (!understood) {
    std::cerr << "usage: " << argv[0] << " FILE…\n";
    return 2;
  }
  return RUN_ALL_TESTS();
}

}  // namespace bvconn::test
