Port controls, reset, maintenance mode, diagnostics and the forced panic
(board 1). `sent OFF LEN [NAME]` cuts bytes out of the last record sent.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ sent() { grep "^KVD_SendTarvoCommand(.*command=${3:-}" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($1 * 2 + 1))-$(($1 * 2 + $2 * 2)); }
  $ calls() { grep -c '^KVD_SendTarvoCommand' trace || :; }

Usage texts; nothing is sent. Only "pfc"/"PFC" and "sp"/"SP" are taken (the
usage names "ppp"), a mask up to 255; ports are 0 or 1.

  $ kvd -b 1 -c 'tarvo lbmode 2'
  Usage: tarvo lbmode <port>
            port   - Loopback port. (0 or 1)
  
  $ kvd -b 1 -c 'tarvo lbmode' | head -1
  Usage: tarvo lbmode <port>
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
  
  $ for w in 'pfc 256' 'Sp' 'sp 1' 'pfc' 'Pfc 3'; do kvd -b 1 -c "tarvo pause $w" | head -1; done | uniq -c
        5 Usage: tarvo pause sp
  $ kvd -b 1 -c 'tarvo cos'
  Usage: tarvo cos <cos>
            cos  - FCoE class of service [default=3]
  
  $ kvd -b 1 -c 'tarvo porttype'
  Usage: tarvo porttype <type>
            type  - UIF port type [access or trunk]
  
  $ for w in aCCess trunks 'access 1'; do kvd -b 1 -c "tarvo porttype $w" | head -1; done | uniq -c
        3 Usage: tarvo porttype <type>
  $ kvd -b 1 -c 'tarvo loopback 2 enable'
  Usage: tarvo loopback <port> <mode>
            port   - Loopback port. (0 or 1)
            mode   - Loopback mode. (enable or disable)
  
  $ for w in '0 on' '1 eNABLE' '0'; do kvd -b 1 -c "tarvo loopback $w" | head -1; done | uniq -c
        3 Usage: tarvo loopback <port> <mode>
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
  
  $ kvd -b 1 -c 'tarvo reset gold' | head -1
  Usage: tarvo reset [op | golden] 
  $ kvd -b 1 -c 'tarvo reset op now' | head -1
  margc 4 != 1
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

Every spelling taken, counted by the answer and record they share.

  $ each() { for w in "${@:3}"; do echo "$(kvd -b 1 -c "tarvo $1 $w" | head -1) $(sent 0 $2)"; done | uniq -c; }
  $ each pause 12 sp SP 'pfc 0x0c' 'PFC 255'
        2 Done. 100000000100000000000000
        1 Done. 10000000020000000c000000
        1 Done. 1000000002000000ff000000
  $ kvd -b 1 -c 'tarvo cos 4'; sent 0 12
  Done.
  
  110000000400000000000000
  $ each porttype 12 access Access ACCESS trunk Trunk TRUNK
        3 Done. 120000000100000000000000
        3 Done. 120000000200000000000000
  $ each 'loopback 1' 12 enable Enable ENABLE disable Disable DISABLE
        3 Done. 140000000100000001000000
        3 Done. 140000000100000000000000
  $ kvd -b 1 -c 'tarvo lbmode 1'; sent 0 12
  Port 1: Loopback disabled.
  0f0000000100000008000000
  $ each modeset 12 enable Enable ENABLE disable Disable DISABLE
        3 tvomodeset current board 1 020000800100000000000000
        3 tvomodeset current board 1 020000800000000000000000
  $ each reset 8 op oP golden gOLDEn
        2 Done. 0100008000000000
        2 Done. 0100008001000000
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
  4 KVD_SendTarvoCommand(board=1, cmd_len=8, rsp_len=4) = 0 command=RESET

Settings read back; a class of service above 7 is refused; reset ends loopback.

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

Golden firmware and maintenance mode, as getinit sees them.

  $ printf 'set board 1\ntarvo reset golden\ntarvo modeset enable\ntarvo getinit\ntarvo reset op\ntarvo modeset disable\ntarvo getinit\nquit\n' | kvd | grep 'tvomodeset\|Type\|Maint'
  cmd> tvomodeset current board 1
    Maintenance Mode: enabled
       Firmware Type: Golden
  cmd> tvomodeset current board 1
    Maintenance Mode: disabled
       Firmware Type: Operational

