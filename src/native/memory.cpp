#include "native/marvek.h"

#include <cstdlib>

// Everything the library hands out is allocated with std::malloc.
extern "C" void freeMemory(void* memory) { std::free(memory); }
