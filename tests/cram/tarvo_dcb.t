The ASIC's DCB settings (board 1): ETS groups, host PFC flag, DCBX mode.
`sent OFF LEN [NAME]` cuts bytes out of the last record sent; `calls` counts.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ sent() { grep "^KVD_SendTarvoCommand(.*command=${3:-}" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($1 * 2 + 1))-$(($1 * 2 + $2 * 2)); }
  $ calls() { grep -c '^KVD_SendTarvoCommand' trace || :; }

Usage texts (the words not always the table's); nothing is sent.

  $ kvd -b 1 -c 'tarvo setetspg 1 2'
  Usage: tarvo setetspg <pg_idx> <pg_id_bit_map> <pg_bw>
  
  $ kvd -b 1 -c 'tarvo setetspg 1 2 3 4' | head -1
  Usage: tarvo setetspg <pg_idx> <pg_id_bit_map> <pg_bw>
  $ kvd -b 1 -c 'tarvo setHostEthPfcFlg'
  Usage: tarvo setHostEthPfcFlg
  
  $ kvd -b 1 -c 'tarvo getdcbxmode' | head -1
  Invalid command: getdcbxmode   supported commands include:
  $ calls
  0

getetspg: current and default groups, eight lines each, then the shares.

  $ kvd -b 1 -c 'tarvo getetspg' | grep -v '^[4-6]	\|bw\[[1-6]\]'
  max supported pg:8
  current pg:3
  0\tpg_ids=8 pg_bw=28 (esc)
  1\tpg_ids=37 pg_bw=28 (esc)
  2\tpg_ids=c0 pg_bw=14 (esc)
  3\tpg_ids=0 pg_bw=0 (esc)
  7\tpg_ids=0 pg_bw=0 (esc)
  default pg:3
  0\tpg_ids=8 pg_bw=28 (esc)
  1\tpg_ids=37 pg_bw=28 (esc)
  2\tpg_ids=c0 pg_bw=14 (esc)
  3\tpg_ids=0 pg_bw=0 (esc)
  7\tpg_ids=0 pg_bw=0 (esc)
  max_bg_bw[0]= 64
  max_bg_bw[7]= 64
  Good
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=84) = 0 command=ETS_PG
  $ sent 0 12
  2a0000000000000054000000

setetspg writes the groups back with one changed (index 8: the bandwidth).

  $ kvd -b 1 -c 'tarvo setetspg 9 1 1'
   pg_idx cannot exceed 7
  Usage: tarvo setetspg <pg_idx> <pg_id_bit_map> <pg_bw>
  
  $ kvd -b 1 -c 'tarvo setetspg 2 0x180 0x10a' | tail -2
  max_bg_bw[6]= 64
  max_bg_bw[7]= 64
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace | tail -2
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=84) = 0 command=ETS_PG
  KVD_SendTarvoCommand(board=1, cmd_len=24, rsp_len=4) = 0 command=ETS_PG
  $ sent 0 24
  2a00000003000000083780000000000028280a0000000000
  $ kvd -b 1 -c 'tarvo setetspg 8 0x30 77' > /dev/null
  $ sent 0 24
  2a000000030000000837c000000000003028140000000000

The ASIC's rules; refused changes leave the groups, defaults stay.

  $ printf 'set board 1\ntarvo setetspg 0 0x08 50\ntarvo setetspg 2 0xc0 10\ntarvo setetspg 0 0x08 50\ntarvo setetspg 1 0x0c 40\ntarvo setetspg 4 0 5\ntarvo setetspg 3 0x04 0\ntarvo setetspg 1 0x33 40\ntarvo setetspg 3 0x04 0\ntarvo getetspg\nquit\n' > rules
  $ kvd < rules | grep -E '^cmd>|code=' | cut -c1-30
  cmd> cmd> max supported pg:8
  Tarvo command error. code=2.
  cmd> max supported pg:8
  cmd> max supported pg:8
  cmd> max supported pg:8
  Tarvo command error. code=2.
  cmd> max supported pg:8
  Tarvo command error. code=2.
  cmd> max supported pg:8
  Tarvo command error. code=2.
  cmd> max supported pg:8
  cmd> max supported pg:8
  cmd> max supported pg:8
  cmd> 
  $ kvd < rules | tail -n 28 | grep pg | grep -v 'ids=0 '
  current pg:4
  0\tpg_ids=8 pg_bw=32 (esc)
  1\tpg_ids=33 pg_bw=28 (esc)
  2\tpg_ids=c0 pg_bw=a (esc)
  3\tpg_ids=4 pg_bw=0 (esc)
  default pg:3
  0\tpg_ids=8 pg_bw=28 (esc)
  1\tpg_ids=37 pg_bw=28 (esc)
  2\tpg_ids=c0 pg_bw=14 (esc)

