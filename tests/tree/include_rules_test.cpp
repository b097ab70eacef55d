#include "tree/include_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace bvconn::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

SourceFile file(std::string path, std::string text) {
  return {std::move(path), std::move(text)};
}

TEST(IncludesOf, FindsQuotedAndBracketedOnesWithTheirLines) {
  EXPECT_THAT(includes_of("#pragma once\n"
                          "#include \"bvconn/core/tails.h\"\n"
                          "// #include \"not/this.h\"\n"
                          "  #  include <vector>  // why\n"
                          "#include MACRO\n"),
              ElementsAre(Include{2, "bvconn/core/tails.h", true}, Include{4, "vector", false}));
}

TEST(IncludesOf, FindsOneOnALastLineWithoutAnEnd) {
  EXPECT_THAT(includes_of("#include <map>"), ElementsAre(Include{1, "map", false}));
}

TEST(CheckDirection, LetsEachRoomSeeWhatIsBelowIt) {
  EXPECT_THAT(check_direction(file("src/connectors/print/a.cpp",
                                   "#include \"bvconn/core/tails.h\"\n"
                                   "#include \"bvconn/dal/dal_switch.h\"\n"
                                   "#include \"bvconn/catalogues/bv_methods.h\"\n"
                                   "#include \"bvconn/platform/error.h\"\n")),
              IsEmpty());
  EXPECT_THAT(check_direction(file("sandbox/a.cpp",
                                   "#include \"bvconn/automation/interface.h\"\n"
                                   "#include \"bvconn/platform/soap/soap_node.h\"\n")),
              IsEmpty());
}

struct Wrong {
  const char* from;
  const char* target;
};

TEST(CheckDirection, ComplainsOfEveryWayUp) {
  for (const auto& [from, target] : {
           Wrong{"src/platform/soap/a.h", "bvconn/core/tails.h"},
           Wrong{"src/platform/a.cpp", "bvconn/catalogues/bv_methods.h"},
           Wrong{"src/catalogues/a.cpp", "bvconn/connectors/print/a.h"},
           Wrong{"src/core/a.h", "bvconn/connectors/print/a.h"},
           Wrong{"src/core/a.h", "bvconn/automation/interface.h"},
           Wrong{"src/dal/a.cpp", "bvconn/connectors/print/a.h"},
           Wrong{"src/connectors/print/a.cpp", "bvconn/automation/interface.h"},
           Wrong{"tools/bvconn/a.cpp", "bvconn/connectors/print/a.h"},
           Wrong{"tools/bvconn/a.cpp", "bvconn/core/tails.h"},
           Wrong{"sandbox/a.cpp", "bvconn/dal/dal_switch.h"},
           Wrong{"examples/a.cpp", "bvconn/automation/interface.h"},
       }) {
    const std::string text = "#pragma once\n#include \"" + std::string(target) + "\"\n";
    EXPECT_THAT(check_direction(file(from, text)),
                ElementsAre(AllOf(StartsWith(std::string(from) + ":2: "), HasSubstr(target),
                                  HasSubstr("it may include"))));
  }
}

TEST(CheckDirection, WantsAPlaceForANewRoom) {
  EXPECT_THAT(check_direction(file("src/attic/a.h", "#include \"bvconn/platform/error.h\"\n")),
              ElementsAre(HasSubstr("room 'attic' is not known")));
}

TEST(CheckSpelling, TakesWholePathsOfFilesThatExist) {
  const SourceTree tree{file("src/core/tails.h", ""), file("sandbox/store/store.h", ""),
                        file("sandbox/http/server.h", ""), file("tests/support/world.h", "")};
  EXPECT_THAT(
      check_spelling(file("src/core/a.cpp", "#include \"bvconn/core/tails.h\"\n#include <map>\n"),
                     tree),
      IsEmpty());
  EXPECT_THAT(check_spelling(file("sandbox/http/a.cpp",
                                  "#include \"sandbox/store/store.h\"\n#include \"server.h\"\n"),
                             tree),
              IsEmpty());
  EXPECT_THAT(check_spelling(file("tests/core/a.cpp", "#include \"support/world.h\"\n"), tree),
              IsEmpty());
  EXPECT_THAT(check_spelling(file("examples/a.cpp", "#include <bvconn/core/tails.h>\n"), tree),
              IsEmpty());
}

TEST(CheckSpelling, ComplainsOfEveryOtherForm) {
  const SourceTree tree{file("src/core/tails.h", "")};
  const auto complaint = [&](const char* path, const char* include) {
    const auto complaints =
        check_spelling(file(path, "#include " + std::string(include) + "\n"), tree);
    return complaints.size() == 1 ? complaints.front() : std::to_string(complaints.size());
  };
  EXPECT_THAT(complaint("src/core/a.cpp", "\"tails.h\""), HasSubstr("is not a whole path"));
  EXPECT_THAT(complaint("src/core/a.cpp", "\"../core/tails.h\""), HasSubstr("climbs out"));
  EXPECT_THAT(complaint("src/core/a.cpp", "<bvconn/core/tails.h>"), HasSubstr("in quotes"));
  EXPECT_THAT(complaint("examples/a.cpp", "\"bvconn/core/tails.h\""),
              HasSubstr("examples write <bvconn/"));
  EXPECT_THAT(complaint("src/core/a.cpp", "\"bvconn/core/tales.h\""),
              HasSubstr("is no file of this project"));
  EXPECT_THAT(complaint("tests/core/a.cpp", "\"curl/curl.h\""), HasSubstr("in angle brackets"));
}

