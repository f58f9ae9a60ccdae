// A host instance served by a CMPI provider: filed with its CMPI-backed
// class instead of the repository, and its methods run in the provider.
#ifndef ZENTA_CMPI_TCMPIINSTANCE_H
#define ZENTA_CMPI_TCMPIINSTANCE_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "TInmemInstance.h"

class TCMPIInstance : public NVURZENTA20::TInmemInstance {
public:
    TCMPIInstance(boost::shared_ptr<NVURZENTA20::ICIMClass> cls, NVURZENTA20::TCIMContext context);
    ~TCMPIInstance() override;

    bool AddToNamespace(NVURZENTA20::TCIMContext context) override;
    NVURZENTA20::TCIMValue InvokeMethod(const std::string& name, NVURZENTA20::TCIMContext& parameters,
                                        NVURZENTA20::TCIMContext context) override;
};

#endif
