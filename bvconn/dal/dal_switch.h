#pragma once

#include <string_view>

#include "bvconn/core/session_state.h"
#include "bvconn/dal/service_objects.h"

namespace bvconn {

namespace Global {

/// Whether the server has taken a method off the data access layer route: `method` is a wire name,
/// `service` a URN. The key has no delimiter in front, so the tail of a longer entry matches too.
bool isDALMethodDisabled(std::string_view method, std::string_view service);

}  // namespace Global

namespace dal {

/// The calling thread's service objects, typed. An object that was not made fails with 91 when an
/// operation is called on it.
class Services {
 public:
  dal::AuthenticationService AuthenticationService() const;
  dal::SummaryService SummaryService() const;
  dal::HeartBeatService HeartBeatService() const;
  dal::SearchService SearchService() const;
  dal::ProjectService ProjectService() const;
  dal::QuoteService QuoteService() const;
  dal::OrderService OrderService() const;
  dal::MaintenanceService MaintenanceService() const;
  dal::InventoryInquiryService InventoryInquiryService() const;
  dal::RMAService RMAService() const;
  dal::PrintingService PrintingService() const;
  dal::SubmittalService SubmittalService() const;
  dal::SalesInstrumentService SalesInstrumentService() const;
};

}  // namespace dal
}  // namespace bvconn
