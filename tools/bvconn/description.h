#pragma once

#include <string>

#include "bvconn/observation/conduct.h"
#include "bvconn/observation/observe.h"
#include "target.h"

namespace bvconn::tool {

/// All that is known of an operation; it is seen by running it where nothing is sent.
struct Description {
  Target target;
  automation::ObservedOperation observed;
  automation::ObservedConduct conduct;
};

Description describe(const Target& target);

/// For people, in lines of up to 100 columns.
std::string description_text(const Description& description);
/// For programs, on one line.
std::string description_json(const Description& description);

}  // namespace bvconn::tool
