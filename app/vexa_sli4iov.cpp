// The "sli4iov" family: the object store of SLI-4 adapters of interface
// type 2 (firmware, boot code, VPD, expansion ROMs, dumps).
//
// Every operation is one SLI-4 configuration request embedded in a MAILBOX
// (code 0x9B), with its data area in the same host allocation right behind
// the 256-byte record, issued through KVD_IssueMboxWithRetryV2. The request
// starts at record byte 24; the response overwrites it in place.
//
// Host files: output files are created without following a symbolic link at
// their name (a link planted at "/tmp/dump.bin" must not redirect the dump);
// a partly read object leaves the partial file behind.
#include <errno.h>
#include <fcntl.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "kvd_cmds.h"
#include "kvd_sli4cmds.h"

#define KVD_IOV_RETRIES 5
#define KVD_IOV_DELAY 100
#define KVD_IOV_NOT_SUPPORTED 2
#define KVD_IOV_NAME_CLEAR 26 /* bytes of objectName cleared before the copy */
#define KVD_IOV_QUICK_BUFSIZE 1536
#define KVD_IOV_LIST_ENTRY ((uint32_t)sizeof(read_object_list_descriptor))
#define KVD_IOV_DUMP_OBJECT "/dbg/dump.bin"
#define KVD_IOV_DUMP_FILE "/tmp/dump.bin"
#define KVD_IOV_FILE_MODE 0700

static_assert(SLI4_OBJ_REQ_LEN ==
                  offsetof(gorvik_common_read_object_cmd, hbd) - sizeof(gorvik_common_request_header),
              "request length without descriptors");

const char *quickList[] = {
    "/prg/srb.prg",       "/prg/sp_boot.prg",  "/prg/sp_common.prg", "/prg/sp_fc3.prg",
    "/prg/sp_fc4.prg",    "/prg/sp_ntr.prg",   "/prg/sp_fbt.prg",    "/prg/sp_diags.prg",
    "/prg/ulp_fc3.prg",   "/prg/ulp_fc4.prg",  "/prg/ulp_ntr.prg",   "/prg/ulp_fbt.prg",
    "/prg/ulp_diags.prg", "/prg/wol.prg",      "/vpd/fc_pf.vpd",     "/vpd/fc_bf.vpd",
    "/vpd/fc_vf.vpd",     "/vpd/ntr_pf.vpd",   "/vpd/ntr_bf.vpd",    "/vpd/ntr_vf.vpd",
    "/vpd/iscsi_pf.vpd",  "/vpd/iscsi_bf.vpd", "/vpd/iscsi_vf.vpd",  "/xrom/fc.xrom",
    "/xrom/ntr.xrom",     "/xrom/iscsi.xrom",  KVD_IOV_DUMP_OBJECT,  NULL,
};

// The name is copied as it stands, NUL included. A name too long for the
// field fills it without a terminator, and the firmware refuses it.
void object_name_swap(char *object_name, const char *name)
{
    size_t len = strnlen(name, SLI4_OBJECT_NAME_SIZE);

    memset(object_name, 0, KVD_IOV_NAME_CLEAR);
    if (len < SLI4_OBJECT_NAME_SIZE)
        len++;
    memcpy(object_name, name, len);
}

void translateType(uint32_t type, uint32_t info, char *type_text, char *info_text)
{
    switch (type) {
    case SLI4_OBJ_TYPE_NORMAL:
        snprintf(type_text, KVD_TYPETEXT_SIZE, "Normal");
        snprintf(info_text, KVD_TYPETEXT_SIZE, "bytes: %d", (int32_t)info);
        break;
    case SLI4_OBJ_TYPE_DIRECTORY:
        snprintf(type_text, KVD_TYPETEXT_SIZE, "Directory");
        snprintf(info_text, KVD_TYPETEXT_SIZE, "elements: %d", (int32_t)info);
        break;
    case SLI4_OBJ_TYPE_LINKED:
        snprintf(type_text, KVD_TYPETEXT_SIZE, "Linked");
        snprintf(info_text, KVD_TYPETEXT_SIZE, "handle: %d", (int32_t)info);
        break;
    default:
        snprintf(type_text, KVD_TYPETEXT_SIZE, "%s - x%08x", "Unknown", type);
        snprintf(info_text, KVD_TYPETEXT_SIZE, "info: x%08x", info);
        break;
    }
}

