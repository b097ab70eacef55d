#pragma once

#include <stdint.h>

#include "bvconn/component/component_records.h"
#include "bvconn/platform/export.h"

/// The library for component hosts in plain C (C99): the functions that it exports, and the
/// interfaces of its objects. A host looks the functions up by name in the loaded library, or links
/// with it. In C++ the interfaces are the classes of abi.h, which includes this header.
///
/// An object's first word points at a table of functions whose first argument is the object. They
/// use the platform's ordinary calling convention.

#ifdef __cplusplus
#define BVCONN_NOEXCEPT noexcept
extern "C" {
#else
#define BVCONN_NOEXCEPT
#endif

/* The functions that the library exports, as types to cast a looked-up symbol to. */

typedef BVConnResult (*DllCanUnloadNowFunction)(void);
typedef BVConnResult (*DllGetClassObjectFunction)(const BVConnGuid* class_id, const BVConnGuid* id,
                                                  void** object);
typedef BVConnResult (*DllRegisterServerFunction)(void);
typedef BVConnResult (*DllUnregisterServerFunction)(void);
typedef BVConnResult (*BVConnFindClassFunction)(const BVConnChar* prog_id, BVConnGuid* class_id);
typedef BVConnString (*BVConnAllocStringFunction)(const BVConnChar* text, uint32_t length);
typedef uint32_t (*BVConnStringLengthFunction)(const BVConnChar* text);
typedef void (*BVConnFreeStringFunction)(BVConnString text);
typedef BVConnArray* (*BVConnCreateArrayFunction)(uint16_t element_type, uint32_t count);
typedef BVConnArray* (*BVConnCreateStringArrayFunction)(const BVConnChar* const* texts,
                                                        uint32_t count);
typedef BVConnResult (*BVConnDestroyArrayFunction)(BVConnArray* array);
typedef BVConnResult (*BVConnCopyVariantFunction)(BVConnVariant* target,
                                                  const BVConnVariant* source);
typedef BVConnResult (*BVConnClearVariantFunction)(BVConnVariant* variant);
typedef void (*BVConnClearExceptionFunction)(BVConnException* exception);

/* The same, for hosts that link with the library. */

BVCONN_EXPORT BVConnResult DllCanUnloadNow(void) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult DllGetClassObject(const BVConnGuid* class_id, const BVConnGuid* id,
                                             void** object) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult DllRegisterServer(void) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult DllUnregisterServer(void) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVConnFindClass(const BVConnChar* prog_id,
                                           BVConnGuid* class_id) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnString BVConnAllocString(const BVConnChar* text,
                                             uint32_t length) BVCONN_NOEXCEPT;
BVCONN_EXPORT uint32_t BVConnStringLength(const BVConnChar* text) BVCONN_NOEXCEPT;
BVCONN_EXPORT void BVConnFreeString(BVConnString text) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnArray* BVConnCreateArray(uint16_t element_type, uint32_t count) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnArray* BVConnCreateStringArray(const BVConnChar* const* texts,
                                                   uint32_t count) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVConnDestroyArray(BVConnArray* array) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVConnCopyVariant(BVConnVariant* target,
                                             const BVConnVariant* source) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVConnClearVariant(BVConnVariant* variant) BVCONN_NOEXCEPT;
BVCONN_EXPORT void BVConnClearException(BVConnException* exception) BVCONN_NOEXCEPT;

#ifdef __cplusplus
}
#else

/* The interfaces. Each table begins with the functions of IUnknown. */

#define BVCONN_UNKNOWN_FUNCTIONS(Self)                                              \
  BVConnResult (*QueryInterface)(Self * self, const BVConnGuid* id, void** object); \
  uint32_t (*AddRef)(Self * self);                                                  \
  uint32_t (*Release)(Self * self)

struct BVConnUnknown {
  const struct BVConnUnknownTable* table;
};
struct BVConnUnknownTable {
  BVCONN_UNKNOWN_FUNCTIONS(BVConnUnknown);
};

/* BVCONN_IID_CLASS_FACTORY */
typedef struct BVConnClassFactory {
  const struct BVConnClassFactoryTable* table;
} BVConnClassFactory;
struct BVConnClassFactoryTable {
  BVCONN_UNKNOWN_FUNCTIONS(BVConnClassFactory);
  BVConnResult (*CreateInstance)(BVConnClassFactory* self, BVConnUnknown* outer,
                                 const BVConnGuid* id, void** object);
  BVConnResult (*LockServer)(BVConnClassFactory* self, int32_t lock);
};

