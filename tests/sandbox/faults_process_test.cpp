// What goes wrong on demand, as it arrives on a bare connection.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <nlohmann/json.hpp>
#include <string>

#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Clock = std::chrono::steady_clock;

constexpr std::string_view kGetFirst = "<param xsi:type=\"xsd:string\">INV-1001</param>";
constexpr std::string_view kGetSecond = "<param xsi:type=\"xsd:string\">INV-1002</param>";

/// All that came over a connection until its end.
struct Arrived {
  std::string bytes;
  bool was_reset = false;
  std::chrono::milliseconds until_first{0};
  std::chrono::milliseconds until_end{0};

  std::string body() const {
    const auto at = bytes.find("\r\n\r\n");
    return at == std::string::npos ? "" : bytes.substr(at + 4);
  }
};

std::chrono::milliseconds since(Clock::time_point begin) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
}

/// Sends the request and reads until the other side ends the connection, or for ten seconds.
Arrived all_of(std::uint16_t port, const std::string& request) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const timeval patience{.tv_sec = 10, .tv_usec = 0};
  ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  const auto begin = Clock::now();
  EXPECT_EQ(::send(socket, request.data(), request.size(), MSG_NOSIGNAL),
            static_cast<ssize_t>(request.size()));
  Arrived arrived;
  std::array<char, 65536> piece{};
  ssize_t count = 0;
  while ((count = ::recv(socket, piece.data(), piece.size(), 0)) > 0) {
    if (arrived.bytes.empty()) arrived.until_first = since(begin);
    arrived.bytes.append(piece.data(), static_cast<std::size_t>(count));
  }
  arrived.was_reset = count < 0 && errno == ECONNRESET;
  EXPECT_TRUE(count == 0 || arrived.was_reset) << "the connection did not end";
  arrived.until_end = since(begin);
  ::close(socket);
  return arrived;
}

std::string invoice_request(std::string_view parameters, std::string_view headers = "") {
  return http_request("POST", "/soap",
                      "Content-Type: text/xml; charset=utf-8\r\nConnection: close\r\n"
                      "SOAPAction: \"urn:InvoiceService\"\r\n" +
                          std::string(headers),
                      envelope_text("urn:InvoiceService", "getInvoice", parameters));
}

/// Up to the end of the first text that stands in an answer.
std::string before_first_end_tag(const std::string& body) {
  return body.substr(0, body.find("</", body.find("Body>")));
}

class Faults : public ::testing::Test {
 protected:
  RawReply post(const std::string& json) {
    return exchange(port(), http_request("POST", "/admin/faults", "", json));
  }
  /// Forgets what was set before, and sets this.
  void set(const std::string& json) {
    clear();
    const RawReply reply = post(json);
    ASSERT_EQ(reply.status, 200) << reply.body;
  }
  void clear() { exchange(port(), http_request("DELETE", "/admin/faults", "", "")); }
  nlohmann::json listed() {
    return nlohmann::json::parse(
        exchange(port(), http_request("GET", "/admin/faults", "", "")).body)["faults"];
  }

  RawReply invoice(std::string_view parameters = kGetFirst, std::string_view headers = "") {
    return exchange(port(), invoice_request(parameters, headers));
  }
  Arrived arriving() { return all_of(port(), invoice_request(kGetFirst)); }
  /// Which of so many requests had another status than 200, as "..x".
  std::string failing(int requests) {
    std::string pattern;
    for (int i = 0; i < requests; ++i) pattern += invoice().status == 200 ? '.' : 'x';
    return pattern;
  }
  std::uint16_t port() const { return sandbox_.port(); }

  SandboxProcess sandbox_;
};

TEST_F(Faults, AnswerASoapFaultWithTheWordsThatWereGiven) {
  set(R"({"kind":"soap-fault","code":"10041","text":"No < such","detail":"<UID>INV-1</UID>"})");
  const RawReply reply = invoice();
  EXPECT_EQ(reply.status, 500);
  EXPECT_EQ(reply.header("Content-Type"), "text/xml; charset=utf-8");
  EXPECT_THAT(reply.body,
              HasSubstr("<SOAP-ENV:Fault><faultcode>10041</faultcode><faultstring>No &lt; such"
                        "</faultstring><detail><UID>INV-1</UID></detail></SOAP-ENV:Fault>"));
  set(R"({"kind":"soap-fault","status":200,"detail":"1 < 2"})");
  EXPECT_EQ(invoice().status, 200);
  EXPECT_THAT(invoice().body, HasSubstr("<faultcode>SOAP-ENV:Server</faultcode>"));
  EXPECT_THAT(invoice().body, HasSubstr("<detail>1 &lt; 2</detail>"));
  // On the other route a fault is a text like any answer.
  clear();
  const std::string token = sandbox_.login();
  set(R"({"kind":"soap-fault","code":"7","route":"dal"})");
  const RawReply text =
      sandbox_.dal("HeartBeatService/sendHeartBeat", R"({"arguments":[]})", token);
  EXPECT_EQ(text.status, 200) << text.body;
  EXPECT_THAT(text.body, HasSubstr("<faultcode>7</faultcode>"));
}

