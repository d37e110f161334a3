// The mbox rows over adapter memory and configuration regions: the memory
// dump (DUMP_MEMORY, plain or V2 call), region reads through the
// region-read call, region writes through the region-write call and the
// configuration update. Each row prints a status line and what it read or
// changed, and returns 1 when the request came back, 0 otherwise.
#include <stdint.h>
#include <string.h>

#include "kvd_mbox_regions.h"

// The memory dump's data follow the record in the shared data area: up to
// 64 words come back through the plain call (32 words in, 128 out), larger
// windows through the V2 call, as far as the area holds.
#define KVD_DMPMEM_WORDS_OUT 128
#define KVD_DMPMEM_PLAIN_MAX (KVD_DMPMEM_WORDS_OUT - MAILBOX_WORDS)
#define KVD_DMPMEM_MAX ((KVD_DATA_AREA_SIZE - MAILBOX_SIZE) / 4)
#define KVD_DMPMEM_WORDS_IN 32
#define KVD_DMPMEM_RETRIES 5 /* as the mailbox wrappers */
#define KVD_DMPMEM_DELAY 100

// Words as rows of four, laid out as rdsparm prints its rows, paged by
// num_lines rows; a short last row prints only the words it has.
static void kvd_print_words(const uint8_t *bytes, uint32_t length, uint32_t base)
{
    uint32_t words[4];

    for (uint32_t off = 0, line = 0; off < length; off += 16, line++) {
        uint32_t n = length - off >= 16 ? 4 : (length - off + 3) / 4;

        memset(words, 0, sizeof(words));
        memcpy(words, bytes + off, length - off >= 16 ? 16 : length - off);
        printf("%4x: 0x%08x", base + off, words[0]);
        for (uint32_t i = 1; i < n; i++)
            printf("  0x%08x", words[i]);
        printf("\n");
        if (kvd_page_break((int)line))
            break;
    }
}

// Adapter memory: the record goes into the shared data area with room for
// the data behind it; the status line is printed as for every row.
KVD_HANDLER(dmpmem)
{
    MAILBOX *mb = static_cast<MAILBOX *>(arg);
    uint32_t offset, words, got;
    int32_t rc;

    (void)row;
    offset = getxint("offset");
    words = (uint32_t)getint("words");
    if (words == 0 || words > KVD_DMPMEM_MAX) {
        printf("words must be 1 to %d\n", KVD_DMPMEM_MAX);
        return 0;
    }
    mb->mbxCommand = MBX_DUMP_MEMORY;
    mb->mbxOwner = 0;
    mb->un.varDmp.words[0] = MBX_DUMP_TYPE_MEMORY;
    mb->un.varDmp.words[1] = offset;
    mb->un.varDmp.words[2] = words;
    memset(kvd_bigbuffer, 0, MAILBOX_SIZE + (size_t)words * 4);
    memcpy(kvd_bigbuffer, mb, sizeof(*mb));
    if (words <= KVD_DMPMEM_PLAIN_MAX || (uint32_t)cur_board >= kvd_bound_boards(kvd_pci_brds))
        rc = kvd_IssueMbox((uint32_t)cur_board, (MAILBOX *)kvd_bigbuffer, KVD_DMPMEM_WORDS_IN,
                           KVD_DMPMEM_WORDS_OUT);
    else
        rc = KVD_IssueMboxWithRetryV2((uint32_t)cur_board, (MAILBOX *)kvd_bigbuffer, MAILBOX_WORDS + words,
                                      KVD_DMPMEM_RETRIES, KVD_DMPMEM_DELAY);
    if (rc == KVD_RC_MBX_RETRIES && words > KVD_DMPMEM_PLAIN_MAX)
        rc = -1;
    if (rc != 0 && rc != -1) {
        printf("IssueMbox error %d\n", rc);
        return 0;
    }
    memcpy(mb, kvd_bigbuffer, sizeof(*mb));
    printf("Command: 0x%x  Status: 0x%x\n", mb->mbxCommand, mb->mbxStatus);
    if (mb->mbxStatus != 0)
        return 1;
    got = mb->un.varDmp.words[3];
    if (got > words)
        got = words;
    printf("offset x%x: %u words\n", offset, got);
    kvd_print_words(kvd_bigbuffer + MAILBOX_SIZE, got * 4, offset);
    return 1;
}

