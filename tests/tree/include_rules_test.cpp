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
using testing::UnorderedElementsAre;

SourceFile file(std::string path, std::string text) {
  return {std::move(path), std::move(text)};
}

// A file and what it includes.
struct Way {
  const char* from;
  const char* target;
};

TEST(IncludesOf, FindsQuotedAndBracketedOnesWithTheirLines) {
  EXPECT_THAT(
      includes_of("#pragma once\n"
                  "#include \"bvconn/operation/tails.h\"\n"
                  "// #include \"not/this.h\"\n"
                  "  #  include <vector>  // why\n"
                  "#include MACRO\n"),
      ElementsAre(Include{2, "bvconn/operation/tails.h", true}, Include{4, "vector", false}));
}

TEST(IncludesOf, FindsOneOnALastLineWithoutAnEnd) {
  EXPECT_THAT(includes_of("#include <map>"), ElementsAre(Include{1, "map", false}));
}

TEST(CheckDirection, LetsEachRoomSeeItselfAndWhatIsBelowIt) {
  for (const auto& [from, target] : {
           Way{"bvconn/connectors/print/a.cpp", "bvconn/operation/method_frame.h"},
           Way{"bvconn/connectors/print/a.cpp", "bvconn/dal/dal_switch.h"},
           Way{"bvconn/connectors/print/a.cpp", "bvconn/connectors/print/b.h"},
           Way{"bvconn/connectors/print/a.cpp", "bvconn/platform/error.h"},
           Way{"bvconn/operation/a.cpp", "bvconn/dal/dal_switch.h"},
           Way{"bvconn/dal/a.cpp", "bvconn/core/logging.h"},
           Way{"bvconn/core/a.cpp", "bvconn/platform/platform.h"},
           Way{"bvconn/platform/platform.h", "bvconn/platform/torvexlib/service_object.h"},
           Way{"bvconn/platform/soap/a.cpp", "bvconn/platform/xml/xml_reader.h"},
           Way{"bvconn/observation/a.cpp", "bvconn/automation/interface.h"},
           Way{"bvconn/component/a.cpp", "bvconn/automation/interface.h"},
           Way{"sandbox/a.cpp", "bvconn/automation/interface.h"},
           Way{"sandbox/a.cpp", "bvconn/observation/observe.h"},
           Way{"tools/bvconn/a.cpp", "bvconn/platform/soap/soap_node.h"},
           Way{"examples/a.cpp", "bvconn/connectors/print/a.h"},
           Way{"tests/a.cpp", "bvconn/component/text.h"},
       }) {
    const std::string text = "#include \"" + std::string(target) + "\"\n";
    EXPECT_THAT(check_direction(file(from, text)), IsEmpty());
  }
}

TEST(CheckDirection, ComplainsOfEveryWayUp) {
  for (const auto& [from, target] : {
           Way{"bvconn/platform/soap/a.h", "bvconn/core/logging.h"},
           Way{"bvconn/platform/a.cpp", "bvconn/catalogues/bv_methods.h"},
           Way{"bvconn/platform/error.cpp", "bvconn/platform/conversions/text.h"},
           Way{"bvconn/platform/xml/a.h", "bvconn/platform/soap/soap_uris.h"},
           Way{"bvconn/platform/http/a.h", "bvconn/platform/torvexlib/json_poster.h"},
           Way{"bvconn/platform/http/a.h", "bvconn/platform/platform.h"},
           Way{"bvconn/catalogues/a.cpp", "bvconn/core/logging.h"},
           Way{"bvconn/core/a.h", "bvconn/dal/dal_switch.h"},
           Way{"bvconn/core/a.h", "bvconn/automation/interface.h"},
           Way{"bvconn/dal/a.cpp", "bvconn/operation/tails.h"},
           Way{"bvconn/operation/a.cpp", "bvconn/connectors/print/a.h"},
           Way{"bvconn/connectors/print/a.cpp", "bvconn/automation/interface.h"},
           Way{"bvconn/automation/a.cpp", "bvconn/observation/observe.h"},
           Way{"bvconn/observation/a.cpp", "bvconn/component/text.h"},
           Way{"bvconn/core/a.h", "bvconn/novel/a.h"},
           Way{"tools/bvconn/a.cpp", "bvconn/connectors/print/a.h"},
           Way{"tools/bvconn/a.cpp", "bvconn/core/logging.h"},
           Way{"sandbox/a.cpp", "bvconn/dal/dal_switch.h"},
           Way{"examples/a.cpp", "bvconn/component/text.h"},
       }) {
    const std::string text = "#pragma once\n#include \"" + std::string(target) + "\"\n";
    EXPECT_THAT(check_direction(file(from, text)),
                ElementsAre(AllOf(StartsWith(std::string(from) + ":2: "), HasSubstr(target),
                                  HasSubstr("move what is needed down"))));
  }
}

