// zentad as its users meet it: started on a free loopback port, asked by
// Debian's wbemcli for every verb it has and by curl for raw CIM-XML, its
// answers compared with those of `zenta --json` on the same providers.
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ServerRunner.h"

using nlohmann::json;

namespace {

const char kIntrinsicHead[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
    "<MESSAGE ID=\"77\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>";
const char kIntrinsicTail[] = "</SIMPLEREQ></MESSAGE></CIM>";
const char kNamespacePath[] =
    "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>";

// A file the Faulty provider adds a line to each time it starts to hang.
class THangMarks {
public:
    THangMarks() : fPath(fDirectory.Write("hangs", "")) {}
    std::string Environment() const { return "FAULTY_HANG_MARKS=" + fPath; }

    // Waits (two minutes at most) until `count` requests hang in a worker.
    bool WaitFor(std::size_t count) const {
        for (int tenths = 0; tenths < 1200; ++tenths) {
            const std::string marks = ReadFile(fPath);
            if (static_cast<std::size_t>(std::count(marks.begin(), marks.end(), '\n')) >= count) return true;
            usleep(100000);
        }
        return false;
    }

private:
    TScratchDirectory fDirectory;
    std::string fPath;
};

bool HaveClients() { return access(WBEMCLI, X_OK) == 0 && access(CURL, X_OK) == 0; }

#define REQUIRE_CLIENTS()                                                                  \
    if (!HaveClients()) GTEST_FAIL() << "wbemcli or curl is not installed (scripts/install-deps)"

TProgramRun Wbemcli(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{WBEMCLI};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return RunProgram(command);
}

json Zenta(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{ZENTA, "--json"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const TProgramRun run = RunProgram(command);
    EXPECT_EQ(run.status, 0) << run.err;
    return json::parse(run.out);
}

struct THttpAnswer {
    int status = 0;
    std::map<std::string, std::string> headers;  // names in lower case
    std::string body;

    std::string Header(const std::string& name) const {
        const auto found = headers.find(name);
        return found == headers.end() ? std::string() : found->second;
    }
};

// Sends `body` with curl; `headers` as "Name: value".
THttpAnswer Curl(const std::string& url, const std::string& body, const std::vector<std::string>& headers,
                 const std::vector<std::string>& options = {}) {
    std::vector<std::string> command{CURL, "-s", "-i", "--max-time", "60"};
    command.insert(command.end(), options.begin(), options.end());
    for (const std::string& header : headers) {
        command.push_back("-H");
        command.push_back(header);
    }
    if (!body.empty()) {
        command.push_back("--data-binary");
        command.push_back("@-");
    }
    command.push_back(url);
    const TProgramRun run = RunProgram(command, body);
    THttpAnswer answer;
    const std::size_t end = run.out.find("\r\n\r\n");
    if (end == std::string::npos) return answer;
    std::string head = run.out.substr(0, end);
    answer.body = run.out.substr(end + 4);
    answer.status = std::atoi(head.substr(head.find(' ') + 1, 3).c_str());
    std::size_t at = head.find("\r\n");
    while (at != std::string::npos) {
        const std::size_t next = head.find("\r\n", at + 2);
        const std::string line = head.substr(at + 2, next == std::string::npos ? std::string::npos : next - at - 2);
        const std::size_t colon = line.find(':');
        if (colon != std::string::npos) {
            std::string name = line.substr(0, colon);
            for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            answer.headers[name] = line.substr(line.find_first_not_of(' ', colon + 1));
        }
        at = next;
    }
    return answer;
}

std::vector<std::string> CimHeaders(const std::string& method) {
    return {"Content-Type: application/xml; charset=\"utf-8\"", "CIMOperation: MethodCall", "CIMMethod: " + method,
            "CIMObject: root/cimv2"};
}

std::string IntrinsicCall(const std::string& method, const std::string& parameters,
                          const std::string& nameSpace = kNamespacePath) {
    return std::string(kIntrinsicHead) + "<IMETHODCALL NAME=\"" + method + "\">" + nameSpace + parameters +
           "</IMETHODCALL>" + kIntrinsicTail;
}

// An instance as wbemcli -nl prints it: its path without host and
// namespace, and each property's text.
struct TShownInstance {
    std::string path;
    std::map<std::string, std::string> properties;
};

std::string WithoutLocation(const std::string& path) {
    const std::size_t at = path.find("/root/cimv2:");
    return at == std::string::npos ? path : path.substr(at + 12);
}

std::vector<TShownInstance> ReadShown(const std::string& text) {
    std::vector<TShownInstance> shown;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = text.find('\n', at);
        if (end == std::string::npos) end = text.size();
        const std::string line = text.substr(at, end - at);
        at = end + 1;
        if (line.empty()) continue;
        if (line[0] == '-' && !shown.empty()) {
            const std::size_t equals = line.find('=');
            shown.back().properties[line.substr(1, equals - 1)] = line.substr(equals + 1);
        } else {
            shown.push_back(TShownInstance{WithoutLocation(line.substr(0, line.find(' '))), {}});
        }
    }
    return shown;
}

// Whether wbemcli's text of a value says what zenta's JSON value says.
bool SameValue(const std::string& shown, const json& value) {
    if (value.is_null()) return shown.empty();
    if (value.is_boolean()) return shown == (value.get<bool>() ? "TRUE" : "FALSE");
    if (value.is_number()) {
        const double expected = value.get<double>();
        return std::fabs(std::strtod(shown.c_str(), nullptr) - expected) <= 1e-6 * std::fabs(expected);
    }
    if (value.is_array()) {
        std::string joined;
        for (const json& element : value) {
            if (!joined.empty()) joined += ',';
            joined += element.is_string() ? "\"" + element.get<std::string>() + "\"" : element.dump();
        }
        return shown == joined;
    }
    const std::string text = value.get<std::string>();
    return shown == "\"" + text + "\"" || shown == text;  // date-times are shown bare
}

void ExpectSameInstances(const std::string& wbemcliOut, const json& instances, const std::string& what) {
    const std::vector<TShownInstance> shown = ReadShown(wbemcliOut);
    ASSERT_EQ(shown.size(), instances.size()) << what << "\n" << wbemcliOut;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const json& expected = instances[i];
        EXPECT_EQ(shown[i].path, expected["path"].get<std::string>()) << what;
        EXPECT_EQ(shown[i].properties.size(), expected["properties"].size()) << what << " " << shown[i].path;
        for (const auto& property : expected["properties"].items()) {
            const auto found = shown[i].properties.find(property.key());
            ASSERT_NE(found, shown[i].properties.end()) << what << ": " << property.key() << " is missing";
            EXPECT_TRUE(SameValue(found->second, property.value()))
                << what << ": " << property.key() << " shown as " << found->second << ", zenta says "
                << property.value().dump();
        }
    }
}

std::vector<std::string> ShownPaths(const std::string& text) {
    std::vector<std::string> paths;
    for (const TShownInstance& instance : ReadShown(text)) paths.push_back(instance.path);
    return paths;
}

class ServerWithoutAuth : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (HaveClients()) fServer = new TZentad({"--no-auth", "--workers", "2"});
    }
    static void TearDownTestSuite() {
        if (fServer != nullptr) {
            EXPECT_EQ(fServer->Stop(), 0) << fServer->Log();
        }
        delete fServer;
        fServer = nullptr;
    }
    static TZentad* fServer;
};
TZentad* ServerWithoutAuth::fServer = nullptr;

