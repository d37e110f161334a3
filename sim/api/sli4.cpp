// SLI-4 entry points: the internal mailbox call that carries the controller
// configuration requests, and the board's SLI-4 interface type.
//
// IssueInternalMboxWithRetryEx hands the whole 256-byte record to the
// board's firmware, with the optional extension buffer going along as the
// command's payload (a non-embedded request may name it in its
// scatter-gather entry; any other address is checked against the process's
// own mappings). The call reports only whether the mailbox completed: the
// request's own status is in its response header. Checks, in order:
// environment open (ENXIO), board present (ENODEV), record present
// (EFAULT), extension present when words are given (EFAULT), extension
// words (EINVAL, at most 1024).
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

constexpr uint32_t kExtensionWordsMax = 1024;

// kvd_get_board_sli4_if_type answers with negative numbers.
constexpr CallFamily kIfTypeFamily{-ENXIO, -ENODEV, -EFAULT, -ENOMEM};

} // namespace

int32_t IssueInternalMboxWithRetryEx(uint32_t board, MAILBOX *mb, void *extension, uint32_t extension_words,
                                     uint32_t rsvd1, uint32_t rsvd2, uint32_t retries, uint32_t delay)
{
    return board_call<int32_t>(
        "IssueInternalMboxWithRetryEx", board, kErrnoFamily, mb,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg_ptr("mb", mb)
                .arg_ptr("extension", extension)
                .arg("extension_words", extension_words)
                .arg("rsvd1", rsvd1)
                .arg("rsvd2", rsvd2)
                .arg("retries", retries)
                .arg("delay", delay);
        },
        [&](Call &c, Board &b) -> int32_t {
            if (extension_words && !extension)
                return EFAULT;
            if (extension_words > kExtensionWordsMax)
                return EINVAL;
            c.out(mb, MAILBOX_SIZE);
            c.out(extension, size_t{extension_words} * 4);
            uint8_t record[MAILBOX_SIZE];
            memcpy(record, mb, sizeof record);
            uint8_t received[MAILBOX_SIZE];
            memcpy(received, record, sizeof received);
            const size_t ext_len = static_cast<size_t>(extension_words) * 4;
            uint8_t *ext = static_cast<uint8_t *>(extension);

            ProcessMemory memory;
            CommandNote note;
            int32_t rc =
                b.fw->issue(record, MAILBOX_WORDS, MAILBOX_WORDS, retries, memory, {ext, ext_len}, &note);
            if (rc == EINVAL)
                return rc;
            memcpy(mb, record, sizeof record);

            c.line.result(rc);
            if (note.name)
                c.line.tag("command", note.name);
            if (note.rule)
                c.line.injected(note.rule);
            c.line.bytes("in", received, sizeof received);
            c.line.bytes("out", mb, MAILBOX_SIZE);
            if (ext_len)
                c.line.bytes("ext", ext, ext_len);
            return rc;
        });
}

int32_t kvd_get_board_sli4_if_type(uint32_t board)
{
    return board_call<int32_t>(
        "kvd_get_board_sli4_if_type", board, kIfTypeFamily, [&](TraceLine &t) { t.arg("board", board); },
        [&](Call &, Board &b) -> int32_t { return b.cfg->sli_mode == 4 ? b.cfg->if_type : 0; });
}
