/* Compiled as C11: the shared headers must stay valid C. */
#include "kvd_sli4.h" /* on its own first: it must bring what it needs */
#include "libkvd.h"

int kvd_headers_c11_probe(void);
int kvd_headers_c11_probe(void)
{
    MAILBOX mb = {0};
    mb.mbxCommand = MBX_READ_REV;
    mb.un.varSli4Cfg.emb = 1;
    return (int)sizeof(KVD_BRDINFO) + mb.mbxCommand + (int)sizeof(gorvik_common_read_object_cmd) +
           (int)(IssueInternalMboxWithRetryEx != 0) + (int)(kvd_get_board_sli4_if_type != 0);
}