TEST(CheckThirdParty, LetsEachPlaceHaveItsOwn) {
  EXPECT_THAT(check_third_party(
                  file("src/platform/http/a.cpp", "#include <curl/curl.h>\n#include <unistd.h>\n")),
              IsEmpty());
  EXPECT_THAT(check_third_party(file("sandbox/a.cpp", "#include <boost/asio.hpp>\n")), IsEmpty());
  EXPECT_THAT(check_third_party(file("tools/bvconn/a.cpp", "#include <CLI/CLI.hpp>\n")), IsEmpty());
  EXPECT_THAT(check_third_party(file("tests/xml/a.cpp", "#include <expat.h>\n")), IsEmpty());
  EXPECT_THAT(check_third_party(file("src/core/a.cpp", "#include <vector>\n")), IsEmpty());
}

TEST(CheckThirdParty, ComplainsOfALibraryInTheWrongPlace) {
  for (const auto& [from, target] : {
           Wrong{"src/platform/soap/a.cpp", "expat.h"},
           Wrong{"src/platform/a.cpp", "CLI/CLI.hpp"},
           Wrong{"src/automation/a.cpp", "nlohmann/json.hpp"},
           Wrong{"tools/bvconn/a.cpp", "curl/curl.h"},
           Wrong{"tools/bvconn/a.cpp", "boost/asio.hpp"},
           Wrong{"sandbox/a.cpp", "gtest/gtest.h"},
           Wrong{"bench/a.cpp", "gtest/gtest.h"},
           Wrong{"tests/a.cpp", "benchmark/benchmark.h"},
           Wrong{"examples/a.cpp", "nlohmann/json.hpp"},
       }) {
    EXPECT_THAT(
        check_third_party(file(from, "#include <" + std::string(target) + ">\n")),
        ElementsAre(AllOf(StartsWith(std::string(from) + ":1: "), HasSubstr("only; reach it"))));
  }
}

TEST(CheckThirdParty, KeepsTheLogicToTheStandardLibrary) {
  for (const char* room : {"core", "catalogues", "dal", "connectors/print"}) {
    const std::string path = std::string("src/") + room + "/a.cpp";
    EXPECT_THAT(check_third_party(file(path,
                                       "#include <string>\n#include <unistd.h>\n"
                                       "#include <sys/stat.h>\n#include <curl/curl.h>\n")),
                ElementsAre(StartsWith(path + ":2: "), StartsWith(path + ":3: "),
                            StartsWith(path + ":4: ")));
  }
}

TEST(CheckThirdParty, WantsAReasonForANewDependency) {
  EXPECT_THAT(check_third_party(file("src/platform/a.cpp", "#include <novel/novel.h>\n")),
              ElementsAre(HasSubstr("docs/decisions/")));
}

TEST(CheckPublicHeaders, LetsSourcesAndTheirOwnHeadersUseLibraries) {
  const SourceTree tree{
      file("src/connectors/a.h", "#include \"bvconn/platform/http/transport.h\"\n"),
      file("src/platform/http/transport.h", "#include <string>\n"),
      file("src/platform/http/handle.h", "#include <curl/curl.h>\n"),
      file("src/platform/http/transport.cpp", "#include \"bvconn/platform/http/handle.h\"\n")};
  EXPECT_THAT(check_public_headers(tree), IsEmpty());
}

TEST(CheckPublicHeaders, ComplainsOfALibraryThatAnApplicationWouldSee) {
  const SourceTree tree{
      file("src/connectors/a.h", "#include \"bvconn/platform/http/transport.h\"\n"),
      file("src/platform/http/transport.h", "#include \"bvconn/platform/http/handle.h\"\n"),
      file("src/platform/http/handle.h", "#pragma once\n#include <curl/curl.h>\n")};
  EXPECT_THAT(check_public_headers(tree),
              ElementsAre(AllOf(StartsWith("src/platform/http/handle.h:2: "),
                                HasSubstr("shows in a public header"))));
}

TEST(CheckCircles, FollowsSharedFilesWithoutComplaint) {
  const SourceTree tree{
      file("src/core/a.h", "#include \"bvconn/core/b.h\"\n#include \"bvconn/core/c.h\"\n"),
      file("src/core/b.h", "#include \"bvconn/core/d.h\"\n"),
      file("src/core/c.h", "#include \"bvconn/core/d.h\"\n"), file("src/core/d.h", "")};
  EXPECT_THAT(check_circles(tree), IsEmpty());
}

TEST(CheckCircles, NamesTheWholeCircleOnce) {
  const SourceTree tree{file("src/catalogues/z.h", "#include \"bvconn/dal/c.h\"\n"),
                        file("src/core/a.h", "#include \"bvconn/catalogues/z.h\"\n"),
                        file("src/core/start.h", "#include \"bvconn/core/a.h\"\n"),
                        file("src/dal/c.h", "#include \"bvconn/core/a.h\"\n")};
  EXPECT_THAT(check_circles(tree),
              ElementsAre(HasSubstr("src/catalogues/z.h -> src/dal/c.h -> src/core/a.h -> "
                                    "src/catalogues/z.h; ")));
}

TEST(CheckCircles, FindsAFileThatIncludesItself) {
  const SourceTree tree{file("src/core/a.h", "#include \"bvconn/core/a.h\"\n")};
  EXPECT_THAT(check_circles(tree), ElementsAre(HasSubstr("src/core/a.h -> src/core/a.h;")));
}

}  // namespace
}  // namespace bvconn::test
