// The shared memory objects that cameras lie in: their names, making, checking, removing.
#ifndef KELVO_SIM_STATE_OBJECT_H
#define KELVO_SIM_STATE_OBJECT_H

#include <string>
#include <string_view>

#include "sim/state/layout.h"

namespace kelvo::sim::state {

/// A byte that whoever makes or removes a camera has locked.
inline constexpr std::uint32_t makers_byte = most_processes;

/// /kelvo-sim-UID-NAME, and what stands before the name in all of this user's.
std::string object_name(std::string_view name);
std::string object_prefix();

/// An open object. With the makers' byte locked as long as it lives, so
/// that nobody makes, checks or removes it meanwhile.
class Object {
 public:
  enum class Missing : bool { is_an_error, is_made };

  Object(std::string_view name, Missing missing);
  ~Object();
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  /// What is wrong, or nothing.
  const std::string& error() const { return error_; }
  int descriptor() const { return descriptor_; }
  /// Whether nobody has laid a camera into it yet.
  bool blank() const;
  /// The first members of the header, which all versions have; the rest has this version's meaning only
  /// once check() finds nothing. Null without a header.
  const Header* header() const { return header_; }
  /// What keeps this version from using it, or nothing.
  std::string check() const;
  bool in_use() const;

  /// Lays a new camera into it. The memory is there for good, or an error.
  std::string reserve();
  /// Maps the whole of it; null with the reason in error().
  Layout* map();
  /// Frees the name.
  std::string unlink();
  /// Opens it once more, for locks: what is mapped keeps the first one's, in forked processes too.
  int open_for_locks() const;

 private:
  bool open_once(Missing missing);
  std::string owner_error() const;
  void map_header();
  std::string complaint(const std::string& what, const std::string& advice) const;

  std::string name_;
  std::string object_;
  std::string error_;
  int descriptor_ = -1;
  Header* header_ = nullptr;
};

}  // namespace kelvo::sim::state

#endif
