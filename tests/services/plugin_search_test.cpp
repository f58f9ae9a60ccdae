#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TOSSpecific.h"
#include "TestSupport.h"

using NVURZENTA20::TOSSpecific;
using ZentaTest::TTempDirectory;
using ZentaTest::WriteFile;

namespace fs = std::filesystem;

namespace {

typedef std::vector<std::string> TPaths;

class PluginSearch : public testing::Test {
protected:
    void AddFile(const std::string& name) { WriteFile(fDir / name, "module"); }
    void AddDirectory(const std::string& name) { fs::create_directory(fDir / name); }
    void AddLink(const std::string& name, const std::string& target) { fs::create_symlink(target, fDir / name); }
    std::string InDir(const std::string& name) const { return fDir / name; }

    TTempDirectory fDir;
    TTempDirectory fElsewhere;
};

// Runs the test body with another working directory and restores it.
class TScopedWorkingDirectory {
public:
    explicit TScopedWorkingDirectory(const fs::path& directory) : fOld(fs::current_path()) {
        fs::current_path(directory);
    }
    ~TScopedWorkingDirectory() { fs::current_path(fOld); }

private:
    fs::path fOld;
};

}  // namespace

TEST_F(PluginSearch, ListsOnlyRegularFilesOfTheKindSortedByName) {
    for (const char* name : {"b.cmpi.so", "Z.cmpi.so", "a0.cmpi.so", "a.cmpi.so"}) {
        AddFile(name);
    }
    // Near misses of the name rule.
    for (const char* name : {"d.nsp.so", "e.cmpi.so.1", "f.cmpi.sox", "g.CMPI.so", "cmpi.so", ".cmpi.so", "h.cmpiso"}) {
        AddFile(name);
    }
    AddDirectory("x.cmpi.so");

    EXPECT_EQ(TOSSpecific::FindPlugins(fDir.Path().string(), "cmpi"),
              (TPaths{InDir("Z.cmpi.so"), InDir("a.cmpi.so"), InDir("a0.cmpi.so"), InDir("b.cmpi.so")}));
    EXPECT_EQ(TOSSpecific::FindPlugins(fDir.Path().string(), "nsp"), TPaths{InDir("d.nsp.so")});
}

TEST_F(PluginSearch, FollowsLinksToRegularFilesAndKeepsTheLinkPath) {
    WriteFile(fElsewhere / "Real.cmpi.so", "module");
    fs::create_directory(fElsewhere / "Folder.cmpi.so");
    AddLink("Linked.cmpi.so", fElsewhere / "Real.cmpi.so");
    AddLink("Dangling.cmpi.so", fElsewhere / "Missing.cmpi.so");
    AddLink("ToFolder.cmpi.so", fElsewhere / "Folder.cmpi.so");

    EXPECT_EQ(TOSSpecific::FindPlugins(fDir.Path().string(), "cmpi"), TPaths{InDir("Linked.cmpi.so")});
}

TEST_F(PluginSearch, DirectoryReachedThroughALinkIsNotResolved) {
    WriteFile(fElsewhere / "Foo.cmpi.so", "module");
    AddLink("served", fElsewhere.Path().string());

    EXPECT_EQ(TOSSpecific::FindPlugins(InDir("served"), "cmpi"), TPaths{InDir("served/Foo.cmpi.so")});
}

TEST_F(PluginSearch, NothingToListGivesAnEmptyList) {
    AddFile("plain.txt");
    for (const std::string& directory : {InDir("missing"), InDir("plain.txt"), fDir.Path().string(), std::string()}) {
        EXPECT_TRUE(TOSSpecific::FindPlugins(directory, "cmpi").empty()) << "directory \"" << directory << "\"";
    }
}

TEST_F(PluginSearch, RelativeDirectoryYieldsAbsolutePaths) {
    AddDirectory("mods");
    WriteFile(InDir("mods/Foo.cmpi.so"), "module");
    const TPaths expected{InDir("mods/Foo.cmpi.so")};

    TScopedWorkingDirectory inside(fDir.Path());
    for (const char* directory : {"mods", "mods/", "./mods", "./mods/."}) {
        EXPECT_EQ(TOSSpecific::FindPlugins(directory, "cmpi"), expected) << "directory \"" << directory << "\"";
    }
}

TEST(DocumentPaths, ReplaceTheTrailingModuleSuffixOrAppend) {
    struct TCase {
        const char* module;
        const char* kind;
        const char* registration;
        const char* specification;
    };
    const TCase cases[] = {
        {"/opt/p/Foo.cmpi.so", "cmpi", "/opt/p/Foo.reg.xml", "/opt/p/Foo.classes.xml"},
        {"Foo.cmpi.so", "cmpi", "Foo.reg.xml", "Foo.classes.xml"},
        {"/opt/p/Foo.nsp.so", "nsp", "/opt/p/Foo.reg.xml", "/opt/p/Foo.classes.xml"},
        // Only the trailing suffix counts, and only once.
        {"/opt/x.cmpi.so/Foo.cmpi.so", "cmpi", "/opt/x.cmpi.so/Foo.reg.xml", "/opt/x.cmpi.so/Foo.classes.xml"},
        {"/opt/p/Foo.cmpi.so.cmpi.so", "cmpi", "/opt/p/Foo.cmpi.so.reg.xml", "/opt/p/Foo.cmpi.so.classes.xml"},
        // Without the suffix of the kind the document suffix is appended.
        {"/opt/p/Foo.nsp.so", "cmpi", "/opt/p/Foo.nsp.so.reg.xml", "/opt/p/Foo.nsp.so.classes.xml"},
        {"/opt/p/Foo.cmpi.so.1", "cmpi", "/opt/p/Foo.cmpi.so.1.reg.xml", "/opt/p/Foo.cmpi.so.1.classes.xml"},
        {"/opt/p/Foo", "cmpi", "/opt/p/Foo.reg.xml", "/opt/p/Foo.classes.xml"},
    };
    for (const TCase& c : cases) {
        EXPECT_EQ(TOSSpecific::BuildRegistrationPath(c.module, c.kind), c.registration) << c.module << " " << c.kind;
        EXPECT_EQ(TOSSpecific::BuildSpecificationPath(c.module, c.kind), c.specification) << c.module << " " << c.kind;
    }
}
