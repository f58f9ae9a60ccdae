#include "Server.h"

#include <poll.h>
#include <strings.h>
#include <sys/uio.h>

#include <cerrno>
#include <climits>
#include <cstring>

#include <atomic>
#include <chrono>
#include <future>
#include <map>
#include <mutex>
#include <stdexcept>
#include <thread>

#include <boost/asio.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/optional.hpp>
#ifdef ZENTAD_TLS
#include <boost/asio/ssl.hpp>
#include <boost/beast/ssl.hpp>
#endif

#include "Responses.h"
#include "Worker.h"

namespace net = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using tcp = net::ip::tcp;

namespace {

const int kError = 0;
const int kWarning = 1;
const int kInfo = 2;
const int kDebug = 4;

const char kXmlType[] = "application/xml; charset=\"utf-8\"";

bool SameText(const std::string& a, const char* b) { return strcasecmp(a.c_str(), b) == 0; }

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// The DSP0200 header prefix an M-POST request declares in its Man header
// ("...; ns=73" makes "73-CIMOperation"), or "".
std::string ExtensionPrefix(const http::request<http::string_body>& request) {
    if (request.method_string() != "M-POST") return std::string();
    const std::string man(request["Man"]);
    const std::size_t ns = Lower(man).find("ns=");
    if (ns == std::string::npos) return std::string();
    std::size_t end = ns + 3;
    while (end < man.size() && std::isdigit(static_cast<unsigned char>(man[end]))) ++end;
    return man.substr(ns + 3, end - ns - 3) + "-";
}

// What the log and error messages call a call: "EnumerateInstances ZENTA_Process".
std::string CallText(const TCimCall& call) {
    std::string text = call.methodName;
    for (const std::string* part : {&call.request.path, &call.request.className, &call.request.qualifierName}) {
        if (!part->empty()) text += " " + *part;
    }
    return text;
}

}  // namespace

// What every connection shares.
struct TShared {
    TShared(const TServerOptions& serverOptions, TWorkerPool& workerPool, const TServerLog& serverLog)
        : options(serverOptions), pool(workerPool), log(serverLog), authenticator(serverOptions.users) {}

    const TServerOptions& options;
    TWorkerPool& pool;
    TServerLog log;
    TAuthenticator authenticator;
    std::atomic<unsigned> connections{0};
    std::atomic<bool> stopping{false};
    std::mutex mutex;
    std::map<void*, std::function<void()> > closers;  // sessions' shutdown hooks

    void Register(void* session, std::function<void()> closer) {
        std::lock_guard<std::mutex> lock(mutex);
        closers[session] = std::move(closer);
    }
    void Unregister(void* session) {
        std::lock_guard<std::mutex> lock(mutex);
        closers.erase(session);
    }
};

namespace {

// The transport of a connection: plain TCP or TLS over TCP.
template <class TStream>
struct TTransport;

template <>
struct TTransport<beast::tcp_stream> {
    static beast::tcp_stream& Lowest(beast::tcp_stream& stream) { return stream; }
    static const bool kSecure = false;
};

#ifdef ZENTAD_TLS
template <>
struct TTransport<beast::ssl_stream<beast::tcp_stream> > {
    static beast::tcp_stream& Lowest(beast::ssl_stream<beast::tcp_stream>& stream) { return stream.next_layer(); }
    static const bool kSecure = true;
};
#endif

template <class TStream>
class TSession : public std::enable_shared_from_this<TSession<TStream> > {
public:
    TSession(TStream stream, TShared& shared, const std::string& peer)
        : fStream(std::move(stream)), fShared(shared), fPeer(peer) {
        ++fShared.connections;
    }
    ~TSession() {
        fShared.Unregister(this);
        --fShared.connections;
    }

    void Start() {
        std::weak_ptr<TSession> weak = this->shared_from_this();
        fShared.Register(this, [weak] {
            if (auto self = weak.lock()) net::post(self->Lowest().get_executor(), [self] { self->CloseIfIdle(); });
        });
        Handshake();
    }

private:
    class TAnswerSink;

