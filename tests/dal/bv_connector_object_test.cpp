#include "bvconn/dal/bv_connector_object.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using Lines = std::vector<std::string>;
using test::error_of;
using test::RecordingPlatform;

void script_login(RecordingPlatform& world) {
  world.dal_answers["AuthenticationService.SetServerUrl"] = "";
  world.dal_answers["AuthenticationService.Login"] = "welcome";
  world.dal_answers["AuthenticationService.GetDisabledServices"] = "urn:QuoteService.save|";
}

TEST(BVConnectorObject, ReadsAndWritesTheSessionOneToOne) {
  RecordingPlatform world;
  BVConnectorObject object;
  object.UsingTorvexDAL(true);
  object.AllowDisabledDALMethods(true);
  object.UseDALSave(true);
  object.GetDisabledDALServices("list");
  object.DALUrl("url");
  object.UserName("user");
  object.Password("password");
  object.AppVer("version");
  object.SalesOrg("organisation");
  const SessionState& state = session();
  EXPECT_TRUE(state.UsingTorvexDAL);
  EXPECT_TRUE(state.AllowDisabledDALMethods);
  EXPECT_TRUE(state.UseDALSave);
  EXPECT_EQ(state.DisabledDALServices, "list");
  EXPECT_EQ(state.DALUrl, "url");
  EXPECT_EQ(state.UserName, "user");
  EXPECT_EQ(state.Password, "password");
  EXPECT_EQ(state.AppVer, "version");
  EXPECT_EQ(state.SalesOrg, "organisation");
  EXPECT_TRUE(object.UsingTorvexDAL());
  EXPECT_TRUE(object.AllowDisabledDALMethods());
  EXPECT_TRUE(object.UseDALSave());
  EXPECT_EQ(object.GetDisabledDALServices(), "list");
  EXPECT_EQ(object.DALUrl(), "url");
  EXPECT_TRUE(world.record.all.empty()) << "plain getters and setters log nothing";
}

TEST(InitTorvexDAL, MakesTheFifteenObjectsInOrderLogsInAndReadsTheList) {
  RecordingPlatform world;
  script_login(world);
  BVConnectorObject object;
  object.UserName("user");
  object.Password("password");
  object.AppVer("9.1");
  object.SalesOrg("1000");
  object.InitTorvexDAL("http://dal.example/");
  EXPECT_EQ(world.record.all,
            (Lines{"make AuthenticationService", "make SummaryService", "make HeartBeatService",
                   "make SearchService", "make ProjectService", "make QuoteService",
                   "make OrderService", "make MaintenanceService", "make InventoryInquiryService",
                   "make RMAService", "make InvoiceService", "make PriceAndAvailabilityService",
                   "make PrintingService", "make SubmittalService", "make SalesInstrumentService",
                   "AuthenticationService.SetServerUrl(\"http://dal.example/\")",
                   "AuthenticationService.Login(\"user\", \"password\", \"9.1\", \"US\")",
                   "AuthenticationService.GetDisabledServices()"}));
  EXPECT_EQ(object.DALUrl(), "http://dal.example/");
  EXPECT_EQ(object.GetDisabledDALServices(), "urn:QuoteService.save|");
  EXPECT_FALSE(object.UsingTorvexDAL()) << "it does not turn the route on";
}

TEST(InitTorvexDAL, PassesTheCountryOfTheSalesOrganisation) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"2200", "CAN"}, {"2200 ", "US"}, {"", "US"}, {"2201", "US"}};
  for (const auto& [sales_org, country] : cases) {
    RecordingPlatform world;
    script_login(world);
    BVConnectorObject object;
    object.SalesOrg(sales_org);
    object.InitTorvexDAL("u");
    EXPECT_EQ(world.record.dal.at(1),
              "AuthenticationService.Login(\"\", \"\", \"\", \"" + country + "\")");
  }
}

TEST(InitTorvexDAL, RenewsObjectsAndListAndLeavesTheSwitch) {
  RecordingPlatform world;
  script_login(world);
  BVConnectorObject object;
  object.InitTorvexDAL("one");
  object.UseTorvexDAL();
  const auto before = object.OrderService();
  world.dal_answers["AuthenticationService.GetDisabledServices"] = "another|";
  object.InitTorvexDAL("two");
  EXPECT_NE(object.OrderService(), before);
  EXPECT_EQ(object.GetDisabledDALServices(), "another|");
  EXPECT_TRUE(object.UsingTorvexDAL());
}

