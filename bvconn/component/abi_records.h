#pragma once

#include <cstddef>
#include <cstdint>

#include "bvconn/component/component_records.h"

/// The records of component_records.h by their names in C++, and the assertion of their layouts.
namespace bvconn::component {

// Result codes. The sign tells success from failure.

using Hresult = BVConnResult;

constexpr Hresult result_from_bits(std::uint32_t bits) {
  return static_cast<Hresult>(bits);
}
constexpr bool succeeded(Hresult result) {
  return result >= 0;
}

inline constexpr Hresult kOk = BVCONN_OK;
inline constexpr Hresult kFalse = BVCONN_FALSE;
inline constexpr Hresult kNotImplemented = BVCONN_NOT_IMPLEMENTED;
inline constexpr Hresult kNoInterface = BVCONN_NO_INTERFACE;
inline constexpr Hresult kNullPointer = BVCONN_NULL_POINTER;
inline constexpr Hresult kFailed = BVCONN_FAILED;
inline constexpr Hresult kUnexpected = BVCONN_UNEXPECTED;
inline constexpr Hresult kOutOfMemory = BVCONN_OUT_OF_MEMORY;
inline constexpr Hresult kInvalidArgument = BVCONN_INVALID_ARGUMENT;
inline constexpr Hresult kNoAggregation = BVCONN_NO_AGGREGATION;
inline constexpr Hresult kClassNotAvailable = BVCONN_CLASS_NOT_AVAILABLE;
inline constexpr Hresult kNoConnection = BVCONN_NO_CONNECTION;
inline constexpr Hresult kCannotConnect = BVCONN_CANNOT_CONNECT;
inline constexpr Hresult kRegistrationFailed = BVCONN_REGISTRATION_FAILED;
// Of calls by name.
inline constexpr Hresult kUnknownInterface = BVCONN_UNKNOWN_INTERFACE;
inline constexpr Hresult kMemberNotFound = BVCONN_MEMBER_NOT_FOUND;
inline constexpr Hresult kParameterNotFound = BVCONN_PARAMETER_NOT_FOUND;
inline constexpr Hresult kTypeMismatch = BVCONN_TYPE_MISMATCH;
inline constexpr Hresult kUnknownName = BVCONN_UNKNOWN_NAME;
inline constexpr Hresult kBadVariantType = BVCONN_BAD_VARIANT_TYPE;
inline constexpr Hresult kException = BVCONN_EXCEPTION;
inline constexpr Hresult kOverflow = BVCONN_OVERFLOW;
inline constexpr Hresult kBadIndex = BVCONN_BAD_INDEX;
inline constexpr Hresult kArrayIsLocked = BVCONN_ARRAY_IS_LOCKED;
inline constexpr Hresult kBadParameterCount = BVCONN_BAD_PARAMETER_COUNT;
inline constexpr Hresult kParameterNotOptional = BVCONN_PARAMETER_NOT_OPTIONAL;

// Identifiers of classes and interfaces.

using Guid = BVConnGuid;

inline constexpr Guid kNullGuid = BVCONN_NULL_GUID;

/// The identifier of the events of `BVHeartBeatConnector`, an outgoing interface called by number:
/// `kHeartBeatError`, without arguments.
inline constexpr Guid kHeartBeatEvents = BVCONN_IID_HEART_BEAT_EVENTS;

// Texts.

using StringPointer = BVConnString;

// Variants.

namespace variant_type {
inline constexpr std::uint16_t kEmpty = BVCONN_TYPE_EMPTY;
inline constexpr std::uint16_t kNull = BVCONN_TYPE_NULL;
inline constexpr std::uint16_t kInt16 = BVCONN_TYPE_INT16;
inline constexpr std::uint16_t kInt32 = BVCONN_TYPE_INT32;
inline constexpr std::uint16_t kFloat = BVCONN_TYPE_FLOAT;
inline constexpr std::uint16_t kDouble = BVCONN_TYPE_DOUBLE;
inline constexpr std::uint16_t kCurrency = BVCONN_TYPE_CURRENCY;
inline constexpr std::uint16_t kDate = BVCONN_TYPE_DATE;
inline constexpr std::uint16_t kString = BVCONN_TYPE_STRING;
inline constexpr std::uint16_t kDispatch = BVCONN_TYPE_DISPATCH;
inline constexpr std::uint16_t kError = BVCONN_TYPE_ERROR;
inline constexpr std::uint16_t kBoolean = BVCONN_TYPE_BOOLEAN;
inline constexpr std::uint16_t kVariant = BVCONN_TYPE_VARIANT;
inline constexpr std::uint16_t kUnknown = BVCONN_TYPE_UNKNOWN;
inline constexpr std::uint16_t kDecimal = BVCONN_TYPE_DECIMAL;
inline constexpr std::uint16_t kInt8 = BVCONN_TYPE_INT8;
inline constexpr std::uint16_t kUint8 = BVCONN_TYPE_UINT8;
inline constexpr std::uint16_t kUint16 = BVCONN_TYPE_UINT16;
inline constexpr std::uint16_t kUint32 = BVCONN_TYPE_UINT32;
inline constexpr std::uint16_t kInt64 = BVCONN_TYPE_INT64;
inline constexpr std::uint16_t kUint64 = BVCONN_TYPE_UINT64;
inline constexpr std::uint16_t kInt = BVCONN_TYPE_INT;
inline constexpr std::uint16_t kUint = BVCONN_TYPE_UINT;
inline constexpr std::uint16_t kArray = BVCONN_TYPE_ARRAY;
inline constexpr std::uint16_t kByReference = BVCONN_TYPE_BY_REFERENCE;
}  // namespace variant_type

/// The two values of a boolean in a variant.
inline constexpr std::int16_t kVariantTrue = BVCONN_TRUE_IN_VARIANT;
inline constexpr std::int16_t kVariantFalse = BVCONN_FALSE_IN_VARIANT;

namespace array_feature {
inline constexpr std::uint16_t kAutomatic = BVCONN_ARRAY_AUTOMATIC;
inline constexpr std::uint16_t kStatic = BVCONN_ARRAY_STATIC;
inline constexpr std::uint16_t kEmbedded = BVCONN_ARRAY_EMBEDDED;
inline constexpr std::uint16_t kFixedSize = BVCONN_ARRAY_FIXED_SIZE;
inline constexpr std::uint16_t kHasType = BVCONN_ARRAY_HAS_TYPE;
inline constexpr std::uint16_t kStrings = BVCONN_ARRAY_STRINGS;
inline constexpr std::uint16_t kUnknowns = BVCONN_ARRAY_UNKNOWNS;
inline constexpr std::uint16_t kDispatches = BVCONN_ARRAY_DISPATCHES;
inline constexpr std::uint16_t kVariants = BVCONN_ARRAY_VARIANTS;
}  // namespace array_feature

using ArrayBound = BVConnArrayBound;
using ArrayRecord = BVConnArray;
using VariantData = BVConnVariantData;
using VariantRecord = BVConnVariant;
using DecimalRecord = BVConnDecimal;

// Calls by name.

using DispatchId = BVConnDispatchId;

inline constexpr DispatchId kDefaultMember = BVCONN_DEFAULT_MEMBER;
inline constexpr DispatchId kUnknownId = BVCONN_UNKNOWN_ID;
/// The name of the value that a property is set to.
inline constexpr DispatchId kPropertyPutValue = BVCONN_PROPERTY_PUT_VALUE;
inline constexpr DispatchId kNewEnumerator = BVCONN_NEW_ENUMERATOR;
/// The event of `kHeartBeatEvents`.
inline constexpr DispatchId kHeartBeatError = BVCONN_HEART_BEAT_ERROR;

namespace call_flag {
inline constexpr std::uint16_t kMethod = BVCONN_CALL_METHOD;
inline constexpr std::uint16_t kPropertyGet = BVCONN_CALL_PROPERTY_GET;
inline constexpr std::uint16_t kPropertyPut = BVCONN_CALL_PROPERTY_PUT;
inline constexpr std::uint16_t kPropertyPutReference = BVCONN_CALL_PROPERTY_PUT_REFERENCE;
}  // namespace call_flag

using DispatchParams = BVConnArguments;
using ExceptionRecord = BVConnException;
using ConnectionRecord = BVConnConnection;

// The layouts: what stands behind a pointer moves with the size of one.

inline constexpr std::size_t kPointer = sizeof(void*);

static_assert(kPointer == 8 || kPointer == 4);
static_assert(sizeof(Guid) == 16 && offsetof(Guid, data2) == 4 && offsetof(Guid, data3) == 6 &&
              offsetof(Guid, data4) == 8);
static_assert(sizeof(VariantData) == 2 * kPointer);
static_assert(sizeof(VariantRecord) == 8 + 2 * kPointer && offsetof(VariantRecord, value) == 8);
static_assert(sizeof(DecimalRecord) == 16 && offsetof(DecimalRecord, high) == 4 &&
              offsetof(DecimalRecord, low) == 8);
static_assert(sizeof(ArrayBound) == 8 && offsetof(ArrayBound, lower) == 4);
static_assert(sizeof(ArrayRecord) == 16 + 2 * kPointer && offsetof(ArrayRecord, features) == 2 &&
              offsetof(ArrayRecord, element_size) == 4 && offsetof(ArrayRecord, locks) == 8 &&
              offsetof(ArrayRecord, data) == 8 + kPointer &&
              offsetof(ArrayRecord, bounds) == 8 + 2 * kPointer);
static_assert(sizeof(DispatchParams) == 8 + 2 * kPointer &&
              offsetof(DispatchParams, named_ids) == kPointer &&
              offsetof(DispatchParams, count) == 2 * kPointer &&
              offsetof(DispatchParams, named_count) == 4 + 2 * kPointer);
static_assert(sizeof(ExceptionRecord) == 8 * kPointer &&
              offsetof(ExceptionRecord, source) == kPointer &&
              offsetof(ExceptionRecord, description) == 2 * kPointer &&
              offsetof(ExceptionRecord, help_file) == 3 * kPointer &&
              offsetof(ExceptionRecord, help_context) == 4 * kPointer &&
              offsetof(ExceptionRecord, reserved_pointer) == 5 * kPointer &&
              offsetof(ExceptionRecord, deferred_fill_in) == 6 * kPointer &&
              offsetof(ExceptionRecord, result) == 7 * kPointer);
static_assert(sizeof(ConnectionRecord) == 2 * kPointer &&
              offsetof(ConnectionRecord, cookie) == kPointer);

}  // namespace bvconn::component
