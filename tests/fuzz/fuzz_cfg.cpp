// Driver parameters, FCF connection lists and tables, FCP priorities.
#include "kvdfuzz.h"

static const char *const words[] = {"getcfg",         "setcfg",       "fcoegetlist", "fcoesetlist",
                                    "fcoegetfcflist", "getfcpconfig", "setfcpconfig"};
KVD_FUZZ_SHELL_TARGET(words)
