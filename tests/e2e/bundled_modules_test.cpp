// Every verb of zenta on the bundled provider modules (System, Sample),
// checked against what the system and the sample data really hold.
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ZentaRunner.h"

using nlohmann::json;

namespace {

std::string OwnProcessPath() { return "ZENTA_Process.ProcessId=" + std::to_string(getpid()); }

// Runs zenta --json and expects an answer.
json Ask(const std::vector<std::string>& arguments) {
    std::vector<std::string> withJson(1, "--json");
    withJson.insert(withJson.end(), arguments.begin(), arguments.end());
    const TZentaRun run = RunZenta(withJson);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return run.Json();
}

std::vector<std::string> Names(const json& list, const char* field) {
    std::vector<std::string> names;
    for (const json& element : list) names.push_back(element.at(field).get<std::string>());
    return names;
}

const json* FindByPath(const json& instances, const std::string& path) {
    for (const json& instance : instances) {
        if (instance.at("path") == path) return &instance;
    }
    return nullptr;
}

// This process's arguments, joined with `separator`.
std::string OwnCommandLine(const std::string& separator) {
    std::ifstream in("/proc/self/cmdline", std::ios::binary);
    std::string raw((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!raw.empty() && raw.back() == '\0') raw.pop_back();
    std::string joined;
    for (char c : raw) joined += c == '\0' ? separator : std::string(1, c);
    return joined;
}

bool IsCimTimestamp(const std::string& text) {
    return std::regex_match(text, std::regex("[0-9]{14}\\.[0-9]{6}[+-][0-9]{3}"));
}

}  // namespace

TEST(BundledModules, ProvidersListEachProviderWithItsModuleAndClasses) {
    const json providers = Ask({"providers"}).at("providers");
    std::vector<std::string> names = Names(providers, "name");
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"ZENTA_CatProvider", "ZENTA_DogProvider", "ZENTA_OSProcessProvider",
                                               "ZENTA_OperatingSystemProvider", "ZENTA_ProcessProvider"}));
    for (const json& provider : providers) {
        if (provider.at("name") == "ZENTA_ProcessProvider") {
            EXPECT_EQ(provider.at("module"), "libSystem");
            EXPECT_EQ(provider.at("classes"), json::array({"ZENTA_Process"}));
            EXPECT_NE(provider.at("description").get<std::string>().find("Linux"), std::string::npos);
        }
    }
    const TZentaRun text = RunZenta({"providers"});
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("ZENTA_DogProvider\n    module:      libSample\n"), std::string::npos) << text.out;
}

TEST(BundledModules, ClassesListRootsSubclassesAndTheWholeTree) {
    const std::vector<std::string> roots = Names(Ask({"classes"}).at("classes"), "name");
    EXPECT_NE(std::find(roots.begin(), roots.end(), "ZENTA_Animal"), roots.end());
    EXPECT_EQ(std::find(roots.begin(), roots.end(), "ZENTA_Dog"), roots.end()) << "a subclass listed as a root";

    EXPECT_EQ(Names(Ask({"classes", "ZENTA_Animal"}).at("classes"), "name"),
              (std::vector<std::string>{"ZENTA_Cat", "ZENTA_Dog"}));

    const json all = Ask({"classes", "--deep"}).at("classes");
    std::set<std::string> seen;
    for (const json& cls : all) {
        seen.insert(cls.at("name").get<std::string>());
        if (cls.at("name") == "ZENTA_Animal") {
            EXPECT_TRUE(cls.at("abstract").get<bool>());
            EXPECT_TRUE(cls.at("provider").is_null());
            EXPECT_TRUE(cls.at("superClass").is_null());
        } else if (cls.at("name") == "ZENTA_OSProcess") {
            EXPECT_TRUE(cls.at("association").get<bool>());
            EXPECT_EQ(cls.at("provider"), "ZENTA_OSProcessProvider");
        } else if (cls.at("name") == "ZENTA_Dog") {
            EXPECT_EQ(cls.at("superClass"), "ZENTA_Animal");
        }
    }
    for (const char* expected : {"ZENTA_Animal", "ZENTA_Dog", "ZENTA_Cat", "ZENTA_Process", "ZENTA_OSProcess",
                                 "ZENTA_OperatingSystem", "PG_ProviderModule"}) {
        EXPECT_EQ(seen.count(expected), 1u) << expected;
    }
    const TZentaRun text = RunZenta({"classes", "ZENTA_Animal"});
    EXPECT_EQ(text.out, "ZENTA_Cat\nZENTA_Dog\n");
}

