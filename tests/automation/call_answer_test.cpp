#include <gtest/gtest.h>

#include <vector>

#include "automation/sample_class.h"
#include "call_answer.h"

namespace bvconn::test {
namespace {

class CallAnswer : public testing::Test {
 protected:
  /// The arguments of Sample.Types, all given, with a document to be filled.
  tool::CallArguments all_given(const SoapNode& node) {
    tool::CallArguments arguments;
    arguments.documents.push_back(std::make_unique<XMLDocument>());
    arguments.values = {Variant(true),
                        Variant(std::int16_t{1}),
                        Variant(std::int32_t{2}),
                        Variant("v"),
                        StringArray{"x"},
                        Variant(node),
                        arguments.documents.back().get()};
    return arguments;
  }

  std::string with_result(const tool::CallArguments& arguments, const automation::Value& result) {
    tool::JsonString text;
    tool::CallAnswer(types, arguments).write_result(text, result);
    return text.take();
  }
  std::string with_error(const tool::CallArguments& arguments, std::string_view error_json) {
    tool::JsonString text;
    tool::CallAnswer(types, arguments).write_error(text, error_json);
    return text.take();
  }

  automation::ClassInfo info = sample_class();
  const automation::Member& types = *info.find("Types");
  Sample sample;
};

TEST_F(CallAnswer, TellsTheDocumentAndTheNodesAfterTheResult) {
  const tool::CallArguments arguments = all_given(node_from_xml("<n><c>1</c></n>"));
  const automation::Value result = types.invoke(&sample, arguments.values);
  EXPECT_EQ(with_result(arguments, result),
            R"("result":"true 1 2 v 1 n","document":"<filled/>","args":{"node":{"node":)"
            R"({"name":"n","value":null,"nodes":[{"name":"c","value":"1","nodes":[]}]}}})");
}

TEST_F(CallAnswer, ShowsANodeAsItStandsAfterTheCall) {
  SoapNode node = SoapNode::make("before");
  const tool::CallArguments arguments = all_given(node);
  node.Name("after");
  EXPECT_EQ(with_result(arguments, {}), R"("result":null,"document":"","args":{"node":{"node":)"
                                        R"({"name":"after","value":null,"nodes":[]}}})");
}

TEST_F(CallAnswer, TellsThemWithAnErrorToo) {
  EXPECT_EQ(with_error(all_given(SoapNode()), "{}"),
            R"("error":{},"document":"","args":{"node":null})");
}

TEST_F(CallAnswer, HasNoDocumentWhereNothingWasGiven) {
  tool::CallArguments arguments = all_given(SoapNode());
  arguments.values[6] = static_cast<XMLDocument*>(nullptr);
  EXPECT_EQ(with_result(arguments, {}), R"("result":null,"args":{"node":null})");
}

TEST_F(CallAnswer, HasNoNodeThatWasLeftOut) {
  tool::CallArguments arguments;
  arguments.values.resize(info.find("Defaults")->arguments.size());
  tool::JsonString text;
  tool::CallAnswer(*info.find("Defaults"), arguments).write_result(text, Variant("r"));
  EXPECT_EQ(text.take(), R"("result":"r")");
}

}  // namespace
}  // namespace bvconn::test
