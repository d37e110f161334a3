/*
 * The 256-byte adapter mailbox record.
 *
 * Layout is little-endian with bit-fields numbered from bit 0, the least
 * significant bit of the holding word, as the adapter firmware reads it.
 * Offsets in the comments count from the start of the whole record (the
 * command variant starts at byte 4).
 */
#ifndef KVD_MBOX_H
#define KVD_MBOX_H

#include "kvd_brdinfo.h"

/* Mailbox command codes. */
#define MBX_LOAD_SM 0x01
#define MBX_READ_NV 0x02
#define MBX_WRITE_NV 0x03
#define MBX_RUN_BIU_DIAG 0x04
#define MBX_INIT_LINK 0x05
#define MBX_DOWN_LINK 0x06
#define MBX_CONFIG_LINK 0x07
#define MBX_CONFIG_RING 0x09
#define MBX_RESET_RING 0x0A
#define MBX_READ_CONFIG 0x0B
#define MBX_READ_RCONFIG 0x0C
#define MBX_READ_SPARM 0x0D
#define MBX_READ_STATUS 0x0E
#define MBX_READ_RPI 0x0F
#define MBX_READ_XRI 0x10
#define MBX_READ_REV 0x11
#define MBX_READ_LNK_STAT 0x12
#define MBX_REG_LOGIN 0x13
#define MBX_UNREG_LOGIN 0x14
#define MBX_READ_LA 0x15
#define MBX_CLEAR_LA 0x16
#define MBX_DUMP_MEMORY 0x17
#define MBX_RESTART 0x1A
#define MBX_SET_MASK 0x20
#define MBX_SET_VARIABLE 0x21
#define MBX_READ_EVENT_LOG_STATUS 0x37
#define MBX_READ_EVENT_LOG 0x38
#define MBX_WRITE_EVENT_LOG 0x39
#define MBX_READ_PORT_CAP 0x3B
#define MBX_RUN_BIU_DIAG64 0x84 /* PCI loopback with 64-bit descriptors */
#define MBX_READ_SPARM64 0x8D
#define MBX_SET_DEBUG 0x99
#define MBX_SLI4_CONFIG 0x9B

/* Key word the firmware expects in the first variant word of SET_MASK. */
#define MBX_SETMASK_KEY 0x5A6B7C8Du

/* Completion statuses the firmware writes into mbxStatus. */
#define MBXERR_OK 0x0000
#define MBXERR_NUM_RINGS 0x0001
#define MBXERR_NUM_IOCBS 0x0002
#define MBXERR_IOCBS_EXCEEDED 0x0003
#define MBXERR_BAD_RING_NUMBER 0x0004
#define MBXERR_MASK_ENTRIES_RANGE 0x0005
#define MBXERR_MASKS_EXCEEDED 0x0006
#define MBXERR_BAD_PROFILE 0x0007
#define MBXERR_BAD_DEF_CLASS 0x0008
#define MBXERR_BAD_MAX_RESPONDER 0x0009
#define MBXERR_BAD_MAX_ORIGINATOR 0x000A
#define MBXERR_RPI_REGISTERED 0x000B
#define MBXERR_RPI_FULL 0x000C
#define MBXERR_NO_RESOURCES 0x000D
#define MBXERR_BAD_RCV_LENGTH 0x000E
#define MBXERR_DMA_ERROR 0x000F
#define MBXERR_ERROR 0x0010
#define MBXERR_LINK_DOWN 0x0011
#define MBX_NOT_FINISHED 0x00FF
#define MBXERR_BAD_KEY 0x0101
#define MBXERR_UNKNOWN_CMD 0xFC00

/* 32-bit buffer descriptor. */
typedef struct ulp_bde {
    uint32_t bdeAddress;
    uint32_t bdeSize : 24;
    uint32_t bdeAddrHigh : 4;
    uint32_t bdeReserved : 4;
} ULP_BDE;

typedef union ULP_BDE_TUS {
    uint32_t w;
    struct {
        uint32_t bdeSize : 24;
        uint32_t bdeFlags : 8;
    } f;
} ULP_BDE_TUS;

/* 64-bit buffer descriptor. */
typedef struct ulp_bde64 {
    ULP_BDE_TUS tus;
    uint32_t addrLow;
    uint32_t addrHigh;
} ULP_BDE64, BDE_64;

