#include "TCMPIInstance.h"

#include "CmpiCast.h"
#include "TCMPIClass.h"
#include "TCMPIMethodCall.h"

using namespace NVURZENTA20;

TCMPIInstance::TCMPIInstance(boost::shared_ptr<ICIMClass> cls, TCIMContext)
    : TInmemInstance(cls, kProviderInstance) {}

TCMPIInstance::~TCMPIInstance() {}

// Provider instances are filed with their CMPI-backed class, which hands
// them to the enumeration in progress; the repository is not touched. Every
// instance a provider returns passes here: this instance's own reference
// is handed on without a cast.
bool TCMPIInstance::AddToNamespace(TCIMContext) {
    boost::shared_ptr<TCMPIClass> cls = cmpiCast<TCMPIClass>(GetClass(TCIMContext()));
    return cls->AddInstance(shared_from_this());
}

TCIMValue TCMPIInstance::InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext) {
    boost::shared_ptr<TCMPIClass> cls = cmpiCast<TCMPIClass>(GetClass(TCIMContext()));
    boost::shared_ptr<TCMPIInstance> self = cmpiCast<TCMPIInstance>(shared_from_this());
    TCMPIMethodCall call(cls, name);
    call.Run(self->BuildPath(TCIMContext()), parameters);
    return TCIMValue();
}
