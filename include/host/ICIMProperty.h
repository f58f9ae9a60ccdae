// A property value of an instance, or a static value of a class.
#ifndef ZENTA_HOST_ICIMPROPERTY_H
#define ZENTA_HOST_ICIMPROPERTY_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "TCIMValue.h"

namespace NVURZENTA20 {

class ICIMProperty {
public:
    virtual ~ICIMProperty() {}
    virtual std::string GetName() const = 0;
    virtual TCIMValue GetValue() const = 0;
    virtual void SetValue(const TCIMValue& value) = 0;
    virtual boost::shared_ptr<ICIMPropertyDecl> GetDecl() const = 0;
};

}  // namespace NVURZENTA20

#endif