TEST_F(ServerWithoutAuth, WbemcliEnumeratesAndGetsInstancesAsZentaDoes) {
    REQUIRE_CLIENTS();
    const TProgramRun animals = Wbemcli({"-nl", "ei", fServer->Object("ZENTA_Animal")});
    ASSERT_EQ(animals.status, 0) << animals.err;
    ExpectSameInstances(animals.out, Zenta({"ei", "ZENTA_Animal"})["instances"], "ei ZENTA_Animal");

    const TProgramRun names = Wbemcli({"ein", fServer->Object("ZENTA_Animal")});
    ASSERT_EQ(names.status, 0) << names.err;
    std::vector<std::string> expectedPaths;
    const json zentaPaths = Zenta({"ein", "ZENTA_Animal"});
    for (const json& path : zentaPaths["paths"]) expectedPaths.push_back(path.get<std::string>());
    EXPECT_EQ(ShownPaths(names.out), expectedPaths);

    const TProgramRun rex = Wbemcli({"-nl", "gi", fServer->Object("ZENTA_Dog.Name=\"Rex\"")});
    ASSERT_EQ(rex.status, 0) << rex.err;
    ExpectSameInstances(rex.out, json::array({Zenta({"gi", "ZENTA_Dog.Name=\"Rex\""})["instance"]}), "gi Rex");

    // A property list leaves only the properties named (keys form the path).
    const TProgramRun some = Wbemcli({"-nl", "ei", fServer->Object("ZENTA_Cat"), "Legs"});
    ASSERT_EQ(some.status, 0) << some.err;
    for (const TShownInstance& cat : ReadShown(some.out)) {
        EXPECT_EQ(cat.properties.size(), 1u) << cat.path;
        EXPECT_EQ(cat.properties.count("Legs"), 1u) << cat.path;
    }
}

