#include "ServerRunner.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>

TProgramRun RunProgram(const std::vector<std::string>& arguments, const std::string& input,
                       const std::vector<std::string>& environment, int timeoutSeconds) {
    return RunProgramIn(EnvironmentWith(environment, kLogVariables), arguments, input, timeoutSeconds);
}

TZentad::TZentad(const std::vector<std::string>& arguments, const std::vector<std::string>& environment) {
    char pattern[] = "/tmp/zentad-log-XXXXXX";
    const int log = mkstemp(pattern);
    if (log < 0) throw std::runtime_error("mkstemp");
    fLogPath = pattern;
    int out[2];
    if (pipe2(out, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
    std::vector<std::string> command{ZENTAD, "--listen", "127.0.0.1:0"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    fPid = StartProgram(EnvironmentWith(environment, kLogVariables), command, null, out[1], log);
    close(null);
    close(out[1]);
    close(log);
    // The first line names the port it listens on.
    std::string line;
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    pollfd fd = {out[0], POLLIN, 0};
    while (line.find('\n') == std::string::npos && std::chrono::steady_clock::now() < giveUp) {
        if (poll(&fd, 1, 200) <= 0) continue;
        char c;
        if (read(out[0], &c, 1) != 1) break;
        line += c;
    }
    close(out[0]);
    const std::size_t scheme = line.find("://");
    const std::size_t at = scheme == std::string::npos ? scheme : line.rfind(' ', scheme) + 1;
    const std::size_t end = line.find('/', scheme == std::string::npos ? 0 : scheme + 3);
    if (at == std::string::npos || end == std::string::npos) {
        Stop();
        throw std::runtime_error("zentad did not start: " + line + Log());
    }
    fBase = line.substr(at, end - at);
}

TZentad::~TZentad() {
    Stop();
    unlink(fLogPath.c_str());
}

std::string TZentad::Base(const std::string& credentials) const {
    const std::size_t host = fBase.find("://") + 3;
    return credentials.empty() ? fBase : fBase.substr(0, host) + credentials + "@" + fBase.substr(host);
}

std::string TZentad::Object(const std::string& object, const std::string& credentials) const {
    return Base(credentials) + "/root/cimv2:" + object;
}

int TZentad::Stop() {
    if (fPid <= 0) return -1;
    kill(fPid, SIGTERM);
    const int status = WaitForExit(fPid);
    fPid = -1;
    return status;
}

std::string TZentad::Log() const { return ReadFile(fLogPath); }
