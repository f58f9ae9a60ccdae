// The MI stub macros and the convenience macros of cmpimacs.h as a provider
// experiences them: the stubs build tables whose every slot reaches the
// intended provider function, and each macro driven by c_provider.c reaches
// the intended slot with its arguments in the intended order.

#include "probes.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstring>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Names = std::vector<std::string>;

// ---------------------------------------------------------------- stubs

// Calls a slot with null/zero arguments; returns the provider function hit.
template <typename R, typename... A> std::string reach(R (*slot)(A...))
{
    if (slot == nullptr) {
        return "(empty slot)";
    }
    c_provider_last_call = nullptr;
    slot(A()...);
    return c_provider_last_call == nullptr ? "(nothing)" : c_provider_last_call;
}

template <typename MI> void expectHeader(const MI *mi, const char *name)
{
    ASSERT_NE(mi, nullptr);
    EXPECT_EQ(mi->hdl, nullptr);
    EXPECT_EQ(mi->ft->ftVersion, CMPICurrentVersion);
    EXPECT_EQ(mi->ft->miVersion, CMPICurrentVersion);
    EXPECT_STREQ(mi->ft->miName, name);
}

TEST(CmpiMIStubs, EverySlotReachesItsProviderFunction)
{
    CMPIBroker broker{};
    CMPIContext ctx{};
    CMPIStatus rc{};

    const CMPIInstanceMI *imi = Sample_Create_InstanceMI(&broker, &ctx, &rc);
    expectHeader(imi, "instanceSample");
    EXPECT_EQ(Sample_Create_InstanceMI(&broker, &ctx, &rc), imi) << "one static record";
    const CMPIInstanceMIFT *i = imi->ft;
    EXPECT_EQ((Names{reach(i->cleanup), reach(i->enumerateInstanceNames),
                     reach(i->enumerateInstances), reach(i->getInstance),
                     reach(i->createInstance), reach(i->modifyInstance),
                     reach(i->deleteInstance), reach(i->execQuery)}),
              (Names{"Cleanup", "EnumInstanceNames", "EnumInstances", "GetInstance",
                     "CreateInstance", "ModifyInstance", "DeleteInstance", "ExecQuery"}));

    const CMPIMethodMI *mmi = Sample_Create_MethodMI(&broker, &ctx, &rc);
    expectHeader(mmi, "methodSample");
    EXPECT_EQ((Names{reach(mmi->ft->cleanup), reach(mmi->ft->invokeMethod)}),
              (Names{"MethodCleanup", "InvokeMethod"}));

    const CMPIAssociationMI *ami = Sample_Create_AssociationMI(&broker, &ctx, &rc);
    expectHeader(ami, "associationSample");
    const CMPIAssociationMIFT *a = ami->ft;
    EXPECT_EQ((Names{reach(a->cleanup), reach(a->associators), reach(a->associatorNames),
                     reach(a->references), reach(a->referenceNames)}),
              (Names{"AssociationCleanup", "Associators", "AssociatorNames",
                     "References", "ReferenceNames"}));

    c_provider_hook_saw_broker = 0;
    const CMPIPropertyMI *pmi = Sample_Create_PropertyMI(&broker, &ctx, &rc);
    EXPECT_EQ(c_provider_hook_saw_broker, 1)
        << "the hook runs after the broker is stored and sees the factory's arguments";
    expectHeader(pmi, "propertySample");
    EXPECT_EQ((Names{reach(pmi->ft->cleanup), reach(pmi->ft->setProperty),
                     reach(pmi->ft->getProperty)}),
              (Names{"PropertyCleanup", "SetProperty", "GetProperty"}));

    const CMPIIndicationMI *nmi = Sample_Create_IndicationMI(&broker, &ctx, &rc);
    expectHeader(nmi, "IndicationSample");
    const CMPIIndicationMIFT *n = nmi->ft;
    EXPECT_EQ((Names{reach(n->cleanup), reach(n->authorizeFilter), reach(n->mustPoll),
                     reach(n->activateFilter), reach(n->deActivateFilter),
                     reach(n->enableIndications), reach(n->disableIndications)}),
              (Names{"IndicationCleanup", "AuthorizeFilter", "MustPoll",
                     "ActivateFilter", "DeActivateFilter", "EnableIndications",
                     "DisableIndications"}));
}

