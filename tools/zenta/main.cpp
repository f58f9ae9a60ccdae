// zenta: a command-line front end to a ZENTA host. Each run starts the host
// in-process with its namespace providers and the CMPI provider modules,
// answers one request and exits.
#include <csignal>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "HostSession.h"
#include "Output.h"
#include "Requests.h"
#include "TAssertionFailure.h"
#include "TZENTAException.h"
#include "ToolError.h"

namespace {

const int kRequestFailed = 1;
const int kUsageError = 2;

typedef std::function<TRequestResult(TRequests&)> TRequest;

const char kFooter[] =
    "PATH is CIM object path text: Class.Key=\"text\",Number=3 (quote it for the shell:\n"
    "  zenta gi 'ZENTA_Process.ProcessId=1'). A path without keys names the class.\n"
    "\n"
    "By default the provider modules (*.cmpi.so with their .reg and .classes documents,\n"
    "in .xml or .mof) are those beside libcmpi.nsp.so in <directory of zenta>/../lib.\n"
    "--providers DIR serves the modules of DIR instead: zenta mirrors DIR in a private\n"
    "temporary directory of symbolic links, opens libcmpi.nsp.so through a link placed\n"
    "there (the library looks for modules beside itself); a helper process removes that\n"
    "directory as soon as zenta has ended, however it ended. DIR itself is only read.\n"
    "\n"
    "Exit status: 0 answered; 1 the request failed (one line on stderr says what and\n"
    "why); 2 usage error. Log lines go to stderr (or --log-file) at --log-level 0-4\n"
    "(default 1, or ZENTA_LOG_LEVEL; ZENTA_LOG_FILE names a default log file).";

std::string OneLine(std::string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' || text[i] == '\r') text[i] = ' ';
    }
    return text;
}

int Fail(const std::string& message) {
    std::fprintf(stderr, "zenta: %s\n", OneLine(message).c_str());
    return kRequestFailed;
}

void Print(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
        throw TToolError(std::string("cannot write the answer: ") + std::strerror(errno));
    }
}

int Answer(const TSessionOptions& options, bool json, const TRequest& request) {
    try {
        THostSession session(options);
        std::string output;
        {
            TRequests requests(session);
            const TRequestResult result = request(requests);
            output = json ? RenderJson(result) : RenderText(result);
        }
        session.EndRequest();
        Print(output);
        return 0;
    } catch (const TToolError& failure) {
        return Fail(failure.what());
    } catch (const NVURZENTA20::TZENTAException& failure) {
        return Fail(failure.GetStatusCode().TranslateStatusCode() + ": " + failure.GetMessage());
    } catch (const NVURZENTA20::TAssertionFailure& failure) {
        return Fail(std::string("internal failure: ") + failure.what());
    } catch (const std::exception& failure) {
        return Fail(failure.what());
    }
}

// ZENTA_SCHEMA_PATH: directories separated by ":"; empty entries are skipped.
std::vector<std::string> SchemaPathFromEnvironment() {
    std::vector<std::string> directories;
    const char* path = std::getenv("ZENTA_SCHEMA_PATH");
    std::string rest = path != nullptr ? path : "";
    while (!rest.empty()) {
        const std::string::size_type colon = rest.find(':');
        const std::string entry = rest.substr(0, colon);
        if (!entry.empty()) directories.push_back(entry);
        rest = colon == std::string::npos ? std::string() : rest.substr(colon + 1);
    }
    return directories;
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

}  // namespace

