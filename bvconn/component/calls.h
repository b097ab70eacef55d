#pragma once

#include <cstdint>
#include <span>

#include "bvconn/component/members.h"
#include "bvconn/component/memory.h"

namespace bvconn::component {

/// Where hosts look for the numbers from 1 to 65535, which as they stand are no failures.
inline constexpr std::uint32_t kSmallNumbers = 0x800A0000;

/// What an object has to bring for being called by name.
class NamedCalls {
 public:
  virtual const MemberTable& table() const = 0;
  /// Calls or reads a member. There is one value for each of its arguments, of the argument's type,
  /// or nothing where an optional one was left out.
  virtual OwnedVariant call(const NamedMember& member,
                            std::span<const automation::Value> values) = 0;
  /// Sets a property; the last of the values is the one to set.
  virtual void put(const NamedMember& member, std::span<const automation::Value> values) = 0;

 protected:
  ~NamedCalls() = default;
};

/// The parts of a request to `IDispatch::Invoke`.
struct InvokeRequest {
  DispatchId id = kUnknownId;
  const Guid* reserved = nullptr;
  std::uint32_t locale = 0;
  std::uint16_t flags = 0;
  DispatchParams* parameters = nullptr;
  VariantRecord* result = nullptr;
  ExceptionRecord* exception = nullptr;
  std::uint32_t* argument_index = nullptr;
};

/// `IDispatch::Invoke`: finds the member, puts the arguments in their places and converts them, and
/// turns whatever the call raises into a result code and an exception record.
Hresult invoke(NamedCalls& object, const InvokeRequest& request) noexcept;

}  // namespace bvconn::component
