The tarvo family: the Tarvo ASIC (board 1) through KVD_SendTarvoCommand.
`sent OFF LEN [NAME]` cuts bytes out of the last record sent; `calls` counts.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ sent() { grep "^KVD_SendTarvoCommand(.*command=${3:-}" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($1 * 2 + 1))-$(($1 * 2 + $2 * 2)); }
  $ calls() { grep -c '^KVD_SendTarvoCommand' trace || :; }

No sub-command, or more than twelve words: the usage and all 42 words.

  $ kvd -c tarvo > usage.out
  [247]
  $ sed -n '1,3p;$p' usage.out; wc -l < usage.out
  Usagetarvo: tarvo command [brd]
  inval
  init
  getDcbxMode
  43
  $ kvd -c 'tarvo init 1 2 3 4 5 6 7 8 9 10 11 12' | cmp - usage.out
  $ kvd -c 'tarvo init 1 2 3 4 5 6 7 8 9 10 11' | head -1
  Usage: tarvo init <bb_credit> <frame_size>
  $ calls
  0

Words match whole and case-sensitively from row 1 ("inval" is none).

  $ kvd -c 'tarvo inval'
  Invalid command: inval   supported commands include:
        init   download      rdmem       wmem     fteins     ftedel 
     getinit     getfru     setfru setfcoefmt     getcfg   portstat 
     lifstat   asicstat     logcfg    logdata   paniclog     lbmode 
       pause        cos   porttype       diag   loopback      reset 
     modeset    getftbl     getsfp    getdlog      panic setfcoeparams 
  getfcoeparams getfcflist    setfacl    getfacl   createvl   deletevl 
    setetspg   getetspg setHostEthPfcFlg getHostEthPfcFlg getDcbxMode 
  $ kvd -c 'tarvo Init' | head -1
  Invalid command: Init   supported commands include:

Every row is built: none answers "Not Implemented", whatever it is given.

  $ for w in $(kvd -c tarvo | sed 1,2d); do kvd -b 1 -c "tarvo $w"; kvd -b 1 -c "tarvo $w 1"; done 2>&1 | grep -c 'Not Implemented'
  0
  [1]
  $ : > trace

init sets credit and frame size; getinit reads (their last lines differ).

  $ kvd -b 1 -c 'tarvo init 16'
  Usage: tarvo init <bb_credit> <frame_size>
  
          bb_credit  - Tarvo/Pelmir FC buffer-to-buffer credit.
          frame_size - Tarvo/Pelmir FC frame size.
  
  $ calls
  0
  $ printf 'set board 1\ntarvo init 0x20 2048\ntarvo getinit\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd>          BB_credit: 32
          Frame Size: 2048
    Firmware Version: 2010400
        Reset Status: normal
    Maintenance Mode: disabled
            FRU Data: valid
       Firmware Type: Operational
  
  cmd>          BB_credit: 32
          Frame Size: 2048
    Firmware Version: 2010400
        Reset Status: normal
    Maintenance Mode: disabled
       Firmware Type: Operational
            Fru Data: Valid
  
  cmd>  (no-eol)
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=32) = 0 command=INIT
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=32) = 0 command=GET_INIT
  $ sent 0 12
  070000000000000020000000

Text converts to 0, and the ASIC refuses a credit of 0.

  $ kvd -b 1 -c 'tarvo init none 2048'
  Tarvo command error. code=2.
  $ sent 0 12
  010000000000000000080000

Transport statuses; nothing is decoded after a failed exchange.

  $ kvd -b 0 -c 'tarvo getinit'; KVD_SIM_FLEET=$KVD_FLEETS/gap.json kvd -b 1 -c 'tarvo getinit'; KVD_SIM_FLEET=$KVD_FLEETS/asic.json kvd -b 1 -c 'tarvo getinit'; KVD_SIM_FLEET=$KVD_FLEETS/asic.json kvd -b 0 -c 'tarvo getinit'
  Tarvo command error. Invalid adapter.
  Tarvo command error. Invalid board id.
  Tarvo command error. Timeout.
  Tarvo command error. Link down.
  $ for rc in 1 3 2; do KVD_SIM_FAULT=KVD_SendTarvoCommand=$rc kvd -b 1 -c 'tarvo getinit'; done
  Tarvo command error. General Error.
  Tarvo command error. Response buffer overrun.
  Tarvo command error. error=2.
  $ KVD_SIM_FAULT=asic:GET_INIT=7 kvd -b 1 -c 'tarvo getinit'
  Tarvo command error. code=7.
  $ grep '^KVD_SendTarvoCommand' trace | tail -1 | grep -o 'command=.*injected rule=1'
  command=GET_INIT injected rule=1

