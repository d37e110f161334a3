Latency buckets and data collection; seeded counts, the time of day masked.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ Z=0000000000000000
  $ hms() { sed 's/^[0-2][0-9]:[0-5][0-9]:[0-5][0-9] /HH:MM:SS /'; }
  $ body() { sed '1,/^Adapter/{/^Adapter/!d}; /^Adapter/d' | hms; }

Usage texts and refusals.

  $ for c in 'sd_get_bucket x' 'sd_free_bucket x' 'sd_granularity x' "sd_start_data $Z 1"; do kvd -c "$c"; echo "[$?]"; done 2>&1 | paste -d' ' - -
  Usage: sd_get_bucket  [247]
  Usage: sd_free_bucket [247]
  Usage: sd_granularity (no arguments) [247]
  Usage: sd_start_data [vport wwn] [247]
  $ for c in 'sd_set_bucket linear 1' 'sd_set_bucket log 1 1' 'sd_stop_data 12' 'sd_reset_data 12' 'sd_get_data 12'; do kvd -c "$c"; echo "[$?]"; done 2>&1
  Usage: sd_set_bucket <linear|power2> <base> <step>
     set base and step to zero to use defaults
  [247]
  Usage: sd_set_bucket <linear|power2> <base> <step>
     set base and step to zero to use defaults
  [247]
  arg 12 - arg length 2 or missing ':'
  Usage: sd_stop_data [vport wwn]
  [247]
  arg 12 - arg length 2 or missing ':'
  Usage: sd_reset_data [vport wwn]
  [247]
  arg 12 - arg length 2 or missing ':'
  Usage: sd_get_data [vport wwn]
  [247]
  $ kvd -c "sd_latency 0 $Z 1 1 1 0 3"
  Usage: sd_latency [board id] [vport wwn]
  [base] [step] [linear/power2] [cumulative/reset]
  [runTimeSeconds] [snapshotSeconds]
  vport wwn may be zero to use the physical port
  base and step are mulitpliers of the granularity
  zero base and step will use the default granularity
  linear = 1, power2 = 2
  cumulative = 0, reset = 1
  minimum runTimeSeconds is 3
  minimum snapshotSeconds is 2
  snapshotSeconds must be less than runTimeSeconds
  minimum seconds is 2
  [247]
  $ for a in "zz 1 1 1 0 3 2" "$Z -1 1 1 0 3 2" "$Z 1 -1 1 0 3 2" "$Z 1 1 3 0 3 2" "$Z 1 1 1 2 3 2" "$Z 1 1 1 0 2 2" "$Z 1 1 1 0 3 1" "$Z 1 1 1 0 4 4"; do kvd -c "sd_latency 0 $a" | tail -1; done
  Could not convert the wwn
  Invalid base multiplier
  Invalid step multiplier
  Invalid linear or power2 value
  Invalid cumulative or reset value
  runTimeSeconds less than 3
  snapshotSeconds less than 2
  snapshotSeconds not less than runTimeSeconds
  $ grep -c SD_ trace
  0
  [1]

