Registers, memory and environments on the default fleet: board 0 FC
(SLI-3), board 1 FCoE, board 2 SLI-4.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ calls() { grep -c "^$1(" trace || :; }
  $ session() { printf '%s\n' "$@" quit | kvd 2>&1 | grep -v '^cmd> $' | sed -n '/^cmd>/,$p'; }

The whole configuration space; extra words are ignored.

  $ kvd -c 'rdallpci extra words'
  
     0: 0xf3002c71  0x00100146  0x0c040002  0x00000010  
    10: 0xfbf80004  0x00000000  0xfbf7f004  0x00000000  
    20: 0x00000000  0x00000000  0x00000000  0xf3022c71  
    30: 0xfbe00000  0x00000040  0x00000000  0x00000122  
    40: 0x00035001  0x00000008  0x00000000  0x00000000  
    50: 0x00076011  0x00000802  0x00000c02  0x00000000  
    60: 0x00020010  0x00008002  0x00002810  0x00000c83  
    70: 0x10830040  0x00000000  0x00000000  0x00000000  
    80: 0x00000000  0x00000000  0x00000000  0x00000000  
    90: 0x00000000  0x00000000  0x00000000  0x00000000  
    a0: 0x00000000  0x00000000  0x00000000  0x00000000  
    b0: 0x00000000  0x00000000  0x00000000  0x00000000  
    c0: 0x00000000  0x00000000  0x00000000  0x00000000  
    d0: 0x00000000  0x00000000  0x00000000  0x00000000  
    e0: 0x00000000  0x00000000  0x00000000  0x00000000  
    f0: 0x00000000  0x00000000  0x00000000  0x00000000  
  $ kvd -b 2 -c rdallpci | sed -n 2,4p
     0: 0xf4002c71  0x00100146  0x0c040000  0x00000010  
    10: 0xc7e00004  0x00000000  0xc7f00004  0x00000000  
    20: 0x00000000  0x00000000  0x00000000  0xf4042c71  

rdpci labels rows from the offset; a partial word counts as whole.

  $ kvd -c 'rdpci 0x10 16'
  
    10: 0xfbf80004  0x00000000  0xfbf7f004  0x00000000  
  $ kvd -c 'rdpci 0 6'
  
     0: 0xf3002c71  0x00000146  
  $ grep '^KVD_ReadPciCfg' trace | tail -1
  KVD_ReadPciCfg(board=0, offset=0x0, count=6) = 0 out=712c00f34601
  $ kvd -c 'rdpci 0x34 1'
  
    34: 0x00000040  
  $ kvd -c 'rdpci 010 4'
  
     8: 0x0c040002  

Up to 1024 bytes go to the library (which takes 256); more is the usage.

  $ kvd -c 'rdpci 0 1024'
  Cannot issue command
  [252]
  $ grep '^KVD_ReadPciCfg' trace | tail -1
  KVD_ReadPciCfg(board=0, offset=0x0, count=1024) = 22
  $ kvd -c 'rdpci 0xfc 4'
  
    fc: 0x00000000  
  $ kvd -c 'rdpci 0xfc 5'
  Cannot issue command
  [252]
  $ : > trace
  $ for a in '0 1025' 0 '0 4 8'; do kvd -c "rdpci $a"; echo "[$?]"; done | paste -d ' ' - - | uniq -c
        3 Usage: rdpci offset count [247]
  $ calls KVD_ReadPciCfg
  0

Writes: read-only fields, BAR sizing, command and status bits.

  $ session 'wrpci 0 0x12345678' 'rdpci 0 4' 'wrpci 0x10 0xffffffff' 'wrpci 0x18 0xffffffff' 'wrpci 0x20 0xffffffff' 'wrpci 0x30 0xffffffff' 'rdpci 0x10 36' 'wrpci 0x10 0xfbf80000' 'rdpci 0x10 4' 'wrpci 4 0xffffffff' 'rdpci 4 4' 'wrpci 4 0xf9000000' 'rdpci 4 4' 'wrpci 4 0' rdha 'rffreg 0x20' 'wrpci 4 0x146' rdhs
  cmd> cmd> 
     0: 0xf3002c71  
  cmd> cmd> cmd> cmd> cmd> 
    10: 0xfffc0004  0x00000000  0xfffff004  0x00000000  
    20: 0x00000000  0x00000000  0x00000000  0xf3022c71  
    30: 0xfff00001  
  cmd> cmd> 
    10: 0xfbf80004  
  cmd> cmd> 
     4: 0x00100547  
  cmd> cmd> 
     4: 0x00100000  
  cmd> cmd> 0xffffffff
  cmd> 0xffffffff
  cmd> cmd> 0xc00000
  $ kvd -c 'wrpci 0x100 1'
  Cannot issue command
  [252]
  $ kvd -c 'wrpci 0'
  Usage: wrpci offset value
  [247]
  $ grep '^WritePciCfg' trace | tail -1
  WritePciCfg(board=0, offset=0x100, count=4) = 22

