// FCF selection of a native FCoE port and the per-target FCP priority:
// "fcoegetlist" and "fcoesetlist" show and set the FCF connection list (the
// latter through a dialogue), "fcoegetfcflist" lists the FCFs the port
// discovered, "getfcpconfig" and "setfcpconfig" show and set the priority
// of FCP targets. The FCoE commands also show the library's result in their
// own line, as "fcoegetparams" does; a failure is then reported and returned
// as every failed library call is.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

// Room the shell gives for discovered FCFs.
#define KVD_FCF_ROOM 32

typedef struct {
    uint32_t bit;
    const char *name;
} kvd_flagname;

static const kvd_flagname kvd_conn_flags[] = {
    {KVD_FCFCONN_VALID, "valid"},
    {KVD_FCFCONN_PRIMARY, "primary"},
};

static const char *kvd_fcf_state(uint16_t state)
{
    switch (state) {
    case KVD_FCF_STATE_AVAILABLE:
        return "available";
    case KVD_FCF_STATE_LOGGED_IN:
        return "logged in";
    case KVD_FCF_STATE_EXCLUDED:
        return "excluded by the connection list";
    case KVD_FCF_STATE_MISMATCH:
        return "FC-MAP or VLAN mismatch";
    default:
        return "unknown";
    }
}

