#include "ModuleProbe.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "SelfExecutable.h"
#include "Worker.h"

namespace {

const char kProbeFlag[] = "--zenta-probe";

void Say(const std::string& line) {
    const std::string text = line + "\n";
    const ssize_t ignored = write(STDOUT_FILENO, text.data(), text.size());
    (void)ignored;
}

// Runs one probe over paths[first...]; fills verdicts as it reports them and
// returns the index it died on, or paths.size() when it got through.
std::size_t ProbeFrom(const std::vector<std::string>& paths, std::size_t first, std::vector<TProbeVerdict>& verdicts) {
    int output[2];
    if (pipe2(output, O_CLOEXEC) != 0) {
        verdicts[first].problem = std::string("cannot probe: ") + std::strerror(errno);
        return first;
    }
    std::string self = SelfExecutable();
    std::vector<char*> arguments = {&self[0], const_cast<char*>(kProbeFlag)};
    for (std::size_t i = first; i < paths.size(); ++i) arguments.push_back(const_cast<char*>(paths[i].c_str()));
    arguments.push_back(nullptr);
    const int written = output[1];
    const pid_t child = StartSelf(arguments.data(), [written] {
        dup2(written, STDOUT_FILENO);
        // The loader's complaints are the verdict's, not the user's screen's.
        const int null = open("/dev/null", O_WRONLY);
        if (null >= 0) dup2(null, STDERR_FILENO);
    });
    if (child < 0) {
        verdicts[first].problem = std::string("cannot probe: ") + std::strerror(errno);
        close(output[0]);
        close(output[1]);
        return first;
    }
    close(output[1]);
    std::string text;
    char buffer[4096];
    ssize_t count;
    while ((count = read(output[0], buffer, sizeof(buffer))) != 0) {
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) break;
        text.append(buffer, static_cast<std::size_t>(count));
    }
    close(output[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    // Lines: "try I", then "ok I" or "fail I <reason>"; I counts from `first`.
    std::istringstream lines(text);
    std::size_t trying = paths.size();
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        std::size_t index = 0;
        words >> word >> index;
        index += first;
        if (index >= paths.size()) continue;
        if (word == "try") {
            trying = index;
        } else if (word == "ok") {
            verdicts[index].loaded = true;
            trying = paths.size();
        } else if (word == "fail") {
            std::string reason;
            std::getline(words >> std::ws, reason);
            // The loader starts its message with the path the caller knows.
            const std::string prefix = paths[index] + ": ";
            if (reason.compare(0, prefix.size(), prefix) == 0) reason.erase(0, prefix.size());
            verdicts[index].problem = reason;
            trying = paths.size();
        }
    }
    if (trying == paths.size()) return paths.size();
    verdicts[trying].problem = WIFSIGNALED(status)
                                   ? "loading it kills the process with " + SignalName(WTERMSIG(status))
                                   : "loading it ends the process with exit status " + std::to_string(WEXITSTATUS(status));
    return trying;
}

}  // namespace

std::vector<TProbeVerdict> ProbeModules(const std::vector<std::string>& paths) {
    std::vector<TProbeVerdict> verdicts(paths.size());
    std::size_t next = 0;
    while (next < paths.size()) next = ProbeFrom(paths, next, verdicts) + 1;
    return verdicts;
}

int RunProbeIfAsked(int argc, char** argv) {
    if (argc < 2 || std::strcmp(argv[1], kProbeFlag) != 0) return -1;
    for (int i = 2; i < argc; ++i) {
        const std::string index = std::to_string(i - 2);
        Say("try " + index);
        // Bound now, as the host would bind them lazily at their first use.
        if (dlopen(argv[i], RTLD_NOW | RTLD_LOCAL) != nullptr) {
            Say("ok " + index);
        } else {
            const char* reason = dlerror();
            std::string line = "fail " + index + " " + (reason != nullptr ? reason : "unknown reason");
            for (char& c : line) {
                if (c == '\n') c = ' ';
            }
            Say(line);
        }
    }
    return 0;
}
