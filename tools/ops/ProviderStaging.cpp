#include "ProviderStaging.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "ToolError.h"

namespace fs = std::filesystem;

namespace {

// Longer temporary directories are passed over for /tmp: the library's
// path must stay far below the 512 bytes it keeps it in.
const std::size_t kLongestTemporaryDirectory = 200;
const char kFallbackDirectory[] = "/tmp";

bool TryPrivateDirectory(const std::string& parent, std::string& made, std::string& reason) {
    std::string pattern = parent + "/zenta-providers-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    if (mkdtemp(&name[0]) == nullptr) {
        reason = parent + ": " + std::strerror(errno);
        return false;
    }
    made = &name[0];
    return true;
}

std::string MakePrivateDirectory() {
    const char* configured = std::getenv("TMPDIR");
    std::string made;
    std::string refused;
    if (configured != nullptr && *configured == '/' && std::strlen(configured) <= kLongestTemporaryDirectory) {
        if (TryPrivateDirectory(configured, made, refused)) return made;
    }
    std::string reason;
    if (TryPrivateDirectory(kFallbackDirectory, made, reason)) return made;
    throw TToolError("cannot create a staging directory (" + (refused.empty() ? reason : refused + "; " + reason) +
                     "): set TMPDIR to a short, writable directory");
}

}  // namespace

TProviderStaging::TProviderStaging(const std::string& providerDirectory, const std::string& library,
                                   const std::set<std::string>& leftOut)
    : fDirectory(MakePrivateDirectory()), fReaped(false) {
    try {
        const std::string libraryName = fs::path(library).filename().string();
        Link(fs::absolute(library).string(), libraryName);
        std::error_code error;
        fs::directory_iterator entries(fs::absolute(providerDirectory), error);
        if (error) {
            throw TToolError("cannot read provider directory " + providerDirectory + ": " + error.message());
        }
        for (; entries != fs::directory_iterator(); entries.increment(error)) {
            if (error) throw TToolError("cannot read provider directory " + providerDirectory + ": " + error.message());
            const std::string name = entries->path().filename().string();
            if (name != libraryName && leftOut.count(name) == 0) Link(entries->path().string(), name);
        }
    } catch (...) {
        std::error_code ignored;
        fs::remove_all(fDirectory, ignored);
        throw;
    }
    fReaped = StartReaper();
}

TProviderStaging::~TProviderStaging() {
    if (fReaped) return;
    // remove_all removes the links themselves, never what they point at.
    std::error_code ignored;
    fs::remove_all(fDirectory, ignored);
}

// The helper waits for the end of a pipe whose only writer is this process
// (close-on-exec, never written): the read returns when the process has
// gone. It leaves the session so that a signal to the terminal's process
// group does not take it along, and keeps the inherited standard output
// and error open until the directory is gone, so that whoever reads them
// to their end also knows that nothing is left behind.
bool TProviderStaging::StartReaper() {
    int alive[2];
    if (pipe2(alive, O_CLOEXEC) != 0) return false;
    const pid_t reaper = fork();
    if (reaper < 0) {
        close(alive[0]);
        close(alive[1]);
        return false;
    }
    if (reaper == 0) {
        close(alive[1]);
        setsid();
        char ignored;
        while (read(alive[0], &ignored, 1) < 0 && errno == EINTR) {
        }
        std::error_code error;
        fs::remove_all(fDirectory, error);
        _exit(error ? 1 : 0);
    }
    // The write end stays open, unused, for the rest of this process.
    close(alive[0]);
    return true;
}

void TProviderStaging::Link(const std::string& target, const std::string& name) {
    const std::string link = fDirectory + "/" + name;
    if (symlink(target.c_str(), link.c_str()) != 0) {
        throw TToolError("cannot link " + target + " into " + fDirectory + ": " + std::strerror(errno));
    }
}
