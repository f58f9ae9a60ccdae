// A method call on a provider-served class or instance: finds the started
// provider named by the class's "PLUGINNAME", splits the parameters by
// their "IN" and "OUT" qualifiers and runs the call through the driver.
#ifndef ZENTA_CMPI_TCMPIMETHODCALL_H
#define ZENTA_CMPI_TCMPIMETHODCALL_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "TCIMReference.h"

class TCMPIClass;
class TCMPIProvider;

class TCMPIMethodCall {
public:
    TCMPIMethodCall(boost::shared_ptr<TCMPIClass> cls, const std::string& method);

    // Calls the method on `path`; afterwards `parameters` holds exactly the
    // output parameters. Throws TZENTAException 15 when the class has no
    // provider tag or no started provider of that name exists.
    void Run(const NVURZENTA20::TCIMReference& path, NVURZENTA20::TCIMContext& parameters) const;

private:
    boost::shared_ptr<TCMPIProvider> FindStartedProvider() const;
    bool HasTrueQualifier(const std::string& parameter, const char* qualifier) const;

    boost::shared_ptr<TCMPIClass> fClass;
    std::string fMethod;
};

#endif