int main(int argc, char** argv) {
    // A reader that goes away (zenta ... | head) is reported, not fatal.
    std::signal(SIGPIPE, SIG_IGN);

    CLI::App app("zenta: ask the CMPI providers of a ZENTA host", "zenta");
    app.require_subcommand(1);
    app.fallthrough();
    app.footer(kFooter);

    TSessionOptions options;
    bool json = false;
    app.add_flag("--json", json, "print one JSON document instead of MOF-style text");
    app.add_option("--providers", options.providerDirectory, "serve the provider modules of DIR")
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR");
    app.add_option("--log-level", options.logLevel, "log messages of levels 0 (errors) to N (4: everything)")
        ->check(CLI::Range(0, 4))
        ->type_name("N");
    app.add_option("--log-file", options.logFile, "append log messages to F instead of stderr")->type_name("F");
    app.add_option("--schema", options.schemaDirectories,
                   "read the class documents (*.mof, *.xml) of DIR before the modules; repeatable "
                   "(default: ZENTA_SCHEMA_PATH, directories separated by :)")
        ->allow_extra_args(false)  // one directory per --schema
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR");

    std::string className;
    std::string pathText;
    std::string methodName;
    std::vector<std::string> arguments;
    bool deep = false;
    TAssociationFilter filter;
    std::vector<std::pair<CLI::App*, TRequest> > verbs;

    CLI::App* providers = app.add_subcommand("providers", "list the providers and the classes they serve");
    verbs.push_back(std::make_pair(providers, [](TRequests& r) { return r.Providers(); }));

    CLI::App* classes = app.add_subcommand("classes", "list the root classes, or the subclasses of CLASS");
    classes->add_flag("--deep", deep, "all levels below, not only the next one");
    classes->add_option("CLASS", className, "the class whose subclasses to list");
    verbs.push_back(std::make_pair(classes, [&](TRequests& r) { return r.Classes(className, deep); }));

    CLI::App* ei = app.add_subcommand("ei", "enumerate the instances of CLASS and of its subclasses");
    ei->add_option("CLASS", className, "class name")->required();
    verbs.push_back(std::make_pair(ei, [&](TRequests& r) { return r.EnumerateInstances(className); }));

    CLI::App* ein = app.add_subcommand("ein", "enumerate the instance paths of CLASS and of its subclasses");
    ein->add_option("CLASS", className, "class name")->required();
    verbs.push_back(std::make_pair(ein, [&](TRequests& r) { return r.EnumerateInstanceNames(className); }));

    CLI::App* gi = app.add_subcommand("gi", "get the instance PATH names");
    gi->add_option("PATH", pathText, "instance path")->required();
    verbs.push_back(std::make_pair(gi, [&](TRequests& r) { return r.GetInstance(pathText); }));

    CLI::App* im = app.add_subcommand(
        "im", "invoke METHOD on PATH: a class path calls a class method, an instance path the instance's; "
              "prints the output parameters");
    im->add_option("PATH", pathText, "class or instance path")->required();
    im->add_option("METHOD", methodName, "method name")->required();
    im->add_option("NAME=VALUE", arguments,
                   "input parameters; values are read as the declared type (arrays: a,b,c)");
    verbs.push_back(std::make_pair(im, [&](TRequests& r) { return r.InvokeMethod(pathText, methodName, arguments); }));

    CLI::App* ai = app.add_subcommand("ai", "list the instances associated with the instance PATH");
    ai->add_option("PATH", pathText, "instance path")->required();
    AddAssociationFilters(*ai, filter, true);
    verbs.push_back(std::make_pair(ai, [&](TRequests& r) { return r.Associators(pathText, filter); }));

    CLI::App* ri = app.add_subcommand("ri", "list the association instances that refer to the instance PATH");
    ri->add_option("PATH", pathText, "instance path")->required();
    AddAssociationFilters(*ri, filter, false);
    verbs.push_back(std::make_pair(ri, [&](TRequests& r) { return r.References(pathText, filter); }));

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsageError;
    }
    if (options.schemaDirectories.empty()) options.schemaDirectories = SchemaPathFromEnvironment();
    for (std::size_t i = 0; i < verbs.size(); ++i) {
        if (verbs[i].first->parsed()) return Answer(options, json, verbs[i].second);
    }
    return kUsageError;
}
