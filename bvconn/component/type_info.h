#pragma once

#include <cstdint>

#include "bvconn/component/abi.h"

/// What a host learns of an object beyond the names of its members: the records of the type library
/// that lies in the library's own file. There is none where the platform has no type libraries.
namespace bvconn::component {

bool has_type_info() noexcept;
/// Lets go of the file that the records were read from; they are read again when they are asked
/// for.
void release_type_info() noexcept;
/// The description of a class or of an interface as an `ITypeInfo` with one reference; kBadIndex
/// where there is none.
Hresult type_info_of(const Guid& id, void** info) noexcept;

/// Of objects that may be instances of a class that a type library describes.
class IProvideClassInfo2Abi : public IUnknownAbi {
 public:
  static constexpr Guid kId{
      0xA6BC3AC0, 0xDBAA, 0x11CE, {0x9D, 0xE3, 0x00, 0xAA, 0x00, 0x4B, 0xB8, 0x51}};
  /// Of the same interface without its last function.
  static constexpr Guid kShorterId{
      0xB196B283, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
  /// The only kind of `GetGUID`: the interface of the events that hosts connect to.
  static constexpr std::uint32_t kEvents = 1;

  virtual Hresult BVCONN_CALL GetClassInfo(void** info) noexcept = 0;
  virtual Hresult BVCONN_CALL GetGUID(std::uint32_t kind, Guid* id) noexcept = 0;

 protected:
  ~IProvideClassInfo2Abi() = default;
};

}  // namespace bvconn::component
