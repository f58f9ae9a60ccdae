/*
 * Provider code as authors write it, built as C89 (with and without member
 * aliases), C99 and C++ with -Wall -Wextra -Werror.
 *
 * Part one defines every MI kind through the stub macros; each provider
 * function only reports its own name. Part two, drive_macros(), calls the
 * convenience macros our own provider modules do not use, plus those whose
 * arguments are easily swapped, so that the test can see which slot each
 * one reaches and in which order it passes its arguments.
 */

#include "probes.h"

static const CMPIBroker *_broker;

const char *c_provider_last_call;
int c_provider_hook_saw_broker;

/* The arguments are passed on only so that every parameter is used. */
static CMPIStatus hit(const char *name, ...)
{
    CMPIStatus st;
    c_provider_last_call = name;
    st.rc = CMPI_RC_OK;
    st.msg = NULL;
    return st;
}

typedef const CMPIContext Ctx;
typedef const CMPIResult Rslt;
typedef const CMPIObjectPath Path;
typedef const CMPISelectExp Filter;

static CMPIStatus SampleCleanup(CMPIInstanceMI *mi, Ctx *c, CMPIBoolean t)
{ return hit("Cleanup", mi, c, t); }
static CMPIStatus SampleEnumInstanceNames(CMPIInstanceMI *mi, Ctx *c, Rslt *r, Path *p)
{ return hit("EnumInstanceNames", mi, c, r, p); }
static CMPIStatus SampleEnumInstances(CMPIInstanceMI *mi, Ctx *c, Rslt *r, Path *p,
                                      const char **pl)
{ return hit("EnumInstances", mi, c, r, p, pl); }
static CMPIStatus SampleGetInstance(CMPIInstanceMI *mi, Ctx *c, Rslt *r, Path *p,
                                    const char **pl)
{ return hit("GetInstance", mi, c, r, p, pl); }
static CMPIStatus SampleCreateInstance(CMPIInstanceMI *mi, Ctx *c, Rslt *r, Path *p,
                                       const CMPIInstance *i)
{ return hit("CreateInstance", mi, c, r, p, i); }
static CMPIStatus SampleModifyInstance(CMPIInstanceMI *mi, Ctx *c, Rslt *r, Path *p,
                                       const CMPIInstance *i, const char **pl)
{ return hit("ModifyInstance", mi, c, r, p, i, pl); }
static CMPIStatus SampleDeleteInstance(CMPIInstanceMI *mi, Ctx *c, Rslt *r, Path *p)
{ return hit("DeleteInstance", mi, c, r, p); }
static CMPIStatus SampleExecQuery(CMPIInstanceMI *mi, Ctx *c, Rslt *r, Path *p,
                                  const char *query, const char *lang)
{ return hit("ExecQuery", mi, c, r, p, query, lang); }

static CMPIStatus SampleMethodCleanup(CMPIMethodMI *mi, Ctx *c, CMPIBoolean t)
{ return hit("MethodCleanup", mi, c, t); }
static CMPIStatus SampleInvokeMethod(CMPIMethodMI *mi, Ctx *c, Rslt *r, Path *p,
                                     const char *m, const CMPIArgs *in, CMPIArgs *out)
{ return hit("InvokeMethod", mi, c, r, p, m, in, out); }

static CMPIStatus SampleAssociationCleanup(CMPIAssociationMI *mi, Ctx *c, CMPIBoolean t)
{ return hit("AssociationCleanup", mi, c, t); }
static CMPIStatus SampleAssociators(CMPIAssociationMI *mi, Ctx *c, Rslt *r, Path *p,
                                    const char *assoc, const char *result,
                                    const char *role, const char *resultRole,
                                    const char **pl)
{ return hit("Associators", mi, c, r, p, assoc, result, role, resultRole, pl); }
static CMPIStatus SampleAssociatorNames(CMPIAssociationMI *mi, Ctx *c, Rslt *r, Path *p,
                                        const char *assoc, const char *result,
                                        const char *role, const char *resultRole)
{ return hit("AssociatorNames", mi, c, r, p, assoc, result, role, resultRole); }
static CMPIStatus SampleReferences(CMPIAssociationMI *mi, Ctx *c, Rslt *r, Path *p,
                                   const char *result, const char *role,
                                   const char **pl)
{ return hit("References", mi, c, r, p, result, role, pl); }
static CMPIStatus SampleReferenceNames(CMPIAssociationMI *mi, Ctx *c, Rslt *r, Path *p,
                                       const char *result, const char *role)
{ return hit("ReferenceNames", mi, c, r, p, result, role); }