TEST_F(ServerWithoutAuth, WbemcliReadsClassesAsZentaDoes) {
    REQUIRE_CLIENTS();
    const TProgramRun names = Wbemcli({"ecn", fServer->Object("ZENTA_Animal")});
    ASSERT_EQ(names.status, 0) << names.err;
    std::set<std::string> shown;
    for (const std::string& path : ShownPaths(names.out)) shown.insert(path);
    std::set<std::string> expected;
    const json zentaNames = Zenta({"ecn", "ZENTA_Animal"});
    for (const json& name : zentaNames["classNames"]) expected.insert(name.get<std::string>());
    EXPECT_EQ(shown, expected);

    const TProgramRun cat = Wbemcli({"gc", fServer->Object("ZENTA_Cat")});
    ASSERT_EQ(cat.status, 0) << cat.err;
    for (const char* property : {"Name=", "Sound=", "Legs=", "Lives="}) {
        EXPECT_NE(cat.out.find(property), std::string::npos) << property << " in " << cat.out;
    }
    const TProgramRun classes = Wbemcli({"ec", fServer->Object("ZENTA_Animal")});
    ASSERT_EQ(classes.status, 0) << classes.err;
    EXPECT_NE(classes.out.find("ZENTA_Dog Name=,Sound=,Legs=,Weight=,Born=,Breed=,Tricks="), std::string::npos)
        << classes.out;
}

TEST_F(ServerWithoutAuth, WbemcliWalksAssociationsAsZentaDoes) {
    REQUIRE_CLIENTS();
    const std::string init = "ZENTA_Process.ProcessId=1";
    const TProgramRun associated = Wbemcli({"ain", fServer->Object(init)});
    ASSERT_EQ(associated.status, 0) << associated.err;
    std::vector<std::string> expected;
    const json zentaPaths = Zenta({"ain", init});
    for (const json& path : zentaPaths["paths"]) expected.push_back(path.get<std::string>());
    EXPECT_EQ(ShownPaths(associated.out), expected);

    const TProgramRun instances = Wbemcli({"-nl", "ai", "-arc", "ZENTA_OperatingSystem", fServer->Object(init)});
    ASSERT_EQ(instances.status, 0) << instances.err;
    const std::vector<TShownInstance> systems = ReadShown(instances.out);
    const json expectedSystems = Zenta({"ai", init, "--result-class", "ZENTA_OperatingSystem"})["instances"];
    ASSERT_EQ(systems.size(), expectedSystems.size());
    ASSERT_EQ(systems.size(), 1u);
    EXPECT_EQ(systems[0].path, expectedSystems[0]["path"].get<std::string>());
    EXPECT_TRUE(SameValue(systems[0].properties.at("Caption"), expectedSystems[0]["properties"]["Caption"]));

    for (const char* verb : {"rin", "ri"}) {
        const TProgramRun references = Wbemcli({verb, fServer->Object(init)});
        ASSERT_EQ(references.status, 0) << verb << references.err;
        const std::vector<std::string> paths = ShownPaths(references.out);
        EXPECT_EQ(paths.size(), Zenta({std::string(verb), init})[verb == std::string("rin") ? "paths" : "instances"].size());
        for (const std::string& path : paths) EXPECT_EQ(path.rfind("ZENTA_OSProcess.", 0), 0u) << path;
    }
}