The bucket (on board 1) and a collection read back at each step; the shell's
own SCSI command is counted too. Twelve targets overflow the 800-byte buffer;
a board without targets has no nodes.

  $ T=21:00:06:4b:51:d0:00:01
  $ cat > cmds <<X
  > sd_granularity
  > sd_get_bucket
  > sd_start_data
  > sd_get_data
  > sd_set_bucket linear 0 0
  > sd_get_bucket
  > sd_set_bucket power2 5 0
  > sd_set_bucket power2 1000 500
  > sd_get_bucket
  > sd_set_bucket linearity 1000 1000
  > sd_get_bucket
  > sd_start_data 1000000000000001
  > sd_start_data
  > sd_start_data
  > sd_set_bucket linear 0 0
  > sd_free_bucket
  > sd_get_data
  > sendscsi readcap $T 0
  > sd_get_data
  > sd_reset_data
  > sd_stop_data
  > sd_get_data
  > sd_reset_data
  > sd_free_bucket
  > sd_free_bucket
  > quit
  > X
  $ kvd < cmds | body | grep -v '^\(Rsp\|Sense\|Blocks\|  *0:\)'
  cmd> Nanoseconds per clock tick: 10
  cmd> KVD_SD_Get_Bucket returned - BUCKET NOT SET 
  cmd> KVD_SD_Start_Data_Collection returned - BUCKET NOT SET 
  cmd> KVD_SD_Get_Data returned - DATA COLLECTION NOT ACTIVE 
  cmd> KVD_SD_Set_Bucket returned - OK 
  cmd> KVD_SD_Get_Bucket returned - OK 
  Search type : linear base 10 step 10 
  10 20 30 40 50 60 70 80 90 100 110 120 130 140 150 160 170 180 190 200 
  cmd> KVD_SD_Set_Bucket returned - INVALID ARGUMENT 
  cmd> KVD_SD_Set_Bucket returned - OK 
  cmd> KVD_SD_Get_Bucket returned - OK 
  Search type : power2 base 1000 step 500 
  1000 1500 2000 3000 5000 9000 17000 33000 65000 129000 257000 513000 1025000 2049000 4097000 8193000 16385000 32769000 65537000 131073000 
  cmd> KVD_SD_Set_Bucket returned - OK 
  cmd> KVD_SD_Get_Bucket returned - OK 
  Search type : linear base 1000 step 1000 
  1000 2000 3000 4000 5000 6000 7000 8000 9000 10000 11000 12000 13000 14000 15000 16000 17000 18000 19000 20000 
  cmd> KVD_SD_Start_Data_Collection returned - INVALID PORT 
  cmd> KVD_SD_Start_Data_Collection returned - OK 
  cmd> KVD_SD_Start_Data_Collection returned - DATA COLLECTION ACTIVE 
  cmd> KVD_SD_Set_Bucket returned - DATA COLLECTION ACTIVE 
  cmd> KVD_SD_Destroy_Bucket returned - DATA COLLECTION ACTIVE 
  cmd> KVD_SD_Get_Data returned - OK 
  Target count 3
  WWPN:21:00:06:4b:51:d0:00:01
  HH:MM:SS 0 4 5 8 4 3 7 3 4 6 5 5 6 4 0 0 0 0 0 0 
  WWPN:21:00:06:4b:51:d0:00:02
  HH:MM:SS 0 6 5 7 6 2 4 5 2 4 4 4 7 8 0 0 0 0 0 0 
  WWPN:21:00:06:4b:51:d1:00:01
  HH:MM:SS 0 2 5 6 7 5 2 7 3 4 7 3 4 9 0 0 0 0 0 0 
  cmd> Rsp Buffer: 8
  
  cmd> KVD_SD_Get_Data returned - OK 
  Target count 3
  WWPN:21:00:06:4b:51:d0:00:01
  HH:MM:SS 0 12 12 11 7 7 10 7 7 9 10 13 13 11 0 0 0 0 0 0 
  WWPN:21:00:06:4b:51:d0:00:02
  HH:MM:SS 0 10 10 12 14 8 9 11 6 8 5 9 10 16 0 0 0 0 0 0 
  WWPN:21:00:06:4b:51:d1:00:01
  HH:MM:SS 0 7 10 12 12 10 6 12 9 12 11 6 6 15 0 0 0 0 0 0 
  cmd> KVD_SD_Reset_Data_Collection returned - OK 
  cmd> KVD_SD_Stop_Data_Collection returned - OK 
  cmd> KVD_SD_Get_Data returned - OK 
  Target count 3
  WWPN:21:00:06:4b:51:d0:00:01
  HH:MM:SS 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 
  WWPN:21:00:06:4b:51:d0:00:02
  HH:MM:SS 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 
  WWPN:21:00:06:4b:51:d1:00:01
  HH:MM:SS 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 
  cmd> KVD_SD_Reset_Data_Collection returned - DATA COLLECTION NOT ACTIVE 
  cmd> KVD_SD_Destroy_Bucket returned - OK 
  cmd> KVD_SD_Destroy_Bucket returned - BUCKET NOT SET 
  cmd> 
  $ grep -o '^KVD_SD_Get_Data.*targets=[0-9]*' trace | tail -2
  KVD_SD_Get_Data(board=0, vport=00:00:00:00:00:00:00:00, mode=1, size=800) = 0 targets=3
  KVD_SD_Get_Data(board=0, vport=00:00:00:00:00:00:00:00, mode=1, size=800) = 0 targets=3
  $ python3 - > many.json <<'X'
  > import json
  > ports = [{"wwpn": "21:00:06:4b:51:e1:00:%02x" % i, "wwnn": "20:00:06:4b:51:e1:00:%02x" % i,
  >           "did": "0x0102%02x" % i} for i in range(12)]
  > sd = {"seed": 7, "traffic": [{"wwpn": ports[0]["wwpn"], "ios": 3, "min_us": 10, "max_us": 10}]}
  > print(json.dumps({"boards": [{"board": 0, "wwpn": "10:00:06:4b:51:a0:00:70", "remote_ports": ports, "sd": sd},
  >                              {"board": 1, "wwpn": "10:00:06:4b:51:a0:00:71"}]}))
  > X
  $ export KVD_SIM_FLEET=$PWD/many.json
  $ printf 'sd_set_bucket linear 200 200\nsd_start_data\nsd_get_data\nquit\n' | kvd | body | head -8
  cmd> KVD_SD_Set_Bucket returned - OK 
  cmd> KVD_SD_Start_Data_Collection returned - OK 
  cmd> KVD_SD_Get_Data returned - OK 
  Target count 12
  WWPN:21:00:06:4b:51:e1:00:00
  HH:MM:SS 0 0 0 0 3 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 
  WWPN:21:00:06:4b:51:e1:00:01
  HH:MM:SS 0 0 0 0 0 0 0 0 0 1 0 2 2 1 0 0 0 2 0 56 
  $ grep -o '^KVD_SD_Get_Data.*targets=[0-9]*' trace | tail -2
  KVD_SD_Get_Data(board=0, vport=00:00:00:00:00:00:00:00, mode=1, size=800) = 8 targets=12
  KVD_SD_Get_Data(board=0, vport=00:00:00:00:00:00:00:00, mode=1, size=1056) = 0 targets=12
  $ kvd -c "sd_latency 1 $Z 1 1 1 0 3 2" | tail -2
  FCPMAP entries on this board: 0
  sd_latency - no nodes for IO
  $ sed 's/"ios": 3/"iops": 3/' many.json > bad.json
  $ KVD_SIM_FLEET=$PWD/bad.json kvd -c sd_granularity
  libkvd: */bad.json: boards[0].sd.traffic[0].iops: unknown field (glob)
  
  No Adapters Found
  [253]
  $ unset KVD_SIM_FLEET

