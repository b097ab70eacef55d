// An application's function and its test, without a server: the test scripts what the server says,
// calls the function, and looks at what was sent.

#include <bvconn/connectors/documents/bv_rma_connector.h>
#include <bvconn/platform/error_numbers.h>
#include <bvconn/testing/test_world.h>

#include <iostream>
#include <stdexcept>
#include <string>

namespace numbers = bvconn::error_numbers;

namespace {

// What the application does: submits a return, and never leaves open whether it may do so again.
std::string submit_return(const std::string& server, const std::string& session,
                          const std::string& reason) {
  bvconn::SoapNode rma = bvconn::SoapNode::make("RMA");
  rma.Nodes().Create("Reason", reason);
  try {
    const bvconn::SoapNode answer = bvconn::BVRMAConnector().SubmitRMA(server, session, rma);
    return "submitted as " + to_text(answer.Value());
  } catch (const bvconn::Error& error) {
    if (error.outcome == bvconn::Outcome::kUnknown) return "look whether it is there";
    return "not submitted: " + error.description;
  }
}

void expect(const std::string& seen, const std::string& wanted) {
  if (seen != wanted) throw std::runtime_error("\"" + seen + "\" is not \"" + wanted + "\"");
}

void test_submitting() {
  bvconn::test::TestWorld world;
  world.on("BVRMAConnector.SubmitRMA")
      .replies("R-7")
      .faults("Server", "unknown reason")
      .fails(numbers::kConnectionLost);

  expect(submit_return("http://sales.example/soap", "S-1", "broken"), "submitted as R-7");
  const bvconn::test::SeenCall call = world.last_call();
  expect(call.url, "http://sales.example/soap");
  expect(call.session_id(), "S-1");
  expect(to_text(call.parameters().Item(0).Nodes().ItemByName("Reason").Value()), "broken");

  expect(submit_return("http://h/", "S-1", "none"), "not submitted: unknown reason");
  expect(submit_return("http://h/", "S-1", "broken"), "look whether it is there");
  world.verify();
}

}  // namespace

int main() {
  test_submitting();
  std::cout << "All is well.\n";
}
