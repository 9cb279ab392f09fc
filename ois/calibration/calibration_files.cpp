#include <cstdio>
#include <span>

#include "kelvo/bus.h"
#include "kelvo/ois.h"
#include "lens/variant/variant.h"
#include "ois/calibration/measuring.h"
#include "ois/calibration/records.h"
#include "wire/paths.h"

namespace {

using kelvo::lens::lens_module;
using kelvo::lens::LensModule;
using kelvo::ois::Field;
using kelvo::ois::iris_fields;
using kelvo::ois::IrisRecord;
using kelvo::ois::stabiliser_fields;
using kelvo::ois::StabiliserRecord;
namespace wire = kelvo::wire;

/// A short file leaves the rest of the record as it was.
template <typename Record>
void read_record(FILE* file, Record& record) {
  static_cast<void>(!std::fread(record, 1, sizeof record, file));
}

void send_record(std::span<const Field> fields, std::span<const std::uint32_t> record) {
  for (const Field& field : fields) {
    if (field.command == kelvo::ois::not_sent) continue;
    const std::uint32_t value = record[field.index];
    SendCommand(field.command, 0, 0, static_cast<std::uint8_t>(value >> 8),
                static_cast<std::uint8_t>(value));
  }
}

void print_values(std::span<const Field> fields) {
  kelvo::ois::Reply reply = {};
  for (const Field& field : fields) kelvo::ois::measure(field, reply);
}

FILE* open_iris_record() {
  FILE* file = std::fopen(wire::iris_record, "rb");
  if (file != nullptr || lens_module() != LensModule::t5391) return file;
  file = std::fopen(wire::iris_default_record, "rb");
  std::puts("Load default DC Calibration");
  return file;
}

}  // namespace

void Load_DC() {
  FILE* file = open_iris_record();
  if (file == nullptr) return;
  IrisRecord record{};
  read_record(file, record);
  std::fclose(file);
  send_record(iris_fields, record);
  print_values(iris_fields);
}

std::int32_t Load_QC() {
  FILE* file = std::fopen(wire::stabiliser_record, "rb");
  if (file == nullptr) return -1;
  StabiliserRecord record{};
  read_record(file, record);
  std::fclose(file);
  send_record(stabiliser_fields, record);
  return 0;
}

std::int32_t Get_DC_Range(std::uint32_t* max, std::uint32_t* min) {
  FILE* file = std::fopen(wire::iris_record, "rb");
  if (file == nullptr) return -1;
  IrisRecord record{};
  read_record(file, record);
  *min = record[kelvo::ois::iris_travel_min_index];
  *max = record[kelvo::ois::iris_travel_max_index];
  // The stream stays open on this module: every call leaks one (deliberate).
  if (lens_module() != LensModule::t5391) std::fclose(file);
  return 0;
}
