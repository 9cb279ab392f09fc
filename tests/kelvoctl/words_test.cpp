#include "tools/kelvoctl/common/words.h"

#include <gtest/gtest.h>

#include "tools/kelvoctl/common/exit_code.h"

namespace kelvo::ctl {
namespace {

using Words = std::vector<std::string>;

TEST(Words, ArePartedByBlanks) {
  EXPECT_EQ(words_of("  zoom1\tmove  -200\r"), (Words{"zoom1", "move", "-200"}));
  EXPECT_EQ(words_of(""), Words());
  EXPECT_EQ(words_of(" \t"), Words());
}

TEST(Words, AreKeptTogetherByQuotes) {
  EXPECT_EQ(words_of("run 'a file'"), (Words{"run", "a file"}));
  EXPECT_EQ(words_of("run \"a 'file'\""), (Words{"run", "a 'file'"}));
  EXPECT_EQ(words_of("a\\ b 'c\\d' \"e\\\"f\""), (Words{"a b", "c\\d", "e\"f"}));
  EXPECT_EQ(words_of("''"), (Words{""}));
}

TEST(Words, EndWhereACommentBegins) {
  EXPECT_EQ(words_of("# nothing"), Words());
  EXPECT_EQ(words_of("boot # now"), (Words{"boot"}));
  EXPECT_EQ(words_of("a#b '#' \\#"), (Words{"a#b", "#", "#"}));
}

TEST(Words, OfAnOpenQuoteAreRefused) {
  for (const char* const line : {"'", "a 'b", "\"x", "\"a\\\""}) {
    EXPECT_THROW(words_of(line), Failure) << line;
  }
}

}  // namespace
}  // namespace kelvo::ctl