static CMPIStatus SamplePropertyCleanup(CMPIPropertyMI *mi, Ctx *c, CMPIBoolean t)
{ return hit("PropertyCleanup", mi, c, t); }
static CMPIStatus SampleSetProperty(CMPIPropertyMI *mi, Ctx *c, Rslt *r, Path *p,
                                    const char *name, const CMPIData d)
{ return hit("SetProperty", mi, c, r, p, name, d); }
static CMPIStatus SampleGetProperty(CMPIPropertyMI *mi, Ctx *c, Rslt *r, Path *p,
                                    const char *name)
{ return hit("GetProperty", mi, c, r, p, name); }

static CMPIStatus SampleIndicationCleanup(CMPIIndicationMI *mi, Ctx *c, CMPIBoolean t)
{ return hit("IndicationCleanup", mi, c, t); }
static CMPIStatus SampleAuthorizeFilter(CMPIIndicationMI *mi, Ctx *c, Filter *f,
                                        const char *cls, Path *p, const char *owner)
{ return hit("AuthorizeFilter", mi, c, f, cls, p, owner); }
static CMPIStatus SampleMustPoll(CMPIIndicationMI *mi, Ctx *c, Filter *f,
                                 const char *cls, Path *p)
{ return hit("MustPoll", mi, c, f, cls, p); }
static CMPIStatus SampleActivateFilter(CMPIIndicationMI *mi, Ctx *c, Filter *f,
                                       const char *cls, Path *p, CMPIBoolean first)
{ return hit("ActivateFilter", mi, c, f, cls, p, first); }
static CMPIStatus SampleDeActivateFilter(CMPIIndicationMI *mi, Ctx *c, Filter *f,
                                         const char *cls, Path *p, CMPIBoolean last)
{ return hit("DeActivateFilter", mi, c, f, cls, p, last); }
static CMPIStatus SampleEnableIndications(CMPIIndicationMI *mi, Ctx *c)
{ return hit("EnableIndications", mi, c); }
static CMPIStatus SampleDisableIndications(CMPIIndicationMI *mi, Ctx *c)
{ return hit("DisableIndications", mi, c); }

static void note_hook(const CMPIBroker *brkr, Ctx *ctx)
{
    c_provider_hook_saw_broker = brkr == _broker && ctx != NULL;
}

CMInstanceMIStub(Sample, Sample, _broker, CMNoHook);
CMMethodMIStub(Sample, Sample, _broker, CMNoHook);
CMAssociationMIStub(Sample, Sample, _broker, CMNoHook);
CMPropertyMIStub(Sample, Sample, _broker, note_hook(brkr, ctx));
CMIndicationMIStub(Sample, Sample, _broker, CMNoHook);

