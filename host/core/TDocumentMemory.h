// What the host remembers of the documents it has read: which document
// defined each class, and which registration document registered each
// provider name. The host uses it to name both places when a document
// defines a class that another one already defined, and to warn when two
// modules register the same provider name. Entries of classes and
// namespaces that are gone are dropped as the memory grows.
#ifndef ZENTA_HOST_CORE_TDOCUMENTMEMORY_H
#define ZENTA_HOST_CORE_TDOCUMENTMEMORY_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "TDocumentPlan.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

// Who may define a class again. Shared documents (the host's standard
// documents and the schema) hold classes that every module uses; a
// module's document holds the classes of that module.
enum class EDocumentRole { kShared, kModule };

struct TDefinitionOrigin {
    TSourceLocation at;
    EDocumentRole role = EDocumentRole::kShared;
};

class TDocumentMemory {
public:
    static void RememberClass(const boost::shared_ptr<ICIMClass>& cls, const TDefinitionOrigin& origin);
    // False when the host did not read the class from a document.
    static bool FindClass(const boost::shared_ptr<ICIMClass>& cls, TDefinitionOrigin& origin);

    // Remembers that the registration document at `at` registers
    // `provider` for namespace `ns`. Returns the place of an earlier
    // registration of the same name by another document, or an empty
    // location (no file) when there is none.
    static TSourceLocation RememberProvider(const boost::shared_ptr<ICIMNamespace>& ns, const std::string& provider,
                                            const TSourceLocation& at);
};

}  // namespace NVURZENTA20

#endif
