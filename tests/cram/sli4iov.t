The sli4iov family: the object store of SLI-4 boards of interface type 2
(board 2), through KVD_IssueMboxWithRetryV2. `v2` lists the V2 calls' word
counts and results; `req N OFF LEN` cuts bytes out of the Nth V2 record.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ v2() { grep -o '^KVD_IssueMboxWithRetryV2([^)]*) = [0-9]*' trace | sed 's/.*words=\([0-9]*\).*= /\1 /' || :; }
  $ req() { grep '^KVD_IssueMboxWithRetryV2(' trace | sed -n "$1p" | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($2 * 2 + 1))-$(($2 * 2 + $3 * 2)); }

Usage and refusals.

  $ kvd -c sli4iov
  Usage: sli4iov [subCommand]
  delete
  list
  quickdownload
  quickdump
  quicksizes
  read
  write
  [247]
  $ kvd -b 2 -c 'sli4iov LIST' > inval.out; head -1 inval.out; sed 1d inval.out | cmp - <(kvd -c sli4iov | sed 1d)
  Invalid subcommand: LIST - use:
  $ kvd -b 0 -c 'sli4iov list'
  Not supported on this board: 0
  [2]
  $ KVD_SIM_FLEET=$KVD_FLEETS/sli4.json kvd -b 0 -c 'sli4iov list'
  Not supported on this board: 0
  [2]
  $ grep -o '^kvd_get_board_sli4_if_type.*' trace
  kvd_get_board_sli4_if_type(board=2) = 2
  kvd_get_board_sli4_if_type(board=0) = 0
  $ KVD_SIM_FLEET=$KVD_FLEETS/sli4.json kvd -b 2 -c 'sli4iov list'
  Not supported on this board: 2
  [2]

The tree, one level below the root.

  $ kvd -b 2 -c 'sli4iov list' | grep -v 'sp_\|ulp_\|_bf\|_vf\|ntr\|iscsi'
  Root descriptor count: 4
  /prg Type: Directory - Info elements: 15 - RevName: 
  /prg descriptor count: 15
  \tsrb.prg: Type: Normal Info: bytes: 262400 RevName: 4.1.28.5 (esc)
  \twol.prg: Type: Normal Info: bytes: 16640 RevName: 4.1.28.5 (esc)
  \tactive.lnk: Type: Linked Info: handle: 20 RevName:  (esc)
  
  /vpd Type: Directory - Info elements: 9 - RevName: 
  /vpd descriptor count: 9
  \tfc_pf.vpd: Type: Normal Info: bytes: 1024 RevName: VPD 3.1 (esc)
  
  /xrom Type: Directory - Info elements: 3 - RevName: 
  /xrom descriptor count: 3
  \tfc.xrom: Type: Normal Info: bytes: 262656 RevName: 4.1.28.5 (esc)
  
  /dbg Type: Directory - Info elements: 1 - RevName: 
  /dbg descriptor count: 1
  \tdump.bin: Type: Normal Info: bytes: 24576 RevName: dump 0001 (esc)
  
  $ v2 | sort | uniq -c
       37 104 0
        5 64 0

Sizes of the well-known objects.

  $ kvd -b 2 -c 'sli4iov quicksizes' > sizes.out; awk '{ n += $1 } END { print NR, n }' sizes.out; sed -n '1,2p;8p;15,16p;28,$p' sizes.out
  29 3967488
  Size\t\tName (esc)
  262400   \t/prg/srb.prg (esc)
  98560    \t/prg/sp_fbt.prg (esc)
  16640    \t/prg/wol.prg (esc)
  1024     \t/vpd/fc_pf.vpd (esc)
  24576    \t/dbg/dump.bin (esc)
  

