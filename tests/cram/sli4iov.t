The sli4iov family: the object store of SLI-4 boards of interface type 2,
each request embedded in an SLI4_CONFIG mailbox with its data behind the
256-byte record, through KVD_IssueMboxWithRetryV2. Board 2 of the default
fleet has the store. `v2` lists the V2 calls' word counts; `req N OFF LEN`
cuts LEN bytes at offset OFF out of the Nth V2 record.

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
  $ kvd -b 2 -c 'sli4iov LIST'
  Invalid subcommand: LIST - use:
  delete
  list
  quickdownload
  quickdump
  quicksizes
  read
  write
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

  $ kvd -b 2 -c 'sli4iov list'
  Root descriptor count: 4
  /prg Type: Directory - Info elements: 15 - RevName: 
  /prg descriptor count: 15
  \tsrb.prg: Type: Normal Info: bytes: 262400 RevName: 4.1.28.5 (esc)
  \tsp_boot.prg: Type: Normal Info: bytes: 131328 RevName: 4.1.28.5 (esc)
  \tsp_common.prg: Type: Normal Info: bytes: 524544 RevName: 4.1.28.5 (esc)
  \tsp_fc3.prg: Type: Normal Info: bytes: 393472 RevName: 4.1.28.5 (esc)
  \tsp_fc4.prg: Type: Normal Info: bytes: 409856 RevName: 4.1.28.5 (esc)
  \tsp_ntr.prg: Type: Normal Info: bytes: 327936 RevName: 4.1.28.5 (esc)
  \tsp_fbt.prg: Type: Normal Info: bytes: 98560 RevName: 4.1.28.5 (esc)
  \tsp_diags.prg: Type: Normal Info: bytes: 196864 RevName: 4.1.28.5 (esc)
  \tulp_fc3.prg: Type: Normal Info: bytes: 229632 RevName: 4.1.28.5 (esc)
  \tulp_fc4.prg: Type: Normal Info: bytes: 246016 RevName: 4.1.28.5 (esc)
  \tulp_ntr.prg: Type: Normal Info: bytes: 213248 RevName: 4.1.28.5 (esc)
  \tulp_fbt.prg: Type: Normal Info: bytes: 65792 RevName: 4.1.28.5 (esc)
  \tulp_diags.prg: Type: Normal Info: bytes: 131328 RevName: 4.1.28.5 (esc)
  \twol.prg: Type: Normal Info: bytes: 16640 RevName: 4.1.28.5 (esc)
  \tactive.lnk: Type: Linked Info: handle: 20 RevName:  (esc)
  
  /vpd Type: Directory - Info elements: 9 - RevName: 
  /vpd descriptor count: 9
  \tfc_pf.vpd: Type: Normal Info: bytes: 1024 RevName: VPD 3.1 (esc)
  \tfc_bf.vpd: Type: Normal Info: bytes: 512 RevName: VPD 3.1 (esc)
  \tfc_vf.vpd: Type: Normal Info: bytes: 512 RevName: VPD 3.1 (esc)
  \tntr_pf.vpd: Type: Normal Info: bytes: 1024 RevName: VPD 3.1 (esc)
  \tntr_bf.vpd: Type: Normal Info: bytes: 512 RevName: VPD 3.1 (esc)
  \tntr_vf.vpd: Type: Normal Info: bytes: 512 RevName: VPD 3.1 (esc)
  \tiscsi_pf.vpd: Type: Normal Info: bytes: 1024 RevName: VPD 3.1 (esc)
  \tiscsi_bf.vpd: Type: Normal Info: bytes: 512 RevName: VPD 3.1 (esc)
  \tiscsi_vf.vpd: Type: Normal Info: bytes: 512 RevName: VPD 3.1 (esc)
  
  /xrom Type: Directory - Info elements: 3 - RevName: 
  /xrom descriptor count: 3
  \tfc.xrom: Type: Normal Info: bytes: 262656 RevName: 4.1.28.5 (esc)
  \tntr.xrom: Type: Normal Info: bytes: 196864 RevName: 4.1.28.5 (esc)
  \tiscsi.xrom: Type: Normal Info: bytes: 229632 RevName: 4.1.28.5 (esc)
  
  /dbg Type: Directory - Info elements: 1 - RevName: 
  /dbg descriptor count: 1
  \tdump.bin: Type: Normal Info: bytes: 24576 RevName: dump 0001 (esc)
  
  $ v2 | sort | uniq -c
       37 104 0
        5 64 0

