/*
 * The "tarvo" family: commands to the Tarvo converged-network ASIC.
 *
 * Every sub-command builds one (sometimes two or three) command records,
 * sends each with KVD_SendTarvoCommand, checks the transport status and the
 * response's own code word, and prints the decoded response. The dispatcher
 * lends each sub-command one tarvo_rsp_t as its response area.
 */
#ifndef KVD_TARVO_FAMILY_H
#define KVD_TARVO_FAMILY_H

#include "kvd_cmds.h"

constexpr int32_t tarvoinfo_array_size = 42;
extern cmdinfo tarvoinfo[tarvoinfo_array_size];

/* Largest response a sub-command allocates from a size the ASIC reports, and
 * largest image file sent in one exchange. */
#define TVO_RSP_ALLOC_MAX 0x100000u
#define TVO_IMAGE_MAX 0x1000000u

KVD_HANDLER(tvoinval);
void tvoParseErr(uint32_t status);
void swap32_buffer(void *buffer, int length);
void swap64_addr(uint8_t *address);
uint32_t tvochksum(const void *buffer, int length);

/* The response area a handler was lent, or, when none was, a spare one
 * after "Rsp ptr is null". */
tarvo_rsp_t *tvo_rsp_area(void *arg);

/* Sends cmd_len bytes of cmd, offering rsp_size bytes of rsp. Returns 0 when
 * the response may be decoded; otherwise the transport line or the ASIC's
 * code has been printed (as "code=%d", or as "status=%x" for TVO_STATUS_HEX). */
#define TVO_CODE_DEC 0
#define TVO_STATUS_HEX 1
int tvo_send(void *cmd, uint32_t cmd_len, void *rsp, uint32_t rsp_size, int code_style);

/* Sends a get record (code, context, length = rsp_size) with rsp_size bytes
 * of rsp offered and cleared; length may differ from the bytes offered. */
int tvo_get(uint32_t code, uint32_t context, void *rsp, uint32_t rsp_size, uint32_t length);

/* Heap records of exact size, cleared; null after the family's message. */
void *tvo_alloc_cmd(size_t size);

KVD_HANDLER(tvoinit);
KVD_HANDLER(tvodownload);
KVD_HANDLER(tvordmem);
KVD_HANDLER(tvowmem);
KVD_HANDLER(tvogetinit);
KVD_HANDLER(tvogetfru);
KVD_HANDLER(tvosetfru);
KVD_HANDLER(tvofcoefmt);
KVD_HANDLER(tvogetcfg);
KVD_HANDLER(tvoportstat);
KVD_HANDLER(tvolifstat);
KVD_HANDLER(tvoasicstat);
KVD_HANDLER(tvologcfg);
KVD_HANDLER(tvologdata);
KVD_HANDLER(tvopaniclog);
KVD_HANDLER(tvogetsfp);

#endif