CMPIStatus drive_macros(struct macro_objects *o)
{
    const char *props[] = { "p1", "p2", NULL };
    const char *keys[] = { "k1", NULL };

    CMGetPropertyAt(o->inst, 1, &o->name, &o->rc);
    CMGetPropertyCount(o->inst, &o->rc);
    CMSetObjectPath(o->inst, o->op);
    CMSetPropertyFilter(o->inst, props, keys);
    CMSetHostname(o->op, "host");
    CMGetHostname(o->op, &o->rc);
    CMSetNameSpace(o->op, "ns");
    CMSetClassName(o->op, "class");
    CMGetKeyAt(o->op, 2, &o->name, &o->rc);
    CMGetKeyCount(o->op, &o->rc);
    CMSetNameSpaceFromObjectPath(o->op, o->src);
    CMSetHostAndNameSpaceFromObjectPath(o->op, o->src);
    CMGetClassQualifier(o->op, "q", &o->rc);
    CMGetPropertyQualifier(o->op, "prop", "q", &o->rc);
    CMGetMethodQualifier(o->op, "meth", "q", &o->rc);
    CMGetParameterQualifier(o->op, "meth", "parm", "q", &o->rc);
    CMObjectPathToString(o->op, &o->rc);
    CMGetArrayCount(o->arr, &o->rc);
    CMGetArrayType(o->arr, &o->rc);
    CMGetArrayElementAt(o->arr, 3, &o->rc);
    CMGetArgAt(o->args, 4, &o->name, &o->rc);
    CMGetCharsPtr(o->str, &o->rc);
    CMGetStringFormat(o->dt, &o->rc);
    CMGetBinaryFormat(o->dt, &o->rc);
    CMIsInterval(o->dt, &o->rc);
    CMToArray(o->en, &o->rc);
    CMReturnObjectPath(o->rslt, o->op);
    CMGetContextEntryAt(o->ctx, 5, &o->name, &o->rc);
    CMAddContextEntry(o->ctx, "entry", &o->value, CMPI_uint32);
    CMGetSelExpString(o->sel, &o->rc);
    CMEvaluateSelExp(o->sel, o->inst, &o->rc);
    CMEvaluateSelExpUsingAccessor(o->sel, NULL, &o->value, &o->rc);
    CMGetDoc(o->sel, &o->rc);
    CMGetCod(o->sel, &o->rc);
    CMGetSubCondCountAndType(o->cond, &o->condType, &o->rc);
    CMGetSubCondAt(o->cond, 6, &o->rc);
    CMGetPredicateCount(o->sub, &o->rc);
    CMGetPredicateAt(o->sub, 7, &o->rc);
    CMGetPredicate(o->sub, "pred", &o->rc);
    CMGetPredicateData(o->pred, &o->type, &o->predOp, &o->lhs, &o->rhs);
    CMEvaluatePredicateUsingAccessor(o->pred, NULL, &o->value, &o->rc);
    CMClone(o->dt, &o->rc);
    CMRelease(o->dt);

    CMNewObjectPath(o->mb, "ns", "class", &o->rc);
    CMNewArgs(o->mb, &o->rc);
    CMNewArray(o->mb, 9, CMPI_uint8, &o->rc);
    CMNewDateTime(o->mb, &o->rc);
    CMNewDateTimeFromBinary(o->mb, 8, 1, &o->rc);
    CMNewSelectExp(o->mb, "query", "lang", &o->projection, &o->rc);
    CMClassPathIsA(o->mb, o->op, "parent", &o->rc);
    CDToString(o->mb, o->op, &o->rc);
    CDIsOfType(o->mb, o->op, "type", &o->rc);
    CDGetType(o->mb, o->op, &o->rc);
    CMLogMessage(o->mb, CMPI_SEV_WARNING, "id", "text", o->str);
    CMTraceMessage(o->mb, CMPI_LEV_VERBOSE, "component", "text", o->str);
    CMGetMessage(o->mb, "id", "default", &o->rc,
                 CMFmtArgs8(CMFmtSint(-(CMPISint32)o->value), CMFmtUint(4000000000u),
                            CMFmtSint64(-((CMPISint64)1 << 40)),
                            CMFmtUint64((CMPIUint64)1 << 41), CMFmtReal(1.5),
                            CMFmtBoolean(1), CMFmtChars("chars"),
                            CMFmtString(o->str)));

    CBExecQuery(o->mb, o->ctx, o->op, "query", "lang", &o->rc);
    CBSetInstance(o->mb, o->ctx, o->op, o->inst, props);
    CBAssociators(o->mb, o->ctx, o->op, "assoc", "result", "role", "resultRole",
                  props, &o->rc);
    CBAssociatorNames(o->mb, o->ctx, o->op, "assoc", "result", "role",
                      "resultRole", &o->rc);
    CBReferences(o->mb, o->ctx, o->op, "result", "role", props, &o->rc);
    CBReferenceNames(o->mb, o->ctx, o->op, "result", "role", &o->rc);

    CMSetStatusWithString(&o->rc, CMPI_RC_ERR_FAILED, o->str);
    CMSetStatusWithChars(o->mb, &o->rc, CMPI_RC_ERR_NOT_FOUND, "missing");
    CMReturnWithString(CMPI_RC_ERR_ACCESS_DENIED, o->str);
}
