#include "bvconn/catalogues/bv_services.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn {
namespace {

constexpr std::string_view kSlots[] = {
#define BVCONN_SERVICE(property, value) #property,
#include "bvconn/catalogues/bv_services_rows.inc"
#undef BVCONN_SERVICE
};

struct Row {
  std::string_view property;
  std::string (BVServices::*value)() const;
  std::string_view expected;
};

constexpr std::array kUrnRows{
    Row{"PostalService", &BVServices::PostalService, "urn:Postal"},
    Row{"SalesInstrumentService", &BVServices::SalesInstrumentService,
        "urn:SalesInstrumentService"},
    Row{"Project", &BVServices::Project, "urn:ProjectService"},
    Row{"Quote", &BVServices::Quote, "urn:QuoteService"},
    Row{"Order", &BVServices::Order, "urn:OrderService"},
    Row{"AuthenticationService", &BVServices::AuthenticationService, "urn:AuthenticationService"},
    Row{"Heartbeat", &BVServices::Heartbeat, "urn:HeartBeatService"},
    Row{"ZeltViewService", &BVServices::ZeltViewService, "urn:ZeltViewService"},
    Row{"InventorySearch", &BVServices::InventorySearch, "urn:InventoryInquiryService"},
    Row{"Search", &BVServices::Search, "urn:SearchService"},
    Row{"Summary", &BVServices::Summary, "urn:SummaryService"},
    Row{"ProductService", &BVServices::ProductService, "urn:ProductService"},
    Row{"Submittal", &BVServices::Submittal, "urn:SubmittalService"},
    Row{"Maintenance", &BVServices::Maintenance, "urn:MaintenanceService"},
    Row{"Invoice", &BVServices::Invoice, "urn:InvoiceService"},
    Row{"Pricer", &BVServices::Pricer, "urn:PricerService"},
    Row{"RMA", &BVServices::RMA, "urn:RMAService"},
    Row{"Printing", &BVServices::Printing, "urn:PrintingService"},
};

bool is_absolute_http(const std::string& uri) {
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (uri.starts_with(scheme) && uri.size() > scheme.size() && uri[scheme.size()] != '/') {
      return true;
    }
  }
  return false;
}

TEST(BVServices, HasTheExpectedUrnInEveryRow) {
  const BVServices services;
  for (const auto& row : kUrnRows) EXPECT_EQ((services.*row.value)(), row.expected) << row.property;
}

TEST(BVServices, Has20SlotsInTheAgreedOrderTheDeploymentsOwnLast) {
  std::vector<std::string_view> expected;
  for (const auto& row : kUrnRows) expected.push_back(row.property);
  expected.push_back("ConfigService");
  expected.push_back("TorvexService");
  EXPECT_EQ(std::vector<std::string_view>(std::begin(kSlots), std::end(kSlots)), expected);
  EXPECT_EQ(std::size(kSlots), 20U);
}

TEST(BVServices, HasNoWordServiceInThePostalUrn) {
  EXPECT_EQ(BVServices().PostalService(), "urn:Postal");
}

TEST(BVServices, WritesTheHeartBeatUrnWithACapitalB) {
  EXPECT_EQ(BVServices().Heartbeat(), "urn:HeartBeatService");
}

TEST(BVServices, HasAnAbsoluteConfigServiceWithoutATrailingSlash) {
  const std::string uri = BVServices().ConfigService();
  EXPECT_TRUE(is_absolute_http(uri)) << uri;
  EXPECT_FALSE(uri.ends_with('/')) << uri;
}

TEST(BVServices, HasAnAbsoluteTorvexServiceThatEndsInASlash) {
  const std::string uri = BVServices().TorvexService();
  EXPECT_TRUE(is_absolute_http(uri)) << uri;
  EXPECT_TRUE(uri.ends_with('/')) << uri;
}

TEST(BVServices, TakesBothNamespacesOfTheDeploymentFromTheBuild) {
  EXPECT_EQ(BVServices().ConfigService(), BVCONN_CONFIG_SERVICE_URI);
  EXPECT_EQ(BVServices().TorvexService(), BVCONN_TORVEX_SERVICE_URI);
}

}  // namespace
}  // namespace bvconn
