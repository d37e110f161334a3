// FC-SP authentication commands: the configuration of a local/remote pair,
// its passwords, authentication and its status, and the list of remote
// entities configured for a local port. The library stores and applies
// everything; the shell builds the records and prints the replies.
//
// WWNs are typed as 16 hex digits and held in wire order (first typed pair
// in byte 0); an entity printed back is that 64-bit word as it lies in
// memory, so its bytes read in reverse order of typing.
//
// Passwords are never printed, and their copies are wiped before the
// command returns.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

#define KVD_AUTHLIST_DEFAULT 5
#define KVD_AUTHLIST_ANNOUNCED 5 /* the room the library is told of */

// "%llx" text to a 64-bit word whose bytes in memory are the WWN in wire
// order. Text that does not convert gives 0.
static uint64_t kvd_auth_wwn(const char *text)
{
    unsigned long long v = 0;
    uint8_t bytes[8];
    uint64_t stored;
    int i;

    if (sscanf(text, "%llx", &v) != 1)
        v = 0;
    for (i = 0; i < 8; i++)
        bytes[i] = (uint8_t)(v >> (56 - 8 * i));
    memcpy(&stored, bytes, sizeof stored);
    return stored;
}

// A password record of `type` holding at most the first 128 bytes of text.
static void kvd_auth_passwd(AUTH_PASSWD_INFO *p, const char *text, uint16_t type)
{
    size_t n = strnlen(text, KVD_PASSWD_MAX);

    memset(p, 0, sizeof *p);
    memcpy(p->password, text, n);
    p->length = (uint16_t)n;
    p->type = type;
}

static void kvd_auth_print_cfg(const ZRT_FCSP_CONFIG *c)
{
    printf(
        "Auth Config: lwwpn:%llx  rwwpn:%llx  \n Authentication Timeout: %d\n Authentication Mode:    %d\n "
        "Bidirectional:          %d\n Authentication Types:   %d:%d:%d:%d\n Hash priority:          "
        "%d:%d:%d:%d\n DH Groups:              %d:%d:%d:%d:%d:%d:%d:%d\n Reauthentication Time:  %d\n",
        (unsigned long long)c->local_entity, (unsigned long long)c->remote_entity, c->authentication_timeout,
        c->authentication_mode, c->bidirectional, c->authentication_type_priority[0],
        c->authentication_type_priority[1], c->authentication_type_priority[2],
        c->authentication_type_priority[3], c->hash_priority[0], c->hash_priority[1], c->hash_priority[2],
        c->hash_priority[3], c->dh_group_priority[0], c->dh_group_priority[1], c->dh_group_priority[2],
        c->dh_group_priority[3], c->dh_group_priority[4], c->dh_group_priority[5], c->dh_group_priority[6],
        c->dh_group_priority[7], (int)c->reauthenticate_time_interval);
}

KVD_HANDLER(authgetcfg)
{
    ZRT_FCSP_CONFIG cfg;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 3) {
        puts("Usage: authgetcfg lwwpn rwwpn");
        puts("    Note:WWNs must not include any ':'");
        return KVD_USAGE;
    }
    memset(&cfg, 0, sizeof cfg);
    cfg.local_entity = kvd_auth_wwn(margv[1]);
    cfg.remote_entity = kvd_auth_wwn(margv[2]);
    rc = KVD_GetAuthConfig((uint32_t)cur_board, &cfg);
    if (rc) {
        printf("authgetcfg failed with rc = x%x\n", rc);
        return (int32_t)rc;
    }
    kvd_auth_print_cfg(&cfg);
    return KVD_OK;
}

KVD_HANDLER(authsetcfg)
{
    ZRT_FCSP_CONFIG cfg;
    AUTH_PASSWD_INFO pw;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 4) {
        puts("Usage: authgetcfg lwwpn rwwpn lpass");
        return KVD_USAGE;
    }
    memset(&cfg, 0, sizeof cfg);
    cfg.local_entity = kvd_auth_wwn(margv[1]);
    cfg.remote_entity = kvd_auth_wwn(margv[2]);
    cfg.authentication_timeout = 45;
    cfg.authentication_mode = 1;
    cfg.bidirectional = 0;
    cfg.authentication_type_priority[0] = 1;
    cfg.hash_priority[0] = 1;
    cfg.hash_priority[1] = 2;
    cfg.dh_group_priority[0] = 5;
    cfg.dh_group_priority[1] = 4;
    cfg.dh_group_priority[2] = 3;
    cfg.dh_group_priority[3] = 2;
    cfg.dh_group_priority[4] = 1;
    cfg.reauthenticate_time_interval = 0;
    kvd_auth_passwd(&pw, margv[3], KVD_PASSWD_ASCII);
    rc = KVD_SetAuthConfig((uint32_t)cur_board, &cfg, &pw);
    explicit_bzero(&pw, sizeof pw);
    if (rc) {
        printf("authsetcfg failed with rc = x%x\n", rc);
        return (int32_t)rc;
    }
    kvd_auth_print_cfg(&cfg);
    return KVD_OK;
}

