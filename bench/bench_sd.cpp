// One million SD events delivered by the library's event thread to the
// shell's EventCallBack and counted in hit_count, with printing off. The
// burst is asked for through the event channel, whose reply comes once the
// callbacks have run.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "kvd_sd_cmds.h"

static std::string request(const char *path, const char *line)
{
    int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    snprintf(addr.sun_path, sizeof addr.sun_path, "%s", path);
    if (fd < 0 || connect(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) != 0)
        return "error: cannot connect";
    std::string reply;
    if (write(fd, line, strlen(line)) == static_cast<ssize_t>(strlen(line))) {
        char c;
        while (read(fd, &c, 1) == 1 && c != '\n')
            reply += c;
    }
    close(fd);
    return reply;
}

int main()
{
    constexpr long kEvents = 1000000;
    char path[64];
    snprintf(path, sizeof path, "/tmp/kvd-bench-sd-%d", static_cast<int>(getpid()));
    setenv("KVD_SIM_EVENTS", path, 1);
    kvd_pci_brds = KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS);
    HBA_WWN port{};
    uint32_t handles[KVD_SD_KINDS] = {};
    if (kvd_pci_brds == 0 || register_all_sd_events(0, port, handles) != 0) {
        fprintf(stderr, "bench_sd: no board or registration failed\n");
        return 1;
    }
    callback_verbose_level = 0;
    const std::string line = "0 sd 8 1 " + std::to_string(kEvents) + "\n";
    const auto start = std::chrono::steady_clock::now();
    const std::string reply = request(path, line.c_str());
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    for (uint32_t h : handles)
        KVD_SD_unRegisterForEvent(0, port, h);
    KVD_FreeDiagEnv();
    const long counted = __atomic_load_n(&hit_count[15], __ATOMIC_RELAXED);
    printf("bench_sd: %ld SD events delivered and counted in %.3f s (%.0f ns each); reply \"%s\"\n", counted,
           seconds, seconds * 1e9 / kEvents, reply.c_str());
    if (counted != kEvents) {
        fprintf(stderr, "bench_sd: counted %ld of %ld events\n", counted, kEvents);
        return 1;
    }
    return 0;
}
