#pragma once

#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/declared_classes.h"

// The rows of connector_rows.inc as classes that can be called by name.
#define BVCONN_CLASS(name, function) \
  const ClassInfo& function() {      \
    using C = name;                  \
    static const ClassInfo info = ClassBuilder<C>(#name)
#define BVCONN_ROW(...) .BVCONN_OPERATION(__VA_ARGS__)
#define BVCONN_ROW_READ_ONLY(name) .BVCONN_READ_ONLY(name)
#define BVCONN_ROW_EVENT(name) .BVCONN_EVENT(name)
#define BVCONN_ROW_OPTIONAL(...) BVCONN_OPTIONAL(__VA_ARGS__)
#define BVCONN_ROW_REQUIRED(...) BVCONN_REQUIRED(__VA_ARGS__)
#define BVCONN_CLASS_END \
  .take();               \
  return info;           \
  }