TEST_F(ServerWithoutAuth, WbemcliCallsMethodsWithInputAndOutputParameters) {
    REQUIRE_CLIENTS();
    const TProgramRun count = Wbemcli({"cm", fServer->Object("ZENTA_Dog"), "Count"});
    ASSERT_EQ(count.status, 0) << count.err;
    const json expected = Zenta({"im", "ZENTA_Dog", "Count"})["outParameters"];
    EXPECT_NE(count.out.find("Total (uint32): " + std::to_string(expected["Total"].get<unsigned>())), std::string::npos)
        << count.out;

    const TProgramRun line = Wbemcli({"cm", fServer->Object("ZENTA_Process.ProcessId=1"),
                                      "ReadCommandLine.Separator=\"+\",maxlength=3"});
    ASSERT_EQ(line.status, 0) << line.err;
    // The IN/OUT parameter comes back with the length of the whole line.
    const json zenta = Zenta({"im", "ZENTA_Process.ProcessId=1", "ReadCommandLine", "Separator=+", "MaxLength=3"});
    EXPECT_NE(line.out.find("CommandLine (string): " + zenta["outParameters"]["CommandLine"].get<std::string>()),
              std::string::npos)
        << line.out;
    EXPECT_NE(line.out.find("maxlength (uint32): " + std::to_string(zenta["outParameters"]["maxlength"].get<unsigned>())),
              std::string::npos)
        << line.out;
}

TEST_F(ServerWithoutAuth, ReportsProviderAndRequestErrorsWithTheirCimStatus) {
    REQUIRE_CLIENTS();
    const struct {
        std::vector<std::string> arguments;
        const char* expected;
    } cases[] = {
        {{"gi", fServer->Object("ZENTA_Process.ProcessId=4000000000")}, "(6) CIM_ERR_NOT_FOUND"},
        {{"ei", fServer->Object("NoSuchClass")}, "(5) CIM_ERR_INVALID_CLASS"},
        {{"ei", fServer->Base() + "/root/other:ZENTA_Cat"}, "(3) CIM_ERR_INVALID_NAMESPACE"},
        {{"cm", fServer->Object("ZENTA_Dog"), "Bark"}, "CIM_ERR_"},
        {{"di", fServer->Object("ZENTA_Cat.Name=\"Tom\"")}, "(7) CIM_ERR_NOT_SUPPORTED"},
    };
    for (const auto& entry : cases) {
        const TProgramRun run = Wbemcli(entry.arguments);
        EXPECT_NE(run.status, 0) << entry.arguments[1];
        EXPECT_NE((run.out + run.err).find(entry.expected), std::string::npos)
            << entry.arguments[1] << ": " << run.out << run.err;
    }
}

TEST_F(ServerWithoutAuth, AnswersQualifierRequestsOverRawCimXml) {
    REQUIRE_CLIENTS();
    const THttpAnswer all = Curl(fServer->Base() + "/cimom", IntrinsicCall("EnumerateQualifiers", ""),
                                 CimHeaders("EnumerateQualifiers"));
    EXPECT_EQ(all.status, 200);
    EXPECT_EQ(all.Header("cimoperation"), "MethodResponse");
    EXPECT_NE(all.body.find("<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\""), std::string::npos) << all.body;
    const THttpAnswer key = Curl(fServer->Base() + "/cimom",
                                 IntrinsicCall("GetQualifier", "<IPARAMVALUE NAME=\"QualifierName\"><VALUE>Abstract</VALUE></IPARAMVALUE>"),
                                 CimHeaders("GetQualifier"));
    EXPECT_NE(key.body.find("<IRETURNVALUE><QUALIFIER.DECLARATION NAME=\"Abstract\""), std::string::npos) << key.body;
}

