SD events: subscriptions, the callback's lines and per-kind counts.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ export KVD_SIM_EVENTS=$PWD/ev
  $ export PATH=$TESTDIR:$PATH
  $ Z=0000000000000000
  $ body() { sed '1,/^Adapter 2/d'; }
  $ waitfor() { for i in $(seq 400); do grep -qs "$1" out && return; sleep 0.05; done; echo "no $1"; }

Usage texts and refusals.

  $ kvd -c 'sd_all_events 0'
  Usage: sd_all_events [board id] [vport wwn] [seconds to wait] viewCallback
  minimum seconds is 1
  viewCallback: 0 = no, 1 = yes
  [247]
  $ for a in "$Z 0" "$Z 1 2" 0; do kvd -c "sd_all_events 0 $a" 2>&1 | tail -1; done
  seconds must be greater than zero
  viewCallback must be 0 or 1
  Could not convert the vport wwn
  $ kvd -c "sd_quick_event 0 $Z 1 1"
  Usage: sd_quick_event [board id] [vport wwn] [category] [subcategory] [seconds]
  Supported category+subcategory hex codes
  ELS\t0x1 (esc)
  \tPLOGI\t0x1 (esc)
  \tPRLO\t0x2 (esc)
  \tADISC\t0x4 (esc)
  \tLSRJT\t0x8 (esc)
  \tLOGO\t0x10 (esc)
  FABRIC\t0x2 (esc)
  \tFABRIC\t0x1 (esc)
  \tPORT\t0x2 (esc)
  \tFCPRD\t0x4 (esc)
  SCSI\t0x4 (esc)
  \tQFULL\t0x1 (esc)
  \tDEVBSY\t0x2 (esc)
  \tCHECK\t0x4 (esc)
  \tLUNRST\t0x8 (esc)
  \tTGTRST\t0x10 (esc)
  \tBUSRST\t0x20 (esc)
  \tVARQUE\t0x40 (esc)
  BOARD\t0x8 (esc)
  \tPORT\t0x1 (esc)
  ADAPTER\t0x10 (esc)
  \tARR\t0x1 (esc)
  [247]
  $ kvd -c "sd_revent 0 $Z 1" | head -2
  Usage: sd_revent [board id] [vport wwn] [category] [subcategory]
  Supported category+subcategory hex codes
  $ kvd -c "sd_revent 0 zz 1 1"
  arg zz - arg length 2 or missing ':'
  Usage: sd_revent [board id] [vport wwn] [category] [subcategory]
  Could not convert the wwn
  [247]
  $ kvd -c "sd_urevent 0 $Z"
  Usage: sd_urevent [board id] [vport wwn] [reg_handle]
  [247]
  $ kvd -c 'sd_verbose'
  Usage: sd_verbose [verbosity]
         0 - off
         1 - function
         2 - all
  [247]
  $ kvd -c 'sd_test_env now'
  Usage: sd_test_env 
  [247]
  $ grep -c SD_ trace
  0
  [1]

