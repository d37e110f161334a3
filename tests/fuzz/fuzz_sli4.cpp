// SLI-4 responses and object lists, physical and virtual functions.
#include "kvdfuzz.h"

static const char *const words[] = {"sli4", "sli4iov"};
KVD_FUZZ_SHELL_TARGET(words)
