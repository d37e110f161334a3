/* Compiled as C11: the shared headers must stay valid C. */
#include "kvd_sli4.h" /* on its own first: it must bring what it needs */
#include "libkvd.h"
#include "kvd_mgmt.h"
#include "kvd_regs.h"
#include "kvd_events.h"
#include "kvd_sli.h"
#include "kvd_port.h"
#include "kvd_logging.h"
#include "kvd_auth.h"
#include "kvd_nodes.h"
#include "kvd_vport.h"
#include "kvd_sd.h"
#include "kvd_cfg.h"
#include "kvd_fcf.h"

int kvd_headers_c11_probe(MAILBOX *sli4);
int kvd_headers_c11_probe(MAILBOX *sli4)
{
    MAILBOX mb = {0};
    tarvo_cmd_t cmd = {0};
    KVD_FCOEPARAM fp = {0};
    FCP_CMND fcp = {0};
    KVD_CT_HDR ct = {0};
    KVD_ELS_DEST dest = {KVD_ELS_ADDR_DID, 0};
    KVD_VPATTRIB vp = {0};
    mb.mbxCommand = MBX_READ_REV;
    cmd.get.code = TARVO_CMD_GET_INIT;
    fp.version = KVD_FCOEPARAM_VERSION;
    fcp.fcpCdb[0] = SCSI_READ_10;
    ct.revision = CT_REVISION;
    vp.ver = KVD_VPATTRIB_VERSION;
    sli4->mbxCommand = MBX_SLI4_CONFIG;
    sli4->un.varSli4Cfg.emb = 1;
    return (int)sizeof(KVD_BRDINFO) + mb.mbxCommand + (int)cmd.code + (int)sizeof(tarvo_rsp_t) + fp.version +
           fcp.fcpCdb[0] + ct.revision + vp.ver + (int)dest.addrType + (int)sizeof(FCP_RSP) +
           (int)sizeof(SCSI_SENSE) + (int)sizeof(gorvik_common_read_object_cmd) +
           IssueInternalMboxWithRetryEx(0, sli4, 0, 0, 0, 0, 1, 100) + kvd_get_board_sli4_if_type(0) +
           (int)KVD_SetDriverLogMask(0, KVD_DRVLOG_ALL) + (int)sizeof(CFGPARAM) +
           (int)sizeof(KVD_FCFCONNLIST) + (int)sizeof(KVD_FCFENTRY) + (int)sizeof(KVD_QOSCONFIG);
}
