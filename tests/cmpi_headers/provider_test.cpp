// Drives the sample providers (c_provider.c built as C89, cxx_provider.cpp)
// through a fake broker. What is checked is the convenience macros of
// cmpimacs.h as a provider experiences them: the MI stubs build correct
// tables and factories, every CM/CB macro reaches the intended slot, and
// arguments arrive in the intended order (the fake broker logs them).

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

#include "fake_broker.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

extern "C" {
CMPIInstanceMI *Sample_Create_InstanceMI(const CMPIBroker *,
                                         const CMPIContext *, CMPIStatus *);
CMPIMethodMI *Sample_Create_MethodMI(const CMPIBroker *, const CMPIContext *,
                                     CMPIStatus *);
CMPIAssociationMI *Sample_Create_AssociationMI(const CMPIBroker *,
                                               const CMPIContext *,
                                               CMPIStatus *);
CMPIIndicationMI *Sample_Create_IndicationMI(const CMPIBroker *,
                                             const CMPIContext *,
                                             CMPIStatus *);
CMPIInstanceMI *CxxSample_Create_InstanceMI(const CMPIBroker *,
                                            const CMPIContext *, CMPIStatus *);
CMPIPropertyMI *CxxSample_Create_PropertyMI(const CMPIBroker *,
                                            const CMPIContext *, CMPIStatus *);
extern int cxxSampleHookCalls;
}

namespace {

using fake::FakeBroker;
using fake::FResult;

const char *const NS = "root/sample";

class SampleProvider : public ::testing::Test
{
protected:
    FakeBroker fb;
    CMPIContext *ctx = fb.context(NS);

    CMPIObjectPath *widgetPath(CMPIUint32 id)
    {
        CMPIObjectPath *op = fb.path(NS, "Sample_Widget");
        CMPIValue v;
        v.uint32 = id;
        op->ft->addKey(op, "Id", &v, CMPI_uint32);
        return op;
    }

    CMPIInstanceMI *instanceMI()
    {
        CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};
        CMPIInstanceMI *mi = Sample_Create_InstanceMI(fb.broker(), ctx, &rc);
        EXPECT_NE(mi, nullptr);
        return mi;
    }

    CMPIMethodMI *methodMI()
    {
        CMPIMethodMI *mi = Sample_Create_MethodMI(fb.broker(), ctx, nullptr);
        EXPECT_NE(mi, nullptr);
        return mi;
    }

    static std::string str(const CMPIData &d)
    {
        EXPECT_EQ(d.type, CMPI_string);
        return d.type == CMPI_string ? FakeBroker::text(d.value.string) : "";
    }

    static std::string msg(const CMPIStatus &st)
    {
        return st.msg == nullptr ? "" : FakeBroker::text(st.msg);
    }

    static CMPIData prop(const CMPIInstance *inst, const char *name)
    {
        const CMPIData *d = fake::find(fake::asInstance(inst)->props, name);
        EXPECT_NE(d, nullptr) << "no property " << name;
        if (d == nullptr) {
            CMPIData none{};
            return none;
        }
        return *d;
    }

    static CMPIData arg(const CMPIArgs *args, const char *name)
    {
        const CMPIData *d = fake::find(fake::asArgs(args)->args, name);
        EXPECT_NE(d, nullptr) << "no argument " << name;
        if (d == nullptr) {
            CMPIData none{};
            return none;
        }
        return *d;
    }

    std::vector<std::string> renderedPaths(const FResult *r)
    {
        std::vector<std::string> out;
        for (const CMPIData &d : r->items) {
            EXPECT_EQ(d.type, CMPI_ref);
            out.push_back(FakeBroker::render(d.value.ref));
        }
        return out;
    }
};

// ----------------------------------------------------------------- stubs