// ------------------------------------------------------- recording broker

// Every slot of the broker and object tables appends "slot(arg,...)" here.
Names calls;
std::map<const void *, std::string> labels;

template <typename T> std::string show(T v)
{
    if constexpr (std::is_pointer<T>::value) {
        using Pointee = std::remove_cv_t<std::remove_pointer_t<T>>;
        if (v == nullptr) {
            return "null";
        } else if constexpr (std::is_function<Pointee>::value) {
            return "fn";
        } else if constexpr (std::is_same<Pointee, char>::value) {
            return v;
        } else if constexpr (std::is_same<Pointee, const char *>::value) {
            std::string list;
            for (; *v != nullptr; ++v) {
                list += (list.empty() ? "" : "|") + std::string(*v);
            }
            return list;
        } else if constexpr (std::is_same<Pointee, CMPIValue>::value) {
            // Providers pass the address of a typed variable, not of a
            // whole (8-byte aligned) CMPIValue: read only its four bytes.
            CMPIUint32 value;
            std::memcpy(&value, v, sizeof(value));
            return std::to_string(value);
        } else {
            auto it = labels.find(v);
            return it == labels.end() ? "?" : it->second;
        }
    } else {
        return std::to_string(+v);
    }
}

void record(const char *slot, const Names &args)
{
    std::string line = std::string(slot) + "(";
    for (const std::string &a : args) {
        line += (&a == &args.front() ? "" : ",") + a;
    }
    calls.push_back(line + ")");
}

template <typename Fn> struct Recorder;
template <typename R, typename... A> struct Recorder<R (*)(A...)>
{
    template <const char *Slot> static R call(A... a)
    {
        record(Slot, {show(a)...});
        return R();
    }
};
template <typename R, typename... A> struct Recorder<R (*)(A..., ...)>
{
    template <const char *Slot> static R call(A... a, ...)
    {
        record(Slot, {show(a)...});
        return R();
    }
};

#define NO_SLOT(T, m)
namespace slot {
#define SLOT_NAME(T, m) constexpr char T##_##m[] = #m;
#define SLOT_NAMES(T, members) members(NO_SLOT, SLOT_NAME, NO_SLOT, T)
CMPI_LAYOUT_BROKER(SLOT_NAMES)
} // namespace slot

#define INSTALL_SLOT(T, m) ft.m = &Recorder<decltype(T::m)>::call<slot::T##_##m>;
#define INSTALL(T, members)                                                    \
    [[maybe_unused]] void install(T &ft)                                       \
    {                                                                          \
        (void)ft;                                                              \
        members(NO_SLOT, INSTALL_SLOT, NO_SLOT, T)                             \
    }
CMPI_LAYOUT_BROKER(INSTALL)

// getMessage() reads its inserts back with exactly the types CMFmt* pass.
CMPIString *getMessage(const CMPIBroker *mb, const char *id, const char *def,
                       CMPIStatus *rc, CMPICount count, ...)
{
    Names args{show(mb), id, def, show(rc), std::to_string(count)};
    auto add = [&args](auto value) { args.push_back(show(value)); };
    va_list ap;
    va_start(ap, count);
    for (CMPICount i = 0; i < count; ++i) {
        switch (va_arg(ap, int)) {
        case CMPI_sint32: add(va_arg(ap, long)); break;
        case CMPI_uint32: add(va_arg(ap, unsigned long)); break;
        case CMPI_sint64: add(va_arg(ap, long long)); break;
        case CMPI_uint64: add(va_arg(ap, unsigned long long)); break;
        case CMPI_real64: add(va_arg(ap, double)); break;
        case CMPI_boolean: add(va_arg(ap, int)); break;
        case CMPI_chars: add(va_arg(ap, char *)); break;
        case CMPI_string: add(va_arg(ap, CMPIString *)); break;
        default: args.push_back("bad type"); i = count;
        }
    }
    va_end(ap);
    record("getMessage", args);
    return nullptr;
}

