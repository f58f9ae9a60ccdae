// The C provider compiled as C++, as many providers are.
#include "c_provider.c"
