The sli4 family: SLI-4 requests in an SLI4_CONFIG mailbox (0x9B), one try
through IssueInternalMboxWithRetryEx (board 2). `rec CALL OFF LEN` cuts bytes
out of the last record CALL sent; NUL bytes of text fields show as dots.

  $ export KVD_SIM_TRACE=$PWD/trace
  $ rec() { grep "^$1(" trace | tail -1 | sed 's/.* in=\([0-9a-f]*\).*/\1/' | cut -c$(($2 * 2 + 1))-$(($2 * 2 + $3 * 2)); }
  $ ex() { grep -o '^IssueInternalMboxWithRetryEx([^)]*) = [0-9]* command=[A-Z0-9_]*' trace || :; }
  $ nul() { tr '\0' '.'; }

Usage and the table.

  $ kvd -c sli4
  Usage: sli4 [subCommand]
  cntladdlattr
  cntlattr
  fwconfig
  getbeacon
  getdcbx
  nop
  [247]
  $ kvd -b 2 -c 'sli4 CNTLATTR' > inval.out; head -1 inval.out; sed 1d inval.out | cmp - <(kvd -c sli4 | sed 1d)
  Invalid subcommand: CNTLATTR - use:
  $ kvd -b 2 -c 'sli4 cntlattr' | nul
  Version string: 4.1.28.5........................
  Manufacture name: Korvan..........................
  Supported modes: x00000011
  EPROM version hi: x01
  EPROM version lo: x02
  MBX data structure version: x00000004
  EP firmware data structure version: x00000002
  NCSI version string: 1.1.0.......
  Default extended timeout: 0x0000001e
  Model number: QM16-F4.........................
  Description: QM16-F4 16Gb PCIe Fibre Channel Adapter.........
  Serial number: QSC80030........................
  IP version string: 4.1.28.5........................
  FW version string: 4.1.28.5........................
  BIOS version string: 4.1.28.5........................
  Redboot version string: 4.1.28.5........................
  Driver version string: 3.4.12.0........................
  FW on flash string: 4.1.28.5........................
  Functionalities supported: x00000801
  ASIC revision: x0b
  Max cdb length: 32
  Generational GUID0: x51
  Generational GUID1: x10112478159d66479899acf0
  Generational GUID2: x02
  Generational GUID3: x4b06
  HBA port count: 2
  Multifunctional device: x00
  iSCSI version min max: x00
  Default link down timeout: x001e
  Physical port: 0
  Max domains supported: 1
  HBA status: x00
  Cache valid: x01
  Firmware post status: x0000c000
  HBA MTU (8 hex): 00000840 00000840 00000840 00000840 00000840 00000840 00000840 00000840 
  ISCSI features: x00
  PCI device id: xf400
  PCI vendor id: x2c71
  PCI sub system id: xf404
  PCI sub vendor id: x2c71
  PCI interface type: x02
  PCI function number: x00
  PCI device number: x00
  PCI bus number: x81
  Unique Identifier: 1000064b51c80030
  Number of netfilters: x00

Controller attributes travel in a 540-byte buffer named by one SGE.

  $ ex
  IssueInternalMboxWithRetryEx(board=2, extension=null, extension_words=0, rsvd1=0, rsvd2=0, retries=1, delay=100) = 0 command=SLI4_CONFIG
  $ rec IssueInternalMboxWithRetryEx 0 12
  009b00000800000014000000
  $ rec IssueInternalMboxWithRetryEx 32 4
  1c020000

Additional attributes: the die temperature drifts between two queries.

  $ kvd -b 2 -c 'sli4 cntladdlattr' -c 'sli4 cntladdlattr' | nul | grep -v 'bios\|nic\|fcode\|iscsi' | awk 'NR <= 7 || /temperature/'
  IPL file number: x0001 - QF8S Standard rack
  IPL file: x03
  On die temperature: 51 centigrade
  Driver advanced features: x00000007
  FCOE default wwpn: 10:00:06:4b:51:c8:00:30
  EXT phy: 1.0.4...........................
  EXT phy crc: 5a3c....
  On die temperature: 52 centigrade
  $ ex | tail -1
  IssueInternalMboxWithRetryEx(board=2, extension=null, extension_words=0, rsvd1=0, rsvd2=0, retries=1, delay=100) = 0 command=SLI4_CONFIG

