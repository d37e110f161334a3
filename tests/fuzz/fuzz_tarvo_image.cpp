// Firmware image validation of "tarvo download": the input is the image
// file, read through a memory file.
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include "kvd.h"
#include "kvdfuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int fd = -1;
    char line[KVD_CMDBUF_SIZE];

    kvdfuzz::quiet_shell();
    if (fd < 0)
        fd = memfd_create("image", 0);
    if (fd < 0 || ftruncate(fd, 0) != 0 || pwrite(fd, data, size, 0) != (ssize_t)size)
        return 0;
    int len = snprintf(line, sizeof(line), "download -o /proc/self/fd/%d\n", fd);
    // The library's replies (the board table, the ASIC's answer) come from
    // the image bytes too.
    uint8_t *input = new uint8_t[1 + (size_t)len + size];
    input[0] = 0;
    memcpy(input + 1, line, (size_t)len);
    memcpy(input + 1 + len, data, size);
    static const char *const family[] = {"tarvo"};
    kvdfuzz::run_shell(family, 1, input, 1 + (size_t)len + size);
    delete[] input;
    return 0;
}
