// zenta --providers DIR on directories of test modules: the modules of DIR
// are served instead of the bundled ones, broken modules and documents are
// logged and skipped, provider failures fail the request, and nothing is
// left behind in the temporary directory.
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <fstream>
#include <thread>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ZentaRunner.h"

namespace {

class TestModules : public ::testing::Test {
protected:
    // Runs zenta on the test modules of `directory`.
    TZentaRun Serve(const std::string& directory, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), ::TestModules(directory));
        arguments.insert(arguments.begin(), "--providers");
        const TZentaRun run = RunZenta(arguments, fTemporary.Path());
        EXPECT_TRUE(fTemporary.Entries().empty()) << "zenta left " << fTemporary.Entries().front() << " behind";
        return run;
    }

    std::vector<std::string> LinesWith(const std::string& text, const char* part) {
        std::vector<std::string> found;
        std::string line;
        std::istringstream in(text);
        while (std::getline(in, line)) {
            if (line.find(part) != std::string::npos) found.push_back(line);
        }
        return found;
    }

    TScratchDirectory fTemporary;
};

}  // namespace

TEST_F(TestModules, TheModulesOfTheDirectoryReplaceTheBundledOnes) {
    const TZentaRun items = Serve("good", {"--json", "ei", "Probe_Item"});
    ASSERT_EQ(items.status, 0) << items.err;
    const nlohmann::json instances = items.Json().at("instances");
    ASSERT_EQ(instances.size(), 2u);
    EXPECT_EQ(instances[0].at("path"), "Probe_Item.Id=\"one\"");
    EXPECT_EQ(instances[1].at("properties").at("Size"), 2);

    const TZentaRun bundled = Serve("good", {"ei", "ZENTA_Dog"});
    EXPECT_EQ(bundled.status, 1);
    EXPECT_NE(bundled.err.find("unknown class \"ZENTA_Dog\""), std::string::npos) << bundled.err;

    const TZentaRun providers = Serve("good", {"--json", "providers"});
    ASSERT_EQ(providers.status, 0);
    EXPECT_EQ(providers.Json().at("providers").size(), 2u);
}

TEST_F(TestModules, EveryVerbWorksOnTestModules) {
    EXPECT_EQ(Serve("good", {"ein", "Probe_Item"}).out, "Probe_Item.Id=\"one\"\nProbe_Item.Id=\"two\"\n");
    const TZentaRun got = Serve("good", {"gi", "Probe_Item.Id=\"two\""});
    EXPECT_EQ(got.status, 0);
    EXPECT_NE(got.out.find("    Size = 2;\n"), std::string::npos) << got.out;
    const TZentaRun echo = Serve("good", {"--json", "im", "Probe_Item.Id=\"one\"", "Echo", "Text=hello world"});
    ASSERT_EQ(echo.status, 0) << echo.err;
    EXPECT_EQ(echo.Json().at("outParameters"), nlohmann::json({{"Reply", "echo:hello world"}}));
    const TZentaRun classEcho = Serve("good", {"--json", "im", "Probe_Item", "Echo"});
    ASSERT_EQ(classEcho.status, 0) << classEcho.err;
    EXPECT_EQ(classEcho.Json().at("outParameters").at("Reply"), "echo:");
    // Probe has no associations: the walks answer nothing, successfully.
    const TZentaRun associated = Serve("good", {"ai", "Probe_Item.Id=\"one\""});
    EXPECT_EQ(associated.status, 0) << associated.err;
    EXPECT_EQ(associated.out, "");
    EXPECT_EQ(Serve("good", {"ri", "Probe_Item.Id=\"one\""}).status, 0);
}

TEST_F(TestModules, AProviderThatFailsFailsTheRequest) {
    const TZentaRun enumeration = Serve("good", {"ei", "Probe_Broken"});
    EXPECT_EQ(enumeration.status, 1);
    EXPECT_EQ(enumeration.out, "");
    EXPECT_NE(enumeration.err.find("provider failure: provider Probe_BrokenProvider failed to enumerate instances"),
              std::string::npos)
        << enumeration.err;

    const TZentaRun method = Serve("good", {"im", "Probe_Item.Id=\"one\"", "Fail"});
    EXPECT_EQ(method.status, 1);
    EXPECT_NE(method.err.find("provider failure: method Fail failed in its provider"), std::string::npos)
        << method.err;

    const TZentaRun get = Serve("good", {"gi", "Probe_Broken.Id=\"x\""});
    EXPECT_EQ(get.status, 1);
    EXPECT_NE(get.err.find("provider Probe_BrokenProvider did not return it"), std::string::npos) << get.err;
}

TEST_F(TestModules, BrokenModulesAndDocumentsAreLoggedWhileTheGoodOnesAreServed) {
    const TZentaRun run = Serve("mixed", {"ein", "Probe_Item"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "Probe_Item.Id=\"one\"\nProbe_Item.Id=\"two\"\n");
    // Log lines name the files as they lie in the directory the user gave.
    const std::string mixed = ::TestModules("mixed");
    EXPECT_EQ(LinesWith(run.err, (mixed + "/Broken.cmpi.so").c_str()).size(), 1u) << run.err;
    const std::vector<std::string> corrupt = LinesWith(run.err, (mixed + "/Corrupt.classes.xml").c_str());
    ASSERT_EQ(corrupt.size(), 1u) << run.err;
    EXPECT_NE(corrupt[0].find(" ERROR "), std::string::npos) << corrupt[0];
    EXPECT_TRUE(LinesWith(run.err, "zenta-providers-").empty()) << run.err;

    const TZentaRun unknown = Serve("mixed", {"ei", "Corrupt_Item"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_NE(unknown.err.find("unknown class \"Corrupt_Item\""), std::string::npos) << unknown.err;
}

TEST_F(TestModules, LogLevelAndLogFileRouteTheHostLog) {
    TScratchDirectory logs;
    const std::string logFile = logs.Path() + "/zenta.log";
    const TZentaRun run = Serve("mixed", {"--log-file", logFile, "--log-level", "3", "providers"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "") << "log lines went to stderr despite --log-file";
    std::ifstream in(logFile);
    const std::string log((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_FALSE(LinesWith(log, " TRACE TCMPINamespace::LoadPlugin created Provider Probe_ItemProvider").empty())
        << log;
    EXPECT_EQ(LinesWith(log, " ERROR ").size(), 2u) << log;

    const TZentaRun quiet = Serve("mixed", {"--log-level", "0", "ein", "Probe_Item"});
    EXPECT_EQ(LinesWith(quiet.err, " TRACE ").size(), 0u) << quiet.err;
    EXPECT_EQ(LinesWith(quiet.err, " ERROR ").size(), 2u) << quiet.err;
}

TEST_F(TestModules, TheStagingDirectoryGoesEvenWhenZentaIsKilled) {
    const pid_t zenta = StartZenta({"--providers", ::TestModules("good"), "im", "Probe_Item", "Wait", "Milliseconds=20000"},
                                   fTemporary.Path());
    const auto patience = std::chrono::seconds(60);
    auto start = std::chrono::steady_clock::now();
    while (fTemporary.Entries().empty() && std::chrono::steady_clock::now() - start < patience) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(fTemporary.Entries().size(), 1u) << "no staging directory while zenta ran";
    // Well into the request: the directory is complete and its helper runs.
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    kill(zenta, SIGKILL);
    int status = 0;
    waitpid(zenta, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    start = std::chrono::steady_clock::now();
    while (!fTemporary.Entries().empty() && std::chrono::steady_clock::now() - start < patience) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(fTemporary.Entries().empty()) << "the staging directory outlived a killed zenta";
}
