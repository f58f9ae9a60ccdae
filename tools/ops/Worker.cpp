#include "Worker.h"

#include <fcntl.h>
#include <signal.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <thread>

#include <nlohmann/json.hpp>

#include "AnswerFormats.h"
#include "ICoreLogger.h"
#include "ModuleProbe.h"
#include "Operations.h"
#include "SelfExecutable.h"
#include "TAssertionFailure.h"
#include "TRootObject.h"
#include "TZENTAException.h"
#include "ToolError.h"

using namespace NVURZENTA20;
using nlohmann::json;

namespace {

const char kWorkerFlag[] = "--zenta-worker";
// How long a worker whose channel closed may take to end (sanitizers check
// for leaks at exit) before it is killed.
const int kGraceSeconds = 30;

TChannel::TDeadline DeadlineAfter(int seconds) {
    if (seconds <= 0) return TChannel::TDeadline::max();
    return std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
}

std::string FailurePayload(ECimStatus status, const std::string& message) {
    return json{{"status", static_cast<int>(status)}, {"message", message}}.dump(-1, ' ', false,
                                                                                json::error_handler_t::replace);
}

// The outcome a failure frame tells; `payload` itself when it is no
// FailurePayload.
TOutcome OutcomeOfFailure(const std::string& payload, const char* unsaid) {
    const json object = json::parse(payload, nullptr, false);
    TOutcome outcome;
    outcome.kind = TOutcome::kFailed;
    outcome.status = static_cast<ECimStatus>(object.is_object() ? object.value("status", 1) : 1);
    outcome.message = object.is_object() ? object.value("message", unsaid) : payload;
    return outcome;
}

// The host's own failure codes, as a WBEM client understands them.
ECimStatus StatusOfHostFailure(int code) {
    switch (code) {
        case TZENTAStatusCode::kUnsupportedOperation: return ECimStatus::kNotSupported;
        case TZENTAStatusCode::kAccessDenied: return ECimStatus::kAccessDenied;
        case TZENTAStatusCode::kInvalidClass: return ECimStatus::kInvalidClass;
        case TZENTAStatusCode::kInvalidNamespace: return ECimStatus::kInvalidNamespace;
        case TZENTAStatusCode::kInvalidProperty: return ECimStatus::kNoSuchProperty;
        case TZENTAStatusCode::kInvalidParameter:
        case TZENTAStatusCode::kInvalidArgument:
        case TZENTAStatusCode::kInvalidPath: return ECimStatus::kInvalidParameter;
        case TZENTAStatusCode::kTypeMismatch: return ECimStatus::kTypeMismatch;
        case TZENTAStatusCode::kNotFound:
        case TZENTAStatusCode::kInstanceNotFound: return ECimStatus::kNotFound;
        case TZENTAStatusCode::kMethodNotFound: return ECimStatus::kMethodNotFound;
        default: return ECimStatus::kFailed;
    }
}

class TChannelSink : public IByteSink {
public:
    explicit TChannelSink(TChannel& channel) : fChannel(channel) {}
    void Write(const char* data, std::size_t size) override {
        if (!fChannel.Send(EFrame::kData, data, size)) throw TToolError("the caller went away");
    }

private:
    TChannel& fChannel;
};

// Runs one request; the answer goes out in blocks, then kDone, or kFailed
// with what went wrong (a failed request's unsent text is dropped).
void Answer(TOperations& operations, const TRequest& request, TChannel& channel, const std::string& servedNamespace) {
    TChannelSink sink(channel);
    TOutputBuffer buffer(sink, kWorkerBlockBytes);
    ECimStatus status = ECimStatus::kFailed;
    std::string message;
    try {
        std::unique_ptr<IAnswerWriter> writer = MakeAnswerWriter(request, buffer, servedNamespace);
        operations.Run(request, *writer);
        buffer.Flush();
        channel.Send(EFrame::kDone, "");
        return;
    } catch (const TToolError& failure) {
        status = failure.GetStatus();
        message = failure.what();
    } catch (const TZENTAException& failure) {
        status = StatusOfHostFailure(failure.GetStatusCode());
        message = failure.GetStatusCode().TranslateStatusCode() + ": " + failure.GetMessage();
    } catch (const TAssertionFailure& failure) {
        message = std::string("internal failure: ") + failure.what();
    } catch (const std::exception& failure) {
        message = failure.what();
    }
    buffer.Drop();
    channel.Send(EFrame::kFailed, FailurePayload(status, message));
}

// What discovery passed over in silence, one warning line each.
void LogWarnings(const TWorkerSetup& setup, THostSession& session) {
    const boost::shared_ptr<ICoreLogger> logger = TRootObject::GetCoreLogger();
    for (const std::string& warning : setup.warnings) logger->Log(ICoreLogger::kWarning, warning);
    for (const TFinding& finding : CheckClaims(setup.claims, *session.GetManager(), setup.providers)) {
        if (finding.silent) logger->Log(ICoreLogger::kWarning, finding.FormatIn(setup.session.providerDirectory));
    }
}

int WorkerMain(int channelDescriptor, int boardDescriptor) {
    // Writing to a caller that went away is an error to report, not a signal.
    std::signal(SIGPIPE, SIG_IGN);
    TChannel channel(channelDescriptor);
    EFrame kind = EFrame::kSetup;
    std::string payload;
    if (channel.Receive(kind, payload) != TChannel::kFrame || kind != EFrame::kSetup) return 1;
    const TWorkerSetup setup = TWorkerSetup::Deserialize(payload);
    TActivityBoard board(boardDescriptor);

    std::unique_ptr<THostSession> session;
    try {
        session.reset(new THostSession(setup.session));
    } catch (const TZENTAException& failure) {
        channel.Send(EFrame::kFailed, FailurePayload(ECimStatus::kFailed, failure.GetStatusCode().TranslateStatusCode() +
                                                                              ": " + failure.GetMessage()));
        return 0;
    } catch (const std::exception& failure) {
        channel.Send(EFrame::kFailed, FailurePayload(ECimStatus::kFailed, failure.what()));
        return 0;
    }
    LogWarnings(setup, *session);
    session->GetLog().Collect();
    if (!channel.Send(EFrame::kReady, "")) return 0;

    TOperations operations(*session, setup.providers, &board, setup.servedNamespace);
    while (channel.Receive(kind, payload) == TChannel::kFrame && kind == EFrame::kRequest) {
        TRequest request;
        try {
            request = TRequest::Deserialize(payload);
        } catch (const std::exception& failure) {
            channel.Send(EFrame::kFailed, FailurePayload(ECimStatus::kFailed, failure.what()));
            continue;
        }
        Answer(operations, request, channel, setup.servedNamespace);
        session->EndRequest();
        session->GetLog().Collect();
    }
    return 0;
}

}  // namespace

