#pragma once

#include <cstdint>

#include "bvconn/component/abi_records.h"
#include "bvconn/component/bvconn_component.h"

/// The binary interface between the library and a component host in C++: the records, the
/// interfaces of the objects, the exported functions. A host includes this header, loads the
/// library and looks the functions up by name. Hosts in C include bvconn_component.h.
///
/// An interface is a class of pure virtual functions without a virtual destructor: an object's
/// first word points at a plain list of function pointers, in the order of the declarations, whose
/// first argument is the object. BVCONN_CALL stands before every function, also before those of the
/// host. No exception passes in either direction, which is why every function is noexcept.
namespace bvconn::component {

// Interfaces. `kId` is the identifier of each.

class IUnknownAbi {
 public:
  static constexpr Guid kId = BVCONN_IID_UNKNOWN;
  virtual Hresult BVCONN_CALL QueryInterface(const Guid* id, void** object) noexcept = 0;
  virtual std::uint32_t BVCONN_CALL AddRef() noexcept = 0;
  virtual std::uint32_t BVCONN_CALL Release() noexcept = 0;

 protected:
  ~IUnknownAbi() = default;
};

class IClassFactoryAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId = BVCONN_IID_CLASS_FACTORY;
  virtual Hresult BVCONN_CALL CreateInstance(IUnknownAbi* outer, const Guid* id,
                                             void** object) noexcept = 0;
  virtual Hresult BVCONN_CALL LockServer(std::int32_t lock) noexcept = 0;

 protected:
  ~IClassFactoryAbi() = default;
};

class IDispatchAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId = BVCONN_IID_DISPATCH;
  virtual Hresult BVCONN_CALL GetTypeInfoCount(std::uint32_t* count) noexcept = 0;
  virtual Hresult BVCONN_CALL GetTypeInfo(std::uint32_t index, std::uint32_t locale,
                                          void** info) noexcept = 0;
  virtual Hresult BVCONN_CALL GetIDsOfNames(const Guid* reserved, char16_t** names,
                                            std::uint32_t count, std::uint32_t locale,
                                            DispatchId* ids) noexcept = 0;
  virtual Hresult BVCONN_CALL Invoke(DispatchId id, const Guid* reserved, std::uint32_t locale,
                                     std::uint16_t flags, DispatchParams* parameters,
                                     VariantRecord* result, ExceptionRecord* exception,
                                     std::uint32_t* argument_index) noexcept = 0;

 protected:
  ~IDispatchAbi() = default;
};

/// The shape that all enumerators share. `Next` gives kFalse when fewer than `wanted` were left;
/// `fetched` may be null when one is wanted.
template <typename Interface, typename Item>
class EnumeratorAbi : public IUnknownAbi {
 public:
  virtual Hresult BVCONN_CALL Next(std::uint32_t wanted, Item* items,
                                   std::uint32_t* fetched) noexcept = 0;
  virtual Hresult BVCONN_CALL Skip(std::uint32_t count) noexcept = 0;
  virtual Hresult BVCONN_CALL Reset() noexcept = 0;
  virtual Hresult BVCONN_CALL Clone(Interface** copy) noexcept = 0;

 protected:
  ~EnumeratorAbi() = default;
};

class IEnumVariantAbi : public EnumeratorAbi<IEnumVariantAbi, VariantRecord> {
 public:
  static constexpr Guid kId = BVCONN_IID_ENUM_VARIANT;

 protected:
  ~IEnumVariantAbi() = default;
};

class IEnumConnectionsAbi : public EnumeratorAbi<IEnumConnectionsAbi, ConnectionRecord> {
 public:
  static constexpr Guid kId = BVCONN_IID_ENUM_CONNECTIONS;

 protected:
  ~IEnumConnectionsAbi() = default;
};

class IConnectionPointContainerAbi;

class IConnectionPointAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId = BVCONN_IID_CONNECTION_POINT;
  virtual Hresult BVCONN_CALL GetConnectionInterface(Guid* id) noexcept = 0;
  virtual Hresult BVCONN_CALL
  GetConnectionPointContainer(IConnectionPointContainerAbi** owner) noexcept = 0;
  virtual Hresult BVCONN_CALL Advise(IUnknownAbi* sink, std::uint32_t* cookie) noexcept = 0;
  virtual Hresult BVCONN_CALL Unadvise(std::uint32_t cookie) noexcept = 0;
  virtual Hresult BVCONN_CALL EnumConnections(IEnumConnectionsAbi** connections) noexcept = 0;

 protected:
  ~IConnectionPointAbi() = default;
};

class IEnumConnectionPointsAbi
    : public EnumeratorAbi<IEnumConnectionPointsAbi, IConnectionPointAbi*> {
 public:
  static constexpr Guid kId = BVCONN_IID_ENUM_CONNECTION_POINTS;

 protected:
  ~IEnumConnectionPointsAbi() = default;
};

class IConnectionPointContainerAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId = BVCONN_IID_CONNECTION_POINT_CONTAINER;
  virtual Hresult BVCONN_CALL EnumConnectionPoints(IEnumConnectionPointsAbi** points) noexcept = 0;
  virtual Hresult BVCONN_CALL FindConnectionPoint(const Guid* id,
                                                  IConnectionPointAbi** point) noexcept = 0;

 protected:
  ~IConnectionPointContainerAbi() = default;
};

// The exported functions, as types to cast a looked-up symbol to.

using ::BVConnAllocStringFunction;
using ::BVConnClearExceptionFunction;
using ::BVConnClearVariantFunction;
using ::BVConnCopyVariantFunction;
using ::BVConnCreateArrayFunction;
using ::BVConnCreateStringArrayFunction;
using ::BVConnDestroyArrayFunction;
using ::BVConnFindClassFunction;
using ::BVConnFreeStringFunction;
using ::BVConnStringLengthFunction;
using ::DllCanUnloadNowFunction;
using ::DllGetClassObjectFunction;
using ::DllInstallFunction;
using ::DllRegisterServerFunction;
using ::DllUnregisterServerFunction;

}  // namespace bvconn::component
