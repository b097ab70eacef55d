#include "sandbox/faults/multi_ref.h"

#include <gtest/gtest.h>

namespace bvconn::sandbox {
namespace {

std::string in_body(const std::string& body) {
  return "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"e\"><SOAP-ENV:Body>" + body +
         "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

TEST(MultiRefForm, PutsWhatHasElementsBesideTheMethod) {
  EXPECT_EQ(in_multi_ref_form(in_body("<m:r xmlns:m=\"u\"><a>1</a><b t=\"x\"><c>2</c></b></m:r>")),
            in_body("<m:r xmlns:m=\"u\"><a>1</a><b href=\"#ref-0\"/></m:r>"
                    "<multiRef id=\"ref-0\" SOAP-ENC:root=\"0\" t=\"x\" xmlns:m=\"u\"><c>2</c>"
                    "</multiRef>"));
}

TEST(MultiRefForm, LeadsFromOneToTheNext) {
  EXPECT_EQ(in_multi_ref_form(in_body("<r><a><b><c/></b><d> </d></a></r>")),
            in_body("<r><a href=\"#ref-1\"/></r>"
                    "<multiRef id=\"ref-0\" SOAP-ENC:root=\"0\"><c/></multiRef>"
                    "<multiRef id=\"ref-1\" SOAP-ENC:root=\"0\"><b href=\"#ref-0\"/><d> </d>"
                    "</multiRef>"));
}

TEST(MultiRefForm, KeepsPrefixesInForce) {
  EXPECT_EQ(in_multi_ref_form(
                in_body("<r><p:a xmlns:p=\"1\" q='>'><p:b xmlns:p=\"2\"><p:c/></p:b></p:a></r>")),
            in_body("<r><p:a xmlns:p=\"1\" href=\"#ref-1\"/></r>"
                    "<multiRef id=\"ref-0\" SOAP-ENC:root=\"0\" xmlns:p=\"2\"><p:c/></multiRef>"
                    "<multiRef id=\"ref-1\" SOAP-ENC:root=\"0\" xmlns:p=\"1\" q='>'>"
                    "<p:b xmlns:p=\"2\" href=\"#ref-0\"/></multiRef>"));
}

TEST(MultiRefForm, LeavesOthersIdsAndOtherTextsAlone) {
  const std::string bound = in_body("<r><a id=\"1\"><b/></a></r>");
  EXPECT_EQ(in_multi_ref_form(bound), bound);
  for (const char* text : {"", "no XML", "<a><b/></a>"}) EXPECT_EQ(in_multi_ref_form(text), text);
  EXPECT_EQ(in_multi_ref_form(in_body("<r><a>")), in_body("<r><a>"));
}

TEST(PlaceForMoreText, IsBeforeTheFirstEndTagInTheBody) {
  EXPECT_EQ(place_for_more_text("<x/><SOAP-ENV:Body><r><a>1</a>"), 26U);
  EXPECT_EQ(place_for_more_text("OK"), 0U);
}

}  // namespace
}  // namespace bvconn::sandbox
