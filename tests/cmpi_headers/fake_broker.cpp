#include "fake_broker.hpp"

#include <cstring>
#include <sstream>
#include <stdexcept>

namespace fake {

namespace {

FakeBroker *g_current = nullptr;

CMPIStatus ok()
{
    return CMPIStatus{CMPI_RC_OK, nullptr};
}

CMPIStatus status(CMPIrc rc)
{
    return CMPIStatus{rc, nullptr};
}

void setRc(CMPIStatus *rc, CMPIrc code)
{
    if (rc != nullptr) {
        rc->rc = code;
        rc->msg = nullptr;
    }
}

CMPIData nullData()
{
    CMPIData d;
    std::memset(&d, 0, sizeof d);
    d.type = CMPI_null;
    d.state = CMPI_nullValue;
    return d;
}

// Bytes behind a CMPIValue pointer of the given type.
std::size_t valueSize(CMPIType type)
{
    if ((type & CMPI_ARRAY) != 0) {
        return sizeof(CMPIArray *);
    }
    switch (type) {
    case CMPI_boolean:
    case CMPI_uint8:
    case CMPI_sint8:
        return 1;
    case CMPI_char16:
    case CMPI_uint16:
    case CMPI_sint16:
        return 2;
    case CMPI_real32:
    case CMPI_uint32:
    case CMPI_sint32:
        return 4;
    case CMPI_real64:
    case CMPI_uint64:
    case CMPI_sint64:
        return 8;
    case CMPI_ptr:
        return sizeof(CMPIValuePtr);
    default:
        return sizeof(void *); // the encapsulated types
    }
}

CMPIData notFound()
{
    CMPIData d = nullData();
    d.state = CMPI_nullValue | CMPI_notFound;
    return d;
}

void put(Fields &fields, const std::string &name, const CMPIData &d)
{
    for (auto &f : fields) {
        if (f.first == name) {
            f.second = d;
            return;
        }
    }
    fields.emplace_back(name, d);
}

CMPIData get(const Fields &fields, const char *name, CMPIStatus *rc)
{
    const CMPIData *d = find(fields, name);
    if (d == nullptr) {
        setRc(rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
        return notFound();
    }
    setRc(rc, CMPI_RC_OK);
    return *d;
}

CMPIData getAt(const Fields &fields, CMPICount index, CMPIString **name,
               CMPIStatus *rc)
{
    if (index >= fields.size()) {
        setRc(rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
        return notFound();
    }
    if (name != nullptr) {
        *name = FakeBroker::current().string(fields[index].first);
    }
    setRc(rc, CMPI_RC_OK);
    return fields[index].second;
}

std::string joinProps(const char **props)
{
    if (props == nullptr) {
        return "*";
    }
    std::string out;
    for (const char **p = props; *p != nullptr; ++p) {
        out += (p == props ? "" : ",");
        out += *p;
    }
    return out;
}

std::string orNull(const char *s)
{
    return s == nullptr ? "(null)" : s;
}

// ------------------------------------------------------------------ string

CMPIStatus strRelease(CMPIString *s)
{
    for (auto &f : FakeBroker::current().strings) {
        if (&f.cmpi == s) {
            ++f.releases;
        }
    }
    return ok();
}

CMPIString *strClone(const CMPIString *s, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return FakeBroker::current().string(FakeBroker::text(s));
}

const char *strChars(const CMPIString *s, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return static_cast<const char *>(s->hdl);
}

CMPIStringFT stringFT = {CMPIVersion100, strRelease, strClone, strChars};

// ---------------------------------------------------------------- datetime

CMPIStatus dtRelease(CMPIDateTime *)
{
    return ok();
}

CMPIUint64 dtBinary(const CMPIDateTime *dt, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return asDateTime(dt)->micros;
}

CMPIString *dtString(const CMPIDateTime *dt, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return FakeBroker::current().string(asDateTime(dt)->text);
}

CMPIBoolean dtInterval(const CMPIDateTime *dt, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return asDateTime(dt)->interval;
}

CMPIDateTimeFT dateTimeFT = {CMPIVersion100, dtRelease, nullptr, dtBinary,
                             dtString, dtInterval};

CMPIDateTime *newDateTime(const std::string &text, CMPIUint64 micros,
                          bool interval)
{
    FakeBroker &b = FakeBroker::current();
    b.dateTimes.emplace_back();
    FDateTime &f = b.dateTimes.back();
    f.text = text;
    f.micros = micros;
    f.interval = interval;
    f.cmpi.hdl = &f;
    f.cmpi.ft = &dateTimeFT;
    return &f.cmpi;
}

// ------------------------------------------------------------------- array

CMPIStatus arrRelease(CMPIArray *)
{
    return ok();
}

CMPICount arrSize(const CMPIArray *a, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(asArray(a)->elements.size());
}

CMPIType arrType(const CMPIArray *a, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return asArray(a)->type;
}

CMPIData arrGet(const CMPIArray *a, CMPICount i, CMPIStatus *rc)
{
    FArray *f = asArray(a);
    if (i >= f->elements.size()) {
        setRc(rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
        return notFound();
    }
    setRc(rc, CMPI_RC_OK);
    return f->elements[i];
}

CMPIStatus arrSet(CMPIArray *a, CMPICount i, const CMPIValue *v, CMPIType t)
{
    FArray *f = asArray(a);
    if (i >= f->elements.size()) {
        return status(CMPI_RC_ERR_NO_SUCH_PROPERTY);
    }
    CMPIData d = FakeBroker::current().store(v, t);
    if (d.type != f->type) {
        return status(CMPI_RC_ERR_TYPE_MISMATCH);
    }
    f->elements[i] = d;
    return ok();
}

CMPIArrayFT arrayFT = {CMPIVersion100, arrRelease, nullptr, arrSize,
                       arrType, arrGet, arrSet};

// ------------------------------------------------------------- object path

CMPIStatus opRelease(CMPIObjectPath *op)
{
    ++asPath(op)->releases;
    return ok();
}

CMPIObjectPath *opClone(const CMPIObjectPath *op, CMPIStatus *rc)
{
    FObjectPath *src = asPath(op);
    CMPIObjectPath *copy = FakeBroker::current().path(src->ns, src->cls);
    asPath(copy)->host = src->host;
    asPath(copy)->keys = src->keys;
    setRc(rc, CMPI_RC_OK);
    return copy;
}

CMPIStatus opSetNs(CMPIObjectPath *op, const char *ns)
{
    asPath(op)->ns = ns;
    return ok();
}

CMPIString *opGetNs(const CMPIObjectPath *op, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return FakeBroker::current().string(asPath(op)->ns);
}

CMPIStatus opSetHost(CMPIObjectPath *op, const char *hn)
{
    asPath(op)->host = hn;
    return ok();
}

CMPIString *opGetHost(const CMPIObjectPath *op, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return FakeBroker::current().string(asPath(op)->host);
}

CMPIStatus opSetClass(CMPIObjectPath *op, const char *cn)
{
    asPath(op)->cls = cn;
    return ok();
}

CMPIString *opGetClass(const CMPIObjectPath *op, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return FakeBroker::current().string(asPath(op)->cls);
}

CMPIStatus opAddKey(CMPIObjectPath *op, const char *name, const CMPIValue *v,
                    const CMPIType t)
{
    CMPIData d = FakeBroker::current().store(v, t);
    d.state |= CMPI_keyValue;
    put(asPath(op)->keys, name, d);
    return ok();
}

CMPIData opGetKey(const CMPIObjectPath *op, const char *name, CMPIStatus *rc)
{
    return get(asPath(op)->keys, name, rc);
}

CMPIData opGetKeyAt(const CMPIObjectPath *op, CMPICount i, CMPIString **name,
                    CMPIStatus *rc)
{
    return getAt(asPath(op)->keys, i, name, rc);
}

CMPICount opKeyCount(const CMPIObjectPath *op, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(asPath(op)->keys.size());
}

CMPIObjectPathFT objectPathFT = {
    CMPIVersion100, opRelease, opClone,  opSetNs,    opGetNs,
    opSetHost,      opGetHost, opSetClass, opGetClass, opAddKey,
    opGetKey,       opGetKeyAt, opKeyCount, nullptr,    nullptr,
    nullptr,        nullptr,   nullptr,  nullptr,    nullptr};

// ---------------------------------------------------------------- instance

CMPIStatus instRelease(CMPIInstance *)
{
    return ok();
}

CMPIData instGet(const CMPIInstance *i, const char *name, CMPIStatus *rc)
{
    return get(asInstance(i)->props, name, rc);
}

CMPIData instGetAt(const CMPIInstance *i, CMPICount idx, CMPIString **name,
                   CMPIStatus *rc)
{
    return getAt(asInstance(i)->props, idx, name, rc);
}

CMPICount instCount(const CMPIInstance *i, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(asInstance(i)->props.size());
}

CMPIStatus instSet(const CMPIInstance *i, const char *name, const CMPIValue *v,
                   CMPIType t)
{
    put(asInstance(i)->props, name, FakeBroker::current().store(v, t));
    return ok();
}

CMPIObjectPath *instPath(const CMPIInstance *i, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return opClone(&asInstance(i)->path->cmpi, nullptr);
}

CMPIStatus instSetPath(CMPIInstance *i, const CMPIObjectPath *op)
{
    asInstance(i)->path = asPath(opClone(op, nullptr));
    return ok();
}

CMPIInstanceFT instanceFT = {CMPIVersion100, instRelease, nullptr,
                             instGet,        instGetAt,   instCount,
                             instSet,        instPath,    nullptr,
                             instSetPath};

// -------------------------------------------------------------------- args

CMPIStatus argsRelease(CMPIArgs *)
{
    return ok();
}

CMPIStatus argsAdd(const CMPIArgs *a, const char *name, const CMPIValue *v,
                   const CMPIType t)
{
    put(asArgs(a)->args, name, FakeBroker::current().store(v, t));
    return ok();
}

CMPIData argsGet(const CMPIArgs *a, const char *name, CMPIStatus *rc)
{
    return get(asArgs(a)->args, name, rc);
}

CMPIData argsGetAt(const CMPIArgs *a, CMPICount i, CMPIString **name,
                   CMPIStatus *rc)
{
    return getAt(asArgs(a)->args, i, name, rc);
}

CMPICount argsCount(const CMPIArgs *a, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(asArgs(a)->args.size());
}

CMPIArgsFT argsFT = {CMPIVersion100, argsRelease, nullptr, argsAdd,
                     argsGet,        argsGetAt,   argsCount};

// ------------------------------------------------------------- enumeration

FEnumeration *asEnum(const CMPIEnumeration *e)
{
    return static_cast<FEnumeration *>(e->hdl);
}

CMPIStatus enumRelease(CMPIEnumeration *e)
{
    ++asEnum(e)->releases;
    return ok();
}

CMPIData enumNext(const CMPIEnumeration *e, CMPIStatus *rc)
{
    FEnumeration *f = asEnum(e);
    if (f->next >= f->items.size()) {
        setRc(rc, CMPI_RC_NO_MORE_ELEMENTS);
        return nullData();
    }
    setRc(rc, CMPI_RC_OK);
    return f->items[f->next++];
}

CMPIBoolean enumHasNext(const CMPIEnumeration *e, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return asEnum(e)->next < asEnum(e)->items.size();
}

CMPIEnumerationFT enumerationFT = {CMPIVersion100, enumRelease, nullptr,
                                   enumNext, enumHasNext, nullptr};

// ------------------------------------------------------------------ result

FResult *asResult(const CMPIResult *r)
{
    return static_cast<FResult *>(r->hdl);
}

CMPIStatus resRelease(CMPIResult *)
{
    return ok();
}

CMPIStatus resData(const CMPIResult *r, const CMPIValue *v, const CMPIType t)
{
    asResult(r)->items.push_back(FakeBroker::current().store(v, t));
    return ok();
}

CMPIStatus resInstance(const CMPIResult *r, const CMPIInstance *inst)
{
    CMPIData d = nullData();
    d.type = CMPI_instance;
    d.state = CMPI_goodValue;
    d.value.inst = const_cast<CMPIInstance *>(inst);
    asResult(r)->items.push_back(d);
    return ok();
}

CMPIStatus resPath(const CMPIResult *r, const CMPIObjectPath *op)
{
    CMPIData d = nullData();
    d.type = CMPI_ref;
    d.state = CMPI_goodValue;
    d.value.ref = const_cast<CMPIObjectPath *>(op);
    asResult(r)->items.push_back(d);
    return ok();
}

CMPIStatus resDone(const CMPIResult *r)
{
    ++asResult(r)->doneCalls;
    return ok();
}

CMPIResultFT resultFT = {CMPIVersion100, resRelease, nullptr, resData,
                         resInstance,    resPath,    resDone};

// ----------------------------------------------------------------- context

FContext *asContext(const CMPIContext *c)
{
    return static_cast<FContext *>(c->hdl);
}

CMPIStatus ctxRelease(CMPIContext *)
{
    return ok();
}

CMPIData ctxGet(const CMPIContext *c, const char *name, CMPIStatus *rc)
{
    return get(asContext(c)->entries, name, rc);
}

CMPIData ctxGetAt(const CMPIContext *c, CMPICount i, CMPIString **name,
                  CMPIStatus *rc)
{
    return getAt(asContext(c)->entries, i, name, rc);
}

CMPICount ctxCount(const CMPIContext *c, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(asContext(c)->entries.size());
}

CMPIStatus ctxAdd(const CMPIContext *c, const char *name, const CMPIValue *v,
                  const CMPIType t)
{
    put(asContext(c)->entries, name, FakeBroker::current().store(v, t));
    return ok();
}

CMPIContextFT contextFT = {CMPIVersion100, ctxRelease, nullptr, ctxGet,
                           ctxGetAt,       ctxCount,   ctxAdd};

// ---------------------------------------------------------- factories (eft)

FakeBroker &self(const CMPIBroker *mb)
{
    return *static_cast<FakeBroker *>(mb->hdl);
}

CMPIInstance *eftNewInstance(const CMPIBroker *mb, const CMPIObjectPath *op,
                             CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return self(mb).instance(opClone(op, nullptr));
}

CMPIObjectPath *eftNewObjectPath(const CMPIBroker *mb, const char *ns,
                                 const char *cn, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return self(mb).path(orNull(ns), orNull(cn));
}

CMPIArgs *eftNewArgs(const CMPIBroker *mb, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return self(mb).args();
}

CMPIString *eftNewString(const CMPIBroker *mb, const char *data,
                         CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return self(mb).string(orNull(data));
}

CMPIArray *eftNewArray(const CMPIBroker *mb, CMPICount max, CMPIType type,
                       CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return self(mb).array(type, max);
}

CMPIDateTime *eftNewDateTime(const CMPIBroker *mb, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    self(mb).calls.push_back("newDateTime");
    return newDateTime("20240601000000.000000+000", 0, false);
}

CMPIDateTime *eftNewDateTimeFromBinary(const CMPIBroker *, CMPIUint64 t,
                                       CMPIBoolean interval, CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return newDateTime("", t, interval != 0);
}

CMPIDateTime *eftNewDateTimeFromChars(const CMPIBroker *, const char *text,
                                      CMPIStatus *rc)
{
    setRc(rc, CMPI_RC_OK);
    return newDateTime(text, 0, false);
}

CMPIStatus eftLog(const CMPIBroker *mb, int severity, const char *id,
                  const char *text, const CMPIString *string)
{
    std::ostringstream s;
    s << "logMessage " << severity << " " << orNull(id) << ": "
      << (text != nullptr ? text : FakeBroker::text(string));
    self(mb).calls.push_back(s.str());
    return ok();
}

CMPIStatus eftTrace(const CMPIBroker *mb, int level, const char *component,
                    const char *text, const CMPIString *string)
{
    std::ostringstream s;
    s << "trace " << level << " " << orNull(component) << ": "
      << (text != nullptr ? text : FakeBroker::text(string));
    self(mb).calls.push_back(s.str());
    return ok();
}

CMPIBrokerEncFT encFT = [] {
    CMPIBrokerEncFT ft;
    std::memset(&ft, 0, sizeof ft);
    ft.ftVersion = CMPIVersion100;
    ft.newInstance = eftNewInstance;
    ft.newObjectPath = eftNewObjectPath;
    ft.newArgs = eftNewArgs;
    ft.newString = eftNewString;
    ft.newArray = eftNewArray;
    ft.newDateTime = eftNewDateTime;
    ft.newDateTimeFromBinary = eftNewDateTimeFromBinary;
    ft.newDateTimeFromChars = eftNewDateTimeFromChars;
    ft.logMessage = eftLog;
    ft.trace = eftTrace;
    return ft;
}();

// -------------------------------------------------------- up-calls (bft)

// Canned answers. Each kind of enumeration has a different length, so a
// provider counting results shows which slot it actually reached.
CMPIEnumeration *paths(FakeBroker &b, std::size_t n, const char *cls)
{
    std::vector<CMPIData> items;
    for (std::size_t i = 0; i < n; ++i) {
        CMPIData d = nullData();
        d.type = CMPI_ref;
        d.state = CMPI_goodValue;
        d.value.ref = b.path("root/sample", cls);
        items.push_back(d);
    }
    return b.enumeration(items);
}

CMPIEnumeration *instances(FakeBroker &b, std::size_t n, const char *cls)
{
    std::vector<CMPIData> items;
    for (std::size_t i = 0; i < n; ++i) {
        CMPIData d = nullData();
        d.type = CMPI_instance;
        d.state = CMPI_goodValue;
        d.value.inst = b.instance(b.path("root/sample", cls));
        items.push_back(d);
    }
    return b.enumeration(items);
}

CMPIStatus bftDeliver(const CMPIBroker *mb, const CMPIContext *,
                      const char *ns, const CMPIInstance *ind)
{
    FakeBroker &b = self(mb);
    b.calls.push_back("deliverIndication " + orNull(ns) + " " +
                      FakeBroker::render(&asInstance(ind)->path->cmpi));
    b.indications.push_back(ind);
    return ok();
}

CMPIEnumeration *bftEnumNames(const CMPIBroker *mb, const CMPIContext *,
                              const CMPIObjectPath *op, CMPIStatus *rc)
{
    self(mb).calls.push_back("enumerateInstanceNames " +
                             FakeBroker::render(op));
    setRc(rc, CMPI_RC_OK);
    return paths(self(mb), 1, "Sample_Gadget");
}

CMPIInstance *bftGetInstance(const CMPIBroker *mb, const CMPIContext *,
                             const CMPIObjectPath *op, const char **props,
                             CMPIStatus *rc)
{
    self(mb).calls.push_back("getInstance " + FakeBroker::render(op) +
                             " props=" + joinProps(props));
    setRc(rc, CMPI_RC_OK);
    return self(mb).instance(opClone(op, nullptr));
}

CMPIObjectPath *bftCreateInstance(const CMPIBroker *mb, const CMPIContext *,
                                  const CMPIObjectPath *op,
                                  const CMPIInstance *inst, CMPIStatus *rc)
{
    self(mb).calls.push_back("createInstance " + FakeBroker::render(op) +
                             " from " +
                             FakeBroker::render(&asInstance(inst)->path->cmpi));
    setRc(rc, CMPI_RC_OK);
    return opClone(op, nullptr);
}

CMPIStatus bftModifyInstance(const CMPIBroker *mb, const CMPIContext *,
                             const CMPIObjectPath *op, const CMPIInstance *,
                             const char **props)
{
    self(mb).calls.push_back("modifyInstance " + FakeBroker::render(op) +
                             " props=" + joinProps(props));
    return ok();
}

CMPIStatus bftDeleteInstance(const CMPIBroker *mb, const CMPIContext *,
                             const CMPIObjectPath *op)
{
    self(mb).calls.push_back("deleteInstance " + FakeBroker::render(op));
    return ok();
}

CMPIEnumeration *bftExecQuery(const CMPIBroker *mb, const CMPIContext *,
                              const CMPIObjectPath *op, const char *query,
                              const char *lang, CMPIStatus *rc)
{
    self(mb).calls.push_back("execQuery " + FakeBroker::render(op) + " " +
                             orNull(lang) + " " + orNull(query));
    setRc(rc, CMPI_RC_OK);
    return instances(self(mb), 0, "Sample_Gadget");
}

CMPIEnumeration *bftEnumInstances(const CMPIBroker *mb, const CMPIContext *,
                                  const CMPIObjectPath *op, const char **props,
                                  CMPIStatus *rc)
{
    self(mb).calls.push_back("enumerateInstances " + FakeBroker::render(op) +
                             " props=" + joinProps(props));
    setRc(rc, CMPI_RC_OK);
    return instances(self(mb), 2, "Sample_Gadget");
}

CMPIEnumeration *bftAssociators(const CMPIBroker *mb, const CMPIContext *,
                                const CMPIObjectPath *op, const char *assoc,
                                const char *result, const char *role,
                                const char *resultRole, const char **props,
                                CMPIStatus *rc)
{
    self(mb).calls.push_back("associators " + FakeBroker::render(op) +
                             " assocClass=" + orNull(assoc) +
                             " resultClass=" + orNull(result) +
                             " role=" + orNull(role) +
                             " resultRole=" + orNull(resultRole) +
                             " props=" + joinProps(props));
    setRc(rc, CMPI_RC_OK);
    return instances(self(mb), 3, "Sample_Gadget");
}

CMPIEnumeration *bftAssociatorNames(const CMPIBroker *mb, const CMPIContext *,
                                    const CMPIObjectPath *op,
                                    const char *assoc, const char *result,
                                    const char *role, const char *resultRole,
                                    CMPIStatus *rc)
{
    self(mb).calls.push_back("associatorNames " + FakeBroker::render(op) +
                             " assocClass=" + orNull(assoc) +
                             " resultClass=" + orNull(result) +
                             " role=" + orNull(role) +
                             " resultRole=" + orNull(resultRole));
    setRc(rc, CMPI_RC_OK);
    return paths(self(mb), 4, "Sample_Gadget");
}

CMPIEnumeration *bftReferences(const CMPIBroker *mb, const CMPIContext *,
                               const CMPIObjectPath *op, const char *result,
                               const char *role, const char **props,
                               CMPIStatus *rc)
{
    self(mb).calls.push_back("references " + FakeBroker::render(op) +
                             " resultClass=" + orNull(result) +
                             " role=" + orNull(role) +
                             " props=" + joinProps(props));
    setRc(rc, CMPI_RC_OK);
    return instances(self(mb), 5, "Sample_Link");
}

CMPIEnumeration *bftReferenceNames(const CMPIBroker *mb, const CMPIContext *,
                                   const CMPIObjectPath *op,
                                   const char *result, const char *role,
                                   CMPIStatus *rc)
{
    self(mb).calls.push_back("referenceNames " + FakeBroker::render(op) +
                             " resultClass=" + orNull(result) +
                             " role=" + orNull(role));
    setRc(rc, CMPI_RC_OK);
    return paths(self(mb), 6, "Sample_Link");
}

CMPIData bftInvokeMethod(const CMPIBroker *mb, const CMPIContext *,
                         const CMPIObjectPath *op, const char *method,
                         const CMPIArgs *in, CMPIArgs *out, CMPIStatus *rc)
{
    std::ostringstream s;
    s << "invokeMethod " << FakeBroker::render(op) << " " << orNull(method)
      << " in=" << asArgs(in)->args.size()
      << " out=" << (out != nullptr ? "given" : "none");
    self(mb).calls.push_back(s.str());
    setRc(rc, CMPI_RC_OK);
    CMPIData d = nullData();
    d.type = CMPI_boolean;
    d.state = CMPI_goodValue;
    d.value.boolean = 1;
    return d;
}

CMPIStatus bftSetProperty(const CMPIBroker *mb, const CMPIContext *,
                          const CMPIObjectPath *op, const char *name,
                          const CMPIValue *value, CMPIType type)
{
    std::ostringstream s;
    s << "setProperty " << FakeBroker::render(op) << " " << orNull(name)
      << " type=" << type;
    if (type == CMPI_uint32) {
        s << " value=" << value->uint32;
    }
    self(mb).calls.push_back(s.str());
    return ok();
}

CMPIData bftGetProperty(const CMPIBroker *mb, const CMPIContext *,
                        const CMPIObjectPath *op, const char *name,
                        CMPIStatus *rc)
{
    self(mb).calls.push_back("getProperty " + FakeBroker::render(op) + " " +
                             orNull(name));
    setRc(rc, CMPI_RC_OK);
    CMPIData d = nullData();
    d.type = CMPI_uint32;
    d.state = CMPI_goodValue;
    d.value.uint32 = 5;
    return d;
}

CMPIBrokerFT brokerFT = [] {
    CMPIBrokerFT ft;
    std::memset(&ft, 0, sizeof ft);
    ft.brokerCapabilities = CMPI_MB_Class_2 | CMPI_MB_Supports_IndicationMI;
    ft.brokerVersion = 1;
    ft.brokerName = "fake";
    ft.deliverIndication = bftDeliver;
    ft.enumerateInstanceNames = bftEnumNames;
    ft.getInstance = bftGetInstance;
    ft.createInstance = bftCreateInstance;
    ft.modifyInstance = bftModifyInstance;
    ft.deleteInstance = bftDeleteInstance;
    ft.execQuery = bftExecQuery;
    ft.enumerateInstances = bftEnumInstances;
    ft.associators = bftAssociators;
    ft.associatorNames = bftAssociatorNames;
    ft.references = bftReferences;
    ft.referenceNames = bftReferenceNames;
    ft.invokeMethod = bftInvokeMethod;
    ft.setProperty = bftSetProperty;
    ft.getProperty = bftGetProperty;
    return ft;
}();

} // namespace

// ------------------------------------------------------------- FakeBroker

FakeBroker::FakeBroker()
{
    if (g_current != nullptr) {
        throw std::logic_error("only one FakeBroker at a time");
    }
    g_current = this;
    broker_.hdl = this;
    broker_.bft = &brokerFT;
    broker_.eft = &encFT;
    broker_.xft = nullptr;
}

FakeBroker::~FakeBroker()
{
    g_current = nullptr;
}

FakeBroker &FakeBroker::current()
{
    if (g_current == nullptr) {
        throw std::logic_error("no FakeBroker");
    }
    return *g_current;
}

CMPIString *FakeBroker::string(const std::string &text)
{
    strings.emplace_back();
    FString &f = strings.back();
    f.text = text;
    // Providers read the characters straight from hdl (CMGetCharPtr).
    f.cmpi.hdl = const_cast<char *>(f.text.c_str());
    f.cmpi.ft = &stringFT;
    return &f.cmpi;
}

CMPIObjectPath *FakeBroker::path(const std::string &ns, const std::string &cls)
{
    paths.emplace_back();
    FObjectPath &f = paths.back();
    f.ns = ns;
    f.cls = cls;
    f.cmpi.hdl = &f;
    f.cmpi.ft = &objectPathFT;
    return &f.cmpi;
}

CMPIInstance *FakeBroker::instance(CMPIObjectPath *op)
{
    instances.emplace_back();
    FInstance &f = instances.back();
    f.path = asPath(op);
    // Like real brokers, an instance starts out with its key properties.
    f.props = f.path->keys;
    for (auto &p : f.props) {
        p.second.state &= static_cast<CMPIValueState>(~CMPI_keyValue);
    }
    f.cmpi.hdl = &f;
    f.cmpi.ft = &instanceFT;
    return &f.cmpi;
}

CMPIArgs *FakeBroker::args()
{
    argLists.emplace_back();
    FArgs &f = argLists.back();
    f.cmpi.hdl = &f;
    f.cmpi.ft = &argsFT;
    return &f.cmpi;
}

CMPIArray *FakeBroker::array(CMPIType type, std::size_t size)
{
    arrays.emplace_back();
    FArray &f = arrays.back();
    f.type = type;
    CMPIData empty = nullData();
    empty.type = type;
    f.elements.assign(size, empty);
    f.cmpi.hdl = &f;
    f.cmpi.ft = &arrayFT;
    return &f.cmpi;
}

CMPIEnumeration *FakeBroker::enumeration(std::vector<CMPIData> items)
{
    enumerations.emplace_back();
    FEnumeration &f = enumerations.back();
    f.items = std::move(items);
    f.cmpi.hdl = &f;
    f.cmpi.ft = &enumerationFT;
    return &f.cmpi;
}

FResult *FakeBroker::result()
{
    results.emplace_back();
    FResult &f = results.back();
    f.cmpi.hdl = &f;
    f.cmpi.ft = &resultFT;
    return &f;
}

CMPIContext *FakeBroker::context(const std::string &initNamespace)
{
    contexts.emplace_back();
    FContext &f = contexts.back();
    f.cmpi.hdl = &f;
    f.cmpi.ft = &contextFT;
    CMPIData ns = nullData();
    ns.type = CMPI_string;
    ns.state = CMPI_goodValue;
    ns.value.string = string(initNamespace);
    put(f.entries, CMPIInitNameSpace, ns);
    return &f.cmpi;
}

CMPIData FakeBroker::store(const CMPIValue *value, CMPIType type)
{
    CMPIData d = nullData();
    d.type = type;
    if (value == nullptr) {
        return d;
    }
    d.state = CMPI_goodValue;
    if (type == CMPI_chars) {
        d.type = CMPI_string;
        d.value.string = string(reinterpret_cast<const char *>(value));
    } else {
        // value points at the provider's own variable of the given type
        // (&myUint32, &myString, ...), not at a whole CMPIValue: copy only
        // that many bytes.
        std::memcpy(&d.value, value, valueSize(type));
    }
    return d;
}

std::string FakeBroker::text(const CMPIString *s)
{
    return s == nullptr ? "(null)" : static_cast<const char *>(s->hdl);
}

std::string FakeBroker::render(const CMPIObjectPath *op)
{
    const FObjectPath *f = asPath(op);
    std::ostringstream s;
    s << f->ns << ":" << f->cls;
    const char *sep = ".";
    for (const auto &k : f->keys) {
        s << sep << k.first << "=";
        sep = ",";
        switch (k.second.type) {
        case CMPI_uint32:
            s << k.second.value.uint32;
            break;
        case CMPI_string:
            s << '"' << text(k.second.value.string) << '"';
            break;
        default:
            s << "<type " << k.second.type << ">";
        }
    }
    return s.str();
}

FObjectPath *asPath(const CMPIObjectPath *op)
{
    return static_cast<FObjectPath *>(op->hdl);
}

FInstance *asInstance(const CMPIInstance *inst)
{
    return static_cast<FInstance *>(inst->hdl);
}

FArgs *asArgs(const CMPIArgs *args)
{
    return static_cast<FArgs *>(args->hdl);
}

FArray *asArray(const CMPIArray *array)
{
    return static_cast<FArray *>(array->hdl);
}

FDateTime *asDateTime(const CMPIDateTime *dt)
{
    return static_cast<FDateTime *>(dt->hdl);
}

const CMPIData *find(const Fields &fields, const std::string &name)
{
    for (const auto &f : fields) {
        if (f.first == name) {
            return &f.second;
        }
    }
    return nullptr;
}

} // namespace fake
