#include "failure/head.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

namespace kelvo::test::failure {
namespace {

constexpr Setting vetra_head = {.head = Head::vetra};
constexpr Setting tasmere_head = {.head = Head::tasmere};

struct Register {
  Head head;
  int number;
  Bytes bytes;
};

const std::vector<Register>& registers() {
  static const std::vector<Register> all = {
      {Head::vetra, 0xF0, {'V', 'X'}},
      {Head::vetra, 0x10, {0x01, 0x02, 0x03, 0x04}},    // position gains
      {Head::vetra, 0x30, {0x21}},                      // version
      {Head::vetra, 0x31, {0x06}},                      // calibrated and at rest
      {Head::vetra, 0x32, {0x23, 0x28}},                // count 9000
      {Head::vetra, 0x33, {0x01}},                      // limits on
      {Head::vetra, 0x34, {0x12, 0x34, 0x56, 0x78}},    // limits
      {Head::tasmere, 0x02, {0x01}},                    // calibrated
      {Head::tasmere, 0x03, {0x01}},                    // moving
      {Head::tasmere, 0x04, {0x70, 0xB4}},              // position, 1000 from the Hall sensor
      {Head::tasmere, 0x1A, {0x00, 0x02}},              // limits on
      {Head::tasmere, 0x1B, {0x01, 0x02, 0x03, 0x04}},  // version
      {Head::tasmere, 0x4A, {0x70, 0xB4}},              // limits
      {Head::tasmere, 0x4B, {0x00, 0x07}},
      {Head::tasmere, 0x4F, {0x01}},        // Hall sensor
      {Head::tasmere, 0x9B, {0x12, 0x34}},  // temperature
      {Head::tasmere, 0xFE, {0x05}},        // program state
  };
  return all;
}

}  // namespace

void set_up_head(Script& script, Head head) {
  for (const Register& row : registers()) {
    if (row.head != head) continue;
    for (const int slave : {40, 41}) {
      script.i2c_register(slave, static_cast<std::uint8_t>(row.number), row.bytes);
    }
  }
}

Bytes head_register(Head head, int reg, int length) {
  Bytes bytes;
  for (const Register& row : registers()) {
    if (row.head == head && row.number == reg) bytes = row.bytes;
  }
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

void forget_head() {
  giSerTiltUseHall = -1;
  for (auto* cache :
       {&iPanVETRA_Motor_Reg, &iTiltVETRA_Motor_Reg, &iPanTASMERE_PID, &iTiltTASMERE_PID}) {
    std::fill(std::begin(*cache), std::end(*cache), 0);
  }
  std::fill(std::begin(giMOTOR_Init_Reg), std::end(giMOTOR_Init_Reg), 0);
  Debug_PID_En(0);
}

// ---- the oracle's part -----------------------------------------------------------------------------

bool Oracle::head_transfer(const std::string& message) {
  const bool carried = happens(Call::i2c, "i2c " + message);
  if (carried_.family == 1) wait(2'000);
  return carried;
}

int Oracle::head_write(const std::string& message) {
  if (pan_tilt < 0 || !memory()) return -1;
  return head_transfer(message) ? 1 : -1;
}

Oracle::Reading Oracle::head_read(const std::string& message) {
  int reg = 0;
  int length = 0;
  std::istringstream words(message.substr(message.find(" w ") + 3));
  std::string r;
  words >> std::hex >> reg >> r >> std::dec >> length;
  const Bytes zeros(static_cast<std::size_t>(length));
  if (pan_tilt < 0) return {-1, zeros};
  if (!memory()) return {0, zeros};
  if (!head_transfer(message)) return {-1, zeros};
  return {0, head_register(setting_.head, reg, length)};
}

int Oracle::head_family() {
  if (carried_.family != -1) return carried_.family;
  const bool vetra = head_read("40: w F0 r 2").bytes == Bytes{'V', 'X'};
  carried_.family = vetra ? 1 : 2;
  if (vetra) {
    wait(2'000);
    head_read("40: w 30 r 1");
  }
  return carried_.family;
}

// ---- what the rows are made of -----------------------------------------------------------------------

Bytes words(std::initializer_list<std::uint32_t> numbers) {
  Bytes bytes;
  for (const std::uint32_t number : numbers) {
    for (const int shift : {24, 16, 8, 0})
      bytes.push_back(static_cast<std::uint8_t>(number >> shift));
  }
  return bytes;
}

bool begin_on_vetra(Oracle& oracle) {
  oracle.init_i2c();
  return oracle.head_family() == 1;
}

Outcome writes(Oracle& oracle, const char* messages) {
  std::istringstream lines(messages);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("sleep")) {
      oracle.pause(1);
    } else {
      oracle.head_write(line);
    }
  }
  return {0};
}

Outcome writes_by_family(Oracle& oracle, const char* vetra, const char* tasmere) {
  return writes(oracle, begin_on_vetra(oracle) ? vetra : tasmere);
}

std::uint32_t number_in(const Bytes& bytes, std::size_t at) {
  return std::uint32_t{bytes[at]} * 256 + bytes[at + 1];
}

std::span<const Scenario> head_scenarios() {
  static const std::vector<Scenario> all = [] {
    std::vector<Scenario> scenarios;
    for (const auto rows : {head_queries(), head_commands(), head_gains(), head_moves()}) {
      for (const HeadRow& row : rows) {
        scenarios.push_back({row.function, row.on_vetra, vetra_head, row.call, row.rule});
        scenarios.push_back({row.function, row.on_tasmere, tasmere_head, row.call, row.rule});
      }
    }
    return scenarios;
  }();
  return all;
}

}  // namespace kelvo::test::failure
