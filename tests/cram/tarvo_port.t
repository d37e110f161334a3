Port controls, reset, maintenance mode, diagnostics and the forced panic of
the ASIC (board 1 of the default fleet). `sent` cuts LEN bytes at OFF out of
the last record the ASIC received (of command NAME if given); `calls` counts
the exchanges.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ sent() { grep "^KVD_SendTarvoCommand(.*command=${3:-}" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($1 * 2 + 1))-$(($1 * 2 + $2 * 2)); }
  $ calls() { grep -c '^KVD_SendTarvoCommand' trace || :; }

Usage texts, printed on a wrong count or a keyword refused; nothing is sent.
The pause usage names "ppp", which is refused: only "pfc"/"PFC" (and
"sp"/"SP") are taken, and a priority mask above 255 is refused too. Ports
are 0 or 1.

  $ kvd -b 1 -c 'tarvo lbmode'
  Usage: tarvo lbmode <port>
            port   - Loopback port. (0 or 1)
  
  $ kvd -b 1 -c 'tarvo lbmode 2'
  Usage: tarvo lbmode <port>
            port   - Loopback port. (0 or 1)
  
  $ kvd -b 1 -c 'tarvo pause ppp 3'
  Usage: tarvo pause sp
         tarvo pause ppp <priorities>
            sp          - Sets IP network pause type to SP.
            ppp         - Sets IP network pause type to PFC.
            priorities  - Sets PFC priority for each COS.
                          0x01   COS1
                          0x02   COS2
                          0x04   COS3
                          0x08   COS4
                          0x10   COS5
                          0x20   COS6
                          0x40   COS7
                          0x80   COS8
  
  $ for w in 'pfc 256' 'Sp' 'sp 1' 'pfc' 'Pfc 3'; do kvd -b 1 -c "tarvo pause $w" | head -1; done
  Usage: tarvo pause sp
  Usage: tarvo pause sp
  Usage: tarvo pause sp
  Usage: tarvo pause sp
  Usage: tarvo pause sp
  $ kvd -b 1 -c 'tarvo cos'
  Usage: tarvo cos <cos>
            cos  - FCoE class of service [default=3]
  
  $ kvd -b 1 -c 'tarvo porttype'
  Usage: tarvo porttype <type>
            type  - UIF port type [access or trunk]
  
  $ for w in aCCess trunks 'access 1'; do kvd -b 1 -c "tarvo porttype $w" | head -1; done
  Usage: tarvo porttype <type>
  Usage: tarvo porttype <type>
  Usage: tarvo porttype <type>
  $ kvd -b 1 -c 'tarvo loopback 2 enable'
  Usage: tarvo loopback <port> <mode>
            port   - Loopback port. (0 or 1)
            mode   - Loopback mode. (enable or disable)
  
  $ for w in '0 on' '1 eNABLE' '0'; do kvd -b 1 -c "tarvo loopback $w" | head -1; done
  Usage: tarvo loopback <port> <mode>
  Usage: tarvo loopback <port> <mode>
  Usage: tarvo loopback <port> <mode>
  $ kvd -b 1 -c 'tarvo modeset'
  Usage: tarvo modeset enable
         tarvo modeset disable
            enable   - Enable maintenance mode.
            disable  - Disable maintenance mode.
  
  $ kvd -b 1 -c 'tarvo modeset ON' | head -1
  Usage: tarvo modeset enable
  $ kvd -b 1 -c 'tarvo reset'
  margc 2 != 1
  Usage: tarvo reset [op | golden] 
  \tOp:\tOperational firmware that was downloaded (esc)
  \tGolden:\tGloden firmware that was install during manufacturing. (esc)
  
  $ kvd -b 1 -c 'tarvo reset gold'
  Usage: tarvo reset [op | golden] 
  \tOp:\tOperational firmware that was downloaded (esc)
  \tGolden:\tGloden firmware that was install during manufacturing. (esc)
  
  $ kvd -b 1 -c 'tarvo reset op now' | head -2
  margc 4 != 1
  Usage: tarvo reset [op | golden] 
  $ kvd -b 1 -c 'tarvo diag'
  Usage: tarvo diag <loop_count>
  
       loop_count  - Number of times to run diagnostic tests (0 to <n>)
                       0: *Indicates run tests forever.
                       1:  Indicates run tests 1 time.
                     <n>:  Indicates run tests <n> times.
  
      *NOTE: If a 0 is used, Tarvo or the adapter must be reset or
              power cycled to end the tests.
  
       The adapter's link will go down while the tests
       are running and will come back up when the tests complete.
  
       After performing the diagnostic tests, run tarvo_get_diaglog
       to obtain the results.
  
  $ kvd -b 1 -c 'tarvo getdlog now'
  Usage: tvogetdlog
  
  $ kvd -b 1 -c 'tarvo panic now'
  Usage: tvopanic
  
  $ calls
  0

