#pragma once

#include <cstddef>
#include <exception>
#include <string>

namespace bvconn::detail::xml {

enum class Problem {
  not_well_formed,  ///< the document breaks a rule of XML or of namespaces, or of its encoding
  limit,            ///< the document is larger in some respect than the caller's limits allow
};

/// Where something stands in a document: line and column count from 1, the column in characters;
/// the offset counts bytes from 0.
struct Position {
  std::size_t line = 1;
  std::size_t column = 1;
  std::size_t offset = 0;
};

/// Why a document cannot be read. Stays inside the library: the object model turns it into `Error`.
class ReadError final : public std::exception {
 public:
  ReadError(Problem why, const Position& where, const std::string& what_is_wrong)
      : problem(why),
        position(where),
        message("line " + std::to_string(where.line) + ", column " + std::to_string(where.column) +
                ": " + what_is_wrong) {}
  const char* what() const noexcept override { return message.c_str(); }

  Problem problem;
  Position position;
  /// For people, with the place in front: "line 3, column 17: the end tag </b> does not match <a>".
  std::string message;
};

}  // namespace bvconn::detail::xml