TEST_F(SampleProvider, StubFactoriesBuildCompleteTables)
{
    CMPIStatus rc = {CMPI_RC_ERR_FAILED, nullptr};

    CMPIInstanceMI *imi = Sample_Create_InstanceMI(fb.broker(), ctx, &rc);
    ASSERT_NE(imi, nullptr);
    EXPECT_EQ(imi->hdl, nullptr);
    EXPECT_EQ(imi->ft->ftVersion, CMPICurrentVersion);
    EXPECT_EQ(imi->ft->miVersion, CMPICurrentVersion);
    EXPECT_STREQ(imi->ft->miName, "instanceSample");
    EXPECT_NE(imi->ft->cleanup, nullptr);
    EXPECT_NE(imi->ft->enumerateInstanceNames, nullptr);
    EXPECT_NE(imi->ft->enumerateInstances, nullptr);
    EXPECT_NE(imi->ft->getInstance, nullptr);
    EXPECT_NE(imi->ft->createInstance, nullptr);
    EXPECT_NE(imi->ft->modifyInstance, nullptr);
    EXPECT_NE(imi->ft->deleteInstance, nullptr);
    EXPECT_NE(imi->ft->execQuery, nullptr);
    EXPECT_EQ(Sample_Create_InstanceMI(fb.broker(), ctx, &rc), imi)
        << "the stub hands out one static MI record";

    CMPIMethodMI *mmi = Sample_Create_MethodMI(fb.broker(), ctx, &rc);
    ASSERT_NE(mmi, nullptr);
    EXPECT_STREQ(mmi->ft->miName, "methodSample");
    EXPECT_EQ(mmi->ft->miVersion, CMPICurrentVersion);
    EXPECT_NE(mmi->ft->invokeMethod, nullptr);

    CMPIAssociationMI *ami = Sample_Create_AssociationMI(fb.broker(), ctx, &rc);
    ASSERT_NE(ami, nullptr);
    EXPECT_STREQ(ami->ft->miName, "associationSample");
    EXPECT_NE(ami->ft->referenceNames, nullptr);

    CMPIIndicationMI *nmi = Sample_Create_IndicationMI(fb.broker(), ctx, &rc);
    ASSERT_NE(nmi, nullptr);
    EXPECT_STREQ(nmi->ft->miName, "IndicationSample");
    EXPECT_NE(nmi->ft->enableIndications, nullptr);
    EXPECT_NE(nmi->ft->disableIndications, nullptr);
}

TEST_F(SampleProvider, CleanupReachesTheProviderFunction)
{
    CMPIInstanceMI *mi = instanceMI();
    EXPECT_EQ(mi->ft->cleanup(mi, ctx, 0).rc, CMPI_RC_DO_NOT_UNLOAD);
    EXPECT_EQ(mi->ft->cleanup(mi, ctx, 1).rc, CMPI_RC_OK);
}

// -------------------------------------------------------------- instances

TEST_F(SampleProvider, EnumerateInstanceNames)
{
    CMPIInstanceMI *mi = instanceMI();
    FResult *r = fb.result();
    CMPIStatus st = mi->ft->enumerateInstanceNames(
        mi, ctx, &r->cmpi, fb.path(NS, "Sample_Widget"));
    EXPECT_EQ(st.rc, CMPI_RC_OK);
    EXPECT_EQ(st.msg, nullptr);
    EXPECT_EQ(renderedPaths(r),
              (std::vector<std::string>{"root/sample:Sample_Widget.Id=1",
                                        "root/sample:Sample_Widget.Id=2"}));
    EXPECT_EQ(r->doneCalls, 1);
}

TEST_F(SampleProvider, EnumerateInstancesThroughTheOlderSlotName)
{
    CMPIInstanceMI *mi = instanceMI();
    FResult *r = fb.result();
    CMPIStatus st = mi->ft->enumInstances(mi, ctx, &r->cmpi,
                                          fb.path(NS, "Sample_Widget"),
                                          nullptr);
    ASSERT_EQ(st.rc, CMPI_RC_OK);
    ASSERT_EQ(r->items.size(), 2u);
    EXPECT_EQ(r->doneCalls, 1);

    const CMPIInstance *first = r->items[0].value.inst;
    EXPECT_EQ(r->items[0].type, CMPI_instance);
    EXPECT_EQ(FakeBroker::render(&fake::asInstance(first)->path->cmpi),
              "root/sample:Sample_Widget.Id=1");
    EXPECT_EQ(prop(first, "Id").type, CMPI_uint32);
    EXPECT_EQ(prop(first, "Id").value.uint32, 1u);
    EXPECT_EQ(str(prop(first, "Name")), "alpha");

    CMPIData tags = prop(first, "Tags");
    ASSERT_EQ(tags.type, CMPI_stringA);
    fake::FArray *arr = fake::asArray(tags.value.array);
    EXPECT_EQ(arr->type, CMPI_string);
    ASSERT_EQ(arr->elements.size(), 2u);
    EXPECT_EQ(str(arr->elements[0]), "widget");
    EXPECT_EQ(str(arr->elements[1]), "alpha");

    CMPIData created = prop(first, "Created");
    ASSERT_EQ(created.type, CMPI_dateTime);
    EXPECT_EQ(fake::asDateTime(created.value.dateTime)->text,
              "20240101120000.000000+000");

    EXPECT_EQ(str(prop(r->items[1].value.inst, "Name")), "beta");
}

