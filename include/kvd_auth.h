/*
 * FC-SP (DH-CHAP) authentication records and operations of the board-access
 * library: the configuration of a local/remote pair, its passwords, the
 * status of its authentication and the list of remote entities configured
 * for a local port.
 *
 * Entities are WWNs held in wire order: byte 0 is the first byte of the
 * name. The calls that take an entity as a 64-bit value take those eight
 * bytes as they lie in memory.
 */
#ifndef KVD_AUTH_H
#define KVD_AUTH_H

#include "kvd_brdinfo.h"

#include <time.h> /* hbaapi.h uses struct tm without including it */

#include <hbaapi.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Authentication configuration of one local/remote pair. */
typedef struct ZRT_FCSP_CONFIG {
    uint64_t local_entity;
    uint64_t remote_entity;
    uint16_t authentication_timeout; /* seconds */
    uint8_t authentication_mode;
    uint8_t bidirectional : 1;
    uint8_t pad : 7;
    uint8_t authentication_type_priority[4];
    uint8_t hash_priority[4];
    uint8_t dh_group_priority[8];
    uint32_t reauthenticate_time_interval;
} ZRT_FCSP_CONFIG;

KVD_STATIC_ASSERT(sizeof(ZRT_FCSP_CONFIG) == 40, "ZRT_FCSP_CONFIG is 40 bytes");
KVD_STATIC_ASSERT(offsetof(ZRT_FCSP_CONFIG, remote_entity) == 8, "remote_entity offset");
KVD_STATIC_ASSERT(offsetof(ZRT_FCSP_CONFIG, authentication_timeout) == 16, "authentication_timeout offset");
KVD_STATIC_ASSERT(offsetof(ZRT_FCSP_CONFIG, authentication_mode) == 18, "authentication_mode offset");
KVD_STATIC_ASSERT(offsetof(ZRT_FCSP_CONFIG, authentication_type_priority) == 20,
                  "authentication_type_priority offset");
KVD_STATIC_ASSERT(offsetof(ZRT_FCSP_CONFIG, hash_priority) == 24, "hash_priority offset");
KVD_STATIC_ASSERT(offsetof(ZRT_FCSP_CONFIG, dh_group_priority) == 28, "dh_group_priority offset");
KVD_STATIC_ASSERT(offsetof(ZRT_FCSP_CONFIG, reauthenticate_time_interval) == 36,
                  "reauthenticate_time_interval offset");

/* The bidirectional bit is byte 19, bit 0. */
#define KVD_FCSP_BIDIR_OFFSET 19

/* Authentication types, hashes and DH groups as the configuration lists
 * them (0 ends a priority list; DH group 0 is the null group). */
#define KVD_AUTH_TYPE_DHCHAP 1
#define KVD_AUTH_HASH_MD5 1
#define KVD_AUTH_HASH_SHA1 2
#define KVD_AUTH_DH_GROUP_MAX 5

/* Password types. */
#define KVD_PASSWD_ASCII 1
#define KVD_PASSWD_BINARY 2
#define KVD_PASSWD_IGNORE 3
#define KVD_PASSWD_MAX 128

typedef struct AUTH_PASSWD_INFO {
    uint16_t length;                  /* bytes of password used */
    uint16_t type;                    /* KVD_PASSWD_... */
    uint8_t password[KVD_PASSWD_MAX]; /* zero-padded; not terminated when full */
} AUTH_PASSWD_INFO;

KVD_STATIC_ASSERT(sizeof(AUTH_PASSWD_INFO) == 132, "AUTH_PASSWD_INFO is 132 bytes");
KVD_STATIC_ASSERT(offsetof(AUTH_PASSWD_INFO, type) == 2, "type offset");
KVD_STATIC_ASSERT(offsetof(AUTH_PASSWD_INFO, password) == 4, "password offset");

typedef struct ZRT_AUTH_PASSWD {
    uint64_t local_entity;
    uint64_t remote_entity;
    AUTH_PASSWD_INFO current_local_passwd;
    AUTH_PASSWD_INFO current_remote_passwd;
    AUTH_PASSWD_INFO new_local_passwd;
    AUTH_PASSWD_INFO new_remote_passwd;
} ZRT_AUTH_PASSWD;

KVD_STATIC_ASSERT(sizeof(ZRT_AUTH_PASSWD) == 544, "ZRT_AUTH_PASSWD is 544 bytes");
KVD_STATIC_ASSERT(offsetof(ZRT_AUTH_PASSWD, remote_entity) == 8, "remote_entity offset");
KVD_STATIC_ASSERT(offsetof(ZRT_AUTH_PASSWD, current_local_passwd) == 16, "current_local_passwd offset");
KVD_STATIC_ASSERT(offsetof(ZRT_AUTH_PASSWD, current_remote_passwd) == 148, "current_remote_passwd offset");
KVD_STATIC_ASSERT(offsetof(ZRT_AUTH_PASSWD, new_local_passwd) == 280, "new_local_passwd offset");
KVD_STATIC_ASSERT(offsetof(ZRT_AUTH_PASSWD, new_remote_passwd) == 412, "new_remote_passwd offset");

