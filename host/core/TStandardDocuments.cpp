#include "TStandardDocuments.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include "TNamespacePopulator.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

const char* const kDocumentNames[] = {"qualifiers.xml", "registration.xml"};

bool IsFile(const std::string& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// "documents" beside the shared object that holds this function.
std::string DirectoryBesideLibrary() {
    Dl_info info;
    if (::dladdr(reinterpret_cast<void*>(&GetStandardDocumentsDirectory), &info) == 0 || !info.dli_fname) {
        throw TZENTAException(TZENTAStatusCode::kIOError, "cannot locate libzentacore.so, beside which the standard documents lie");
    }
    const std::string library(info.dli_fname);
    const std::string::size_type slash = library.rfind('/');
    return (slash == std::string::npos ? std::string(".") : library.substr(0, slash)) + "/documents";
}

}  // namespace

// The library and its documents are installed together, wherever that is;
// LoadStandardDocuments names the path of a document that is missing.
std::string GetStandardDocumentsDirectory() {
    return DirectoryBesideLibrary();
}

std::vector<std::string> GetStandardDocumentPaths() {
    const std::string directory = GetStandardDocumentsDirectory();
    std::vector<std::string> paths;
    for (const char* name : kDocumentNames) paths.push_back(directory + "/" + name);
    return paths;
}

void LoadStandardDocuments(boost::shared_ptr<ICIMNamespace> ns) {
    for (const auto& path : GetStandardDocumentPaths()) {
        if (!IsFile(path)) throw TZENTAException(TZENTAStatusCode::kIOError, "standard document " + path + " is missing");
        TNamespacePopulator::PopulateFromSharedFile(ns, path);
    }
}

}  // namespace NVURZENTA20
