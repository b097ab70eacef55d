#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bvconn::sandbox {

/// One thing in which a request departs from what is expected.
struct Difference {
  std::string at;        ///< "parameter 1 ('param')"; "" for the request as a whole
  std::string found;     ///< "has type 'int'"
  std::string expected;  ///< "type 'string'"
  /// It says in detail what another difference says already: which parameter a wrong number lacks.
  bool is_detail = false;

  /// "parameter 1 ('param') has type 'int', expected type 'string'".
  std::string text() const;
};

/// What is wrong, in a text that people read: the first difference, and how many more there are.
/// `subject` is what was asked for, "" where the difference says so itself.
std::string complaint_text(std::string_view subject, const std::vector<Difference>& differences);

}  // namespace bvconn::sandbox
