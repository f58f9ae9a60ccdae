// Frames between a worker process and its parent over a stream socket:
// a 4-byte length, a 1-byte kind, then the payload.
#ifndef ZENTA_OPS_CHANNEL_H
#define ZENTA_OPS_CHANNEL_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

enum class EFrame : std::uint8_t {
    kSetup = 1,    // parent -> worker: what to start the host with
    kReady = 2,    // worker -> parent: the host runs
    kRequest = 3,  // parent -> worker: one request
    kData = 4,     // worker -> parent: a block of the answer
    kDone = 5,     // worker -> parent: the answer is complete
    kFailed = 6    // worker -> parent: the request (or the start) failed; the payload says why
};

class TChannel {
public:
    typedef std::chrono::steady_clock::time_point TDeadline;
    enum EReceived { kFrame, kClosed, kTimedOut };

    // Takes over the descriptor (closes it on destruction).
    explicit TChannel(int descriptor) : fDescriptor(descriptor) {}
    ~TChannel();

    // False when the other side is gone.
    bool Send(EFrame kind, const char* data, std::size_t size);
    bool Send(EFrame kind, const std::string& payload) { return Send(kind, payload.data(), payload.size()); }

    // Waits for the next frame until `deadline` (TDeadline::max(): no limit).
    // After a time-out the channel is in the middle of a frame: drop it.
    EReceived Receive(EFrame& kind, std::string& payload, TDeadline deadline = TDeadline::max());

    // Frames larger than this are refused as garbage.
    static const std::size_t kMaximumFrame = 64 * 1024 * 1024;

private:
    bool ReadExactly(char* into, std::size_t size, TDeadline deadline, bool& timedOut);

    int fDescriptor;

    TChannel(const TChannel&) = delete;
    TChannel& operator=(const TChannel&) = delete;
};

#endif
