Option mode: every option runs the command buffer as it stands, a failing
status ends the run at the next option, and the exit status says why.

No options at all, only a word: nothing is printed.

  $ kvd somearg

-l takes an optional argument and changes nothing.

  $ kvd -l
  $ kvd -l5

Usage text, for -h and for an option getopt does not know.

  $ kvd -h
  
  kvd -- Korvan diagnostic fibre channel utility
  
  Usage: kvd <options>
  
  options:
    -a                       get hba attributes.
    -b board                 specify the board on which to perform the action.
    -c "command <OPTIONS>"   run specified command and then exit.  Must include
                             quotes.
    -h                       display this help and exit.
  
  By default if no options are specified kvd will run in
  interactive mode.
  
  [247]
  $ kvd -x > /dev/null
  kvd: invalid option -- 'x'
  [247]
  $ kvd -c 2>&1 | head -2
  kvd: option requires an argument -- 'c'
  

The board given with -b is not checked against the table; set shows it.

  $ kvd -b 7 -c set
  board 7  ring 0  iocb 0 lines 16
  $ kvd -b 0x1f -c set
  board 31  ring 0  iocb 0 lines 16

A command placed before -b runs twice: the second time the buffer has already
been split, so only the command word is left.

  $ kvd -c 'set ring 3' -b 1 -c set
  board 1  ring 3  iocb 0 lines 16
  board 1  ring 3  iocb 0 lines 16
  $ kvd -c 'set ring' -b 1
  Usage: set [board | ring | iocb | wwn | lines] value
  [247]
  $ kvd -c 'getversions extra' -b 2
  Usage: getversions
  [247]
  $ kvd -c 'set lines 4' -b 2 -c set
  board 2  ring 0  iocb 0 lines 4
  board 2  ring 0  iocb 0 lines 4

Unknown words list the commands and give a usage status.

  $ kvd -c nosuchcmd | head -3
  Invalid command: nosuchcmd
         adapters      authdelcfg      authgetcfg    authgetpsswd 
         authinit        authlist      authsetcfg    authsetpsswd 
  $ kvd -c nosuchcmd > /dev/null
  [247]

quit always exits 1, also from option mode.

  $ kvd -c quit
  [1]
  $ kvd -c bye -c set
  [1]

No adapters: option mode says so and exits 253, interactive mode exits 1.

  $ KVD_SIM_FLEET=$KVD_FLEETS/empty.json kvd -c set
  
  No Adapters Found
  [253]
  $ KVD_SIM_FLEET=$KVD_FLEETS/empty.json kvd < /dev/null
  Quellmarsh Engineering Debug Utility
  
  Found No Adapters
  [1]
  $ KVD_SIM_FLEET=$KVD_FLEETS/empty.json kvd somearg

The library version.

  $ kvd -c getversions
  Using libkvd version: * (glob)
