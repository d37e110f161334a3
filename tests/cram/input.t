Standard input the shell cannot trust: NUL bytes, lines far beyond the
131-character buffer, thousands of words, bytes that are no UTF-8, an
input that ends inside a dialogue, and a reader of the output that goes
away.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ after() { sed -n '/^cmd>/,$p'; }

A NUL byte ends the line where it stands; the rest of that line is dropped.

  $ printf 'set ring 2\0set ring 3\nset\nquit\n' | kvd | after
  cmd> cmd> board 0  ring 2  iocb 0 lines 16
  cmd>  (no-eol)

A 100,000-character line runs as pieces of 131 characters and a last one
of 47; 10,000 words in one line reach each command at most 50 at a time.

  $ (head -c 100000 /dev/zero | tr '\0' x; printf '\nquit\n') | kvd | grep -o 'Invalid command: x*' | awk '{print length($3)}' | uniq -c
      763 131
        1 47
  $ (printf 'set'; for i in $(seq 10000); do printf ' 1'; done; printf '\nquit\n') | kvd | grep -o 'Usage: set\|Invalid command: [^ ]*' | uniq -c
        1 Usage: set
      152 Invalid command: 1

Bytes that are no UTF-8 are a command word like any other.

  $ printf '\377\376\200abc\nquit\n' | kvd | grep Invalid
  cmd> Invalid command: \xff\xfe\x80abc (esc)

An input that ends in the middle of a dialogue is waited for, as the
command reader waits: the answers that arrive after the end complete the
command.

  $ mkfifo in
  $ kvd -c 'mbox cfglink' < in > out &
  $ printf '1\n2\n' > in
  $ for i in $(seq 400); do grep -q 'ratov: ' out && break; sleep 0.05; done
  $ printf '3\n4\n5\n6\n7\n' > in
  $ wait $!; echo $?; cat out
  0
  edtov: arbtov: ratov: rttov: altov: crtov: citov: Command: 0x7  Status: 0x0
  $ grep '^KVD_IssueMboxWithRetry(' trace | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c33-88
  01000000020000000300000004000000050000000600000007000000

A reader that goes away ends the shell as it ends other tools: by SIGPIPE,
also when the shell was started with SIGPIPE ignored; with SIGPIPE blocked
the failed write ends it through quit, releasing the library.

  $ yes help | kvd | head -1; echo ${PIPESTATUS[1]}
  Quellmarsh Engineering Debug Utility
  141
  $ (trap '' PIPE; yes help 2>/dev/null | kvd | head -1; echo ${PIPESTATUS[1]})
  Quellmarsh Engineering Debug Utility
  141
  $ : > trace
  $ yes help | python3 -c 'import os, signal; signal.pthread_sigmask(signal.SIG_BLOCK, {signal.SIGPIPE}); os.execvp("kvd", ["kvd"])' | head -1; echo ${PIPESTATUS[1]}
  Quellmarsh Engineering Debug Utility
  1
  $ tail -1 trace | cut -d'(' -f1
  KVD_FreeDiagEnv
