kvd binds to whichever libkvd.so.3 the loader finds: ours through the RUNPATH,
or another one through LD_LIBRARY_PATH, without a rebuild.

  $ ldd "$(command -v kvd)" | grep -o 'libkvd.so.3 => .*/sim/libkvd.so.3'
  libkvd.so.3 => */sim/libkvd.so.3 (glob)
  $ LD_LIBRARY_PATH=$KVD_ALTLIB_DIR kvd -c getversions
  Using libkvd version: alternate 3.0
  $ printf 'quit\n' | LD_LIBRARY_PATH=$KVD_ALTLIB_DIR kvd
  Quellmarsh Engineering Debug Utility
  
  Do not run this utility unless instructed by Korvan Technical Support
  libkvd syslog types enabled 0000005a
  
  Found 1 adapters: onmask 0 offmask 0 Driver:alt-driver
  Adapter 0: vexa9 host77 PCI id 12c71 WWPN:00:00:00:00:00:00:00:00
  cmd>  (no-eol)
  [1]
