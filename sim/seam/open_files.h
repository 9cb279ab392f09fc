// The calibration files that this process has open, by the names that the camera has for them.
#ifndef KELVO_SIM_SEAM_OPEN_FILES_H
#define KELVO_SIM_SEAM_OPEN_FILES_H

#include <string>

namespace kelvo::sim {

void remember_file(int descriptor, const char* path);
/// The file that is open as this descriptor; empty for any other.
std::string file_at(int descriptor);
/// The same, and it is open no more.
std::string forget_file(int descriptor);

}  // namespace kelvo::sim

#endif
