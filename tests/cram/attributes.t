Adapter, port, statistics, link and driver information: board 0 FC (SLI-3),
board 1 FCoE, board 2 SLI-4.

  $ export KVD_SIM_TRACE=$PWD/trace

Adapter attributes, also through -a, for the board chosen before.

  $ kvd -a
  Manuftr:Korvan  SerialNum:QSA00010
  Model:QM8-F2  Description:QM8-F2 8Gb 2-port-capable PCIe Fibre Channel Adapter
  Driver:3.4.12.0  DrvrName:vexa Firmware:2.10A4 (T3.10A4)
  NSymName:QM8-F2 FV2.10A4 DV3.4.12.0  Hdw:0x2057706d ROM:5.03a2
  VendorId 0xf3002c71  numPorts 0x1
  Nodename:20:00:06:4b:51:a0:00:10
  $ kvd -b 1 -a | head -2
  Manuftr:Korvan  SerialNum:QSB40020
  Model:QM10-C2  Description:QM10-C2 10Gb PCIe FCoE Converged Network Adapter
  $ kvd -b 2 -c hbaattr | sed -n '3p;6p'
  Driver:3.4.12.0  DrvrName:vexa Firmware:4.1.28.5
  Nodename:20:00:06:4b:51:c8:00:30

The local port; its OS device is the SCSI host, channel and target -1.

  $ kvd -c portattr
  Fcid 0x10200  Type 0x5  State 0x2  COS 0x8
  Fc4Types:0 0 1 0 0 0 0 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 
  Fc4ActiveTypes:0 0 1 0 0 0 0 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 
  speedSup 0x1a  speed 0x10
  MaxFrm 0x800  NumDiscPort 0x4
  PortName QM8-F2 FV2.10A4 DV3.4.12.0 HN:kvdlab01 OS:Linux  DeviceName /sys/class/scsi_host/host4:4:0:-1
  
  Portname:10:00:06:4b:51:a0:00:10  Nodename:20:00:06:4b:51:a0:00:10
  FabricName:10:00:06:4b:51:f0:00:01
  $ kvd -b 1 -c portattr | sed -n '1p;4,5p;8,9p'
  Fcid 0xa0b01  Type 0x5  State 0x2  COS 0x8
  speedSup 0x4  speed 0x4
  MaxFrm 0x800  NumDiscPort 0x2
  Portname:10:00:06:4b:51:b4:00:20  Nodename:20:00:06:4b:51:b4:00:20
  FabricName:10:00:06:4b:51:f2:00:01
  $ kvd -b 2 -c 'iportattr 0' | sed -n '1p;4,6p'
  Fcid 0x30500  Type 0x5  State 0x2  COS 0x8
  speedSup 0x38  speed 0x20
  MaxFrm 0x800  NumDiscPort 0x2
  PortName QM16-F4 FV4.1.28.5 DV3.4.12.0 HN:kvdlab01 OS:Linux  DeviceName /sys/class/scsi_host/host6:6:0:-1
  $ kvd -b 2 -c 'iportattr 0' | cmp - <(kvd -b 2 -c portattr)
  $ grep -o '^GetPortAttributesByIndex([^)]*)' trace
  GetPortAttributesByIndex(board=2, port=0, index=0)
  GetPortAttributesByIndex(board=2, port=0, index=0)

Discovered ports by index; a port without an OS device has no device name.

  $ kvd -c 'dportattr 2' | sed -n '1,2p;6,8p'
  Fcid 0x20100  Type 0x5  State 0x2  COS 0x8
  Fc4Types:0 0 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 
  PortName QTAPE LT8 drive 1  DeviceName /dev/sg4:4:0:2
  
  Portname:21:00:06:4b:51:d1:00:01  Nodename:20:00:06:4b:51:d1:00:01
  $ kvd -c 'dportattr 3' | sed -n 6,8p
  PortName QM8-F2 FV2.10A4 DV3.4.12.0 HN:kvdlab07 OS:Linux
  
  Portname:10:00:06:4b:51:a7:00:44  Nodename:20:00:06:4b:51:a7:00:44
  $ grep -o '^GetDiscoveredPortAttributes([^)]*)' trace
  GetDiscoveredPortAttributes(board=0, port=0, index=2)
  GetDiscoveredPortAttributes(board=0, port=0, index=3)