KVD_STATIC_ASSERT(sizeof(ULP_BDE) == 8, "ulp_bde is 8 bytes");
KVD_STATIC_ASSERT(sizeof(ULP_BDE64) == 12, "ulp_bde64 is 12 bytes");

typedef struct {
    uint32_t load_cmplt : 1;
    uint32_t method : 1;
    uint32_t update_flash : 1;
    uint32_t erase_or_prog : 1;
    uint32_t rsvd : 28;
    uint32_t dl_to_adr;
    uint32_t dl_len;
    ULP_BDE dl_bde;
} LOAD_SM_VAR;

typedef struct {
    uint32_t rsvd1[4];      /* bytes 4-19 */
    uint8_t portname[8];    /* bytes 20-27 */
    uint8_t nodename[8];    /* bytes 28-35 */
    uint32_t hardAL_PA : 8; /* word at 36 */
    uint32_t pref_DID : 24;
    uint32_t rsvd2[2];
} READ_NV_VAR;

typedef struct {
    uint32_t rsvd1[4];
    uint8_t portname[8];
    uint8_t nodename[8];
    uint32_t hardAL_PA : 8;
    uint32_t pref_DID : 24;
    uint32_t rsvd2[2];
} WRITE_NV_VAR;

typedef struct {
    uint32_t rsvd : 30;
    uint32_t done : 1;
    uint32_t start : 1;
    ULP_BDE xmit_bde;
    ULP_BDE rcv_bde;
} BIU_DIAG_VAR;

typedef struct {
    uint32_t start : 1;
    uint32_t rsvd : 31;
    ULP_BDE64 xmit_bde64;
    ULP_BDE64 rcv_bde64;
} BIU_DIAG_VAR64;

/* INIT_LINK link_flags bits. */
#define FLAGS_TOPOLOGY_MODE_LOOP_PT 0x0000
#define FLAGS_TOPOLOGY_MODE_LOOP 0x0001
#define FLAGS_TOPOLOGY_MODE_PT_PT 0x0002
#define FLAGS_TOPOLOGY_MODE_PT_LOOP 0x0003
#define FLAGS_UNREG_LOGIN_ALL 0x0008
#define FLAGS_LIRP_LILP 0x0080
#define FLAGS_TOPOLOGY_FAILOVER 0x0400
#define FLAGS_LINK_SPEED 0x0800

typedef struct {
    uint32_t lipsr_AL_PA : 8; /* word at 4 */
    uint32_t rsvd1 : 24;
    uint16_t link_flags;  /* bytes 8-9 */
    uint8_t rsvd2;        /* byte 10 */
    uint8_t fabric_AL_PA; /* byte 11 */
    uint32_t link_speed;  /* word at 12 */
} INIT_LINK_VAR;

typedef struct {
    uint32_t rsvd1;
} DOWN_LINK_VAR;

typedef struct {
    uint32_t MaxBBC : 8; /* word at 4 */
    uint32_t rsvd1 : 8;
    uint32_t cr_count : 8;
    uint32_t cr_delay : 6;
    uint32_t ci : 1;
    uint32_t cr : 1;
    uint32_t myId;  /* 8 */
    uint32_t rsvd2; /* 12 */
    uint32_t edtov; /* 16 */
    uint32_t arbtov;
    uint32_t ratov;
    uint32_t rttov;
    uint32_t altov;
    uint32_t crtov;
    uint32_t citov;           /* 40 */
    uint32_t ack0_enable : 1; /* word at 44 */
    uint32_t rsvd3 : 29;
    uint32_t rrq_immed : 1;
    uint32_t rrq_enable : 1;
} CONFIG_LINK;

typedef struct {
    uint8_t rmask;
    uint8_t rval; /* R_CTL value */
    uint8_t tmask;
    uint8_t tval; /* TYPE value */
} RR_REG;

#define MAX_RING_MASK 6

typedef struct {
    uint32_t ring : 4; /* word at 4 */
    uint32_t rsvd1 : 4;
    uint32_t profile : 8;
    uint32_t numMask : 8;
    uint32_t recvNotify : 1;
    uint32_t recvSeq : 1;
    uint32_t rsvd2 : 6;
    uint16_t maxOrigXchg;         /* bytes 8-9 */
    uint16_t maxRespXchg;         /* bytes 10-11 */
    RR_REG rrRegs[MAX_RING_MASK]; /* from byte 12 */
} CONFIG_RING_VAR;

