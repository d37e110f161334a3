Management information, RNID and refresh on the default fleet.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ calls() { grep -c "^$1(" trace || :; }

The adapter's own record: its node name, its port identifier on the fabric,
a host unit, one attached node (the switch), no management address yet.

  $ kvd -c getmgmt
  Nodename 20:00:06:4b:51:a0:00:10
  portid 0x10200 unittype:10 NumAttNode:1 TopDiscFlg:0
  UDPport 0x0 IPversion:0 IPaddr: 0.0.0.0
  $ kvd -b 2 -c getmgmt | head -2
  Nodename 20:00:06:4b:51:c8:00:30
  portid 0x30500 unittype:10 NumAttNode:1 TopDiscFlg:0
  $ kvd -c 'getmgmt x'
  Usage: getmgmt
  [247]

setmgmt after getmgmt changes the UDP port (its low 16 bits), the IP version
and the fixed test address, and sends back the rest as the adapter gave it.

  $ kvd <<'EOF' 2>&1 | sed -n '/^cmd>/,$p'
  > getmgmt
  > setmgmt 0x12345
  > getmgmt
  > setmgmt 8000
  > getmgmt
  > quit
  > EOF
  cmd> Nodename 20:00:06:4b:51:a0:00:10
  portid 0x10200 unittype:10 NumAttNode:1 TopDiscFlg:0
  UDPport 0x0 IPversion:0 IPaddr: 0.0.0.0
  cmd> cmd> Nodename 20:00:06:4b:51:a0:00:10
  portid 0x10200 unittype:10 NumAttNode:1 TopDiscFlg:0
  UDPport 0x2345 IPversion:1 IPaddr: 1.2.3.4
  cmd> cmd> Nodename 20:00:06:4b:51:a0:00:10
  portid 0x10200 unittype:10 NumAttNode:1 TopDiscFlg:0
  UDPport 0x1f40 IPversion:1 IPaddr: 1.2.3.4
  cmd>  (no-eol)
  $ grep -o '^SetRNIDMgmtInfo.*' trace | tail -1
  SetRNIDMgmtInfo(board=0) = 0 in=2000064b51a000100a00000000020100010000000100401f0102030400000000000000000000000000000000
  $ : > trace
  $ kvd -c setmgmt
  Usage: setmgmt UDP_Port
  [247]
  $ kvd -c 'setmgmt 1 2'
  Usage: setmgmt UDP_Port
  [247]
  $ calls SetRNIDMgmtInfo
  0

RNID to a remote port: an accept with the common identification data (port
and node names) and the topology-discovery data (the port's symbolic name
as vendor data, a storage unit, its port number on its node). The third
word chooses port (p...) or node identification (anything else).

  $ kvd -c 'rnid 21:00:06:4b:51:d0:00:02 p'
  
     0: 00000002  340010df  4b060021  0200d051  
    10: 4b060020  0100d051  4f545351  31372052  
  $ kvd -c 'rnid 20:00:06:4b:51:d0:00:01 n'
  
     0: 00000002  340010df  4b060021  0100d051  
    10: 4b060020  0100d051  4f545351  31372052  
  $ kvd -c 'rnid 20:00:06:4b:51:d0:00:01 x'
  
     0: 00000002  340010df  4b060021  0100d051  
    10: 4b060020  0100d051  4f545351  31372052  
  $ kvd -c 'rnid 2100064b51d00002 port'
  
     0: 00000002  340010df  4b060021  0200d051  
    10: 4b060020  0100d051  4f545351  31372052  
  $ grep -o '^SendRNID([^)]*)' trace
  SendRNID(board=0, wwn=21:00:06:4b:51:d0:00:02, type=1, length=1024)
  SendRNID(board=0, wwn=20:00:06:4b:51:d0:00:01, type=0, length=1024)
  SendRNID(board=0, wwn=20:00:06:4b:51:d0:00:01, type=0, length=1024)
  SendRNID(board=0, wwn=21:00:06:4b:51:d0:00:02, type=1, length=1024)
  $ grep '^SendRNID' trace | tail -1 | sed 's/.* out=//'
  02000000df1000342100064b51d000022000064b51d000015153544f52203731303020706f727420000000090000000100000001000000000000000000000000000000000000000000000000

The whole accept is 76 bytes.

  $ grep '^SendRNID' trace | tail -1 | sed 's/.* out=//' | awk '{ print length($0) / 2 }'
  76

A WWN nobody answers to, a port name asked as a node name, and a WWN that
does not parse (then the WWN set with "set wwn" stands in).

  $ kvd -c 'rnid 21:00:06:4b:51:d0:00:09 p'
  Cannot issue command
  [252]
  $ kvd -c 'rnid 21:00:06:4b:51:d0:00:02'
  Cannot issue command
  [252]
  $ kvd -c 'rnid 2100064b51d0'
  arg 2100064b51d0 - arg length 12 or missing ':'
  rnid:2100064b51d0 bad port_wwpn
  [251]
  $ printf 'set wwn 21:00:06:4b:51:d0:00:02\nrnid zz p\nquit\n' | kvd 2>&1 | sed -n '/^cmd>/,$p'
  cmd> cmd> arg zz - arg length 2 or missing ':'
  
     0: 00000002  340010df  4b060021  0200d051  
    10: 4b060020  0100d051  4f545351  31372052  
  cmd>  (no-eol)
  $ kvd -c rnid
  Usage: rnid wwnn [p|n]
  [247]

refresh shows the number of adapter events the library holds: a link that
goes down and up adds two. An offline board does not refresh.

  $ kvd -c refresh
  HBA refresh timer 0x0
  $ printf 'mbox downlink\nmbox initlink\n0\nrefresh\nsdiag 0x12\nrefresh\nrnid 21:00:06:4b:51:d0:00:02 p\nsetmgmt 1\ngetmgmt\nquit\n' | kvd 2>&1 | sed -n '/^cmd>/,$p'
  cmd> Command: 0x6  Status: 0x0
  cmd> link flags: Command: 0x5  Status: 0x0
  cmd> HBA refresh timer 0x2
  cmd> Offline Mode
  cmd> Cannot issue command
  cmd> Cannot issue command
  cmd> Cannot issue command
  cmd> Nodename 20:00:06:4b:51:a0:00:10
  portid 0x10200 unittype:10 NumAttNode:1 TopDiscFlg:0
  UDPport 0x0 IPversion:0 IPaddr: 0.0.0.0
  cmd>  (no-eol)
  $ kvd -c 'refresh now'
  Usage: refresh
  [247]
  $ KVD_SIM_FAULT=GetEventsCount=1 kvd -c refresh
  Cannot issue command
  [252]

With the link down nothing answers an RNID.

  $ printf 'mbox downlink\nrnid 21:00:06:4b:51:d0:00:02 p\ngetmgmt\nquit\n' | kvd 2>&1 | sed -n '/^cmd>/,$p'
  cmd> Command: 0x6  Status: 0x0
  cmd> Cannot issue command
  cmd> Nodename 20:00:06:4b:51:a0:00:10
  portid 0x0 unittype:10 NumAttNode:0 TopDiscFlg:0
  UDPport 0x0 IPversion:0 IPaddr: 0.0.0.0
  cmd>  (no-eol)
