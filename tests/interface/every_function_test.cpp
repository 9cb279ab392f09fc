#include "interface/every_function.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

#include "failure/declared.h"
#include "script/script.h"

namespace {

using kelvo::test::Script;
using kelvo::test::failure::declared;
using kelvo::test::failure::declared_objects;
using kelvo::test::failure::declared_objects_in;
using kelvo::test::failure::Names;

Names called;
Names shown;
bool all_zero = true;

void note_call(const char* call) {
  const std::string text = call;
  called.insert(text.substr(0, text.find('(')));
}

void note_object(const char* object, const void* address, std::size_t size) {
  shown.insert(object);
  const std::span bytes(static_cast<const std::uint8_t*>(address), size);
  all_zero &= std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
}

TEST(ClientInC, CallsEveryDeclaredFunctionAndComesBackFromIt) {
  Script script;
  script.query_reply(0x80, {0, 0, 0, 4});  // a calibration that is finished
  call_every_function(note_call);
  EXPECT_EQ(called, declared());
  EXPECT_EQ(called.size(), 182U);
  EXPECT_EQ(script.semaphore_value(), 0);
}

TEST(ClientInC, ReadsEveryDeclaredObject) {
  show_every_object(note_object);
  EXPECT_EQ(shown, declared_objects());
  EXPECT_EQ(shown.size(), 25U);
  EXPECT_FALSE(all_zero);
}

TEST(ClientInC, IsHeldAgainstTheObjectsOfAHeader) {
  EXPECT_EQ(declared_objects_in("#if defined(__cplusplus)\nextern \"C\" {\n#endif\n"
                                "/* extern int32_t other; */\nextern int32_t one;\n"
                                "extern const uint8_t two[3][4];\nint32_t three(void);\n"
                                "extern int32_t four(void);\n"),
            (Names{"one", "two"}));
}

}  // namespace