CMPIString *theString;
CMPIString *newString(const CMPIBroker *mb, const char *text, CMPIStatus *rc)
{
    record("newString", {show(mb), show(text), show(rc)});
    return theString;
}

template <typename FT> FT recordingTable()
{
    FT ft{};
    install(ft);
    return ft;
}

#define OBJECT(T, name) T##FT name##FT = recordingTable<T##FT>(); T name{nullptr, &name##FT};

class RecordingBroker : public ::testing::Test
{
protected:
    CMPIBrokerFT bft = recordingTable<CMPIBrokerFT>();
    CMPIBrokerEncFT eft = recordingTable<CMPIBrokerEncFT>();
    CMPIBrokerExtFT xft = recordingTable<CMPIBrokerExtFT>();
    CMPIBroker broker{nullptr, &bft, &eft, &xft};
    OBJECT(CMPIContext, ctx) OBJECT(CMPIResult, rslt) OBJECT(CMPIObjectPath, op)
    OBJECT(CMPIObjectPath, src) OBJECT(CMPIInstance, inst) OBJECT(CMPIArgs, args)
    OBJECT(CMPIArray, arr) OBJECT(CMPIString, str) OBJECT(CMPIDateTime, dt)
    OBJECT(CMPIEnumeration, en) OBJECT(CMPISelectExp, sel) OBJECT(CMPISelectCond, cond)
    OBJECT(CMPISubCond, sub) OBJECT(CMPIPredicate, pred)
    macro_objects o{};

    void SetUp() override
    {
        eft.getMessage = getMessage;
        eft.newString = newString;
        theString = &str;
        o.mb = &broker, o.ctx = &ctx, o.rslt = &rslt, o.op = &op, o.src = &src;
        o.inst = &inst, o.args = &args, o.arr = &arr, o.str = &str, o.dt = &dt;
        o.en = &en, o.sel = &sel, o.cond = &cond, o.sub = &sub, o.pred = &pred;
        o.value = 7;
        labels = {{&broker, "mb"}, {&ctx, "ctx"}, {&rslt, "rslt"}, {&op, "op"},
                  {&src, "src"}, {&inst, "inst"}, {&args, "args"}, {&arr, "arr"},
                  {&str, "str"}, {&dt, "dt"}, {&en, "en"}, {&sel, "sel"},
                  {&cond, "cond"}, {&sub, "sub"}, {&pred, "pred"}, {&o.rc, "rc"},
                  {&o.name, "name"}, {&o.lhs, "lhs"}, {&o.rhs, "rhs"},
                  {&o.projection, "projection"}, {&o.type, "type"},
                  {&o.condType, "condType"}, {&o.predOp, "predOp"}, {&o.value, "value"}};
        calls.clear();
    }
};

