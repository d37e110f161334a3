/*
 * Driver configuration parameters: the list of named tunables the host
 * driver exposes for a board, read as a whole and set one at a time by
 * index.
 */
#ifndef KVD_CFG_H
#define KVD_CFG_H

#include "kvd_brdinfo.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Room the caller gives GetCfgParam: the list never holds more. */
#define KVD_CFG_MAX_PARAMS 64
#define KVD_CFG_NAME_LEN 32
#define KVD_CFG_HELP_LEN 80

/* a_flag bits. */
#define KVD_CFG_DYNAMIC 0x0001 /* a change takes effect at once */

/* a_changestate: when a change takes effect. */
#define KVD_CFG_CHG_NOW 0     /* at once (dynamic parameter) */
#define KVD_CFG_CHG_RESET 1   /* at the next adapter reset */
#define KVD_CFG_CHG_PENDING 2 /* a changed value waits for the next reset */

typedef struct CfgParam {
    char a_string[KVD_CFG_NAME_LEN]; /* NUL-terminated name */
    uint32_t a_low;
    uint32_t a_hi;
    uint32_t a_default;
    uint32_t a_current;
    uint16_t a_flag;
    uint16_t a_changestate;
    char a_help[KVD_CFG_HELP_LEN]; /* NUL-terminated description */
} CFGPARAM;

KVD_STATIC_ASSERT(sizeof(CFGPARAM) == 132, "CFGPARAM is 132 bytes");
KVD_STATIC_ASSERT(offsetof(CFGPARAM, a_low) == 32, "a_low offset");
KVD_STATIC_ASSERT(offsetof(CFGPARAM, a_hi) == 36, "a_hi offset");
KVD_STATIC_ASSERT(offsetof(CFGPARAM, a_default) == 40, "a_default offset");
KVD_STATIC_ASSERT(offsetof(CFGPARAM, a_current) == 44, "a_current offset");
KVD_STATIC_ASSERT(offsetof(CFGPARAM, a_flag) == 48, "a_flag offset");
KVD_STATIC_ASSERT(offsetof(CFGPARAM, a_changestate) == 50, "a_changestate offset");
KVD_STATIC_ASSERT(offsetof(CFGPARAM, a_help) == 52, "a_help offset");

/* Fills cfgparam (room for KVD_CFG_MAX_PARAMS entries) and returns the
 * number of parameters; 0 is a failure. */
uint32_t GetCfgParam(uint32_t board, CFGPARAM *cfgparam);
/* Sets the parameter at `index` of the list to `value`: 0, or EINVAL for an
 * index past the list, ERANGE for a value outside the parameter's range. */
uint32_t SetCfgParam(uint32_t board, uint32_t index, uint32_t value);

#ifdef __cplusplus
}
#endif

#endif
