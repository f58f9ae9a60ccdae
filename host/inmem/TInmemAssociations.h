// Association walks over the repository's classes: which association
// classes can refer to a class, and which association instances refer to
// an instance.
#ifndef ZENTA_HOST_INMEM_TINMEMASSOCIATIONS_H
#define ZENTA_HOST_INMEM_TINMEMASSOCIATIONS_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "ICIMClass.h"
#include "ICIMInstance.h"

namespace NVURZENTA20 {

// True when `cls` is the class named `ancestor` or one of its subclasses;
// an empty `ancestor` matches every class.
bool ClassIsOrDerivesFrom(boost::shared_ptr<const ICIMClass> cls, const std::string& ancestor);

// Association classes with a reference property (named `role`, or any when
// empty) that can point at `target`, each once; `resultClass` filters the
// association class.
void EnumerateAssociationClassesOf(boost::shared_ptr<ICIMClass> target, const TClassCallback& callback,
                                   const std::string& resultClass, const std::string& role);
// The classes at the other ends of those associations, each once.
void EnumerateAssociatedClassesOf(boost::shared_ptr<ICIMClass> target, const TClassCallback& callback,
                                  const std::string& assocClass, const std::string& resultClass,
                                  const std::string& role, const std::string& resultRole);

// The association instances that refer to `source`, each once, enumerated
// through the routing namespace of `source`'s class.
void EnumerateAssociationInstancesOf(const ICIMInstance& source, const TInstanceCallback& callback,
                                     const std::string& resultClass, const std::string& role,
                                     const TCIMContext& context);
// The instances at the other ends of those association instances, resolved
// through their paths; ends that cannot be resolved are skipped. An
// instance reached through several association instances is reported once
// for each of them.
void EnumerateAssociatedInstancesOf(const ICIMInstance& source, const TInstanceCallback& callback,
                                    const std::string& assocClass, const std::string& resultClass,
                                    const std::string& role, const std::string& resultRole,
                                    const TCIMContext& context);

}  // namespace NVURZENTA20

#endif