TEST_F(ServerWithoutAuth, RefusesBadRequestsWithClearErrorsAndLivesOn) {
    REQUIRE_CLIENTS();
    const std::string url = fServer->Base() + "/cimom";
    const THttpAnswer garbage = Curl(url, "<CIM><MESSAGE ID=", CimHeaders("EnumerateInstances"));
    EXPECT_EQ(garbage.status, 400);
    EXPECT_EQ(garbage.Header("cimerror"), "request-not-well-formed");

    const THttpAnswer unknown = Curl(url, IntrinsicCall("Frobnicate", ""), CimHeaders("Frobnicate"));
    EXPECT_EQ(unknown.status, 200);
    EXPECT_NE(unknown.body.find("<ERROR CODE=\"7\""), std::string::npos) << unknown.body;

    const std::string otherNamespace = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"interop\"/></LOCALNAMESPACEPATH>";
    const THttpAnswer wrongNamespace =
        Curl(url, IntrinsicCall("EnumerateClassNames", "", otherNamespace), CimHeaders("EnumerateClassNames"));
    EXPECT_NE(wrongNamespace.body.find("<ERROR CODE=\"3\""), std::string::npos) << wrongNamespace.body;

    const THttpAnswer mismatch = Curl(url, IntrinsicCall("EnumerateQualifiers", ""), CimHeaders("GetClass"));
    EXPECT_EQ(mismatch.status, 400);
    EXPECT_EQ(mismatch.Header("cimerror"), "header-mismatch");

    const THttpAnswer notCim = Curl(url, IntrinsicCall("EnumerateQualifiers", ""), {"CIMMethod: EnumerateQualifiers"});
    EXPECT_EQ(notCim.status, 400);
    EXPECT_EQ(notCim.Header("cimerror"), "unsupported-operation");

    EXPECT_EQ(Curl(url, "", {}).status, 405);  // a GET

    const THttpAnswer huge = Curl(url, std::string(5 * 1024 * 1024, 'x'), CimHeaders("EnumerateQualifiers"));
    EXPECT_EQ(huge.status, 413);

    const THttpAnswer longHeader = Curl(url, IntrinsicCall("EnumerateQualifiers", ""),
                                        {"X-Padding: " + std::string(40000, 'p'), "CIMOperation: MethodCall"});
    EXPECT_EQ(longHeader.status, 431);

    // After all that, the server answers as before.
    EXPECT_EQ(Wbemcli({"ein", fServer->Object("ZENTA_Cat")}).status, 0);
}

TEST_F(ServerWithoutAuth, EightClientsOfAHundredRequestsEachGetCompleteAnswers) {
    REQUIRE_CLIENTS();
    const TProgramRun reference = Wbemcli({"-nl", "ei", fServer->Object("ZENTA_Animal")});
    ASSERT_EQ(reference.status, 0) << reference.err;
    ASSERT_EQ(ReadShown(reference.out).size(), 5u) << reference.out;
    std::atomic<int> wrong(0);
    std::vector<std::string> failures(8);
    std::vector<std::thread> clients;
    for (int client = 0; client < 8; ++client) {
        clients.emplace_back([&, client] {
            for (int i = 0; i < 100; ++i) {
                const TProgramRun run = Wbemcli({"-nl", "ei", fServer->Object("ZENTA_Animal")});
                if (run.status != 0 || run.out != reference.out) {
                    ++wrong;
                    failures[client] = run.out + run.err;
                }
            }
        });
    }
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(wrong.load(), 0);
    for (const std::string& failure : failures) EXPECT_EQ(failure, "");
}

// Makes a users file with one user through `zentad passwd`.
class TUsersFile {
public:
    TUsersFile(const std::string& user, const std::string& password) : fPath(fDirectory.Path() + "/users") {
        const TProgramRun run = RunProgram({ZENTAD, "passwd", fPath, user}, password + "\n");
        EXPECT_EQ(run.status, 0) << run.err;
    }
    const std::string& Path() const { return fPath; }

private:
    TScratchDirectory fDirectory;
    std::string fPath;
};

TEST(ServerSecurity, LetsInOnlyUsersWithTheRightPassword) {
    REQUIRE_CLIENTS();
    TUsersFile users("alice", "s3cret word");
    TZentad server({"--users", users.Path(), "--workers", "1"});
    const TProgramRun right = Wbemcli({"ein", server.Object("ZENTA_Cat", "alice:s3cret word")});
    EXPECT_EQ(right.status, 0) << right.err;
    EXPECT_EQ(ShownPaths(right.out).size(), 3u);

    const TProgramRun wrong = Wbemcli({"ein", server.Object("ZENTA_Cat", "alice:guess")});
    EXPECT_NE(wrong.status, 0);
    EXPECT_NE((wrong.out + wrong.err).find("Invalid username/password"), std::string::npos) << wrong.out << wrong.err;

    const THttpAnswer anonymous =
        Curl(server.Base() + "/cimom", IntrinsicCall("EnumerateQualifiers", ""), CimHeaders("EnumerateQualifiers"));
    EXPECT_EQ(anonymous.status, 401);
    EXPECT_EQ(anonymous.Header("www-authenticate"), "Basic realm=\"zentad\"");
    EXPECT_EQ(anonymous.body.find("QUALIFIER"), std::string::npos);
    EXPECT_NE(server.Log().find("wrong credentials for user alice"), std::string::npos) << server.Log();
}

