#include <algorithm>
#include <string>
#include <vector>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/tree_builder.h"

// What can be settled when all nodes are where they stay: which one an `href` leads to.
namespace bvconn::detail {

namespace {

[[noreturn]] void bad_reference(const std::string& description) {
  throw Error(error_numbers::kSoapLimit, "SoapEnvelope", description);
}

}  // namespace

bool TreeBuilder::is_marked_no_root(const NodeData* node) const {
  return std::find(no_roots_.begin(), no_roots_.end(), node) != no_roots_.end();
}

NodeData* TreeBuilder::target_of(std::string_view id) const {
  const auto by_id = [](const Identified& a, const Identified& b) { return a.id < b.id; };
  const auto [first, last] =
      std::equal_range(identified_.begin(), identified_.end(), Identified{id, nullptr}, by_id);
  if (first == last)
    bad_reference("No element has the id " + shown(id) + " that an href refers to");
  if (last - first > 1) {
    bad_reference("More than one element has the id " + shown(id) + " that an href refers to");
  }
  return first->node;
}

void TreeBuilder::resolve_references() {
  if (references_.empty()) return;
  std::sort(identified_.begin(), identified_.end(),
            [](const Identified& a, const Identified& b) { return a.id < b.id; });
  for (const auto& [id, node] : references_) {
    node->link = target_of(id);
    node->content = Content::kLink;
    node->set(kReference);
  }
  check_cycles();
}

/// Walks all that can be reached from the root once, depth first, without recursion.
void TreeBuilder::check_cycles() const {
  enum Mark : std::uint8_t { kUnseen, kOnPath, kDone };
  struct Step {
    NodeData* node;
    std::uint32_t next;
  };
  std::vector<Step> path{{root_, 0}};
  root_->mark = kOnPath;
  while (!path.empty()) {
    auto& [node, next] = path.back();
    const bool is_link = node->content == Content::kLink;
    const std::uint32_t count = is_link ? 1 : node->content == Content::kChildren ? node->count : 0;
    if (next == count) {
      node->mark = kDone;
      path.pop_back();
      continue;
    }
    NodeData* target = is_link ? node->link : node->children + next;
    ++next;
    if (target->mark == kOnPath) {
      bad_reference("Through its references the element " + shown(name_of(*target)) +
                    " contains itself");
    }
    if (target->mark == kDone) continue;
    target->mark = kOnPath;
    path.push_back({target, 0});
  }
}

}  // namespace bvconn::detail
