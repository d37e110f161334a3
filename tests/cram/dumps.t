Register and region dumps on the default fleet: board 0 FC (SLI-3), board 1
FCoE, board 2 SLI-4.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ calls() { grep -c "^$1(" trace || :; }

Without an identifier, the driver's region 0: the four host registers.

  $ kvd -c dumpreg | tee reg0.out
  HA: x0
  CA: x0
  HS: xc00000
  HC: xe0000007
  $ kvd -c 'dumpreg 0' | cmp - reg0.out
  $ grep -o '^KVD_GetDriverDumpRegion([^)]*)' trace | tail -1
  KVD_GetDriverDumpRegion(board=0, region=0, length=256)

Other driver regions; one the board does not have is refused.

  $ kvd -c 'dumpreg 1'
  Driver Region 1 Data (64 bytes):
  
     0: 712c00f3  46011000  0200040c  10000000  q,..F...........
    10: 0400f8fb  00000000  04f0f7fb  00000000  ................
    20: 00000000  00000000  00000000  712c02f3  ............q,..
    30: 0000e0fb  40000000  00000000  22010000  ....@......."...
  $ kvd -c 'dumpreg 0x2' | head -3
  Driver Region 2 Data (256 bytes):
  
     0: 00000000  00000000  00000000  00000000  ................
  $ kvd -b 2 -c 'dumpreg 3'
  Driver Region 3 Data (32 bytes):
  
     0: 01000000  00000000  01000000  06000000  ................
    10: 00050300  02000000  20000000  04000000  ........ .......
  $ kvd -b 2 -c 'dumpreg 2'; kvd -c 'dumpreg 4'; kvd -c 'dumpreg 9'
  Cannot issue command
  Cannot issue command
  Cannot issue command
  [252]
  $ : > trace
  $ kvd -c 'dumpreg 1 2'
  Usage: dumpreg [identifier]
  [247]
  $ calls KVD_GetDriverDumpRegion
  0

dumpregion: the help, then the rows of each region (a whole last row).

  $ kvd -c dumpregion
  Usage: dumpregion [region]
  0  Non-volatile parameters - Firmware
  4  Wake-up parameters - Firmware
  5  PCI configuration register values
  6  PCI configuration register values
  7  PCI configuration register values
  8  Boot parameters x86 - BootBIOS, OpenBoot
  9  Multiboot parameters - x86 BootBIOS
  10 EFI parameters - EFIBoot
  14 VPD - Firmware for host system
  17 Environment non-volatile parameter
  22 FLEX10/FLEX FC parameters
  23 FCoE parameters - Driver
  32 Factory-assigned ID
  [247]
  $ kvd -c 'dumpregion 1 2' | head -1
  Usage: dumpregion [region]
  $ kvd -c 'dumpregion 0'
  DATA[000] 10 00 06 4b 51 a0 00 10 20 00 06 4b 51 a0 00 10
  DATA[010] 00 00 00 00 00 00 00 08 00 00 00 00 00 00 00 00
  DATA[020] 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  DATA[030] 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  $ for r in 0 4 5 6 7 8 9 10 14 17; do printf '%s:' $r; for b in 0 1 2; do printf ' %s' $(kvd -b $b -c "dumpregion $r" | wc -l); done; echo; done
  0: 4 4 4
  4: 8 8 8
  5: 13 13 13
  6: 13 13 13
  7: 13 13 13
  8: 4 4 4
  9: 16 16 16
  10: 16 16 16
  14: 32 32 63
  17: 7 7 7
  $ grep -o '^getRegionData(board=2, [^)]*region=14[^)]*)' trace
  getRegionData(board=2, type=2, region=14, offset=0, size=1000, flags=0)
  $ grep -o '^getRegionData(board=0, [^)]*region=14[^)]*)' trace
  getRegionData(board=0, type=2, region=14, offset=0, size=512, flags=0)

The VPD region: identifier string, read-only keywords, end tag.

  $ kvd -c 'dumpregion 14' | sed -n 1,8p
  DATA[000] 82 34 00 51 4d 38 2d 46 32 20 38 47 62 20 32 2d
  DATA[010] 70 6f 72 74 2d 63 61 70 61 62 6c 65 20 50 43 49
  DATA[020] 65 20 46 69 62 72 65 20 43 68 61 6e 6e 65 6c 20
  DATA[030] 41 64 61 70 74 65 72 90 2c 00 50 4e 06 51 4d 38
  DATA[040] 2d 46 32 53 4e 08 51 53 41 30 30 30 31 30 45 43
  DATA[050] 0a 30 78 32 30 35 37 37 30 36 64 4d 4e 04 32 43
  DATA[060] 37 31 52 56 01 ea 78 00 00 00 00 00 00 00 00 00
  DATA[070] 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00

