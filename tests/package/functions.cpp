// What the headers declare beside the classes can be linked.
#include <cstdio>

#include "bvconn/bvconn.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/exchange/wire_facts.h"

int main() {
  using bvconn::Variant;
  bvconn::SessionState& session = bvconn::session();
  session.clock().now();
  session.Logger().LogMask();
  const bool shares_its_transport = session.Transport() == session.Transport();
  const bool knows_names = session.Methods().GetAllRemarks() != session.Services().Submittal();
  const Variant two(bvconn::VariantArray({Variant(1), Variant(2)}));
  const Variant other(bvconn::VariantArray({Variant(1), Variant(3)}));
  const bool compares = two == Variant(two) && !(two == other);
  const bool not_sent =
      bvconn::outcome_by_number(bvconn::error_numbers::kCannotConnect) == bvconn::Outcome::kNotSent;
  std::printf("%d%d%d%d\n", shares_its_transport, knows_names, compares, not_sent);
}
