// zenta: a command-line front end to a ZENTA host. Each run surveys the
// provider modules, starts a worker process that hosts them, has it answer
// one request and prints the answer as it streams in.
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Check.h"
#include "Request.h"
#include "ServeOptionsCli.h"
#include "ServedDirectory.h"
#include "ToolError.h"
#include "Worker.h"
#include "ZentaVersion.h"

namespace {

const int kRequestFailed = 1;
const int kUsageError = 2;

const char kFooter[] =
    "PATH is CIM object path text: Class.Key=\"text\",Number=3, quoted for the shell\n"
    "as in zenta gi 'ZENTA_Process.ProcessId=1'. A path without keys names the class.\n"
    "\n"
    "By default the provider modules (*.cmpi.so with their .reg and .classes\n"
    "documents, in .xml or .mof) are those beside libcmpi.nsp.so in the directory of\n"
    "zenta's libraries (<directory of zenta>/../lib/zenta once installed).\n"
    "--providers DIR serves the modules of DIR instead. Either way each module is\n"
    "checked in a child process first, and one that cannot be loaded is left out\n"
    "with a one-line reason. zenta mirrors the directory in a private temporary\n"
    "directory of symbolic links (under $TMPDIR when that is short, else /tmp) and\n"
    "opens libcmpi.nsp.so through a link placed there (the library looks for\n"
    "modules beside itself); a helper process removes that directory as soon as\n"
    "zenta has ended, however it ended. The directory served is only read.\n"
    "\n"
    "The request runs in a worker process: a provider that crashes or hangs\n"
    "(see --timeout) fails the request with a message naming it.\n"
    "\n"
    "Exit status: 0 answered; 1 the request failed (one line on stderr says what and\n"
    "why); 2 usage error. Log lines go to stderr (or --log-file) at --log-level 0-4\n"
    "(default 1, or ZENTA_LOG_LEVEL; ZENTA_LOG_FILE names a default log file).";

// Control characters of a user's text must not reach the terminal raw.
std::string Printable(const std::string& text) {
    std::string shown;
    for (const char ch : text) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c == '\n' || c == '\r' || c == '\t') {
            shown += ' ';
        } else if (c < 0x20 || c == 0x7F) {
            char escaped[8];
            std::snprintf(escaped, sizeof(escaped), "\\x%02X", c);
            shown += escaped;
        } else {
            shown += ch;
        }
    }
    return shown;
}

int Fail(const std::string& message) {
    std::fprintf(stderr, "zenta: %s\n", Printable(message).c_str());
    return kRequestFailed;
}

class TStandardOutput : public IByteSink {
public:
    void Write(const char* data, std::size_t size) override {
        while (size > 0) {
            const ssize_t written = write(STDOUT_FILENO, data, size);
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) throw TToolError(std::string("cannot write the answer: ") + std::strerror(errno));
            data += written;
            size -= static_cast<std::size_t>(written);
        }
    }
};

struct TToolOptions {
    TServeOptions serve;
    bool json = false;
    int timeoutSeconds = 0;
};

int Answer(const TToolOptions& options, TRequest request) {
    request.format = options.json ? EFormat::kJson : EFormat::kText;
    try {
        TServedDirectory served(options.serve, [](const std::string& line) { Fail(line); });
        TWorker worker(served.GetWorkerSetup());
        TStandardOutput out;
        TOutcome outcome = worker.Start(options.timeoutSeconds);
        if (outcome.Succeeded()) outcome = worker.Run(request, out, options.timeoutSeconds);
        worker.Stop();
        if (!outcome.Succeeded()) return Fail(outcome.Describe(request.Describe(), options.timeoutSeconds));
        return 0;
    } catch (const std::exception& failure) {
        return Fail(failure.what());
    }
}

void AddAssociationFilters(CLI::App& command, TAssociationFilter& filter, bool associators) {
    if (associators) {
        command.add_option("--assoc-class", filter.assocClass, "only through associations of this class");
    }
    command.add_option("--result-class", filter.resultClass,
                       associators ? "only associated instances of this class" : "only associations of this class");
    command.add_option("--role", filter.role, "the reference property that points at PATH");
    if (associators) {
        command.add_option("--result-role", filter.resultRole, "the reference property that points at the result");
    }
}

void AddPropertyList(CLI::App& command, TRequest& request) {
    command
        .add_option_function<std::vector<std::string> >(
            "--properties",
            [&request](const std::vector<std::string>& names) {
                request.hasPropertyList = true;
                request.propertyList = names;
            },
            "only these properties (comma-separated; keys always form the path)")
        ->delimiter(',')
        ->type_name("A,B");
}

// Each verb fills the request and says which request it is.
struct TVerb {
    CLI::App* command;
    EVerb verb;
};

}  // namespace

