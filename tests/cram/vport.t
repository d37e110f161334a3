NPIV virtual ports on the default fleet and tests/fleets/npiv.json (board 0: two
vports, one fabric NPIV login; 1: loop; 2: NPIV disabled; 3: SLI-2).

  $ export KVD_SIM_TRACE=$PWD/trace
  $ F=$KVD_FLEETS/npiv.json
  $ P=24:00:06:4b:51:e8:00:01 N=28:00:06:4b:51:e8:00:01
  $ f() { e=$1; shift; kvd "$@" > o 2>&1; r=$?; sed "$e" o; return $r; }

A vport's life in one process: created, listed, its nodes, its host, deleted;
the RSCNs to the board's port and to the other vports.

  $ f 2,12d -c vpgetres -c 'vpcreate 0' -c vpgetlist -c "vpgetattr $P"
  VP Resources: vlinks_max 64  vlinks_inuse 0  rpi_max 512  rpi_inuse 6
  Dumping 1 vports:
  VPORT 0:
    wwpn: 24:00:06:4b:51:e8:00:01
    wwnn: 28:00:06:4b:51:e8:00:01
    PortFcId: x10201
  vport attributes:
  Version: x3
  wwpn: 24:00:06:4b:51:e8:00:01
  wwnn: 28:00:06:4b:51:e8:00:01
  Name: kvd application vport name
  Options: x0
  PortFcId:: x10201
  State: x4
  Restrict Login: x0
  Platform Handle: x7
  Fabric Name: 10:00:06:4b:51:f0:00:01
  VPort mode : dynamic 
  NPIV Ready checklist: 0xff
  Driver NPIV enabled : 1
  SLI NPIV ready mode : 1
          HBA support : 1
        HBA resources : 1
              Link up : 1
       Point-to-point : 1
       Fabric support : 1
     Fabric resources : 1
  $ kvd -c 'vpcreate 0' -c nodeinfo -c vpgetres -c "vpgetninfo $P" -c 'vpgetphys 0x7' | sed 1,11d | grep -v '^ *wwnn\|^Node\|fcpId'
  Flg  Ste DID hex  DID dec  TargetID WWPName                  WWNName
     1   6 00fffffe 16777214 ffffffff 10:00:06:4b:51:f0:00:01  10:00:06:4b:51:f0:00:01
     1   6 00fffffc 16777212 ffffffff 10:00:06:4b:51:f0:00:01  10:00:06:4b:51:f0:00:01
     8   3 00010201 00066049 ffffffff 24:00:06:4b:51:e8:00:01  28:00:06:4b:51:e8:00:01
     6   7 00010300 00066304 00000000 21:00:06:4b:51:d0:00:01  20:00:06:4b:51:d0:00:01
     6   7 00010400 00066560 00000001 21:00:06:4b:51:d0:00:02  20:00:06:4b:51:d0:00:01
     6   7 00020100 00131328 00000002 21:00:06:4b:51:d1:00:01  20:00:06:4b:51:d1:00:01
     0   3 00020300 00131840 ffffffff 10:00:06:4b:51:a7:00:44  20:00:06:4b:51:a7:00:44
  VP Resources: vlinks_max 64  vlinks_inuse 1  rpi_max 512  rpi_inuse 14
  Dumping 7 nodes:
  type: 1  state: 6
    wwpn: 10:00:06:4b:51:f0:00:01
  type: 1  state: 6
    wwpn: 10:00:06:4b:51:f0:00:01
  type: 0  state: 3
    wwpn: 10:00:06:4b:51:a0:00:10
  type: 6  state: 7
    wwpn: 21:00:06:4b:51:d0:00:01
  type: 6  state: 7
    wwpn: 21:00:06:4b:51:d0:00:02
  type: 6  state: 7
    wwpn: 21:00:06:4b:51:d1:00:01
  type: 0  state: 3
    wwpn: 10:00:06:4b:51:a7:00:44
  Vport host7 is on physical vexa0 - host4
  $ kvd -c 'vpcreate 0' -c "vpdelete 0 $P" -c vpgetlist -c nodeinfo -c vpgetres -c 'vpgetphys 7' | sed 1,11d
  vport deleted.
  Dumping 0 vports:
  Flg  Ste DID hex  DID dec  TargetID WWPName                  WWNName
     1   6 00fffffe 16777214 ffffffff 10:00:06:4b:51:f0:00:01  10:00:06:4b:51:f0:00:01
     1   6 00fffffc 16777212 ffffffff 10:00:06:4b:51:f0:00:01  10:00:06:4b:51:f0:00:01
     6   7 00010300 00066304 00000000 21:00:06:4b:51:d0:00:01  20:00:06:4b:51:d0:00:01
     6   7 00010400 00066560 00000001 21:00:06:4b:51:d0:00:02  20:00:06:4b:51:d0:00:01
     6   7 00020100 00131328 00000002 21:00:06:4b:51:d1:00:01  20:00:06:4b:51:d1:00:01
     0   3 00020300 00131840 ffffffff 10:00:06:4b:51:a7:00:44  20:00:06:4b:51:a7:00:44
  VP Resources: vlinks_max 64  vlinks_inuse 0  rpi_max 512  rpi_inuse 6
  vpgetphys: bad host_no specified
  $ grep '^KVD_VPCreate\|^KVD_VPDeleteV2\|^vpGetPhys' trace | tail -3
  KVD_VPCreate(board=0, ver=3, wwpn=00:00:00:00:00:00:00:00, wwnn=00:00:00:00:00:00:00:00, options=0x0) = 0 did=0x010201 host=7
  KVD_VPDeleteV2(board=0, wwpn=24:00:06:4b:51:e8:00:01, options=0x0) = 0
  vpGetPhys(host=7) = 2

