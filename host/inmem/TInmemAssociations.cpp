#include "TInmemAssociations.h"

#include <deque>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <boost/container/small_vector.hpp>

#include "ICIMNamespace.h"
#include "TInmemClass.h"
#include "TInmemNamespace.h"
#include "TInmemSupport.h"
#include "TNamespaceManager.h"

namespace NVURZENTA20 {

namespace {

// One association class as seen from a target class: its reference
// properties, and the roles (reference properties) that can point at the
// target.
struct TAssociationGroup {
    boost::shared_ptr<ICIMClass> association;
    std::vector<std::string> roles;
    std::vector<std::string> references;
};

bool Matches(const std::string& filter, const std::string& name) {
    return filter.empty() || SameName(filter, name);
}

// Every association class the target's namespace holds, plus those declared
// on the target and its superclasses, each once.
std::vector<boost::shared_ptr<ICIMClass> > CandidateAssociations(boost::shared_ptr<ICIMClass> target) {
    std::vector<boost::shared_ptr<ICIMClass> > candidates;
    std::set<std::string> seen;
    auto add = [&](boost::shared_ptr<ICIMClass> cls) {
        if (cls->IsAssociation(TCIMContext()) && seen.insert(NameKey(cls->GetName(TCIMContext()))).second) {
            candidates.push_back(cls);
        }
        return true;
    };
    boost::shared_ptr<ICIMNamespace> ns = target->GetNamespace(TCIMContext());
    boost::shared_ptr<ICIMClass> root = ns ? ns->GetClass(TInmemClass::kRootName, TCIMContext())
                                           : boost::shared_ptr<ICIMClass>();
    if (root) root->EnumerateSubClasses(add, true, TCIMContext());
    for (boost::shared_ptr<ICIMClass> cls = target; cls; cls = cls->GetSuperClass(TCIMContext())) {
        boost::shared_ptr<TInmemClass> inmem = boost::dynamic_pointer_cast<TInmemClass>(cls);
        if (!inmem) continue;
        for (const auto& association : inmem->GetExplicitAssociationClasses()) add(association);
    }
    return candidates;
}

std::vector<TAssociationGroup> FindAssociationGroups(boost::shared_ptr<ICIMClass> target,
                                                     const std::string& assocClass, const std::string& role) {
    std::vector<TAssociationGroup> groups;
    for (const auto& association : CandidateAssociations(target)) {
        if (!ClassIsOrDerivesFrom(association, assocClass)) continue;
        TAssociationGroup group;
        group.association = association;
        association->EnumeratePropertyDecls(
            [&](boost::shared_ptr<ICIMPropertyDecl> decl) {
                if (decl->GetType() != TCIMValue::TCIMType::kReference || decl->IsArray()) return true;
                const std::string name = decl->GetName();
                group.references.push_back(name);
                if (Matches(role, name) && ClassIsOrDerivesFrom(target, decl->GetReferenceClassName())) {
                    group.roles.push_back(name);
                }
                return true;
            },
            TCIMContext());
        if (!group.roles.empty()) groups.push_back(group);
    }
    return groups;
}

// Names of the few reference properties of an association instance; the
// walk makes such lists for every association instance it meets.
typedef boost::container::small_vector<const std::string*, 4> TRoleList;

// The reference properties at the other ends of `role`, filtered by
// `resultRole`.
TRoleList FarRoles(const TAssociationGroup& group, const std::string& role, const std::string& resultRole) {
    TRoleList far;
    for (const auto& name : group.references) {
        if (!SameName(name, role) && Matches(resultRole, name)) far.push_back(&name);
    }
    return far;
}

// The reference property `name` of `instance`, or a null value when it
// has none (or holds no single reference).
TCIMValue ReadReference(const ICIMInstance& instance, const std::string& name) {
    boost::shared_ptr<ICIMProperty> property = instance.GetProperty(name, TCIMContext());
    if (!property) return TCIMValue();
    TCIMValue value = property->GetValue();
    if (value.IsNull() || value.IsArray() || value.GetType() != TCIMValue::TCIMType::kReference) return TCIMValue();
    return value;
}

bool RefersTo(const ICIMInstance& instance, const std::string& name, const TCIMReference& path) {
    const TCIMValue reference = ReadReference(instance, name);
    return !reference.IsNull() && reference.GetReference() == path;
}

std::string PathKey(const TCIMReference& path) {
    std::string key;
    path.AppendEqualityKey(key);
    return key;
}

// The instances of one far class that its provider enumerated, by path.
class TEnumeratedClass {
public:
    void Add(const boost::shared_ptr<ICIMInstance>& instance) {
        fByPath.insert(std::make_pair(PathKey(instance->GetReference(TCIMContext())), instance));
    }
    boost::shared_ptr<ICIMInstance> Find(const TCIMReference& path) const {
        const auto candidates = fByPath.equal_range(PathKey(path));
        for (auto candidate = candidates.first; candidate != candidates.second; ++candidate) {
            if (candidate->second->GetReference(TCIMContext()) == path) return candidate->second;
        }
        return boost::shared_ptr<ICIMInstance>();
    }

private:
    std::unordered_multimap<std::string, boost::shared_ptr<ICIMInstance> > fByPath;
};

// Walks the association instances that refer to one source instance,
// enumerating each association class through the namespace requests are
// routed through, so that classes served by providers answer too.
class TAssociationWalk {
public:
    typedef boost::function<bool(boost::shared_ptr<ICIMInstance>, const TAssociationGroup&, const TRoleList&)>
        TVisitor;

