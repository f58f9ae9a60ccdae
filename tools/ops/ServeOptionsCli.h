// The command-line options that say what a host serves, declared the same
// way for every program (zenta, zentad). Header only: the programs link
// CLI11, the operations layer does not.
#ifndef ZENTA_OPS_SERVEOPTIONSCLI_H
#define ZENTA_OPS_SERVEOPTIONSCLI_H

#include <string>

#include <CLI/CLI.hpp>

#include "ServedDirectory.h"

// --providers, --schema, --log-level and --log-file; `logDefault` says
// which level applies without --log-level.
inline void AddServeOptions(CLI::App& app, TServeOptions& options, const std::string& logDefault) {
    app.add_option("--providers", options.providerDirectory, "serve the provider modules of DIR")
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR");
    app.add_option("--schema", options.schemaDirectories,
                   "read the class documents (*.mof, *.xml) of DIR before the modules; repeatable "
                   "(default: ZENTA_SCHEMA_PATH, directories separated by :)")
        ->allow_extra_args(false)  // one directory per --schema
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR");
    app.add_option("--log-level", options.logLevel,
                   "log messages of levels 0 (errors) to N (4: everything); default " + logDefault)
        ->check(CLI::Range(0, 4))
        ->type_name("N");
    app.add_option("--log-file", options.logFile, "append log messages to F instead of stderr")->type_name("F");
}

// What the environment says where the command line said nothing.
inline void ApplyServeEnvironment(TServeOptions& options) {
    if (options.schemaDirectories.empty()) options.schemaDirectories = SchemaPathFromEnvironment();
}

#endif
