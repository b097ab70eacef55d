#pragma once

#include "bvconn/component/abi.h"

/// What keeps the library from being unloaded: objects that live, and locks of class factories.
namespace bvconn::component {

/// Counts the object that it is a member of.
class LivingObject {
 public:
  LivingObject() noexcept;
  ~LivingObject();
  LivingObject(const LivingObject&) = delete;
  LivingObject& operator=(const LivingObject&) = delete;
};

void lock_library() noexcept;
/// kUnexpected when no lock is held.
Hresult unlock_library() noexcept;
/// kOk when nothing of the library is in use, kFalse otherwise.
Hresult can_unload() noexcept;

}  // namespace bvconn::component