TEST(ServerSecurity, RefusesToServeWithoutAuthenticationBeyondLoopback) {
    const TProgramRun open = RunProgram({ZENTAD, "--no-auth", "--listen", "0.0.0.0:0"});
    EXPECT_EQ(open.status, 2);
    EXPECT_NE(open.err.find("not a loopback address"), std::string::npos) << open.err;
    const TProgramRun mixed = RunProgram({ZENTAD, "--no-auth", "--listen", "127.0.0.1:0", "--listen", "[::]:0"});
    EXPECT_EQ(mixed.status, 2);
    const TProgramRun nobody = RunProgram({ZENTAD, "--listen", "127.0.0.1:0"});
    EXPECT_EQ(nobody.status, 2);
    EXPECT_NE(nobody.err.find("--users"), std::string::npos) << nobody.err;
}

TEST(ServerSecurity, ServesHttpsWithTheCertificateGiven) {
    REQUIRE_CLIENTS();
#ifndef ZENTAD_TLS
    GTEST_SKIP() << "this zentad was built without TLS (no OpenSSL for the target)";
#endif
    if (access(OPENSSL, X_OK) != 0) GTEST_FAIL() << "the openssl program is not installed (scripts/install-deps)";
    const TScratchDirectory directory;
    const std::string key = directory.Path() + "/key.pem";
    const std::string certificate = directory.Path() + "/cert.pem";
    const TProgramRun made = RunProgram({OPENSSL, "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1",
                                         "-subj", "/CN=localhost", "-keyout", key, "-out", certificate});
    ASSERT_EQ(made.status, 0) << made.err;
    {
        TZentad server({"--no-auth", "--tls-cert", certificate, "--tls-key", key, "--workers", "1"});
        const std::string base = server.Base();
        ASSERT_EQ(base.rfind("https://", 0), 0u) << base;
        const TProgramRun cats = Wbemcli({"-noverify", "ein", base + "/root/cimv2:ZENTA_Cat"});
        EXPECT_EQ(cats.status, 0) << cats.err;
        EXPECT_EQ(ShownPaths(cats.out).size(), 3u) << cats.out;
        // Plain HTTP on the TLS port gets nowhere, and the server lives on.
        const THttpAnswer plain = Curl("http://" + base.substr(8) + "/cimom", IntrinsicCall("EnumerateQualifiers", ""),
                                       CimHeaders("EnumerateQualifiers"));
        EXPECT_EQ(plain.status, 0);
        const THttpAnswer secure = Curl(base + "/cimom", IntrinsicCall("EnumerateQualifiers", ""),
                                        CimHeaders("EnumerateQualifiers"), {"-k"});
        EXPECT_EQ(secure.status, 200);
    }
}

class FaultyProviders : public ::testing::Test {
protected:
    void SetUp() override {
        if (!HaveClients()) GTEST_SKIP() << "wbemcli or curl is not installed (scripts/install-deps)";
        fServer.reset(new TZentad({"--no-auth", "--providers", ZENTAD_TEST_MODULES, "--workers", "1",
                                   "--request-timeout", "3"}));
    }
    std::unique_ptr<TZentad> fServer;
};

TEST_F(FaultyProviders, ACrashOrAHangCostsOneRequestAndTheNextIsAnswered) {
    const TProgramRun crash = Wbemcli({"ei", fServer->Object("Faulty_Crash")});
    EXPECT_NE(crash.status, 0);
    const std::string said = crash.out + crash.err;
    EXPECT_NE(said.find("(1) CIM_ERR_FAILED"), std::string::npos) << said;
    EXPECT_NE(said.find("Faulty_Provider"), std::string::npos) << said;
    // Under AddressSanitizer the fault becomes an abort.
    EXPECT_TRUE(said.find("crashed with SIGSEGV") != std::string::npos ||
                said.find("crashed with SIGABRT") != std::string::npos)
        << said;

    const TProgramRun after = Wbemcli({"ein", fServer->Object("Faulty_Many")});
    EXPECT_EQ(after.status, 0) << after.err;
    EXPECT_EQ(ShownPaths(after.out).size(), 3000u);

    const TProgramRun hang = Wbemcli({"ein", fServer->Object("Faulty_Hang")});
    EXPECT_NE((hang.out + hang.err).find("did not answer"), std::string::npos) << hang.out << hang.err;
    EXPECT_EQ(Wbemcli({"ein", fServer->Object("Faulty_Many")}).status, 0);
    EXPECT_NE(fServer->Log().find("provider Faulty_Provider (module Faulty.cmpi.so) crashed with SIG"), std::string::npos)
        << fServer->Log();
}

