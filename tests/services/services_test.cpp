// libzentacore.so services: logger, TOSSpecific, provider registry, root object.
#include <climits>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TCIMDateTime.h"
#include "TCoreLogger.h"
#include "TNamespaceProviderManager.h"
#include "TOSSpecific.h"
#include "TRootObject.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;
namespace fs = std::filesystem;

// A toolchain silently producing 64-bit code would pass the 32-bit suite untested.
static_assert(sizeof(void*) * CHAR_BIT == ZENTA_TARGET_BITS, "the compiler does not produce the targeted width");

namespace {

struct TTempDirectory {
    TTempDirectory() : fPath(testing::TempDir() + "zenta-services-XXXXXX") {
        if (mkdtemp(&fPath[0]) == nullptr) ADD_FAILURE() << "mkdtemp failed for " << fPath;
    }
    ~TTempDirectory() { std::filesystem::remove_all(fPath); }
    std::string operator/(const std::string& name) const { return fPath + "/" + name; }
    std::string fPath;
};

inline std::vector<std::string> Lines(std::istream&& in) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

struct TScopedEnvironment {
    TScopedEnvironment(const char* name, const std::optional<std::string>& value) : fName(name) {
        if (const char* old = std::getenv(name)) fOldValue = old;
        Apply(value);
    }
    ~TScopedEnvironment() { Apply(fOldValue); }
    void Apply(const std::optional<std::string>& value) { value ? setenv(fName, value->c_str(), 1) : unsetenv(fName); }
    const char* fName;
    std::optional<std::string> fOldValue;
};

typedef std::vector<std::string> TLines;

// "2024-05-01 13:04:05.123 LEVEL text" lines, without their time stamps.
TLines Parse(const TLines& lines) {
    static const std::regex pattern(R"(^\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}\.\d{3} [A-Z]+ .*$)");
    TLines parsed;
    for (const std::string& line : lines) {
        EXPECT_TRUE(std::regex_match(line, pattern)) << "malformed log line: " << line;
        parsed.push_back(line.substr(std::min<std::size_t>(24, line.size())));
    }
    return parsed;
}

class CoreLogger : public testing::Test {
protected:
    TLines Logged() const { return Parse(Lines(std::ifstream(fPath))); }

    TScopedEnvironment fLevel{"ZENTA_LOG_LEVEL", std::nullopt}, fFile{"ZENTA_LOG_FILE", std::nullopt};
    TTempDirectory fDir;
    const std::string fPath = fDir / "zenta.log";
};

struct TFakeNamespaceProvider : INamespaceProvider {
    explicit TFakeNamespaceProvider(const std::string& name) : fName(name) {}
    const std::string& GetName(TCIMContext) const override { return fName; }
    boost::shared_ptr<ICIMNamespace> AllocateNamespace(TCIMContext, bool) const override { return {}; }
    ENamespaceType GetType(TCIMContext) const override { return kRepositoryNamespace; }
    bool IsIndicationsSupported(TCIMContext) const override { return false; }
    std::string fName;
};

typedef boost::shared_ptr<INamespaceProvider> TProviderPtr;

TProviderPtr MakeProvider(const std::string& name) { return TProviderPtr(new TFakeNamespaceProvider(name)); }

TLines Walk(INamespaceProviderManager& manager, const std::function<bool(const std::string&)>& visit = {}) {
    TLines visited;
    manager.EnumerateNamespaceProviders([&](TProviderPtr provider) {
        visited.push_back(provider->GetName(TCIMContext()));
        return !visit || visit(visited.back());
    });
    return visited;
}

}  // namespace

TEST_F(CoreLogger, ThresholdComesFromTheEnvironmentAsAWholeLevelNumber) {
    const std::map<std::optional<std::string>, int> cases = {
        {std::nullopt, 1}, {"0", 0}, {"4", 4}, {"", 1}, {"3x", 1}, {"5", 1}, {"-1", 1}, {"99999999999999999999", 1}};
    for (const auto& c : cases) {
        TScopedEnvironment level("ZENTA_LOG_LEVEL", c.first);
        EXPECT_EQ(TCoreLogger().GetThreshold(), c.second) << c.first.value_or("(unset)");
    }
}

