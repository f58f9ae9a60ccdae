#include "cmpiNspHostApi.h"

#include <exception>
#include <string>

#include "TRootObject.h"
#include "cmpiInstanceRegistry.h"

extern "C" void ZentaCmpiClearInstances() {
    // A C entry point must not let an exception reach a caller that may
    // not be C++.
    try {
        CMPINSPInstanceRegistry::GetRegistrySingleton()->ClearInstances();
    } catch (const std::exception& failure) {
        NVURZENTA20::TRootObject::GetCoreLogger()->Log(
            0, std::string("cmpi.nsp: releasing the provider records failed: ") + failure.what());
    } catch (...) {
        NVURZENTA20::TRootObject::GetCoreLogger()->Log(0, "cmpi.nsp: releasing the provider records failed");
    }
}
