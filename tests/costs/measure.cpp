#include <cstdlib>
#include <sstream>

#include "costs/costs.h"
#include "kelvo.h"
#include "script/child.h"
#include "script/script.h"
#include "script/transcript.h"
#include "wire/program_images.h"

namespace kelvo::test::costs {
namespace {

constexpr Call system_calls[] = {Call::open,  Call::close,  Call::transfer, Call::speed,
                                 Call::i2c,   Call::usleep, Call::sleep,    Call::system,
                                 Call::ftok,  Call::semget, Call::semctl,   Call::semop,
                                 Call::fopen, Call::fsync};

int calls_so_far(const Script& script) {
  int calls = 0;
  for (const Call call : system_calls) calls += script.count(call);
  return calls;
}

/// Bytes of an I2C request: those written and those asked for.
int i2c_bytes(std::istringstream& words) {
  int bytes = 0;
  for (std::string word; words >> word;) {
    if (word == "w") continue;
    if (word == "r") {
      words >> word;
      bytes += std::atoi(word.c_str());
    } else {
      ++bytes;
    }
  }
  return bytes;
}

/// Bytes of a full-duplex transfer, in either direction: "05 00 ..." or "33276 bytes".
int spi_bytes(std::istringstream& words) {
  int bytes = 0;
  for (std::string word, last; words >> word; last = word) {
    if (word == "bytes") return std::atoi(last.c_str());
    if (word == "speed") return 0;
    ++bytes;
  }
  return bytes;
}

Cost cost_of(const std::string& transcript) {
  Cost cost;
  std::istringstream lines(transcript);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word == "lock") ++cost.lock_sections;
    if (word == "i2c") {
      words >> word;  // the address
      cost.bytes += i2c_bytes(words);
    }
    if (word == "spi_renesas:" || word == "spi_pt5111:") cost.bytes += spi_bytes(words);
  }
  return cost;
}

/// The boot loader confirms the images of the coming boots.
void confirm_images(Script& script, const Function& function) {
  for (int boot = 0; boot < function.boots; ++boot) {
    for (const wire::ProgramImage& image : wire::program_images) {
      if (image.module != function.images) continue;
      for (const int half : {0, 1}) {
        const std::uint32_t bits = image.checksum >> (16 * half);
        script.reply_once(
            {static_cast<std::uint8_t>(0x66 + half)},
            {0, 0, static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8)});
      }
    }
  }
}

/// Everything is there and answers; a calibration is finished when it is asked for.
void prepare(Script& script, const Place& place) {
  script.query_reply(0x80, {0, 0, 0, 4});
  for (const char* path : {"/bin/DC_S_Cali.dat", "/bin/OIS_S_Cali.dat"}) {
    script.file(path, Bytes(60, 0));
  }
  SetLensType(place.scope == Scope::modules ? place.code : 7);
  InitSPI();
  Init_I2C();
  if (place.scope != Scope::families) return;
  if (place.code == 1) script.i2c_register(40, 240, {'V', 'X'});
  GetMotorType();
  std::int32_t gain = 100;
  for (std::int32_t& word : giMOTOR_Init_Reg) word = gain++;
}

Cost measure_one(Script& script, const Function& function) {
  confirm_images(script, function);
  script.transcript();
  const int before = calls_so_far(script);
  function.run();
  const int calls = calls_so_far(script) - before;
  Cost cost = cost_of(script.transcript());
  cost.system_calls = calls;
  return cost;
}

}  // namespace

Costs measure(const Function& function, const Place& place) {
  const Told told = in_a_process([&](const Tell& tell) {
    Script script;
    prepare(script, place);
    for (int round = 0; round < 2; ++round) {
      const Cost cost = measure_one(script, function);
      tell(format("%d %d %d\n", cost.system_calls, cost.lock_sections, cost.bytes));
    }
  });
  Costs costs;
  costs.trouble = told.trouble;
  std::istringstream numbers(told.text);
  for (Cost* cost : {&costs.first, &costs.again}) {
    numbers >> cost->system_calls >> cost->lock_sections >> cost->bytes;
  }
  if (!numbers && costs.trouble.empty()) costs.trouble = "nothing was told";
  return costs;
}

}  // namespace kelvo::test::costs
