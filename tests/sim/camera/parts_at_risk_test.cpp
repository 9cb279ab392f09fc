// What a single call may change, by which a change of a shared camera is taken back.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::Camera;
using kelvo::test::Bench;
using kelvo::test::Frame;

/// The bytes of a camera, without those of violations that are not listed.
std::vector<std::byte> bytes_of(Camera camera) {
  const std::size_t listed = camera.violations().listed().size_bytes();
  Camera* const place = &camera;
  const auto entries = const_cast<kelvo::sim::camera::Violations&>(place->violations()).entries();
  std::fill(entries.begin() + static_cast<std::ptrdiff_t>(listed), entries.end(), std::byte{});
  const auto all = std::as_bytes(std::span(place, 1));
  return {all.begin(), all.end()};
}

/// Does something to a camera and takes it back by its parts; whether all is then as before.
template <typename Act>
void expect_undone(Bench& bench, const Act& act, const char* what) {
  const std::vector<std::byte> before = bytes_of(bench.camera);
  std::vector<std::vector<std::byte>> copies;
  const auto parts = bench.camera.parts_at_risk();
  for (const auto part : parts) copies.emplace_back(part.begin(), part.end());
  act();
  const Camera after = bench.camera;
  std::size_t i = 0;
  for (const auto part : parts) std::memcpy(part.data(), copies[i++].data(), part.size());
  EXPECT_EQ(std::memcmp(bytes_of(bench.camera).data(), before.data(), before.size()), 0) << what;
  bench.camera = after;
}

void do_anything(Bench& bench, std::minstd_rand& random) {
  const auto byte = [&] { return static_cast<std::uint8_t>(random() >> 8); };
  const Frame frame{byte(), byte(), byte(), byte(), byte(), byte(), byte()};
  expect_undone(
      bench, [&] { bench.send(frame); }, "a frame");
  expect_undone(
      bench,
      [&] {
        bench.send_word({byte(), byte()});
      },
      "a word");
  expect_undone(
      bench, [&] { bench.command(byte(), byte(), byte(), byte(), byte()); }, "a command");
  expect_undone(
      bench, [&] { bench.query(byte()); }, "a query");
  expect_undone(
      bench, [&] { bench.wait_ms(static_cast<std::int64_t>(random() % 50)); }, "time");
}

TEST(PartsAtRisk, AreAFewOfTheCamera) {
  Camera camera;
  std::size_t sum = 0;
  for (const auto part : camera.parts_at_risk()) sum += part.size();
  EXPECT_LT(sum, sizeof camera / 4);
}

TEST(PartsAtRisk, HaveEverythingThatACallChanges) {
  Bench bench;
  std::minstd_rand random(7);
  for (int boot = 0; boot < 40; ++boot) {
    const int module = 7 + boot % 3;
    for (const char* const value : {"0", "1"}) {
      const std::string command = std::string("echo ") + value + " > /sys/class/gpio/gpio33/value";
      if (boot == 0) bench.reset();
      expect_undone(
          bench, [&] { bench.camera.shell(command); }, "a reset");
    }
    for (int i = 0; i < 10; ++i) do_anything(bench, random);
    bench.boot(module);
    for (int i = 0; i < 20; ++i) do_anything(bench, random);
    const auto& image = kelvo::test::image(module, 0);
    bench.load(module);
    bench.announce(image.memory, image.address, static_cast<std::uint32_t>(image.bytes.size()));
    expect_undone(
        bench, [&] { bench.send(image.bytes); }, "a download");
    bench.boot(module);
  }
  EXPECT_GT(bench.camera.boots().total(), 16u);
  EXPECT_GT(bench.violation_count(), 64u);
}

}  // namespace
