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

    // stderr split into lines (without their newlines).
    std::vector<std::string> ErrLines() const;
    // The output read as the JSON document it must be.
    nlohmann::json Json() const;
};

// Runs zenta with `arguments`, without the caller's ZENTA_LOG_* settings
// and with TMPDIR set to `temporaryDirectory` when that is not empty.
TZentaRun RunZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory = "");

// Starts zenta as RunZenta does, with its output thrown away, and returns
// at once with its process id; the caller waits for it.
pid_t StartZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory);

// A fresh, empty directory under the system's temporary directory,
// removed (with its content) on destruction.
class TScratchDirectory {
public:
    TScratchDirectory();
    ~TScratchDirectory();
    const std::string& Path() const { return fPath; }
    // The names of the entries it holds now.
    std::vector<std::string> Entries() const;

private:
    std::string fPath;
};

// The directory of test modules `name` (good, mixed) under the build tree.
std::string TestModules(const std::string& name);

#endif
