SIGTERM, SIGINT and SIGQUIT end the shell as quit does: the library is
released first, and the exit status is 1.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ for sig in TERM INT QUIT; do
  >   : > trace; : > out
  >   kvd < /dev/null > out 2>&1 &
  >   pid=$!
  >   for i in $(seq 400); do grep -q 'cmd> ' out && break; sleep 0.05; done
  >   kill -$sig $pid
  >   wait $pid
  >   echo "$sig $?"
  >   grep -c '^unRegisterForEvent' trace
  >   tail -1 trace | cut -d'(' -f1
  > done
  TERM 1
  3
  KVD_FreeDiagEnv
  INT 1
  3
  KVD_FreeDiagEnv
  QUIT 1
  3
  KVD_FreeDiagEnv
