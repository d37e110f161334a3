// PCI configuration space, the four host registers, control registers by
// offset, adapter memory, and the board and dump environments.
//
// Numbers are read with base detection (decimal, 0x hexadecimal, leading-0
// octal); text that is not a number reads as 0. Offsets and values go to the
// library as typed; only counts that would overrun the shell's own buffers
// are refused, with the usage text.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

#define KVD_PCI_READ_MAX 1024 /* rdpci's buffer */

static uint32_t kvd_strtou32(const char *text)
{
    return (uint32_t)strtoul(text, NULL, 0);
}

// Words four to a row, each row led by the byte offset of its first word.
static void kvd_print_cfg_words(const uint8_t *bytes, uint32_t words, uint32_t base)
{
    for (uint32_t i = 0; i < words; i++) {
        uint32_t word;

        if (i % 4 == 0)
            printf("\n%4x: ", base + i * 4);
        memcpy(&word, bytes + i * 4, sizeof(word));
        printf("0x%08lx  ", (unsigned long)word);
    }
    printf("\n");
}

KVD_HANDLER(rdallpci)
{
    uint8_t cfg[KVD_PCI_CFG_SIZE];

    (void)row;
    (void)arg;
    memset(cfg, 0, sizeof(cfg));
    if (KVD_ReadPciCfg((uint32_t)cur_board, cfg, 0, sizeof(cfg)) != 0)
        return kvd_cannot_issue();
    kvd_print_cfg_words(cfg, sizeof(cfg) / 4, 0);
    return KVD_OK;
}

KVD_HANDLER(rdpci)
{
    uint8_t cfg[KVD_PCI_READ_MAX];
    uint32_t offset = 0, count = 0;

    (void)row;
    (void)arg;
    if (margc == 3) {
        offset = kvd_strtou32(margv[1]);
        count = kvd_strtou32(margv[2]);
    }
    if (margc != 3 || count > sizeof(cfg)) {
        printf("Usage: rdpci offset count\n");
        return KVD_USAGE;
    }
    memset(cfg, 0, sizeof(cfg));
    if (KVD_ReadPciCfg((uint32_t)cur_board, cfg, offset, count) != 0)
        return kvd_cannot_issue();
    kvd_print_cfg_words(cfg, (count + 3) / 4, offset);
    return KVD_OK;
}

KVD_HANDLER(wrpci)
{
    uint32_t value;

    (void)row;
    (void)arg;
    if (margc != 3) {
        printf("Usage: wrpci offset value\n");
        return KVD_USAGE;
    }
    value = kvd_strtou32(margv[2]);
    if (WritePciCfg((uint32_t)cur_board, &value, kvd_strtou32(margv[1]), sizeof(value)) != 0)
        return kvd_cannot_issue();
    return KVD_OK;
}

static int32_t kvd_read_host_reg(uint32_t offset)
{
    uint32_t value = 0;

    if (ReadCtlReg((uint32_t)cur_board, &value, offset) != 0)
        return kvd_cannot_issue();
    printf("0x%x\n", value);
    return KVD_OK;
}

// Writes the register, then shows its new value through the read handler.
static int32_t kvd_write_host_reg(uint32_t offset, const char *usage, cmdinfo *row, void *arg,
                                  int32_t (*reread)(cmdinfo *, void *))
{
    uint32_t value;

    if (margc != 2) {
        printf("%s\n", usage);
        return KVD_USAGE;
    }
    value = kvd_strtou32(margv[1]);
    if (WriteCtlReg((uint32_t)cur_board, &value, offset) != 0)
        return kvd_cannot_issue();
    return reread(row, arg);
}

KVD_HANDLER(rdha)
{
    (void)row;
    (void)arg;
    return kvd_read_host_reg(KVD_REG_HA);
}

KVD_HANDLER(rdca)
{
    (void)row;
    (void)arg;
    return kvd_read_host_reg(KVD_REG_CA);
}

KVD_HANDLER(rdhs)
{
    (void)row;
    (void)arg;
    return kvd_read_host_reg(KVD_REG_HS);
}

KVD_HANDLER(rdhc)
{
    (void)row;
    (void)arg;
    return kvd_read_host_reg(KVD_REG_HC);
}

KVD_HANDLER(wrha)
{
    return kvd_write_host_reg(KVD_REG_HA, "Usage: wrha value", row, arg, rdha);
}

