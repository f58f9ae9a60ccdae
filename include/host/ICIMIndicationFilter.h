// An indication subscription filter.
#ifndef ZENTA_HOST_ICIMINDICATIONFILTER_H
#define ZENTA_HOST_ICIMINDICATIONFILTER_H

#include <string>

namespace NVURZENTA20 {

class ICIMIndicationFilter {
public:
    virtual ~ICIMIndicationFilter() {}
    virtual std::string GetQuery() const = 0;
    virtual std::string GetQueryLanguage() const = 0;
};

}  // namespace NVURZENTA20

#endif