Every spelling taken, and the record each sends.

  $ for w in sp SP 'pfc 0x0c' 'PFC 255'; do kvd -b 1 -c "tarvo pause $w" | head -1; sent 0 12; done
  Done.
  100000000100000000000000
  Done.
  100000000100000000000000
  Done.
  10000000020000000c000000
  Done.
  1000000002000000ff000000
  $ kvd -b 1 -c 'tarvo cos 4'; sent 0 12
  Done.
  
  110000000400000000000000
  $ for w in access Access ACCESS trunk Trunk TRUNK; do kvd -b 1 -c "tarvo porttype $w" | head -1; sent 0 12; done
  Done.
  120000000100000000000000
  Done.
  120000000100000000000000
  Done.
  120000000100000000000000
  Done.
  120000000200000000000000
  Done.
  120000000200000000000000
  Done.
  120000000200000000000000
  $ for w in enable Enable ENABLE disable Disable DISABLE; do kvd -b 1 -c "tarvo loopback 1 $w" | head -1; sent 0 12; done
  Done.
  140000000100000001000000
  Done.
  140000000100000001000000
  Done.
  140000000100000001000000
  Done.
  140000000100000000000000
  Done.
  140000000100000000000000
  Done.
  140000000100000000000000
  $ kvd -b 1 -c 'tarvo lbmode 1'; sent 0 12
  Port 1: Loopback disabled.
  0f0000000100000008000000
  $ for w in enable Enable ENABLE disable Disable DISABLE; do kvd -b 1 -c "tarvo modeset $w" | head -1; sent 0 12; done
  tvomodeset current board 1
  020000800100000000000000
  tvomodeset current board 1
  020000800100000000000000
  tvomodeset current board 1
  020000800100000000000000
  tvomodeset current board 1
  020000800000000000000000
  tvomodeset current board 1
  020000800000000000000000
  tvomodeset current board 1
  020000800000000000000000
  $ for w in op OP Op oP golden GOLDEN Golden gOLDEn; do kvd -b 1 -c "tarvo reset $w" | head -1; sent 0 8; done
  Done.
  0100008000000000
  Done.
  0100008000000000
  Done.
  0100008000000000
  Done.
  0100008000000000
  Done.
  0100008001000000
  Done.
  0100008001000000
  Done.
  0100008001000000
  Done.
  0100008001000000
  $ kvd -b 1 -c 'tarvo panic'; sent 0 4
  Done.
  
  21000000
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace | sort | uniq -c | sed 's/^ *//'
  6 KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=4) = 0 command=LOOPBACK
  6 KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=4) = 0 command=MAINT_MODE
  1 KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=4) = 0 command=SET_COS
  4 KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=4) = 0 command=SET_PAUSE
  6 KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=4) = 0 command=SET_PORT_TYPE
  1 KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=8) = 0 command=GET_LB_MODE
  1 KVD_SendTarvoCommand(board=1, cmd_len=4, rsp_len=4) = 0 command=PANIC
  8 KVD_SendTarvoCommand(board=1, cmd_len=8, rsp_len=4) = 0 command=RESET

Settings read back: loopback per port, and pause, priorities, class of
service and port type in the configuration. The ASIC refuses a class of
service above 7. A reset ends loopback.

  $ printf 'set board 1\ntarvo lbmode 0\ntarvo loopback 0 enable\ntarvo lbmode 0\ntarvo lbmode 1\ntarvo pause pfc 0x0c\ntarvo cos 4\ntarvo porttype trunk\ntarvo cos 8\ntarvo getcfg\ntarvo reset op\ntarvo lbmode 0\nquit\n' | kvd | sed -n '/^cmd>/,$p' | grep -v 'Log\|FCoE Format\|DCX'
  cmd> cmd> Port 0: Loopback disabled.
  cmd> Done.
  
  cmd> Port 0: Loopback enabled.
  cmd> Port 1: Loopback disabled.
  cmd> Done.
  
  cmd> Done.
  
  cmd> Done.
  
  cmd> Tarvo command error. code=2.
  cmd>             Pause Type: 2 2
                Priority: 12 12
                FCoE CoS: 4 4
           UIF Port Type: 2 2
      Current Pause Type: 2 2
        Current Priority: 12 12
        Current FCoE CoS: 4 4
   Current UIF Port Type: 2 2
  
  cmd> Done.
  
  cmd> Port 0: Loopback disabled.
  cmd> 
  $ printf 'set board 1\ntarvo pause sp\ntarvo getcfg\nquit\n' | kvd | grep 'Pause\|Priority'
  cmd>             Pause Type: 1 1
                Priority: 0 0
      Current Pause Type: 1 1
        Current Priority: 0 0