static void kvd_print_mac(const char *label, const uint8_t *mac)
{
    printf("\t%s %02x:%02x:%02x:%02x:%02x:%02x\n", label, mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

static void kvd_print_name(const char *label, const uint8_t *name)
{
    char text[24];

    kvd_mac_sprintf(name, text);
    printf("\t%s %s\n", label, text);
}

// One connection entry: the fields an FCF must match, or "any".
static void kvd_print_conn_entry(uint32_t i, const KVD_FCFCONNENTRY *e)
{
    printf("Entry %u:\n", i);
    printf("\tFlags x%04x", e->flags);
    for (size_t b = 0; b < sizeof(kvd_conn_flags) / sizeof(kvd_conn_flags[0]); b++)
        if (e->flags & kvd_conn_flags[b].bit)
            printf(" %s", kvd_conn_flags[b].name);
    printf("\n");
    if (e->flags & KVD_FCFCONN_MAC_VALID)
        kvd_print_mac("FCF MAC", e->fcfMac);
    else
        printf("\tFCF MAC any\n");
    if (e->flags & KVD_FCFCONN_SWNAME_VALID)
        kvd_print_name("Switch Name", e->switchName);
    else
        printf("\tSwitch Name any\n");
    if (e->flags & KVD_FCFCONN_FABNAME_VALID)
        kvd_print_name("Fabric Name", e->fabricName);
    else
        printf("\tFabric Name any\n");
    if (e->flags & KVD_FCFCONN_VLAN_VALID)
        printf("\tVLAN %u\n", e->vlanId);
    else
        printf("\tVLAN any\n");
    printf("\tPriority %u\n", e->priority);
}

// Prints the list, pausing every num_lines entries; 1 when the user
// aborted.
static int kvd_print_conn_list(const KVD_FCFCONNLIST *list)
{
    uint32_t n = list->numEntries < KVD_FCFCONN_MAX ? list->numEntries : KVD_FCFCONN_MAX;

    printf("\tEntries %u\n", n);
    for (uint32_t i = 0; i < n; i++) {
        kvd_print_conn_entry(i, &list->entries[i]);
        if (i + 1 < n && kvd_page_break((int)i))
            return 1;
    }
    return 0;
}

KVD_HANDLER(fcoegetlist)
{
    KVD_FCFCONNLIST list;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: %s <no arguments>\n", "fcoegetlist");
        return KVD_USAGE;
    }
    memset(&list, 0, sizeof(list));
    list.version = KVD_FCFCONN_VERSION;
    rc = KVD_FCoEGetConnList((uint32_t)cur_board, &list);
    printf("%s - KVD_FCoEGetConnList returned 0x%x\n", "fcoegetlist", rc);
    if (rc != 0)
        return kvd_cannot_issue();
    (void)kvd_print_conn_list(&list);
    return KVD_OK;
}

// Reads "any" or a value through `parse`; 0 when the answer is neither.
static int kvd_ask_any(const char *prompt, int *given, uint8_t *dest, int (*parse)(uint8_t *, const char *))
{
    char answer[KVD_CMDBUF_SIZE];

    if (getstring(prompt, answer) == 0)
        return 0;
    *given = strcmp(answer, "any") != 0;
    return *given ? parse(dest, answer) : 1;
}

static int kvd_parse_mac(uint8_t *dest, const char *text)
{
    uint8_t mac[8];

    if (!kvd_atomac(mac, text))
        return 0;
    memcpy(dest, mac + 2, 6);
    return 1;
}

static int kvd_parse_wwn(uint8_t *dest, const char *text)
{
    HBA_WWN wwn;

    if (!kvd_atowwn(&wwn, text))
        return 0;
    memcpy(dest, wwn.wwn, 8);
    return 1;
}

// The dialogue for one entry; 0 after printing why an answer was refused.
static int kvd_ask_conn_entry(uint32_t i, KVD_FCFCONNENTRY *e)
{
    int given;
    int32_t value;

    printf("Entry %u:\n", i);
    e->flags = KVD_FCFCONN_VALID;
    if (!kvd_ask_any("FCF MAC (or any)", &given, e->fcfMac, kvd_parse_mac)) {
        printf("FCF MAC not converted\n");
        return 0;
    }
    e->flags |= given ? KVD_FCFCONN_MAC_VALID : 0;
    if (!kvd_ask_any("Switch Name (or any)", &given, e->switchName, kvd_parse_wwn)) {
        printf("Switch Name not converted\n");
        return 0;
    }
    e->flags |= given ? KVD_FCFCONN_SWNAME_VALID : 0;
    if (!kvd_ask_any("Fabric Name (or any)", &given, e->fabricName, kvd_parse_wwn)) {
        printf("Fabric Name not converted\n");
        return 0;
    }
    e->flags |= given ? KVD_FCFCONN_FABNAME_VALID : 0;
    value = getint("VLAN (0 for any)");
    if (value < 0 || value > 4094) {
        printf("VLAN value invalid\n");
        return 0;
    }
    if (value != 0) {
        e->flags |= KVD_FCFCONN_VLAN_VALID;
        e->vlanId = (uint16_t)value;
    }
    value = getint("Priority (0-255)");
    if (value < 0 || value > 255) {
        printf("Priority value invalid\n");
        return 0;
    }
    e->priority = (uint8_t)value;
    printf("Primary entry?\n");
    if (promptYesorNo())
        e->flags |= KVD_FCFCONN_PRIMARY;
    return 1;
}

// The board is asked for its list first, so that a board without one
// refuses before the dialogue.
KVD_HANDLER(fcoesetlist)
{
    KVD_FCFCONNLIST list;
    int32_t count;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: %s <no arguments>\n", "fcoesetlist");
        return KVD_USAGE;
    }
    memset(&list, 0, sizeof(list));
    list.version = KVD_FCFCONN_VERSION;
    rc = KVD_FCoEGetConnList((uint32_t)cur_board, &list);
    if (rc != 0) {
        printf("%s - KVD_FCoEGetConnList returned 0x%x\n", "fcoesetlist", rc);
        return kvd_cannot_issue();
    }
    count = getint("Number of entries (0-16, 0 for any FCF)");
    if (count < 0 || count > KVD_FCFCONN_MAX) {
        printf("Number of entries invalid\n");
        return KVD_USAGE;
    }
    memset(&list, 0, sizeof(list));
    list.version = KVD_FCFCONN_VERSION;
    list.numEntries = (uint32_t)count;
    for (uint32_t i = 0; i < list.numEntries; i++)
        if (!kvd_ask_conn_entry(i, &list.entries[i]))
            return KVD_USAGE;

    printf("Setting FCF connection list to:\n");
    (void)kvd_print_conn_list(&list);
    rc = KVD_FCoESetConnList((uint32_t)cur_board, &list);
    printf("%s - KVD_FCoESetConnList returned 0x%x\n", "fcoesetlist", rc);
    return rc != 0 ? kvd_cannot_issue() : KVD_OK;
}

