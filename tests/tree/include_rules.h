#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tree/source_tree.h"

/// The rules about who includes whom. Each gives its complaints, "path:line: what is wrong; what to
/// do instead", and none when the file keeps it.
namespace bvconn::test {

using Complaints = std::vector<std::string>;

struct Include {
  std::size_t line = 0;  ///< from 1
  std::string target;    ///< without quotes or brackets
  bool quoted = false;

  friend bool operator==(const Include&, const Include&) = default;
};

std::vector<Include> includes_of(std::string_view text);

/// The rooms stand in one order, and each includes itself and those below it alone; tools and
/// sandbox see of the library only what makes calls by name, and the platform.
Complaints check_direction(const SourceFile& file);

/// The rooms from the bottom up, by the paths that their files begin with.
std::vector<std::string> room_names();

/// Which rooms each room includes, itself left out. Rooms that include none are there too.
std::map<std::string, std::set<std::string>> rooms_included(const SourceTree& tree);

/// Own headers are written with their whole path, "bvconn/<room>/<file>", in quotes; the examples
/// write them as an application does, in angle brackets. Tools, sandbox and tests may also name
/// files of their own folder, or from the root of theirs.
Complaints check_spelling(const SourceFile& file, const SourceTree& tree);

/// Third-party code stays below platform/, tools/ and sandbox/, and each of them has its own; the
/// rooms above platform/ see the standard library alone.
Complaints check_third_party(const SourceFile& file);

/// The list of the public headers, bvconn/public_headers.txt, holds what an application starts
/// from, all that is reached from there and nothing else; and that shows no third-party header.
/// Examples include of the library nothing else.
Complaints check_public_headers(const SourceTree& tree);

/// Every header with a class of the interface is included by bvconn/bvconn.h itself.
Complaints check_umbrella(const SourceTree& tree);

/// No file below bvconn/ includes itself by way of others. One complaint for each circle found.
Complaints check_circles(const SourceTree& tree);

}  // namespace bvconn::test
