#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <span>

#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "kelvo/ois.h"
#include "ois/calibration/measuring.h"
#include "ois/calibration/records.h"
#include "wire/lens_program.h"
#include "wire/paths.h"

namespace {

using kelvo::ois::Field;
using kelvo::ois::iris_fields;
using kelvo::ois::IrisRecord;
using kelvo::ois::Reply;
using kelvo::ois::stabiliser_fields;
using kelvo::ois::StabiliserRecord;
namespace command = kelvo::wire::command;
namespace query = kelvo::wire::query;
namespace wire = kelvo::wire;

constexpr std::uint8_t stability_limit = 0xAB;
constexpr int most_polls = 40;

void start_calibration() {
  constexpr std::uint8_t calibrating = 1;
  SendCommand(command::quality_check, 0, 0, 0, 1);
  SendCommand(command::set_mode, 0, 0, 0, calibrating);
}

/// The state of the calibration; then a second passes.
std::uint8_t poll(Reply& reply) {
  RecvCommand(query::calibration_state, 0, reply);
  std::printf("State:%d %d %d %d\n", reply[0], reply[1], reply[2], reply[3]);
  sleep(1);
  return reply[3];
}

/// Whether the calibration came to its end in time.
bool wait_until_finished(Reply& reply) {
  for (int polls = 0; polls < most_polls; ++polls) {
    const std::uint8_t state = poll(reply);
    if (state == wire::calibration_idle) return false;
    if (state == wire::calibration_finished) return true;
  }
  return false;
}

void ask_for_error(Reply& reply) {
  RecvCommand(query::calibration_error, 0, reply);
  std::printf("Error Code:%02x %02x %02x %02x\n", reply[0], reply[1], reply[2], reply[3]);
}

/// Copies that cannot be opened are passed over.
void write_copies(std::span<const char* const> paths, std::span<const std::uint32_t> record) {
  for (const char* path : paths) {
    FILE* file = std::fopen(path, "wb");
    if (file == nullptr) continue;
    std::fwrite(record.data(), record.size_bytes(), 1, file);
    FileSync(file);
    std::fclose(file);
  }
}

void measure_and_write(std::span<const Field> fields, std::span<std::uint32_t> record,
                       std::span<const char* const> paths, Reply& reply) {
  for (const Field& field : fields) record[field.index] = kelvo::ois::measure(field, reply);
  write_copies(paths, record);
}

/// Leaves the camera running with what the files hold, its stabiliser off.
void boot_stabiliser() {
  Init30516();
  SendCommand(command::stabiliser_off, 0, 0, 0, 0);
}

}  // namespace

std::int32_t DC_Quality_Check() {
  Reply reply = {};
  InitDC_K();
  start_calibration();
  while (poll(reply) != wire::calibration_finished) {  // without a time-out (deliberate)
  }
  ask_for_error(reply);
  const std::uint8_t error = reply[3];
  if (error == 0) {
    IrisRecord record = {};
    measure_and_write(iris_fields, record, wire::iris_record_copies, reply);
  }
  Init30516_DF033();
  return error;
}

std::int32_t OIS_Quality_Check() {
  Reply reply = {};
  InitOIS_K();
  start_calibration();
  SendCommand(command::gyro_stability, 0, 0, 0, stability_limit);
  RecvCommand(query::gyro_stability, 0, reply);
  std::printf("gyro_stability_spec 0x92:%02x %02x %02x %02x\n", reply[0], reply[1], reply[2],
              reply[3]);
  std::int32_t result = -1;
  if (wait_until_finished(reply)) {
    ask_for_error(reply);
    result = reply[3] | reply[2];
    // The record is written whatever the result, unlike that of the iris (deliberate).
    StabiliserRecord record = {};
    measure_and_write(stabiliser_fields, record, wire::stabiliser_record_copies, reply);
  }
  boot_stabiliser();
  return result;
}
