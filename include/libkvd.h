/*
 * Operations of the board-access library libkvd.so.3.
 *
 * Argument order and widths follow the library as shipped; the shell and the
 * virtual-adapter library both compile against this one declaration.
 */
#ifndef LIBKVD_H
#define LIBKVD_H

#include <time.h> /* hbaapi.h uses struct tm without including it */

#include <hbaapi.h>

#include "kvd_attr.h"
#include "kvd_brdinfo.h"
#include "kvd_events.h"
#include "kvd_mbox.h"
#include "kvd_sli4.h"
#include "kvd_mgmt.h"
#include "kvd_regs.h"
#include "kvd_tarvo.h"
#include "kvd_port.h"
#include "kvd_passthru.h"
#include "kvd_scsi.h"
#include "kvd_logging.h"
#include "kvd_auth.h"
#include "kvd_nodes.h"
#include "kvd_vport.h"
#include "kvd_sd.h"
#include "kvd_cfg.h"
#include "kvd_fcf.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Library results other than 0 and the mailbox retry result 1 are errno
 * values, as the driver's ioctl path reports them. */
#define KVD_RC_OK 0
#define KVD_RC_MBX_RETRIES 1 /* the firmware stayed busy through every retry */

/* Bits set here are the kinds of library messages sent to the system log. */
extern uint32_t libkvd_logging_enable;

/* Environment. */
uint32_t KVD_InitDiagEnv(KVD_BRDINFO *brdinfo, uint32_t max_boards);
void KVD_FreeDiagEnv(void);
uint32_t InitDiagEnv(BRDINFO *brdinfo); /* legacy: table of 32 entries */
uint32_t KVD_GetLibVer(char *version);  /* 32-byte buffer */

/* Events. */
uint32_t unRegisterForEvent(uint32_t board, uint32_t event_id);

/* HBA API attributes. */
HBA_STATUS GetAdapterAttributes(uint32_t board, HBA_ADAPTERATTRIBUTES *attributes);
HBA_STATUS GetAdapterPortAttributes(uint32_t board, uint32_t port, HBA_PORTATTRIBUTES *attributes);
HBA_STATUS GetPortAttributesByIndex(uint32_t board, uint32_t port, uint32_t index,
                                    HBA_PORTATTRIBUTES *attributes);
HBA_STATUS GetDiscoveredPortAttributes(uint32_t board, uint32_t port, uint32_t index,
                                       HBA_PORTATTRIBUTES *attributes);
HBA_STATUS GetPortAttributesByWWN(uint32_t board, HBA_WWN wwn, HBA_PORTATTRIBUTES *attributes);
HBA_STATUS GetPortStatistics(uint32_t board, uint32_t port, HBA_PORTSTATISTICS *statistics);

/* Link and driver information. */
uint32_t KVD_GetLinkInfo(uint32_t board, LINKINFO *info);
uint32_t KVD_GetDrvInfo(uint32_t board, KVDDRVINFO *info);

/* Mailbox. Result 0: completed; 1: completed after the retries ran out
 * (the record holds what the firmware returned); other values: failure. */
int32_t KVD_IssueMboxWithRetry(uint32_t board, MAILBOX *mb, uint32_t words_in, uint32_t words_out,
                               uint32_t retries, uint32_t delay);
int32_t KVD_IssueMboxWithRetryV2(uint32_t board, MAILBOX *mb, uint32_t words, uint32_t retries,
                                 uint32_t delay);

#ifdef __cplusplus
}
#endif

#endif
