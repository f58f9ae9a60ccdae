// What the document fuzz targets share: the input read as a document of
// the given name into a fresh repository, with small limits so that each
// run stays quick, and every include answered with the input itself (so
// that include nesting and cycles are exercised too).
#ifndef ZENTA_TESTS_FUZZ_FUZZDOCUMENTS_H
#define ZENTA_TESTS_FUZZ_FUZZDOCUMENTS_H

#include <cstdint>
#include <string>

#include "TDocumentDefiner.h"
#include "TDocumentReading.h"
#include "TInmemNamespace.h"
#include "TStandardDocuments.h"
#include "TZENTAException.h"

inline void FuzzDocument(const std::string& name, const std::uint8_t* data, std::size_t size) {
    using namespace NVURZENTA20;
    static const boost::shared_ptr<TInmemNamespace> standard = [] {
        boost::shared_ptr<TInmemNamespace> ns = TInmemNamespace::Create();
        LoadStandardDocuments(ns);
        return ns;
    }();
    TDocumentLimits limits;
    limits.maxFileBytes = 1 << 20;
    limits.maxTotalBytes = 4 << 20;
    limits.maxFiles = 64;
    limits.maxIncludeDepth = 8;
    const std::string input(reinterpret_cast<const char*>(data), size);
    const TMOFFileLoader itself = [&](const std::string&, std::size_t maxBytes, std::string& text) {
        if (input.size() > maxBytes) {
            throw TZENTAException(TZENTAStatusCode::kInvalidDocument, "the include is too large");
        }
        text = input;
        return true;
    };
    // Classes and instances go to a namespace of their own per input;
    // defining them in the shared one would make runs depend on each other.
    boost::shared_ptr<TInmemNamespace> ns = TInmemNamespace::Create();
    standard->EnumerateQualifierDecls(
        [&](boost::shared_ptr<ICIMQualifierDecl> decl) {
            ns->AllocateQualifierDecl(decl->GetName(), decl->GetDefaultValue(), decl->GetScope(), decl->GetFlavor(),
                                      TCIMContext());
            return true;
        },
        TCIMContext());
    try {
        GuardDocumentReading(name, [&] {
            const TDocumentPlan plan = ReadDocumentPlan(name, input, limits, itself);
            DefineClasses(ns, plan, EDocumentRole::kModule);
            MakeInstances(ns, plan);
            return 0;
        });
    } catch (const TZENTAException&) {
        // Refusing the input is a fine answer; anything else escaping is not.
    }
}

#endif
