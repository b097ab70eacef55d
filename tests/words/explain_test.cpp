#include "bvconn/platform/explain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/error_numbers.h"

/// Holds the constants, the page of errors and the explanations together.
namespace bvconn::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::int32_t kNobodysNumber = error_numbers::from_bits(0x80044E21);

std::string text_of(const std::filesystem::path& path) {
  std::ifstream file(std::filesystem::path(BVCONN_SOURCE_DIR) / path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::smatch> matches(const std::string& text, const std::regex& pattern) {
  return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

std::int32_t number_of(const std::string& text) {
  return static_cast<std::int32_t>(std::stoul(text, nullptr, 0));
}

/// The constants of the header that are numbers of errors, by name.
std::map<std::string, std::int32_t> constants() {
  static const std::regex kConstant(
      R"(constexpr std::int32_t (k\w+) = (?:from_bits\()?(0x[0-9A-F]{8}|\d+)\)?;)");
  const std::string header = text_of("bvconn/platform/error_numbers.h");
  std::map<std::string, std::int32_t> found;
  for (const std::smatch& match : matches(header, kConstant)) {
    if (match[1] != "kObjectErrorBase") found.emplace(match[1], number_of(match[2]));
  }
  return found;
}

std::string explained(std::int32_t number, std::string_view source = {},
                      std::string_view description = {}, Outcome outcome = Outcome::kNone) {
  Error error(number, source, description);
  error.outcome = outcome;
  return explain(error);
}

TEST(ErrorNumbers, AreFoundInTheirHeader) {
  const auto found = constants();
  EXPECT_EQ(found.size(), 33U);
  EXPECT_EQ(found.at("kOverflow"), 6);
  EXPECT_EQ(found.at("kSoapFault"), static_cast<std::int32_t>(0x80044201));
  // A constant in a form that the pattern above does not know would go unseen.
  const std::string header = text_of("bvconn/platform/error_numbers.h");
  EXPECT_EQ(matches(header, std::regex("std::int32_t k")).size(), found.size() + 1);
}

TEST(ErrorNumbers, AreEachOneConstantsAlone) {
  std::set<std::int32_t> numbers;
  for (const auto& [name, number] : constants()) EXPECT_TRUE(numbers.insert(number).second) << name;
}

TEST(ErrorNumbers, OfTheConnectorsHeadersAreAllConstants) {
  std::set<std::int32_t> known;
  for (const auto& [name, number] : constants()) known.insert(number);
  std::size_t seen = 0;
  const std::filesystem::path root(BVCONN_SOURCE_DIR);
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(root / "bvconn/connectors")) {
    if (entry.path().extension() != ".h") continue;
    const std::string header = text_of(std::filesystem::relative(entry.path(), root));
    for (const std::smatch& match : matches(header, std::regex("0x8[0-9A-F]{7}"))) {
      ++seen;
      EXPECT_TRUE(known.contains(number_of(match[0]))) << entry.path() << ": " << match[0];
    }
  }
  EXPECT_GT(seen, 30U);
}

TEST(Explain, KnowsEveryConstantAndSaysOfEachSomethingElse) {
  std::set<std::string> texts;
  for (const auto& [name, number] : constants()) {
    const std::string text = explained(number);
    EXPECT_THAT(text, AllOf(Not(HasSubstr("none of the library's")), Not(HasSubstr("\n")),
                            Not(HasSubstr("|")), EndsWith(".")))
        << name;
    EXPECT_TRUE(texts.insert(text).second) << name;
  }
}

TEST(Explain, GivesForAMappedFaultTheCodeThatItStandsFor) {
  EXPECT_THAT(explained(error_numbers::kInvoiceFault), HasSubstr("10041"));
  EXPECT_THAT(explained(error_numbers::kSaveReconcileFault), HasSubstr("10081"));
  EXPECT_THAT(explained(error_numbers::kGetReconcileFault),
              AllOf(HasSubstr("10011"), HasSubstr("10012")));
  EXPECT_THAT(explained(error_numbers::kAssociateFault), HasSubstr("10061"));
  EXPECT_THAT(explained(error_numbers::kAutoReconcileFault), HasSubstr("10071"));
}

TEST(Explain, SaysOfANumberThatIsNobodysThatItIsUnknown) {
  EXPECT_EQ(explained(kNobodysNumber, "SearchService", "login refused"),
            "This number is none of the library's own; it comes from SearchService. What it means "
            "is known there alone; the description has its words.");
  EXPECT_EQ(explained(0),
            "This number is none of the library's own. What it means is known there alone; look at "
            "the record of the exchange.");
}

TEST(Explain, AddsWhatTheOutcomeKnows) {
  const std::string plain = explained(error_numbers::kTimeout);
  EXPECT_EQ(explained(error_numbers::kTimeout, "", "", Outcome::kNotSent),
            plain + " Nothing was sent.");
  EXPECT_EQ(explained(error_numbers::kTimeout, "", "", Outcome::kAnswered), plain);
  EXPECT_EQ(explained(error_numbers::kTimeout, "", "", Outcome::kUnknown),
            plain +
                " The request went out and its outcome is unknown: look whether it was done before "
                "calling again.");
}

TEST(ErrorsPage, HasOneRowForEveryConstantWithItsNumberAndItsExplanation) {
  static const std::regex kRow(R"(\| (0x[0-9A-F]{8}|\d+) \| `(k\w+)` \| (.*) \|)");
  const std::string page = text_of("docs/errors.md");
  auto missing = constants();
  for (const std::smatch& row : matches(page, kRow)) {
    const auto constant = missing.find(row[2]);
    ASSERT_NE(constant, missing.end()) << row[2] << " is no constant, or stands here twice";
    EXPECT_EQ(number_of(row[1]), constant->second) << row[2];
    EXPECT_EQ(row[3], explained(constant->second)) << row[2];
    missing.erase(constant);
  }
  EXPECT_THAT(missing, IsEmpty());
}

}  // namespace
}  // namespace bvconn::test