    TAssociationWalk(const ICIMInstance& source, const TCIMContext& context)
        : fClass(source.GetClass(context)), fPath(source.GetReference(context)), fContext(context),
          fPlainContext(context) {
        fPlainContext.erase(TNamespaceManager::kOriginKey);
        fContext[TNamespaceManager::kOriginKey] = TCIMValue("plugin");
        fNamespace = fClass->GetNamespace(TCIMContext());
        boost::shared_ptr<TInmemNamespace> inmem = boost::dynamic_pointer_cast<TInmemNamespace>(fNamespace);
        fRouter = inmem ? inmem->GetRoutingNamespace() : fNamespace;
        fManager = boost::dynamic_pointer_cast<TNamespaceManager>(fRouter);
    }

    // Each association instance once; `visitor` gets it with the roles
    // through which it names the source, and returns false to stop.
    void Run(const std::string& assocClass, const std::string& role, const TVisitor& visitor) {
        for (const auto& group : FindAssociationGroups(fClass, assocClass, role)) {
            if (!VisitGroup(group, visitor)) return;
        }
    }

    // The instance a path names, or empty when it cannot be resolved: one
    // request per far end. A far class whose provider does not answer for
    // single instances is enumerated once, and its other far ends are looked
    // up among what it enumerated.
    boost::shared_ptr<ICIMInstance> Resolve(const TCIMReference& path) {
        if (!fRouter) return boost::shared_ptr<ICIMInstance>();
        if (!fEnumerated.empty()) {
            const auto enumerated = fEnumerated.find(NameKey(path.GetClassName()));
            if (enumerated != fEnumerated.end()) return enumerated->second.Find(path);
        }
        try {
            boost::shared_ptr<ICIMInstance> far = SingleInstance(path);
            if (far || !IsServed(path.GetClassName())) return far;
            return Enumerate(NameKey(path.GetClassName()), path.GetClassName()).Find(path);
        } catch (const TZENTAException&) {
            return boost::shared_ptr<ICIMInstance>();
        }
    }

private:
    // Under the manager, a provider's instance is asked of its namespace
    // directly: the manager would enumerate the class on a miss, for every
    // far end, where the walk enumerates it once.
    boost::shared_ptr<ICIMInstance> SingleInstance(const TCIMReference& path) const {
        if (!fManager) return fRouter->GetInstance(path, fContext);
        const boost::shared_ptr<ICIMNamespace> serving = fManager->GetServingNamespace(path.GetClassName());
        if (!serving) return fRouter->GetInstance(path, fContext);
        return serving->GetInstance(path, fPlainContext);
    }

    bool IsServed(const std::string& className) const {
        boost::shared_ptr<ICIMClass> cls = fNamespace ? fNamespace->GetClass(className, TCIMContext())
                                                      : boost::shared_ptr<ICIMClass>();
        return cls && TNamespaceManager::IsProviderServed(*cls);
    }

    const TEnumeratedClass& Enumerate(const std::string& key, const std::string& className) {
        TEnumeratedClass& instances = fEnumerated[key];
        boost::shared_ptr<ICIMClass> served = fRouter->GetClass(className, fContext);
        if (served) {
            served->EnumerateInstances(
                [&](boost::shared_ptr<ICIMInstance> instance) {
                    if (instance) instances.Add(instance);
                    return true;
                },
                false, fContext);
        }
        return instances;
    }

    bool VisitGroup(const TAssociationGroup& group, const TVisitor& visitor) {
        // Associations of the instance's own namespace are asked for through
        // the router; one declared from elsewhere is enumerated as it is.
        boost::shared_ptr<ICIMClass> served = group.association;
        if (fRouter && group.association->GetNamespace(TCIMContext()) == fNamespace) {
            served = fRouter->GetClass(group.association->GetName(TCIMContext()), fContext);
        }
        if (!served) return true;
        bool goOn = true;
        served->EnumerateInstances(
            [&](boost::shared_ptr<ICIMInstance> instance) {
                if (!instance || fSeen.count(instance.get()) != 0) return true;
                TRoleList roles;
                for (const auto& role : group.roles) {
                    if (RefersTo(*instance, role, fPath)) roles.push_back(&role);
                }
                if (roles.empty()) return true;
                fSeen.insert(instance.get());
                fHeld.push_back(instance);
                goOn = visitor(instance, group, roles);
                return goOn;
            },
            false, fContext);
        return goOn;
    }

