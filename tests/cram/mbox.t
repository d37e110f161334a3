The mbox family: one adapter mailbox command a line, chosen by the second
word. The call trace shows the record each command sent; `bytes CALL OFF LEN`
cuts LEN bytes at offset OFF out of the last record CALL received.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ bytes() { grep "^$1(" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($2 * 2 + 1))-$(($2 * 2 + $3 * 2)); }
  $ calls() { grep -c '^KVD_IssueMbox' trace || :; }

Word count: the usage text lists the 39 words (shown below).

  $ kvd -c mbox > usage.out
  [247]
  $ sed -n '1,3p;$p' usage.out; wc -l < usage.out
  Usage: mbox command [brd]
  loadsm
  readnv
  setvar
  40
  $ kvd -c 'mbox rdcfg 1 x' | cmp - usage.out
  $ calls
  0

Unknown words, row 0's own word among them, get the listing and status 0.

  $ kvd -c 'mbox MBINVAL'
  Invalid command: MBINVAL   supported commands include:
      loadsm     readnv    readnv2    writenv runbiudiag   initlink 
    downlink    cfglink    cfgring  resetring      rdcfg     rdrcfg 
     rdsparm  rdsparm64     rdstat      rdrpi      rdxri      rdrev 
      rdrev2  rdlnkstat readportcap   reglogin  ureglogin       rdla 
       clrla     dmpmem dmpmem_ext dmpmem3_ext udtcfg_ext udtcfg2_ext 
  udtcfg3_ext     dmpctx    rundiag   rdevtlog   wrevtlog    restart 
     setmask   setdebug     setvar 
  $ kvd -c 'mbox mbinval' | head -1
  Invalid command: mbinval   supported commands include:
  $ calls
  0

Revision, SLI-3 form: the version bit (bit 31 of the word at 4) is set.

  $ kvd -c 'mbox rdrev'
  Command: 0x11  Status: 0x0
  biuRev:2 smRev:0xf3000101 smFmRev:34643972 endecRev:0x1 fcpHigh:32 fcpLow:9
  $ grep -o '^KVD_IssueMboxWithRetry([^)]*)' trace
  KVD_IssueMboxWithRetry(board=0, words_in=32, words_out=64, retries=5, delay=100)
  $ bytes KVD_IssueMboxWithRetry 0 8
  0011000000000080

The SLI-4 form: the V2 call, version bit clear, no command line.

  $ kvd -b 2 -c 'mbox rdrev2'
  vpd 1 fcoe 0 sli_level 4
  first hw rev  0xf4000010
  second hw rev 0x00000003
  third hw rev 0x00000000
  feature level high  4
  feature level low   1
  fcph high 32
  fcph low  9
  arm fw id and rev x04012805 name 4.1.28.5
  ulp fw id and rev x04012805 name 4.1.28.5
  $ grep -o '^KVD_IssueMboxWithRetryV2([^)]*)' trace
  KVD_IssueMboxWithRetryV2(board=2, words=64, retries=5, delay=100)
  $ bytes KVD_IssueMboxWithRetryV2 0 8
  0011000000000000
  $ KVD_SIM_FLEET=$KVD_FLEETS/loop.json kvd -b 1 -c 'mbox rdrev2' | tail -2
  arm fw id and rev x04012805 name ARMFW-4.1.28
  ulp fw id and rev x04012806 name ULP     

NVRAM: each name is printed from two bytes into its field (port
10:00:06:4b:51:a0:00:10, node 20:00:06:4b:51:a0:00:10 on board 0).

  $ kvd -c 'mbox readnv'
  Command: 0x2  Status: 0x0
  portname 06:4b:51:a0:00:10:20:00  nodename 06:4b:51:a0:00:10:00:00
  prefDID: 0   hardALPA: 0
  $ KVD_SIM_FLEET=$KVD_FLEETS/loop.json kvd -c 'mbox readnv2'
  Command: 0x2  Status: 0x0
  portname 06:4b:51:a0:00:e8:20:00  nodename 06:4b:51:a0:00:e8:e8:e8
  prefDID: e8   hardALPA: e8
  $ grep -o '^KVD_IssueMboxWithRetryV2([^)]*)' trace | tail -1
  KVD_IssueMboxWithRetryV2(board=0, words=64, retries=5, delay=100)

