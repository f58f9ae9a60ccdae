// The provider driver: the downcalls the library makes into a provider's
// MIs (get one instance, enumerate instances, invoke a method).
#ifndef ZENTA_CMPI_PROVIDERDRIVER_H
#define ZENTA_CMPI_PROVIDERDRIVER_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "ICIMInstance.h"
#include "TCIMReference.h"
#include "cmpift.h"
#include "providerInit.h"

boost::shared_ptr<NVURZENTA20::ICIMInstance> getInstance(const CMPIBroker* broker, _ProviderInfo* info,
                                                         const NVURZENTA20::TCIMReference& reference);
int enumInstances(const CMPIBroker* broker, _ProviderInfo* info, const char* className);
int invokeMethod(_ProviderInfo* info, const NVURZENTA20::TCIMReference& reference, const std::string& methodName,
                 NVURZENTA20::TCIMContext* in, NVURZENTA20::TCIMContext* out);

#endif
