Event subscriptions and callbacks; events come through kvdev while kvd waits.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ export KVD_SIM_EVENTS=$PWD/ev
  $ export PATH=$TESTDIR:$PATH
  $ banner() { sed '1,/^Adapter 2/d'; }

Usage texts.

  $ kvd -c revent
  Usage: revent [link | mlink | rscn | |vprscn | temp] [ALL]
  Usage: revent [route | path] route_idx [path_idx]
  Usage: revent ct {value} [ALL]
  [247]
  $ for c in 'revent link 1 2 ALL' 'revent mlink' 'revent ALL' 'revent ct' urevent 'getevent 1 2'; do kvd -c "$c" | head -1; done
  Usage: revent [link | mlink | rscn | |vprscn | temp] [ALL]
  Usage: revent [link | mlink | rscn | temp ] [ALL]
  Usage: revent [link | mlink | rscn | temp ] [ALL]
  Usage: revent [link | mlink | rscn | temp ] [ALL]
  Usage: urevent event_id
  Usage: getevent count
  $ grep -c Register trace
  0
  [1]

What each keyword registers; a refused registration's id prints as it came.

  $ kvd -c 'revent link ALL'; kvd -c 'revent link'; kvd -c 'revent rscn'; kvd -c 'revent vprscn ALL'
  eventid: 1
  eventid: 1
  eventid: 1
  eventid: 1
  $ kvd -c 'revent temp'; kvd -c 'revent ct 0x20'; kvd -c 'revent ct 0x12345 ALL'
  eventid: 1
  eventid: 1
  eventid: 1
  $ grep Register trace
  RegisterForEvent(board=0, mask=0x81, port=0, size=168, flags=0) = 1
  RegisterForEvent(board=0, mask=0x1, port=0, size=168, flags=0) = 1
  RegisterForEvent(board=0, mask=0x2, port=0, size=1024, flags=0) = 1
  RegisterForEvent(board=0, mask=0xc0, port=0, size=1024, flags=0) = 1
  RegisterForEvent(board=0, mask=0x20, port=0, size=0, flags=0) = 1
  RegisterForCTEvents(board=0, ct_value=0x20, context=0x51515151) = 1
  RegisterForCTEvents(board=0, ct_value=0x2345, context=0x51515151) = 1
  $ KVD_SIM_FAULT=RegisterForEvent=0 kvd -c 'revent link'
  eventid: 0

Link events after downlink and initlink; without ALL only the first; on a
loop the event carries the loop map.

  $ cat > cmds <<'X'
  > revent link ALL
  > revent link
  > mbox downlink
  > ! kvdev sync
  > mbox initlink
  > 0
  > ! kvdev sync
  > quit
  > X
  $ events() { grep -o 'Brd .*\|PortID .*\|ALPAmap .*\|Portname .*\|RSCN .*\|VPORTRSCN .*\|temperature_event .*\|CT Buffer.*' "$@"; }
  $ kvd < cmds > out; echo $?
  1
  $ events out
  Brd 0 Event 0x3  Up 0x1  Down 0x1  Multi 0x0
  PortID 0x0  alpa 0x0  topology 0x3 state 0x1
  ALPAmap 0:
  Portname 10:00:06:4b:51:a0:00:10  Nodename 20:00:06:4b:51:a0:00:10
  Brd 0 Event 0x3  Up 0x1  Down 0x1  Multi 0x0
  PortID 0x0  alpa 0x0  topology 0x3 state 0x1
  ALPAmap 0:
  Portname 10:00:06:4b:51:a0:00:10  Nodename 20:00:06:4b:51:a0:00:10
  Brd 0 Event 0x4  Up 0x2  Down 0x1  Multi 0x0
  PortID 0x10200  alpa 0x0  topology 0x3 state 0x6
  ALPAmap 0:
  Portname 10:00:06:4b:51:a0:00:10  Nodename 20:00:06:4b:51:a0:00:10
  $ grep -c 'Command: 0x[56]  Status: 0x0' out
  2
  $ grep '^unRegisterForEvent' trace | tail -3
  unRegisterForEvent(board=0, event_id=0) = 0
  unRegisterForEvent(board=1, event_id=0) = 0
  unRegisterForEvent(board=2, event_id=0) = 0
  $ KVD_SIM_FLEET=$KVD_FLEETS/loop.json kvd < cmds > out
  [1]
  $ events out | grep ALPAmap
  ALPAmap 0:
  ALPAmap 0:
  ALPAmap 3: e8 e4 e2