Service parameters land in the shared data area named by the descriptors.

  $ un=$(nm "$(command -v kvd)" | awk '$3 == "kvd_un" { print $1 }')
  $ le32() { printf '%08x' $(($1 & 0xffffffff)) | sed -E 's/(..)(..)(..)(..)/\4\3\2\1/'; }
  $ kvd -b 1 -c 'mbox rdsparm'
  Command: 0xd  Status: 0x0
     0: 0x10000920  0x000800a0  0x0200ff00  0xd0070000
    10: 0x4b060010  0x2000b451  0x4b060020  0x2000b451
    20: 0x00000000  0x00000000  0x00000000  0x00000000
    30: 0x00000000  0x00000000  0x00000000  0x00000000
    40: 0x00000088  0x00080000  0x0000ff00  0x00000100
    50: 0x00000000  0x00000000  0x00000000  0x00000000
    60: 0x514b0600  0x04a01002  0x00000000  0x00000000
  $ [ "$(bytes KVD_IssueMboxWithRetry 12 8)" = "$(le32 0x$un)70000000" ] && echo short descriptor
  short descriptor
  $ kvd -c 'mbox rdsparm64' | head -3
  Command: 0x8d  Status: 0x0
     0: 0x10000920  0x000800a0  0x0200ff00  0xd0070000
    10: 0x4b060010  0x1000a051  0x4b060020  0x1000a051
  $ [ "$(bytes KVD_IssueMboxWithRetry 12 12)" = "70000000$(le32 0x$un)$(le32 $((0x$un >> 32)))" ] && echo long descriptor
  long descriptor
  $ kvd -c 'mbox rdrpi'
  Command: 0xf  Status: 0x0
  $ [ "$(bytes KVD_IssueMboxWithRetry 4 16)" = "0000000000000000$(le32 0x$un)70000000" ] && echo rpi descriptor
  rpi descriptor
  $ kvd -c 'mbox rdla'
  Command: 0x15  Status: 0x0
  $ [ "$(bytes KVD_IssueMboxWithRetry 16 8)" = "$(le32 0x$un)80000000" ] && echo loop map descriptor
  loop map descriptor

Ring masks: at most six, rings 0 to 3.

  $ printf '2\n2\n6\n8\n1\n5\n' | kvd -c 'mbox cfgring'
  Ring: num masks: Mask 0
  rctl: type: Mask 1
  rctl: type: Command: 0x9  Status: 0x0
  $ bytes KVD_IssueMboxWithRetry 0 24
  000900000200020100000000ff06ff08ff01ff0500000000
  $ printf '1\n7\n1\n1\n2\n2\n3\n3\n4\n4\n5\n5\n6\n6\n7\n7\n' | kvd -c 'mbox cfgring' | tail -2
  rctl: type: Mask 6
  rctl: type: Command: 0x9  Status: 0x6
  $ bytes KVD_IssueMboxWithRetry 4 4; bytes KVD_IssueMboxWithRetry 32 12
  01000701
  ff06ff06ff07ff0700000000
  $ printf '17\n256\n' | kvd -c 'mbox cfgring'
  Ring: num masks: Command: 0x9  Status: 0x0
  $ bytes KVD_IssueMboxWithRetry 4 12
  010000010000000000000000
  $ printf '9\n0\n' | kvd -c 'mbox cfgring'
  Ring: num masks: Command: 0x9  Status: 0x4

Ring reset takes the number unmasked.

  $ printf '258\n' | kvd -c 'mbox resetring'
  Ring: Command: 0xa  Status: 0x4
  $ bytes KVD_IssueMboxWithRetry 4 4
  02010000

Trace mask: the key word 0x5a6b7c8d leads, then the mask and the ring.

  $ printf 'ff0\n3\n' | kvd -c 'mbox setmask'
  trace mask (hex): ring number: Command: 0x20  Status: 0x0
  $ bytes KVD_IssueMboxWithRetry 0 16
  002000008d7c6b5af00f000003000000
  $ printf '4096\n77\n' | kvd -c 'mbox setdebug'
  addr: value: Command: 0x99  Status: 0x0
  $ bytes KVD_IssueMboxWithRetry 0 16
  0099000000000000001000004d000000

