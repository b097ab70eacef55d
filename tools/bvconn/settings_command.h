#pragma once

#include <ostream>
#include <string>

namespace bvconn::tool {

struct SettingsOptions {
  enum class Action { kList, kGet, kSet };
  Action action = Action::kList;
  std::string name;
  std::string value;
  bool json = false;
};

/// `bvconn settings`: the library's settings, where they come from, and how they are changed. Gives
/// the exit status.
int run_settings(const SettingsOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
