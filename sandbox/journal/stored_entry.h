#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "sandbox/journal/journal.h"

/// Entries as a database keeps them: a text of JSON that holds any bytes and loses none.
namespace bvconn::sandbox {

/// All of an entry but its number.
std::string stored_text(const JournalEntry& entry);

/// The entry that became this text; as far as it can be read, where another program has changed it.
JournalEntry stored_entry(std::uint64_t id, std::string_view text);

}  // namespace bvconn::sandbox
