/* The Sample module: a small, fixed class hierarchy served by two
 * providers, to show deep enumeration and a class method.
 *
 *   ZENTA_Animal (abstract)  served by nobody; its instances are those of
 *                            its subclasses
 *   ZENTA_Dog                ZENTA_DogProvider (DogProvider.c), with the
 *                            class method Count
 *   ZENTA_Cat                ZENTA_CatProvider (CatProvider.c) */
#include "Animals.h"

#include <string.h>

CMPIInstance* makeAnimal(const CMPIBroker* broker, const char* ns, const char* className, const Animal* animal,
                         CMPIStatus* rc) {
    CMPIObjectPath* op = CMNewObjectPath(broker, ns, className, rc);
    CMPIInstance* inst;
    CMPIDateTime* born;
    if (op == NULL) return NULL;
    CMAddKey(op, "Name", animal->name, CMPI_chars);
    inst = CMNewInstance(broker, op, rc);
    if (inst == NULL) return NULL;
    CMSetProperty(inst, "Sound", animal->sound, CMPI_chars);
    CMSetProperty(inst, "Legs", &animal->legs, CMPI_uint8);
    CMSetProperty(inst, "Weight", &animal->weight, CMPI_real64);
    born = CMNewDateTimeFromChars(broker, animal->born, rc);
    if (born != NULL) CMSetProperty(inst, "Born", &born, CMPI_dateTime);
    return inst;
}

CMPIStatus enumerateSpecies(const Species* species, const CMPIResult* rslt, const CMPIObjectPath* ref) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    const char* ns = zentaNamespaceOf(ref, SAMPLE_NAMESPACE);
    size_t i;
    for (i = 0; i < species->count; ++i) {
        CMPIInstance* inst = species->make(ns, i, &rc);
        if (inst == NULL) return rc;
        CMReturnInstance(rslt, inst);
    }
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMPIStatus getFromSpecies(const Species* species, const CMPIBroker* broker, const CMPIResult* rslt,
                                 const CMPIObjectPath* ref) {
    CMPIStatus rc = {CMPI_RC_OK, NULL};
    const char* name = zentaStringOf(CMGetKey(ref, "Name", &rc));
    size_t i;
    if (name == NULL) CMReturn(CMPI_RC_ERR_INVALID_PARAMETER);
    for (i = 0; i < species->count; ++i) {
        if (strcmp(species->animalAt(i)->name, name) == 0) {
            CMPIInstance* inst = species->make(zentaNamespaceOf(ref, SAMPLE_NAMESPACE), i, &rc);
            if (inst == NULL) return rc;
            CMReturnInstance(rslt, inst);
            CMReturnDone(rslt);
            CMReturn(CMPI_RC_OK);
        }
    }
    CMReturnWithChars(broker, CMPI_RC_ERR_NOT_FOUND, "no animal of that name");
}
