// Bad input never crashes zenta: requests that cannot be answered exit 1
// with one line on stderr that says what and why; usage errors exit 2.
#include <sys/stat.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ZentaRunner.h"

namespace {

std::string Describe(const std::vector<std::string>& arguments) {
    std::string text = "zenta";
    for (const std::string& argument : arguments) text += " '" + argument + "'";
    return text;
}

const std::string kProcess = "ZENTA_Process.ProcessId=1";

}  // namespace

TEST(BadInput, FailedRequestsExitOneWithOneLineSayingWhy) {
    const struct TFailure {
        std::vector<std::string> arguments;
        const char* message;  // a part of the one line on stderr
    } failures[] = {
        {{"ei", "Nope"}, "unknown class \"Nope\""},
        {{"ein", "Nope"}, "unknown class \"Nope\""},
        {{"classes", "Nope"}, "unknown class \"Nope\""},
        {{"gi", "Nope.Id=1"}, "unknown class \"Nope\""},
        {{"gi", "ZENTA_Dog.Name="}, "malformed object path \"ZENTA_Dog.Name=\""},
        {{"gi", "ZENTA_Dog.Name=\"Rex"}, "malformed object path"},
        {{"gi", ".Name=\"Rex\""}, "malformed object path"},
        // A provider's own status and message reach the user.
        {{"gi", "ZENTA_Dog.Name=\"Nobody\""},
         "ZENTA_Dog: provider ZENTA_DogProvider: CIM_ERR_NOT_FOUND: no animal of that name"},
        {{"gi", "ZENTA_Process.ProcessId=4294967295"},
         "ZENTA_Process: provider ZENTA_ProcessProvider: CIM_ERR_NOT_FOUND: no such process"},
        {{"gi", "ZENTA_Process.ProcessId=4294967296"}, "key ProcessId: \"4294967296\" is not a valid uint32"},
        {{"gi", "ZENTA_Process.ProcessId=-1"}, "is not a valid uint32"},
        {{"gi", "ZENTA_Dog.Colour=\"black\""}, "Colour is not a key of ZENTA_Dog"},
        {{"gi", "ZENTA_Dog.Breed=\"Beagle\""}, "Breed is not a key of ZENTA_Dog"},
        {{"gi", "ZENTA_Dog"}, "lacks the key Name of ZENTA_Dog"},
        {{"gi", "ZENTA_Animal.Name=\"Rex\""}, "ZENTA_Animal is served by no provider"},
        {{"im", "PG_Provider", "Anything"}, "class PG_Provider is served by no provider"},
        {{"im", "ZENTA_Dog", "Bark"}, "unknown method Bark of class ZENTA_Dog"},
        {{"im", "Nope", "Count"}, "unknown class \"Nope\""},
        {{"im", kProcess, "ReadCommandLine", "MaxLength=lots"}, "parameter maxlength: \"lots\" is not a valid uint32"},
        {{"im", kProcess, "ReadCommandLine", "Colour=red"}, "method ReadCommandLine has no parameter Colour"},
        {{"im", kProcess, "ReadCommandLine", "CommandLine=x"},
         "parameter CommandLine of ReadCommandLine is not an input"},
        {{"im", kProcess, "ReadCommandLine", "Separator"}, "argument \"Separator\" is not NAME=VALUE"},
        {{"im", kProcess, "ReadCommandLine", "=x"}, "is not NAME=VALUE"},
        {{"im", kProcess, "ReadCommandLine", "Separator=a", "separator=b"}, "parameter Separator is given twice"},
        {{"im", "ZENTA_Process.ProcessId=4294967295", "ReadCommandLine"}, "CIM_ERR_NOT_FOUND: no such process"},
        {{"ai", "ZENTA_Dog.Name=\"Nobody\""}, "CIM_ERR_NOT_FOUND: no animal of that name"},
        {{"ei", "ZENTA_Animal", "--namespace", "root/elsewhere"}, "namespace \"root/elsewhere\" is not served here"},
        {{"ei", "PG_Provider"}, "class PG_Provider is served by no provider, nor is any of its subclasses"},
        {{"ein", "PG_Provider"}, "class PG_Provider is served by no provider"},
        {{"gc", "Nope"}, "unknown class \"Nope\""},
        {{"gq", "Nope"}, "unknown qualifier \"Nope\""},
        // Control characters of the user's text never reach the terminal raw.
        {{"gi", "No\x1b[31mpe.Id=1"}, "malformed object path \"No\\x1B[31mpe.Id=1\""},
        {{"ai", kProcess, "--assoc-class", "Nope"}, "unknown class \"Nope\""},
        {{"ai", kProcess, "--result-class", "Nope"}, "unknown class \"Nope\""},
        {{"ri", kProcess, "--result-class", "Nope"}, "unknown class \"Nope\""},
        {{"ri", "ZENTA_Process"}, "lacks the key ProcessId"},
        {{"--log-file", "/nonexistent/zenta/log", "providers"}, "cannot open log file /nonexistent/zenta/log"},
    };
    for (const TFailure& failure : failures) {
        const TZentaRun run = RunZenta(failure.arguments);
        const std::string said = Describe(failure.arguments) + "\n  said: " + run.err + "  want: " + failure.message;
        EXPECT_EQ(run.status, 1) << said;
        EXPECT_EQ(run.out, "") << said;
        EXPECT_EQ(run.err.compare(0, 7, "zenta: "), 0) << said;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << said << "is not one line";
        EXPECT_NE(run.err.find(failure.message), std::string::npos) << said;
    }
}

