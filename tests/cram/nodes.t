Nodes, VPD, bindings and the FCP mapping, on the default fleet and nodes.json
(board 0: 18 remote ports; 1: no extended VPD; 2: link down).

  $ export KVD_SIM_TRACE=$PWD/trace
  $ N=$KVD_FLEETS/nodes.json

nodeinfo: fabric ports, then remote ports; mapped targets carry their id. The
list stops at the 2340 records the shared buffer holds.

  $ kvd -c nodeinfo
  Flg  Ste DID hex  DID dec  TargetID WWPName                  WWNName
     1   6 00fffffe 16777214 ffffffff 10:00:06:4b:51:f0:00:01  10:00:06:4b:51:f0:00:01
     1   6 00fffffc 16777212 ffffffff 10:00:06:4b:51:f0:00:01  10:00:06:4b:51:f0:00:01
     6   7 00010300 00066304 00000000 21:00:06:4b:51:d0:00:01  20:00:06:4b:51:d0:00:01
     6   7 00010400 00066560 00000001 21:00:06:4b:51:d0:00:02  20:00:06:4b:51:d0:00:01
     6   7 00020100 00131328 00000002 21:00:06:4b:51:d1:00:01  20:00:06:4b:51:d1:00:01
     0   3 00020300 00131840 ffffffff 10:00:06:4b:51:a7:00:44  20:00:06:4b:51:a7:00:44
  $ kvd -c 'nodeinfo x'
  Usage: nodeinfo
  [247]
  $ KVD_SIM_FLEET=$N kvd -b 2 -c nodeinfo
  No Node Info available
  [249]
  $ for n in 2340 2341; do KVD_SIM_FAULT=GetNodeInfo=$n kvd -c nodeinfo | grep -c '^ '; done
  2340
  2340

Twenty nodes page after the 16th, none under -c; vpdinfo (its usage returns 0).

  $ printf 'nodeinfo\n\nnodeinfo\nx\nquit\n' | KVD_SIM_FLEET=$N kvd | grep -c '^ *[0-9a-f]* *[0-9a-f] 00'
  36
  $ printf 'nodeinfo\nx\nquit\n' | KVD_SIM_FLEET=$N kvd | tail -3
  
   Hit <CR> to continue (x to abort): 
  cmd>  (no-eol)
  $ KVD_SIM_FLEET=$N kvd -c nodeinfo | wc -l
  21
  $ printf 'set lines 0\nnodeinfo\nquit\n' | KVD_SIM_FLEET=$N kvd | grep -c Hit
  0
  [1]
  $ kvd -c vpdinfo
  Model Description: QM8-F2 8Gb 2-port-capable PCIe Fibre Channel Adapter
  Model Name: QM8-F2
  Program Type: Fibre Channel Host Bus Adapter
  Port: 0
  $ KVD_SIM_FLEET=$N kvd -c vpdinfo
  Model Description: QM8-F2 8Gb PCIe Fibre Channel Adapter
  Model Name: QM8-F2
  Program Type: PCIe x8 Fibre Channel
  Port: 1
  $ KVD_SIM_FLEET=$N kvd -b 1 -c vpdinfo
  No eVPD Data found on the HBA.
  $ kvd -c 'vpdinfo extra'
  Usage: vpdinfo
  $ KVD_SIM_FAULT=GetVPDInfo=5 kvd -c vpdinfo
  Cannot issue command
  $ grep '^GetVPDInfo' trace | tail -2
  GetVPDInfo(board=1, version=1) = 2
  GetVPDInfo(board=0, version=1) = 5 injected rule=1

