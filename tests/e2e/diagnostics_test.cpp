// The mistakes provider writers make, each in a directory of its own beside a
// working module: every one gets a message naming the culprit, from a request
// and from zenta check, and none can take zenta down.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ZentaRunner.h"

namespace {

// How the crashing provider's worker ends: by its signal, or through the
// sanitizer that caught the bad access first.
const char* const kCrashed = ZENTA_SANITIZED ? "ended the worker process with exit status 1" : "crashed with SIGSEGV";

class Diagnostics : public ::testing::Test {
protected:
    TZentaRun Serve(const std::string& directory, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--providers", Modules(directory)});
        const TZentaRun run = RunZenta(arguments, fTemporary.Path());
        EXPECT_TRUE(fTemporary.Entries().empty()) << "zenta left its staging directory behind";
        // Neither the loader's 127 nor a signal's 134, 135 or 139.
        EXPECT_TRUE(run.status == 0 || run.status == 1) << run.status << "\n" << run.err;
        return run;
    }

    TZentaRun Check(const std::string& directory) {
        return Serve(directory, {"--timeout", "5", "check"});
    }

    TScratchDirectory fTemporary;
};

void ExpectSaid(const TZentaRun& run, const std::string& part) {
    EXPECT_NE(run.err.find(part), std::string::npos) << "stderr lacks: " << part << "\n" << run.err;
}

void ExpectReported(const TZentaRun& run, const std::string& line) {
    EXPECT_NE(run.out.find(line), std::string::npos) << "the report lacks: " << line << "\n" << run.out;
}

}  // namespace

TEST_F(Diagnostics, ModulesThatWouldKillTheHostAreLeftOutAndTheOthersServed) {
    const struct {
        const char* directory;
        const char* file;
        const char* reason;
    } cases[] = {
        {"undefined", "Undefined.cmpi.so", "undefined symbol: zentaTestDefinedNowhere"},
        {"truncated", "Truncated.cmpi.so", "truncated: 4000 of at least"},
        {"otherwidth", "Wide.cmpi.so", sizeof(void*) == 8 ? "a 32-bit module; this host runs 64-bit code"
                                                           : "a 64-bit module; this host runs 32-bit code"},
    };
    for (const auto& c : cases) {
        const TZentaRun run = Serve(c.directory, {"ein", "Probe_Item"});
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.out, "Probe_Item.Id=\"one\"\nProbe_Item.Id=\"two\"\n");
        ExpectSaid(run, "zenta: " + Modules(c.directory) + "/" + c.file + ": left out: " + c.reason);
        ExpectReported(Check(c.directory), std::string(c.file) + ": error: cannot be loaded: " + c.reason);
    }
}

TEST_F(Diagnostics, ACrashOrAHangCostsTheRequestAndNamesTheProvider) {
    const TZentaRun crash = Serve("crash", {"ei", "Crash_Item"});
    EXPECT_EQ(crash.status, 1);
    ExpectSaid(crash, std::string("zenta: provider Crash_ItemProvider (module Crash.cmpi.so) ") + kCrashed +
                          " while answering \"ei Crash_Item\"\n");
    const TZentaRun hang = Serve("crash", {"--timeout", "1", "gi", "Crash_Item.Id=\"x\""});
    EXPECT_EQ(hang.status, 1);
    ExpectSaid(hang, "zenta: provider Crash_ItemProvider (module Crash.cmpi.so) did not answer \"gi "
                     "Crash_Item.Id=\"x\"\" within 1 seconds");
    // The module beside them is served as ever.
    const TZentaRun good = Serve("crash", {"ein", "Probe_Item"});
    EXPECT_EQ(good.status, 0) << good.err;
    ExpectReported(Check("crash"), std::string("Crash.cmpi.so: error: trying \"ein Crash_Item\": provider "
                                               "Crash_ItemProvider (module Crash.cmpi.so) ") +
                                       kCrashed + " while answering \"ein Crash_Item\"");
}

