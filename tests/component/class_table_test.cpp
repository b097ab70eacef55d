#include "bvconn/component/class_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "bvconn/automation/interface.h"
#include "bvconn/component/class_factory.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::component {
namespace {

TEST(ClassTable, HoldsTheClassesOfTheInterfaceAndThreeHelpers) {
  std::set<std::string_view> of_interface;
  for (const automation::ClassInfo* info : automation::classes()) of_interface.insert(info->name);
  std::set<std::string_view> of_table;
  std::set<std::string_view> helpers;
  for (const ComponentClass& row : component_classes()) {
    (row.helper ? helpers : of_table).insert(row.name);
  }
  EXPECT_EQ(of_table, of_interface);
  EXPECT_EQ(of_table.size(), 22u);
  EXPECT_EQ(helpers, (std::set<std::string_view>{"SoapNode", "Support", "XMLDocument"}));
}

TEST(ClassTable, EveryRowHasAMaker) {
  for (const ComponentClass& row : component_classes()) {
    EXPECT_TRUE(maker_of(row.id)) << row.name;
  }
}

// Calls by name do not look at case, so two such members would hide each other.
TEST(ClassTable, NoClassHasTwoMembersThatDifferInCaseAlone) {
  for (const automation::ClassInfo* info : automation::classes()) {
    std::set<std::string> names;
    for (const automation::Member& member : info->members) {
      EXPECT_TRUE(names.insert(conversions::upper_case(member.name)).second)
          << info->name << "." << member.name;
      std::set<std::string> arguments;
      for (const automation::Argument& argument : member.arguments) {
        EXPECT_TRUE(arguments.insert(conversions::upper_case(argument.name)).second)
            << info->name << "." << member.name << " " << argument.name;
      }
    }
  }
}

TEST(ClassTable, NoIdentifierStandsTwice) {
  std::set<std::string> ids;
  for (const ComponentClass& row : component_classes()) ids.insert(guid_text(row.id));
  ids.insert(guid_text(kHeartBeatEvents));
  EXPECT_EQ(ids.size(), component_classes().size() + 1);
}

// Installed applications hold them, so that these texts must never change.
TEST(ClassTable, IdentifiersAreWhatApplicationsHold) {
  EXPECT_EQ(guid_text(find_component_class("BVConn.BVConnectorObject")->id),
            "{9688093D-FAE0-475A-81F6-288D6628AF5C}");
  EXPECT_EQ(guid_text(find_component_class("BVConn.BVInvoiceConnector")->id),
            "{B1D1DDEA-A3A5-4FD6-AE06-630F3CBF7E97}");
  EXPECT_EQ(guid_text(find_component_class("BVConn.SoapNode")->id),
            "{3F0C61F3-D917-4DF8-9AFE-3905DCF93878}");
  EXPECT_EQ(guid_text(find_component_class("BVConn.Support")->id),
            "{12B048C8-F020-4C64-B507-C7E928DFECC5}");
}

TEST(ClassTable, ProgramIdentifiersAreFoundInAnyCase) {
  const ComponentClass* row = find_component_class("bvconn.bvINVOICEconnector");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->name, "BVInvoiceConnector");
  EXPECT_EQ(prog_id_of(*row), "BVConn.BVInvoiceConnector");
  EXPECT_EQ(find_component_class("BVInvoiceConnector"), nullptr);
  EXPECT_EQ(find_component_class("BVConn.BVNothing"), nullptr);
}

TEST(ClassTable, AnIdentifierThatIsNotInItHasNoMaker) {
  EXPECT_FALSE(maker_of(kNullGuid));
  EXPECT_FALSE(maker_of(kHeartBeatEvents));
}

}  // namespace
}  // namespace bvconn::component
