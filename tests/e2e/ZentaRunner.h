// Runs the built zenta tool as a subprocess and captures what it says.
#ifndef ZENTA_TESTS_ZENTARUNNER_H
#define ZENTA_TESTS_ZENTARUNNER_H

#include <sys/types.h>

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

struct TZentaRun {
    int status = -1;  // exit status; 128 + signal when a signal ended it
    std::string out;
    std::string err;

    nlohmann::json Json() const { return nlohmann::json::parse(out); }
};

// Runs zenta with `arguments`, without the caller's ZENTA_LOG_* settings
// and with TMPDIR set to `temporaryDirectory` when that is not empty;
// `environment` ("NAME=VALUE") comes on top.
TZentaRun RunZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory = "",
                   const std::vector<std::string>& environment = {});

// Starts zenta as RunZenta does, output thrown away; the caller waits for it.
pid_t StartZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory);

// A fresh, empty temporary directory, removed with its content at the end.
class TScratchDirectory {
public:
    TScratchDirectory();
    ~TScratchDirectory();
    const std::string& Path() const { return fPath; }
    std::vector<std::string> Entries() const;

private:
    std::string fPath;
};

std::string ReadFile(const std::string& path);

// The directory of test modules `name` (good, mixed, ...) under the build tree.
std::string Modules(const std::string& name);

// How many lines of `text` contain `part`.
std::size_t LinesWith(const std::string& text, const std::string& part);

#endif
