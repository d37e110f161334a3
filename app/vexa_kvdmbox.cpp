// The "mbox" family: single adapter mailbox commands chosen by the second
// word of the line.
//
// Each handler gets its own row and a zeroed 256-byte MAILBOX from the
// dispatcher, asks for its values one by one, fills the record, issues it on
// the current board and prints the command and status the firmware returned,
// followed by the decoded reply where there is one. A handler returns 1 when
// the mailbox came back and 0 when it was not issued or the issue failed.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"
#include "kvd_mbox_regions.h"

#define KVD_MBOX_WORDS_IN 32
#define KVD_MBOX_WORDS_OUT 64
#define KVD_SPARM_SIZE 112 /* service parameters */
#define KVD_LILP_SIZE 128  /* loop position map */

// Byte offsets of the two names that "readnv" prints. Each starts two bytes
// into its 8-byte field of the reply, so a printed name is the last six
// bytes of its own field and the first two of the next: the output has
// always looked this way and scripts compare against it.
#define KVD_READNV_PORTNAME 22
#define KVD_READNV_NODENAME 30

// Ring masks of CONFIG_RING start at byte 12, four bytes each. The record
// has room for six; more are taken as typed, running on into the following
// words, but never past the end of the 256-byte record.
#define KVD_RRREG_OFFSET 12
#define KVD_RRREG_FIT ((MAILBOX_SIZE - KVD_RRREG_OFFSET) / (int)sizeof(RR_REG))

static_assert(KVD_MB_OFF(CONFIG_RING_VAR, rrRegs) == KVD_RRREG_OFFSET, "ring masks at byte 12");
static_assert(KVD_MB_OFF(READ_NV_VAR, portname) + 2 == KVD_READNV_PORTNAME, "readnv port name");
static_assert(KVD_MB_OFF(READ_NV_VAR, nodename) + 2 == KVD_READNV_NODENAME, "readnv node name");

// The shared data area's address as the 32-bit descriptors carry it. kvd is
// linked position-dependent, so the area lies below 4 GiB and the low half
// is the whole address.
static uint32_t kvd_bigbuffer_low(void)
{
    return (uint32_t)(uintptr_t)kvd_bigbuffer;
}

// Issues the record and reports the outcome: "IssueMbox error" for a
// record that did not come back (returns 0), otherwise the command and the
// status it came back with (returns 1).
static int32_t kvd_mbox_issue(MAILBOX *mb, int v2)
{
    int32_t rc;

    mb->mbxOwner = 0;
    if (v2)
        rc = kvd_IssueMboxV2((uint32_t)cur_board, mb);
    else
        rc = kvd_IssueMbox((uint32_t)cur_board, mb, KVD_MBOX_WORDS_IN, KVD_MBOX_WORDS_OUT);
    if (rc != 0 && rc != -1) {
        printf("IssueMbox error %d\n", rc);
        return 0;
    }
    printf("Command: 0x%x  Status: 0x%x\n", mb->mbxCommand, mb->mbxStatus);
    return 1;
}

// Sets the command code and issues the record as it stands.
static int32_t kvd_mbox_simple(void *arg, uint8_t command)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    mb->mbxCommand = command;
    return kvd_mbox_issue(mb, 0);
}

#define KVD_MBOX_NOT_IMPLEMENTED(name)                                                                       \
    static KVD_HANDLER(name)                                                                                 \
    {                                                                                                        \
        return kvd_not_implemented(row, arg);                                                                \
    }

// Rows that keep their place in the table without a command behind them.
KVD_MBOX_NOT_IMPLEMENTED(writenv)
KVD_MBOX_NOT_IMPLEMENTED(reglogin)
KVD_MBOX_NOT_IMPLEMENTED(dmpctx)
KVD_MBOX_NOT_IMPLEMENTED(rundiag)

