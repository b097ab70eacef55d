#include "bvconn/dal/service_objects.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/dal/dal_switch.h"
#include "bvconn/platform/error.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn::dal {
namespace {

using bvconn::test::error_of;

TEST(ServiceObjects, FailWithObjectNotSetWhereNoneWasMade) {
  bvconn::test::RecordingPlatform world;
  for (const Error& error :
       {error_of([] { Services().PrintingService().GetPrintInfos(); }),
        error_of([] { Services().SearchService().SearchForCustomer("C1"); }),
        error_of([] { Services().AuthenticationService().GetDisabledServices(); })}) {
    EXPECT_EQ(error.number, 91);
    EXPECT_EQ(error.source, "BVConn");
  }
  EXPECT_EQ(world.record.dal, std::vector<std::string>());
}

TEST(ServiceObjects, LetAnOperationsOwnErrorThrough) {
  bvconn::test::RecordingPlatform world;
  world.use_dal();
  world.dal_errors.insert(
      {"PrintingService.GetPrintInfos", Error(-77, "Printing", "out of paper")});
  const Error error = error_of([&] { Services().PrintingService().GetPrintInfos(); });
  EXPECT_EQ(error.number, -77);
  EXPECT_EQ(error.source, "Printing");
  EXPECT_EQ(error.description, "out of paper");
}

// The booleans of a line, in order, as a text of 0 and 1.
std::string booleans_of(const std::string& line) {
  std::string bits;
  for (std::size_t at = line.find('('); at != std::string::npos; at = line.find(", ", at + 1)) {
    const std::string_view rest = std::string_view(line).substr(at);
    if (rest.find("true") == (at == line.find('(') ? 1U : 2U)) bits += '1';
    if (rest.find("false") == (at == line.find('(') ? 1U : 2U)) bits += '0';
  }
  return bits;
}

std::string only(std::size_t place, std::size_t size) {
  std::string bits(size, '0');
  bits[place] = '1';
  return bits;
}

// Booleans have two values, so one call cannot tell twenty of them apart: each is true once alone.
TEST(ServiceObjects, KeepThe20SwitchesOfTheApprovalQueueApart) {
  bvconn::test::RecordingPlatform world;
  world.use_dal();
  world.dal_answers["SearchService.SearchApprovalQueue"] = "";
  for (std::size_t place = 0; place < 20; ++place) {
    std::array<bool, 20> b{};
    b[place] = true;
    Services().SearchService().SearchApprovalQueue(
        "A", "B", "P", "M", "S", b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7], b[8], b[9], b[10],
        b[11], b[12], b[13], b[14], b[15], b[16], b[17], b[18], "I", b[19]);
    EXPECT_EQ(booleans_of(world.record.dal.back()), only(place, 20));
  }
}

TEST(ServiceObjects, KeepTheSwitchesOfTheOtherSearchesApart) {
  bvconn::test::RecordingPlatform world;
  world.use_dal();
  for (const auto* name : {"SearchForCustomers", "SearchForNatlAccts"}) {
    world.dal_answers[std::string("SearchService.") + name] = "";
  }
  for (std::size_t place = 0; place < 3; ++place) {
    std::array<bool, 3> b{};
    b[place] = true;
    Services().SearchService().SearchForCustomers("1", "2", "3", "4", "5", "6", "7", "8", "9", "10",
                                                  b[0], b[1], b[2]);
    EXPECT_EQ(booleans_of(world.record.dal.back()), only(place, 3));
    Services().SearchService().SearchForNatlAccts("1", "2", "3", "4", b[0], b[1], b[2]);
    EXPECT_EQ(booleans_of(world.record.dal.back()), only(place, 3));
  }
}

TEST(ServiceObjects, PassTheVariantOfTheOrderExportByItsOwnType) {
  bvconn::test::RecordingPlatform world;
  world.use_dal();
  world.dal_answers["SearchService.OrdersSearchEmailExport"] = "";
  const auto last_argument = [&](const Variant& value) {
    Services().SearchService().OrdersSearchEmailExport("", "", "", "", "", "", "", "", "", "", "",
                                                       "", "", "", "", "", "", "", "", "", false,
                                                       false, "", "", value);
    const std::string& line = world.record.dal.back();
    return line.substr(line.rfind(", ") + 2);
  };
  EXPECT_EQ(last_argument(Variant("PO 1")), "\"PO 1\") by name");
  EXPECT_EQ(last_argument(Variant(true)), "true) by name");
  EXPECT_EQ(last_argument(Variant()), "empty) by name");
  EXPECT_EQ(last_argument(Variant(std::int16_t{7})), "int16 7) by name");
}

}  // namespace
}  // namespace bvconn::dal
