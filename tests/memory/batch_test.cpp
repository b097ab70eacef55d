#include "batch.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "memory/quiet_world.h"
#include "support/watched_memory.h"

// Lines of a batch with each of their allocations failing in turn: each has its one answer, and the
// line behind it is as good as ever.
namespace bvconn::test {
namespace {

using nlohmann::json;

constexpr std::string_view kReply =
    "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><response>"
    "<return><Name>an answer of more than fifteen letters</Name><Item><Price>1.5</Price></Item>"
    "</return></response></e:Body></e:Envelope>";
constexpr std::string_view kGet = R"({"id":"last","get":"BVMethods.GetInvoice"})";
constexpr std::string_view kGetAnswer = R"({"id":"last","result":"getInvoice"})";

/// A batch whose output takes no memory.
class Lines {
 public:
  Lines() { text_.reserve(1 << 16); }

  /// The answer to one line.
  std::string_view run(std::string_view line) {
    text_.clear();
    answers_ = 0;
    batch_.run(line);
    return text_;
  }
  int answers() const { return answers_; }
  int status() const { return batch_.status(); }

 private:
  std::string text_;
  int answers_ = 0;
  tool::Batch batch_{[this](std::string_view line) {
    text_.assign(line);
    ++answers_;
  }};
};

/// How often a line was answered by error 7 while each of its allocations failed in turn.
std::size_t out_of_memory_answers(std::string_view line, Shortage shortage) {
  const QuietWorld world(kReply);
  const std::string good(Lines().run(line));
  const json id = json::parse(good).at("id");
  std::size_t out_of_memory = 0;
  for (std::size_t number = 1;; ++number) {
    SCOPED_TRACE("allocation " + std::to_string(number));
    Lines lines;
    lines.run(kGet);
    std::string_view answer;
    bool struck = false;
    {
      const FailingMemory memory(number, shortage);
      answer = lines.run(line);
      struck = FailingMemory::has_struck();
    }
    EXPECT_EQ(lines.answers(), 1);
    if (answer != good) {
      const json error = json::parse(answer);
      EXPECT_EQ(error.at("error").at("number"), 7) << answer;
      // The very first is for the room in which the identifier would be written.
      EXPECT_TRUE(error.at("id") == id || number == 1) << answer;
      ++out_of_memory;
    }
    EXPECT_NE(lines.status(), 1) << "an internal failure";
    EXPECT_EQ(lines.run(kGet), kGetAnswer);
    if (!struck) return out_of_memory;
    if (testing::Test::HasFailure()) return 0;
  }
}

class BatchShortOfMemory : public testing::TestWithParam<std::string> {};

TEST_P(BatchShortOfMemory, AnswersEachLineAndGoesOn) {
  for (const Shortage shortage : {Shortage::kOnce, Shortage::kOnward}) {
    EXPECT_GT(out_of_memory_answers(GetParam(), shortage), 5U);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, BatchShortOfMemory,
    testing::Values(
        R"({"id":"a call of more than fifteen letters","call":"BVInvoiceConnector.GetInvoice",)"
        R"("args":{"aServerURL":"http://127.0.0.1:8080/","aSessionID":"S","strInvoiceUID":"U1"}})",
        R"({"id":[1,{"of":"many parts"}],"call":"BVGenericConnector.Send","args":{"aService":)"
        R"("urn:S","aMethod":"m","aRootNodeName":"r","aSoapNode":{"xml":"<a><b>of text</b></a>"},)"
        R"("aServerURL":"http://a-server/soap"}})",
        R"({"id":1,"new":"BVGenericConnector","as":"an object of more than fifteen letters"})",
        R"({"id":2,"set":"BVConnectorObject.DALUrl","value":"http://a-server-with-a-long-name/"})",
        R"({"id":3,"call":"BVInvoiceConnector.GetInvoice","args":{"aServerURL":"u"}})",
        R"({"id":4,"call":"BVGenericConnector.NotThere"})",
        R"({"id":5,"get":"BVMethods.GetInvoice","more":[[[[{"a":[1,2.5,true,null,"text"]}]]]]})",
        std::string(R"({"id":6,"get":)").append(400, '[').append(400, ']').append("}")));

}  // namespace
}  // namespace bvconn::test