/* BVCONN_IID_DISPATCH */
struct BVConnDispatch {
  const struct BVConnDispatchTable* table;
};
struct BVConnDispatchTable {
  BVCONN_UNKNOWN_FUNCTIONS(BVConnDispatch);
  BVConnResult (*GetTypeInfoCount)(BVConnDispatch* self, uint32_t* count);
  BVConnResult (*GetTypeInfo)(BVConnDispatch* self, uint32_t index, uint32_t locale, void** info);
  BVConnResult (*GetIDsOfNames)(BVConnDispatch* self, const BVConnGuid* reserved,
                                BVConnChar** names, uint32_t count, uint32_t locale,
                                BVConnDispatchId* ids);
  BVConnResult (*Invoke)(BVConnDispatch* self, BVConnDispatchId id, const BVConnGuid* reserved,
                         uint32_t locale, uint16_t flags, BVConnArguments* arguments,
                         BVConnVariant* result, BVConnException* exception,
                         uint32_t* argument_index);
};

/* The functions that all enumerators share. `Next` gives BVCONN_FALSE when fewer than `wanted` were
 * left; `fetched` may be null when one is wanted. */
#define BVCONN_ENUMERATOR_FUNCTIONS(Self, Item)                                         \
  BVCONN_UNKNOWN_FUNCTIONS(Self);                                                       \
  BVConnResult (*Next)(Self * self, uint32_t wanted, Item * items, uint32_t * fetched); \
  BVConnResult (*Skip)(Self * self, uint32_t count);                                    \
  BVConnResult (*Reset)(Self * self);                                                   \
  BVConnResult (*Clone)(Self * self, Self * *copy)

/* BVCONN_IID_ENUM_VARIANT */
typedef struct BVConnEnumVariant {
  const struct BVConnEnumVariantTable* table;
} BVConnEnumVariant;
struct BVConnEnumVariantTable {
  BVCONN_ENUMERATOR_FUNCTIONS(BVConnEnumVariant, BVConnVariant);
};

/* BVCONN_IID_ENUM_CONNECTIONS */
typedef struct BVConnEnumConnections {
  const struct BVConnEnumConnectionsTable* table;
} BVConnEnumConnections;
struct BVConnEnumConnectionsTable {
  BVCONN_ENUMERATOR_FUNCTIONS(BVConnEnumConnections, BVConnConnection);
};

typedef struct BVConnConnectionPointContainer BVConnConnectionPointContainer;

/* BVCONN_IID_CONNECTION_POINT */
typedef struct BVConnConnectionPoint {
  const struct BVConnConnectionPointTable* table;
} BVConnConnectionPoint;
struct BVConnConnectionPointTable {
  BVCONN_UNKNOWN_FUNCTIONS(BVConnConnectionPoint);
  BVConnResult (*GetConnectionInterface)(BVConnConnectionPoint* self, BVConnGuid* id);
  BVConnResult (*GetConnectionPointContainer)(BVConnConnectionPoint* self,
                                              BVConnConnectionPointContainer** owner);
  BVConnResult (*Advise)(BVConnConnectionPoint* self, BVConnUnknown* sink, uint32_t* cookie);
  BVConnResult (*Unadvise)(BVConnConnectionPoint* self, uint32_t cookie);
  BVConnResult (*EnumConnections)(BVConnConnectionPoint* self, BVConnEnumConnections** connections);
};

/* BVCONN_IID_ENUM_CONNECTION_POINTS */
typedef struct BVConnEnumConnectionPoints {
  const struct BVConnEnumConnectionPointsTable* table;
} BVConnEnumConnectionPoints;
struct BVConnEnumConnectionPointsTable {
  BVCONN_ENUMERATOR_FUNCTIONS(BVConnEnumConnectionPoints, BVConnConnectionPoint*);
};

/* BVCONN_IID_CONNECTION_POINT_CONTAINER */
struct BVConnConnectionPointContainer {
  const struct BVConnConnectionPointContainerTable* table;
};
struct BVConnConnectionPointContainerTable {
  BVCONN_UNKNOWN_FUNCTIONS(BVConnConnectionPointContainer);
  BVConnResult (*EnumConnectionPoints)(BVConnConnectionPointContainer* self,
                                       BVConnEnumConnectionPoints** points);
  BVConnResult (*FindConnectionPoint)(BVConnConnectionPointContainer* self, const BVConnGuid* id,
                                      BVConnConnectionPoint** point);
};

#endif
