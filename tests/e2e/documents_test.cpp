// zenta on documents as users bring them: a third-party package in MOF over
// the DMTF schema, and hostile provider directories whose bad modules are
// each refused with one line naming the file while the good one is served.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "ZentaRunner.h"

namespace {

TEST(Documents, AThirdPartyPackageInMofIsServedOverTheSchema) {
    if (!std::filesystem::is_directory(ZENTA_SCHEMA_DIR)) GTEST_SKIP() << "no CIM schema at " << ZENTA_SCHEMA_DIR;
    const TZentaRun run =
        RunZenta({"--json", "--schema", ZENTA_SCHEMA_DIR, "--providers", Modules("acme"), "ei", "Acme_Widget"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const nlohmann::json instances = run.Json()["instances"];
    ASSERT_EQ(instances.size(), 2u);
    EXPECT_EQ(instances[1]["properties"]["WidgetId"], "w2");
    EXPECT_EQ(instances[1]["properties"]["Teeth"], 20);
    EXPECT_EQ(instances[1]["properties"]["Caption"], "An Acme widget") << "a property the schema class declares";

    const TZentaRun classes = RunZenta({"classes", "--deep", "CIM_LogicalElement"}, "");
    EXPECT_NE(classes.status, 0) << "without the schema the schema's classes are unknown";
    setenv("ZENTA_SCHEMA_PATH", (std::string("/nonexistent:") + ZENTA_SCHEMA_DIR).c_str(), 1);
    const TZentaRun fromEnvironment = RunZenta({"--providers", Modules("acme"), "classes", "--deep", "CIM_LogicalElement"});
    unsetenv("ZENTA_SCHEMA_PATH");
    EXPECT_EQ(fromEnvironment.status, 0) << fromEnvironment.err;
    EXPECT_EQ(LinesWith(fromEnvironment.out, "Acme_Widget"), 1u);
    EXPECT_EQ(LinesWith(fromEnvironment.err, "schema directory /nonexistent cannot be read"), 1u) << fromEnvironment.err;
}

// A provider directory of copies of the working Probe module, each copy
// with documents that break one rule.
class Hostile : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::copy(Modules("good"), fDirectory.Path() + "/dir");
        fDir = fDirectory.Path() + "/dir";
    }
    void AddModule(const std::string& name) {
        std::filesystem::copy_file(fDir + "/Probe.cmpi.so", fDir + "/" + name + ".cmpi.so");
    }
    void Write(const std::string& name, const std::string& text) { std::ofstream(fDir + "/" + name) << text; }
    std::string Registration(const std::string& module, const std::string& provider) {
        return "instance of PG_ProviderModule { Name = \"" + module + "\"; };\n"
               "instance of PG_Provider { ProviderModuleName = \"" + module + "\"; Name = \"" + provider + "\"; };\n"
               "instance of PG_ProviderCapabilities { ProviderModuleName = \"" + module + "\"; ProviderName = \"" +
               provider + "\"; CapabilityID = \"1\"; ClassName = \"Probe_Item\"; Namespaces = {\"root/probe\"}; };\n";
    }
    TScratchDirectory fDirectory;
    std::string fDir;
};

TEST_F(Hostile, EachBadModuleIsOneLineNamingItsFileAndTheGoodOneIsServed) {
    AddModule("Long");  // a provider name that would overflow the library's entry-point buffer
    Write("Long.reg.mof", Registration("Long", std::string(300, 'L')));
    AddModule("Fifo");  // a registration no writer ever opens
    ASSERT_EQ(::mkfifo((fDir + "/Fifo.reg.xml").c_str(), 0600), 0);
    AddModule("Zero");  // a class document without end
    Write("Zero.reg.mof", Registration("Zero", "ZeroProvider"));
    ASSERT_EQ(::symlink("/dev/zero", (fDir + "/Zero.classes.mof").c_str()), 0);
    AddModule("Deep");  // wrappers nested far beyond any stack
    std::string deep = "<CIM><DECLARATION>";
    for (int i = 0; i < 50000; ++i) deep += "<DECLGROUP>";
    Write("Deep.classes.xml", deep);
    AddModule("Both");  // documents in two formats
    Write("Both.reg.mof", Registration("Both", "BothProvider"));
    Write("Both.classes.xml", "<CIM/>");

    const TZentaRun run = RunZenta({"--providers", fDir, "ei", "Probe_Item"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(LinesWith(run.out, "instance of Probe_Item"), 2u);
    EXPECT_EQ(LinesWith(run.err, fDir + "/Long.reg.mof:2:"), 1u) << run.err;
    EXPECT_EQ(LinesWith(run.err, "has 300 bytes"), 1u);
    EXPECT_EQ(LinesWith(run.err, fDir + "/Fifo.reg.xml: not a regular file"), 1u) << run.err;
    EXPECT_EQ(LinesWith(run.err, fDir + "/Zero.classes.mof: not a regular file"), 1u) << run.err;
    EXPECT_EQ(LinesWith(run.err, fDir + "/Deep.classes.xml:"), 1u) << run.err;
    EXPECT_EQ(LinesWith(run.err, "has documents in both formats"), 1u) << run.err;
}

TEST_F(Hostile, AClassOfAnotherModuleAndASharedProviderNameAreNamedWithBothFiles) {
    // "Copy" sorts before "Probe": it defines Probe's class first, and
    // Probe's own definition is refused naming both documents.
    AddModule("Copy");
    std::filesystem::copy_file(fDir + "/Probe.classes.xml", fDir + "/Copy.classes.xml");
    std::string registration = ReadFile(fDir + "/Probe.reg.xml");
    for (std::size_t at; (at = registration.find(">Probe<")) != std::string::npos;) registration.replace(at, 7, ">Copy<");
    Write("Copy.reg.xml", registration);
    const TZentaRun run = RunZenta({"--providers", fDir, "providers"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(LinesWith(run.err, fDir + "/Probe.classes.xml:6:"), 1u) << run.err;
    EXPECT_EQ(LinesWith(run.err, "already defined by another module, at " + fDir + "/Copy.classes.xml:6:"), 1u);
    EXPECT_EQ(LinesWith(run.err, "provider Probe_ItemProvider is registered by " + fDir + "/Copy.reg.xml"), 1u)
        << run.err;
}

}  // namespace
