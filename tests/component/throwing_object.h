#pragma once

#include "bvconn/component/abi.h"

namespace bvconn::test {

/// An object of a host in C++ that breaks its promise: it throws. Its functions stand in the order
/// of `IDispatchAbi`, without the promise.
class ThrowingObject final {
 public:
  using Guid = component::Guid;
  using Hresult = component::Hresult;

  /// One that knows every name, or throws when it is asked for one.
  explicit ThrowingObject(bool knows_names) : knows_names_(knows_names) {}

  virtual Hresult BVCONN_CALL QueryInterface(const Guid* id, void** object) {
    const bool knows = *id == component::IUnknownAbi::kId || *id == component::IDispatchAbi::kId;
    *object = knows ? this : nullptr;
    return knows ? component::kOk : component::kNoInterface;
  }
  virtual std::uint32_t BVCONN_CALL AddRef() { return 2; }
  virtual std::uint32_t BVCONN_CALL Release() { return 1; }
  virtual Hresult BVCONN_CALL GetTypeInfoCount(std::uint32_t*) { throw 1; }
  virtual Hresult BVCONN_CALL GetTypeInfo(std::uint32_t, std::uint32_t, void**) { throw 1; }
  virtual Hresult BVCONN_CALL GetIDsOfNames(const Guid*, char16_t**, std::uint32_t, std::uint32_t,
                                            component::DispatchId* ids) {
    ++calls;
    if (!knows_names_) throw 1;
    ids[0] = 7;
    return component::kOk;
  }
  virtual Hresult BVCONN_CALL Invoke(component::DispatchId, const Guid*, std::uint32_t,
                                     std::uint16_t, component::DispatchParams*,
                                     component::VariantRecord*, component::ExceptionRecord*,
                                     std::uint32_t*) {
    ++calls;
    throw 1;
  }

  component::IDispatchAbi* get() { return reinterpret_cast<component::IDispatchAbi*>(this); }

  int calls = 0;

 private:
  bool knows_names_;
};

}  // namespace bvconn::test
