#include "protocol/stream.h"

#include "base/messages.h"
#include "net/memory.h"

#include <algorithm>
#include <new>

namespace {

struct TcpStream : Stream {
    std::uint8_t received[2048]; // longer than any answer without unknown fields
};

/// A socket has nothing to flush, so this never fails, and the text that its callers have for a failure is
/// never shown. Another kind of connection may fail here.
const char* flush_socket(Socket&) { return nullptr; }

const char* tcp_flush(Stream* stream) {
    if (const char* problem = flush_socket(stream->socket))
        return format_error("socket_flush returned error: %s", problem);
    stream->pending = false;
    return nullptr;
}

/// Waits for one octet and takes all that have arrived, so that it never waits for more than the reader
/// needs.
const char* receive(TcpStream* stream) {
    std::size_t count = 0;
    if (const char* problem = socket_recv(stream->socket, stream->received, sizeof stream->received, &count))
        return format_error("Error receiving data: %s", problem);
    if (count == 0)
        return "Peer closed connection unexpectedly";
    stream->next = stream->received;
    stream->end = stream->received + count;
    return nullptr;
}

std::size_t take(Stream* stream, std::uint8_t* octets, std::size_t wanted) {
    const std::size_t count = std::min(wanted, static_cast<std::size_t>(stream->end - stream->next));
    std::copy_n(stream->next, count, octets);
    stream->next += count;
    return count;
}

const char* tcp_read(Stream* stream, void* buffer, std::size_t count) {
    if (count == 0)
        return nullptr;
    if (stream->pending)
        stream->socket_flush(stream);
    auto* octets = static_cast<std::uint8_t*>(buffer);
    std::size_t taken = take(stream, octets, count);
    while (taken < count) {
        if (const char* problem = receive(static_cast<TcpStream*>(stream)))
            return problem;
        taken += take(stream, octets + taken, count - taken);
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

bool tcp_wait_readable(Stream* stream, int seconds) {
    return stream->next != stream->end || socket_wait_readable(stream->socket, seconds);
}

void tcp_close(Stream* stream) {
    if (stream->pending)
        stream->socket_flush(stream);
    socket_close(stream->socket); // the exchange is over, so a failing close does not matter to the caller
    std::free(static_cast<TcpStream*>(stream));
}

} // namespace

const char* stream_open(Stream** stream, std::uint32_t address, std::uint16_t port, unsigned flags) {
    *stream = nullptr;
    void* memory = net::resize_memory(nullptr, sizeof(TcpStream));
    if (memory == nullptr)
        return "Error allocating memory";
    Stream* opened = new (memory) TcpStream;
    *opened = {.read = tcp_read,
               .socket_write_buf = tcp_write,
               .socket_flush = tcp_flush,
               .wait_readable = tcp_wait_readable,
               .close = tcp_close};
    if (const char* problem = socket_connect(address, port, &opened->socket, flags | net::connect_buffered)) {
        std::free(memory);
        return problem;
    }
    *stream = opened;
    return nullptr;
}
