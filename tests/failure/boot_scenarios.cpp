#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"
#include "script/transcript.h"

namespace kelvo::test::failure {
namespace {

constexpr std::uint8_t image[4] = {0xDE, 0xAD, 0xBE, 0xEF};

std::uint8_t byte(std::uint32_t word, int number) {
  return static_cast<std::uint8_t>(word >> (8 * number));
}

/// Read back one half of the checksum, as answered: its low byte comes third, its high byte fourth.
bool half_matches(Oracle& oracle, std::uint8_t code, Bytes& reply, std::uint32_t expected,
                  std::uint32_t answered) {
  oracle.boot_read(code, reply, {0, 0, byte(answered, 0), byte(answered, 1), 0});
  if (reply[2] == byte(expected, 0) && reply[3] == byte(expected, 1)) return true;
  oracle.print(format("%x Read Checksum:%02x%02x", code, reply[3], reply[2]));
  return false;
}

/// A controller that did not get all of a download answers another checksum; nothing else tells.
int download(Oracle& oracle, std::uint32_t checksum) {
  const bool address = oracle.boot_command() == 0;
  const bool size = oracle.boot_command() == 0;
  const bool payload = oracle.payload() == 0;
  const bool intact = address && size && oracle.header_arrived && payload;
  const std::uint32_t answered = intact ? checksum : ~checksum;
  Bytes reply(5, 0);
  const bool low = half_matches(oracle, 0x66, reply, checksum, answered);
  const bool high = half_matches(oracle, 0x67, reply, checksum >> 16, answered >> 16);
  const int error = low && high ? 0 : 1;
  oracle.print(format("ChecksumError:%d", error));
  return error;
}

struct Module {
  int variant;
  std::uint32_t checksums[3];
};
constexpr Module de015_module = {7, {0x50EE9858, 0xDB9F8EF5, 0x02AA342F}};
constexpr Module df033_module = {8, {0xA7980342, 0xBF9B8238, 0x01911A0B}};
constexpr Module t5391_module = {9, {0xE9EAD60E, 0xBF9B8238, 0x01911A0B}};

int attempt(Oracle& oracle, const Module& module) {
  oracle.reset_controller();
  oracle.boot_command(2);
  oracle.wait(1'000);
  oracle.boot_command(5);
  oracle.wait(1'000);
  int error = 0;
  for (const std::uint32_t checksum : module.checksums) error |= download(oracle, checksum);
  oracle.boot_command();
  return error;
}

enum class SpeedRequest { once, each_attempt };

/// Up to ten attempts; one that failed is never forgotten.
int attempts(Oracle& oracle, const Module& module, SpeedRequest request) {
  oracle.variant = module.variant;
  oracle.latch = 0;
  if (request == SpeedRequest::once) oracle.set_speed(250'000);
  int error = 0;
  const int first_frame = oracle.frame();
  for (int i = 0; i < 10; ++i) {
    oracle.go_back_to_frame(first_frame);
    if (request == SpeedRequest::each_attempt) oracle.set_speed(250'000);
    error |= attempt(oracle, module);
    if (error == 0) break;
    oracle.pause(1);
  }
  oracle.boot_command();
  return error;
}

int boot_with_iris(Oracle& oracle, const Module& module, const Missing& missing) {
  const int error = attempts(oracle, module, SpeedRequest::each_attempt);
  oracle.init_i2c();
  oracle.wait(100'000);
  load_iris_record(oracle, missing);
  oracle.command();
  oracle.set_speed(1'000'000);
  oracle.command();
  return error;
}

Outcome boot_t5391(Oracle& oracle) { return {boot_with_iris(oracle, t5391_module, {})}; }

Outcome boot_for_check(Oracle& oracle, const Module& module) {
  oracle.set_speed(250'000);
  attempt(oracle, module);
  oracle.boot_command();
  oracle.wait(100'000);
  oracle.set_speed(1'000'000);
  return {0};
}

}  // namespace

Outcome boot_for_stabiliser_check(Oracle& oracle) { return boot_for_check(oracle, de015_module); }
Outcome boot_for_iris_check(Oracle& oracle) { return boot_for_check(oracle, df033_module); }

Outcome boot_de015(Oracle& oracle, const Missing& missing) {
  const int error = attempts(oracle, de015_module, SpeedRequest::once);
  initialise_driver(oracle);
  oracle.init_i2c();
  oracle.wait(100'000);
  load_stabiliser_record(oracle, missing);
  oracle.command();
  oracle.set_speed(1'000'000);
  return {error};
}

Outcome boot_df033(Oracle& oracle, const Missing& missing) {
  const int error = boot_with_iris(oracle, df033_module, missing);
  initialise_driver(oracle);
  return {error};
}

namespace {

constexpr Scenario boot_rows[] = {
    {"DownloadCode", "", as_loaded,
     [] { return Outcome{DownloadCode(0x22, 0xFFFFE000, 4, 0x12345678, image)}; },
     [](Oracle& oracle) { return Outcome{download(oracle, 0x12345678)}; }},
    {"Init30516", "", as_loaded, [] { return Outcome{Init30516()}; },
     [](Oracle& oracle) { return boot_de015(oracle); }},
    {"Init30516_DF033", "", as_loaded, [] { return Outcome{Init30516_DF033()}; },
     [](Oracle& oracle) { return boot_df033(oracle); }},
    {"Init30516_T5391", "", as_loaded, [] { return Outcome{Init30516_T5391()}; }, boot_t5391},
    {"InitOIS_K", "", as_loaded, [] { return Outcome{InitOIS_K()}; }, boot_for_stabiliser_check},
    {"InitDC_K", "", as_loaded, [] { return Outcome{InitDC_K()}; }, boot_for_iris_check},
};

}  // namespace

std::span<const Scenario> boot_scenarios() { return boot_rows; }

}  // namespace kelvo::test::failure
