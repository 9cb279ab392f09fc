// What a run must do when calls fail: the rules of the links, told over again without any hardware.
//
// A rule walks through a function's steps in words ("a command frame, a wait"); the oracle writes the
// transcript that the scripted host must record then, with the retries, latched frames, broken locks
// and messages that follow from the failing call. The bytes of the frames are not its business: it is
// given those of a run in which nothing failed, and whatever fails, the same frames must be sent.
#ifndef KELVO_TESTS_FAILURE_ORACLE_H
#define KELVO_TESTS_FAILURE_ORACLE_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "script/script.h"

namespace kelvo::test::failure {

inline constexpr int call_kinds = static_cast<int>(Call::calloc) + 1;

/// The nth call of a kind fails, alone or with all that follow it. nth 0: nothing fails.
struct Fault {
  Call call = Call::open;
  int nth = 0;
  bool for_good = false;
};

/// What the controllers of the pan/tilt head are; by default nobody is there to ask.
enum class Head : std::uint8_t { none, vetra, tasmere };

/// How things stand before the call.
struct Setting {
  int variant = 0;  // given to SetLensType; 0: the latch is as at load
  bool devices = true;
  bool semaphore = true;
  Head head = Head::none;
};

/// What outlives a call for good: no exported function of the library undoes it.
struct Carried {
  bool driver_open = false;  // the stepping-motor driver's device
  bool moved = false;        // the motor of this scenario, so that it has settled
  int family = -1;           // the head's, as the library took it
};

/// A checksum that the boot loader answers, once, to the read of this code.
struct Answer {
  std::uint8_t code;
  Bytes received;
};

class Oracle {
 public:
  Oracle(const Setting& setting, const Fault& fault, const std::vector<std::string>& frames,
         const Carried& carried);

  // ---- bus lock and waits --------------------------------------------------------------------
  std::int32_t make_sem(std::uint32_t key);
  int lock_sem(std::int32_t set);
  int unlock_sem(std::int32_t set);
  int wait(int microseconds);
  void pause(int seconds);
  /// Waits before a motor's first move alone; `moves` ends that.
  void settle(int milliseconds);
  void moves() { carried_.moved = true; }

  // ---- link to the lens controller; a count is that of frames of this kind in a row ----------
  int init_spi();
  void close_spi();
  void set_speed(int hertz);
  int reset_controller();
  int boot_command(int count = 1);
  int payload();
  int boot_read(std::uint8_t code, Bytes& received, const Bytes& answer);
  std::uint8_t command(int count = 1);
  /// Whether `out` is written; when it is, what came in is in `answered`.
  struct Query {
    std::uint8_t result;
    bool written;
    bool answered;
  };
  Query query();

  // ---- stepping-motor driver -----------------------------------------------------------------
  std::int64_t driver_word(int count = 1);

  // ---- pan/tilt link -------------------------------------------------------------------------
  int init_i2c();
  void release_i2c();
  bool memory();
  /// One combined request; its result as the kernel gives it.
  int i2c_request(int messages);

  // ---- pan/tilt head; a message is what the transcript has behind "i2c " ------------------------
  /// Asks for the family if nobody has yet.
  int head_family();
  int head_write(const std::string& message);
  struct Reading {
    int result;
    Bytes bytes;  // zeros when nothing came
  };
  Reading head_read(const std::string& message);

  // ---- files ---------------------------------------------------------------------------------
  bool open_file(const std::string& path, const std::string& mode = "r");
  void close_file(const std::string& path);
  void synchronise();

  /// The next frame carries the value 0, where one that has read its value would carry that.
  void carries_zero();
  /// Nothing the library does from here on would differ from what it has done: it never returns.
  void never_returns() { returns_ = false; }
  bool returns() const { return returns_; }

  /// Steps that are left out still have their place among the frames.
  void skip_frames(int count) { frame_ += count; }
  int frame() const { return frame_; }
  void go_back_to_frame(int frame) { frame_ = frame; }

  void print(const std::string& text) { lines_.push_back("out \"" + text + "\\n\""); }

  // ---- what has come of it -------------------------------------------------------------------
  int calls(Call call) const { return counts_[static_cast<std::size_t>(call)]; }
  std::string transcript() const;
  /// The state that the run leaves, one fact a line.
  std::string state() const;
  const std::vector<Answer>& answers() const { return answers_; }
  const Carried& carried() const { return carried_; }

  int variant;
  int latch;
  bool header_arrived = false;
  int pan_tilt = 0;  // the exported descriptor's sign

 private:
  bool happens(Call call, const std::string& line, int own_error = 0);
  bool fails(Call call);
  int transfer();
  bool head_transfer(const std::string& message);
  void take_bus();
  void release_bus();
  std::uint32_t bus_key();

  Setting setting_;
  Fault fault_;
  Carried carried_;
  std::vector<std::string> frames_;
  int frame_ = 0;
  bool lens_open_ = false;
  bool semaphore_exists_;
  int semaphore_value_ = 0;
  int open_files_ = 0;
  bool returns_ = true;
  std::array<int, call_kinds> counts_{};
  std::vector<std::string> lines_;
  std::vector<Answer> answers_;
};

}  // namespace kelvo::test::failure

#endif
