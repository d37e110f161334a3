/*
 * Statistics and diagnostic events and latency collection: what the two
 * files of the family and their tests share.
 */
#ifndef KVD_SD_CMDS_H
#define KVD_SD_CMDS_H

#include <stdint.h>

#include "kvd.h"

#define KVD_SD_KINDS 17 /* event kinds the shell knows: hit_count and handles */

/* Per kind: events counted since the last sd_all_events or sd_quick_event.
 * Written by the library's thread with relaxed atomic increments. */
extern int32_t hit_count[KVD_SD_KINDS];
/* Non-zero: EventCallBack prints each event. */
extern int32_t callback_verbose_level;

int decode_sd_status(int32_t status, const char **text);
int decode_sd_category(uint32_t category, uint32_t subcategory, const char **category_text,
                       const char **subcategory_text, int32_t *index);
void sd_help_category(void);
void dump_hit_count(uint32_t board);
int32_t register_all_sd_events(uint32_t board, HBA_WWN vport, uint32_t *handles);
void EventCallBack(uint32_t board, HBA_WWN port, uint32_t category, uint32_t subcategory, void *context,
                   SD_event *event);

/* Lists the current board's FCP targets; returns their count, or -4. */
int32_t sd_fcpmap(void);
void dump_io_latency(uint32_t board, HBA_WWN vport);

#endif
