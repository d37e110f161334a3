/*
 * The SLI-4 families: controller requests ("sli4") and the object store
 * ("sli4iov"). Their tables and the routines the unit tests reach.
 */
#ifndef KVD_SLI4CMDS_H
#define KVD_SLI4CMDS_H

#include "kvd.h"

/* Controller requests. Each returns 2 when the board cannot run it, the
 * library's result when that is non-zero, 1 when the firmware's answer fails
 * the request's success test, and 0 after filling the result. */
constexpr int32_t g_sli4info_array_size = 6;
extern cmdinfo sli4info[g_sli4info_array_size];
int32_t get_Cntl_Attributes(uint32_t board, get_cntl_attributes *attributes);
int32_t get_Cntl_Addl_Attributes(uint32_t board, get_cntl_addl_attributes *attributes);
int32_t query_fw_config(uint32_t board, KVD_vexa_sli4_query_fw_config_rsp *config);
int32_t get_beacon_config(uint32_t board, uint8_t *beacon_state);
int32_t get_dcbx_mode(uint32_t board, uint8_t *dcbx_mode);
int32_t issue_sli4_nop(uint32_t board);
/* Model text of an IPL file number ("Not documented" when unknown). */
const char *kvd_ipl_model(uint32_t ipl_file_number);
KVD_HANDLER(sli4Inval);

/* Object store. */
constexpr int32_t g_sli4iovinfo_array_size = 7;
extern cmdinfo sli4iovinfo[g_sli4iovinfo_array_size];
#define KVD_SLI4IOV_MAX_BUFFERS 8
#define KVD_SLI4IOV_MAX_BUFSIZE 3840
#define KVD_SLI4IOV_NAME_LIMIT 103 /* longest name the size query takes */
extern const char *quickList[];
/* Copies an object name into the request's 104-byte objectName field. */
void object_name_swap(char *object_name, const char *name);
/* Type and info texts of a list entry; each buffer holds 48 bytes. */
#define KVD_TYPETEXT_SIZE 48
void translateType(uint32_t type, uint32_t info, char *type_text, char *info_text);
int32_t getObjectSize(const char *name, uint32_t *size);
int32_t download(const char *object_name, const char *file_name, uint32_t count, uint32_t size,
                 uint32_t eof_mode);
int32_t sli4iovGetObject(const char *file_name, const char *object_name, uint32_t count, uint32_t size);
int32_t sli4iovDeleteObj(const char *object_name);
int32_t listobjs(void);
int32_t quickDump(void);
KVD_HANDLER(sli4iovInval);

#endif