Reset into golden firmware and back, and maintenance mode, as getinit sees
them.

  $ printf 'set board 1\ntarvo reset golden\ntarvo modeset enable\ntarvo getinit\ntarvo reset op\ntarvo modeset disable\ntarvo getinit\nquit\n' | kvd | grep 'tvomodeset\|Type\|Maint'
  cmd> tvomodeset current board 1
    Maintenance Mode: enabled
       Firmware Type: Golden
  cmd> tvomodeset current board 1
    Maintenance Mode: disabled
       Firmware Type: Operational

The diagnostic cycle. diag asks for the tests and resets the ASIC into
operational firmware, where they run: each loop takes two exchanges, and
until the last loop is done getdlog and diag answer "busy" (16). The log
is larger than the 2,048 bytes first offered: the ASIC answers 7 with the
size it needs, and getdlog asks once more with room for it. The first
result runs on after the hyphens.

  $ kvd -b 1 -c 'tarvo getdlog'
  Tarvo command error. code=9.
  $ printf 'set board 1\ntarvo diag 2\ntarvo diag 5\ntarvo getdlog\ntarvo getdlog\ntarvo getdlog\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> Diagnostics started.
  
  cmd> Adapter busy.
  cmd> Tarvo command error. code=16.
  cmd> Tarvo command error. code=16.
  cmd>        Number of tests: 8
           Status length: 32 bytes
    Requested loop count: 2
    Completed loop count: 2
            Test summary: Success.
  
  Results:
  -----------------------------------------------------   1: Success: internal memory
     2: Success: register access
     3: Success: forwarding table
     4: Success: pcie dma
     5: Success: port 0 mac loopback
     6: Success: port 1 mac loopback
     7: Success: fc port 2 loopback
     8: Success: fc port 3 loopback
  
  cmd>  (no-eol)
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace | tail -9
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=32) = 0 command=GET_INIT
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=2048) = 0 command=GET_DIAG_LOG
  KVD_SendTarvoCommand(board=1, cmd_len=8, rsp_len=4) = 0 command=DIAG
  KVD_SendTarvoCommand(board=1, cmd_len=8, rsp_len=4) = 0 command=RESET
  KVD_SendTarvoCommand(board=1, cmd_len=8, rsp_len=4) = 0 command=DIAG
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=2048) = 0 command=GET_DIAG_LOG
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=2048) = 0 command=GET_DIAG_LOG
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=2048) = 0 command=GET_DIAG_LOG
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=2080) = 0 command=GET_DIAG_LOG
  $ sent 0 8 DIAG
  1300000005000000
  $ sent 0 8 RESET
  0100008000000000
  $ sent 0 12 GET_DIAG_LOG
  200000000000000020080000
  $ grep 'command=GET_DIAG_LOG' trace | tail -2 | head -1 | grep -o 'out=.*'
  out=0700000018080000

A run of 0 loops goes on until a reset or a panic aborts it; the log then
tells how many loops were done. The golden image has no diagnostics: diag
is refused as an invalid command (2), and no reset follows.

  $ printf 'set board 1\ntarvo diag 0\ntarvo getdlog\ntarvo getdlog\ntarvo getdlog\ntarvo reset op\ntarvo getdlog\nquit\n' | kvd | sed -n '/^cmd>/,$p' | grep -v '^ *[2-7]:'
  cmd> cmd> Diagnostics started.
  
  cmd> Tarvo command error. code=16.
  cmd> Tarvo command error. code=16.
  cmd> Tarvo command error. code=16.
  cmd> Done.
  
  cmd>        Number of tests: 8
           Status length: 32 bytes
    Requested loop count: 0
    Completed loop count: 2
            Test summary: Aborted.
  
  Results:
  -----------------------------------------------------   1: Aborted: internal memory
     8: Aborted: fc port 3 loopback
  
  cmd> 
  $ printf 'set board 1\ntarvo diag 3\ntarvo panic\ntarvo getdlog\nquit\n' | kvd | grep 'summary\|count\|1: Abor'
    Requested loop count: 3
    Completed loop count: 0
            Test summary: Aborted.
  -----------------------------------------------------   1: Aborted: internal memory
  $ printf 'set board 1\ntarvo reset golden\ntarvo diag 1\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> Done.
  
  cmd> Invalid command.
  cmd>  (no-eol)
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace | tail -1
  KVD_SendTarvoCommand(board=1, cmd_len=8, rsp_len=4) = 0 command=DIAG

