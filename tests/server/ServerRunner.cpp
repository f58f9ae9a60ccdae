#include "ServerRunner.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(&text[0]);
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> Environment(const std::vector<std::string>& additions) {
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        // The tests decide the server's log themselves.
        if (std::strncmp(*entry, "ZENTA_LOG_", 10) == 0) continue;
        environment.push_back(*entry);
    }
    environment.insert(environment.end(), additions.begin(), additions.end());
    return environment;
}

int ExitStatusOf(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status); }

// Starts `arguments` with stdin, stdout and stderr on the descriptors given.
pid_t Spawn(std::vector<std::string> arguments, const std::vector<std::string>& environment, int in, int out,
            int err) {
    std::vector<std::string> variables = Environment(environment);
    std::vector<char*> argv = Pointers(arguments);
    std::vector<char*> envp = Pointers(variables);
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error(std::string("fork: ") + std::strerror(errno));
    if (child == 0) {
        dup2(in, STDIN_FILENO);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    return child;
}

}  // namespace

TProgramRun RunProgram(const std::vector<std::string>& arguments, const std::string& input,
                       const std::vector<std::string>& environment, int timeoutSeconds) {
    int in[2], out[2], err[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe");
    }
    const pid_t child = Spawn(arguments, environment, in[0], out[1], err[1]);
    close(in[0]);
    close(out[1]);
    close(err[1]);
    if (!input.empty() && write(in[1], input.data(), input.size()) < 0) {
        // A program that does not read its input is not a failure here.
    }
    close(in[1]);
    TProgramRun run;
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(timeoutSeconds);
    pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    std::string* targets[2] = {&run.out, &run.err};
    int open = 2;
    while (open > 0) {
        if (std::chrono::steady_clock::now() > giveUp) {
            kill(child, SIGKILL);
            break;
        }
        if (poll(fds, 2, 200) < 0 && errno != EINTR) break;
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP))) continue;
            char buffer[65536];
            const ssize_t got = read(fds[i].fd, buffer, sizeof(buffer));
            if (got > 0) {
                targets[i]->append(buffer, static_cast<std::size_t>(got));
            } else {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    for (const pollfd& fd : fds) {
        if (fd.fd >= 0) close(fd.fd);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    run.status = ExitStatusOf(status);
    return run;
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
    fPid = Spawn(command, environment, null, out[1], log);
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
    int status = 0;
    while (waitpid(fPid, &status, 0) < 0 && errno == EINTR) {
    }
    fPid = -1;
    return ExitStatusOf(status);
}

std::string TZentad::Log() const {
    std::ifstream in(fLogPath);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}
