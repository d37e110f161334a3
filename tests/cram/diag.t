Loopback tests, the IOCB ring view and adapter reset.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ export PATH=$TESTDIR:$PATH
  $ banner() { sed '1,/^Adapter [0-9]*:/d' | sed '/^Adapter [0-9]*:/d'; }

loopback: refusals are terse, return 0 and call nothing.

  $ kvd -c loopback
  Usage: loopback type size passes timeout pattern
         type 0-pci 1-internal 2-external
         internal/external loopback size 1-65536 (default 1024)
         pci loopback size 1-1024 (default 1024)
         passes (default 1)
         timeout (default 15 seconds)
         pattern 0-255 (default 165)
  $ for a in '3' '0 1025 5 15 0' '0 0' '1 65537' '1 1024 0' '1 1024 3 14' '1 64 1 15 256' '1 64 1 15 -1'; do kvd -c "loopback $a"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Cannot issue command [0]
  Cannot issue command [0]
  Cannot issue command [0]
  Cannot issue command [0]
  Cannot issue command [0]
  Cannot issue command [0]
  Cannot issue command [0]
  Cannot issue command [0]
  $ grep -c Loopback trace
  0
  [1]

Two words: one internal pass of 1024 bytes, the data dumped.

  $ kvd -c 'loopback 1' | head -3
  
     0: a5a5a5a5  a5a5a5a5  a5a5a5a5  a5a5a5a5  ................
    10: a5a5a5a5  a5a5a5a5  a5a5a5a5  a5a5a5a5  ................
  $ kvd -c 'loopback 1' | wc -l
  65
  $ grep -o '^KVD_[A-Za-z]*Loopback[A-Za-z]*([^)]*) = [0-9]*' trace | tail -3
  KVD_ConfigLoopback(board=0, type=1, timeout=15) = 0
  KVD_RunLoopbackTest(board=0, size=1024) = 0
  KVD_EndLoopback(board=0) = 0

Internal, PCI and external (with a plug) passes; no PCI loop on FCoE, no board.

  $ kvd -c 'loopback 1 65536 3 15 255'
  \tInternal loopback of 3 frames of size 65536 completed successfully. (esc)
  $ kvd -c 'loopback 0 1024 2 15 0'
  \tPci loopback of 2 frames of size 1024 completed successfully. (esc)
  $ grep -c 'command=RUN_BIU_DIAG64' trace
  2
  $ kvd -c 'loopback 2 64 2 15'
  \tKVD_RunLoopbackTest failed with error 110 - pass 1 (esc)
  $ KVD_SIM_FLEET=$TESTDIR/../fleets/diag.json kvd -c 'loopback 2 64 2 15'
  \tExternal loopback of 2 frames of size 64 completed successfully. (esc)
  $ kvd -b 1 -c 'loopback 0 16 1 15'
  kvd_RunPciLoopbackTest - board 1 protocol 0 not supported
  \tkvd_RunPciLoopbackTest failed with error 2 - pass 1 (esc)
  $ kvd -b 7 -c 'loopback 1 16 1 15'
  KVD_ConfigLoopback failed with error 19

A fault rule makes the echo differ: the loop ends.

  $ KVD_SIM_FAULT=loop:ECHO=5 kvd -c 'loopback 1 32 4 15 0x11'
  \tThe memcmp failed with error -221 - pass 1 (esc)
  \tSent pattern x11 (esc)
  \tReceived buffer pattern: (esc)
     0: 11111111  11ee1111  11111111  11111111  ................
    10: 11111111  11111111  11111111  11111111  ................
  $ KVD_SIM_FAULT=loop:ECHO=3 kvd -c 'loopback 0 16 2 15 1' > out; head -3 out; wc -l < out
  \tThe memcmp failed with error -253 - pass 1 (esc)
  \tSent pattern x01 (esc)
  \tReceived buffer pattern: (esc)
  4
  $ KVD_SIM_FAULT=KVD_EndLoopback=5 kvd -c 'loopback 1 32 1 15'
  \tInternal loopback of 1 frames of size 32 completed successfully. (esc)
  \tKVD_EndLoopback failed with error 5 (esc)

