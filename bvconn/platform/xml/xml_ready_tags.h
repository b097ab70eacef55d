#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "bvconn/platform/xml/xml_scan.h"
#include "bvconn/platform/xml/xml_tag.h"

namespace bvconn::detail::xml {

/// A start tag that was read, and what it was found to say.
struct ReadyTag {
  const char* begin;  ///< its '<', where it was read
  std::uint32_t size;
  std::uint32_t name_size;
  std::uint32_t scope_before;  ///< what prefixes meant before it and mean inside: `Scope::state`
  std::uint32_t scope_inside;
  bool is_empty;  ///< `<a/>`
  bool declares;  ///< there are namespace declarations among the attributes
  Name name;
  // Kept by `ReadyTags`.
  std::uint32_t number = 0;
  std::uint32_t first_attribute = 0;
  std::uint32_t attribute_count = 0;
  ReadyTag* next = nullptr;  ///< the tag that came after it the last time

  /// The name as it is written.
  std::string_view written() const { return {begin + 1, name_size}; }
};

/// The start tags that a document has held so far.
///
/// A document of rows holds the same few start tags thousands of times. One that is byte for byte
/// the same as an earlier one, where all prefixes mean what they meant there, says the same: it was
/// found well-formed, its prefixes declared, its attributes different. So it need not be read
/// again.
///
/// Reading is right without this: `Reader` can read any start tag by itself, and only looks here
/// first.
///
/// How much is remembered has a bound, and so has the effort of looking, whatever the document
/// holds: a tag is compared with five others at most, and over no more bytes than it has itself. In
/// a document whose tags are all different, looking is given up for most of them.
class ReadyTags {
 public:
  /// So many start tags are not remembered at first: a short document repeats few of them.
  explicit ReadyTags(std::size_t unremembered) : resting_(unremembered) {}
  ReadyTags(const ReadyTags&) = delete;
  ReadyTags& operator=(const ReadyTags&) = delete;

  /// The tag that stands at `at`; null when it is not known.
  const ReadyTag* find(const char* at, const char* end, std::uint32_t scope) {
    if (last_ == nullptr) return nullptr;
    ReadyTag* const expected = last_->next;
    if (expected != nullptr && stands_at(*expected, at, end, scope)) {
      ++patience_;
      return last_ = expected;
    }
    return resting_ == 0 ? look_up(at, end, scope) : nullptr;
  }

  /// Notes a tag that `find` has just not found, and gives it a number, which may have been that of
  /// another one that is forgotten; `kNoNumber` when it is not to be remembered.
  std::uint32_t remember(const ReadyTag& tag, std::span<const Attribute> attributes) {
    if (resting_ == 0) return add(tag, attributes);
    --resting_;
    return Tag::kNoNumber;
  }

  const ReadyTag& operator[](std::uint32_t number) const { return tags_[number]; }
  std::span<const Attribute> attributes(const ReadyTag& tag) const {
    return std::span(attributes_).subspan(tag.first_attribute, tag.attribute_count);
  }

  /// Where a tag is looked for first, by its bytes.
  static std::size_t place_of(const char* tag, std::size_t size);

 private:
  static constexpr std::size_t kMostTags = 256;
  static constexpr std::size_t kMostAttributes = 1024;
  static constexpr std::size_t kLongestTag = 512;
  static constexpr std::size_t kPlaces = 1024;
  static constexpr std::size_t kProbes = 4;
  /// Tags may be looked for in vain as often as some were found, and so often more; then so many
  /// tags are not looked for.
  static constexpr int kPatience = 300;
  static constexpr int kPatienceAfterRest = 60;
  static constexpr std::size_t kRest = 2000;

  static bool stands_at(const ReadyTag& tag, const char* at, const char* end, std::uint32_t scope) {
    return tag.scope_before == scope && static_cast<std::size_t>(end - at) >= tag.size &&
           same_bytes(at, tag.begin, tag.size);
  }

  const ReadyTag* look_up(const char* at, const char* end, std::uint32_t scope);
  std::uint32_t add(const ReadyTag& tag, std::span<const Attribute> attributes);
  void forget_all();
  void follow(ReadyTag& tag);

  std::size_t resting_;
  int patience_ = kPatience;
  ReadyTag* last_ = nullptr;
  std::vector<ReadyTag> tags_;  ///< never more than it has room for from the beginning
  std::vector<Attribute> attributes_;
  /// Where to find a tag by a hash over its bytes: one more than its number, 0 for none.
  std::array<std::uint16_t, kPlaces> places_;
};

}  // namespace bvconn::detail::xml
