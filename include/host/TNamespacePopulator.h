// Reads CIM-XML documents into a namespace.
#ifndef ZENTA_HOST_TNAMESPACEPOPULATOR_H
#define ZENTA_HOST_TNAMESPACEPOPULATOR_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ZentaTypes.h"

namespace NVURZENTA20 {

class TNamespacePopulator {
public:
    // Defines the document's classes (and qualifier declarations) in `ns`
    // and returns the classes in document order. A missing file gives an
    // empty list; a malformed document throws TZENTAException naming the
    // file and line and leaves `ns` as it was.
    static std::vector<boost::shared_ptr<ICIMClass> > PopulateFromXMLFile(boost::shared_ptr<ICIMNamespace> ns,
                                                                          std::string path);
    // Reads the document's instances (of classes `ns` knows) and returns
    // them in document order without filing them anywhere.
    static std::vector<boost::shared_ptr<ICIMInstance> > PopulateFromRegXMLFile(
        boost::shared_ptr<ICIMNamespace> ns, std::string path);
};

}  // namespace NVURZENTA20

#endif
