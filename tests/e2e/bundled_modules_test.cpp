// Every verb of zenta on the bundled provider modules (System, Sample),
// checked against what the system and the sample data really hold.
#include <sys/utsname.h>
#include <unistd.h>

#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ZentaRunner.h"

using nlohmann::json;

namespace {

std::string OwnProcessPath() { return "ZENTA_Process.ProcessId=" + std::to_string(getpid()); }

// Runs zenta --json and expects an answer.
json Ask(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--json");
    const TZentaRun run = RunZenta(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return run.Json();
}

json FindByField(const json& list, const char* field, const std::string& value) {
    for (const json& element : list) {
        if (element.at(field) == value) return element;
    }
    return json();
}

// This process's arguments, joined with `separator`.
std::string OwnCommandLine(const std::string& separator) {
    std::ifstream in("/proc/self/cmdline");
    std::string joined;
    for (std::string argument; std::getline(in, argument, '\0');) {
        joined += (joined.empty() ? "" : separator) + argument;
    }
    return joined;
}

bool IsCimTimestamp(const json& text) {
    return std::regex_match(text.get<std::string>(), std::regex("[0-9]{14}\\.[0-9]{6}[+-][0-9]{3}"));
}

}  // namespace

TEST(BundledModules, ProvidersAndClassesAreListedWithTheirRelations) {
    const json providers = Ask({"providers"}).at("providers");
    EXPECT_EQ(providers.size(), 5u);
    const json process = FindByField(providers, "name", "ZENTA_ProcessProvider");
    EXPECT_EQ(process.at("module"), "libSystem");
    EXPECT_EQ(process.at("classes"), json::array({"ZENTA_Process"}));
    EXPECT_NE(RunZenta({"providers"}).out.find("ZENTA_DogProvider\n    module:      libSample\n"), std::string::npos);

    EXPECT_EQ(RunZenta({"classes", "ZENTA_Animal"}).out, "ZENTA_Cat\nZENTA_Dog\n");
    const json all = Ask({"classes", "--deep"}).at("classes");
    const json animal = FindByField(all, "name", "ZENTA_Animal");
    EXPECT_TRUE(animal.at("abstract") == true && animal.at("provider").is_null() && animal.at("superClass").is_null());
    EXPECT_EQ(FindByField(all, "name", "ZENTA_OSProcess").at("association"), true);
    EXPECT_EQ(FindByField(all, "name", "ZENTA_Dog").at("superClass"), "ZENTA_Animal");
}

TEST(BundledModules, DeepEnumerationReachesEveryProviderWithTypedValues) {
    const json instances = Ask({"ei", "ZENTA_Animal"}).at("instances");
    std::vector<std::string> classes;
    for (const json& instance : instances) classes.push_back(instance.at("className"));
    EXPECT_EQ(classes, (std::vector<std::string>{"ZENTA_Dog", "ZENTA_Dog", "ZENTA_Cat", "ZENTA_Cat", "ZENTA_Cat"}));
    const json dog = FindByField(instances, "path", "ZENTA_Dog.Name=\"Rex\"").at("properties");
    EXPECT_TRUE(dog.at("Legs").is_number_unsigned());
    EXPECT_EQ(dog.at("Legs"), 4);
    EXPECT_DOUBLE_EQ(dog.at("Weight").get<double>(), 31.5);
    EXPECT_EQ(dog.at("Born"), "20180314083000.000000+000");
    EXPECT_EQ(dog.at("Tricks"), json::array({"sit", "fetch"}));
    EXPECT_EQ(FindByField(instances, "path", "ZENTA_Cat.Name=\"Tom\"").at("properties").at("Indoor"), false);
}

TEST(BundledModules, GetInstancePrintsMofText) {
    const TZentaRun run = RunZenta({"gi", "ZENTA_Cat.Name=\"Luna\""});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out,
              "// ZENTA_Cat.Name=\"Luna\"\ninstance of ZENTA_Cat {\n    Name = \"Luna\";\n    Sound = \"Prr\";\n"
              "    Legs = 3;\n    Weight = 3.8;\n    Born = \"20211224183000.000000-300\";\n    Indoor = TRUE;\n"
              "    Lives = 9;\n};\n");
}

