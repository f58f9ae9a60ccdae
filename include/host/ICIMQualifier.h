// A qualifier attached to a class, property, method or parameter.
#ifndef ZENTA_HOST_ICIMQUALIFIER_H
#define ZENTA_HOST_ICIMQUALIFIER_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "ICIMQualifierDecl.h"
#include "TCIMValue.h"

namespace NVURZENTA20 {

class ICIMQualifier {
public:
    virtual ~ICIMQualifier() {}
    virtual std::string GetName() const = 0;
    virtual TCIMValue GetValue() const = 0;
    virtual void SetValue(const TCIMValue& value) = 0;
    virtual ICIMQualifierDecl::EFlavor GetFlavor() const = 0;
    virtual boost::shared_ptr<const ICIMQualifierDecl> GetDecl() const = 0;
};

}  // namespace NVURZENTA20

#endif
