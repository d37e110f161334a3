/* Compiled as C11: the shared headers must stay valid C. */
#include "kvd_sli4.h" /* on its own first: it must bring what it needs */
#include "libkvd.h"

int kvd_headers_c11_probe(MAILBOX *mb);
int kvd_headers_c11_probe(MAILBOX *mb)
{
    mb->mbxCommand = MBX_SLI4_CONFIG;
    mb->un.varSli4Cfg.emb = 1;
    return (int)sizeof(KVD_BRDINFO) + (int)sizeof(gorvik_common_read_object_cmd) +
           IssueInternalMboxWithRetryEx(0, mb, 0, 0, 0, 0, 1, 100) + kvd_get_board_sli4_if_type(0);
}
