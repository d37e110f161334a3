#include "core/trace.hpp"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace kvdsim
{

namespace
{

constexpr int kUnopened = -2;
constinit std::atomic<int> g_fd{kUnopened};

// Room kept at the end of every buffer for " (truncated)\n" and the NUL.
constexpr char kTruncated[] = " (truncated)";
constexpr size_t kReserve = sizeof kTruncated + 1;

alignas(64) char g_big[kBigTraceSize];

int trace_fd()
{
    int fd = g_fd.load(std::memory_order_acquire);
    if (fd != kUnopened)
        return fd;
    open_trace_from_env();
    return g_fd.load(std::memory_order_acquire);
}

} // namespace

void open_trace_from_env()
{
    if (g_fd.load(std::memory_order_acquire) != kUnopened)
        return;
    const char *path = getenv("KVD_SIM_TRACE");
    int fd = -1;
    if (path && *path)
        fd = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    int expected = kUnopened;
    if (!g_fd.compare_exchange_strong(expected, fd, std::memory_order_acq_rel) && fd >= 0)
        close(fd); // someone else opened it first
}

bool trace_enabled()
{
    return trace_fd() >= 0;
}

void set_trace_fd_for_test(int fd)
{
    g_fd.store(fd, std::memory_order_release);
}

char *big_trace_buffer()
{
    return g_big;
}

TraceLine::TraceLine(char *buf, size_t cap, const char *name) : buf_(buf), cap_(cap), on_(trace_enabled())
{
    if (!on_ || cap_ <= kReserve + 1) {
        on_ = false;
        return;
    }
    put(name);
    put_char('(');
}

void TraceLine::put_char(char c)
{
    if (len_ + kReserve >= cap_) {
        truncated_ = true;
        return;
    }
    buf_[len_++] = c;
}

void TraceLine::put(const char *s)
{
    while (*s && !truncated_)
        put_char(*s++);
}

void TraceLine::put_u(uint64_t v, bool as_hex)
{
    char tmp[24];
    int n = 0;
    const unsigned base = as_hex ? 16 : 10;
    do {
        tmp[n++] = "0123456789abcdef"[v % base];
        v /= base;
    } while (v);
    if (as_hex)
        put("0x");
    while (n)
        put_char(tmp[--n]);
}

// ", key=" (no comma before the first argument).
void TraceLine::put_key(const char *key)
{
    if (!first_arg_)
        put(", ");
    first_arg_ = false;
    put(key);
    put_char('=');
}

TraceLine &TraceLine::arg(const char *key, uint64_t value)
{
    if (!on_)
        return *this;
    put_key(key);
    put_u(value, false);
    return *this;
}

TraceLine &TraceLine::arg_hex(const char *key, uint64_t value)
{
    if (!on_)
        return *this;
    put_key(key);
    put_u(value, true);
    return *this;
}

TraceLine &TraceLine::arg_wwn(const char *key, const uint8_t wwn[8])
{
    if (!on_)
        return *this;
    put_key(key);
    for (int i = 0; i < 8; ++i) {
        if (i)
            put_char(':');
        put_char("0123456789abcdef"[wwn[i] >> 4]);
        put_char("0123456789abcdef"[wwn[i] & 15]);
    }
    return *this;
}

TraceLine &TraceLine::arg_ptr(const char *key, const void *p)
{
    if (!on_ || p)
        return *this;
    put_key(key);
    put("null");
    return *this;
}

TraceLine &TraceLine::result(int64_t value)
{
    if (!on_)
        return *this;
    has_result_ = true;
    put(") = ");
    if (value < 0) {
        put_char('-');
        put_u(static_cast<uint64_t>(-(value + 1)) + 1, false);
    } else {
        put_u(static_cast<uint64_t>(value), false);
    }
    return *this;
}

TraceLine &TraceLine::injected(int rule)
{
    if (!on_)
        return *this;
    put(" injected rule=");
    put_u(static_cast<uint64_t>(rule), false);
    return *this;
}

TraceLine &TraceLine::tag(const char *key, const char *value)
{
    if (!on_)
        return *this;
    put_char(' ');
    put(key);
    put_char('=');
    put(value);
    return *this;
}

TraceLine &TraceLine::bytes(const char *tag, const void *data, size_t len)
{
    if (!on_ || !data)
        return *this;
    put_char(' ');
    put(tag);
    put_char('=');
    return more(data, len);
}

TraceLine &TraceLine::more(const void *data, size_t len)
{
    if (!on_ || !data)
        return *this;
    const auto *p = static_cast<const uint8_t *>(data);
    for (size_t i = 0; i < len && !truncated_; ++i) {
        put_char("0123456789abcdef"[p[i] >> 4]);
        put_char("0123456789abcdef"[p[i] & 15]);
    }
    return *this;
}

const char *TraceLine::emit()
{
    if (!on_)
        return "";
    // The reserve guarantees room for the marker, the newline and a NUL.
    if (truncated_) {
        memcpy(buf_ + len_, kTruncated, sizeof kTruncated - 1);
        len_ += sizeof kTruncated - 1;
    }
    buf_[len_++] = '\n';
    buf_[len_] = '\0';
    const int saved_errno = errno; // may run inside a signal handler
    int fd = trace_fd();
    size_t done = 0;
    while (fd >= 0 && done < len_) {
        ssize_t n = write(fd, buf_ + done, len_ - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        done += static_cast<size_t>(n);
    }
    errno = saved_errno;
    on_ = false;
    return buf_;
}

} // namespace kvdsim
