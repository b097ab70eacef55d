#pragma once

#include <memory>
#include <string>

#include "bvconn/platform/platform.h"

namespace bvconn::tool {

/// The text of the last reply, as the server or a service object gave it.
struct TappedReply {
  std::string text;
  bool came = false;
};

/// The platform with a look at every reply that the library receives: the record of exchanges keeps
/// but the beginning of a long one.
platform::Platform tapped(platform::Platform inner, std::shared_ptr<TappedReply> reply);

}  // namespace bvconn::tool
