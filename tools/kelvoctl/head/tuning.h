// The tuning table of the head: its file, and what the library has of it in this process.
#ifndef KELVO_TOOLS_KELVOCTL_HEAD_TUNING_H
#define KELVO_TOOLS_KELVOCTL_HEAD_TUNING_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/head/head_axis.h"

namespace kelvo::ctl {

inline constexpr std::size_t tuning_rows = 12;
inline constexpr std::size_t tuning_words = 7;

using TuningTable = std::array<std::int32_t, tuning_rows * tuning_words>;

/// What a word of a row can be: what the library sends of it, or anything where it sends nothing.
Range tuning_range(std::size_t row, std::size_t word);

/// Reads a file: twelve rows of seven numbers as text, with comments behind #, or the 336 bytes as the
/// library takes them. Throws a Failure that names line and column.
TuningTable read_tuning_file(const std::string& path);

/// Whether the library has loaded one in this process, and which.
bool tuning_loaded();
TuningTable loaded_tuning();
void load_tuning(Session& session, const TuningTable& table);

/// The used rows, as a table for each family.
Json tuning_json(const TuningTable& table);

/// What moves have last written to an axis, in this process.
Json written_json(const HeadAxis& axis, int family);

/// What gains are for.
enum class Motion : std::uint8_t { continuous, absolute };

/// Throws a Failure when a move would set gains of zero.
void require_gains(const HeadAxis& axis, int family, Motion motion);

/// Whether moves leave the gains alone, in this process.
bool gains_frozen();
void freeze_gains(Session& session, bool frozen);

}  // namespace kelvo::ctl

#endif