    beast::tcp_stream& Lowest() { return TTransport<TStream>::Lowest(fStream); }
    std::chrono::seconds Seconds(int count) const { return std::chrono::seconds(count); }
    void Log(int level, const std::string& line) const { fShared.log(level, fPeer + ": " + line); }

    void Handshake();
    void Read();
    void OnRead(beast::error_code error);
    void Handle(http::request<http::string_body>& request);
    bool Authorized(const http::request<http::string_body>& request);
    void Dispatch();
    void Answer(TWorker& worker);
    // Sends `text` from an I/O thread, then reads the next request or,
    // with `close`, ends the connection.
    void Send(std::string text, bool close);
    void Reply(int status, const std::string& description, THeaderFields fields, bool close = false);
    void Close();
    void CloseIfIdle() {
        if (fReading) Lowest().cancel();
    }
    // Writes from a pool thread and waits; false when the client is gone.
    bool WriteAndWait(const std::vector<net::const_buffer>& buffers);
    bool WriteDirectly(const std::vector<net::const_buffer>& buffers);
    // The head of a CIM-XML answer of `length` bytes, and of a streamed one.
    std::string ResponseHead(std::size_t length) const;
    std::string StreamHead() const;
    std::string DocumentResponse(const std::string& document) const { return ResponseHead(document.size()) + document; }