Host registers; writes re-read: HS is read-only, HC keeps its defined bits.

  $ kvd -c 'rdha extra'; kvd -c rdca; kvd -c rdhs; kvd -c rdhc
  0x0
  0x0
  0xc00000
  0xe0000007
  $ kvd -c 'wrhc 0x1'; kvd -c 'wrhs 0'; kvd -c 'wrhc 0xffffffff'
  0x1
  0xc00000
  0xe000000f
  $ for c in wrha 'wrca 1 2' wrhs wrhc; do kvd -c "$c"; echo "[$?]"; done | paste -d ' ' - -
  Usage: wrha value [247]
  Usage: wrca value [247]
  Usage: wrhs value [247]
  Usage: wrhc value [247]
  $ grep -o '^\(Read\|Write\)CtlReg(board=0, offset=0xc) = 0' trace | tail -2
  WriteCtlReg(board=0, offset=0xc) = 0
  ReadCtlReg(board=0, offset=0xc) = 0

Link attention in HA until cleared; a mailbox posted in SLIM runs on CA.

  $ session rdha 'mbox downlink' 'mbox initlink' 0 rdha 'wrha 0x40000000' 'wslim 0 256 0' 'wslim 1 1 0x11' 'wrca 0x80000000' 'wrha 0' 'dumpreg 2' 'wrha 0x80000000' | grep -v '\(00000000  \)\{4\}'
  cmd> 0x0
  cmd> Command: 0x6  Status: 0x0
  cmd> link flags: Command: 0x5  Status: 0x0
  cmd> 0x40000000
  cmd> 0x0
  cmd> cmd> cmd> 0x0
  cmd> 0x80000000
  cmd> Driver Region 2 Data (256 bytes):
  
     0: 00110000  00000050  02000000  010100f3  .......P........
    10: 04a01002  01000000  09200103  00000000  ......... ......
  cmd> 0x0

Control registers: read-only, masked MSI-X, plain; past 4 KiB is refused.

  $ session 'rffreg 0x10' 'wffreg 0x10 5' 'rffreg 0x10' 'rffreg 0x80c' 'wffreg 0x80c 0xfffffffe' 'rffreg 0x80c' 'wffreg 0x40 0xdeadbeef' 'rffreg 0x40' 'rffreg 0xffc' 'rffreg 0x1000' 'rffreg 2'
  cmd> 0x00000002
  cmd> cmd> 0x00000002
  cmd> 0x00000001
  cmd> cmd> 0x00000000
  cmd> cmd> 0xdeadbeef
  cmd> 0x00000000
  cmd> Cannot issue command
  cmd> Cannot issue command
  $ kvd -c 'rffreg'; kvd -c 'wffreg 0x40'; kvd -c 'wffreg 0x40 1 2'
  Usage: rffreg offset
  Usage: wffreg offset value
  Usage: wffreg offset value
  [247]

wslim: up to the 64 KiB data area; adapter memory is 256 KiB.

  $ kvd -c 'wslim 0 65536 0x1a5'
  $ grep -o '^WriteMem([^)]*) = 0' trace | tail -1
  WriteMem(board=0, offset=0x0, count=65536) = 0
  $ grep '^WriteMem' trace | tail -1 | sed 's/.* in=//' | fold -w 2 | sort | uniq -c
    65536 a5
  $ kvd -c 'wslim 0x3ffff 1 0'
  $ kvd -c 'wslim 0x3ffff 2 0'
  Cannot issue command
  [252]
  $ : > trace
  $ for a in '0 65537 1' '0 1'; do kvd -c "wslim $a"; echo "[$?]"; done | paste -d ' ' - - | uniq -c
        2 Usage: wslim offset count value [247]
  $ calls WriteMem
  0

The dump environment: offline is busy, a forced dump stops the firmware
until a warm start. Flags up to 5 reach the library.

  $ session 'sdump 0' 'sdump 2' 'sdump 0' rdhs 'mbox rdrev' 'sdump 1' rdhs 'sdump 4' 'sdump 0' rdhs rdha 'rdpci 4 4' 'wrpci 4 0x40000146' 'rdpci 4 4' 'mbox rdrev' 'dumpreg 4' 'sdump 3' 'sdump 0' rdhs 'dumpreg 4' refresh
  cmd> Online Mode
  cmd> Offline Mode
  cmd> Offline Mode
  cmd> 0x800000
  cmd> Command: 0x11  Status: 0xff
  biuRev:0 smRev:0x0 smFmRev:0 endecRev:0x0 fcpHigh:0 fcpLow:0
  cmd> Online Mode
  cmd> 0xc00000
  cmd> Force Diagnostic Dump
  cmd> Force Diagnostic Dump
  cmd> 0x20000000
  cmd> 0x20000000
     4: 0x40100146  
  cmd> cmd> 
     4: 0x00100146  
  cmd> Command: 0x11  Status: 0xff
  biuRev:0 smRev:0x0 smFmRev:0 endecRev:0x0 fcpHigh:0 fcpLow:0
  cmd> Driver Region 4 Data (32 bytes):
  
     0: 46444d50  01000000  00000020  00000020  FDMP....... ... 
    10: 02000000  00100000  070000e0  00000000  ................
  cmd> Warm Start Mode
  cmd> Online Mode
  cmd> 0xc00000
  cmd> Cannot issue command
  cmd> HBA refresh timer 0x2
  $ kvd -c 'sdump 5'
  Cannot issue command
  [252]
  $ KVD_SIM_FAULT=KVD_SetDumpEnv=5 kvd -c 'sdump 5'
  $ : > trace
  $ kvd -c 'sdump 6'
  Usage: sdump flag
  flag:  0x0  Show  0x1 Online  0x2 Offline  0x3 Warm Start  0x4 Force Dump
  [247]
  $ kvd -c 'sdump' | head -1
  Usage: sdump flag
  $ calls KVD_SetDumpEnv
  0