TEST_F(Faults, AnswerAnErrorOfTheDataAccessLayer) {
  const std::string token = sandbox_.login();
  set(R"({"kind":"dal-error","number":-2147201504,"source":"Disk","text":"It is full"})");
  const RawReply reply =
      sandbox_.dal("HeartBeatService/sendHeartBeat", R"({"arguments":[]})", token);
  EXPECT_EQ(reply.status, 500);
  EXPECT_EQ(
      nlohmann::json::parse(reply.body),
      (nlohmann::json{{"number", -2147201504}, {"source", "Disk"}, {"description", "It is full"}}));
  set(R"({"kind":"dal-error","number":2147765792,"status":401})");
  const RawReply other =
      sandbox_.dal("HeartBeatService/sendHeartBeat", R"({"arguments":[]})", token);
  EXPECT_EQ(other.status, 401);
  // 0x80044E20 as a signed number of 32 bits; the object is the source by itself.
  EXPECT_EQ(nlohmann::json::parse(other.body)["number"], -2147201504);
  EXPECT_EQ(nlohmann::json::parse(other.body)["source"], "HeartBeatService");
}

TEST_F(Faults, AnswerAStatusWithAPageOrWithNothing) {
  set(R"({"kind":"status","status":502,"text":"Back soon"})");
  const RawReply page = invoice();
  EXPECT_THAT(page.headers, StartsWith("HTTP/1.1 502 Bad Gateway\r\n"));
  EXPECT_EQ(page.header("Content-Type"), "text/html; charset=utf-8");
  EXPECT_THAT(page.body, HasSubstr("<h1>Back soon</h1>"));
  set(R"({"kind":"status","page":"empty"})");
  const RawReply empty = invoice();
  EXPECT_EQ(empty.status, 503);
  EXPECT_EQ(empty.header("Content-Length"), "0");
  EXPECT_EQ(empty.header("Content-Type"), "");
}

TEST_F(Faults, AnswerLaterOrALittleAtATime) {
  const std::string right = arriving().bytes;
  set(R"({"kind":"delay","delay_ms":400})");
  const Arrived later = arriving();
  EXPECT_EQ(later.bytes, right);
  EXPECT_GE(later.until_first.count(), 400);
  set(R"({"kind":"drip","bytes":1000,"every_ms":100})");
  const Arrived dripping = arriving();
  EXPECT_EQ(dripping.bytes, right);
  // At least four pieces, so three pauses.
  ASSERT_GT(right.size(), 3000U);
  EXPECT_GE((dripping.until_end - dripping.until_first).count(), 300);
}

TEST_F(Faults, EndTheConnectionWhereTheyWereAskedTo) {
  const Arrived right = arriving();
  set(R"({"kind":"close"})");
  const Arrived nothing = arriving();
  EXPECT_EQ(nothing.bytes, "");
  EXPECT_FALSE(nothing.was_reset);
  set(R"({"kind":"close-in-body","after_bytes":100})");
  const Arrived cut = arriving();
  EXPECT_EQ(cut.body(), right.body().substr(0, 100));
  EXPECT_THAT(cut.bytes,
              HasSubstr("\r\nContent-Length: " + std::to_string(right.body().size()) + "\r\n"));
  EXPECT_FALSE(cut.was_reset);
  set(R"({"kind":"close-in-body"})");
  EXPECT_EQ(arriving().body().size(), right.body().size() / 2);
}

TEST_F(Faults, ResetTheConnectionSoThatTheClientSeesIt) {
  const Arrived right = arriving();
  set(R"({"kind":"reset"})");
  const Arrived reset = arriving();
  EXPECT_TRUE(reset.was_reset);
  EXPECT_EQ(reset.bytes, "");
  set(R"({"kind":"reset","after_bytes":10})");
  const Arrived later = arriving();
  EXPECT_TRUE(later.was_reset);
  EXPECT_THAT(right.body(), StartsWith(later.body()));
}

