FCoE parameters of the ASIC's logical ports and the FCFs FIP found (board 1).
`sent OFF LEN [NAME]` cuts bytes out of the last record sent; `calls` counts.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ sent() { grep "^KVD_SendTarvoCommand(.*command=${3:-}" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($1 * 2 + 1))-$(($1 * 2 + $2 * 2)); }
  $ calls() { grep -c '^KVD_SendTarvoCommand' trace || :; }

setfcoeparams: mode 0 or 1, FIP with at least seven arguments; nothing sent.

  $ kvd -b 1 -c 'tarvo setfcoeparams'
  Usage: tarvo setfcoparams  <fcoe mode 1=FIP > <lport_id> <switch wwpn> <fabric wwpn> <supported addr mode> <pref addr mode> <discov TMO> <vlan_id0> <vlan_id1> <vlan_id2> <vlan_id3>
  Usage: tarvo setfcoparams  <fcoe mode 0=non-FIP >
              fcoe mode    - FIP=1 NON-FIP=0.
              supported address mode  - SPMA=1 FPMA=2.
              preffered address mode  - SPMA=1 FPMA=2.
              lport_id   - Device id of port.
              switch wpn  - FC WWPN of entry.
              fabric wpn  - FC WWPN of entry.
              discovery TMO  - Discovery TMO, multiple of 500ms.
  
  $ kvd -b 1 -c 'tarvo setfcoeparams 2' | head -1
  Usage: tarvo setfcoparams  <fcoe mode 1=FIP > <lport_id> <switch wwpn> <fabric wwpn> <supported addr mode> <pref addr mode> <discov TMO> <vlan_id0> <vlan_id1> <vlan_id2> <vlan_id3>
  $ kvd -b 1 -c 'tarvo setfcoeparams 1 5 2000000000000001 1000000000000001 2 2' | head -1
  Usage: tarvo setfcoparams  <fcoe mode 1=FIP > <lport_id> <switch wwpn> <fabric wwpn> <supported addr mode> <pref addr mode> <discov TMO> <vlan_id0> <vlan_id1> <vlan_id2> <vlan_id3>
  $ kvd -b 1 -c 'tarvo getfcoeparams'
  Usage: tarvo getfcoeparams <logical port id>
  
  $ calls
  0

At power-on port 0 runs FIP on VLAN 1002; getfcoeparams always asks for 0.

  $ kvd -b 1 -c 'tarvo getfcoeparams 3' | sed -n '1,3p;$p'
  fcf mode:FIP
  switch name : 1000064b51f20001
  fabric name : 1000064b51f20001
  
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=36) = 0 command=GET_FCOE_PARAMS
  $ sent 0 12
  230000000000000024000000

Non-FIP sends the mode alone; FIP echoes its tokens and cuts each number.

  $ printf 'set board 1\ntarvo setfcoeparams 0\ntarvo getfcoeparams 0\ntarvo setfcoeparams 1 0x1000000 10:00:06:4b:51:f2:00:01 1000064b51f20001 1 0x102 0x10014 100 200\ntarvo getfcoeparams 0\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> Done.
  
  cmd> fcf mode:NON-FIP
  FC map:0xefc00
  cmd> fip:1 lport:0x1000000 sw:10:00:06:4b:51:f2:00:01 fab:1000064b51f20001 sup:1 pref:0x102 disc:0x10014 
  fip:1 lport:0x1000000 sw:10:00:06:4b:51:f2:00:01 fab:1000064b51f20001 sup:1 pref:0x102 disc:0x10014 100
  Done.
  
  cmd> fcf mode:FIP
  switch name : 1000064b51f20001
  fabric name : 1000064b51f20001
  supported addr mode:1
  preffered addr mode:2
  discovery tmo:14
  vlans: 0x64 0xc8 0x0 0x0
  
  cmd>  (no-eol)
  $ sent 0 40 SET_FCOE_PARAMS
  2200000001000000000000001000064b51f200011000064b51f20001010214006400c80000000000
  $ kvd -b 1 -c 'tarvo setfcoeparams 1 2 2000000000000001 1000000000000001 2 2 20'
  fip:1 lport:2 sw:2000000000000001 fab:1000000000000001 sup:2 pref:2 disc:20 
  fip:1 lport:2 sw:2000000000000001 fab:1000000000000001 sup:2 pref:2 disc:20 (null)
  Done.
  
  $ sent 0 40
  22000000010000000200000020000000000000011000000000000001020214000000000000000000

All four VLANs fill the thirteen words the dispatcher takes.

  $ kvd -b 1 -c 'tarvo setfcoeparams 1 1 2000000000000001 1000000000000001 2 1 4 1 2 3 4' | tail -2
  Done.
  
  $ sent 32 8
  0100020003000400
  $ kvd -b 1 -c 'tarvo setfcoeparams 1 1 2000000000000001 1000000000000001 2 1 4 1 2 3 4 5' | head -1
  Usagetarvo: tarvo command [brd]