TEST(ServerLoad, RefusesWhatTheQueueCannotHoldWithServiceUnavailable) {
    REQUIRE_CLIENTS();
    // One worker, one place in the queue: once the worker hangs on the first
    // of three requests, one of the other two finds both taken.
    const THangMarks hangs;
    TZentad server({"--no-auth", "--providers", ZENTAD_TEST_MODULES, "--workers", "1", "--queue", "1",
                    "--request-timeout", "5"},
                   {hangs.Environment()});
    const std::string call = IntrinsicCall(
        "EnumerateInstanceNames", "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"Faulty_Hang\"/></IPARAMVALUE>");
    std::vector<THttpAnswer> answers(3);
    std::vector<std::thread> clients;
    for (THttpAnswer& answer : answers) {
        clients.emplace_back([&] { answer = Curl(server.Base() + "/cimom", call, CimHeaders("EnumerateInstanceNames")); });
        if (clients.size() == 1) {
            EXPECT_TRUE(hangs.WaitFor(1)) << server.Log();
        }
    }
    for (std::thread& client : clients) client.join();
    int refused = 0;
    for (const THttpAnswer& answer : answers) {
        if (answer.status == 503) {
            ++refused;
            EXPECT_EQ(answer.Header("retry-after"), "1");
        } else {
            EXPECT_EQ(answer.status, 200);
            EXPECT_NE(answer.body.find("<ERROR CODE=\"1\""), std::string::npos) << answer.body;
        }
    }
    EXPECT_GE(refused, 1);
    EXPECT_LE(refused, 2);
    // Once the worker is free again, requests are answered.
    EXPECT_EQ(Wbemcli({"ein", server.Object("Faulty_Many")}).status, 0);
}

TEST_F(FaultyProviders, StreamsLargeAnswersInChunksAndReportsLateFailuresInTrailers) {
    const std::string url = fServer->Base() + "/cimom";
    const std::string many = IntrinsicCall(
        "EnumerateInstances", "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"Faulty_Many\"/></IPARAMVALUE>");
    std::vector<std::string> headers = CimHeaders("EnumerateInstances");
    headers.push_back("TE: trailers");
    const THttpAnswer streamed = Curl(url, many, headers);
    EXPECT_EQ(streamed.status, 200);
    EXPECT_EQ(streamed.Header("transfer-encoding"), "chunked");
    std::size_t count = 0;
    for (std::size_t at = streamed.body.find("<VALUE.NAMEDINSTANCE>"); at != std::string::npos;
         at = streamed.body.find("<VALUE.NAMEDINSTANCE>", at + 1)) {
        ++count;
    }
    EXPECT_EQ(count, 3000u);
    EXPECT_NE(streamed.body.find("&lt;a text that needs escaping &amp; some"), std::string::npos);
    EXPECT_NE(streamed.body.find("</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>"), std::string::npos);

    std::string late = many;
    late.replace(late.find("Faulty_Many"), 11, "Faulty_Late");
    const THttpAnswer failed = Curl(url, late, headers, {"--raw"});
    EXPECT_EQ(failed.status, 200);
    EXPECT_NE(failed.body.find("\r\nCIMStatusCode: 2\r\n"), std::string::npos) << failed.body.substr(failed.body.size() - 300);
    EXPECT_NE(failed.body.find("CIMStatusCodeDescription: Faulty_Late: provider Faulty_Provider: CIM_ERR_ACCESS_DENIED: gave up late"),
              std::string::npos);
    EXPECT_EQ(failed.body.find("</CIM>"), std::string::npos);

    // wbemcli reads the trailer when it asks for one (-cte); without, it
    // sees the answer break off, never a shorter answer that looks whole.
    const TProgramRun reading = Wbemcli({"-cte", "ein", fServer->Object("Faulty_Late")});
    EXPECT_NE(reading.status, 0);
    EXPECT_NE((reading.out + reading.err).find("(2) CIM_ERR_ACCESS_DENIED"), std::string::npos) << reading.err;
    const TProgramRun plain = Wbemcli({"ein", fServer->Object("Faulty_Late")});
    EXPECT_NE(plain.status, 0);
    EXPECT_NE((plain.out + plain.err).find("partial"), std::string::npos) << plain.out << plain.err;
}

