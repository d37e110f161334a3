// The reply stream and the shell driver of the fuzz targets.
#include <setjmp.h>
#include <stdio.h>
#include <string.h>

#include <vector>

#include "kvd.h"
#include "kvdfuzz.h"

namespace kvdfuzz
{

namespace
{
const uint8_t *g_data = nullptr;
size_t g_size = 0;
size_t g_pos = 0;
size_t g_answers = 0; // characters of "y\n" handed out since the stream ran dry

// Standard input as seen by the prompts: the stream, then "y\n" for ever.
ssize_t stdin_read(void *, char *buf, size_t size)
{
    size_t n = 0;
    while (n < size && g_pos < g_size)
        buf[n++] = (char)g_data[g_pos++];
    while (n < size)
        buf[n++] = (g_answers++ % 2 == 0) ? 'y' : '\n';
    return (ssize_t)n;
}
} // namespace

void stream_begin(const uint8_t *data, size_t size)
{
    g_data = data;
    g_size = size;
    g_pos = 0;
    g_answers = 0;
}

size_t stream_left()
{
    return g_size - g_pos;
}

void stream_fill(void *dest, size_t size)
{
    uint8_t *out = static_cast<uint8_t *>(dest);
    size_t n = size < stream_left() ? size : stream_left();

    if (n != 0)
        memcpy(out, g_data + g_pos, n);
    if (size > n)
        memset(out + n, 0, size - n);
    g_pos += n;
}

uint32_t stream_u32()
{
    uint32_t value;
    stream_fill(&value, sizeof(value));
    return value;
}

uint32_t stream_status()
{
    uint8_t b;

    if (stream_left() == 0)
        return 1;
    stream_fill(&b, 1);
    return b < 0xc0 ? 0 : (uint32_t)(b - 0xc0);
}

void quiet_shell()
{
    static bool done = false;
    static cookie_io_functions_t io = {stdin_read, nullptr, nullptr, nullptr};

    if (done)
        return;
    done = true;
    if (freopen("/dev/null", "w", stdout) == nullptr)
        perror("/dev/null");
    // Unbuffered, so that no answer read ahead outlives its input.
    stdin = fopencookie(nullptr, "r", io);
    setvbuf(stdin, nullptr, _IONBF, 0);
}

// Set while this thread runs an input: the library calls and sleeps of the
// shell come from here, libFuzzer's own threads never set it.
static thread_local bool t_in_input = false;
// The seconds the input's command has slept, and where the user's Ctrl-C
// takes it once they pass the limit.
static unsigned long g_slept;
static jmp_buf g_interrupt;

bool in_input()
{
    return t_in_input;
}

void pass_time(unsigned seconds)
{
    g_slept += seconds;
    if (g_slept > kSleepLimit)
        longjmp(g_interrupt, 1);
}

int run_shell(const char *const *words, size_t count, const uint8_t *data, size_t size)
{
    char buffer[KVD_CMDBUF_SIZE];
    size_t line = 0;
    cmdinfo *row;

    if (size == 0)
        return 0;
    quiet_shell();
    // The command word, then the arguments as typed (cut where the shell
    // cuts a line).
    int len = snprintf(buffer, sizeof(buffer), "%s ", words[data[0] % count]);
    data++;
    size--;
    while (line < size && data[line] != '\n')
        line++;
    size_t room = sizeof(buffer) - 1 - (size_t)len;
    memcpy(buffer + len, data, line < room ? line : room);
    buffer[len + (line < room ? line : room)] = '\0';
    if (line < size)
        line++;

    stream_begin(data + line, size - line);
    kvd_bigbuffer = kvd_un.d.bytes;
    kvd_slimbuffer = kvd_un.d.bytes;
    memset(kvd_un.brdaddr, 0, sizeof(kvd_un.brdaddr));
    cur_iocb = cur_ring = cur_board = 0;
    prompt_to_continue = 0;
    kvd_pci_brds = kvd_bound_boards(KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS));
    row = getcmd(buffer, KVD_CMDBUF_SIZE, 1);
    g_slept = 0;
    // The shell's code is plain C: no destructor is skipped by the jump.
    if (setjmp(g_interrupt) == 0) {
        t_in_input = true;
        (void)row->c_routine(row, NULL);
    }
    t_in_input = false;
    return 0;
}

} // namespace kvdfuzz
