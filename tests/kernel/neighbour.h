// Another process that uses the library at the same time.
#ifndef KELVO_TESTS_KERNEL_NEIGHBOUR_H
#define KELVO_TESTS_KERNEL_NEIGHBOUR_H

#include <sys/types.h>

#include <functional>
#include <optional>

namespace kelvo::test {

/// Ends a wait for a lock that is never given back: it returns with a failure then.
void limit_waits(int seconds);

/// Waits until something holds, for at most ten seconds; whether it does.
bool eventually(const std::function<bool()>& holds);

class Neighbour {
 public:
  using Tell = std::function<void(int)>;

  /// Starts a process that does this and ends. It is killed with this object.
  explicit Neighbour(const std::function<void(const Tell& tell)>& work);
  ~Neighbour();
  Neighbour(const Neighbour&) = delete;
  Neighbour& operator=(const Neighbour&) = delete;

  /// The next number that it tells, or nothing if it ends or keeps silent for ten seconds.
  std::optional<int> hear();
  /// Whether it has told something that nobody has heard yet.
  bool has_told() const;
  /// Whether it ends by itself, in order.
  bool ends();
  void kill();

 private:
  pid_t process_ = -1;
  int line_ = -1;
};

}  // namespace kelvo::test

#endif
