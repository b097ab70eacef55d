#include "batch_command.h"

#include <iostream>
#include <memory>
#include <string>

#include "batch.h"
#include "connection_scope.h"
#include "dal_login.h"
#include "status.h"
#include "system.h"

namespace bvconn::tool {

int run_batch(const BatchOptions& options, std::ostream& out, std::ostream& err) {
  if (is_standard_input_a_folder()) throw UsageError("standard input is a folder");
  const ConnectionScope scope(options.connection);
  if (!options.connection.dal.empty()) {
    if (const auto failure = log_in_to_dal(options.connection)) {
      err << "bvconn: " << login_failure_text(*failure) << '\n'
          << "bvconn: hint: " << login_advice(*failure) << '\n';
      return kFailed;
    }
  }
  Batch batch(std::make_unique<StreamLines>(out), options.connection);
  std::string line;
  while (out && std::getline(std::cin, line)) batch.run(line);
  if (!out || std::cin.bad()) return kFailed;
  const bool tells = options.fail && batch.status() == kDone && batch.some_failed();
  return tells ? kSomeFailed : batch.status();
}

}  // namespace bvconn::tool