// LOAD_SM and RUN_BIU_DIAG: the record is prepared but never issued.
static KVD_HANDLER(loadsm)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    mb->mbxCommand = MBX_LOAD_SM;
    mb->mbxOwner = 0;
    return kvd_not_implemented(row, arg);
}

static KVD_HANDLER(runbiudiag)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    mb->mbxCommand = MBX_RUN_BIU_DIAG;
    mb->mbxOwner = 0;
    return kvd_not_implemented(row, arg);
}

static int32_t kvd_readnv(void *arg, int v2)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);
    uint8_t raw[MAILBOX_SIZE];
    char portname[24];
    char nodename[24];

    mb->mbxCommand = MBX_READ_NV;
    if (!kvd_mbox_issue(mb, v2))
        return 0;
    memcpy(raw, mb, sizeof(raw));
    kvd_mac_sprintf(raw + KVD_READNV_PORTNAME, portname);
    kvd_mac_sprintf(raw + KVD_READNV_NODENAME, nodename);
    printf("portname %s  nodename %s\n", portname, nodename);
    printf("prefDID: %x   hardALPA: %x\n", (unsigned)mb->un.varRDnvp.pref_DID,
           (unsigned)mb->un.varRDnvp.hardAL_PA);
    return 1;
}

static KVD_HANDLER(readnv)
{
    (void)row;
    return kvd_readnv(arg, 0);
}

static KVD_HANDLER(readnv2)
{
    (void)row;
    return kvd_readnv(arg, 1);
}

static KVD_HANDLER(kvd_initlink)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varInitLnk.link_flags = (uint16_t)getint("link flags");
    return kvd_mbox_simple(arg, MBX_INIT_LINK);
}

static KVD_HANDLER(kvd_downlink)
{
    (void)row;
    return kvd_mbox_simple(arg, MBX_DOWN_LINK);
}

static KVD_HANDLER(cfglink)
{
    CONFIG_LINK *cfg = &static_cast<MAILBOX *>(arg)->un.varCfgLnk;

    (void)row;
    cfg->edtov = (uint32_t)getint("edtov");
    cfg->arbtov = (uint32_t)getint("arbtov");
    cfg->ratov = (uint32_t)getint("ratov");
    cfg->rttov = (uint32_t)getint("rttov");
    cfg->altov = (uint32_t)getint("altov");
    cfg->crtov = (uint32_t)getint("crtov");
    cfg->citov = (uint32_t)getint("citov");
    cfg->myId = 0;
    return kvd_mbox_simple(arg, MBX_CONFIG_LINK);
}

static KVD_HANDLER(cfgring)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);
    CONFIG_RING_VAR *ring = &mb->un.varCfgRing;
    uint8_t *record = reinterpret_cast<uint8_t *>(mb);
    RR_REG mask;

    (void)row;
    ring->ring = (uint32_t)getint("Ring") & 0xF;
    ring->profile = 0;
    ring->maxOrigXchg = 0;
    ring->maxRespXchg = 0;
    ring->recvNotify = 1;
    ring->numMask = (uint32_t)getint("num masks") & 0xFF;
    for (int i = 0; i < (int)ring->numMask && i < KVD_RRREG_FIT; i++) {
        printf("Mask %d\n", i);
        mask.rmask = 0xFF;
        mask.rval = (uint8_t)getint("rctl");
        mask.tmask = 0xFF;
        mask.tval = (uint8_t)getint("type");
        memcpy(record + KVD_RRREG_OFFSET + i * sizeof(RR_REG), &mask, sizeof(mask));
    }
    return kvd_mbox_simple(arg, MBX_CONFIG_RING);
}

static KVD_HANDLER(kvd_resetring)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varRstRing.ring_no = (uint32_t)getint("Ring");
    return kvd_mbox_simple(arg, MBX_RESET_RING);
}

static KVD_HANDLER(rdcfg)
{
    (void)row;
    return kvd_mbox_simple(arg, MBX_READ_CONFIG);
}

