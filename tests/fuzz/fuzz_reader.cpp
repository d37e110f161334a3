// The command reader and splitter on arbitrary bytes: NUL bytes, lines of
// any length, more words than the shell keeps, and "p" repeating the line
// before. The first byte picks how the line arrives: already in the command
// buffer (option mode) or read from standard input (interactive).
#include <string.h>

#include "kvd.h"
#include "kvdfuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    kvdfuzz::quiet_shell();
    int interactive = data[0] & 1;
    // The buffer the shell reads into, exactly as large as the shell's and,
    // like the shell's, kept from one line to the next: "p" repeats words
    // that point into it.
    static char *buffer = new char[KVD_CMDBUF_SIZE];
    for (int round = 0; round < 2; round++) {
        memset(buffer, 0, KVD_CMDBUF_SIZE);
        if (interactive) {
            kvdfuzz::stream_begin(data + 1, size - 1);
        } else {
            size_t n = size - 1 < KVD_CMDBUF_SIZE ? size - 1 : KVD_CMDBUF_SIZE;
            memcpy(buffer, data + 1, n);
        }
        cmdinfo *row = getcmd(buffer, KVD_CMDBUF_SIZE, !interactive);
        if (row == nullptr || row < &kvdCmds[0] || row >= &kvdCmds[kvdcmdcnt])
            __builtin_trap();
        for (int i = 0; i < margc && i < KVD_MAXARGS; i++)
            if (margv[i] != nullptr && (margv[i] < buffer || margv[i] >= buffer + KVD_CMDBUF_SIZE))
                __builtin_trap();
        // Then "p": the words of the line just read stand again.
        memcpy(buffer, "p\n", 3);
        row = getcmd(buffer, KVD_CMDBUF_SIZE, 1);
        if (row == nullptr)
            __builtin_trap();
    }
    return 0;
}