typedef struct {
    uint32_t ring_no;
} RESET_RING_VAR;

typedef struct {
    uint32_t cr : 1; /* word at 4 */
    uint32_t ci : 1;
    uint32_t rsvd1 : 14;
    uint32_t MaxBBC : 8;
    uint32_t cr_count : 8;
    uint32_t topology;   /* 8 */
    uint32_t myDid : 24; /* 12 */
    uint32_t rsvd2 : 8;
    uint32_t AR : 1; /* 16 */
    uint32_t IR : 1;
    uint32_t rsvd3 : 29;
    uint32_t ack0 : 1;
    uint32_t edtov; /* 20 */
    uint32_t arbtov;
    uint32_t ratov;
    uint32_t rttov;
    uint32_t altov;
    uint32_t lmt; /* 40: supported link speeds */
    uint32_t rsvd4[4];
    uint32_t max_xri : 16; /* 60 */
    uint32_t rsvd5 : 16;
    uint32_t max_iocb : 16; /* 64 */
    uint32_t rsvd6 : 16;
    uint32_t max_rpi : 16; /* 68 */
    uint32_t rsvd7 : 16;
    uint32_t avail_rpi : 16; /* 72 */
    uint32_t avail_xri : 16;
    uint32_t avail_vpi : 16; /* 76 */
    uint32_t max_vpi : 16;
    uint32_t rsvd8[11];
} READ_CONFIG_VAR;

typedef struct {
    uint32_t ring : 4; /* word at 4 */
    uint32_t rsvd1 : 28;
    uint32_t numMask : 8; /* 8 */
    uint32_t profile : 8;
    uint32_t rsvd2 : 16;
    uint32_t maxOrigXchg : 16; /* 12 */
    uint32_t maxRespXchg : 16;
    uint32_t recvNotify : 1; /* 16 */
    uint32_t recvSeq : 1;
    uint32_t rsvd3 : 30;
    RR_REG rrRegs[MAX_RING_MASK]; /* 20 */
    uint32_t cmdRingOffset;       /* 44 */
    uint32_t cmdEntryCnt;
    uint32_t rspRingOffset;
    uint32_t rspEntryCnt;
    uint32_t nextCmdOffset;
    uint32_t rsvd4;
    uint32_t nextRspOffset;
    uint32_t rsvd5;
} READ_RCONF_VAR;

typedef struct {
    uint32_t rsvd1;    /* 4 */
    uint32_t rsvd2;    /* 8 */
    ULP_BDE sp;        /* bytes 12-19 */
    uint32_t vpi : 16; /* 20 */
    uint32_t rsvd3 : 16;
} READ_SPARM_VAR;

typedef struct {
    uint32_t rsvd1;
    uint32_t rsvd2;
    ULP_BDE64 sp64; /* bytes 12-23 */
    uint32_t vpi : 16;
    uint32_t rsvd3 : 16;
} READ_SPARM64_VAR;

typedef struct {
    uint32_t clrCounters : 1; /* word at 4 */
    uint32_t rsvd1 : 31;
    uint16_t activeRpiCnt; /* 8 */
    uint16_t activeXriCnt; /* 10 */
    uint32_t xmitByteCnt;  /* 12 */
    uint32_t rcvByteCnt;
    uint32_t xmitFrameCnt;
    uint32_t rcvFrameCnt;
    uint32_t xmitSeqCnt;
    uint32_t rcvSeqCnt;
    uint32_t totalOrigExchanges;
    uint32_t totalRespExchanges;
    uint32_t rcvPbsyCnt;
    uint32_t rcvFbsyCnt;
} READ_STATUS_VAR;

typedef struct {
    uint16_t reqRpi;   /* bytes 4-5 */
    uint16_t nextRpi;  /* bytes 6-7 */
    uint32_t DID : 24; /* word at 8 */
    uint32_t rsvd1 : 8;
    ULP_BDE sp; /* bytes 12-19 */
} READ_RPI_VAR;

typedef struct {
    uint16_t reqRpi;
    uint16_t nextRpi;
    uint32_t DID : 24;
    uint32_t rsvd1 : 8;
    ULP_BDE64 sp64;
} READ_RPI64_VAR;