A board up after a panic, golden firmware, maintenance mode, FRU invalid.

  $ KVD_SIM_FLEET=$KVD_FLEETS/asic.json kvd -b 2 -c 'tarvo getinit' | sed -n 4,7p
        Reset Status: panic
    Maintenance Mode: enabled
       Firmware Type: Golden
            Fru Data: Invalid

An image of a type the shell does not know.

  $ echo '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:03:00","protocol":"fcoe","asic":{"fw_type":"0x12345678"}}]}' > odd.json
  $ KVD_SIM_FLEET=odd.json kvd -c 'tarvo getinit' | grep Type
       Firmware Type: Unknown: x12345678

FRU data: addresses travel reversed in their 8-byte fields, both ways.

  $ kvd -b 1 -c 'tarvo getfru'
  FRU Data:
  --------------------------------------------------
     Port 0 MAC Address: 0a:3c:55:b4:00:20
     Port 1 MAC Address: 0a:3c:55:b4:00:21
     Number of Channels: 2
  
  $ grep '^KVD_SendTarvoCommand' trace | tail -1 | sed 's/.* out=//'
  000000002000b4553c0a00002100b4553c0a000002000000
  $ kvd -b 1 -c 'tarvo setfru 00:11:22:33:44:55'
  
  $ sent 0 24
  170000005544332211000000000000000000000001000000
  $ printf 'set board 1\ntarvo setfru 00:0a:3c:55:aa:01 00:0a:3c:55:aa:02\ntarvo getfru\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> 
  cmd> FRU Data:
  --------------------------------------------------
     Port 0 MAC Address: 00:0a:3c:55:aa:01
     Port 1 MAC Address: 00:0a:3c:55:aa:02
     Number of Channels: 2
  
  cmd>  (no-eol)
  $ sent 0 24 SET_FRU
  1700000001aa553c0a00000002aa553c0a00000002000000

A group address is the ASIC's refusal; a malformed one the parser's.

  $ kvd -b 1 -c 'tarvo setfru 01:00:5e:00:00:01'
  Tarvo command error. code=2.
  $ : > trace
  $ kvd -b 1 -c 'tarvo setfru 00:11:22:33:44'
  Invalid MAC address: (00:11:22:33:44)
  Must be of the form: (XX:XX:XX:XX:XX:XX)
  
  Usage: tarvo setfru  <Port 0 MAC> [<Port 1 MAC>]
  
                 Port 0 MAC  - MAC Address of Port 0
                               Example: (XX:XX:XX:XX:XX:XX)
                 Port 1 MAC  - MAC Address of Port 1
                               Example: (XX:XX:XX:XX:XX:XX)
  
  $ kvd -b 1 -c 'tarvo setfru' | head -1
  Usage: tarvo setfru  <Port 0 MAC> [<Port 1 MAC>]
  $ calls
  0

The optical module's two pages, four words a line.

  $ kvd -b 1 -c 'tarvo getsfp' | sed -n '1,7p;17,19p;24,25p;$p'
  Page 0xA0:
     0: 0x10070403  0x00000000  0x06000000  0x00000067  
    10: 0x1e000308  0x5252414d  0x494c574f  0x20544847  
    20: 0x20202020  0x553c0a00  0x2d544c4d  0x30315253  
    30: 0x2035382d  0x20202020  0x20202041  0x8f005203  
    40: 0x00001a00  0x32544c4d  0x41313136  0x31373430  
    50: 0x20202020  0x33303632  0x20203131  0x2603f068  
    f0: 0x00000000  0x00000000  0x00000000  0x00000000  
  Page 0xA2:
     0: 0x00fb0055  0x00000000  0x3075a08c  0x00000000  
    50: 0x00000000  0x00000000  0x00000000  0x21000000  
    60: 0x24819023  0x401f7017  0x0000581b  0x00000000  
    f0: 0x00000000  0x00000000  0x00000000  0x00000000  
  $ sent 0 12
  160000000000000004020000

