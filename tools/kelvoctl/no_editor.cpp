// Where the build goes without line editing.
#include "tools/kelvoctl/line_reader.h"

namespace kelvo::ctl {

std::unique_ptr<LineReader> make_editor() { return make_plain_reader(true); }

}  // namespace kelvo::ctl
