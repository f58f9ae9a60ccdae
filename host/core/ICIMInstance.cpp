#include "ICIMInstance.h"

#include "ICIMClass.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

// Binds each key property of the instance into the path.
class TAddKeyBindingCallback {
public:
    TAddKeyBindingCallback(const ICIMInstance& instance, const std::string& className, TCIMReference& path,
                           const TCIMContext& context)
        : fInstance(instance), fClassName(className), fPath(path), fContext(context) {}

    bool operator()(const std::string* name) const {
        if (name == nullptr) return true;
        const boost::shared_ptr<ICIMProperty> property = fInstance.GetProperty(*name, fContext);
        if (!property) {
            throw TZENTAException(TZENTAStatusCode::kInvalidProperty,
                                  "an instance of " + fClassName + " has no key property " + *name);
        }
        fPath.AddKeyValue(*name, property->GetValue());
        return true;
    }

private:
    const ICIMInstance& fInstance;
    const std::string& fClassName;
    TCIMReference& fPath;
    const TCIMContext& fContext;
};

}  // namespace

TCIMReference ICIMInstance::BuildPath(TCIMContext context) const {
    const boost::shared_ptr<ICIMClass> cls = GetClass(context);
    if (!cls) {
        throw TZENTAException(TZENTAStatusCode::kInvalidClass, "cannot build the path of an instance without a class");
    }
    TCIMReference path(cls->GetNamespace(context), context);
    const std::string className = cls->GetName(context);
    path.SetClassName(className);
    cls->EnumerateKeyNames(TAddKeyBindingCallback(*this, className, path, context), context);
    return path;
}

}  // namespace NVURZENTA20
