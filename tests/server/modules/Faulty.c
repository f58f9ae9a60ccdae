/* Faulty_Provider: the misbehaving provider the server's tests need. By the
 * class asked for:
 *   Faulty_Many   FAULTY_COUNT instances (default 3000): an answer larger
 *                 than one block of the worker, so that it is streamed;
 *   Faulty_Late   as many, then a failure: an error found after streaming began;
 *   Faulty_Crash  a segmentation fault;
 *   Faulty_Hang   no answer at all; when FAULTY_HANG_MARKS names a file, a
 *                 line is added to it first, so a test knows the worker hangs. */
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "../../../providers/common/zentaProvider.h"

static const CMPIBroker* broker;

static unsigned countOfInstances(void) {
    const char* text = getenv("FAULTY_COUNT");
    return text != NULL && *text != '\0' ? (unsigned)strtoul(text, NULL, 10) : 3000u;
}

static void markHang(void) {
    const char* path = getenv("FAULTY_HANG_MARKS");
    FILE* marks = path != NULL ? fopen(path, "a") : NULL;
    if (marks == NULL) return;
    fputs("hang\n", marks);
    fclose(marks);
}

static CMPIStatus returnItems(const CMPIResult* rslt, const char* ns, const char* cls, unsigned count) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    unsigned i;
    char id[32];
    for (i = 0; i < count; ++i) {
        CMPIObjectPath* op = CMNewObjectPath(broker, ns, cls, &rc);
        CMPIInstance* inst;
        if (op == NULL) return rc;
        snprintf(id, sizeof(id), "item-%06u", i);
        CMAddKey(op, "Id", id, CMPI_chars);
        inst = CMNewInstance(broker, op, &rc);
        if (inst == NULL) return rc;
        CMSetProperty(inst, "Text", "<a text that needs escaping & some length to fill the blocks>", CMPI_chars);
        CMReturnInstance(rslt, inst);
    }
    return rc;
}

ZENTA_READ_ONLY_INSTANCE_MI(Faulty_)

static CMPIStatus Faulty_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                       const CMPIObjectPath* ref, const char** properties) {
    const char* cls = CMGetCharPtr(CMGetClassName(ref, NULL));
    const char* ns = zentaNamespaceOf(ref, "root/cimv2");
    CMPIStatus rc;
    (void)mi; (void)ctx; (void)properties;
    if (strcmp(cls, "Faulty_Crash") == 0) raise(SIGSEGV);
    if (strcmp(cls, "Faulty_Hang") == 0) {
        markHang();
        for (;;) pause();
    }
    rc = returnItems(rslt, ns, cls, countOfInstances());
    if (rc.rc != CMPI_RC_OK) return rc;
    if (strcmp(cls, "Faulty_Late") == 0) CMReturnWithChars(broker, CMPI_RC_ERR_ACCESS_DENIED, "gave up late");
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus Faulty_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                     const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)rslt; (void)ref; (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_FOUND);
}

CMInstanceMIStub(Faulty_, Faulty_Provider, broker, CMNoHook)