KVD_HANDLER(fcoegetfcflist)
{
    KVD_FCFENTRY table[KVD_FCF_ROOM];
    uint32_t count = KVD_FCF_ROOM;
    uint32_t rc;
    uint32_t n;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: %s <no arguments>\n", "fcoegetfcflist");
        return KVD_USAGE;
    }
    memset(table, 0, sizeof(table));
    rc = KVD_FCoEGetFCFTable((uint32_t)cur_board, &count, table);
    printf("%s - KVD_FCoEGetFCFTable returned 0x%x\n", "fcoegetfcflist", rc);
    if (rc != 0)
        return kvd_cannot_issue();
    // The count is what the port discovered; only the room was filled.
    n = count < KVD_FCF_ROOM ? count : KVD_FCF_ROOM;
    printf("\tFCFs discovered %u, shown %u\n", count, n);
    for (uint32_t i = 0; i < n; i++) {
        const KVD_FCFENTRY *f = &table[i];

        printf("FCF %u:\n", i);
        kvd_print_mac("MAC", f->mac);
        printf("\tVLAN %u\n", f->vlanId);
        kvd_print_name("Switch Name", f->switchName);
        kvd_print_name("Fabric Name", f->fabricName);
        printf("\tFCMap x%06x\n", f->fcMap & 0xFFFFFF);
        printf("\tPriority %u\n", f->priority);
        printf("\tState %u %s\n", f->state, kvd_fcf_state(f->state));
        if (i + 1 < n && kvd_page_break((int)i))
            break;
    }
    return KVD_OK;
}

KVD_HANDLER(getfcpconfig)
{
    KVD_QOSCONFIG config;
    uint32_t n;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: %s <no arguments>\n", "getfcpconfig");
        return KVD_USAGE;
    }
    memset(&config, 0, sizeof(config));
    config.version = KVD_QOS_VERSION;
    if (KVD_QoSGetConfig((uint32_t)cur_board, &config) != 0)
        return kvd_cannot_issue();
    n = config.numEntries < KVD_QOS_MAX_ENTRIES ? config.numEntries : KVD_QOS_MAX_ENTRIES;
    printf("FCP targets %u\n", n);
    for (uint32_t i = 0; i < n; i++) {
        const KVD_QOSENTRY *e = &config.entries[i];

        printf("Target %u:\n", i);
        kvd_print_name("WWPN", e->targetWWPN);
        printf("\tPriority %u\n", e->priority);
        printf("\tFlags x%04x%s%s\n", e->flags, (e->flags & KVD_QOS_ENABLED) ? " enabled" : "",
               (e->flags & KVD_QOS_ACTIVE) ? " active" : "");
        if (i + 1 < n && kvd_page_break((int)i))
            break;
    }
    return KVD_OK;
}

KVD_HANDLER(setfcpconfig)
{
    KVD_QOSCONFIG config;
    HBA_WWN wwpn;
    unsigned long priority;
    unsigned long flag;

    (void)row;
    (void)arg;
    if (margc != 4) {
        printf("Usage: setfcpconfig <target wwpn> <priority 0-%d> <flag 0-off, 1-on>\n",
               KVD_QOS_MAX_PRIORITY);
        return KVD_USAGE;
    }
    if (!kvd_atowwn(&wwpn, margv[1]))
        return KVD_BADARG;
    priority = strtoul(margv[2], NULL, 0);
    flag = strtoul(margv[3], NULL, 0);
    if (priority > KVD_QOS_MAX_PRIORITY || flag > 1) {
        printf("Usage: setfcpconfig <target wwpn> <priority 0-%d> <flag 0-off, 1-on>\n",
               KVD_QOS_MAX_PRIORITY);
        return KVD_USAGE;
    }
    memset(&config, 0, sizeof(config));
    config.version = KVD_QOS_VERSION;
    config.numEntries = 1;
    memcpy(config.entries[0].targetWWPN, wwpn.wwn, sizeof(wwpn.wwn));
    config.entries[0].priority = (uint8_t)priority;
    config.entries[0].flags = flag ? KVD_QOS_ENABLED : 0;
    if (KVD_QoSSetConfig((uint32_t)cur_board, &config) != 0)
        return kvd_cannot_issue();
    return KVD_OK;
}
