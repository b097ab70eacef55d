#pragma once

#include <cstddef>
#include <cstdint>

/// The plain part of the binary interface between the library and a component host: result codes,
/// identifiers, and the records that cross it. The layouts are those of 64-bit Windows, byte for
/// byte, and are asserted below.
namespace bvconn::component {

// Result codes. The sign tells success from failure.

using Hresult = std::int32_t;

constexpr Hresult result_from_bits(std::uint32_t bits) {
  return static_cast<Hresult>(bits);
}
constexpr bool succeeded(Hresult result) {
  return result >= 0;
}

inline constexpr Hresult kOk = 0;
inline constexpr Hresult kFalse = 1;
inline constexpr Hresult kNotImplemented = result_from_bits(0x80004001);
inline constexpr Hresult kNoInterface = result_from_bits(0x80004002);
inline constexpr Hresult kNullPointer = result_from_bits(0x80004003);
inline constexpr Hresult kFailed = result_from_bits(0x80004005);
inline constexpr Hresult kUnexpected = result_from_bits(0x8000FFFF);
inline constexpr Hresult kOutOfMemory = result_from_bits(0x8007000E);
inline constexpr Hresult kInvalidArgument = result_from_bits(0x80070057);
inline constexpr Hresult kNoAggregation = result_from_bits(0x80040110);
inline constexpr Hresult kClassNotAvailable = result_from_bits(0x80040111);
inline constexpr Hresult kNoConnection = result_from_bits(0x80040200);
inline constexpr Hresult kCannotConnect = result_from_bits(0x80040202);
inline constexpr Hresult kRegistrationFailed = result_from_bits(0x80040201);
// Of calls by name.
inline constexpr Hresult kUnknownInterface = result_from_bits(0x80020001);
inline constexpr Hresult kMemberNotFound = result_from_bits(0x80020003);
inline constexpr Hresult kParameterNotFound = result_from_bits(0x80020004);
inline constexpr Hresult kTypeMismatch = result_from_bits(0x80020005);
inline constexpr Hresult kUnknownName = result_from_bits(0x80020006);
inline constexpr Hresult kBadVariantType = result_from_bits(0x80020008);
inline constexpr Hresult kException = result_from_bits(0x80020009);
inline constexpr Hresult kOverflow = result_from_bits(0x8002000A);
inline constexpr Hresult kBadIndex = result_from_bits(0x8002000B);
inline constexpr Hresult kArrayIsLocked = result_from_bits(0x8002000D);
inline constexpr Hresult kBadParameterCount = result_from_bits(0x8002000E);
inline constexpr Hresult kParameterNotOptional = result_from_bits(0x8002000F);

// Identifiers of classes and interfaces.

struct Guid {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::uint8_t data4[8];