Argument checks, at and past every limit; nothing is issued.

  $ rm -f trace
  $ kvd -b 2 -c 'sli4iov write a b 1 4'
  Usage: write <input file name> <object name>
  \t<buffer count 1-8> (esc)
  \t<buffer size, 4-3840 (multiple of 4)> (esc)
  \t<eof flag - (1 - with last data buffer, 0 - without any data) (esc)
  $ kvd -b 2 -c 'sli4iov read a b 1'
  Usage: read <output file name> <object name>
  \t<buffer count 1-8> (esc)
  \t<buffer size, 4-3840 (multiple of 4)> (esc)
  $ kvd -b 2 -c 'sli4iov delete'
  Usage: <object name>
  $ kvd -b 2 -c 'sli4iov quickdownload'
  Usage: quickdownload <input file name>
  $ for a in 'read out /prg/wol.prg 0 4' 'read out /prg/wol.prg 9 4' 'read out /prg/wol.prg 8 3844' 'read out /prg/wol.prg 8 6' 'write img /prg/x 1 0 1'; do kvd -b 2 -c "sli4iov $a"; done | uniq -c
        2 ERROR: buffer count 1-8
        3 ERROR: buffer size 4-3840 (multiple of 4)
  $ v2

Host files the download refuses: missing, empty, or not a multiple of 4.

  $ kvd -b 2 -c 'sli4iov write nofile /prg/x.grp 1 64 1' | tail -1
  Stat or size error with file: nofile size 0
  $ touch empty; kvd -b 2 -c 'sli4iov write empty /prg/x.grp 1 64 1' | tail -1
  Stat or size error with file: empty size 0
  $ head -c 1026 /dev/zero > odd; kvd -b 2 -c 'sli4iov write odd /prg/x.grp 1 64 1' | tail -2
  Stat file: odd rc 0 size 1026
  File size not a multiple of 4
  $ v2

Round trip with eof mode 1: only the last chunk carries endOfFile (bit 31).

  $ head -c 10000 /dev/urandom > img
  $ rm trace; kvd -b 2 -c 'sli4iov write img /prg/new.grp 8 512 1' -c 'sli4iov read back /prg/new.grp 3 1000' -c 'sli4iov list' | grep -v '^	[a-z_0-9]*\.\(prg\|vpd\|xrom\|lnk\|bin\)\|^/[vxd]\|^$'
  bin_name: img
  objectName: /prg/new.grp
  bufferCount: 8
  bufferSize: 512 bytes
  Send eof with last data buffer yes
  Stat file: img rc 0 size 10000
  bin_name: back
  objectName: /prg/new.grp
  bufferCount: 3
  bufferSize: 1000 bytes
  Wrote 10000 bytes to file: back
  Root descriptor count: 4
  /prg Type: Directory - Info elements: 16 - RevName: 
  /prg descriptor count: 16
  \tnew.grp: Type: Normal Info: bytes: 10000 RevName: 4.1.28.5 (esc)
  $ cmp img back && echo same
  same
  $ v2 | uniq -c
        2 1088 0
        1 516 0
        4 814 0
        1 64 0
        1 104 0
        1 64 0
       18 104 0
        1 64 0
       11 104 0
        1 64 0
        5 104 0
        1 64 0
        3 104 0
  $ req 1 40 8
  0010000000000000
  $ req 2 40 8
  0010000000100000
  $ req 3 40 8
  1007008000200000
  $ req 3 152 12
  040000000002000000000000
  $ ls -l back | cut -c1-10
  -rwx------
  $ kvd -b 2 -c 'sli4iov read small /vpd/fc_bf.vpd 1 4' -c 'sli4iov read large /vpd/fc_bf.vpd 8 3840' | grep Wrote
  Wrote 512 bytes to file: small
  Wrote 512 bytes to file: large
  $ cmp small large && echo same
  same

