// tarvo download: checks a firmware image file against its own header,
// trailing version record and XOR checksum, and sends it whole to the ASIC.
#include <fcntl.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tarvo.h"

#define TVO_NAME_MAX 512

uint32_t tvochksum(const void *buffer, int length)
{
    const uint8_t *p = static_cast<const uint8_t *>(buffer);
    uint32_t sum = 0;

    if (!p || length < 0)
        return 0;
    for (int i = 0; i < length / 4; i++) {
        uint32_t word;
        memcpy(&word, p + (size_t)i * 4, sizeof(word));
        sum ^= word;
    }
    return sum;
}

static void tvo_download_usage(void)
{
    printf("Usage: tarvo download -o <filename>\n");
    printf("       tarvo download -d <filename>\n\n");
    printf("            -o       - Tarvo operational firmware image.\n");
    printf("            -d       - Tarvo diagnostic firmware image.\n");
    printf("            filename - Tarvo firmware image file.\n\n");
}

// Reads the whole file into buf (size bytes); false on a read error or a
// file that ended early.
static bool tvo_read_all(int fd, uint8_t *buf, size_t size)
{
    size_t done = 0;

    while (done < size) {
        ssize_t n = read(fd, buf + done, size - done);
        if (n <= 0)
            return false;
        done += (size_t)n;
    }
    return true;
}

// Whether the image is whole and consistent. The header and the version
// record are copied out for the diagnostic lines, as far as the file holds
// them; a record or a checksummed range outside the file fails the image
// without being read.
static bool tvo_image_ok(const uint8_t *image, size_t size, tarvo_image_hdr_t *hdr, tarvo_version_hdr_t *ver,
                         uint32_t *computed)
{
    memset(hdr, 0, sizeof(*hdr));
    memset(ver, 0, sizeof(*ver));
    *computed = 0;
    memcpy(hdr, image, size < sizeof(*hdr) ? size : sizeof(*hdr));
    bool inside = size >= sizeof(*hdr) && hdr->checksum_offset >= 12 && hdr->checksum_offset <= size - 4 &&
                  hdr->file_length <= size;
    if (!inside)
        return false;
    memcpy(ver, image + hdr->checksum_offset - 12, sizeof(*ver));
    *computed = tvochksum(image, (int)hdr->file_length - 16);
    return ver->checksum == *computed && hdr->version == ver->version && hdr->file_length % 4 == 0;
}

KVD_HANDLER(tvodownload)
{
    char name[TVO_NAME_MAX + 1];
    struct stat st;
    uint32_t type;
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 4 || (strcasecmp(margv[2], "-o") != 0 && strcasecmp(margv[2], "-d") != 0)) {
        tvo_download_usage();
        return KVD_OK;
    }
    type = strcasecmp(margv[2], "-o") == 0 ? TARVO_IMAGE_OPERATIONAL : TARVO_IMAGE_DIAGNOSTIC;
    strncpy(name, margv[3], TVO_NAME_MAX);
    name[TVO_NAME_MAX] = '\0';

    // Not blocking: a FIFO in the image's place is refused below, not waited on.
    int fd = open(name, O_RDONLY | O_NONBLOCK);
    if (fd < 0) {
        printf("Error: Unable to open <%s>.\n", name);
        return 1;
    }
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        close(fd);
        printf("Error: Unable to read <%s>.\n", name);
        return 1;
    }
    size_t size = (size_t)st.st_size;
    uint8_t *buf = size <= TVO_IMAGE_MAX ? static_cast<uint8_t *>(calloc(1, size + 12)) : NULL;
    if (!buf) {
        close(fd);
        printf("Unable to allocate command buffer memory.\n");
        return KVD_OK;
    }
    rsp = tvo_rsp_area(arg);
    memset(rsp, 0, 4);
    tarvo_fw_download_cmd_t hdr_cmd = {TARVO_CMD_FW_DOWNLOAD, (uint32_t)size, type};
    bool read_ok = tvo_read_all(fd, buf + 12, size);
    close(fd);
    if (!read_ok) {
        free(buf);
        printf("Error: Unable to read <%s>.\n", name);
        return 1;
    }

    tarvo_image_hdr_t hdr;
    tarvo_version_hdr_t ver;
    uint32_t computed;
    if (!tvo_image_ok(buf + 12, size, &hdr, &ver, &computed)) {
        printf("Version %d file_len %d image_len %d chksum_offset %d checksum 0x%x\n", (int)hdr.version,
               (int)hdr.file_length, (int)hdr.image_length, (int)hdr.checksum_offset, ver.checksum);
        printf("padded %d type %d version %d checksum 0x%x &  0x%x\n", (int)ver.padded, (int)ver.type,
               (int)ver.version, ver.checksum, computed);
        free(buf);
        return KVD_OK;
    }
    hdr_cmd.length = hdr.file_length;
    memcpy(buf, &hdr_cmd, sizeof(hdr_cmd));
    kvd_progress("ASIC firmware download", 0, size);
    int32_t sent = tvo_send(buf, (uint32_t)(size + 12), rsp, 4, TVO_CODE_DEC);
    if (sent == 0)
        kvd_progress("ASIC firmware download", size, size);
    kvd_progress_end();
    if (sent == 0)
        printf("Done.\n\n");
    free(buf);
    return KVD_OK;
}
