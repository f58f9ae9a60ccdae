// Helpers shared by the service tests: a scratch directory that removes
// itself, small file helpers and an environment variable set for one scope.
#ifndef ZENTA_TESTS_SERVICES_TESTSUPPORT_H
#define ZENTA_TESTS_SERVICES_TESTSUPPORT_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ZentaTest {

class TTempDirectory {
public:
    TTempDirectory() {
        std::string pattern = testing::TempDir() + "zenta-services-XXXXXX";
        if (mkdtemp(&pattern[0]) == nullptr) {
            ADD_FAILURE() << "mkdtemp failed for " << pattern;
        }
        fPath = pattern;
    }
    ~TTempDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(fPath, ignored);
    }
    const std::filesystem::path& Path() const { return fPath; }
    std::string operator/(const std::string& name) const { return (fPath / name).string(); }

private:
    std::filesystem::path fPath;

    TTempDirectory(const TTempDirectory&) = delete;
    TTempDirectory& operator=(const TTempDirectory&) = delete;
};

inline void WriteFile(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary);
    out << content;
    ASSERT_TRUE(out.good()) << "cannot write " << path;
}

inline std::vector<std::string> ReadLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

// Sets (or with no value unsets) an environment variable and restores the
// earlier state when it goes out of scope.
class TScopedEnvironment {
public:
    TScopedEnvironment(const std::string& name, const std::optional<std::string>& value) : fName(name) {
        if (const char* old = std::getenv(name.c_str())) {
            fOldValue = old;
        }
        Apply(value);
    }
    ~TScopedEnvironment() { Apply(fOldValue); }

private:
    void Apply(const std::optional<std::string>& value) {
        if (value) {
            setenv(fName.c_str(), value->c_str(), 1);
        } else {
            unsetenv(fName.c_str());
        }
    }

    std::string fName;
    std::optional<std::string> fOldValue;

    TScopedEnvironment(const TScopedEnvironment&) = delete;
    TScopedEnvironment& operator=(const TScopedEnvironment&) = delete;
};

}  // namespace ZentaTest

#endif
