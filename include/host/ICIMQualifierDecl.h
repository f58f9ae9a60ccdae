// A qualifier declaration: name, type, default, scope and flavors.
#ifndef ZENTA_HOST_ICIMQUALIFIERDECL_H
#define ZENTA_HOST_ICIMQUALIFIERDECL_H

#include <string>

#include "TCIMValue.h"

namespace NVURZENTA20 {

class ICIMQualifierDecl {
public:
    // Where a qualifier may stand (bit mask).
    enum EScope {
        kScopeNone = 0,
        kScopeClass = 0x01,
        kScopeAssociation = 0x02,
        kScopeIndication = 0x04,
        kScopeProperty = 0x08,
        kScopeReference = 0x10,
        kScopeMethod = 0x20,
        kScopeParameter = 0x40,
        kScopeAny = 0x7F
    };
    // How a qualifier propagates (bit mask). Without kRestricted a
    // qualifier propagates to subclasses; without kDisableOverride a
    // subclass may override it.
    enum EFlavor {
        kFlavorNone = 0,
        kEnableOverride = 0x01,
        kDisableOverride = 0x02,
        kToSubclass = 0x04,
        kRestricted = 0x08,
        kTranslatable = 0x10
    };

    virtual ~ICIMQualifierDecl() {}
    virtual std::string GetName() const = 0;
    virtual TCIMValue::TCIMType GetType() const = 0;
    virtual bool IsArray() const = 0;
    virtual TCIMValue GetDefaultValue() const = 0;
    virtual EScope GetScope() const = 0;
    virtual EFlavor GetFlavor() const = 0;
};

}  // namespace NVURZENTA20

#endif
