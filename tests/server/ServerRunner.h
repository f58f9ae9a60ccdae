// Runs programs for the server's end-to-end tests: zentad itself on a free
// loopback port, and its clients (wbemcli, curl, zenta) to completion.
#ifndef ZENTA_TESTS_SERVERRUNNER_H
#define ZENTA_TESTS_SERVERRUNNER_H

#include <sys/types.h>

#include <string>
#include <vector>

#include "Programs.h"

// Runs `arguments` (the program first) with `input` on stdin and this
// process's environment without its log settings, plus `environment`
// (NAME=VALUE each); kills it after `timeoutSeconds`.
TProgramRun RunProgram(const std::vector<std::string>& arguments, const std::string& input = "",
                       const std::vector<std::string>& environment = {}, int timeoutSeconds = 120);

// A zentad started with the arguments given (plus --listen 127.0.0.1:0),
// its log in a file of its own.
class TZentad {
public:
    TZentad(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {});
    // Stops it with SIGTERM if it still runs.
    ~TZentad();

    // "http://127.0.0.1:PORT" (https with TLS), with "user:password@" when given.
    std::string Base(const std::string& credentials = "") const;
    // The URL wbemcli takes for an object of the namespace.
    std::string Object(const std::string& object, const std::string& credentials = "") const;
    pid_t Pid() const { return fPid; }
    // SIGTERM, then the exit status (128 + signal when killed).
    int Stop();
    std::string Log() const;

private:
    pid_t fPid = -1;
    std::string fBase;
    std::string fLogPath;
};

#endif