A fleet may make tests fail (bit i for test i + 1): the run then ends
failed, each test reported by its own status. All eight may fail (the board
comes up, with no log yet: "not found", 9); there is no ninth.

  $ printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"diag_failing":"0x30"}}]}' > fail.json
  $ printf 'tarvo diag 1\ntarvo getdlog\ntarvo getdlog\nquit\n' | KVD_SIM_FLEET=fail.json kvd | sed -n '/^cmd>/,$p'
  cmd> Diagnostics started.
  
  cmd> Tarvo command error. code=16.
  cmd>        Number of tests: 8
           Status length: 32 bytes
    Requested loop count: 1
    Completed loop count: 1
            Test summary: Failed.
  
  Results:
  -----------------------------------------------------   1: Success: internal memory
     2: Success: register access
     3: Success: forwarding table
     4: Success: pcie dma
     5:  Failed: port 0 mac loopback
     6:  Failed: port 1 mac loopback
     7: Success: fc port 2 loopback
     8: Success: fc port 3 loopback
  
  cmd>  (no-eol)
  $ printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"diag_failing":256}}]}' > bad.json
  $ sed 's/"0x30"/255/' fail.json > all.json; KVD_SIM_FLEET=all.json kvd -c 'tarvo getdlog'
  Tarvo command error. code=9.
  $ KVD_SIM_FLEET=bad.json kvd -c 'tarvo getdlog'
  libkvd: bad.json: boards[0].asic.diag_failing: value 0x100 out of range 0..0xff
  
  No Adapters Found
  [253]

diag's other answers: busy and invalid command by their own lines, any other
status in hexadecimal; a failed reset after it prints the code line. A
second 7 from getdlog is not asked again.

  $ KVD_SIM_FAULT=asic:DIAG=16 kvd -b 1 -c 'tarvo diag 1'
  Adapter busy.
  $ KVD_SIM_FAULT=asic:DIAG=26 kvd -b 1 -c 'tarvo diag 1'
  Tarvo command error. status=1a
  $ KVD_SIM_FAULT=asic:RESET=5 kvd -b 1 -c 'tarvo diag 1'
  Tarvo command error. code=5.
  $ KVD_SIM_FAULT=asic:GET_DIAG_LOG=7 kvd -b 1 -c 'tarvo getdlog'
  Tarvo command error. code=7.
  $ grep -o 'rsp_len=[0-9]*) = 0 command=GET_DIAG_LOG' trace | tail -2
  rsp_len=2048) = 0 command=GET_DIAG_LOG
  rsp_len=8) = 0 command=GET_DIAG_LOG
  $ KVD_SIM_FAULT=KVD_SendTarvoCommand=88 kvd -b 1 -c 'tarvo getdlog'
  Tarvo command error. Link down.

The forced panic: the panic log then holds the record, solicited, and the
ASIC's system log lines up to the panic; getinit reports the reset status.

  $ printf 'set board 1\ntarvo init 8 1024\ntarvo panic\ntarvo paniclog\ntarvo getinit\nquit\n' | kvd | sed -n '/^cmd>/,$p' | grep -v 'regs_gp'
  cmd> cmd>          BB_credit: 8
          Frame Size: 1024
    Firmware Version: 2010400
        Reset Status: normal
    Maintenance Mode: disabled
            FRU Data: valid
       Firmware Type: Operational
  
  cmd> Done.
  
  cmd>       Log Present: Yes
         Panic type: Solicited
           regs_epc: 9fc0a2d4
     regs_cp0_cause: 24
    regs_cp0_status: 10008003
  
  Panic Log: 5 Entries: Head 4 Entry size 48
  --------------------------------------------------------------------------------
  32: boot: operational image started
  32: port 0: link up 10G
  32: port 1: link up 10G
  32: init: bb_credit 8 frame_size 1024
  32: panic: solicited by host
  
  cmd>          BB_credit: 8
          Frame Size: 1024
    Firmware Version: 2010400
        Reset Status: panic
    Maintenance Mode: disabled
       Firmware Type: Operational
            Fru Data: Valid
  
  cmd> 
  $ KVD_SIM_FAULT=asic:PANIC=1 kvd -b 1 -c 'tarvo panic'
  Tarvo command error. code=1.
