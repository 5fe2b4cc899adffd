#include "protocol/composition.h"

namespace {

const char* refuse(Stream*, const void*, std::size_t) { return "Message is longer than any message"; }

} // namespace

Composition::Composition() : stream_{nullptr, refuse, nullptr, nullptr, nullptr, false, {}} {
    stream_.room = octets_;
    stream_.room_end = octets_ + sizeof octets_;
}

const char* Composition::send_over(Stream* connection) const {
    return connection->socket_write_buf(connection, octets_,
                                        static_cast<std::size_t>(stream_.room - octets_));
}