// The request buffer: the record, then `data` bytes of data area.
static uint8_t *kvd_iov_alloc(uint32_t data)
{
    uint8_t *buffer = (uint8_t *)calloc(1, MAILBOX_SIZE + (size_t)data);

    if (!buffer)
        printf("malloc error: embedded sli config mailbox (%d)\n", (int32_t)data);
    return buffer;
}

// Clears the record and sets it up for an embedded object request.
static void kvd_iov_record(uint8_t *buffer)
{
    MAILBOX mb;

    memset(&mb, 0, sizeof(mb));
    mb.mbxCommand = MBX_SLI4_CONFIG;
    mb.mbxOwner = 0;
    mb.un.varSli4Cfg.emb = 1;
    mb.un.varSli4Cfg.sge_count = 0;
    mb.un.varSli4Cfg.payload_length = SLI4_EMBEDDED_SIZE;
    memcpy(buffer, &mb, sizeof(mb));
}

static void kvd_iov_header(gorvik_common_request_header *hdr, uint8_t op, uint32_t request_length)
{
    hdr->opCode = op;
    hdr->subSystem = SLI4_SUBSYSTEM_COMMON;
    hdr->request_length = request_length;
}

template <class Request> static void kvd_iov_put(uint8_t *buffer, const Request &req)
{
    static_assert(sizeof(Request) <= SLI4_EMBEDDED_SIZE, "request fits the record");
    memcpy(buffer + SLI4_EMBEDDED_OFFSET, &req, sizeof(req));
}

template <class Response> static Response kvd_iov_get(const uint8_t *buffer)
{
    Response rsp;

    static_assert(sizeof(Response) <= SLI4_EMBEDDED_SIZE, "response fits the record");
    memcpy(&rsp, buffer + SLI4_EMBEDDED_OFFSET, sizeof(rsp));
    return rsp;
}

static int32_t kvd_iov_issue(uint8_t *buffer, uint32_t data_bytes)
{
    return KVD_IssueMboxWithRetryV2((uint32_t)cur_board, (MAILBOX *)buffer, MAILBOX_WORDS + data_bytes / 4,
                                    KVD_IOV_RETRIES, KVD_IOV_DELAY);
}

static void kvd_iov_error(const char *what, const char *name, int32_t rc, const uint8_t *buffer)
{
    gorvik_common_response_header hdr = kvd_iov_get<gorvik_common_response_header>(buffer);

    kvd_progress_end(); // the error starts a line of its own at a terminal
    printf("%s %s: rc %d status x%04x additionalStatus x%04x\n", what, name, rc, hdr.status,
           hdr.additionalStatus);
}

int32_t getObjectSize(const char *name, uint32_t *size)
{
    gorvik_common_read_object_cmd req;
    uint8_t buffer[MAILBOX_SIZE];

    if (strlen(name) > KVD_SLI4IOV_NAME_LIMIT) {
        printf("object name too big, limit %d\n", KVD_SLI4IOV_NAME_LIMIT);
        return 1;
    }
    kvd_iov_record(buffer);
    memset(&req, 0, sizeof(req));
    kvd_iov_header(&req.hdr, SLI4_OPC_READ_OBJECT, SLI4_OBJ_REQ_LEN);
    req.desiredReadLength = 0;
    req.readOffset = 0;
    object_name_swap(req.objectName, name);
    kvd_iov_put(buffer, req);
    int32_t rc = kvd_iov_issue(buffer, 0);
    if (rc != 0) {
        kvd_iov_error("Error reading", name, rc, buffer);
        return rc;
    }
    *size = kvd_iov_get<gorvik_common_read_object_rsp>(buffer).actualReadLength;
    return 0;
}

