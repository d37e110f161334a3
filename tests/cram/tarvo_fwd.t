The ASIC's forwarding table (board 1): fteins, ftedel, getftbl. `sent OFF LEN
[NAME]` cuts bytes out of the last record sent; `calls` counts exchanges.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ sent() { grep "^KVD_SendTarvoCommand(.*command=${3:-}" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($1 * 2 + 1))-$(($1 * 2 + $2 * 2)); }
  $ calls() { grep -c '^KVD_SendTarvoCommand' trace || :; }

Usage: five words exactly, the action one of -f, -F, -d, -D; nothing sent.

  $ kvd -b 1 -c 'tarvo fteins -f 0x10203'
  Usage: tarvo fteins -f <did> <wwpn>
         tarvo fteins -d <did> <wwpn>
  
              -f    - Forward all matching frames to Pelmir.
              -d    - Drop all matching frames.
              did   - FC Device id of entry.
              wwpn  - FC WWPN of entry.
  
  $ kvd -b 1 -c 'tarvo fteins -x 0x10203 2000001122334455' | head -1
  Usage: tarvo fteins -f <did> <wwpn>
  $ kvd -b 1 -c 'tarvo fteins -forward 0x10203 2000001122334455' | head -1
  Usage: tarvo fteins -f <did> <wwpn>
  $ kvd -b 1 -c 'tarvo ftedel 0x10203'
  Usage: tarvo ftedel <did> <wwpn>
  
              did        - FC Device id of entry.
              wwpn       - FC WWPN of entry.
  
  $ calls
  0

The device id keeps its low 24 bits, the WWPN goes as typed; empty table.

  $ kvd -b 1 -c 'tarvo getftbl'
  
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=10244) = 0 command=GET_FTABLE
  $ sent 0 12
  150000000000000004280000
  $ kvd -b 1 -c 'tarvo fteins -F 0x12345678 20:00:00:11:22:33:44:55'
  Done.
  
  $ sent 0 20
  0500000000000000785634002000001122334455
  $ kvd -b 1 -c 'tarvo fteins -D 0x10203 2000001122334466'
  Done.
  
  $ sent 4 8
  0100000003020100

Entries read back; the same key changes its entry; a missing key is 9.

  $ printf 'set board 1\ntarvo fteins -f 0x12345678 20:00:00:11:22:33:44:55\ntarvo fteins -d 0x010203 2000001122334466\ntarvo fteins -d 0x345678 2000001122334455\ntarvo fteins -f 0x20304 2000001122334488\ntarvo getftbl\ntarvo ftedel 0x345678 20:00:00:11:22:33:44:55\ntarvo ftedel 0x345678 20:00:00:11:22:33:44:55\ntarvo getftbl\nquit\n' | kvd | sed -n '/^cmd>/,$p' | sed '/code=9/,${/WWPN\|Flags/!{/^ \|^-/d}}' | sed '/^Entry [12]:/,/^$/{/Type\|Tag\|Mask/d}'
  cmd> cmd> Done.
  
  cmd> Done.
  
  cmd> Done.
  
  cmd> Done.
  
  cmd> Entry 0:
  -----------------------------------------------------
               Type: 0x1
          Type Mask: 0xff
                Tag: 0x3ea
           Tag Mask: 0xfff
         LIF Bitmap: 0x0
              Flags: 0x8001
        MAC Address: 00:00:0e:fc:00:34:56:78
   MAC Address Mask: 00:00:ff:ff:ff:ff:ff:ff
               WWPN: 2000001122334455
  
  Entry 1:
  -----------------------------------------------------
         LIF Bitmap: 0x0
              Flags: 0x8001
        MAC Address: 00:00:0e:fc:00:01:02:03
               WWPN: 2000001122334466
  
  Entry 2:
  -----------------------------------------------------
         LIF Bitmap: 0x1
              Flags: 0x8000
        MAC Address: 00:00:0e:fc:00:02:03:04
               WWPN: 2000001122334488
  
  
  cmd> Done.
  
  cmd> Tarvo command error. code=9.
  cmd> Entry 1:
              Flags: 0x8001
               WWPN: 2000001122334466
  
  Entry 2:
              Flags: 0x8000
               WWPN: 2000001122334488
  
  
  cmd>  (no-eol)
  $ grep 'command=GET_FTABLE' trace | tail -1 | sed 's/.* out=\([0-9a-f]*\).*/\1/' | cut -c89-168
  018001ffea03ff0f03020100fc0e0000ffffffffffff000020000011223344660000000000000000
  $ grep 'command=FTE_DELETE' trace | tail -1 | grep -o '= 0 .* in=[0-9a-f]*'
  = 0 command=FTE_DELETE in=06000000785634002000001122334455

A WWPN that does not parse falls back on the current WWN, else nothing sent.

  $ printf 'set board 1\nset wwn 2000001122334477\ntarvo fteins -f 0x20 nowwpn\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> cmd> arg nowwpn - arg length 6 or missing ':'
  Done.
  
  cmd>  (no-eol)
  $ sent 12 8 FTE_INSERT
  2000001122334477
  $ calls > before
  $ kvd -b 1 -c 'tarvo fteins -f 0x20 nowwpn'
  arg nowwpn - arg length 6 or missing ':'
  tarvo fteins:nowwpn bad port_wwpn cur_wwn 
  $ kvd -b 1 -c 'tarvo ftedel 0x20 nowwpn'
  arg nowwpn - arg length 6 or missing ':'
  tarvo ftedel:nowwpn bad port_wwpn
  $ calls | cmp - before

Device id 0 and a zero WWPN are bad parameters; 256 entries, no 257th (8).

  $ kvd -b 1 -c 'tarvo fteins -f 0x1000000 2000001122334455'
  Tarvo command error. code=2.
  $ kvd -b 1 -c 'tarvo fteins -f 0x10 0000000000000000'
  Tarvo command error. code=2.
  $ { echo 'set board 1'; for i in $(seq 1 257); do echo "tarvo fteins -f $i 2000001122334455"; done; echo 'tarvo getftbl'; echo quit; } | kvd | sed 's/cmd> //g' | grep -E '^Done\.|code=|^Entry 255:' | uniq -c
      256 Done.
        1 Tarvo command error. code=8.
        1 Entry 255:

Errors: the transport's and the ASIC's own.

  $ kvd -b 0 -c 'tarvo getftbl'; KVD_SIM_FAULT=asic:GET_FTABLE=5 kvd -b 1 -c 'tarvo getftbl'; KVD_SIM_FAULT=asic:FTE_INSERT=16 kvd -b 1 -c 'tarvo fteins -d 1 2000001122334455'
  Tarvo command error. Invalid adapter.
  Tarvo command error. code=5.
  Tarvo command error. code=16.