  friend constexpr bool operator==(const Guid&, const Guid&) = default;
};

inline constexpr Guid kNullGuid{0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

/// The identifier of the events of `BVHeartBeatConnector`, an outgoing interface called by number:
/// `kHeartBeatError`, without arguments.
inline constexpr Guid kHeartBeatEvents{
    0x67B9CEFF, 0x038A, 0x4645, {0xA9, 0x07, 0xC2, 0xC2, 0xCF, 0x3F, 0x93, 0x50}};

// Texts: UTF-16 code units, ended by a zero. The four bytes before the text hold its length in
// bytes, so a text can contain zeros. A null pointer is the empty text.

using StringPointer = char16_t*;

// Variants.

namespace variant_type {
inline constexpr std::uint16_t kEmpty = 0;
inline constexpr std::uint16_t kNull = 1;
inline constexpr std::uint16_t kInt16 = 2;
inline constexpr std::uint16_t kInt32 = 3;
inline constexpr std::uint16_t kFloat = 4;
inline constexpr std::uint16_t kDouble = 5;
inline constexpr std::uint16_t kCurrency = 6;  ///< a 64-bit integer of ten-thousandths
inline constexpr std::uint16_t kDate = 7;      ///< days since 1899-12-30
inline constexpr std::uint16_t kString = 8;
inline constexpr std::uint16_t kDispatch = 9;
inline constexpr std::uint16_t kError = 10;
inline constexpr std::uint16_t kBoolean = 11;
inline constexpr std::uint16_t kVariant = 12;
inline constexpr std::uint16_t kUnknown = 13;
inline constexpr std::uint16_t kInt8 = 16;
inline constexpr std::uint16_t kUint8 = 17;
inline constexpr std::uint16_t kUint16 = 18;
inline constexpr std::uint16_t kUint32 = 19;
inline constexpr std::uint16_t kInt64 = 20;
inline constexpr std::uint16_t kUint64 = 21;
inline constexpr std::uint16_t kInt = 22;
inline constexpr std::uint16_t kUint = 23;
inline constexpr std::uint16_t kArray = 0x2000;  ///< or-ed with the elements' type
inline constexpr std::uint16_t kByReference = 0x4000;
}  // namespace variant_type

/// The two values of a boolean in a variant.
inline constexpr std::int16_t kVariantTrue = -1;
inline constexpr std::int16_t kVariantFalse = 0;

/// The bounds of one dimension of an array.
struct ArrayBound {
  std::uint32_t count;
  std::int32_t lower;
};

namespace array_feature {
inline constexpr std::uint16_t kAutomatic = 0x0001;
inline constexpr std::uint16_t kStatic = 0x0002;
inline constexpr std::uint16_t kEmbedded = 0x0004;
inline constexpr std::uint16_t kFixedSize = 0x0010;
/// The type of the elements stands in the four bytes before the record.
inline constexpr std::uint16_t kHasType = 0x0080;
inline constexpr std::uint16_t kStrings = 0x0100;
inline constexpr std::uint16_t kVariants = 0x0800;
}  // namespace array_feature

/// An array that knows its bounds. More dimensions than one follow after the first bound.
struct ArrayRecord {
  std::uint16_t dimensions;
  std::uint16_t features;
  std::uint32_t element_size;
  std::uint32_t locks;
  void* data;
  ArrayBound bounds[1];
};

class IUnknownAbi;
class IDispatchAbi;
struct VariantRecord;

union VariantData {
  // Stands first so that a record made with {} is zero throughout.
  struct {
    void* first;
    void* second;
  } widest;
  std::int8_t int8;
  std::uint8_t uint8;
  std::int16_t int16;
  std::uint16_t uint16;
  std::int32_t int32;
  std::uint32_t uint32;
  std::int64_t int64;
  std::uint64_t uint64;
  float single;
  double number;
  double date;
  std::int64_t currency;
  std::int16_t boolean;
  Hresult error;
  StringPointer string;
  IUnknownAbi* unknown;
  IDispatchAbi* dispatch;
  ArrayRecord* array;
  // With kByReference, a pointer to what otherwise stands here.
  void* reference;
  std::int16_t* boolean_reference;
  std::int32_t* int32_reference;
  StringPointer* string_reference;
  ArrayRecord** array_reference;
  VariantRecord* variant_reference;
};

struct VariantRecord {
  std::uint16_t type;
  std::uint16_t reserved[3];
  VariantData value;
};

// Calls by name.

using DispatchId = std::int32_t;

inline constexpr DispatchId kDefaultMember = 0;
inline constexpr DispatchId kUnknownId = -1;
/// The name of the value that a property is set to.
inline constexpr DispatchId kPropertyPutValue = -3;
inline constexpr DispatchId kNewEnumerator = -4;
/// The event of `kHeartBeatEvents`.
inline constexpr DispatchId kHeartBeatError = 1;

namespace call_flag {
inline constexpr std::uint16_t kMethod = 1;
inline constexpr std::uint16_t kPropertyGet = 2;
inline constexpr std::uint16_t kPropertyPut = 4;
inline constexpr std::uint16_t kPropertyPutReference = 8;
}  // namespace call_flag

/// The arguments of a call: last one first. The first `named_count` of them are named arguments,
/// whose names stand in `named_ids`; the others are positional.
struct DispatchParams {
  VariantRecord* arguments;
  DispatchId* named_ids;
  std::uint32_t count;
  std::uint32_t named_count;
};

/// What went wrong in a call that gave kException. The texts belong to the caller.
struct ExceptionRecord {
  std::uint16_t code;
  std::uint16_t reserved;
  StringPointer source;
  StringPointer description;
  StringPointer help_file;
  std::uint32_t help_context;
  void* reserved_pointer;
  Hresult (*deferred_fill_in)(ExceptionRecord*);
  Hresult result;
};

// The layouts.

static_assert(sizeof(void*) == 8, "the records have the layout of a 64-bit platform");
static_assert(sizeof(Guid) == 16 && offsetof(Guid, data2) == 4 && offsetof(Guid, data3) == 6 &&
              offsetof(Guid, data4) == 8);
static_assert(sizeof(VariantData) == 16);
static_assert(sizeof(VariantRecord) == 24 && offsetof(VariantRecord, value) == 8);
static_assert(sizeof(ArrayBound) == 8 && offsetof(ArrayBound, lower) == 4);
static_assert(sizeof(ArrayRecord) == 32 && offsetof(ArrayRecord, features) == 2 &&
              offsetof(ArrayRecord, element_size) == 4 && offsetof(ArrayRecord, locks) == 8 &&
              offsetof(ArrayRecord, data) == 16 && offsetof(ArrayRecord, bounds) == 24);
static_assert(sizeof(DispatchParams) == 24 && offsetof(DispatchParams, named_ids) == 8 &&
              offsetof(DispatchParams, count) == 16 && offsetof(DispatchParams, named_count) == 20);
static_assert(sizeof(ExceptionRecord) == 64 && offsetof(ExceptionRecord, source) == 8 &&
              offsetof(ExceptionRecord, description) == 16 &&
              offsetof(ExceptionRecord, help_file) == 24 &&
              offsetof(ExceptionRecord, help_context) == 32 &&
              offsetof(ExceptionRecord, reserved_pointer) == 40 &&
              offsetof(ExceptionRecord, deferred_fill_in) == 48 &&
              offsetof(ExceptionRecord, result) == 56);

}  // namespace bvconn::component