/* Authentication states. */
#define KVD_AUTH_STATE_NONE 0    /* never run on this pair */
#define KVD_AUTH_STATE_RUNNING 1 /* an exchange is under way */
#define KVD_AUTH_STATE_SUCCESS 2
#define KVD_AUTH_STATE_FAILED 3

/* Why the last authentication failed. */
#define KVD_AUTH_FAIL_NONE 0
#define KVD_AUTH_FAIL_SECRET 1      /* a response did not verify: the secrets differ */
#define KVD_AUTH_FAIL_MECHANISM 2   /* no authentication type both sides use */
#define KVD_AUTH_FAIL_DH_GROUP 3    /* no DH group both sides use */
#define KVD_AUTH_FAIL_HASH 4        /* no hash function both sides use */
#define KVD_AUTH_FAIL_NO_RESPONSE 5 /* the remote entity did not answer */
#define KVD_AUTH_FAIL_NO_SECRET 6   /* a side that must answer has no password */
#define KVD_AUTH_FAIL_NOT_ENABLED 7 /* the remote entity does not authenticate */

typedef struct KVD_AuthStatus {
    HBA_WWN local_entity;
    HBA_WWN remote_entity;
    uint8_t auth_state;
    uint8_t auth_failReason;
    uint8_t auth_type;
    uint8_t dhGroup;
    uint8_t hash;
    uint8_t localAuth : 1;
    uint8_t remoteAuth : 1;
    uint8_t pad : 6;
    uint16_t reserved0;
    uint32_t time_from_last_auth;  /* seconds */
    uint32_t time_until_next_auth; /* seconds; 0 when not re-authenticating */
    uint32_t reserved1[2];         /* the record is 40 bytes: the fields end at 36 */
} KVD_AuthStatus;

KVD_STATIC_ASSERT(sizeof(KVD_AuthStatus) == 40, "KVD_AuthStatus is 40 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, remote_entity) == 8, "remote_entity offset");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, auth_state) == 16, "auth_state offset");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, auth_failReason) == 17, "auth_failReason offset");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, auth_type) == 18, "auth_type offset");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, dhGroup) == 19, "dhGroup offset");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, hash) == 20, "hash offset");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, reserved0) == 22, "reserved0 offset");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, time_from_last_auth) == 24, "time_from_last_auth offset");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, time_until_next_auth) == 28, "time_until_next_auth offset");
KVD_STATIC_ASSERT(offsetof(KVD_AuthStatus, reserved1) == 32, "reserved1 offset");

/* The localAuth/remoteAuth byte. */
#define KVD_AUTHSTATUS_FLAGS_OFFSET 21

/* numberOfEntries: the room in entries on the way in, the entries written
 * on the way out; the entities follow the count, packed. */
typedef struct KVD_AuthConfigList {
    uint32_t numberOfEntries;
    HBA_WWN entity[1];
} KVD_AuthConfigList;

KVD_STATIC_ASSERT(offsetof(KVD_AuthConfigList, entity) == 4, "entity offset");
KVD_STATIC_ASSERT(sizeof(HBA_WWN) == 8, "HBA_WWN is 8 bytes");
#define KVD_AUTHLIST_SIZE(n) (4u + 8u * (uint32_t)(n))

uint32_t KVD_GetAuthConfig(uint32_t board, ZRT_FCSP_CONFIG *config);
uint32_t KVD_SetAuthConfig(uint32_t board, ZRT_FCSP_CONFIG *config, AUTH_PASSWD_INFO *password);
uint32_t KVD_DeleteAuthConfig(uint32_t board, uint64_t local_entity, uint64_t remote_entity,
                              AUTH_PASSWD_INFO *password);
uint32_t KVD_GetAuthPassword(uint32_t board, ZRT_AUTH_PASSWD *password);
uint32_t KVD_SetAuthPassword(uint32_t board, ZRT_AUTH_PASSWD *password);
uint32_t KVD_InitiateAuthentication(uint32_t board, uint64_t local_entity, uint64_t remote_entity);
/* `remote` points at the remote entity (the shell passes status->remote_entity). */
uint32_t KVD_GetAuthStatus(uint32_t board, KVD_AuthStatus *status, HBA_WWN *remote);
/* list->numberOfEntries entries of room follow the count. */
uint32_t KVD_GetAuthConfigList(uint32_t board, uint64_t local_entity, KVD_AuthConfigList *list);

#ifdef __cplusplus
}
#endif

#endif
