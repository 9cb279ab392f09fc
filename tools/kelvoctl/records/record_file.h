#ifndef KELVO_TOOLS_KELVOCTL_RECORDS_RECORD_FILE_H
#define KELVO_TOOLS_KELVOCTL_RECORDS_RECORD_FILE_H

#include <optional>
#include <string>

#include "tools/kelvoctl/records/record.h"

namespace kelvo::ctl {

/// What a file of the camera holds; nothing where there is none.
std::optional<std::string> stored_bytes(const std::string& path);

/// The record of a file; nothing where there is none. Throws a Failure when it is no record.
std::optional<RecordValues> stored_record(const RecordKind& kind, const std::string& path);

/// Whether a file would be replaced, and not a device or a pipe written to.
bool would_replace(const std::string& path);

/// Replaces a file: afterwards it is the old one or the new one, whole, even when the power is cut
/// meanwhile. Throws a Failure.
void replace_file(const std::string& path, const std::string& bytes);

}  // namespace kelvo::ctl

#endif
