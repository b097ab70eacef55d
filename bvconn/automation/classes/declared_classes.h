#pragma once

#include "bvconn/automation/interface.h"

/// The declared classes, one function each; classes.cpp joins them into the interface.
namespace bvconn::automation {

// connector_object.cpp
const ClassInfo& connector_object_class();

// catalogues.cpp
const ClassInfo& services_class();
const ClassInfo& methods_class();

// documents.cpp
const ClassInfo& project_connector_class();
const ClassInfo& quote_connector_class();
const ClassInfo& order_connector_class();
const ClassInfo& request_for_quote_connector_class();
const ClassInfo& sales_instrument_connector_class();
const ClassInfo& acknowledgement_connector_class();
const ClassInfo& submittal_connector_class();
const ClassInfo& rma_connector_class();

// search.cpp
const ClassInfo& search_connector_class();

// invoice.cpp
const ClassInfo& invoice_connector_class();

// maintenance.cpp
const ClassInfo& maintenance_connector_class();

// print.cpp
const ClassInfo& print_connector_class();

// session.cpp
const ClassInfo& generic_connector_class();
const ClassInfo& heart_beat_connector_class();
const ClassInfo& summary_connector_class();
const ClassInfo& postal_connector_class();
const ClassInfo& export_connector_class();
const ClassInfo& document_connector_class();
const ClassInfo& config_connector_class();

}  // namespace bvconn::automation
