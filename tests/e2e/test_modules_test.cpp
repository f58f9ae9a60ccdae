// zenta --providers DIR on test modules: broken modules and documents are logged and
// skipped, provider failures fail the request, nothing is left in the temporary directory.
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ZentaRunner.h"

namespace {

class TestModules : public ::testing::Test {
protected:
    TZentaRun Serve(const std::string& directory, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--providers", Modules(directory)});
        const TZentaRun run = RunZenta(arguments, fTemporary.Path());
        EXPECT_TRUE(fTemporary.Entries().empty()) << "zenta left " << fTemporary.Entries().front() << " behind";
        return run;
    }

    void ExpectFailure(const std::string& directory, const std::vector<std::string>& arguments,
                       const std::string& message) {
        const TZentaRun run = Serve(directory, arguments);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
    }

    TScratchDirectory fTemporary;
};

}  // namespace

TEST_F(TestModules, VerbsServeTheModulesOfTheDirectoryInsteadOfTheBundledOnes) {
    const TZentaRun items = Serve("good", {"--json", "ei", "Probe_Item"});
    ASSERT_EQ(items.status, 0) << items.err;
    EXPECT_EQ(items.Json().at("instances").at(1).at("properties").at("Size"), 2);
    ExpectFailure("good", {"ei", "ZENTA_Dog"}, "unknown class \"ZENTA_Dog\"");

    const TZentaRun echo = Serve("good", {"--json", "im", "Probe_Item.Id=\"one\"", "Echo", "Text=hello world"});
    ASSERT_EQ(echo.status, 0) << echo.err;
    EXPECT_EQ(echo.Json().at("outParameters"), nlohmann::json({{"Reply", "echo:hello world"}}));
    EXPECT_EQ(Serve("good", {"--json", "im", "Probe_Item", "Echo"}).Json().at("outParameters").at("Reply"), "echo:");
    // Probe has no associations: the walks answer nothing, successfully.
    for (const char* walk : {"ai", "ri"}) {
        const TZentaRun run = Serve("good", {walk, "Probe_Item.Id=\"one\""});
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.out, "");
    }
}

TEST_F(TestModules, AProviderThatFailsFailsTheRequest) {
    ExpectFailure("good", {"ei", "Probe_Broken"}, "zenta: Probe_Broken: provider Probe_BrokenProvider: CIM_ERR_FAILED\n");
    ExpectFailure("good", {"im", "Probe_Item.Id=\"one\"", "Fail"},
                  "zenta: Probe_Item: method Fail: provider Probe_ItemProvider: CIM_ERR_ACCESS_DENIED: "
                  "cannot open the vault\n");
    ExpectFailure("good", {"gi", "Probe_Broken.Id=\"x\""}, "zenta: Probe_Broken: provider Probe_BrokenProvider: CIM_ERR_FAILED");
}

// mixed/ holds a file that is no library, a module whose class document
// breaks off, and the working module.
TEST_F(TestModules, BrokenModulesAndDocumentsAreLoggedWhileTheGoodOnesAreServed) {
    const TZentaRun run = Serve("mixed", {"ein", "Probe_Item"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "Probe_Item.Id=\"one\"\nProbe_Item.Id=\"two\"\n");
    // Messages name the files as they lie in the directory the user gave.
    const std::string mixed = Modules("mixed");
    EXPECT_EQ(LinesWith(run.err, "zenta: " + mixed + "/Broken.cmpi.so: left out: not an ELF file"), 1u) << run.err;
    EXPECT_EQ(LinesWith(run.err, " ERROR " + mixed + "/Corrupt.classes.xml"), 1u) << run.err;
    EXPECT_EQ(LinesWith(run.err, "zenta-providers-"), 0u) << run.err;
    ExpectFailure("mixed", {"ei", "Corrupt_Item"}, "unknown class \"Corrupt_Item\"");
}

TEST_F(TestModules, LogLevelAndLogFileRouteTheHostLog) {
    TScratchDirectory logs;
    const std::string logFile = logs.Path() + "/zenta.log";
    const TZentaRun run = Serve("mixed", {"--log-file", logFile, "--log-level", "3", "providers"});
    EXPECT_EQ(run.status, 0);
    // The module left out before loading is the tool's word, not a log line.
    EXPECT_EQ(LinesWith(run.err, "left out"), 1u) << run.err;
    EXPECT_EQ(LinesWith(run.err, " ERROR "), 0u) << "log lines went to stderr despite --log-file";
    const std::string log = ReadFile(logFile);
    EXPECT_EQ(LinesWith(log, " TRACE TCMPINamespace::LoadPlugin created Provider Probe_ItemProvider"), 1u) << log;
    EXPECT_EQ(LinesWith(log, " ERROR "), 1u) << log;

    const TZentaRun quiet = Serve("mixed", {"--log-level", "0", "ein", "Probe_Item"});
    EXPECT_EQ(LinesWith(quiet.err, " TRACE "), 0u) << quiet.err;
    EXPECT_EQ(LinesWith(quiet.err, " ERROR "), 1u) << quiet.err;
}

TEST_F(TestModules, TheStagingDirectoryGoesEvenWhenZentaIsKilled) {
    const pid_t zenta =
        StartZenta({"--providers", Modules("good"), "im", "Probe_Item", "Wait", "Seconds=20"}, fTemporary.Path());
    const auto waitUntil = [this](bool staged) {
        const auto giveUp = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (fTemporary.Entries().empty() == staged && std::chrono::steady_clock::now() < giveUp) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    };
    waitUntil(true);
    EXPECT_EQ(fTemporary.Entries().size(), 1u) << "no staging directory while zenta ran";
    // Well into the request: the directory is complete and its helper runs.
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    kill(zenta, SIGKILL);
    int status = 0;
    waitpid(zenta, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    waitUntil(false);
    EXPECT_TRUE(fTemporary.Entries().empty()) << "the staging directory outlived a killed zenta";
}