TEST(InitTorvexDAL, AFailedLoginIsSilentAndKeepsTheListAndTheObjects) {
  RecordingPlatform world;
  script_login(world);
  world.dal_errors.emplace("AuthenticationService.Login",
                           Error(error_numbers::kCannotConnect, "AuthenticationService", "dead"));
  BVConnectorObject object;
  object.GetDisabledDALServices("before|");
  EXPECT_NO_THROW(object.InitTorvexDAL("http://dead/"));
  EXPECT_EQ(object.GetDisabledDALServices(), "before|");
  EXPECT_NE(object.SalesInstrumentService(), nullptr);
  EXPECT_EQ(object.DALUrl(), "http://dead/");
  EXPECT_FALSE(object.UsingTorvexDAL());
  EXPECT_TRUE(world.record.log.empty());
  EXPECT_TRUE(world.record.messages.empty());
}

TEST(InitTorvexDAL, AnObjectThatCannotBeMadeEndsItThereAndKeepsTheEarlierOnes) {
  RecordingPlatform world;
  script_login(world);
  world.dal_unmakeable.emplace("QuoteService", Error(429, "TorvexLib", "cannot make it"));
  BVConnectorObject object;
  EXPECT_NO_THROW(object.InitTorvexDAL("u"));
  EXPECT_NE(object.ProjectService(), nullptr);
  EXPECT_EQ(object.QuoteService(), nullptr);
  EXPECT_TRUE(world.record.dal.empty());
}

TEST(InitTorvexDAL, WhateverAnObjectOrItsFactoryThrowsEndsItSilently) {
  const std::vector<std::function<void()>> thrown{
      [] { throw std::bad_alloc(); }, [] { throw std::runtime_error("words"); }, [] { throw 42; }};
  for (const auto& raise : thrown) {
    for (const std::string where : {"AuthenticationService.SetServerUrl", "make QuoteService"}) {
      RecordingPlatform world;
      script_login(world);
      world.on_line = [&](const std::string& line) {
        if (line.starts_with(where)) raise();
      };
      platform::Platform failing = platform::current();
      failing.service_object = [&, make = failing.service_object](std::string_view name) {
        if (where == std::string("make ").append(name)) raise();
        return make(name);
      };
      const platform::ScopedPlatform scope(failing);
      BVConnectorObject object;
      EXPECT_NO_THROW(object.InitTorvexDAL("http://dal/"));
      EXPECT_EQ(object.DALUrl(), "http://dal/");
      EXPECT_NE(object.ProjectService(), nullptr);
      EXPECT_EQ(object.QuoteService() != nullptr, where.starts_with("Authentication"));
      EXPECT_TRUE(world.record.log.empty());
      EXPECT_TRUE(world.record.messages.empty());
    }
  }
}

TEST(BVConnectorObject, GivesWhatThePlatformThrowsAsAnError) {
  RecordingPlatform world;
  platform::Platform failing = platform::current();
  failing.transport = []() -> std::shared_ptr<HTTPTransport> {
    throw std::runtime_error("its words");
  };
  failing.logger = []() -> std::shared_ptr<SessionLogger> { throw std::bad_alloc(); };
  const platform::ScopedPlatform scope(failing);
  const BVConnectorObject object;
  const Error transport = error_of([&] { object.HTTPTransportObject(); });
  EXPECT_EQ(transport.number, error_numbers::from_bits(0x80004005));
  EXPECT_EQ(transport.source, "BVConn");
  EXPECT_EQ(transport.description, "its words");
  const Error logger = error_of([&] { object.SendDALMessageToLog("method", "message"); });
  EXPECT_EQ(logger.number, 7);
  EXPECT_EQ(logger.source, "BVConn");
}

TEST(UseTorvexDAL, TurnsTheRouteAndTheSavesOn) {
  RecordingPlatform world;
  BVConnectorObject object;
  object.UseTorvexDAL();
  EXPECT_TRUE(object.UsingTorvexDAL());
  EXPECT_TRUE(object.UseDALSave());
  EXPECT_TRUE(world.record.all.empty());
}

TEST(SearchServiceGetter, GivesTheHeartBeatObjectAndOnlyIfItOffersTheSearchInterface) {
  RecordingPlatform world;
  BVConnectorObject object;
  EXPECT_EQ(object.SearchService(), nullptr) << "an empty field gives an empty reference";
  world.use_dal();
  const Error error = error_of([&] { object.SearchService(); });
  EXPECT_EQ(error.number, 13);
  world.dal_interfaces["HeartBeatService"] = {"SearchService"};
  EXPECT_EQ(object.SearchService(), session().HeartBeatService);
  EXPECT_NE(object.SearchService(), session().SearchService);
}

TEST(ServiceGetters, GiveTheFieldsAsTheyStand) {
  RecordingPlatform world;
  BVConnectorObject object;
  EXPECT_EQ(object.InvoiceService(), nullptr);
  world.use_dal();
  using namespace std::string_view_literals;
#define BVCONN_SERVICE_OBJECT(field, ...)      \
  if (#field != "SearchService"sv) {           \
    EXPECT_EQ(object.field()->name(), #field); \
  }
#include "bvconn/platform/torvexlib/service_object_rows.inc"
}

}  // namespace
}  // namespace bvconn
