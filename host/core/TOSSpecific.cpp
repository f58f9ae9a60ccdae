#include "TOSSpecific.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "TLocalClock.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace fs = std::filesystem;

namespace {

const char kSharedObjectSuffix[] = ".so";
const char kRegistrationStem[] = ".reg";
const char kSpecificationStem[] = ".classes";
const char* const kDocumentFormats[] = {".xml", ".mof"};  // the first is the one assumed when none is there
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

std::string ModuleStem(const std::string& module, const std::string& kind) {
    const std::string pluginSuffix = PluginSuffix(kind);
    return EndsWith(module, pluginSuffix) ? module.substr(0, module.size() - pluginSuffix.size()) : module;
}

bool Exists(const std::string& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() != fs::file_type::not_found && !error;
}

// The documents of the module that exist, of both kinds and formats.
std::vector<std::string> ExistingDocuments(const std::string& stem) {
    std::vector<std::string> found;
    for (const char* kindStem : {kRegistrationStem, kSpecificationStem}) {
        for (const char* format : kDocumentFormats) {
            if (Exists(stem + kindStem + format)) found.push_back(stem + kindStem + format);
        }
    }
    return found;
}

// A module's documents are all CIM-XML or all MOF: the path of the
// document of the module's format (CIM-XML when it has none).
std::string DocumentPath(const std::string& module, const std::string& kind, const char* documentStem) {
    const std::string stem = ModuleStem(module, kind);
    const std::vector<std::string> existing = ExistingDocuments(stem);
    bool mof = false;
    bool xml = false;
    for (const auto& path : existing) (EndsWith(path, kDocumentFormats[1]) ? mof : xml) = true;
    if (mof && xml) {
        std::string names;
        for (const auto& path : existing) names += (names.empty() ? "" : ", ") + path;
        throw TZENTAException(TZENTAStatusCode::kInvalidDocument,
                              "module " + module + " has documents in both formats (" + names +
                                  "); keep either the .xml or the .mof ones");
    }
    return stem + documentStem + kDocumentFormats[mof ? 1 : 0];
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
    return DocumentPath(module, kind, kRegistrationStem);
}

std::string TOSSpecific::BuildSpecificationPath(std::string module, std::string kind) {
    return DocumentPath(module, kind, kSpecificationStem);
}

TCIMDateTime TOSSpecific::GetLocalTime() {
    const TLocalClockReading now = ReadLocalClock();
    const int offsetMinutes = static_cast<int>(now.local.tm_gmtoff / kSecondsPerMinute);
    return TCIMDateTime::FromUnixTime(now.seconds, now.microseconds, offsetMinutes);
}

}  // namespace NVURZENTA20
