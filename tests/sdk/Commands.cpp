#include "Commands.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <regex>
#include <stdexcept>

#include "ZentaRunner.h"

extern char** environ;

namespace {

std::vector<char*> NullTerminated(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(&text[0]);
    pointers.push_back(nullptr);
    return pointers;
}

std::string NameOf(const std::string& entry) {
    return entry.substr(0, entry.find('='));
}

int WaitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) throw std::runtime_error("waitpid failed");
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

std::string TCommandRun::Describe() const {
    return "exit status " + std::to_string(status) + "\n--- stdout:\n" + out + "\n--- stderr:\n" + err;
}

// Both outputs go to files: a helper that zenta leaves behind to clean up
// may keep them open after the command has ended.
TCommandRun RunCommand(const std::vector<std::string>& argv, const std::vector<std::string>& environment) {
    const TScratchDirectory capture;
    const std::string outPath = capture.Path() + "/out";
    const std::string errPath = capture.Path() + "/err";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    std::vector<std::string> arguments(argv);
    std::vector<std::string> variables(environment);
    std::vector<char*> argumentPointers = NullTerminated(arguments);
    std::vector<char*> variablePointers = NullTerminated(variables);
    pid_t child = 0;
    const int spawned = posix_spawnp(&child, argumentPointers[0], &actions, nullptr, &argumentPointers[0],
                                     &variablePointers[0]);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) throw std::runtime_error("cannot start " + argv[0]);
    TCommandRun run;
    run.status = WaitFor(child);
    run.out = ReadFile(outPath);
    run.err = ReadFile(errPath);
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

TReadmeExample ReadReadmeExample(const std::string& readmePath) {
    const std::string text = ReadFile(readmePath);
    if (text.empty()) throw std::runtime_error("cannot read " + readmePath);
    static const std::regex marked("<!-- example ([a-z-]+)(?:: ([^ ]+))? -->\n```[a-z]*\n([^`]*)```");
    TReadmeExample example;
    for (std::sregex_iterator match(text.begin(), text.end(), marked), end; match != end; ++match) {
        const std::string kind = (*match)[1];
        const std::string name = (*match)[2];
        if (kind == "file") {
            example.files[name] = (*match)[3];
        } else {
            example.blocks[name.empty() ? kind : kind + ": " + name] = (*match)[3];
        }
    }
    return example;
}
