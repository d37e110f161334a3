SCSI commands to board 0's targets: two ports of one storage node (d0:00:01,
:02) and a tape port; a7:00:44 is another host. `last CALL` shows its trace.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ last() { grep "^$1(" trace | tail -1 | sed 's/.*) = /= /'; }
  $ line() { kvd -c "$2" > o 2>&1; r=$?; sed -n "$1p" o; return $r; }
  $ A=21:00:06:4b:51:d0:00:01 B=21:00:06:4b:51:d0:00:02 L=10:00:06:4b:51:a0:00:10

Word counts; the WWN is read before the sub-command; the local-port forms'
remote WWN has no fallback.

  $ kvd -c 'sendscsi inquiry'
  Usage: sendscsi inquiry   wwpn lun evpd [pagecode]
  Usage: sendscsi readcap   wwpn lun
  Usage: sendscsi reportlun wwpn
  Usage: sendscsi inquirywwn   lwwpn rwwpn lun evpd [pagecode]
  Usage: sendscsi readcapwwn   lwwpn rwwpn lun
  Usage: sendscsi reportlunwwn lwwpn rwwpn
  Usage: sendscsi read      wwpn lun sectorAddress cnt
  Usage: sendscsi write     wwpn lun sectorAddress cnt [pattern]
  Usage: sendscsi cdb       wwpn lun opcode
  [247]
  $ kvd -c "sendscsi bogus $A" | sed -n '1p;$p'
  Usage: sendscsi inquiry   wwpn lun evpd [pagecode]
  Usage: sendscsi cdb       wwpn lun opcode
  $ kvd -c 'sendscsi bogus 21:00'
  arg 21:00 - arg length 5 or missing ':'
  sendscsi:21:00 bad port_wwpn
  [251]
  $ for c in "inquiry $A 0" "readcap $A" "inquirywwn $L $A 0" "readcapwwn $L $A" "read $A 0 0" "write $A 0 0" "cdb $A 0" "inquiry $A 0 1" "inquirywwn $L $A 0 1"; do kvd -c "sendscsi $c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: sendscsi inquiry   wwpn lun evpd [pagecode] [247]
  Usage: sendscsi readcap   wwpn lun [247]
  Usage: sendscsi inquirywwn lwwpn rwwpn lun evpd [pagecode] [247]
  Usage: sendscsi readcap   wwpn lun [247]
  Usage: sendscsi read      wwpn lun sectorAddress cnt [247]
  Usage: sendscsi write     wwpn lun sectorAddress cnt [pattern] [247]
  Usage: sendscsi cdb  wwpn lun opcode [247]
  Usage: sendscsi inquiry wwpn lun evpd pagecode [247]
  Usage: sendscsi inquirywwn lwwpn rwwpn lun evpd pagecode [247]
  $ grep -c '^Send\|^KVD_Send' trace || :
  0
  $ kvd -c "sendscsi reportlunwwn $L"
  arg  - arg length 0 or missing ':'
  sendscsi: bad remote wwpn
  [251]
  $ kvd -c "sendscsi readcapwwn $L 21:00:06 0"
  arg 21:00:06 - arg length 8 or missing ':'
  sendscsi:21:00:06 bad remote wwpn
  [251]

With a default WWN set, a WWN word that does not parse names that target.

  $ printf 'set wwn %s\nsendscsi readcap nonsense 0\nquit\n' $B | kvd | sed -n '/nonsense/,/^Sense/p'
  cmd> cmd> arg nonsense - arg length 8 or missing ':'
  Rsp Buffer: 8
  
     0: 001fffff  00000200                      ........
  Sense Buffer: 0
  $ grep '^SendReadCapacity' trace | tail -1 | cut -d, -f2
   wwpn=21:00:06:4b:51:d0:00:02

