/* ZENTA_CatProvider: the cats. */
#include "Animals.h"

typedef struct {
    Animal animal;
    CMPIBoolean indoor;
    CMPIUint8 lives;
} Cat;

static const CMPIBroker* catBroker;

static const Cat kCats[] = {
    {{"Tom", "Meow", 4, 5.0, "20150101000000.000000+000"}, 0, 9},
    {{"Felix", "Mrrp", 4, 4.2, "20190909090909.000000+000"}, 1, 7},
    {{"Luna", "Prr", 3, 3.8, "20211224183000.000000-300"}, 1, 9},
};

static CMPIInstance* makeCat(const char* ns, size_t index, CMPIStatus* rc) {
    const Cat* cat = &kCats[index];
    CMPIInstance* inst = makeAnimal(catBroker, ns, "ZENTA_Cat", &cat->animal, rc);
    if (inst == NULL) return NULL;
    CMSetProperty(inst, "Indoor", &cat->indoor, CMPI_boolean);
    CMSetProperty(inst, "Lives", &cat->lives, CMPI_uint8);
    return inst;
}

ZENTA_READ_ONLY_INSTANCE_MI(Cat_)

static const Animal* Cat_AnimalAt(size_t index) { return &kCats[index].animal; }

static const Species kCatSpecies = {COUNT_OF(kCats), Cat_AnimalAt, makeCat};

static CMPIStatus Cat_EnumInstances(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                    const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)properties;
    return enumerateSpecies(&kCatSpecies, rslt, ref);
}

static CMPIStatus Cat_GetInstance(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* rslt,
                                  const CMPIObjectPath* ref, const char** properties) {
    (void)mi; (void)ctx; (void)properties;
    return getFromSpecies(&kCatSpecies, catBroker, rslt, ref);
}

CMInstanceMIStub(Cat_, ZENTA_CatProvider, catBroker, CMNoHook)
