// The release path that quit takes from a signal handler must work on top of
// any library call it interrupts: no deadlock on the library's lock, no crash.
#include <gtest/gtest.h>

#include <atomic>
#include <signal.h>
#include <string.h>
#include <sys/time.h>

#include "kvd.h"

namespace
{

std::atomic<int> releases{0};

void release_from_handler(int)
{
    for (uint32_t board = 0; board < 3; board++)
        (void)unRegisterForEvent(board, 0);
    KVD_FreeDiagEnv();
    releases.fetch_add(1, std::memory_order_relaxed);
}

TEST(Release, SignalHandlerInterruptingLibraryCalls)
{
    struct sigaction sa;
    memset(&sa, 0, sizeof(sa));
    sa.sa_handler = release_from_handler;
    ASSERT_EQ(sigaction(SIGALRM, &sa, nullptr), 0);
    struct itimerval every = {{0, 100}, {0, 100}};
    ASSERT_EQ(setitimer(ITIMER_REAL, &every, nullptr), 0);

    KVD_BRDINFO table[KVD_MAX_BOARDS];
    HBA_PORTATTRIBUTES attributes;
    MAILBOX mb;
    long calls = 0;
    while (releases.load() < 200 && calls < 20000000) {
        KVD_InitDiagEnv(table, KVD_MAX_BOARDS);
        GetAdapterPortAttributes(0, 0, &attributes);
        memset(&mb, 0, sizeof(mb));
        mb.mbxCommand = MBX_READ_REV;
        KVD_IssueMboxWithRetry(1, &mb, 32, 64, 5, 100);
        calls += 3;
    }

    struct itimerval off = {};
    setitimer(ITIMER_REAL, &off, nullptr);
    signal(SIGALRM, SIG_DFL);
    EXPECT_GE(releases.load(), 200);
    // The library is usable again afterwards.
    EXPECT_EQ(KVD_InitDiagEnv(table, KVD_MAX_BOARDS), 3u);
    EXPECT_EQ(GetAdapterPortAttributes(0, 0, &attributes), 0u);
    KVD_FreeDiagEnv();
}

} // namespace
