// Registers, memory, regions, dumps, FCoE and QoS parameters, logging and
// authentication records.
#include "kvdfuzz.h"

static const char *const words[] = {
    "rdpci",         "rdallpci",       "rdca",           "rdha",         "rdhc",          "rdhs",
    "rffreg",        "riocb",          "dumpreg",        "dumpregion",   "issuedumpmbox", "fcoegetparams",
    "fcoesetparams", "getfcppriority", "persistlinkget", "qoslinkspeed", "logging",       "authgetcfg",
    "authgetpsswd",  "authlist",       "authstatus",     "authsetcfg",   "authdelcfg",    "sdump"};
KVD_FUZZ_SHELL_TARGET(words)
