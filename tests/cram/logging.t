logging: the library's syslog mask and the board's driver mask (hex).

  $ export KVD_SIM_TRACE=$PWD/trace

  $ kvd -c logging
  libkvd syslog types enabled 00000003
  \tx00000001 errors             on (esc)
  \tx00000002 warnings           on (esc)
  \tx00000004 mailbox commands   off (esc)
  \tx00000008 events             off (esc)
  \tx00000010 environment        off (esc)
  \tx00000020 call trace         off (esc)
  driver logging mask board 0 x00000000
  \tx00000001 initialisation     off (esc)
  \tx00000002 link events        off (esc)
  \tx00000004 discovery          off (esc)
  \tx00000008 mailbox            off (esc)
  \tx00000010 ELS                off (esc)
  \tx00000020 FCP I/O            off (esc)
  \tx00000040 events             off (esc)
  \tx00000080 FCoE               off (esc)
  \tx00000100 management         off (esc)

Setting: kept for the session; the driver mask is per board; unknown bits are
refused.

  $ kvd -c 'logging drv 1ff' -c 'logging lib 24' -b 1 -c logging | grep -v '  off' | sed 18,26d
  libkvd syslog types enabled 00000003
  \tx00000001 errors             on (esc)
  \tx00000002 warnings           on (esc)
  driver logging mask board 0 x000001ff
  \tx00000001 initialisation     on (esc)
  \tx00000002 link events        on (esc)
  \tx00000004 discovery          on (esc)
  \tx00000008 mailbox            on (esc)
  \tx00000010 ELS                on (esc)
  \tx00000020 FCP I/O            on (esc)
  \tx00000040 events             on (esc)
  \tx00000080 FCoE               on (esc)
  \tx00000100 management         on (esc)
  libkvd syslog types enabled 00000024
  \tx00000004 mailbox commands   on (esc)
  \tx00000020 call trace         on (esc)
  driver logging mask board 0 x000001ff
  libkvd syslog types enabled 00000024
  \tx00000004 mailbox commands   on (esc)
  \tx00000020 call trace         on (esc)
  driver logging mask board 1 x00000000
  libkvd syslog types enabled 00000024
  \tx00000004 mailbox commands   on (esc)
  \tx00000020 call trace         on (esc)
  driver logging mask board 1 x00000000
  $ grep -o '^KVD_Set[A-Za-z]*([^)]*) = [0-9]*' trace
  KVD_SetDriverLogMask(board=0, mask=511) = 0
  KVD_SetLibLogging(mask=36) = 0
  $ kvd -c "logging drv 200"
  Cannot issue command
  [252]
  $ kvd -c "logging lib 40"
  Cannot issue command
  [252]
  $ grep -o '^KVD_Set[A-Za-z]*([^)]*) = [0-9]*' trace | tail -2
  KVD_SetDriverLogMask(board=0, mask=512) = 22
  KVD_SetLibLogging(mask=64) = 22

Word counts, unknown keywords, a failing library.

  $ kvd -c 'logging lib'
  Usage: logging [lib|drv mask]
     lib mask - libkvd syslog types (hex, bits x0000003f)
     drv mask - driver logging of the board (hex, bits x000001ff)
  [247]
  $ kvd -c 'logging x 1' | head -1
  Usage: logging [lib|drv mask]
  $ KVD_SIM_FAULT=KVD_GetDriverLogMask=5 kvd -c logging | tail -1
  Cannot issue command
  \tx00000020 call trace         off (esc)
  $ KVD_SIM_FLEET=$KVD_FLEETS/empty.json kvd -c logging
  
  No Adapters Found
  [253]
