// What a worker process is busy with — the provider it is calling and the
// module that holds it — written where its parent can still read it after
// the worker died in a provider's code or was stopped for taking too long:
// a page of memory the two processes share.
#ifndef ZENTA_OPS_ACTIVITYBOARD_H
#define ZENTA_OPS_ACTIVITYBOARD_H

#include <string>

struct TActivity {
    std::string provider;  // empty: the host itself (loading modules, formatting)
    std::string module;
};

class TActivityBoard {
public:
    // A new board, empty. Throws std::runtime_error when the page cannot be had.
    TActivityBoard();
    // The board behind `descriptor` (inherited from the parent).
    explicit TActivityBoard(int descriptor);
    ~TActivityBoard();

    // The descriptor a child process attaches by; stays open in this process.
    int GetDescriptor() const { return fDescriptor; }

    void Enter(const std::string& provider, const std::string& module);
    void Leave();
    TActivity Read() const;

private:
    struct TPage;

    void Map();

    int fDescriptor;
    TPage* fPage;

    TActivityBoard(const TActivityBoard&) = delete;
    TActivityBoard& operator=(const TActivityBoard&) = delete;
};

// Marks the board for the life of a scope: a provider call.
class TActivityScope {
public:
    TActivityScope(TActivityBoard* board, const std::string& provider, const std::string& module) : fBoard(board) {
        if (fBoard != nullptr) fBoard->Enter(provider, module);
    }
    ~TActivityScope() {
        if (fBoard != nullptr) fBoard->Leave();
    }
    TActivityScope(const TActivityScope&) = delete;
    TActivityScope& operator=(const TActivityScope&) = delete;

private:
    TActivityBoard* fBoard;
};

#endif