TEST(CheckDirection, WantsAPlaceForANewRoom) {
  EXPECT_THAT(check_direction(file("bvconn/attic/a.h", "#include \"bvconn/platform/error.h\"\n")),
              ElementsAre(HasSubstr("is no room yet")));
}

TEST(CheckSpelling, TakesWholePathsOfFilesThatExist) {
  const SourceTree tree{file("bvconn/operation/tails.h", ""), file("sandbox/store/store.h", ""),
                        file("sandbox/http/server.h", ""), file("tests/support/world.h", "")};
  EXPECT_THAT(check_spelling(file("bvconn/core/a.cpp",
                                  "#include \"bvconn/operation/tails.h\"\n#include <map>\n"),
                             tree),
              IsEmpty());
  EXPECT_THAT(check_spelling(file("sandbox/http/a.cpp",
                                  "#include \"sandbox/store/store.h\"\n#include \"server.h\"\n"),
                             tree),
              IsEmpty());
  EXPECT_THAT(check_spelling(file("tests/core/a.cpp", "#include \"support/world.h\"\n"), tree),
              IsEmpty());
  EXPECT_THAT(check_spelling(file("examples/a.cpp", "#include <bvconn/operation/tails.h>\n"), tree),
              IsEmpty());
}

TEST(CheckSpelling, ComplainsOfEveryOtherForm) {
  const SourceTree tree{file("bvconn/operation/tails.h", "")};
  const auto complaint = [&](const char* path, const char* include) {
    const auto complaints =
        check_spelling(file(path, "#include " + std::string(include) + "\n"), tree);
    return complaints.size() == 1 ? complaints.front() : std::to_string(complaints.size());
  };
  EXPECT_THAT(complaint("bvconn/core/a.cpp", "\"logging.h\""), HasSubstr("is not a whole path"));
  EXPECT_THAT(complaint("bvconn/core/a.cpp", "\"../core/logging.h\""), HasSubstr("climbs out"));
  EXPECT_THAT(complaint("bvconn/core/a.cpp", "<bvconn/operation/tails.h>"), HasSubstr("in quotes"));
  EXPECT_THAT(complaint("examples/a.cpp", "\"bvconn/operation/tails.h\""),
              HasSubstr("examples write <bvconn/"));
  EXPECT_THAT(complaint("bvconn/core/a.cpp", "\"bvconn/core/loging.h\""),
              HasSubstr("is no file of this project"));
  EXPECT_THAT(complaint("tests/core/a.cpp", "\"curl/curl.h\""), HasSubstr("in angle brackets"));
}

TEST(CheckThirdParty, LetsEachPlaceHaveItsOwn) {
  EXPECT_THAT(check_third_party(file("bvconn/platform/http/a.cpp",
                                     "#include <curl/curl.h>\n#include <unistd.h>\n")),
              IsEmpty());
  EXPECT_THAT(check_third_party(file("sandbox/a.cpp", "#include <boost/asio.hpp>\n")), IsEmpty());
  EXPECT_THAT(check_third_party(file("tools/bvconn/a.cpp", "#include <CLI/CLI.hpp>\n")), IsEmpty());
  EXPECT_THAT(check_third_party(file("tests/xml/a.cpp", "#include <expat.h>\n")), IsEmpty());
  EXPECT_THAT(check_third_party(file("bvconn/core/a.cpp", "#include <vector>\n")), IsEmpty());
}