The firmware's READ_CONFIG counts them too (reply bytes 72-79: free RPIs,
free XRIs, free and total VPIs): before, with the vport's seven logins,
after it is gone.

  $ : > trace
  $ kvd -c 'mbox rdcfg' -c 'vpcreate 0' -c 'mbox rdcfg' -c "vpdelete 0 $P" -c 'mbox rdcfg' > /dev/null
  $ grep '^KVD_IssueMbox' trace | sed 's/.* out=//' | cut -c145-160
  fa01fd0140004000
  f301fd013f004000
  fa01fd0140004000
  $ kvd -c 'vpcreate 0' -c 'vpcreate 0' -c "vpdelete 0 $P" -c 'getevent 10' | sed -n '/deleted/,$p'
  vport deleted.
  Event Data1    Data2    Data3    Data4    5 Entries 0 Missed
  0002  00010201 00000008 00000000 00000000
  0002  00010202 00000008 00000000 00000000
  0040  00010202 00000008 2400064b 51e80001
  0002  00010201 00000008 00000000 00000000
  0040  00010201 00000008 2400064b 51e80002

The same RSCNs reach a shell that subscribed to them, each batch before the
trigger channel's sync answers.

  $ printf '%s\n' 'revent rscn ALL' 'revent vprscn ALL' 'vpcreate 0' 'vpcreate 0' '! kvdev sync' \
  >   "vpdelete 0 $P" '! kvdev sync' quit | PATH=$TESTDIR:$PATH KVD_SIM_EVENTS=$PWD/ev kvd | grep -o 'VPORTRSCN .*\|RSCN .*\|^ *0: .*\|\<ok$'
  RSCN Buffer: 8
     0: 61040008  00010201  
  RSCN Buffer: 8
     0: 61040008  00010202  
  VPORTRSCN board: 0 wwpn: 24:00:06:4b:51:e8:00:01 RSCN Buffer: 8
     0: 61040008  00010202  
  ok
  RSCN Buffer: 8
     0: 61040008  00010201  
  VPORTRSCN board: 0 wwpn: 24:00:06:4b:51:e8:00:02 RSCN Buffer: 8
     0: 61040008  00010201  
  ok

