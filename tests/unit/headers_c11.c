/* Compiled as C11: the shared headers must stay valid C. */
#include "libkvd.h"
#include "kvd_events.h"
#include "kvd_sli.h"

int kvd_headers_c11_probe(void);
int kvd_headers_c11_probe(void)
{
    MAILBOX mb = {0};
    mb.mbxCommand = MBX_READ_REV;
    return (int)sizeof(KVD_BRDINFO) + mb.mbxCommand;
}
