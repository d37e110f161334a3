FCoE parameters and the FCP priority flag; board 1 is FCoE (FC-MAP 0x0efc00,
VLAN 1002). `rec CALL` prints the record the last CALL received.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ rec() { grep "^$1(" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/'; }
  $ calls() { grep -c "^$1(" trace || :; }

fcoegetparams: the record in the library's byte order.

  $ kvd -b 1 -c fcoegetparams
  fcoegetparams - KVD_FCoEGetParams returned 0x0
  \tVersion x1 (esc)
  \tFCMap x00fc0e (esc)
  \tVLanValid invalid (esc)
  \tVLanid x0000 (esc)
  $ rec KVD_FCoEGetParams
  01000000000000000000
  $ kvd -c fcoegetparams
  fcoegetparams - KVD_FCoEGetParams returned 0x5f
  [95]
  $ kvd -c 'fcoegetparams x'
  Usage: fcoegetparams <no arguments>
  [247]
  $ calls KVD_FCoEGetParams
  2

The dialogue: defaults first, then one answer a line. "n" changes nothing.

  $ echo n | kvd -b 1 -c fcoesetparams
  Default values for:
  FCMap - x00fc0e
  VLAN Valid unused
  VLAN_Tag - x0000
  Change defaults? (y/n)
  No changes made
  $ calls KVD_FCoESetParams
  0

Refused answers end with -9 before the library is called.

  $ ask() { printf "$1" | kvd -b 1 -c fcoesetparams > out; s=$?; tail -1 out; return $s; }
  $ for a in 'x\n' '' '\n' 'y\nzz\n' 'y\n0efcxx\n' 'y\n00fc0e\n2\n' 'y\n00fc0e\n-1\n' 'y\n00fc0e\nx\n' 'y\n00fc0e\n1\n0g\n' 'y\n00fc0e\n1\n'; do ask "$a"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Did not understand response [247]
  Did not understand response [247]
  Did not understand response [247]
  FCMap values not converted [247]
  FCMap values not converted [247]
  VLAN Valid value invalid [247]
  VLAN Valid value invalid [247]
  VLAN Valid value invalid [247]
  VLAN_Tag values not converted [247]
  VLAN_Tag values not converted [247]
  $ kvd -b 1 -c 'fcoesetparams 1'
  Usage: fcoesetparams <no arguments>
  [247]
  $ calls KVD_FCoESetParams
  0

A refused answer takes the rest of its line with it.

  $ printf 'set board 1\nfcoesetparams\ny\nzz adapters\nset\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> Default values for:
  FCMap - x00fc0e
  VLAN Valid unused
  VLAN_Tag - x0000
  Change defaults? (y/n)
  Enter the six hex FCMap values:
  FCMap values not converted
  cmd> board 1  ring 0  iocb 0 lines 16
  cmd>  (no-eol)

VLAN 4000 has no FCF: the link stays down; VLAN 1002 brings it back.

  $ printf 'set board 1\nfcoesetparams\ny\n00fc0e\n1\n0fa0\nfcoegetparams\nlinkinfo\nqoslinkspeed\nfcoesetparams\ny\n00fc0e\n1\n03ea\nqoslinkspeed\nquit\n' | kvd | sed -n '/^cmd>/,$p' | sed '/^cmd> QoS Speed - x0000$/,/^fcoesetparams/{/^cmd> QoS\|^fcoesetparams/!d}'
  cmd> cmd> Default values for:
  FCMap - x00fc0e
  VLAN Valid unused
  VLAN_Tag - x0000
  Change defaults? (y/n)
  Enter the six hex FCMap values:
  Is the VLanId valid? Enter 0 for unused or 1 for valid:
  Enter the four hex VLAN_Tag values:
  Setting fcoe paramters to:
  FCMap - x00fc0e
  VLAN Valid valid
  VLAN_Tag - x0fa0
  fcoesetparams - KVD_FCoESetParams returned 0x0
  cmd> fcoegetparams - KVD_FCoEGetParams returned 0x0
  \tVersion x1 (esc)
  \tFCMap x00fc0e (esc)
  \tVLanValid valid (esc)
  \tVLanid x0fa0 (esc)
  cmd> Event 0x3  Up 0x1  Down 0x1  Multi 0x0
  PortID 0x0  alpa 0x0  topology 0x3 state 0x1
  ALPAmap 0:
  Portname 10:00:06:4b:51:b4:00:20  Nodename 20:00:06:4b:51:b4:00:20
  cmd> QoS Speed - x0000
  fcoesetparams - KVD_FCoESetParams returned 0x0
  cmd> QoS Speed - x000a
  cmd>  (no-eol)
  $ grep '^KVD_FCoESetParams(' trace | sed 's/ out=.*//'
  KVD_FCoESetParams(board=1) = 0 command=FCOE_SET_PARAMS in=010000000efc0001a00f
  KVD_FCoESetParams(board=1) = 0 command=FCOE_SET_PARAMS in=010000000efc0001ea03

0efc00 is confirmed as x0efc00 and sent as 00fc0e.

  $ printf 'set board 1\nfcoesetparams\ny\n0efc00\n0\nqoslinkspeed\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> Default values for:
  FCMap - x00fc0e
  VLAN Valid unused
  VLAN_Tag - x0000
  Change defaults? (y/n)
  Enter the six hex FCMap values:
  Is the VLanId valid? Enter 0 for unused or 1 for valid:
  Setting fcoe paramters to:
  FCMap - x0efc00
  VLAN Valid unused
  VLAN_Tag - x0000
  fcoesetparams - KVD_FCoESetParams returned 0x0
  cmd> QoS Speed - x0000
  cmd>  (no-eol)
  $ rec KVD_FCoESetParams
  0100000000fc0e000000

VLANs 1 to 4094; a Fibre Channel board has no FCoE parameters.

  $ ask "y\n00fc0e\n1\n0000\n"
  fcoesetparams - KVD_FCoESetParams returned 0x16
  [22]
  $ ask "y\n00fc0e\n1\n0fff\n"
  fcoesetparams - KVD_FCoESetParams returned 0x16
  [22]
  $ ask "y\n00fc0e\n1\n0ffe\n"
  fcoesetparams - KVD_FCoESetParams returned 0x0
  $ ask "y\n00fc0e\n1\n0001\n"
  fcoesetparams - KVD_FCoESetParams returned 0x0
  $ printf 'y\n00fc0e\n0\n' | kvd -c fcoesetparams | tail -1
  fcoesetparams - KVD_FCoESetParams returned 0x5f

A fleet sets other stored parameters and another FCF.

  $ KVD_SIM_FLEET=$KVD_FLEETS/port.json kvd -c fcoegetparams
  fcoegetparams - KVD_FCoEGetParams returned 0x0
  \tVersion x1 (esc)
  \tFCMap x2afc0e (esc)
  \tVLanValid valid (esc)
  \tVLanid x03eb (esc)

FCP priority on and off.

  $ printf 'getfcppriority\nsetfcppriority 0x1\ngetfcppriority\nsetfcppriority 0\ngetfcppriority\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> FCP Priority - 0 off
  cmd> cmd> FCP Priority - 1 on
  cmd> cmd> FCP Priority - 0 off
  cmd>  (no-eol)
  $ grep '^KVD_QoSSetGlobalFlag(' trace | tail -2
  KVD_QoSSetGlobalFlag(board=0, flag=1) = 0 command=QOS_SET_FLAG
  KVD_QoSSetGlobalFlag(board=0, flag=0) = 0 command=QOS_SET_FLAG
  $ for c in 'setfcppriority 2' 'setfcppriority -1' setfcppriority 'getfcppriority 1'; do kvd -c "$c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: <flag 0-off, 1-on> [247]
  Usage: <flag 0-off, 1-on> [247]
  Usage: <flag 0-off, 1-on> [247]
  Usage: <no arguments> [247]
  $ calls KVD_QoSSetGlobalFlag
  2

An unknown flag value; a failed query; a failed set returns 1 and ends the
interactive loop.

  $ KVD_SIM_FLEET=$KVD_FLEETS/port.json kvd -c getfcppriority
  FCP Priority - 5 unknown
  $ KVD_SIM_FAULT=KVD_QoSGetGlobalFlag=5 kvd -c getfcppriority
  getfcppriority - KVD_QoSGetGlobalFlag returned 0x5
  [5]
  $ KVD_SIM_FAULT=KVD_QoSSetGlobalFlag=16 kvd -c 'setfcppriority 1'
  setfcppriority - KVD_QoSSetGlobalFlag returned 0x10
  [1]
  $ printf 'set board 5\nsetfcppriority 1\nadapters\nquit\n' | kvd > out
  $ sed -n '/^cmd>/,$p' out
  cmd> cmd> setfcppriority - KVD_QoSSetGlobalFlag returned 0x13
  $ tail -1 trace
  KVD_QoSSetGlobalFlag(board=5, flag=1) = 19
