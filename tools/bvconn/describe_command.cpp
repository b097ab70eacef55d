#include "describe_command.h"

#include <string_view>

#include "arguments.h"
#include "description.h"
#include "list_command.h"
#include "status.h"

namespace bvconn::tool {

namespace {

std::string words_about(const Target& target, bool json) {
  const Description description = describe(target);
  return json ? description_json(description) + "\n" : description_text(description);
}

int describe_all(bool json, std::ostream& out) {
  std::string_view between;
  for (const automation::ClassInfo* info : automation::classes()) {
    for (const automation::Member& member : info->members) {
      if (!member.callable()) continue;
      out << between << words_about({.info = info, .member = &member}, json);
      if (!json) between = "\n";
    }
  }
  out.flush();
  return out ? kDone : kFailed;
}

}  // namespace

int run_describe(const DescribeOptions& options, std::ostream& out, std::ostream& err) {
  if (options.all) return describe_all(options.json, out);
  if (options.path.find('.') == std::string::npos) {
    return run_list({.class_name = options.path, .json = options.json}, out, err);
  }
  try {
    out << words_about(find_target(options.path), options.json);
    out.flush();
    return out ? kDone : kFailed;
  } catch (const UsageError& error) {
    err << "bvconn: " << options.path << ": " << error.what() << '\n';
    return kNotUnderstood;
  }
}

}  // namespace bvconn::tool
