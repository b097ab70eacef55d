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

/// Numbered ids are in this order as servers write them, so that they need not be sorted.
bool is_before(std::string_view a, std::string_view b) {
  return a.size() != b.size() ? a.size() < b.size() : a < b;
}

}  // namespace

void TreeBuilder::sort_identified() {
  const auto before = [](const Identified& a, const Identified& b) {
    return is_before(a.id, b.id);
  };
  if (std::is_sorted(identified_.begin(), identified_.end(), before)) return;
  std::sort(identified_.begin(), identified_.end(), before);
}

/// `next` is where the id behind the one that was found last is: where it mostly is, too.
NodeData* TreeBuilder::target_of(std::string_view id, std::size_t& next) const {
  const std::size_t count = identified_.size();
  const auto is_at = [&](std::size_t i) { return i < count && identified_[i].id == id; };
  std::size_t found = next;
  if (!is_at(found)) {
    const auto* place = std::lower_bound(
        identified_.begin(), identified_.end(), id,
        [](const Identified& a, std::string_view wanted) { return is_before(a.id, wanted); });
    found = static_cast<std::size_t>(place - identified_.begin());
  }
  if (!is_at(found)) {
    bad_reference("No element has the id " + shown(id) + " that an href refers to");
  }
  if (is_at(found + 1) || (found > 0 && is_at(found - 1))) {
    bad_reference("More than one element has the id " + shown(id) + " that an href refers to");
  }
  next = found + 1;
  return identified_[found].node;
}

void TreeBuilder::resolve_references() {
  if (references_.empty()) return;
  sort_identified();
  std::size_t next = 0;
  for (const auto& [id, node] : references_) {
    node->link = target_of(id, next);
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
