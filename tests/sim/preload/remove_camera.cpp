// Removes a shared camera after a test.
#include <cstdio>

#include "sim/state/shared_camera.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  using namespace kelvo::sim;
  const std::string error = SharedCamera::remove(argv[1], Removal::if_unused);
  if (!error.empty()) std::fprintf(stderr, "%s\n", error.c_str());
  return error.empty() ? 0 : 1;
}
