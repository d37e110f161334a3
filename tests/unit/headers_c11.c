/* Compiled as C11: the shared headers must stay valid C. */
#include "libkvd.h"
#include "kvd_mgmt.h"
#include "kvd_regs.h"
#include "kvd_port.h"

int kvd_headers_c11_probe(void);
int kvd_headers_c11_probe(void)
{
    MAILBOX mb = {0};
    tarvo_cmd_t cmd = {0};
    mb.mbxCommand = MBX_READ_REV;
    cmd.get.code = TARVO_CMD_GET_INIT;
    KVD_FCOEPARAM fp = {0};
    fp.version = KVD_FCOEPARAM_VERSION;
    return (int)sizeof(KVD_BRDINFO) + mb.mbxCommand + (int)cmd.code + (int)sizeof(tarvo_rsp_t) + fp.version;
}
