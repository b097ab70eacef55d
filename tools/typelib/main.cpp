#include <iostream>

#include "idl.h"

/// Writes the library's description for hosts, which `widl` makes a type library of.
int main() {
  std::cout << bvconn::typelib::library_idl() << std::flush;
  return std::cout ? 0 : 1;
}