int main(int argc, char** argv) {
    const int child = RunChildProcessIfAsked(argc, argv);
    if (child >= 0) return child;
    // A reader that goes away (zenta ... | head) is reported, not fatal.
    std::signal(SIGPIPE, SIG_IGN);

    CLI::App app("zenta: ask the CMPI providers of a ZENTA host", "zenta");
    app.require_subcommand(1);
    app.fallthrough();
    app.set_version_flag("--version", "zenta " ZENTA_VERSION);
    app.footer(kFooter);

    TToolOptions options;
    TRequest request;
    app.add_flag("--json", options.json, "print one JSON document instead of MOF-style text");
    AddServeOptions(app, options.serve, "1, or ZENTA_LOG_LEVEL");
    app.add_option("--namespace", request.nameSpace, "the namespace asked (the host serves " +
                                                         options.serve.servedNamespace + ")")
        ->type_name("NS");
    app.add_option("--timeout", options.timeoutSeconds, "give up on a provider that has not answered in S seconds")
        ->check(CLI::PositiveNumber)
        ->type_name("S");

    std::vector<TVerb> verbs;
    const auto verb = [&](const char* name, const char* description, EVerb kind) {
        CLI::App* command = app.add_subcommand(name, description);
        verbs.push_back(TVerb{command, kind});
        return command;
    };

    verb("providers", "list the providers and the classes they serve", EVerb::kProviders);

    bool deepClasses = false;
    CLI::App* classes = verb("classes", "list the root classes, or the subclasses of CLASS", EVerb::kClasses);
    classes->add_flag("--deep", deepClasses, "all levels below, not only the next one");
    classes->add_option("CLASS", request.className, "the class whose subclasses to list");

    CLI::App* gc = verb("gc", "print the declaration of CLASS as MOF", EVerb::kGetClass);
    gc->callback([&request] { request.includeQualifiers = true; });
    gc->add_option("CLASS", request.className, "class name")->required();

    bool shallow = false;
    CLI::App* ecn = verb("ecn", "list the names of all classes, or of the subclasses of CLASS", EVerb::kEnumerateClassNames);
    ecn->add_option("CLASS", request.className, "the class whose subclasses to list");
    ecn->add_flag("--shallow", shallow, "only the next level, not all levels below");

    CLI::App* ei = verb("ei", "enumerate the instances of CLASS and of its subclasses", EVerb::kEnumerateInstances);
    ei->add_option("CLASS", request.className, "class name")->required();
    ei->add_flag("--shallow", shallow, "only the properties CLASS declares, not those its subclasses add");
    AddPropertyList(*ei, request);

    CLI::App* ein = verb("ein", "enumerate the instance paths of CLASS and of its subclasses", EVerb::kEnumerateInstanceNames);
    ein->add_option("CLASS", request.className, "class name")->required();

    CLI::App* gi = verb("gi", "get the instance PATH names", EVerb::kGetInstance);
    gi->add_option("PATH", request.path, "instance path")->required();
    AddPropertyList(*gi, request);

    std::vector<std::string> arguments;
    CLI::App* im = verb("im",
                        "invoke METHOD on PATH: a class path calls a class method, an instance path the instance's; "
                        "prints the output parameters",
                        EVerb::kInvokeMethod);
    im->add_option("PATH", request.path, "class or instance path")->required();
    im->add_option("METHOD", request.methodName, "method name")->required();
    im->add_option("NAME=VALUE", arguments, "input parameters; values are read as the declared type (arrays: a,b,c)");

    CLI::App* ai = verb("ai", "list the instances associated with the instance PATH", EVerb::kAssociators);
    CLI::App* ain = verb("ain", "list the paths of the instances associated with the instance PATH", EVerb::kAssociatorNames);
    CLI::App* ri = verb("ri", "list the association instances that refer to the instance PATH", EVerb::kReferences);
    CLI::App* rin = verb("rin", "list the paths of the association instances that refer to PATH", EVerb::kReferenceNames);
    for (CLI::App* walk : {ai, ain, ri, rin}) {
        walk->add_option("PATH", request.path, "instance path")->required();
        AddAssociationFilters(*walk, request.filter, walk == ai || walk == ain);
    }
    AddPropertyList(*ai, request);
    AddPropertyList(*ri, request);

    verb("eq", "list the qualifier declarations", EVerb::kEnumerateQualifiers);
    CLI::App* gq = verb("gq", "print the declaration of the qualifier NAME", EVerb::kGetQualifier);
    gq->add_option("NAME", request.qualifierName, "qualifier name")->required();

    std::string checkDirectory;
    CLI::App* check = app.add_subcommand(
        "check", "check the provider modules of DIR (default: the directory served) and report every problem");
    check->add_option("DIR", checkDirectory, "provider directory")->check(CLI::ExistingDirectory);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsageError;
    }
    ApplyServeEnvironment(options.serve);
    if (check->parsed()) {
        if (!checkDirectory.empty()) options.serve.providerDirectory = checkDirectory;
        return RunCheck(options.serve, options.timeoutSeconds, options.json);
    }
    for (const TVerb& entry : verbs) {
        if (!entry.command->parsed()) continue;
        request.verb = entry.verb;
        request.deep = entry.verb == EVerb::kClasses ? deepClasses : !shallow;
        for (const std::string& argument : arguments) {
            const std::size_t equals = argument.find('=');
            if (equals == std::string::npos || equals == 0) {
                return Fail("argument \"" + argument + "\" is not NAME=VALUE");
            }
            TArgument parsed;
            parsed.name = argument.substr(0, equals);
            parsed.text = argument.substr(equals + 1);
            request.arguments.push_back(parsed);
        }
        return Answer(options, request);
    }
    return kUsageError;
}