Events from outside: temperatures, RSCN, vport RSCN, a CT request echoed back.

  $ cat > reqs <<'X'
  > 0 temp 80
  > 0 temp 95
  > 0 temp 80
  > 0 temp 30
  > 0 tempevent 0 41
  > 0 tempevent 7 12
  > 0 rscn 0x010300
  > 0 vprscn 10:00:06:4b:51:a0:00:99 0x10400
  > 0 ct 0x20 0102030405060708090a
  > 0 ctresp
  > 0 link down
  > 1 temp 99
  > X
  $ cat > cmds <<'X'
  > revent temp ALL
  > revent rscn ALL
  > revent vprscn ALL
  > revent ct 0x20
  > ! kvdev < reqs
  > quit
  > X
  $ kvd < cmds | banner
  cmd> eventid: 1
  cmd> eventid: 2
  cmd> eventid: 3
  cmd> eventid: 4
  cmd> temperature_event board 0 Temerature exceeded threshold. tempType 0x2 temperature 80 D Celsius. 
  ok
  temperature_event board 0 Critical temperature event. tempType 0x1 temperature 95 D Celsius. 
  ok
  temperature_event board 0 Temerature exceeded threshold. tempType 0x2 temperature 80 D Celsius. 
  ok
  temperature_event board 0 Temperature returned to normal. tempType 0x3 temperature 30 D Celsius. 
  ok
  temperature_event board 0 Unknown Event. tempType 0x0 temperature 41 D Celsius. 
  ok
  temperature_event board 0 tempType 0x7 temperature 12 D Celsius. 
  ok
  RSCN Buffer: 8
  
     0: 61040008  00010300  
  ok
  VPORTRSCN board: 0 wwpn: 10:00:06:4b:51:a0:00:99 RSCN Buffer: 8
  
     0: 61040008  00010400  
  ok
  CT Buffer: 0 cnt:10 tag:0x1 ctx:0x51515151
  
     0: 01020304  05060708  090a0000  
  ok tag=1
  ok tag=1 data=0102030405060708090a
  ok
  ok
  cmd>  (no-eol)
  $ grep '^SendMgmtResponse' trace
  SendMgmtResponse(board=0, length=10, tag=1) = 0 in=0102030405060708090a

Dropping subscriptions; the event log; malformed requests.

  $ cat > reqs <<'X'
  > 0 temp 80
  > 0 temp 20
  > bogus
  > 32 temp 1
  > 0 temp hot
  > 0 temp 151
  > 0 link sideways
  > 0 ct 0x20 0g
  > 0 rscn
  > X
  $ cat > cmds <<'X'
  > revent temp ALL
  > revent temp ALL
  > urevent 1
  > ! kvdev '0 temp 80'
  > urevent 0
  > ! kvdev < reqs
  > getevent 2
  > getevent 20
  > getevent 20
  > quit
  > X
  $ kvd < cmds | banner
  cmd> eventid: 1
  cmd> eventid: 2
  cmd> cmd> temperature_event board 0 Temerature exceeded threshold. tempType 0x2 temperature 80 D Celsius. 
  ok
  cmd> cmd> ok
  ok
  error: board "bogus" not 0..31
  error: board "32" not 0..31
  error: temperature not -40..150
  error: temperature not -40..150
  error: unknown request "link" or wrong word count
  error: payload not 1..1024 bytes of hex
  error: unknown request "rscn" or wrong word count
  cmd> Event Data1    Data2    Data3    Data4    2 Entries 0 Missed
  0020  00000002 00000050 00000000 00000000
  0020  00000003 00000014 00000000 00000000
  cmd> Event Data1    Data2    Data3    Data4    0 Entries 0 Missed
  cmd> Event Data1    Data2    Data3    Data4    0 Entries 0 Missed
  cmd>  (no-eol)