FCoE frame formats: any nonzero set below 0x20000.

  $ kvd -b 1 -c 'tarvo setfcoefmt 0x1FFFF'
  $ sent 0 12
  19000000ffff010000000000
  $ kvd -b 1 -c 'tarvo setfcoefmt 0x20000' > fmt.out; cat fmt.out
  Usage: tarvo setfcoe <FCOE_FMT_TYPE>
  
        FCOE_FMT_TYPE  - Tarvo FCOE range 0x00000001-0x001ffff.
        FC0E_FRAME_FORMAT_P0    0x00010000
        FC0E_FRAME_FORMAT_T0    0x00000001
        FC0E_FRAME_FORMAT_T1    0x00000002
        FC0E_FRAME_FORMAT_T2    0x00000004
        FC0E_FRAME_FORMAT_T3    0x00000008
        FC0E_FRAME_FORMAT_T4    0x00000010
        FC0E_FRAME_FORMAT_T5    0x00000020
        FC0E_FRAME_FORMAT_T6    0x00000040
        FC0E_FRAME_FORMAT_T7    0x00000080
        FC0E_FRAME_FORMAT_T8    0x00000100
        FC0E_FRAME_FORMAT_T9    0x00000200
        FC0E_FRAME_FORMAT_T10   0x00000400
        FC0E_FRAME_FORMAT_T11   0x00000800
        FC0E_FRAME_FORMAT_T12   0x00001000
        FC0E_FRAME_FORMAT_T13   0x00002000
        FC0E_FRAME_FORMAT_T14   0x00004000
  
  $ kvd -b 1 -c 'tarvo setfcoefmt 0' | cmp - fmt.out
  $ kvd -b 1 -c 'tarvo setfcoefmt' | cmp - fmt.out
  $ printf 'set board 1\ntarvo setfcoefmt 0x10004\ntarvo getcfg\ntarvo logdata 1\nquit\n' | kvd | grep 'FCoE Format\|fip:\|fcoe:'
             FCoE Format: x10004
     Current FCoE Format: x10004
   Supported FCoE Format: x1ffff
  0: fip: vlan 1002 discovered
  1: fip: fcf login accepted
  2: fcoe: frame formats 10004

ASIC memory: whole words, 256 bytes a read at most; the first words read-only.

  $ kvd -b 1 -c 'tarvo rdmem 0x3 10'
  
     0: 56524154  02010400  
  $ sent 0 12
  030000000000000002000000
  $ kvd -b 1 -c 'tarvo rdmem 0 260'
  Unable to read more then 256 bytes at a time.
  $ kvd -b 1 -c 'tarvo rdmem 0 259' | wc -l
  17
  $ sent 0 12
  030000000000000040000000
  $ kvd -b 1 -c 'tarvo rdmem 0 3'
  
  $ sent 0 12
  030000000000000000000000
  $ printf 'set board 1\ntarvo wmem 0x2002 5\ntarvo rdmem 0x2000 8\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> Done.
  
  cmd> 
     0: 00000005  00000000  
  cmd>  (no-eol)
  $ sent 0 16 WRITE_MEM
  04000000002000000100000005000000
  $ kvd -b 1 -c 'tarvo wmem 0xc 1'
  Tarvo command error. code=5.
  $ kvd -b 1 -c 'tarvo rdmem 0xfffc 8'
  Tarvo command error. code=2.
  $ kvd -b 1 -c 'tarvo wmem 1'
  Usage: tarvo wmem <address> <value>
  
              address - Tarvo memory address. (4 byte aligned)
              value   - 4 byte value to be written to memory.
  
  $ kvd -b 1 -c 'tarvo rdmem 1'
  Usage: tarvo rdmem <address> <length>
  
              address - Tarvo memory address. (4 byte aligned)
              length  - Number of bytes to read. (4 byte aligned)
  

Every reader given a word too many or too few: the usage, nothing sent.

  $ : > trace
  $ for c in 'getinit x' 'getfru 0' 'getcfg 0' 'getsfp 1' 'asicstat 0' lifstat portstat 'logcfg now' 'paniclog all' 'getftbl all' 'getfcflist 0' 'getetspg 0' 'getHostEthPfcFlg 1' 'getDcbxMode 1'; do kvd -b 1 -c "tarvo $c"; done
  Usage: tarvo getinit
  
  Usage: tarvo getfru
  
  Usage: tarvo getcfg
  
  Usage: tarvo getsfp
  
  Usage: tarvo asicstat
  
  Usage: tarvo lifstat <port>
  
  Usage: tarvo portstat <port>
  
  Usage: tarvo logcfg
  
  Usage: tarvo paniclog
  
  Usage: tarvo getftbl
  
  Usage: tarvo getfcflist
  
  Usage: tarvo getetspg
  
  Usage: tarvo getHostEthPfcFlg
  Usage: tarvo getdcbxmode
  $ calls
  0

