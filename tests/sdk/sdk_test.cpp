// What a new user does with the installed project: install the build into
// a fresh prefix, build the README's example provider outside the tree with
// pkg-config and with find_package(ZentaCMPI), and serve it with the
// installed zenta; move the installed tree; install the Debian package.
// The example's files, commands and expected output are read from
// README.md, so the README stays true.
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "ZentaRunner.h"

namespace fs = std::filesystem;

namespace {

const std::string kBuildDirectory = ZENTA_BUILD_DIR;
const std::string kLibraryDirectory = ZENTA_BUILD_DIR "/lib";
const std::string kInstalledLibraries = "lib/zenta";

// Variables of the caller that would steer the user's builds elsewhere.
const std::vector<std::string> kForeignVariables = {
    "ZENTA_LOG_LEVEL", "ZENTA_LOG_FILE", "PKG_CONFIG_PATH", "PKG_CONFIG_LIBDIR", "CMAKE_PREFIX_PATH",
    "CMAKE_GENERATOR", "MAKEFLAGS", "MFLAGS", "MAKELEVEL", "CC", "CFLAGS", "LDFLAGS"};

void WriteFile(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
}

bool StartsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

// Every regular file below `root`, as paths relative to it.
std::set<std::string> FilesBelow(const std::string& root) {
    std::set<std::string> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        if (entry.is_regular_file()) files.insert(fs::relative(entry.path(), root).string());
    }
    return files;
}

// The host libraries and provider modules, by the names they are built as.
bool IsOurs(const std::string& path) {
    const std::string name = fs::path(path).filename().string();
    return name == "libzentacore.so" || name == "libinmem.nsp.so" || name == "libcmpi.nsp.so" ||
           (name.size() > 8 && name.compare(name.size() - 8, 8, ".cmpi.so") == 0);
}

TCommandRun RunChecked(const std::vector<std::string>& argv, const std::vector<std::string>& environment) {
    TCommandRun run = RunCommand(argv, environment);
    EXPECT_EQ(run.status, 0) << argv[0] << ": " << run.Describe();
    return run;
}

