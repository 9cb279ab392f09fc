#ifndef KELVO_SIM_STATE_FUTEX_H
#define KELVO_SIM_STATE_FUTEX_H

#include <atomic>
#include <chrono>
#include <cstdint>

namespace kelvo::sim::state {

/// Waits while the word has this value, for so long at most. False: the time is over.
bool wait_while(std::atomic<std::uint32_t>& word, std::uint32_t value,
                std::chrono::milliseconds most);
void wake_one(std::atomic<std::uint32_t>& word);
void wake_all(std::atomic<std::uint32_t>& word);

}  // namespace kelvo::sim::state

#endif