TEST(BundledModules, DeepEnumerationReachesEveryProviderWithTypedValues) {
    const json instances = Ask({"ei", "ZENTA_Animal"}).at("instances");
    ASSERT_EQ(instances.size(), 5u) << instances.dump();
    EXPECT_EQ(Names(instances, "className"),
              (std::vector<std::string>{"ZENTA_Dog", "ZENTA_Dog", "ZENTA_Cat", "ZENTA_Cat", "ZENTA_Cat"}));
    const json* rex = FindByPath(instances, "ZENTA_Dog.Name=\"Rex\"");
    ASSERT_NE(rex, nullptr);
    const json& dog = rex->at("properties");
    EXPECT_TRUE(dog.at("Legs").is_number_unsigned());
    EXPECT_EQ(dog.at("Legs"), 4);
    EXPECT_TRUE(dog.at("Weight").is_number_float());
    EXPECT_DOUBLE_EQ(dog.at("Weight").get<double>(), 31.5);
    EXPECT_EQ(dog.at("Born"), "20180314083000.000000+000");
    EXPECT_EQ(dog.at("Tricks"), json::array({"sit", "fetch"}));
    const json* tom = FindByPath(instances, "ZENTA_Cat.Name=\"Tom\"");
    ASSERT_NE(tom, nullptr);
    EXPECT_TRUE(tom->at("properties").at("Indoor").is_boolean());
    EXPECT_FALSE(tom->at("properties").at("Indoor").get<bool>());
}

TEST(BundledModules, InstanceNamesArePathsOnePerLine) {
    const TZentaRun run = RunZenta({"ein", "ZENTA_Dog"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "ZENTA_Dog.Name=\"Rex\"\nZENTA_Dog.Name=\"Fido\"\n");
    EXPECT_EQ(Ask({"ein", "ZENTA_Animal"}).at("paths").size(), 5u);
}

TEST(BundledModules, GetInstancePrintsMofText) {
    const TZentaRun run = RunZenta({"gi", "ZENTA_Cat.Name=\"Luna\""});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out,
              "// ZENTA_Cat.Name=\"Luna\"\n"
              "instance of ZENTA_Cat {\n"
              "    Name = \"Luna\";\n"
              "    Sound = \"Prr\";\n"
              "    Legs = 3;\n"
              "    Weight = 3.8;\n"
              "    Born = \"20211224183000.000000-300\";\n"
              "    Indoor = TRUE;\n"
              "    Lives = 9;\n"
              "};\n");
}

TEST(BundledModules, ProcessesAreReadFromProc) {
    const json own = Ask({"gi", OwnProcessPath()}).at("instance");
    EXPECT_EQ(own.at("className"), "ZENTA_Process");
    const json& properties = own.at("properties");
    EXPECT_EQ(properties.at("ProcessId"), getpid());
    EXPECT_EQ(properties.at("ParentProcessId"), getppid());
    EXPECT_EQ(properties.at("Name"), "zenta_e2e_tests");
    EXPECT_GT(properties.at("ResidentSetSize").get<unsigned long long>(), 0u);
    EXPECT_TRUE(IsCimTimestamp(properties.at("StartTime").get<std::string>())) << properties.at("StartTime");
    EXPECT_TRUE(properties.at("State") == "Running" || properties.at("State") == "Sleeping") << properties.at("State");

    const json all = Ask({"ei", "ZENTA_Process"}).at("instances");
    EXPECT_NE(FindByPath(all, OwnProcessPath()), nullptr);
    EXPECT_NE(FindByPath(all, "ZENTA_Process.ProcessId=1"), nullptr);
}

