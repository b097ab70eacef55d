#include "bvconn/platform/soap/raw_text.h"

#include "bvconn/platform/soap/node_data.h"

namespace bvconn {

std::string raw_text(const SoapNode& node) {
  const detail::NodeData& holder = detail::content_of(*SoapAccess::data(node));
  if (holder.content != detail::Content::kText) return {};
  return std::string(detail::text_of(holder));
}

}  // namespace bvconn
