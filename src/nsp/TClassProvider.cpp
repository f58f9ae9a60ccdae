#include "TClassProvider.h"

#include "TNamespacePopulator.h"

using namespace NVURZENTA20;

TClassProvider::TClassProvider(const std::string& name, const std::string& description,
                               boost::shared_ptr<ICIMNamespace> ns, const std::string& file)
    : fName(name), fDescription(description), fNamespace(ns) {
    fClasses = TNamespacePopulator::PopulateFromXMLFile(ns, file);
}

std::string TClassProvider::GetName(TCIMContext) const { return fName; }

std::string TClassProvider::GetModuleName(TCIMContext) const { return fModuleName; }

std::string TClassProvider::GetDescription(TCIMContext) const { return fDescription; }

boost::shared_ptr<ICIMNamespace> TClassProvider::GetNamespace(TCIMContext) const { return fNamespace; }

void TClassProvider::EnumerateClassesProvided(const TClassCallback& callback, TCIMContext) {
    for (std::size_t i = 0; i < fClasses.size(); ++i) {
        if (!callback(fClasses[i])) return;
    }
}

IProvider& TClassProvider::operator=(const IProvider&) { return *this; }
