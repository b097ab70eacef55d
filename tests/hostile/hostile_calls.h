#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/soap/soap_node.h"

namespace bvconn::test {

/// What a call gave: a node, or a text.
struct Given {
  SoapNode node;
  std::optional<std::string> text;
};

using HostileCall = std::function<Given(std::string_view url)>;

/// The operation of this name with arguments that do not matter; empty for a name that is not
/// known. Each stands for a road on which a reply comes, or for a way in which an error ends.
HostileCall call_of(std::string_view name);

}  // namespace bvconn::test
