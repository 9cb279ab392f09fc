// A machine that has nothing left of one thing, for kelvoctl: preloaded, it refuses the call that STARVED_OF names,
// or gives its first of "turns" late.
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

namespace {

bool starved_of(std::string_view call) {
  const char* const named = std::getenv("STARVED_OF");
  return named != nullptr && call == named;
}

int refuse(int error) {
  errno = error;
  return -1;
}

}  // namespace

extern "C" {

int memfd_create(const char* name, unsigned flags) noexcept {
  if (starved_of("memfd_create")) return refuse(ENOMEM);
  return static_cast<int>(syscall(SYS_memfd_create, name, flags));
}

int pipe2(int* ends, int flags) noexcept {
  if (starved_of("pipe2")) return refuse(EMFILE);
  return static_cast<int>(syscall(SYS_pipe2, ends, flags));
}

// A process that waits for another gets its first turn late.
int ppoll(pollfd* polled, nfds_t number, const timespec* time, const sigset_t* mask) {
  static bool late = starved_of("turns");
  if (late) {
    const timespec second{1, 0};
    syscall(SYS_nanosleep, &second, nullptr);
    late = false;
  }
  return reinterpret_cast<decltype(&ppoll)>(dlsym(RTLD_NEXT, "ppoll"))(polled, number, time, mask);
}

pid_t fork() noexcept {
  if (starved_of("fork")) return refuse(EAGAIN);
  return reinterpret_cast<pid_t (*)()>(dlsym(RTLD_NEXT, "fork"))();
}

// Of memory that processes share, and of no other.
void* mmap(void* address, std::size_t length, int protection, int flags, int descriptor,
           off_t offset) noexcept {
  constexpr int shared = MAP_SHARED | MAP_ANONYMOUS;
  if ((flags & shared) == shared && starved_of("mmap")) {
    errno = ENOMEM;
    return MAP_FAILED;
  }
  return reinterpret_cast<void*>(
      syscall(SYS_mmap, address, length, protection, flags, descriptor, offset));
}
}
