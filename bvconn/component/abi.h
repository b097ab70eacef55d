#pragma once

#include <cstddef>
#include <cstdint>

/// The binary interface between the library and a component host: identifiers, result codes, the
/// records that cross it, the interfaces of the objects, the exported functions. A host includes
/// this header alone, loads the library and looks the functions up by name.
///
/// The layouts are those of 64-bit Windows, byte for byte, and are asserted below. An interface is
/// a class of pure virtual functions without a virtual destructor: an object's first word points
/// at a plain list of function pointers, in the order of the declarations, whose first argument is
/// the object. The functions use the platform's ordinary calling convention. No exception passes
/// in either direction, which is why every function is noexcept.
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

// Interfaces. `kId` is the identifier of each.

class IUnknownAbi {
 public:
  static constexpr Guid kId{0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  virtual Hresult QueryInterface(const Guid* id, void** object) noexcept = 0;
  virtual std::uint32_t AddRef() noexcept = 0;
  virtual std::uint32_t Release() noexcept = 0;

 protected:
  ~IUnknownAbi() = default;
};

class IClassFactoryAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId{0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  virtual Hresult CreateInstance(IUnknownAbi* outer, const Guid* id, void** object) noexcept = 0;
  virtual Hresult LockServer(std::int32_t lock) noexcept = 0;

 protected:
  ~IClassFactoryAbi() = default;
};

class IDispatchAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId{0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  virtual Hresult GetTypeInfoCount(std::uint32_t* count) noexcept = 0;
  virtual Hresult GetTypeInfo(std::uint32_t index, std::uint32_t locale, void** info) noexcept = 0;
  virtual Hresult GetIDsOfNames(const Guid* reserved, char16_t** names, std::uint32_t count,
                                std::uint32_t locale, DispatchId* ids) noexcept = 0;
  virtual Hresult Invoke(DispatchId id, const Guid* reserved, std::uint32_t locale,
                         std::uint16_t flags, DispatchParams* parameters, VariantRecord* result,
                         ExceptionRecord* exception, std::uint32_t* argument_index) noexcept = 0;

 protected:
  ~IDispatchAbi() = default;
};

/// The shape that all enumerators share. `Next` gives kFalse when fewer than `wanted` were left;
/// `fetched` may be null when one is wanted.
template <typename Interface, typename Item>
class EnumeratorAbi : public IUnknownAbi {
 public:
  virtual Hresult Next(std::uint32_t wanted, Item* items, std::uint32_t* fetched) noexcept = 0;
  virtual Hresult Skip(std::uint32_t count) noexcept = 0;
  virtual Hresult Reset() noexcept = 0;
  virtual Hresult Clone(Interface** copy) noexcept = 0;

 protected:
  ~EnumeratorAbi() = default;
};

class IEnumVariantAbi : public EnumeratorAbi<IEnumVariantAbi, VariantRecord> {
 public:
  static constexpr Guid kId{0x00020404, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

 protected:
  ~IEnumVariantAbi() = default;
};

/// A living connection: the sink and the number that `Advise` gave for it.
struct ConnectionRecord {
  IUnknownAbi* sink;
  std::uint32_t cookie;
};

class IEnumConnectionsAbi : public EnumeratorAbi<IEnumConnectionsAbi, ConnectionRecord> {
 public:
  static constexpr Guid kId{
      0xB196B287, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};

 protected:
  ~IEnumConnectionsAbi() = default;
};

class IConnectionPointContainerAbi;

class IConnectionPointAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId{
      0xB196B286, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
  virtual Hresult GetConnectionInterface(Guid* id) noexcept = 0;
  virtual Hresult GetConnectionPointContainer(IConnectionPointContainerAbi** owner) noexcept = 0;
  virtual Hresult Advise(IUnknownAbi* sink, std::uint32_t* cookie) noexcept = 0;
  virtual Hresult Unadvise(std::uint32_t cookie) noexcept = 0;
  virtual Hresult EnumConnections(IEnumConnectionsAbi** connections) noexcept = 0;

 protected:
  ~IConnectionPointAbi() = default;
};

class IEnumConnectionPointsAbi
    : public EnumeratorAbi<IEnumConnectionPointsAbi, IConnectionPointAbi*> {
 public:
  static constexpr Guid kId{
      0xB196B285, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};

 protected:
  ~IEnumConnectionPointsAbi() = default;
};

class IConnectionPointContainerAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId{
      0xB196B284, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
  virtual Hresult EnumConnectionPoints(IEnumConnectionPointsAbi** points) noexcept = 0;
  virtual Hresult FindConnectionPoint(const Guid* id, IConnectionPointAbi** point) noexcept = 0;

 protected:
  ~IConnectionPointContainerAbi() = default;
};

// The exported functions, as types to cast a looked-up symbol to.

using DllCanUnloadNowFunction = Hresult (*)();
using DllGetClassObjectFunction = Hresult (*)(const Guid* class_id, const Guid* id, void** object);
using DllRegisterServerFunction = Hresult (*)();
using DllUnregisterServerFunction = Hresult (*)();

using BVConnFindClassFunction = Hresult (*)(const char16_t* prog_id, Guid* class_id);
using BVConnAllocStringFunction = StringPointer (*)(const char16_t* text, std::uint32_t length);
using BVConnStringLengthFunction = std::uint32_t (*)(const char16_t* text);
using BVConnFreeStringFunction = void (*)(StringPointer text);
using BVConnCreateArrayFunction = ArrayRecord* (*)(std::uint16_t element_type, std::uint32_t count);
using BVConnCreateStringArrayFunction = ArrayRecord* (*)(const char16_t* const* texts,
                                                         std::uint32_t count);
using BVConnDestroyArrayFunction = Hresult (*)(ArrayRecord* array);
using BVConnCopyVariantFunction = Hresult (*)(VariantRecord* target, const VariantRecord* source);
using BVConnClearVariantFunction = Hresult (*)(VariantRecord* variant);
using BVConnClearExceptionFunction = void (*)(ExceptionRecord* exception);

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
static_assert(sizeof(ConnectionRecord) == 16 && offsetof(ConnectionRecord, cookie) == 8);

}  // namespace bvconn::component
