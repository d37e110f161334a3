/*
 * Handlers of the top-level command table, one per command word, declared
 * from the command list.
 */
#ifndef KVD_CMDS_H
#define KVD_CMDS_H

#include "kvd.h"
#include "kvd_cmdlist.h"

#define KVD_DECLARE_HANDLER(word, handler, state) KVD_HANDLER(handler);
KVD_COMMANDS(KVD_DECLARE_HANDLER)
#undef KVD_DECLARE_HANDLER

#endif
