#include <cstdio>

#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

constexpr std::uint8_t command_frame[5] = {0x7F, 1, 2, 3, 4};
constexpr std::uint8_t query_frame[5] = {0x80, 5, 0, 0, 0};

Outcome version() {
  std::uint32_t version = 0xEEEEEEEE;
  const std::uint8_t result = getVersion(&version);
  return {result,
          {static_cast<std::uint8_t>(version >> 16), static_cast<std::uint8_t>(version >> 8),
           static_cast<std::uint8_t>(version)}};
}

Outcome version_rule(Oracle& oracle) {
  const Oracle::Query query = oracle.query();
  return {query.result, query.answered ? Bytes{0, 3, 4} : Bytes{0, 0, 0}};
}

std::int32_t lens_type(const Oracle& oracle) { return oracle.latch == -1 ? -1 : oracle.variant; }

constexpr Scenario service_rows[] = {
    {"SetLensType", "", as_loaded, [] { return Outcome{SetLensType(8)}; },
     [](Oracle& oracle) {
       oracle.variant = 8;
       oracle.latch = 0;
       return Outcome{0};
     }},
    {"SetLensType", "after_a_command", df033,
     [] {
       SendCommand(1, 0, 0, 0, 0);
       return Outcome{SetLensType(9)};
     },
     [](Oracle& oracle) {
       oracle.command();
       oracle.variant = 9;
       oracle.latch = 0;
       return Outcome{0};
     }},
    {"GetLensType", "", as_loaded, [] { return Outcome{GetLensType()}; },
     [](Oracle& oracle) { return Outcome{lens_type(oracle)}; }},
    {"GetLensType", "after_a_command", df033,
     [] {
       SendCommand(1, 0, 0, 0, 0);
       return Outcome{GetLensType()};
     },
     [](Oracle& oracle) {
       oracle.command();
       return Outcome{lens_type(oracle)};
     }},
    {"getVersion", "DE015", de015, version, version_rule},
    {"getVersion", "T5391", t5391, version, version_rule},
    {"CommTest", "command", de015, [] { return Outcome{CommTest(command_frame, 5)}; },
     [](Oracle& oracle) {
       oracle.command();
       return Outcome{0};
     }},
    {"CommTest", "query", de015, [] { return Outcome{CommTest(query_frame, 5)}; },
     [](Oracle& oracle) {
       oracle.query();
       return Outcome{0};
     }},
    {"FileSync", "", as_loaded,
     [] {
       std::FILE* const stream = std::tmpfile();
       const std::int32_t result = FileSync(stream);
       std::fclose(stream);
       return Outcome{result};
     },
     [](Oracle& oracle) {
       oracle.synchronise();
       return Outcome{0};
     }},
};

}  // namespace

std::span<const Scenario> service_scenarios() { return service_rows; }

}  // namespace kelvo::test::failure
