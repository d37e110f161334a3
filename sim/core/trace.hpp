// Call trace: with KVD_SIM_TRACE=path every library call appends one line
// to that file:
//
//   GetAdapterPortAttributes(board=1, port=0) = 0 out=<hex>
//   KVD_IssueMboxWithRetry(board=0, words_in=32, words_out=64, retries=5, delay=100) = 0 in=<hex> out=<hex>
//   GetAdapterAttributes(board=0) = 8 injected rule=1
//
// Arguments are decimal unless written 0x...; records go as lower-case hex
// of their bytes in memory order, `in=` as the call received them, `out=` as
// it returned them. A call that fault injection answered is marked
// " injected rule=N" (N counts the rules of KVD_SIM_FAULT from 1) and
// carries no records. Engine commands add " command=NAME" after the result.
//
// A line is built in a caller-supplied buffer and written with one write(2)
// on an O_APPEND descriptor, so lines of concurrent writers never mix. Nothing
// here allocates or locks: the release calls trace from signal handlers.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kvdsim
{

// Opens the trace file named by KVD_SIM_TRACE, once; later calls do nothing.
void open_trace_from_env();
bool trace_enabled();

class TraceLine
{
  public:
    // Starts "name(" in buf. When tracing is off every method does nothing.
    TraceLine(char *buf, size_t cap, const char *name);
    TraceLine(const TraceLine &) = delete;
    TraceLine &operator=(const TraceLine &) = delete;

    TraceLine &arg(const char *key, uint64_t value);     // key=123
    TraceLine &arg_hex(const char *key, uint64_t value); // key=0x7b
    TraceLine &arg_wwn(const char *key, const uint8_t wwn[8]);
    TraceLine &arg_ptr(const char *key, const void *p); // key=null when p is
    TraceLine &result(int64_t value);                   // ") = value"
    bool has_result() const
    {
        return has_result_;
    }
    TraceLine &injected(int rule);                      // " injected rule=N"
    TraceLine &tag(const char *key, const char *value); // " key=value", after the result
    TraceLine &bytes(const char *tag, const void *data, size_t len);
    TraceLine &more(const void *data, size_t len); // continues the last bytes()
    // Ends the line and writes it. Returns the text written (for tests).
    const char *emit();

  private:
    void put(const char *s);
    void put_char(char c);
    void put_u(uint64_t v, bool as_hex);
    void put_key(const char *key);

    char *buf_;
    size_t cap_;
    size_t len_ = 0;
    bool on_;
    bool first_arg_ = true;
    bool truncated_ = false;
    bool has_result_ = false;
};

// The shared buffer for lines with big records (whole mailbox payloads).
// Only a caller holding the library lock may use it.
constexpr size_t kBigTraceSize = 300 * 1024;
char *big_trace_buffer();

// For tests: traces into this descriptor (-1: off).
void set_trace_fd_for_test(int fd);

} // namespace kvdsim
