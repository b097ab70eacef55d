#pragma once

#include <string>
#include <string_view>

/// The store's statements in the words of PostgreSQL. They are written in the words of SQLite, with
/// nothing that the other has not got but what these two put right.
namespace bvconn::sandbox {

/// Parameters as PostgreSQL has them: `$1` for the first `?`, `$3` for `?3`. Texts and names in
/// quotes stay as they are. `types` has a letter for each parameter: a text, 't', compares by bytes
/// and changes the case of ASCII letters alone, as it does in SQLite.
std::string with_numbered_parameters(std::string_view sql, std::string_view types);

/// Statements that make tables: TEXT compares and sorts by bytes as SQLite does, INTEGER has 64
/// bits, and the words for SQLite's own kinds of tables are left out.
std::string tables_for_postgresql(std::string_view sql);

}  // namespace bvconn::sandbox
