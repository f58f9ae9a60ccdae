// Requests run in a worker process: a host of its own, started from the
// same executable, that answers one request at a time and streams each
// answer back in blocks. A provider that crashes or hangs costs the worker,
// never the caller: the caller learns which provider (and module) it was
// calling from a page the two share, and reports it.
#ifndef ZENTA_OPS_WORKER_H
#define ZENTA_OPS_WORKER_H

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "ActivityBoard.h"
#include "Answer.h"
#include "Channel.h"
#include "ClassFindings.h"
#include "CimStatus.h"
#include "HostSession.h"
#include "ProviderIndex.h"
#include "Request.h"

// What a worker starts its host with.
struct TWorkerSetup {
    TSessionOptions session;
    TProviderIndex providers;
    // Lines the host logs as warnings once it runs (registration mistakes
    // that the library passes over in silence).
    std::vector<std::string> warnings;
    // The classes the registrations name, checked against the host's own
    // classes once it runs; what is wrong is logged as warnings too.
    std::vector<TClassClaim> claims;
    std::string servedNamespace = "root/cimv2";

    std::string Serialize() const;
    static TWorkerSetup Deserialize(const std::string& text);
};

// The worker passes an answer on in blocks of this size; a smaller answer
// travels whole at its end, so that a failure before then reaches the
// caller as a clean error.
const std::size_t kWorkerBlockBytes = 64 * 1024;

// How a request (or a worker's start) ended.
struct TOutcome {
    enum EKind { kAnswered, kFailed, kCrashed, kTimedOut };

    EKind kind = kAnswered;
    ECimStatus status = ECimStatus::kOk;  // kFailed: the status to report
    std::string message;                  // kFailed: what and why
    int signal = 0;                       // kCrashed: the signal, or 0 when the worker exited
    int exitStatus = 0;                   // kCrashed without a signal
    TActivity activity;                   // kCrashed, kTimedOut: what the worker was calling

    bool Succeeded() const { return kind == kAnswered; }
    // One line for the user: the failure's message, or who crashed or hung
    // while answering `what` (a request as Describe() gives it).
    std::string Describe(const std::string& what, int timeoutSeconds) const;
    // The status a WBEM client gets.
    ECimStatus Status() const { return kind == kFailed ? status : ECimStatus::kFailed; }
};

class TWorker {
public:
    explicit TWorker(const TWorkerSetup& setup);
    // Stops the worker process (closing its channel ends it).
    ~TWorker();

    // Starts the process and waits until its host runs (`timeoutSeconds`
    // 0: no limit). Anything but kAnswered leaves no process behind.
    TOutcome Start(int timeoutSeconds);
    bool IsRunning() const { return fProcess > 0; }

    // Answers `request`, passing the answer's blocks to `sink` as they come.
    // A crash or timeout ends the worker; Start it again for the next one.
    TOutcome Run(const TRequest& request, IByteSink& sink, int timeoutSeconds);

    void Stop();
    unsigned GetRequestsServed() const { return fRequests; }
    // The worker's resident memory, from /proc; 0 when it does not run.
    long GetResidentKilobytes() const;

private:
    TOutcome Ended(TOutcome::EKind kind);
    void Reap(int& status);

    TWorkerSetup fSetup;
    std::unique_ptr<TActivityBoard> fBoard;
    std::unique_ptr<TChannel> fChannel;
    pid_t fProcess = -1;
    unsigned fRequests = 0;

    TWorker(const TWorker&) = delete;
    TWorker& operator=(const TWorker&) = delete;
};

// The worker's side. Programs that start workers call this first thing in
// main(): it runs the worker and returns its exit status when the process
// was started as one, and -1 otherwise.
int RunWorkerIfAsked(int argc, char** argv);

// The same for every process a program of the tools starts from its own
// executable: a worker or a module probe (ModuleProbe.h).
int RunChildProcessIfAsked(int argc, char** argv);

// "SIGSEGV" for SIGSEGV.
std::string SignalName(int signal);

#endif
