#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string_view>

#include "bvconn/platform/xml/xml_stack.h"

namespace bvconn::detail::xml {

inline constexpr std::string_view kXmlUri = "http://www.w3.org/XML/1998/namespace";
inline constexpr std::string_view kXmlnsUri = "http://www.w3.org/2000/xmlns/";

/// Compares two namespaces that one `Scope` gave out. Takes no longer for long ones, which are the
/// same exactly when they are the same slice.
int compare_uris(std::string_view a, std::string_view b) noexcept;

/// The namespace prefixes in force at one place of a document.
///
/// Declarations are made and taken back in the order of a stack. A look-up costs the same however
/// many elements are open; with many prefixes in force it is logarithmic, so that a document made
/// of declarations cannot make it slow.
class Scope {
 public:
  Scope();
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;

  /// The namespace of a prefix; nothing for a prefix that is not declared. The prefix "" gives the
  /// default namespace, "" where there is none.
  std::optional<std::string_view> lookup(std::string_view prefix) const noexcept;
  std::string_view default_namespace() const noexcept { return slots_.front().uri; }

  void declare(std::string_view prefix, std::string_view uri);
  /// A number for what the prefixes mean: where it is the same, each of them means the same.
  std::uint32_t state() const noexcept { return state_; }
  /// Says that after the last declarations all means the same as in that state.
  void is_as_in(std::uint32_t state) noexcept { state_ = state; }

  /// The number of declarations made so far, to be given to `forget_after`.
  std::size_t mark() const noexcept { return declarations_.size(); }
  /// Takes back all declarations that were made since `mark` was taken.
  void forget_after(std::size_t mark) noexcept {
    if (declarations_.size() > mark) forget(mark);
  }

 private:
  /// One prefix in force. A slot is made by the outermost declaration of its prefix and goes with
  /// it; inner declarations only change its namespace meanwhile. So the slots form a stack as well.
  struct Slot {
    std::uint64_t word;  ///< of the prefix: most differ in it, and most are no longer than it
    std::string_view prefix;
    std::string_view uri;
  };
  struct Declaration {
    std::size_t slot;
    bool made_slot;
    std::uint32_t state_before;
    std::string_view hidden_uri;
  };
  static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);
  static constexpr std::size_t kSearchedInTurn = 16;

  std::size_t find(std::string_view prefix, std::uint64_t word) const noexcept;
  void forget(std::size_t mark) noexcept;

  Stack<Slot, 10> slots_;
  Stack<Declaration, 8> declarations_;
  std::uint32_t state_ = 0;
  std::uint32_t last_state_ = 0;
  /// Prefixes of the slots from `kSearchedInTurn` on.
  std::map<std::string_view, std::size_t> others_;
  /// The long namespaces of the document so far.
  std::set<std::string_view> long_uris_;
};

}  // namespace bvconn::detail::xml
