#include "TInmemAssociations.h"

#include <set>
#include <vector>

#include "ICIMNamespace.h"
#include "TInmemClass.h"
#include "TInmemNamespace.h"
#include "TInmemSupport.h"

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

// The reference properties at the other ends of `role`, filtered by
// `resultRole`.
std::vector<std::string> FarRoles(const TAssociationGroup& group, const std::string& role,
                                  const std::string& resultRole) {
    std::vector<std::string> far;
    for (const auto& name : group.references) {
        if (!SameName(name, role) && Matches(resultRole, name)) far.push_back(name);
    }
    return far;
}

bool ReadReference(const ICIMInstance& instance, const std::string& name, TCIMReference& reference) {
    boost::shared_ptr<ICIMProperty> property = instance.GetProperty(name, TCIMContext());
    if (!property) return false;
    const TCIMValue value = property->GetValue();
    if (value.IsNull() || value.IsArray() || value.GetType() != TCIMValue::TCIMType::kReference) return false;
    reference = value;
    return true;
}

// Walks the association instances that refer to one source instance,
// enumerating each association class through the namespace requests are
// routed through, so that classes served by providers answer too.
class TAssociationWalk {
public:
    typedef boost::function<bool(boost::shared_ptr<ICIMInstance>, const TAssociationGroup&,
                                 const std::vector<std::string>&)>
        TVisitor;

    TAssociationWalk(const ICIMInstance& source, const TCIMContext& context)
        : fClass(source.GetClass(context)), fPath(source.GetReference(context)), fContext(context) {
        fContext["nspID"] = TCIMValue("plugin");
        fNamespace = fClass->GetNamespace(TCIMContext());
        boost::shared_ptr<TInmemNamespace> inmem = boost::dynamic_pointer_cast<TInmemNamespace>(fNamespace);
        fRouter = inmem ? inmem->GetRoutingNamespace() : fNamespace;
    }

    // Each association instance once; `visitor` gets it with the roles
    // through which it names the source, and returns false to stop.
    void Run(const std::string& assocClass, const std::string& role, const TVisitor& visitor) {
        for (const auto& group : FindAssociationGroups(fClass, assocClass, role)) {
            if (!VisitGroup(group, visitor)) return;
        }
    }

    // The instance a path names, or empty when it cannot be resolved.
    boost::shared_ptr<ICIMInstance> Resolve(const TCIMReference& path) const {
        if (!fRouter) return boost::shared_ptr<ICIMInstance>();
        try {
            return fRouter->GetInstance(path, fContext);
        } catch (const TZENTAException&) {
            return boost::shared_ptr<ICIMInstance>();
        }
    }

private:
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
                if (!instance || Seen(instance)) return true;
                std::vector<std::string> roles;
                for (const auto& role : group.roles) {
                    TCIMReference reference;
                    if (ReadReference(*instance, role, reference) && reference == fPath) roles.push_back(role);
                }
                if (roles.empty()) return true;
                fSeen.push_back(instance);
                goOn = visitor(instance, group, roles);
                return goOn;
            },
            false, fContext);
        return goOn;
    }

    bool Seen(const boost::shared_ptr<ICIMInstance>& instance) const {
        for (const auto& seen : fSeen) {
            if (seen == instance) return true;
        }
        return false;
    }

    boost::shared_ptr<ICIMClass> fClass;
    boost::shared_ptr<ICIMNamespace> fNamespace;
    TCIMReference fPath;
    TCIMContext fContext;
    boost::shared_ptr<ICIMNamespace> fRouter;
    // Held, not only compared: an instance made by a provider must not be
    // freed and its address reused while the walk runs.
    std::vector<boost::shared_ptr<ICIMInstance> > fSeen;
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
            for (const auto& farRole : FarRoles(group, nearRole, resultRole)) {
                boost::shared_ptr<ICIMPropertyDecl> decl = group.association->GetPropertyDecl(farRole, TCIMContext());
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
             [&](boost::shared_ptr<ICIMInstance> association, const TAssociationGroup&,
                 const std::vector<std::string>&) { return callback(association); });
}

void EnumerateAssociatedInstancesOf(const ICIMInstance& source, const TInstanceCallback& callback,
                                    const std::string& assocClass, const std::string& resultClass,
                                    const std::string& role, const std::string& resultRole,
                                    const TCIMContext& context) {
    TAssociationWalk walk(source, context);
    walk.Run(assocClass, role,
             [&](boost::shared_ptr<ICIMInstance> association, const TAssociationGroup& group,
                 const std::vector<std::string>& nearRoles) {
                 std::vector<TCIMReference> reached;
                 for (const auto& nearRole : nearRoles) {
                     for (const auto& farRole : FarRoles(group, nearRole, resultRole)) {
                         TCIMReference path;
                         if (!ReadReference(*association, farRole, path)) continue;
                         bool again = false;
                         for (const auto& earlier : reached) again = again || earlier == path;
                         if (again) continue;
                         reached.push_back(path);
                         boost::shared_ptr<ICIMInstance> far = walk.Resolve(path);
                         if (!far || !ClassIsOrDerivesFrom(far->GetClass(TCIMContext()), resultClass)) continue;
                         if (!callback(far)) return false;
                     }
                 }
                 return true;
             });
}

}  // namespace NVURZENTA20
