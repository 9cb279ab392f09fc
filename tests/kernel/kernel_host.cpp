#include "kernel/kernel_host.h"

#include <sys/ipc.h>
#include <sys/sem.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "sim/seam/real.h"

namespace kelvo::test {
namespace {

constexpr std::uint32_t lost_key = 0xffffffff;
constexpr int most_key_files = 100;

[[noreturn]] void give_up(const char* what) {
  std::perror(what);
  std::abort();
}

int find(key_t key) { return sim::real().semget(key, 0, 0); }

}  // namespace

KernelHost::KernelHost() {
  std::string pattern = (std::filesystem::temp_directory_path() / "kelvo-lock-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) give_up("mkdtemp");
  folder_ = pattern;
  // A key is made of few bits of its file's number, so an abandoned set may have the same one.
  for (int i = 0; i < most_key_files; ++i) {
    const std::string file = folder_ + "/" + std::to_string(i);
    std::ofstream(file).put('k');
    key_ = sim::real().ftok(file.c_str(), 'k');
    if (key_ == -1) give_up("ftok");
    if (find(key_) < 0) break;
  }
  if (find(key_) >= 0) give_up("a key of its own");
  sim::install(this);
}

KernelHost::~KernelHost() {
  sim::install(nullptr);
  if (set() >= 0) remove_set();
  std::filesystem::remove_all(folder_);
}

int KernelHost::set() const { return find(key_); }
int KernelHost::value() const { return sim::real().semctl(set(), 0, GETVAL); }
int KernelHost::waiters() const { return sim::real().semctl(set(), 0, GETZCNT); }
void KernelHost::remove_set() const { sim::real().semctl(set(), 0, IPC_RMID); }

sim::Answer KernelHost::transfer(sim::Device, int, std::span<const std::uint8_t>,
                                 std::span<std::uint8_t>) {
  ++transfers_;
  value_in_transfer_ = value();
  return 0;
}

sim::Answer KernelHost::semaphore_key(const char*, int) { return key_lost_ ? -ENOENT : key_; }

sim::Answer KernelHost::semaphore_get(std::uint32_t key, int members, int flags) {
  if (key != lost_key) return {};
  ++fallbacks_;
  const int found = sim::real().semget(key_, members, flags);
  return found >= 0 ? found : -errno;
}

}  // namespace kelvo::test
