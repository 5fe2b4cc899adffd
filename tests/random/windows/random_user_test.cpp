// A user who does whatever comes to mind, with the finished program.
#include "e2e/fixture.h"
#include "random/windows/remote_session.h"

namespace random_user {
namespace {

constexpr std::size_t kSteps = 60;
constexpr unsigned kSessions = 40;
constexpr unsigned kAttempts = 40;

class RandomUser : public e2e::Sample {};

TEST_F(RandomUser, FindsWhatTheyLeftAndGetsWhatTheySaw) {
    play_sessions(order(kSessions), kSteps, RemoteSession::play, kAttempts, RemoteSession::ports());
}

} // namespace
} // namespace random_user
