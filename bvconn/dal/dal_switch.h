#pragma once

#include <string_view>

#include "bvconn/core/session_state.h"
#include "bvconn/dal/service_objects.h"

namespace bvconn {

namespace Global {

/// Whether the server has taken a method off the data access layer route: `method` is a wire name,
/// `service` a URN. The key has no delimiter in front, so the tail of a longer entry matches too.
bool isDALMethodDisabled(std::string_view method, std::string_view service);

}  // namespace Global

namespace dal {

/// The calling thread's service objects, typed. An object that was not made fails with 91 when an
/// operation is called on it.
class Services {
 public:
#define BVCONN_SERVICE_OBJECT(name, ...) \
  dal::name name() const {               \
    return dal::name(session().name);    \
  }
#include "bvconn/platform/torvexlib/service_object_rows.inc"
};

}  // namespace dal
}  // namespace bvconn