// Configuration regions are read through the dump-memory command: the
// status line shows that command and the status the firmware gave it.
static int32_t kvd_region_read(uint32_t region, uint32_t offset, uint32_t length)
{
    uint8_t buffer[KVD_REGION_MAX];
    uint32_t size = length;
    uint16_t status = 0;
    uint32_t rc;

    memset(buffer, 0, sizeof(buffer));
    rc =
        getRegionData((uint32_t)cur_board, KVD_REGION_TYPE_CONFIG, region, offset, buffer, &size, &status, 0);
    if (rc != 0) {
        printf("IssueMbox error %d\n", (int)rc);
        return 0;
    }
    printf("Command: 0x%x  Status: 0x%x\n", MBX_DUMP_MEMORY, status);
    if (size > length)
        size = length;
    printf("region %u offset %u: %u bytes\n", region, offset, size);
    kvd_print_words(buffer, size, offset);
    return 1;
}

// The whole region, as much of it as the board has.
KVD_HANDLER(dmpmem_ext)
{
    uint32_t region;

    (void)row;
    (void)arg;
    region = (uint32_t)getint("region");
    return kvd_region_read(region, 0, KVD_REGION_MAX);
}

// A window of a region; the length is bounded by the largest region.
KVD_HANDLER(dmpmem3_ext)
{
    uint32_t region, offset, length;

    (void)row;
    (void)arg;
    region = (uint32_t)getint("region");
    offset = (uint32_t)getint("offset");
    length = (uint32_t)getint("length");
    if (length == 0 || length > KVD_REGION_MAX) {
        printf("length must be 1 to %d\n", KVD_REGION_MAX);
        return 0;
    }
    return kvd_region_read(region, offset, length);
}

// Region writes report the library's failure as an issue failure, and
// otherwise the firmware's status and what changed.
static int32_t kvd_region_done(uint32_t rc, uint16_t status)
{
    if (rc != 0) {
        printf("IssueMbox error %d\n", (int)rc);
        return 0;
    }
    printf("Status: 0x%x\n", status);
    return 1;
}

// Fills a window of a region with one byte value, as wslim does memory.
KVD_HANDLER(udtcfg_ext)
{
    uint8_t buffer[KVD_REGION_MAX];
    uint32_t region, offset, length, value;
    uint16_t status = 0;

    (void)row;
    (void)arg;
    region = (uint32_t)getint("region");
    offset = (uint32_t)getint("offset");
    length = (uint32_t)getint("length");
    value = getxint("value");
    if (length == 0 || length > KVD_REGION_MAX) {
        printf("length must be 1 to %d\n", KVD_REGION_MAX);
        return 0;
    }
    memset(buffer, (int)(value & 0xFF), length);
    if (!kvd_region_done(setRegionData((uint32_t)cur_board, KVD_REGION_TYPE_CONFIG, region, offset, buffer,
                                       length, &status, 0),
                         status))
        return 0;
    printf("region %u offset %u: %u bytes of x%02x written\n", region, offset, length, value & 0xFF);
    return 1;
}

// Words typed one by one, written through the configuration update.
KVD_HANDLER(udtcfg2_ext)
{
    uint32_t words[KVD_REGION_MAX / 4];
    uint32_t region, offset, count;
    uint16_t status = 0;
    uint8_t bytes[KVD_REGION_MAX];

    (void)row;
    (void)arg;
    region = (uint32_t)getint("region");
    offset = (uint32_t)getint("offset");
    count = (uint32_t)getint("words");
    if (count == 0 || count > KVD_REGION_MAX / 4) {
        printf("words must be 1 to %d\n", KVD_REGION_MAX / 4);
        return 0;
    }
    for (uint32_t i = 0; i < count; i++)
        words[i] = getxint("word");
    memcpy(bytes, words, count * 4);
    if (!kvd_region_done(KVD_IssueUpdateCfgMBox((uint32_t)cur_board, KVD_UPDATE_CFG_WRITE, region, offset,
                                                bytes, count * 4, &status),
                         status))
        return 0;
    printf("region %u offset %u: %u words written\n", region, offset, count);
    return 1;
}

// The region back to the contents the adapter was built with.
KVD_HANDLER(udtcfg3_ext)
{
    uint32_t region;
    uint16_t status = 0;

    (void)row;
    (void)arg;
    region = (uint32_t)getint("region");
    if (!kvd_region_done(
            KVD_IssueUpdateCfgMBox((uint32_t)cur_board, KVD_UPDATE_CFG_RESTORE, region, 0, NULL, 0, &status),
            status))
        return 0;
    printf("region %u restored\n", region);
    return 1;
}
