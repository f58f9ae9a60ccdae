// A property declaration of a class.
#ifndef ZENTA_HOST_ICIMPROPERTYDECL_H
#define ZENTA_HOST_ICIMPROPERTYDECL_H

#include <string>

#include "ICIMNamedElement.h"
#include "TCIMValue.h"

namespace NVURZENTA20 {

class ICIMPropertyDecl : public ICIMNamedElement {
public:
    virtual std::string GetName() const = 0;
    virtual TCIMValue::TCIMType GetType() const = 0;
    virtual bool IsArray() const = 0;
    // The default (a typed null when none was declared).
    virtual TCIMValue GetDefaultValue() const = 0;
    virtual void SetDefaultValue(const TCIMValue& value) = 0;
    // For references: the class the reference points at.
    virtual std::string GetReferenceClassName() const = 0;
    virtual void SetReferenceClassName(const std::string& name) = 0;
    // The class that first declared the property.
    virtual std::string GetClassOrigin() const = 0;
    // True when the property carries the Key qualifier.
    virtual bool IsKey() const = 0;
};

}  // namespace NVURZENTA20

#endif