TEST_F(RecordingBroker, MacrosReachTheirSlotsWithArgumentsInOrder)
{
    const CMPIStatus st = drive_macros(&o);
    EXPECT_EQ(calls, (Names{
        "getPropertyAt(inst,1,name,rc)", "getPropertyCount(inst,rc)",
        "setObjectPath(inst,op)", "setPropertyFilter(inst,p1|p2,k1)",
        "setHostname(op,host)", "getHostname(op,rc)", "setNameSpace(op,ns)",
        "setClassName(op,class)", "getKeyAt(op,2,name,rc)", "getKeyCount(op,rc)",
        "setNameSpaceFromObjectPath(op,src)",
        "setHostAndNameSpaceFromObjectPath(op,src)", "getClassQualifier(op,q,rc)",
        "getPropertyQualifier(op,prop,q,rc)", "getMethodQualifier(op,meth,q,rc)",
        "getParameterQualifier(op,meth,parm,q,rc)", "toString(op,rc)",
        "getSize(arr,rc)", "getSimpleType(arr,rc)", "getElementAt(arr,3,rc)",
        "getArgAt(args,4,name,rc)", "getCharPtr(str,rc)", "getStringFormat(dt,rc)",
        "getBinaryFormat(dt,rc)", "isInterval(dt,rc)", "toArray(en,rc)",
        "returnObjectPath(rslt,op)", "getEntryAt(ctx,5,name,rc)",
        "addEntry(ctx,entry,7,160)", "getString(sel,rc)", "evaluate(sel,inst,rc)",
        "evaluateUsingAccessor(sel,null,value,rc)", "getDOC(sel,rc)",
        "getCOD(sel,rc)", "getCountAndType(cond,condType,rc)",
        "getSubCondAt(cond,6,rc)", "getCount(sub,rc)", "getPredicateAt(sub,7,rc)",
        "getPredicate(sub,pred,rc)", "getData(pred,type,predOp,lhs,rhs)",
        "evaluateUsingAccessor(pred,null,value,rc)", "clone(dt,rc)", "release(dt)",
        "newObjectPath(mb,ns,class,rc)", "newArgs(mb,rc)", "newArray(mb,9,128,rc)",
        "newDateTime(mb,rc)", "newDateTimeFromBinary(mb,8,1,rc)",
        "newSelectExp(mb,query,lang,projection,rc)", "classPathIsA(mb,op,parent,rc)",
        "toString(mb,op,rc)", "isOfType(mb,op,type,rc)", "getType(mb,op,rc)",
        "logMessage(mb,3,id,text,str)", "trace(mb,3,component,text,str)",
        "getMessage(mb,id,default,rc,8,-7,4000000000,-1099511627776,2199023255552,"
        "1.500000,1,chars,str)",
        "execQuery(mb,ctx,op,query,lang,rc)", "modifyInstance(mb,ctx,op,inst,p1|p2)",
        "associators(mb,ctx,op,assoc,result,role,resultRole,p1|p2,rc)",
        "associatorNames(mb,ctx,op,assoc,result,role,resultRole,rc)",
        "references(mb,ctx,op,result,role,p1|p2,rc)",
        "referenceNames(mb,ctx,op,result,role,rc)", "newString(mb,missing,null)"}));

    EXPECT_EQ(o.rc.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(o.rc.msg, &str) << "CMSetStatusWithChars keeps the broker's string";
    EXPECT_EQ(st.rc, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(st.msg, &str);
}

TEST_F(RecordingBroker, BrokerDescriptionAndValueTests)
{
    bft.brokerCapabilities = CMPI_MB_Class_1;
    bft.brokerVersion = 100;
    bft.brokerName = "fake";
    EXPECT_EQ(CBGetClassification(&broker), unsigned(CMPI_MB_Class_1));
    EXPECT_EQ(CBBrokerVersion(&broker), 100u);
    EXPECT_STREQ(CBBrokerName(&broker), "fake");

    CMPIData d{};
    d.type = CMPI_uint32A;
    d.state = CMPI_nullValue | CMPI_keyValue;
    EXPECT_TRUE(CMIsArray(d) && CMIsNullValue(d) && CMIsKeyValue(d));
    d.type = CMPI_uint32;
    d.state = CMPI_goodValue;
    EXPECT_FALSE(CMIsArray(d) || CMIsNullValue(d) || CMIsKeyValue(d));

    // A null object is a null pointer or one whose hdl is null; CMGetCharPtr
    // reads the characters straight from hdl.
    char text[] = "x";
    CMPIString withHdl{text, str.ft};
    const CMPIString *none = nullptr;
    EXPECT_TRUE(CMIsNullObject(none));
    EXPECT_TRUE(CMIsNullObject(&str));
    EXPECT_FALSE(CMIsNullObject(&withHdl));
    EXPECT_EQ(CMGetCharPtr(&withHdl), text);
}

} // namespace
