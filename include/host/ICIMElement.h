// The root of the CIM element interfaces (classes and instances).
#ifndef ZENTA_HOST_ICIMELEMENT_H
#define ZENTA_HOST_ICIMELEMENT_H

#include "TCIMValue.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class ICIMElement {
public:
    virtual ~ICIMElement() {}
    // True when the element is consistent with its declarations.
    virtual bool Validate(TCIMContext context) const = 0;
};

}  // namespace NVURZENTA20

#endif
