#pragma once

#include <functional>
#include <string>

#include "sandbox/operations/operations.h"

/// How families of operations add their methods, and the ways to them through the data access
/// layer.
namespace bvconn::sandbox {

using Method = std::function<void(SoapCall&)>;

/// A method of a service. It runs within a transaction, which a fault rolls back.
void add_method(Operations& operations, const std::string& service, const std::string& name,
                Method method);

/// For `Route::keys`: the one argument is the text of a whole request.
inline constexpr int kRequestText = -1;

/// An operation of the data access layer that a method answers: with the text of an envelope, that
/// of a fault too.
struct Route {
  std::string object;
  std::string operation;
  std::string service;  ///< "" where the text of the request says it
  std::string method;
  int keys;  ///< how many arguments, each the parameter in its place
  /// Whether an argument may be a whole number, or null for one that was left out.
  bool takes_numbers = false;
};

/// To be called when the method is there.
void add_route(Operations& operations, const Route& route);

}  // namespace bvconn::sandbox
