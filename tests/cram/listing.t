The adapter listing follows the board table: gaps in the board numbers stay
gaps, and a board whose attributes cannot be read is reported and skipped.

  $ export KVD_SIM_FLEET=$KVD_FLEETS/gap.json
  $ kvd -c adapters
  Adapter 0: vexa0 host7 PCI id f3002c71 Firmware:2.10A4 WWPN:10:00:06:4b:51:a0:01:00
  Adapter 2: vexa2 host9 PCI id f4002c71 Firmware:4.1.28.5 WWPN:10:00:06:4b:51:c8:01:02
  $ printf 'quit\n' | kvd 2>&1 | head -7
  Quellmarsh Engineering Debug Utility
  
  Do not run this utility unless instructed by Korvan Technical Support
  libkvd syslog types enabled 00000000
  
  Found 2 adapters: onmask 5 offmask 0 Driver:3.4.12.0
  Adapter 0: vexa0 host7 PCI id f3002c71 Firmware:2.10A4 WWPN:10:00:06:4b:51:a0:01:00

  $ KVD_SIM_FAULT='GetAdapterPortAttributes@0=1' kvd -c adapters
  Cannot issue command
  Adapter 2: vexa2 host9 PCI id f4002c71 Firmware:4.1.28.5 WWPN:10:00:06:4b:51:c8:01:02
  $ KVD_SIM_FAULT='GetAdapterPortAttributes=1' kvd -c adapters
  Cannot issue command
  Cannot issue command
  No Adapters found
  $ KVD_SIM_FLEET=$KVD_FLEETS/empty.json KVD_SIM_FAULT='' kvd -c adapters
  
  No Adapters Found
  [253]

The default fleet.

  $ unset KVD_SIM_FLEET
  $ kvd -c adapters
  Adapter 0: vexa0 host4 PCI id f3002c71 Firmware:2.10A4 WWPN:10:00:06:4b:51:a0:00:10
  Adapter 1: vexa1 host5 PCI id f3402c71 Firmware:2.12C1 WWPN:10:00:06:4b:51:b4:00:20
  Adapter 2: vexa2 host6 PCI id f4002c71 Firmware:4.1.28.5 WWPN:10:00:06:4b:51:c8:00:30

A fleet file that cannot be used is named with its fault, and the library then
reports no adapters.

  $ KVD_SIM_FLEET=$KVD_FLEETS/bad_dup.json kvd -c adapters
  libkvd: */tests/fleets/bad_dup.json: boards[2].board: duplicate board 1 (glob)
  
  No Adapters Found
  [253]
  $ KVD_SIM_FLEET=/nonexistent.json kvd -c adapters
  libkvd: /nonexistent.json: cannot open: No such file or directory
  
  No Adapters Found
  [253]
