// Numbers m * 2^e without any error, in integers, and the two roundings of the head's arithmetic.
#ifndef KELVO_TESTS_PANTILT_EXACT_H
#define KELVO_TESTS_PANTILT_EXACT_H

#include <cstdint>

namespace kelvo::test {

__extension__ using Wide = __int128;

struct Exact {
  Wide significand;
  int exponent = 0;
};

constexpr Wide magnitude(Wide number) { return number < 0 ? -number : number; }

constexpr int bits_of(Wide number) {
  int bits = 0;
  for (Wide rest = magnitude(number); rest > 0; rest >>= 1) ++bits;
  return bits;
}

/// To the nearest number with so many bits; of two that are equally near, the even one.
constexpr Exact rounded(Exact number, int bits) {
  const int dropped = bits_of(number.significand) - bits;
  if (dropped <= 0) return number;
  const Wide all = magnitude(number.significand);
  Wide kept = all >> dropped;
  const Wide rest = all - (kept << dropped);
  const Wide half = Wide{1} << (dropped - 1);
  if (rest > half || (rest == half && kept % 2 != 0)) ++kept;
  return {number.significand < 0 ? -kept : kept, number.exponent + dropped};
}
constexpr Exact to_single(Exact number) { return rounded(number, 24); }
constexpr Exact to_double(Exact number) { return rounded(number, 53); }

constexpr Exact times(Exact one, Exact other) {
  return {one.significand * other.significand, one.exponent + other.exponent};
}

constexpr Exact minus(Exact one, Exact other) {
  if (one.exponent > other.exponent) {
    one = {one.significand << (one.exponent - other.exponent), other.exponent};
  }
  const Wide subtrahend = other.significand << (other.exponent - one.exponent);
  return {one.significand - subtrahend, one.exponent};
}

/// At least 60 bits of a quotient; the last of them says whether anything is left behind it.
constexpr Exact over(Exact number, Wide divisor) {
  const int shift = 100 - bits_of(number.significand);
  const Wide dividend = magnitude(number.significand) << shift;
  const Wide quotient = dividend / divisor * 2 + (dividend % divisor != 0 ? 1 : 0);
  return {number.significand < 0 ? -quotient : quotient, number.exponent - shift - 1};
}

/// Toward zero.
constexpr std::int64_t truncated(Exact number) {
  Wide all = magnitude(number.significand);
  all = number.exponent >= 0 ? all << number.exponent : all >> -number.exponent;
  return static_cast<std::int64_t>(number.significand < 0 ? -all : all);
}

inline constexpr Exact one_half = {1, -1};

/// The controller's count of a position on the common scale, 0 to 65535, with so many counts for the
/// full range: the other way round, with the roundings of each step.
constexpr std::int32_t exact_pan_count(std::int64_t position, std::int32_t range) {
  const Exact whole = to_single({range});
  const Exact product = to_single(times(to_single({position}), whole));
  const Exact turned = to_single(to_double(minus(to_double(over(product, 65535)), one_half)));
  return static_cast<std::int32_t>(truncated(to_single(minus(whole, turned))));
}

/// The tilt axis begins 3500 counts further on, and goes once around.
constexpr std::int32_t exact_tilt_count(std::int64_t position, std::int32_t range) {
  const std::int32_t count = exact_pan_count(position, range) + 3500;
  return range > count ? count : count - range;
}

/// What remains from a count to the end of the range, on the common scale.
constexpr Exact exact_remainder(std::int32_t counts, std::int32_t range) {
  return to_double(over(times(to_single({counts}), {65535}), range));
}

/// base - factor * distance, rounded once, without its fraction; the factor is significand * 2^exponent.
constexpr std::int32_t exact_gain(int base, Exact factor, int distance) {
  return static_cast<std::int32_t>(truncated(to_double(minus({base}, times(factor, {distance})))));
}

// The numbers in double precision that are nearest to these.
inline constexpr Exact thousandth = {0x10624DD2F1A9FC, -62};
inline constexpr Exact hundredth = {0x147AE147AE147B, -59};
inline constexpr Exact fiftieth = {0x147AE147AE147B, -58};

}  // namespace kelvo::test

#endif