sd_latency in reset mode (each snapshot holds one round of each target's 64
I/Os) and cumulative mode (they add up); a failed stop is GENERIC.

  $ kvd -c "sd_latency 0 $Z 100 50 1 1 5 2" | hms | grep -v '^Portname\|^Bus'
  board id        0
  wwpn            00:00:00:00:00:00:00:00
  granularity     10
  base            1000
  step            500
  search_type     linear
  runTimeSeconds  5
  snapshotSeconds 2
  snapshots       2
  reset buckets between snapshots
  FCPMAP entries on this board: 6
  KVD_SD_Set_Bucket returned - OK
  KVD_SD_Get_Bucket returned - OK
  Search type : linear base 1000 step 500 
  1000 1500 2000 2500 3000 3500 4000 4500 5000 5500 6000 6500 7000 7500 8000 8500 9000 9500 10000 10500 
  KVD_SD_Start_Data_Collection returned - OK
  Snapshots 2 - collecting data every 2 seconds for 5 seconds.
  KVD_SD_Get_Data returned - OK 
  Target count 3
  WWPN:21:00:06:4b:51:d0:00:01
  HH:MM:SS          0          0          0          4          2          3          6          2          1          3          0          3          3          4          0          3          2          2          3         23 
  WWPN:21:00:06:4b:51:d0:00:02
  HH:MM:SS          0          0          2          4          2          3          5          2          3          3          1          1          1          3          2          3          1          1          1         26 
  WWPN:21:00:06:4b:51:d1:00:01
  HH:MM:SS          0          0          2          0          1          4          3          3          3          4          2          3          1          1          3          4          2          1          1         26 
  KVD_SD_Get_Data returned - OK 
  Target count 3
  WWPN:21:00:06:4b:51:d0:00:01
  HH:MM:SS          0          0          3          4          2          5          3          0          2          1          0          4          3          0          2          2          2          1          1         29 
  WWPN:21:00:06:4b:51:d0:00:02
  HH:MM:SS          0          0          2          2          3          2          1          4          2          6          4          2          2          3          5          1          2          2          3         18 
  WWPN:21:00:06:4b:51:d1:00:01
  HH:MM:SS          0          0          3          2          2          3          3          3          3          2          3          2          3          1          4          1          4          2          4         19 
  KVD_SD_Start_Data_Collection returned - OK
  KVD_SD_Destroy_Bucket returned - OK
  $ KVD_SIM_FAULT=KVD_SD_Stop_Data_Collection=20 kvd -c "sd_latency 0 $Z 0 100 2 0 5 2" | hms | grep -v '^Portname\|^Bus' | sed -n '4,10p;14,15p;17p;20,21p;28,29p;34p'
  base            0
  step            1000
  search_type     power2
  runTimeSeconds  5
  snapshotSeconds 2
  snapshots       2
  cumulative bucket collection
  Search type : power2 base 0 step 1000 
  0 1000 2000 4000 8000 16000 32000 64000 128000 256000 512000 1024000 2048000 4096000 8192000 16384000 32768000 65536000 131072000 262144000 
  Snapshots 2 - collecting data every 2 seconds for 5 seconds.
  WWPN:21:00:06:4b:51:d0:00:01
  HH:MM:SS          0          0          9         22         33          0          0          0          0          0          0          0          0          0          0          0          0          0          0          0 
  WWPN:21:00:06:4b:51:d0:00:01
  HH:MM:SS          0          0         23         35         70          0          0          0          0          0          0          0          0          0          0          0          0          0          0          0 
  KVD_SD_Start_Data_Collection returned - GENERIC
  $ grep -o '^KVD_SD_[A-Z][a-z_A-Z]*([^)]*) = [0-9]*' trace | tail -10
  KVD_SD_Get_Data(board=0, vport=00:00:00:00:00:00:00:00, mode=1, size=800) = 0
  KVD_SD_Stop_Data_Collection(board=0, vport=00:00:00:00:00:00:00:00, mode=1) = 0
  KVD_SD_Destroy_Bucket(board=1) = 0
  KVD_SD_Get_Granularity() = 10
  KVD_SD_Set_Bucket(board=1, type=2, base=0, step=1000) = 0
  KVD_SD_Get_Bucket(board=1) = 0
  KVD_SD_Start_Data_Collection(board=0, vport=00:00:00:00:00:00:00:00, mode=1) = 0
  KVD_SD_Get_Data(board=0, vport=00:00:00:00:00:00:00:00, mode=1, size=800) = 0
  KVD_SD_Get_Data(board=0, vport=00:00:00:00:00:00:00:00, mode=1, size=800) = 0
  KVD_SD_Stop_Data_Collection(board=0, vport=00:00:00:00:00:00:00:00, mode=1) = 20
