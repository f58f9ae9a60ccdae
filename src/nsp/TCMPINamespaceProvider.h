// The CMPI namespace provider: the one object the host reaches the library
// through. It registers itself when the library is loaded.
#ifndef ZENTA_CMPI_TCMPINAMESPACEPROVIDER_H
#define ZENTA_CMPI_TCMPINAMESPACEPROVIDER_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "INamespaceProvider.h"

class TCMPINamespace;

class TCMPINamespaceProvider : public NVURZENTA20::INamespaceProvider {
public:
    static int Initialize(char* directory);
    static boost::shared_ptr<TCMPINamespaceProvider> GetInstance();
    static std::string& GetfgModulePathName();
    static boost::shared_ptr<TCMPINamespace> GetNamespace();
    static void ClearNamespace();

    ~TCMPINamespaceProvider() override;

    const std::string& GetName(NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> AllocateNamespace(NVURZENTA20::TCIMContext context,
                                                                    bool populate) const override;
    ENamespaceType GetType(NVURZENTA20::TCIMContext context) const override;
    bool IsIndicationsSupported(NVURZENTA20::TCIMContext context) const override;

private:
    TCMPINamespaceProvider();

    mutable boost::shared_ptr<TCMPINamespace> fNamespace;
};

#endif