TEST(CheckThirdParty, ComplainsOfALibraryInTheWrongPlace) {
  for (const auto& [from, target] : {
           Way{"bvconn/platform/soap/a.cpp", "expat.h"},
           Way{"bvconn/platform/a.cpp", "CLI/CLI.hpp"},
           Way{"bvconn/component/a.cpp", "nlohmann/json.hpp"},
           Way{"tools/bvconn/a.cpp", "curl/curl.h"},
           Way{"tools/bvconn/a.cpp", "boost/asio.hpp"},
           Way{"sandbox/a.cpp", "gtest/gtest.h"},
           Way{"bench/a.cpp", "gtest/gtest.h"},
           Way{"tests/a.cpp", "benchmark/benchmark.h"},
           Way{"examples/a.cpp", "nlohmann/json.hpp"},
       }) {
    EXPECT_THAT(
        check_third_party(file(from, "#include <" + std::string(target) + ">\n")),
        ElementsAre(AllOf(StartsWith(std::string(from) + ":1: "), HasSubstr("only; reach it"))));
  }
}

TEST(CheckThirdParty, HasOnePlaceForTheHeadersOfWindows) {
  const std::string text = "#include <windows.h>\n";
  EXPECT_THAT(check_third_party(file("bvconn/platform/windows/system.h", text)), IsEmpty());
  for (const char* path : {"bvconn/platform/windows/files.cpp", "tools/bvconn/windows/a.cpp"}) {
    EXPECT_THAT(check_third_party(file(path, text)),
                ElementsAre(HasSubstr("is for bvconn/platform/windows/system.h only")));
  }
  EXPECT_THAT(check_third_party(file("bvconn/component/windows/a.cpp", "#include <oleauto.h>\n")),
              ElementsAre(HasSubstr("is for bvconn/platform/windows/components.h only")));
  // Programs as others write them.
  for (const char* path : {"examples/windows/a.cpp", "tests/windows_package/consumer/a.cpp"}) {
    EXPECT_THAT(check_third_party(file(path, text)), IsEmpty());
  }
}

TEST(CheckThirdParty, KeepsTheLogicToTheStandardLibrary) {
  for (const char* room : {"core", "catalogues", "dal", "operation", "connectors/print",
                           "automation", "observation"}) {
    const std::string path = std::string("bvconn/") + room + "/a.cpp";
    EXPECT_THAT(check_third_party(file(path,
                                       "#include <string>\n#include <unistd.h>\n"
                                       "#include <sys/stat.h>\n#include <curl/curl.h>\n")),
                ElementsAre(StartsWith(path + ":2: "), StartsWith(path + ":3: "),
                            StartsWith(path + ":4: ")));
  }
}

TEST(CheckThirdParty, WantsAReasonForANewDependency) {
  EXPECT_THAT(check_third_party(file("bvconn/platform/a.cpp", "#include <novel/novel.h>\n")),
              ElementsAre(HasSubstr("docs/decisions/")));
}

SourceFile public_list(const std::string& paths) {
  return file("bvconn/public_headers.txt", "# why\n" + paths);
}

TEST(CheckPublicHeaders, LetsSourcesAndTheirOwnHeadersUseLibraries) {
  const SourceTree tree{
      file("bvconn/bvconn.h", "#include \"bvconn/platform/http/transport.h\"\n"),
      file("bvconn/platform/http/transport.h", "#include <string>\n"),
      file("bvconn/platform/http/handle.h", "#include <curl/curl.h>\n"),
      file("bvconn/platform/http/transport.cpp", "#include \"bvconn/platform/http/handle.h\"\n"),
      public_list("bvconn.h\nplatform/http/transport.h\n")};
  EXPECT_THAT(check_public_headers(tree), IsEmpty());
}

