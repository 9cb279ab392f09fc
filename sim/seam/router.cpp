#include "sim/seam/router.h"

#include <sys/wait.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "sim/seam/installed.h"
#include "sim/seam/real.h"
#include "wire/paths.h"

namespace kelvo::sim {
namespace {

std::atomic<Host*> installed_host{nullptr};

bool is_of_gpio_lines(const char* command) {
  return command != nullptr && std::strstr(command, "/sys/class/gpio") != nullptr;
}

}  // namespace

void install(Host* host) { installed_host.store(host); }
Host* installed() { return installed_host.load(); }
thread_local int OwnFiles::depth = 0;

namespace router {

int libc_result(int answer) {
  if (answer >= 0) return answer;
  errno = -answer;
  return -1;
}

bool delay(SleepCall call, std::chrono::nanoseconds time, int& result) {
  Host* const host = installed();
  const Answer answer = host != nullptr ? host->delay(call, time) : Answer{};
  if (answer) result = libc_result(*answer);
  return answer.has_value();
}

bool delay(SleepCall call, std::chrono::nanoseconds time, int& result,
           std::chrono::nanoseconds& left) {
  using std::chrono::nanoseconds;
  const auto begun = std::chrono::steady_clock::now();
  if (!delay(call, time, result)) return false;
  const Host* const host = installed();
  const double passed =
      static_cast<double>(nanoseconds(std::chrono::steady_clock::now() - begun).count()) *
      (host != nullptr ? host->speed() : 1);
  left = std::max(time - nanoseconds(static_cast<nanoseconds::rep>(passed)), nanoseconds::zero());
  return true;
}

int system(const char* command) {
  Host* const host = installed();
  const Answer answer =
      host != nullptr && is_of_gpio_lines(command) ? host->shell(command) : Answer{};
  return answer ? libc_result(*answer) : real().system(command);
}

FILE* popen(const char* command, const char* mode) {
  Host* const host = installed();
  const Answer answer =
      host != nullptr && is_of_gpio_lines(command) ? host->shell(command) : Answer{};
  if (!answer) return real().popen(command, mode);
  if (libc_result(*answer) < 0) return nullptr;
  // A shell that does nothing but end as the command did.
  const std::string ended = "exit " + std::to_string(WEXITSTATUS(*answer));
  return real().popen(ended.c_str(), mode);
}

key_t ftok(const char* path, int project) {
  Host* const host = installed();
  const bool lock_key = std::strcmp(path, wire::lock_key_path) == 0;
  const Answer answer = host != nullptr && lock_key ? host->semaphore_key(path, project) : Answer{};
  return answer ? libc_result(*answer) : real().ftok(path, project);
}

int semget(key_t key, int members, int flags) {
  Host* const host = installed();
  const Answer answer = host != nullptr
                            ? host->semaphore_get(static_cast<std::uint32_t>(key), members, flags)
                            : Answer{};
  return answer ? libc_result(*answer) : real().semget(key, members, flags);
}

int semctl(int semid, int member, int command, long argument) {
  Host* const host = installed();
  const Answer answer =
      host != nullptr ? host->semaphore_control(semid, member, command, static_cast<int>(argument))
                      : Answer{};
  return answer ? libc_result(*answer) : real().semctl(semid, member, command, argument);
}

int semop(int semid, std::span<sembuf> operations, const timespec* timeout) {
  Host* const host = installed();
  const Answer answer = host != nullptr ? host->semaphore_operate(semid, operations) : Answer{};
  if (answer) return libc_result(*answer);
  if (timeout == nullptr) return real().semop(semid, operations.data(), operations.size());
  return real().semtimedop(semid, operations.data(), operations.size(), timeout);
}

}  // namespace router
}  // namespace kelvo::sim
