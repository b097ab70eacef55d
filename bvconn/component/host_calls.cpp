#include "bvconn/component/host_calls.h"

#include <cstring>

namespace bvconn::component {
namespace {

// The functions of `IDispatchAbi` in their order, as an object's first word points at them.
struct DispatchTable {
  const void* unknown[3];
  const void* type_info[2];
  Hresult(BVCONN_CALL* ids_of_names)(IDispatchAbi* object, const Guid* reserved, char16_t** names,
                                     std::uint32_t count, std::uint32_t locale, DispatchId* ids);
  Hresult(BVCONN_CALL* invoke)(IDispatchAbi* object, DispatchId id, const Guid* reserved,
                               std::uint32_t locale, std::uint16_t flags,
                               DispatchParams* parameters, VariantRecord* result,
                               ExceptionRecord* exception, std::uint32_t* argument_index);
};

const DispatchTable& table_of(const IDispatchAbi& object) {
  const DispatchTable* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
  return *table;
}

}  // namespace

Hresult host_id_of(IDispatchAbi& object, char16_t* name, DispatchId& id) noexcept {
  try {
    return table_of(object).ids_of_names(&object, &kNullGuid, &name, 1, 0, &id);
  } catch (...) {
    return kFailed;
  }
}

Hresult host_invoke(IDispatchAbi& object, DispatchId id, std::uint16_t flags,
                    DispatchParams& parameters, VariantRecord* result,
                    ExceptionRecord* exception) noexcept {
  try {
    return table_of(object).invoke(&object, id, &kNullGuid, 0, flags, &parameters, result,
                                   exception, nullptr);
  } catch (...) {
    return kFailed;
  }
}

}  // namespace bvconn::component
