#pragma once

#include "bvconn/component/abi.h"

/// Calls of the objects that a host passes in.
///
/// Such an object promises that no exception comes out of it, and where the compiler believes that,
/// one that does ends the process. So these go by what lies in memory, where nothing is promised.
namespace bvconn::component {

/// As `IDispatchAbi::GetIDsOfNames` for one name; kFailed for whatever it throws.
Hresult host_id_of(IDispatchAbi& object, char16_t* name, DispatchId& id) noexcept;

/// As `IDispatchAbi::Invoke`; kFailed for whatever it throws.
Hresult host_invoke(IDispatchAbi& object, DispatchId id, std::uint16_t flags,
                    DispatchParams& parameters, VariantRecord* result,
                    ExceptionRecord* exception) noexcept;

}  // namespace bvconn::component
