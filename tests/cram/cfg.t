Driver parameters: board 0 FC (21), board 1 FCoE. -c options stop at the
first failure.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ calls() { grep "^$1(" trace | sed 's/ in=.*//'; }

The whole list under -c: no pauses, the header again every 16 rows.

  $ kvd -c getcfg
  Low        High       Default    Current    Flag       Chgstate   Name
  0x00000000 0x0000ffff 0x00000000 0x00000000 0x00000001 0x00000000 log_verbose
  0x00000001 0x00000080 0x0000001e 0x0000001e 0x00000001 0x00000000 lun_queue_depth
  0x0000000a 0x0000ffff 0x0000ffff 0x0000ffff 0x00000001 0x00000000 tgt_queue_depth
  0x00000020 0x00002000 0x00002000 0x00002000 0x00000000 0x00000001 hba_queue_depth
  0x00000000 0x00000010 0x00000000 0x00000000 0x00000000 0x00000001 link_speed
  0x00000000 0x00000006 0x00000000 0x00000000 0x00000000 0x00000001 topology
  0x00000001 0x000000ff 0x0000001e 0x0000001e 0x00000001 0x00000000 devloss_tmo
  0x00000000 0x000000ff 0x0000001e 0x0000001e 0x00000001 0x00000000 nodev_tmo
  0x00000000 0x00000001 0x00000001 0x00000001 0x00000000 0x00000001 enable_npiv
  0x00000000 0x00000001 0x00000001 0x00000001 0x00000000 0x00000001 scan_down
  0x00000002 0x00000003 0x00000003 0x00000003 0x00000000 0x00000001 fcp_class
  0x00000000 0x00000002 0x00000002 0x00000002 0x00000000 0x00000001 use_msi
  0x00000000 0x0000003f 0x00000000 0x00000000 0x00000000 0x00000001 cr_delay
  0x00000001 0x000000ff 0x00000001 0x00000001 0x00000000 0x00000001 cr_count
  0x00000000 0x00000001 0x00000000 0x00000000 0x00000000 0x00000001 ack0
  0x00000000 0x00000002 0x00000000 0x00000000 0x00000000 0x00000001 fdmi_on
  Low        High       Default    Current    Flag       Chgstate   Name
  0x00000001 0x0000ffff 0x000000ff 0x000000ff 0x00000001 0x00000000 max_luns
  0x00000001 0x00000040 0x00000020 0x00000020 0x00000000 0x00000001 discovery_threads
  0x00000040 0x00001000 0x00000040 0x00000040 0x00000000 0x00000001 sg_seg_cnt
  0x00000000 0x0000ea60 0x00000000 0x00000000 0x00000001 0x00000000 max_scsicmpl_time
  0x00000005 0x000000b4 0x0000003c 0x0000003c 0x00000001 0x00000000 task_mgmt_tmo

Any second word adds the help lines; a third is a usage error.

  $ kvd -c 'getcfg x' | sed -n '1,3p'
  Low        High       Default    Current    Flag       Chgstate   Name
  0x00000000 0x0000ffff 0x00000000 0x00000000 0x00000001 0x00000000 log_verbose
  Verbose logging bit-mask
  $ kvd -c 'getcfg help me'
  Usage: getcfg [help]
  [247]

Interactively the pager pauses after each page, each page starts with the
header, no pause follows the last row; x stops the listing.

  $ printf 'set lines 10\ngetcfg\n\n\ngetcfg\nx\nquit\n' | kvd | sed '1,/^Adapter 2/d; s/^0x.*/row/' | cut -c1-20 | uniq -c
        1 cmd> cmd> Low       
       10 row
        1 
        1  Hit <CR> to continu
        1 Low        High     
       10 row
        1 
        1  Hit <CR> to continu
        1 Low        High     
        1 row
        1 cmd> Low        High
       10 row
        1 
        1  Hit <CR> to continu
        1 cmd> 

setcfg needs a list first, and takes the value with base detection.

  $ kvd -c 'setcfg lun_queue_depth 8'
  Must run getcfg first
  [248]
  $ kvd -c 'setcfg lun_queue_depth'
  Usage: setcfg cfgstring value
  [247]

