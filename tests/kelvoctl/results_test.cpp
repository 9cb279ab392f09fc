#include "tools/kelvoctl/common/results.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace kelvo::ctl {
namespace {

using tools::Json;

TEST(Result, HasItsMembersInLines) {
  EXPECT_EQ(
      result_text({{"module", "df033"}, {"at_rest", true}, {"count", -5}, {"filter", nullptr}}),
      "module   df033\n"
      "at rest  yes\n"
      "count    -5\n"
      "filter   -\n");
}

TEST(Result, NamesTheMembersOfAMember) {
  EXPECT_EQ(result_text({{"gain", {{"x", 1}, {"y", 2}}}}),
            "gain x  1\n"
            "gain y  2\n");
}

TEST(Result, HasListsOfValuesInOneLine) {
  EXPECT_EQ(result_text({{"hall", Json::array({1, false})}, {"none", Json::array()}}),
            "hall  1 no\n"
            "none  -\n");
}

TEST(Result, HasListsOfObjectsAsTables) {
  const Json motors = Json::array(
      {Json{{"motor", "zoom1"}, {"count", 5}}, Json{{"motor", "focus"}, {"running", true}}});
  EXPECT_EQ(result_text({{"motors", motors}, {"head", "vetra"}}),
            "head  vetra\n"
            "\n"
            "motor  count  running\n"
            "zoom1  5      -\n"
            "focus  -      yes\n");
}

TEST(Result, OfNothingIsNothing) { EXPECT_EQ(result_text(Json::object()), ""); }

TEST(Result, AsJsonBeginsWithItsSchema) {
  EXPECT_EQ(result_json("pan goto", {{"at_rest", true}}),
            "{\n"
            "  \"schema\": 1,\n"
            "  \"command\": \"pan goto\",\n"
            "  \"at_rest\": true\n"
            "}\n");
}

}  // namespace
}  // namespace kelvo::ctl