TEST_F(Diagnostics, RegistrationMistakesAreWarnedAboutWhenARequestRuns) {
    const TZentaRun typo = Serve("typo", {"ei", "Probe_Item"});
    EXPECT_EQ(typo.status, 1);
    ExpectSaid(typo, " WARNING " + Modules("typo") + "/Typo.reg.xml: provider Probe_ItemProvider: the class "
                     "\"Probe_Iten\" is defined by no document: it is not served; did you mean Probe_Item?");
    ExpectSaid(typo, "zenta: class Probe_Item is served by no provider, nor is any of its subclasses\n");

    const TZentaRun misnamed = Serve("misnamed", {"ein", "Probe_Item"});
    EXPECT_EQ(misnamed.status, 1);
    ExpectSaid(misnamed, "Misnamed.cmpi.so: provider Probe_ItmProvider: the module exports no factory for it");
    ExpectSaid(misnamed, "did you mean Probe_ItemProvider?");
    ExpectSaid(misnamed, "zenta: Probe_Item: provider Probe_ItmProvider (module Misnamed.cmpi.so) has no Instance MI");

    const TZentaRun methods = Serve("nomethods", {"im", "Probe_Item.Id=\"one\"", "Echo", "Text=hi"});
    EXPECT_EQ(methods.status, 1);
    EXPECT_EQ(methods.out, "");
    ExpectSaid(methods, "zenta: Probe_Item: provider Probe_BrokenProvider (module NoMethods.cmpi.so) has no Method MI");

    const TZentaRun misplaced = Serve("misplaced", {"ein", "Probe_Item"});
    EXPECT_EQ(misplaced.status, 0);
    ExpectSaid(misplaced, "the capability for class Probe_Broken names the provider Probe_BrokenProvider but follows "
                          "PG_Provider Probe_ItemProvider: it is filed under Probe_ItemProvider");

    const TZentaRun association = Serve("assoconly", {"ein", "Link_Pair"});
    EXPECT_EQ(association.status, 1);
    ExpectSaid(association, "the association Link_Pair is served only through an association MI, which this host "
                            "never calls");

    // At --log-level 0 the warnings are kept back, as every warning is.
    EXPECT_EQ(Serve("typo", {"--log-level", "0", "ei", "Probe_Item"}).err.find("WARNING"), std::string::npos);
}

TEST_F(Diagnostics, CheckReportsEveryMistakeAndExitsOneOnErrors) {
    const TZentaRun typo = Check("typo");
    EXPECT_EQ(typo.status, 1);
    ExpectReported(typo, "Typo.reg.xml: error: provider Probe_ItemProvider: the class \"Probe_Iten\" is defined by "
                         "no document: it is not served; did you mean Probe_Item?");
    EXPECT_NE(typo.out.find("zenta check: " + Modules("typo") + ": 1 modules, 1 providers: 1 errors, 0 warnings\n"),
              std::string::npos) << typo.out;

    const TZentaRun named = Check("libnamed");
    EXPECT_EQ(named.status, 0) << "warnings alone are no failure";
    ExpectReported(named, "Probe.reg.xml: warning: there is no module Probe.cmpi.so beside it: nothing reads it; "
                          "libProbe.so is named as other servers name modules: this host loads NAME.cmpi.so, so "
                          "rename it Probe.cmpi.so");

    ExpectReported(Check("noreg"), "Probe.cmpi.so: warning: no registration document beside it: it becomes one "
                                   "provider with an empty name that serves every class of Probe.classes.xml");
    ExpectReported(Check("nomethods"), "NoMethods.reg.xml: warning: provider Probe_BrokenProvider: the class "
                                       "Probe_Item declares methods, but the provider has no method MI (its module "
                                       "exports neither Probe_BrokenProvider_Create_MethodMI nor "
                                       "_Generic_Create_MethodMI): calls to them fail");
    // A provider's failing status is reported with its code and message.
    ExpectReported(Check("good"), "Probe.cmpi.so: error: trying \"ein Probe_Broken\": Probe_Broken: provider "
                                  "Probe_BrokenProvider: CIM_ERR_FAILED");
}

TEST_F(Diagnostics, TheBundledModulesCheckClean) {
    const TZentaRun run = RunZenta({"check"});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_NE(run.out.find(": no problems found\n"), std::string::npos) << run.out;
    const TZentaRun json = RunZenta({"--json", "check"});
    EXPECT_EQ(json.Json().at("errors"), 0);
}

TEST_F(Diagnostics, APropertyTheClassDoesNotDeclareFailsTheRequestNamingTheProvider) {
    const TZentaRun run = Serve("sloppy", {"ei", "Probe_Item"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    ExpectSaid(run, "zenta: Probe_Item: provider Probe_ItemProvider: kInvalidProperty (8): no such property: class "
                    "Probe_Item has no property Size\n");
}
