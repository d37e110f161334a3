The memory-dump, configuration-region, event-log, variable and
port-capability rows of the mbox family; state read back within one run.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ bytes() { grep "^$1(" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($2 * 2 + 1))-$(($2 * 2 + $3 * 2)); }

Port capabilities come back through the V2 call over the whole record.

  $ kvd -c 'mbox readportcap'
  Command: 0x3b  Status: 0x0
  port type         FC
  media             optical SFP
  speeds supported  x0000001a
  speeds configured x0000001a
  max frame size    2048
  bb credit         16
  $ grep -o '^KVD_IssueMboxWithRetryV2([^)]*)' trace
  KVD_IssueMboxWithRetryV2(board=0, words=64, retries=5, delay=100)
  $ kvd -b 1 -c 'mbox readportcap' | head -3
  Command: 0x3b  Status: 0x0
  port type         FCoE
  media             copper

A firmware variable answers the value it replaced; sixteen (0 to 15).

  $ printf '15\nabcd\n15\n7\n16\n1\n' | kvd -c 'mbox setvar' -c 'mbox setvar' -c 'mbox setvar'
  variable: value (hex): Command: 0x21  Status: 0x0
  variable 15: was x00000000 now x0000abcd
  variable: value (hex): Command: 0x21  Status: 0x0
  variable 15: was x0000abcd now x00000007
  variable: value (hex): Command: 0x21  Status: 0x10
  $ bytes KVD_IssueMboxWithRetry 0 12
  002100001000000001000000

The event log: power-on link up first, written entries next, oldest first.

  $ printf 'c0de\n1234\n' | kvd -c 'mbox wrevtlog' -c 'mbox downlink' -c 'mbox rdevtlog'
  event code (hex): event data (hex): Command: 0x39  Status: 0x0
  sequence 2
  Command: 0x6  Status: 0x0
  Command: 0x37  Status: 0x0
  entries 3 of 32  next sequence 4  lost 0
     0: seq 1  code x00000001  data x00000002
     1: seq 2  code x0000c0de  data x00001234
     2: seq 3  code x00000002  data x00000003
  $ bytes KVD_IssueMboxWithRetry 0 8
  0038000002000000

The log holds 32 entries, older ones counted lost; pages by num_lines.

  $ for i in $(seq 1 40); do printf 'mbox wrevtlog\n%x\n%x\n' $i $i; done > many
  $ printf 'mbox rdevtlog\n\n\nquit\n' >> many
  $ kvd < many | grep -a 'entries\|^   0:\|  31:'
  entries 32 of 32  next sequence 42  lost 9
     0: seq 10  code x00000009  data x00000009
    31: seq 41  code x00000028  data x00000028
  $ printf 'set lines 2\nmbox downlink\nmbox initlink\n0\nmbox rdevtlog\nx\nquit\n' | kvd | sed -n '/^cmd> Command: 0x37/,$p'
  cmd> Command: 0x37  Status: 0x0
  entries 3 of 32  next sequence 4  lost 0
     0: seq 1  code x00000001  data x00000002
     1: seq 2  code x00000002  data x00000003
  
   Hit <CR> to continue (x to abort): 
  cmd>  (no-eol)

Adapter memory: up to 64 words through the plain call, more through V2.

  $ printf '0\n8\n' | kvd -c 'wslim 0x10 6 0x5a' -c 'mbox dmpmem'
  offset (hex): words: Command: 0x17  Status: 0x0
  offset x0: 8 words
     0: 0x00000000  0x00000000  0x00000000  0x00000000
    10: 0x5a5a5a5a  0x00005a5a  0x00000000  0x00000000
  $ grep -o '^KVD_IssueMboxWithRetry([^)]*)' trace | tail -1
  KVD_IssueMboxWithRetry(board=0, words_in=32, words_out=128, retries=5, delay=100)
  $ bytes KVD_IssueMboxWithRetry 0 16
  00170000010000000000000008000000
  $ printf '0\n64\n' | kvd -c 'set lines 0' -c 'mbox dmpmem' | tail -2
    e0: 0x00000000  0x00000000  0x00000000  0x00000000
    f0: 0x00000000  0x00000000  0x00000000  0x00000000
  $ grep -o '^KVD_IssueMboxWithRetry([^)]*)' trace | tail -1
  KVD_IssueMboxWithRetry(board=0, words_in=32, words_out=128, retries=5, delay=100)
  $ printf '100\n65\n' | kvd -c 'set lines 0' -c 'mbox dmpmem' | sed -n '1,3p;$p'
  offset (hex): words: Command: 0x17  Status: 0x0
  offset x100: 65 words
   100: 0x00000000  0x00000000  0x00000000  0x00000000
   200: 0x00000000
  $ grep -o '^KVD_IssueMboxWithRetryV2([^)]*)' trace | tail -1
  KVD_IssueMboxWithRetryV2(board=0, words=129, retries=5, delay=100)
  $ printf '3fff0\n4\n' | kvd -c 'mbox dmpmem'
  offset (hex): words: Command: 0x17  Status: 0x0
  offset x3fff0: 4 words
  3fff0: 0x00000000  0x00000000  0x00000000  0x00000000
  $ printf '3fff0\n5\n' | kvd -c 'mbox dmpmem'
  offset (hex): words: Command: 0x17  Status: 0xf
  $ printf '0\n0\n0\n16321\n' | kvd -c 'mbox dmpmem' -c 'mbox dmpmem'
  offset (hex): words: words must be 1 to 16320
  offset (hex): words: words must be 1 to 16320
  $ printf '0\n16320\n' | kvd -c 'set lines 0' -c 'mbox dmpmem' | sed -n 2p
  offset x0: 16320 words
  $ printf '3\n4\n' | kvd -c 'mbox dmpmem'
  offset (hex): words: Command: 0x17  Status: 0x10
  $ printf '0\n8\n' | KVD_SIM_FAULT=KVD_IssueMboxWithRetry=5 kvd -c 'mbox dmpmem'
  offset (hex): words: IssueMbox error 5
  $ printf '0\n8\n' | kvd -c 'mbox dmpmem 3'
  offset (hex): words: IssueMbox error 2