TEST(CheckPublicHeaders, ComplainsOfALibraryThatAnApplicationWouldSee) {
  const SourceTree tree{
      file("bvconn/bvconn.h", "#include \"bvconn/platform/http/transport.h\"\n"),
      file("bvconn/platform/http/transport.h", "#include \"bvconn/platform/http/handle.h\"\n"),
      file("bvconn/platform/http/handle.h", "#pragma once\n#include <curl/curl.h>\n"),
      public_list("bvconn.h\nplatform/http/transport.h\nplatform/http/handle.h\n")};
  EXPECT_THAT(check_public_headers(tree),
              ElementsAre(AllOf(StartsWith("bvconn/platform/http/handle.h:2: "),
                                HasSubstr("shows in a public header"))));
}

TEST(CheckPublicHeaders, WantsWhatIsReachedInTheListAndNothingElse) {
  const SourceTree tree{file("bvconn/bvconn.h", "#include \"bvconn/platform/error.h\"\n"),
                        file("bvconn/platform/error.h", ""), file("bvconn/platform/files.h", ""),
                        public_list("bvconn.h\nplatform/files.h\n")};
  EXPECT_THAT(check_public_headers(tree),
              UnorderedElementsAre(
                  AllOf(StartsWith("bvconn/platform/error.h: is reached"), HasSubstr("list it")),
                  AllOf(StartsWith("bvconn/platform/files.h: is listed"),
                        HasSubstr("no public header includes it"))));
}

TEST(CheckPublicHeaders, LetsExamplesShowNothingElse) {
  const SourceTree tree{
      file("bvconn/bvconn.h", ""), file("bvconn/platform/files.h", ""),
      file("examples/a.cpp", "#include <bvconn/bvconn.h>\n#include <bvconn/platform/files.h>\n"),
      public_list("bvconn.h\n")};
  EXPECT_THAT(check_public_headers(tree), ElementsAre(StartsWith("examples/a.cpp:2: ")));
}

TEST(CheckUmbrella, WantsEveryClassOfTheInterfaceIncludedByItself) {
  const SourceTree tree{
      file("bvconn/bvconn.h", "#include \"bvconn/connectors/print/bv_print_connector.h\"\n"),
      file("bvconn/connectors/print/bv_print_connector.h",
           "\nclass BVCONN_EXPORT BVPrintConnector {\n#include \"bvconn/connectors/a.h\"\n"),
      file("bvconn/connectors/a.h", "\nclass BVCONN_EXPORT BVPostalConnector {\n"),
      file("bvconn/platform/error.h", "\nclass BVCONN_EXPORT Error {\n")};
  EXPECT_THAT(check_umbrella(tree), ElementsAre(StartsWith("bvconn/connectors/a.h: ")));
}

TEST(CheckCircles, FollowsSharedFilesWithoutComplaint) {
  const SourceTree tree{
      file("bvconn/core/a.h", "#include \"bvconn/core/b.h\"\n#include \"bvconn/core/c.h\"\n"),
      file("bvconn/core/b.h", "#include \"bvconn/core/d.h\"\n"),
      file("bvconn/core/c.h", "#include \"bvconn/core/d.h\"\n"), file("bvconn/core/d.h", "")};
  EXPECT_THAT(check_circles(tree), IsEmpty());
}

TEST(CheckCircles, NamesTheWholeCircleOnce) {
  const SourceTree tree{file("bvconn/catalogues/z.h", "#include \"bvconn/dal/c.h\"\n"),
                        file("bvconn/core/a.h", "#include \"bvconn/catalogues/z.h\"\n"),
                        file("bvconn/core/start.h", "#include \"bvconn/core/a.h\"\n"),
                        file("bvconn/dal/c.h", "#include \"bvconn/core/a.h\"\n")};
  EXPECT_THAT(check_circles(tree),
              ElementsAre(HasSubstr("bvconn/catalogues/z.h -> bvconn/dal/c.h -> bvconn/core/a.h -> "
                                    "bvconn/catalogues/z.h; ")));
}

TEST(CheckCircles, FindsAFileThatIncludesItself) {
  const SourceTree tree{file("bvconn/core/a.h", "#include \"bvconn/core/a.h\"\n")};
  EXPECT_THAT(check_circles(tree), ElementsAre(HasSubstr("bvconn/core/a.h -> bvconn/core/a.h;")));
}

}  // namespace
}  // namespace bvconn::test