Subscribing by hand: handles, refusals, the library's list, release, verbosity.

  $ cat > cmds <<X
  > sd_revent 0 $Z 1 4
  > sd_revent 0 $Z 1 4
  > sd_revent 0 $Z 3 1
  > sd_revent 0 $Z 1 3
  > sd_revent 0 1000000000000001 1 1
  > sd_revent 7 $Z 1 1
  > sd_revent 0 $Z 0x20 1
  > sd_show_events
  > sd_urevent 0 $Z 9
  > sd_urevent 0 $Z 1
  > sd_urevent 0 $Z 2
  > sd_urevent 0 $Z 2
  > sd_verbose 3
  > sd_verbose 1
  > sd_show_events
  > sd_verbose 0
  > quit
  > X
  $ kvd < cmds 2>&1 | body
  cmd> category ELS  subcategory ADISC
  New handle 1 created, required for deregister
  cmd> category ELS  subcategory ADISC
  sd_revent - Error ALREADY REGISTERED occured during registration
  cmd> category x3 NOT SUPPORTED  subcategory x1 NOT SUPPORTED
  sd_revent - Error CATEGORY NOT SUPPORTED occured during registration
  cmd> category ELS  subcategory x3 NOT SUPPORTED
  sd_revent - Error SUBCATEGORY NOT SUPPORTED occured during registration
  cmd> category ELS  subcategory PLOGI
  sd_revent - Error INVALID PORT occured during registration
  cmd> category ELS  subcategory PLOGI
  sd_revent - Error INVALID BOARD ID occured during registration
  cmd> category x20 NOT SUPPORTED  subcategory x1 NOT SUPPORTED
  New handle 2 created, required for deregister
  cmd> libkvd SD registrations: 2 of 64 handles
    handle 1 board 0 category 0x1 ELS subcategory 0x4 ADISC_RCV
    handle 2 board 0 category 0x20 PORT subcategory 0x1 SPEED_CHANGE
  cmd> sd_urevent - Error REG HANDLE unregistering for event
  cmd> cmd> cmd> sd_urevent - Error NO ACTIVE REGISTRATION unregistering for event
  cmd> sd_verbose - Error INVALID ARGUMENT setting verbosty to 3
         0 - off
         1 - function
         2 - all
  cmd> cmd> libkvd SD registrations: 0 of 64 handles
  libkvd sd: kvd_sd_show_events = 0
  cmd> cmd>  (no-eol)
  $ grep 'KVD_SD_\|kvd_sd' trace | tail -14
  KVD_SD_RegisterForEvent(board=0, vport=00:00:00:00:00:00:00:00, category=0x3, subcategory=0x1) = 6
  KVD_SD_RegisterForEvent(board=0, vport=00:00:00:00:00:00:00:00, category=0x1, subcategory=0x3) = 7
  KVD_SD_RegisterForEvent(board=0, vport=10:00:00:00:00:00:00:01, category=0x1, subcategory=0x1) = 4
  KVD_SD_RegisterForEvent(board=7, vport=00:00:00:00:00:00:00:00, category=0x1, subcategory=0x1) = 3
  KVD_SD_RegisterForEvent(board=0, vport=00:00:00:00:00:00:00:00, category=0x20, subcategory=0x1) = 0 handle=2
  kvd_sd_show_events() = 0
  KVD_SD_unRegisterForEvent(board=0, vport=00:00:00:00:00:00:00:00, handle=9) = 14
  KVD_SD_unRegisterForEvent(board=0, vport=00:00:00:00:00:00:00:00, handle=1) = 0
  KVD_SD_unRegisterForEvent(board=0, vport=00:00:00:00:00:00:00:00, handle=2) = 0
  KVD_SD_unRegisterForEvent(board=0, vport=00:00:00:00:00:00:00:00, handle=2) = 10
  kvd_sd_set_verbosity(level=3) = 2
  kvd_sd_set_verbosity(level=1) = 0
  kvd_sd_show_events() = 0
  kvd_sd_set_verbosity(level=0) = 0

sd_quick_event: a refused pair fails, seconds 0 waits one second.

  $ kvd -c "sd_quick_event 0 $Z 3 1 1"
  sd_quick_event - category x3 NOT SUPPORTED  subcategory x1 NOT SUPPORTED
  sd_quick_event - Error CATEGORY NOT SUPPORTED occured during registration
  [255]
  $ kvd -c "sd_quick_event 0 $Z 1 1 0"
  sd_quick_event - category ELS  subcategory PLOGI
  sd_quick_event - Stopping after 1 secondsnEvent counts for board id: 0
  ELS        ELS        ELS        ELS        ELS        FAB        FAB        FAB        SCSI       SCSI       SCSI       SCSI       SCSI       SCSI       SCSI       BRD        ADP        
  PLO        PRI        ADS        LSR        LOGO       FAB        PORT       FCPR       QFLL       DEVB       CHKC       LUNR       TGTR       BUSR       VARQ       PORT       ARR        
           0          0          0          0          0          0          0          0          0          0          0          0          0          0          0          0          0 

