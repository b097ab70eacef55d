#include "bvconn/component/calls.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "bvconn/component/named_object.h"
#include "bvconn/component/shapes.h"
#include "bvconn/component/values.h"
#include "bvconn/platform/error.h"
#include "component/host.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;
using automation::Value;
using automation::ValueType;
using test::HostString;
using test::Named;
using test::Outcome;

constexpr DispatchId kSearch = 5;
constexpr DispatchId kTitle = 6;
constexpr DispatchId kSecret = 7;
constexpr DispatchId kOption = 8;
constexpr DispatchId kFail = 9;

std::string shown(const Value& value) {
  const auto* held = std::get_if<Variant>(&value);
  if (held == nullptr) return "-";
  return held->missing() ? "missing" : to_text(*held);
}

// Writes down each call as its member's name and its values, "-" for one that was left out.
class RecordingObject final : public NamedObject<> {
 public:
  explicit RecordingObject(std::vector<std::string>& calls) : calls_(calls) {}

 private:
  const MemberTable& table() const override {
    static const MemberTable kTable(
        {method(kSearch, "SearchForOrders",
                {required("OrderNbr", ValueType::kString), required("Limit", ValueType::kInt32),
                 optional("OnlyHFR", ValueType::kBoolean),
                 optional("ContractorFirstPO", ValueType::kVariant)}),
         property(kTitle, "Title", ValueType::kString),
         write_only(kSecret, "Secret", ValueType::kString),
         write_only(kOption, "Option", ValueType::kString, {required("key", ValueType::kString)}),
         method(kFail, "Fail", {required("how", ValueType::kString)})});
    return kTable;
  }

  OwnedVariant call(const NamedMember& member, std::span<const Value> values) override {
    note(member, values);
    if (member.id == kFail) fail(text_at(values, 0));
    return record_from_variant(Variant("result of " + member.name));
  }

  void put(const NamedMember& member, std::span<const Value> values) override {
    note(member, values);
  }

  void note(const NamedMember& member, std::span<const Value> values) {
    std::string line = member.name;
    for (const Value& value : values) line += " " + shown(value);
    calls_.push_back(line);
  }

  [[noreturn]] static void fail(const std::string& how) {
    if (how == "error") throw Error(result_from_bits(0x80042739), "Order", "Locked", "h.chm", 42);
    if (how.starts_with("number ")) throw Error(std::stoi(how.substr(7)), "Order", "Odd");
    if (how == "memory") throw std::bad_alloc();
    if (how == "other") throw std::runtime_error("from below");
    throw 1;
  }

  std::vector<std::string>& calls_;
};

class Calls : public testing::Test {
 protected:
  std::vector<std::string> lines;
  test::Held<IDispatchAbi> object{new RecordingObject(lines)};
  HostString number{u"4711"};
  const std::vector<VariantRecord> two{test::of_string(number), test::of_int32(9)};
};

TEST_F(Calls, NamesAreFoundInAnyCase) {
  EXPECT_EQ(test::find_id(*object, u"SearchForOrders"), kSearch);
  EXPECT_EQ(test::find_id(*object, u"searchFORorders"), kSearch);
  EXPECT_EQ(test::find_id(*object, u"SearchForOrder"), std::nullopt);
}

TEST_F(Calls, NamesOfArgumentsHaveTheirPlacesAsNumbers) {
  std::u16string names[] = {u"searchfororders", u"onlyhfr", u"OrderNbr", u"Limit"};
  char16_t* pointers[] = {names[0].data(), names[1].data(), names[2].data(), names[3].data()};
  DispatchId ids[4] = {};
  EXPECT_EQ(object->GetIDsOfNames(&kNullGuid, pointers, 4, 0, ids), kOk);
  EXPECT_EQ(ids[0], kSearch);
  EXPECT_EQ(ids[1], 2);
  EXPECT_EQ(ids[2], 0);
  EXPECT_EQ(ids[3], 1);
}

