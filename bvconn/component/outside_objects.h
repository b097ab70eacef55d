#pragma once

#include <memory>

#include "bvconn/component/abi.h"
#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/torvexlib/service_object.h"

/// The thread's transport and the service objects of the data access layer as objects that answer
/// by name. Null for an empty pointer.
namespace bvconn::component {

/// `Option` (written, with a key), `SOAPAction` and `Timeout` (written), `setProxy`, `NoProxy`,
/// `Send`, `Receive`.
IDispatchAbi* make_transport_object(const std::shared_ptr<HTTPTransport>& transport);
/// `name`, `invoke`, `offers`, and the operations of every service object's interface that it
/// offers, its own first of all.
IDispatchAbi* make_service_object_object(const std::shared_ptr<ServiceObject>& object);

}  // namespace bvconn::component
