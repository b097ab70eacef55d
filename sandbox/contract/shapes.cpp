#include "sandbox/contract/shapes.h"

#include <algorithm>
#include <string>
#include <utility>

#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

using Parameter = RequestFacts::Parameter;

// A client may send any number of parameters; of so many each is compared.
constexpr std::size_t kMostCompared = 128;

bool holds(const std::vector<std::string>& texts, std::string_view wanted) {
  return std::find(texts.begin(), texts.end(), wanted) != texts.end();
}

std::string type_text(std::string_view type) {
  return type.empty() ? "no type" : "type " + in_quotes(type);
}

std::string namespace_text(std::string_view name_space) {
  return name_space.empty() ? "no namespace" : "the namespace " + in_quotes(name_space);
}

std::string types_text(const std::vector<std::string>& types) {
  return listed(types, " or ", type_text);
}

std::string name_text(const ParameterContract& expected) {
  return expected.name.empty() ? "a document" : in_quotes(expected.name);
}

bool names_fit(const Parameter& found, const ParameterContract& expected) {
  return expected.name.empty() || found.name == expected.name;
}

bool types_fit(const Parameter& found, const ParameterContract& expected) {
  return found.nil ? expected.may_be_nil : holds(expected.types, found.type);
}

bool fits(const Parameter& found, const ParameterContract& expected) {
  if (!names_fit(found, expected)) return false;
  if (expected.types.empty()) return true;
  return found.name_space == expected.name_space && types_fit(found, expected);
}

bool count_fits(const RequestFacts& request, const RequestShape& shape) {
  const std::size_t found = request.parameters.size();
  const std::size_t expected = shape.parameters.size();
  return shape.open_ended ? found >= expected : found == expected;
}

/// The place of the first parameter that does not fit; how many were compared where all do.
std::size_t first_misfit(const RequestFacts& request, const RequestShape& shape) {
  const std::size_t count = std::min(request.parameters.size(), shape.parameters.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (!fits(request.parameters[i], shape.parameters[i])) return i;
  }
  return count;
}

void compare(std::size_t place, const Parameter& found, const ParameterContract& expected,
             std::vector<Difference>& differences) {
  const std::string number = "parameter " + std::to_string(place + 1);
  if (!names_fit(found, expected)) {
    differences.push_back({number, "is named " + in_quotes(found.name), in_quotes(expected.name)});
  }
  if (expected.types.empty()) return;
  const std::string named = number + " (" + in_quotes(found.name) + ")";
  if (found.name_space != expected.name_space) {
    differences.push_back(
        {named, "is in " + namespace_text(found.name_space), namespace_text(expected.name_space)});
  }
  if (types_fit(found, expected)) return;
  differences.push_back(
      {named, found.nil ? "is nil" : "has " + type_text(found.type), types_text(expected.types)});
}

std::string names_text(const RequestShape& shape) {
  return shape.parameters.empty() ? "" : " (" + listed(shape.parameters, ", ", name_text) + ")";
}

Difference wrong_count(const RequestFacts& request, const RequestShape& shape) {
  return {"", "has " + counted(request.parameters.size(), "parameter"),
          (shape.open_ended ? "at least " : "") + std::to_string(shape.parameters.size()) +
              names_text(shape)};
}

/// Walks two lists of different lengths along the longest row of names that both have, so that one
/// parameter too many or too few does not make all behind it differ.
class Alignment {
 public:
  Alignment(const RequestFacts& request, const RequestShape& shape)
      : found_(request.parameters),
        expected_(shape.parameters),
        open_ended_(shape.open_ended),
        rows_(std::min(found_.size(), kMostCompared)),
        columns_(expected_.size()),
        common_((rows_ + 1) * (columns_ + 1)) {
    for (std::size_t i = rows_; i-- > 0;) {
      for (std::size_t j = columns_; j-- > 0;) {
        common(i, j) = names_fit(found_[i], expected_[j])
                           ? common(i + 1, j + 1) + 1
                           : std::max(common(i + 1, j), common(i, j + 1));
      }
    }
  }

  void tell(std::vector<Difference>& differences) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < rows_ || j < columns_) {
      if (i < rows_ && j < columns_ && names_fit(found_[i], expected_[j])) {
        compare(i, found_[i], expected_[j], differences);
        ++i, ++j;
      } else if (j == columns_ || (i < rows_ && common(i + 1, j) >= common(i, j + 1))) {
        tell_surplus(i++, differences);
      } else {
        differences.push_back({"", "has no " + name_text(expected_[j]),
                               "it as parameter " + std::to_string(j + 1), true});
        ++j;
      }
    }
  }

 private:
  std::size_t& common(std::size_t i, std::size_t j) { return common_[i * (columns_ + 1) + j]; }

  void tell_surplus(std::size_t i, std::vector<Difference>& differences) const {
    if (open_ended_ && i >= expected_.size()) return;
    differences.push_back({"parameter " + std::to_string(i + 1), "is " + in_quotes(found_[i].name),
                           "nothing of this name here", true});
  }

  const std::vector<Parameter>& found_;
  const std::vector<ParameterContract>& expected_;
  bool open_ended_;
  std::size_t rows_;
  std::size_t columns_;
  std::vector<std::size_t> common_;
};

}  // namespace

bool fits(const RequestFacts& request, const RequestShape& shape) {
  return count_fits(request, shape) && first_misfit(request, shape) == shape.parameters.size();
}

std::size_t fitted_parameters(const RequestFacts& request, const RequestShape& shape) {
  const std::size_t misfit = first_misfit(request, shape);
  // A wrong name among a wrong number means that something is missing or too much.
  return count_fits(request, shape) ? misfit + 1 : misfit;
}

std::vector<Difference> differences(const RequestFacts& request, const RequestShape& shape) {
  std::vector<Difference> all;
  if (!count_fits(request, shape)) {
    all.push_back(wrong_count(request, shape));
    Alignment(request, shape).tell(all);
    return all;
  }
  for (std::size_t i = 0; i < shape.parameters.size(); ++i) {
    compare(i, request.parameters[i], shape.parameters[i], all);
  }
  return all;
}

}  // namespace bvconn::sandbox
