// FCoE parameters and the global FCP priority flag of a port: show them,
// and set them (the FCoE parameters through a short dialogue on standard
// input).
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

// The FC-MAP that fabrics use unless told otherwise, in record order.
static const uint8_t kvd_fcoe_default_fcmap[3] = {0x0E, 0xFC, 0x00};

// Drops what is left of the answer line, so that a refused or finished
// answer does not run as the next command.
static void kvd_fcoe_drop_line(void)
{
    int c;

    while ((c = getchar()) != EOF && c != '\n')
        ;
}

static void kvd_fcoe_print_values(const uint8_t *fcmap, uint8_t vlan_valid, uint16_t vlan_id)
{
    printf("FCMap - x%02x%02x%02x\n", fcmap[2], fcmap[1], fcmap[0]);
    printf("VLAN Valid %s\n", vlan_valid ? "valid" : "unused");
    printf("VLAN_Tag - x%02x%02x\n", (unsigned)(vlan_id >> 8), (unsigned)(vlan_id & 0xFF));
}

KVD_HANDLER(fcoegetparams)
{
    KVD_FCOEPARAM param;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: %s <no arguments>\n", "fcoegetparams");
        return KVD_USAGE;
    }
    memset(&param, 0, sizeof(param));
    param.version = KVD_FCOEPARAM_VERSION;
    rc = KVD_FCoEGetParams((uint32_t)cur_board, &param);
    printf("%s - KVD_FCoEGetParams returned 0x%x\n", "fcoegetparams", rc);
    if (rc == 0) {
        printf("\tVersion x%x\n", param.version);
        printf("\tFCMap x%02x%02x%02x\n", param.FCMap[2], param.FCMap[1], param.FCMap[0]);
        printf("\tVLanValid %s\n", param.VLanValid ? "valid" : "invalid");
        printf("\tVLanid x%04x\n", param.VLanId);
    }
    return (int32_t)rc;
}

KVD_HANDLER(fcoesetparams)
{
    KVD_FCOEPARAM param;
    unsigned int map[3], tag[2] = {0, 0};
    int answer;
    int valid;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: %s <no arguments>\n", "fcoesetparams");
        return KVD_USAGE;
    }
    printf("Default values for:\n");
    kvd_fcoe_print_values(kvd_fcoe_default_fcmap, 0, 0);

    printf("Change defaults? (y/n)\n");
    fflush(stdout);
    answer = getchar();
    if (answer == EOF || (answer != 'y' && answer != 'n')) {
        printf("Did not understand response\n");
        if (answer != EOF && answer != '\n')
            kvd_fcoe_drop_line();
        return KVD_USAGE;
    }
    if (answer == 'n') {
        printf("No changes made\n");
        kvd_fcoe_drop_line();
        return KVD_OK;
    }

    printf("Enter the six hex FCMap values:\n");
    fflush(stdout);
    if (scanf("%2x%2x%2x", &map[2], &map[1], &map[0]) != 3) {
        printf("FCMap values not converted\n");
        kvd_fcoe_drop_line();
        return KVD_USAGE;
    }

    printf("Is the VLanId valid? Enter %d for unused or %d for valid:\n", 0, 1);
    fflush(stdout);
    if (scanf("%d", &valid) != 1 || (valid != 0 && valid != 1)) {
        printf("VLAN Valid value invalid\n");
        kvd_fcoe_drop_line();
        return KVD_USAGE;
    }

    if (valid == 1) {
        printf("Enter the four hex VLAN_Tag values:\n");
        fflush(stdout);
        if (scanf("%2x%2x", &tag[0], &tag[1]) != 2) {
            printf("VLAN_Tag values not converted\n");
            kvd_fcoe_drop_line();
            return KVD_USAGE;
        }
    }
    kvd_fcoe_drop_line();

    memset(&param, 0, sizeof(param));
    param.version = KVD_FCOEPARAM_VERSION;
    for (int i = 0; i < 3; i++)
        param.FCMap[i] = (uint8_t)map[i];
    param.VLanValid = (uint8_t)valid;
    param.VLanId = (uint16_t)(tag[0] * 256 + tag[1]);

    printf("Setting fcoe paramters to:\n");
    kvd_fcoe_print_values(param.FCMap, param.VLanValid, param.VLanId);
    rc = KVD_FCoESetParams((uint32_t)cur_board, &param);
    printf("%s - KVD_FCoESetParams returned 0x%x\n", "fcoesetparams", rc);
    return (int32_t)rc;
}

KVD_HANDLER(getfcppriority)
{
    uint32_t flag = 0;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: <no arguments>\n");
        return KVD_USAGE;
    }
    rc = KVD_QoSGetGlobalFlag((uint32_t)cur_board, &flag);
    if (rc != 0) {
        printf("%s - KVD_QoSGetGlobalFlag returned 0x%x\n", "getfcppriority", rc);
        return (int32_t)rc;
    }
    printf("FCP Priority - %d %s\n", (int)flag, flag == 0 ? "off" : flag == 1 ? "on" : "unknown");
    return KVD_OK;
}

// A failed set returns 1, which ends the interactive loop: the way this
// command has always behaved.
KVD_HANDLER(setfcppriority)
{
    uint32_t flag;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: <flag 0-off, 1-on>\n");
        return KVD_USAGE;
    }
    flag = (uint32_t)strtoul(margv[1], NULL, 0);
    if (flag != 0 && flag != 1) {
        printf("Usage: <flag 0-off, 1-on>\n");
        return KVD_USAGE;
    }
    rc = KVD_QoSSetGlobalFlag((uint32_t)cur_board, flag);
    if (rc == 0)
        return KVD_OK;
    printf("%s - KVD_QoSSetGlobalFlag returned 0x%x\n", "setfcppriority", rc);
    return 1;
}