listbind: automatic bindings of the default fleet; every kind and flag.

  $ kvd -c listbind
  Idx  Bind Sid Did       WWNN                     WWPN                     FLAGS
  ===============================================================================
  [00] WWPN 00 0x00010300 20:00:06:4b:51:d0:00:01: 21:00:06:4b:51:d0:00:01: AUTOMAP|MAPLST|RPTLUNCMPL
  [01] WWPN 01 0x00010400 20:00:06:4b:51:d0:00:01: 21:00:06:4b:51:d0:00:02: AUTOMAP|MAPLST|RPTLUNCMPL
  [02] WWPN 02 0x00020100 20:00:06:4b:51:d1:00:01: 21:00:06:4b:51:d1:00:01: AUTOMAP|MAPLST|RPTLUNCMPL
  $ KVD_SIM_FLEET=$N kvd -c 'listbind any words'
  Idx  Bind Sid Did       WWNN                     WWPN                     FLAGS
  ===============================================================================
  [00] NONE 00 0x00000000 00:00:00:00:00:00:00:00: 00:00:00:00:00:00:00:00: AUTOMAP|
  [01] WWNN 01 0x00010101 20:00:06:4b:51:e0:00:01: 00:00:00:00:00:00:00:00: BNDLST|
  [02] WWPN 02 0x00010100 00:00:00:00:00:00:00:00: 21:00:06:4b:51:e0:00:00: MAPLST|
  [03] DID  03 0x00010102 00:00:00:00:00:00:00:00: 00:00:00:00:00:00:00:00: UNMAPLST|
  [04] ALPA  04 0x000000e8 00:00:00:00:00:00:00:00: 00:00:00:00:00:00:00:00: NODEVTMO|
  [05] NONE 05 0x00000000 00:00:00:00:00:00:00:00: 00:00:00:00:00:00:00:00: NOSCSIID|
  [06] WWPN 16 0x00000000 00:00:00:00:00:00:00:00: 21:00:06:4b:51:e0:00:01: AUTOMAP|RPTLUNCMPL
  [07] WWPN 17 0x00000000 00:00:00:00:00:00:00:00: 00:00:00:00:00:00:00:00: AUTOMAP|BNDLST|MAPLST|UNMAPLST|NODEVTMO|NOSCSIID|RPTLUNCMPL
  $ grep '^GetFcpBindList' trace | tail -1
  GetFcpBindList(board=0, room=200) = 0 entries=8
  $ KVD_SIM_FAULT=GetFcpBindList=1 kvd -c listbind
  listbind failed  (no-eol)
  [252]
  $ KVD_SIM_FLEET=$N kvd -b 2 -c listbind | tail -1
  ===============================================================================

