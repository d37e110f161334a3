FCF connection lists, discovered FCFs and per-target FCP priority. Board 1 is
FCoE with switches 1 (priority 128) and 2 (130); board 0 has three targets.

The list starts empty; the port logs in through the preferred FCF.

  $ kvd -b 1 -c fcoegetlist
  fcoegetlist - KVD_FCoEGetConnList returned 0x0
  \tEntries 0 (esc)
  $ kvd -b 1 -c fcoegetfcflist
  fcoegetfcflist - KVD_FCoEGetFCFTable returned 0x0
  \tFCFs discovered 2, shown 2 (esc)
  FCF 0:
  \tMAC 06:4b:51:fc:01:01 (esc)
  \tVLAN 1002 (esc)
  \tSwitch Name 20:01:06:4b:51:fc:01:00 (esc)
  \tFabric Name 10:00:06:4b:51:f2:00:01 (esc)
  \tFCMap x0efc00 (esc)
  \tPriority 128 (esc)
  \tState 2 logged in (esc)
  FCF 1:
  \tMAC 06:4b:51:fc:01:02 (esc)
  \tVLAN 1002 (esc)
  \tSwitch Name 20:02:06:4b:51:fc:01:00 (esc)
  \tFabric Name 10:00:06:4b:51:f2:00:01 (esc)
  \tFCMap x0efc00 (esc)
  \tPriority 130 (esc)
  \tState 1 available (esc)
  $ kvd -c fcoegetlist
  Cannot issue command
  fcoegetlist - KVD_FCoEGetConnList returned 0x5f
  [252]
  $ kvd -c fcoegetfcflist
  Cannot issue command
  fcoegetfcflist - KVD_FCoEGetFCFTable returned 0x5f
  [252]
  $ for c in fcoegetlist fcoegetfcflist; do kvd -b 1 -c "$c x"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: fcoegetlist <no arguments> [247]
  Usage: fcoegetfcflist <no arguments> [247]

A list naming switch 2 moves the login there.

  $ printf '1\nany\n20:02:06:4b:51:fc:01:00\nany\n0\n1\ny\n' | kvd -b 1 -c fcoesetlist -c fcoegetlist -c fcoegetfcflist > o; r=$?; sed '/^fcoegetfcflist/,$ {/^fcoeget\|^FCF\|State/!d}' o; (exit $r)
  Number of entries (0-16, 0 for any FCF): Entry 0:
  FCF MAC (or any): Switch Name (or any): Fabric Name (or any): VLAN (0 for any): Priority (0-255): Primary entry?
  Yes or No:: Setting FCF connection list to:
  \tEntries 1 (esc)
  Entry 0:
  \tFlags x000b valid primary (esc)
  \tFCF MAC any (esc)
  \tSwitch Name 20:02:06:4b:51:fc:01:00 (esc)
  \tFabric Name any (esc)
  \tVLAN any (esc)
  \tPriority 1 (esc)
  fcoesetlist - KVD_FCoESetConnList returned 0x0
  fcoegetlist - KVD_FCoEGetConnList returned 0x0
  \tEntries 1 (esc)
  Entry 0:
  \tFlags x000b valid primary (esc)
  \tFCF MAC any (esc)
  \tSwitch Name 20:02:06:4b:51:fc:01:00 (esc)
  \tFabric Name any (esc)
  \tVLAN any (esc)
  \tPriority 1 (esc)
  fcoegetfcflist - KVD_FCoEGetFCFTable returned 0x0
  FCF 0:
  \tState 3 excluded by the connection list (esc)
  FCF 1:
  \tState 2 logged in (esc)

A VLAN no FCF serves admits nothing; a MAC entry admits that FCF.

  $ printf '1\nany\nany\nany\n5\n0\nn\n' | kvd -b 1 -c fcoesetlist -c fcoegetfcflist -c linkinfo | grep -E 'State|returned|Link'
  fcoesetlist - KVD_FCoESetConnList returned 0x0
  fcoegetfcflist - KVD_FCoEGetFCFTable returned 0x0
  \tState 3 excluded by the connection list (esc)
  \tState 3 excluded by the connection list (esc)
  $ printf '1\n06:4b:51:fc:01:02\nany\nany\n0\n9\nn\n' | kvd -b 1 -c fcoesetlist -c fcoegetfcflist | grep -E 'State|MAC 06'
  \tFCF MAC 06:4b:51:fc:01:02 (esc)
  \tMAC 06:4b:51:fc:01:01 (esc)
  \tState 3 excluded by the connection list (esc)
  \tMAC 06:4b:51:fc:01:02 (esc)
  \tState 2 logged in (esc)

