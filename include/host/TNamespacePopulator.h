// Reads class and registration documents into a namespace. A document is
// CIM-XML (DSP0201) or MOF (DSP0004), told apart by the file name: a name
// that ends in ".mof" (in any case) is MOF, any other CIM-XML.
#ifndef ZENTA_HOST_TNAMESPACEPOPULATOR_H
#define ZENTA_HOST_TNAMESPACEPOPULATOR_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ZentaTypes.h"

namespace NVURZENTA20 {

class TNamespacePopulator {
public:
    // Defines the qualifier declarations and classes of a provider
    // module's class document in `ns` and returns the classes in document
    // order. A missing file gives an empty list. A class the namespace
    // holds already may be defined again identically (reading a module
    // again over the same namespace), never differently and never when
    // another module's document defined it. A malformed or inconsistent
    // document throws TZENTAException (kInvalidDocument, "FILE:LINE:COLUMN:
    // what is wrong") and leaves `ns` as it was; no other exception leaves.
    static std::vector<boost::shared_ptr<ICIMClass> > PopulateFromXMLFile(boost::shared_ptr<ICIMNamespace> ns,
                                                                          std::string path);
    // Reads a registration document's instances (of classes `ns` knows)
    // and returns them in document order without filing them anywhere.
    // Module and provider names longer than kMaxRegisteredNameLength bytes
    // are refused; a provider name that another registration document
    // registered already is logged as a warning naming both documents.
    static std::vector<boost::shared_ptr<ICIMInstance> > PopulateFromRegXMLFile(
        boost::shared_ptr<ICIMNamespace> ns, std::string path);

    // As PopulateFromXMLFile, for a document whose classes every module
    // may use: the host's standard documents and a schema. Any document
    // may define such a class again identically.
    static std::vector<boost::shared_ptr<ICIMClass> > PopulateFromSharedFile(boost::shared_ptr<ICIMNamespace> ns,
                                                                             std::string path);
    // Reads a schema: every "*.mof" and "*.xml" file directly in each
    // directory, the directories in the order given and the files of one
    // in byte order of their names, each as PopulateFromSharedFile. A file
    // or directory that cannot be read is logged (level 0) and skipped;
    // the returned list holds those messages, empty when all was read.
    static std::vector<std::string> PopulateFromSchemaDirectories(boost::shared_ptr<ICIMNamespace> ns,
                                                                  const std::vector<std::string>& directories);

    // Module and provider names form the names of the entry points the
    // CMPI library looks up in a module; they are held to this length.
    static const std::size_t kMaxRegisteredNameLength = 200;
};

}  // namespace NVURZENTA20

#endif