Eof mode 0: no data request carries endOfFile; an empty request follows.

  $ rm trace; kvd -b 2 -c 'sli4iov write img /prg/new.grp 4 1000 0' -c 'sli4iov read back /prg/new.grp 8 3840' | tail -1
  Wrote 10000 bytes to file: back
  $ cmp img back && echo same
  same
  $ v2 | head -4
  1064 0
  1064 0
  564 0
  64 0
  $ req 3 40 8
  d0070000401f0000
  $ req 4 40 8
  0000008010270000

A busy adapter takes half of the third write: the rest follows, smaller.

  $ rm trace; KVD_SIM_FLEET=$KVD_FLEETS/sli4.json kvd -b 1 -c 'sli4iov write img /prg/busy.grp 2 1024 1' -c 'sli4iov read back /prg/busy.grp 1 3840' | tail -1
  Wrote 10000 bytes to file: back
  $ cmp img back && echo same
  same
  $ v2 | uniq -c
        3 576 0
        4 320 0
        1 260 0
        3 1024 0
  $ for i in 1 2 3 4 5 6; do req $i 40 8; done
  0008000000000000
  0008000000080000
  0008000000100000
  0004000000140000
  0004000000180000
  00040000001c0000

Refusals: read-only directory, missing object or directory, long name.

  $ kvd -b 2 -c 'sli4iov write img /vpd/fc_pf.vpd 1 64 1' | tail -1
  Error writing /vpd/fc_pf.vpd: rc 5 status x0005 additionalStatus x0043
  $ kvd -b 2 -c 'sli4iov delete /vpd/fc_pf.vpd'
  Deleting object: /vpd/fc_pf.vpd
  Error deleting /vpd/fc_pf.vpd: rc 5 status x0005 additionalStatus x0043
  $ kvd -b 2 -c 'sli4iov delete /prg/none.prg'
  Deleting object: /prg/none.prg
  Error deleting /prg/none.prg: rc 5 status x0001 additionalStatus x0040
  $ kvd -b 2 -c 'sli4iov read out /nodir/x 1 64'
  bin_name: out
  objectName: /nodir/x
  bufferCount: 1
  bufferSize: 64 bytes
  Error reading /nodir/x: rc 5 status x0001 additionalStatus x0040
  Wrote 0 bytes to file: out
  $ kvd -b 2 -c 'sli4iov read out /prg/twenty_four_chars_name.x 1 64' | tail -2
  Error reading /prg/twenty_four_chars_name.x: rc 5 status x0003 additionalStatus x0042
  Wrote 0 bytes to file: out
  $ kvd -b 2 -c 'sli4iov write img /prg/twenty_four_chars_name.x 8 3840 1' | tail -1
  Error writing /prg/twenty_four_chars_name.x: rc 5 status x0003 additionalStatus x0042
  $ KVD_SIM_FAULT=KVD_IssueMboxWithRetryV2=16 kvd -b 2 -c 'sli4iov read out /prg/wol.prg 1 64' | tail -2
  Error reading /prg/wol.prg: rc 16 status x0000 additionalStatus x0000
  Wrote 0 bytes to file: out

Delete, then the object is gone; an image to "/" is the download object.

  $ kvd -b 2 -c 'sli4iov delete /prg/wol.prg' -c 'sli4iov read out /prg/wol.prg 1 64' | sed 2,5d
  Deleting object: /prg/wol.prg
  Error reading /prg/wol.prg: rc 5 status x0001 additionalStatus x0040
  Wrote 0 bytes to file: out
  $ kvd -b 2 -c 'sli4iov quickdownload img' -c 'sli4iov list' | grep download
  \tdownload.grp: Type: Normal Info: bytes: 10000 RevName: 4.1.28.5 (esc)
  $ v2 | head -2
  576 0
  576 0

