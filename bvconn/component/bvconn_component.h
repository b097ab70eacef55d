#pragma once

#include <stdint.h>

#include "bvconn/component/component_records.h"
#include "bvconn/platform/export.h"

/// The library for component hosts in plain C (C99): the functions that it exports, and the
/// interfaces of its objects. A host looks the functions up by name in the loaded library, or links
/// with it. In C++ the interfaces are the classes of abi.h, which includes this header.
///
/// An object's first word points at a table of functions whose first argument is the object.
/// BVCONN_CALL stands before every function, also before those of the host.

#ifdef __cplusplus
#define BVCONN_NOEXCEPT noexcept
extern "C" {
#else
#define BVCONN_NOEXCEPT
#endif

/* The functions that the library exports, as types to cast a looked-up symbol to. */

typedef BVConnResult(BVCONN_CALL* DllCanUnloadNowFunction)(void);
typedef BVConnResult(BVCONN_CALL* DllGetClassObjectFunction)(const BVConnGuid* class_id,
                                                             const BVConnGuid* id, void** object);
typedef BVConnResult(BVCONN_CALL* DllRegisterServerFunction)(void);
typedef BVConnResult(BVCONN_CALL* DllUnregisterServerFunction)(void);
/* On Windows alone: registers (or unregisters) for the current user where the text is "user", else
 * for the machine. */
typedef BVConnResult(BVCONN_CALL* DllInstallFunction)(int32_t install, const BVConnChar* whom);
typedef BVConnResult(BVCONN_CALL* BVConnFindClassFunction)(const BVConnChar* prog_id,
                                                           BVConnGuid* class_id);
typedef BVConnString(BVCONN_CALL* BVConnAllocStringFunction)(const BVConnChar* text,
                                                             uint32_t length);
typedef uint32_t(BVCONN_CALL* BVConnStringLengthFunction)(const BVConnChar* text);
typedef void(BVCONN_CALL* BVConnFreeStringFunction)(BVConnString text);
typedef BVConnArray*(BVCONN_CALL* BVConnCreateArrayFunction)(uint16_t element_type, uint32_t count);
typedef BVConnArray*(BVCONN_CALL* BVConnCreateStringArrayFunction)(const BVConnChar* const* texts,
                                                                   uint32_t count);
typedef BVConnResult(BVCONN_CALL* BVConnDestroyArrayFunction)(BVConnArray* array);
typedef BVConnResult(BVCONN_CALL* BVConnCopyVariantFunction)(BVConnVariant* target,
                                                             const BVConnVariant* source);
typedef BVConnResult(BVCONN_CALL* BVConnClearVariantFunction)(BVConnVariant* variant);
typedef void(BVCONN_CALL* BVConnClearExceptionFunction)(BVConnException* exception);

/* The same, for hosts that link with the library. On Windows the system's headers declare four of
 * them too, in types of their own, and a file has one or the other: a host that does without those
 * headers asks for ours by BVCONN_ENTRY_POINTS. The others are not there. */

#if !defined(_WIN32) || defined(BVCONN_ENTRY_POINTS)
BVCONN_EXPORT BVConnResult BVCONN_CALL DllCanUnloadNow(void) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVCONN_CALL DllGetClassObject(const BVConnGuid* class_id,
                                                         const BVConnGuid* id,
                                                         void** object) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVCONN_CALL DllRegisterServer(void) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVCONN_CALL DllUnregisterServer(void) BVCONN_NOEXCEPT;
#endif
#if !defined(_WIN32)
BVCONN_EXPORT BVConnResult BVCONN_CALL BVConnFindClass(const BVConnChar* prog_id,
                                                       BVConnGuid* class_id) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnString BVCONN_CALL BVConnAllocString(const BVConnChar* text,
                                                         uint32_t length) BVCONN_NOEXCEPT;
BVCONN_EXPORT uint32_t BVCONN_CALL BVConnStringLength(const BVConnChar* text) BVCONN_NOEXCEPT;
BVCONN_EXPORT void BVCONN_CALL BVConnFreeString(BVConnString text) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnArray* BVCONN_CALL BVConnCreateArray(uint16_t element_type,
                                                         uint32_t count) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnArray* BVCONN_CALL BVConnCreateStringArray(const BVConnChar* const* texts,
                                                               uint32_t count) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVCONN_CALL BVConnDestroyArray(BVConnArray* array) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVCONN_CALL
BVConnCopyVariant(BVConnVariant* target, const BVConnVariant* source) BVCONN_NOEXCEPT;
BVCONN_EXPORT BVConnResult BVCONN_CALL BVConnClearVariant(BVConnVariant* variant) BVCONN_NOEXCEPT;
BVCONN_EXPORT void BVCONN_CALL BVConnClearException(BVConnException* exception) BVCONN_NOEXCEPT;
#endif

#ifdef __cplusplus
}
#else