sd_all_events until Enter counts a burst; kinds the shell does not know are
counted nowhere, a link bounce logs both targets in again.

  $ mkfifo in
  $ exec 3<>in
  $ kvd < in > out 2>&1 &
  $ pid=$!
  $ printf "sd_revent 1 $Z 2 8\nsd_revent 1 $Z 0x20 1\nsd_all_events 1 $Z\n" >&3
  $ waitfor 'Press Enter'
  $ kvdev '1 sd 1 8 3' '1 sd 4 0x40 2' '1 sd 2 8 5' '1 sd 0x20 1 4' '1 sd 8 1 10000' '1 link down' '1 link up' '1 sd 3 1 1' '2 sd 1 1 1'
  ok
  ok
  ok
  ok
  ok
  ok
  ok
  error: no such SD event
  ok (no subscriber)
  [1]
  $ printf '\nset\nquit\n' >&3
  $ wait $pid
  [1]
  $ body < out | grep -v '^Portname\|^Bus'
  cmd> category FABRIC  subcategory x8 NOT SUPPORTED
  New handle 1 created, required for deregister
  cmd> category x20 NOT SUPPORTED  subcategory x1 NOT SUPPORTED
  New handle 2 created, required for deregister
  cmd> FCPMAP entries on this board: 4
  Press Enter key to exit .. 
  Event counts for board id: 1
  ELS        ELS        ELS        ELS        ELS        FAB        FAB        FAB        SCSI       SCSI       SCSI       SCSI       SCSI       SCSI       SCSI       BRD        ADP        
  PLO        PRI        ADS        LSR        LOGO       FAB        PORT       FCPR       QFLL       DEVB       CHKC       LUNR       TGTR       BUSR       VARQ       PORT       ARR        
           2          0          0          3          0          0          0          0          0          0          0          0          0          0          2      10000          0 
  cmd> board 1  ring 0  iocb 0 lines 16
  cmd> 

viewCallback 1 prints a line per event; unknown kinds print "Unhandled". Each
reply comes once the callbacks ran, and Ctrl-C ends the wait, so no window
of time is assumed.

  $ kvd < in > out 2>&1 &
  $ pid=$!
  $ printf "sd_revent 0 $Z 2 8\nsd_revent 0 $Z 0x20 1\nsd_all_events 0 $Z 600 1\n" >&3
  $ waitfor 'Stopping after'
  $ for k in '1 1' '1 2' '1 4' '1 8' '1 0x10' '2 1' '2 2' '2 4' '2 8' '4 1' '4 2' '4 4' '4 8' '4 0x10' '4 0x20' '4 0x40' '8 1' '0x10 1' '0x20 1'; do echo "0 sd $k 1"; done | kvdev | sort | uniq -c
       19 ok
  $ kill -INT $pid
  $ wait $pid
  [1]
  $ body < out | grep -v '^Portname\|^Bus' | sed 's/^[0-2][0-9]:[0-5][0-9]:[0-5][0-9] /HH:MM:SS /; s/sd_event 0x[0-9a-f]*/sd_event PTR/'
  cmd> category FABRIC  subcategory x8 NOT SUPPORTED
  New handle 1 created, required for deregister
  cmd> category x20 NOT SUPPORTED  subcategory x1 NOT SUPPORTED
  New handle 2 created, required for deregister
  cmd> FCPMAP entries on this board: 6
  sd_all_events - Stopping after 600 seconds
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - PLOGI_RCV port_name 21:00:06:4b:51:d0:00:01 node_name 20:00:06:4b:51:d0:00:01
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - PRLO_RCV port_name 21:00:06:4b:51:d0:00:01
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - ADISC_RCV port_name 21:00:06:4b:51:d0:00:01 node_name 20:00:06:4b:51:d0:00:01
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - LSRJT port_name 21:00:06:4b:51:d0:00:01 cmd 0x3 reason 0x9 expl 0x29
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - LOGO_RCV port_name 21:00:06:4b:51:d0:00:01 node_name 21:00:06:4b:51:d0:00:01
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - Fabric busy event sd_event PTR
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - Port busy event port_name 21:00:06:4b:51:d0:00:01
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - Read Check port_name 21:00:06:4b:51:d0:00:01 lun 0x0 opcode 0x28 param 0x200
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00:Unhandled FABRIC x8
  
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - QUEUE_FULL event port_name 21:00:06:4b:51:d0:00:01 lun 0x0
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - DEVICE_BUSY event port_name 21:00:06:4b:51:d0:00:01 lun 0x0
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - CHECK CONDITION port_name 21:00:06:4b:51:d0:00:01 lun 0x0 cmd 0x28 sk 0x6 asc 0x29 ascq 0x0
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - LUN_RESET event port_name 21:00:06:4b:51:d0:00:01 lun 0x0
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - TARGET_RESET event port_name 21:00:06:4b:51:d0:00:01 lun 0x0
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - BUS_RESET
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - VAR QUEUE depth port_name 21:00:06:4b:51:d0:00:01 lun 0x0 olval 0x20 new_val 0x10
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00: - Board internal error sd_event PTR
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00:EventCallBack - Board arrival error sd_event PTR
  
  HH:MM:SS board id 0 - port wwn 10:00:06:4b:51:a0:00:Unhandled Event x20 Subcategory x1
  