lun_queue_depth runs from 1 to 128 (checked by the library); an unknown name
goes as the index one past the list.

  $ q() { kvd -c getcfg -c "setcfg lun_queue_depth $1" -c getcfg | grep lun_queue_depth | tail -1; }
  $ q 1
  0x00000001 0x00000080 0x0000001e 0x00000001 0x00000001 0x00000000 lun_queue_depth
  $ q 0x80
  0x00000001 0x00000080 0x0000001e 0x00000080 0x00000001 0x00000000 lun_queue_depth
  $ q 0
  Cannot issue command
  0x00000001 0x00000080 0x0000001e 0x0000001e 0x00000001 0x00000000 lun_queue_depth
  $ q 129
  Cannot issue command
  0x00000001 0x00000080 0x0000001e 0x0000001e 0x00000001 0x00000000 lun_queue_depth
  $ calls SetCfgParam
  SetCfgParam(board=0, index=1, value=1) = 0 command=SET_PARAM
  SetCfgParam(board=0, index=1, value=128) = 0 command=SET_PARAM
  SetCfgParam(board=0, index=1, value=0) = 34 command=SET_PARAM
  SetCfgParam(board=0, index=1, value=129) = 34 command=SET_PARAM
  $ kvd -c getcfg -c 'setcfg nosuchname 1' > /dev/null
  Cannot issue command
  [252]
  $ calls SetCfgParam | tail -1
  SetCfgParam(board=0, index=21, value=1) = 22 command=SET_PARAM

hba_queue_depth (32 to 8192) is not dynamic: the change waits (Chgstate 2)
and takes effect with the next adapter reset, not with a refused one;
setting the value in effect cancels the change.

  $ h() { grep 'hba_queue_depth\|^status'; }
  $ kvd -c getcfg -c 'setcfg hba_queue_depth 32' -c getcfg -c 'reset hba' -c getcfg | h
  0x00000020 0x00002000 0x00002000 0x00002000 0x00000000 0x00000001 hba_queue_depth
  0x00000020 0x00002000 0x00002000 0x00002000 0x00000000 0x00000002 hba_queue_depth
  status 0x0
  0x00000020 0x00002000 0x00002000 0x00000020 0x00000000 0x00000001 hba_queue_depth
  $ kvd -c getcfg -c 'setcfg hba_queue_depth 32' -c 'reset hba 9' -c getcfg | h | tail -2
  status 0x16
  0x00000020 0x00002000 0x00002000 0x00002000 0x00000000 0x00000002 hba_queue_depth
  $ kvd -c getcfg -c 'setcfg hba_queue_depth 64' -c 'setcfg hba_queue_depth 8192' -c 'reset hba' -c getcfg | h | tail -1
  0x00000020 0x00002000 0x00002000 0x00002000 0x00000000 0x00000001 hba_queue_depth
  $ kvd -c getcfg -c 'setcfg hba_queue_depth 31' | h
  Cannot issue command
  0x00000020 0x00002000 0x00002000 0x00002000 0x00000000 0x00000001 hba_queue_depth

The list follows the board; fleet values show as current; a failing list.

  $ kvd -b 1 -c getcfg | grep -c '^0x'
  19
  $ kvd -b 1 -c getcfg | grep -E 'link_speed|fcf_failover|enable_fip'
  0x00000001 0x00000002 0x00000001 0x00000001 0x00000000 0x00000001 fcf_failover_policy
  0x00000000 0x00000001 0x00000001 0x00000001 0x00000000 0x00000001 enable_fip
  $ cat > fleet.json <<'JSON'
  > { "boards": [ { "board": 0, "wwpn": "10:00:06:4b:51:a0:03:00", "drvparams": { "lun_queue_depth": 64 } } ] }
  > JSON
  $ KVD_SIM_FLEET=fleet.json kvd -c getcfg | grep lun_queue_depth
  0x00000001 0x00000080 0x0000001e 0x00000040 0x00000001 0x00000000 lun_queue_depth
  $ cat > fleet.json <<'JSON'
  > { "boards": [ { "board": 0, "wwpn": "10:00:06:4b:51:a0:03:00", "drvparams": { "lun_queue_depth": 0 } } ] }
  > JSON
  $ KVD_SIM_FLEET=fleet.json kvd -c getcfg
  libkvd: fleet.json: boards[0].drvparams.lun_queue_depth: below the parameter's lowest value 1
  
  No Adapters Found
  [253]
  $ KVD_SIM_FAULT=GetCfgParam=0:once kvd -c getcfg
  Cannot issue command
  [252]

The table is the last getcfg's, whatever board was chosen since (enable_fip
is the 19th on board 1, sg_seg_cnt on board 0); it holds 64 parameters,
whatever count the library returns.

  $ kvd -b 1 -c getcfg -c 'set board 0' -c 'setcfg enable_fip 0' > /dev/null
  Cannot issue command
  [252]
  $ calls SetCfgParam | tail -1
  SetCfgParam(board=0, index=18, value=0) = 34 command=SET_PARAM
  $ for n in 64 65; do KVD_SIM_FAULT=GetCfgParam=$n kvd -c getcfg -c 'setcfg nosuchname 1' 2>/dev/null | grep -c '^0x'; done
  64
  64
  $ calls SetCfgParam | tail -1
  SetCfgParam(board=0, index=64, value=1) = 22 command=SET_PARAM
