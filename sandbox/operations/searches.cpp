#include "sandbox/operations/searches.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

std::string lower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

std::string trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string without_zeros(const std::string& text) {
  return text.substr(std::min(text.find_first_not_of('0'), text.size()));
}

std::string simple_text(const Variant& value) {
  return value.missing() || value.is(Variant::Type::kNode) ? std::string() : to_text(value);
}

bool flag_at(const SoapCall& call, std::size_t place) {
  if (place >= call.parameters.Count()) return false;
  const Variant value = call.parameters.Item(place).Value();
  return value.is(Variant::Type::kString) ? lower(value.string()) == "true" : to_boolean(value);
}

/// The data access layer has a list as one text, joined like this.
void append_texts(std::vector<std::string>& texts, std::string_view joined) {
  while (!joined.empty()) {
    const auto end = joined.find(';');
    texts.push_back(trimmed(joined.substr(0, end)));
    joined.remove_prefix(end == std::string_view::npos ? joined.size() : end + 1);
  }
}

/// The texts of an argument, trimmed; none for one that is missing, nil or empty.
std::vector<std::string> texts_at(const SoapCall& call, std::size_t place) {
  std::vector<std::string> texts;
  if (place >= call.parameters.Count()) return texts;
  const SoapNode node = call.parameters.Item(place);
  if (node.nil()) return texts;
  const Variant value = node.Value();
  if (value.is(Variant::Type::kArray)) {
    for (const Variant& each : value.array().items()) texts.push_back(trimmed(simple_text(each)));
  } else if (node.Nodes().Count() != 0) {
    for (const SoapNode& each : node.Nodes()) texts.push_back(trimmed(simple_text(each.Value())));
  } else {
    append_texts(texts, simple_text(value));
  }
  return texts;
}

/// A criterion with its argument.
class BoundCriterion {
 public:
  BoundCriterion(const SoapCall& call, const Criterion& criterion) : criterion_(criterion) {
    if (is_flag()) {
      open_ = !flag_at(call, criterion.place);
      return;
    }
    wanted_ = texts_at(call, criterion.place);
    if (is_number()) {
      for (std::string& each : wanted_) each = without_zeros(each);
    }
    std::erase(wanted_, "");
    open_ = wanted_.empty();
    if (!open_ && is_day()) {
      day_ = conversions::date_of(wanted_.front());
      if (!day_) refuse("'" + wanted_.front() + "' is no date");
    }
  }

  bool open() const { return open_; }
  const Criterion& criterion() const { return criterion_; }
  bool fits(const SoapNode& row) const;

 private:
  bool is_flag() const {
    return criterion_.match == Match::kAny || criterion_.match == Match::kOnly ||
           criterion_.match == Match::kNot;
  }
  bool is_number() const {
    return criterion_.match == Match::kNumber || criterion_.match == Match::kOwnNumber;
  }
  bool is_day() const {
    return criterion_.match == Match::kFrom || criterion_.match == Match::kTo ||
           criterion_.match == Match::kOn;
  }
  bool fits_text(const std::string& text) const;
  bool fits_day(const std::string& text) const;

  const Criterion& criterion_;
  std::vector<std::string> wanted_;
  std::optional<Date> day_;
  bool open_ = true;
};

bool BoundCriterion::fits(const SoapNode& row) const {
  if (criterion_.match == Match::kNot) {
    return child_text(row, criterion_.field) != criterion_.value;
  }
  if (criterion_.match == Match::kOwnNumber && !child(row, criterion_.field)) return true;
  for (const SoapNode& each : row.Nodes()) {
    if (each.Name() == criterion_.field && fits_text(simple_text(each.Value()))) return true;
  }
  return false;
}

bool BoundCriterion::fits_text(const std::string& text) const {
  if (is_flag()) return text == criterion_.value;
  if (day_) return fits_day(text);
  for (const std::string& each : wanted_) {
    const std::string wanted = lower(each);
    if (criterion_.match == Match::kContains) {
      if (lower(text).find(wanted) != std::string::npos) return true;
    } else if (is_number()) {
      if (without_zeros(lower(text)) == wanted) return true;
    } else if (lower(text) == wanted) {
      return true;
    }
  }
  return false;
}

bool BoundCriterion::fits_day(const std::string& text) const {
  constexpr std::int64_t kDay = 86'400'000;
  const auto date = conversions::date_of(text);
  if (!date) return false;
  const bool is_early = date->milliseconds < day_->milliseconds;
  if (criterion_.match == Match::kFrom) return !is_early;
  if (criterion_.match == Match::kOn && is_early) return false;
  return date->milliseconds < day_->milliseconds + kDay;
}

bool fits_all(const SoapNode& row, const std::vector<BoundCriterion>& bound) {
  std::map<std::string, bool> groups;
  for (const BoundCriterion& each : bound) {
    const bool fits = each.fits(row);
    if (each.criterion().match == Match::kAny) {
      bool& group = groups[each.criterion().field];
      group = group || fits;
    } else if (!fits) {
      return false;
    }
  }
  return std::all_of(groups.begin(), groups.end(), [](const auto& group) { return group.second; });
}

}  // namespace

Rows matching(const SoapCall& call, const Rows& rows, const std::vector<Criterion>& criteria) {
  std::vector<BoundCriterion> bound;
  for (const Criterion& each : criteria) {
    BoundCriterion criterion(call, each);
    if (!criterion.open()) bound.push_back(std::move(criterion));
  }
  Rows found;
  for (const SoapNode& row : rows) {
    if (fits_all(row, bound)) found.push_back(row);
  }
  return found;
}

void answer_rows(SoapCall& call, const Rows& rows) {
  SoapNodes answer = begin_answer(call);
  for (const SoapNode& row : rows) answer.Append(row);
}

void add_searches(Operations& operations) {
  add_list_searches(operations);
  add_document_searches(operations);
  add_order_views(operations);
  add_price_searches(operations);
  add_templates(operations);
}

}  // namespace bvconn::sandbox