nlohmann::json BuildTreeAnswer(const std::vector<std::string>& arguments) {
    const TZentaRun run = RunZenta(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    return run.Json();
}

class InstalledSdk : public ::testing::Test {
protected:
    void SetUp() override {
        fHome = fScratch.Path() + "/home";
        fs::create_directories(fHome + "/hello");
        fEnvironment = EnvironmentWith({"HOME=" + fHome}, kForeignVariables);
        if (ZENTA_TARGET_BITS == 32) UseThirtyTwoBitCompiler();
        const TCommandRun install =
            RunCommand({ZENTA_CMAKE, "--install", kBuildDirectory, "--prefix", Prefix()}, fEnvironment);
        ASSERT_EQ(install.status, 0) << install.Describe();
        fExample = ReadReadmeExample(ZENTA_README);
    }

    std::string Prefix() const { return fHome + "/zenta"; }
    std::string ExampleDirectory() const { return fHome + "/hello"; }

    // The README's commands run where the example lies, as a user's shell
    // would after the README's environment lines.
    TCommandRun Shell(const std::string& commands) const {
        const std::string script = "cd " + ExampleDirectory() + "\n" + Block("environment") + commands;
        return RunCommand({"bash", "-euo", "pipefail", "-c", script}, fEnvironment);
    }

    std::string Block(const std::string& name) const {
        const auto found = fExample.blocks.find(name);
        if (found == fExample.blocks.end()) ADD_FAILURE() << "README.md has no example block \"" << name << "\"";
        return found == fExample.blocks.end() ? std::string() : found->second;
    }

    void WriteExampleFiles(const std::vector<std::string>& names) const {
        for (const std::string& name : names) {
            const auto found = fExample.files.find(name);
            ASSERT_NE(found, fExample.files.end()) << "README.md has no example file " << name;
            WriteFile(ExampleDirectory() + "/" + name, found->second);
        }
    }

    // Builds the example the README's way, then runs its queries and
    // compares what they print with the README's output.
    void BuildAndServe(const std::string& way, const std::vector<std::string>& servedDirectories) const {
        const TCommandRun build = Shell(Block("build: " + way));
        ASSERT_EQ(build.status, 0) << build.Describe();
        for (const std::string& directory : servedDirectories) {
            ASSERT_TRUE(fs::exists(directory + "/Hello.cmpi.so")) << directory;
            ASSERT_TRUE(fs::exists(directory + "/Hello.reg.mof")) << directory;
            ASSERT_TRUE(fs::exists(directory + "/Hello.classes.mof")) << directory;
        }
        const TCommandRun queries = Shell(Block("run: " + way));
        EXPECT_EQ(queries.status, 0) << queries.Describe();
        EXPECT_EQ(queries.out, Block("output: " + way)) << queries.err;
    }

    // The installed tree is 32-bit: the user's compiler must build for it.
    void UseThirtyTwoBitCompiler() {
        const std::string tools = fHome + "/bin32";
        fs::create_directories(tools);
        WriteFile(tools + "/cc", "#!/bin/sh\nexec gcc -m32 \"$@\"\n");
        fs::permissions(tools + "/cc", fs::perms::owner_all);
        for (std::string& entry : fEnvironment) {
            if (StartsWith(entry, "PATH=")) entry = "PATH=" + tools + ":" + entry.substr(5);
        }
        fEnvironment.push_back("CC=" + tools + "/cc");
    }

    TScratchDirectory fScratch;
    std::string fHome;
    std::vector<std::string> fEnvironment;
    TReadmeExample fExample;
};

TEST_F(InstalledSdk, ReadmeProviderBuiltWithPkgConfigIsServedByTheInstalledZenta) {
    WriteExampleFiles({"Hello.c", "Hello.reg.mof", "Hello.classes.mof"});
    BuildAndServe("pkg-config", {ExampleDirectory() + "/mydir"});
}

// The README installs the module beside the bundled ones and then asks for
// it without --providers: both directories must serve it.
TEST_F(InstalledSdk, ReadmeProviderBuiltWithTheCMakePackageIsServedFromItsBuildAndInstallDirectories) {
    WriteExampleFiles({"Hello.c", "Hello.reg.mof", "Hello.classes.mof", "CMakeLists.txt"});
    BuildAndServe("cmake", {ExampleDirectory() + "/build", Prefix() + "/" + kInstalledLibraries});
}

// A document under a name the library never looks for is refused when the
// user's project is configured, naming the file and the names expected.
TEST_F(InstalledSdk, AddProviderRefusesADocumentTheLibraryWouldNotFind) {
    WriteExampleFiles({"Hello.c", "Hello.classes.mof"});
    WriteFile(ExampleDirectory() + "/Hello-registration.mof", "");
    WriteFile(ExampleDirectory() + "/CMakeLists.txt",
              "cmake_minimum_required(VERSION 3.16)\nproject(Hello C)\nfind_package(ZentaCMPI REQUIRED)\n"
              "zenta_add_provider(Hello SOURCES Hello.c DOCUMENTS Hello-registration.mof Hello.classes.mof)\n");
    const TCommandRun configure = RunCommand(
        {ZENTA_CMAKE, "-S", ExampleDirectory(), "-B", ExampleDirectory() + "/build", "-DCMAKE_PREFIX_PATH=" + Prefix()},
        fEnvironment);
    EXPECT_NE(configure.status, 0);
    EXPECT_NE(configure.err.find("Hello-registration.mof must be named"), std::string::npos) << configure.err;
    EXPECT_NE(configure.err.find("Hello.reg.mof"), std::string::npos) << configure.err;
}

// Whatever the build puts beside the libraries (modules, documents of any
// format, the standard documents) is installed beside them, unchanged.
TEST_F(InstalledSdk, InstallsEveryFileOfTheBuildLibraryDirectory) {
    const std::string installed = Prefix() + "/" + kInstalledLibraries;
    const std::set<std::string> built = FilesBelow(kLibraryDirectory);
    const std::set<std::string> present = FilesBelow(installed);
    for (const std::string& file : built) {
        ASSERT_TRUE(present.count(file)) << file << " is not installed";
        if (!IsOurs(file)) {
            EXPECT_EQ(ReadFile(installed + "/" + file), ReadFile(kLibraryDirectory + "/" + file)) << file;
        }
    }
    EXPECT_EQ(FilesBelow(Prefix() + "/include/cmpi"), FilesBelow(ZENTA_SOURCE_DIR "/include/cmpi"));
}

// Moved elsewhere, the tree answers as the build tree does, and every host
// library and module the dynamic loader maps comes from the moved tree.
TEST_F(InstalledSdk, AMovedTreeAnswersFromItselfAlone) {
    const std::string moved = fHome + "/moved";
    fs::rename(Prefix(), moved);
    const std::string zenta = moved + "/bin/zenta";

    EXPECT_EQ(RunChecked({zenta, "--version"}, fEnvironment).out, "zenta " ZENTA_VERSION "\n");
    const nlohmann::json answer = nlohmann::json::parse(RunChecked({zenta, "--json", "providers"}, fEnvironment).out);
    EXPECT_FALSE(answer["providers"].empty());
    EXPECT_EQ(answer, BuildTreeAnswer({"--json", "providers"}));

    std::vector<std::string> traced(fEnvironment);
    traced.push_back("LD_DEBUG=files");
    const TCommandRun run = RunChecked({zenta, "providers"}, traced);
    std::set<std::string> mapped;
    std::istringstream lines(run.err);
    const std::string marker = "calling init: ";
    for (std::string line; std::getline(lines, line);) {
        const std::string::size_type at = line.find(marker);
        if (at == std::string::npos || !IsOurs(line.substr(at + marker.size()))) continue;
        const std::string path = fs::path(line.substr(at + marker.size())).lexically_normal().string();
        // The worker opens the library and the modules through the links of
        // its private staging directory, which mirrors the directory served.
        const bool staged = path.find("/zenta-providers-") != std::string::npos;
        EXPECT_TRUE(StartsWith(path, moved + "/") || staged) << path << " does not come from the moved tree";
        mapped.insert(fs::path(path).filename().string());
    }
    for (const std::string& file : FilesBelow(kLibraryDirectory)) {
        if (IsOurs(file)) {
            EXPECT_TRUE(mapped.count(file)) << file << " was not loaded";
        }
    }
}

std::string Trimmed(const std::string& text) {
    const std::string::size_type first = text.find_first_not_of(" \n");
    const std::string::size_type last = text.find_last_not_of(" \n");
    return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

// The names of the packages a Depends field lists.
std::set<std::string> DependedPackages(const std::string& field) {
    std::set<std::string> names;
    std::istringstream entries(field);
    for (std::string entry; std::getline(entries, entry, ',');) {
        entry = Trimmed(entry);
        names.insert(entry.substr(0, entry.find_first_of(" (:")));
    }
    return names;
}

// The package that installed `path` on this machine ("libc6" for the C
// library), or empty if none did.
std::string OwningPackage(const std::string& path, const std::vector<std::string>& environment) {
    for (const std::string& candidate : {path, fs::canonical(path).string()}) {
        const TCommandRun owner = RunCommand({"dpkg", "-S", candidate}, environment);
        if (owner.status == 0) return owner.out.substr(0, owner.out.find_first_of(":"));
    }
    return std::string();
}

// The package holds the tool, its libraries and the bundled modules, which
// answer from the unpacked tree as the build tree does, and it depends on
// the package of every shared library they need from the system.
TEST(DebianPackage, HoldsAWorkingZentaAndDependsOnWhatItLinks) {
    const TScratchDirectory scratch;
    const std::vector<std::string> environment = EnvironmentWith({}, kForeignVariables);
    RunChecked({ZENTA_CPACK, "-G", "DEB", "--config", kBuildDirectory + "/CPackConfig.cmake", "-B",
                scratch.Path() + "/out"},
               environment);
    std::string package;
    for (const fs::directory_entry& entry : fs::directory_iterator(scratch.Path() + "/out")) {
        if (entry.path().extension() == ".deb") package = entry.path().string();
    }
    ASSERT_FALSE(package.empty()) << "cpack made no .deb";

    const std::string root = scratch.Path() + "/root";
    RunChecked({"dpkg-deb", "-x", package, root}, environment);
    const std::string zenta = root + "/usr/bin/zenta";
    const TCommandRun answer = RunChecked({zenta, "--json", "providers"}, environment);
    EXPECT_EQ(nlohmann::json::parse(answer.out), BuildTreeAnswer({"--json", "providers"}));

    const std::string architecture = Trimmed(RunChecked({"dpkg-deb", "-f", package, "Architecture"}, environment).out);
    EXPECT_EQ(architecture, ZENTA_TARGET_BITS == 32 ? std::string("i386")
                                                    : Trimmed(RunChecked({"dpkg", "--print-architecture"}, environment).out));

    const std::set<std::string> depends =
        DependedPackages(RunChecked({"dpkg-deb", "-f", package, "Depends"}, environment).out);
    std::vector<std::string> ldd = {"ldd", zenta, root + "/usr/bin/zentad"};
    for (const std::string& file : FilesBelow(root + "/usr/lib/zenta")) {
        if (fs::path(file).extension() == ".so") ldd.push_back(root + "/usr/lib/zenta/" + file);
    }
    std::istringstream lines(RunChecked(ldd, environment).out);
    std::set<std::string> needed;
    for (std::string line; std::getline(lines, line);) {
        const std::string::size_type arrow = line.find("=> /");
        if (arrow == std::string::npos) continue;
        const std::string path = line.substr(arrow + 3, line.find(" (", arrow) - arrow - 3);
        if (!StartsWith(path, root + "/")) needed.insert(path);
    }
    ASSERT_FALSE(needed.empty());
    for (const std::string& library : needed) {
        const std::string owner = OwningPackage(library, environment);
        EXPECT_TRUE(depends.count(owner)) << library << " comes from \"" << owner << "\", which Depends lacks";
    }
}

}  // namespace