TEST(ServerLifetime, ReplacesWorkersAfterTheirRequestsOrWhenTheirMemoryGrew) {
    REQUIRE_CLIENTS();
    TZentad counted({"--no-auth", "--workers", "1", "--recycle-requests", "2"});
    for (int i = 0; i < 5; ++i) {
        const TProgramRun run = Wbemcli({"ein", counted.Object("ZENTA_Cat")});
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(ShownPaths(run.out).size(), 3u);
    }
    EXPECT_NE(counted.Log().find("worker 0 replaced: it served 2 requests"), std::string::npos) << counted.Log();

    TZentad grown({"--no-auth", "--workers", "1", "--recycle-memory", "1", "--providers", ZENTAD_TEST_MODULES},
                  {"FAULTY_COUNT=50000"});
    EXPECT_EQ(Wbemcli({"ein", grown.Object("Faulty_Many")}).status, 0);
    const TProgramRun after = Wbemcli({"ein", grown.Object("Faulty_Many")});
    EXPECT_EQ(after.status, 0) << after.err;
    EXPECT_EQ(ShownPaths(after.out).size(), 50000u);
    EXPECT_NE(grown.Log().find("worker 0 replaced: its memory grew by"), std::string::npos) << grown.Log();
}

TEST(ServerLifetime, FinishesTheAnswerInProgressWhenAskedToStop) {
    REQUIRE_CLIENTS();
    // The grace is long enough for the slowest build (under the sanitizers
    // the answer takes tens of seconds).
    TZentad server({"--no-auth", "--providers", ZENTAD_TEST_MODULES, "--shutdown-grace", "600"},
                   {"FAULTY_COUNT=200000"});
    const std::string call = IntrinsicCall(
        "EnumerateInstanceNames", "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"Faulty_Many\"/></IPARAMVALUE>");
    THttpAnswer answer;
    std::thread client([&] { answer = Curl(server.Base() + "/cimom", call, CimHeaders("EnumerateInstanceNames")); });
    // 200,000 names take the worker seconds: the stop comes while it works
    // (were it done already, the test would still hold, only prove less).
    sleep(1);
    kill(server.Pid(), SIGTERM);
    client.join();
    EXPECT_EQ(server.Stop(), 0) << server.Log();
    EXPECT_EQ(answer.status, 200);
    EXPECT_NE(answer.body.find("</CIM>"), std::string::npos);
    EXPECT_NE(server.Log().find("stopping on SIGTERM"), std::string::npos) << server.Log();
}


TEST(ServerLifetime, EndsCleanlyWhenTheGraceRunsOutDuringAnAnswer) {
    REQUIRE_CLIENTS();
    // No grace, and a provider that hangs: the front stops at once while the
    // worker is still asked; the connection's last handlers are dropped with
    // the I/O side once the request has timed out.
    const THangMarks hangs;
    TZentad server({"--no-auth", "--providers", ZENTAD_TEST_MODULES, "--shutdown-grace", "0", "--request-timeout", "3"},
                   {hangs.Environment()});
    const std::string call = IntrinsicCall(
        "EnumerateInstanceNames", "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"Faulty_Hang\"/></IPARAMVALUE>");
    THttpAnswer answer;
    std::thread client([&] { answer = Curl(server.Base() + "/cimom", call, CimHeaders("EnumerateInstanceNames")); });
    EXPECT_TRUE(hangs.WaitFor(1)) << server.Log();
    EXPECT_EQ(server.Stop(), 0) << server.Log();
    client.join();
    EXPECT_NE(server.Log().find("1 connections still open at shutdown"), std::string::npos) << server.Log();
}

}  // namespace
