The ASIC's logs and panic record; each command first reads the configuration
for the size of the next reply. `exchanges N`: code, context, length, room.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ exchanges() { grep '^KVD_SendTarvoCommand' trace | tail -$1 | sed 's/.*rsp_len=\([0-9]*\).* in=\(..\)000000\(..\)000000\(........\).*/\2 \3 \4 \1/'; }

Four logs need 120 bytes of descriptions, more than the configuration's 96.

  $ kvd -b 1 -c 'tarvo logcfg'
  bad rsp_size 120
        Id: 0
   Entries: 3
      Size: 48
  
        Id: 1
   Entries: 2
      Size: 48
  
        Id: 2
   Entries: 1
      Size: 48
  
        Id: 3
   Entries: 0
      Size: 48
  
  $ exchanges 2
  08 00 60000000 96
  0c 00 78000000 120

Three logs fit in 92 bytes: no notice, and only that much is offered.

  $ KVD_SIM_FLEET=$KVD_FLEETS/asic.json kvd -b 2 -c 'tarvo logcfg' | head -1
        Id: 0
  $ exchanges 2
  08 00 60000000 96
  0c 00 5c000000 92

logdata: one log by id (any base) or all; a ring log dumps oldest first.

  $ kvd -b 1 -c 'tarvo logdata 0'
  LOG 0
  head 2 size 48 entries 3
  --------------------------------------------------------------------------------
  0: boot: operational image started
  1: port 0: link up 10G
  2: port 1: link up 10G
  
  $ exchanges 3
  08 00 60000000 96
  0c 00 78000000 120
  0d 00 98000000 152
  $ KVD_SIM_FLEET=$KVD_FLEETS/asic.json kvd -b 2 -c 'tarvo logdata all'
  Log count: 3
  
  LOG 0
  head 1 size 32 entries 3
  --------------------------------------------------------------------------------
  0: fcoe task: bad frame
  1: panic: exception
  2: port 1: link up
  
  LOG 1
  head 0 size 8 entries 0
  --------------------------------------------------------------------------------
  
  LOG 2
  head 0 size 16 entries 1
  --------------------------------------------------------------------------------
  0: fip: no fcf
  
  $ exchanges 5
  08 00 60000000 96
  0c 00 5c000000 92
  0d 00 68000000 104
  0d 01 08000000 8
  0d 02 18000000 24
  $ kvd -b 1 -c 'tarvo logdata 0x3' | head -2
  LOG 3
  head 0 size 48 entries 0
  $ kvd -b 1 -c 'tarvo logdata ALL' | head -1
  LOG 0
  $ kvd -b 1 -c 'tarvo logdata 9'
  $ kvd -b 1 -c 'tarvo logdata'
  Usage: tarvo logdata <logid>
         tarvo logdata all
  
            logid   - Log file id. Identified in tarvo logcfg
            all     - Display all log files.
  

Entries grow as the ASIC works.

  $ printf 'set board 1\ntarvo init 8 1024\ntarvo wmem 0x100 1\ntarvo logcfg\ntarvo logdata 0\nquit\n' | kvd | grep -E 'Entries: 5|^head|^[34]:'
   Entries: 5
  head 4 size 48 entries 5
  3: init: bb_credit 8 frame_size 1024
  4: mem: 00000001 written at 00000100

A failure at any step ends the command.

  $ KVD_SIM_FAULT=asic:GET_LOG_DATA=26 kvd -b 1 -c 'tarvo logdata all'
  Log count: 4
  
  Tarvo command error. status=1a
  $ KVD_SIM_FAULT=asic:GET_LOG_CONFIG=26 kvd -b 1 -c 'tarvo logdata all'; KVD_SIM_FAULT=asic:GET_CONFIG=26 kvd -b 1 -c 'tarvo logcfg'; KVD_SIM_FAULT=KVD_SendTarvoCommand=88 kvd -b 1 -c 'tarvo logdata 0'; kvd -b 0 -c 'tarvo logcfg'
  Tarvo command error. code=26.
  Tarvo command error. code=26.
  Tarvo command error. Link down.
  Tarvo command error. Invalid adapter.

paniclog: no record, then one after an exception with registers and log.

  $ kvd -b 1 -c 'tarvo paniclog' | head -3
        Log Present: No
         Panic type: unknown(0)
           regs_epc: 0
  $ exchanges 2
  08 00 60000000 96
  0e 00 a0000000 160
  $ KVD_SIM_FLEET=$KVD_FLEETS/asic.json kvd -b 2 -c 'tarvo paniclog' | grep -v 'gp\[\( [2-8]\|1[1-9]\|2[0-9]\|30\)\]'
        Log Present: Yes
         Panic type: Exception
           regs_epc: 9fc13c80
     regs_cp0_cause: c
    regs_cp0_status: 10008003
       regs_gp[ 0]: 0
       regs_gp[ 1]: 80010040
       regs_gp[ 9]: 80010240
       regs_gp[10]: 80010280
       regs_gp[31]: 800107c0
  
  Panic Log: 4 Entries: Head 3 Entry size 48
  --------------------------------------------------------------------------------
  32: port 0: link up
  32: port 1: link up
  32: fcoe task: bad frame
  32: panic: exception in fcoe task
  
  $ exchanges 2
  08 00 60000000 96
  0e 00 60010000 352
  $ KVD_SIM_FAULT=asic:GET_PANIC_LOG=3 kvd -b 1 -c 'tarvo paniclog'
  Tarvo command error. code=3.
