// Rounds: the library is called once in each while one of the calls that leave it fails.
#ifndef KELVO_TESTS_FAILURE_ROUNDS_H
#define KELVO_TESTS_FAILURE_ROUNDS_H

#include <string>
#include <vector>

#include "failure/scenario.h"

namespace kelvo::test::failure {

/// Rounds in which the first, then the second ... call of a kind fails, to the one that meets no such
/// call any more or to the last one asked for.
struct Series {
  const char* name = "";  // of the kind
  Call call = Call::open;
  bool for_good = false;
  int first = 1;
  int last = 1;
  int (*next)(int nth);
};

/// What became of series that were played one after the other in a process of their own, whose library
/// nobody had used before.
struct Report {
  bool complete = false;  // the last round of each series met no failure
  std::string round;      // the last one begun, "transfer number 3 fails once"
  std::string seen;       // the account of a round that did not go by the rules, else nothing
  std::string expected;   // what the rules make of that round
  std::string trouble;    // why the process ended before its time
};
Report play(const Scenario& scenario, const std::vector<Series>& series,
            const std::vector<std::string>& frames);

/// A round without a failure: what it did, and how many calls of each kind it made.
struct Account {
  std::string text;
  std::vector<int> calls;
  std::string trouble;
};
Account play_undisturbed(const Scenario& scenario);
Account foretell_undisturbed(const Scenario& scenario, const std::vector<std::string>& frames);

/// The frames in an account's text, in order.
std::vector<std::string> frames_in(const std::string& text);

}  // namespace kelvo::test::failure

#endif
