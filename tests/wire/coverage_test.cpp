// Which wire files there have to be, asked of the library itself.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/observation/observe.h"
#include "laws.h"

namespace bvconn::test {
namespace {

/// A class that has no wire files: what it does is shown by tests of its own.
struct Exception {
  std::string_view cls;
  std::string_view test;  ///< below tests/
  std::string_view reason;
};

constexpr Exception kExceptions[] = {
    {"BVConnectorObject", "dal/bv_connector_object_test.cpp",
     "its operations set the route up: they have no envelope and no reply"},
    {"BVGenericConnector", "connectors/bv_generic_connector_test.cpp",
     "the caller names service, method and root, and the envelope outlives the call"},
    {"BVHeartBeatConnector", "connectors/bv_heart_beat_connector_test.cpp",
     "it raises an event and looks at the clock, which no wire file can state"},
};

bool is_exception(std::string_view cls) {
  return std::any_of(std::begin(kExceptions), std::end(kExceptions),
                     [&](const Exception& exception) { return exception.cls == cls; });
}

/// One wire file, by its name "Class.Operation.route.wire".
struct FoundFile {
  std::string cls;
  std::string operation;
  std::string route;
  WireFile content;
};

FoundFile read_file(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const std::string name = path.stem().string();
  const std::size_t first = name.find('.');
  const std::size_t last = name.rfind('.');
  EXPECT_TRUE(first != std::string::npos && first != last) << path << ": not Class.Operation.route";
  return {.cls = name.substr(0, first),
          .operation = name.substr(first + 1, last - first - 1),
          .route = name.substr(last + 1),
          .content = read_wire_file(text)};
}

/// All files, by their names without the ending.
const std::map<std::string, FoundFile>& files() {
  static const auto all = [] {
    std::map<std::string, FoundFile> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(BVCONN_WIRE_FOLDER)) {
      if (entry.path().extension() != ".wire") continue;
      const bool first =
          found.emplace(entry.path().stem().string(), read_file(entry.path())).second;
      EXPECT_TRUE(first) << entry.path() << " is there twice";
    }
    return found;
  }();
  return all;
}

/// The routes of each operation that needs wire files, by "Class.Operation".
const std::map<std::string, std::vector<std::string>>& wanted_routes() {
  static const auto all = [] {
    std::map<std::string, std::vector<std::string>> routes;
    for (const auto& seen : automation::observe_all()) {
      if (is_exception(seen.cls)) continue;
      auto& wanted = routes[seen.cls + "." + seen.name];
      if (!seen.requests.empty()) wanted.emplace_back("soap");
      if (!seen.dal_calls.empty()) wanted.emplace_back("dal");
      if (wanted.empty()) wanted.emplace_back("nothing");
    }
    return routes;
  }();
  return all;
}

const automation::Member* find_operation(const std::string& member) {
  const std::size_t dot = member.find('.');
  if (dot == std::string::npos) return nullptr;
  const auto* info = automation::find_class(member.substr(0, dot));
  const auto* found = info == nullptr ? nullptr : info->find(member.substr(dot + 1));
  return found != nullptr && found->callable() ? found : nullptr;
}

/// The cases that the laws make of a file.
LawCases by_law(const FoundFile& file) {
  const std::string other_route = file.route == "soap" ? ".dal" : ".soap";
  const auto other = files().find(file.cls + "." + file.operation + other_route);
  return law_cases(file.content, other == files().end() ? nullptr : &other->second.content);
}

template <class Holds>
bool any_step(const FoundFile& file, Holds holds) {
  const LawCases lawful = by_law(file);
  for (const auto* cases : {&file.content.cases, &lawful.cases}) {
    for (const WireCase& wire_case : *cases) {
      if (std::any_of(wire_case.steps.begin(), wire_case.steps.end(), holds)) return true;
    }
  }
  return false;
}

bool has_fault(const WireStep& step) {
  return step.fault.has_value();
}

bool disables(const WireStep& step) {
  return std::any_of(step.given.begin(), step.given.end(),
                     [](const std::string& line) { return line.starts_with("disabled "); });
}

TEST(WireFiles, EveryOperationIsObserved) {
  for (const auto* info : automation::classes()) {
    if (is_exception(info->name)) continue;
    for (const auto& member : info->members) {
      if (member.kind != automation::MemberKind::kOperation) continue;
      EXPECT_TRUE(wanted_routes().contains(info->name + "." + member.name))
          << info->name << "." << member.name;
    }
  }
}

TEST(WireFiles, EveryRouteOfEveryOperationHasItsFile) {
  for (const auto& [member, routes] : wanted_routes()) {
    for (const std::string& route : routes) {
      EXPECT_TRUE(files().contains(member + "." + route))
          << "write " << member << "." << route << ".wire";
    }
  }
}

TEST(WireFiles, NoFileIsOfARouteThatItsOperationLacks) {
  for (const auto& [name, file] : files()) {
    const auto found = wanted_routes().find(file.cls + "." + file.operation);
    if (found == wanted_routes().end()) {
      ADD_FAILURE() << name << ": no wire file is asked for";
      continue;
    }
    const auto& routes = found->second;
    EXPECT_NE(std::find(routes.begin(), routes.end(), file.route), routes.end()) << name;
  }
}

TEST(WireFiles, EverySoapFileHasAFault) {
  for (const auto& [name, file] : files()) {
    EXPECT_TRUE(file.route != "soap" || any_step(file, has_fault)) << name;
  }
}

TEST(WireFiles, EveryDalFileHasADisabledMethodAndAFault) {
  for (const auto& [name, file] : files()) {
    if (file.route != "dal") continue;
    EXPECT_TRUE(any_step(file, disables)) << name << ": no case is given `disabled`";
    EXPECT_TRUE(
        any_step(file, [](const WireStep& step) { return has_fault(step) && !step.dal.empty(); }))
        << name << ": no service object answers with a fault";
  }
}

TEST(WireFiles, EveryFirstCaseListsAllThatIsAskedOfTheTransport) {
  for (const auto& [name, file] : files()) {
    ASSERT_FALSE(file.content.cases.empty()) << name;
    const auto& steps = file.content.cases.front().steps;
    EXPECT_TRUE(!steps.empty() && !steps.front().transport.empty())
        << name << ": state `transport` (none: it is not touched)";
  }
}

TEST(WireFiles, EveryLawHoldsSomewhere) {
  std::map<std::string, int> holds;
  for (const auto& [name, file] : files()) {
    for (const WireCase& lawful : by_law(file).cases) ++holds[lawful.claim];
  }
  for (const Law& law : laws()) {
    EXPECT_GT(holds["law: " + std::string(law.claim)], 1) << law.name;
  }
  EXPECT_EQ(holds.size(), laws().size()) << "a case is of no law";
}

TEST(WireFiles, EveryFileCanBeReadAndCallsWhatThereIs) {
  for (const auto& [name, file] : files()) {
    const LawCases lawful = by_law(file);
    for (const auto* problems : {&file.content.problems, &lawful.problems}) {
      for (const std::string& problem : *problems) ADD_FAILURE() << name << ": " << problem;
    }
    for (const WireCase& wire_case : file.content.cases) {
      bool its_own = false;
      for (const WireStep& step : wire_case.steps) {
        EXPECT_NE(find_operation(step.member), nullptr) << name << ": " << step.member;
        its_own = its_own || step.member == file.cls + "." + file.operation;
      }
      EXPECT_TRUE(its_own) << name << ": \"" << wire_case.claim
                           << "\" calls another operation only";
    }
  }
}

TEST(WireFiles, TheExceptionsAreClassesWithTestsOfTheirOwn) {
  const std::filesystem::path tests = std::filesystem::path(BVCONN_WIRE_FOLDER).parent_path();
  for (const Exception& exception : kExceptions) {
    EXPECT_NE(automation::find_class(exception.cls), nullptr) << exception.cls;
    EXPECT_TRUE(std::filesystem::exists(tests / exception.test))
        << exception.cls << " has no wire files since " << exception.reason << "; "
        << exception.test;
  }
}

}  // namespace
}  // namespace bvconn::test
