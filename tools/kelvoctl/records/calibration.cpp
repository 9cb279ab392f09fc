// The calibration records: shown, compared, and brought out and in.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "tools/common/output.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/file_content.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/lens/lens_use.h"
#include "tools/kelvoctl/records/record.h"
#include "tools/kelvoctl/records/record_file.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

struct RecordFileOptions {
  std::string file;
};

struct Stored {
  std::string path;
  RecordValues values;
};

/// The record that a boot of this module reads. Throws a Failure where there is none.
Stored boot_record(const RecordKind& kind, LensModule module) {
  std::vector<std::string> paths{kind.read_at_boot()};
  if (module == LensModule::t5391) paths.emplace_back(wire::iris_default_record);
  for (const std::string& path : paths) {
    std::optional<RecordValues> values = stored_record(kind, path);
    if (values) return {path, std::move(*values)};
  }
  throw Failure(ExitCode::wrong_arguments,
                paths.front() + ": there is no record: the controller keeps its own values");
}

RecordValues given_record(const RecordKind& kind, const std::string& file) {
  const std::string content = content_of(file);
  const std::size_t first = content.find_first_not_of(" \t\r\n");
  const bool json = first != std::string::npos && content[first] == '{';
  return json ? parse_json(kind, content, file) : parse_bytes(kind, content, file);
}

Json show_records(Session& session) {
  const LensModule module = session.lens();
  const RecordKind& kind = kind_of(module);
  const Stored record = boot_record(kind, module);
  return {{"module", name_of(module)},
          {"record", kind.name},
          {"file", record.path},
          {"fields", fields_json(kind, record.values)}};
}

/// The record of a boot beside others of its kind.
class Comparison {
 public:
  Comparison(const RecordKind& kind, const RecordValues& reference)
      : kind_(kind), reference_(reference), columns_{{"boot", reference}} {}

  void add(const std::string& name, std::optional<RecordValues> values) {
    columns_.push_back({name, std::move(values)});
  }

  Json rows() const {
    Json rows = Json::array();
    for (std::size_t i = 0; i < kind_.fields.size(); ++i) {
      Json row{{"field", kind_.fields[i].name}};
      for (const Column& column : columns_) {
        row[column.name] = column.values ? Json((*column.values)[i]) : Json();
      }
      row["differs"] = differs(i);
      rows.push_back(row);
    }
    return rows;
  }

  std::size_t differences() const {
    std::size_t count = 0;
    for (std::size_t i = 0; i < kind_.fields.size(); ++i) count += differs(i) ? 1U : 0U;
    return count;
  }

  static constexpr char controller[] = "controller";

 private:
  struct Column {
    std::string name;
    std::optional<RecordValues> values;
  };

  /// The controller goes on measuring what no boot loads.
  bool differs(std::size_t field) const {
    const std::uint32_t value = reference_[field];
    return std::ranges::any_of(columns_, [&](const Column& column) {
      if (!column.values || (column.name == controller && !kind_.fields[field].loaded)) {
        return false;
      }
      return (*column.values)[field] != value;
    });
  }

  const RecordKind& kind_;
  RecordValues reference_;
  std::vector<Column> columns_;
};

/// The folder that a copy lies in, as the name of its column.
std::string folder_of(const std::string& path) { return path.substr(0, path.rfind('/')); }

Json diff(Session& session, const RecordFileOptions& options) {
  const LensModule module = session.lens();
  const RecordKind& kind = kind_of(module);
  const Stored record = boot_record(kind, module);
  Comparison comparison(kind, record.values);
  if (!options.file.empty()) comparison.add("given", given_record(kind, options.file));
  for (const char* const copy : kind.copies) {
    if (record.path != copy) comparison.add(folder_of(copy), stored_record(kind, copy));
  }
  use_lens(session);
  comparison.add(Comparison::controller, ask_controller(session, kind));
  const std::size_t differences = comparison.differences();
  if (differences != 0) {
    session.complain(ExitCode::bad_data, std::to_string(differences) + " of " +
                                             std::to_string(kind.fields.size()) + " fields differ");
  }
  return {{"module", name_of(module)},
          {"record", kind.name},
          {"boot", record.path},
          {"differences", differences},
          {"fields", comparison.rows()}};
}

Json export_record(Session& session, const RecordFileOptions& options) {
  const LensModule module = session.lens();
  const RecordKind& kind = kind_of(module);
  const Stored record = boot_record(kind, module);
  const std::string text = record_json(kind, record.values).dump(2) + "\n";
  if (options.file == "-") {
    tools::print(text);
    return {};
  }
  if (would_replace(options.file)) {
    session.confirm(options.file + " is there already, and this replaces it. Go on?");
  }
  replace_file(options.file, text);
  return {{"record", kind.name}, {"from", record.path}, {"to", options.file}};
}

Json import_record(Session& session, const RecordFileOptions& options) {
  const LensModule module = session.lens();
  const RecordKind& kind = kind_of(module);
  const RecordValues values = given_record(kind, options.file);
  session.confirm("This replaces the " + std::string(kind.name) + " record of the camera. Go on?");
  Json files = Json::array();
  for (const char* const copy : kind.copies) {
    try {
      replace_file(copy, bytes_of(values));
      files.push_back({{"file", copy}, {"written", true}});
    } catch (const Failure& failure) {
      session.complain(ExitCode::no_output, failure.what());
      files.push_back({{"file", copy}, {"written", false}});
    }
  }
  return {{"module", name_of(module)},
          {"record", kind.name},
          {"files", files},
          {"fields", fields_json(kind, values)}};
}

CLI::Option* add_file(CLI::App& command, RecordFileOptions& options,
                      const std::string& description) {
  return add_text(command, "FILE", options.file, description);
}

}  // namespace

void add_calibration(CommandTable& table) {
  CLI::App& group = CommandTable::add_group(table.root(), "calibration",
                                            "Shows and replaces the unit's calibration record");
  table.add(group, "show", "Shows the record that a boot loads", show_records);
  auto [differing, diff_options] = table.add<RecordFileOptions>(
      group, "diff", "Compares it with its copies, with the controller, and with a file", diff);
  add_file(differing, diff_options, "Another record, JSON or raw");
  auto [exporting, export_options] =
      table.add<RecordFileOptions>(group, "export", "Writes it to a file, as JSON", export_record);
  require(add_file(exporting, export_options, "The file; - is standard output"));
  auto [importing, import_options] = table.add<RecordFileOptions>(
      group, "import", "Replaces it and its copies; the next boot loads it", import_record);
  require(add_file(importing, import_options, "The record, JSON or raw; - is standard input"));
}

}  // namespace kelvo::ctl
