// The top-level command table, row for row from the command list.
#include "kvd_cmds.h"

#define KVD_TABLE_ROW(word, handler, state) {word, handler},
cmdinfo kvdCmds[] = {KVD_COMMANDS(KVD_TABLE_ROW)};
#undef KVD_TABLE_ROW

int32_t kvdcmdcnt = (int32_t)(sizeof(kvdCmds) / sizeof(kvdCmds[0]));

static_assert(sizeof(kvdCmds) / sizeof(kvdCmds[0]) == 108, "the command table has 108 rows");
