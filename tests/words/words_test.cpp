#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/observation/observe.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "words/header_words.h"
#include "words/raised_numbers.h"

/// Holds what the public headers say against what the operations are seen to do.
namespace bvconn::test {
namespace {

using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;
using automation::ObservedDalCall;
using automation::ObservedOperation;
using automation::ObservedRequest;
using testing::IsEmpty;

std::string text_of(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> read_headers() {
  const std::filesystem::path root = BVCONN_SOURCE_DIR;
  std::vector<std::string> headers{text_of(root / "bvconn/dal/bv_connector_object.h")};
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(root / "bvconn/connectors")) {
    if (entry.path().extension() == ".h") headers.push_back(text_of(entry.path()));
  }
  return headers;
}

const ClassWords& words_of(const std::string& class_name) {
  static const std::vector<std::string> headers = read_headers();
  static std::map<std::string, ClassWords> known;
  const auto found = known.find(class_name);
  if (found != known.end()) return found->second;
  for (const std::string& header : headers) {
    if (auto words = class_words(header, class_name)) return known[class_name] = *words;
  }
  ADD_FAILURE() << "no header defines " << class_name;
  return known[class_name];
}

/// The comments of a member; a property stands there twice, and its first comment serves both.
Declaration words_of(const std::string& class_name, const std::string& member) {
  Declaration all{.name = member, .own = "", .group = ""};
  for (const Declaration& each : words_of(class_name).declarations) {
    if (each.name != member) continue;
    all.own += each.own;
    if (all.group.empty()) all.group = each.group;
  }
  return all;
}

struct Documented {
  const ClassInfo& info;
  const Member& operation;
  Declaration words;