Events the boards raise: a check condition, an ELS rejected by nobody, a bus
reset, arrival after reset. TASK SET FULL halves the LUN's queue depth
(30, 15, 7, 3, 1: four changes, none past 1) until a reset restores it.
Releasing the board's subscriptions drops its SD ones too.

  $ A=$(kvd -c "sd_all_events 0 $Z 1" | sed -n 's/^Portname:\([^ ]*\) .*/\1/p' | head -1)
  $ cat > cmds <<X
  > sd_verbose 2
  > sd_revent 0 $Z 4 4
  > sd_revent 0 $Z 4 0x20
  > sd_revent 0 $Z 0x10 1
  > sd_revent 0 $Z 1 8
  > sendscsi inquiry $A 0 1 0xb0
  > els rnid 0x123456
  > reset hba
  > ! kvdev sync
  > quit
  > X
  $ kvd < cmds 2>&1 >/dev/null | grep event
  libkvd sd: event board 0 category 0x4 subcategory 0x4 handle 1
  libkvd sd: event board 0 category 0x1 subcategory 0x8 handle 4
  libkvd sd: event board 0 category 0x4 subcategory 0x20 handle 2
  libkvd sd: event board 0 category 0x10 subcategory 0x1 handle 3
  $ { printf "sd_verbose 2\nsd_revent 0 $Z 4 1\nsd_revent 0 $Z 4 0x40\n"; for i in 1 2 3 4 5 6; do [ $i = 6 ] && echo 'reset hba'; echo "sendscsi read $A 0 0 512"; done; printf '! kvdev sync\nquit\n'; } > cmds
  $ KVD_SIM_FAULT=scsi:READ_10=0x28 kvd < cmds 2>&1 >/dev/null | grep event | uniq -c
        1 libkvd sd: event board 0 category 0x4 subcategory 0x1 handle 1
        1 libkvd sd: event board 0 category 0x4 subcategory 0x40 handle 2
        1 libkvd sd: event board 0 category 0x4 subcategory 0x1 handle 1
        1 libkvd sd: event board 0 category 0x4 subcategory 0x40 handle 2
        1 libkvd sd: event board 0 category 0x4 subcategory 0x1 handle 1
        1 libkvd sd: event board 0 category 0x4 subcategory 0x40 handle 2
        1 libkvd sd: event board 0 category 0x4 subcategory 0x1 handle 1
        1 libkvd sd: event board 0 category 0x4 subcategory 0x40 handle 2
        2 libkvd sd: event board 0 category 0x4 subcategory 0x1 handle 1
        1 libkvd sd: event board 0 category 0x4 subcategory 0x40 handle 2
  $ printf "sd_revent 0 $Z 1 1\nsd_test_env\nsd_show_events\nsd_test_env\nquit\n" | kvd | body
  cmd> category ELS  subcategory PLOGI
  New handle 1 created, required for deregister
  cmd> KVD_SD_Set_Bucket returned - LIBRARY NOT INITIALIZED 
  legacy InitDiagEnv found 3 boards : KVD_InitDiagEnv found 3
  cmd> libkvd SD registrations: 0 of 64 handles
  cmd> KVD_SD_Set_Bucket returned - LIBRARY NOT INITIALIZED 
  legacy InitDiagEnv found 3 boards : KVD_InitDiagEnv found 3
  cmd>  (no-eol)
  $ grep -o '^\(KVD_\)\?InitDiagEnv(.*) = [0-9]*\|^KVD_SD_Set_Bucket.*' trace | tail -4
  KVD_InitDiagEnv(max_boards=32) = 3
  KVD_SD_Set_Bucket(board=1, type=1, base=0, step=0) = 18
  InitDiagEnv() = 3
  KVD_InitDiagEnv(max_boards=32) = 3