Stale data asks for a refresh; other failures cannot issue.

  $ KVD_SIM_FAULT=GetPortAttributesByIndex=8 kvd -c 'iportattr 0'
  Need refresh
  [252]
  $ KVD_SIM_FAULT=GetDiscoveredPortAttributes=8 kvd -c 'dportattr 0'
  Need refresh
  [252]
  $ kvd -c 'iportattr 1'
  Cannot issue command
  [252]
  $ kvd -c 'dportattr 4' 2>&1 >/dev/null
  Cannot issue command
  [252]

Ports by WWN; a bad WWN falls back to the current one once set.

  $ kvd -b 1 -c 'wportattr 21:00:06:4b:51:d2:00:02' | sed -n '1p;6,8p'
  Fcid 0xa0c02  Type 0x5  State 0x2  COS 0x8
  PortName QSTOR 5200 ctl B  DeviceName /dev/sg6:5:0:1
  
  Portname:21:00:06:4b:51:d2:00:02  Nodename:20:00:06:4b:51:d2:00:01
  $ kvd -c 'wportattr 1234'
  arg 1234 - arg length 4 or missing ':'
  wportattr:1234 bad port_wwpn
  [251]
  $ printf 'set wwn 2100064b51d00002\nwportattr 1234\nquit\n' | kvd | sed -n '/^cmd>/,$p' | sed -n '1,2p;7p;11p'
  cmd> cmd> arg 1234 - arg length 4 or missing ':'
  Fcid 0x10400  Type 0x5  State 0x2  COS 0x8
  PortName QSTOR 7100 port 1A  DeviceName /dev/sg3:4:0:1
  cmd>  (no-eol)
  $ grep -o '^GetPortAttributesByWWN([^)]*)' trace
  GetPortAttributesByWWN(board=1, wwn=21:00:06:4b:51:d2:00:02)
  GetPortAttributesByWWN(board=0, wwn=21:00:06:4b:51:d0:00:02)
  $ kvd -c 'wportattr 21:00:06:4b:51:d2:00:02'
  Cannot issue command
  [252]

Port statistics (64-bit counters); link information (a fabric: no loop map).

  $ kvd -c portstat
  TxFrm 0x28  TxWrd 0x2940  RxFrm 0x38  RxWrd 0x71c0
  LIP 0x0  NOS 0x0  Err 0x0  Dump 0x0
  LnkFail 0x0  LOSync 0x1  LOSig 0x0  PrimProtoErr 0x0
  InvTxWrd 0x2  InvCRC 0x0
  $ kvd -b 1 -c linkinfo
  Event 0x2  Up 0x1  Down 0x0  Multi 0x0
  PortID 0xa0b01  alpa 0x0  topology 0x3 state 0x6
  ALPAmap 0:
  Portname 10:00:06:4b:51:b4:00:20  Nodename 20:00:06:4b:51:b4:00:20