    TStream fStream;
    TShared& fShared;
    std::string fPeer;
    beast::flat_buffer fBuffer;
    boost::optional<http::request_parser<http::string_body> > fParser;
    bool fReading = false;
    bool fKeepAlive = true;
    bool fChunked = true;    // HTTP/1.1: chunks may carry an answer
    bool fTrailers = false;  // the client reads trailers (TE: trailers)
    TCimCall fCall;
};

template <class TStream>
void TSession<TStream>::Handshake() {
#ifdef ZENTAD_TLS
    if constexpr (TTransport<TStream>::kSecure) {
        Lowest().expires_after(Seconds(fShared.options.readTimeoutSeconds));
        auto self = this->shared_from_this();
        fStream.async_handshake(net::ssl::stream_base::server, [self](beast::error_code error) {
            if (error) return self->Log(kDebug, "TLS handshake failed: " + error.message());
            self->Read();
        });
        return;
    }
#endif
    Read();
}

template <class TStream>
void TSession<TStream>::Read() {
    if (fShared.stopping) return Close();
    fParser.emplace();
    fParser->header_limit(static_cast<std::uint32_t>(fShared.options.maxHeaderBytes));
    fParser->body_limit(fShared.options.maxBodyBytes);
    Lowest().expires_after(Seconds(fShared.options.readTimeoutSeconds));
    fReading = true;
    auto self = this->shared_from_this();
    http::async_read(fStream, fBuffer, *fParser, [self](beast::error_code error, std::size_t) {
        self->fReading = false;
        self->OnRead(error);
    });
}

template <class TStream>
void TSession<TStream>::OnRead(beast::error_code error) {
    if (error == http::error::end_of_stream || error == net::error::eof || error == net::error::operation_aborted) {
        return Close();
    }
    if (error == beast::error::timeout) {
        if (fParser->got_some()) Reply(408, "the request did not arrive in time", {}, true);
        return;
    }
    if (error == http::error::body_limit) {
        return Reply(413, "the request is larger than " + std::to_string(fShared.options.maxBodyBytes) + " bytes", {},
                     true);
    }
    if (error == http::error::header_limit) {
        return Reply(431, "the request's header is larger than " + std::to_string(fShared.options.maxHeaderBytes) +
                              " bytes",
                     {}, true);
    }
    if (error) {
        Log(kDebug, "unreadable request: " + error.message());
        return Reply(400, "malformed HTTP request: " + error.message(), {}, true);
    }
    http::request<http::string_body> request = fParser->release();
    Handle(request);
}

template <class TStream>
bool TSession<TStream>::Authorized(const http::request<http::string_body>& request) {
    if (!fShared.options.requireAuth) return true;
    const auto header = request.find(http::field::authorization);
    std::string user;
    if (header != request.end() && fShared.authenticator.Check(std::string(header->value()), user)) {
        return true;
    }
    if (header != request.end()) Log(kWarning, "wrong credentials" + (user.empty() ? "" : " for user " + user));
    return false;
}

template <class TStream>
void TSession<TStream>::Handle(http::request<http::string_body>& request) {
    fKeepAlive = request.keep_alive();
    fChunked = request.version() >= 11;
    fTrailers = Lower(std::string(request[http::field::te])).find("trailers") != std::string::npos;
    if (request.method() != http::verb::post && request.method_string() != "M-POST") {
        return Reply(405, "CIM operations are POST (or M-POST) requests", {{"Allow", "POST, M-POST"}});
    }
    if (!Authorized(request)) {
        return Reply(401, "authentication required", {{"WWW-Authenticate", "Basic realm=\"zentad\""}});
    }
    const std::string prefix = ExtensionPrefix(request);
    const std::string operation(request[prefix + "CIMOperation"]);
    if (!SameText(operation, "MethodCall")) {
        return Reply(400, "CIMOperation must be MethodCall", {{"CIMError", "unsupported-operation"}});
    }
    const std::string& body = request.body();
    fCall = ParseCimCall(body.data(), body.size(), fShared.options.callLimits);
    switch (fCall.outcome) {
        case TCimCall::kHttpError:
            Log(kInfo, "refused request: " + fCall.description);
            return Reply(fCall.httpStatus, fCall.description, {{"CIMError", fCall.cimError}});
        case TCimCall::kCimError:
            Log(kInfo, CallText(fCall) + ": " + CimStatusName(static_cast<int>(fCall.status)) + ": " + fCall.description);
            return Send(DocumentResponse(ErrorDocument(fCall, fCall.status, fCall.description)),
                        !fKeepAlive);
        case TCimCall::kCall: break;
    }
    const std::string method(request[prefix + "CIMMethod"]);
    if (!SameText(method, fCall.methodName.c_str())) {
        return Reply(400, "the CIMMethod header (\"" + method + "\") does not name the call (" + fCall.methodName + ")",
                     {{"CIMError", "header-mismatch"}});
    }
    Dispatch();
}

template <class TStream>
void TSession<TStream>::Dispatch() {
    auto self = this->shared_from_this();
    if (!fShared.pool.Submit([self](TWorker& worker) { self->Answer(worker); })) {
        Log(kWarning, "busy: refused " + CallText(fCall));
        Reply(503, "the server is busy: too many requests wait for a worker; try again", {{"Retry-After", "1"}});
    }
}

// Receives the worker's blocks and sends them on. The worker passes a
// block on once it holds 64 KB; only the answer's last block is smaller. A
// smaller block is therefore the whole answer when nothing came before it:
// it is kept until the worker says how the request ended, and goes out with
// its length, or as an ERROR document when the request failed. A full block
// starts a stream of chunks, each sent straight from the worker's buffer.
template <class TStream>
class TSession<TStream>::TAnswerSink : public IByteSink {
public:
    explicit TAnswerSink(TSession& session) : fSession(session) {}

    void Write(const char* data, std::size_t size) override {
        if (fGone) return;  // the worker's answer still has to be drained
        if (!fStreaming && size < kWorkerBlockBytes) {
            fLast.append(data, size);
            return;
        }
        StartStream();
        SendPiece(data, size);
    }