A name that does not parse is the current WWN, or nothing is sent.

  $ printf 'set board 1\nset wwn 2000000000000009\ntarvo setfcoeparams 1 1 sw fab 2 1 4 7\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> cmd> fip:1 lport:1 sw:sw fab:fab sup:2 pref:1 disc:4 
  arg sw - arg length 2 or missing ':'
  arg fab - arg length 3 or missing ':'
  fip:1 lport:1 sw:sw fab:fab sup:2 pref:1 disc:4 7
  Done.
  
  cmd>  (no-eol)
  $ sent 12 16
  20000000000000092000000000000009
  $ calls > before
  $ kvd -b 1 -c 'tarvo setfcoeparams 1 1 sw 1000000000000001 2 1 4'
  fip:1 lport:1 sw:sw fab:1000000000000001 sup:2 pref:1 disc:4 
  arg sw - arg length 2 or missing ':'
  tarvo setcfoeparams:sw bad Switch port_wwpn cur_wwn 
  $ kvd -b 1 -c 'tarvo setfcoeparams 1 1 2000000000000001 fab 2 1 4'
  fip:1 lport:1 sw:2000000000000001 fab:fab sup:2 pref:1 disc:4 
  arg fab - arg length 3 or missing ':'
  tarvo setcfoeparams:fab bad Fabric port_wwpn cur_wwn 
  $ calls | cmp - before

The ASIC's checks: address modes, time-out, VLAN up to 4094, port 0 to 3.

  $ kvd -b 1 -c 'tarvo setfcoeparams 1 1 2000000000000001 1000000000000001 3 1 4' | tail -1
  Tarvo command error. code=2.
  $ kvd -b 1 -c 'tarvo setfcoeparams 1 1 2000000000000001 1000000000000001 2 1 0' | tail -1
  Tarvo command error. code=2.
  $ kvd -b 1 -c 'tarvo setfcoeparams 1 1 2000000000000001 1000000000000001 2 1 4 4094' | tail -2
  Done.
  
  $ kvd -b 1 -c 'tarvo setfcoeparams 1 1 2000000000000001 1000000000000001 2 1 4 4095' | tail -1
  Tarvo command error. code=2.
  $ kvd -b 1 -c 'tarvo setfcoeparams 1 4 2000000000000001 1000000000000001 2 1 4' | tail -1
  Tarvo command error. code=10.

getfcflist: the fabric's FCFs, all available at power-on.

  $ kvd -b 1 -c 'tarvo getfcflist'
  returned fcfs:2
  total fcfs:2
  active fcfs:2
  handle:100 vlan_id:3ea
  mac name : 025e11fc0001
  switch name : 1000064b51f20001
  fabric name : 1000064b51f20001
  fc_map:efc00 lka period:1f40
  FCF_AVAILABLE_STATE
  Control Flag:1 priority:80
  Supported address mode FPMA
  handle:101 vlan_id:3ea
  mac name : 025e11fc0002
  switch name : 2002025e11fc0000
  fabric name : 1000064b51f20001
  fc_map:efc00 lka period:1f40
  FCF_AVAILABLE_STATE
  Control Flag:1 priority:81
  Supported address mode SPMA
  $ sent 0 12
  240000000000000094050000

The fleet sets the FCF count (at most 64); 32 fit in the 1,428 bytes.

  $ printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"fcfs":64,"fcoe_vlan":200}}]}' > many.json
  $ KVD_SIM_FLEET=many.json kvd -c 'tarvo getfcflist' > many.out; head -3 many.out; grep -c '^handle' many.out; tail -8 many.out | head -3
  returned fcfs:32
  total fcfs:64
  active fcfs:64
  32
  handle:11f vlan_id:c8
  mac name : 025e11fc0020
  switch name : 2020025e11fc0000
  $ for v in 0 4094 4095; do printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"fcoe_vlan":%d}}]}' $v > v.json; KVD_SIM_FLEET=v.json kvd -c 'tarvo getfcflist' 2>&1 | sed -n 1p\;4p; done
  libkvd: v.json: boards[0].asic.fcoe_vlan: VLAN 0
  returned fcfs:2
  handle:100 vlan_id:ffe
  libkvd: v.json: boards[0].asic.fcoe_vlan: value 0xfff out of range 0..0xffe
  $ printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"fcfs":0}}]}' > none.json
  $ KVD_SIM_FLEET=none.json kvd -c 'tarvo getfcflist'
  returned fcfs:0
  total fcfs:0
  active fcfs:0
  $ printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"fcfs":65}}]}' > over.json
  $ KVD_SIM_FLEET=over.json kvd -c 'tarvo getfcflist'
  libkvd: over.json: boards[0].asic.fcfs: value 0x41 out of range 0..0x40
  
  No Adapters Found
  [253]

Errors.

  $ KVD_SIM_FAULT=asic:GET_FCF_LIST=16 kvd -b 1 -c 'tarvo getfcflist'; KVD_SIM_FAULT=asic:GET_FCOE_PARAMS=10 kvd -b 1 -c 'tarvo getfcoeparams 1'; KVD_SIM_FAULT=KVD_SendTarvoCommand=99 kvd -b 1 -c 'tarvo setfcoeparams 0'
  Tarvo command error. code=16.
  Tarvo command error. code=10.
  Tarvo command error. Timeout.
