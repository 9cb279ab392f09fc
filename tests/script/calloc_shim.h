#ifndef KELVO_TESTS_SCRIPT_CALLOC_SHIM_H
#define KELVO_TESTS_SCRIPT_CALLOC_SHIM_H

namespace kelvo::test {

/// Asked before every calloc of the process while it is set; true: there is no memory.
using AllocationFails = bool (*)();
extern AllocationFails allocation_fails;

}  // namespace kelvo::test

#endif
