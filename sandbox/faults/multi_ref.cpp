#include "sandbox/faults/multi_ref.h"

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kBodyStart = "<SOAP-ENV:Body>";
constexpr std::string_view kBodyEnd = "</SOAP-ENV:Body>";

/// A tag of a text that is well-formed and has neither comments nor CDATA.
struct TagText {
  std::size_t begin = 0;
  std::size_t end = 0;  ///< behind its ">"
  std::string_view name;
  std::string_view attributes;  ///< with the blank before each
  enum class Kind { kStart, kEnd, kEmpty } kind = Kind::kStart;
};

std::optional<TagText> next_tag(std::string_view xml, std::size_t from) {
  const auto begin = xml.find('<', from);
  if (begin == std::string_view::npos) return std::nullopt;
  auto end = begin;
  for (char quote = '\0'; end < xml.size() && (quote != '\0' || xml[end] != '>'); ++end) {
    if (quote == xml[end]) {
      quote = '\0';
    } else if (quote == '\0' && (xml[end] == '"' || xml[end] == '\'')) {
      quote = xml[end];
    }
  }
  if (end == xml.size()) return std::nullopt;
  std::string_view inner = xml.substr(begin + 1, end - begin - 1);
  TagText tag{.begin = begin, .end = end + 1, .name = {}, .attributes = {}};
  if (inner.starts_with('/')) {
    tag.kind = TagText::Kind::kEnd;
    inner.remove_prefix(1);
  } else if (inner.ends_with('/')) {
    tag.kind = TagText::Kind::kEmpty;
    inner.remove_suffix(1);
  }
  tag.name = inner.substr(0, inner.find_first_of(" \t\r\n"));
  tag.attributes = inner.substr(tag.name.size());
  return tag;
}

/// An attribute with its blank: ` xsi:type="xsd:string"`.
std::vector<std::string_view> split(std::string_view attributes) {
  std::vector<std::string_view> all;
  while (!attributes.empty()) {
    const auto equals = attributes.find('=');
    if (equals == std::string_view::npos || equals + 1 >= attributes.size()) break;
    const auto end = attributes.find(attributes[equals + 1], equals + 2);
    if (end == std::string_view::npos) break;
    all.push_back(attributes.substr(0, end + 1));
    attributes.remove_prefix(end + 1);
  }
  return all;
}

std::string_view name_of(std::string_view attribute) {
  const std::string_view name = attribute.substr(0, attribute.find('='));
  return name.substr(name.find_first_not_of(" \t\r\n"));
}

bool declares(std::string_view attribute) {
  const std::string_view name = name_of(attribute);
  return name == "xmlns" || name.starts_with("xmlns:");
}

/// Rewrites the elements of a Body. An element that is left is remembered by what stands in for it.
class MultiRefs {
 public:
  explicit MultiRefs(std::string_view body) : body_(body) {}

  /// Nothing where the text is not what it was taken for.
  std::optional<std::string> rewritten() {
    auto tag = next_tag(body_, 0);
    if (!tag || tag->kind != TagText::Kind::kStart) return std::nullopt;
    std::vector<std::string_view> declared;
    std::string result(body_.substr(0, tag->end));
    at_ = tag->end;
    auto content = content_of(*tag, declared);
    if (!content) return std::nullopt;
    result.append(content->text).append("</").append(tag->name).append(">");
    for (const std::string& each : targets_) result.append(each);
    return result.append(body_.substr(at_));
  }

 private:
  struct Content {
    std::string text;
    bool has_elements = false;
  };

  /// What stands between a start tag, which has been passed, and its end tag, which will have been.
  std::optional<Content> content_of(const TagText& parent,
                                    std::vector<std::string_view>& declared) {
    const auto outer = declared.size();
    for (const std::string_view each : split(parent.attributes)) {
      if (declares(each)) declared.push_back(each);
    }
    Content content;
    while (const auto tag = next_tag(body_, at_)) {
      content.text.append(body_.substr(at_, tag->begin - at_));
      at_ = tag->end;
      if (tag->kind == TagText::Kind::kEnd) {
        declared.resize(outer);
        return content;
      }
      content.has_elements = true;
      auto element = element_of(*tag, declared);
      if (!element) return std::nullopt;
      content.text.append(*element);
    }
    return std::nullopt;
  }

  std::optional<std::string> element_of(const TagText& tag,
                                        std::vector<std::string_view>& declared) {
    const std::string as_it_is(body_.substr(tag.begin, tag.end - tag.begin));
    if (tag.kind == TagText::Kind::kEmpty) return as_it_is;
    auto content = content_of(tag, declared);
    if (!content) return std::nullopt;
    if (!content->has_elements || is_bound(tag)) {
      return as_it_is + content->text + "</" + std::string(tag.name) + ">";
    }
    return reference(tag, std::move(content->text), declared);
  }

  /// Whether a document of somebody's own has such attributes already.
  static bool is_bound(const TagText& tag) {
    for (const std::string_view each : split(tag.attributes)) {
      if (name_of(each) == "id" || name_of(each) == "href") return true;
    }
    return false;
  }

  std::string reference(const TagText& tag, std::string content,
                        const std::vector<std::string_view>& declared) {
    const std::string id = "ref-" + std::to_string(targets_.size());
    std::string reference = "<" + std::string(tag.name);
    std::string target = "<multiRef id=\"" + id + "\" SOAP-ENC:root=\"0\"";
    std::vector<std::string_view> own = split(tag.attributes);
    for (const std::string_view each : own) {
      if (declares(each)) reference.append(each);
      target.append(each);
    }
    append_inherited(target, own, declared);
    target.append(">").append(content).append("</multiRef>");
    targets_.push_back(std::move(target));
    return reference + " href=\"#" + id + "\"/>";
  }

  /// The element leaves the ones that declared its prefixes; of two with one name the inner counts.
  static void append_inherited(std::string& target, std::vector<std::string_view>& own,
                               const std::vector<std::string_view>& declared) {
    for (auto each = declared.rbegin(); each != declared.rend(); ++each) {
      bool is_there = false;
      for (const std::string_view known : own) is_there |= name_of(known) == name_of(*each);
      if (is_there) continue;
      target.append(*each);
      own.push_back(*each);
    }
  }

  std::string_view body_;
  std::size_t at_ = 0;
  std::vector<std::string> targets_;
};

}  // namespace

std::string in_multi_ref_form(std::string_view envelope) {
  const auto start = envelope.find(kBodyStart);
  const auto end = envelope.rfind(kBodyEnd);
  if (start == std::string_view::npos || end == std::string_view::npos || end < start) {
    return std::string(envelope);
  }
  const auto begin = start + kBodyStart.size();
  const auto body = MultiRefs(envelope.substr(begin, end - begin)).rewritten();
  if (!body) return std::string(envelope);
  return std::string(envelope.substr(0, begin)) + *body + std::string(envelope.substr(end));
}

std::size_t place_for_more_text(std::string_view body) {
  const auto start = body.find(kBodyStart);
  if (start == std::string_view::npos) return 0;
  const auto place = body.find("</", start);
  return place == std::string_view::npos ? 0 : place;
}

}  // namespace bvconn::sandbox