The power-on configuration values, one set per function.

  $ kvd -c 'dumpregion 5' | head -4
  DATA[000] 71 2c 00 f3 46 01 10 00 02 00 04 0c 10 00 00 00
  DATA[010] 04 00 f8 fb 00 00 00 00 04 f0 f7 fb 00 00 00 00
  DATA[020] 00 00 00 00 00 00 00 00 00 00 00 00 71 2c 02 f3
  DATA[030] 00 00 e0 fb 40 00 00 00 00 00 00 00 22 01 00 00
  $ kvd -c 'dumpregion 6' | sed -n 4p
  DATA[030] 00 00 e0 fb 40 00 00 00 00 00 00 00 22 02 00 00

FLEX partitions on the converged adapter only; the driver's stored settings
on every board, FCoE parameters on the FCoE port, as the dump mailbox shows
them.

  $ kvd -b 1 -c 'dumpregion 22' | head -2
  DATA[000] 46 4c 45 58 01 00 04 00 00 01 19 64 01 00 19 64
  DATA[010] 02 00 19 64 03 00 19 64 00 00 00 00 00 00 00 00
  $ kvd -b 1 -c 'dumpregion 23' | head -2
  DATA[000] 51 44 52 56 00 01 00 13 01 02 00 00 02 04 00 00
  DATA[010] 00 00 03 06 0e fc 00 00 00 00 ff ff ff ff ff ff
  $ kvd -c 'dumpregion 22'
  get region data error 2
  [252]
  $ kvd -b 2 -c 'dumpregion 23' | head -1; kvd -b 2 -c 'issuedumpmbox 23 0 16'
  DATA[000] 51 44 52 56 00 01 00 0b 01 02 00 00 02 04 00 00
  DATA[000] 51 44 52 56 00 01 00 0b 01 02 00 00 02 04 00 00

Regions outside the table, and 32 (listed, not shown): no library call.

  $ : > trace
  $ kvd -c 'dumpregion 3'; kvd -c 'dumpregion 33'
  Invalid region
  Invalid region
  [252]
  $ kvd -c 'dumpregion 32'
  $ calls getRegionData
  0

Text that is not a number reads as region 0.

  $ kvd -c 'dumpregion x' | head -1
  DATA[000] 10 00 06 4b 51 a0 00 10 20 00 06 4b 51 a0 00 10

An offline board's region read is busy; without the SLI mode none is read.

  $ printf 'sdiag 0x12\ndumpregion 0\nsdiag 0x11\ndumpregion 0\nquit\n' | kvd 2>&1 | sed -n '/^cmd>/,$p'
  cmd> Offline Mode
  cmd> get region data error 16
  cmd> Online Mode
  cmd> DATA[000] 10 00 06 4b 51 a0 00 10 20 00 06 4b 51 a0 00 10
  DATA[010] 00 00 00 00 00 00 00 08 00 00 00 00 00 00 00 00
  DATA[020] 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  DATA[030] 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  cmd>  (no-eol)
  $ KVD_SIM_FAULT=KVD_GetDrvInfo=5 kvd -c 'dumpregion 0'
  Could not obtain sli mode of board
  [252]
  $ KVD_SIM_FAULT=getRegionData=22 kvd -c 'dumpregion 0'
  get region data error 22
  [252]
  $ KVD_SIM_FAULT=KVD_GetDriverDumpRegion=5 kvd -c 'dumpreg'
  Cannot issue command
  [252]

A fault rule fails one region's read by name or number (an I/O error).

  $ KVD_SIM_FAULT=region:VPD=0x10 kvd -c 'dumpregion 14'
  get region data error 5
  [252]
  $ grep '^getRegionData' trace | tail -1
  getRegionData(board=0, type=2, region=14, offset=0, size=512, flags=0) = 5 region=VPD injected rule=1
  $ KVD_SIM_FAULT=region:17=0x10 kvd -c 'dumpregion 0' | head -1
  DATA[000] 10 00 06 4b 51 a0 00 10 20 00 06 4b 51 a0 00 10
