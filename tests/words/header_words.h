#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// The words of a class's header, and the phrases in them that can be held against what the
/// operations do. The phrases are fixed:
///
/// - "Route: SOAP `wireName`.", "Route: DAL `Object.Operation`, else SOAP `wireName`.",
///   "Route: DAL `Object.Operation` alone." and "Route: none", one sentence with more words in it
///   as needed: `of "urn:Service"` where it is not the one that the class names, `under the
///   SOAPAction "urn:Service"` or `under the SOAPAction of the request before` where it is not the
///   service, `with the request's text` where the service object gets that.
/// - "error 13" (6, 9, 91) and "0x80042739" for error numbers; "0x80042739 for the fault code
///   10041" for what a server's code becomes; "without the server's text" for a fault that has lost
///   it by SOAP, "on either route" for one that keeps it on the data access layer too.
/// - "…" in a name stands for a part of the operation's own name, in a SOAPAction for the service.
namespace bvconn::test {

/// One public member of a class.
struct Declaration {
  std::string name;
  /// The `///` comments above it, as one text.
  std::string own;
  /// The `//` comment that serves it: the last one above it without a blank line in between.
  std::string group;

  bool documented() const { return !own.empty() || !group.empty(); }
};

struct ClassWords {
  std::string comment;
  std::vector<Declaration> declarations;
  /// Group comments that serve nothing.
  std::vector<std::string> stray;
};

/// The words of a class, if this header defines it.
std::optional<ClassWords> class_words(std::string_view header, std::string_view class_name);

/// The sentences that begin with "Route: ".
std::vector<std::string> routes_in(std::string_view text);
/// The names in backticks after "SOAP " or "DAL ", and after an "or" that follows such a name.
std::vector<std::string> names_after(std::string_view word, std::string_view text);
/// Services named in quotes or as `BVServices.Row`, but for those that are a SOAPAction.
std::vector<std::string> services_in(std::string_view text);
/// The text after "SOAPAction" in quotes.
std::optional<std::string> soap_action_in(std::string_view text);

/// The error numbers that a text names.
std::set<std::int32_t> numbers_in(std::string_view text);
/// The fault codes that a text names, each with its error number.
std::map<std::int32_t, std::int32_t> mapped_codes_in(std::string_view text);
/// Numbers of the platform's own errors that stand outside of the fixed phrase.
std::vector<std::string> loose_numbers_in(std::string_view text);

/// Whether a name with "…" in it can be this one, for an operation of that name.
bool can_mean(std::string_view pattern, std::string_view name, std::string_view operation);

}  // namespace bvconn::test
