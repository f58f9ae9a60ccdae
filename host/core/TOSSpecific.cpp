#include "TOSSpecific.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "TLocalClock.h"

namespace NVURZENTA20 {

namespace fs = std::filesystem;

namespace {

const char kSharedObjectSuffix[] = ".so";
const char kRegistrationSuffix[] = ".reg.xml";
const char kSpecificationSuffix[] = ".classes.xml";
const int kSecondsPerMinute = 60;

std::string PluginSuffix(const std::string& kind) {
    return "." + kind + kSharedObjectSuffix;
}

bool EndsWith(const std::string& text, const std::string& suffix) {
    return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// A module needs a name in front of its suffix: a bare ".cmpi.so" would
// give documents named ".reg.xml" and a provider without a name.
bool IsPluginName(const std::string& fileName, const std::string& suffix) {
    return fileName.size() > suffix.size() && EndsWith(fileName, suffix);
}

// Makes `directory` absolute without resolving symbolic links: a module
// reached through a link must keep the link's path, because its documents
// are looked up beside that path. Only "." steps are dropped, which never
// changes what a path names.
fs::path AbsoluteDirectory(const std::string& directory, std::error_code& error) {
    fs::path result;
    for (const fs::path& part : fs::absolute(directory, error)) {
        if (part != "." && !part.empty()) {
            result /= part;
        }
    }
    return result;
}

// The file's type after following symbolic links; a dangling link or an
// unreadable entry is no regular file.
bool IsRegularFile(const fs::directory_entry& entry) {
    std::error_code error;
    return fs::is_regular_file(entry.status(error));
}

std::string ReplacePluginSuffix(const std::string& module, const std::string& kind, const char* documentSuffix) {
    const std::string pluginSuffix = PluginSuffix(kind);
    if (EndsWith(module, pluginSuffix)) {
        return module.substr(0, module.size() - pluginSuffix.size()) + documentSuffix;
    }
    return module + documentSuffix;
}

}  // namespace

std::vector<std::string> TOSSpecific::FindPlugins(std::string directory, std::string kind) {
    std::vector<std::string> plugins;
    // An empty name is no directory; it does not mean the working directory.
    if (directory.empty()) {
        return plugins;
    }
    const std::string suffix = PluginSuffix(kind);
    std::error_code error;
    const fs::path base = AbsoluteDirectory(directory, error);
    fs::directory_iterator entries;
    if (!error) {
        entries = fs::directory_iterator(base, error);
    }
    // A missing or unreadable directory simply holds no plug-ins.
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        const std::string fileName = entries->path().filename().string();
        if (IsPluginName(fileName, suffix) && IsRegularFile(*entries)) {
            plugins.push_back((base / fileName).string());
        }
    }
    std::sort(plugins.begin(), plugins.end());
    return plugins;
}

std::string TOSSpecific::BuildRegistrationPath(std::string module, std::string kind) {
    return ReplacePluginSuffix(module, kind, kRegistrationSuffix);
}

std::string TOSSpecific::BuildSpecificationPath(std::string module, std::string kind) {
    return ReplacePluginSuffix(module, kind, kSpecificationSuffix);
}

TCIMDateTime TOSSpecific::GetLocalTime() {
    const TLocalClockReading now = ReadLocalClock();
    const int offsetMinutes = static_cast<int>(now.local.tm_gmtoff / kSecondsPerMinute);
    return TCIMDateTime::FromUnixTime(now.seconds, now.microseconds, offsetMinutes);
}

}  // namespace NVURZENTA20
