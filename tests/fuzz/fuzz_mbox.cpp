// The mailbox rows: the line names the row and its arguments, the stream is
// the completed MAILBOX and any extension words.
#include "kvdfuzz.h"

static const char *const words[] = {"mbox"};
KVD_FUZZ_SHELL_TARGET(words)
