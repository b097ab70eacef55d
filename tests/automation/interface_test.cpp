#include "bvconn/automation/interface.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace bvconn::test {
namespace {

using automation::Argument;
using automation::ClassInfo;
using automation::Member;
using automation::ValueType;

TEST(Interface, EveryClassAndEveryMemberHasANameOfItsOwn) {
  std::set<std::string> class_names;
  for (const ClassInfo* info : automation::classes()) {
    EXPECT_TRUE(class_names.insert(info->name).second) << info->name;
    std::set<std::string> names;
    for (const Member& member : info->members) {
      EXPECT_TRUE(names.insert(member.name).second) << info->name << "." << member.name;
      std::set<std::string> arguments;
      for (const Argument& argument : member.arguments) {
        EXPECT_NE(argument.type, ValueType::kNone) << member.name << ": " << argument.name;
        EXPECT_TRUE(arguments.insert(argument.name).second) << member.name << argument.name;
      }
    }
    EXPECT_NE(info->make(), nullptr) << info->name;
  }
}

TEST(Interface, AnUnknownClassIsNull) {
  EXPECT_EQ(automation::find_class("BVNoConnector"), nullptr);
  EXPECT_EQ(automation::find_class("bvinvoiceconnector"), nullptr);
}

// These three show the same in all their instances, so hosts and scripts use them by name.
TEST(Interface, TheConnectorObjectAndTheCataloguesArePredeclared) {
  std::set<std::string> predeclared;
  for (const ClassInfo* info : automation::classes()) {
    if (info->predeclared) predeclared.insert(info->name);
  }
  EXPECT_EQ(predeclared, (std::set<std::string>{"BVConnectorObject", "BVMethods", "BVServices"}));
}

}  // namespace
}  // namespace bvconn::test
