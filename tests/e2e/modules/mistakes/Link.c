/* Link_PairProvider serves the association Link_Pair through an association MI
 * alone, as other servers allow; this host never calls association MIs. */
#include "cmpidt.h"
#include "cmpift.h"
#include "cmpimacs.h"

static const CMPIBroker* linkBroker;

static CMPIStatus Link_AssociationCleanup(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                          CMPIBoolean terminating) { CMReturn(CMPI_RC_OK); }

static CMPIStatus Link_Associators(CMPIAssociationMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* op, const char* assocClass, const char* resultClass,
                                   const char* role, const char* resultRole,
                                   const char** properties) { CMReturn(CMPI_RC_OK); }

static CMPIStatus Link_AssociatorNames(CMPIAssociationMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* op, const char* assocClass, const char* resultClass,
                                       const char* role, const char* resultRole) { CMReturn(CMPI_RC_OK); }

static CMPIStatus Link_References(CMPIAssociationMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                  const CMPIObjectPath* op, const char* resultClass, const char* role,
                                  const char** properties) { CMReturn(CMPI_RC_OK); }

static CMPIStatus Link_ReferenceNames(CMPIAssociationMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                      const CMPIObjectPath* op, const char* resultClass,
                                      const char* role) { CMReturn(CMPI_RC_OK); }

CMAssociationMIStub(Link_, Link_PairProvider, linkBroker, CMNoHook)