Quick dump, with and without a dump object (the shared path is locked).

  $ locked() { flock /tmp/kvd-dump.lock "$@"; }
  $ locked sh -c 'rm -f /tmp/dump.bin; kvd -b 2 -c "sli4iov quickdump" -c "sli4iov quickdump"; wc -c < /tmp/dump.bin; head -c 19 /tmp/dump.bin; echo; rm -f /tmp/dump.bin'
  Dump size: 24576 bytes
  Wrote 24576 bytes to file: /tmp/dump.bin
  Created dump file at /tmp/dump.bin
  Dump object deleted
  Error reading /dbg/dump.bin: rc 5 status x0001 additionalStatus x0040
  Dump object does not exist
  24576
  QMOBJ /dbg/dump.bin
A forced dump: busy until a warm start, then the board's dump image.

  $ locked sh -c 'rm -f /tmp/dump.bin; kvd -b 2 -c "sli4iov delete /dbg/dump.bin" -c "sdump 4" -c "sli4iov quickdump" -c "sdump 3" -c "sli4iov quickdump"; wc -c < /tmp/dump.bin; head -c 4 /tmp/dump.bin; echo; rm -f /tmp/dump.bin'
  Deleting object: /dbg/dump.bin
  Force Diagnostic Dump
  Error reading /dbg/dump.bin: rc 1 status x0000 additionalStatus x0000
  Dump object does not exist
  Warm Start Mode
  Dump size: 4096 bytes
  Wrote 4096 bytes to file: /tmp/dump.bin
  Created dump file at /tmp/dump.bin
  Dump object deleted
  4096
  FDMP

  $ KVD_SIM_FLEET=$KVD_FLEETS/sli4.json kvd -b 1 -c 'sli4iov quickdump'
  Error reading /dbg/dump.bin: rc 5 status x0001 additionalStatus x0040
  Dump object does not exist
  $ echo keep > target
  $ locked sh -c "rm -f /tmp/dump.bin; ln -s $PWD/target /tmp/dump.bin; kvd -b 2 -c 'sli4iov quickdump' -c 'sli4iov quicksizes' | grep -v 'prg\|vpd\|xrom'; readlink /tmp/dump.bin | sed 's|.*/||'; rm -f /tmp/dump.bin"
  Dump size: 24576 bytes
  Cannot create file: /tmp/dump.bin
  Error reading dump object
  Size\t\tName (esc)
  24576    \t/dbg/dump.bin (esc)
  
  target
  $ cat target
  keep

Output files do not follow links; a full host file ends the read.

  $ ln -s target link; kvd -b 2 -c 'sli4iov read link /prg/wol.prg 1 64' | tail -1; cat target
  Cannot create file: link
  keep
  $ kvd -b 2 -c 'sli4iov read /dev/full /prg/wol.prg 1 64' | tail -2
  ERROR: writing to /dev/full
  Wrote 0 bytes to file: /dev/full

A store kept in a host directory survives between runs.

  $ printf '{"boards": [{"board": 0, "wwpn": "10:00:06:4b:51:c8:00:50", "sli_mode": 4, "sli4": {"store_dir": "%s/store"}}]}' "$PWD" > kept.json
  $ KVD_SIM_FLEET=kept.json kvd -c 'sli4iov write img /xrom/kept.xrom 8 3840 1' -c 'sli4iov delete /dbg/dump.bin' | tail -1
  Deleting object: /dbg/dump.bin
  $ KVD_SIM_FLEET=kept.json kvd -c 'sli4iov read again /xrom/kept.xrom 8 3840' -c 'sli4iov quickdump' | tail -2
  Error reading /dbg/dump.bin: rc 5 status x0001 additionalStatus x0040
  Dump object does not exist
  $ cmp img again && echo same
  same
  $ ls store store/xrom | paste -sd ' '
  store: dbg prg vpd xrom  store/xrom: fc.xrom iscsi.xrom kept.xrom ntr.xrom

An empty object reads as no bytes and the end: the short host write shows.

  $ : > store/dbg/empty.bin
  $ KVD_SIM_FLEET=kept.json kvd -c 'sli4iov read out /dbg/empty.bin 1 64' | tail -2
  ERROR: writing to out
  Wrote 0 bytes to file: out
