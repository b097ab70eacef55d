#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/store/shared_rules.h"
#include "sandbox/stubs/stub.h"

namespace bvconn::sandbox {

/// The stubs of all processes that share a database, which count their answers together; they stay
/// there when the processes end. A request asks the database only where a stub fits it. What has to
/// ask fails with DatabaseError where the database is gone.
class SharedStubBook : public StubBook {
 public:
  /// `forms` are those of all requests that a stub can answer.
  SharedStubBook(const std::string& where, std::vector<const OperationForm*> forms);

  Stubs add(std::vector<StubRule> rules) override;
  Stubs all() const override;
  bool remove(std::string_view id) override;
  void clear() override;
  std::shared_ptr<const Stub> take(const Exchange& exchange) override;

 private:
  /// Nothing for one that a program of another version has written and this one cannot read.
  std::shared_ptr<Stub> read(const SharedRule& rule) const;

  std::vector<const OperationForm*> forms_;
  SharedRules rules_;
  ReadRules<Stub> read_;
};

}  // namespace bvconn::sandbox
