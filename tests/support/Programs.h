// What the end-to-end tests share: running a program to its end with its
// output captured, starting one in the background, the environment handed
// to them, and scratch directories and files.
#ifndef ZENTA_TESTS_SUPPORT_PROGRAMS_H
#define ZENTA_TESTS_SUPPORT_PROGRAMS_H

#include <sys/types.h>

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

struct TProgramRun {
    int status = -1;  // exit status; 128 + signal when a signal ended it
    std::string out;
    std::string err;

    nlohmann::json Json() const { return nlohmann::json::parse(out); }
    // What to print when a check on this run fails.
    std::string Describe() const;
};

// Runs `arguments` (the program first, looked up in PATH when it has no
// slash) with exactly `environment` ("NAME=value" entries) and `input` on
// its standard input, and reads both outputs to their end: that is, until
// the program and anything it left holding them have gone. Killed after
// `timeoutSeconds` (0: never).
TProgramRun RunProgramIn(const std::vector<std::string>& environment, const std::vector<std::string>& arguments,
                         const std::string& input = "", int timeoutSeconds = 0);

// Starts `arguments` as RunProgramIn does, with standard input, output and
// error on the descriptors given; the caller waits for it.
pid_t StartProgram(const std::vector<std::string>& environment, const std::vector<std::string>& arguments, int in,
                   int out, int err);

// Waits for `child`; its exit status, or 128 + the signal that ended it.
int WaitForExit(pid_t child);

// This process's environment with the entries named in `removed` left out
// and `added` ("NAME=value") put in their place or added.
std::vector<std::string> EnvironmentWith(const std::vector<std::string>& added,
                                         const std::vector<std::string>& removed);

// The host's log settings, which the tests decide for themselves.
extern const std::vector<std::string> kLogVariables;

// A fresh, empty temporary directory, removed with its content at the end.
class TScratchDirectory {
public:
    TScratchDirectory();
    ~TScratchDirectory();
    const std::string& Path() const { return fPath; }
    std::vector<std::string> Entries() const;
    // Writes `text` to `name` in the directory (directories made as needed)
    // and returns its path.
    std::string Write(const std::string& name, const std::string& text) const;

private:
    std::string fPath;
    TScratchDirectory(const TScratchDirectory&) = delete;
    TScratchDirectory& operator=(const TScratchDirectory&) = delete;
};

// The whole content of a file ("" when it cannot be read).
std::string ReadFile(const std::string& path);

#endif
