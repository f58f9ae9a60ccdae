// Enumerations the broker hands back to providers: a vector of host
// objects and a cursor. The instance and object-path kinds share every
// function and are told apart by their function table.
#ifndef ZENTA_CMPI_CMPIENUMERATION_H
#define ZENTA_CMPI_CMPIENUMERATION_H

#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMInstance.h"
#include "TCIMReference.h"
#include "cmpift.h"

extern CMPIEnumerationFT* cmpiInstEnumerationFt;
extern CMPIEnumerationFT* CMPIObjectPathEnumeration_Ftab;

typedef std::vector<boost::shared_ptr<NVURZENTA20::ICIMInstance> > TInstanceVector;
typedef std::vector<boost::shared_ptr<NVURZENTA20::TCIMReference> > TReferenceVector;

// hdl = the vector, ft = cmpiInstEnumerationFt, then the index of the next
// element. Usable wherever a CMPIEnumeration is expected.
struct CMPIInstEnumeration : CMPIEnumeration {
    explicit CMPIInstEnumeration(TInstanceVector* instances);
    // Advanced through the const records the CMPI tables pass.
    mutable CMPICount cursor;
    // The element records getNext handed out; providers never free them.
    mutable std::vector<CMPIInstance*> handedOut;
};

// The same over object paths, with ft = CMPIObjectPathEnumeration_Ftab.
struct CMPIObjectPathEnumeration : CMPIEnumeration {
    explicit CMPIObjectPathEnumeration(TReferenceVector* references);
    mutable CMPICount cursor;
    mutable std::vector<CMPIObjectPath*> handedOut;
};

// Frees the vector, the element records getNext handed out and the record
// of either kind.
void deleteEnumeration(CMPIEnumeration* enumeration);

#endif
