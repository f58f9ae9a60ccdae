// Entry points of libcmpi.nsp.so that a host reaches by name (dlsym), so
// that it does not have to link the library. They are part of the host
// contract described in docs/host-contract.md.
#ifndef ZENTA_CMPI_CMPINSPHOSTAPI_H
#define ZENTA_CMPI_CMPINSPHOSTAPI_H

// The symbol name of ZentaCmpiClearInstances, for dlsym.
#define ZENTA_CMPI_CLEAR_INSTANCES_SYMBOL "ZentaCmpiClearInstances"

extern "C" {

// Releases every CMPI record the library handed to providers since the
// last call (the object registry's ClearInstances). A host calls it once a
// request has been answered and it has copied what it needs out of the
// instances it received; pointers that providers kept are dangling
// afterwards. Never throws.
void ZentaCmpiClearInstances();

typedef void (*TZentaCmpiClearInstances)();
}

#endif
