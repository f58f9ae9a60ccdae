// A host for the broker tests: the CMPI namespace over the fleet module (cars,
// drivers and their assignments), the upcalls a provider makes with one-line
// reports of their answers, and code run inside the car provider's calls.
#ifndef ZENTA_TESTS_BROKERTESTHOST_H
#define ZENTA_TESTS_BROKERTESTHOST_H

#include <dlfcn.h>

#include <functional>
#include <string>
#include <vector>

#include "NspTestHost.h"
#include "cmpiInstanceRegistry.h"
#include "cmpimacs.h"

class BrokerTestHost : public NspTestHost {
protected:
    typedef boost::shared_ptr<NVURZENTA20::ICIMInstance> TInstance;
    typedef std::function<void(const CMPIContext*, const CMPIObjectPath*, const CMPIArgs*, CMPIArgs*)> TCall;

    void SetUp() override {
        NspTestHost::SetUp();
        Allocate("fleet");
    }

    void TearDown() override {
        *ModuleVariable<void*>("fleet_call_hook") = nullptr;
        *ModuleVariable<int>("fleet_call_hook_stays") = 0;
        Registry().ClearInstances();
        NspTestHost::TearDown();
    }

    static CMPINSPInstanceRegistry& Registry() { return *CMPINSPInstanceRegistry::GetRegistrySingleton(); }

    // How many records `make` entered in the registry.
    static std::size_t Registered(const std::function<void()>& make) {
        const std::size_t before = Registry().GetRecordCount();
        make();
        return Registry().GetRecordCount() - before;
    }

    const CMPIBroker* Broker() const { return fNamespace->GetBroker().get(); }
    const CMPIBrokerEncFT& Enc() const { return *Broker()->eft; }

    // A path from the broker's factory, as providers make them.
    CMPIObjectPath* NewPath(const char* ns, const char* cls, const char* id = nullptr) {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        CMPIObjectPath* path = Broker()->eft->newObjectPath(Broker(), ns, cls, &rc);
        EXPECT_EQ(rc.rc, CMPI_RC_OK);
        if (id != nullptr) CMAddKey(path, std::string(cls) == "Fleet_Driver" ? "Name" : "Id", id, CMPI_chars);
        return path;
    }

    CMPIObjectPath* CarPath(const char* id) { return NewPath("root/fleet", "Fleet_Car", id); }

    static NVURZENTA20::TCIMReference Car1Reference(const boost::shared_ptr<NVURZENTA20::ICIMNamespace>& ns) {
        NVURZENTA20::TCIMReference path(ns, NVURZENTA20::TCIMContext());
        path.SetClassName("Fleet_Car");
        path.AddKeyValue("Id", NVURZENTA20::TCIMValue("car1"));
        return path;
    }

    static std::string Text(const NVURZENTA20::ICIMInstance& instance, const char* property) {
        return instance.GetProperty(property, NVURZENTA20::TCIMContext())->GetValue();
    }

    // The instances of the class, from the CMPI namespace or the repository.
    std::vector<TInstance> Instances(const std::string& className, bool inRepository = false) {
        std::vector<TInstance> found;
        (inRepository ? fRepository : fNamespace)
            ->GetClass(className, NVURZENTA20::TCIMContext())
            ->EnumerateInstances([&](TInstance instance) { found.push_back(instance); return true; }, false,
                                 NVURZENTA20::TCIMContext());
        return found;
    }

    std::vector<std::string> Keys(const std::string& className, const char* property) {
        std::vector<std::string> keys;
        for (const TInstance& instance : Instances(className)) keys.push_back(Text(*instance, property));
        return keys;
    }

    static std::string TextOf(const CMPIData& data) {
        return data.type == CMPI_string && data.value.string != nullptr ? CMGetCharPtr(data.value.string) : "";
    }

    // "null", "uint32:<value>" or "type<code>".
    static std::string DataText(const CMPIData& data) {
        if (data.type == CMPI_null) return "null";
        if (data.type == CMPI_uint32) return "uint32:" + std::to_string(data.value.uint32);
        return "type" + std::to_string(data.type);
    }

    // "label=RC", then for an enumeration ":" and the elements' values of `key`
    // joined by commas, or their count when `key` is null.
    static std::string Enumeration(const char* label, CMPIEnumeration* found, const CMPIStatus& rc, const char* key) {
        std::string text = std::string(label) + "=" + std::to_string(rc.rc);
        if (found == nullptr) return text;
        std::string values;
        int count = 0;
        for (; CMHasNext(found, nullptr); ++count) {
            const CMPIData element = CMGetNext(found, nullptr);
            if (key == nullptr) continue;
            const bool instance = element.type == CMPI_instance;
            values += (count > 0 ? "," : "") + TextOf(instance ? CMGetProperty(element.value.inst, key, nullptr)
                                                               : CMGetKey(element.value.ref, key, nullptr));
        }
        return text + ":" + (key == nullptr ? std::to_string(count) : values);
    }