TEST_F(CoreLogger, WritesLevelsUpToTheThresholdOnOneLineEach) {
    TScopedEnvironment level("ZENTA_LOG_LEVEL", "0");
    TCoreLogger logger;
    logger.SetLogFile(fPath);
    for (int threshold : {0, int(ICoreLogger::kTrace), -1}) {
        logger.SetThreshold(threshold);
        for (int l = ICoreLogger::kError; l <= ICoreLogger::kInformation; ++l) logger.Log(l, "m" + std::to_string(l));
    }
    logger.SetThreshold(ICoreLogger::kInformation);
    logger.Log(ICoreLogger::kInformation, "first\nsecond\r\nthird\n");
    EXPECT_EQ(Logged(), (TLines{"ERROR m0", "ERROR m0", "WARNING m1", "NOTICE m2", "TRACE m3",
                                "INFORMATION first second  third "}));
}

TEST_F(CoreLogger, FileFromTheEnvironmentIsAppendedToOrElseStderrIsUsed) {
    std::ofstream(fPath) << "earlier line\n";
    {
        TScopedEnvironment file("ZENTA_LOG_FILE", fPath);
        TCoreLogger().Log(ICoreLogger::kError, "first run");
        TCoreLogger logger;
        EXPECT_THROW(logger.SetLogFile(fDir / "missing/zenta.log"), TZENTAException);
        logger.Log(ICoreLogger::kWarning, "kept");
    }
    const TLines lines = Lines(std::ifstream(fPath));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "earlier line");
    EXPECT_EQ(Parse({lines[1], lines[2]}), (TLines{"ERROR first run", "WARNING kept"}));

    TScopedEnvironment file("ZENTA_LOG_FILE", fDir / "missing/zenta.log");
    testing::internal::CaptureStderr();
    TCoreLogger().Log(ICoreLogger::kError, "after the fallback");
    const TLines fallback = Parse(Lines(std::istringstream(testing::internal::GetCapturedStderr())));
    ASSERT_EQ(fallback.size(), 2u);
    EXPECT_EQ(fallback[0].find("WARNING "), 0u);
    EXPECT_NE(fallback[0].find(fDir / "missing/zenta.log"), std::string::npos) << fallback[0];
    EXPECT_EQ(fallback[1], "ERROR after the fallback");
}

TEST(PluginSearch, ListsRegularFilesOfTheKindByNameFollowingOnlyLinksToFiles) {
    TTempDirectory dir, elsewhere;
    for (const char* name : {"b.cmpi.so", "Z.cmpi.so", "a.cmpi.so", "d.nsp.so", "e.cmpi.so.1", "f.cmpi.sox",
                             "g.CMPI.so", "cmpi.so", ".cmpi.so", "plain.txt"}) {
        std::ofstream(dir / name) << "module";
    }
    std::ofstream(elsewhere / "Real.cmpi.so") << "module";
    fs::create_directory(dir / "x.cmpi.so");
    fs::create_symlink(elsewhere / "Real.cmpi.so", dir / "Linked.cmpi.so");
    fs::create_symlink(dir / "Missing.cmpi.so", dir / "Dangling.cmpi.so");
    fs::create_symlink(dir / "x.cmpi.so", dir / "ToFolder.cmpi.so");
    EXPECT_EQ(TOSSpecific::FindPlugins(dir.fPath, "cmpi"),
              (TLines{dir / "Linked.cmpi.so", dir / "Z.cmpi.so", dir / "a.cmpi.so", dir / "b.cmpi.so"}));
    EXPECT_EQ(TOSSpecific::FindPlugins(dir.fPath, "nsp"), TLines{dir / "d.nsp.so"});
    for (const std::string& nothing : {dir / "missing", dir / "plain.txt", dir / "x.cmpi.so", std::string()}) {
        EXPECT_TRUE(TOSSpecific::FindPlugins(nothing, "cmpi").empty()) << "directory \"" << nothing << "\"";
    }
    // A directory named through a link, or relatively, keeps that name, made absolute.
    fs::create_symlink(dir.fPath, elsewhere / "served");
    const fs::path previous = fs::current_path();
    fs::current_path(elsewhere.fPath);
    for (const std::string& served : {elsewhere / "served", std::string("served"), std::string("./served/.")}) {
        EXPECT_EQ(TOSSpecific::FindPlugins(served, "nsp"), TLines{elsewhere / "served/d.nsp.so"}) << served;
    }
    fs::current_path(previous);
}