Configuration and counters (statistics offer 4 bytes more in the record).

  $ kvd -b 1 -c 'tarvo getcfg'
              Pause Type: 2 2
                Priority: 8 8
                FCoE CoS: 3 3
           UIF Port Type: 1 1
         Log Config Size: 116
          Panic Log Size: 156
             DCX Present: 1 1
      Current Pause Type: 2 2
        Current Priority: 8 8
        Current FCoE CoS: 3 3
   Current UIF Port Type: 1 1
             FCoE Format: x10000
     Current FCoE Format: x10000
   Supported FCoE Format: x1ffff
  
  $ kvd -b 1 -c 'tarvo portstat 2'
                    port: 2 (FC)
               tx_frames: 920
               rx_frames: 1120
                tx_words: 471040
                rx_words: 573440
             tx_discards: 0
             rx_discards: 0
              crc_errors: 0
         encoding_errors: 0
        invalid_tx_words: 2
           link_failures: 0
            loss_of_sync: 0
          loss_of_signal: 0
    primitive_seq_errors: 0
       bb_credit_zero_tx: 0
       bb_credit_zero_rx: 0
                rx_r_rdy: 920
                tx_r_rdy: 1120
       fcoe_encap_frames: 920
       fcoe_decap_frames: 1120
       fcoe_encap_errors: 0
       fcoe_decap_errors: 0
     rx_truncated_frames: 0
      rx_too_long_frames: 0
             link_resets: 0
  
  $ grep -o '^KVD_SendTarvoCommand(.*rsp_len=[0-9]*)' trace | tail -1; sent 0 12
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=200)
  0900000002000000cc000000
  $ printf 'set board 1\ntarvo portstat 0\ntarvo portstat 0\nquit\n' | kvd | grep -E '^ *(tx|rx)_frames:'
               tx_frames: 2000
               rx_frames: 2400
               tx_frames: 4000
               rx_frames: 4800
  $ sent 0 12
  0900000000000000a4010000
  $ kvd -b 1 -c 'tarvo portstat 6'
  Usage: tarvo portstat <port>
  
  $ kvd -b 1 -c 'tarvo lifstat 1'
                     lif: 1
               tx_frames: 550
               rx_frames: 700
                tx_bytes: 563200
                rx_bytes: 716800
          tx_fcoe_frames: 0
          rx_fcoe_frames: 0
              tx_dropped: 0
              rx_dropped: 0
  
  $ sent 0 12
  0a000000010000004c000000
  $ kvd -b 1 -c 'tarvo lifstat 4'
  Tarvo command error. code=2.
  $ kvd -b 1 -c 'tarvo asicstat'
                  uptime: 1
                commands: 1
          command_errors: 0
            fw_downloads: 0
                  resets: 0
                  panics: 0
           ecc_corrected: 0
         ecc_uncorrected: 0
           parity_errors: 0
            pcie_tx_tlps: 3000
            pcie_rx_tlps: 2800
             pcie_errors: 0
               dma_reads: 700
              dma_writes: 650
             ftable_hits: 2200
           ftable_misses: 0
          ftable_inserts: 0
          ftable_deletes: 0
       fip_solicitations: 2
      fip_advertisements: 1
          fip_keepalives: 0
           vlink_creates: 0
           vlink_deletes: 0
             log_entries: 6
    rx_priority_drops[0]: 0 0 0 0 0 0 0 0
    rx_priority_drops[1]: 0 0 0 0 0 0 0 0
    rx_priority_drops[2]: 0 0 0 0 0 0 0 0
    rx_priority_drops[3]: 0 0 0 0 0 0 0 0
    rx_priority_drops[4]: 0 0 0 0 0 0 0 0
    rx_priority_drops[5]: 0 0 0 0 0 0 0 0
           pause_time[0]: 0 0 0 12 0 0 0 0
           pause_time[1]: 0 0 0 24 0 0 0 0
           pause_time[2]: 0 0 0 36 0 0 0 0
           pause_time[3]: 0 0 0 48 0 0 0 0
           pause_time[4]: 0 0 0 60 0 0 0 0
           pause_time[5]: 0 0 0 72 0 0 0 0
    buffer_high_water[0]: 0 0 0 4096 0 0 0 0
    buffer_high_water[1]: 0 0 0 4608 0 0 0 0
    buffer_high_water[2]: 0 0 0 5120 0 0 0 0
    buffer_high_water[3]: 0 0 0 5632 0 0 0 0
    buffer_high_water[4]: 0 0 0 6144 0 0 0 0
    buffer_high_water[5]: 0 0 0 6656 0 0 0 0
  
  $ sent 0 12
  0b0000000000000004060000