typedef struct {
    uint16_t reqXri; /* 4 */
    uint16_t nextXri;
    uint16_t rsvd1; /* 8 */
    uint16_t rpi;
    uint32_t oxid : 16; /* 12 */
    uint32_t rxid : 16;
    uint32_t ackstat : 8; /* 16 */
    uint32_t rsvd2 : 8;
    uint32_t seqstat : 8;
    uint32_t exchOrig : 1;
    uint32_t exchResp : 1;
    uint32_t rsvd3 : 6;
    uint32_t DID : 24; /* 20 */
    uint32_t rsvd4 : 8;
} READ_XRI_VAR;

typedef struct {
    uint32_t rsvd1 : 2; /* word at 4 */
    uint32_t word_offset : 14;
    uint32_t rsvd2 : 12;
    uint32_t data_present : 1;
    uint32_t offset_present : 1;
    uint32_t recognition : 1;
    uint32_t version : 1;
    uint32_t biu_rev;   /* 8 */
    uint32_t sm_rev;    /* 12 */
    uint32_t fw_rev;    /* 16: sm firmware revision */
    uint32_t endec_rev; /* 20 */
    uint8_t fcph_low;   /* 24 */
    uint8_t fcph_high;
    uint8_t feature_level_low;
    uint8_t feature_level_high;
    uint32_t postKernRev; /* 28 */
    uint32_t opFwRev;     /* 32 */
    uint8_t opFwName[16]; /* 36 */
    uint32_t sli1FwRev;   /* 52 */
    uint8_t sli1FwName[16];
    uint32_t sli2FwRev; /* 72 */
    uint8_t sli2FwName[16];
    uint32_t rsvd3[8];
} READ_REV_VAR;

typedef struct {
    uint32_t linkFailureCnt; /* 4 */
    uint32_t lossSyncCnt;
    uint32_t lossSignalCnt;
    uint32_t primSeqErrCnt;
    uint32_t invalidXmitWord;
    uint32_t crcCnt;
    uint32_t primSeqTimeout;
    uint32_t elasticOverrun;
    uint32_t arbTimeout;
} READ_LNK_VAR;

typedef struct {
    uint16_t rpi;
    uint16_t vpi;
    uint32_t did : 24;
    uint32_t rsvd1 : 8;
    ULP_BDE sp;
} REG_LOGIN_VAR;

typedef struct {
    uint16_t rpi;
    uint16_t vpi;
    uint32_t did : 24;
    uint32_t rsvd1 : 8;
    ULP_BDE64 sp64;
} REG_LOGIN64_VAR;

typedef struct {
    uint16_t rpi;   /* bytes 4-5 */
    uint16_t rsvd1; /* bytes 6-7 */
} UNREG_LOGIN_VAR;

/* READ_LA attention types and topologies. */
#define AT_RESERVED 0x00
#define AT_LINK_UP 0x01
#define AT_LINK_DOWN 0x02
#define TOPOLOGY_PT_PT 0x01
#define TOPOLOGY_LOOP 0x02
#define TOPOLOGY_LOOP_OPEN 0x03

typedef struct {
    uint32_t eventTag;    /* word at 4 */
    uint32_t attType : 8; /* word at 8 */
    uint32_t il : 1;
    uint32_t pb : 1;
    uint32_t rsvd1 : 22;
    uint8_t topology; /* 12 */
    uint8_t lipType;
    uint8_t lipAlPs;
    uint8_t granted_AL_PA;
    ULP_BDE lilpBde;  /* bytes 16-23 */
    uint32_t Dlu : 1; /* 24 */
    uint32_t Dtf : 1;
    uint32_t drsvd2 : 14;
    uint32_t DlnkSpeed : 8;
    uint32_t DnlPort : 4;
    uint32_t Dtx : 2;
    uint32_t Drx : 2;
    uint32_t Ulu : 1; /* 28 */
    uint32_t Utf : 1;
    uint32_t ursvd2 : 14;
    uint32_t UlnkSpeed : 8;
    uint32_t UnlPort : 4;
    uint32_t Utx : 2;
    uint32_t Urx : 2;
} READ_LA_VAR;

typedef struct {
    uint32_t eventTag;
    uint32_t attType : 8;
    uint32_t il : 1;
    uint32_t pb : 1;
    uint32_t rsvd1 : 22;
    uint8_t topology;
    uint8_t lipType;
    uint8_t lipAlPs;
    uint8_t granted_AL_PA;
    ULP_BDE64 lilpBde64;
} READ_LA64_VAR;

