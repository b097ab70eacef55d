#include "sandbox/command_line.h"

#include <charconv>
#include <cstdio>
#include <vector>

#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/commands/command.h"

namespace bvconn::sandbox {
namespace {

/// "; did you mean --port?" for words that no option takes.
std::string nearest_option(const CLI::App& app, const std::vector<std::string>& words) {
  std::vector<std::string> names;
  for (const CLI::Option* each : app.get_options()) names.push_back(each->get_name());
  for (const std::string& each : words) {
    const std::string nearest = did_you_mean(each.substr(0, each.find('=')), names);
    if (!nearest.empty()) return nearest;
  }
  return {};
}

}  // namespace

int complain(const std::string& text, int status) {
  std::fputs(("bvsandbox: " + text + "\n").c_str(), stderr);
  return status;
}

int tell(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) return app.exit(error);
  const std::vector<std::string> words = app.remaining(/*recurse=*/true);
  const bool is_extra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
  if (!is_extra || words.empty()) return complain(error.what(), kUsageStatus);
  const std::string kind = words.front().starts_with('-') ? "option " : "argument ";
  return complain("there is no " + kind + words.front() + nearest_option(app, words), kUsageStatus);
}

CLI::Validator whole_number(std::int64_t low, std::int64_t high) {
  return {[low, high](const std::string& text) {
            std::int64_t value = 0;
            const char* const end = text.data() + text.size();
            const auto read = std::from_chars(text.data(), end, value);
            if (read.ec == std::errc() && read.ptr == end && value >= low && value <= high) {
              return std::string();
            }
            return "'" + text + "' is no whole number from " + std::to_string(low) + " to " +
                   std::to_string(high);
          },
          ""};
}

}  // namespace bvconn::sandbox