TEST_F(Faults, FrameTheBodyWrongly) {
  const Arrived right = arriving();
  const auto length = [](std::size_t size) {
    return "\r\nContent-Length: " + std::to_string(size) + "\r\n";
  };
  set(R"({"kind":"wrong-length"})");
  EXPECT_THAT(arriving().bytes, HasSubstr(length(right.body().size() + 100)));
  EXPECT_EQ(arriving().body(), right.body());
  set(R"({"kind":"wrong-length","by":-5})");
  EXPECT_THAT(arriving().bytes, HasSubstr(length(right.body().size() - 5)));
  EXPECT_EQ(arriving().body(), right.body());
  set(R"({"kind":"bad-chunk"})");
  const Arrived chunked = arriving();
  EXPECT_THAT(chunked.bytes, HasSubstr("\r\nTransfer-Encoding: chunked\r\n"));
  EXPECT_THAT(chunked.bytes, Not(HasSubstr("Content-Length")));
  EXPECT_THAT(chunked.body(), HasSubstr("\r\nxyz\r\n"));
}

TEST_F(Faults, CompressTheAnswerWholeOrCut) {
  const Arrived right = arriving();
  set(R"({"kind":"gzip"})");
  const Arrived packed = arriving();
  EXPECT_THAT(packed.bytes, HasSubstr("\r\nContent-Encoding: gzip\r\n"));
  EXPECT_THAT(packed.body(), StartsWith("\x1f\x8b"));
  EXPECT_LT(packed.body().size(), right.body().size());
  set(R"({"kind":"cut-gzip"})");
  const Arrived cut = arriving();
  EXPECT_EQ(cut.body(), packed.body().substr(0, packed.body().size() / 2));
  EXPECT_THAT(
      cut.bytes,
      HasSubstr("\r\nContent-Length: " + std::to_string(packed.body().size() / 2) + "\r\n"));
}

TEST_F(Faults, DamageTheXmlOfTheAnswer) {
  const std::string right = invoice().body;
  const std::string start = before_first_end_tag(right);
  set(R"({"kind":"cut-xml","after_bytes":200})");
  EXPECT_EQ(invoice().body, right.substr(0, 200));
  set(R"({"kind":"malformed-xml"})");
  // The first text is that of InvoiceUID, whose end tag loses a letter.
  EXPECT_EQ(invoice().body, start + "</InvoiceUI>" +
                                right.substr(start.size() + std::string("</InvoiceUID>").size()));
  set(R"({"kind":"empty-body"})");
  EXPECT_EQ(invoice().status, 200);
  EXPECT_EQ(invoice().header("Content-Length"), "0");
  set(R"({"kind":"wrong-charset"})");
  EXPECT_EQ(invoice().header("Content-Type"), "text/xml; charset=utf-16");
  EXPECT_THAT(invoice().body, StartsWith("<?xml version=\"1.0\" encoding=\"utf-16\"?>"));
  set(R"({"kind":"wrong-charset","charset":"utf-8"})");
  EXPECT_EQ(invoice().body,
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>" +
                start.substr(std::string(R"(<?xml version="1.0" encoding="UTF-8"?>)").size()) +
                "\xE9" + right.substr(start.size()));
}

TEST_F(Faults, AnswerWithMoreThanFitsIntoMemoryAtOnce) {
  const std::string right = invoice().body;
  constexpr std::size_t kMore = 3'000'000;
  set(R"({"kind":"big-body","bytes":3000000})");
  const std::string big = arriving().body();
  const std::string start = before_first_end_tag(right);
  ASSERT_EQ(big.size(), right.size() + kMore);
  EXPECT_EQ(big.substr(0, start.size()), start);
  EXPECT_EQ(big.find_first_not_of('x', start.size()), start.size() + kMore);
  EXPECT_EQ(big.substr(start.size() + kMore), right.substr(start.size()));
  // A head says how much there would be; nobody has to take it.
  set(R"({"kind":"big-body","bytes":1000000000000})");
  RawClient client(port());
  ASSERT_TRUE(client.send(invoice_request(kGetFirst)));
  EXPECT_EQ(client.receive_head().header("Content-Length"),
            std::to_string(1'000'000'000'000 + right.size()));
}