typedef struct {
    uint32_t eventTag;
    uint32_t rsvd1;
} CLEAR_LA_VAR;

typedef struct {
    uint32_t did;
    uint16_t vpi;
    uint16_t rsvd1;
} UNREG_D_ID_VAR;

typedef struct {
    uint32_t filterEnable : 9;
    uint32_t portName : 1;
    uint32_t nodeName : 1;
    uint32_t rsvd1 : 21;
    uint32_t ipFlag;
    uint32_t ipAddress;
    uint8_t portname[8];
    uint8_t nodename[8];
    uint32_t rsvd2;
} CONFIG_FARP_VAR;

/* Memory dump, configuration-region update, load-area and expansion-ROM
 * variants: the adapter interface fixes their size; the shell treats them
 * as words. */
typedef struct {
    uint32_t words[8];
} DUMP_VAR;

/* DUMP_MEMORY of adapter memory: words[0] the dump type, words[1] the byte
 * offset (4-aligned), words[2] the words wanted; the reply gives the words
 * returned in words[3] and the data behind the 256-byte record (the reply
 * words past 64 of the plain call, or the V2 call's payload). */
#define MBX_DUMP_TYPE_MEMORY 1

typedef struct {
    uint32_t words[5];
} DEL_LD_ENTRY_VAR;

typedef struct {
    uint32_t words[8];
} UPDATE_CFG_VAR;

typedef struct {
    uint32_t words[5];
} LOAD_AREA_VAR;

typedef struct {
    uint32_t words[5];
} LOAD_EXP_ROM_VAR;

typedef struct {
    uint32_t words[18];
} CONFIG_PORT_VAR;

typedef struct {
    uint32_t words[6];
} setvar_var;

typedef struct {
    uint32_t words[8];
} READ_EVENT_LOG_VAR;

typedef struct {
    uint32_t words[8];
} WRITE_EVENT_LOG_VAR;

/* SLI4_CONFIG (the SLI-4 configuration request, code 0x9B) lives with the
 * rest of the SLI-4 records. */
#include "kvd_sli4.h"

typedef union {
    uint32_t varWords[31];
    LOAD_SM_VAR varLdSM;
    READ_NV_VAR varRDnvp;
    WRITE_NV_VAR varWTnvp;
    BIU_DIAG_VAR varBIUdiag;
    INIT_LINK_VAR varInitLnk;
    DOWN_LINK_VAR varDwnLnk;
    CONFIG_LINK varCfgLnk;
    CONFIG_RING_VAR varCfgRing;
    RESET_RING_VAR varRstRing;
    READ_CONFIG_VAR varRdConfig;
    READ_RCONF_VAR varRdRConfig;
    READ_SPARM_VAR varRdSparm;
    READ_STATUS_VAR varRdStatus;
    READ_RPI_VAR varRdRPI;
    READ_XRI_VAR varRdXRI;
    READ_REV_VAR varRdRev;
    READ_LNK_VAR varRdLnk;
    REG_LOGIN_VAR varRegLogin;
    UNREG_LOGIN_VAR varUnregLogin;
    READ_LA_VAR varReadLA;
    CLEAR_LA_VAR varClearLA;
    UNREG_D_ID_VAR varUnregDID;
    CONFIG_FARP_VAR varCfgFarp;
    DUMP_VAR varDmp;
    DEL_LD_ENTRY_VAR varDelLdEntry;
    UPDATE_CFG_VAR varUpdateCfg;
    LOAD_AREA_VAR varLdArea;
    BIU_DIAG_VAR64 varBIUdiag64;
    CONFIG_PORT_VAR varCfgPort;
    READ_SPARM64_VAR varRdSparm64;
    READ_RPI64_VAR varRdRPI64;
    REG_LOGIN64_VAR varRegLogin64;
    READ_LA64_VAR varReadLA64;
    LOAD_EXP_ROM_VAR varLdExpRom;
    setvar_var varSetVar;
    READ_EVENT_LOG_VAR varRdEventLog;
    WRITE_EVENT_LOG_VAR varWrEventLog;
    SLI4_CONFIG varSli4Cfg;
} MAILVARIANTS;

KVD_STATIC_ASSERT(sizeof(MAILVARIANTS) == 124, "MAILVARIANTS is 31 words");

typedef struct {
    uint32_t cmdPutInx;
    uint32_t rspGetInx;
} HGP;

typedef struct {
    uint32_t cmdGetInx;
    uint32_t rspPutInx;
} PGP;