  std::string name() const { return info.name + "." + operation.name; }
  std::string text() const { return words.own + " " + words.group; }
};

/// Whether it is a class of the catalogues, whose members are rows.
bool is_catalogue(const ClassInfo& info) {
  return info.name == "BVServices" || info.name == "BVMethods";
}

/// All operations of the connectors.
const std::vector<Documented>& operations() {
  static const std::vector<Documented> all = [] {
    std::vector<Documented> found;
    for (const ClassInfo* info : automation::classes()) {
      if (is_catalogue(*info) || info->name == "BVConnectorObject") continue;
      for (const Member& member : info->members) {
        if (member.kind != MemberKind::kOperation) continue;
        found.push_back({*info, member, words_of(info->name, member.name)});
      }
    }
    return found;
  }();
  return all;
}

/// The route that serves an operation: its own, or else that of its group. Empty where there is not
/// just one.
std::string route_of(const Documented& each) {
  for (const std::string& text : {each.words.own, each.words.group}) {
    const auto routes = routes_in(text);
    if (!routes.empty()) return routes.size() == 1 ? routes.front() : "";
  }
  return "";
}

const ObservedOperation& observed(const Documented& each) {
  static const std::vector<ObservedOperation> all = automation::observe_all();
  return *std::find_if(all.begin(), all.end(), [&](const ObservedOperation& seen) {
    return seen.cls == each.info.name && seen.name == each.operation.name;
  });
}

const RaisedNumbers& raised(const Documented& each) {
  static std::map<std::string, RaisedNumbers> known;
  const auto found = known.find(each.name());
  if (found != known.end()) return found->second;
  return known[each.name()] = raised_numbers(each.info, each.operation);
}

/// Expects that the names said and the names seen are the same ones.
void expect_same(const std::vector<std::string>& said, const std::set<std::string>& seen,
                 const std::string& operation) {
  for (const std::string& name : said) {
    EXPECT_TRUE(
        std::any_of(seen.begin(), seen.end(),
                    [&](const std::string& each) { return can_mean(name, each, operation); }))
        << "`" << name << "` is said, and not seen";
  }
  for (const std::string& name : seen) {
    EXPECT_TRUE(
        std::any_of(said.begin(), said.end(),
                    [&](const std::string& each) { return can_mean(each, name, operation); }))
        << "`" << name << "` is seen, and not said";
  }
}

/// The text that a service named as a row of the catalogue stands for.
std::string service_text(const std::string& said) {
  static const std::string prefix = "BVServices.";
  if (!said.starts_with(prefix)) return said;
  const Member* row = automation::find_class("BVServices")->find(said.substr(prefix.size()));
  return row != nullptr && row->constant ? to_text(*row->constant) : said + ", which is no row";
}

/// A SOAPAction with "…" in it, for the service.
std::string filled(std::string soap_action, const std::string& service) {
  static const std::string ellipsis = "…";
  const std::size_t at = soap_action.find(ellipsis);
  return at == std::string::npos ? soap_action : soap_action.replace(at, ellipsis.size(), service);
}

/// The errors that any operation can raise: what the reply is, and what the way to it does.
bool is_general(std::int32_t number) {
  const auto bits = static_cast<std::uint32_t>(number) & 0xFFFFFF00U;
  return bits == 0x80044200U || bits == 0x80044300U;
}

bool is_platforms(std::int32_t number) {
  return number > 0;
}

std::string shown(std::int32_t number) {
  return is_platforms(number) ? "error " + std::to_string(number) : hex_number(number);
}

TEST(Words, ServeEveryMemberOfEveryClass) {
  for (const ClassInfo* info : automation::classes()) {
    if (is_catalogue(*info)) continue;
    for (const Member& member : info->members) {
      EXPECT_TRUE(words_of(info->name, member.name).documented())
          << info->name << "." << member.name << " has no comment";
    }
  }
  EXPECT_EQ(operations().size(), 205U);
}

TEST(Words, OfAGroupServeSomething) {
  for (const ClassInfo* info : automation::classes()) {
    if (is_catalogue(*info)) continue;
    EXPECT_THAT(words_of(info->name).stray, IsEmpty()) << info->name;
  }
}

TEST(Words, SayTheRouteOfEveryOperationOnce) {
  for (const Documented& each : operations()) {
    EXPECT_NE(route_of(each), "") << each.name() << " needs one sentence that begins with Route";
    for (const std::string& text : {each.words.own, each.words.group}) {
      const auto routes = routes_in(text);
      const std::string route = routes.empty() ? "" : routes.front();
      for (const char* word : {"SOAP", "DAL"}) {
        EXPECT_EQ(names_after(word, text), names_after(word, route))
            << each.name() << " names a route outside of its sentence";
      }
    }
  }
}

TEST(Words, NameTheMethodsThatAreSent) {
  for (const Documented& each : operations()) {
    SCOPED_TRACE(each.name());
    const std::string route = route_of(each);
    std::set<std::string> seen;
    for (const ObservedRequest& request : observed(each).requests) seen.insert(request.method);
    if (seen.erase("") > 0) {
      EXPECT_NE(route.find("SOAP under a name of the caller's"), std::string::npos);
    }
    expect_same(names_after("SOAP", route), seen, each.operation.name);
  }
}

TEST(Words, NameTheServiceObjectsThatAreCalled) {
  for (const Documented& each : operations()) {
    SCOPED_TRACE(each.name());
    const std::string route = route_of(each);
    std::set<std::string> seen;
    bool text = false;
    for (const ObservedDalCall& call : observed(each).dal_calls) {
      seen.insert(call.object + "." + call.operation);
      for (const auto& argument : call.arguments) text = text || argument.request_text;
    }
    expect_same(names_after("DAL", route), seen, each.operation.name);
    EXPECT_EQ(route.find("with the request's text") != std::string::npos, text);
  }
}

TEST(Words, SayWhichOfTheRoutesThereAre) {
  for (const Documented& each : operations()) {
    const bool soap = !observed(each).requests.empty();
    const bool dal = !observed(each).dal_calls.empty();
    const std::string route = route_of(each);
    const auto says = [&](const char* words) { return route.find(words) != std::string::npos; };
    EXPECT_EQ(says(", else SOAP "), soap && dal) << each.name();
    EXPECT_EQ(route.starts_with("Route: SOAP "), soap && !dal) << each.name();
    EXPECT_EQ(route.starts_with("Route: DAL ") && says(" alone"), dal && !soap) << each.name();
    EXPECT_EQ(route.starts_with("Route: none"), !dal && !soap) << each.name();
  }
}

TEST(Words, NameTheServicesThatAreSentTo) {
  for (const Documented& each : operations()) {
    SCOPED_TRACE(each.name());
    std::set<std::string> seen;
    for (const ObservedRequest& request : observed(each).requests) seen.insert(request.service);
    if (seen.erase("") > 0 || seen.empty()) continue;
    std::vector<std::string> said = services_in(route_of(each));
    if (said.empty()) said = services_in(words_of(each.info.name).comment);
    std::transform(said.begin(), said.end(), said.begin(), service_text);
    expect_same(said, seen, each.operation.name);
  }
}

TEST(Words, NameASOAPActionThatIsNotTheService) {
  for (const Documented& each : operations()) {
    SCOPED_TRACE(each.name());
    const std::string route = route_of(each);
    const auto said = soap_action_in(route);
    const bool before =
        route.find("under the SOAPAction of the request before") != std::string::npos;
    for (const ObservedRequest& request : observed(each).requests) {
      EXPECT_EQ(before, !request.soap_action.has_value());
      if (request.method.empty() || !request.soap_action) continue;
      EXPECT_EQ(*request.soap_action, said ? filled(*said, request.service) : request.service);
    }
  }
}

TEST(Words, NameErrorsThatAreRaised) {
  for (const Documented& each : operations()) {
    for (const std::int32_t number : numbers_in(each.text())) {
      EXPECT_TRUE(raised(each).all.contains(number))
          << each.name() << " names " << shown(number) << ", which never leaves it";
    }
  }
}

TEST(Words, LeaveOutNoErrorOfAnOperationsOwn) {
  for (const Documented& each : operations()) {
    const std::set<std::int32_t> own = numbers_in(each.text());
    const std::set<std::int32_t> of_class = numbers_in(words_of(each.info.name).comment);
    for (const std::int32_t number : raised(each).all) {
      EXPECT_TRUE(is_general(number) || own.contains(number) || of_class.contains(number))
          << each.name() << " does not name " << shown(number);
    }
  }
}

/// A class can speak for all its operations: of an error that all can raise alike, which some do,
/// or of one that all of them do.
TEST(Words, OfAClassNameErrorsThatItsOperationsRaise) {
  std::map<std::string, std::vector<const Documented*>> by_class;
  for (const Documented& each : operations()) by_class[each.info.name].push_back(&each);
  for (const auto& [name, members] : by_class) {
    for (const std::int32_t number : numbers_in(words_of(name).comment)) {
      const auto raises = [&](const Documented* each) {
        return raised(*each).all.contains(number);
      };
      const bool some = is_general(number) || is_platforms(number);
      EXPECT_TRUE(some ? std::any_of(members.begin(), members.end(), raises)
                       : std::all_of(members.begin(), members.end(), raises))
          << name << " names " << shown(number) << " for all its operations";
    }
  }
}

TEST(Words, NameTheFaultCodesThatAreMapped) {
  for (const Documented& each : operations()) {
    EXPECT_EQ(mapped_codes_in(each.text()), raised(each).mapped) << each.name();
  }
}

/// The rule is that a fault has the server's text by SOAP and has lost it on the data access layer.
TEST(Words, SayWhereAFaultDepartsFromTheRuleOnItsText) {
  for (const Documented& each : operations()) {
    const RaisedNumbers& seen = raised(each);
    const std::string comments = each.text() + words_of(each.info.name).comment;
    const bool without = each.text().find("without the server's text") != std::string::npos;
    const bool on_either = comments.find("on either route") != std::string::npos;
    if (!observed(each).requests.empty() && seen.has_text_by_soap) {
      EXPECT_EQ(without, !*seen.has_text_by_soap) << each.name();
    }
    if (!observed(each).dal_calls.empty() && seen.has_text_by_dal) {
      EXPECT_EQ(on_either, *seen.has_text_by_dal) << each.name();
    }
  }
}

TEST(Words, NameThePlatformsErrorsInOnePhrase) {
  for (const ClassInfo* info : automation::classes()) {
    if (is_catalogue(*info)) continue;
    EXPECT_THAT(loose_numbers_in(words_of(info->name).comment), IsEmpty()) << info->name;
    for (const Declaration& each : words_of(info->name).declarations) {
      EXPECT_THAT(loose_numbers_in(each.own + " " + each.group), IsEmpty())
          << info->name << "." << each.name << ": write \"error 13\"";
    }
  }
}

}  // namespace
}  // namespace bvconn::test
