#include "Programs.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace fs = std::filesystem;

namespace {

std::vector<char*> NullTerminated(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(&text[0]);
    pointers.push_back(nullptr);
    return pointers;
}

std::string NameOf(const std::string& entry) { return entry.substr(0, entry.find('=')); }

// Reads both pipes to their end, or until `giveUp` when there is one.
void Drain(int out, int err, TProgramRun& run, pid_t child, int timeoutSeconds) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(timeoutSeconds);
    pollfd fds[2] = {{out, POLLIN, 0}, {err, POLLIN, 0}};
    std::string* targets[2] = {&run.out, &run.err};
    int open = 2;
    while (open > 0) {
        if (timeoutSeconds > 0 && std::chrono::steady_clock::now() > giveUp) {
            kill(child, SIGKILL);
            break;
        }
        if (poll(fds, 2, 200) < 0 && errno != EINTR) break;
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
            char buffer[65536];
            const ssize_t got = read(fds[i].fd, buffer, sizeof(buffer));
            if (got < 0 && errno == EINTR) continue;
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
}

}  // namespace

const std::vector<std::string> kLogVariables = {"ZENTA_LOG_LEVEL", "ZENTA_LOG_FILE"};

std::string TProgramRun::Describe() const {
    return "exit status " + std::to_string(status) + "\n--- stdout:\n" + out + "\n--- stderr:\n" + err;
}

pid_t StartProgram(const std::vector<std::string>& environment, const std::vector<std::string>& arguments, int in,
                   int out, int err) {
    std::vector<std::string> argv(arguments);
    std::vector<std::string> envp(environment);
    std::vector<char*> argvPointers = NullTerminated(argv);
    std::vector<char*> envpPointers = NullTerminated(envp);
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("cannot start " + arguments.at(0) + ": " + std::strerror(errno));
    if (child == 0) {
        dup2(in, STDIN_FILENO);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        execvpe(argvPointers[0], argvPointers.data(), envpPointers.data());
        _exit(127);
    }
    return child;
}

int WaitForExit(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) throw std::runtime_error("waitpid failed");
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

TProgramRun RunProgramIn(const std::vector<std::string>& environment, const std::vector<std::string>& arguments,
                         const std::string& input, int timeoutSeconds) {
    int in[2], out[2], err[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe");
    }
    const pid_t child = StartProgram(environment, arguments, in[0], out[1], err[1]);
    close(in[0]);
    close(out[1]);
    close(err[1]);
    // A program that does not read its input is not a failure here.
    if (!input.empty() && write(in[1], input.data(), input.size()) < 0) {
    }
    close(in[1]);
    TProgramRun run;
    Drain(out[0], err[0], run, child, timeoutSeconds);
    run.status = WaitForExit(child);
    return run;
}

std::vector<std::string> EnvironmentWith(const std::vector<std::string>& added,
                                         const std::vector<std::string>& removed) {
    std::vector<std::string> dropped(removed);
    for (const std::string& entry : added) dropped.push_back(NameOf(entry));
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string name = NameOf(*entry);
        bool keep = true;
        for (const std::string& other : dropped) keep = keep && other != name;
        if (keep) environment.push_back(*entry);
    }
    environment.insert(environment.end(), added.begin(), added.end());
    return environment;
}

TScratchDirectory::TScratchDirectory() {
    std::string pattern = (fs::temp_directory_path() / "zenta-test-XXXXXX").string();
    if (mkdtemp(&pattern[0]) == nullptr) throw std::runtime_error("mkdtemp failed");
    fPath = pattern;
}

TScratchDirectory::~TScratchDirectory() {
    std::error_code ignored;
    fs::remove_all(fPath, ignored);
}

std::vector<std::string> TScratchDirectory::Entries() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(fPath)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

std::string TScratchDirectory::Write(const std::string& name, const std::string& text) const {
    const fs::path path = fs::path(fPath) / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path.string(), std::ios::binary) << text;
    return path.string();
}

std::string ReadFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}
