/* Compiled as C11: the shared headers must stay valid C. */
#include "libkvd.h"
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
    FCP_CMND fcp = {0};
    KVD_CT_HDR ct = {0};
    KVD_ELS_DEST dest = {KVD_ELS_ADDR_DID, 0};
    mb.mbxCommand = MBX_READ_REV;
    fcp.fcpCdb[0] = SCSI_READ_10;
    ct.revision = CT_REVISION;
    return (int)sizeof(KVD_BRDINFO) + mb.mbxCommand + fcp.fcpCdb[0] + ct.revision + (int)dest.addrType +
           (int)sizeof(FCP_RSP) + (int)sizeof(SCSI_SENSE);
}
