#pragma once

#include "sandbox/journal/journal.h"

namespace bvconn::sandbox {

/// The entry as it may be shown: what the library hides in its own records of exchanges is hidden
/// here too, by the same rules. A value that nobody can tell apart from a secret becomes "***".
JournalEntry masked(JournalEntry entry);

}  // namespace bvconn::sandbox