static KVD_HANDLER(rdrcfg)
{
    (void)row;
    return kvd_mbox_simple(arg, MBX_READ_RCONFIG);
}

// Service parameters land in the shared data area: seven rows of four words.
static void kvd_print_sparm(void)
{
    uint32_t words[KVD_SPARM_SIZE / 4];

    memcpy(words, kvd_bigbuffer, sizeof(words));
    for (uint32_t i = 0; i < KVD_SPARM_SIZE / 4; i += 4)
        printf("%4x: 0x%08x  0x%08x  0x%08x  0x%08x\n", i * 4, words[i], words[i + 1], words[i + 2],
               words[i + 3]);
}

static KVD_HANDLER(rdsparm)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varRdSparm.sp.bdeAddress = kvd_bigbuffer_low();
    mb->un.varRdSparm.sp.bdeSize = KVD_SPARM_SIZE;
    if (!kvd_mbox_simple(arg, MBX_READ_SPARM))
        return 0;
    kvd_print_sparm();
    return 1;
}

static KVD_HANDLER(rdsparm64)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);
    uint64_t address = (uint64_t)(uintptr_t)kvd_bigbuffer;

    (void)row;
    mb->un.varRdSparm64.sp64.tus.f.bdeSize = KVD_SPARM_SIZE;
    mb->un.varRdSparm64.sp64.addrLow = (uint32_t)address;
    mb->un.varRdSparm64.sp64.addrHigh = (uint32_t)(address >> 32);
    if (!kvd_mbox_simple(arg, MBX_READ_SPARM64))
        return 0;
    kvd_print_sparm();
    return 1;
}

static KVD_HANDLER(rdstat)
{
    (void)row;
    return kvd_mbox_simple(arg, MBX_READ_STATUS);
}

static KVD_HANDLER(rdrpi)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varRdRPI.reqRpi = 0;
    mb->un.varRdRPI.sp.bdeAddress = kvd_bigbuffer_low();
    mb->un.varRdRPI.sp.bdeSize = KVD_SPARM_SIZE;
    return kvd_mbox_simple(arg, MBX_READ_RPI);
}

static KVD_HANDLER(rdxri)
{
    (void)row;
    return kvd_mbox_simple(arg, MBX_READ_XRI);
}

static KVD_HANDLER(rdrev)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);
    const READ_REV_VAR *rev = &mb->un.varRdRev;

    (void)row;
    mb->un.varRdRev.version = 1;
    if (!kvd_mbox_simple(arg, MBX_READ_REV))
        return 0;
    printf("biuRev:%d smRev:0x%x smFmRev:%d endecRev:0x%x fcpHigh:%d fcpLow:%d\n", (int)rev->biu_rev,
           rev->sm_rev, (int)rev->fw_rev, rev->endec_rev, rev->fcph_high, rev->fcph_low);
    return 1;
}

// READ_REV as SLI-4 firmware answers it, read through the SLI-4 view of the
// whole record. The record is the handler's own, and no command and status
// line is printed.
static KVD_HANDLER(rdrev2)
{
    MAILBOX mb;
    READ_REV_VAR_SLI4 rev;
    char arm_name[sizeof(rev.arm_fw_name) + 1];
    char ulp_name[sizeof(rev.ulp_fw_name) + 1];
    int32_t rc;

    (void)row;
    (void)arg;
    memset(&mb, 0, sizeof(mb));
    mb.mbxCommand = MBX_READ_REV;
    mb.mbxOwner = 0;
    rc = kvd_IssueMboxV2((uint32_t)cur_board, &mb);
    if (rc != 0 && rc != -1) {
        printf("IssueMbox error %d\n", rc);
        return 0;
    }
    memcpy(&rev, &mb, sizeof(rev));
    printf("vpd %d fcoe %d sli_level %d\n", (int)rev.vpd, (int)rev.fcoe, (int)rev.sli_level);
    printf("first hw rev  0x%08x\n", rev.first_hw_rev);
    printf("second hw rev 0x%08x\n", rev.second_hw_rev);
    printf("third hw rev 0x%08x\n", rev.third_hw_rev);
    printf("feature level high  %d\n", rev.feature_level_high);
    printf("feature level low   %d\n", rev.feature_level_low);
    printf("fcph high %d\n", rev.fcph_high);
    printf("fcph low  %d\n", rev.fcph_low);
    printf("arm fw id and rev x%08x name %-8s\n", rev.arm_fw_id_rev,
           KVD_FIELDTEXT(arm_name, rev.arm_fw_name));
    printf("ulp fw id and rev x%08x name %-8s\n", rev.ulp_fw_id_rev,
           KVD_FIELDTEXT(ulp_name, rev.ulp_fw_name));
    return 1;
}

