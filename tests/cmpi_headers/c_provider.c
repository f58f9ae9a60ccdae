/*
 * A small CMPI provider for the class Sample_Widget, written the way
 * provider authors write them: plain C89, the convenience macros, and the
 * MI stub macros for the exported factories.
 *
 * It is built on its own as C89 and as C99 with -Wall -Wextra -Werror, so
 * any header change that breaks ordinary provider code breaks the build.
 * The C89 build is also linked into cmpi_headers_test and driven through a
 * fake broker (provider_test.cpp), which checks that each macro reaches the
 * right function-table slot with its arguments in the right order.
 *
 * Widgets live in a small static table: key Id (uint32), Name (string).
 */

#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

#include <string.h>

static const CMPIBroker *_broker;

#define WIDGET_CLASS "Sample_Widget"
#define MAX_WIDGETS 8
#define MAX_NAME 32

struct widget
{
    CMPIUint32 id;
    char name[MAX_NAME];
};

static struct widget widgets[MAX_WIDGETS] = { { 1, "alpha" }, { 2, "beta" } };
static int widget_count = 2;
static int indications_enabled = 0;
static int active_filters = 0;

static struct widget *find_widget(CMPIUint32 id)
{
    int i;
    for (i = 0; i < widget_count; i++) {
        if (widgets[i].id == id) {
            return &widgets[i];
        }
    }
    return NULL;
}

/* Names longer than the table allows are cut short. */
static void copy_name(char *dst, const char *src)
{
    size_t n = strlen(src);
    if (n > MAX_NAME - 1) {
        n = MAX_NAME - 1;
    }
    memmove(dst, src, n);
    dst[n] = '\0';
}

/* Path of a widget in the namespace of ref. */
static CMPIObjectPath *widget_path(const CMPIObjectPath *ref,
                                   const struct widget *w, CMPIStatus *rc)
{
    CMPIString *ns = CMGetNameSpace(ref, rc);
    CMPIString *cn = CMGetClassName(ref, rc);
    CMPIObjectPath *op =
        CMNewObjectPath(_broker, CMGetCharPtr(ns), CMGetCharPtr(cn), rc);
    if (CMIsNullObject(op)) {
        return NULL;
    }
    CMAddKey(op, "Id", &w->id, CMPI_uint32);
    return op;
}

static CMPIInstance *widget_instance(const CMPIObjectPath *ref,
                                     const struct widget *w, CMPIStatus *rc)
{
    CMPIObjectPath *op = widget_path(ref, w, rc);
    CMPIInstance *inst;
    CMPIArray *tags;
    CMPIString *tag;
    CMPIDateTime *created;

    if (op == NULL) {
        return NULL;
    }
    inst = CMNewInstance(_broker, op, rc);
    if (CMIsNullObject(inst)) {
        return NULL;
    }
    CMSetProperty(inst, "Id", &w->id, CMPI_uint32);
    CMSetProperty(inst, "Name", w->name, CMPI_chars);

    /* Two tags: the fixed "widget" and the widget's own name. */
    tags = CMNewArray(_broker, 2, CMPI_string, rc);
    tag = CMNewString(_broker, "widget", rc);
    CMSetArrayElementAt(tags, 0, &tag, CMPI_string);
    tag = CMNewString(_broker, w->name, rc);
    CMSetArrayElementAt(tags, 1, &tag, CMPI_string);
    CMSetProperty(inst, "Tags", &tags, CMPI_stringA);

    created = CMNewDateTimeFromChars(_broker, "20240101120000.000000+000", rc);
    CMSetProperty(inst, "Created", &created, CMPI_dateTime);
    return inst;
}

/* Looks up the widget named by the Id key of op. */
static struct widget *widget_from_path(const CMPIObjectPath *op,
                                       CMPIStatus *rc)
{
    CMPIData key = CMGetKey(op, "Id", rc);
    struct widget *w;

    if (CMIsNullValue(key) || key.type != CMPI_uint32) {
        CMSetStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
        return NULL;
    }
    w = find_widget(key.value.uint32);
    if (w == NULL) {
        CMSetStatusWithChars(_broker, rc, CMPI_RC_ERR_NOT_FOUND,
                             "no such widget");
    }
    return w;
}

/* ---------------------------------------------------------------- instance */

