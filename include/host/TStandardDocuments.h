// The documents every populated repository starts from: the CIM standard
// qualifier declarations that class documents use, the host's own
// qualifiers PLUGINNAME and DONTCOLLECT, and the provider registration
// classes PG_ProviderModule, PG_Provider and PG_ProviderCapabilities.
#ifndef ZENTA_HOST_TSTANDARDDOCUMENTS_H
#define ZENTA_HOST_TSTANDARDDOCUMENTS_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ZentaTypes.h"

namespace NVURZENTA20 {

// The directory the standard documents are read from: "documents" beside
// libzentacore.so, in a build tree as once installed.
std::string GetStandardDocumentsDirectory();
// The standard documents in the order they are loaded.
std::vector<std::string> GetStandardDocumentPaths();
// Loads the standard documents into `ns`; a missing document is an error
// (kIOError), as are its definitions clashing with what `ns` holds.
void LoadStandardDocuments(boost::shared_ptr<ICIMNamespace> ns);

}  // namespace NVURZENTA20

#endif
