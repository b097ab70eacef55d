#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// The files that tell what goes through a SOAP stack that is not ours. README.md describes them.
namespace bvconn::test {

/// What is expected, by the name of the stack; "" for all that have none of their own.
using ByStack = std::map<std::string, std::string, std::less<>>;

/// What holds for this stack; "" where nothing is stated.
std::string for_stack(const ByStack& stated, std::string_view stack);

/// One call, what the server has seen of it, and what comes back.
struct ForeignCall {
  int line = 0;  ///< of the file, for messages
  std::string member;
  std::string arguments;  ///< JSON without the server's address
  ByStack seen;           ///< JSON, or "nothing"
  ByStack answer;         ///< JSON
};

struct ForeignCase {
  std::string claim;
  ByStack without;  ///< why a stack has no part in it
  std::vector<ForeignCall> calls;
};

struct CallFile {
  std::vector<ForeignCase> cases;
  std::vector<std::string> problems;  ///< what is wrong with the file itself
};

CallFile read_call_file(std::string_view text);

}  // namespace bvconn::test