fcpmap: one entry per unit; capacity 0x200000 x 512 is still MB, one block
more is 1 GB; 0x800 blocks are B, 0x801 MB; LUN 0x102 has no unit. The LUID
form asks with one entry of room, then retries.

  $ KVD_SIM_FLEET=$N kvd -c fcpmap
  Num Entries 0x6
  Portname:21:00:06:4b:51:e0:00:00  Nodename:20:00:06:4b:51:e0:00:00 Fcid 0x10100 FcpLun 0x0
  Bus 0x0 Tgt 0x3 Lun 0x0 DeviceName vexa:0:3:0
   Vendor: QSTOR   EXACT 1G        0100  Product: EXACT 1G        0100
   Blocks: x00200000  Blocksize: x00000200  Capacity: 1024 MB
  Portname:21:00:06:4b:51:e0:00:00  Nodename:20:00:06:4b:51:e0:00:00 Fcid 0x10100 FcpLun 0x1000000000000
  Bus 0x0 Tgt 0x3 Lun 0x1 DeviceName vexa:0:3:1
   Vendor: QSTOR   JUST OVER 1G    0100  Product: JUST OVER 1G    0100
   Blocks: x00200001  Blocksize: x00000200  Capacity: 1 GB
  Portname:21:00:06:4b:51:e0:00:00  Nodename:20:00:06:4b:51:e0:00:00 Fcid 0x10100 FcpLun 0x2000000000000
  Bus 0x0 Tgt 0x3 Lun 0x2 DeviceName vexa:0:3:2
   Vendor: QSTOR   ONE MEG         0100  Product: ONE MEG         0100
   Blocks: x00000800  Blocksize: x00000200  Capacity: 1048576 B
  Portname:21:00:06:4b:51:e0:00:00  Nodename:20:00:06:4b:51:e0:00:00 Fcid 0x10100 FcpLun 0x3000000000000
  Bus 0x0 Tgt 0x3 Lun 0x3 DeviceName vexa:0:3:3
   Vendor: QSTOR   OVER ONE MEG    0100  Product: OVER ONE MEG    0100
   Blocks: x00000801  Blocksize: x00000200  Capacity: 1 MB
  Portname:21:00:06:4b:51:e0:00:00  Nodename:20:00:06:4b:51:e0:00:00 Fcid 0x10100 FcpLun 0x4102000000000000
  Bus 0x0 Tgt 0x3 Lun 0x102 DeviceName vexa:0:3:258
   Vendor:           Product:                 
   Blocks: x00000000  Blocksize: x00000000  Capacity: 0 B
  Portname:21:00:06:4b:51:e0:00:01  Nodename:20:00:06:4b:51:e0:00:01 Fcid 0x10101 FcpLun 0x0
  Bus 0x0 Tgt 0x4 Lun 0x0 
   Vendor: QSTOR   VIRTUAL DISK    0100  Product: VIRTUAL DISK    0100
   Blocks: x0000000f  Blocksize: x0000ffff  Capacity: 983025 B
  $ grep '^SendScsiInquiry' trace | tail -2 | sed 's/.*) = /= /'
  = 0 command=INQUIRY lun=0102000000000000 cdb=120000008000
  = 0 command=INQUIRY lun=0000000000000000 cdb=120000008000
  $ grep '^GetFcpTargetMapping' trace | tail -1
  GetFcpTargetMapping(board=0, room=256) = 0 entries=6
  $ kvd -c fcpmap | head -5
  Num Entries 0x6
  Portname:21:00:06:4b:51:d0:00:01  Nodename:20:00:06:4b:51:d0:00:01 Fcid 0x10300 FcpLun 0x0
  Bus 0x0 Tgt 0x0 Lun 0x0 DeviceName vexa:0:0:0
   Vendor: QSTOR   VIRTUAL DISK    0100  Product: VIRTUAL DISK    0100
   Blocks: x001fffff  Blocksize: x00000200  Capacity: 1023 MB
  $ KVD_SIM_FLEET=$N kvd -b 2 -c fcpmap
  Num Entries 0x0
  $ KVD_SIM_FAULT=GetFcpTargetMapping=1 kvd -c fcpmap
  Cannot issue command
  [252]
  $ KVD_SIM_FAULT=SendReadCapacity=1 kvd -c fcpmap | sed -n 4,5p
   Vendor: QSTOR   VIRTUAL DISK    0100  Product: VIRTUAL DISK    0100
   Blocks: No data available  Blocksize: No data available  Capacity: No data available
  $ KVD_SIM_FLEET=$N kvd -c 'fcpmap luid 10:00:06:4b:51:a0:00:60' | head -12
  Num Entries returned 0x6 - trying again
  Num Entries 0x6
  Portname:21:00:06:4b:51:e0:00:00  Nodename:20:00:06:4b:51:e0:00:00 Fcid 0x10100 FcpLun 0x0
  Bus 0x0 Tgt 0x3 Lun 0x0 DeviceName vexa:0:3:0
  LUID: 
     0: 01030010  6064b51e  00000000  00000000  ....`d..........
    10: 00000000                                ....
  Portname:21:00:06:4b:51:e0:00:00  Nodename:20:00:06:4b:51:e0:00:00 Fcid 0x10100 FcpLun 0x1000000000000
  Bus 0x0 Tgt 0x3 Lun 0x1 DeviceName vexa:0:3:1
  LUID: 
     0: 01030010  6064b51e  00000000  00000000  ....`d..........
    10: 00000001                                ....
  $ grep '^KVD_GetFcpTargetMappingV2' trace | tail -2
  KVD_GetFcpTargetMappingV2(board=0, wwpn=10:00:06:4b:51:a0:00:60, room=1) = 7 entries=6
  KVD_GetFcpTargetMappingV2(board=0, wwpn=10:00:06:4b:51:a0:00:60, room=6) = 0 entries=6
  $ printf 'set wwn 10:00:06:4b:51:a0:00:10\nfcpmap luid\nquit\n' | kvd | grep -c '^LUID'
  6
  $ kvd -c 'fcpmap luid'
  fcpmap:(null) bad wwpn
  [251]
  $ kvd -c 'fcpmap luid 10:00'
  arg 10:00 - arg length 5 or missing ':'
  fcpmap:10:00 bad wwpn
  [251]
  $ for c in 'fcpmap luid a b' 'fcpmap x'; do kvd -c "$c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: fcpmap [luid] <wwpn> [247]
  Usage: fcpmap [luid] <wwpn> [247]
  $ kvd -c 'fcpmap luid 10:00:06:4b:51:a0:00:99'
  Cannot issue command
  [252]
