// A piece of work in a process of its own.
#ifndef KELVO_TESTS_SCRIPT_CHILD_H
#define KELVO_TESTS_SCRIPT_CHILD_H

#include <functional>
#include <string>

namespace kelvo::test {

/// What a process has told, and why it ended before its time ("" if it did not).
struct Told {
  std::string text;
  std::string trouble;
};

using Tell = std::function<void(const std::string&)>;

/// Does the work in a new process and waits for its end; a process that hangs is killed.
Told in_a_process(const std::function<void(const Tell&)>& work);

}  // namespace kelvo::test

#endif
