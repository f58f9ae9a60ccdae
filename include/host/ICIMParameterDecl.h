// A parameter declaration of a method.
#ifndef ZENTA_HOST_ICIMPARAMETERDECL_H
#define ZENTA_HOST_ICIMPARAMETERDECL_H

#include <string>

#include "ICIMNamedElement.h"
#include "TCIMValue.h"

namespace NVURZENTA20 {

class ICIMParameterDecl : public ICIMNamedElement {
public:
    virtual std::string GetName() const = 0;
    virtual TCIMValue::TCIMType GetType() const = 0;
    virtual bool IsArray() const = 0;
    virtual std::string GetReferenceClassName() const = 0;
};

}  // namespace NVURZENTA20

#endif
