#pragma once

#include "bvconn/component/abi.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/soap_node.h"

/// The objects of SOAP as objects that answer by name. Each function gives a new object with one
/// reference, null for an empty reference; they throw std::bad_alloc alone.
namespace bvconn::component {

/// `Name` and `Value` (both may be written), `Namespace`, `Type`, `Nodes`, `nil`.
IDispatchAbi* make_node_object(const SoapNode& node);
/// `Count`, `Item` (the default member), `ItemByName`, `Create`, `Append`, and enumeration.
IDispatchAbi* make_nodes_object(const SoapNodes& nodes);
/// `MethodName`, `EncodingStyle`, `Headers`, `Parameters`, `SetMethod`, `Serialize`, `Parse`.
IDispatchAbi* make_envelope_object(const SoapEnvelope& envelope);
/// A new, empty document: `load`, `xml`, `documentElement`.
IDispatchAbi* make_document_object();

}  // namespace bvconn::component