TEST_F(Faults, GiveTheAnswerInMultiRefForm) {
  set(R"({"kind":"multi-ref"})");
  const std::string body = invoice().body;
  EXPECT_THAT(body, HasSubstr("Response xmlns:m=\"urn:InvoiceService\"><return href=\"#"));
  EXPECT_THAT(body, HasSubstr("</m:getInvoiceResponse><multiRef id=\""));
  EXPECT_THAT(body, HasSubstr("<Customer href=\"#"));
  EXPECT_THAT(body, Not(HasSubstr("<Customer>")));
  EXPECT_THAT(body, EndsWith("</multiRef></SOAP-ENV:Body></SOAP-ENV:Envelope>"));
}

TEST_F(Faults, GiveTheAnswerThatBelongsToAnotherRequest) {
  const std::string first = invoice(kGetFirst).body;
  set(R"({"kind":"other-answer","skip":1})");
  EXPECT_EQ(invoice(kGetFirst).body, first);
  EXPECT_EQ(invoice(kGetSecond).body, first);
  EXPECT_THAT(invoice(kGetFirst).body, HasSubstr("INV-1002"));
  set(R"({"kind":"other-answer"})");
  EXPECT_THAT(invoice().body, HasSubstr("beatResponse"));
}

TEST_F(Faults, HitOnlyTheRequestsThatTheyAreFor) {
  for (const char* hit :
       {R"("operation":"BVInvoiceConnector.GetInvoice")", R"("operation":"BVInvoiceConnector.*")",
        R"("operation":"*")", R"("route":"soap")", R"("session":"S1")", R"("header":"X-Test: a")",
        R"("header":"x-test")"}) {
    set("{\"kind\":\"status\"," + std::string(hit) + "}");
    EXPECT_EQ(invoice(kGetFirst, "X-Test: a\r\n").status, 503) << hit;
  }
  for (const char* missed :
       {R"("operation":"BVInvoiceConnector.GetSAPInvoice")", R"("operation":"BVQuoteConnector.*")",
        R"("route":"dal")", R"("session":"S2")", R"("header":"X-Test: b")", R"("header":"X-Te")"}) {
    set("{\"kind\":\"status\"," + std::string(missed) + "}");
    EXPECT_EQ(invoice(kGetFirst, "X-Test: a\r\n").status, 200) << missed;
  }
}

TEST_F(Faults, HitAsOftenAsTheyWereAskedTo) {
  set(R"({"kind":"status","skip":2,"count":3})");
  EXPECT_EQ(failing(8), "..xxx...");
  EXPECT_EQ(listed()[0]["seen"], 8);
  EXPECT_EQ(listed()[0]["hit"], 3);
  set(R"([{"kind":"status","count":1,"status":500},{"kind":"status","status":404}])");
  EXPECT_EQ(invoice().status, 500);
  EXPECT_EQ(invoice().status, 404);
}

TEST_F(Faults, HitByChanceButAlwaysTheSameRequests) {
  set(R"({"kind":"status","probability":0.5,"seed":4})");
  const std::string pattern = failing(40);
  set(R"({"kind":"status","probability":0.5,"seed":4})");
  EXPECT_EQ(failing(40), pattern);
  set(R"({"kind":"status","probability":0.5,"seed":5})");
  EXPECT_NE(failing(40), pattern);
  const auto hits = std::count(pattern.begin(), pattern.end(), 'x');
  EXPECT_GT(hits, 5);
  EXPECT_LT(hits, 35);
  set(R"({"kind":"status","probability":0})");
  EXPECT_EQ(failing(5), ".....");
  set(R"({"kind":"status","probability":1})");
  EXPECT_EQ(failing(5), "xxxxx");
}

TEST_F(Faults, LeaveARequestAloneThatDoesNotFit) {
  set(R"({"kind":"status","count":1})");
  const RawReply refused = invoice("<UID xsi:type=\"xsd:string\">INV-1001</UID>");
  EXPECT_THAT(refused.body, HasSubstr("parameter 1 is named"));
  EXPECT_EQ(listed()[0]["seen"], 0);
  EXPECT_EQ(invoice().status, 503);
}

