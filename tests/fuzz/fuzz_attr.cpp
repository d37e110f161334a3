// Adapter, port and link records, driver information and the board table.
#include "kvdfuzz.h"

static const char *const words[] = {"hbaattr",   "portattr",    "dportattr",  "iportattr",
                                    "wportattr", "portstat",    "linkinfo",   "drvinfo",
                                    "adapters",  "getversions", "slireadstat"};
KVD_FUZZ_SHELL_TARGET(words)
