// The pan/tilt head in this suite: what its controllers answer, and rows that are played on both families.
#ifndef KELVO_TESTS_FAILURE_HEAD_H
#define KELVO_TESTS_FAILURE_HEAD_H

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>

#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {

/// A function that acts on the head; it is played with either family behind the link.
struct HeadRow {
  const char* function;
  Outcome (*call)();
  Outcome (*rule)(Oracle&);
  const char* on_vetra = "Vetra";
  const char* on_tasmere = "Tasmere";
};
std::span<const HeadRow> head_queries();
std::span<const HeadRow> head_commands();
std::span<const HeadRow> head_gains();
std::span<const HeadRow> head_moves();

/// The registers of both controllers.
void set_up_head(Script& script, Head head);
Bytes head_register(Head head, int reg, int length);

/// The head's state as it was when the library was loaded, as far as that is exported.
void forget_head();

// ---- calls ---------------------------------------------------------------------------------------

template <auto function, auto... arguments>
Outcome called() {
  Init_I2C();
  return {function(arguments...)};
}

/// Numbers as the bytes of an outcome.
Bytes words(std::initializer_list<std::uint32_t> numbers);

// ---- rules ---------------------------------------------------------------------------------------

/// Opens the link and asks for the family.
bool begin_on_vetra(Oracle& oracle);

/// One message a line.
Outcome writes(Oracle& oracle, const char* messages);
/// The same behind the question for the family, whose messages they are.
Outcome writes_by_family(Oracle& oracle, const char* vetra, const char* tasmere);

/// "40: w 31 r 1"
inline std::string at(int slave, const char* message) {
  return std::to_string(slave) + ": " + message;
}

/// High byte first.
std::uint32_t number_in(const Bytes& bytes, std::size_t at = 0);

}  // namespace kelvo::test::failure

#endif
