// The scripted host: stands in for the kernel, records in order everything that leaves the library,
// answers what the test says, and fails the calls that the test names.
//
// The record is a transcript, one event a line:
//
//   open /dev/spi_renesas               open and close of a device node
//   close /dev/spi_renesas
//   lock                                the whole of ftok, semget, semop 0 +1
//   unlock                              the whole of ftok, semget, semctl GETVAL, semop -1
//   spi_renesas: 01 02 03 04 FA 04 00   a transfer: device and sent bytes, hexadecimal
//   spi_renesas: 33276 bytes            a transfer of more than 32 bytes (see payloads())
//   spi_renesas: speed 250000           a speed request
//   fd -1: 05 00 00 00 00 05 00         a request on a descriptor that is no camera device
//   i2c 40: w 32                        an I2C request: slave address in decimal, its messages
//   i2c 40: w 32 r 2                    a combined write and read of two bytes
//   i2c 40: w                           an empty write message
//   usleep 2000                         microseconds
//   sleep 1                             seconds
//   system echo 33 > /sys/class/gpio/export
//   fopen /bin/DC_S_Cali.dat r          mode r or w (a "b" is left out)
//   fclose /bin/DC_S_Cali.dat
//   fsync                               of any descriptor
//   out "Ver:01 02 03 04 \n"            standard output, one event for each line or part of one
//   err "Open /dev/spi_renesas fail\n"  standard error, likewise
//
// A call that fails ends with " -> " and the name of the error number ("spi_renesas: 05 ... -> EIO");
// one whose result the test set ends with " -> " and the number. Lock
// steps that are not exactly the two sequences above (or of which one fails) are written singly:
//
//   ftok /lib/libkelvo.so 0
//   semget 0x4b454c56 0 0               key, members, flags in octal
//   semget 0x4b454c56 1 01666
//   semctl GETVAL
//   semctl SETVAL 0
//   semop 0/UNDO +1/UNDO                operations, all on member 0
//   semop -1/UNDO
//
// By default every call succeeds, receive buffers stay as they were (zeros, as the library sends them), no camera file
// exists (ENOENT), and the lock's semaphore exists and is free. Sleeps take no time.
#ifndef KELVO_TESTS_SCRIPT_SCRIPT_H
#define KELVO_TESTS_SCRIPT_SCRIPT_H

#include <cerrno>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo::test {

using Bytes = std::vector<std::uint8_t>;

/// The kinds of calls that can be made to fail.
enum class Call : std::uint8_t {
  open,
  close,
  transfer,
  speed,
  i2c,
  usleep,
  sleep,
  system,
  ftok,
  semget,
  semctl,
  semop,
  fopen,
  fsync,
  calloc,
};

inline constexpr int forever = -1;

class Script {
 public:
  Script();  // takes the kernel's place and captures standard output and standard error
  ~Script();
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;

  /// Everything since the beginning or since the last call of transcript(), and forgets it.
  std::string transcript();
  /// The same without the lines that begin with one of these words ("lock", "out", "spi_renesas" ...).
  std::string transcript_without(const std::vector<std::string>& words);

  // ---- what the devices answer -------------------------------------------------------------
  /// Every SPI transfer whose sent bytes begin with `sent` receives `received` (shorter than the
  /// transfer: the rest of the receive buffer is left as it was). The longest prefix wins; of equal
  /// ones the latest.
  void reply(const Bytes& sent, const Bytes& received);
  /// The same, once; these are used up, in the order given, before the lasting replies.
  void reply_once(const Bytes& sent, const Bytes& received);
  /// A query frame's four reply bytes (received bytes 7 to 10).
  void query_reply(std::uint8_t code, const Bytes& four);
  void query_reply_once(std::uint8_t code, const Bytes& four);
  /// An I2C read of `reg` from `slave` gives these bytes (padded with zeros).
  void i2c_register(int slave, std::uint8_t reg, const Bytes& bytes);

  /// A camera file with this content; without one, reading it is ENOENT.
  void file(const std::string& path, const Bytes& content);
  /// A camera file that opens but cannot be read (every read is an error).
  void unreadable_file(const std::string& path);
  /// A camera file that opens for writing and takes nothing, as on a full storage.
  void full_file(const std::string& path);
  /// What has been written to a camera file that was opened for writing; empty if none was.
  Bytes written(const std::string& path) const;

  /// Whether the lock's semaphore set exists already, and its value.
  void semaphore(bool exists, int value);
  int semaphore_value() const;

  // ---- failures ------------------------------------------------------------------------------
  /// The nth (1 = next) call of this kind from now on fails with `error`, and `times` in all
  /// (`forever`: every one from there on).
  void fail(Call call, int nth = 1, int times = 1, int error = EIO);
  /// The nth call of this kind from now on has this result instead (for example a positive one).
  void result(Call call, int nth, int value);
  /// The nth call of this kind from now on (not calloc) is recorded, then this is done, then the call
  /// returns. A test of a function that never returns ends its process here.
  void at(Call call, int nth, std::function<void()> action);
  /// Calls of this kind so far, failed ones included.
  int count(Call call) const;

  /// The full bytes of every SPI transfer of more than 32 bytes, in order.
  const std::vector<Bytes>& payloads() const;
  /// How many camera files were opened and not closed again.
  int open_files() const;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kelvo::test

#endif
