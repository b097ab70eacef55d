#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/faults/fault_book.h"
#include "sandbox/store/shared_rules.h"

namespace bvconn::sandbox {

/// The faults of all processes that share a database, which count together; they stay there when
/// the processes end. A request asks the database only where a fault is about it. What has to ask
/// fails with DatabaseError where the database is gone.
class SharedFaultBook : public FaultBook {
 public:
  explicit SharedFaultBook(const std::string& where);

  std::vector<std::string> add(std::vector<FaultRule> rules) override;
  /// Those that are in force as they are remain, with what they have counted; others of the same
  /// names are replaced. So processes that begin with the same rules have them once.
  void begin_with(std::vector<FaultRule> rules) override;
  bool remove(std::string_view name) override;
  std::size_t clear() override;
  std::vector<FaultInForce> list() const override;
  std::shared_ptr<const FaultRule> next(const Exchange& exchange, const Request& request) override;

 private:
  bool wants_answers() const override;
  std::string exchange_answer(Route route, const std::string& answer) override;

  SharedRules rules_;
  mutable ReadRules<FaultRule> read_;
};

}  // namespace bvconn::sandbox