riocb: ring state and IOCBs; the loopback went out on ring 3.

  $ for c in 'riocb a b c' 'riocb foo'; do kvd -c "$c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: riocb [cmd | rsp ] [slot_number] [247]
  Usage: riocb [cmd | rsp ] [slot_number] [247]
  $ printf 'loopback 2 16 3 15\nset ring 3\nriocb\nriocb rsp\nriocb rsp\nriocb rsp 15\nriocb cmd 2\nriocb rsp 16\nriocb cmd -1\nset ring 4\nriocb\nquit\n' > cmds
  $ KVD_SIM_FLEET=$TESTDIR/../fleets/diag.json kvd < cmds 2>&1 | banner | grep -v 'WORD[2-5]'
  cmd> \tExternal loopback of 3 frames of size 16 completed successfully. (esc)
  cmd> cmd> board 0  ring 3  iocb 0
  cmdidx:3  numCiocb:16  rspidx:3  numRiocb:16
  cmd> IOCB 0 WORD0: 00000010
  IOCB 0 WORD1: [0-9a-f]{8} (re)
  IOCB 0 WORD6: 00000000
  IOCB 0 WORD7: 00008200
  cmd> IOCB 1 WORD0: 00000010
  IOCB 1 WORD1: [0-9a-f]{8} (re)
  IOCB 1 WORD6: 00000000
  IOCB 1 WORD7: 00008200
  cmd> IOCB 15 WORD0: 00000000
  IOCB 15 WORD1: 00000000
  IOCB 15 WORD6: 00000000
  IOCB 15 WORD7: 00000000
  cmd> IOCB 2 WORD0: 00000010
  IOCB 2 WORD1: [0-9a-f]{8} (re)
  IOCB 2 WORD6: 00000000
  IOCB 2 WORD7: 00008201
  cmd> Cannot issue command
  cmd> Cannot issue command
  cmd> cmd> Cannot issue command
  cmd> 
  $ grep '^KVD_GetSliImage' trace | tail -1 | cut -c1-80
  KVD_GetSliImage(board=0, length=16384) = 0 out=0400000002000000400040000001007e0

Walking a ring of 16 comes back to slot 0; SLI-4 has no IOCB rings.

  $ (echo 'set ring 1'; for i in $(seq 17); do echo 'riocb rsp'; done; echo quit) | kvd | grep -o 'IOCB [0-9]* WORD0' | tr '\n' ' '
  IOCB 0 WORD0 IOCB 1 WORD0 IOCB 2 WORD0 IOCB 3 WORD0 IOCB 4 WORD0 IOCB 5 WORD0 IOCB 6 WORD0 IOCB 7 WORD0 IOCB 8 WORD0 IOCB 9 WORD0 IOCB 10 WORD0 IOCB 11 WORD0 IOCB 12 WORD0 IOCB 13 WORD0 IOCB 14 WORD0 IOCB 15 WORD0 IOCB 0 WORD0  (no-eol)
  $ kvd -b 2 -c riocb
  board 2  ring 0  iocb 0
  cmdidx:0  numCiocb:0  rspidx:0  numRiocb:0
  $ kvd -b 2 -c 'riocb cmd'
  Cannot issue command
  [252]

reset types 1-3 bounce the link, which a subscription hears.

  $ kvd -c 'reset hba'; kvd -c 'reset hba 2'; kvd -c 'reset hba 3'; kvd -c 'reset hba 4'
  hba: 0 reset type: 1
  status 0x0
  hba: 0 reset type: 2
  status 0x0
  hba: 0 reset type: 3
  status 0x0
  hba: 0 reset type: 4
  status 0x16
  $ grep '^KVD_ResetAdapter' trace
  KVD_ResetAdapter(board=0, type=1) = 0 command=SELECTIVE
  KVD_ResetAdapter(board=0, type=2) = 0 command=COORDINATED
  KVD_ResetAdapter(board=0, type=3) = 0 command=FIRMWARE
  KVD_ResetAdapter(board=0, type=4) = 22
  $ export KVD_SIM_EVENTS=$PWD/ev
  $ printf 'revent link ALL\nreset hba 3\n! kvdev sync\nrdstat\nquit\n' | sed 's/rdstat/mbox rdlnkstat/' > cmds
  $ kvd < cmds > out; grep -o 'Brd .*\|PortID .*' out
  Brd 0 Event 0x3  Up 0x1  Down 0x1  Multi 0x0
  PortID 0x0  alpa 0x0  topology 0x3 state 0x1
  Brd 0 Event 0x4  Up 0x2  Down 0x1  Multi 0x0
  PortID 0x10200  alpa 0x0  topology 0x3 state 0x6
  $ KVD_SIM_FAULT=reset:FIRMWARE=0x10 kvd -c 'reset hba 3'
  hba: 0 reset type: 3
  status 0x10

Scheduled events from the fleet.

  $ printf '! kvdev sync\ngetevent 5\nquit\n' > cmds
  $ KVD_SIM_FLEET=$TESTDIR/../fleets/diag.json kvd < cmds | banner
  cmd> ok
  cmd> Event Data1    Data2    Data3    Data4    3 Entries 0 Missed
  0020  00000002 00000041 00000000 00000000
  0002  00010500 00000008 00000000 00000000
  0020  00000003 00000014 00000000 00000000
  cmd>  (no-eol)