TEST_F(Calls, ANameThatIsUnknownLeavesTheOthersFound) {
  std::u16string names[] = {u"SearchForOrders", u"Nothing", u"Limit"};
  char16_t* pointers[] = {names[0].data(), names[1].data(), names[2].data()};
  DispatchId ids[3] = {};
  EXPECT_EQ(object->GetIDsOfNames(&kNullGuid, pointers, 3, 0, ids), kUnknownName);
  EXPECT_EQ(ids[0], kSearch);
  EXPECT_EQ(ids[1], kUnknownId);
  EXPECT_EQ(ids[2], 1);
}

TEST_F(Calls, AnUnknownMemberLeavesNoNumberFound) {
  std::u16string names[] = {u"Nothing", u"Limit"};
  char16_t* pointers[] = {names[0].data(), names[1].data()};
  DispatchId ids[2] = {};
  EXPECT_EQ(object->GetIDsOfNames(&kNullGuid, pointers, 2, 0, ids), kUnknownName);
  EXPECT_EQ(ids[0], kUnknownId);
  EXPECT_EQ(ids[1], kUnknownId);
}

TEST_F(Calls, AskingForNamesIsCheckedForItsPointers) {
  std::u16string name = u"Title";
  char16_t* names[] = {name.data()};
  char16_t* no_name[] = {nullptr};
  DispatchId id = 0;
  EXPECT_EQ(object->GetIDsOfNames(&kNullGuid, nullptr, 1, 0, &id), kNullPointer);
  EXPECT_EQ(object->GetIDsOfNames(&kNullGuid, names, 1, 0, nullptr), kNullPointer);
  EXPECT_EQ(object->GetIDsOfNames(&kNullGuid, names, 0, 0, &id), kInvalidArgument);
  EXPECT_EQ(object->GetIDsOfNames(&IDispatchAbi::kId, names, 1, 0, &id), kUnknownInterface);
  EXPECT_EQ(object->GetIDsOfNames(&kNullGuid, no_name, 1, 0, &id), kUnknownName);
}

TEST_F(Calls, ThereIsNoTypeInformation) {
  std::uint32_t count = 99;
  void* info = this;
  EXPECT_EQ(object->GetTypeInfoCount(&count), kOk);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(object->GetTypeInfo(0, 0, &info), kBadIndex);
  EXPECT_EQ(info, nullptr);
  EXPECT_EQ(object->GetTypeInfoCount(nullptr), kNullPointer);
  EXPECT_EQ(object->GetTypeInfo(0, 0, nullptr), kNullPointer);
}

TEST_F(Calls, PositionalArgumentsStandInReverse) {
  const Outcome outcome = test::call_id(*object, kSearch, call_flag::kMethod, two);
  EXPECT_EQ(outcome.result, kOk);
  EXPECT_EQ(outcome.text(), u"result of SearchForOrders");
  EXPECT_EQ(lines, (std::vector<std::string>{"SearchForOrders 4711 9 - -"}));
}

TEST_F(Calls, AnOmittedOptionalArgumentIsLeftOut) {
  std::vector<VariantRecord> arguments = two;
  arguments.push_back(test::missing());
  arguments.push_back(test::of_int32(3));
  EXPECT_EQ(test::call_id(*object, kSearch, call_flag::kMethod, arguments).result, kOk);
  VariantRecord marker = test::missing();
  arguments[3] = test::reference_to(marker);
  EXPECT_EQ(test::call_id(*object, kSearch, call_flag::kMethod, arguments).result, kOk);
  EXPECT_EQ(lines,
            (std::vector<std::string>{"SearchForOrders 4711 9 - 3", "SearchForOrders 4711 9 - -"}));
}

TEST_F(Calls, AnOmittedRequiredArgumentIsRefusedWithItsIndex) {
  const Outcome outcome =
      test::call_id(*object, kSearch, call_flag::kMethod, {two[0], test::missing()});
  EXPECT_EQ(outcome.result, kParameterNotOptional);
  EXPECT_EQ(outcome.argument_index, 0u);
  EXPECT_TRUE(lines.empty());
}

