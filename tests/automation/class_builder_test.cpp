#include "bvconn/automation/class_builder.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "automation/sample_class.h"
#include "support/error_of.h"

namespace bvconn::test {
namespace {

using automation::Argument;
using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;
using automation::Value;
using automation::ValueType;

class ClassBuilder : public testing::Test {
 protected:
  const Member& member(std::string_view name) {
    const Member* found = info.find(name);
    if (found == nullptr) throw std::out_of_range(std::string(name));
    return *found;
  }
  Value invoke(std::string_view name, const std::vector<Value>& values) {
    return member(name).invoke(&sample, values);
  }
  std::string text(std::string_view name, const std::vector<Value>& values) {
    return std::get<Variant>(invoke(name, values)).string();
  }
  std::int32_t error_number(std::string_view name, const std::vector<Value>& values) {
    return error_of([&] { invoke(name, values); }).number;
  }

  ClassInfo info = sample_class();
  Sample sample;
};

std::vector<ValueType> types_of(const Member& member) {
  std::vector<ValueType> types;
  for (const Argument& argument : member.arguments) types.push_back(argument.type);
  return types;
}

TEST_F(ClassBuilder, MembersStandInTheOrderOfTheirDeclaration) {
  std::vector<std::string> names;
  for (const Member& each : info.members) names.push_back(each.name);
  EXPECT_EQ(names, (std::vector<std::string>{"Join", "Types", "Defaults", "Find", "Make", "Any",
                                             "Small", "Large", "Nothing", "Fail", "Flag", "Word",
                                             "Secret", "Service", "IsKnown", "Row", "Happened"}));
}

TEST_F(ClassBuilder, TypesComeFromTheMemberPointer) {
  EXPECT_EQ(types_of(member("Types")),
            (std::vector<ValueType>{ValueType::kBoolean, ValueType::kInt16, ValueType::kInt32,
                                    ValueType::kVariant, ValueType::kStringArray,
                                    ValueType::kSoapNode, ValueType::kXMLDocument}));
  EXPECT_EQ(member("Types").result, ValueType::kString);
  EXPECT_EQ(member("Make").result, ValueType::kSoapNode);
  EXPECT_EQ(member("Any").result, ValueType::kVariant);
  EXPECT_EQ(member("Small").result, ValueType::kInt16);
  EXPECT_EQ(member("Large").result, ValueType::kInt32);
  EXPECT_EQ(member("Nothing").result, ValueType::kNone);
  EXPECT_EQ(member("Service").result, ValueType::kObject);
  EXPECT_EQ(member("Secret").result, ValueType::kString);
}

TEST_F(ClassBuilder, ArgumentsGoByPlace) {
  EXPECT_EQ(text("Join", {Variant("a"), Variant("b")}), "a/b");
}

TEST_F(ClassBuilder, EveryTypeReachesTheOperation) {
  XMLDocument document;
  EXPECT_EQ(text("Types", {Variant(true), Variant(std::int16_t{-5}), Variant(std::int32_t{70001}),
                           Variant("any"), StringArray{"x", "y"}, Variant(SoapNode::make("n")),
                           Value(&document)}),
            "true -5 70001 any 2 n");
  EXPECT_EQ(document.documentElement().Name(), "filled");
}

TEST_F(ClassBuilder, EmptyReferencesAndUnallocatedArraysReachTheOperation) {
  EXPECT_EQ(text("Types",
                 {Variant(false), Variant(std::int16_t{0}), Variant(std::int32_t{1}), Variant(),
                  StringArray(), Variant(SoapNode()), Value(static_cast<XMLDocument*>(nullptr))}),
            "false 0 1  none empty");
}

TEST_F(ClassBuilder, LeftOutOptionalArgumentsTakeTheirDefaults) {
  EXPECT_EQ(text("Defaults", {}), "|false|0|missing|empty|NOTHING");
  EXPECT_EQ(text("Defaults", {Value(), Variant(true)}), "|true|0|missing|empty|NOTHING");
  EXPECT_EQ(text("Defaults", {Variant("t"), Value(), Variant(std::int32_t{4}), Variant(),
                              Variant(SoapNode::make()), Variant("")}),
            "t|false|4|there|node|");
}

TEST_F(ClassBuilder, DefaultsAreToldAsData) {
  const auto& arguments = member("Defaults").arguments;
  ASSERT_EQ(arguments.size(), 6U);
  for (const Argument& argument : arguments) EXPECT_TRUE(argument.optional) << argument.name;
  EXPECT_EQ(arguments[0].name, "text");
  EXPECT_EQ(std::get<Variant>(arguments[0].default_value), Variant(""));
  EXPECT_EQ(std::get<Variant>(arguments[1].default_value), Variant(false));
  EXPECT_EQ(std::get<Variant>(arguments[2].default_value), Variant(std::int32_t{0}));
  EXPECT_TRUE(std::get<Variant>(arguments[3].default_value).missing());
  EXPECT_FALSE(std::get<Variant>(arguments[4].default_value).node());
  EXPECT_EQ(std::get<Variant>(arguments[5].default_value), Variant("NOTHING"));
  EXPECT_FALSE(member("Join").arguments[0].optional);
}

// Only what no class of ours asks for.
struct Optionals {
  std::string Take(std::int16_t small, const StringArray& list, XMLDocument* document) {
    return std::to_string(small) + (list.allocated() ? " list" : "") + (document ? " text" : "");
  }
  std::string Find(const FindCriteria& criteria) { return std::string(criteria.Name); }
};

TEST_F(ClassBuilder, LeftOutNumbersAreZeroAndListsAndDocumentsAreNotThere) {
  using C = Optionals;
  const ClassInfo optionals = automation::ClassBuilder<C>("Optionals")
                                  .BVCONN_OPERATION(Take, "small?", "list?", "document?")
                                  .take();
  Optionals object;
  const Value answer = optionals.find("Take")->invoke(&object, {});
  EXPECT_EQ(std::get<Variant>(answer).string(), "0");
}

TEST_F(ClassBuilder, ADeclarationThatContradictsTheClassIsFoundWhereItStands) {
  using C = Optionals;
  automation::ClassBuilder<C> builder("Optionals");
  EXPECT_THROW(builder.BVCONN_OPERATION(Take, {"small?", "no number"}, "list", "document"),
               std::logic_error);
  EXPECT_THROW(builder.BVCONN_OPERATION(Find, "criteria"), std::logic_error);
}

TEST_F(ClassBuilder, AnAggregateStandsFieldByFieldInItsPlace) {
  std::vector<std::string> names;
  for (const Argument& argument : member("Find").arguments) names.push_back(argument.name);
  EXPECT_EQ(names, (std::vector<std::string>{"server", "Name", "Exact", "Codes", "Limit", "Extra",
                                             "last"}));
  EXPECT_EQ(types_of(member("Find")),
            (std::vector<ValueType>{ValueType::kString, ValueType::kString, ValueType::kBoolean,
                                    ValueType::kStringArray, ValueType::kInt16, ValueType::kVariant,
                                    ValueType::kString}));
}

TEST_F(ClassBuilder, AFieldsDefaultIsWhatTheAggregateInitialisesItWith) {
  const auto& arguments = member("Find").arguments;
  EXPECT_EQ(std::get<Variant>(arguments[2].default_value), Variant(true));
  EXPECT_EQ(std::get<Variant>(arguments[4].default_value), Variant(std::int16_t{7}));
  EXPECT_TRUE(std::get<Variant>(arguments[5].default_value).missing());
}

TEST_F(ClassBuilder, FieldsReachTheOperation) {
  EXPECT_EQ(text("Find", {Variant("s"), Variant("n"), Value(), StringArray{"1", "2", "3"}, Value(),
                          Value(), Variant("l")}),
            "s|n|exact|3|7|missing|l");
  EXPECT_EQ(text("Find", {Variant("s"), Variant("n"), Variant(false), StringArray{},
                          Variant(std::int16_t{2}), Variant(), Variant("l")}),
            "s|n|loose|0|2|there|l");
}

TEST_F(ClassBuilder, ARequiredArgumentThatIsNotThereFailsWith13) {
  EXPECT_EQ(error_number("Join", {Variant("a")}), 13);
  EXPECT_EQ(error_number("Join", {Value(), Variant("b")}), 13);
  EXPECT_EQ(error_number("Join", {Variant("a"), Variant("b"), Variant("c")}), 13);
}

TEST_F(ClassBuilder, AValueOfAnotherTypeFailsWith13) {
  EXPECT_EQ(error_number("Join", {Variant("a"), Variant(true)}), 13);
  EXPECT_EQ(error_number("Join", {Variant("a"), StringArray{"b"}}), 13);
  EXPECT_EQ(error_number("Make", {Variant(std::int32_t{1})}), 13);
}

TEST_F(ClassBuilder, AnOperationsErrorPassesUnchanged) {
  EXPECT_EQ(error_number("Fail", {}), 9);
}

TEST_F(ClassBuilder, ResultsComeBackWithTheirTypes) {
  EXPECT_EQ(std::get<Variant>(invoke("Any", {})), Variant(2.5));
  EXPECT_EQ(std::get<Variant>(invoke("Small", {})), Variant(std::int16_t{-3}));
  EXPECT_EQ(std::get<Variant>(invoke("Large", {})), Variant(std::int32_t{70000}));
  EXPECT_EQ(std::get<Variant>(invoke("Make", {Variant("made")})).node().Name(), "made");
  EXPECT_TRUE(std::holds_alternative<std::monostate>(invoke("Nothing", {})));
  EXPECT_EQ(sample.calls, 1);
}

TEST_F(ClassBuilder, PropertiesAreReadAndWritten) {
  EXPECT_EQ(member("Flag").kind, MemberKind::kProperty);
  EXPECT_TRUE(member("Flag").readable);
  EXPECT_TRUE(member("Flag").writable);
  EXPECT_FALSE(member("Flag").callable());
  member("Flag").set(&sample, Variant(true));
  EXPECT_EQ(std::get<Variant>(member("Flag").get(&sample)), Variant(true));
  member("Word").set(&sample, Variant("end"));
  EXPECT_EQ(std::get<Variant>(member("Word").get(&sample)), Variant("end"));
}

TEST_F(ClassBuilder, OnlyWhatIsAnOperationIsCalled) {
  EXPECT_THROW(invoke("Flag", {}), Error);
  EXPECT_THROW(invoke("Happened", {}), Error);
}

TEST_F(ClassBuilder, AWriteOnlyPropertyCannotBeRead) {
  EXPECT_FALSE(member("Secret").readable);
  EXPECT_TRUE(member("Secret").writable);
  EXPECT_THROW(member("Secret").get(&sample), Error);
  member("Secret").set(&sample, Variant("s3"));
  EXPECT_EQ(sample.kept, "s3");
}

TEST_F(ClassBuilder, AReadOnlyPropertyCannotBeWritten) {
  EXPECT_FALSE(member("Service").writable);
  EXPECT_THROW(member("Service").set(&sample, Variant("x")), Error);
  EXPECT_EQ(std::get<std::shared_ptr<ServiceObject>>(member("Service").get(&sample)), nullptr);
}

TEST_F(ClassBuilder, APropertyRefusesAValueOfAnotherType) {
  EXPECT_THROW(member("Flag").set(&sample, Variant("true")), Error);
  EXPECT_FALSE(sample.is_set);
}

TEST_F(ClassBuilder, APropertyWithArgumentsIsCalled) {
  EXPECT_EQ(member("IsKnown").kind, MemberKind::kProperty);
  EXPECT_TRUE(member("IsKnown").callable());
  EXPECT_TRUE(member("IsKnown").readable);
  EXPECT_EQ(std::get<Variant>(invoke("IsKnown", {Variant("known")})), Variant(true));
  EXPECT_EQ(std::get<Variant>(invoke("IsKnown", {Variant("other")})), Variant(false));
}

TEST_F(ClassBuilder, AConstantCarriesItsValue) {
  EXPECT_EQ(member("Row").constant, Variant("row value"));
  EXPECT_EQ(std::get<Variant>(member("Row").get(&sample)), Variant("row value"));
  EXPECT_FALSE(member("Row").writable);
  EXPECT_THROW(member("Row").set(&sample, Variant("x")), Error);
}

TEST_F(ClassBuilder, AnEventCallsItsHandler) {
  int happened = 0;
  EXPECT_EQ(member("Happened").kind, MemberKind::kEvent);
  member("Happened").connect(&sample, [&] { ++happened; });
  sample.Happened();
  EXPECT_EQ(happened, 1);
  EXPECT_THROW(member("Join").connect(&sample, [] {}), Error);
}

TEST_F(ClassBuilder, MakeGivesANewObject) {
  const auto first = info.make();
  const auto second = info.make();
  member("Word").set(first.get(), Variant("changed"));
  EXPECT_EQ(std::get<Variant>(member("Word").get(second.get())), Variant("begin"));
}

TEST_F(ClassBuilder, NamesAreFoundInTheirOwnCaseOnly) {
  EXPECT_NE(info.find("Join"), nullptr);
  EXPECT_EQ(info.find("join"), nullptr);
  EXPECT_NE(member("Join").find_argument("first"), nullptr);
  EXPECT_EQ(member("Join").find_argument("First"), nullptr);
}

}  // namespace
}  // namespace bvconn::test