Link set-up: flags go to bytes 8-9; the seven timers in order from byte 16.

  $ printf '2\n' | kvd -c 'mbox initlink'
  link flags: Command: 0x5  Status: 0x0
  $ bytes KVD_IssueMboxWithRetry 0 16
  00050000000000000200000000000000
  $ printf '1\n2\n3\n4\n5\n6\n7\n' | kvd -c 'mbox cfglink'
  edtov: arbtov: ratov: rttov: altov: crtov: citov: Command: 0x7  Status: 0x0
  $ bytes KVD_IssueMboxWithRetry 4 44
  0000000000000000000000000100000002000000030000000400000005000000060000000700000000000000
  $ printf '65537\n' | kvd -c 'mbox ureglogin'
  rpi: Command: 0x14  Status: 0x0
  $ bytes KVD_IssueMboxWithRetry 4 4
  01000000

The commands without input send the bare code.

  $ for w in downlink rdcfg rdrcfg rdstat rdxri rdlnkstat clrla restart; do kvd -c "mbox $w"; done
  Command: 0x6  Status: 0x0
  Command: 0xb  Status: 0x0
  Command: 0xc  Status: 0x0
  Command: 0xe  Status: 0x0
  Command: 0x10  Status: 0x0
  Command: 0x12  Status: 0x0
  Command: 0x16  Status: 0x10
  Command: 0x1a  Status: 0x0

Rows without a command behind them say so and issue nothing.

  $ : > trace
  $ for w in loadsm writenv runbiudiag reglogin dmpctx rundiag; do kvd -c "mbox $w"; done | uniq -c
        6 Not Implemented
  $ calls
  0

No other row answers so, nor any word of the command table, whatever the
dialogue is answered.

  $ unset KVD_SIM_TRACE
  $ for w in $(kvd -c mbox | sed 1d); do yes 0 | kvd -c "mbox $w" | grep -q 'Not Implemented' && echo $w || :; done
  loadsm
  writenv
  runbiudiag
  reglogin
  dmpctx
  rundiag
  $ for w in $(kvd -c help); do yes n | kvd -c "$w"; done 2>&1 | grep -c 'Not Implemented'
  0
  [1]
  $ export KVD_SIM_TRACE=$PWD/trace

A third word selects the board, and the choice stays.

  $ printf 'mbox rdcfg 1\nset\nmbox rdstat\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> Command: 0xb  Status: 0x0
  cmd> board 1  ring 0  iocb 0 lines 16
  cmd> Command: 0xe  Status: 0x0
  cmd>  (no-eol)
  $ grep -o '^KVD_IssueMboxWithRetry(board=[0-9]*' trace
  KVD_IssueMboxWithRetry(board=1
  KVD_IssueMboxWithRetry(board=1

A board the library did not report, or a negative one: no library call.

  $ : > trace
  $ (kvd -c 'mbox rdcfg 3'; kvd -b 2 -c 'mbox rdrev2 3'; kvd -c 'mbox readnv -1') | uniq -c
        3 IssueMbox error 2
  $ calls
  0

Library failures print the library's code; result 1 still has a record.

  $ KVD_SIM_FAULT=KVD_IssueMboxWithRetry=5 kvd -c 'mbox rdrev'
  IssueMbox error 5
  $ KVD_SIM_FAULT=KVD_IssueMboxWithRetry=1 kvd -c 'mbox rdrev'
  Command: 0x11  Status: 0x0
  biuRev:0 smRev:0x0 smFmRev:0 endecRev:0x0 fcpHigh:0 fcpLow:0
  $ KVD_SIM_FAULT=KVD_IssueMboxWithRetry=1 kvd -c 'mbox rdsparm' | head -1
  Command: 0xd  Status: 0x0
A board the driver holds offline keeps its firmware busy.

  $ KVD_SIM_FLEET=$KVD_FLEETS/offline.json kvd -c 'mbox rdrev'
  Command: 0x11  Status: 0xff
  biuRev:0 smRev:0x0 smFmRev:0 endecRev:0x0 fcpHigh:0 fcpLow:0
  $ grep '^KVD_IssueMboxWithRetry(' trace | tail -1 | grep -o ') = [0-9]*'
  ) = 1

  $ KVD_SIM_FAULT=KVD_IssueMboxWithRetryV2=19 kvd -c 'mbox readnv2'; KVD_SIM_FAULT=KVD_IssueMboxWithRetryV2=19 kvd -c 'mbox rdrev2'
  IssueMbox error 19
  IssueMbox error 19
  $ KVD_SIM_FAULT=KVD_IssueMboxWithRetryV2=1 kvd -c 'mbox rdrev2' | head -2
  vpd 0 fcoe 0 sli_level 0
  first hw rev  0x00000000
