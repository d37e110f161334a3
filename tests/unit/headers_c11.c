/* Compiled as C11: the shared headers must stay valid C. */
#include "libkvd.h"

int kvd_headers_c11_probe(void);
int kvd_headers_c11_probe(void)
{
    MAILBOX mb = {0};
    FCP_CMND fcp = {0};
    KVD_CT_HDR ct = {0};
    KVD_ELS_DEST dest = {KVD_ELS_ADDR_DID, 0};
    mb.mbxCommand = MBX_READ_REV;
    fcp.fcpCdb[0] = SCSI_READ_10;
    ct.revision = CT_REVISION;
    return (int)sizeof(KVD_BRDINFO) + mb.mbxCommand + fcp.fcpCdb[0] + ct.revision + (int)dest.addrType +
           (int)sizeof(FCP_RSP) + (int)sizeof(SCSI_SENSE);
}
