#include "support_bundle_command.h"

#include "file_tail.h"
#include "status.h"
#include "support_bundle.h"

namespace bvconn::tool {

int run_support_bundle(const Connection& connection, const std::string& file,
                       const std::string& version, std::ostream& err) {
  const std::string trouble = write_private_file(file, support_bundle(connection, version));
  if (!trouble.empty()) {
    err << "bvconn: support-bundle: cannot write " << (file == "-" ? "standard output" : file)
        << ": " << trouble << '\n';
    return kFailed;
  }
  if (file != "-") {
    err << "bvconn: " << file
        << " is written. Known secrets are hidden in it; names, addresses and "
        << "prices of the business are not: read it before you send it.\n";
  }
  return kDone;
}

}  // namespace bvconn::tool
