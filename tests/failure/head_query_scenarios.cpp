#include "failure/head.h"

namespace kelvo::test::failure {
namespace {

// ---- calls ---------------------------------------------------------------------------------------

/// A position does not ask for the family itself.
template <auto function>
Outcome position() {
  Init_I2C();
  GetMotorType();
  std::uint32_t pos = 0xEEEEEEEE;
  const std::int32_t result = function(&pos);
  return {result, words({pos})};
}

/// Behind two pointers.
template <auto function, auto... arguments>
Outcome two_numbers() {
  Init_I2C();
  std::uint32_t first = 0xEEEEEEEE;
  std::uint32_t second = 0xEEEEEEEE;
  const std::int32_t result = function(arguments..., &first, &second);
  return {result, words({first, second})};
}

Outcome tilt_hall_setting() {
  Init_I2C();
  const std::int32_t result = GetTiltHallSetting();
  return {result, words({static_cast<std::uint32_t>(giSerTiltUseHall)})};
}

// ---- rules ---------------------------------------------------------------------------------------

std::uint32_t byte_read(Oracle& oracle, const std::string& message) {
  return oracle.head_read(message).bytes[0];
}
std::uint32_t word_read(Oracle& oracle, const std::string& message) {
  return number_in(oracle.head_read(message).bytes);
}

constexpr Outcome yes_or_minus_one(bool yes) { return {yes ? 0 : -1}; }

Outcome pan_position(Oracle& oracle) {
  if (!begin_on_vetra(oracle)) return {0, words({word_read(oracle, "40: w 04 r 2")})};
  const std::uint32_t left = 18'000 - word_read(oracle, "40: w 32 r 2");
  return {0, words({(left * 65'535 * 2 / 18'000 + 1) / 2})};
}

Outcome tilt_position(Oracle& oracle) {
  if (begin_on_vetra(oracle)) {
    const std::uint32_t count = word_read(oracle, "41: w 32 r 2");
    const std::uint32_t left = count < 3'500 ? 3'500 - count : 21'500 - count;
    return {0, words({left * 65'535 / 18'000})};
  }
  const bool hall = byte_read(oracle, "41: w 4F r 1") == 1;
  const std::uint32_t pos = word_read(oracle, "41: w 04 r 2");
  if (!hall) return {0, words({pos})};
  return {0, words({pos < 27'852 ? pos + 37'683 : pos - 27'852})};
}

Outcome tasmere_version(Oracle& oracle, const char* message) {
  const Bytes bytes = oracle.head_read(message).bytes;
  return {(bytes[3] | bytes[2]) * 256};
}

template <int slave>
Outcome calibrated(Oracle& oracle) {
  if (begin_on_vetra(oracle)) {
    return yes_or_minus_one((byte_read(oracle, at(slave, "w 31 r 1")) & 3) == 2);
  }
  return yes_or_minus_one(byte_read(oracle, at(slave, "w 02 r 1")) == 1);
}

/// A byte of a Tasmere: -1 when it cannot be read.
std::int64_t told(Oracle& oracle, const std::string& message) {
  const Oracle::Reading reading = oracle.head_read(message);
  return reading.result < 0 ? -1 : reading.bytes[0];
}

template <int slave>
Outcome at_rest(Oracle& oracle) {
  if (begin_on_vetra(oracle)) {
    return yes_or_minus_one((byte_read(oracle, at(slave, "w 31 r 1")) & 4) != 0);
  }
  if (told(oracle, at(slave, "w 30 r 1")) != 0) return {0};
  return yes_or_minus_one(byte_read(oracle, at(slave, "w 03 r 1")) == 0);
}

template <int slave>
Outcome sleep_mode(Oracle& oracle) {
  return {begin_on_vetra(oracle) ? 0 : told(oracle, at(slave, "w 30 r 1"))};
}

template <int slave>
Outcome program_state(Oracle& oracle) {
  return {begin_on_vetra(oracle) ? 0 : told(oracle, at(slave, "w FE r 1"))};
}

template <int slave>
Outcome temperature(Oracle& oracle) {
  return {begin_on_vetra(oracle) ? 0 : word_read(oracle, at(slave, "w 9B r 2"))};
}

template <int slave>
Outcome limit_enable(Oracle& oracle) {
  if (begin_on_vetra(oracle)) return {byte_read(oracle, at(slave, "w 33 r 1"))};
  return {oracle.head_read(at(slave, "w 1A r 2")).bytes[1] == 2 ? 1 : 0};
}

/// Two numbers of one read.
Outcome both(Oracle& oracle, const std::string& message) {
  const Bytes bytes = oracle.head_read(message).bytes;
  return {0, words({number_in(bytes), number_in(bytes, 2)})};
}

Outcome pan_limits(Oracle& oracle) {
  if (begin_on_vetra(oracle)) return both(oracle, "40: w 34 r 4");
  const std::uint32_t start = word_read(oracle, "40: w 4A r 2");
  return {0, words({start, start + word_read(oracle, "40: w 4B r 2")})};
}

Outcome tilt_limits(Oracle& oracle) {
  if (begin_on_vetra(oracle)) return both(oracle, "41: w 34 r 4");
  const bool hall = byte_read(oracle, "41: w 4F r 1") != 0;
  const std::uint32_t start = word_read(oracle, "41: w 4A r 4") - (hall ? 27'852 : 0);
  const std::uint32_t length = word_read(oracle, "41: w 4B r 4");
  return {0, words({start, start + (hall ? length : 0)})};
}

template <int slave>
Outcome vetra_gains(Oracle& oracle) {
  if (begin_on_vetra(oracle)) return both(oracle, at(slave, "w 10 r 4"));
  return {0, words({0xEEEEEEEE, 0xEEEEEEEE})};
}

constexpr HeadRow head_query_rows[] = {
    {"GetMotorType", called<GetMotorType>,
     [](Oracle& oracle) { return Outcome{begin_on_vetra(oracle) ? 1 : 2}; }},
    {"GetPanPos", position<GetPanPos>, pan_position},
    {"GetTiltPos", position<GetTiltPos>, tilt_position},
    {"GetPanVersion", called<GetPanVersion>,
     [](Oracle& oracle) {
       oracle.init_i2c();  // and nobody has asked for the family
       return Outcome{byte_read(oracle, "40: w 30 r 1")};
     }},
    {"GetTiltVersion", called<GetTiltVersion>,
     [](Oracle& oracle) {
       return begin_on_vetra(oracle) ? Outcome{0} : tasmere_version(oracle, "41: w 1B r 4");
     }},
    {"PanGetCaliStatus", called<PanGetCaliStatus>, calibrated<40>},
    {"TiltGetCaliStatus", called<TiltGetCaliStatus>, calibrated<41>},
    {"GetPanHallSetting", called<GetPanHallSetting>,
     [](Oracle& oracle) {
       if (begin_on_vetra(oracle)) return Outcome{0};
       return Outcome{byte_read(oracle, "40: w 4F r 1") == 1 ? 1 : 0};
     }},
    {"GetTiltHallSetting", tilt_hall_setting,
     [](Oracle& oracle) {
       if (begin_on_vetra(oracle)) return Outcome{1, words({0xFFFFFFFF})};
       const std::uint32_t setting = byte_read(oracle, "41: w 4F r 1");
       return Outcome{setting == 1 ? 1 : 0, words({setting})};
     }},
    {"GetPanStatus", called<GetPanStatus>, at_rest<40>},
    {"GetTiltStatus", called<GetTiltStatus>, at_rest<41>},
    {"GetPanSleepMode", called<GetPanSleepMode>, sleep_mode<40>},
    {"GetTiltSleepMode", called<GetTiltSleepMode>, sleep_mode<41>},
    {"GetPanProgState", called<GetPanProgState>, program_state<40>},
    {"GetTiltProgState", called<GetTiltProgState>, program_state<41>},
    {"GetPanTemp", called<GetPanTemp>, temperature<40>},
    {"GetTiltTemp", called<GetTiltTemp>, temperature<41>},
    {"Vetra2Tasmere", called<Vetra2Tasmere, 3500>,
     [](Oracle& oracle) {
       oracle.init_i2c();
       return Outcome{65'535};
     }},
    {"Tasmere2Vetra", called<Tasmere2Vetra, 0>,
     [](Oracle& oracle) {
       oracle.init_i2c();
       return Outcome{3'500};
     }},
    {"GetPanLimitEn", called<GetPanLimitEn>, limit_enable<40>},
    {"GetTiltLimitEn", called<GetTiltLimitEn>, limit_enable<41>},
    {"GetPanLimitPos", two_numbers<GetPanLimitPos>, pan_limits},
    {"GetTiltLimitPos", two_numbers<GetTiltLimitPos>, tilt_limits},
    {"GetVetraPanPID", two_numbers<GetVetraPanPID, 16>, vetra_gains<40>},
    {"GetVetraTiltPID", two_numbers<GetVetraTiltPID, 16>, vetra_gains<41>},
};

}  // namespace

std::span<const HeadRow> head_queries() { return head_query_rows; }

}  // namespace kelvo::test::failure
