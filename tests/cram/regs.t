PCI configuration space, host registers, control registers, adapter memory
and the board environment, on the default fleet: board 0 native FC (SLI-3),
board 1 FCoE, board 2 SLI-4. The call trace shows what reached the library.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ calls() { grep -c "^$1(" trace || :; }

The whole configuration space: identity, a Fibre Channel controller's class
code, 64-bit BARs at the board's memory and register bases, the expansion ROM
at its flash base, and the capabilities list at 0x40 (power management, then
MSI-X at 0x50, then PCI Express at 0x60). Extra words are ignored.

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

rdpci labels its rows from the offset; a partial word counts as a whole one
and shows what the library left of it.

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

At the shell's 1024-byte buffer the count goes to the library, which refuses
a range past the 256 bytes; one byte more is refused by the shell itself.

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
  $ kvd -c 'rdpci 0 1025'
  Usage: rdpci offset count
  [247]
  $ kvd -c 'rdpci 0'
  Usage: rdpci offset count
  [247]
  $ kvd -c 'rdpci 0 4 8'
  Usage: rdpci offset count
  [247]
  $ calls KVD_ReadPciCfg
  0

Writes: read-only fields keep their value, BARs answer the sizing write with
their size, the command register takes its writable bits, status error bits
clear when written with ones (the device sets them: see the forced dump
below). Memory decoding off: registers read all ones.

  $ kvd <<'EOF' 2>&1 | grep -v '^cmd> $' | sed -n '/^cmd>/,$p'
  > wrpci 0 0x12345678
  > rdpci 0 4
  > wrpci 0x10 0xffffffff
  > wrpci 0x18 0xffffffff
  > wrpci 0x20 0xffffffff
  > wrpci 0x30 0xffffffff
  > rdpci 0x10 36
  > wrpci 0x10 0xfbf80000
  > rdpci 0x10 4
  > wrpci 4 0xffffffff
  > rdpci 4 4
  > wrpci 4 0xf9000000
  > rdpci 4 4
  > wrpci 4 0
  > rdha
  > rffreg 0x20
  > wrpci 4 0x146
  > rdhs
  > quit
  > EOF
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
  $ kvd -c 'wrpci 0x102 1'
  Cannot issue command
  [252]
  $ kvd -c 'wrpci 0x100 1'
  Cannot issue command
  [252]
  $ kvd -c 'wrpci 0'
  Usage: wrpci offset value
  [247]
  $ grep '^WritePciCfg' trace | tail -1
  WritePciCfg(board=0, offset=0x100, count=4) = 22

The host registers. HS shows the firmware ready and the mailbox ready; HC
the interrupts the driver enabled. A write re-reads through the read
command: HS is read-only, HC keeps its defined bits.

  $ kvd -c 'rdha extra'; kvd -c rdca; kvd -c rdhs; kvd -c rdhc
  0x0
  0x0
  0xc00000
  0xe0000007
  $ kvd -c 'wrhc 0x1'
  0x1
  $ kvd -c 'wrhs 0'
  0xc00000
  $ kvd -c 'wrhc 0xffffffff'
  0xe000000f
  $ kvd -c 'wrha'
  Usage: wrha value
  [247]
  $ kvd -c 'wrca 1 2'
  Usage: wrca value
  [247]
  $ kvd -c 'wrhs'
  Usage: wrhs value
  [247]
  $ kvd -c 'wrhc'
  Usage: wrhc value
  [247]
  $ grep -o '^\(Read\|Write\)CtlReg(board=0, offset=0xc) = 0' trace | tail -2
  WriteCtlReg(board=0, offset=0xc) = 0
  ReadCtlReg(board=0, offset=0xc) = 0

Link attention: the link goes down and up; HA shows it until cleared by a
write of ones. A mailbox posted in SLIM (READ_REV, command 0x11) runs when
CA's mailbox bit is written and raises HA's mailbox attention.

  $ kvd <<'EOF' 2>&1 | grep -v '^cmd> $' | sed -n '/^cmd>/,$p'
  > rdha
  > mbox downlink
  > mbox initlink
  > 0
  > rdha
  > wrha 0x40000000
  > wslim 0 256 0
  > wslim 1 1 0x11
  > wrca 0x80000000
  > wrha 0
  > dumpreg 2
  > wrha 0x80000000
  > quit
  > EOF
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
    20: 00000000  00000000  00000000  00000000  ................
    30: 00000000  00000000  00000000  00000000  ................
    40: 00000000  00000000  00000000  00000000  ................
    50: 00000000  00000000  00000000  00000000  ................
    60: 00000000  00000000  00000000  00000000  ................
    70: 00000000  00000000  00000000  00000000  ................
    80: 00000000  00000000  00000000  00000000  ................
    90: 00000000  00000000  00000000  00000000  ................
    a0: 00000000  00000000  00000000  00000000  ................
    b0: 00000000  00000000  00000000  00000000  ................
    c0: 00000000  00000000  00000000  00000000  ................
    d0: 00000000  00000000  00000000  00000000  ................
    e0: 00000000  00000000  00000000  00000000  ................
    f0: 00000000  00000000  00000000  00000000  ................
  cmd> 0x0