TEST_F(Faults, DoWhatWasAskedOnlyWhereTheAnswerIsDamaged) {
  const auto set_logo = [this](const char* logo) {
    return sandbox_.soap("urn:MaintenanceService", "setUserLogo",
                         "<param xsi:type=\"xsd:string\">" + std::string(logo) + "</param>");
  };
  const auto logo = [this] {
    clear();
    return sandbox_.soap("urn:MaintenanceService", "getUserLogo", "").body;
  };
  set(R"({"kind":"soap-fault"})");
  EXPECT_EQ(set_logo("red").status, 500);
  EXPECT_THAT(logo(), HasSubstr(">standard<"));
  set(R"({"kind":"empty-body"})");
  EXPECT_EQ(set_logo("green").body, "");
  EXPECT_THAT(logo(), HasSubstr(">green<"));
  set(R"({"kind":"soap-fault","run":true})");
  EXPECT_EQ(set_logo("blue").status, 500);
  EXPECT_THAT(logo(), HasSubstr(">blue<"));
  set(R"({"kind":"empty-body","run":false})");
  EXPECT_EQ(set_logo("grey").body, "");
  EXPECT_THAT(logo(), HasSubstr(">blue<"));
}

TEST_F(Faults, AreListedAndRemovedByTheirNames) {
  const RawReply added = post(R"({"faults":[{"kind":"reset","name":"mine"},{"kind":"close"}]})");
  EXPECT_EQ(nlohmann::json::parse(added.body),
            nlohmann::json::parse(R"({"faults":[{"name":"mine"},{"name":"fault-1"}]})"));
  EXPECT_EQ(listed(), nlohmann::json::parse(
                          R"([{"name":"mine","kind":"reset","seen":0,"hit":0},
                              {"name":"fault-1","kind":"close","seen":0,"hit":0}])"));
  EXPECT_EQ(exchange(port(), http_request("DELETE", "/admin/faults/mine", "", "")).status, 200);
  EXPECT_EQ(listed().size(), 1U);
  const RawReply again = exchange(port(), http_request("DELETE", "/admin/faults/mine", "", ""));
  EXPECT_EQ(again.status, 404);
  EXPECT_EQ(again.body, "There is no fault with the name 'mine'\n");
}

TEST_F(Faults, AreRefusedInOneLineThatSaysWhatThereIs) {
  const std::pair<const char*, const char*> refusals[] = {
      {"{", "The faults are not JSON"},
      {R"("reset")", R"(A fault is an object, such as {"kind": "reset"})"},
      {R"({"kind":"rest"})", "There is no kind 'rest' of fault; did you mean reset?"},
      {R"({"kind":"reset","sesion":"S"})", "A fault has no field 'sesion'; did you mean session?"},
      {R"({"kind":"reset","by":1})", "A fault of the kind reset takes no by"},
      {R"({"kind":"reset","count":0})",
       "count is 0, expected a whole number from 1 to 9223372036854775807"},
      {R"({"kind":"reset","count":"1"})",
       "count is \"1\", expected a whole number from 1 to 9223372036854775807"},
      {R"({"kind":"reset","probability":1.5})",
       "probability is 1.5, expected a number from 0 to 1"},
      {R"({"kind":"status","status":99})", "status is 99, expected a whole number from 200 to 599"},
      {R"({"kind":"status","page":"pdf"})", "page is 'pdf', expected html or empty"},
      {R"({"kind":"reset","route":"http"})", "route is 'http', expected soap or dal"},
      {R"({"kind":"reset","run":1})", "run is 1, expected true or false"},
      {R"({"kind":"reset","session":5})", "session is 5, expected a text"},
      {R"({"kind":"delay"})", "A fault of the kind delay needs delay_ms"},
      {R"({"kind":"reset","operation":"BVInvoiceConnector.GetInvoce"})",
       "operation is 'BVInvoiceConnector.GetInvoce', which the library does not have; did you mean "
       "BVInvoiceConnector.GetInvoice?"},
  };
  for (const auto& [json, words] : refusals) {
    const RawReply reply = post(json);
    EXPECT_EQ(reply.status, 400) << json;
    EXPECT_EQ(reply.body, std::string(words) + "\n");
  }
  EXPECT_THAT(post("{}").body, StartsWith("A fault needs a kind: soap-fault, dal-error, status, "));
  // Of several none is taken where one is refused.
  EXPECT_EQ(post(R"([{"kind":"reset"},{"kind":"rest"}])").status, 400);
  EXPECT_EQ(listed().size(), 0U);
  ASSERT_EQ(post(R"({"kind":"reset","name":"a"})").status, 200);
  EXPECT_EQ(post(R"({"kind":"reset","name":"a"})").body,
            "There is a fault with the name 'a' already\n");
}

}  // namespace
}  // namespace bvconn::test
