#pragma once

#include <chrono>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "sandbox/journal/journal.h"

namespace bvconn::sandbox {

using Moment = std::chrono::system_clock::time_point;

/// "2026-11-22T02:57:45.123456Z".
std::string moment_text(Moment moment);
/// Reads that form, with or without a fraction of a second; nothing for another text.
std::optional<Moment> moment_of(std::string_view text);

/// Found and expected side by side.
nlohmann::ordered_json difference_json(const Difference& difference);

/// A masked entry as GET /admin/journal shows it.
nlohmann::ordered_json entry_json(const JournalEntry& masked);

/// As text; bytes that are no UTF-8 are replaced.
std::string json_text(const nlohmann::ordered_json& json);

}  // namespace bvconn::sandbox
