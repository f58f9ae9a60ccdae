// Operating-system services of the host: plug-in search, the paths of a
// plug-in's documents, and the local time.
#ifndef ZENTA_HOST_TOSSPECIFIC_H
#define ZENTA_HOST_TOSSPECIFIC_H

#include <string>
#include <vector>

#include "TCIMDateTime.h"

namespace NVURZENTA20 {

class TOSSpecific {
public:
    // Absolute paths of the regular files in `directory` whose names end in
    // ".<kind>.so", sorted by name. A missing directory gives an empty list.
    static std::vector<std::string> FindPlugins(std::string directory, std::string kind);
    // "/opt/p/Foo.<kind>.so" -> "/opt/p/Foo.reg.mof" when the module's
    // documents are MOF, else "/opt/p/Foo.reg.xml". A module whose
    // documents lie there in both formats throws TZENTAException
    // (kInvalidDocument) naming them.
    static std::string BuildRegistrationPath(std::string module, std::string kind);
    // "/opt/p/Foo.<kind>.so" -> "/opt/p/Foo.classes.mof" or ".classes.xml",
    // by the same rule.
    static std::string BuildSpecificationPath(std::string module, std::string kind);
    // Now, as a timestamp with the local offset from UTC.
    static TCIMDateTime GetLocalTime();
};

}  // namespace NVURZENTA20

#endif