Configuration regions, whole or a window, through the region-read call.

  $ printf '14\n' | kvd -c 'set lines 0' -c 'mbox dmpmem_ext' | head -4
  region: Command: 0x17  Status: 0x0
  region 14 offset 0: 512 bytes
     0: 0x51003482  0x462d384d  0x47382032  0x2d322062
    10: 0x74726f70  0x7061632d  0x656c6261  0x49435020
  $ grep -o '^getRegionData([^)]*)' trace | tail -1
  getRegionData(board=0, type=2, region=14, offset=0, size=2048, flags=0)
  $ printf '14\n8\n20\n' | kvd -c 'mbox dmpmem3_ext'
  region: offset: length: Command: 0x17  Status: 0x0
  region 14 offset 8: 20 bytes
     8: 0x47382032  0x2d322062  0x74726f70  0x7061632d
    18: 0x656c6261
  $ printf '14\n0\n2048\n14\n0\n2049\n14\n0\n0\n' | kvd -c 'mbox dmpmem3_ext' -c 'mbox dmpmem3_ext' -c 'mbox dmpmem3_ext' | sed -n '1,2p;$p'
  region: offset: length: Command: 0x17  Status: 0x0
  region 14 offset 0: 512 bytes
  region: offset: length: length must be 1 to 2048
  $ printf '99\n' | kvd -c 'mbox dmpmem_ext'
  region: IssueMbox error 2

Region writes (bytes, words, restore) read back; no write grows a region.

  $ printf '0\n56\n4\nab\n0\n56\n4\n' | kvd -c 'mbox udtcfg_ext' -c 'mbox dmpmem3_ext'
  region: offset: length: value (hex): Status: 0x0
  region 0 offset 56: 4 bytes of xab written
  region: offset: length: Command: 0x17  Status: 0x0
  region 0 offset 56: 4 bytes
    38: 0xabababab
  $ printf '0\n57\n4\n1\n' | kvd -c 'mbox udtcfg_ext'
  region: offset: length: value (hex): IssueMbox error 22
  $ printf '0\n8\n2\n11223344\n55667788\n0\n8\n8\n0\n0\n8\n8\n' | kvd -c 'mbox udtcfg2_ext' -c 'mbox dmpmem3_ext' -c 'mbox udtcfg3_ext' -c 'mbox dmpmem3_ext'
  region: offset: words: word (hex): word (hex): Status: 0x0
  region 0 offset 8: 2 words written
  region: offset: length: Command: 0x17  Status: 0x0
  region 0 offset 8: 8 bytes
     8: 0x11223344  0x55667788
  region: Status: 0x0
  region 0 restored
  region: offset: length: Command: 0x17  Status: 0x0
  region 0 offset 8: 8 bytes
     8: 0x4b060020  0x1000a051
  $ grep -o '^KVD_IssueUpdateCfgMBox([^)]*) = [0-9]*' trace | head -2
  KVD_IssueUpdateCfgMBox(board=0, request=0, region=0, offset=8, length=8) = 0
  KVD_IssueUpdateCfgMBox(board=0, request=1, region=0, offset=0, length=0) = 0
  $ printf '0\n6\n1\n1\n0\n0\n513\n22\n' | kvd -c 'mbox udtcfg2_ext' -c 'mbox udtcfg2_ext' -c 'mbox udtcfg3_ext'
  region: offset: words: word (hex): IssueMbox error 22
  region: offset: words: words must be 1 to 512
  region: IssueMbox error 2
