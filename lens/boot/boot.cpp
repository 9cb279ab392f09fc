#include <unistd.h>

#include <cstdio>

#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "kelvo/ois.h"
#include "kelvo/pantilt.h"
#include "lens/variant/variant.h"
#include "wire/boot_loader.h"
#include "wire/lens_program.h"
#include "wire/program_images.h"

namespace {

using kelvo::lens::LensModule;
namespace boot_loader = kelvo::wire::boot_loader;
namespace command = kelvo::wire::command;

constexpr std::uint32_t download_speed = 250'000;   // Hz
constexpr std::uint32_t running_speed = 1'000'000;  // Hz
constexpr int attempts = 10;

/// One boot-loader command of the clock set-up, what a talkative boot prints before it, and the wait
/// behind it in milliseconds.
struct BootStep {
  std::uint8_t code;
  std::uint8_t data[3];
  const char* line;
  std::uint32_t wait;
};

// clang-format off
constexpr BootStep clock_setup[] = {
  {boot_loader::pll_mode,       {0x04, 0x00, 0x00}, "Write PLL Mode Register",                         0},
  {boot_loader::pll_control,    {0x01, 0x00, 0x00}, "Write PLL Control Register",                      1},
  {boot_loader::clock_supply,   {0x01, 0x13, 0x03}, "Write Clock Supply Control Register (CLKEN)",     0},
  {boot_loader::division_ratio, {0x33, 0x92, 0x00}, "Write Division Ratio Setting Register (CLKDIV)",  0},
  {boot_loader::divider_start,  {0x01, 0x00, 0x00}, "Divider control register (DIVSTART)",             0},
  {boot_loader::clock_supply,   {0x01, 0x13, 0x03}, "Write Clock Supply Control Register (CLKEN)",     0},
  {boot_loader::clock_source,   {0x01, 0x00, 0x00}, "Write Clock Source Select Register (CLKSEL)",     1},
};
// clang-format on

/// An image's bytes beside what the boot loader is told about it.
struct EmbeddedImage {
  LensModule module;
  std::uint8_t memory;
  std::uint32_t address;
  std::int32_t size;
  std::uint32_t checksum;
  const std::uint8_t* bytes;
};

constexpr EmbeddedImage images[] = {
#define KELVO_IMAGE(symbol, file, size, module, memory, address, checksum) \
  {LensModule::module, memory, address, size, checksum, symbol},
#include "wire/program_images.inc"
#undef KELVO_IMAGE
};

#define KELVO_IMAGE(symbol, file, size, module, memory, address, checksum) \
  static_assert(sizeof(symbol) == size);
#include "wire/program_images.inc"
#undef KELVO_IMAGE

enum class Talk : bool { silent, talkative };

void say(Talk talk, const char* line) {
  if (talk == Talk::talkative) std::puts(line);
}

/// Reset, clock set-up and the module's three downloads; nonzero when any of them failed its check.
std::int32_t boot_once(LensModule module, Talk talk) {
  ResetR2J30516();
  for (const BootStep& step : clock_setup) {
    say(talk, step.line);
    WriteCommand(step.code, step.data[0], step.data[1], step.data[2]);
    if (step.wait != 0) delay_ms(step.wait);
  }
  say(talk, "DownloadCode");
  std::int32_t error = 0;
  for (const EmbeddedImage& image : images) {
    if (image.module != module) continue;
    error |= DownloadCode(image.memory, image.address, image.size, image.checksum, image.bytes);
  }
  WriteCommand(boot_loader::download_end, 0x00, 0x02, 0x00);
  return error;
}

void start_program() { WriteCommand(boot_loader::start_program, 0, 0, 0); }

void start_loops() { SendCommand(command::set_mode, 0, 0, 0, 0); }

/// The boot of the modules with an iris loop; nonzero when any download failed its check.
std::int32_t boot_iris_module(LensModule module) {
  kelvo::lens::select_lens_module(module);
  // Never cleared between the attempts: once one has failed, all ten are made (deliberate).
  std::int32_t error = 0;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    setSPISpeed(download_speed);
    say(Talk::talkative, "Reset R2J30516");
    error |= boot_once(module, Talk::talkative);
    if (error == 0) break;
    sleep(1);
  }
  start_program();
  Init_I2C();
  delay_ms(100);
  Load_DC();
  start_loops();
  setSPISpeed(running_speed);
  SendCommand(command::loop_ready, 0, 0, 0, 1);
  return error;
}

/// One attempt without calibration, for the quality checks; its outcome is not looked at.
std::int32_t boot_uncalibrated(LensModule module) {
  setSPISpeed(download_speed);
  boot_once(module, Talk::silent);
  start_program();
  delay_ms(100);
  setSPISpeed(running_speed);
  return 0;
}

}  // namespace

std::int32_t Init30516() {
  kelvo::lens::select_lens_module(LensModule::de015);
  setSPISpeed(download_speed);
  std::int32_t error = 0;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    error |= boot_once(LensModule::de015, Talk::silent);
    if (error == 0) break;
    sleep(1);
  }
  start_program();
  PT5111_Initialize();
  Init_I2C();
  delay_ms(100);
  Load_QC();
  start_loops();
  setSPISpeed(running_speed);
  return error;
}

std::int32_t Init30516_DF033() {
  const std::int32_t error = boot_iris_module(LensModule::df033);
  PT5111_Initialize();
  return error;
}

std::int32_t Init30516_T5391() { return boot_iris_module(LensModule::t5391); }

std::int32_t InitOIS_K() { return boot_uncalibrated(LensModule::de015); }

std::int32_t InitDC_K() { return boot_uncalibrated(LensModule::df033); }
