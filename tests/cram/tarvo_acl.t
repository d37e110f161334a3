Access lists and virtual links (board 1; fabric 10:00:06:4b:51:f2:00:01).
`sent OFF LEN [NAME]` cuts bytes out of the last record sent; `calls` counts.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ sent() { grep "^KVD_SendTarvoCommand(.*command=${3:-}" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($1 * 2 + 1))-$(($1 * 2 + $2 * 2)); }
  $ calls() { grep -c '^KVD_SendTarvoCommand' trace || :; }

Usage texts; createvl with the three arguments its usage shows is refused.

  $ kvd -b 1 -c 'tarvo getfacl'
  Usage: tarvo getfcal <logical port id>
  
  $ kvd -b 1 -c 'tarvo setfacl 0 2000000000000001 1000000000000001'
  Usage: tarvo setfcal <logical port id> <sw_name> <fabric name> <Permit=1, deny =0>
  
  $ kvd -b 1 -c 'tarvo createvl 0 2000000000000001 1000000000000001'
  Usage: tarvo createvl <lport_id> <sw_name> <fabric name>
  $ kvd -b 1 -c 'tarvo deletevl'
  Usage: tarvo deletevl <handle>
  
  $ calls
  0

getfacl on a port with no entries.

  $ kvd -b 1 -c 'tarvo getfacl 0'
  returned facls :0
  total facls :0
  Good
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=36) = 0 command=GET_FACL
  $ sent 0 12
  260000000000000024000000

setfacl sends the list back with the entry appended (the reply holds one).

  $ kvd -b 1 -c 'tarvo setfacl 1 2000000000000001 1000000000000001 1' | tail -1
  Good
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace | tail -2
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=36) = 0 command=GET_FACL
  KVD_SendTarvoCommand(board=1, cmd_len=32, rsp_len=36) = 0 command=SET_FACL
  $ sent 0 32
  2500000001000000010000001000000000000001200000000000000101000000
  $ printf 'set board 1\ntarvo setfacl 1 2000000000000001 1000000000000001 1\ntarvo setfacl 1 2000000000000002 1000000000000001 0\ntarvo getfacl 1\ntarvo setfacl 1 2000000000000003 1000000000000001 1\ntarvo getfacl 1\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> returned facls :0
  total facls :0
  Good
  cmd> returned facls :1
  total facls :1
  Good
  cmd> returned facls :1
  total facls :2
  switch name : 2000000000000001
  fabric name : 1000000000000001
  ACC CTRL 1
  Good
  cmd> returned facls :1
  total facls :2
  Good
  cmd> returned facls :1
  total facls :2
  switch name : 2000000000000001
  fabric name : 1000000000000001
  ACC CTRL 1
  Good
  cmd>  (no-eol)
  $ grep -o '^KVD_SendTarvoCommand(.*cmd_len=[0-9]*' trace | tail -2
  KVD_SendTarvoCommand(board=1, cmd_len=52
  KVD_SendTarvoCommand(board=1, cmd_len=12
  $ sent 8 4 SET_FACL
  02000000

A name that does not parse falls back on the current WWN.

  $ kvd -b 1 -c 'tarvo setfacl 1 sw 1000000000000001 1'
  arg sw - arg length 2 or missing ':'
  tarvo setfacl:1000000000000001 bad Switch port_wwpn cur_wwn 
  $ kvd -b 1 -c 'tarvo setfacl 1 2000000000000001 fab 0'
  arg fab - arg length 3 or missing ':'
  tarvo setfacl:0 bad Fabric port_wwpn cur_wwn 
  $ printf 'set board 1\nset wwn 2000000000000005\ntarvo setfacl 2 sw fab 1\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> cmd> arg sw - arg length 2 or missing ':'
  arg fab - arg length 3 or missing ':'
  returned facls :0
  total facls :0
  Good
  cmd>  (no-eol)
  $ sent 12 20 SET_FACL
  2000000000000005200000000000000501000000

createvl takes the current WWN for both names; the link takes the FCF's
handle (one link an FCF: 11); no link or no such FCF is "not found" (9).

  $ kvd -b 1 -c 'tarvo createvl 0'
  tarvo setcfoeparams:(null) bad Switch port_wwpn cur_wwn 
  $ printf 'set board 1\nset wwn 10:00:06:4b:51:f2:00:01\ntarvo createvl 0\ntarvo createvl 1\ntarvo getfcflist\ntarvo deletevl 0x100\ntarvo deletevl 0x100\ntarvo deletevl 0x101\ntarvo getfcflist\nquit\n' | kvd | sed -n '/^cmd>/,$p' | grep -Ev '^(mac|switch|fabric|fc_map|Control|Supported)'
  cmd> cmd> cmd> Good
  cmd> Tarvo command error. code=11.
  cmd> returned fcfs:2
  total fcfs:2
  active fcfs:2
  handle:100 vlan_id:3ea
  FCF_READY_STATE
  handle:101 vlan_id:3ea
  FCF_AVAILABLE_STATE
  cmd> Good
  cmd> Tarvo command error. code=9.
  cmd> Tarvo command error. code=9.
  cmd> returned fcfs:2
  total fcfs:2
  active fcfs:2
  handle:100 vlan_id:3ea
  FCF_AVAILABLE_STATE
  handle:101 vlan_id:3ea
  FCF_AVAILABLE_STATE
  cmd> 
  $ sent 0 24 CREATE_VL
  27000000010000001000064b51f200011000064b51f20001
  $ sent 0 8 DELETE_VL
  2800000001010000
  $ printf 'set board 1\nset wwn 2000000000000009\ntarvo createvl 0\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> cmd> Tarvo command error. code=9.
  cmd>  (no-eol)

The access list decides which FCFs a port may link to ("not permitted", 5).

  $ printf 'set board 1\nset wwn 10:00:06:4b:51:f2:00:01\ntarvo setfacl 0 10:00:06:4b:51:f2:00:01 10:00:06:4b:51:f2:00:01 0\ntarvo createvl 0\ntarvo setfacl 1 2000000000000009 10:00:06:4b:51:f2:00:01 1\ntarvo createvl 1\ntarvo setfacl 2 10:00:06:4b:51:f2:00:01 10:00:06:4b:51:f2:00:01 1\ntarvo createvl 2\nquit\n' | kvd | grep -E 'code=|Good' | sed 's/cmd> //'
  Good
  Tarvo command error. code=5.
  Good
  Tarvo command error. code=5.
  Good
  Good

Logical ports 0 to 3 ("bad port", 10); either step of setfacl may fail.

  $ kvd -b 1 -c 'tarvo getfacl 4'; kvd -b 1 -c 'tarvo deletevl 4'; KVD_SIM_FAULT=asic:GET_FACL=16 kvd -b 1 -c 'tarvo setfacl 0 2000000000000001 1000000000000001 1'
  Tarvo command error. code=10.
  Tarvo command error. code=9.
  Tarvo command error. code=16.
  $ KVD_SIM_FAULT=asic:SET_FACL=3 kvd -b 1 -c 'tarvo setfacl 0 2000000000000001 1000000000000001 1'
  returned facls :0
  total facls :0
  Tarvo command error. code=3.
