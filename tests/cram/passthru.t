FCP, ELS, CT and management requests on board 0 (F_Port 0xfffffe, name server
0xfffffc; 0x010300 and 0x010400 are one node's ports).

  $ export KVD_SIM_TRACE=$PWD/trace
  $ last() { grep "^$1(" trace | tail -1 | sed 's/.*) = /= /'; }
  $ A=21:00:06:4b:51:d0:00:01 B=21:00:06:4b:51:d0:00:02

sendfcp: one 512-byte block; word counts, the WWN fallback, the sub-command.

  $ kvd -c "sendfcp read $A 0 0"
  Usage: sendfcp read      wwpn lun sectorAddress cnt
  Usage: sendfcp write     wwpn lun sectorAddress cnt [pattern]
  [247]
  $ kvd -c "sendfcp copy $A 0 0 512"
  Usage: sendfcp read     wwpn lun sectorAddress cnt
  Usage: sendfcp write    wwpn lun sectorAddress cnt [pattern]
  [247]
  $ kvd -c 'sendfcp read 21:00 0 0 512'
  arg 21:00 - arg length 5 or missing ':'
  sendfcp:21:00 bad port_wwpn
  [251]
  $ printf 'set wwn %s\nsendfcp read x 0 0 512\nquit\n' $B | kvd | grep -c '^Data Buffer: 512'
  1
  $ grep '^SendFcpCmd' trace | tail -1 | cut -d, -f2
   wwpn=21:00:06:4b:51:d0:00:02

The command block (LUN, direction, CDB, length); patterned and zero writes; a
CHECK CONDITION in the FCP response, with its sense data.

  $ printf 'sendfcp write %s 0 0x010203 512 0x5a\nsendfcp read %s 0 0x010203 512\nquit\n' $A $B | kvd > out
  [1]
  $ grep -A3 'Data Buffer' out | tail -4
  cmd> Data Buffer: 512
  
     0: 5a5a5a5a  5a5a5a5a  5a5a5a5a  5a5a5a5a  
    10: 5a5a5a5a  5a5a5a5a  5a5a5a5a  5a5a5a5a  
  $ grep -c '5a5a5a5a  5a5a5a5a  5a5a5a5a  5a5a5a5a' out
  64
  $ grep '^SendFcpCmd' trace | tail -2 | sed 's/.*) = /= /; s/data=[0-9a-f]*/data=.../'
  = 0 command=WRITE_10 lun=0000000000000000 cdb=2a000001020300000100 data=... in=0000000000000000000000012a00000102030000010000000000000000000200 rsp=000000000000000000000000000000000000000000000000
  = 0 command=READ_10 lun=0000000000000000 cdb=28000001020300000100 in=0000000000000000000000022800000102030000010000000000000000000200 rsp=000000000000000000000000000000000000000000000000
  $ kvd -c "sendfcp write $A 1 7 512" | tail -4
  Fcp Response Buffer: 24
  
     0: 00000000  00000000  00000000  00000000  
    10: 00000000  00000000  
  $ grep -c '^SendFcpCmd.*data=0\{1024\} ' trace
  1
  $ kvd -c "sendfcp read $A 1 20480 512"
  Data Buffer: 0
  
  Fcp Response Buffer: 42
  
     0: 00000000  00000000  00000a02  00000200  
    10: 00000012  00000000  70000500  0000000a  
    20: 00000000  21000000  00000000  
  $ kvd -c "sendfcp read 21:00:06:4b:51:d9:00:09 0 0 512"
  Cannot issue command
  [252]

els: the usage texts (the second has its doubled bracket).

  $ kvd -c 'els echo'
  Usage: els echo  did [size 4 - 2048]
  Usage: els rls   did
  Usage: els rps   did
  Usage: els rpl   did
  Usage: els rnid  did
  [247]
  $ kvd -c 'els ping 0x010300'
  Usage: els echo  did [[size 4 - 2048]
  Usage: els rls  did
  Usage: els rps  did
  Usage: els rpl  did
  Usage: els rnid did
  [247]

ECHO sizes: rounded up to 4, at most 2048.

  $ kvd -c 'els echo 0x010300 5'
  reqsize: x8 data x00 -- rspsize: x8 data xff
  Buffers match.
  
     0: 0x02000000  0x00000000  
  $ last KVD_SendELSCmd
  = 0 command=ECHO in=1000000000000000 out=0200000000000000
  $ kvd -c 'els echo 0x010300 4096' | head -2
  reqsize: x800 data x00 -- rspsize: x800 data xff
  Buffers match.
  $ kvd -c 'els echo 0x010300' | head -2
  reqsize: x800 data x00 -- rspsize: x800 data xff
  Buffers match.
  $ kvd -c 'els echo 0x010300 4'
  reqsize: x4 data x00 -- rspsize: x4 data xff
  
     0: 0x02000000  
  $ kvd -c 'els echo 0x010300 0'
  Cannot issue command
  [252]

RLS, RPS, RPL (F_Port and N_Port) and RNID.

  $ kvd -c 'els rls 0x010300'
  reqsize: x8 data x00 -- rspsize: x1c data xff
  
     0: 0x02000000  0x00000000  
  $ last KVD_SendELSCmd
  = 0 command=RLS in=0f00000000000000 out=02000000000000000000000100000000000000000000000200000000
  $ kvd -c 'els rps 0x010300'
  reqsize: xc data x00 -- rspsize: x20 data xff
  
     0: 0x02000000  0x00000000  0x00000000  
  $ kvd -c 'els rpl 0xfffffe'
  reqsize: xc data x00 -- rspsize: x5c data xff
  
     0: 0x0200005c  0x00000005  0x00000000  
  $ last KVD_SendELSCmd
  = 0 command=RPL in=570000000000000000000000 out=0200005c000000050000000000000000000102001000064b51a0001000000001000103002100064b51d0000100000002000104002100064b51d0000200000003000201002100064b51d1000100000004000203001000064b51a70044
  $ kvd -c 'els rpl 0x010300' >/dev/null; last KVD_SendELSCmd
  = 0 command=RPL in=570000000000000000000000 out=0200001c000000010000000000000000000103002100064b51d00001
  $ kvd -c 'els rnid 0x010300'
  reqsize: x8 data x00 -- rspsize: x4c data xff
  
     0: 0x02000000  0xdf100034  
  $ last KVD_SendELSCmd
  = 0 command=RNID in=78000000df000000 out=02000000df1000342100064b51d000012000064b51d000015153544f520000000000000000000000000000090000000000000001000000000000000000000000000000000000000000000000

The dump pages in an interactive session ("x" ends it); LS_RJT from nobody
and from a fault rule.

  $ printf 'set lines 2\nels echo 0x010300 32\n\nels echo 0x010300 32\nx\nquit\n' | kvd | sed -n '/reqsize/,$p'
  cmd> cmd> reqsize: x20 data x00 -- rspsize: x20 data xff
  Buffers match.
  
     0: 0x02000000  0x00000000  0x00000000  0x00000000  
   Hit <CR> to continue (x to abort): 
  
    10: 0x00000000  0x00000000  0x00000000  0x00000000  
  cmd> reqsize: x20 data x00 -- rspsize: x20 data xff
  Buffers match.
  
     0: 0x02000000  0x00000000  0x00000000  0x00000000  
   Hit <CR> to continue (x to abort): 
  
  cmd>  (no-eol)
  $ kvd -c 'els rnid 0x123456'
  reqsize: x8 data x00 -- rspsize: x8 data xff
  
     0: 0x01000000  0x00090000  
  $ KVD_SIM_FAULT=els:ECHO=0x0b kvd -c 'els echo 0x010300 8'
  reqsize: x8 data x00 -- rspsize: x8 data xff
  Buffer mismatch.
  
     0: 0x01000000  0x000b0000  
  [1]

Results 8 (too large) and 7 (more room), and a link down.

  $ KVD_SIM_FLEET=$KVD_FLEETS/scsi.json kvd -c 'els echo 0x010500'
  Cannot issue command
  Max buffer size exceed (1024 bytes).
  [252]
  $ KVD_SIM_FLEET=$KVD_FLEETS/scsi.json kvd -c 'els echo 0x010500 1024' | head -2
  reqsize: x400 data x00 -- rspsize: x400 data xff
  Buffers match.
  $ KVD_SIM_FAULT=KVD_SendELSCmd=7 kvd -c 'els rls 0x010300'
  Cannot issue command
  Response buffer size too small. Try 2048.
  [252]
  $ KVD_SIM_FLEET=$KVD_FLEETS/loop.json kvd -b 1 -c 'els rls 0x010300'
  Cannot issue command
  [252]

ct: word counts and keywords ("test1" is accepted but not listed).

  $ for c in ct 'ct nport 1 2' 'ct fabric'; do kvd -c "$c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: ct [nport | wwpn | wwnn | sym] [nportid] [247]
  Usage: ct [nport | wwpn | wwnn | sym] [nportid] [247]
  Usage: ct [nport | wwpn | wwnn] [nportid] [247]

Replies in host order: GID_FT, GPN_ID, GNN_ID, GSPN_ID.

  $ kvd -c 'ct nport'
  
     0: 00000001  000002fc  00000280  00000000  
    10: 00020100  00030100  00040100  00010200  
    20: 00030280  
  $ last SendCTPassThru
  = 0 command=GID_FT in=01000000fc020000017100000000000000000008 out=01000000fc02000080020000000000000001020000010300000104000002010080020300
  $ kvd -c 'ct wwpn 0x010203'
  
     0: 00000001  000002fc  00000180  00010900  
  $ last SendCTPassThru
  = 0 command=GPN_ID in=01000000fc020000011200000000000000010203 out=01000000fc0200008001000000090100
  $ kvd -c 'ct wwpn 0x010300'
  
     0: 00000001  000002fc  00000280  00000000  
    10: 4b060021  0100d051  
  $ kvd -c 'ct wwnn 0x010400'
  
     0: 00000001  000002fc  00000280  00000000  
    10: 4b060020  0100d051  
  $ kvd -c 'ct sym 0x010300'
  
     0: 00000001  000002fc  00000280  00000000  
    10: 54535112  3720524f  20303031  74726f70  
    20: 00413020  
  $ last SendCTPassThru
  = 0 command=GSPN_ID in=01000000fc020000011800000000000000010300 out=01000000fc0200008002000000000000125153544f52203731303020706f727420304100
  $ KVD_SIM_FLEET=$KVD_FLEETS/scsi.json kvd -c 'ct sym 0x010500'; last SendCTPassThru
  
     0: 00000001  000002fc  00000180  00080900  
  = 0 command=GSPN_ID in=01000000fc020000011800000000000000010500 out=01000000fc0200008001000000090800
  $ kvd -c 'ct test1'; last SendCTPassThru
  
     0: 00000001  000002fa  00000180  00000b00  
  = 0 in=01000000fa020000017100000000000000000008 out=01000000fa02000080010000000b0000
  $ KVD_SIM_FAULT=ct:GID_FT=5 kvd -c 'ct nport' > /dev/null; last SendCTPassThru
  = 0 command=GID_FT injected rule=1 in=01000000fc020000017100000000000000000008 out=01000000fc0200008001000000050000

A loop has no name server; GID_FT with a port id repeats until a send fails.

  $ KVD_SIM_FLEET=$KVD_FLEETS/loop.json kvd -c 'ct nport'
  Cannot issue command
  [252]
  $ KVD_SIM_FAULT=SendCTPassThru=1:once kvd -c 'ct nport 7'
  Cannot issue command
  [252]

Ctrl-C ends the soak loop (status 1); each round is flushed first.

  $ : > trace
  $ kvd -c 'ct nport 7' > out 2>&1 &
  $ pid=$!
  $ for i in $(seq 400); do [ $(grep -c '^SendCTPassThru' trace) -gt 3 ] && break; sleep 0.05; done
  $ kill -INT $pid; wait $pid
  [1]
  $ tail -1 trace | cut -d'(' -f1
  KVD_FreeDiagEnv
  $ grep -c 'unRegisterForEvent' trace
  3
  $ head -3 out
  
     0: 00000001  000002fc  00000280  00000000  
    10: 00020100  00030100  00040100  00010200  

sendmgmt: word counts, the WWN, the count.

  $ kvd -c "sendmgmt $A 1"
  Usage: sendmgmt port_wwpn fstype cnt [tmo]
  [247]
  $ kvd -c 'sendmgmt 21:00 1 20'
  arg 21:00 - arg length 5 or missing ':'
  sendmgmt:21:00 bad port_wwpn
  [251]
  $ for n in 0 65537; do kvd -c "sendmgmt $A 0xfa $n"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  sendmgmt: cnt must be non-zero [255]
  sendmgmt: cnt must be <= 65536 [255]
  $ kvd -c "sendmgmt $A 0xfa 65536" | tail -1
  fff0: f0f1f2f3  f4f5f6f7  f8f9fafb  fcfdfeff  

The request: CT header, code 0x7e3a, counting bytes; echoed without responder.

  $ kvd -c "sendmgmt $A 0xfa 20"
  
     0: 01000000  fa000000  3a7e0000  00000000  
    10: 10111213  
  $ last SendMgmtCommand
  = 0 in=01000000fa0000003a7e00000000000010111213 out=01000000fa0000003a7e00000000000010111213
  $ kvd -c "sendmgmt $B 0x1fa 22 30"
  
     0: 01000000  fa000000  3a7e0000  00000000  
    10: 10111213  14150000  
  $ last SendMgmtCommand
  = 0 in=01000000fa0000003a7e000000000000101112131415 out=01000000fa0000003a7e000000000000101112131415
  $ kvd -c "sendmgmt 21:00:06:4b:51:d9:00:09 0xfa 20"
  
  $ last SendMgmtCommand
  = 2

Every exchange counts in the port statistics: one frame each way.

  $ printf 'portstat\nels echo 0x010300 8\nct nport\nportstat\nquit\n' | kvd | grep -o 'TxFrm.*'
  TxFrm 0x28  TxWrd 0x2940  RxFrm 0x38  RxWrd 0x71c0
  TxFrm 0x52  TxWrd 0x5299  RxFrm 0x72  RxWrd 0xe39d