    // Ends the answer; false when the connection cannot be used again.
    bool Finish(const TOutcome& outcome, int timeoutSeconds) {
        if (fGone) return false;
        const TCimCall& call = fSession.fCall;
        if (outcome.Succeeded()) {
            if (!fStreaming) {
                const std::string start = EnvelopeStart(call);
                const std::string end = EnvelopeEnd(call);
                const std::string head = fSession.ResponseHead(start.size() + fLast.size() + end.size());
                return fSession.WriteAndWait({net::buffer(head), net::buffer(start), net::buffer(fLast), net::buffer(end)});
            }
            const std::string end = fLast + EnvelopeEnd(call);
            return SendPiece(end.data(), end.size()) && EndStream({});
        }
        const std::string description = outcome.Describe(CallText(call), timeoutSeconds);
        const ECimStatus status = outcome.Status();
        if (!fStreaming) {
            const std::string document = ErrorDocument(call, status, description);
            const std::string head = fSession.ResponseHead(document.size());
            return fSession.WriteAndWait({net::buffer(head), net::buffer(document)});
        }
        // Part of the answer is out: the client learns of the failure from
        // the trailer, or from a connection that ends before the answer.
        if (!fSession.fChunked || !fSession.fTrailers) return false;
        return EndStream({{"CIMStatusCode", std::to_string(static_cast<int>(status))},
                          {"CIMStatusCodeDescription", HeaderValue(description)}});
    }

private:
    void StartStream() {
        if (fStreaming) return;
        fStreaming = true;
        const std::string head = fSession.StreamHead();
        const std::string start = EnvelopeStart(fSession.fCall) + fLast;
        fLast.clear();
        if (!fSession.WriteAndWait({net::buffer(head)})) {
            fGone = true;
            return;
        }
        SendPiece(start.data(), start.size());
    }

    bool SendPiece(const char* data, std::size_t size) {
        if (fGone) return false;
        bool sent;
        if (fSession.fChunked) {
            const std::string head = ChunkHead(size);
            sent = fSession.WriteAndWait({net::buffer(head), net::buffer(data, size), net::buffer("\r\n", 2)});
        } else {
            sent = fSession.WriteAndWait({net::buffer(data, size)});
        }
        fGone = !sent;
        return sent;
    }

    bool EndStream(const THeaderFields& trailers) {
        if (!fSession.fChunked) return false;  // the end of the connection ends the answer
        const std::string last = LastChunkText(trailers);
        return fSession.WriteAndWait({net::buffer(last)});
    }

