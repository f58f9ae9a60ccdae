// The mistakes that show only against the classes: a registration that
// names a class no document defines, a served class without a key, an
// association served only through an association MI (which this host never
// calls). The worker looks for them in its own repository once its host
// runs; `zenta check` in a repository of its own.
#ifndef ZENTA_OPS_CLASSFINDINGS_H
#define ZENTA_OPS_CLASSFINDINGS_H

#include <string>
#include <vector>

#include "ModuleSurvey.h"
#include "ProviderIndex.h"

// A class that a provider of a module says it serves.
struct TClassClaim {
    std::string module;    // file name of the module
    std::string document;  // file name of the registration document
    std::string provider;
    std::string className;
};

std::vector<TClassClaim> ClaimsOf(const TModuleSurvey& survey);

// `ns` answers plain class look-ups with the classes as the host defines
// them (the repository, or a namespace manager over it).
std::vector<TFinding> CheckClaims(const std::vector<TClassClaim>& claims, NVURZENTA20::ICIMNamespace& ns,
                                  const TProviderIndex& providers);

std::string ClaimsToJson(const std::vector<TClassClaim>& claims);
std::vector<TClassClaim> ClaimsFromJson(const std::string& text);

#endif