Standard INQUIRY data and the VPD pages 0, 0x80 and 0x83; invalid fields in
the CDB; an evpd of 256 is 0 in eight bits.

  $ kvd -c "sendscsi inquiry $A 0 0"
  Rsp Buffer: 36
  
     0: 00000612  1f000002  5153544f  52202020  ........QSTOR   
    10: 56495254  55414c20  4449534b  20202020  VIRTUAL DISK    
    20: 30313030                                0100
  Sense Buffer: 0
  $ last SendScsiInquiry
  = 0 command=INQUIRY lun=0000000000000000 cdb=120000008000
  $ line 3,4 "sendscsi inquiry $A 0 1 0"
     0: 00000003  008083                        .......
  Sense Buffer: 0
  $ line 3,4 "sendscsi inquiry $A 1 1 0x80"
     0: 0080000c  51534430  30303031  30303031  ....QSD000010001
  Sense Buffer: 0
  $ line 3,6 "sendscsi inquiry $A 1 1 0x83"
     0: 00830020  01030010  6064b51d  00001000  ... ....`d......
    10: 00000000  00000001  01930008  2100064b  ............!..K
    20: 51d00001                                Q...
  Sense Buffer: 0
  $ line 3,5 "sendscsi inquirywwn $L $B 1 1 0x83"
     0: 00830020  01030010  6064b51d  00001000  ... ....`d......
    10: 00000000  00000001  01930008  2100064b  ............!..K
    20: 51d00002                                Q...
  $ last KVD_SendScsiInquiryByWWN
  = 0 command=INQUIRY lun=0001000000000000 cdb=120183008000
  $ kvd -c "sendscsi inquiry $A 0 1 0xb0"
  Rsp Buffer: 0
  Sense Buffer: 18
  
     0: 70000500  0000000a  00000000  24000000  p...........$...
    10: 0000                                    ..
  $ kvd -c "sendscsi inquiry $A 0 256 7" | head -1
  Rsp Buffer: 36
  $ last SendScsiInquiry
  = 0 command=INQUIRY lun=0000000000000000 cdb=120000008000

LUNs: the low 16 bits, big-endian; no unit at LUN 5 (qualifier 3).

  $ line 3 "sendscsi inquiry $A 5 0"
     0: 7f000612  1f000002  00000000  00000000  ................
  $ last SendScsiInquiry
  = 0 command=INQUIRY lun=0005000000000000 cdb=120000008000
  $ kvd -c "sendscsi inquiry $A 0x1234 0" > /dev/null; last SendScsiInquiry
  = 0 command=INQUIRY lun=1234000000000000 cdb=120000008000
  $ kvd -c "sendscsi inquiry $A 0x10001 0" | sed -n 3p; last SendScsiInquiry
     0: 00000612  1f000002  5153544f  52202020  ........QSTOR   
  = 0 command=INQUIRY lun=0001000000000000 cdb=120000008000

Capacity: LUN 0 1 GiB, LUN 1 10 MiB; the local-port form takes a plain LUN.

  $ kvd -c "sendscsi readcap $A 0"
  Rsp Buffer: 8
  
     0: 001fffff  00000200                      ........
  Sense Buffer: 0
  $ line 3,4 "sendscsi readcapwwn $L $A 1"
     0: 00004fff  00000200                      ..O.....
  Sense Buffer: 0
  $ last KVD_SendReadCapacityByWWN
  = 0 command=READ_CAPACITY_10 lun=0001000000000000 cdb=25000000000000000000
  $ line 1,4 "sendscsi readcap $A 5"
  Rsp Buffer: 0
  Sense Buffer: 18
  
     0: 70000500  0000000a  00000000  25000000  p...........%...
  $ kvd -c "sendscsi reportlun $A"
  Rsp Buffer: 24
  
     0: 00000010  00000000  00000000  00000000  ................
    10: 00010000  00000000                      ........
  Sense Buffer: 0
  $ last SendReportLUNs
  = 0 command=REPORT_LUNS lun=0000000000000000 cdb=a00000000000000002000000
  $ line 3 "sendscsi reportlunwwn $L $B"
     0: 00000010  00000000  00000000  00000000  ................

Reads and writes: at most 10240 bytes; the sense buffer follows the data.

  $ for c in "read $A 0 0 10241" "write $A 0 0 10241" "read $A 0 0 -1"; do kvd -c "sendscsi $c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: sendscsi read: cnt must be <= 10240 [247]
  Usage: sendscsi write: cnt must be <= 10240 [247]
  Usage: sendscsi read: cnt must be <= 10240 [247]
  $ kvd -c "sendscsi read $A 0 0 10240" | sed -n '1p;642,$p'
  Rsp Buffer: 10240
  27f0: 00000000  00000000  00000000  00000000  ................
  Sense Buffer: 0
  $ last SendScsiRead
  = 0 command=READ_10 lun=0000000000000000 cdb=28000000000000001400

