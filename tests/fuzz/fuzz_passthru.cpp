// ELS and CT payloads, management commands and RNID replies.
#include "kvdfuzz.h"

static const char *const words[] = {"els", "ct", "sendmgmt", "rnid", "getmgmt", "setmgmt", "refresh"};
KVD_FUZZ_SHELL_TARGET(words)