TEST_F(Calls, NamedArgumentsGoByTheirNames) {
  const Outcome all = test::call_id(*object, kSearch, call_flag::kMethod, {},
                                    {{2, 1, 0}, {test::of_boolean(-1), test::of_int32(8), two[0]}});
  EXPECT_EQ(all.result, kOk);
  const Outcome mixed =
      test::call_id(*object, kSearch, call_flag::kMethod, two, {{3}, {test::of_int32(33)}});
  EXPECT_EQ(mixed.result, kOk);
  EXPECT_EQ(lines, (std::vector<std::string>{"SearchForOrders 4711 8 True -",
                                             "SearchForOrders 4711 9 - 33"}));
}

TEST_F(Calls, ANameThatIsNoneOrIsTakenIsRefusedWithItsIndex) {
  const Outcome unknown =
      test::call_id(*object, kSearch, call_flag::kMethod, {two[0]}, {{1, 4}, {two[1], two[1]}});
  EXPECT_EQ(unknown.result, kParameterNotFound);
  EXPECT_EQ(unknown.argument_index, 1u);
  const Outcome twice =
      test::call_id(*object, kSearch, call_flag::kMethod, {two[0]}, {{1, 1}, {two[1], two[1]}});
  EXPECT_EQ(twice.result, kParameterNotFound);
  EXPECT_EQ(twice.argument_index, 1u);
  // The name of an argument that also stands by place.
  const Outcome placed =
      test::call_id(*object, kSearch, call_flag::kMethod, two, {{1}, {test::of_int32(3)}});
  EXPECT_EQ(placed.result, kParameterNotFound);
  EXPECT_EQ(placed.argument_index, 0u);
  const Outcome value = test::call_id(*object, kSearch, call_flag::kMethod, two,
                                      {{kPropertyPutValue}, {test::of_int32(3)}});
  EXPECT_EQ(value.result, kParameterNotFound);
  EXPECT_TRUE(lines.empty());
}

TEST_F(Calls, ARequiredArgumentThatNoNameGivesIsRefused) {
  const Outcome outcome =
      test::call_id(*object, kSearch, call_flag::kMethod, {two[0]}, {{2}, {test::of_boolean(-1)}});
  EXPECT_EQ(outcome.result, kParameterNotOptional);
}

TEST_F(Calls, TooFewOrTooManyArgumentsAreABadCount) {
  EXPECT_EQ(test::call_id(*object, kSearch, call_flag::kMethod, {two[0]}).result,
            kBadParameterCount);
  const std::vector<VariantRecord> five(5, two[0]);
  EXPECT_EQ(test::call_id(*object, kSearch, call_flag::kMethod, five).result, kBadParameterCount);
  EXPECT_TRUE(lines.empty());
}

// Such a property is read: what it gives might have a member for them.
TEST_F(Calls, ArgumentsOfAPropertyThatGivesNoObjectAreABadCount) {
  EXPECT_EQ(test::call_id(*object, kTitle, call_flag::kPropertyGet, {two[0]}).result,
            kBadParameterCount);
  EXPECT_EQ(lines, (std::vector<std::string>{"Title"}));
}

TEST_F(Calls, AnArgumentThatDoesNotConvertIsToldByItsIndexInTheHostsArray) {
  HostString word(u"many");
  const Outcome second = test::call_id(*object, kSearch, call_flag::kMethod,
                                       {two[0], test::of_string(word), test::of_boolean(-1)});
  EXPECT_EQ(second.result, kTypeMismatch);
  EXPECT_EQ(second.argument_index, 1u);
  const Outcome third =
      test::call_id(*object, kSearch, call_flag::kMethod, {two[0], two[1], test::of_string(word)});
  EXPECT_EQ(third.result, kTypeMismatch);
  EXPECT_EQ(third.argument_index, 0u);
  EXPECT_TRUE(lines.empty());
}

TEST_F(Calls, APropertyIsReadAndSet) {
  HostString title(u"New");
  EXPECT_EQ(test::get(*object, u"Title").text(), u"result of Title");
  EXPECT_EQ(test::put(*object, u"Title", test::of_string(title)).result, kOk);
  EXPECT_EQ(lines, (std::vector<std::string>{"Title", "Title New"}));
}