Given names, option 0x2 (driver's names) and 0x1 (targets only).

  $ kvd -c "vpcreate 1 2800064b51e90001 2400064b51e90001" -c "vpcreate 2 2800064b51e90002 2400064b51e90002" -c vpgetlist -c 'vpgetninfo 2400064b51e90001' -c nodeinfo | grep -v 'wwnn\|^ *[0-9]  *[67] \|^vport\|^Version\|^Name\|^State\|^Fabric'
  wwpn: 24:00:06:4b:51:e9:00:01
  Options: x1
  PortFcId:: x10201
  Restrict Login: x1
  Platform Handle: x7
  wwpn: 24:00:06:4b:51:e8:00:01
  Options: x2
  PortFcId:: x10202
  Restrict Login: x0
  Platform Handle: x8
  Dumping 2 vports:
  VPORT 0:
    wwpn: 24:00:06:4b:51:e9:00:01
    PortFcId: x10201
  VPORT 1:
    wwpn: 24:00:06:4b:51:e8:00:01
    PortFcId: x10202
  Dumping 5 nodes:
  Node 0:
  type: 1  state: 6
    fcpId: 0xfffffe  scsiTargetNumber: -1
    wwpn: 10:00:06:4b:51:f0:00:01
  Node 1:
  type: 1  state: 6
    fcpId: 0xfffffc  scsiTargetNumber: -1
    wwpn: 10:00:06:4b:51:f0:00:01
  Node 2:
  type: 6  state: 7
    fcpId: 0x010300  scsiTargetNumber: 0
    wwpn: 21:00:06:4b:51:d0:00:01
  Node 3:
  type: 6  state: 7
    fcpId: 0x010400  scsiTargetNumber: 1
    wwpn: 21:00:06:4b:51:d0:00:02
  Node 4:
  type: 6  state: 7
    fcpId: 0x020100  scsiTargetNumber: 2
    wwpn: 21:00:06:4b:51:d1:00:01
  Flg  Ste DID hex  DID dec  TargetID WWPName                  WWNName
     8   3 00010202 00066050 ffffffff 24:00:06:4b:51:e8:00:01  28:00:06:4b:51:e8:00:01
     0   3 00020300 00131840 ffffffff 10:00:06:4b:51:a7:00:44  20:00:06:4b:51:a7:00:44
  $ grep '^KVD_VPCreate' trace | tail -1
  KVD_VPCreate(board=0, ver=3, wwpn=00:00:00:00:00:00:00:00, wwnn=00:00:00:00:00:00:00:00, options=0x2) = 0 did=0x010202 host=8

Link down: vports lose their addresses and log in again when it comes back.

  $ echo 0 | kvd -c 'vpcreate 0' -c 'mbox downlink' -c 'vpcreate 0' -c vpgetlist -c vpnpivrdy -c 'mbox initlink' -c vpgetlist | grep 'State\|PortFcId\|checklist'
  PortFcId:: x10201
  State: x4
  PortFcId:: x0
  State: x1
    PortFcId: x0
    PortFcId: x0
  NPIV Ready checklist: 0x0f
    PortFcId: x10201
    PortFcId: x10202
  $ kvd -c 'vpcreate 0' -c 'mbox downlink' -c "vpgetninfo $P" -c "vpgetattr $P" | grep 'Dumping\|State\|PortFcId'
  PortFcId:: x10201
  State: x4
  Dumping 0 nodes:
  PortFcId:: x0
  State: x1

Limits: two vports on board 0 and one fabric NPIV login; boards that are not
ready: a loop, NPIV disabled, SLI-2.

  $ KVD_SIM_FLEET=$F kvd -c 'vpcreate 0' -c 'vpcreate 0' -c 'vpcreate 0' -c vpgetres -c vpnpivrdy | grep 'PortFcId\|State\|failed\|VP \|checklist\|resources'
  PortFcId:: xa0101
  State: x4
  PortFcId:: x0
  State: x3
  vpcreate failed with rc = x1c
  VP Resources: vlinks_max 2  vlinks_inuse 2  rpi_max 512  rpi_inuse 8
  NPIV Ready checklist: 0x77
        HBA resources : 0
     Fabric resources : 0
  $ KVD_SIM_FLEET=$F kvd -b 1 -c vpnpivrdy -c 'vpcreate 0' | grep 'checklist\|State\|PortFcId'
  NPIV Ready checklist: 0x1f
  PortFcId:: x0
  State: x2
  $ KVD_SIM_FLEET=$F kvd -b 2 -c vpnpivrdy -c 'vpcreate 0'
  NPIV Ready checklist: 0x3c
  Driver NPIV enabled : 0
  SLI NPIV ready mode : 0
          HBA support : 1
        HBA resources : 1
              Link up : 1
       Point-to-point : 1
       Fabric support : 0
     Fabric resources : 0
  vpcreate failed with rc = x5f
  $ KVD_SIM_FLEET=$F kvd -b 3 -c vpnpivrdy -c 'vpcreate 0' -c vpgetres | grep 'checklist\|rc\|VP'
  NPIV Ready checklist: 0xf1
        HBA resources : 0
     Fabric resources : 1
  vpcreate failed with rc = x5f
  VP Resources: vlinks_max 0  vlinks_inuse 0  rpi_max 512  rpi_inuse 2

A port of the driver's configuration comes up with the board, static, and
goes like any other; one the driver refuses (the board's own name) stops the
start.

  $ cat > static.json <<'JSON'
  > { "boards": [ { "board": 0, "wwpn": "10:00:06:4b:51:a0:03:00",
  >   "npiv": { "vports": [ { "wwpn": "24:00:06:4b:51:e9:00:10", "wwnn": "28:00:06:4b:51:e9:00:10" } ] } } ] }
  > JSON
  $ S=24:00:06:4b:51:e9:00:10
  $ KVD_SIM_FLEET=static.json kvd -c vpgetlist -c "vpgetattr $S" -c 'vpgetphys 1' -c nodeinfo -c "vpdelete 0 $S" -c vpgetlist | grep 'Dumping\|PortFcId:\|VPort mode\|Vport\| 8 \|deleted'
  Dumping 1 vports:
    PortFcId: x10101
  PortFcId:: x10101
  VPort mode : static 
  Vport host1 is on physical vexa0 - host0
     8   3 00010101 00065793 ffffffff 24:00:06:4b:51:e9:00:10  28:00:06:4b:51:e9:00:10
  vport deleted.
  Dumping 0 vports:
  $ sed -i 's/24:00:06:4b:51:e9:00:10/10:00:06:4b:51:a0:03:00/' static.json
  $ KVD_SIM_FLEET=static.json kvd -c vpgetlist
  libkvd: cannot start the boards' firmware: boards[0].npiv.vports[0]: refused by the driver (File exists)
  
  No Adapters Found
  [253]

Refusals keep the status 0 and show the library's code.

  $ kvd -c "vpgetattr $P" -c "vpdelete 0 $P" -c "vpgetninfo $P" -c 'vpcreate 4' -c 'vpcreate 0 2000064b51a00010' -c 'vpcreate 0 2800064b51e90005 1000064b51a00010' -c 'vpgetphys 4'
  vpgetattr failed with rc = x2
  vpdelete failed with rc = x2
  vpgetninfo failed with rc = x2
  vpcreate failed with rc = x16
  vpcreate failed with rc = x11
  vpcreate failed with rc = x11
  vpgetphys: bad host_no specified
  $ kvd -c 'vpcreate 0' -c "vpdelete 1 $P" -c vpgetlist | grep 'failed\|Dumping'
  vpdelete failed with rc = x16
  Dumping 1 vports:
  $ KVD_SIM_FAULT=KVD_VPGetList=5,KVD_VPGetResource=16,KVD_NPIVReadyTest=19 kvd -c vpgetlist -c vpgetres -c vpnpivrdy
  vpgetlist failed with rc = x5
  vpgetres failed with rc = x10
  vpnpivrdy failed with rc = x13

Bad names and word counts.

  $ kvd -c 'vpcreate 0 zz'
  arg zz - arg length 2 or missing ':'
  vpcreate: bad wwnn specified
  [251]
  $ kvd -c 'vpcreate 0 2800064b51e90001 zz'
  arg zz - arg length 2 or missing ':'
  vpcreate: bad wwpn specified
  [251]
  $ kvd -c 'vpcreate 2 zz zz' | grep wwpn
  wwpn: 24:00:06:4b:51:e8:00:01
  $ kvd -c 'vpgetninfo 1234'
  arg 1234 - arg length 4 or missing ':'
  vpgetninfo: bad wwpn specified
  [251]
  $ for c in vpcreate 'vpcreate 0 1 2 3' vpdelete vpgetattr 'vpgetattr a b' 'vpgetlist x' vpgetninfo vpgetphys 'vpgetres x' 'vpnpivrdy x'; do kvd -c "$c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: vpcreate options [wwnn] [wwpn] [247]
  Usage: vpcreate options [wwnn] [wwpn] [247]
  Usage: vpdelete options wwpn [247]
  Usage: vpgetattr wwpn [247]
  Usage: vpgetattr wwpn [247]
  Usage: vpgetlist [247]
  Usage: vpgetninfo wwpn [247]
  Usage: vpgetphys host_no [247]
  Usage: vpgetres [247]
  Usage: vpnpivrdy [247]

enable_npiv is not dynamic: after a reset vpcreate is refused.

  $ printf '%s\n' 'setcfg enable_npiv 0' 'set lines 100' getcfg 'setcfg enable_npiv 0' vpnpivrdy 'reset hba 1' \
  >   vpnpivrdy 'vpcreate 2' quit | kvd 2>&1 | grep -E 'Must|enable_npiv|checklist|Driver NPIV|SLI NPIV|hba:|vpcreate|VPCreate'
  cmd> Must run getcfg first
  * enable_npiv* (glob)
  cmd> cmd> NPIV Ready checklist: 0xff
  Driver NPIV enabled : 1
  SLI NPIV ready mode : 1
  cmd> hba: 0 reset type: 1
  cmd> NPIV Ready checklist: 0xfc
  Driver NPIV enabled : 0
  SLI NPIV ready mode : 0
  cmd> vpcreate failed with rc = x5f
