/*
 * Fuzz support: one input drives both what the user types and what the
 * board-access library answers.
 *
 * A shell target's input is one selector byte (which of the target's command
 * words runs), the rest of the command line up to the first newline, and
 * then the reply stream: every call of the fuzz library (stub_libkvd.cpp)
 * takes its status and the bytes of its reply records from it, in call
 * order, and prompts read their answers from it too. Once the stream runs
 * dry, calls fail and prompts read "y".
 *
 * Adding a target: a file fuzz_<name>.cpp with its command words,
 *
 *     static const char *const words[] = {"hbaattr", "portattr"};
 *     KVD_FUZZ_SHELL_TARGET(words)
 *
 * (or its own LLVMFuzzerTestOneInput), and a seed directory
 * corpus/<name>/ with at least one file.
 */
#ifndef KVDFUZZ_H
#define KVDFUZZ_H

#include <stddef.h>
#include <stdint.h>

namespace kvdfuzz
{

// The reply stream for the calls that follow.
void stream_begin(const uint8_t *data, size_t size);
size_t stream_left();
// Copies the next `size` stream bytes into dest; zeros once the stream ends.
void stream_fill(void *dest, size_t size);
uint32_t stream_u32();
// A library status: mostly 0 so that decoders run, else a small failure code;
// a failure once the stream is empty.
uint32_t stream_status();

// Standard output to /dev/null and standard input from the reply stream, once.
void quiet_shell();

// True on the thread while it runs an input's command.
bool in_input();

// A command's sleep: no time passes, but once the command has slept more
// than kSleepLimit seconds in all (a measurement run of hours, which the
// fuzzer would turn into a busy loop) it ends the way Ctrl-C ends it.
constexpr unsigned long kSleepLimit = 3600;
void pass_time(unsigned seconds);

// Runs words[input[0] % count] with the rest of the first line as its
// arguments against the fuzz library, the remaining bytes being the stream.
int run_shell(const char *const *words, size_t count, const uint8_t *data, size_t size);

} // namespace kvdfuzz

#define KVD_FUZZ_SHELL_TARGET(words)                                                                         \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)                                  \
    {                                                                                                        \
        return kvdfuzz::run_shell(words, sizeof(words) / sizeof(words[0]), data, size);                      \
    }

#endif