KVD_HANDLER(authdelcfg)
{
    AUTH_PASSWD_INFO pw;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 4) {
        puts("Usage: authdelcfg lwwpn rwwpn lpass");
        return KVD_USAGE;
    }
    kvd_auth_passwd(&pw, margv[3], KVD_PASSWD_ASCII);
    rc = KVD_DeleteAuthConfig((uint32_t)cur_board, kvd_auth_wwn(margv[1]), kvd_auth_wwn(margv[2]), &pw);
    explicit_bzero(&pw, sizeof pw);
    if (rc)
        printf("authsetcfg failed with rc = x%x\n", rc);
    return (int32_t)rc;
}

KVD_HANDLER(authgetpsswd)
{
    ZRT_AUTH_PASSWD pw;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 3) {
        puts("Usage: authgetcfg lwwpn rwwpn");
        return KVD_USAGE;
    }
    memset(&pw, 0, sizeof pw);
    pw.local_entity = kvd_auth_wwn(margv[1]);
    pw.remote_entity = kvd_auth_wwn(margv[2]);
    rc = KVD_GetAuthPassword((uint32_t)cur_board, &pw);
    if (rc) {
        explicit_bzero(&pw, sizeof pw);
        printf("authgetpsswd failed with rc = x%x\n", rc);
        return (int32_t)rc;
    }
    printf("Auth Password: lwwpn:%llx  rwwpn:%llx  \n Current Local Type:   %d\n Current Remote Type:  %d\n",
           (unsigned long long)pw.local_entity, (unsigned long long)pw.remote_entity,
           pw.current_local_passwd.type, pw.current_remote_passwd.type);
    explicit_bzero(&pw, sizeof pw);
    return KVD_OK;
}

// Reads a password type, 1 to 3; prints the complaint (no newline) when it
// is out of range.
static int kvd_auth_type(const char *text, const char *name, int *type)
{
    *type = 0;
    if (sscanf(text, "%d", type) != 1)
        *type = 0;
    if (*type < KVD_PASSWD_ASCII || *type > KVD_PASSWD_IGNORE) {
        printf("%d is not a valid '%s' value. Must be 1,2, or 3.", *type, name);
        return 0;
    }
    return 1;
}

// The numbers printed on the way are the command's progress trace.
KVD_HANDLER(authsetpsswd)
{
    ZRT_AUTH_PASSWD pw;
    int flag = 0, ctype, ntype;
    const char *cpass, *npass;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 8) {
        printf("Usage %d: authsetpsswd lwwpn rwwpn flag ctype cpass ntype npass\n", margc);
        printf(
            "    lwwpn: Local wwn with no ':'\n    rwwpn: Remote wwn with no ':'\n    flag: 0=local password "
            "1=remote password\n    ctype: Current type: 1=ASCI 2=Bin 3=ignore\n    cpass: Current password. "
            "'0' if type =3\n    ntype: New type: 1=ASCI 2=Bin 3=ignore\n    npass: new password.\n");
        return KVD_USAGE;
    }
    memset(&pw, 0, sizeof pw);
    pw.local_entity = kvd_auth_wwn(margv[1]);
    pw.remote_entity = kvd_auth_wwn(margv[2]);
    if (sscanf(margv[3], "%d", &flag) != 1)
        flag = 0;
    if (flag < 0 || flag > 1) {
        printf("%d is not a valid 'flag' value. Must be 0 or 1.", flag);
        return KVD_USAGE;
    }
    if (!kvd_auth_type(margv[4], "ctype", &ctype))
        return KVD_USAGE;
    cpass = margv[5];
    if (!kvd_auth_type(margv[6], "ntype", &ntype))
        return KVD_USAGE;
    printf("%d\n", 5955);
    npass = margv[7];
    printf("%d\n", 5957);
    if (flag == 1) {
        printf("%d\n", 5974);
        kvd_auth_passwd(&pw.current_remote_passwd, cpass, (uint16_t)ctype);
        kvd_auth_passwd(&pw.current_local_passwd, "", KVD_PASSWD_IGNORE);
        printf("%d\n", 5983);
        kvd_auth_passwd(&pw.new_remote_passwd, npass, (uint16_t)ntype);
        kvd_auth_passwd(&pw.new_local_passwd, "", KVD_PASSWD_IGNORE);
    } else {
        printf("%d\n", 5959);
        kvd_auth_passwd(&pw.current_local_passwd, cpass, (uint16_t)ctype);
        kvd_auth_passwd(&pw.current_remote_passwd, "", KVD_PASSWD_IGNORE);
        printf("%d\n", 5968);
        kvd_auth_passwd(&pw.new_local_passwd, npass, (uint16_t)ntype);
        kvd_auth_passwd(&pw.new_remote_passwd, "", KVD_PASSWD_IGNORE);
    }
    printf("%d\n", 5989);
    rc = KVD_SetAuthPassword((uint32_t)cur_board, &pw);
    explicit_bzero(&pw, sizeof pw);
    if (rc)
        printf("authsetcfg failed with rc = x%x\n", rc);
    return (int32_t)rc;
}