Sizes of the well-known objects.

  $ kvd -b 2 -c 'sli4iov quicksizes'
  Size\t\tName (esc)
  262400   \t/prg/srb.prg (esc)
  131328   \t/prg/sp_boot.prg (esc)
  524544   \t/prg/sp_common.prg (esc)
  393472   \t/prg/sp_fc3.prg (esc)
  409856   \t/prg/sp_fc4.prg (esc)
  327936   \t/prg/sp_ntr.prg (esc)
  98560    \t/prg/sp_fbt.prg (esc)
  196864   \t/prg/sp_diags.prg (esc)
  229632   \t/prg/ulp_fc3.prg (esc)
  246016   \t/prg/ulp_fc4.prg (esc)
  213248   \t/prg/ulp_ntr.prg (esc)
  65792    \t/prg/ulp_fbt.prg (esc)
  131328   \t/prg/ulp_diags.prg (esc)
  16640    \t/prg/wol.prg (esc)
  1024     \t/vpd/fc_pf.vpd (esc)
  512      \t/vpd/fc_bf.vpd (esc)
  512      \t/vpd/fc_vf.vpd (esc)
  1024     \t/vpd/ntr_pf.vpd (esc)
  512      \t/vpd/ntr_bf.vpd (esc)
  512      \t/vpd/ntr_vf.vpd (esc)
  1024     \t/vpd/iscsi_pf.vpd (esc)
  512      \t/vpd/iscsi_bf.vpd (esc)
  512      \t/vpd/iscsi_vf.vpd (esc)
  262656   \t/xrom/fc.xrom (esc)
  196864   \t/xrom/ntr.xrom (esc)
  229632   \t/xrom/iscsi.xrom (esc)
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
  $ kvd -b 2 -c 'sli4iov read out /prg/wol.prg 0 4'
  ERROR: buffer count 1-8
  $ kvd -b 2 -c 'sli4iov read out /prg/wol.prg 9 4'
  ERROR: buffer count 1-8
  $ kvd -b 2 -c 'sli4iov read out /prg/wol.prg 8 3844'
  ERROR: buffer size 4-3840 (multiple of 4)
  $ kvd -b 2 -c 'sli4iov read out /prg/wol.prg 8 6'
  ERROR: buffer size 4-3840 (multiple of 4)
  $ kvd -b 2 -c 'sli4iov write img /prg/x 1 0 1'
  ERROR: buffer size 4-3840 (multiple of 4)
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

Round trip with eof mode 1: a 10000-byte image in chunks of 8 x 512 bytes
(4096, 4096, 1808); the last data request carries endOfFile (bit 31 of the
word at record byte 40), earlier ones do not. Read back in chunks of
3 x 1000 bytes, compared byte for byte, and listed.

  $ head -c 10000 /dev/urandom > img
  $ rm trace; kvd -b 2 -c 'sli4iov write img /prg/new.grp 8 512 1' -c 'sli4iov read back /prg/new.grp 3 1000' -c 'sli4iov list' | grep -v '^	[a-z_]*\.\(prg\|vpd\|xrom\|lnk\|bin\)'
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
  \tsp_fc3.prg: Type: Normal Info: bytes: 393472 RevName: 4.1.28.5 (esc)
  \tsp_fc4.prg: Type: Normal Info: bytes: 409856 RevName: 4.1.28.5 (esc)
  \tulp_fc3.prg: Type: Normal Info: bytes: 229632 RevName: 4.1.28.5 (esc)
  \tulp_fc4.prg: Type: Normal Info: bytes: 246016 RevName: 4.1.28.5 (esc)
  \tnew.grp: Type: Normal Info: bytes: 10000 RevName: 4.1.28.5 (esc)
  
  /vpd Type: Directory - Info elements: 9 - RevName: 
  /vpd descriptor count: 9
  
  /xrom Type: Directory - Info elements: 3 - RevName: 
  /xrom descriptor count: 3
  
  /dbg Type: Directory - Info elements: 1 - RevName: 
  /dbg descriptor count: 1
  
  $ cmp img back && echo same
  same
  $ v2
  1088 0
  1088 0
  516 0
  814 0
  814 0
  814 0
  814 0
  64 0
  104 0
  64 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  64 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  104 0
  64 0
  104 0
  104 0
  104 0
  104 0
  104 0
  64 0
  104 0
  104 0
  104 0
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

A busy adapter takes only half of the third write of a sequence (board 1 of
the test fleet): the shell sends the rest, and the smaller chunk stays for
the rest of the file.

  $ rm trace; KVD_SIM_FLEET=$KVD_FLEETS/sli4.json kvd -b 1 -c 'sli4iov write img /prg/busy.grp 2 1024 1' -c 'sli4iov read back /prg/busy.grp 1 3840'
  bin_name: img
  objectName: /prg/busy.grp
  bufferCount: 2
  bufferSize: 1024 bytes
  Send eof with last data buffer yes
  Stat file: img rc 0 size 10000
  bin_name: back
  objectName: /prg/busy.grp
  bufferCount: 1
  bufferSize: 3840 bytes
  Wrote 10000 bytes to file: back
  $ cmp img back && echo same
  same
  $ v2
  576 0
  576 0
  576 0
  320 0
  320 0
  320 0
  320 0
  260 0
  1024 0
  1024 0
  1024 0
  $ for i in 1 2 3 4 5 6; do req $i 40 8; done
  0008000000000000
  0008000000080000
  0008000000100000
  0004000000140000
  0004000000180000
  00040000001c0000

