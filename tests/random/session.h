#pragma once
/// A session with the program, generated from a seed: its initial state, the user's steps, and what was
/// wrong.
#include "random/player.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace random_user {

struct Outcome {
    /// What was wrong; empty if nothing was.
    std::string fault;
    /// The steps in words, as far as they were done.
    std::vector<std::string> notes;
    std::size_t steps = 0;
};

/// Plays these steps in the world of a seed.
using Play = std::function<Outcome(std::uint32_t seed, const std::vector<Step>& steps)>;

/// The parameters of the whole run.
struct Order {
    /// Of the first session; each further one has the next.
    std::uint32_t seed;
    unsigned sessions;
};
/// From TAVRIN_USER_SEED and TAVRIN_USER_SESSIONS; without them, from the clock and `usual_sessions`.
Order order(unsigned usual_sessions);

/// `ports`: the machine's serial ports, where they cannot be made up.
World world_of(std::uint32_t seed, const std::optional<std::vector<std::string>>& ports);
std::vector<Step> steps_of(std::uint32_t seed, std::size_t count);

/// Removes steps that a failure does not need from its list, with at most this number of attempts.
std::vector<Step> shortened(std::vector<Step> steps,
                            const std::function<bool(const std::vector<Step>&)>& fails, unsigned attempts);

/// A report of a failing session, shortened, with all that is needed to repeat it.
std::string report(std::uint32_t seed, const Outcome& outcome, const World& world);

/// Plays this number of sessions and fails the running test at the first one that fails twice. Prints its
/// steps.
void play_sessions(const Order& ordered, std::size_t steps, const Play& play, unsigned attempts,
                   const std::optional<std::vector<std::string>>& ports);

} // namespace random_user
