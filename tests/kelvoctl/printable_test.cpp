#include "tools/kelvoctl/common/printable.h"

#include <gtest/gtest.h>

namespace kelvo::ctl {
namespace {

TEST(Printable, IsTextAsItIs) {
  EXPECT_EQ(printable("a b, \"c\" \xC3\xA9"), "a b, \"c\" \xC3\xA9");
}

TEST(Printable, HasNoControlCharacters) {
  EXPECT_EQ(printable("a\n\x1B[31m\x7F\t"), "a\\x0A\\x1B[31m\\x7F\\x09");
  EXPECT_EQ(printable(std::string_view("\0", 1)), "\\x00");
}

TEST(Printable, IsShort) {
  EXPECT_EQ(printable(std::string(1000, 'x')), std::string(1000, 'x'));
  EXPECT_EQ(printable(std::string(999, 'x') + "yz"),
            std::string(700, 'x') + "..." + std::string(298, 'x') + "yz");
}

}  // namespace
}  // namespace kelvo::ctl
