Link-down persistence, reset, dump mailbox, SLI counters, QoS speed, MMM.
Board 2 offers link-down persistence.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ calls() { grep -c "^$1(" trace || :; }

Persistence: other boards refuse; the value prints whatever the result; the
shell passes the low 16 bits, the library takes 0 and 1.

  $ kvd -c persistlinkget
  persistlinkget - KVD_GetPersistLinkDown returned 0x5f
  \tlinkDownConfig x0000 (esc)
  [95]
  $ kvd -b 2 -c persistlinkget
  persistlinkget - KVD_GetPersistLinkDown returned 0x0
  \tlinkDownConfig x0000 (esc)
  $ kvd -b 2 -c 'persistlinkget 1'
  Usage: persistlinkget <no arguments>
  [247]
  $ kvd -b 2 -c persistlinkset
  Usage: persistlinkset linkDownConfig <0,1>
     0 - no persist link down
     1 - persist link down
  [247]
  $ kvd -c 'persistlinkset 1'
  persistlinkset - KVD_SetPersistLinkDown returned 0x5f
  [95]
  $ kvd -b 2 -c 'persistlinkset 5'
  persistlinkset - KVD_SetPersistLinkDown returned 0x16
  [22]
  $ kvd -b 2 -c 'persistlinkset 65537'
  persistlinkset - KVD_SetPersistLinkDown returned 0x0
  $ grep -o '^KVD_SetPersistLinkDown([^)]*) = [0-9]*' trace | tail -2
  KVD_SetPersistLinkDown(board=2, linkDownConfig=5) = 22
  KVD_SetPersistLinkDown(board=2, linkDownConfig=1) = 0

Persistent link down survives every reset, RESTART included, and sits in
region 23; cleared, the link comes back.

  $ printf '%s\n' 'set board 2' 'persistlinkset 1' qoslinkspeed 'reset hba' qoslinkspeed 'reset hba 2' \
  >   'reset hba 3' 'mbox restart' persistlinkget qoslinkspeed 'issuedumpmbox 23 0 16' 'persistlinkset 0' qoslinkspeed \
  >   'reset hba 3' qoslinkspeed linkinfo quit | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> persistlinkset - KVD_SetPersistLinkDown returned 0x0
  cmd> QoS Speed - x0000
  cmd> hba: 2 reset type: 1
  status 0x0
  cmd> QoS Speed - x0000
  cmd> hba: 2 reset type: 2
  status 0x0
  cmd> hba: 2 reset type: 3
  status 0x0
  cmd> Command: 0x1a  Status: 0x0
  cmd> persistlinkget - KVD_GetPersistLinkDown returned 0x0
  \tlinkDownConfig x0001 (esc)
  cmd> QoS Speed - x0000
  cmd> DATA[000] 51 44 52 56 00 01 00 0b 01 02 00 01 02 04 00 00
  cmd> persistlinkset - KVD_SetPersistLinkDown returned 0x0
  cmd> QoS Speed - x0010
  cmd> hba: 2 reset type: 3
  status 0x0
  cmd> QoS Speed - x0010
  cmd> Event 0x6  Up 0x3  Down 0x2  Multi 0x0
  PortID 0x30500  alpa 0x0  topology 0x3 state 0x6
  ALPAmap 0:
  Portname 10:00:06:4b:51:c8:00:30  Nodename 20:00:06:4b:51:c8:00:30
  cmd>  (no-eol)
  $ grep -o '^KVD_ResetAdapter([^)]*) = [0-9]*' trace
  KVD_ResetAdapter(board=2, type=1) = 0
  KVD_ResetAdapter(board=2, type=2) = 0
  KVD_ResetAdapter(board=2, type=3) = 0
  KVD_ResetAdapter(board=2, type=3) = 0