KVD_HANDLER(authinit)
{
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 3) {
        puts("Usage: authinit lwwpn rwwpn");
        return KVD_USAGE;
    }
    rc = KVD_InitiateAuthentication((uint32_t)cur_board, kvd_auth_wwn(margv[1]), kvd_auth_wwn(margv[2]));
    if (rc)
        printf("authinit failed with rc = x%x\n", rc);
    return (int32_t)rc;
}

KVD_HANDLER(authstatus)
{
    KVD_AuthStatus st;
    uint64_t local, remote;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 3) {
        puts("Usage: authstatus lwwpn rwwpn");
        return KVD_USAGE;
    }
    memset(&st, 0, sizeof st);
    local = kvd_auth_wwn(margv[1]);
    remote = kvd_auth_wwn(margv[2]);
    memcpy(st.local_entity.wwn, &local, sizeof st.local_entity.wwn);
    memcpy(st.remote_entity.wwn, &remote, sizeof st.remote_entity.wwn);
    rc = KVD_GetAuthStatus((uint32_t)cur_board, &st, &st.remote_entity);
    if (rc) {
        printf("authstatus failed with rc = x%x\n", rc);
        return (int32_t)rc;
    }
    puts("AuthStatus Returned Success");
    printf(" State: %d\n", st.auth_state);
    printf(" FailReason: %d\n", st.auth_failReason);
    printf(" type: %d\n", st.auth_type);
    printf(" dhGroup: %d\n", st.dhGroup);
    printf(" hash: %d\n", st.hash);
    printf(" localAuth: %d\n", st.localAuth);
    printf(" remoteAuth: %d\n", st.remoteAuth);
    printf(" Last: %d\n", (int)st.time_from_last_auth);
    printf(" Next: %d\n", (int)st.time_until_next_auth);
    return KVD_OK;
}

// The library is always told of room for five entries, whatever the limit,
// and the list is allocated for exactly those: a limit typed larger costs
// no memory. At most the limit, the count returned and the announced room
// of entries are printed, so neither the library's writes nor the printing
// can pass the list's end.
KVD_HANDLER(authlist)
{
    KVD_AuthConfigList *list;
    unsigned long limit = KVD_AUTHLIST_DEFAULT;
    unsigned long i;
    uint32_t count, announced = KVD_AUTHLIST_ANNOUNCED, rc;
    uint64_t entity;

    (void)row;
    (void)arg;
    if (margc != 2 && margc != 3) {
        puts("Usage: authlist lwwpn [limit]");
        puts("    Note:WWN must not include any ':'");
        return KVD_USAGE;
    }
    if (margc == 3)
        limit = strtoul(margv[2], NULL, 0);
    list = (KVD_AuthConfigList *)calloc(1, KVD_AUTHLIST_SIZE(KVD_AUTHLIST_ANNOUNCED));
    if (!list) {
        puts("malloc failed");
        return KVD_FAIL;
    }
    memcpy(&list->numberOfEntries, &announced, sizeof announced);
    rc = KVD_GetAuthConfigList((uint32_t)cur_board, kvd_auth_wwn(margv[1]), list);
    if (rc) {
        printf("authlist failed with rc = x%x\n", rc);
        free(list);
        return (int32_t)rc;
    }
    memcpy(&count, &list->numberOfEntries, sizeof count);
    printf("AuthCfgList Returned %d Entries\n", (int)count);
    for (i = 0; i < count && i < limit && i < announced; i++) {
        memcpy(&entity, (const uint8_t *)list + 4 + 8 * i, sizeof entity);
        printf(" WWPN:%llx\n", (unsigned long long)entity);
    }
    free(list);
    return KVD_OK;
}
