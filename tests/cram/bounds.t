The board count is the library's, the board table is ours: a count above
32 (or a negative one seen unsigned) never takes the shell past the 32
entries, on leaving or anywhere else.

  $ export KVD_SIM_TRACE=$PWD/trace

  $ KVD_SIM_FAULT=KVD_InitDiagEnv=-5 kvd -c quit
  [1]
  $ grep -c '^unRegisterForEvent' trace
  32
  $ grep '^unRegisterForEvent' trace | tail -1 | cut -d')' -f1
  unRegisterForEvent(board=31, event_id=0
  $ : > trace

  $ KVD_SIM_FAULT=KVD_InitDiagEnv=1000 kvd -b 31 -c 'mbox rdrev'
  IssueMbox error 6
  $ grep -c '^KVD_IssueMbox' trace
  1
  $ KVD_SIM_FAULT=KVD_InitDiagEnv=1000 kvd -c 'mbox rdrev 32'
  IssueMbox error 2
  $ grep -c '^KVD_IssueMbox' trace
  1