static CMPIStatus SampleCleanup(CMPIInstanceMI *mi, const CMPIContext *ctx,
                                CMPIBoolean terminating)
{
    (void)mi;
    (void)ctx;
    if (!terminating) {
        CMReturn(CMPI_RC_DO_NOT_UNLOAD);
    }
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleEnumInstanceNames(CMPIInstanceMI *mi,
                                          const CMPIContext *ctx,
                                          const CMPIResult *rslt,
                                          const CMPIObjectPath *ref)
{
    CMPIStatus rc;
    int i;
    (void)mi;
    (void)ctx;

    for (i = 0; i < widget_count; i++) {
        CMPIObjectPath *op = widget_path(ref, &widgets[i], &rc);
        if (op == NULL) {
            return rc;
        }
        CMReturnObjectPath(rslt, op);
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleEnumInstances(CMPIInstanceMI *mi,
                                      const CMPIContext *ctx,
                                      const CMPIResult *rslt,
                                      const CMPIObjectPath *ref,
                                      const char **properties)
{
    CMPIStatus rc;
    int i;
    (void)mi;
    (void)ctx;
    (void)properties;

    for (i = 0; i < widget_count; i++) {
        CMPIInstance *inst = widget_instance(ref, &widgets[i], &rc);
        if (inst == NULL) {
            return rc;
        }
        CMReturnInstance(rslt, inst);
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleGetInstance(CMPIInstanceMI *mi,
                                    const CMPIContext *ctx,
                                    const CMPIResult *rslt,
                                    const CMPIObjectPath *ref,
                                    const char **properties)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    struct widget *w = widget_from_path(ref, &rc);
    CMPIInstance *inst;
    (void)mi;
    (void)ctx;
    (void)properties;

    if (w == NULL) {
        return rc;
    }
    inst = widget_instance(ref, w, &rc);
    if (inst == NULL) {
        CMReturnWithChars(_broker, CMPI_RC_ERR_FAILED,
                          "cannot build instance");
    }
    CMReturnInstance(rslt, inst);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleCreateInstance(CMPIInstanceMI *mi,
                                       const CMPIContext *ctx,
                                       const CMPIResult *rslt,
                                       const CMPIObjectPath *ref,
                                       const CMPIInstance *inst)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    CMPIData id = CMGetProperty(inst, "Id", &rc);
    CMPIData name = CMGetProperty(inst, "Name", &rc);
    struct widget *w;
    (void)mi;
    (void)ctx;
    (void)ref;

    if (CMIsNullValue(id) || id.type != CMPI_uint32 ||
        CMIsNullValue(name) || name.type != CMPI_string) {
        CMReturnWithChars(_broker, CMPI_RC_ERR_INVALID_PARAMETER,
                          "Id and Name are required");
    }
    if (find_widget(id.value.uint32) != NULL) {
        CMReturn(CMPI_RC_ERR_ALREADY_EXISTS);
    }
    if (widget_count == MAX_WIDGETS) {
        CMReturnWithString(CMPI_RC_ERR_FAILED,
                           CMNewString(_broker, "widget table full", NULL));
    }
    w = &widgets[widget_count++];
    w->id = id.value.uint32;
    copy_name(w->name, CMGetCharPtr(name.value.string));

    CMReturnObjectPath(rslt, CMGetObjectPath(inst, &rc));
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleModifyInstance(CMPIInstanceMI *mi,
                                       const CMPIContext *ctx,
                                       const CMPIResult *rslt,
                                       const CMPIObjectPath *ref,
                                       const CMPIInstance *inst,
                                       const char **properties)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    struct widget *w = widget_from_path(ref, &rc);
    CMPIData name;
    (void)mi;
    (void)ctx;
    (void)properties;

    if (w == NULL) {
        return rc;
    }
    name = CMGetProperty(inst, "Name", &rc);
    if (rc.rc == CMPI_RC_OK && !CMIsNullValue(name)) {
        copy_name(w->name, CMGetCharsPtr(name.value.string, NULL));
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleDeleteInstance(CMPIInstanceMI *mi,
                                       const CMPIContext *ctx,
                                       const CMPIResult *rslt,
                                       const CMPIObjectPath *ref)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    struct widget *w = widget_from_path(ref, &rc);
    (void)mi;
    (void)ctx;

    if (w == NULL) {
        return rc;
    }
    *w = widgets[--widget_count];
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleExecQuery(CMPIInstanceMI *mi, const CMPIContext *ctx,
                                  const CMPIResult *rslt,
                                  const CMPIObjectPath *ref,
                                  const char *query, const char *lang)
{
    (void)mi;
    (void)ctx;
    (void)rslt;
    (void)ref;
    (void)query;
    (void)lang;
    CMReturnWithChars(_broker, CMPI_RC_ERR_NOT_SUPPORTED,
                      "queries are not supported");
}

/* ------------------------------------------------------------------ method */

static CMPIStatus SampleMethodCleanup(CMPIMethodMI *mi, const CMPIContext *ctx,
                                      CMPIBoolean terminating)
{
    (void)mi;
    (void)ctx;
    (void)terminating;
    CMReturn(CMPI_RC_OK);
}

/* Rename(NewName) -> OldName; returns the widget's Id. */
static CMPIStatus rename_widget(const CMPIResult *rslt,
                                const CMPIObjectPath *ref, const CMPIArgs *in,
                                CMPIArgs *out)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    struct widget *w = widget_from_path(ref, &rc);
    CMPIData newName;
    char old[MAX_NAME];

    if (w == NULL) {
        return rc;
    }
    newName = CMGetArg(in, "NewName", &rc);
    if (rc.rc != CMPI_RC_OK || CMIsNullValue(newName) ||
        newName.type != CMPI_string) {
        CMReturnWithChars(_broker, CMPI_RC_ERR_INVALID_PARAMETER,
                          "NewName missing");
    }
    copy_name(old, w->name);
    copy_name(w->name, CMGetCharPtr(newName.value.string));
    CMAddArg(out, "OldName", old, CMPI_chars);
    CMReturnData(rslt, &w->id, CMPI_uint32);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPICount count_and_release(CMPIEnumeration *en)
{
    CMPICount n = 0;
    if (en == NULL) {
        return 0;
    }
    while (CMHasNext(en, NULL)) {
        CMPIData d = CMGetNext(en, NULL);
        if (!CMIsNullValue(d)) {
            n++;
        }
    }
    CMRelease(en);
    return n;
}

/*
 * Census(Weights[]) -> Counts[], Stamp; returns the sum of Weights.
 * Asks the broker about Sample_Gadget, the class widgets are linked to,
 * through every kind of up-call a provider typically makes.
 */
static CMPIStatus census(const CMPIContext *ctx, const CMPIResult *rslt,
                         const CMPIObjectPath *ref, const CMPIArgs *in,
                         CMPIArgs *out)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    const char *props[2];
    CMPIUint32 counts[6];
    CMPIUint32 total = 0;
    CMPIData weights, weight, ping;
    CMPIObjectPath *gadgets, *created;
    CMPIInstance *gadget;
    CMPIArray *countArray;
    CMPIDateTime *stamp;
    CMPICount i;

    props[0] = "Weight";
    props[1] = NULL;

    weights = CMGetArg(in, "Weights", &rc);
    if (rc.rc != CMPI_RC_OK || !CMIsArray(weights) ||
        CMGetArrayType(weights.value.array, NULL) != CMPI_uint32) {
        CMReturnWithChars(_broker, CMPI_RC_ERR_INVALID_PARAMETER,
                          "Weights must be a uint32 array");
    }
    for (i = 0; i < CMGetArrayCount(weights.value.array, NULL); i++) {
        total += CMGetArrayElementAt(weights.value.array, i, NULL).value.uint32;
    }

    gadgets = CMNewObjectPath(_broker,
                              CMGetCharPtr(CMGetNameSpace(ref, NULL)),
                              "Sample_Gadget", &rc);
    counts[0] = count_and_release(
        CBEnumInstanceNames(_broker, ctx, gadgets, &rc));
    counts[1] = count_and_release(
        CBEnumInstances(_broker, ctx, gadgets, props, &rc));
    counts[2] = count_and_release(
        CBAssociators(_broker, ctx, ref, "Sample_Link", "Sample_Gadget",
                      "Owner", "Owned", props, &rc));
    counts[3] = count_and_release(
        CBAssociatorNames(_broker, ctx, ref, "Sample_Link", "Sample_Gadget",
                          "Owner", "Owned", &rc));
    counts[4] = count_and_release(
        CBReferences(_broker, ctx, ref, "Sample_Link", "Owner", props, &rc));
    counts[5] = count_and_release(
        CBReferenceNames(_broker, ctx, ref, "Sample_Link", "Owner", &rc));

    CMAddKey(gadgets, "Serial", "G-1", CMPI_chars);
    gadget = CBGetInstance(_broker, ctx, gadgets, props, &rc);
    weight = CBGetProperty(_broker, ctx, gadgets, "Weight", &rc);
    if (!CMIsNullValue(weight) && weight.value.uint32 != total) {
        CBSetProperty(_broker, ctx, gadgets, "Weight", &total, CMPI_uint32);
    }
    created = CBCreateInstance(_broker, ctx, gadgets, gadget, &rc);
    ping = CBInvokeMethod(_broker, ctx, created, "Ping", in, out, &rc);
    if (rc.rc != CMPI_RC_OK || ping.type != CMPI_boolean ||
        !ping.value.boolean) {
        CMReturnWithChars(_broker, CMPI_RC_ERR_FAILED, "gadget did not answer");
    }

    countArray = CMNewArray(_broker, 6, CMPI_uint32, &rc);
    for (i = 0; i < 6; i++) {
        CMSetArrayElementAt(countArray, i, &counts[i], CMPI_uint32);
    }
    CMAddArg(out, "Counts", &countArray, CMPI_uint32A);
    stamp = CMNewDateTime(_broker, &rc);
    CMAddArg(out, "Stamp", &stamp, CMPI_dateTime);

    CMLogMessage(_broker, CMPI_SEV_INFO, WIDGET_CLASS, "census taken", NULL);
    CMReturnData(rslt, &total, CMPI_uint32);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleInvokeMethod(CMPIMethodMI *mi, const CMPIContext *ctx,
                                     const CMPIResult *rslt,
                                     const CMPIObjectPath *ref,
                                     const char *method, const CMPIArgs *in,
                                     CMPIArgs *out)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    CMPIObjectPath *copy;
    const char *cls;
    (void)mi;

    /* Work on a private copy of the path; it must be released again. */
    copy = CMClone(ref, &rc);
    if (CMIsNullObject(copy)) {
        return rc;
    }
    cls = CMGetCharPtr(CMGetClassName(copy, NULL));
    if (strcmp(cls, WIDGET_CLASS) != 0) {
        CMRelease(copy);
        CMReturn(CMPI_RC_ERR_INVALID_CLASS);
    }
    if (strcmp(method, "Rename") == 0) {
        rc = rename_widget(rslt, copy, in, out);
    } else if (strcmp(method, "Census") == 0) {
        rc = census(ctx, rslt, copy, in, out);
    } else {
        CMSetStatusWithChars(_broker, &rc, CMPI_RC_ERR_METHOD_NOT_FOUND,
                             method);
    }
    CMRelease(copy);
    return rc;
}

/* ------------------------------------------------------------- association */

/* Every widget is associated with every other one (Sample_WidgetPeer). */

static CMPIStatus SampleAssociationCleanup(CMPIAssociationMI *mi,
                                           const CMPIContext *ctx,
                                           CMPIBoolean terminating)
{
    (void)mi;
    (void)ctx;
    (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleAssociators(CMPIAssociationMI *mi,
                                    const CMPIContext *ctx,
                                    const CMPIResult *rslt,
                                    const CMPIObjectPath *op,
                                    const char *asscClass,
                                    const char *resultClass,
                                    const char *role, const char *resultRole,
                                    const char **properties)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    struct widget *self = widget_from_path(op, &rc);
    int i;
    (void)mi;
    (void)ctx;
    (void)asscClass;
    (void)role;
    (void)resultRole;
    (void)properties;

    if (self == NULL) {
        return rc;
    }
    if (resultClass == NULL || strcmp(resultClass, WIDGET_CLASS) == 0) {
        for (i = 0; i < widget_count; i++) {
            if (&widgets[i] != self) {
                CMReturnInstance(rslt, widget_instance(op, &widgets[i], &rc));
            }
        }
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleAssociatorNames(CMPIAssociationMI *mi,
                                        const CMPIContext *ctx,
                                        const CMPIResult *rslt,
                                        const CMPIObjectPath *op,
                                        const char *assocClass,
                                        const char *resultClass,
                                        const char *role,
                                        const char *resultRole)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    struct widget *self = widget_from_path(op, &rc);
    int i;
    (void)mi;
    (void)ctx;
    (void)assocClass;
    (void)role;
    (void)resultRole;

    if (self == NULL) {
        return rc;
    }
    if (resultClass == NULL || strcmp(resultClass, WIDGET_CLASS) == 0) {
        for (i = 0; i < widget_count; i++) {
            if (&widgets[i] != self) {
                CMReturnObjectPath(rslt, widget_path(op, &widgets[i], &rc));
            }
        }
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleReferences(CMPIAssociationMI *mi,
                                   const CMPIContext *ctx,
                                   const CMPIResult *rslt,
                                   const CMPIObjectPath *op,
                                   const char *resultClass, const char *role,
                                   const char **properties)
{
    (void)mi;
    (void)ctx;
    (void)rslt;
    (void)op;
    (void)resultClass;
    (void)role;
    (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus SampleReferenceNames(CMPIAssociationMI *mi,
                                       const CMPIContext *ctx,
                                       const CMPIResult *rslt,
                                       const CMPIObjectPath *op,
                                       const char *resultClass,
                                       const char *role)
{
    (void)mi;
    (void)ctx;
    (void)rslt;
    (void)op;
    (void)resultClass;
    (void)role;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

/* -------------------------------------------------------------- indication */

static CMPIStatus SampleIndicationCleanup(CMPIIndicationMI *mi,
                                          const CMPIContext *ctx,
                                          CMPIBoolean terminating)
{
    (void)mi;
    (void)ctx;
    (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleAuthorizeFilter(CMPIIndicationMI *mi,
                                        const CMPIContext *ctx,
                                        const CMPISelectExp *filter,
                                        const char *className,
                                        const CMPIObjectPath *op,
                                        const char *owner)
{
    (void)mi;
    (void)ctx;
    (void)filter;
    (void)op;
    (void)owner;
    if (strcmp(className, "Sample_WidgetAlert") != 0) {
        CMReturn(CMPI_RC_ERR_INVALID_CLASS);
    }
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleMustPoll(CMPIIndicationMI *mi, const CMPIContext *ctx,
                                 const CMPISelectExp *filter,
                                 const char *className,
                                 const CMPIObjectPath *classPath)
{
    (void)mi;
    (void)ctx;
    (void)filter;
    (void)className;
    (void)classPath;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus SampleActivateFilter(CMPIIndicationMI *mi,
                                       const CMPIContext *ctx,
                                       const CMPISelectExp *filter,
                                       const char *className,
                                       const CMPIObjectPath *classPath,
                                       CMPIBoolean firstActivation)
{
    (void)mi;
    (void)ctx;
    (void)filter;
    (void)className;
    (void)classPath;
    (void)firstActivation;
    active_filters++;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus SampleDeActivateFilter(CMPIIndicationMI *mi,
                                         const CMPIContext *ctx,
                                         const CMPISelectExp *filter,
                                         const char *className,
                                         const CMPIObjectPath *classPath,
                                         CMPIBoolean lastActivation)
{
    (void)mi;
    (void)ctx;
    (void)filter;
    (void)className;
    (void)classPath;
    (void)lastActivation;
    if (active_filters == 0) {
        CMReturn(CMPI_RC_ERR_FAILED);
    }
    active_filters--;
    CMReturn(CMPI_RC_OK);
}

/* Announces the current widget count as soon as the broker is ready. */
static CMPIStatus SampleEnableIndications(CMPIIndicationMI *mi,
                                          const CMPIContext *ctx)
{
    CMPIStatus rc = { CMPI_RC_OK, NULL };
    CMPIData ns = CMGetContextEntry(ctx, CMPIInitNameSpace, &rc);
    CMPIObjectPath *op;
    CMPIInstance *alert;
    CMPIUint32 count = (CMPIUint32)widget_count;
    (void)mi;

    if (rc.rc != CMPI_RC_OK || ns.type != CMPI_string) {
        return rc;
    }
    indications_enabled = 1;
    op = CMNewObjectPath(_broker, CMGetCharPtr(ns.value.string),
                         "Sample_WidgetAlert", &rc);
    alert = CMNewInstance(_broker, op, &rc);
    CMSetProperty(alert, "WidgetCount", &count, CMPI_uint32);
    return CBDeliverIndication(_broker, ctx, CMGetCharPtr(ns.value.string),
                               alert);
}

static CMPIStatus SampleDisableIndications(CMPIIndicationMI *mi,
                                           const CMPIContext *ctx)
{
    (void)mi;
    (void)ctx;
    indications_enabled = 0;
    CMReturn(CMPI_RC_OK);
}

/* --------------------------------------------------------------- factories */

CMInstanceMIStub(Sample, Sample, _broker, CMNoHook);

CMMethodMIStub(Sample, Sample, _broker, CMNoHook);

CMAssociationMIStub(Sample, Sample, _broker, CMNoHook);

CMIndicationMIStub(Sample, Sample, _broker, CMNoHook);
