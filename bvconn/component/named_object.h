#pragma once

#include <string_view>

#include "bvconn/component/calls.h"
#include "bvconn/component/class_table.h"
#include "bvconn/component/counted.h"
#include "bvconn/component/type_info.h"

namespace bvconn::component {

/// An object that is called by name, with further interfaces where it needs some.
///
/// A host that has a type library asks for the identifier that its class's members have there, and
/// calls what it is given like any other `IDispatch`.
template <typename... Others>
class NamedObject : public Counted<IDispatchAbi, IProvideClassInfo2Abi, Others...>,
                    protected NamedCalls {
 public:
  /// The name that the object has in the table of classes or of results; "" for none.
  virtual std::string_view class_name() const noexcept { return {}; }

  Hresult BVCONN_CALL GetTypeInfoCount(std::uint32_t* count) noexcept final {
    if (count == nullptr) return kNullPointer;
    *count = is_described() ? 1 : 0;
    return kOk;
  }

  Hresult BVCONN_CALL GetTypeInfo(std::uint32_t index, std::uint32_t /*locale*/,
                                  void** info) noexcept final {
    if (info == nullptr) return kNullPointer;
    *info = nullptr;
    if (index != 0) return kBadIndex;
    return type_info_of(interface_id_of(class_name()), info);
  }

  Hresult BVCONN_CALL GetClassInfo(void** info) noexcept final {
    if (info == nullptr) return kNullPointer;
    return type_info_of(class_id_of(class_name()), info);
  }

  Hresult BVCONN_CALL GetGUID(std::uint32_t kind, Guid* id) noexcept final {
    if (id == nullptr) return kNullPointer;
    *id = kNullGuid;
    if (kind != IProvideClassInfo2Abi::kEvents) return kInvalidArgument;
    *id = events();
    return *id == kNullGuid ? kUnexpected : kOk;
  }

  Hresult BVCONN_CALL GetIDsOfNames(const Guid* reserved, char16_t** names, std::uint32_t count,
                                    std::uint32_t /*locale*/, DispatchId* ids) noexcept final {
    return ids_of_names(table(), reserved, names, count, ids);
  }

  Hresult BVCONN_CALL Invoke(DispatchId id, const Guid* reserved, std::uint32_t locale,
                             std::uint16_t flags, DispatchParams* parameters, VariantRecord* result,
                             ExceptionRecord* exception,
                             std::uint32_t* argument_index) noexcept final {
    // An event raised by the call may make the host let go of the object.
    const auto alive = Reference<IDispatchAbi>::share(this);
    return invoke(*this, {.id = id,
                          .reserved = reserved,
                          .locale = locale,
                          .flags = flags,
                          .parameters = parameters,
                          .result = result,
                          .exception = exception,
                          .argument_index = argument_index});
  }

 protected:
  bool is_also(const Guid& id) const noexcept override {
    return !(id == kNullGuid) && id == interface_id_of(class_name());
  }
  /// The interface of its events; kNullGuid for none.
  virtual Guid events() const noexcept { return kNullGuid; }

 private:
  bool is_described() const noexcept {
    return !(class_id_of(class_name()) == kNullGuid) && has_type_info();
  }
};

}  // namespace bvconn::component