Subscriptions on a virtual port: refused until the board has it. It hears
its own logins (a vport joining, its three targets after a link bounce, two
raised on it by hand: six PLOGIs) and a vport leaving; deleting it ends its
subscriptions, the board's port hears it go, and its name is an unknown port
from then on.

  $ P=2400064b51e80001 Q=2400064b51e80002
  $ cat > cmds <<X
  > sd_revent 0 $P 1 1
  > vpcreate 0
  > sd_revent 0 $P 1 1
  > sd_revent 0 $P 1 0x10
  > sd_revent 0 $Z 1 0x10
  > sd_verbose 2
  > vpcreate 0
  > ! kvdev sync "0 sd 1 1 2 $P" "0 sd 1 1 1 $Q" "0 sd 1 1 1 2400064b51e80009"
  > ! kvdev '0 link down' '0 link up'
  > vpdelete 0 $Q
  > ! kvdev sync
  > sd_urevent 0 $Z 1
  > vpdelete 0 $P
  > ! kvdev sync
  > sd_verbose 0
  > sd_show_events
  > sd_urevent 0 $P 1
  > quit
  > X
  $ kvd < cmds 2>err | body | grep 'handle\|Error\|ok\|error\|  '
  cmd> category ELS  subcategory PLOGI
  sd_revent - Error INVALID PORT occured during registration
  cmd> category ELS  subcategory PLOGI
  New handle 1 created, required for deregister
  cmd> category ELS  subcategory LOGO
  New handle 2 created, required for deregister
  cmd> category ELS  subcategory LOGO
  New handle 3 created, required for deregister
  cmd> ok
  ok
  ok (no subscriber)
  error: no such vport
  cmd> ok
  ok
  cmd> ok
  cmd> sd_urevent - Error REG HANDLE unregistering for event
  cmd> ok
  cmd> cmd> libkvd SD registrations: 1 of 64 handles
    handle 3 board 0 category 0x1 ELS subcategory 0x10 LOGO_RCV
  cmd> sd_urevent - Error INVALID PORT unregistering for event
  $ grep event err
  libkvd sd: event board 0 vport 24:00:06:4b:51:e8:00:01 category 0x1 subcategory 0x1 handle 1
  libkvd sd: event board 0 vport 24:00:06:4b:51:e8:00:01 category 0x1 subcategory 0x1 handle 1
  libkvd sd: event board 0 vport 24:00:06:4b:51:e8:00:01 category 0x1 subcategory 0x1 handle 1
  libkvd sd: event board 0 vport 24:00:06:4b:51:e8:00:01 category 0x1 subcategory 0x1 handle 1
  libkvd sd: event board 0 vport 24:00:06:4b:51:e8:00:01 category 0x1 subcategory 0x1 handle 1
  libkvd sd: event board 0 vport 24:00:06:4b:51:e8:00:01 category 0x1 subcategory 0x1 handle 1
  libkvd sd: event board 0 category 0x1 subcategory 0x10 handle 3
  libkvd sd: event board 0 vport 24:00:06:4b:51:e8:00:01 category 0x1 subcategory 0x10 handle 2
  libkvd sd: event board 0 category 0x1 subcategory 0x10 handle 3
  $ grep -o '^KVD_SD_unRegisterForEvent.*' trace | tail -2
  KVD_SD_unRegisterForEvent(board=0, vport=00:00:00:00:00:00:00:00, handle=1) = 14
  KVD_SD_unRegisterForEvent(board=0, vport=24:00:06:4b:51:e8:00:01, handle=1) = 4
