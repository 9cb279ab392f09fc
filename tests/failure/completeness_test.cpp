#include <gtest/gtest.h>

#include "failure/declared.h"
#include "failure/scenario.h"

namespace {

using kelvo::test::failure::all_scenarios;
using kelvo::test::failure::declared;
using kelvo::test::failure::declared_in;
using kelvo::test::failure::name_of;
using kelvo::test::failure::Names;
using kelvo::test::failure::Scenario;

TEST(FailureTable, ReadsTheFunctionsOfAHeader) {
  EXPECT_EQ(declared_in("#if defined(__cplusplus)\nextern \"C\" {\n#endif\n"
                        "/* Calls other() ** first. */\nint32_t one(void);  // see two()\n"
                        "extern int32_t three;\nuint8_t four(uint8_t a,\n             int b);\n"),
            (Names{"one", "four"}));
}

TEST(FailureTable, HasEveryDeclaredFunctionAndNoOther) {
  Names listed;
  for (const Scenario& scenario : all_scenarios()) listed.insert(scenario.function);
  const Names all = declared();
  ASSERT_FALSE(all.empty()) << "no function is declared in " << KELVO_HEADER_FOLDER;
  EXPECT_EQ(listed, all);
}

TEST(FailureTable, NamesEachRowOnce) {
  Names names;
  for (const Scenario& scenario : all_scenarios()) {
    EXPECT_TRUE(names.insert(name_of(scenario)).second) << name_of(scenario);
  }
}

}  // namespace