typedef struct {
    HGP host[4];
    uint32_t unused1[16];
    PGP port[4];
} SLI2_DESC;

typedef union {
    SLI2_DESC s2;
} SLI_VAR;

KVD_STATIC_ASSERT(sizeof(SLI_VAR) == 128, "SLI_VAR is 128 bytes");

typedef struct {
    uint8_t mbxOwner : 1;
    uint8_t mbxHc : 1;
    uint8_t mbxReserved : 6;
    uint8_t mbxCommand;
    uint16_t mbxStatus;
    MAILVARIANTS un;
    SLI_VAR us;
} MAILBOX;

#define MAILBOX_SIZE 256
#define MAILBOX_WORDS 64

KVD_STATIC_ASSERT(sizeof(MAILBOX) == MAILBOX_SIZE, "MAILBOX is 256 bytes");
KVD_STATIC_ASSERT(offsetof(MAILBOX, mbxCommand) == 1, "mbxCommand at byte 1");
KVD_STATIC_ASSERT(offsetof(MAILBOX, mbxStatus) == 2, "mbxStatus at byte 2");
KVD_STATIC_ASSERT(offsetof(MAILBOX, un) == 4, "variant at byte 4");
KVD_STATIC_ASSERT(offsetof(MAILBOX, us) == 128, "SLI area at byte 128");

/* Variant offsets, counted from the start of the record. */
#define KVD_MB_OFF(var, field) (4 + offsetof(var, field))
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_NV_VAR, portname) == 20, "READ_NV portname");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_NV_VAR, nodename) == 28, "READ_NV nodename");
KVD_STATIC_ASSERT(KVD_MB_OFF(INIT_LINK_VAR, link_flags) == 8, "INIT_LINK link_flags");
KVD_STATIC_ASSERT(KVD_MB_OFF(INIT_LINK_VAR, fabric_AL_PA) == 11, "INIT_LINK fabric_AL_PA");
KVD_STATIC_ASSERT(KVD_MB_OFF(INIT_LINK_VAR, link_speed) == 12, "INIT_LINK link_speed");
KVD_STATIC_ASSERT(KVD_MB_OFF(CONFIG_LINK, myId) == 8, "CONFIG_LINK myId");
KVD_STATIC_ASSERT(KVD_MB_OFF(CONFIG_LINK, edtov) == 16, "CONFIG_LINK edtov");
KVD_STATIC_ASSERT(KVD_MB_OFF(CONFIG_LINK, citov) == 40, "CONFIG_LINK citov");
KVD_STATIC_ASSERT(sizeof(CONFIG_LINK) == 44, "CONFIG_LINK ends at byte 48");
KVD_STATIC_ASSERT(KVD_MB_OFF(CONFIG_RING_VAR, maxOrigXchg) == 8, "CONFIG_RING maxOrigXchg");
KVD_STATIC_ASSERT(KVD_MB_OFF(CONFIG_RING_VAR, maxRespXchg) == 10, "CONFIG_RING maxRespXchg");
KVD_STATIC_ASSERT(KVD_MB_OFF(CONFIG_RING_VAR, rrRegs) == 12, "CONFIG_RING rrRegs");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_SPARM_VAR, sp) == 12, "READ_SPARM bde");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_SPARM64_VAR, sp64) == 12, "READ_SPARM64 bde");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_STATUS_VAR, activeXriCnt) == 10, "READ_STATUS activeXriCnt");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_STATUS_VAR, rcvFbsyCnt) == 48, "READ_STATUS rcvFbsyCnt");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_RPI_VAR, nextRpi) == 6, "READ_RPI nextRpi");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_RPI_VAR, sp) == 12, "READ_RPI bde");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_REV_VAR, biu_rev) == 8, "READ_REV biu_rev");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_REV_VAR, endec_rev) == 20, "READ_REV endec_rev");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_REV_VAR, fcph_low) == 24, "READ_REV fcph_low");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_REV_VAR, feature_level_high) == 27, "READ_REV feature_level_high");
KVD_STATIC_ASSERT(KVD_MB_OFF(UNREG_LOGIN_VAR, rsvd1) == 6, "UNREG_LOGIN reserved");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_LA_VAR, topology) == 12, "READ_LA topology");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_LA_VAR, granted_AL_PA) == 15, "READ_LA granted_AL_PA");
KVD_STATIC_ASSERT(KVD_MB_OFF(READ_LA_VAR, lilpBde) == 16, "READ_LA lilpBde");