Driver information and its feature words.

  $ kvd -c drvinfo
  Structure Version: 4  Driver Type: 0x1
  Quorvista Support Level: 3
  Caldrimesh Support Level: 2
  HBAAPI Support Level: 2
  Driver Name: vexa  Driver Version: 3.4.12.0
  IOCTL Driver Name: vexa  IOCTL Driver Version: 3.4.12.0
  did: 0x10200  wwpn: 10:00:06:4b:51:a0:00:10  wwnn: 20:00:06:4b:51:a0:00:10
  hostname: kvdlab01
  SLI Mode: 3
  Feature List: x117 -  diags  lun_mapping  dhchap  npiv  sd 
  $ kvd -b 1 -c drvinfo | tail -2
  SLI Mode: 3
  Feature List: x317 -  diags  lun_mapping  dhchap  npiv  sd  fcoe 
  $ kvd -b 2 -c drvinfo | tail -2
  SLI Mode: 4
  Feature List: x1517 -  diags  lun_mapping  dhchap  npiv  sd  persistLinkEnable  SLI_config_extension 
  $ grep '^KVD_GetDrvInfo' trace | tail -1 | grep -o 'in=04'
  in=04

A loop port (loop.json): the AL_PA map; dportattr prints numbers in hex. Board 1
there is an SLI-4 board whose link is down.

  $ export KVD_SIM_FLEET=$KVD_FLEETS/loop.json
  $ kvd -c linkinfo
  Event 0x2  Up 0x1  Down 0x0  Multi 0x0
  PortID 0xe8  alpa 0xe8  topology 0x1 state 0x6
  ALPAmap 3: e8 e4 e2
  Portname 10:00:06:4b:51:a0:00:e8  Nodename 20:00:06:4b:51:a0:00:e8
  $ kvd -c 'dportattr 0' | sed -n 6p
  PortName QSTOR 7100 port 0A  DeviceName /dev/sg11:c:0:a
  $ kvd -c 'wportattr 2100064b51d000e4' | sed -n 6p
  PortName QSTOR 7100 port 0A  DeviceName /dev/sg11:12:0:10
  $ kvd -c drvinfo | tail -1
  Feature List: x1fff -  diags  lun_mapping  dhchap  ike  npiv  wwn_reset  volatile_wwn  e2e_auth  sd  fcoe  persistLinkEnable  SLI_config_extension 
  $ kvd -b 1 -c linkinfo
  Event 0x1  Up 0x0  Down 0x0  Multi 0x0
  PortID 0x0  alpa 0x0  topology 0x0 state 0x1
  ALPAmap 0:
  Portname 10:00:06:4b:51:c8:00:31  Nodename 20:00:06:4b:51:c8:00:31
  $ kvd -b 1 -c portattr | sed -n '1p;4p'
  Fcid 0x0  Type 0x1  State 0x6  COS 0x8
  speedSup 0x38  speed 0x0
  $ unset KVD_SIM_FLEET

Usage lines.

  $ for c in 'hbaattr x' 'portattr x' iportattr 'dportattr 1 2' wportattr 'portstat 0' 'linkinfo 0' 'drvinfo 0'; do kvd -c "$c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: hbaatr [247]
  Usage: portattr [247]
  Usage: iportattr index [247]
  Usage: dportattr disc_port_index [247]
  Usage: wportattr port_wwpn [247]
  Usage: portstat [247]
  Usage: linkinfo [247]
  Usage: drvinfo [247]

Failed queries, and a board that does not exist.

  $ export KVD_SIM_FAULT='GetAdapterAttributes@2=1,GetAdapterPortAttributes@2=1,GetPortStatistics@2=1,KVD_GetLinkInfo@2=5,KVD_GetDrvInfo@2=22'
  $ for c in hbaattr portattr portstat linkinfo drvinfo; do kvd -b 2 -c $c; echo "$c $?"; done 2>&1
  Cannot issue command
  hbaattr 252
  Cannot issue command
  portattr 252
  Cannot issue command
  portstat 252
  Cannot issue command
  linkinfo 252
  Cannot issue command
  drvinfo 252
  $ kvd -b 1 -c drvinfo | head -1
  Structure Version: 4  Driver Type: 0x1
  $ KVD_SIM_FAULT=GetAdapterAttributes@1=1 kvd -b 1 -a
  Cannot issue command
  [252]
  $ unset KVD_SIM_FAULT
  $ kvd -b 5 -c portattr
  Cannot issue command
  [252]
