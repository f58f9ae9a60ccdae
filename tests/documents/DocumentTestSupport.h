// Shared helpers of the document tests: documents written into a scratch
// directory, and a snapshot of what a namespace holds.
#ifndef ZENTA_TESTS_DOCUMENTS_DOCUMENTTESTSUPPORT_H
#define ZENTA_TESTS_DOCUMENTS_DOCUMENTTESTSUPPORT_H

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "InmemTestSupport.h"
#include "Programs.h"
#include "TNamespacePopulator.h"

namespace doctest {

using namespace inmemtest;

typedef TScratchDirectory TScratch;

// What a namespace holds, to prove that a failed document changed nothing.
inline std::vector<std::string> Snapshot(ICIMNamespace& ns) {
    std::vector<std::string> items = SubClassNames(*ns.GetClass("<root>", NoContext()), true);
    ns.EnumerateQualifierDecls(
        [&](boost::shared_ptr<ICIMQualifierDecl> decl) {
            items.push_back("qualifier " + decl->GetName());
            return true;
        },
        NoContext());
    return items;
}

// The message of the TZENTAException that reading `path` as a module's
// class document throws; "" when it throws none.
inline std::string ClassDocumentError(const boost::shared_ptr<ICIMNamespace>& ns, const std::string& path) {
    std::string message;
    StatusOf([&] { TNamespacePopulator::PopulateFromXMLFile(ns, path); }, &message);
    return message;
}

}  // namespace doctest

#endif