/* SLI-4 view of the READ_REV reply: the whole record, header included. */
typedef struct {
    uint8_t mbxOwner : 1;
    uint8_t mbxHc : 1;
    uint8_t mbxReserved : 6;
    uint8_t mbxCommand;
    uint16_t mbxStatus;
    uint32_t rsvd1 : 16; /* word at 4 */
    uint32_t sli_level : 4;
    uint32_t fcoe : 1;
    uint32_t rsvd2 : 8;
    uint32_t vpd : 1;
    uint32_t rsvd3 : 2;
    uint32_t first_hw_rev;  /* 8 */
    uint32_t second_hw_rev; /* 12 */
    uint32_t rsvd4;         /* 16 */
    uint32_t third_hw_rev;  /* 20 */
    uint8_t fcph_low;       /* 24 */
    uint8_t fcph_high;
    uint8_t feature_level_low;
    uint8_t feature_level_high;
    uint32_t rsvd5;                 /* 28 */
    uint32_t arm_fw_id_rev;         /* 32 */
    uint8_t arm_fw_name[16];        /* 36 */
    uint32_t ulp_fw_id_rev;         /* 52 */
    uint8_t ulp_fw_name[16];        /* 56 */
    uint32_t rsvd6[30];             /* 72 */
    uint32_t available_length : 24; /* 192 */
    uint32_t rsvd7 : 8;
    uint32_t phys_addr_low;       /* 196 */
    uint32_t phys_addr_high;      /* 200 */
    uint32_t returned_vpd_length; /* 204 */
    uint32_t rsvd8[12];           /* 208 */
} READ_REV_VAR_SLI4;

KVD_STATIC_ASSERT(sizeof(READ_REV_VAR_SLI4) == MAILBOX_SIZE, "SLI-4 revision view covers the record");
KVD_STATIC_ASSERT(offsetof(READ_REV_VAR_SLI4, first_hw_rev) == 8, "first_hw_rev");
KVD_STATIC_ASSERT(offsetof(READ_REV_VAR_SLI4, third_hw_rev) == 20, "third_hw_rev");
KVD_STATIC_ASSERT(offsetof(READ_REV_VAR_SLI4, fcph_low) == 24, "SLI-4 fcph_low");
KVD_STATIC_ASSERT(offsetof(READ_REV_VAR_SLI4, arm_fw_id_rev) == 32, "arm_fw_id_rev");
KVD_STATIC_ASSERT(offsetof(READ_REV_VAR_SLI4, arm_fw_name) == 36, "arm_fw_name");
KVD_STATIC_ASSERT(offsetof(READ_REV_VAR_SLI4, ulp_fw_id_rev) == 52, "ulp_fw_id_rev");
KVD_STATIC_ASSERT(offsetof(READ_REV_VAR_SLI4, ulp_fw_name) == 56, "ulp_fw_name");
KVD_STATIC_ASSERT(offsetof(READ_REV_VAR_SLI4, phys_addr_low) == 196, "phys_addr_low");
KVD_STATIC_ASSERT(offsetof(READ_REV_VAR_SLI4, returned_vpd_length) == 204, "returned_vpd_length");

/* Port-capability view of the READ_PORT_CAP reply: the whole record. */
typedef struct {
    uint8_t mbxOwner : 1;
    uint8_t mbxHc : 1;
    uint8_t mbxReserved : 6;
    uint8_t mbxCommand;
    uint16_t mbxStatus;
    uint32_t port_type : 8; /* word at 4: 0 FC, 1 FCoE */
    uint32_t media : 8;     /* 0 none, 1 optical SFP, 2 copper */
    uint32_t rsvd1 : 16;
    uint32_t speeds_supported;  /* 8: HBA API speed bits */
    uint32_t speeds_configured; /* 12 */
    uint32_t max_frame_size;    /* 16 */
    uint32_t bb_credit;         /* 20 */
    uint32_t rsvd2[58];
} PORT_CAP_VAR;

KVD_STATIC_ASSERT(sizeof(PORT_CAP_VAR) == MAILBOX_SIZE, "port-capability view covers the record");

/* The mailbox is complete: the SLI-4 operations that take it follow. */
#define KVD_MBOX_COMPLETE
#include "kvd_sli4.h"

#endif
