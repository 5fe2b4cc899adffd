// A user who acts at random, with the finished program.
#include "e2e/fixture.h"
#include "random/windows/remote_session.h"

namespace random_user {
namespace {

constexpr std::size_t steps_a_session = 60;
constexpr unsigned session_count = 40;
constexpr unsigned shrinking_attempts = 40;

class RandomUser : public e2e::Sample {};

TEST_F(RandomUser, FindsWhatTheyLeftAndGetsWhatTheySaw) {
    play_sessions(order(session_count), steps_a_session, RemoteSession::play, shrinking_attempts,
                  RemoteSession::ports());
}

} // namespace
} // namespace random_user
