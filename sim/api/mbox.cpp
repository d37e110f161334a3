// Mailbox issuing. The caller's record goes to the board's firmware model,
// which completes it in place.
//
// Checks, in order: environment open (ENXIO), record present (EFAULT), board
// present (ENODEV), word counts (EINVAL). The plain call moves at most 64
// words each way. The V2 call may carry a payload after the 256-byte record
// (up to 16384 further words); only the record itself reaches the firmware,
// the payload is passed through untouched.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>

#include "core/state.hpp"

using namespace kvdsim;

namespace
{

constexpr uint32_t kPayloadWordsMax = 16384;

// Runs the checks and the command; `counts_ok` is the call's own verdict on
// its word counts; `trace_words` the words the caller handed over in all.
int32_t issue(Call &c, uint32_t board, MAILBOX *mb, bool counts_ok, uint32_t words_in, uint32_t words_out,
              uint32_t retries, uint32_t trace_words)
{
    Board *b = nullptr;
    int32_t check = !Library::is_open()         ? ENXIO
                    : !mb                       ? EFAULT
                    : !(b = c.lib.board(board)) ? ENODEV
                    : !counts_ok                ? EINVAL
                                                : 0;
    if (check) {
        c.line.result(check).emit();
        return check;
    }

    // The firmware works on a private copy, so that it can touch neither
    // more of the caller's memory than the counts allow nor less than a
    // whole record.
    uint8_t record[MAILBOX_SIZE] = {};
    const uint32_t words_copy = words_in > words_out ? words_in : words_out;
    memcpy(record, mb, words_copy * 4);
    uint8_t received[MAILBOX_SIZE];
    memcpy(received, record, sizeof received);

    ProcessMemory memory;
    int32_t rc = b->fw->issue(record, words_in, words_out, retries, memory);
    memcpy(mb, record, words_out * 4);

    // in= is the record as received: its first words_in words, or for V2
    // the record and the untouched payload after it.
    const auto *payload = reinterpret_cast<const uint8_t *>(mb) + MAILBOX_SIZE;
    const size_t payload_len = trace_words > MAILBOX_WORDS ? (trace_words - MAILBOX_WORDS) * 4 : 0;
    c.line.result(rc);
    c.line.bytes("in", received, (trace_words > MAILBOX_WORDS ? MAILBOX_WORDS : words_in) * 4);
    if (payload_len)
        c.line.more(payload, payload_len);
    c.line.bytes("out", mb, (trace_words > MAILBOX_WORDS ? MAILBOX_WORDS : words_out) * 4);
    if (payload_len)
        c.line.more(payload, payload_len);
    c.line.emit();
    return rc;
}

} // namespace

int32_t KVD_IssueMboxWithRetry(uint32_t board, MAILBOX *mb, uint32_t words_in, uint32_t words_out,
                               uint32_t retries, uint32_t delay)
{
    try {
        Call c("KVD_IssueMboxWithRetry");
        c.line.arg("board", board)
            .arg_ptr("mb", mb)
            .arg("words_in", words_in)
            .arg("words_out", words_out)
            .arg("retries", retries)
            .arg("delay", delay);
        if (auto f = c.fault(board))
            return static_cast<int32_t>(*f);
        const bool counts_ok = words_in >= 1 && words_in <= MAILBOX_WORDS && words_out <= MAILBOX_WORDS;
        return issue(c, board, mb, counts_ok, words_in, words_out, retries, words_in);
    } catch (...) {
        return ENOMEM;
    }
}

int32_t KVD_IssueMboxWithRetryV2(uint32_t board, MAILBOX *mb, uint32_t words, uint32_t retries,
                                 uint32_t delay)
{
    try {
        Call c("KVD_IssueMboxWithRetryV2");
        c.line.arg("board", board)
            .arg_ptr("mb", mb)
            .arg("words", words)
            .arg("retries", retries)
            .arg("delay", delay);
        if (auto f = c.fault(board))
            return static_cast<int32_t>(*f);
        const bool counts_ok = words >= 1 && words <= MAILBOX_WORDS + kPayloadWordsMax;
        const uint32_t record_words = words > MAILBOX_WORDS ? MAILBOX_WORDS : words;
        return issue(c, board, mb, counts_ok, record_words, record_words, retries, words);
    } catch (...) {
        return ENOMEM;
    }
}