TEST(BadInput, UsageErrorsExitTwo) {
    const std::vector<std::string> usages[] = {
        {}, {"frobnicate"}, {"gi"}, {"im", "ZENTA_Dog"}, {"ei", "A", "B"}, {"--log-level", "9", "providers"},
        {"--log-level", "many", "providers"}, {"--providers", "/nonexistent/zenta", "providers"},
        {"--no-such-option", "providers"}, {"classes", "--shallow"},
    };
    for (const std::vector<std::string>& arguments : usages) {
        const TZentaRun run = RunZenta(arguments);
        EXPECT_EQ(run.status, 2) << Describe(arguments) << "\n" << run.err;
        EXPECT_EQ(run.out, "") << Describe(arguments);
        EXPECT_NE(run.err, "") << Describe(arguments);
    }
}

TEST(BadInput, HelpExitsZeroAndOptionsMayFollowTheVerb) {
    const TZentaRun help = RunZenta({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--providers DIR"), std::string::npos);
    EXPECT_NE(help.out.find("symbolic links"), std::string::npos);
    const TZentaRun verbHelp = RunZenta({"im", "--help"});
    EXPECT_EQ(verbHelp.status, 0);
    EXPECT_NE(verbHelp.out.find("NAME=VALUE"), std::string::npos);
    const TZentaRun late = RunZenta({"ein", "ZENTA_Dog", "--json"});
    EXPECT_EQ(late.status, 0) << late.err;
    EXPECT_EQ(late.Json().at("paths").size(), 2u);
}

// The library keeps the path it was loaded from in 512 bytes: a long
// temporary directory must never become that path, and an unusable one,
// or a stale log file setting, must not stop a request.
TEST(BadInput, TemporaryDirectoryAndLogFileSettingsNeverStopARequest) {
    TScratchDirectory scratch;
    std::string longDirectory = scratch.Path();
    while (longDirectory.size() < 700) {
        longDirectory += "/" + std::string(100, 'd');
        ASSERT_EQ(mkdir(longDirectory.c_str(), 0700), 0);
    }
    for (const std::string& temporary : {longDirectory, std::string("/nonexistent/zenta")}) {
        const TZentaRun run = RunZenta({"ein", "ZENTA_Dog"}, temporary);
        EXPECT_EQ(run.status, 0) << temporary << "\n" << run.err;
        EXPECT_EQ(run.out, "ZENTA_Dog.Name=\"Rex\"\nZENTA_Dog.Name=\"Fido\"\n") << run.err;
    }
    const TZentaRun stale = RunZenta({"ein", "ZENTA_Dog"}, "", {"ZENTA_LOG_FILE=/nonexistent/zenta.log"});
    EXPECT_EQ(stale.status, 0);
    EXPECT_NE(stale.err.find("zenta: cannot open log file /nonexistent/zenta.log (ZENTA_LOG_FILE)"), std::string::npos)
        << stale.err;
}
