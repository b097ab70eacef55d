#pragma once

#include <memory>
#include <vector>

#include "bvconn/automation/interface.h"

namespace bvconn::test {

/// An operation of the interface ready to run with arguments that take memory where their types
/// can, so that whatever happens from then on is the operation's own doing.
class PreparedCall {
 public:
  PreparedCall(const automation::ClassInfo& info, const automation::Member& member);
  void run() { member_.thunks.invoke(object_.get(), slots_.data()); }

 private:
  const automation::Member& member_;
  std::shared_ptr<void> object_;
  XMLDocument document_;
  std::vector<automation::Value> values_;
  std::shared_ptr<void> aggregate_;
  std::vector<const void*> slots_;
};

}  // namespace bvconn::test
