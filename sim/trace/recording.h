// What crosses the real wires, of the programs that one trace is about, in a shared memory object of its
// own.
#ifndef KELVO_SIM_TRACE_RECORDING_H
#define KELVO_SIM_TRACE_RECORDING_H

#include <memory>
#include <string>

#include "sim/trace/ring.h"
#include "sim/trace/situation.h"

namespace kelvo::sim::trace {

class Recording;

/// A recording, or why there is none.
struct OpenedRecording {
  std::unique_ptr<Recording> recording;
  std::string error;
};

class Recording {
 public:
  /// An empty one, readable by this user alone, that goes away with the object.
  static OpenedRecording make();
  /// One that there is.
  static OpenedRecording open(const std::string& name);
  ~Recording();
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  const std::string& name() const { return name_; }
  const Ring& ring() const;
  /// Adds what happened, with what is known of the camera then. The process is the one that calls.
  void record(Event event);

 private:
  struct Memory;
  Recording(std::string name, Memory* memory, bool own);
  static OpenedRecording map(std::string name, int descriptor, bool own);
  std::uint32_t process(std::int32_t pid);

  std::string name_;
  Memory* memory_;
  bool own_;
  std::atomic<std::uint64_t> numbered_ = 0;  // the process that has a number, and the number
};

}  // namespace kelvo::sim::trace

#endif