    boost::shared_ptr<ICIMClass> fClass;
    boost::shared_ptr<ICIMNamespace> fNamespace;
    TCIMReference fPath;
    TCIMContext fContext;       // the caller's, marked as a provider's request
    TCIMContext fPlainContext;  // the caller's, without a mark
    boost::shared_ptr<ICIMNamespace> fRouter;
    boost::shared_ptr<TNamespaceManager> fManager;  // the router, when it is the manager
    std::unordered_set<const ICIMInstance*> fSeen;
    // Held, not only remembered: an instance made by a provider must not be
    // freed and its address reused while the walk runs. A deque grows in
    // small blocks: a vector's doubling asks the allocator for ever larger
    // blocks, and each such request makes it sort every small block freed
    // since the last one (1 to 3 % of a walk over 100 to 10,000 far ends).
    std::deque<boost::shared_ptr<ICIMInstance> > fHeld;
    std::unordered_map<std::string, TEnumeratedClass> fEnumerated;  // by class name without case
};

}  // namespace

bool ClassIsOrDerivesFrom(boost::shared_ptr<const ICIMClass> cls, const std::string& ancestor) {
    if (ancestor.empty()) return true;
    for (; cls; cls = cls->GetSuperClass(TCIMContext())) {
        if (SameName(cls->GetName(TCIMContext()), ancestor)) return true;
    }
    return false;
}

void EnumerateAssociationClassesOf(boost::shared_ptr<ICIMClass> target, const TClassCallback& callback,
                                   const std::string& resultClass, const std::string& role) {
    for (const auto& group : FindAssociationGroups(target, resultClass, role)) {
        if (!callback(group.association)) return;
    }
}

void EnumerateAssociatedClassesOf(boost::shared_ptr<ICIMClass> target, const TClassCallback& callback,
                                  const std::string& assocClass, const std::string& resultClass,
                                  const std::string& role, const std::string& resultRole) {
    boost::shared_ptr<ICIMNamespace> ns = target->GetNamespace(TCIMContext());
    if (!ns) return;
    std::set<std::string> reported;
    for (const auto& group : FindAssociationGroups(target, assocClass, role)) {
        for (const auto& nearRole : group.roles) {
            for (const std::string* farRole : FarRoles(group, nearRole, resultRole)) {
                boost::shared_ptr<ICIMPropertyDecl> decl = group.association->GetPropertyDecl(*farRole, TCIMContext());
                boost::shared_ptr<ICIMClass> far = ns->GetClass(decl->GetReferenceClassName(), TCIMContext());
                if (!far || !ClassIsOrDerivesFrom(far, resultClass)) continue;
                if (!reported.insert(NameKey(far->GetName(TCIMContext()))).second) continue;
                if (!callback(far)) return;
            }
        }
    }
}

void EnumerateAssociationInstancesOf(const ICIMInstance& source, const TInstanceCallback& callback,
                                     const std::string& resultClass, const std::string& role,
                                     const TCIMContext& context) {
    TAssociationWalk walk(source, context);
    walk.Run(resultClass, role,
             [&](boost::shared_ptr<ICIMInstance> association, const TAssociationGroup&, const TRoleList&) {
                 return callback(association);
             });
}

void EnumerateAssociatedInstancesOf(const ICIMInstance& source, const TInstanceCallback& callback,
                                    const std::string& assocClass, const std::string& resultClass,
                                    const std::string& role, const std::string& resultRole,
                                    const TCIMContext& context) {
    TAssociationWalk walk(source, context);
    walk.Run(assocClass, role,
             [&](boost::shared_ptr<ICIMInstance> association, const TAssociationGroup& group,
                 const TRoleList& nearRoles) {
                 boost::container::small_vector<TCIMValue, 4> reached;
                 for (const std::string* nearRole : nearRoles) {
                     for (const std::string* farRole : FarRoles(group, *nearRole, resultRole)) {
                         const TCIMValue path = ReadReference(*association, *farRole);
                         if (path.IsNull()) continue;
                         bool again = false;
                         for (const auto& earlier : reached) again = again || earlier == path;
                         if (again) continue;
                         reached.push_back(path);
                         boost::shared_ptr<ICIMInstance> far = walk.Resolve(path.GetReference());
                         if (!far || !ClassIsOrDerivesFrom(far->GetClass(TCIMContext()), resultClass)) continue;
                         if (!callback(far)) return false;
                     }
                 }
                 return true;
             });
}

}  // namespace NVURZENTA20
