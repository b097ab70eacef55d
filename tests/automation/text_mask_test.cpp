#include "text_mask.h"

#include <gtest/gtest.h>

#include <string>

namespace bvconn::test {
namespace {

using tool::TextMask;

std::string masked(const std::string& text) {
  return TextMask().mask_places(text);
}

TEST(TextMask, HidesValuesByTheirNames) {
  EXPECT_EQ(masked("password=hunter22 user=ann"), "password=*** user=ann");
  EXPECT_EQ(masked(R"({"Password": "hun ter", "a": 1})"), R"({"Password": "***", "a": 1})");
  EXPECT_EQ(masked(R"(said {\"userPwd\":\"hunter22\"} there)"),
            R"(said {\"userPwd\":\"***\"} there)");
  EXPECT_EQ(masked("Authorization: Bearer t-1 2\nnext"), "Authorization: ***\nnext");
  EXPECT_EQ(masked("Cookie: a=b; c=d\\r\\nHost: h"), "Cookie: ***\\r\\nHost: h");
  EXPECT_EQ(masked("aSessionID=abc, aServerURL=u"), "aSessionID=***, aServerURL=u");
  EXPECT_EQ(masked("sessionToken='x y'"), "sessionToken='***'");
}

TEST(TextMask, HidesUserAndPasswordOfUrls) {
  EXPECT_EQ(masked("see http://ann:pw@host/p and more"), "see http://***@host/p and more");
}

TEST(TextMask, HidesElementsInsideAndOutsideOfEnvelopes) {
  EXPECT_EQ(masked("x <newPassword>hunter22</newPassword> y"),
            "x <newPassword>***</newPassword> y");
  EXPECT_EQ(masked("<E><Header><userID>s-77</userID></Header><Body><login><u>ann</u><p>pw</p>"
                   "</login></Body></E>"),
            "<E><Header><userID>***</userID></Header><Body><login><u>ann</u><p>***</p>"
            "</login></Body></E>");
}

TEST(TextMask, LeavesOtherTextsAlone) {
  for (const std::string text :
       {"ERROR Global sendXML 0x80044301 HTTPTransport: Cannot reach http://h:80/",
        "the password is wrong", "ids=1,2", "a < b > c", "", "token", "password="}) {
    EXPECT_EQ(masked(text), text);
  }
}

TEST(TextMask, HidesWhatItFoundWhereverItTurnsUpAgain) {
  TextMask mask;
  mask.add("given-1");
  mask.add("abc");  // too short to be looked for
  EXPECT_EQ(mask.mask_places("<password>a&amp;b-c</password>"), "<password>***</password>");
  EXPECT_EQ(mask.hide("given-1 abc a&amp;b-c a&b-c"), "*** abc *** ***");
}

TEST(TextMask, HidesALongerSecretBeforeTheOneInIt) {
  TextMask mask;
  mask.add("secret");
  mask.add("secret-long");
  EXPECT_EQ(mask.hide("secret-long secret"), "*** ***");
}

}  // namespace
}  // namespace bvconn::test
