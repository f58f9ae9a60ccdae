// The HTTP front of zentad: accepts connections (plain or TLS), reads
// CIM-XML requests within size and time limits, checks credentials, and
// hands each call to the worker pool, which streams the answer back. The
// front never runs provider code, so nothing a provider does can take it
// down.
#ifndef ZENTA_ZENTAD_SERVER_H
#define ZENTA_ZENTAD_SERVER_H

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "CimXmlRequest.h"
#include "Users.h"
#include "WorkerPool.h"

struct TServerOptions {
    std::vector<std::string> listen{"127.0.0.1:5988"};  // ADDR:PORT each; port 0 picks a free one
    bool requireAuth = true;
    TUsers users;
    std::string tlsCertificate;  // both empty: plain HTTP
    std::string tlsKey;
    std::size_t maxHeaderBytes = 16 * 1024;
    std::size_t maxBodyBytes = 4 * 1024 * 1024;
    TCallLimits callLimits;
    int readTimeoutSeconds = 30;      // a request's head and body, or the wait for one
    int writeTimeoutSeconds = 60;     // one block of an answer to the client
    int requestTimeoutSeconds = 120;  // the worker's answer
    unsigned maxConnections = 256;
    unsigned ioThreads = 2;           // the HTTP side; providers run in the workers
    int shutdownGraceSeconds = 30;    // for requests in progress at SIGTERM
};

// One line for the log: what happened, at which level (0 error .. 4 debug).
typedef std::function<void(int level, const std::string& line)> TServerLog;

class TServer {
public:
    TServer(const TServerOptions& options, TWorkerPool& pool, const TServerLog& log);
    ~TServer();

    // Binds every listening address; throws std::runtime_error naming the
    // one that fails. Returns "http://127.0.0.1:5988"-like URLs, the
    // ports chosen.
    std::vector<std::string> Bind();
    // Serves until SIGTERM or SIGINT, then lets the requests in progress
    // finish and returns.
    void Run();

    class TImpl;

private:
    std::unique_ptr<TImpl> fImpl;
};

// True when `address` (the ADDR of ADDR:PORT) is a loopback address.
bool IsLoopbackAddress(const std::string& address);
// Splits "ADDR:PORT" ("[::1]:5988" for IPv6); false when it is not that.
bool SplitListenAddress(const std::string& text, std::string& address, unsigned short& port);

#endif