static KVD_HANDLER(rdlnkstat)
{
    (void)row;
    return kvd_mbox_simple(arg, MBX_READ_LNK_STAT);
}

static KVD_HANDLER(ureglogin)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varUnregLogin.rpi = (uint16_t)getint("rpi");
    mb->un.varUnregLogin.rsvd1 = 0;
    return kvd_mbox_simple(arg, MBX_UNREG_LOGIN);
}

static KVD_HANDLER(rdla)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varReadLA.lilpBde.bdeAddress = kvd_bigbuffer_low();
    mb->un.varReadLA.lilpBde.bdeSize = KVD_LILP_SIZE;
    return kvd_mbox_simple(arg, MBX_READ_LA);
}

static KVD_HANDLER(clrla)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varClearLA.eventTag = 0;
    return kvd_mbox_simple(arg, MBX_CLEAR_LA);
}

static KVD_HANDLER(kvd_restart)
{
    (void)row;
    return kvd_mbox_simple(arg, MBX_RESTART);
}

// Firmware trace mask: the key word goes first, always as it stands.
static KVD_HANDLER(setmask)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varWords[0] = MBX_SETMASK_KEY;
    mb->un.varWords[1] = getxint("trace mask");
    mb->un.varWords[2] = (uint32_t)getint("ring number");
    return kvd_mbox_simple(arg, MBX_SET_MASK);
}

static KVD_HANDLER(setdebug)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varWords[1] = (uint32_t)getint("addr");
    mb->un.varWords[2] = (uint32_t)getint("value");
    return kvd_mbox_simple(arg, MBX_SET_DEBUG);
}

// Port capabilities come back through the V2 call over the whole record.
static KVD_HANDLER(readportcap)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);
    PORT_CAP_VAR cap;

    (void)row;
    mb->mbxCommand = MBX_READ_PORT_CAP;
    if (!kvd_mbox_issue(mb, 1))
        return 0;
    memcpy(&cap, mb, sizeof(cap));
    printf("port type         %s\n", cap.port_type == 0 ? "FC" : cap.port_type == 1 ? "FCoE" : "unknown");
    printf("media             %s\n", cap.media == 0   ? "none"
                                     : cap.media == 1 ? "optical SFP"
                                     : cap.media == 2 ? "copper"
                                                      : "unknown");
    printf("speeds supported  x%08x\n", cap.speeds_supported);
    printf("speeds configured x%08x\n", cap.speeds_configured);
    printf("max frame size    %u\n", cap.max_frame_size);
    printf("bb credit         %u\n", cap.bb_credit);
    return 1;
}

