// Object-store throughput end to end through the shell: "sli4iov write" of
// a 64 MiB host file into an object of the virtual adapter, then "sli4iov
// read" of it back into a host file, each timed around the shell's own
// handler (argument checks, host file I/O, request set-up, the library
// call, the SLI-4 engine and the store). Buffers of 8 x 3840 bytes, the
// largest the shell takes. A last figure times a whole kvd process doing
// both, start-up included. Trace off.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "kvd.h"
#include "kvd_cmds.h"

namespace
{

constexpr size_t kObjectSize = 64u << 20;

double seconds_of(const std::chrono::steady_clock::time_point &t0)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

double cpu_now()
{
    timespec ts;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return ts.tv_sec + ts.tv_nsec / 1e9;
}

// Runs one kvd command line through the shell's own reader and handler;
// `cpu` gets the processor time it took (other load on the machine does
// not count there, as it does in the wall-clock time returned).
double run_line(const char *line, double &cpu)
{
    char buffer[KVD_CMDBUF_SIZE];
    snprintf(buffer, sizeof buffer, "%s\n", line);
    FILE *saved = stdout;
    stdout = fopen("/dev/null", "w");
    const auto t0 = std::chrono::steady_clock::now();
    const double c0 = cpu_now();
    cmdinfo *row = getcmd(buffer, sizeof buffer, 1);
    (void)row->c_routine(row, nullptr);
    cpu = cpu_now() - c0;
    const double s = seconds_of(t0);
    fclose(stdout);
    stdout = saved;
    return s;
}

bool same_files(const std::string &a, const std::string &b)
{
    FILE *fa = fopen(a.c_str(), "rb"), *fb = fopen(b.c_str(), "rb");
    bool same = fa && fb;
    std::vector<char> x(1 << 16), y(1 << 16);
    while (same) {
        size_t n = fread(x.data(), 1, x.size(), fa), m = fread(y.data(), 1, y.size(), fb);
        same = n == m && memcmp(x.data(), y.data(), n) == 0;
        if (n == 0)
            break;
    }
    if (fa)
        fclose(fa);
    if (fb)
        fclose(fb);
    return same;
}

} // namespace

int main(int argc, char **argv)
{
    unsetenv("KVD_SIM_TRACE");
    unsetenv("KVD_SIM_FAULT");
    unsetenv("KVD_SIM_FLEET");
    char dir[] = "/tmp/kvd-bench-XXXXXX";
    if (!mkdtemp(dir)) {
        perror("mkdtemp");
        return 1;
    }
    const std::string in = std::string(dir) + "/image.bin", out = std::string(dir) + "/back.bin";
    {
        std::vector<uint32_t> data(kObjectSize / 4);
        uint32_t x = 2463534242u;
        for (uint32_t &w : data) {
            x ^= x << 13;
            x ^= x >> 17;
            x ^= x << 5;
            w = x;
        }
        FILE *f = fopen(in.c_str(), "wb");
        if (!f || fwrite(data.data(), 1, kObjectSize, f) != kObjectSize || fclose(f) != 0) {
            perror(in.c_str());
            return 1;
        }
    }

    kvd_pci_brds = KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS);
    cur_board = 2; // the default fleet's SLI-4 board with an object store
    const std::string write_line = "sli4iov write " + in + " /prg/bench.grp 8 3840 1";
    const std::string read_line = "sli4iov read " + out + " /prg/bench.grp 8 3840";
    const double mib = kObjectSize / 1048576.0;
    const double mb = kObjectSize / 1e6;

    double cw = 0, cr = 0;
    const double tw = run_line(write_line.c_str(), cw);
    const double tr = run_line(read_line.c_str(), cr);
    const bool ok = same_files(in, out);
    printf("sli4iov write 64 MiB: %8.1f ms  %8.1f MB/s   (cpu %6.1f ms, %8.1f MB/s per cpu second)\n",
           tw * 1e3, mb / tw, cw * 1e3, mb / cw);
    printf("sli4iov read  64 MiB: %8.1f ms  %8.1f MB/s   (cpu %6.1f ms, %8.1f MB/s per cpu second)\n",
           tr * 1e3, mb / tr, cr * 1e3, mb / cr);
    printf("read back %s\n", ok ? "identical" : "DIFFERENT");
    KVD_FreeDiagEnv();

    // A whole kvd process: start-up, the write and the read.
    const char *kvd = argc > 1 ? argv[1] : KVD_BINARY;
    unlink(out.c_str());
    const auto t0 = std::chrono::steady_clock::now();
    pid_t pid = fork();
    if (pid == 0) {
        int null = open("/dev/null", O_WRONLY);
        dup2(null, 1);
        execl(kvd, "kvd", "-b", "2", "-c", write_line.c_str(), "-c", read_line.c_str(), (char *)nullptr);
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    const double tp = seconds_of(t0);
    printf("kvd process, write then read: %8.1f ms  %8.1f MB/s both ways (%.0f MiB each way)\n", tp * 1e3,
           2 * mb / tp, mib);
    const bool ok2 = same_files(in, out);
    printf("read back %s\n", ok2 ? "identical" : "DIFFERENT");

    unlink(in.c_str());
    unlink(out.c_str());
    rmdir(dir);
    return ok && ok2 ? 0 : 1;
}
