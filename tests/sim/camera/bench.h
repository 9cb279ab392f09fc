// A camera on a test bench: short words for what a driver does to it. Its images are short ones; where
// they go and their checksums are the real ones.
#ifndef KELVO_TESTS_SIM_CAMERA_BENCH_H
#define KELVO_TESTS_SIM_CAMERA_BENCH_H

#include <cstdint>
#include <string>
#include <vector>

#include "sim/camera/camera.h"

namespace kelvo::test {

using Frame = std::vector<std::uint8_t>;

// Channels of the lens controller's motors, and step-period words for them.
inline constexpr int focus_channel = 0;
inline constexpr int zoom_channel = 32;
inline constexpr int fast_period = 10 * 1024 + 90;   // 144 us an eighth step
inline constexpr int slow_period = 10 * 1024 + 500;  // 800 us an eighth step

struct Image {
  int module;  // 7, 8, 9
  std::uint8_t memory;
  std::uint32_t address;
  std::uint32_t checksum;
  Frame bytes;
};

/// Three images for each module; those of modules 8 and 9 for memories 0x22 and 0x23 are the same bytes.
const std::vector<Image>& images();
/// The first, second or third image of a module.
const Image& image(int module, int index);
sim::camera::CarriedImages carried();

class Bench {
 public:
  sim::camera::Camera camera;

  /// What the lens controller sends back.
  Frame send(const Frame& frame);
  /// A word on the PT5111's own device.
  Frame send_word(const Frame& word);
  void shell_all(const std::vector<std::string>& commands);
  void wait_ms(std::int64_t milliseconds);

  void reset();
  void set_clocks();
  /// Address, size, header and payload, in order.
  void announce(std::uint8_t memory, std::uint32_t address, std::uint32_t size);
  void download(std::uint8_t memory, std::uint32_t address, const Frame& bytes);
  /// The answer to both checksum reads.
  std::uint32_t read_checksum();
  /// One attempt up to the end of the downloads: reset, clocks, three images.
  void load(int module);
  void end_downloads() { send({0xE5, 0x00, 0x02, 0x00, 0xA0}); }
  void start() { send({0xE2, 0x00, 0x00, 0x00, 0xA0}); }
  void boot(int module);

  /// A command frame with its right checksum.
  void command(std::uint8_t code, std::uint8_t a1, std::uint8_t a2, std::uint8_t a3,
               std::uint8_t a4);
  /// A command with a 32-bit value in its four arguments.
  void command32(std::uint8_t code, std::uint32_t value);
  /// A command with a 16-bit value in its last two arguments.
  void command16(std::uint8_t code, int value);
  /// A 16-bit register of the lens controller, by the command of the program that runs.
  void write_register(std::uint8_t reg, int value);
  /// A move of a motor channel: mode word, counts, step-period word.
  void move_channel(int channel, int mode, int counts, int period);
  /// A word for the PT5111, by the way that the program which runs has.
  void pt5111_words(const std::vector<int>& words);
  /// The 16-bit answer to a query, from reply bytes 2 and 3.
  int query(std::uint8_t code, std::uint8_t argument = 0);
  /// The whole answer, as one number.
  std::uint32_t query32(std::uint8_t code, std::uint8_t argument = 0);

  std::int32_t position(sim::camera::Output output) const;
  /// All violations listed so far, as "unit | frame | reason".
  std::vector<std::string> violations() const;
  std::uint64_t violation_count() const { return camera.violations().total(); }
};

}  // namespace kelvo::test

#endif