// Reads up to `want` bytes, fewer only at the end of the file; -1 on error.
static ssize_t kvd_iov_read_full(int fd, uint8_t *dest, size_t want)
{
    size_t got = 0;

    while (got < want) {
        ssize_t n = read(fd, dest + got, want - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return -1;
        if (n == 0)
            break;
        got += (size_t)n;
    }
    return (ssize_t)got;
}

// Descriptors for `chunk` bytes in buffers of `size`: full buffers, the one
// in which the sum reaches the chunk holding the remainder.
template <class Request>
static uint32_t kvd_iov_descriptors(Request &req, uint32_t count, uint32_t size, uint32_t chunk)
{
    uint32_t sum = 0;
    uint32_t n = 0;

    for (uint32_t i = 0; i < count && i < SLI4_MAX_HBD; i++) {
        n++;
        if (sum + size >= chunk) {
            req.hbd[i].length = chunk - sum;
            break;
        }
        req.hbd[i].length = size;
        sum += size;
    }
    req.hostBufferDescriptorCount = n;
    return n;
}

static int32_t kvd_iov_eof_write(const char *object_name, uint32_t offset)
{
    gorvik_common_write_object_cmd req;
    uint8_t buffer[MAILBOX_SIZE];

    kvd_iov_record(buffer);
    memset(&req, 0, sizeof(req));
    kvd_iov_header(&req.hdr, SLI4_OPC_WRITE_OBJECT, SLI4_OBJ_REQ_LEN);
    req.endOfFile = 1;
    req.desiredWriteLength = 0;
    req.writeOffset = offset;
    object_name_swap(req.objectName, object_name);
    kvd_iov_put(buffer, req);
    int32_t rc = kvd_iov_issue(buffer, 0);
    if (rc != 0)
        kvd_iov_error("Error writing eof", object_name, rc, buffer);
    return rc;
}

// Sends a host file to an object in chunks of count x size bytes. When the
// adapter takes less than offered, the rest goes again in the next pass,
// and that smaller amount stays the chunk from then on. Eof mode 1 marks
// the last data request; mode 0 sends a separate empty request after it.
int32_t download(const char *object_name, const char *file_name, uint32_t count, uint32_t size,
                 uint32_t eof_mode)
{
    struct stat st;
    uint32_t chunk = count * size;

    // Object offsets are 32-bit: a larger file cannot be an object.
    int rc = stat(file_name, &st);
    if (rc != 0 || !S_ISREG(st.st_mode) || st.st_size == 0 || (uint64_t)st.st_size > UINT32_MAX) {
        printf("Stat or size error with file: %s size %d\n", file_name,
               rc != 0 || !S_ISREG(st.st_mode) ? 0 : (int32_t)st.st_size);
        return 1;
    }
    printf("Stat file: %s rc %d size %d\n", file_name, rc, (int32_t)st.st_size);
    if (st.st_size % 4 != 0) {
        printf("File size not a multiple of %d\n", 4);
        return 1;
    }
    // Not blocking: a FIFO put in the file's place must not stall the shell.
    int fd = open(file_name, O_RDONLY | O_NONBLOCK);
    if (fd < 0) {
        printf("Cannot open file: %s\n", file_name);
        return 1;
    }
    uint8_t *buffer = kvd_iov_alloc(chunk);
    if (!buffer) {
        close(fd);
        return 1;
    }
    uint8_t *data = buffer + MAILBOX_SIZE;
    const uint64_t file_size = (uint64_t)st.st_size;
    uint64_t total = 0;
    uint32_t acked = 0;
    int read_due = 1, at_eof = 0, failed = 0;

    for (;;) {
        memset(buffer, 0, MAILBOX_SIZE);
        if (read_due) {
            ssize_t n = kvd_iov_read_full(fd, data, chunk);
            if (n < 0) {
                kvd_progress_end();
                printf("Read error on %s\n", file_name);
                failed = 1;
                break;
            }
            total += (uint64_t)n;
            if ((uint32_t)n < chunk) {
                at_eof = 1;
                chunk = (uint32_t)n;
            } else if (total == file_size) {
                at_eof = 1;
            }
        }

        gorvik_common_write_object_cmd req;
        memset(&req, 0, sizeof(req));
        kvd_iov_record(buffer);
        req.hdr.opCode = SLI4_OPC_WRITE_OBJECT;
        req.desiredWriteLength = chunk;
        req.endOfFile = (eof_mode == 1 && at_eof) ? 1 : 0;
        req.writeOffset = acked;
        object_name_swap(req.objectName, object_name);
        uint32_t ndesc = kvd_iov_descriptors(req, count, size, chunk);
        kvd_iov_header(&req.hdr, SLI4_OPC_WRITE_OBJECT, SLI4_OBJ_REQ_LEN + 12 * ndesc);
        kvd_iov_put(buffer, req);

        int32_t irc = kvd_iov_issue(buffer, chunk);
        if (irc != 0) {
            kvd_iov_error("Error writing", object_name, irc, buffer);
            failed = 1;
            break;
        }
        uint32_t taken = kvd_iov_get<gorvik_common_write_object_rsp>(buffer).actualWriteLength;
        // More than offered, or nothing of a non-empty chunk, would leave
        // the offsets meaningless or the loop without progress.
        if (taken % 4 != 0 || taken > chunk || (taken == 0 && chunk != 0)) {
            kvd_progress_end();
            printf("Error writing %s: invalid actual write length returned %d\n", object_name,
                   (int32_t)taken);
            failed = 1;
            break;
        }
        acked += taken;
        kvd_progress(object_name, acked, file_size);
        if (taken == chunk) {
            if (at_eof)
                break;
            read_due = 1;
        } else {
            chunk -= taken;
            memmove(data, data + taken, chunk);
            read_due = 0;
        }
    }
    close(fd);
    kvd_progress_end();
    if (!failed && eof_mode == 0)
        (void)kvd_iov_eof_write(object_name, acked);
    free(buffer);
    return 1;
}

// Reads an object into a new host file until the adapter reports its end.
int32_t sli4iovGetObject(const char *file_name, const char *object_name, uint32_t count, uint32_t size)
{
    const uint32_t chunk = count * size;
    int32_t rc = 0;
    uint32_t offset = 0;
    int64_t written = 0;

    // A link at the name is refused rather than followed; a FIFO there
    // without a reader is refused rather than waited on.
    int fd = open(file_name, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK, KVD_IOV_FILE_MODE);
    if (fd < 0) {
        printf("Cannot create file: %s\n", file_name);
        return 1;
    }
    uint8_t *buffer = kvd_iov_alloc(chunk);
    if (!buffer) {
        close(fd);
        return 1;
    }
    for (;;) {
        gorvik_common_read_object_cmd req;

        memset(buffer, 0, MAILBOX_SIZE + (size_t)chunk);
        kvd_iov_record(buffer);
        memset(&req, 0, sizeof(req));
        req.desiredReadLength = chunk;
        req.readOffset = offset;
        object_name_swap(req.objectName, object_name);
        for (uint32_t i = 0; i < count && i < SLI4_MAX_HBD; i++)
            req.hbd[i].length = size;
        req.hostBufferDescriptorCount = count;
        kvd_iov_header(&req.hdr, SLI4_OPC_READ_OBJECT, SLI4_OBJ_REQ_LEN + 12 * count);
        kvd_iov_put(buffer, req);
        rc = kvd_iov_issue(buffer, chunk);
        if (rc != 0) {
            kvd_iov_error("Error reading", object_name, rc, buffer);
            break;
        }
        gorvik_common_read_object_rsp rsp = kvd_iov_get<gorvik_common_read_object_rsp>(buffer);
        // The data area holds the chunk and no more.
        uint32_t got = rsp.actualReadLength <= chunk ? rsp.actualReadLength : chunk;
        ssize_t n = write(fd, buffer + MAILBOX_SIZE, got);
        if (n < 4) {
            kvd_progress_end();
            printf("ERROR: writing to %s\n", file_name);
            rc = 1;
            break;
        }
        written += n;
        kvd_progress(object_name, (uint64_t)written, 0);
        // Offsets are 32-bit: an object never runs past them.
        if (got > UINT32_MAX - offset)
            break;
        offset += got;
        if (rsp.eof)
            break;
    }
    close(fd);
    kvd_progress_end();
    printf("Wrote %d bytes to file: %s\n", (int32_t)written, file_name);
    free(buffer);
    return rc;
}

int32_t sli4iovDeleteObj(const char *object_name)
{
    gorvik_common_delete_object_cmd req;
    uint8_t *buffer = kvd_iov_alloc(0);

    if (!buffer)
        return 1;
    kvd_iov_record(buffer);
    memset(&req, 0, sizeof(req));
    kvd_iov_header(&req.hdr, SLI4_OPC_DELETE_OBJECT, SLI4_OBJ_DELETE_REQ_LEN);
    object_name_swap(req.objectName, object_name);
    kvd_iov_put(buffer, req);
    int32_t rc = kvd_iov_issue(buffer, 0);
    if (rc != 0)
        kvd_iov_error("Error deleting", object_name, rc, buffer);
    free(buffer);
    return rc;
}

// One list request on a directory: the count alone (want 0) or one entry.
// Returns the issue result; `entries` is the number returned, `entry` the
// entry when one came back.
static int32_t kvd_iov_list(const char *dir, uint16_t want, uint16_t index, uint32_t *entries,
                            read_object_list_descriptor *entry)
{
    gorvik_common_list_object_cmd req;
    uint8_t buffer[MAILBOX_SIZE + KVD_IOV_LIST_ENTRY];
    const uint32_t data = want ? KVD_IOV_LIST_ENTRY : 0;

    memset(buffer, 0, sizeof(buffer));
    kvd_iov_record(buffer);
    memset(&req, 0, sizeof(req));
    req.descriptorCount = want;
    req.descriptorOffset = index;
    object_name_swap(req.objectName, dir);
    if (want) {
        req.hostBufferDescriptorCount = 1;
        req.hbd[0].length = KVD_IOV_LIST_ENTRY;
    }
    kvd_iov_header(&req.hdr, SLI4_OPC_READ_OBJECT_LIST,
                   SLI4_OBJ_REQ_LEN + 12 * req.hostBufferDescriptorCount);
    kvd_iov_put(buffer, req);
    int32_t rc = kvd_iov_issue(buffer, data);
    if (rc != 0)
        return rc;
    *entries = kvd_iov_get<gorvik_common_list_object_rsp>(buffer).actualDescriptorLength & 0xFFFF;
    // Only one entry fits the data area, whatever count comes back.
    if (want && *entries)
        memcpy(entry, buffer + MAILBOX_SIZE, sizeof(*entry));
    return 0;
}

static void kvd_iov_entry_texts(const read_object_list_descriptor *e, char *base, size_t base_size, char *rev,
                                size_t rev_size, char *type_text, char *info_text)
{
    kvd_fieldtext(base, base_size, e->baseName, sizeof(e->baseName));
    kvd_fieldtext(rev, rev_size, e->revName, sizeof(e->revName));
    translateType(e->objectFileType, e->objectInfo, type_text, info_text);
}

static int32_t listDirectory(const char *base_name)
{
    char dir[SLI4_OBJECT_NAME_SIZE];
    uint32_t count = 0;

    snprintf(dir, sizeof(dir), "/%s", base_name);
    int32_t rc = kvd_iov_list(dir, 0, 0, &count, NULL);
    if (rc != 0) {
        printf("Failed to get the number of descriptors for %s\n", dir);
        return rc;
    }
    printf("/%s descriptor count: %d\n", base_name, (int32_t)count);
    for (uint32_t index = 0; index <= 0xFFFF; index++) {
        read_object_list_descriptor e;
        uint32_t got = 0;
        char base[sizeof(e.baseName) + 1], rev[sizeof(e.revName) + 1];
        char type_text[KVD_TYPETEXT_SIZE], info_text[KVD_TYPETEXT_SIZE];

        if (kvd_iov_list(dir, 1, (uint16_t)index, &got, &e) != 0 || got == 0)
            break;
        kvd_iov_entry_texts(&e, base, sizeof(base), rev, sizeof(rev), type_text, info_text);
        printf("\t%s: Type: %s Info: %s RevName: %s\n", base, type_text, info_text, rev);
    }
    return 0;
}

int32_t listobjs(void)
{
    uint32_t count = 0;

    int32_t rc = kvd_iov_list("/", 0, 0, &count, NULL);
    if (rc != 0) {
        printf("Failed to get the number of descriptors for root\n");
        return rc;
    }
    printf("Root descriptor count: %d\n", (int32_t)count);
    for (uint32_t index = 0; index <= 0xFFFF; index++) {
        read_object_list_descriptor e;
        uint32_t got = 0;
        char base[sizeof(e.baseName) + 1], rev[sizeof(e.revName) + 1];
        char type_text[KVD_TYPETEXT_SIZE], info_text[KVD_TYPETEXT_SIZE];

        if (kvd_iov_list("/", 1, (uint16_t)index, &got, &e) != 0 || got == 0)
            break;
        kvd_iov_entry_texts(&e, base, sizeof(base), rev, sizeof(rev), type_text, info_text);
        printf("/%s Type: %s - Info %s - RevName: %s\n", base, type_text, info_text, rev);
        if (e.objectFileType == SLI4_OBJ_TYPE_DIRECTORY)
            (void)listDirectory(base);
        printf("\n");
    }
    return 0;
}

int32_t quickDump(void)
{
    uint32_t size = 0;

    if (getObjectSize(KVD_IOV_DUMP_OBJECT, &size) != 0 || size == 0) {
        printf("Dump object does not exist\n");
        return 1;
    }
    printf("Dump size: %d bytes\n", (int32_t)size);
    if (sli4iovGetObject(KVD_IOV_DUMP_FILE, KVD_IOV_DUMP_OBJECT, 1, KVD_IOV_QUICK_BUFSIZE) != 0) {
        // The object stays on the adapter for another try.
        printf("Error reading dump object\n");
        return 1;
    }
    printf("Created dump file at %s\n", KVD_IOV_DUMP_FILE);
    if (sli4iovDeleteObj(KVD_IOV_DUMP_OBJECT) != 0) {
        printf("Error deleting dump object\n");
        return 1;
    }
    printf("Dump object deleted\n");
    return 0;
}

// Buffer count and size of "read" and "write": prints the range message and
// returns 0 when either is out of bounds.
static int kvd_iov_buffers(const char *count_text, const char *size_text, uint32_t *count, uint32_t *size)
{
    unsigned long c = strtoul(count_text, NULL, 0);
    unsigned long s = strtoul(size_text, NULL, 0);

    if (c < 1 || c > KVD_SLI4IOV_MAX_BUFFERS) {
        printf("ERROR: buffer count 1-%d\n", KVD_SLI4IOV_MAX_BUFFERS);
        return 0;
    }
    if (s < 4 || s > KVD_SLI4IOV_MAX_BUFSIZE || s % 4 != 0) {
        printf("ERROR: buffer size 4-%d (multiple of 4)\n", KVD_SLI4IOV_MAX_BUFSIZE);
        return 0;
    }
    *count = (uint32_t)c;
    *size = (uint32_t)s;
    return 1;
}

static KVD_HANDLER(putobj)
{
    uint32_t count, size;

    (void)row;
    (void)arg;
    if (margc != 7) {
        printf("Usage: write <input file name> <object name>\n");
        printf("\t<buffer count 1-%d>\n", KVD_SLI4IOV_MAX_BUFFERS);
        printf("\t<buffer size, 4-%d (multiple of 4)>\n", KVD_SLI4IOV_MAX_BUFSIZE);
        printf("\t<eof flag - (1 - with last data buffer, 0 - without any data)\n");
        return KVD_USAGE;
    }
    if (!kvd_iov_buffers(margv[4], margv[5], &count, &size))
        return 0;
    uint32_t eof = strtoul(margv[6], NULL, 0) != 0 ? 1 : 0;
    printf("bin_name: %s\n", margv[2]);
    printf("objectName: %s\n", margv[3]);
    printf("bufferCount: %d\n", (int32_t)count);
    printf("bufferSize: %d bytes\n", (int32_t)size);
    printf("Send eof with last data buffer %s\n", eof ? "yes" : "no");
    (void)download(margv[3], margv[2], count, size, eof);
    return 1;
}

static KVD_HANDLER(getobj)
{
    uint32_t count, size;

    (void)row;
    (void)arg;
    if (margc != 6) {
        printf("Usage: read <output file name> <object name>\n");
        printf("\t<buffer count 1-%d>\n", KVD_SLI4IOV_MAX_BUFFERS);
        printf("\t<buffer size, 4-%d (multiple of 4)>\n", KVD_SLI4IOV_MAX_BUFSIZE);
        return KVD_USAGE;
    }
    if (!kvd_iov_buffers(margv[4], margv[5], &count, &size))
        return 0;
    printf("bin_name: %s\n", margv[2]);
    printf("objectName: %s\n", margv[3]);
    printf("bufferCount: %d\n", (int32_t)count);
    printf("bufferSize: %d bytes\n", (int32_t)size);
    (void)sli4iovGetObject(margv[2], margv[3], count, size);
    return 1;
}

static KVD_HANDLER(quickdownload)
{
    (void)row;
    (void)arg;
    if (margc != 3) {
        printf("Usage: quickdownload <input file name>\n");
        return KVD_USAGE;
    }
    return download("/", margv[2], 1, KVD_IOV_QUICK_BUFSIZE, 1);
}

static KVD_HANDLER(quickdump)
{
    (void)row;
    (void)arg;
    return quickDump();
}

static KVD_HANDLER(sli4iovObjSizes)
{
    (void)row;
    (void)arg;
    printf("Size\t\tName\n");
    for (int i = 0; quickList[i] != NULL; i++) {
        uint32_t size = 0;
        if (getObjectSize(quickList[i], &size) == 0)
            printf("%-9d\t%s\n", (int32_t)size, quickList[i]);
    }
    printf("\n");
    return 1;
}

static KVD_HANDLER(list)
{
    (void)row;
    (void)arg;
    return listobjs();
}

static KVD_HANDLER(delobj)
{
    (void)row;
    (void)arg;
    if (margc != 3) {
        printf("Usage: <object name>\n");
        return KVD_USAGE;
    }
    printf("Deleting object: %s\n", margv[2]);
    (void)sli4iovDeleteObj(margv[2]);
    return 1;
}

cmdinfo sli4iovinfo[] = {
    {"delete", delobj},
    {"list", list},
    {"quickdownload", quickdownload},
    {"quickdump", quickdump},
    {"quicksizes", sli4iovObjSizes},
    {"read", getobj},
    {"write", putobj},
};

static_assert(sizeof(sli4iovinfo) / sizeof(sli4iovinfo[0]) == g_sli4iovinfo_array_size,
              "one row per sub-command");

KVD_HANDLER(sli4iovInval)
{
    (void)row;
    (void)arg;
    printf("Invalid subcommand: %s - use:\n", margc > 1 ? margv[1] : "");
    for (int i = 0; i < g_sli4iovinfo_array_size; i++)
        printf("%s\n", sli4iovinfo[i].c_string);
    return KVD_OK;
}

KVD_HANDLER(sli4iov)
{
    (void)row;
    (void)arg;
    if (margc < 2) {
        printf("Usage: sli4iov [subCommand]\n");
        for (int i = 0; i < g_sli4iovinfo_array_size; i++)
            printf("%s\n", sli4iovinfo[i].c_string);
        return KVD_USAGE;
    }
    if (get_sli_mode((uint32_t)cur_board) != 4 || kvd_get_board_sli4_if_type((uint32_t)cur_board) != 2) {
        printf("Not supported on this board: %d\n", cur_board);
        return KVD_IOV_NOT_SUPPORTED;
    }
    for (int i = 0; i < g_sli4iovinfo_array_size; i++) {
        if (strcmp(margv[1], sli4iovinfo[i].c_string) == 0) {
            (void)sli4iovinfo[i].c_routine(&sli4iovinfo[i], NULL);
            return KVD_OK;
        }
    }
    (void)sli4iovInval(NULL, NULL);
    return KVD_OK;
}
