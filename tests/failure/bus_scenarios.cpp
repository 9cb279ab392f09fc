#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

constexpr std::uint32_t key = 0x4b454c56;
constexpr std::uint8_t four_bytes[4] = {1, 2, 3, 4};

std::uint32_t bus_set() { return static_cast<std::uint32_t>(makeSem(key)); }

constexpr Setting fresh_system = {.semaphore = false};
constexpr Setting without_device = {.devices = false};
constexpr Setting de015_without_device = {.variant = 7, .devices = false};

// The bytes that the scripted controller answers to these frames are set in rounds.cpp.
Outcome received(Oracle::Query query) {
  if (!query.written) return {query.result, Bytes(4, untouched)};
  return {query.result, query.answered ? Bytes{1, 2, 3, 4} : Bytes(4, 0)};
}

constexpr Scenario bus_rows[] = {
    // ---- bus lock and delays
    {"makeSem", "", as_loaded, [] { return Outcome{makeSem(key)}; },
     [](Oracle& oracle) { return Outcome{oracle.make_sem(key)}; }},
    {"makeSem", "fresh_system", fresh_system, [] { return Outcome{makeSem(key)}; },
     [](Oracle& oracle) { return Outcome{oracle.make_sem(key)}; }},
    {"lockSem", "", as_loaded, [] { return Outcome{lockSem(bus_set())}; },
     [](Oracle& oracle) { return Outcome{oracle.lock_sem(oracle.make_sem(key))}; }},
    {"unlockSem", "", as_loaded,
     [] {
       const std::uint32_t set = bus_set();
       lockSem(set);
       return Outcome{unlockSem(set)};
     },
     [](Oracle& oracle) {
       const std::int32_t set = oracle.make_sem(key);
       oracle.lock_sem(set);
       return Outcome{oracle.unlock_sem(set)};
     }},
    {"unlockSem", "of_a_free_lock", as_loaded, [] { return Outcome{unlockSem(bus_set())}; },
     [](Oracle& oracle) { return Outcome{oracle.unlock_sem(oracle.make_sem(key))}; }},
    {"delay_ms", "", as_loaded, [] { return Outcome{delay_ms(7)}; },
     [](Oracle& oracle) { return Outcome{oracle.wait(7'000)}; }},

    // ---- the device
    {"InitSPI", "", as_loaded, [] { return Outcome{InitSPI()}; },
     [](Oracle& oracle) { return Outcome{oracle.init_spi()}; }},
    {"InitSPI", "twice", as_loaded,
     [] {
       InitSPI();
       return Outcome{InitSPI()};
     },
     [](Oracle& oracle) {
       oracle.init_spi();
       return Outcome{oracle.init_spi()};
     }},
    {"CloseSPI", "", as_loaded,
     [] {
       InitSPI();
       return Outcome{CloseSPI()};
     },
     [](Oracle& oracle) {
       oracle.init_spi();
       oracle.close_spi();
       return Outcome{0};
     }},
    {"setSPISpeed", "", as_loaded, [] { return Outcome{setSPISpeed(250'000)}; },
     [](Oracle& oracle) {
       oracle.set_speed(250'000);
       return Outcome{0};
     }},
    {"setSPISpeed", "without_device", without_device,
     [] { return Outcome{setSPISpeed(1'000'000)}; },
     [](Oracle& oracle) {
       oracle.set_speed(1'000'000);
       return Outcome{0};
     }},
    {"ResetR2J30516", "", as_loaded, [] { return Outcome{ResetR2J30516()}; },
     [](Oracle& oracle) { return Outcome{oracle.reset_controller()}; }},

    // ---- boot-loader frames: no latch
    {"WriteCommand", "", de015, [] { return Outcome{WriteCommand(0xF5, 4, 0, 0)}; },
     [](Oracle& oracle) { return Outcome{oracle.boot_command()}; }},
    {"WriteData", "", de015, [] { return Outcome{WriteData(0x21, 4, four_bytes)}; },
     [](Oracle& oracle) { return Outcome{oracle.payload()}; }},
    {"ReadSpi", "latched", as_loaded,
     [] {
       Bytes reply(5, untouched);
       const std::int32_t result = ReadSpi(0x66, reply.data(), 5);
       return Outcome{result, reply};
     },
     [](Oracle& oracle) {
       Bytes reply(5, untouched);
       const int result = oracle.boot_read(0x66, reply, {5, 4, 3, 2, 1});
       return Outcome{result, reply};
     }},
    {"ReadSpi", "", de015,
     [] {
       Bytes reply(5, untouched);
       const std::int32_t result = ReadSpi(0x66, reply.data(), 5);
       return Outcome{result, reply};
     },
     [](Oracle& oracle) {
       Bytes reply(5, untouched);
       const int result = oracle.boot_read(0x66, reply, {5, 4, 3, 2, 1});
       return Outcome{result, reply};
     }},

    // ---- frames of the running program: the latch
    {"SendCommand", "", de015, [] { return Outcome{SendCommand(1, 2, 3, 4, 250)}; },
     [](Oracle& oracle) { return Outcome{oracle.command()}; }},
    {"SendCommand", "three_times", de015,
     [] {
       SendCommand(1, 2, 3, 4, 250);
       SendCommand(2, 2, 3, 4, 250);
       return Outcome{SendCommand(3, 2, 3, 4, 250)};
     },
     [](Oracle& oracle) { return Outcome{oracle.command(3)}; }},
    {"SendCommand", "latched", as_loaded, [] { return Outcome{SendCommand(1, 2, 3, 4, 250)}; },
     [](Oracle& oracle) { return Outcome{oracle.command()}; }},
    {"SendCommand", "without_device", de015_without_device,
     [] { return Outcome{SendCommand(1, 2, 3, 4, 250)}; },
     [](Oracle& oracle) { return Outcome{oracle.command()}; }},
    {"RecvCommand", "", de015,
     [] {
       Bytes reply(4, untouched);
       const std::uint8_t result = RecvCommand(0x80, 5, reply.data());
       return Outcome{result, reply};
     },
     [](Oracle& oracle) { return received(oracle.query()); }},
    {"RecvCommand", "after_a_command", de015,
     [] {
       SendCommand(1, 2, 3, 4, 250);
       Bytes reply(4, untouched);
       const std::uint8_t result = RecvCommand(0x80, 5, reply.data());
       return Outcome{result, reply};
     },
     [](Oracle& oracle) {
       oracle.command();
       return received(oracle.query());
     }},
    {"reg_wt16_0x0c", "", de015, [] { return Outcome{reg_wt16_0x0c(0x20, 0x1234)}; },
     [](Oracle& oracle) { return Outcome{oracle.command()}; }},
};

}  // namespace

std::span<const Scenario> bus_scenarios() { return bus_rows; }

}  // namespace kelvo::test::failure
