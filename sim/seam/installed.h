#ifndef KELVO_SIM_SEAM_INSTALLED_H
#define KELVO_SIM_SEAM_INSTALLED_H

#include "sim/seam/host.h"

namespace kelvo::sim {

/// The host that stands in the place of the kernel, or null.
Host* installed();

/// While it lives, no path is the camera's in this thread: for what the host itself does with files, which
/// may lie where the camera has them.
class OwnFiles {
 public:
  OwnFiles() { ++depth; }
  ~OwnFiles() { --depth; }
  OwnFiles(const OwnFiles&) = delete;
  OwnFiles& operator=(const OwnFiles&) = delete;

  static bool in_use() { return depth != 0; }

 private:
  static thread_local int depth;
};

}  // namespace kelvo::sim

#endif