Firmware configuration, embedded; the last four fields are not in the reply.

  $ kvd -b 2 -c 'sli4 fwconfig'
          config_number: x00000001
          asic_revision: x0000000b
          physical_port: x00000000
          function_mode: x00000400
              ulpo_mode: x00000010
     ulp0_nic_wqid_base: x00000000
        ulp0_nic_wq_tot: x00000000
     ulp0_toe_wqid_base: x00000000
        ulp0_toe_wq_tot: x00000000
     ulp0_toe_rqid_base: x00000040
      ulp0_toe_rqid_tot: x00000010
  ulp0_toe_defrqid_base: x00000050
     ulp0_toe_defrq_tot: x00000002
     ulp0_lro_rqid_base: x00000000
      ulp0_lro_rqid_tot: x00000000
    ulp0_iscsi_icd_base: x00000000
     ulp0_iscsi_icd_tot: x00000000
              ulp1_mode: x00000000
     ulp1_nic_wqid_base: x00000000
        ulp1_nic_wq_tot: x00000000
     ulp1_toe_wqid_base: x00000000
        ulp1_toe_wq_tot: x00000000
     ulp1_toe_rqid_base: x00000000
      ulp1_toe_rqid_tot: x00000000
  ulp1_toe_defrqid_base: x00000000
     ulp1_toe_defrq_tot: x00000000
     ulp1_lr0_rqid_base: x00000000
      ulp1_lr0_rqid_tot: x00000000
    ulp1_iscsi_icd_base: x00000000
     ulp1_iscsi_icd_tot: x00000000
  function_capabilities: x00000001
              cqid_base: x00000000
               cqid_tot: x00000000
              eqid_base: x00000000
               eqid_tot: x00000000
  $ rec IssueInternalMboxWithRetryEx 4 8
  0100000010000000
  $ rec IssueInternalMboxWithRetryEx 24 12
  3a010000000000008c000000

Beacon, no-op (five extension words); DCBX is refused on an FC port.

  $ kvd -b 2 -c 'sli4 getbeacon'
  Beacon state disabled
  $ rec IssueInternalMboxWithRetryEx 40 1
  40
  $ kvd -b 2 -c 'sli4 nop'
  nop - issue_Sli4_nop returned 0x0
  $ ex | tail -1
  IssueInternalMboxWithRetryEx(board=2, extension_words=5, rsvd1=0, rsvd2=0, retries=1, delay=100) = 0 command=SLI4_CONFIG
  $ grep -c 'ext=0000000000000000000000000000000000000000' trace
  1
  $ rm trace; kvd -b 2 -c 'sli4 getdcbx'
  getdcbx - get_dcbx_mode returned 0x2
  $ ex

The SLI-4 FCoE board of the test fleet: DCBX, beacon on, unknown IPL file.

  $ export KVD_SIM_FLEET=$KVD_FLEETS/sli4.json
  $ kvd -c 'sli4 getdcbx'
  DCBX mode x01 - CIN mode
  $ ex
  IssueInternalMboxWithRetryEx(board=0, extension_words=5, rsvd1=0, rsvd2=0, retries=1, delay=100) = 0 command=SLI4_CONFIG
  $ kvd -c 'sli4 getbeacon'
  Beacon state enabled
  $ kvd -c 'sli4 cntladdlattr' | head -1
  IPL file number: x0017 - Not documented
  $ kvd -b 1 -c 'sli4 cntladdlattr' | head -1
  IPL file number: xffff - QXXX Factory default

Boards not in SLI mode 4, or whose driver query fails, are refused.

  $ rm trace; kvd -b 2 -c 'sli4 fwconfig'
  Not supported on this board: 2
  [2]
  $ ex
  $ unset KVD_SIM_FLEET
  $ kvd -b 0 -c 'sli4 nop'
  Not supported on this board: 0
  [2]
  $ KVD_SIM_FAULT=KVD_GetDrvInfo=5 kvd -b 2 -c 'sli4 cntlattr'
  Not supported on this board: 2
  [2]
  $ ex

Failures: the library's result, or 1 when the firmware refused.

  $ KVD_SIM_FAULT=IssueInternalMboxWithRetryEx=16 kvd -b 2 -c 'sli4 cntlattr'; KVD_SIM_FAULT=sli4:QUERY_FW_CONFIG=3 kvd -b 2 -c 'sli4 fwconfig'; KVD_SIM_FAULT=sli4:0x146=2 kvd -b 2 -c 'sli4 getbeacon'; KVD_SIM_FAULT=sli4:NOP=1 kvd -b 2 -c 'sli4 nop'; KVD_SIM_FAULT=sli4:GET_CNTL_ADDL_ATTRIBUTES=4 kvd -b 2 -c 'sli4 cntladdlattr'; KVD_SIM_FAULT=mbox:SLI4_CONFIG=16 kvd -b 2 -c 'sli4 nop'
  cntlattr - get_Cntl_Attributes returned 0x10
  fwconfig - query_fw_config returned 0x1
  getbeacon - get_beacon_config returned 0x1
  nop - issue_Sli4_nop returned 0x1
  cntladdlattr - get_Cntl_Addl_Attributes returned 0x1
  nop - issue_Sli4_nop returned 0x1