TEST(BundledModules, TheOperatingSystemIsThisMachine) {
    const json instances = Ask({"ei", "ZENTA_OperatingSystem"}).at("instances");
    ASSERT_EQ(instances.size(), 1u);
    utsname system;
    ASSERT_EQ(uname(&system), 0);
    const json& os = instances[0].at("properties");
    EXPECT_EQ(os.at("Name"), system.nodename);
    EXPECT_EQ(os.at("Release"), system.release);
    EXPECT_EQ(os.at("Machine"), system.machine);
    EXPECT_GT(os.at("NumberOfProcesses").get<unsigned>(), 1u);
    EXPECT_GT(os.at("TotalVisibleMemorySize").get<unsigned long long>(),
              os.at("FreePhysicalMemory").get<unsigned long long>());
    EXPECT_TRUE(IsCimTimestamp(os.at("LastBootUpTime").get<std::string>()));
}

TEST(BundledModules, InstanceMethodTakesInAndInOutAndGivesOut) {
    const std::string full = OwnCommandLine("|");
    ASSERT_GT(full.size(), 4u);
    const json answer = Ask({"im", OwnProcessPath(), "ReadCommandLine", "Separator=|", "MaxLength=4"});
    EXPECT_EQ(answer.at("method"), "ReadCommandLine");
    EXPECT_TRUE(answer.at("returnValue").is_null());
    const json& out = answer.at("outParameters");
    EXPECT_EQ(out.at("CommandLine"), full.substr(0, 4));
    EXPECT_EQ(out.at("maxlength"), full.size()) << "the in/out parameter did not come back updated";
    EXPECT_EQ(out.size(), 2u) << "an input-only parameter came back";

    const json whole = Ask({"im", OwnProcessPath(), "ReadCommandLine"}).at("outParameters");
    EXPECT_EQ(whole.at("CommandLine"), OwnCommandLine(" "));

    const TZentaRun text = RunZenta({"im", OwnProcessPath(), "ReadCommandLine", "MaxLength=4", "Separator=|"});
    EXPECT_EQ(text.out, "CommandLine = \"" + full.substr(0, 4) + "\";\nmaxlength = " + std::to_string(full.size()) +
                            ";\n");
}

TEST(BundledModules, ClassMethodOnAClassPath) {
    const json answer = Ask({"im", "ZENTA_Dog", "Count"});
    EXPECT_EQ(answer.at("path"), "ZENTA_Dog");
    EXPECT_EQ(answer.at("outParameters"), json({{"Total", 2}}));
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

    const json processes = Ask({"ai", system, "--result-class", "ZENTA_Process"}).at("instances");
    EXPECT_NE(FindByPath(processes, OwnProcessPath()), nullptr);
    EXPECT_GT(processes.size(), 1u);
}

TEST(BundledModules, AssociationFiltersNarrowTheWalk) {
    struct TCase {
        std::vector<std::string> arguments;
        std::size_t expected;
    };
    const TCase cases[] = {
        {{"ai", OwnProcessPath(), "--result-class", "ZENTA_Process"}, 0},
        {{"ai", OwnProcessPath(), "--assoc-class", "ZENTA_OSProcess", "--role", "PartComponent"}, 1},
        {{"ai", OwnProcessPath(), "--role", "GroupComponent"}, 0},
        {{"ai", OwnProcessPath(), "--result-role", "GroupComponent"}, 1},
        {{"ri", OwnProcessPath(), "--role", "PartComponent"}, 1},
        {{"ri", OwnProcessPath(), "--role", "GroupComponent"}, 0},
        {{"ri", OwnProcessPath(), "--result-class", "ZENTA_OSProcess"}, 1},
    };
    for (const TCase& c : cases) {
        std::vector<std::string> arguments(c.arguments);
        arguments.insert(arguments.begin(), "--json");
        const TZentaRun run = RunZenta(arguments);
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.Json().at("instances").size(), c.expected) << arguments[1] << " " << arguments[3];
    }
}

TEST(BundledModules, GetOfAnAssociationInstanceTakesReferenceKeys) {
    const json link = Ask({"ri", OwnProcessPath()}).at("instances").at(0);
    const json got = Ask({"gi", link.at("path").get<std::string>()}).at("instance");
    EXPECT_EQ(got, link);
}