    TSession& fSession;
    std::string fLast;  // a last block, kept until the answer ends
    bool fStreaming = false;
    bool fGone = false;
};

template <class TStream>
void TSession<TStream>::Answer(TWorker& worker) {
    const int timeout = fShared.options.requestTimeoutSeconds;
    TAnswerSink sink(*this);
    const TOutcome outcome = worker.Run(fCall.request, sink, timeout);
    if (outcome.kind == TOutcome::kCrashed || outcome.kind == TOutcome::kTimedOut) {
        Log(kError, outcome.Describe(CallText(fCall), timeout));
    } else if (!outcome.Succeeded()) {
        Log(kInfo, CallText(fCall) + ": " + CimStatusName(static_cast<int>(outcome.Status())) + ": " + outcome.message);
    } else {
        Log(kDebug, CallText(fCall) + ": answered");
    }
    const bool reusable = sink.Finish(outcome, timeout) && fKeepAlive;
    auto self = this->shared_from_this();
    net::post(Lowest().get_executor(), [self, reusable] {
        if (reusable) {
            self->Read();
        } else {
            self->Close();
        }
    });
}

template <class TStream>
std::string TSession<TStream>::ResponseHead(std::size_t length) const {
    return HeadText(200, {{"Content-Type", kXmlType},
                          {"CIMOperation", "MethodResponse"},
                          {"Content-Length", std::to_string(length)},
                          {"Connection", fKeepAlive ? "keep-alive" : "close"}});
}

template <class TStream>
std::string TSession<TStream>::StreamHead() const {
    THeaderFields fields = {{"Content-Type", kXmlType}, {"CIMOperation", "MethodResponse"}};
    if (fChunked) {
        fields.push_back({"Transfer-Encoding", "chunked"});
        if (fTrailers) fields.push_back({"Trailer", "CIMStatusCode, CIMStatusCodeDescription"});
        fields.push_back({"Connection", fKeepAlive ? "keep-alive" : "close"});
    } else {
        fields.push_back({"Connection", "close"});
    }
    return HeadText(200, fields);
}

template <class TStream>
bool TSession<TStream>::WriteAndWait(const std::vector<net::const_buffer>& buffers) {
    // Nothing else touches the connection while a worker answers on it, so
    // a plain one is written from this thread: handing every block to an I/O
    // thread and back costs two context switches per block, most of the
    // front's time in a large answer. TLS keeps its state in the stream and
    // goes through the I/O side.
    if (!TTransport<TStream>::kSecure) return WriteDirectly(buffers);
    // The bytes are copied into the handler's own string: should the wait
    // below give up, the write may still run after the caller's buffers are
    // gone.
    auto bytes = std::make_shared<std::string>();
    bytes->reserve(net::buffer_size(buffers));
    for (const net::const_buffer& buffer : buffers) bytes->append(static_cast<const char*>(buffer.data()), buffer.size());
    auto done = std::make_shared<std::promise<beast::error_code> >();
    std::future<beast::error_code> result = done->get_future();
    auto self = this->shared_from_this();
    net::post(Lowest().get_executor(), [self, done, bytes] {
        self->Lowest().expires_after(self->Seconds(self->fShared.options.writeTimeoutSeconds));
        net::async_write(self->fStream, net::buffer(*bytes),
                         [done, bytes](beast::error_code error, std::size_t) { done->set_value(error); });
    });
    // The I/O side gives up on a stalled client after the write timeout;
    // waiting longer covers a server that stopped running its I/O.
    if (result.wait_for(Seconds(fShared.options.writeTimeoutSeconds + 5)) != std::future_status::ready) return false;
    const beast::error_code error = result.get();
    if (error) Log(kDebug, "the client went away: " + error.message());
    return !error;
}

template <class TStream>
bool TSession<TStream>::WriteDirectly(const std::vector<net::const_buffer>& buffers) {
    const int socket = Lowest().socket().native_handle();
    beast::error_code error;
    Lowest().socket().native_non_blocking(true, error);
    std::vector<iovec> pieces;
    for (const net::const_buffer& buffer : buffers) {
        if (buffer.size() > 0) pieces.push_back(iovec{const_cast<void*>(buffer.data()), buffer.size()});
    }
    const auto giveUp = std::chrono::steady_clock::now() + Seconds(fShared.options.writeTimeoutSeconds);
    std::size_t next = 0;
    while (next < pieces.size()) {
        const ssize_t written = writev(socket, &pieces[next], static_cast<int>(std::min<std::size_t>(pieces.size() - next, IOV_MAX)));
        if (written < 0 && errno == EINTR) continue;
        if (written < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(giveUp - std::chrono::steady_clock::now());
            pollfd ready = {socket, POLLOUT, 0};
            if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) == 0) {
                Log(kDebug, "the client took nothing for " + std::to_string(fShared.options.writeTimeoutSeconds) + " seconds");
                return false;
            }
            continue;
        }
        if (written < 0) {
            Log(kDebug, std::string("the client went away: ") + std::strerror(errno));
            return false;
        }
        // Skip what went out: whole pieces, then part of the next.
        std::size_t done = static_cast<std::size_t>(written);
        while (next < pieces.size() && done >= pieces[next].iov_len) done -= pieces[next++].iov_len;
        if (next < pieces.size()) {
            pieces[next].iov_base = static_cast<char*>(pieces[next].iov_base) + done;
            pieces[next].iov_len -= done;
        }
    }
    return true;
}

template <class TStream>
void TSession<TStream>::Send(std::string text, bool close) {
    auto self = this->shared_from_this();
    auto shared = std::make_shared<std::string>(std::move(text));
    Lowest().expires_after(Seconds(fShared.options.writeTimeoutSeconds));
    net::async_write(fStream, net::buffer(*shared), [self, shared, close](beast::error_code error, std::size_t) {
        if (error || close) return self->Close();
        self->Read();
    });
}

