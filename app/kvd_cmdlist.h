/*
 * The top-level command words, in table order: the one list from which the
 * handler declarations (kvd_cmds.h), the rows of kvdCmds (kvd_cmdtab.cpp)
 * and the "Not Implemented" stubs (kvd_stubs.cpp) are generated.
 *
 *   X(word, handler, state)
 *
 * state is BUILT when a family file defines the handler and STUB while the
 * family is still to come. Lookup and "help" follow this order, which is
 * nearly but not quite alphabetical: keep it. Several words may share a
 * handler ("quit", "bye", "exit").
 *
 * Adding a command: give its row BUILT here and define the handler in its
 * family's file.
 */
#ifndef KVD_CMDLIST_H
#define KVD_CMDLIST_H

// clang-format off
#define KVD_COMMANDS(X) \
    X("inval", inval, BUILT) \
    X("adapters", adapters, BUILT) \
    X("authdelcfg", authdelcfg, BUILT) \
    X("authgetcfg", authgetcfg, BUILT) \
    X("authgetpsswd", authgetpsswd, BUILT) \
    X("authinit", authinit, BUILT) \
    X("authlist", authlist, BUILT) \
    X("authsetcfg", authsetcfg, BUILT) \
    X("authsetpsswd", authsetpsswd, BUILT) \
    X("authstatus", authstatus, BUILT) \
    X("ct", ct, BUILT) \
    X("dportattr", dportattr, BUILT) \
    X("drvinfo", drvinfo, BUILT) \
    X("dumpreg", dumpreg, BUILT) \
    X("dumpregion", dumpregion, BUILT) \
    X("fcpmap", fcpmap, BUILT) \
    X("fcoegetparams", fcoegetparams, BUILT) \
    X("fcoesetparams", fcoesetparams, BUILT) \
    X("fcoegetlist", fcoegetlist, BUILT) \
    X("fcoesetlist", fcoesetlist, BUILT) \
    X("fcoegetfcflist", fcoegetfcflist, BUILT) \
    X("getcfg", getcfg, BUILT) \
    X("getevent", getevent, BUILT) \
    X("getfcpconfig", getfcpconfig, BUILT) \
    X("getfcppriority", getfcppriority, BUILT) \
    X("getmgmt", getmgmt, BUILT) \
    X("getversions", getversions, BUILT) \
    X("hbaattr", hbaattr, BUILT) \
    X("help", help, BUILT) \
    X("iportattr", iportattr, BUILT) \
    X("issuedumpmbox", issuedumpmbox, BUILT) \
    X("linkinfo", linkinfo, BUILT) \
    X("listbind", listbind, BUILT) \
    X("logging", logging, BUILT) \
    X("loopback", loopback, BUILT) \
    X("tarvo", tarvo, BUILT) \
    X("mbox", mbox, BUILT) \
    X("nodeinfo", nodeInform, BUILT) \
    X("persistlinkget", persistlinkget, BUILT) \
    X("persistlinkset", persistlinkset, BUILT) \
    X("portattr", portattr, BUILT) \
    X("portstat", portstat, BUILT) \
    X("qoslinkspeed", qoslinkspeed, BUILT) \
    X("quit", quit, BUILT) \
    X("bye", quit, BUILT) \
    X("exit", quit, BUILT) \
    X("rdallpci", rdallpci, BUILT) \
    X("rdca", rdca, BUILT) \
    X("rdha", rdha, BUILT) \
    X("rdhc", rdhc, BUILT) \
    X("rdhs", rdhs, BUILT) \
    X("rdpci", rdpci, BUILT) \
    X("refresh", refresh, BUILT) \
    X("revent", regevent, BUILT) \
    X("reset", reset, BUILT) \
    X("rffreg", rffreg, BUILT) \
    X("riocb", riocb, BUILT) \
    X("rnid", rnid, BUILT) \
    X("sdiag", sdiag, BUILT) \
    X("sdump", sdump, BUILT) \
    X("sd_all_events", sd_all_events, BUILT) \
    X("sd_free_bucket", sd_free_bucket, BUILT) \
    X("sd_get_bucket", sd_get_bucket, BUILT) \
    X("sd_get_data", sd_get_data, BUILT) \
    X("sd_granularity", sd_granularity, BUILT) \
    X("sd_latency", sd_latency, BUILT) \
    X("sd_quick_event", sd_quick_event, BUILT) \
    X("sd_reset_data", sd_reset_data_coll, BUILT) \
    X("sd_revent", sd_revent, BUILT) \
    X("sd_set_bucket", sd_set_bucket, BUILT) \
    X("sd_show_events", sd_show_events, BUILT) \
    X("sd_start_data", sd_start_data_coll, BUILT) \
    X("sd_stop_data", sd_stop_data_coll, BUILT) \
    X("sd_test_env", sd_test_env, BUILT) \
    X("sd_urevent", sd_urevent, BUILT) \
    X("sd_verbose", sd_verbose, BUILT) \
    X("els", sendels, BUILT) \
    X("sendfcp", sendfcp, BUILT) \
    X("sendmgmt", sendmgmt, BUILT) \
    X("sendscsi", sendscsi, BUILT) \
    X("set", set, BUILT) \
    X("setcfg", setcfg, BUILT) \
    X("setfcpconfig", setfcpconfig, BUILT) \
    X("setfcppriority", setfcppriority, BUILT) \
    X("setmgmt", setmgmt, BUILT) \
    X("!", shell, BUILT) \
    X("showmmm", showmmm, BUILT) \
    X("sli4", sli4, BUILT) \
    X("sli4iov", sli4iov, BUILT) \
    X("slireadstat", slireadstat, BUILT) \
    X("urevent", uregevent, BUILT) \
    X("vpdinfo", vpdInfo, BUILT) \
    X("vpcreate", vpcreate, BUILT) \
    X("vpdelete", vpdelete, BUILT) \
    X("vpgetattr", vpgetattr, BUILT) \
    X("vpgetlist", vpgetlist, BUILT) \
    X("vpgetninfo", vpgetninfo, BUILT) \
    X("vpgetphys", vpgetphys, BUILT) \
    X("vpgetres", vpgetres, BUILT) \
    X("vpnpivrdy", vpnpivrdy, BUILT) \
    X("wffreg", wffreg, BUILT) \
    X("wportattr", wportattr, BUILT) \
    X("wrca", wrca, BUILT) \
    X("wrha", wrha, BUILT) \
    X("wrhc", wrhc, BUILT) \
    X("wrhs", wrhs, BUILT) \
    X("wrpci", wrpci, BUILT) \
    X("wslim", wslim, BUILT)
// clang-format on

#endif
