/*
 * The rows of the "mbox" family, in table order: the one list from which
 * mboxinfo, its size and the command code each row issues are generated.
 *
 *   X(word, handler, code)
 *
 * code is the mailbox command the row issues, 0 for a row that issues none
 * (row 0, the rows that answer "Not Implemented", and the region rows,
 * which go through the library's region calls). A test checks every
 * code against the commands the firmware model serves.
 */
#ifndef KVD_MBOXLIST_H
#define KVD_MBOXLIST_H

// clang-format off
#define KVD_MBOX_ROWS(X) \
    X("mbinval", mbinval, 0) \
    X("loadsm", loadsm, 0) \
    X("readnv", readnv, MBX_READ_NV) \
    X("readnv2", readnv2, MBX_READ_NV) \
    X("writenv", writenv, 0) \
    X("runbiudiag", runbiudiag, 0) \
    X("initlink", kvd_initlink, MBX_INIT_LINK) \
    X("downlink", kvd_downlink, MBX_DOWN_LINK) \
    X("cfglink", cfglink, MBX_CONFIG_LINK) \
    X("cfgring", cfgring, MBX_CONFIG_RING) \
    X("resetring", kvd_resetring, MBX_RESET_RING) \
    X("rdcfg", rdcfg, MBX_READ_CONFIG) \
    X("rdrcfg", rdrcfg, MBX_READ_RCONFIG) \
    X("rdsparm", rdsparm, MBX_READ_SPARM) \
    X("rdsparm64", rdsparm64, MBX_READ_SPARM64) \
    X("rdstat", rdstat, MBX_READ_STATUS) \
    X("rdrpi", rdrpi, MBX_READ_RPI) \
    X("rdxri", rdxri, MBX_READ_XRI) \
    X("rdrev", rdrev, MBX_READ_REV) \
    X("rdrev2", rdrev2, MBX_READ_REV) \
    X("rdlnkstat", rdlnkstat, MBX_READ_LNK_STAT) \
    X("readportcap", readportcap, MBX_READ_PORT_CAP) \
    X("reglogin", reglogin, 0) \
    X("ureglogin", ureglogin, MBX_UNREG_LOGIN) \
    X("rdla", rdla, MBX_READ_LA) \
    X("clrla", clrla, MBX_CLEAR_LA) \
    X("dmpmem", dmpmem, MBX_DUMP_MEMORY) \
    X("dmpmem_ext", dmpmem_ext, 0) \
    X("dmpmem3_ext", dmpmem3_ext, 0) \
    X("udtcfg_ext", udtcfg_ext, 0) \
    X("udtcfg2_ext", udtcfg2_ext, 0) \
    X("udtcfg3_ext", udtcfg3_ext, 0) \
    X("dmpctx", dmpctx, 0) \
    X("rundiag", rundiag, 0) \
    X("rdevtlog", rdevtlog, MBX_READ_EVENT_LOG) \
    X("wrevtlog", wrevtlog, MBX_WRITE_EVENT_LOG) \
    X("restart", kvd_restart, MBX_RESTART) \
    X("setmask", setmask, MBX_SET_MASK) \
    X("setdebug", setdebug, MBX_SET_DEBUG) \
    X("setvar", setvar, MBX_SET_VARIABLE)
// clang-format on

#endif
