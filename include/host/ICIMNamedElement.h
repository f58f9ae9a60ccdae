// Qualifier support shared by classes and declarations.
#ifndef ZENTA_HOST_ICIMNAMEDELEMENT_H
#define ZENTA_HOST_ICIMNAMEDELEMENT_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "ICIMQualifier.h"
#include "ICIMQualifierDecl.h"
#include "TCIMValue.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class ICIMNamedElement {
public:
    virtual ~ICIMNamedElement() {}
    // Attaches a qualifier, replacing one of the same name.
    virtual void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TCIMContext context) = 0;
    // Makes (does not attach) a qualifier of the declaration's flavor.
    virtual boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<const ICIMQualifierDecl> decl,
                                                               const TCIMValue& value,
                                                               TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<const ICIMQualifierDecl> decl,
                                                               const TCIMValue& value,
                                                               ICIMQualifierDecl::EFlavor flavor,
                                                               TCIMContext context) const = 0;
    // The qualifier of that name (own or propagated), or an empty pointer.
    virtual boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, TCIMContext context) const = 0;
    virtual void EnumerateQualifiers(const TQualifierCallback& callback, TCIMContext context) const = 0;
    // As GetQualifier; `propagated` tells whether the qualifier came from a
    // superclass rather than from the element itself.
    virtual boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, bool& propagated,
                                                          TCIMContext context) const = 0;
};

}  // namespace NVURZENTA20

#endif