std::string TWorkerSetup::Serialize() const {
    const json object = {{"stagingDirectory", session.stagingDirectory},
                         {"providerDirectory", session.providerDirectory},
                         {"logLevel", session.logLevel},
                         {"logFile", session.logFile},
                         {"schemaDirectories", session.schemaDirectories},
                         {"providers", providers.Serialize()},
                         {"warnings", warnings},
                         {"claims", ClaimsToJson(claims)},
                         {"servedNamespace", servedNamespace}};
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

TWorkerSetup TWorkerSetup::Deserialize(const std::string& text) {
    const json object = json::parse(text);
    TWorkerSetup setup;
    setup.session.stagingDirectory = object.at("stagingDirectory").get<std::string>();
    setup.session.providerDirectory = object.at("providerDirectory").get<std::string>();
    setup.session.logLevel = object.at("logLevel").get<int>();
    setup.session.logFile = object.at("logFile").get<std::string>();
    setup.session.schemaDirectories = object.at("schemaDirectories").get<std::vector<std::string> >();
    setup.providers = TProviderIndex::Deserialize(object.at("providers").get<std::string>());
    setup.warnings = object.at("warnings").get<std::vector<std::string> >();
    setup.claims = ClaimsFromJson(object.at("claims").get<std::string>());
    setup.servedNamespace = object.at("servedNamespace").get<std::string>();
    return setup;
}

std::string SignalName(int signal) {
    const char* abbreviation = sigabbrev_np(signal);
    return abbreviation != nullptr ? std::string("SIG") + abbreviation : "signal " + std::to_string(signal);
}

std::string TOutcome::Describe(const std::string& what, int timeoutSeconds) const {
    if (kind == kFailed) return message;
    std::string who = "the host";
    if (!activity.provider.empty()) {
        who = "provider " + activity.provider + (activity.module.empty() ? "" : " (module " + activity.module + ")");
    }
    const std::string answering = " while answering \"" + what + "\"";
    switch (kind) {
        case kCrashed:
            if (signal != 0) return who + " crashed with " + SignalName(signal) + answering;
            return who + " ended the worker process with exit status " + std::to_string(exitStatus) + answering;
        case kTimedOut:
            return who + " did not answer \"" + what + "\" within " + std::to_string(timeoutSeconds) + " seconds";
        default: return std::string();
    }
}

TWorker::TWorker(const TWorkerSetup& setup) : fSetup(setup) {}

TWorker::~TWorker() { Stop(); }

TOutcome TWorker::Start(int timeoutSeconds) {
    Stop();
    fBoard.reset(new TActivityBoard());
    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0) {
        throw TToolError(std::string("cannot make the worker's channel: ") + std::strerror(errno));
    }
    std::string self = SelfExecutable();
    std::string channelArgument = std::to_string(sockets[1]);
    std::string boardArgument = std::to_string(fBoard->GetDescriptor());
    char* arguments[] = {&self[0], const_cast<char*>(kWorkerFlag), &channelArgument[0], &boardArgument[0], nullptr};
    const int boardDescriptor = fBoard->GetDescriptor();
    const int channelDescriptor = sockets[1];
    const pid_t child = StartSelf(arguments, [channelDescriptor, boardDescriptor] {
        fcntl(channelDescriptor, F_SETFD, 0);
        fcntl(boardDescriptor, F_SETFD, 0);
    });
    if (child < 0) {
        const std::string reason = std::strerror(errno);
        close(sockets[0]);
        close(sockets[1]);
        throw TToolError("cannot start a worker process: " + reason);
    }
    close(sockets[1]);
    fProcess = child;
    fChannel.reset(new TChannel(sockets[0]));
    fRequests = 0;
    fChannel->Send(EFrame::kSetup, fSetup.Serialize());

    EFrame kind = EFrame::kReady;
    std::string payload;
    switch (fChannel->Receive(kind, payload, DeadlineAfter(timeoutSeconds))) {
        case TChannel::kTimedOut: return Ended(TOutcome::kTimedOut);
        case TChannel::kClosed: return Ended(TOutcome::kCrashed);
        case TChannel::kFrame: break;
    }
    if (kind == EFrame::kReady) return TOutcome();
    const TOutcome failed = OutcomeOfFailure(payload, "the worker failed to start");
    Stop();
    return failed;
}