template <class TStream>
void TSession<TStream>::Reply(int status, const std::string& description, THeaderFields fields, bool close) {
    const std::string body = description + "\n";
    close = close || !fKeepAlive;
    fields.push_back({"Content-Type", "text/plain; charset=utf-8"});
    fields.push_back({"Content-Length", std::to_string(body.size())});
    fields.push_back({"Connection", close ? "close" : "keep-alive"});
    for (auto& field : fields) field.second = HeaderValue(field.second);
    Send(HeadText(status, fields) + body, close);
}

template <class TStream>
void TSession<TStream>::Close() {
    beast::error_code ignored;
#ifdef ZENTAD_TLS
    if constexpr (TTransport<TStream>::kSecure) {
        Lowest().expires_after(Seconds(5));
        auto self = this->shared_from_this();
        fStream.async_shutdown([self](beast::error_code) { self->Lowest().socket().close(); });
        return;
    }
#endif
    Lowest().socket().shutdown(tcp::socket::shutdown_send, ignored);
    Lowest().socket().close(ignored);
}

}  // namespace

bool SplitListenAddress(const std::string& text, std::string& address, unsigned short& port) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos || colon == 0 || colon + 1 == text.size()) return false;
    address = text.substr(0, colon);
    if (address.size() >= 2 && address.front() == '[' && address.back() == ']') {
        address = address.substr(1, address.size() - 2);
    }
    const std::string digits = text.substr(colon + 1);
    if (digits.size() > 5 || digits.find_first_not_of("0123456789") != std::string::npos) return false;
    const unsigned long number = std::stoul(digits);
    if (number > 65535) return false;
    port = static_cast<unsigned short>(number);
    beast::error_code error;
    net::ip::make_address(address, error);
    return !error;
}

bool IsLoopbackAddress(const std::string& address) {
    beast::error_code error;
    const net::ip::address parsed = net::ip::make_address(address, error);
    return !error && parsed.is_loopback();
}

class TServer::TImpl {
public:
    TImpl(const TServerOptions& options, TWorkerPool& pool, const TServerLog& log)
        : fShared(options, pool, log), fSignals(fIo, SIGTERM, SIGINT) {
#ifdef ZENTAD_TLS
        if (!options.tlsCertificate.empty()) {
            fTls.reset(new net::ssl::context(net::ssl::context::tls_server));
            fTls->set_options(net::ssl::context::default_workarounds | net::ssl::context::no_sslv2 |
                              net::ssl::context::no_sslv3 | net::ssl::context::no_tlsv1 |
                              net::ssl::context::no_tlsv1_1);
            beast::error_code error;
            fTls->use_certificate_chain_file(options.tlsCertificate, error);
            if (error) throw std::runtime_error(options.tlsCertificate + ": cannot use the certificate: " + error.message());
            fTls->use_private_key_file(options.tlsKey, net::ssl::context::pem, error);
            if (error) throw std::runtime_error(options.tlsKey + ": cannot use the private key: " + error.message());
        }
#else
        if (!options.tlsCertificate.empty()) throw std::runtime_error("this zentad was built without TLS support");
#endif
    }

    std::vector<std::string> Bind() {
        std::vector<std::string> urls;
        for (const std::string& text : fShared.options.listen) {
            std::string address;
            unsigned short port = 0;
            if (!SplitListenAddress(text, address, port)) throw std::runtime_error("--listen " + text + ": not ADDR:PORT");
            const tcp::endpoint endpoint(net::ip::make_address(address), port);
            auto acceptor = std::make_shared<tcp::acceptor>(fIo);
            beast::error_code error;
            acceptor->open(endpoint.protocol(), error);
            if (!error) acceptor->set_option(net::socket_base::reuse_address(true), error);
            if (!error) acceptor->bind(endpoint, error);
            if (!error) acceptor->listen(net::socket_base::max_listen_connections, error);
            if (error) throw std::runtime_error("cannot listen on " + text + ": " + error.message());
            const tcp::endpoint bound = acceptor->local_endpoint();
            const std::string host = bound.address().is_v6() ? "[" + bound.address().to_string() + "]"
                                                               : bound.address().to_string();
            urls.push_back(std::string(IsSecure() ? "https" : "http") + "://" + host + ":" + std::to_string(bound.port()));
            fAcceptors.push_back(acceptor);
        }
        return urls;
    }