TEST(DocumentPaths, ReplaceTheTrailingModuleSuffixOnceOrAppend) {
    const struct { const char* module; const char* kind; const char* stem; } cases[] = {
        {"/opt/p/Foo.cmpi.so", "cmpi", "/opt/p/Foo"}, {"Foo.nsp.so", "nsp", "Foo"}, {"/o/Foo", "cmpi", "/o/Foo"},
        {"/o/x.cmpi.so/Foo.cmpi.so", "cmpi", "/o/x.cmpi.so/Foo"}, {"/o/F.cmpi.so.cmpi.so", "cmpi", "/o/F.cmpi.so"},
        {"/o/Foo.nsp.so", "cmpi", "/o/Foo.nsp.so"}, {"/o/Foo.cmpi.so.1", "cmpi", "/o/Foo.cmpi.so.1"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(TOSSpecific::BuildRegistrationPath(c.module, c.kind), c.stem + std::string(".reg.xml")) << c.module;
        EXPECT_EQ(TOSSpecific::BuildSpecificationPath(c.module, c.kind), c.stem + std::string(".classes.xml"));
    }
}

// Between two clock readings, with the offset of the zone (westward in POSIX TZ).
TEST(LocalTime, IsTheCurrentTimestampWithTheZonesOffset) {
    const struct { const char* zone; const char* offset; } cases[] = {
        {"UTC0", "+000"}, {"IST-05:30", "+330"}, {"NST+03:30", "-210"}, {"LINT-14", "+840"}};
    for (const auto& c : cases) {
        TScopedEnvironment zone("TZ", std::string(c.zone));
        tzset();
        std::time_t clock[2] = {std::time(nullptr), 0};
        const std::string text = TOSSpecific::GetLocalTime().ToString();
        clock[1] = std::time(nullptr);
        EXPECT_TRUE(TCIMDateTime::IsValid(text) && text.substr(21) == c.offset) << text << " in " << c.zone;
        std::tm local{};
        char digits[2][16];
        for (int i = 0; i < 2; ++i) std::strftime(digits[i], 16, "%Y%m%d%H%M%S", localtime_r(&clock[i], &local));
        EXPECT_TRUE(text.substr(0, 14) == digits[0] || text.substr(0, 14) == digits[1]) << text;
    }
    tzset();
}

TEST(NamespaceProviderManager, HoldsOneProviderPerExactNameAndReleasesTheOthers) {
    TNamespaceProviderManager manager;
    EXPECT_THROW(manager.RegisterNamespaceProvider(TProviderPtr()), TZENTAException);
    TProviderPtr first = MakeProvider("cmpi"), second = MakeProvider("cmpi");
    manager.RegisterNamespaceProvider(first);
    EXPECT_EQ(first.use_count(), 2) << "the registry must hold its providers";
    manager.RegisterNamespaceProvider(second);
    EXPECT_EQ(first.use_count(), 1);
    EXPECT_EQ(manager.GetNamespaceProvider("cmpi"), second);
    for (const char* unknown : {"CMPI", "cmp", "cmpi ", ""}) EXPECT_FALSE(manager.GetNamespaceProvider(unknown));
    manager.UnregisterNamespaceProvider("unknown");
    manager.UnregisterNamespaceProvider("cmpi");
    EXPECT_TRUE(Walk(manager).empty());
    EXPECT_EQ(second.use_count(), 1);
}

TEST(NamespaceProviderManager, WalksInNameOrderUntilStoppedAndCallbacksMayChangeTheRegistry) {
    TNamespaceProviderManager manager;
    for (const char* name : {"zeta", "alpha", "Mid"}) manager.RegisterNamespaceProvider(MakeProvider(name));
    EXPECT_EQ(Walk(manager, [](const std::string& name) { return name != "alpha"; }), (TLines{"Mid", "alpha"}));
    const TLines renamed = Walk(manager, [&](const std::string& name) {
        manager.UnregisterNamespaceProvider(name);
        manager.RegisterNamespaceProvider(MakeProvider(name + "2"));
        return true;
    });
    EXPECT_EQ(renamed, (TLines{"Mid", "alpha", "zeta"}));
    EXPECT_EQ(Walk(manager), (TLines{"Mid2", "alpha2", "zeta2"}));
}

// Uses the process-wide services from a static destructor, as a plug-in torn down at exit
// does. Made before main, so before the services: ordinary statics would be gone by then.
struct TLateUser {
    bool fActive = false;
    ~TLateUser() {
        if (!fActive) return;
        const TProviderPtr late = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("late");
        TRootObject::GetCoreLogger()->Log(ICoreLogger::kError, "late use found " + late->GetName(TCIMContext()));
    }
} gLateUser;

TEST(RootObjectDeathTest, ServicesOutliveStaticDestruction) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a fresh process: services made after gLateUser
    EXPECT_EXIT(
        {
            TRootObject::GetCoreLogger()->SetLogFile("");
            TRootObject::GetNamespaceProviderManager()->RegisterNamespaceProvider(MakeProvider("late"));
            gLateUser.fActive = true;
            std::exit(0);
        },
        testing::ExitedWithCode(0), "ERROR late use found late");
}
