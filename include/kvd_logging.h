/*
 * Logging controls of the board-access library: the kinds of library
 * messages sent to the system log (the bits of libkvd_logging_enable) and
 * the driver's logging mask of each board.
 */
#ifndef KVD_LOGGING_H
#define KVD_LOGGING_H

#include "kvd_brdinfo.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Bits of libkvd_logging_enable. */
#define KVD_SYSLOG_ERROR 0x00000001u   /* failed calls */
#define KVD_SYSLOG_WARNING 0x00000002u /* retries and unusual replies */
#define KVD_SYSLOG_MBOX 0x00000004u    /* mailbox commands issued */
#define KVD_SYSLOG_EVENT 0x00000008u   /* events delivered to callbacks */
#define KVD_SYSLOG_ENV 0x00000010u     /* environment opened and released */
#define KVD_SYSLOG_TRACE 0x00000020u   /* every call with its arguments */
#define KVD_SYSLOG_ALL 0x0000003Fu

/* Bits of the driver's logging mask: the kinds of driver messages logged
 * for the board. */
#define KVD_DRVLOG_INIT 0x00000001u  /* adapter initialisation */
#define KVD_DRVLOG_LINK 0x00000002u  /* link events */
#define KVD_DRVLOG_DISC 0x00000004u  /* discovery and logins */
#define KVD_DRVLOG_MBOX 0x00000008u  /* mailbox commands */
#define KVD_DRVLOG_ELS 0x00000010u   /* ELS traffic */
#define KVD_DRVLOG_FCP 0x00000020u   /* FCP I/O */
#define KVD_DRVLOG_EVENT 0x00000040u /* asynchronous events */
#define KVD_DRVLOG_FCOE 0x00000080u  /* FCoE and FIP */
#define KVD_DRVLOG_MGMT 0x00000100u  /* management requests */
#define KVD_DRVLOG_ALL 0x000001FFu

/* Sets libkvd_logging_enable; bits outside KVD_SYSLOG_ALL are refused. */
uint32_t KVD_SetLibLogging(uint32_t mask);
/* The driver's logging mask of a board; bits outside KVD_DRVLOG_ALL are
 * refused. The mask outlives adapter resets. */
uint32_t KVD_GetDriverLogMask(uint32_t board, uint32_t *mask);
uint32_t KVD_SetDriverLogMask(uint32_t board, uint32_t mask);

#ifdef __cplusplus
}
#endif

#endif