Writes: the pattern or an incrementing sequence; the data reads back through
either port for the life of the library, a partial block keeps the rest.

  $ kvd -c "sendscsi write $A 0 8 16"
  Rsp Buffer: 16
  
     0: 00010203  04050607  08090a0b  0c0d0e0f  ................
  Sense Buffer: 0
  $ last SendScsiWrite
  = 0 command=WRITE_10 lun=0000000000000000 cdb=2a000000000800000100 data=000102030405060708090a0b0c0d0e0f
  $ kvd -c "sendscsi write $A 0 8 16 0xa5" > /dev/null; last SendScsiWrite
  = 0 command=WRITE_10 lun=0000000000000000 cdb=2a000000000800000100 data=a5a5a5a5a5a5a5a5a5a5a5a5a5a5a5a5
  $ kvd -c "sendscsi write $A 0 8 16 0xa5 x" > /dev/null; last SendScsiWrite
  = 0 command=WRITE_10 lun=0000000000000000 cdb=2a000000000800000100 data=000102030405060708090a0b0c0d0e0f
  $ cat > session <<END
  > sendscsi write $A 0 100 1024
  > sendscsi read $B 0 100 1024
  > sendscsi write $A 1 20478 600 0x3c
  > sendscsi read $B 1 20478 1024
  > quit
  > END
  $ kvd < session > out
  [1]
  $ awk '/Rsp Buffer/ { n++ } /^ *[0-9a-f]+: / { print > ("dump" n) }' out
  $ wc -l < dump1; cmp dump1 dump2 && echo same
  64
  same
  $ grep '^ *2[4-6]0: ' out | tail -3
   240: 3c3c3c3c  3c3c3c3c  3c3c3c3c  3c3c3c3c  <<<<<<<<<<<<<<<<
   250: 3c3c3c3c  3c3c3c3c  00000000  00000000  <<<<<<<<........
   260: 00000000  00000000  00000000  00000000  ................
  $ line 3,4 "sendscsi read $A 0 100 16"
     0: 00000000  00000000  00000000  00000000  ................
  Sense Buffer: 0

Sense data: past the last block, an unknown operation, no unit; TEST UNIT READY.

  $ line 1,4 "sendscsi read $A 1 20479 1024"
  Rsp Buffer: 0
  Sense Buffer: 18
  
     0: 70000500  0000000a  00000000  21000000  p...........!...
  $ line 1,4 "sendscsi cdb $A 0 0x55"
  Rsp Buffer: 0
  Sense Buffer: 18
  
     0: 70000500  0000000a  00000000  20000000  p........... ...
  $ last SendScsiCDB
  = 0 lun=0000000000000000 cdb=55000000000000000000 status=02
  $ line 1,4 "sendscsi cdb $A 7 0"
  Rsp Buffer: 0
  Sense Buffer: 18
  
     0: 70000500  0000000a  00000000  25000000  p...........%...
  $ kvd -c "sendscsi cdb $A 1 0"
  Rsp Buffer: 0
  Sense Buffer: 0
  $ kvd -c "sendscsi cdb $A 0 0x12" | head -1; last SendScsiCDB
  Rsp Buffer: 36
  = 0 command=INQUIRY lun=0000000000000000 cdb=120000008000
  $ kvd -c "sendscsi cdb $A 0 0xa0" | head -1; last SendScsiCDB
  Rsp Buffer: 24
  = 0 command=REPORT_LUNS lun=0000000000000000 cdb=a00000000000000000800000

