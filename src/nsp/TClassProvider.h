// A provider that serves class definitions only, read from one document.
#ifndef ZENTA_CMPI_TCLASSPROVIDER_H
#define ZENTA_CMPI_TCLASSPROVIDER_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMClass.h"
#include "ICIMNamespace.h"
#include "IProvider.h"

class TClassProvider : public NVURZENTA20::IProvider {
public:
    TClassProvider(const std::string& name, const std::string& description,
                   boost::shared_ptr<NVURZENTA20::ICIMNamespace> ns, const std::string& file);

    std::string GetName(NVURZENTA20::TCIMContext context) const override;
    std::string GetModuleName(NVURZENTA20::TCIMContext context) const override;
    std::string GetDescription(NVURZENTA20::TCIMContext context) const override;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> GetNamespace(NVURZENTA20::TCIMContext context) const override;
    void EnumerateClassesProvided(const NVURZENTA20::TClassCallback& callback,
                                  NVURZENTA20::TCIMContext context) override;
    NVURZENTA20::IProvider& operator=(const NVURZENTA20::IProvider& other) override;

private:
    std::string fName;
    std::string fModuleName;  // always empty: a class provider belongs to no module
    std::string fDescription;
    boost::shared_ptr<NVURZENTA20::ICIMNamespace> fNamespace;
    std::vector<boost::shared_ptr<NVURZENTA20::ICIMClass> > fClasses;
};

#endif
