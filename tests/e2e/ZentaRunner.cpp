#include "ZentaRunner.h"

#include <fcntl.h>
#include <unistd.h>

#include <sstream>
#include <stdexcept>

namespace {

std::vector<std::string> ZentaEnvironment(const std::string& temporaryDirectory, std::vector<std::string> extra) {
    if (!temporaryDirectory.empty()) extra.insert(extra.begin(), "TMPDIR=" + temporaryDirectory);
    return EnvironmentWith(extra, kLogVariables);
}

std::vector<std::string> ZentaCommand(const std::vector<std::string>& arguments) {
    std::vector<std::string> command(1, ZENTA_TOOL);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

}  // namespace

pid_t StartZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory) {
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (null < 0) throw std::runtime_error("cannot open /dev/null");
    const pid_t child = StartProgram(ZentaEnvironment(temporaryDirectory, {}), ZentaCommand(arguments), null, null, null);
    close(null);
    return child;
}

TZentaRun RunZenta(const std::vector<std::string>& arguments, const std::string& temporaryDirectory,
                   const std::vector<std::string>& environment) {
    return RunProgramIn(ZentaEnvironment(temporaryDirectory, environment), ZentaCommand(arguments));
}

std::string Modules(const std::string& name) { return std::string(ZENTA_E2E_MODULE_ROOT) + "/" + name; }

std::size_t LinesWith(const std::string& text, const std::string& part) {
    std::size_t found = 0;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) found += line.find(part) != std::string::npos;
    return found;
}
