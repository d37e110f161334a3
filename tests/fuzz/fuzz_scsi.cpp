// SCSI inquiry, capacity, sense and LUN lists; FCP commands.
#include "kvdfuzz.h"

static const char *const words[] = {"sendscsi", "sendfcp"};
KVD_FUZZ_SHELL_TARGET(words)
