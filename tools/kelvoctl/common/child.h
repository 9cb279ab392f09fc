// Operations that take seconds and must not end half-way run in a process of their own, in which signals
// wait; this one follows what they print.
#ifndef KELVO_TOOLS_KELVOCTL_COMMON_CHILD_H
#define KELVO_TOOLS_KELVOCTL_COMMON_CHILD_H

#include <sys/mman.h>

#include <cstdint>
#include <functional>
#include <new>
#include <string>
#include <type_traits>

#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {

/// Memory that a forked process shares.
class SharedMemory {
 public:
  explicit SharedMemory(std::size_t size);
  ~SharedMemory();
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;
  void* address() const { return address_; }

 private:
  std::size_t size_;
  void* address_;
};

/// Whether a child waits until what it has printed is taken. One that does not is held up by nobody.
enum class Pace : std::uint8_t { free, in_step };

/// Runs `operation` in a child and waits for its end. Each line that the library prints there goes to
/// `on_line` at once, and all of them to session.printed(). After Ctrl-C it says that it waits, and goes
/// on. Returns whether somebody wanted the command to end. Throws a Failure when the child died. Whatever
/// `on_line` throws ends the child, at that line where they go in step, and is passed on.
bool run_in_child(Session& session, const std::function<void()>& operation,
                  const std::function<void(const std::string& line)>& on_line,
                  Pace pace = Pace::free);

/// What became of an operation in a child.
template <typename Result>
struct Outcome {
  Result result;
  bool interrupted;
};

/// The same for an operation with a result.
template <typename Result>
Outcome<Result> call_in_child(Session& session, const std::function<Result()>& operation,
                              const std::function<void(const std::string& line)>& on_line,
                              Pace pace = Pace::free) {
  static_assert(std::is_trivially_copyable_v<Result>, "it passes from process to process");
  const SharedMemory memory(sizeof(Result));
  auto* const result = new (memory.address()) Result();
  const bool interrupted = run_in_child(
      session, [&] { *result = operation(); }, on_line, pace);
  return {*result, interrupted};
}

}  // namespace kelvo::ctl

#endif
