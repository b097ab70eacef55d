#include "bvconn/dal/dal_switch.h"

#include <string>

#include "bvconn/core/logging.h"

namespace bvconn {
namespace Global {
namespace {

constexpr LogBlock kIsDalMethodDisabledLog{.cls = "Global", .method = "isDALMethodDisabled"};

}  // namespace

bool isDALMethodDisabled(std::string_view method, std::string_view service) {
  try {
    if (session().AllowDisabledDALMethods) return false;
    std::string key(service);
    key.append(".").append(method).append("|");
    return session().DisabledDALServices.find(key) != std::string::npos;
  } catch (const Error& error) {
    plain_tail(kIsDalMethodDisabledLog, error);
  }
}

}  // namespace Global

namespace dal {

#define BVCONN_DAL_SERVICE(name)      \
  dal::name Services::name() const {  \
    return dal::name(session().name); \
  }
BVCONN_DAL_SERVICE(AuthenticationService)
BVCONN_DAL_SERVICE(SummaryService)
BVCONN_DAL_SERVICE(HeartBeatService)
BVCONN_DAL_SERVICE(SearchService)
BVCONN_DAL_SERVICE(ProjectService)
BVCONN_DAL_SERVICE(QuoteService)
BVCONN_DAL_SERVICE(OrderService)
BVCONN_DAL_SERVICE(MaintenanceService)
BVCONN_DAL_SERVICE(InventoryInquiryService)
BVCONN_DAL_SERVICE(RMAService)
BVCONN_DAL_SERVICE(PrintingService)
BVCONN_DAL_SERVICE(SubmittalService)
BVCONN_DAL_SERVICE(SalesInstrumentService)
#undef BVCONN_DAL_SERVICE

}  // namespace dal
}  // namespace bvconn
