#pragma once

#include "tree/include_rules.h"
#include "tree/source_tree.h"

/// The rules about the text of files. Complaints are as those of include_rules.h.
namespace bvconn::test {

/// No blanks at the end of a line, no tabs, lines that end in LF alone, one LF at the end.
Complaints check_blanks(const SourceFile& file);

/// Code is at most 100 columns wide; columns are characters, not bytes. Tables that are laid out by
/// hand, between `clang-format off` and `on`, may be wider, and so may lines that begin a raw
/// string.
Complaints check_width(const SourceFile& file);

/// A file of the library, its tools or the sandbox is read in one sitting: at most 350 lines. Rows
/// of data, in `.inc` files and in what the sandbox's store begins with, may be more.
Complaints check_length(const SourceFile& file);

/// Every header has its guard, in the form of a pragma.
Complaints check_guard(const SourceFile& file);

/// A note about work left names who does it.
Complaints check_owners(const SourceFile& file);

/// A text explains itself: it refers to no document or ticket that its reader does not have, and
/// to no path of its writer's machine.
Complaints check_references(const SourceFile& file);

/// Tests are not switched off, and none passes whatever happens.
Complaints check_tests(const SourceFile& file);

}  // namespace bvconn::test
