#include "ZentaRunner.h"

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace fs = std::filesystem;

namespace {

std::vector<std::string> ChildEnvironment(const std::string& temporaryDirectory, const std::vector<std::string>& extra) {
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string entryText = *entry;
        const bool replaced = !temporaryDirectory.empty() && entryText.rfind("TMPDIR=", 0) == 0;
        if (entryText.rfind("ZENTA_LOG_", 0) != 0 && !replaced) environment.push_back(entryText);
    }
    if (!temporaryDirectory.empty()) environment.push_back("TMPDIR=" + temporaryDirectory);
    environment.insert(environment.end(), extra.begin(), extra.end());
    return environment;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(&text[0]);
    pointers.push_back(nullptr);
    return pointers;
}

// Spawns zenta with the file `actions` that route its output; -1 if it fails.
pid_t Spawn(const std::vector<std::string>& arguments, const std::string& temporaryDirectory,
            posix_spawn_file_actions_t& actions, const std::vector<std::string>& extra = {}) {
    std::vector<std::string> argv(1, ZENTA_TOOL);
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = ChildEnvironment(temporaryDirectory, extra);
    std::vector<char*> argvPointers = Pointers(argv);
    std::vector<char*> environmentPointers = Pointers(environment);
    pid_t child = 0;
    const int spawned = posix_spawn(&child, ZENTA_TOOL, &actions, nullptr, &argvPointers[0], &environmentPointers[0]);
    posix_spawn_file_actions_destroy(&actions);
    return spawned == 0 ? child : -1;
}

// Reads the pipe to its end, which comes when zenta and the helper that
// removes its staging directory (it keeps stderr open) have both gone.
std::string Drain(int pipe) {
    std::string text;
    char buffer[4096];
    for (;;) {
        const ssize_t count = read(pipe, buffer, sizeof(buffer));
        if (count > 0) text.append(buffer, static_cast<std::size_t>(count));
        if (count == 0 || (count < 0 && errno != EINTR)) return text;
    }
}

}  // namespace

std::string ReadFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

pid_t StartZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    return Spawn(arguments, temporaryDirectory, actions);
}

// Standard output goes to a file, standard error through a pipe (see Drain).
TZentaRun RunZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory,
                   const std::vector<std::string>& environment) {
    const TScratchDirectory capture;
    const std::string out = capture.Path() + "/out";
    int errPipe[2];
    if (pipe2(errPipe, O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], 2);
    const pid_t child = Spawn(arguments, temporaryDirectory, actions, environment);
    close(errPipe[1]);
    TZentaRun run;
    run.err = Drain(errPipe[0]);
    close(errPipe[0]);
    if (child < 0) throw std::runtime_error("cannot start " ZENTA_TOOL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.out = ReadFile(out);
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

std::string Modules(const std::string& name) { return std::string(ZENTA_E2E_MODULE_ROOT) + "/" + name; }

std::size_t LinesWith(const std::string& text, const std::string& part) {
    std::size_t found = 0;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) found += line.find(part) != std::string::npos;
    return found;
}
