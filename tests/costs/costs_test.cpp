#include "costs/costs.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "failure/declared.h"

namespace {

using kelvo::test::costs::Cost;
using kelvo::test::costs::Costs;
using kelvo::test::costs::Function;
using kelvo::test::costs::measure;
using kelvo::test::costs::Scope;

const Function& function_called(const std::string& name) {
  for (const auto& chapter : kelvo::test::costs::chapters()) {
    for (const Function& function : chapter.functions) {
      if (function.name() == name) return function;
    }
  }
  static constexpr Function none = {"", Scope::neither, [] {}};
  ADD_FAILURE() << "no such function: " << name;
  return none;
}

TEST(Costs, OfACommandFrameAreEightSystemCallsAndOneLockSection) {
  const Costs costs = measure(function_called("SendCommand"), {"DE015", Scope::modules, 7});
  EXPECT_EQ(costs.trouble, "");
  EXPECT_EQ(costs.first, (Cost{8, 1, 7}));
  EXPECT_EQ(costs.again, costs.first);
}

TEST(Costs, OfAQueryFrameAreOneSystemCall) {
  const Costs costs = measure(function_called("RecvCommand"), {"T5391", Scope::modules, 9});
  EXPECT_EQ(costs.first, (Cost{1, 0, 12}));
}

TEST(Costs, OfARegisterWriteIncludeThePauseOfAVetra) {
  const Function& send = function_called("SendI2C");
  EXPECT_EQ(measure(send, {"Vetra", Scope::families, 1}).first, (Cost{2, 0, 3}));
  EXPECT_EQ(measure(send, {"Tasmere", Scope::families, 2}).first, (Cost{1, 0, 3}));
}

TEST(Costs, OfARegisterReadCountBothDirections) {
  EXPECT_EQ(measure(function_called("ReadI2C"), {"Tasmere", Scope::families, 2}).first,
            (Cost{1, 0, 3}));
}

TEST(Costs, OfAPayloadAreItsBytes) {
  const Costs costs = measure(function_called("WriteData"), {"", Scope::neither, 0});
  EXPECT_EQ(costs.first, (Cost{18, 2, 5 + 64}));
}

TEST(CostsTable, HasEveryFunctionOnce) {
  std::multiset<std::string> listed;
  for (const auto& chapter : kelvo::test::costs::chapters()) {
    for (const Function& function : chapter.functions) listed.insert(function.name());
  }
  const std::set<std::string> all = kelvo::test::failure::declared();
  EXPECT_EQ(listed, std::multiset<std::string>(all.begin(), all.end()));
}

TEST(CostsTable, IsWhatTheDocumentShows) {
  std::ifstream stream(KELVO_COSTS_DOCUMENT);
  const std::string shown{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  EXPECT_EQ(shown, kelvo::test::costs::document()) << "./dev costs writes the document anew";
}

}  // namespace