/* The interfaces. Each table begins with the functions of IUnknown. */

#define BVCONN_UNKNOWN_FUNCTIONS(Self)                                                         \
  BVConnResult(BVCONN_CALL* QueryInterface)(Self * self, const BVConnGuid* id, void** object); \
  uint32_t(BVCONN_CALL* AddRef)(Self * self);                                                  \
  uint32_t(BVCONN_CALL* Release)(Self * self)

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
  BVConnResult(BVCONN_CALL* CreateInstance)(BVConnClassFactory* self, BVConnUnknown* outer,
                                            const BVConnGuid* id, void** object);
  BVConnResult(BVCONN_CALL* LockServer)(BVConnClassFactory* self, int32_t lock);
};

/* BVCONN_IID_DISPATCH */
struct BVConnDispatch {
  const struct BVConnDispatchTable* table;
};
struct BVConnDispatchTable {
  BVCONN_UNKNOWN_FUNCTIONS(BVConnDispatch);
  BVConnResult(BVCONN_CALL* GetTypeInfoCount)(BVConnDispatch* self, uint32_t* count);
  BVConnResult(BVCONN_CALL* GetTypeInfo)(BVConnDispatch* self, uint32_t index, uint32_t locale,
                                         void** info);
  BVConnResult(BVCONN_CALL* GetIDsOfNames)(BVConnDispatch* self, const BVConnGuid* reserved,
                                           BVConnChar** names, uint32_t count, uint32_t locale,
                                           BVConnDispatchId* ids);
  BVConnResult(BVCONN_CALL* Invoke)(BVConnDispatch* self, BVConnDispatchId id,
                                    const BVConnGuid* reserved, uint32_t locale, uint16_t flags,
                                    BVConnArguments* arguments, BVConnVariant* result,
                                    BVConnException* exception, uint32_t* argument_index);
};

/* The functions that all enumerators share. `Next` gives BVCONN_FALSE when fewer than `wanted` were
 * left; `fetched` may be null when one is wanted. */
#define BVCONN_ENUMERATOR_FUNCTIONS(Self, Item)                                                    \
  BVCONN_UNKNOWN_FUNCTIONS(Self);                                                                  \
  BVConnResult(BVCONN_CALL* Next)(Self * self, uint32_t wanted, Item * items, uint32_t * fetched); \
  BVConnResult(BVCONN_CALL* Skip)(Self * self, uint32_t count);                                    \
  BVConnResult(BVCONN_CALL* Reset)(Self * self);                                                   \
  BVConnResult(BVCONN_CALL* Clone)(Self * self, Self * *copy)

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
  BVConnResult(BVCONN_CALL* GetConnectionInterface)(BVConnConnectionPoint* self, BVConnGuid* id);
  BVConnResult(BVCONN_CALL* GetConnectionPointContainer)(BVConnConnectionPoint* self,
                                                         BVConnConnectionPointContainer** owner);
  BVConnResult(BVCONN_CALL* Advise)(BVConnConnectionPoint* self, BVConnUnknown* sink,
                                    uint32_t* cookie);
  BVConnResult(BVCONN_CALL* Unadvise)(BVConnConnectionPoint* self, uint32_t cookie);
  BVConnResult(BVCONN_CALL* EnumConnections)(BVConnConnectionPoint* self,
                                             BVConnEnumConnections** connections);
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
  BVConnResult(BVCONN_CALL* EnumConnectionPoints)(BVConnConnectionPointContainer* self,
                                                  BVConnEnumConnectionPoints** points);
  BVConnResult(BVCONN_CALL* FindConnectionPoint)(BVConnConnectionPointContainer* self,
                                                 const BVConnGuid* id,
                                                 BVConnConnectionPoint** point);
};

#endif
