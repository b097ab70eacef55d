#pragma once

#include <functional>
#include <string>

#include "bvconn/platform/windows/components.h"

namespace bvconn::test {

/// What the library of components makes an object with, of the class of this place in the list of
/// service objects, counted from 0.
using MakeComponent = HRESULT (*)(std::size_t place, IDispatch** made);
/// What the library exports, for the program that brings the objects.
using UseComponents = void (*)(MakeComponent make);

/// While it lives, `TorvexLib.AuthenticationService` and the others are registered for the calling
/// thread, as classes of the library of components.
class RegisteredComponents {
 public:
  explicit RegisteredComponents(MakeComponent make);
  ~RegisteredComponents();
  RegisteredComponents(const RegisteredComponents&) = delete;
  RegisteredComponents& operator=(const RegisteredComponents&) = delete;

 private:
  HMODULE module_ = nullptr;
  HANDLE context_ = nullptr;
  ULONG_PTR cookie_ = 0;
};

}  // namespace bvconn::test
