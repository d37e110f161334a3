Management information, RNID and refresh on the default fleet.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ calls() { grep -c "^$1(" trace || :; }

The adapter's own management record.

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

setmgmt changes the UDP port (low 16 bits), the IP version and address.

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
  $ for c in setmgmt 'setmgmt 1 2'; do kvd -c "$c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: setmgmt UDP_Port [247]
  Usage: setmgmt UDP_Port [247]
  $ calls SetRNIDMgmtInfo
  0

RNID: port (p...) or node identification (anything else); a 76-byte accept.

  $ kvd -c 'rnid 21:00:06:4b:51:d0:00:02 p'
  
     0: 00000002  340010df  4b060021  0200d051  
    10: 4b060020  0100d051  4f545351  31372052  
  $ kvd -c 'rnid 20:00:06:4b:51:d0:00:01 n'
  
     0: 00000002  340010df  4b060021  0100d051  
    10: 4b060020  0100d051  4f545351  31372052  
  $ kvd -c 'rnid 20:00:06:4b:51:d0:00:01 x' > /dev/null
  $ kvd -c 'rnid 2100064b51d00002 port' > /dev/null
  $ grep -o '^SendRNID([^)]*)' trace
  SendRNID(board=0, wwn=21:00:06:4b:51:d0:00:02, type=1, length=1024)
  SendRNID(board=0, wwn=20:00:06:4b:51:d0:00:01, type=0, length=1024)
  SendRNID(board=0, wwn=20:00:06:4b:51:d0:00:01, type=0, length=1024)
  SendRNID(board=0, wwn=21:00:06:4b:51:d0:00:02, type=1, length=1024)
  $ grep '^SendRNID' trace | tail -1 | sed 's/.* out=//'
  02000000df1000342100064b51d000022000064b51d000015153544f52203731303020706f727420000000090000000100000001000000000000000000000000000000000000000000000000

Refusals; an unparsed WWN falls back to "set wwn".

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

refresh counts the library's events; an offline board does not refresh; with
the link down nothing answers an RNID.

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
  $ printf 'mbox downlink\nrnid 21:00:06:4b:51:d0:00:02 p\ngetmgmt\nquit\n' | kvd 2>&1 | sed -n '/^cmd>/,$p'
  cmd> Command: 0x6  Status: 0x0
  cmd> Cannot issue command
  cmd> Nodename 20:00:06:4b:51:a0:00:10
  portid 0x0 unittype:10 NumAttNode:0 TopDiscFlg:0
  UDPport 0x0 IPversion:0 IPaddr: 0.0.0.0
  cmd>  (no-eol)
