#include "protocol/stream.h"

#include "error/messages.h"
#include "net/memory.h"

namespace {

// A socket has nothing to flush, so this never fails; another kind of connection may.
const char* flush_socket(Socket&) { return nullptr; }

const char* tcp_flush(Stream* stream) {
    if (const char* problem = flush_socket(stream->socket))
        return format_error("socket_flush returned error: %s", problem);
    stream->pending = false;
    return nullptr;
}

const char* tcp_read(Stream* stream, void* buffer, std::size_t count) {
    if (count == 0)
        return nullptr;
    if (stream->pending)
        stream->socket_flush(stream);
    char* next = static_cast<char*>(buffer);
    while (count > 0) {
        std::size_t received = 0;
        if (const char* problem = socket_recv(stream->socket, next, count, &received))
            return format_error("Error receiving data: %s", problem);
        if (received == 0)
            return "Peer closed connection unexpectedly";
        next += received;
        count -= received;
    }
    stream->pending = false;
    return nullptr;
}

const char* tcp_write(Stream* stream, const void* bytes, std::size_t count) {
    if (const char* problem = socket_send(stream->socket, bytes, count))
        return format_error("socket_send returned error in socket_write_buf: %s", problem);
    stream->pending = true;
    return nullptr;
}

bool tcp_wait_readable(Stream* stream, int seconds) { return socket_wait_readable(stream->socket, seconds); }

void tcp_close(Stream* stream) {
    if (stream->pending)
        stream->socket_flush(stream);
    socket_close(stream->socket); // the exchange is over: a failing close changes nothing for the caller
    std::free(stream);
}

} // namespace

const char* stream_open(Stream** stream, std::uint32_t address, std::uint16_t port, unsigned flags) {
    *stream = nullptr;
    auto* opened = static_cast<Stream*>(net::resize_memory(nullptr, sizeof(Stream)));
    if (opened == nullptr)
        return "Error allocating memory";
    *opened = {tcp_read, tcp_write, tcp_flush, tcp_wait_readable, tcp_close, false, {}};
    if (const char* problem = socket_connect(address, port, &opened->socket, flags | connect_buffered)) {
        std::free(opened);
        return problem;
    }
    *stream = opened;
    return nullptr;
}
