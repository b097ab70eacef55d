#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

class Variant;

/// An array of strings as callers pass it. Made by default it is *not allocated*; once filled, also
/// with nothing, it is.
class BVCONN_EXPORT StringArray {
 public:
  StringArray() = default;
  StringArray(std::vector<std::string> items) : allocated_(true), items_(std::move(items)) {}
  StringArray(std::initializer_list<std::string> items) : allocated_(true), items_(items) {}

  bool allocated() const { return allocated_; }
  std::size_t size() const { return items_.size(); }
  const std::vector<std::string>& items() const { return items_; }
  /// The last index, -1 for an empty array; fails with 9 where none was allocated.
  std::int64_t upper_bound() const;

  friend bool operator==(const StringArray&, const StringArray&) = default;

 private:
  bool allocated_ = false;
  std::vector<std::string> items_;
};

/// An array of variants; like a `StringArray`, made by default it is not allocated.
class BVCONN_EXPORT VariantArray {
 public:
  VariantArray();
  explicit VariantArray(std::vector<Variant> items);
  VariantArray(const VariantArray&);
  VariantArray(VariantArray&&) noexcept;
  VariantArray& operator=(const VariantArray&);
  VariantArray& operator=(VariantArray&&) noexcept;
  ~VariantArray();

  bool allocated() const { return allocated_; }
  std::size_t size() const;
  const std::vector<Variant>& items() const;

  BVCONN_EXPORT friend bool operator==(const VariantArray&, const VariantArray&);

 private:
  bool allocated_ = false;
  std::unique_ptr<std::vector<Variant>> items_;
};

/// A name in a namespace. As text it is its local part.
struct QualifiedName {
  std::string name_space;
  std::string local;

  friend bool operator==(const QualifiedName&, const QualifiedName&) = default;
};

using Bytes = std::vector<std::byte>;

/// A value that carries its own type. Two variants are equal when type and value are (nodes: when
/// they are the same node).
///
/// What a conversion cannot do fails with `Error` 13 (type mismatch) or 6 (overflow).
class BVCONN_EXPORT Variant {
 public:
  /// The marker of an argument that was left out (0x80020004).
  struct Missing {
    friend bool operator==(const Missing&, const Missing&) = default;
  };
  enum class Type {
    kEmpty,
    kMissing,
    kBoolean,
    kInt16,
    kInt32,
    kInt64,
    kDouble,
    kString,
    kDate,
    kBytes,
    kArray,
    kNode,
    kQualifiedName,
  };

  Variant() = default;
  Variant(Missing);
  // A template, so that no pointer or number slips in as a boolean.
  template <std::same_as<bool> B>
  Variant(B value) : value_(value) {}
  template <std::same_as<std::int16_t> I>
  Variant(I value) : value_(value) {}
  template <std::same_as<std::int32_t> I>
  Variant(I value) : value_(value) {}
  template <std::same_as<std::int64_t> I>
  Variant(I value) : value_(value) {}
  template <std::same_as<double> D>
  Variant(D value) : value_(value) {}
  Variant(const char* text) : value_(std::string(text)) {}
  Variant(std::string_view text) : value_(std::string(text)) {}
  Variant(std::string text) : value_(std::move(text)) {}
  Variant(Date date) : value_(date) {}
  Variant(Bytes bytes) : value_(std::move(bytes)) {}
  Variant(VariantArray array) : value_(std::move(array)) {}
  Variant(const StringArray& array);
  Variant(SoapNode node) : value_(std::move(node)) {}
  Variant(QualifiedName name) : value_(std::move(name)) {}

  Type type() const { return static_cast<Type>(value_.index()); }
  bool is(Type wanted) const { return type() == wanted; }
  bool empty() const { return is(Type::kEmpty); }
  bool missing() const { return is(Type::kMissing); }

  // Strict access: fails with 13 when the variant holds something else.
  bool boolean() const;
  std::int16_t int16() const;
  std::int32_t int32() const;
  std::int64_t int64() const;
  double number() const;
  const std::string& string() const;
  Date date() const;
  const Bytes& bytes() const;
  const VariantArray& array() const;
  const SoapNode& node() const;
  const QualifiedName& qualified_name() const;

  friend bool operator==(const Variant&, const Variant&) = default;

 private:
  std::variant<std::monostate, Missing, bool, std::int16_t, std::int32_t, std::int64_t, double,
               std::string, Date, Bytes, VariantArray, SoapNode, QualifiedName>
      value_;
};

/// "int16", "array", …: the type's name for people.
BVCONN_EXPORT std::string_view type_name(Variant::Type type);

// Conversions of a variant, with the platform's rules (conversions.h).

/// A value as text: `True`/`False`, numbers and dates as `conversions::double_text` and `date_text`
/// write them, empty as "", a qualified name as its local part. Missing, an array, bytes or a node
/// fail with 13.
BVCONN_EXPORT std::string to_text(const Variant& value);
/// A boolean as it is, a number unequal 0, text by `text_to_boolean`; Empty is false.
BVCONN_EXPORT bool to_boolean(const Variant& value);
/// A number, rounded half to even, true as -1, text that reads as a number; Empty is 0.
BVCONN_EXPORT std::int16_t to_int16(const Variant& value);
BVCONN_EXPORT std::int32_t to_int32(const Variant& value);
BVCONN_EXPORT double to_double(const Variant& value);
/// A date, or text that reads as one: of the form of `xsd:dateTime` (a moment with a zone becomes
/// local time, as where a reply states that type), or by `text_to_date` ("1/31/2007", "January 31,
/// 2007 10:00"). All else fails with 13, "" too.
BVCONN_EXPORT Date to_date(const Variant& value);
/// A node held as value; anything else fails with 13.
BVCONN_EXPORT SoapNode to_node(const Variant& value);

}  // namespace bvconn
