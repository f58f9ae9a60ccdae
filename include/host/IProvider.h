// A provider that serves classes of a namespace. Slot order is fixed.
#ifndef ZENTA_HOST_IPROVIDER_H
#define ZENTA_HOST_IPROVIDER_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "TCIMValue.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class IProvider {
public:
    virtual ~IProvider() {}
    virtual std::string GetName(TCIMContext context) const = 0;
    virtual std::string GetModuleName(TCIMContext context) const = 0;
    virtual std::string GetDescription(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext context) const = 0;
    virtual void EnumerateClassesProvided(const TClassCallback& callback, TCIMContext context) = 0;
    virtual IProvider& operator=(const IProvider& other) = 0;

protected:
    IProvider() {}
    IProvider(const IProvider&) {}
};

}  // namespace NVURZENTA20

#endif
