#pragma once

#include <optional>

#include "bvconn/component/abi.h"
#include "bvconn/platform/soap/soap_node.h"

/// How the library recognises its own objects among those that a host passes in: by an interface
/// that only they have. Since another copy of the library in the same process knows the identifier
/// too, the object also learns which copy asks, and refuses a foreign one.
namespace bvconn::component {

/// An address that is different in each loaded copy of the library.
const void* module_mark() noexcept;

/// Of objects that stand for a `SoapNode`.
class INodeHandleAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId{
      0x12A8ACCD, 0xE5A4, 0x483C, {0x87, 0x85, 0xA9, 0xB3, 0x67, 0xE9, 0x5D, 0x05}};
  /// A `const SoapNode*` that lives as long as the object.
  virtual Hresult BVCONN_CALL GetNode(const void* module, const void** node) noexcept = 0;

 protected:
  ~INodeHandleAbi() = default;
};

/// The node that an object of ours stands for, an empty reference for null; nothing for an object
/// that stands for none.
std::optional<SoapNode> own_node(IUnknownAbi* object);

/// Of objects that stand for an `XMLDocument`.
class IDocumentHandleAbi : public IUnknownAbi {
 public:
  static constexpr Guid kId{
      0x94C7903A, 0x0D33, 0x40C9, {0xAB, 0xE3, 0xE5, 0x6B, 0x49, 0x54, 0xC2, 0x8B}};
  /// An `XMLDocument*` that lives as long as the object.
  virtual Hresult BVCONN_CALL GetDocument(const void* module, void** document) noexcept = 0;

 protected:
  ~IDocumentHandleAbi() = default;
};

}  // namespace bvconn::component
