#include "random/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace random_user {
namespace {

std::uint32_t number_from(const char* variable, std::uint32_t otherwise) {
    const char* const given = std::getenv(variable);
    return given == nullptr || *given == '\0' ? otherwise
                                              : static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10));
}

std::uint32_t seed_of_the_hour() {
    return static_cast<std::uint32_t>(std::chrono::system_clock::now().time_since_epoch() /
                                      std::chrono::milliseconds(1));
}

std::vector<Step> without(const std::vector<Step>& steps, std::size_t from, std::size_t count) {
    std::vector<Step> rest(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(from));
    const std::size_t behind = std::min(steps.size(), from + count);
    rest.insert(rest.end(), steps.begin() + static_cast<std::ptrdiff_t>(behind), steps.end());
    return rest;
}

} // namespace

Order order(unsigned usual_sessions) {
    return {number_from("TAVRIN_USER_SEED", seed_of_the_hour()),
            number_from("TAVRIN_USER_SESSIONS", usual_sessions)};
}

World world_of(std::uint32_t seed, const std::optional<std::vector<std::string>>& ports) {
    Chance chance(seed);
    const std::vector<std::string> chosen = make_ports(chance);
    return make_world(chance, ports.value_or(chosen));
}

/// Numbers of their own, so that the steps do not depend on how many a world took.
std::vector<Step> steps_of(std::uint32_t seed, std::size_t count) {
    Chance chance(seed ^ 0x5EED5EEDU);
    return make_steps(chance, count);
}

std::vector<Step> shortened(std::vector<Step> steps,
                            const std::function<bool(const std::vector<Step>&)>& fails, unsigned attempts) {
    for (std::size_t piece = std::max<std::size_t>(steps.size() / 2, 1);; piece = (piece + 1) / 2) {
        for (std::size_t from = 0; from < steps.size() && attempts > 0;) {
            --attempts;
            const std::vector<Step> fewer = without(steps, from, piece);
            if (fails(fewer)) {
                steps = fewer;
            } else {
                from += piece;
            }
        }
        if (piece == 1 || attempts == 0)
            return steps;
    }
}

std::string report(std::uint32_t seed, const Outcome& outcome, const World& world) {
    std::string text = outcome.fault + "\nTo repeat: TAVRIN_USER_SEED=" + std::to_string(seed) +
                       " TAVRIN_USER_SESSIONS=1\nThe user:\n";
    for (const std::string& note : outcome.notes)
        text += "  " + note + "\n";
    for (const SpecFile& file : world.files)
        text += "Spec file \"" + file.value_name + "\":\n" + text_of(file) + "\n";
    return text;
}

/// A session that stood still for so long would do so again for every step left out, until the suite is
/// ended.
constexpr std::chrono::seconds longest_to_shorten(60);

/// The number of sessions that may fail once and succeed when they are repeated. Under Wine, a late move of
/// the display's pointer can interrupt a click; natively, every failure repeats.
static unsigned most_passing(const Order& ordered) { return ordered.sessions / 6; }

void play_sessions(const Order& ordered, std::size_t steps, const Play& play, unsigned attempts,
                   const std::optional<std::vector<std::string>>& ports) {
    std::printf("random user: seed %u, %u sessions\n", ordered.seed, ordered.sessions);
    std::fflush(stdout);
    std::size_t done = 0;
    unsigned passing = 0;
    const auto start = std::chrono::steady_clock::now();
    for (unsigned number = 0; number < ordered.sessions; ++number) {
        const std::uint32_t seed = ordered.seed + number;
        const std::vector<Step> all = steps_of(seed, steps);
        const auto begin = std::chrono::steady_clock::now();
        const Outcome outcome = play(seed, all);
        done += outcome.steps;
        if (outcome.fault.empty())
            continue;
        if (std::chrono::steady_clock::now() - begin > longest_to_shorten)
            FAIL() << report(seed, outcome, world_of(seed, ports));
        if (play(seed, all).fault.empty() && ++passing <= most_passing(ordered)) {
            std::printf("random user: seed %u: not again: %s\n", seed, outcome.fault.c_str());
            continue;
        }
        const auto fails = [&](const std::vector<Step>& fewer) { return !play(seed, fewer).fault.empty(); };
        const Outcome shortest = play(seed, shortened(all, fails, attempts));
        FAIL() << report(seed, shortest.fault.empty() ? outcome : shortest, world_of(seed, ports));
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::printf("random user: %zu steps in %.1f s, %.0f a second\n", done, took.count(),
                static_cast<double>(done) / took.count());
}

} // namespace random_user