KVD_HANDLER(wrca)
{
    return kvd_write_host_reg(KVD_REG_CA, "Usage: wrca value", row, arg, rdca);
}

KVD_HANDLER(wrhs)
{
    return kvd_write_host_reg(KVD_REG_HS, "Usage: wrhs value", row, arg, rdhs);
}

KVD_HANDLER(wrhc)
{
    return kvd_write_host_reg(KVD_REG_HC, "Usage: wrhc value", row, arg, rdhc);
}

KVD_HANDLER(rffreg)
{
    uint32_t value = 0;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: rffreg offset\n");
        return KVD_USAGE;
    }
    if (ReadCtlReg((uint32_t)cur_board, &value, kvd_strtou32(margv[1])) != 0)
        return kvd_cannot_issue();
    printf("0x%08lx\n", (unsigned long)value);
    return KVD_OK;
}

KVD_HANDLER(wffreg)
{
    uint32_t value;

    (void)row;
    (void)arg;
    if (margc != 3) {
        printf("Usage: wffreg offset value\n");
        return KVD_USAGE;
    }
    value = kvd_strtou32(margv[2]);
    if (WriteCtlReg((uint32_t)cur_board, &value, kvd_strtou32(margv[1])) != 0)
        return kvd_cannot_issue();
    return KVD_OK;
}

KVD_HANDLER(wslim)
{
    uint32_t offset = 0, count = 0, value = 0;

    (void)row;
    (void)arg;
    if (margc == 4) {
        offset = kvd_strtou32(margv[1]);
        count = kvd_strtou32(margv[2]);
        value = kvd_strtou32(margv[3]);
    }
    if (margc != 4 || count > KVD_DATA_AREA_SIZE) {
        printf("Usage: wslim offset count value\n");
        return KVD_USAGE;
    }
    memset(kvd_bigbuffer, (int)(value & 0xff), count);
    if (WriteMem((uint32_t)cur_board, kvd_bigbuffer, offset, count) != 0)
        return kvd_cannot_issue();
    return KVD_OK;
}

static void kvd_print_mode(uint32_t mode)
{
    switch (mode) {
    case 1:
        printf("Online Mode\n");
        break;
    case 2:
        printf("Offline Mode\n");
        break;
    case 3:
        printf("Warm Start Mode\n");
        break;
    case 4:
        printf("Force Diagnostic Dump\n");
        break;
    default:
        break;
    }
}

// Flag 5 is not in the usage text but is passed on all the same.
#define KVD_SDUMP_FLAG_LIMIT 6

KVD_HANDLER(sdump)
{
    uint32_t flag = 0, mode;

    (void)row;
    (void)arg;
    if (margc == 2)
        flag = kvd_strtou32(margv[1]);
    if (margc != 2 || flag >= KVD_SDUMP_FLAG_LIMIT) {
        printf("Usage: sdump flag\n");
        printf("flag:  0x0  Show  0x1 Online  0x2 Offline  0x3 Warm Start  0x4 Force Dump\n");
        return KVD_USAGE;
    }
    mode = KVD_SetDumpEnv((uint32_t)cur_board, flag);
    if (mode == 0)
        return kvd_cannot_issue();
    kvd_print_mode(mode);
    return KVD_OK;
}

#define KVD_SDIAG_BOARD 0x10 /* this board only */

static int32_t kvd_sdiag_usage(void)
{
    printf("Usage: sdiag flag \n");
    printf("flag:  0x0  Show All   0x1  All Online   0x2  All Offline\n");
    printf("       0x10 Brd Show   0x11 Brd Online   0x12 Brd Offline\n");
    return KVD_USAGE;
}

KVD_HANDLER(sdiag)
{
    uint32_t flag, mode;

    (void)row;
    (void)arg;
    if (margc != 2)
        return kvd_sdiag_usage();
    if (kvd_pci_brds == 0)
        return KVD_OK;
    flag = kvd_strtou32(margv[1]);
    if ((flag & ~(uint32_t)KVD_SDIAG_BOARD) > 2)
        return kvd_sdiag_usage();
    if (flag & KVD_SDIAG_BOARD)
        mode = SetBrdEnv((uint32_t)cur_board, flag & 3);
    else
        mode = SetDiagEnv(flag);
    if (mode == 0)
        return kvd_cannot_issue();
    if (mode == 1 || mode == 2)
        kvd_print_mode(mode);
    return KVD_OK;
}