TEST_F(SampleProvider, GetInstanceFoundAndMissing)
{
    CMPIInstanceMI *mi = instanceMI();

    FResult *r = fb.result();
    CMPIStatus st = mi->ft->getInstance(mi, ctx, &r->cmpi, widgetPath(2),
                                        nullptr);
    ASSERT_EQ(st.rc, CMPI_RC_OK);
    ASSERT_EQ(r->items.size(), 1u);
    EXPECT_EQ(str(prop(r->items[0].value.inst, "Name")), "beta");

    FResult *none = fb.result();
    st = mi->ft->getInstance(mi, ctx, &none->cmpi, widgetPath(9), nullptr);
    EXPECT_EQ(st.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(msg(st), "no such widget");
    EXPECT_TRUE(none->items.empty());

    FResult *bad = fb.result();
    st = mi->ft->getInstance(mi, ctx, &bad->cmpi, fb.path(NS, "Sample_Widget"),
                             nullptr);
    EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(st.msg, nullptr);
}

TEST_F(SampleProvider, CreateDuplicateAndDelete)
{
    CMPIInstanceMI *mi = instanceMI();
    CMPIInstance *inst = fb.instance(widgetPath(3));
    CMPIValue id;
    id.uint32 = 3;
    inst->ft->setProperty(inst, "Id", &id, CMPI_uint32);
    inst->ft->setProperty(inst, "Name",
                          reinterpret_cast<const CMPIValue *>("gamma"),
                          CMPI_chars);

    FResult *r = fb.result();
    CMPIStatus st = mi->ft->createInstance(mi, ctx, &r->cmpi, widgetPath(3),
                                           inst);
    ASSERT_EQ(st.rc, CMPI_RC_OK);
    EXPECT_EQ(renderedPaths(r),
              (std::vector<std::string>{"root/sample:Sample_Widget.Id=3"}));

    FResult *again = fb.result();
    st = mi->ft->createInstance(mi, ctx, &again->cmpi, widgetPath(3), inst);
    EXPECT_EQ(st.rc, CMPI_RC_ERR_ALREADY_EXISTS);
    EXPECT_EQ(st.msg, nullptr);

    FResult *got = fb.result();
    ASSERT_EQ(mi->ft->getInstance(mi, ctx, &got->cmpi, widgetPath(3), nullptr).rc,
              CMPI_RC_OK);
    EXPECT_EQ(str(prop(got->items.at(0).value.inst, "Name")), "gamma");

    FResult *del = fb.result();
    EXPECT_EQ(mi->ft->deleteInstance(mi, ctx, &del->cmpi, widgetPath(3)).rc,
              CMPI_RC_OK);
    FResult *gone = fb.result();
    EXPECT_EQ(mi->ft->getInstance(mi, ctx, &gone->cmpi, widgetPath(3), nullptr).rc,
              CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(SampleProvider, CreateWithoutNameReportsWhy)
{
    CMPIInstanceMI *mi = instanceMI();
    CMPIInstance *inst = fb.instance(widgetPath(4));
    CMPIValue id;
    id.uint32 = 4;
    inst->ft->setProperty(inst, "Id", &id, CMPI_uint32);
    FResult *r = fb.result();
    CMPIStatus st = mi->ft->createInstance(mi, ctx, &r->cmpi, widgetPath(4),
                                           inst);
    EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(msg(st), "Id and Name are required");
}

TEST_F(SampleProvider, ModifyInstanceUsesTheFunctionTable)
{
    CMPIInstanceMI *mi = instanceMI();
    CMPIInstance *inst = fb.instance(widgetPath(1));
    inst->ft->setProperty(inst, "Name",
                          reinterpret_cast<const CMPIValue *>("renamed"),
                          CMPI_chars);
    FResult *r = fb.result();
    ASSERT_EQ(mi->ft->modifyInstance(mi, ctx, &r->cmpi, widgetPath(1), inst,
                                     nullptr).rc,
              CMPI_RC_OK);
    FResult *got = fb.result();
    mi->ft->getInstance(mi, ctx, &got->cmpi, widgetPath(1), nullptr);
    EXPECT_EQ(str(prop(got->items.at(0).value.inst, "Name")), "renamed");

    // Put the table back the way the other tests expect it.
    inst->ft->setProperty(inst, "Name",
                          reinterpret_cast<const CMPIValue *>("alpha"),
                          CMPI_chars);
    mi->ft->modifyInstance(mi, ctx, &r->cmpi, widgetPath(1), inst, nullptr);
}

TEST_F(SampleProvider, ExecQueryIsRefusedWithAMessage)
{
    CMPIInstanceMI *mi = instanceMI();
    FResult *r = fb.result();
    CMPIStatus st = mi->ft->execQuery(mi, ctx, &r->cmpi,
                                      fb.path(NS, "Sample_Widget"),
                                      "SELECT * FROM Sample_Widget", "WQL");
    EXPECT_EQ(st.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(msg(st), "queries are not supported");
}

// ---------------------------------------------------------------- methods

TEST_F(SampleProvider, RenameReturnsOldNameAndReleasesItsClone)
{
    CMPIMethodMI *mi = methodMI();
    CMPIObjectPath *target = widgetPath(2);
    CMPIArgs *in = fb.args();
    CMPIArgs *out = fb.args();
    CMPIString *newName = fb.string("delta");
    in->ft->addArg(in, "NewName", reinterpret_cast<CMPIValue *>(&newName),
                   CMPI_string);

    std::size_t pathsBefore = fb.paths.size();
    FResult *r = fb.result();
    CMPIStatus st = mi->ft->invokeMethod(mi, ctx, &r->cmpi, target, "Rename",
                                         in, out);
    ASSERT_EQ(st.rc, CMPI_RC_OK) << msg(st);
    ASSERT_EQ(r->items.size(), 1u);
    EXPECT_EQ(r->items[0].type, CMPI_uint32);
    EXPECT_EQ(r->items[0].value.uint32, 2u);
    EXPECT_EQ(r->doneCalls, 1);
    EXPECT_EQ(str(arg(out, "OldName")), "beta");

    // The provider worked on CMClone(target) and CMRelease()d it.
    ASSERT_GT(fb.paths.size(), pathsBefore);
    EXPECT_EQ(fb.paths[pathsBefore].releases, 1);
    EXPECT_EQ(fake::asPath(target)->releases, 0);

    CMPIString *back = fb.string("beta");
    CMPIArgs *in2 = fb.args();
    in2->ft->addArg(in2, "NewName", reinterpret_cast<CMPIValue *>(&back),
                    CMPI_string);
    st = mi->ft->invokeMethod(mi, ctx, &fb.result()->cmpi, target, "Rename",
                              in2, fb.args());
    EXPECT_EQ(st.rc, CMPI_RC_OK);
}

TEST_F(SampleProvider, CensusReachesEveryBrokerServiceInOrder)
{
    CMPIMethodMI *mi = methodMI();
    CMPIArray *weights = fb.array(CMPI_uint32, 2);
    CMPIValue w;
    w.uint32 = 3;
    weights->ft->setElementAt(weights, 0, &w, CMPI_uint32);
    w.uint32 = 4;
    weights->ft->setElementAt(weights, 1, &w, CMPI_uint32);
    CMPIArgs *in = fb.args();
    in->ft->addArg(in, "Weights", reinterpret_cast<CMPIValue *>(&weights),
                   CMPI_uint32A);
    CMPIArgs *out = fb.args();

    FResult *r = fb.result();
    CMPIStatus st = mi->ft->invokeMethod(mi, ctx, &r->cmpi, widgetPath(1),
                                         "Census", in, out);
    ASSERT_EQ(st.rc, CMPI_RC_OK) << msg(st);

    const std::string gadgets = "root/sample:Sample_Gadget";
    const std::string widget = "root/sample:Sample_Widget.Id=1";
    const std::string gadget1 = gadgets + ".Serial=\"G-1\"";
    EXPECT_EQ(fb.calls,
              (std::vector<std::string>{
                  "enumerateInstanceNames " + gadgets,
                  "enumerateInstances " + gadgets + " props=Weight",
                  "associators " + widget +
                      " assocClass=Sample_Link resultClass=Sample_Gadget"
                      " role=Owner resultRole=Owned props=Weight",
                  "associatorNames " + widget +
                      " assocClass=Sample_Link resultClass=Sample_Gadget"
                      " role=Owner resultRole=Owned",
                  "references " + widget +
                      " resultClass=Sample_Link role=Owner props=Weight",
                  "referenceNames " + widget +
                      " resultClass=Sample_Link role=Owner",
                  "getInstance " + gadget1 + " props=Weight",
                  "getProperty " + gadget1 + " Weight",
                  "setProperty " + gadget1 + " Weight type=160 value=7",
                  "createInstance " + gadget1 + " from " + gadget1,
                  "invokeMethod " + gadget1 + " Ping in=1 out=given",
                  "newDateTime",
                  "logMessage 2 Sample_Widget: census taken",
              }));

    // Each up-call returned an enumeration of a different length.
    CMPIData counts = arg(out, "Counts");
    ASSERT_EQ(counts.type, CMPI_uint32A);
    fake::FArray *arr = fake::asArray(counts.value.array);
    ASSERT_EQ(arr->elements.size(), 6u);
    for (CMPIUint32 i = 0; i < 6; ++i) {
        EXPECT_EQ(arr->elements[i].type, CMPI_uint32);
        EXPECT_EQ(arr->elements[i].value.uint32, i + 1) << "count " << i;
    }
    // And every enumeration was released by the provider.
    for (const fake::FEnumeration &e : fb.enumerations) {
        EXPECT_EQ(e.releases, 1);
    }

    CMPIData stamp = arg(out, "Stamp");
    ASSERT_EQ(stamp.type, CMPI_dateTime);
    EXPECT_EQ(fake::asDateTime(stamp.value.dateTime)->text,
              "20240601000000.000000+000");

    ASSERT_EQ(r->items.size(), 1u);
    EXPECT_EQ(r->items[0].type, CMPI_uint32);
    EXPECT_EQ(r->items[0].value.uint32, 7u);
}

TEST_F(SampleProvider, CensusRejectsScalarWeights)
{
    CMPIMethodMI *mi = methodMI();
    CMPIArgs *in = fb.args();
    CMPIValue w;
    w.uint32 = 3;
    in->ft->addArg(in, "Weights", &w, CMPI_uint32);
    CMPIStatus st = mi->ft->invokeMethod(mi, ctx, &fb.result()->cmpi,
                                         widgetPath(1), "Census", in,
                                         fb.args());
    EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(msg(st), "Weights must be a uint32 array");
    EXPECT_TRUE(fb.calls.empty());
}

TEST_F(SampleProvider, UnknownMethodAndWrongClass)
{
    CMPIMethodMI *mi = methodMI();
    CMPIStatus st = mi->ft->invokeMethod(mi, ctx, &fb.result()->cmpi,
                                         widgetPath(1), "Explode", fb.args(),
                                         fb.args());
    EXPECT_EQ(st.rc, CMPI_RC_ERR_METHOD_NOT_FOUND);
    EXPECT_EQ(msg(st), "Explode");

    st = mi->ft->invokeMethod(mi, ctx, &fb.result()->cmpi,
                              fb.path(NS, "Sample_Gadget"), "Rename",
                              fb.args(), fb.args());
    EXPECT_EQ(st.rc, CMPI_RC_ERR_INVALID_CLASS);
}

// ----------------------------------------------------------- associations

TEST_F(SampleProvider, AssociatorsOfAWidgetAreTheOtherWidgets)
{
    CMPIStatus rc;
    CMPIAssociationMI *mi = Sample_Create_AssociationMI(fb.broker(), ctx, &rc);
    ASSERT_NE(mi, nullptr);

    FResult *names = fb.result();
    CMPIStatus st = mi->ft->associatorNames(mi, ctx, &names->cmpi,
                                            widgetPath(1), "Sample_WidgetPeer",
                                            "Sample_Widget", nullptr, nullptr);
    ASSERT_EQ(st.rc, CMPI_RC_OK);
    EXPECT_EQ(renderedPaths(names),
              (std::vector<std::string>{"root/sample:Sample_Widget.Id=2"}));

    FResult *insts = fb.result();
    st = mi->ft->associators(mi, ctx, &insts->cmpi, widgetPath(2), nullptr,
                             nullptr, nullptr, nullptr, nullptr);
    ASSERT_EQ(st.rc, CMPI_RC_OK);
    ASSERT_EQ(insts->items.size(), 1u);
    EXPECT_EQ(str(prop(insts->items[0].value.inst, "Name")), "alpha");

    FResult *other = fb.result();
    st = mi->ft->associatorNames(mi, ctx, &other->cmpi, widgetPath(1), nullptr,
                                 "Sample_Gadget", nullptr, nullptr);
    EXPECT_EQ(st.rc, CMPI_RC_OK);
    EXPECT_TRUE(other->items.empty());

    EXPECT_EQ(mi->ft->references(mi, ctx, &fb.result()->cmpi, widgetPath(1),
                                 nullptr, nullptr, nullptr).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(mi->ft->referenceNames(mi, ctx, &fb.result()->cmpi,
                                     widgetPath(1), nullptr, nullptr).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
}

// ------------------------------------------------------------ indications

TEST_F(SampleProvider, IndicationLifecycle)
{
    CMPIStatus rc;
    CMPIIndicationMI *mi = Sample_Create_IndicationMI(fb.broker(), ctx, &rc);
    ASSERT_NE(mi, nullptr);
    CMPIObjectPath *alerts = fb.path(NS, "Sample_WidgetAlert");

    EXPECT_EQ(mi->ft->authorizeFilter(mi, ctx, nullptr, "Sample_WidgetAlert",
                                      alerts, "owner").rc,
              CMPI_RC_OK);
    EXPECT_EQ(mi->ft->authorizeFilter(mi, ctx, nullptr, "Sample_Other", alerts,
                                      "owner").rc,
              CMPI_RC_ERR_INVALID_CLASS);
    EXPECT_EQ(mi->ft->mustPoll(mi, ctx, nullptr, "Sample_WidgetAlert",
                               alerts).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);

    EXPECT_EQ(mi->ft->deActivateFilter(mi, ctx, nullptr, "Sample_WidgetAlert",
                                       alerts, 1).rc,
              CMPI_RC_ERR_FAILED)
        << "nothing active yet";
    EXPECT_EQ(mi->ft->activateFilter(mi, ctx, nullptr, "Sample_WidgetAlert",
                                     alerts, 1).rc,
              CMPI_RC_OK);
    EXPECT_EQ(mi->ft->deActivateFilter(mi, ctx, nullptr, "Sample_WidgetAlert",
                                       alerts, 1).rc,
              CMPI_RC_OK);

    // enableIndications reads CMPIInitNameSpace from the context and
    // delivers one alert there.
    EXPECT_EQ(mi->ft->enableIndications(mi, ctx).rc, CMPI_RC_OK);
    ASSERT_EQ(fb.indications.size(), 1u);
    EXPECT_EQ(fb.calls, (std::vector<std::string>{
                            "deliverIndication root/sample "
                            "root/sample:Sample_WidgetAlert"}));
    CMPIData count = prop(fb.indications[0], "WidgetCount");
    EXPECT_EQ(count.type, CMPI_uint32);
    EXPECT_EQ(count.value.uint32, 2u);

    EXPECT_EQ(mi->ft->disableIndications(mi, ctx).rc, CMPI_RC_OK);
}

// -------------------------------------------------------- C++ stub builds

TEST_F(SampleProvider, CxxStubsWireTheSameSlots)
{
    CMPIStatus rc;
    CMPIInstanceMI *mi = CxxSample_Create_InstanceMI(fb.broker(), ctx, &rc);
    ASSERT_NE(mi, nullptr);
    EXPECT_STREQ(mi->ft->miName, "instanceCxxSample");

    FResult *r = fb.result();
    EXPECT_EQ(mi->ft->enumInstanceNames(mi, ctx, &r->cmpi,
                                        fb.path(NS, "Cxx_Thing")).rc,
              CMPI_RC_OK);
    EXPECT_EQ(renderedPaths(r),
              (std::vector<std::string>{"root/sample:Cxx_Thing.Name=\"only\""}));
    EXPECT_EQ(mi->ft->enumerateInstances(mi, ctx, &r->cmpi,
                                         fb.path(NS, "Cxx_Thing"), nullptr).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);

    // The hook statement runs after the broker has been stored and sees the
    // factory's own parameters.
    const int hookCallsBefore = cxxSampleHookCalls;
    CMPIPropertyMI *pmi = CxxSample_Create_PropertyMI(fb.broker(), ctx, &rc);
    ASSERT_NE(pmi, nullptr);
    EXPECT_EQ(cxxSampleHookCalls, hookCallsBefore + 1);
    EXPECT_STREQ(pmi->ft->miName, "propertyCxxSample");
    FResult *pr = fb.result();
    EXPECT_EQ(pmi->ft->getProperty(pmi, ctx, &pr->cmpi,
                                   fb.path(NS, "Cxx_Thing"), "Answer").rc,
              CMPI_RC_OK);
    ASSERT_EQ(pr->items.size(), 1u);
    EXPECT_EQ(pr->items[0].type, CMPI_sint32);
    EXPECT_EQ(pr->items[0].value.sint32, 42);
}

} // namespace
