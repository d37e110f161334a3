// ASIC (tarvo) responses of every tarvo sub-command.
#include "kvdfuzz.h"

static const char *const words[] = {"tarvo"};
KVD_FUZZ_SHELL_TARGET(words)