// The event log: its status first, then each entry it holds, oldest first,
// one mailbox per entry, paged by num_lines entries.
static KVD_HANDLER(rdevtlog)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);
    uint32_t held;

    (void)row;
    if (!kvd_mbox_simple(arg, MBX_READ_EVENT_LOG_STATUS))
        return 0;
    if (mb->mbxStatus != 0)
        return 1;
    held = mb->un.varWords[0];
    printf("entries %u of %u  next sequence %u  lost %u\n", held, mb->un.varWords[1], mb->un.varWords[2],
           mb->un.varWords[3]);
    for (uint32_t i = 0; i < held; i++) {
        memset(mb, 0, sizeof(*mb));
        mb->mbxCommand = MBX_READ_EVENT_LOG;
        mb->un.varWords[0] = i;
        mb->mbxOwner = 0;
        if (kvd_IssueMbox((uint32_t)cur_board, mb, KVD_MBOX_WORDS_IN, KVD_MBOX_WORDS_OUT) != 0 ||
            mb->mbxStatus != 0) {
            printf("entry %u: Status: 0x%x\n", i, mb->mbxStatus);
            break;
        }
        printf("%4u: seq %u  code x%08x  data x%08x\n", i, mb->un.varWords[1], mb->un.varWords[2],
               mb->un.varWords[3]);
        if (kvd_page_break((int)i))
            break;
    }
    return 1;
}

static KVD_HANDLER(wrevtlog)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varWords[0] = getxint("event code");
    mb->un.varWords[1] = getxint("event data");
    if (!kvd_mbox_simple(arg, MBX_WRITE_EVENT_LOG))
        return 0;
    if (mb->mbxStatus == 0)
        printf("sequence %u\n", mb->un.varWords[2]);
    return 1;
}

// A firmware variable: the reply holds the value it replaced.
static KVD_HANDLER(setvar)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);

    (void)row;
    mb->un.varWords[0] = (uint32_t)getint("variable");
    mb->un.varWords[1] = getxint("value");
    if (!kvd_mbox_simple(arg, MBX_SET_VARIABLE))
        return 0;
    if (mb->mbxStatus == 0)
        printf("variable %u: was x%08x now x%08x\n", mb->un.varWords[0], mb->un.varWords[2],
               mb->un.varWords[1]);
    return 1;
}

// Row 0 is the fallback for an unknown word and is never matched by name.
#define KVD_MBOX_TABLE_ROW(word, handler, code) {word, handler},
cmdinfo mboxinfo[] = {KVD_MBOX_ROWS(KVD_MBOX_TABLE_ROW)};
#undef KVD_MBOX_TABLE_ROW

#define KVD_MBOX_CODE(word, handler, code) code,
const uint8_t mboxcodes[] = {KVD_MBOX_ROWS(KVD_MBOX_CODE)};
#undef KVD_MBOX_CODE

static_assert(g_mboxinfo_array_size == 40, "the mailbox family has 40 rows");
static_assert(sizeof(mboxinfo) / sizeof(mboxinfo[0]) == g_mboxinfo_array_size,
              "one row per mailbox sub-command");

KVD_HANDLER(mbinval)
{
    (void)row;
    (void)arg;
    printf("Invalid command: %s   supported commands include:\n", margc > 1 ? margv[1] : "");
    for (int i = 1; i < g_mboxinfo_array_size; i++) {
        printf("%10s ", mboxinfo[i].c_string);
        if (i % 6 == 0)
            printf("\n");
    }
    printf("\n");
    return 0;
}

KVD_HANDLER(mbox)
{
    MAILBOX record;

    (void)row;
    (void)arg;
    if (margc < 2 || margc > 3) {
        printf("Usage: mbox command [brd]\n");
        for (int i = 1; i < g_mboxinfo_array_size; i++)
            printf("%s\n", mboxinfo[i].c_string);
        return KVD_USAGE;
    }
    // The board chosen here stays selected for the commands that follow.
    if (margc == 3)
        cur_board = atoi(margv[2]);
    memset(&record, 0, sizeof(record));
    for (int i = 1; i < g_mboxinfo_array_size; i++) {
        if (strcmp(margv[1], mboxinfo[i].c_string) == 0) {
            (void)mboxinfo[i].c_routine(&mboxinfo[i], &record);
            return KVD_OK;
        }
    }
    (void)mbinval(&mboxinfo[0], &record);
    return KVD_OK;
}
