// Mailbox issuing. The caller's record goes to the board's firmware model,
// which completes it in place.
//
// Checks, in order: environment open (ENXIO), board present (ENODEV),
// record present (EFAULT), word counts (EINVAL). The plain call takes at
// most 64 words in and gives back at most 128: the words past the 256-byte
// record are the reply data of the commands that return more than the
// record holds (the memory dump), written behind the record. The V2 call may carry a payload after the
// 256-byte record (up to 16384 further words): the record reaches the
// firmware and the payload goes with it as a bounded span, for the
// commands that carry data behind the record.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

constexpr uint32_t kPayloadWordsMax = 16384;
constexpr uint32_t kPlainWordsOutMax = 2 * MAILBOX_WORDS;

// Runs the command on a private copy of the record, so that the firmware
// can touch neither more of the caller's memory than the counts allow nor
// less than a whole record. `total_words` is what the caller handed over
// in all (record and payload).
int32_t issue(Call &c, Board &b, MAILBOX *mb, bool counts_ok, uint32_t words_in, uint32_t words_out,
              uint32_t retries, uint32_t total_words)
{
    if (!counts_ok)
        return EINVAL;
    // The caller's words: the record, and the reply tail or payload after it.
    c.out(mb, size_t{words_out > total_words ? words_out : total_words} * 4);
    // Reply words past the record (plain call) travel as the payload.
    const bool reply_tail = words_out > MAILBOX_WORDS;
    if (reply_tail) {
        total_words = words_out;
        words_out = MAILBOX_WORDS;
    }
    uint8_t record[MAILBOX_SIZE] = {};
    const uint32_t words_copy = words_in > words_out ? words_in : words_out;
    memcpy(record, mb, words_copy * 4);
    uint8_t received[MAILBOX_SIZE];
    memcpy(received, record, sizeof received);

    auto *payload = reinterpret_cast<uint8_t *>(mb) + MAILBOX_SIZE;
    const size_t payload_len = total_words > MAILBOX_WORDS ? (total_words - MAILBOX_WORDS) * 4 : 0;
    ProcessMemory memory;
    CommandNote note;
    int32_t rc = b.fw->issue(record, words_in, words_out, retries, memory, {payload, payload_len}, &note);
    if (rc == EINVAL) // refused before the firmware ran: nothing comes back
        return rc;
    memcpy(mb, record, words_out * 4);
    // An SLI-4 configuration request the firmware refused fails the call;
    // its status and additional status are in the response header.
    MAILBOX done;
    memcpy(&done, record, sizeof done);
    if (rc == KVD_RC_OK && done.mbxCommand == MBX_SLI4_CONFIG && done.mbxStatus == MBXERR_SLI4_CONFIG_FAILED)
        rc = EIO;

    // in= is the record as received: its first words_in words, or for V2
    // the record and the payload after it (as it came back: the payload is
    // the caller's memory, shared with the firmware).
    c.line.result(rc);
    if (note.name)
        c.line.tag("command", note.name);
    if (note.rule)
        c.line.injected(note.rule);
    c.line.bytes("in", received, (total_words > MAILBOX_WORDS && !reply_tail ? MAILBOX_WORDS : words_in) * 4);
    if (payload_len && !reply_tail)
        c.line.more(payload, payload_len);
    c.line.bytes("out", mb, (total_words > MAILBOX_WORDS ? MAILBOX_WORDS : words_out) * 4);
    if (payload_len)
        c.line.more(payload, payload_len);
    return rc;
}

} // namespace

int32_t KVD_IssueMboxWithRetry(uint32_t board, MAILBOX *mb, uint32_t words_in, uint32_t words_out,
                               uint32_t retries, uint32_t delay)
{
    return board_call<int32_t>(
        "KVD_IssueMboxWithRetry", board, kErrnoFamily, mb,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg_ptr("mb", mb)
                .arg("words_in", words_in)
                .arg("words_out", words_out)
                .arg("retries", retries)
                .arg("delay", delay);
        },
        [&](Call &c, Board &b) {
            const bool counts_ok =
                words_in >= 1 && words_in <= MAILBOX_WORDS && words_out <= kPlainWordsOutMax;
            return issue(c, b, mb, counts_ok, words_in, words_out, retries, words_in);
        });
}

int32_t KVD_IssueMboxWithRetryV2(uint32_t board, MAILBOX *mb, uint32_t words, uint32_t retries,
                                 uint32_t delay)
{
    return board_call<int32_t>(
        "KVD_IssueMboxWithRetryV2", board, kErrnoFamily, mb,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg_ptr("mb", mb)
                .arg("words", words)
                .arg("retries", retries)
                .arg("delay", delay);
        },
        [&](Call &c, Board &b) {
            const bool counts_ok = words >= 1 && words <= MAILBOX_WORDS + kPayloadWordsMax;
            const uint32_t record_words = words > MAILBOX_WORDS ? MAILBOX_WORDS : words;
            return issue(c, b, mb, counts_ok, record_words, record_words, retries, words);
        });
}
