/* ZENTA_DogProvider: the dogs, and the class method ZENTA_Dog.Count. */
#include <string.h>

#include "Animals.h"

typedef struct {
    Animal animal;
    const char* breed;
    const char* tricks[3]; /* NULL-terminated */
} Dog;

static const CMPIBroker* dogBroker;

static const Dog kDogs[] = {
    {{"Rex", "Woof", 4, 31.5, "20180314083000.000000+000"}, "Labrador", {"sit", "fetch", NULL}},
    {{"Fido", "Arf", 4, 11.25, "20200601120000.000000+060"}, "Beagle", {"roll over", NULL, NULL}},
};

static CMPIInstance* makeDog(const char* ns, size_t index, CMPIStatus* rc) {
    const Dog* dog = &kDogs[index];
    CMPIInstance* inst = makeAnimal(dogBroker, ns, "ZENTA_Dog", &dog->animal, rc);
    CMPICount count = 0;
    CMPICount i;
    CMPIArray* tricks;
    if (inst == NULL) return NULL;
    CMSetProperty(inst, "Breed", dog->breed, CMPI_chars);
    while (count < COUNT_OF(dog->tricks) && dog->tricks[count] != NULL) ++count;
    tricks = CMNewArray(dogBroker, count, CMPI_string, rc);
    if (tricks == NULL) return inst;
    for (i = 0; i < count; ++i) {
        CMPIString* trick = CMNewString(dogBroker, dog->tricks[i], rc);
        CMSetArrayElementAt(tricks, i, &trick, CMPI_string);
    }
    CMSetProperty(inst, "Tricks", &tricks, CMPI_stringA);
    return inst;
}

ZENTA_READ_ONLY_INSTANCE_MI(Dog_)

static const Animal* Dog_AnimalAt(size_t index) { return &kDogs[index].animal; }

static const Species kDogSpecies = {COUNT_OF(kDogs), Dog_AnimalAt, makeDog};

static CMPIStatus Dog_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)properties;
    return enumerateSpecies(&kDogSpecies, rslt, ref);
}

static CMPIStatus Dog_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                  const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)properties;
    return getFromSpecies(&kDogSpecies, dogBroker, rslt, ref);
}

CMInstanceMIStub(Dog_, ZENTA_DogProvider, dogBroker, CMNoHook)

ZENTA_METHOD_MI_CLEANUP(Dog_)

/* static uint32 Count(OUT uint32 Total): how many dogs there are. */
static CMPIStatus Dog_InvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                   const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                                   CMPIArgs* out) {
    CMPIUint32 total = (CMPIUint32)COUNT_OF(kDogs);
    CMPIUint32 result = 0;
    (void)mi; (void)ctx; (void)ref; (void)in;
    if (strcmp(method, "Count") != 0) CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
    CMAddArg(out, "Total", &total, CMPI_uint32);
    CMReturnData(rslt, &result, CMPI_uint32);
    CMReturnDone(rslt);
    CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Dog_, ZENTA_DogProvider, dogBroker, CMNoHook)
