// The broker's encapsulated-object factory, and the per-call records the
// provider driver builds around one MI call.
#ifndef ZENTA_CMPI_CMPIBROKERENC_H
#define ZENTA_CMPI_CMPIBROKERENC_H

#include "cmpift.h"

extern CMPIBrokerEncFT* cmpiBrokerEncFt;

CMPIInstance* newCMPIInstance(const CMPIBroker* broker, const CMPIObjectPath* op, CMPIStatus* rc);
CMPIObjectPath* newCMPIObjectPath(const CMPIBroker* broker, const char* ns, const char* cn, CMPIStatus* rc);
CMPIString* newCMPIString(const CMPIBroker* broker, const char* text, CMPIStatus* rc);
CMPIArray* newCMPIArray(const CMPIBroker* broker, CMPICount count, CMPIType type, CMPIStatus* rc);
CMPIDateTime* newCMPIDateTime(const CMPIBroker* broker, CMPIStatus* rc);
CMPIDateTime* newCMPIDateTimeFromBinary(const CMPIBroker* broker, CMPIUint64 binTime, CMPIBoolean interval,
                                        CMPIStatus* rc);
CMPIDateTime* newCMPIDateTimeFromString(const CMPIBroker* broker, const char* text, CMPIStatus* rc);
CMPISelectExp* mbEncNewSelectExp(const CMPIBroker* broker, const char* query, const char* lang,
                                 CMPIArray** projection, CMPIStatus* rc);
CMPIStatus mbEncLogMessage(const CMPIBroker* broker, int severity, const char* id, const char* text,
                           const CMPIString* string);

CMPIContext* newCMPIContext(const char* name, CMPIStatus* rc);
CMPIResult* newCMPIResult(CMPIStatus* rc);
CMPIResult* newCMPIEnumInstanceResult(CMPIStatus* rc);
void removeCMPIContext(CMPIContext* context);
void removeCMPIResult(CMPIResult* result);
void removeCMPIObjectPath(CMPIObjectPath* path);

#endif
