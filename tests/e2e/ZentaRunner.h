// Runs the built zenta tool as a subprocess and captures what it says.
#ifndef ZENTA_TESTS_ZENTARUNNER_H
#define ZENTA_TESTS_ZENTARUNNER_H

#include <sys/types.h>

#include <string>
#include <vector>

#include "Programs.h"

typedef TProgramRun TZentaRun;

// Runs zenta with `arguments`, without the caller's ZENTA_LOG_* settings
// and with TMPDIR set to `temporaryDirectory` when that is not empty;
// `environment` ("NAME=VALUE") comes on top. It returns once zenta and the
// helper that removes its staging directory have both gone.
TZentaRun RunZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory = "",
                   const std::vector<std::string>& environment = {});

// Starts zenta as RunZenta does, output thrown away; the caller waits for it.
pid_t StartZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory);

// The directory of test modules `name` (good, mixed, ...) under the build tree.
std::string Modules(const std::string& name);

// How many lines of `text` contain `part`.
std::size_t LinesWith(const std::string& text, const std::string& part);

#endif
