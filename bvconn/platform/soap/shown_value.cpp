#include "bvconn/platform/soap/shown_value.h"

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/raw_text.h"

namespace bvconn::detail {

ShownValue shown_value(const SoapNode& node) {
  try {
    return {.value = node.Value(), .unreadable = {}};
  } catch (const Error& error) {
    // Only these two speak of the value; lack of memory is none of its faults.
    if (error.number != error_numbers::kTypeMismatch && error.number != error_numbers::kSoapLimit) {
      throw;
    }
    const bool holds_items = node.Nodes().Count() > 0;
    return {.value = holds_items ? Variant() : Variant(raw_text(node)),
            .unreadable = error.description};
  }
}

}  // namespace bvconn::detail