Refusals from the adapter: a read-only directory, a missing object or
directory, a name too long for the store.

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
  $ kvd -b 2 -c 'sli4iov read out /prg/twenty_four_chars_name.x 1 64'
  bin_name: out
  objectName: /prg/twenty_four_chars_name.x
  bufferCount: 1
  bufferSize: 64 bytes
  Error reading /prg/twenty_four_chars_name.x: rc 5 status x0003 additionalStatus x0042
  Wrote 0 bytes to file: out
  $ kvd -b 2 -c 'sli4iov write img /prg/twenty_four_chars_name.x 8 3840 1' | tail -1
  Error writing /prg/twenty_four_chars_name.x: rc 5 status x0003 additionalStatus x0042
  $ KVD_SIM_FAULT=KVD_IssueMboxWithRetryV2=16 kvd -b 2 -c 'sli4iov read out /prg/wol.prg 1 64'
  bin_name: out
  objectName: /prg/wol.prg
  bufferCount: 1
  bufferSize: 64 bytes
  Error reading /prg/wol.prg: rc 16 status x0000 additionalStatus x0000
  Wrote 0 bytes to file: out

Delete, then the object is gone; a firmware image written to "/" lands as
the download object.

  $ kvd -b 2 -c 'sli4iov delete /prg/wol.prg' -c 'sli4iov read out /prg/wol.prg 1 64'
  Deleting object: /prg/wol.prg
  bin_name: out
  objectName: /prg/wol.prg
  bufferCount: 1
  bufferSize: 64 bytes
  Error reading /prg/wol.prg: rc 5 status x0001 additionalStatus x0040
  Wrote 0 bytes to file: out
  $ kvd -b 2 -c 'sli4iov quickdownload img' -c 'sli4iov list' | grep download
  \tdownload.grp: Type: Normal Info: bytes: 10000 RevName: 4.1.28.5 (esc)
  $ v2 | head -2
  576 0
  576 0

Quick dump, with and without a dump object; a symbolic link planted at
"/tmp/dump.bin" is not followed and the dump stays on the adapter. The
dump path is shared, so these runs hold a lock.

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

Every output file is created without following a link; a host file that
cannot take the data ends the read.

  $ ln -s target link; kvd -b 2 -c 'sli4iov read link /prg/wol.prg 1 64'; cat target
  bin_name: link
  objectName: /prg/wol.prg
  bufferCount: 1
  bufferSize: 64 bytes
  Cannot create file: link
  keep
  $ kvd -b 2 -c 'sli4iov read /dev/full /prg/wol.prg 1 64' | tail -2
  ERROR: writing to /dev/full
  Wrote 0 bytes to file: /dev/full

A fleet may keep the store in a host directory: what one run writes or
deletes, the next one finds.

  $ cat > kept.json <<JSON
  > {"boards": [{"board": 0, "wwpn": "10:00:06:4b:51:c8:00:50", "sli_mode": 4,
  >              "sli4": {"store_dir": "$PWD/store"}}]}
  > JSON
  $ KVD_SIM_FLEET=kept.json kvd -c 'sli4iov write img /xrom/kept.xrom 8 3840 1' -c 'sli4iov delete /dbg/dump.bin' | tail -1
  Deleting object: /dbg/dump.bin
  $ KVD_SIM_FLEET=kept.json kvd -c 'sli4iov read again /xrom/kept.xrom 8 3840' -c 'sli4iov quickdump' | tail -2
  Error reading /dbg/dump.bin: rc 5 status x0001 additionalStatus x0040
  Dump object does not exist
  $ cmp img again && echo same
  same
  $ ls store store/xrom
  store:
  dbg
  prg
  vpd
  xrom
  
  store/xrom:
  fc.xrom
  iscsi.xrom
  kept.xrom
  ntr.xrom

An empty object (put there through the host directory) answers its first
read with no bytes and the end: the shell reports the short host write.

  $ : > store/dbg/empty.bin
  $ KVD_SIM_FLEET=kept.json kvd -c 'sli4iov read out /dbg/empty.bin 1 64' | tail -2
  ERROR: writing to out
  Wrote 0 bytes to file: out
