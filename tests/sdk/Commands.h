// Running the programs a new user would run (cmake, cpack, dpkg-deb, a
// shell with the README's commands, the installed zenta) and reading the
// README's example.
#ifndef ZENTA_TESTS_SDK_COMMANDS_H
#define ZENTA_TESTS_SDK_COMMANDS_H

#include <map>
#include <string>
#include <vector>

#include "Programs.h"

typedef TProgramRun TCommandRun;

// Runs `argv` (argv[0] looked up in PATH) with exactly `environment`
// ("NAME=value" entries), standard input empty.
TCommandRun RunCommand(const std::vector<std::string>& argv, const std::vector<std::string>& environment);

// The README's example, by its markers: an HTML comment
// "<!-- example KIND[: NAME] -->" on the line before a fenced block.
struct TReadmeExample {
    std::map<std::string, std::string> files;    // "file: NAME": NAME's text
    std::map<std::string, std::string> blocks;   // "build: X", "run: X", "output: X", "environment"
};
TReadmeExample ReadReadmeExample(const std::string& readmePath);

#endif
