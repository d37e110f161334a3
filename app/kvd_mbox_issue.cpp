// Issuing a mailbox record through the board-access library.
//
// Both wrappers refuse a board the library did not report (result 2, and the
// library is not called) and fold the library's "retries ran out" result 1
// into -1: the record came back either way, and the caller prints whatever
// status the firmware left in it.
#include "kvd.h"

#define KVD_MBX_RETRIES 5
#define KVD_MBX_DELAY 100
#define KVD_MBX_BAD_BOARD 2

static int32_t kvd_mbox_result(int32_t rc)
{
    return rc == KVD_RC_MBX_RETRIES ? -1 : rc;
}

int32_t kvd_IssueMbox(uint32_t board, MAILBOX *mb, uint32_t words_in, uint32_t words_out)
{
    if (board >= kvd_bound_boards(kvd_pci_brds))
        return KVD_MBX_BAD_BOARD;
    return kvd_mbox_result(
        KVD_IssueMboxWithRetry(board, mb, words_in, words_out, KVD_MBX_RETRIES, KVD_MBX_DELAY));
}

int32_t kvd_IssueMboxV2(uint32_t board, MAILBOX *mb)
{
    if (board >= kvd_bound_boards(kvd_pci_brds))
        return KVD_MBX_BAD_BOARD;
    return kvd_mbox_result(
        KVD_IssueMboxWithRetryV2(board, mb, MAILBOX_WORDS, KVD_MBX_RETRIES, KVD_MBX_DELAY));
}
