// Calibration records with the names of their fields, in files, in JSON and in the controller.
#ifndef KELVO_TOOLS_KELVOCTL_RECORDS_RECORD_H
#define KELVO_TOOLS_KELVOCTL_RECORDS_RECORD_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {

struct RecordField {
  const char* name;
  std::uint8_t query;  // reads the value from the controller
  bool loaded;         // at boot; the others are measured alone
};

/// One of the two kinds of record, its fields in the order of the file.
struct RecordKind {
  const char* name;
  LensModule checked;  // the quality check is for this module
  std::int32_t (*check)();
  bool check_ends;  // by itself, also where nothing is measured
  std::span<const RecordField> fields;
  std::span<const char* const> copies;  // as a check writes them; the last is read at boot

  const char* read_at_boot() const { return copies.back(); }
  std::size_t bytes() const { return fields.size() * sizeof(std::uint32_t); }
};

/// Both of them.
std::span<const RecordKind> record_kinds();
/// That of a module.
const RecordKind& kind_of(LensModule module);

/// The values of a record, in the order of its fields.
using RecordValues = std::vector<std::uint32_t>;

inline constexpr std::uint32_t greatest_field = 0xFFFF;

/// Name and value of each field.
Json fields_json(const RecordKind& kind, const RecordValues& values);
/// The form in which records are exported.
Json record_json(const RecordKind& kind, const RecordValues& values);

/// What the bytes of a record file mean. `name` stands for them in the Failure that is thrown when they
/// are no record.
RecordValues parse_bytes(const RecordKind& kind, const std::string& bytes, const std::string& name);
/// The same for exported JSON.
RecordValues parse_json(const RecordKind& kind, const std::string& text, const std::string& name);
std::string bytes_of(const RecordValues& values);

/// What the controller has.
RecordValues ask_controller(Session& session, const RecordKind& kind);

}  // namespace kelvo::ctl

#endif
