#include "Channel.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

const std::size_t kHeaderSize = 5;

bool WriteAll(int descriptor, const char* data, std::size_t size) {
    while (size > 0) {
        // MSG_NOSIGNAL: a parent that went away is an answer, not a signal.
        const ssize_t written = send(descriptor, data, size, MSG_NOSIGNAL);
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

int MillisecondsUntil(TChannel::TDeadline deadline) {
    if (deadline == TChannel::TDeadline::max()) return -1;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return left.count() < 0 ? 0 : static_cast<int>(left.count() > 1000000 ? 1000000 : left.count());
}

}  // namespace

TChannel::~TChannel() {
    if (fDescriptor >= 0) close(fDescriptor);
}

bool TChannel::Send(EFrame kind, const char* data, std::size_t size) {
    char header[kHeaderSize];
    const std::uint32_t length = static_cast<std::uint32_t>(size);
    std::memcpy(header, &length, sizeof(length));
    header[4] = static_cast<char>(kind);
    return WriteAll(fDescriptor, header, sizeof(header)) && WriteAll(fDescriptor, data, size);
}

// Frames are read straight into where they go: a header, then the payload
// into the caller's string, so an answer of many megabytes is not copied
// through a buffer of our own on its way to the client.
bool TChannel::ReadExactly(char* into, std::size_t size, TDeadline deadline, bool& timedOut) {
    while (size > 0) {
        pollfd entry = {fDescriptor, POLLIN, 0};
        const int ready = poll(&entry, 1, MillisecondsUntil(deadline));
        if (ready < 0 && errno == EINTR) continue;
        if (ready == 0) {
            timedOut = true;
            return false;
        }
        const ssize_t count = read(fDescriptor, into, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        into += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

TChannel::EReceived TChannel::Receive(EFrame& kind, std::string& payload, TDeadline deadline) {
    bool timedOut = false;
    char header[kHeaderSize];
    if (!ReadExactly(header, sizeof(header), deadline, timedOut)) return timedOut ? kTimedOut : kClosed;
    std::uint32_t length = 0;
    std::memcpy(&length, header, sizeof(length));
    if (length > kMaximumFrame) return kClosed;
    kind = static_cast<EFrame>(header[4]);
    payload.resize(length);
    if (!ReadExactly(&payload[0], length, deadline, timedOut)) return timedOut ? kTimedOut : kClosed;
    return kFrame;
}
