#include "foreign/stated_json.h"

#include <gtest/gtest.h>

namespace bvconn::test {
namespace {

/// What is stated, compared with the other value as the runner does it.
bool holds(const char* stated, const char* actual) {
  const Json value = Json::parse(actual);
  return filled_in(read_stated(stated), value).dump() == value.dump();
}

TEST(StatedJson, HoldsForTheSameValueAlone) {
  EXPECT_TRUE(holds(R"({"a":[1,"b",null,true]})", R"({"a":[1,"b",null,true]})"));
  EXPECT_FALSE(holds(R"({"a":[1,"b",null,true]})", R"({"a":[1,"b",null,false]})"));
  EXPECT_FALSE(holds(R"([1,2])", R"([1,2,3])"));
  EXPECT_FALSE(holds(R"([1,2,3])", R"([1,2])"));
  EXPECT_FALSE(holds(R"([1,2])", R"([2,1])"));
  EXPECT_FALSE(holds(R"({"a":1})", R"({"a":1,"b":2})"));
  EXPECT_FALSE(holds(R"({"a":1,"b":2})", R"({"a":1})"));
  EXPECT_FALSE(holds("2", "2.0"));
  EXPECT_FALSE(holds(R"("1")", "1"));
  EXPECT_FALSE(holds(R"("")", "null"));
}

TEST(StatedJson, LeavesTextsOpenWhereItSaysSo) {
  EXPECT_TRUE(holds(R"({"a":"{any}"})", R"({"a":""})"));
  EXPECT_TRUE(holds(R"("a{any}b{any}c")", R"("a1b2bc")"));
  EXPECT_FALSE(holds(R"("a{any}b")", R"("a1c")"));
  EXPECT_FALSE(holds(R"("a{any}b")", R"("a1bc")"));
  EXPECT_FALSE(holds(R"("{any}")", "1"));
}

TEST(StatedJson, LeavesNamespacesOpenUnlessItStatesThem) {
  EXPECT_TRUE(holds(R"({"name":"a"})", R"({"name":"a","namespace":"urn:x"})"));
  EXPECT_FALSE(holds(R"({"name":"a","namespace":"urn:y"})", R"({"name":"a","namespace":"urn:x"})"));
  EXPECT_FALSE(holds(R"({"name":"a","namespace":"urn:y"})", R"({"name":"a"})"));
}

TEST(StatedJson, WritesManyCharactersOut) {
  EXPECT_EQ(read_stated(R"(["{3 times ab}c","{2 times }","three times {0 times x}"])"),
            Json({"abababc", "", "three times "}));
}

}  // namespace
}  // namespace bvconn::test