PFC flag and DCBX mode share one word read with code 44; PFC off reads 0.

  $ printf 'set board 1\ntarvo getHostEthPfcFlg\ntarvo getDcbxMode\ntarvo setHostEthPfcFlg 0\ntarvo getHostEthPfcFlg\ntarvo getDcbxMode\ntarvo setHostEthPfcFlg 2\ntarvo setHostEthPfcFlg 1\ntarvo getDcbxMode\nquit\n' | kvd | sed -n '/^cmd>/,$p'
  cmd> cmd> PFC flag:Enabled
  cmd> DCBX mode:80000001=\tTARVO_DCBX_MODE_CEE_VER_01 (esc)
  cmd> cmd> PFC flag:Disabled
  cmd> DCBX mode:0=\tUnknown? (esc)
  cmd> Tarvo command error. code=2.
  cmd> cmd> DCBX mode:80000001=\tTARVO_DCBX_MODE_CEE_VER_01 (esc)
  cmd>  (no-eol)
  $ grep -o '^KVD_SendTarvoCommand(.*) = [0-9]* command=[A-Z_]*' trace | tail -4
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=8) = 0 command=GET_HOST_PFC
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=4) = 0 command=SET_HOST_PFC
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=4) = 0 command=SET_HOST_PFC
  KVD_SendTarvoCommand(board=1, cmd_len=12, rsp_len=8) = 0 command=GET_HOST_PFC
  $ sent 0 12 SET_HOST_PFC
  2b0000000100000004000000
  $ sent 0 12 GET_HOST_PFC
  2c0000000000000008000000

Every DCBX version a fleet may give.

  $ for m in 0 2 3 4; do printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"dcbx_mode":%d}}]}' $m > m$m.json; KVD_SIM_FLEET=m$m.json kvd -c 'tarvo getDcbxMode'; done
  DCBX mode:80000000=\tTARVO_DCBX_MODE_PRE_CEE (esc)
  DCBX mode:80000002=\tTARVO_DCBX_MODE_CEE_VER_02 (esc)
  DCBX mode:80000003=\tTARVO_DCBX_MODE_CEE_VER_03 (esc)
  DCBX mode:80000004=\tTARVO_DCBX_MODE_CEE_VER_04 (esc)
  $ printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"dcbx_mode":5}}]}' > m5.json; KVD_SIM_FLEET=m5.json kvd -c 'tarvo getDcbxMode'
  libkvd: m5.json: boards[0].asic.dcbx_mode: value 0x5 out of range 0..0x4
  
  No Adapters Found
  [253]
  $ printf '{"boards":[{"board":0,"wwpn":"10:00:06:4b:51:b4:02:00","protocol":"fcoe","asic":{"host_pfc":false}}]}' > off.json; KVD_SIM_FLEET=off.json kvd -c 'tarvo getHostEthPfcFlg'
  PFC flag:Disabled

Errors print the code line and nothing else.

  $ KVD_SIM_FAULT=asic:ETS_PG=16 kvd -b 1 -c 'tarvo getetspg'; KVD_SIM_FAULT=asic:ETS_PG=16 kvd -b 1 -c 'tarvo setetspg 1 1 1'; KVD_SIM_FAULT=asic:GET_HOST_PFC=1 kvd -b 1 -c 'tarvo getDcbxMode'; kvd -b 0 -c 'tarvo getHostEthPfcFlg'
  Tarvo command error. code=16.
  Tarvo command error. code=16.
  Tarvo command error. code=1.
  Tarvo command error. Invalid adapter.
