#pragma once
/// The scripts of tests for the socket calls.
#include "substitute/control/sockets.h"

#include <optional>

namespace winsock {

/// The result that this call of `function` was scripted to return, if any. To be asked once a call.
std::optional<int> scripted_result(const char* function);
/// What is scripted under a name that is no function's.
inline constexpr const char* exception_in_select = "select: exception";
inline constexpr const char* socket_error = "SO_ERROR";
void note_select_wait(int seconds);
/// True when it is known that no peer will send any more, so that there is nothing to wait for.
bool peers_are_silent();
void note_opened(UINT_PTR handle);
void note_closed(UINT_PTR handle);
/// True when `sendto` is to keep this datagram, which then is kept.
bool keeps_datagram(const substitute::Datagram& datagram);
/// The addresses scripted for `name`; null when it is to be looked up.
const std::vector<DWORD>* scripted_host(const std::string& name);
/// The future for which the look-up of `name` waits; invalid if it does not wait.
std::shared_future<void> held_host(const std::string& name);
/// The scripted interface table; null when the machine's is asked for.
const std::vector<substitute::Interface>* scripted_interfaces();

} // namespace winsock
