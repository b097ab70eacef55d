#pragma once

#include <ostream>

#include "arguments.h"
#include "target.h"

namespace bvconn::tool {

struct RequestForm {
  bool json = false;
  bool shows_secrets = false;
};

/// `bvconn call … --print-request`: what the call would send on each route. Nothing is sent, logged
/// or stored. Gives the exit status: an operation that fails before it sends anything has failed.
int print_request(const Target& target, const CallArguments& arguments, const RequestForm& form,
                  std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