reset: the word hba is required.

  $ kvd -c reset
  Usage: reset [hba] [type]
  \t type 1-selective, 2-coordinated, 3-firmware (esc)
  [247]
  $ for c in 'reset board' 'reset hba 1 2'; do kvd -c "$c" | head -1; done
  Usage: reset [hba] [type]
  Usage: reset [hba] [type]
  $ kvd -c 'reset hba 0'
  hba: 0 reset type: 0
  status 0x16
  $ KVD_SIM_FLEET=$KVD_FLEETS/offline.json kvd -c 'reset hba' 2>&1
  hba: 0 reset type: 1
  status 0x10

The dump mailbox: region 23, offset 0, 1024 bytes by default; a library that
claims 4 GiB gets only the lines asked for.

  $ kvd -c issuedumpmbox > out
  $ wc -l < out
  64
  $ head -2 out
  DATA[000] 51 44 52 56 00 01 00 0b 01 02 00 00 02 04 00 00
  DATA[010] 00 00 ff ff ff ff ff ff ff ff ff ff ff ff ff ff
  $ tail -1 out
  DATA[3f0] ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff
  $ grep -o '^KVD_IssueDumpMBox([^)]*)' trace | tail -1
  KVD_IssueDumpMBox(board=0, type=2, index=0, region=23, offset=0)
  $ kvd -c 'issuedumpmbox 23 0 20'
  DATA[000] 51 44 52 56 00 01 00 0b 01 02 00 00 02 04 00 00
  DATA[010] 00 00 ff ff 00 00 00 00 00 00 00 00 00 00 00 00
  $ kvd -c 'issuedumpmbox 0x17 0 2048' | wc -l
  128
  $ kvd -c 'issuedumpmbox 23 0 2049'
  Max length is 2048
  $ kvd -c 'issuedumpmbox 1 2'
  Usage: issuedumpmbox <no arguments> or
  \tregion offset length (max length 1024) (esc)
  \tdefault region 23 default offset 0 default length 1024 (esc)
  $ kvd -c 'issuedumpmbox 1 2 3 4' | head -1
  Usage: issuedumpmbox <no arguments> or
  $ calls KVD_IssueDumpMBox
  4
  $ LD_LIBRARY_PATH=$KVD_ALTLIB_DIR kvd -c 'issuedumpmbox 23 0 20'
  DATA[000] 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  DATA[010] 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01
  $ LD_LIBRARY_PATH=$KVD_ALTLIB_DIR kvd -c 'issuedumpmbox 23 0 2048' | tail -1
  DATA[7f0] 7f 7f 7f 7f 7f 7f 7f 7f 7f 7f 7f 7f 7f 7f 7f 7f

Region ends, offsets past them, a missing region.

  $ kvd -b 1 -c 'issuedumpmbox 14 0x70 32'
  DATA[000] ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff
  DATA[010] 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  $ kvd -c 'issuedumpmbox 14 128 16'
  KVD_IssueDumpMBox returned x16
  [22]
  $ kvd -c 'issuedumpmbox 14 127 16'
  DATA[000] ff 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  $ kvd -c 'issuedumpmbox 5 0 16'
  KVD_IssueDumpMBox returned x2
  [2]
  $ kvd -c 'issuedumpmbox 1 0 32'
  DATA[000] 57 4b 55 50 02 10 a0 04 02 10 a0 04 01 00 a0 01
  DATA[010] 02 10 a0 04 32 2e 31 30 41 34 00 00 00 00 00 00
  $ kvd -b 2 -c 'issuedumpmbox 1 0 32'
  DATA[000] 57 4b 55 50 04 01 28 05 04 01 28 05 00 00 00 00
  DATA[010] 00 00 00 00 34 2e 31 2e 32 38 2e 35 00 00 00 00

