// How fast the shell turns a line into a handler call, dumps a buffer and
// gets a mailbox through the library and the firmware model.
#include <benchmark/benchmark.h>

#include <stdio.h>
#include <string.h>

#include "kvd.h"

static void BM_getcmd_split_and_lookup(benchmark::State &state)
{
    char buffer[KVD_CMDBUF_SIZE];
    for (auto _ : state) {
        snprintf(buffer, sizeof(buffer), "wslim 0x100, 0x40 0x5a extra words to split\n");
        benchmark::DoNotOptimize(getcmd(buffer, sizeof(buffer), 1));
    }
}
BENCHMARK(BM_getcmd_split_and_lookup);

static void BM_hexdump_4k(benchmark::State &state)
{
    static uint8_t data[4096];
    FILE *saved = stdout;
    stdout = fopen("/dev/null", "w");
    for (auto _ : state)
        hexdump(data, sizeof(data));
    fclose(stdout);
    stdout = saved;
}
BENCHMARK(BM_hexdump_4k);

static void BM_mailbox_read_rev(benchmark::State &state)
{
    kvd_pci_brds = KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS);
    MAILBOX mb;
    for (auto _ : state) {
        memset(&mb, 0, sizeof(mb));
        mb.mbxCommand = MBX_READ_REV;
        benchmark::DoNotOptimize(KVD_IssueMboxWithRetry(0, &mb, 32, 64, 5, 100));
    }
    KVD_FreeDiagEnv();
}
BENCHMARK(BM_mailbox_read_rev);