Sixteen entries at most; refused answers end with -9 before writing; more
FCFs than the shell's room of 32.

  $ for i in $(seq 16); do printf 'any\nany\nany\n0\n%d\nn\n' $i; done > sixteen
  $ (echo 16; cat sixteen) | kvd -b 1 -c fcoesetlist -c fcoegetlist | tail -3
  \tFabric Name any (esc)
  \tVLAN any (esc)
  \tPriority 16 (esc)
  $ export KVD_SIM_TRACE=$PWD/trace
  $ ask() { printf -- "$1" | kvd -b 1 -c fcoesetlist > out; s=$?; tail -1 out; return $s; }
  $ ask '17\n'
  Number of entries (0-16, 0 for any FCF): Number of entries invalid
  [247]
  $ ask '-1\n'
  Number of entries (0-16, 0 for any FCF): Number of entries invalid
  [247]
  $ ask '1\n06:4b:51\n'
  FCF MAC not converted
  [247]
  $ ask '1\nany\n2001064b51fc01\n'
  Switch Name not converted
  [247]
  $ ask '1\nany\nany\nzz\n'
  Fabric Name not converted
  [247]
  $ ask '1\nany\nany\nany\n4095\n'
  FCF MAC (or any): Switch Name (or any): Fabric Name (or any): VLAN (0 for any): VLAN value invalid
  [247]
  $ ask '1\nany\nany\nany\n0\n256\n'
  FCF MAC (or any): Switch Name (or any): Fabric Name (or any): VLAN (0 for any): Priority (0-255): Priority value invalid
  [247]
  $ grep -c '^KVD_FCoESetConnList' trace
  0
  [1]
  $ kvd -c fcoesetlist
  Cannot issue command
  fcoesetlist - KVD_FCoEGetConnList returned 0x5f
  [252]
  $ echo 0 | KVD_SIM_FAULT=KVD_FCoESetConnList=16 kvd -b 1 -c fcoesetlist > out 2> err; r=$?; tail -1 out; cat err; (exit $r)
  fcoesetlist - KVD_FCoESetConnList returned 0x10
  Cannot issue command
  [252]
  $ cat > fleet.json <<'JSON'
  > { "boards": [ { "board": 0, "wwpn": "10:00:06:4b:51:a0:04:00", "protocol": "fcoe",
  >   "port": { "fcfs": [ { "mac": "06:4b:51:fc:09:01", "switch_name": "20:01:06:4b:51:fc:09:00",
  >     "priority": 7, "vlans": [ 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17,
  >       18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33 ] } ] } } ] }
  > JSON
  $ KVD_SIM_FLEET=fleet.json kvd -c fcoegetfcflist > out; sed -n 2p out; grep -c '^FCF ' out; grep -c 'logged in' out
  \tFCFs discovered 33, shown 32 (esc)
  32
  1

The list is stored in the driver's region 23 (one record per entry): a
region read shows it, a region write is loaded into it and the port logs in
again, an image the driver cannot load (flags xffff) is refused whole, and a
restore empties it.

  $ printf '1\nany\n20:02:06:4b:51:fc:01:00\nany\n0\n1\ny\n23\n41\n1\n1\n23\n28\n2\nff\n23\n' |
  >   kvd -b 1 -c fcoesetlist -c 'dumpregion 23' -c 'mbox udtcfg_ext' -c fcoegetfcflist -c 'mbox udtcfg_ext' \
  >   -c fcoegetlist -c 'mbox udtcfg3_ext' -c fcoegetlist -c fcoegetfcflist > o
  $ sed '1,/fcoesetlist - /d' o | grep -v '^DATA\[\(0[4-9a-f]\|[1-3]\)\|^.\(MAC\|VLAN\|FCMap\|Fabric\|Priority\|FCF \)'
  DATA[000] 51 44 52 56 00 01 00 31 01 02 00 00 02 04 00 00
  DATA[010] 00 00 03 06 0e fc 00 00 00 00 04 1c 00 0b 00 00
  DATA[020] 01 00 00 00 00 00 00 00 20 02 06 4b 51 fc 01 00
  DATA[030] 00 00 00 00 00 00 00 00 ff ff ff ff ff ff ff ff
  region: offset: length: value (hex): Status: 0x0
  region 23 offset 41: 1 bytes of x01 written
  fcoegetfcflist - KVD_FCoEGetFCFTable returned 0x0
  \tFCFs discovered 2, shown 2 (esc)
  FCF 0:
  \tSwitch Name 20:01:06:4b:51:fc:01:00 (esc)
  \tState 2 logged in (esc)
  FCF 1:
  \tSwitch Name 20:02:06:4b:51:fc:01:00 (esc)
  \tState 3 excluded by the connection list (esc)
  region: offset: length: value (hex): IssueMbox error 22
  fcoegetlist - KVD_FCoEGetConnList returned 0x0
  \tEntries 1 (esc)
  Entry 0:
  \tFlags x000b valid primary (esc)
  \tSwitch Name 20:01:06:4b:51:fc:01:00 (esc)
  region: Status: 0x0
  region 23 restored
  fcoegetlist - KVD_FCoEGetConnList returned 0x0
  \tEntries 0 (esc)
  fcoegetfcflist - KVD_FCoEGetFCFTable returned 0x0
  \tFCFs discovered 2, shown 2 (esc)
  FCF 0:
  \tSwitch Name 20:01:06:4b:51:fc:01:00 (esc)
  \tState 2 logged in (esc)
  FCF 1:
  \tSwitch Name 20:02:06:4b:51:fc:01:00 (esc)
  \tState 1 available (esc)

