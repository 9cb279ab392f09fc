#include "tools/kelvoctl/records/record.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <nlohmann/json.hpp>
#include <set>

#include "kelvo.h"
#include "tools/kelvoctl/common/hexadecimal.h"
#include "wire/lens_program.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

namespace query = wire::query;

constexpr std::array stabiliser_fields{
    RecordField{"polarity", query::polarity, true},
    RecordField{"hall_offset_x", query::hall_offset_x, true},
    RecordField{"hall_offset_y", query::hall_offset_y, true},
    RecordField{"hall_gain_x", query::hall_gain_x, true},
    RecordField{"hall_gain_y", query::hall_gain_y, true},
    RecordField{"travel_min_x", query::travel_min_x, true},
    RecordField{"travel_min_y", query::travel_min_y, true},
    RecordField{"travel_max_x", query::travel_max_x, true},
    RecordField{"travel_max_y", query::travel_max_y, true},
    RecordField{"gyro_zero_x", query::gyro_zero_x, true},
    RecordField{"hall_noise_x", query::hall_noise_x, false},
    RecordField{"hall_noise_y", query::hall_noise_y, false},
    RecordField{"gyro_noise_x", query::gyro_noise_x, false},
    RecordField{"gyro_noise_y", query::gyro_noise_y, false},
    RecordField{"gyro_zero_y", query::gyro_zero_y, true},
};

constexpr std::array iris_fields{
    RecordField{"polarity", query::polarity, true},
    RecordField{"hall_offset", query::hall_offset_x, true},
    RecordField{"hall_gain", query::hall_gain_x, true},
    RecordField{"travel_min", query::iris_travel_min, true},
    RecordField{"travel_max", query::iris_travel_max, true},
    RecordField{"sine", query::iris_sine, false},
};

constexpr std::array kinds{
    RecordKind{"stabiliser", LensModule::de015, OIS_Quality_Check, true, stabiliser_fields,
               wire::stabiliser_record_copies},
    RecordKind{"iris", LensModule::df033, DC_Quality_Check, false, iris_fields,
               wire::iris_record_copies},
};

constexpr char kind_member[] = "record";
constexpr char fields_member[] = "fields";

Failure no_record(const RecordKind& kind, const std::string& name, const std::string& why) {
  return {ExitCode::bad_data, name + ": no " + kind.name + " record: " + why};
}

/// Of members with one name the parser would take the last.
Json parse_once(const RecordKind& kind, const std::string& text, const std::string& name) {
  std::vector<std::set<std::string>> open;  // the names in each object that is not closed yet
  const auto on_event = [&](int /*depth*/, Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::object_start) open.emplace_back();
    if (event == Json::parse_event_t::object_end) open.pop_back();
    if (event == Json::parse_event_t::key &&
        !open.back().insert(parsed.get<std::string>()).second) {
      throw no_record(kind, name, "it has " + parsed.get<std::string>() + " twice");
    }
    return true;
  };
  return Json::parse(text, on_event, false);
}

/// Throws a Failure for members that a record does not have.
void check_members(const RecordKind& kind, const Json& whole, const std::string& name) {
  if (!whole.is_object()) throw no_record(kind, name, "no JSON object");
  if (whole.value("schema", Json()) != json_schema) {
    throw no_record(kind, name, "its schema must be " + std::to_string(json_schema));
  }
  if (whole.value(kind_member, Json()) != kind.name) {
    throw no_record(kind, name, std::string("its record must be \"") + kind.name + "\"");
  }
  if (!whole.contains(fields_member) || !whole[fields_member].is_object()) {
    throw no_record(kind, name, "it has no fields");
  }
  for (const auto& [field, value] : whole[fields_member].items()) {
    const bool known = std::ranges::any_of(
        kind.fields, [&field = field](const RecordField& row) { return row.name == field; });
    if (!known) throw no_record(kind, name, "it has no field " + field);
  }
}

}  // namespace

std::span<const RecordKind> record_kinds() { return kinds; }

const RecordKind& kind_of(LensModule module) {
  return module == LensModule::de015 ? kinds.front() : kinds.back();
}

Json fields_json(const RecordKind& kind, const RecordValues& values) {
  Json rows = Json::array();
  for (std::size_t i = 0; i < kind.fields.size(); ++i) {
    rows.push_back({{"field", kind.fields[i].name},
                    {"value", values[i]},
                    {"hexadecimal", hexadecimal(values[i], 4)}});
  }
  return rows;
}

Json record_json(const RecordKind& kind, const RecordValues& values) {
  Json fields;
  for (std::size_t i = 0; i < kind.fields.size(); ++i) fields[kind.fields[i].name] = values[i];
  return {{"schema", json_schema}, {kind_member, kind.name}, {fields_member, fields}};
}

RecordValues parse_bytes(const RecordKind& kind, const std::string& bytes,
                         const std::string& name) {
  if (bytes.size() != kind.bytes()) {
    throw no_record(kind, name,
                    "it has " + std::to_string(bytes.size()) + " bytes and must have " +
                        std::to_string(kind.bytes()));
  }
  RecordValues values(kind.fields.size());
  std::memcpy(values.data(), bytes.data(), bytes.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] <= greatest_field) continue;
    throw no_record(kind, name,
                    std::string(kind.fields[i].name) + " is " + std::to_string(values[i]) +
                        ", beyond " + std::to_string(greatest_field));
  }
  return values;
}

RecordValues parse_json(const RecordKind& kind, const std::string& text, const std::string& name) {
  const Json whole = parse_once(kind, text, name);
  check_members(kind, whole, name);
  RecordValues values;
  for (const RecordField& field : kind.fields) {
    const Json value = whole[fields_member].value(field.name, Json());
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > greatest_field) {
      throw no_record(kind, name,
                      std::string(field.name) + " must be a number from 0 to " +
                          std::to_string(greatest_field) + (value.is_null() ? "" : ", not ") +
                          (value.is_null() ? "" : value.dump()));
    }
    values.push_back(value.get<std::uint32_t>());
  }
  return values;
}

std::string bytes_of(const RecordValues& values) {
  std::string bytes(values.size() * sizeof values.front(), '\0');
  std::memcpy(bytes.data(), values.data(), bytes.size());
  return bytes;
}

RecordValues ask_controller(Session& session, const RecordKind& kind) {
  RecordValues values;
  for (const RecordField& field : kind.fields) {
    std::array<std::uint8_t, 4> reply{};
    session.call([&] { return RecvCommand(field.query, 0, reply.data()); });
    session.check_lens_link();
    values.push_back(static_cast<std::uint32_t>(reply[2] << 8 | reply[3]));
  }
  return values;
}

}  // namespace kelvo::ctl