    void Run() {
        for (auto& acceptor : fAcceptors) Accept(acceptor);
        fSignals.async_wait([this](beast::error_code error, int signal) {
            if (!error) fShared.log(kInfo, std::string("stopping on ") + SignalName(signal));
            fStopRequested.set_value();
        });
        auto guard = net::make_work_guard(fIo);
        std::vector<std::thread> threads;
        const unsigned count = fShared.options.ioThreads == 0 ? 1 : fShared.options.ioThreads;
        for (unsigned i = 0; i < count; ++i) threads.emplace_back([this] { fIo.run(); });
        fStopRequested.get_future().wait();
        StopAccepting();
        const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(fShared.options.shutdownGraceSeconds);
        while (fShared.connections > 0 && std::chrono::steady_clock::now() < giveUp) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        if (fShared.connections > 0) {
            fShared.log(kWarning, std::to_string(fShared.connections.load()) + " connections still open at shutdown");
        }
        guard.reset();
        fIo.stop();
        for (std::thread& thread : threads) thread.join();
    }

private:
    bool IsSecure() const {
#ifdef ZENTAD_TLS
        return static_cast<bool>(fTls);
#else
        return false;
#endif
    }

    void StopAccepting() {
        fShared.stopping = true;
        net::post(fIo, [this] {
            beast::error_code ignored;
            for (auto& acceptor : fAcceptors) acceptor->close(ignored);
        });
        // Called without the lock: a closer may drop the last reference to
        // its session, whose destructor takes the lock.
        std::vector<std::function<void()> > closers;
        {
            std::lock_guard<std::mutex> lock(fShared.mutex);
            for (auto& closer : fShared.closers) closers.push_back(closer.second);
        }
        for (auto& closer : closers) closer();
    }

    void Accept(const std::shared_ptr<tcp::acceptor>& acceptor) {
        acceptor->async_accept(net::make_strand(fIo), [this, acceptor](beast::error_code error, tcp::socket socket) {
            if (error == net::error::operation_aborted || fShared.stopping) return;
            if (!error) Welcome(std::move(socket));
            Accept(acceptor);
        });
    }

    void Welcome(tcp::socket socket) {
        beast::error_code error;
        const tcp::endpoint remote = socket.remote_endpoint(error);
        const std::string peer = error ? "?" : remote.address().to_string() + ":" + std::to_string(remote.port());
        if (fShared.connections >= fShared.options.maxConnections) {
            fShared.log(kWarning, peer + ": refused: " + std::to_string(fShared.options.maxConnections) +
                                      " connections are open already");
            socket.close(error);
            return;
        }
        socket.set_option(tcp::no_delay(true), error);
#ifdef ZENTAD_TLS
        if (fTls) {
            std::make_shared<TSession<beast::ssl_stream<beast::tcp_stream> > >(
                beast::ssl_stream<beast::tcp_stream>(std::move(socket), *fTls), fShared, peer)
                ->Start();
            return;
        }
#endif
        std::make_shared<TSession<beast::tcp_stream> >(beast::tcp_stream(std::move(socket)), fShared, peer)->Start();
    }

    // What sessions refer to comes first: destroying the I/O context
    // destroys the handlers that still hold sessions (a stop whose grace
    // ran out), and their destructors use these.
    TShared fShared;
#ifdef ZENTAD_TLS
    std::unique_ptr<net::ssl::context> fTls;
#endif
    net::io_context fIo;
    net::signal_set fSignals;
    std::promise<void> fStopRequested;
    std::vector<std::shared_ptr<tcp::acceptor> > fAcceptors;
};

TServer::TServer(const TServerOptions& options, TWorkerPool& pool, const TServerLog& log)
    : fImpl(new TImpl(options, pool, log)) {}

TServer::~TServer() {}

std::vector<std::string> TServer::Bind() { return fImpl->Bind(); }

void TServer::Run() { fImpl->Run(); }
