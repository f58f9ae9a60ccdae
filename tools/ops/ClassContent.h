// What of a class an answer shows: its qualifiers, and the properties and
// methods that LocalOnly and a property list leave, in declaration order.
// Every class writer (MOF, JSON, CIM-XML) selects through here.
#ifndef ZENTA_OPS_CLASSCONTENT_H
#define ZENTA_OPS_CLASSCONTENT_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "Answer.h"
#include "ICIMNamedElement.h"

struct TClassContent {
    std::string name;
    std::string superClass;
    std::vector<boost::shared_ptr<NVURZENTA20::ICIMPropertyDecl> > properties;
    std::vector<boost::shared_ptr<NVURZENTA20::ICIMMethodDecl> > methods;
};

TClassContent SelectClassContent(const TClassView& view);

// The qualifiers an element carries (its own and propagated ones), in the
// order the element gives them.
std::vector<boost::shared_ptr<NVURZENTA20::ICIMQualifier> > QualifiersOf(
    const NVURZENTA20::ICIMNamedElement& element);

std::vector<boost::shared_ptr<NVURZENTA20::ICIMParameterDecl> > ParametersOf(
    const NVURZENTA20::ICIMMethodDecl& method);

// Whether two CIM names are the same (ASCII case ignored).
bool SameName(const std::string& a, const std::string& b);
// True when `names` holds `name`, compared as CIM names are (any case).
bool ContainsName(const std::vector<std::string>& names, const std::string& name);

#endif
