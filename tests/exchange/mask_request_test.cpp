#include "bvconn/platform/exchange/mask_request.h"

#include <gtest/gtest.h>

#include <string>

namespace bvconn::test {
namespace {

std::string envelope(const std::string& body) {
  return R"(<?xml version="1.0"?><SOAP-ENV:Envelope xmlns:SOAP-ENV="urn:e"><SOAP-ENV:Header>)"
         "<userID>S</userID></SOAP-ENV:Header><SOAP-ENV:Body>" +
         body + "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

std::string masked(const std::string& body) {
  return mask_request(envelope(body));
}

TEST(MaskRequest, HidesEveryTextOfUpdatePassword) {
  EXPECT_EQ(
      masked(R"(<m:updatePassword xmlns:m="urn:M"><param xsi:type="xsd:string">s3cret</param>)"
             "</m:updatePassword>"),
      envelope(R"(<m:updatePassword xmlns:m="urn:M"><param xsi:type="xsd:string">***</param>)"
               "</m:updatePassword>"));
}

TEST(MaskRequest, HidesTextInATreeAndInCdata) {
  EXPECT_EQ(masked("<m:updatePassword><root><a>one</a><b><![CDATA[t<w>o]]></b></root>"
                   "</m:updatePassword>"),
            envelope("<m:updatePassword><root><a>***</a><b>***</b></root></m:updatePassword>"));
}

TEST(MaskRequest, KeepsTheHeader) {
  EXPECT_NE(masked("<updatePassword><p>x</p></updatePassword>").find("<userID>S</userID>"),
            std::string::npos);
}

TEST(MaskRequest, HidesTheElementOfALoginThatIsNamedPassword) {
  EXPECT_EQ(masked("<m:login><User>alice</User><Password>s3cret</Password></m:login>"),
            envelope("<m:login><User>alice</User><Password>***</Password></m:login>"));
  EXPECT_EQ(masked("<m:Login><c><user>alice</user><userPwd><x>s3</x></userPwd></c></m:Login>"),
            envelope("<m:Login><c><user>alice</user><userPwd><x>***</x></userPwd></c></m:Login>"));
}

TEST(MaskRequest, HidesTheSecondParameterOfAPositionalLogin) {
  EXPECT_EQ(
      masked("<m:login><param>alice</param><param>s3cret</param><param>7.1</param></m:login>"),
      envelope("<m:login><param>alice</param><param>***</param><param>7.1</param></m:login>"));
}

TEST(MaskRequest, HidesThePasswordOfALoginWhateverItsElementIsCalled) {
  for (const std::string name : {"passwd", "pass", "pwd", "Kennwort", "UserPass"}) {
    EXPECT_EQ(masked("<m:login><user>alice</user><" + name + ">s3cret</" + name + "></m:login>"),
              envelope("<m:login><user>alice</user><" + name + ">***</" + name + "></m:login>"));
  }
}

TEST(MaskRequest, HidesTheSecondParameterOfALoginBesidesWhatIsNamedSo) {
  EXPECT_EQ(masked("<login><oldPass>one</oldPass><secret>two</secret><app>7</app></login>"),
            envelope("<login><oldPass>***</oldPass><secret>***</secret><app>7</app></login>"));
}

TEST(MaskRequest, LeavesOtherRequestsAsTheyAre) {
  const std::string request =
      envelope("<m:getInvoice><param>updatePassword</param></m:getInvoice>");
  EXPECT_EQ(mask_request(request), request);
  EXPECT_EQ(mask_request("plain text"), "plain text");
  EXPECT_EQ(mask_request(""), "");
}

TEST(MaskRequest, HidesAlsoWhatIsNotWellFormed) {
  EXPECT_EQ(mask_request("<e><e:Body><m:updatePassword><param>s3cret"),
            "<e><e:Body><m:updatePassword><param>***");
}

}  // namespace
}  // namespace bvconn::test
