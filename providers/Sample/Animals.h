/* What the two providers of the Sample module share: animals and the
 * fixed lists they are served from. */
#ifndef ZENTA_PROVIDERS_ANIMALS_H
#define ZENTA_PROVIDERS_ANIMALS_H

#include <stddef.h>

#include "zentaProvider.h"

#define SAMPLE_NAMESPACE "root/sample"
#define COUNT_OF(array) (sizeof(array) / sizeof((array)[0]))

typedef struct {
    const char* name;
    const char* sound;
    CMPIUint8 legs;
    CMPIReal64 weight; /* kilograms */
    const char* born;  /* CIM date-time */
} Animal;

/* A fixed list of animals of one class. */
typedef struct {
    size_t count;
    const Animal* (*animalAt)(size_t index);
    CMPIInstance* (*make)(const char* ns, size_t index, CMPIStatus* rc);
} Species;

/* An instance of `className` with the properties every animal has. */
CMPIInstance* makeAnimal(const CMPIBroker* broker, const char* ns, const char* className, const Animal* animal,
                         CMPIStatus* rc);
/* Returns every animal of the species. */
CMPIStatus enumerateSpecies(const Species* species, const CMPIResult* rslt, const CMPIObjectPath* ref);
/* Returns the animal the path's Name key names, or fails with
 * CMPI_RC_ERR_NOT_FOUND. */
CMPIStatus getFromSpecies(const Species* species, const CMPIBroker* broker, const CMPIResult* rslt,
                          const CMPIObjectPath* ref);

#endif
