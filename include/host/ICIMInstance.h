// A CIM instance. The virtual operations stand in the host's slot order;
// binary plug-ins depend on it, so never insert, remove or reorder them.
#ifndef ZENTA_HOST_ICIMINSTANCE_H
#define ZENTA_HOST_ICIMINSTANCE_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "ICIMElement.h"
#include "ICIMProperty.h"
#include "TCIMReference.h"
#include "TCIMValue.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class ICIMInstance : public ICIMElement {
public:
    virtual ~ICIMInstance() {}

    virtual bool AddToNamespace(TCIMContext context) = 0;
    virtual void ModifyInstance(boost::shared_ptr<ICIMInstance> modified, TCIMContext context) = 0;
    virtual void Delete(TCIMContext context) = 0;
    virtual TCIMReference GetReference(TCIMContext context) const = 0;
    // The instance's object path, built from its class (namespace and name)
    // and the values of its key properties.
    virtual TCIMReference BuildPath(TCIMContext context) const;
    virtual boost::shared_ptr<ICIMClass> GetClass(TCIMContext context) const = 0;
    // Instances associated with this one, filtered by association class,
    // result class, role and result role ("" = any).
    virtual void EnumerateAssociatedInstances(const TInstanceCallback& callback, const std::string& assocClass,
                                              const std::string& resultClass, const std::string& role,
                                              const std::string& resultRole, TCIMContext context) = 0;
    // Association instances that refer to this one.
    virtual void EnumerateAssociationInstances(const TInstanceCallback& callback, const std::string& resultClass,
                                               const std::string& role, TCIMContext context) = 0;
    virtual boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name, TCIMContext context) const = 0;
    virtual void SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) = 0;
    virtual void EnumerateProperties(const TPropertyCallback& callback, TCIMContext context) = 0;
    // An instance method; `parameters` carries the parameters in and out.
    virtual TCIMValue InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext context) = 0;
    virtual bool operator==(ICIMInstance& other) const = 0;
    virtual bool operator<(ICIMInstance& other) const = 0;
    virtual ICIMInstance& operator=(const ICIMInstance& other) = 0;

protected:
    ICIMInstance() {}
    ICIMInstance(const ICIMInstance&) : ICIMElement() {}
};

}  // namespace NVURZENTA20

#endif
