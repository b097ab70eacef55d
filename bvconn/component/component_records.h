#pragma once

#include <stdint.h>

/// The plain part of the binary interface between the library and a component host, for C99 as for
/// C++: result codes, identifiers, and the records that cross it. The layouts are those of Windows
/// with pointers of the same size, byte for byte; abi_records.h asserts them, and gives all of it
/// its names in C++.

/* How the functions of the interface are called: in the platform's ordinary way, but on 32-bit
 * Windows, whose components leave the stack to the function that was called. */
#if defined(_WIN32) && !defined(_WIN64)
#define BVCONN_CALL __stdcall
#else
#define BVCONN_CALL
#endif

#ifdef __cplusplus
typedef char16_t BVConnChar;
#else
typedef uint16_t BVConnChar;
#endif

/* Result codes. The sign tells success from failure. */

typedef int32_t BVConnResult;

#define BVCONN_RESULT(bits) ((BVConnResult)(bits))
#define BVCONN_OK BVCONN_RESULT(0)
#define BVCONN_FALSE BVCONN_RESULT(1)
#define BVCONN_NOT_IMPLEMENTED BVCONN_RESULT(0x80004001)
#define BVCONN_NO_INTERFACE BVCONN_RESULT(0x80004002)
#define BVCONN_NULL_POINTER BVCONN_RESULT(0x80004003)
#define BVCONN_FAILED BVCONN_RESULT(0x80004005)
#define BVCONN_UNEXPECTED BVCONN_RESULT(0x8000FFFF)
#define BVCONN_OUT_OF_MEMORY BVCONN_RESULT(0x8007000E)
#define BVCONN_INVALID_ARGUMENT BVCONN_RESULT(0x80070057)
#define BVCONN_NO_AGGREGATION BVCONN_RESULT(0x80040110)
#define BVCONN_CLASS_NOT_AVAILABLE BVCONN_RESULT(0x80040111)
#define BVCONN_NO_CONNECTION BVCONN_RESULT(0x80040200)
#define BVCONN_REGISTRATION_FAILED BVCONN_RESULT(0x80040201)
#define BVCONN_CANNOT_CONNECT BVCONN_RESULT(0x80040202)
/* Of calls by name. */
#define BVCONN_UNKNOWN_INTERFACE BVCONN_RESULT(0x80020001)
#define BVCONN_MEMBER_NOT_FOUND BVCONN_RESULT(0x80020003)
#define BVCONN_PARAMETER_NOT_FOUND BVCONN_RESULT(0x80020004)
#define BVCONN_TYPE_MISMATCH BVCONN_RESULT(0x80020005)
#define BVCONN_UNKNOWN_NAME BVCONN_RESULT(0x80020006)
#define BVCONN_BAD_VARIANT_TYPE BVCONN_RESULT(0x80020008)
#define BVCONN_EXCEPTION BVCONN_RESULT(0x80020009)
#define BVCONN_OVERFLOW BVCONN_RESULT(0x8002000A)
#define BVCONN_BAD_INDEX BVCONN_RESULT(0x8002000B)
#define BVCONN_ARRAY_IS_LOCKED BVCONN_RESULT(0x8002000D)
#define BVCONN_BAD_PARAMETER_COUNT BVCONN_RESULT(0x8002000E)
#define BVCONN_PARAMETER_NOT_OPTIONAL BVCONN_RESULT(0x8002000F)

/* Identifiers of classes and interfaces. */

typedef struct BVConnGuid {
  uint32_t data1;
  uint16_t data2;
  uint16_t data3;
  uint8_t data4[8];
#ifdef __cplusplus
  friend constexpr bool operator==(const BVConnGuid&, const BVConnGuid&) = default;
#endif
} BVConnGuid;

/* To initialise a BVConnGuid with. */
// clang-format off
#define BVCONN_NULL_GUID {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}}
#define BVCONN_IID_UNKNOWN {0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}}
#define BVCONN_IID_CLASS_FACTORY {0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}}
#define BVCONN_IID_DISPATCH {0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}}
#define BVCONN_IID_ENUM_VARIANT {0x00020404, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}}
#define BVCONN_IID_CONNECTION_POINT_CONTAINER \
  {0xB196B284, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}}
#define BVCONN_IID_ENUM_CONNECTION_POINTS \
  {0xB196B285, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}}
#define BVCONN_IID_CONNECTION_POINT \
  {0xB196B286, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}}
#define BVCONN_IID_ENUM_CONNECTIONS \
  {0xB196B287, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}}
/* The events of BVHeartBeatConnector, called by number: BVCONN_HEART_BEAT_ERROR, no arguments. */
#define BVCONN_IID_HEART_BEAT_EVENTS \
  {0x67B9CEFF, 0x038A, 0x4645, {0xA9, 0x07, 0xC2, 0xC2, 0xCF, 0x3F, 0x93, 0x50}}
// clang-format on

/* Texts: UTF-16 code units, ended by a zero. The four bytes before the text hold its length in
 * bytes, so a text can contain zeros. A null pointer is the empty text. */

typedef BVConnChar* BVConnString;

/* Variants. */