SLI status counters move between reads; clearing returns them and restarts.

  $ : > trace
  $ kvd -c slireadstat
  Usage: slireadstat clearCounters
  \tclearCounters <0 - no clear, 1 - clear counters> (esc)
  \tIf clear, the counter values will still be (esc)
  \treturned before being cleared. (esc)
  $ kvd -c 'slireadstat 2' | head -1
  Usage: slireadstat clearCounters
  $ calls KVD_IssueMboxWithRetry
  0
  $ printf '%s\n' 'slireadstat 0' 'slireadstat 1' 'slireadstat 0' quit | kvd | sed -n '/^cmd>/,$p'
  cmd> Read Status Command: Status: 0x0
  activeXriCnt                3
  activeRpiCnt                6
  xmitByteCnt             42240
  rcvByteCnt             116480
  xmitFrameCnt               40
  rcvFrameCnt                56
  xmitSeqCnt                 10
  rcvSeqCnt                  14
  totalOrigExchanges          5
  totalRespExchanges          0
  rcvPbsyCnt                  0
  rcvFbsyCnt                  0
  cmd> Read Status Command: Status: 0x0
  activeXriCnt                3
  activeRpiCnt                6
  xmitByteCnt             84480
  rcvByteCnt             232960
  xmitFrameCnt               80
  rcvFrameCnt               112
  xmitSeqCnt                 20
  rcvSeqCnt                  28
  totalOrigExchanges         10
  totalRespExchanges          0
  rcvPbsyCnt                  0
  rcvFbsyCnt                  0
  cmd> Read Status Command: Status: 0x0
  activeXriCnt                3
  activeRpiCnt                6
  xmitByteCnt             42240
  rcvByteCnt             116480
  xmitFrameCnt               40
  rcvFrameCnt                56
  xmitSeqCnt                 10
  rcvSeqCnt                  14
  totalOrigExchanges          5
  totalRespExchanges          0
  rcvPbsyCnt                  0
  rcvFbsyCnt                  0
  cmd>  (no-eol)
  $ grep -o '^KVD_IssueMboxWithRetry([^)]*)' trace | tail -1
  KVD_IssueMboxWithRetry(board=0, words_in=32, words_out=64, retries=5, delay=100)
  $ grep '^KVD_IssueMboxWithRetry(' trace | tail -2 | sed 's/.* in=\(.\{16\}\).*/\1/'
  000e000001000000
  000e000000000000

Failures are reported; the status is 0 either way.

  $ KVD_SIM_FAULT=KVD_IssueMboxWithRetry=16 kvd -c 'slireadstat 0'
  slireadstat - KVD_IssueMboxWithRetry error 16
  $ KVD_SIM_FAULT=mbox:READ_STATUS=0x12 kvd -c 'slireadstat 0'
  Read Status Command: Status: 0x12
  $ KVD_SIM_FLEET=$KVD_FLEETS/offline.json kvd -c 'slireadstat 1'
  slireadstat - KVD_IssueMboxWithRetry error 1

QoS link speed: 8, 10, 16 Gb/s; 0 with the link down or offline. showmmm.

  $ for b in 0 1 2; do kvd -b $b -c qoslinkspeed; done
  QoS Speed - x0008
  QoS Speed - x000a
  QoS Speed - x0010
  $ KVD_SIM_FLEET=$KVD_FLEETS/port.json kvd -b 1 -c qoslinkspeed
  QoS Speed - x0000
  $ KVD_SIM_FLEET=$KVD_FLEETS/offline.json kvd -c qoslinkspeed
  QoS Speed - x0000
  $ kvd -c 'qoslinkspeed 1'
  Usage: qoslinkspeed <no arguments>
  [247]
  $ KVD_SIM_FAULT=KVD_GetQoSLinkSpeed=5 kvd -c qoslinkspeed
  qoslinkspeed - KVD_GetQoSLinkSpeed error 5
  $ kvd -c showmmm
  Management mix-and-match (MMM): disabled
  \tlibkvd 3.4.0, driver vexa 3.4.12.0 (esc)
  $ KVD_SIM_FLEET=$KVD_FLEETS/port.json kvd -c showmmm
  Management mix-and-match (MMM): enabled
  \tlibkvd 3.4.0, driver vexa 3.4.12.0 (esc)
  $ kvd -c 'showmmm 1'
  Usage: showmmm <no arguments>
  [247]
  $ grep '^kvd_show_mmm' trace | tail -1
  kvd_show_mmm(verbose=1) = 0