TOutcome TWorker::Run(const TRequest& request, IByteSink& sink, int timeoutSeconds) {
    TOutcome outcome;
    if (!IsRunning()) {
        outcome = Start(timeoutSeconds);
        if (!outcome.Succeeded()) return outcome;
    }
    ++fRequests;
    if (!fChannel->Send(EFrame::kRequest, request.Serialize())) return Ended(TOutcome::kCrashed);
    const TChannel::TDeadline deadline = DeadlineAfter(timeoutSeconds);
    EFrame kind = EFrame::kData;
    std::string payload;
    for (;;) {
        switch (fChannel->Receive(kind, payload, deadline)) {
            case TChannel::kTimedOut: return Ended(TOutcome::kTimedOut);
            case TChannel::kClosed: return Ended(TOutcome::kCrashed);
            case TChannel::kFrame: break;
        }
        switch (kind) {
            case EFrame::kData:
                sink.Write(payload.data(), payload.size());
                break;
            case EFrame::kDone: return outcome;
            case EFrame::kFailed: return OutcomeOfFailure(payload, "");
            default: return Ended(TOutcome::kCrashed);
        }
    }
}

TOutcome TWorker::Ended(TOutcome::EKind kind) {
    TOutcome outcome;
    outcome.kind = kind;
    outcome.activity = fBoard ? fBoard->Read() : TActivity();
    if (kind == TOutcome::kTimedOut && fProcess > 0) kill(fProcess, SIGKILL);
    fChannel.reset();
    int status = 0;
    Reap(status);
    if (kind == TOutcome::kCrashed) {
        if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
        if (WIFEXITED(status)) outcome.exitStatus = WEXITSTATUS(status);
    }
    return outcome;
}

void TWorker::Reap(int& status) {
    if (fProcess <= 0) return;
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(kGraceSeconds);
    pid_t ended;
    while ((ended = waitpid(fProcess, &status, WNOHANG)) == 0 && std::chrono::steady_clock::now() < giveUp) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    if (ended == 0) {
        kill(fProcess, SIGKILL);
        while (waitpid(fProcess, &status, 0) < 0 && errno == EINTR) {
        }
    }
    fProcess = -1;
}

void TWorker::Stop() {
    fChannel.reset();
    int status = 0;
    Reap(status);
}

long TWorker::GetResidentKilobytes() const {
    if (fProcess <= 0) return 0;
    std::ifstream statm("/proc/" + std::to_string(fProcess) + "/statm");
    long pages = 0;
    long resident = 0;
    if (!(statm >> pages >> resident)) return 0;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

int RunChildProcessIfAsked(int argc, char** argv) {
    const int worker = RunWorkerIfAsked(argc, argv);
    return worker >= 0 ? worker : RunProbeIfAsked(argc, argv);
}

int RunWorkerIfAsked(int argc, char** argv) {
    SelfExecutable();  // fixed now, before anything could change the directory
    if (argc != 4 || std::strcmp(argv[1], kWorkerFlag) != 0) return -1;
    return WorkerMain(std::atoi(argv[2]), std::atoi(argv[3]));
}