#define BVCONN_TYPE_EMPTY 0
#define BVCONN_TYPE_NULL 1
#define BVCONN_TYPE_INT16 2
#define BVCONN_TYPE_INT32 3
#define BVCONN_TYPE_FLOAT 4
#define BVCONN_TYPE_DOUBLE 5
#define BVCONN_TYPE_CURRENCY 6 /* a 64-bit integer of ten-thousandths */
#define BVCONN_TYPE_DATE 7     /* days since 1899-12-30 */
#define BVCONN_TYPE_STRING 8
#define BVCONN_TYPE_DISPATCH 9
#define BVCONN_TYPE_ERROR 10
#define BVCONN_TYPE_BOOLEAN 11
#define BVCONN_TYPE_VARIANT 12
#define BVCONN_TYPE_UNKNOWN 13
#define BVCONN_TYPE_DECIMAL 14 /* a BVConnDecimal in the place of the whole variant */
#define BVCONN_TYPE_INT8 16
#define BVCONN_TYPE_UINT8 17
#define BVCONN_TYPE_UINT16 18
#define BVCONN_TYPE_UINT32 19
#define BVCONN_TYPE_INT64 20
#define BVCONN_TYPE_UINT64 21
#define BVCONN_TYPE_INT 22
#define BVCONN_TYPE_UINT 23
#define BVCONN_TYPE_ARRAY 0x2000 /* or-ed with the elements' type */
#define BVCONN_TYPE_BY_REFERENCE 0x4000

/* The two values of a boolean in a variant. */
#define BVCONN_TRUE_IN_VARIANT (-1)
#define BVCONN_FALSE_IN_VARIANT 0

/* The bounds of one dimension of an array. */
typedef struct BVConnArrayBound {
  uint32_t count;
  int32_t lower;
} BVConnArrayBound;

#define BVCONN_ARRAY_AUTOMATIC 0x0001
#define BVCONN_ARRAY_STATIC 0x0002
#define BVCONN_ARRAY_EMBEDDED 0x0004
#define BVCONN_ARRAY_FIXED_SIZE 0x0010
#define BVCONN_ARRAY_HAS_TYPE 0x0080 /* in the four bytes before the record */
#define BVCONN_ARRAY_STRINGS 0x0100
#define BVCONN_ARRAY_UNKNOWNS 0x0200
#define BVCONN_ARRAY_DISPATCHES 0x0400
#define BVCONN_ARRAY_VARIANTS 0x0800

/* An array that knows its bounds. More dimensions than one follow after the first bound. */
typedef struct BVConnArray {
  uint16_t dimensions;
  uint16_t features;
  uint32_t element_size;
  uint32_t locks;
  void* data;
  BVConnArrayBound bounds[1];
} BVConnArray;

#ifdef __cplusplus
namespace bvconn::component {
class IUnknownAbi;
class IDispatchAbi;
}  // namespace bvconn::component
/* In C++ the objects are the classes of abi.h. */
typedef bvconn::component::IUnknownAbi BVConnUnknown;
typedef bvconn::component::IDispatchAbi BVConnDispatch;
#else
typedef struct BVConnUnknown BVConnUnknown;
typedef struct BVConnDispatch BVConnDispatch;
#endif

typedef union BVConnVariantData {
  /* Stands first so that a record made with {0} is zero throughout. */
  struct {
    void* first;
    void* second;
  } widest;
  int8_t int8;
  uint8_t uint8;
  int16_t int16;
  uint16_t uint16;
  int32_t int32;
  uint32_t uint32;
  int64_t int64;
  uint64_t uint64;
  float single;
  double number;
  double date;
  int64_t currency;
  int16_t boolean;
  BVConnResult error;
  BVConnString string;
  BVConnUnknown* unknown;
  BVConnDispatch* dispatch;
  BVConnArray* array;
  /* With BVCONN_TYPE_BY_REFERENCE, a pointer to what otherwise stands here. */
  void* reference;
  int16_t* boolean_reference;
  int32_t* int32_reference;
  BVConnString* string_reference;
  BVConnArray** array_reference;
  struct BVConnVariant* variant_reference;
} BVConnVariantData;

typedef struct BVConnVariant {
  uint16_t type;
  uint16_t reserved[3];
  BVConnVariantData value;
} BVConnVariant;

/* A number of 96 bits, of which as many decimal places as `scale` says stand behind the point. In a
 * variant, `type` lies on the variant's. */
typedef struct BVConnDecimal {
  uint16_t type;
  uint8_t scale;
  uint8_t sign; /* 0x80 for a negative number */
  uint32_t high;
  uint64_t low;
} BVConnDecimal;

/* Calls by name. */

typedef int32_t BVConnDispatchId;

#define BVCONN_DEFAULT_MEMBER 0
#define BVCONN_UNKNOWN_ID (-1)
/* The name of the value that a property is set to. */
#define BVCONN_PROPERTY_PUT_VALUE (-3)
#define BVCONN_NEW_ENUMERATOR (-4)
#define BVCONN_HEART_BEAT_ERROR 1

#define BVCONN_CALL_METHOD 1
#define BVCONN_CALL_PROPERTY_GET 2
#define BVCONN_CALL_PROPERTY_PUT 4
#define BVCONN_CALL_PROPERTY_PUT_REFERENCE 8

/* The arguments of a call: last one first. The first `named_count` of them are named arguments,
 * whose names stand in `named_ids`; the others are positional. */
typedef struct BVConnArguments {
  BVConnVariant* arguments;
  BVConnDispatchId* named_ids;
  uint32_t count;
  uint32_t named_count;
} BVConnArguments;

/* What went wrong in a call that gave BVCONN_EXCEPTION. The texts belong to the caller. */
typedef struct BVConnException {
  uint16_t code;
  uint16_t reserved;
  BVConnString source;
  BVConnString description;
  BVConnString help_file;
  uint32_t help_context;
  void* reserved_pointer;
  BVConnResult(BVCONN_CALL* deferred_fill_in)(struct BVConnException*);
  BVConnResult result;
} BVConnException;

/* A living connection: the sink and the number that `Advise` gave for it. */
typedef struct BVConnConnection {
  BVConnUnknown* sink;
  uint32_t cookie;
} BVConnConnection;