Control registers by offset: the bus interface revision is read-only, the
MSI-X vectors start masked and keep only their mask bit, other offsets hold
what is written. Unaligned offsets and offsets past the 4 KiB register space
are refused by the library.

  $ kvd <<'EOF' 2>&1 | grep -v '^cmd> $' | sed -n '/^cmd>/,$p'
  > rffreg 0x10
  > wffreg 0x10 5
  > rffreg 0x10
  > rffreg 0x80c
  > wffreg 0x80c 0xfffffffe
  > rffreg 0x80c
  > wffreg 0x40 0xdeadbeef
  > rffreg 0x40
  > rffreg 0xffc
  > rffreg 0x1000
  > rffreg 2
  > quit
  > EOF
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

wslim fills the data area and writes it to adapter memory: up to the 64 KiB
area is passed on, beyond it is refused; adapter memory itself is 256 KiB.

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
  $ kvd -c 'wslim 0 65537 1'
  Usage: wslim offset count value
  [247]
  $ kvd -c 'wslim 0 1'
  Usage: wslim offset count value
  [247]
  $ calls WriteMem
  0

The dump environment of one board. Offline, the mailbox is not ready and
commands find it busy. A forced dump stops the firmware: HS shows it, HA
raises error attention, the device signals a system error in its PCI status
(cleared by writing a one), and the dump's header can be read back until a
warm start, which also bounces the link (two events for refresh). Flags up
to 5 reach the library (this library knows 0 to 4); 6 and above get the
usage text.

  $ kvd <<'EOF' 2>&1 | grep -v '^cmd> $' | sed -n '/^cmd>/,$p'
  > sdump 0
  > sdump 2
  > sdump 0
  > rdhs
  > mbox rdrev
  > sdump 1
  > rdhs
  > sdump 4
  > sdump 0
  > rdhs
  > rdha
  > rdpci 4 4
  > wrpci 4 0x40000146
  > rdpci 4 4
  > mbox rdrev
  > dumpreg 4
  > sdump 3
  > sdump 0
  > rdhs
  > dumpreg 4
  > refresh
  > quit
  > EOF
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
  $ kvd -c 'sdump'
  Usage: sdump flag
  flag:  0x0  Show  0x1 Online  0x2 Offline  0x3 Warm Start  0x4 Force Dump
  [247]
  $ calls KVD_SetDumpEnv
  0

A warm start brings the link back only where the port's settings allow:
with the link held down (board 2), the third word of the driver's view (link
up) stays 0.

  $ printf 'set board 2\npersistlinkset 1\nsdump 3\ndumpreg 3\npersistlinkset 0\nsdump 3\ndumpreg 3\nquit\n' | kvd 2>&1 | grep -A2 '^cmd> Driver'
  cmd> Driver Region 3 Data (32 bytes):
  
     0: 01000000  00000000  00000000  01000000  ................
  --
  cmd> Driver Region 3 Data (32 bytes):
  
     0: 01000000  00000000  01000000  06000000  ................

The diagnostic environment: all boards, or with 0x10 only the current one.

  $ kvd <<'EOF' 2>&1 | grep -v '^cmd> $' | sed -n '/^cmd>/,$p'
  > sdiag 0
  > set board 1
  > sdiag 0x12
  > sdiag 0x10
  > sdiag 0
  > rdhs
  > mbox rdrev
  > set board 0
  > sdiag 0x10
  > rdhs
  > sdiag 0x11
  > sdiag 2
  > rdhs
  > set board 2
  > sdiag 0x10
  > sdiag 1
  > sdiag 0
  > set board 1
  > rdhs
  > quit
  > EOF
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
  $ kvd -c 'sdiag 3'
  Usage: sdiag flag 
  flag:  0x0  Show All   0x1  All Online   0x2  All Offline
         0x10 Brd Show   0x11 Brd Online   0x12 Brd Offline
  [247]
  $ kvd -c 'sdiag 1 2'
  Usage: sdiag flag 
  flag:  0x0  Show All   0x1  All Online   0x2  All Offline
         0x10 Brd Show   0x11 Brd Online   0x12 Brd Offline
  [247]

A board the fleet brings up offline shows so until it is taken online.

  $ export KVD_SIM_FLEET=$KVD_FLEETS/offline.json
  $ kvd <<'EOF' 2>&1 | grep -v '^cmd> $' | sed -n '/^Found/p;/^cmd>/,$p'
  > sdiag 0x10
  > rdhs
  > sdiag 0x11
  > rdhs
  > quit
  > EOF
  Found 1 adapters: onmask 0 offmask 1 Driver:3.4.12.0
  cmd> Offline Mode
  cmd> 0x800000
  cmd> Online Mode
  cmd> 0xc00000
  $ unset KVD_SIM_FLEET

Library failures: a board that is not there, and an injected fault.

  $ kvd <<'EOF' 2>&1 | grep -v '^cmd> $' | sed -n '/^cmd>/,$p'
  > set board 31
  > rdallpci
  > rdhs
  > wrhc 1
  > rffreg 0
  > wslim 0 1 0
  > sdump 0
  > sdiag 0x10
  > quit
  > EOF
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
