#pragma once
/// Watches and scripts the socket calls. Like planned failures, a script affects only calls of the thread
/// that called reset().
#include "substitute/types.h"

#include <cstddef>
#include <functional>
#include <future>
#include <string>
#include <vector>

namespace substitute {

/// Makes the `nth` call of `select`, `send` or `recv` from now on (1 is the next) do nothing but return
/// `result`; the sets of such a `select` come back empty.
void answer_call(const std::string& function, int nth, int result);
/// The `nth` `select` from now on reports at once that its time is over.
void time_out_select(int nth = 1);
/// The `nth` `select` from now on reports its sockets as exceptions, as for a connect that failed.
void except_select(int nth = 1);
/// The next SO_ERROR that is asked for is `code`.
void set_socket_error(int code);
/// Before a `select` with a time limit waits it asks `silent`: true says that no peer will send any more. It
/// then looks once, and where nothing is ready its time passes on the clock alone.
void skip_waits_when(std::function<bool()> silent);
/// The whole seconds that each `select` was allowed to wait, in order; -1 for without limit.
std::vector<int> select_waits();

/// How many sockets the watched thread opened and has not closed.
std::size_t open_sockets();

/// Sets the result of the name look-up of `name`: these addresses (network byte order), possibly none. Other
/// names are looked up for real.
void set_host(const std::string& name, std::vector<DWORD> addresses);
/// The name look-up of `name` takes until the future is ready, and then fails.
void hold_host(const std::string& name, std::shared_future<void> until);

/// One row of the interface table, both words in network byte order.
struct Interface {
    DWORD address;
    DWORD mask;
};
/// Replaces the interface table. Until this or the next function is called it holds 127.0.0.1/8 alone, so
/// that no test broadcasts into a real network by accident.
void set_interfaces(std::vector<Interface> table);
/// The interface table becomes that of the machine.
void use_machine_interfaces();

/// A datagram that was kept; the address is in network byte order, the port in host order.
struct Datagram {
    DWORD address;
    WORD port;
    std::string octets;
};
/// From now on `sendto` keeps datagrams instead of sending them.
void keep_datagrams();
/// The datagrams kept since reset(), in order.
std::vector<Datagram> kept_datagrams();

} // namespace substitute
