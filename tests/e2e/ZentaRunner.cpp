#include "ZentaRunner.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace fs = std::filesystem;

namespace {

// A run that takes longer has hung.
const int kTimeoutSeconds = 120;

bool StartsWith(const char* text, const char* prefix) { return std::strncmp(text, prefix, std::strlen(prefix)) == 0; }

std::vector<std::string> ChildEnvironment(const std::string& temporaryDirectory) {
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (StartsWith(*entry, "ZENTA_LOG_") || (!temporaryDirectory.empty() && StartsWith(*entry, "TMPDIR="))) {
            continue;
        }
        environment.push_back(*entry);
    }
    if (!temporaryDirectory.empty()) environment.push_back("TMPDIR=" + temporaryDirectory);
    return environment;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::size_t i = 0; i < texts.size(); ++i) pointers.push_back(&texts[i][0]);
    pointers.push_back(nullptr);
    return pointers;
}

// Reads both pipes to their ends, whichever has data first.
void Drain(int outPipe, int errPipe, std::string& out, std::string& err) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(kTimeoutSeconds);
    pollfd fds[2] = {{outPipe, POLLIN, 0}, {errPipe, POLLIN, 0}};
    std::string* targets[2] = {&out, &err};
    int open = 2;
    while (open > 0) {
        if (std::chrono::steady_clock::now() > deadline) throw std::runtime_error("zenta did not finish in time");
        if (poll(fds, 2, 1000) < 0) {
            if (errno == EINTR) continue;
            throw std::runtime_error(std::string("poll: ") + std::strerror(errno));
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0) continue;
            char buffer[4096];
            const ssize_t count = read(fds[i].fd, buffer, sizeof(buffer));
            if (count > 0) {
                targets[i]->append(buffer, static_cast<std::size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
}

// Spawns zenta with its standard output and error on `out` and `err`.
pid_t Spawn(const std::vector<std::string>& arguments, const std::string& temporaryDirectory, int out, int err) {
    std::vector<std::string> argv(1, ZENTA_TOOL);
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = ChildEnvironment(temporaryDirectory);
    std::vector<char*> argvPointers = Pointers(argv);
    std::vector<char*> environmentPointers = Pointers(environment);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out, 1);
    posix_spawn_file_actions_adddup2(&actions, err, 2);
    pid_t child = 0;
    const int spawned = posix_spawn(&child, ZENTA_TOOL, &actions, nullptr, &argvPointers[0], &environmentPointers[0]);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) throw std::runtime_error(std::string("cannot start " ZENTA_TOOL ": ") + std::strerror(spawned));
    return child;
}

}  // namespace

std::vector<std::string> TZentaRun::ErrLines() const {
    std::vector<std::string> lines;
    std::istringstream in(err);
    std::string line;
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

nlohmann::json TZentaRun::Json() const { return nlohmann::json::parse(out); }

pid_t StartZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory) {
    const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nothing < 0) throw std::runtime_error("cannot open /dev/null");
    try {
        const pid_t child = Spawn(arguments, temporaryDirectory, nothing, nothing);
        close(nothing);
        return child;
    } catch (...) {
        close(nothing);
        throw;
    }
}

TZentaRun RunZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory) {
    int outPipe[2];
    int errPipe[2];
    if (pipe2(outPipe, O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
    if (pipe2(errPipe, O_CLOEXEC) != 0) {
        close(outPipe[0]);
        close(outPipe[1]);
        throw std::runtime_error("pipe failed");
    }
    pid_t child = 0;
    try {
        child = Spawn(arguments, temporaryDirectory, outPipe[1], errPipe[1]);
    } catch (...) {
        for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]}) close(fd);
        throw;
    }
    close(outPipe[1]);
    close(errPipe[1]);
    TZentaRun run;
    try {
        Drain(outPipe[0], errPipe[0], run.out, run.err);
    } catch (...) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        throw;
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return run;
}

TScratchDirectory::TScratchDirectory() {
    std::string pattern = (fs::temp_directory_path() / "zenta-e2e-XXXXXX").string();
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

std::string TestModules(const std::string& name) { return std::string(ZENTA_E2E_MODULE_ROOT) + "/" + name; }
