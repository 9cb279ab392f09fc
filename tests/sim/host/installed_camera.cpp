#include "sim/host/installed_camera.h"

#include <stdlib.h>

#include <cstdlib>

namespace kelvo::test {

TestFolder::TestFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "kelvo-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  path_ = pattern;
}

TestFolder::~TestFolder() { std::filesystem::remove_all(path_); }

NoTemporaryFolder::NoTemporaryFolder() {
  if (const char* const folder = getenv("TMPDIR")) before_ = folder;
  setenv("TMPDIR", "/no/such/folder", 1);
}

NoTemporaryFolder::~NoTemporaryFolder() {
  if (before_) {
    setenv("TMPDIR", before_->c_str(), 1);
  } else {
    unsetenv("TMPDIR");
  }
}

}  // namespace kelvo::test
