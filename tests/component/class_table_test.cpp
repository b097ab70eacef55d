#include "bvconn/component/class_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <string>
#include <vector>

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

/// The lines of the literal table, without its comments.
std::vector<std::string> literal_identifiers() {
  std::ifstream file(BVCONN_IDENTIFIERS);
  EXPECT_TRUE(file.is_open()) << "cannot read " << BVCONN_IDENTIFIERS;
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.front() != '#') lines.push_back(line);
  }
  return lines;
}

template <class Row>
void add_lines(std::vector<std::string>& lines, std::string_view kind, const Row& row) {
  const std::string name(row.name);
  lines.push_back(std::string(kind) + " " + name + " " + guid_text(row.id));
  lines.push_back("members of " + name + " " + guid_text(row.interface_id));
}

// Installed applications and the registry hold them, so that none of them may ever change.
TEST(ClassTable, IdentifiersAreWhatApplicationsHold) {
  std::vector<std::string> lines{"type library " + guid_text(kTypeLibrary) + " " +
                                     std::to_string(kTypeLibraryMajor) + "." +
                                     std::to_string(kTypeLibraryMinor),
                                 "events of BVHeartBeatConnector " + guid_text(kHeartBeatEvents)};
  for (const ComponentClass& row : component_classes()) {
    add_lines(lines, row.helper ? "helper" : "class", row);
  }
  for (const ResultObject& row : result_objects()) add_lines(lines, "result", row);
  EXPECT_EQ(lines, literal_identifiers());
}

TEST(ClassTable, NoIdentifierStandsTwice) {
  std::set<std::string> ids{guid_text(kHeartBeatEvents), guid_text(kTypeLibrary),
                            guid_text(kNullGuid)};
  std::size_t all = ids.size();
  const auto add = [&](const auto& row) {
    ids.insert({guid_text(row.id), guid_text(row.interface_id)});
    all += 2;
  };
  std::ranges::for_each(component_classes(), add);
  std::ranges::for_each(result_objects(), add);
  EXPECT_EQ(ids.size(), all);
  EXPECT_EQ(all, 3u + 2u * (25u + 3u));
}

TEST(ClassTable, MembersAreIdentifiedByTheNameOfTheirObject) {
  EXPECT_EQ(guid_text(interface_id_of("BVConnectorObject")),
            "{5FCAE8F3-C878-4447-B912-482ADFC8848C}");
  EXPECT_EQ(interface_id_of("SoapNode"), find_component_class("BVConn.SoapNode")->interface_id);
  EXPECT_EQ(interface_id_of("SoapNodes"), result_objects().front().interface_id);
  EXPECT_EQ(interface_id_of("SearchService"), kNullGuid);
  EXPECT_EQ(class_id_of("SoapNode"), find_component_class("BVConn.SoapNode")->id);
  EXPECT_EQ(class_id_of("SoapNodes"), result_objects().front().id);
  EXPECT_EQ(class_id_of("SearchService"), kNullGuid);
}

TEST(ClassTable, ProgramIdentifiersAreFoundInAnyCase) {
  const ComponentClass* row = find_component_class("bvconn.bvINVOICEconnector");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->name, "BVInvoiceConnector");
  EXPECT_EQ(prog_id_of(*row), "BVConn.BVInvoiceConnector");
  EXPECT_EQ(find_component_class("BVConnector.BVInvoiceConnector"), row);
  EXPECT_EQ(library_prog_id_of(*row), "BVConnector.BVInvoiceConnector");
  EXPECT_EQ(find_component_class("BVInvoiceConnector"), nullptr);
  EXPECT_EQ(find_component_class("BVConnector."), nullptr);
  EXPECT_EQ(find_component_class("BVCon"), nullptr);
  EXPECT_EQ(find_component_class("BVConn.BVNothing"), nullptr);
}

TEST(ClassTable, AnIdentifierThatIsNotInItHasNoMaker) {
  EXPECT_FALSE(maker_of(kNullGuid));
  EXPECT_FALSE(maker_of(kHeartBeatEvents));
}

}  // namespace
}  // namespace bvconn::component