The log keeps 64 entries (the rest missed); the pager; a count past the room.

  $ for i in $(seq 35); do echo '2 temp 80'; echo '2 temp 20'; done > reqs
  $ printf "set board 2\n! kvdev < reqs > /dev/null\nset lines 4\ngetevent 6\n\ngetevent 6\nx\nset lines 0\ngetevent 100000\nquit\n" > cmds
  $ kvd < cmds | banner | head -17
  cmd> cmd> cmd> cmd> Event Data1    Data2    Data3    Data4    6 Entries 6 Missed
  0020  00000002 00000050 00000000 00000000
  0020  00000003 00000014 00000000 00000000
  0020  00000002 00000050 00000000 00000000
  0020  00000003 00000014 00000000 00000000
  
   Hit <CR> to continue (x to abort): 
  0020  00000002 00000050 00000000 00000000
  0020  00000003 00000014 00000000 00000000
  cmd> Event Data1    Data2    Data3    Data4    6 Entries 0 Missed
  0020  00000002 00000050 00000000 00000000
  0020  00000003 00000014 00000000 00000000
  0020  00000002 00000050 00000000 00000000
  0020  00000003 00000014 00000000 00000000
  
   Hit <CR> to continue (x to abort): 
  cmd> cmd> Event Data1    Data2    Data3    Data4    52 Entries 0 Missed
  $ grep '^GetEventBuffer' trace | tail -1 | cut -c1-57
  GetEventBuffer(board=2, count=3276) = 0 entries=52 out=20

The channel's path and directory checks, its mode, its removal, long lines.

  $ touch taken
  $ KVD_SIM_EVENTS=$PWD/taken kvd -c getversions
  libkvd: KVD_SIM_EVENTS: /*/taken: already exists, refusing to use it; no event channel (glob)
  Using libkvd version: 3.4.0
  $ mkdir open; chmod 775 open
  $ KVD_SIM_EVENTS=$PWD/open/ev kvd -c getversions
  libkvd: KVD_SIM_EVENTS: /*/open/ev: its directory is group- or world-writable; no event channel (glob)
  Using libkvd version: 3.4.0
  $ KVD_SIM_EVENTS=$PWD/missing/ev kvd -c getversions
  libkvd: KVD_SIM_EVENTS: /*/missing/ev: its directory does not exist; no event channel (glob)
  Using libkvd version: 3.4.0
  $ python3 -c "print('0 temp 1' + 4088 * ' '); print('0 temp 1' + 4089 * ' ')" > long
  $ printf '! stat -c %%a ev\n! kvdev < long\n! kvdev sync\nquit\n' > cmds
  $ kvd < cmds | banner
  cmd> 700
  cmd> ok
  error: request too long
  cmd> ok
  cmd>  (no-eol)
  $ ls ev
  ls: cannot access 'ev': No such file or directory
  [2]

SIGTERM during a flood: status 1 at once, no event's lines cut in two.

  $ mkfifo in
  $ exec 3<>in
  $ kvd < in > out 2>&1 &
  $ pid=$!
  $ echo 'revent temp ALL' >&3
  $ for i in $(seq 400); do grep -q 'eventid' out && break; sleep 0.05; done
  $ for i in $(seq 3000); do echo '0 temp 80'; echo '0 temp 20'; done | kvdev > /dev/null 2>&1 &
  $ for i in $(seq 400); do [ $(grep -c temperature_event out) -gt 100 ] && break; sleep 0.05; done
  $ kill -TERM $pid
  $ wait $pid
  [1]
  $ tail -1 trace | cut -d'(' -f1
  KVD_FreeDiagEnv
  $ sed '1,/^Adapter 2/d' out | grep -v '^\(cmd> eventid: 1\|temperature_event board 0 \(Temerature exceeded threshold\.\|Temperature returned to normal\.\) tempType 0x[23] temperature [28]0 D Celsius\. \)$' | sed 's/temperature_event board 0 .*//'
  cmd> 
  $ ls ev
  ls: cannot access 'ev': No such file or directory
  [2]
  $ wait