TEST(BundledModules, ProcessesAndTheOperatingSystemAreThisMachines) {
    const json own = Ask({"gi", OwnProcessPath()}).at("instance").at("properties");
    EXPECT_EQ(own.at("ProcessId"), getpid());
    EXPECT_EQ(own.at("ParentProcessId"), getppid());
    EXPECT_EQ(own.at("Name"), "zenta_e2e_tests");
    EXPECT_GT(own.at("ResidentSetSize").get<unsigned long long>(), 0u);
    EXPECT_TRUE(IsCimTimestamp(own.at("StartTime"))) << own.at("StartTime");
    EXPECT_TRUE(own.at("State") == "Running" || own.at("State") == "Sleeping") << own.at("State");
    const json all = Ask({"ei", "ZENTA_Process"}).at("instances");
    EXPECT_FALSE(FindByField(all, "path", OwnProcessPath()).is_null());
    EXPECT_FALSE(FindByField(all, "path", "ZENTA_Process.ProcessId=1").is_null());

    const json systems = Ask({"ei", "ZENTA_OperatingSystem"}).at("instances");
    ASSERT_EQ(systems.size(), 1u);
    utsname system;
    ASSERT_EQ(uname(&system), 0);
    const json& os = systems[0].at("properties");
    EXPECT_EQ(os.at("Name"), system.nodename);
    EXPECT_EQ(os.at("Release"), system.release);
    EXPECT_GT(os.at("NumberOfProcesses").get<unsigned>(), 1u);
    EXPECT_GT(os.at("TotalVisibleMemorySize").get<unsigned long long>(),
              os.at("FreePhysicalMemory").get<unsigned long long>());
    EXPECT_TRUE(IsCimTimestamp(os.at("LastBootUpTime")));
}

TEST(BundledModules, MethodsTakeInAndInOutAndGiveOut) {
    const std::string full = OwnCommandLine("|");
    ASSERT_GT(full.size(), 4u);
    const json answer = Ask({"im", OwnProcessPath(), "ReadCommandLine", "Separator=|", "MaxLength=4"});
    EXPECT_TRUE(answer.at("returnValue").is_null());
    EXPECT_EQ(answer.at("outParameters"), json({{"CommandLine", full.substr(0, 4)}, {"maxlength", full.size()}}))
        << "an input-only parameter came back or the in/out one was not updated";
    EXPECT_EQ(Ask({"im", OwnProcessPath(), "ReadCommandLine"}).at("outParameters").at("CommandLine"),
              OwnCommandLine(" "));
    const json count = Ask({"im", "ZENTA_Dog", "Count"});
    EXPECT_EQ(count.at("path"), "ZENTA_Dog");
    EXPECT_EQ(count.at("outParameters"), json({{"Total", 2}}));
}

TEST(BundledModules, AssociationsLinkTheSystemAndItsProcesses) {
    const json associated = Ask({"ai", OwnProcessPath()}).at("instances");
    ASSERT_EQ(associated.size(), 1u);
    EXPECT_EQ(associated[0].at("className"), "ZENTA_OperatingSystem");
    const json references = Ask({"ri", OwnProcessPath()}).at("instances");
    ASSERT_EQ(references.size(), 1u);
    EXPECT_EQ(references[0].at("className"), "ZENTA_OSProcess");
    EXPECT_EQ(references[0].at("properties").at("PartComponent"), OwnProcessPath());
    const std::string system = references[0].at("properties").at("GroupComponent");
    EXPECT_EQ(system, associated[0].at("path"));
    // A key that is a reference is read back into a path.
    EXPECT_EQ(Ask({"gi", references[0].at("path").get<std::string>()}).at("instance"), references[0]);

    const json processes = Ask({"ai", system, "--result-class", "ZENTA_Process"}).at("instances");
    EXPECT_FALSE(FindByField(processes, "path", OwnProcessPath()).is_null());
    EXPECT_GT(processes.size(), 1u);
}

TEST(BundledModules, AssociationFiltersNarrowTheWalk) {
    const struct {
        std::vector<std::string> arguments;
        std::size_t expected;
    } cases[] = {
        {{"ai", "--result-class", "ZENTA_Process"}, 0}, {{"ai", "--role", "GroupComponent"}, 0},
        {{"ai", "--assoc-class", "ZENTA_OSProcess", "--role", "PartComponent"}, 1},
        {{"ai", "--result-role", "GroupComponent"}, 1}, {{"ri", "--role", "PartComponent"}, 1},
        {{"ri", "--role", "GroupComponent"}, 0}, {{"ri", "--result-class", "ZENTA_OSProcess"}, 1},
    };
    for (const auto& c : cases) {
        std::vector<std::string> arguments(c.arguments);
        arguments.insert(arguments.begin() + 1, OwnProcessPath());
        EXPECT_EQ(Ask(arguments).at("instances").size(), c.expected) << arguments[0] << " " << arguments[2];
    }
}
