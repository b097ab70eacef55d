#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/wire/wire_file.h"

namespace bvconn::wire {

/// A key that goes with a call: where a step holds what it says.
struct WireField {
  std::string_view key;
  std::optional<std::string> WireStep::*text = nullptr;
  std::vector<std::string> WireStep::*lines = nullptr;
  /// Its text may be any bytes.
  bool takes_stand_ins = false;
};

/// All of them, in the order in which they are written.
inline constexpr std::array kWireFields{
    WireField{.key = "send", .text = &WireStep::url},
    WireField{.key = "action", .text = &WireStep::soap_action},
    WireField{.key = "timeout", .text = &WireStep::timeout},
    WireField{.key = "dal", .lines = &WireStep::dal},
    WireField{.key = "userID", .text = &WireStep::user_id},
    WireField{.key = "request", .text = &WireStep::request, .takes_stand_ins = true},
    WireField{.key = "text", .text = &WireStep::text, .takes_stand_ins = true},
    WireField{.key = "transport", .lines = &WireStep::transport},
    WireField{.key = "status", .text = &WireStep::status},
    WireField{.key = "header", .lines = &WireStep::headers},
    WireField{.key = "reply", .text = &WireStep::reply, .takes_stand_ins = true},
    WireField{.key = "fault", .text = &WireStep::fault},
    WireField{.key = "raw", .text = &WireStep::raw, .takes_stand_ins = true},
    WireField{.key = "broken", .text = &WireStep::broken},
    WireField{.key = "answer", .text = &WireStep::answer},
    WireField{.key = "log", .lines = &WireStep::log},
    WireField{.key = "logfile", .lines = &WireStep::log_file},
    WireField{.key = "after", .lines = &WireStep::after},
};

}  // namespace bvconn::wire
