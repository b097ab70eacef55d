#include "answer_paths.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "json_text.h"

namespace bvconn::tool {
namespace {

constexpr const char* kAbsent = "(absent)";

std::string value_text(const SoapNode& node) {
  if (node.nil()) return "nil";
  const Variant value = node.Value();
  if (value.empty() || value.is(Variant::Type::kNode)) return "";
  return json_value(value);
}

const AnswerLine* find(const std::vector<AnswerLine>& lines,
                       const std::map<std::string, std::size_t>& places, const std::string& path) {
  const auto found = places.find(path);
  return found != places.end() ? &lines[found->second] : nullptr;
}

std::map<std::string, std::size_t> places_of(const std::vector<AnswerLine>& lines) {
  std::map<std::string, std::size_t> places;
  for (std::size_t i = 0; i < lines.size(); ++i) places.emplace(lines[i].path, i);
  return places;
}

}  // namespace

std::vector<AnswerLine> answer_lines(const automation::Value& answer) {
  const auto* variant = std::get_if<Variant>(&answer);
  if (variant == nullptr || !variant->is(Variant::Type::kNode) || !variant->node()) {
    return {{.path = "", .value = json_value(answer)}};
  }
  std::vector<AnswerLine> lines;
  std::vector<std::pair<std::string, SoapNode>> open{{variant->node().Name(), variant->node()}};
  while (!open.empty()) {
    const auto [path, node] = std::move(open.back());
    open.pop_back();
    lines.push_back({.path = path, .value = value_text(node)});
    std::map<std::string, int> seen;
    std::vector<std::pair<std::string, SoapNode>> children;
    for (const SoapNode& child : node.Nodes()) {
      std::string name = path + "/" + child.Name();
      const int place = ++seen[name];
      if (place > 1) name.append("[").append(std::to_string(place)).append("]");
      children.emplace_back(std::move(name), child);
    }
    std::move(children.rbegin(), children.rend(), std::back_inserter(open));
  }
  return lines;
}

std::vector<AnswerDifference> differences(const std::vector<AnswerLine>& first,
                                          const std::vector<AnswerLine>& second) {
  std::vector<AnswerDifference> found;
  const auto first_places = places_of(first);
  const auto second_places = places_of(second);
  for (const AnswerLine& line : first) {
    const AnswerLine* other = find(second, second_places, line.path);
    if (other == nullptr || other->value != line.value) {
      found.push_back({line.path, line.value, other == nullptr ? kAbsent : other->value});
    }
  }
  for (const AnswerLine& line : second) {
    if (find(first, first_places, line.path) == nullptr) {
      found.push_back({line.path, kAbsent, line.value});
    }
  }
  if (!found.empty()) return found;
  const auto moved =
      std::mismatch(first.begin(), first.end(), second.begin(), second.end(),
                    [](const AnswerLine& a, const AnswerLine& b) { return a.path == b.path; });
  if (moved.first != first.end()) {
    found.push_back({"(order)", moved.first->path, moved.second->path});
  }
  return found;
}

}  // namespace bvconn::tool