Per-target FCP priority, active while the global flag is on.

  $ kvd -c getfcpconfig
  FCP targets 3
  Target 0:
  \tWWPN 21:00:06:4b:51:d0:00:01 (esc)
  \tPriority 0 (esc)
  \tFlags x0000 (esc)
  Target 1:
  \tWWPN 21:00:06:4b:51:d0:00:02 (esc)
  \tPriority 0 (esc)
  \tFlags x0000 (esc)
  Target 2:
  \tWWPN 21:00:06:4b:51:d1:00:01 (esc)
  \tPriority 0 (esc)
  \tFlags x0000 (esc)
  $ kvd -c 'setfcpconfig 21:00:06:4b:51:d0:00:02 7 1' -c getfcpconfig -c 'setfcppriority 1' -c getfcpconfig | grep -A3 'Target 1'
  Target 1:
  \tWWPN 21:00:06:4b:51:d0:00:02 (esc)
  \tPriority 7 (esc)
  \tFlags x0001 enabled (esc)
  --
  Target 1:
  \tWWPN 21:00:06:4b:51:d0:00:02 (esc)
  \tPriority 7 (esc)
  \tFlags x0003 enabled active (esc)
  $ kvd -c 'setfcpconfig 21:00:06:4b:51:d0:00:02 7 1' -c 'setfcpconfig 2100064b51d00002 3 0' -c getfcpconfig | grep -A3 'Target 1'
  Target 1:
  \tWWPN 21:00:06:4b:51:d0:00:02 (esc)
  \tPriority 3 (esc)
  \tFlags x0000 (esc)

Every list pauses after num_lines items; x stops it.

  $ printf 'set lines 1\ngetfcpconfig\n\nx\nset board 1\nfcoegetfcflist\nx\nfcoesetlist\n2\n' > pages
  $ printf 'any\nany\nany\n0\n%d\nn\n' 1 2 >> pages; printf '\nfcoegetlist\nx\nquit\n' >> pages
  $ kvd < pages | grep -E '^(cmd> )*(Target|FCF|Entry) [0-9]|Hit|fcoe'
  Target 0:
   Hit <CR> to continue (x to abort): 
  Target 1:
   Hit <CR> to continue (x to abort): 
  cmd> cmd> fcoegetfcflist - KVD_FCoEGetFCFTable returned 0x0
  FCF 0:
   Hit <CR> to continue (x to abort): 
  Entry 0:
   Hit <CR> to continue (x to abort): 
  Entry 1:
  fcoesetlist - KVD_FCoESetConnList returned 0x0
  cmd> fcoegetlist - KVD_FCoEGetConnList returned 0x0
  Entry 0:
   Hit <CR> to continue (x to abort): 

Refusals and limits.

  $ kvd -c "setfcpconfig 10:00:06:4b:51:a7:00:44 1 1"
  Cannot issue command
  [252]
  $ kvd -c "setfcpconfig 21:00:06:4b:51:d9:00:01 1 1"
  Cannot issue command
  [252]
  $ kvd -c "setfcpconfig 21:00:06:4b:51:d0:00:02 8 1"
  Usage: setfcpconfig <target wwpn> <priority 0-7> <flag 0-off, 1-on>
  [247]
  $ kvd -c "setfcpconfig 21:00:06:4b:51:d0:00:02 1 2"
  Usage: setfcpconfig <target wwpn> <priority 0-7> <flag 0-off, 1-on>
  [247]
  $ kvd -c "setfcpconfig 21:00:06:4b:51 1 1"
  arg 21:00:06:4b:51 - arg length 14 or missing ':'
  [251]
  $ kvd -c "setfcpconfig 21:00:06:4b:51:d0:00:02 1"
  Usage: setfcpconfig <target wwpn> <priority 0-7> <flag 0-off, 1-on>
  [247]
  $ kvd -c 'getfcpconfig 1'
  Usage: getfcpconfig <no arguments>
  [247]
  $ KVD_SIM_FAULT=KVD_QoSGetConfig=5 kvd -c getfcpconfig
  Cannot issue command
  [252]