The diagnostic cycle: "busy" (16) until the last loop; a long log is asked
again with the size the ASIC answers with 7.

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
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace | tail -8
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

0 loops run until a reset or panic; the golden image refuses diag (2).

  $ printf 'set board 1\ntarvo diag 0\ntarvo getdlog\ntarvo getdlog\ntarvo getdlog\ntarvo reset op\ntarvo getdlog\nquit\n' | kvd | sed -n '/^cmd>/,$p' | grep 'started\|code=\|Done\|count\|summary\|Abort' | grep -v ' [2-7]: '
  cmd> cmd> Diagnostics started.
  cmd> Tarvo command error. code=16.
  cmd> Tarvo command error. code=16.
  cmd> Tarvo command error. code=16.
  cmd> Done.
    Requested loop count: 0
    Completed loop count: 2
            Test summary: Aborted.
  -----------------------------------------------------   1: Aborted: internal memory
     8: Aborted: fc port 3 loopback
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

A fleet may make tests fail (bit i for test i + 1); all eight: no log (9).

  $ printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"diag_failing":"0x30"}}]}' > fail.json
  $ printf 'tarvo diag 1\ntarvo getdlog\ntarvo getdlog\nquit\n' | KVD_SIM_FLEET=fail.json kvd | grep 'count\|summary\|Failed:'
    Requested loop count: 1
    Completed loop count: 1
            Test summary: Failed.
     5:  Failed: port 0 mac loopback
     6:  Failed: port 1 mac loopback
  $ printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"diag_failing":256}}]}' > bad.json
  $ sed 's/"0x30"/255/' fail.json > all.json; KVD_SIM_FLEET=all.json kvd -c 'tarvo getdlog'
  Tarvo command error. code=9.
  $ KVD_SIM_FLEET=bad.json kvd -c 'tarvo getdlog'
  libkvd: bad.json: boards[0].asic.diag_failing: value 0x100 out of range 0..0xff
  
  No Adapters Found
  [253]

diag's other answers; a second 7 from getdlog is not asked again.

  $ KVD_SIM_FAULT=asic:DIAG=16 kvd -b 1 -c 'tarvo diag 1'; KVD_SIM_FAULT=asic:DIAG=26 kvd -b 1 -c 'tarvo diag 1'; KVD_SIM_FAULT=asic:RESET=5 kvd -b 1 -c 'tarvo diag 1'; KVD_SIM_FAULT=asic:GET_DIAG_LOG=7 kvd -b 1 -c 'tarvo getdlog'
  Adapter busy.
  Tarvo command error. status=1a
  Tarvo command error. code=5.
  Tarvo command error. code=7.
  $ grep -o 'rsp_len=[0-9]*) = 0 command=GET_DIAG_LOG' trace | tail -2
  rsp_len=2048) = 0 command=GET_DIAG_LOG
  rsp_len=8) = 0 command=GET_DIAG_LOG
  $ KVD_SIM_FAULT=KVD_SendTarvoCommand=88 kvd -b 1 -c 'tarvo getdlog'
  Tarvo command error. Link down.

The forced panic, as the panic log and getinit report it.

  $ printf 'set board 1\ntarvo init 8 1024\ntarvo panic\ntarvo paniclog\ntarvo getinit\nquit\n' | kvd | grep 'BB_credit\|Present\|Panic\|32: init\|32: panic\|Reset'
  cmd> cmd>          BB_credit: 8
        Reset Status: normal
  cmd>       Log Present: Yes
         Panic type: Solicited
  Panic Log: 5 Entries: Head 4 Entry size 48
  32: init: bb_credit 8 frame_size 1024
  32: panic: solicited by host
  cmd>          BB_credit: 8
        Reset Status: panic
  $ KVD_SIM_FAULT=asic:PANIC=1 kvd -b 1 -c 'tarvo panic'
  Tarvo command error. code=1.