TEST_F(Calls, APropertyWithAKeyTakesTheValueLast) {
  HostString key(u"tracing.file");
  HostString value(u"/tmp/t");
  const Outcome outcome =
      test::put(*object, u"Option", test::of_string(value), {test::of_string(key)});
  EXPECT_EQ(outcome.result, kOk);
  EXPECT_EQ(lines, (std::vector<std::string>{"Option tracing.file /tmp/t"}));
}

TEST_F(Calls, AValueToSetMustSayThatItIsOne) {
  HostString title(u"New");
  EXPECT_EQ(
      test::call_id(*object, kTitle, call_flag::kPropertyPut, {test::of_string(title)}).result,
      kParameterNotOptional);
  EXPECT_EQ(test::call_id(*object, kTitle, call_flag::kPropertyPut).result, kBadParameterCount);
}

TEST_F(Calls, AMemberIsCalledOnlyTheWayThatItIs) {
  HostString text(u"x");
  EXPECT_EQ(test::call_id(*object, kSearch, call_flag::kPropertyGet, two).result, kMemberNotFound);
  EXPECT_EQ(test::call_id(*object, kTitle, call_flag::kMethod).result, kMemberNotFound);
  EXPECT_EQ(test::get(*object, u"Secret").result, kMemberNotFound);
  EXPECT_EQ(test::put(*object, u"SearchForOrders", test::of_string(text)).result, kMemberNotFound);
  EXPECT_EQ(
      test::put(*object, u"Title", test::of_string(text), {}, call_flag::kPropertyPutReference)
          .result,
      kMemberNotFound);
  EXPECT_EQ(test::call_id(*object, 1234, call_flag::kMethod).result, kMemberNotFound);
  EXPECT_TRUE(lines.empty());
}

TEST_F(Calls, AHostThatCannotTellACallFromAReadMayAskForEither) {
  constexpr std::uint16_t kEither = call_flag::kMethod | call_flag::kPropertyGet;
  EXPECT_EQ(test::call_id(*object, kSearch, kEither, two).result, kOk);
  EXPECT_EQ(test::call_id(*object, kTitle, kEither).result, kOk);
}

TEST_F(Calls, FlagsThatContradictEachOtherAreRefused) {
  EXPECT_EQ(test::call_id(*object, kTitle, 0).result, kInvalidArgument);
  EXPECT_EQ(
      test::call_id(*object, kTitle, call_flag::kPropertyGet | call_flag::kPropertyPut).result,
      kInvalidArgument);
  EXPECT_EQ(test::call_id(*object, kTitle, 0x10 | call_flag::kPropertyGet).result,
            kInvalidArgument);
}

TEST_F(Calls, AnErrorComesAsItsFiveValues) {
  HostString how(u"error");
  const Outcome outcome = test::call(*object, u"Fail", {test::of_string(how)});
  EXPECT_EQ(outcome.result, kException);
  EXPECT_EQ(outcome.exception.result, result_from_bits(0x80042739));
  EXPECT_EQ(outcome.exception.code, 0);
  EXPECT_EQ(test::text_behind(outcome.exception.source), u"Order");
  EXPECT_EQ(test::text_behind(outcome.exception.description), u"Locked");
  EXPECT_EQ(test::text_behind(outcome.exception.help_file), u"h.chm");
  EXPECT_EQ(outcome.exception.help_context, 42u);
  EXPECT_EQ(outcome.exception.deferred_fill_in, nullptr);
  EXPECT_EQ(outcome.value.type, vt::kEmpty);
}

