#ifndef KELVO_TESTS_SCRIPT_INSTALLED_HOST_H
#define KELVO_TESTS_SCRIPT_INSTALLED_HOST_H

#include "sim/seam/host.h"

namespace kelvo::test {

/// A host in the kernel's place for as long as it lives.
class Installed {
 public:
  explicit Installed(sim::Host& host) { sim::install(&host); }
  ~Installed() { sim::install(nullptr); }
  Installed(const Installed&) = delete;
  Installed& operator=(const Installed&) = delete;
};

}  // namespace kelvo::test

#endif
