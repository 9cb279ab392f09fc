#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "failure/rounds.h"
#include "failure/scenario.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::failure::Account;
using kelvo::test::failure::all_scenarios;
using kelvo::test::failure::foretell_undisturbed;
using kelvo::test::failure::frames_in;
using kelvo::test::failure::name_of;
using kelvo::test::failure::play;
using kelvo::test::failure::play_undisturbed;
using kelvo::test::failure::Report;
using kelvo::test::failure::Scenario;
using kelvo::test::failure::Series;

/// More calls of one kind than any run makes.
constexpr int most_calls = 1000;

int one_more(int nth) { return nth + 1; }

/// Every transfer takes the same lock, and a boot has hundreds of these steps: after the first ones
/// every seventh, by turns one of taking and one of giving back.
int one_more_then_seven(int nth) { return nth < 8 ? nth + 1 : nth + 7; }

/// How often the library does a thing in its life may be part of the round: it opens the driver's
/// device once, waits for a motor once, and asks for the head's family once.
enum class Life { of_a_test, of_a_round };

struct Kind {
  Call call;
  const char* name;
  const char* test;  // neighbours of the same word make one test
  Life life = Life::of_a_test;
  int (*next)(int nth) = one_more;
};
constexpr Kind kinds[] = {
    {Call::open, "open", "open", Life::of_a_round},
    {Call::close, "close", "close"},
    {Call::transfer, "transfer", "transfer"},
    {Call::speed, "speed", "speed"},
    {Call::i2c, "i2c", "i2c", Life::of_a_round},
    {Call::usleep, "usleep", "usleep", Life::of_a_round},
    {Call::sleep, "sleep", "sleep"},
    {Call::system, "system", "system"},
    {Call::ftok, "ftok", "lock", Life::of_a_test, one_more_then_seven},
    {Call::semget, "semget", "lock", Life::of_a_test, one_more_then_seven},
    {Call::semctl, "semctl", "lock", Life::of_a_test, one_more_then_seven},
    {Call::semop, "semop", "lock", Life::of_a_test, one_more_then_seven},
    {Call::fopen, "fopen", "fopen"},
    {Call::fsync, "fsync", "fsync"},
    {Call::calloc, "calloc", "calloc", Life::of_a_round},
};
static_assert(std::size(kinds) == kelvo::test::failure::call_kinds);

class FailureAsInput : public testing::Test {
 public:
  FailureAsInput(const Scenario& scenario, const std::vector<Kind>& kinds_of_test)
      : scenario_(scenario), kinds_(kinds_of_test) {}

 private:
  void TestBody() override {
    learn_frames();
    std::vector<Series> together;
    for (const Kind& kind : kinds_) {
      for (const bool for_good : {false, true}) {
        const Series series = {kind.name, kind.call, for_good, 1, most_calls, kind.next};
        if (kind.life == Life::of_a_round || scenario_.can_hang) {
          play_apart(series);
        } else {
          together.push_back(series);
        }
      }
    }
    EXPECT_TRUE(play_in_one_life(together));
  }

  /// What is in the frames is no concern of the rules; their number and order is. Without devices, or
  /// with the latch set, they would not be seen.
  void learn_frames() {
    Scenario undisturbed = scenario_;
    undisturbed.setting.devices = true;
    if (undisturbed.setting.variant == 0) undisturbed.setting.variant = 7;
    const Account seen = play_undisturbed(undisturbed);
    frames_ = frames_in(seen.text);
    const Account expected = foretell_undisturbed(undisturbed, frames_);
    EXPECT_EQ(seen.trouble, "");
    EXPECT_EQ(seen.text, expected.text);
    EXPECT_EQ(seen.calls, expected.calls);
  }

  /// Whether all was played to the end.
  bool play_in_one_life(const std::vector<Series>& series) {
    const Report report = play(scenario_, series, frames_);
    SCOPED_TRACE(report.round);
    EXPECT_EQ(report.trouble, "");
    EXPECT_EQ(report.seen, report.expected);
    return report.complete;
  }

  void play_apart(Series series) {
    const int last = series.last;
    for (int nth = 1; !HasFailure(); nth = series.next(nth)) {
      ASSERT_LE(nth, last);
      series.first = series.last = nth;
      if (play_in_one_life({series})) return;
    }
  }

  Scenario scenario_;
  std::vector<Kind> kinds_;
  std::vector<std::string> frames_;
};

void add_test(const Scenario& scenario, const std::vector<Kind>& kinds_of_test, const char* test) {
  const std::string name = name_of(scenario) + "/" + test;
  testing::RegisterTest(
      "FailureAsInput", name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
      [=]() -> FailureAsInput* { return new FailureAsInput(scenario, kinds_of_test); });
}

/// A test for each sort of call that the function makes, and one for a function that makes none.
void add_tests(const Scenario& scenario) {
  const std::vector<int> calls = foretell_undisturbed(scenario, {}).calls;
  std::vector<Kind> gathered;
  bool any = false;
  for (const Kind& kind : kinds) {
    if (calls[static_cast<std::size_t>(kind.call)] > 0) gathered.push_back(kind);
    const bool last = &kind == std::end(kinds) - 1 || std::string((&kind + 1)->test) != kind.test;
    if (!last || gathered.empty()) continue;
    add_test(scenario, gathered, kind.test);
    gathered.clear();
    any = true;
  }
  if (!any) add_test(scenario, {kinds[0]}, "no_call");
}

bool add_all_tests() {
  for (const Scenario& scenario : all_scenarios()) add_tests(scenario);
  return true;
}

[[maybe_unused]] const bool tests_added = add_all_tests();

}  // namespace