    std::string Enumerations(const char* className, const char* key = "Id") {
        CMPIObjectPath* path = NewPath("root/fleet", className);
        CMPIStatus rc = {CMPI_RC_OK, nullptr};
        std::string text = Enumeration("enum", CBEnumInstances(Broker(), nullptr, path, nullptr, &rc), rc, key);
        return text + " " + Enumeration("names", CBEnumInstanceNames(Broker(), nullptr, path, &rc), rc, key);
    }

    // The association walks from `path` by `role`, the far ends by their key `far`.
    std::string Walks(CMPIObjectPath* path, const char* far = "Name", const char* role = "") {
        const CMPIBroker* b = Broker();
        CMPIStatus rc = {CMPI_RC_OK, nullptr};
        std::string text = Enumeration("assoc", CBAssociators(b, nullptr, path, "", "", role, "", nullptr, &rc), rc,
                                       far);
        text += " " + Enumeration("assocnames", CBAssociatorNames(b, nullptr, path, "", "", role, "", &rc), rc, far);
        text += " " + Enumeration("refs", CBReferences(b, nullptr, path, "", role, nullptr, &rc), rc, nullptr);
        return text + " " + Enumeration("refnames", CBReferenceNames(b, nullptr, path, "", role, &rc), rc, nullptr);
    }

    // Makes every upcall that takes a path and reports each answer; with argument
    // objects, Service is invoked with `out` (visits = 5 added) as its input.
    std::string CheckPath(const CMPIContext* ctx, const CMPIObjectPath* path, const CMPIArgs* in = nullptr,
                          CMPIArgs* out = nullptr) {
        const CMPIBroker* b = Broker();
        CMPIObjectPath* op = const_cast<CMPIObjectPath*>(path);
        CMPIStatus rc = {CMPI_RC_OK, nullptr};
        CMPIUint32 number = 7;
        std::string text = Enumeration("enum", CBEnumInstances(b, ctx, op, nullptr, &rc), rc, "Id");
        text += " " + Enumeration("names", CBEnumInstanceNames(b, ctx, op, &rc), rc, "Id");
        CMPIInstance* instance = CBGetInstance(b, ctx, op, nullptr, &rc);
        text += " get=" + std::to_string(rc.rc);
        if (instance != nullptr && *static_cast<TInstance*>(instance->hdl)) {
            text += ":" + TextOf(CMGetProperty(instance, "Id", nullptr));
        }
        text += " prop=" + DataText(CBGetProperty(b, ctx, op, "Wheels", &rc));
        text += " set=" + std::to_string(CBSetProperty(b, ctx, op, "Mileage", &number, CMPI_uint32).rc);
        text += " delete=" + std::to_string(CBDeleteInstance(b, ctx, op).rc) + " " + Walks(op);
        if (in == nullptr || out == nullptr) return text;
        number = 5;
        CMAddArg(out, "visits", &number, CMPI_uint32);
        rc.rc = CMPI_RC_ERR_NOT_SUPPORTED;
        CBInvokeMethod(b, ctx, op, "Service", out, const_cast<CMPIArgs*>(in), &rc);
        const CMPIData visits = CMGetArg(out, "visits", nullptr);
        return text + " invoke=" + std::to_string(rc.rc) + ":" +
               std::to_string(visits.type == CMPI_uint32 ? visits.value.uint32 : 0u);
    }

    // Runs `call` inside the car provider's next call (every call if it
    // `stays`), with the context, path and argument objects handed to it.
    void InsideNextCarCall(const TCall& call, bool stays = false) {
        static TCall current;
        current = call;
        *ModuleVariable<int>("fleet_call_hook_stays") = stays;
        *ModuleVariable<void (*)(const CMPIContext*, const CMPIObjectPath*, const CMPIArgs*, CMPIArgs*)>(
            "fleet_call_hook") = [](const CMPIContext* ctx, const CMPIObjectPath* ref, const CMPIArgs* in,
                                    CMPIArgs* out) { current(ctx, ref, in, out); };
    }

    // A variable the fleet module exports.
    template <class T>
    static T* ModuleVariable(const char* name) {
        const std::string path = std::string(ZENTA_NSP_MODULE_ROOT) + "/fleet/Fleet.cmpi.so";
        void* handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        T* variable = handle == nullptr ? nullptr : static_cast<T*>(dlsym(handle, name));
        if (handle != nullptr) dlclose(handle);
        EXPECT_NE(variable, nullptr) << name;
        return variable;
    }

    void ClearLog() const { std::ofstream(fLogPath.c_str(), std::ios::trunc); }  // the logger appends

    // Log lines that contain `text`: level name and text, without the time stamp.
    std::vector<std::string> LoggedWith(const std::string& text) const {
        std::vector<std::string> found = LogLinesWith("", text);
        for (std::string& line : found) line = line.substr(line.find(' ', line.find(' ') + 1) + 1);
        return found;
    }
};

#endif
