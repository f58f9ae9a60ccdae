// A method declaration of a class, with its parameter declarations.
#ifndef ZENTA_HOST_ICIMMETHODDECL_H
#define ZENTA_HOST_ICIMMETHODDECL_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "ICIMNamedElement.h"
#include "ICIMParameterDecl.h"
#include "TCIMValue.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class ICIMMethodDecl : public ICIMNamedElement {
public:
    virtual std::string GetName() const = 0;
    virtual TCIMValue::TCIMType GetReturnType() const = 0;
    // Declares a parameter; `referenceClass` names the class of a reference.
    virtual boost::shared_ptr<ICIMParameterDecl> AllocateParameterDecl(const std::string& name,
                                                                       TCIMValue::TCIMType type, bool isArray,
                                                                       const std::string& referenceClass,
                                                                       TCIMContext context) = 0;
    // The parameter of that name (case-insensitive), or an empty pointer.
    virtual boost::shared_ptr<ICIMParameterDecl> GetParameterDecl(const std::string& name,
                                                                  TCIMContext context) const = 0;
    virtual void EnumerateParameterDecls(const TParameterDeclCallback& callback, TCIMContext context) const = 0;
    // The class that first declared the method.
    virtual std::string GetClassOrigin() const = 0;
};

}  // namespace NVURZENTA20

#endif