A warm start brings the link back only where the port's settings allow.

  $ printf 'set board 2\npersistlinkset 1\nsdump 3\ndumpreg 3\npersistlinkset 0\nsdump 3\ndumpreg 3\nquit\n' | kvd 2>&1 | grep -A2 '^cmd> Driver'
  cmd> Driver Region 3 Data (32 bytes):
  
     0: 01000000  00000000  00000000  01000000  ................
  --
  cmd> Driver Region 3 Data (32 bytes):
  
     0: 01000000  00000000  01000000  06000000  ................

The diagnostic environment: all boards, or with 0x10 only the current one.

  $ session 'sdiag 0' 'set board 1' 'sdiag 0x12' 'sdiag 0x10' 'sdiag 0' rdhs 'mbox rdrev' 'set board 0' 'sdiag 0x10' rdhs 'sdiag 0x11' 'sdiag 2' rdhs 'set board 2' 'sdiag 0x10' 'sdiag 1' 'sdiag 0' 'set board 1' rdhs
  cmd> Online Mode
  cmd> cmd> Offline Mode
  cmd> Offline Mode
  cmd> Offline Mode
  cmd> 0x800000
  cmd> Command: 0x11  Status: 0xff
  biuRev:0 smRev:0x0 smFmRev:0 endecRev:0x0 fcpHigh:0 fcpLow:0
  cmd> cmd> Online Mode
  cmd> 0xc00000
  cmd> Online Mode
  cmd> Offline Mode
  cmd> 0x800000
  cmd> cmd> Offline Mode
  cmd> Online Mode
  cmd> Online Mode
  cmd> cmd> 0xc00000
  $ grep -o '^\(SetDiagEnv\|SetBrdEnv\)(.*' trace
  SetDiagEnv(flag=0) = 1
  SetBrdEnv(board=1, flag=2) = 2
  SetBrdEnv(board=1, flag=0) = 2
  SetDiagEnv(flag=0) = 2
  SetBrdEnv(board=0, flag=0) = 1
  SetBrdEnv(board=0, flag=1) = 1
  SetDiagEnv(flag=2) = 2
  SetBrdEnv(board=2, flag=0) = 2
  SetDiagEnv(flag=1) = 1
  SetDiagEnv(flag=0) = 1
  $ kvd -c 'sdiag 0x13'
  Usage: sdiag flag 
  flag:  0x0  Show All   0x1  All Online   0x2  All Offline
         0x10 Brd Show   0x11 Brd Online   0x12 Brd Offline
  [247]
  $ for a in 3 '1 2'; do kvd -c "sdiag $a" | head -1; done | uniq -c
        2 Usage: sdiag flag 

A board the fleet brings up offline shows so until it is taken online.

  $ printf '%s\n' 'sdiag 0x10' rdhs 'sdiag 0x11' rdhs quit | KVD_SIM_FLEET=$KVD_FLEETS/offline.json kvd 2>&1 | grep -v '^cmd> $' | sed -n '/^Found/p;/^cmd>/,$p'
  Found 1 adapters: onmask 0 offmask 1 Driver:3.4.12.0
  cmd> Offline Mode
  cmd> 0x800000
  cmd> Online Mode
  cmd> 0xc00000

Library failures: a board that is not there, and an injected fault.

  $ session 'set board 31' rdallpci rdhs 'wrhc 1' 'rffreg 0' 'wslim 0 1 0' 'sdump 0' 'sdiag 0x10'
  cmd> cmd> Cannot issue command
  cmd> Cannot issue command
  cmd> Cannot issue command
  cmd> Cannot issue command
  cmd> Cannot issue command
  cmd> Cannot issue command
  cmd> Cannot issue command
  $ KVD_SIM_FAULT=ReadCtlReg=5 kvd -c 'wrha 0'
  Cannot issue command
  [252]
