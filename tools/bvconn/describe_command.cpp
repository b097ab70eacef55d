#include "describe_command.h"

#include "arguments.h"
#include "description.h"
#include "list_command.h"
#include "status.h"

namespace bvconn::tool {

int run_describe(const DescribeOptions& options, std::ostream& out, std::ostream& err) {
  if (options.path.find('.') == std::string::npos) {
    return run_list({.class_name = options.path, .json = options.json}, out, err);
  }
  try {
    const Description description = describe(find_target(options.path));
    if (options.json) {
      out << description_json(description) << '\n';
    } else {
      out << description_text(description);
    }
    out.flush();
    return out ? kDone : kFailed;
  } catch (const UsageError& error) {
    err << "bvconn: " << options.path << ": " << error.what() << '\n';
    return kNotUnderstood;
  }
}

}  // namespace bvconn::tool