TEST_F(Calls, WhateverElseIsRaisedStopsAtTheBoundary) {
  HostString memory(u"memory");
  HostString other(u"other");
  HostString thing(u"thing");
  EXPECT_EQ(test::call(*object, u"Fail", {test::of_string(memory)}).result, kOutOfMemory);
  EXPECT_EQ(test::call(*object, u"Fail", {test::of_string(thing)}).result, kFailed);
  const Outcome outcome = test::call(*object, u"Fail", {test::of_string(other)});
  EXPECT_EQ(outcome.result, kException);
  EXPECT_EQ(outcome.exception.result, kFailed);
  EXPECT_EQ(test::text_behind(outcome.exception.source), u"BVConn");
  EXPECT_EQ(test::text_behind(outcome.exception.description), u"from below");
}

// Hosts take a positive result for success, and look for the small numbers in a range of their own.
TEST_F(Calls, SmallErrorNumbersComeAsResultsThatFail) {
  const auto result_of = [&](std::u16string how) {
    HostString text(how.c_str());
    return test::call(*object, u"Fail", {test::of_string(text)}).exception.result;
  };
  EXPECT_EQ(result_of(u"number 1"), result_from_bits(0x800A0001));
  EXPECT_EQ(result_of(u"number 91"), result_from_bits(0x800A005B));
  EXPECT_EQ(result_of(u"number 65535"), result_from_bits(0x800AFFFF));
  EXPECT_EQ(result_of(u"number 65536"), 65536);
  EXPECT_EQ(result_of(u"number 0"), 0);
  EXPECT_EQ(result_of(u"number -1"), -1);
}

TEST_F(Calls, ResultExceptionAndIndexMayBeLeftOut) {
  HostString how(u"error");
  VariantRecord argument = test::of_string(how);
  DispatchParams parameters{&argument, nullptr, 1, 0};
  EXPECT_EQ(object->Invoke(kFail, &kNullGuid, 0, call_flag::kMethod, &parameters, nullptr, nullptr,
                           nullptr),
            kException);
  DispatchParams none{};
  EXPECT_EQ(
      object->Invoke(kTitle, nullptr, 0, call_flag::kPropertyGet, &none, nullptr, nullptr, nullptr),
      kOk);
  VariantRecord word = test::variant(vt::kArray | vt::kString);
  DispatchParams wrong{&word, nullptr, 1, 0};
  EXPECT_EQ(
      object->Invoke(kFail, &kNullGuid, 0, call_flag::kMethod, &wrong, nullptr, nullptr, nullptr),
      kTypeMismatch);
}

TEST_F(Calls, AnIncompleteRequestIsRefused) {
  DispatchParams no_arguments{nullptr, nullptr, 1, 0};
  VariantRecord argument = test::of_int32(1);
  DispatchParams no_names{&argument, nullptr, 1, 1};
  DispatchId name = 0;
  DispatchParams more_names_than_arguments{&argument, &name, 1, 2};
  const auto invoke_fail = [&](DispatchParams* parameters, const Guid* reserved) {
    return object->Invoke(kFail, reserved, 0, call_flag::kMethod, parameters, nullptr, nullptr,
                          nullptr);
  };
  EXPECT_EQ(invoke_fail(nullptr, &kNullGuid), kNullPointer);
  EXPECT_EQ(invoke_fail(&no_arguments, &kNullGuid), kInvalidArgument);
  EXPECT_EQ(invoke_fail(&no_names, &kNullGuid), kInvalidArgument);
  EXPECT_EQ(invoke_fail(&more_names_than_arguments, &kNullGuid), kInvalidArgument);
  EXPECT_EQ(invoke_fail(&no_names, &IUnknownAbi::kId), kUnknownInterface);
}

TEST_F(Calls, AStaleResultIsOverwrittenNotFreed) {
  DispatchParams none{};
  // Results are handed in uninitialised: this one claims to own a text that nobody allocated.
  VariantRecord result = test::variant(vt::kString);
  result.value.string = reinterpret_cast<StringPointer>(std::uintptr_t{0x10});
  EXPECT_EQ(object->Invoke(kTitle, &kNullGuid, 0, call_flag::kPropertyPut, &none, &result, nullptr,
                           nullptr),
            kBadParameterCount);
  EXPECT_EQ(result.type, vt::kEmpty);
}

}  // namespace
}  // namespace bvconn::component
