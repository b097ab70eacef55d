#include "bvconn/component/memory.h"
#include "component/host.h"

namespace bvconn::test {

void clear_variant_of_library(VariantRecord* variant) {
  component::clear_variant(variant);
}
void clear_exception_of_library(ExceptionRecord* exception) {
  component::clear_exception(exception);
}

}  // namespace bvconn::test
