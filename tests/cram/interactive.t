The interactive shell: banner, adapter listing, then one command a line.

  $ export KVD_SIM_TRACE=$PWD/trace

  $ printf 'adapters\nquit\n' | kvd
  Quellmarsh Engineering Debug Utility
  
  Do not run this utility unless instructed by Korvan Technical Support
  libkvd syslog types enabled 00000003
  
  Found 3 adapters: onmask 7 offmask 0 Driver:3.4.12.0
  Adapter 0: vexa0 host4 PCI id f3002c71 Firmware:2.10A4 WWPN:10:00:06:4b:51:a0:00:10
  Adapter 1: vexa1 host5 PCI id f3402c71 Firmware:2.12C1 WWPN:10:00:06:4b:51:b4:00:20
  Adapter 2: vexa2 host6 PCI id f4002c71 Firmware:4.1.28.5 WWPN:10:00:06:4b:51:c8:00:30
  cmd> Adapter 0: vexa0 host4 PCI id f3002c71 Firmware:2.10A4 WWPN:10:00:06:4b:51:a0:00:10
  Adapter 1: vexa1 host5 PCI id f3402c71 Firmware:2.12C1 WWPN:10:00:06:4b:51:b4:00:20
  Adapter 2: vexa2 host6 PCI id f4002c71 Firmware:4.1.28.5 WWPN:10:00:06:4b:51:c8:00:30
  cmd>  (no-eol)
  [1]

quit releases every board's events, then the library.

  $ grep -o '^[A-Za-z_]*(board=[0-9]*, *[a-z_]*=0)\|^KVD_FreeDiagEnv' trace | tail -4
  unRegisterForEvent(board=0, event_id=0)
  unRegisterForEvent(board=1, event_id=0)
  unRegisterForEvent(board=2, event_id=0)
  KVD_FreeDiagEnv

Empty lines, blanks and commas do nothing; p repeats the last command with its
arguments, and does nothing as the very first line.

  $ printf 'p\n\n , \t\nset ring 2\nset\np\nset board 1,ring\nexit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> cmd> cmd> cmd> board 0  ring 2  iocb 0 lines 16
  cmd> board 0  ring 2  iocb 0 lines 16
  cmd> cmd>  (no-eol)

A 200-character line runs as two commands: its first 131 characters, then the
rest. Of 60 words only 50 reach the command.

  $ long="set$(printf '%128s' '')board 2"
  $ printf '%s\nset\nquit\n' "$long" | kvd | grep -A2 '^cmd> '
  cmd> board 0  ring 0  iocb 0 lines 16
  cmd> Invalid command: board
         adapters      authdelcfg      authgetcfg    authgetpsswd 
         authinit        authlist      authsetcfg    authsetpsswd 
  --
  cmd> board 0  ring 0  iocb 0 lines 16
  cmd> 
  $ words=$(echo {a..z} {A..Z} {0..5})
  $ printf '! echo %s\nquit\n' "$words" | kvd | sed -n '/^cmd>/,$p'
  cmd> a b c d e f g h i j k l m n o p q r s t u v w x y z A B C D E F G H I J K L M N O P Q R S T U V
  cmd>  (no-eol)

help lists 106 words four to a line and ends with the repeat command.

  $ printf 'help\nquit\n' | kvd | sed -n '/^cmd>/,$p' > help.out
  $ head -2 help.out
  cmd>        adapters      authdelcfg      authgetcfg    authgetpsswd 
         authinit        authlist      authsetcfg    authsetpsswd 
  $ tail -3 help.out
             wrca            wrha            wrhc            wrhs 
            wrpci           wslim          p
  cmd>  (no-eol)
  $ grep -c . help.out
  28
  $ printf 'HELP\nquit\n' | kvd | grep -c Invalid
  1

set in all its forms.

  $ printf 'set wwn 10:00:00:06:4b:51:a0:f1\nset\nset wwn 1000064b51a0f1ff\nset\nset wwn 10-00-00-06-4b-51-a0-f1\nset wwn zz00064b51a0f1ff\nset\nset lines 0\nset iocb 9 extra\nset\nset board\nset a b c d\nset colour 3\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> board 0  ring 0  iocb 0 lines 16 wwn 10:00:00:06:4b:51:a0:f1
  cmd> cmd> board 0  ring 0  iocb 0 lines 16 wwn 10:00:06:4b:51:a0:f1:ff
  cmd> arg 10-00-00-06-4b-51-a0-f1 - arg length 23 or missing ':'
  set:10-00-00-06-4b-51-a0-f1 bad port_wwn
  cmd> cmd> board 0  ring 0  iocb 0 lines 16 wwn 00:00:06:4b:51:a0:f1:ff
  cmd> cmd> cmd> board 0  ring 0  iocb 9 lines 0 wwn 00:00:06:4b:51:a0:f1:ff
  cmd> Usage: set [board | ring | iocb | wwn | lines] value
  cmd> Usage: set [board | ring | iocb | wwn | lines] value
  cmd> Usage: set [board | ring | iocb | wwn | lines] value
  cmd>  (no-eol)

The host shell gets the words joined by single blanks; no words is a usage
error.

  $ printf '! echo a,,b   c\n!\n!echo\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> a b c
  cmd> Usage: ! <command>
  cmd> Invalid command: !echo
         adapters      authdelcfg      authgetcfg    authgetpsswd 
         authinit        authlist      authsetcfg    authsetpsswd 
       authstatus              ct       dportattr         drvinfo 
          dumpreg      dumpregion          fcpmap   fcoegetparams 
    fcoesetparams     fcoegetlist     fcoesetlist  fcoegetfcflist 
           getcfg        getevent    getfcpconfig  getfcppriority 
          getmgmt     getversions         hbaattr            help 
        iportattr   issuedumpmbox        linkinfo        listbind 
          logging        loopback           tarvo            mbox 
         nodeinfo  persistlinkget  persistlinkset        portattr 
         portstat    qoslinkspeed            quit             bye 
             exit        rdallpci            rdca            rdha 
             rdhc            rdhs           rdpci         refresh 
           revent           reset          rffreg           riocb 
             rnid           sdiag           sdump   sd_all_events 
   sd_free_bucket   sd_get_bucket     sd_get_data  sd_granularity 
       sd_latency  sd_quick_event   sd_reset_data       sd_revent 
    sd_set_bucket  sd_show_events   sd_start_data    sd_stop_data 
      sd_test_env      sd_urevent      sd_verbose             els 
          sendfcp        sendmgmt        sendscsi             set 
           setcfg    setfcpconfig  setfcppriority         setmgmt 
          showmmm            sli4         sli4iov     slireadstat 
          urevent         vpdinfo        vpcreate        vpdelete 
        vpgetattr       vpgetlist      vpgetninfo       vpgetphys 
         vpgetres       vpnpivrdy          wffreg       wportattr 
             wrca            wrha            wrhc            wrhs 
            wrpci           wslim          p
  cmd>  (no-eol)