Refusals, the eight-bit and flat-space limits, a link down, an offline board.

  $ kvd -c "sendscsi readcap 21:00:06:4b:51:d9:00:09 0"
  Cannot issue command
  [252]
  $ kvd -c "sendscsi readcap 10:00:06:4b:51:a7:00:44 0"
  Cannot issue command
  [252]
  $ kvd -c "sendscsi readcapwwn $A $A 0"
  Cannot issue command
  [252]
  $ kvd -c "sendscsi cdb $A 0 0x100"
  Cannot issue command
  [252]
  $ kvd -c "sendscsi inquiry $A 0 1 0x100"
  Cannot issue command
  [252]
  $ kvd -c "sendscsi readcapwwn $L $A 16384"
  Cannot issue command
  [252]
  $ line 4 "sendscsi cdb $A 0 0xff"
     0: 70000500  0000000a  00000000  20000000  p........... ...
  $ line 4 "sendscsi inquiry $A 0 1 0xff"
     0: 70000500  0000000a  00000000  24000000  p...........$...
  $ kvd -c "sendscsi readcapwwn $L $A 16383" | sed -n 4p; last KVD_SendReadCapacityByWWN
     0: 70000500  0000000a  00000000  25000000  p...........%...
  = 0 command=READ_CAPACITY_10 lun=7fff000000000000 cdb=25000000000000000000 status=02
  $ KVD_SIM_FLEET=$KVD_FLEETS/loop.json kvd -b 1 -c "sendscsi readcap $A 0"
  Cannot issue command
  [252]
  $ KVD_SIM_FLEET=$KVD_FLEETS/offline.json kvd -c "sendscsi readcap $A 0"; last SendReadCapacity
  Cannot issue command
  = 10
  $ grep -c '^Send.*= [1-9]\|^KVD_Send.*= [1-9]' trace
  8

READ CAPACITY(16) for a large unit; LUNs above 255 in flat space; a fault rule's
BUSY.

  $ export KVD_SIM_FLEET=$KVD_FLEETS/scsi.json
  $ kvd -c 'sendscsi readcap 21:00:06:4b:51:d5:00:01 0'
  Rsp Buffer: 32
  
     0: 00000001  ffffffff  00000200  00000000  ................
    10: 00000000  00000000  00000000  00000000  ................
  Sense Buffer: 0
  $ last SendReadCapacity
  = 0 command=READ_CAPACITY_10 lun=0000000000000000 cdb=25000000000000000000 command=SERVICE_ACTION_IN_16 lun=0000000000000000 cdb=9e100000000000000000000000800000
  $ kvd -c 'sendscsi reportlun 21:00:06:4b:51:d5:00:01' | sed -n 3,4p
     0: 00000010  00000000  00000000  00000000  ................
    10: 412c0000  00000000                      A,......
  $ kvd -c 'sendscsi readcapwwn 10:00:06:4b:51:a0:00:50 21:00:06:4b:51:d5:00:01 300' | sed -n 3p
     0: 00000007  00000200                      ........
  $ last KVD_SendReadCapacityByWWN
  = 0 command=READ_CAPACITY_10 lun=412c000000000000 cdb=25000000000000000000
  $ kvd -c 'sendscsi inquiry 21:00:06:4b:51:d5:00:01 0 1 0x80' | sed -n 3p
     0: 00800009  51534249  47303030  31        ....QSBIG0001
  $ unset KVD_SIM_FLEET
  $ KVD_SIM_FAULT=scsi:READ_10=8 kvd -c "sendscsi read $A 0 0 512"
  Cannot issue command
  [252]
  $ last SendScsiRead
  = 30 command=READ_10 injected rule=1 lun=0000000000000000 cdb=28000000000000000100 status=08

A 10240-byte read: one frame out, five data frames and a response in.

  $ printf 'portstat\nportstat\nquit\n' | kvd | grep TxFrm
  cmd> TxFrm 0x28  TxWrd 0x2940  RxFrm 0x38  RxWrd 0x71c0
  cmd> TxFrm 0x50  TxWrd 0x5280  RxFrm 0x70  RxWrd 0xe380
  $ printf 'portstat\nsendscsi read %s 0 0 10240\nportstat\nquit\n' $A | kvd | grep -o 'TxFrm.*'
  TxFrm 0x28  TxWrd 0x2940  RxFrm 0x38  RxWrd 0x71c0
  TxFrm 0x51  TxWrd 0x5291  RxFrm 0x76  RxWrd 0xedbc
