// Where the build goes without line editing.
#include "tools/kelvoctl/prompt/line_reader.h"

namespace kelvo::ctl {

std::unique_ptr<LineReader> make_editor() { return make_plain_reader(true); }

}  // namespace kelvo::ctl
