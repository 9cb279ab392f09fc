#ifndef KELVO_SIM_WRAPPER_THIS_PROCESS_H
#define KELVO_SIM_WRAPPER_THIS_PROCESS_H

#include <sys/types.h>

namespace kelvo::sim {

/// getpid() without a system call, in forked processes too.
pid_t this_process();

}  // namespace kelvo::sim

#endif
