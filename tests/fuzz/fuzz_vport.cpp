// Virtual ports: create, attributes, lists, node views, resources, readiness.
#include "kvdfuzz.h"

static const char *const words[] = {"vpcreate",   "vpdelete",  "vpgetattr", "vpgetlist",
                                    "vpgetninfo", "vpgetphys", "vpgetres",  "vpnpivrdy"};
KVD_FUZZ_SHELL_TARGET(words)
