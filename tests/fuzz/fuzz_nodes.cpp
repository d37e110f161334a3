// Node lists, VPD, persistent bindings and target mappings.
#include "kvdfuzz.h"

static const char *const words[] = {"nodeinfo", "vpdinfo", "listbind", "fcpmap"};
KVD_FUZZ_SHELL_TARGET(words)
