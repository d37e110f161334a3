// The adapter's RNID management record, the RNID request to a remote port,
// and the library's refresh.
//
// The management record lives in the shared data area, so that "setmgmt"
// after "getmgmt" changes only the fields it sets and keeps the rest as the
// adapter reported them.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"
#include "kvd_mgmt_cmds.h"

KVD_HANDLER(getmgmt)
{
    HBA_MGMTINFO info;
    char nodename[24];

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: getmgmt\n");
        return KVD_USAGE;
    }
    memset(&info, 0, sizeof(info));
    if (GetRNIDMgmtInfo((uint32_t)cur_board, &info) != 0)
        return kvd_cannot_issue();
    memcpy(kvd_bigbuffer, &info, sizeof(info));
    kvd_mac_sprintf(info.wwn.wwn, nodename);
    printf("Nodename %s\n", nodename);
    printf("portid 0x%x unittype:%d NumAttNode:%d TopDiscFlg:%d\n", info.PortId, (int)info.unittype,
           (int)info.NumberOfAttachedNodes, (int)info.TopologyDiscoveryFlags);
    printf("UDPport 0x%x IPversion:%d IPaddr: %d.%d.%d.%d\n", info.UDPPort, (int)info.IPVersion,
           info.IPAddress[0], info.IPAddress[1], info.IPAddress[2], info.IPAddress[3]);
    return KVD_OK;
}

// A fixed test address: 1.2.3.4, the remaining twelve bytes zero.
static const uint8_t kvd_mgmt_test_ip[16] = {1, 2, 3, 4};

KVD_HANDLER(setmgmt)
{
    HBA_MGMTINFO info;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: setmgmt UDP_Port\n");
        return KVD_USAGE;
    }
    memcpy(&info, kvd_bigbuffer, sizeof(info));
    info.UDPPort = (HBA_UINT16)(strtoul(margv[1], NULL, 0) & 0xffff);
    info.IPVersion = 1;
    memcpy(info.IPAddress, kvd_mgmt_test_ip, sizeof(info.IPAddress));
    memcpy(kvd_bigbuffer, &info, sizeof(info));
    if (SetRNIDMgmtInfo((uint32_t)cur_board, &info) != 0)
        return kvd_cannot_issue();
    return KVD_OK;
}

// At most eight words of the reply, four to a row; a last partial word is
// shown whole, and nothing beyond the buffer is read whatever the length.
void kvd_rnid_dump(const uint8_t *reply, uint32_t length)
{
    uint32_t words;

    if (length > KVD_RNID_REPLY_MAX)
        length = KVD_RNID_REPLY_MAX;
    words = (length + 3) / 4;
    if (words > KVD_RNID_WORDS_SHOWN)
        words = KVD_RNID_WORDS_SHOWN;
    for (uint32_t i = 0; i < words; i++) {
        uint32_t word;

        if (i % 4 == 0)
            printf("\n%4x: ", i * 4);
        memcpy(&word, reply + i * 4, sizeof(word));
        printf("%08x  ", word);
    }
    printf("\n");
}

KVD_HANDLER(rnid)
{
    HBA_WWN wwn;
    uint32_t type, length = KVD_RNID_REPLY_MAX;

    (void)row;
    (void)arg;
    if (margc < 2) {
        printf("Usage: rnid wwnn [p|n]\n");
        return KVD_USAGE;
    }
    type = (margc == 3 && margv[2][0] == 'p') ? KVD_RNID_PORT : KVD_RNID_NODE;
    if (!kvd_atowwn(&wwn, margv[1])) {
        if (!cur_wwn_set) {
            printf("rnid:%s bad port_wwpn\n", margv[1]);
            return KVD_BADARG;
        }
        wwn = cur_wwn;
    }
    // Bytes of a last partial word beyond the reply read as zero.
    memset(kvd_bigbuffer, 0, KVD_RNID_REPLY_MAX);
    if (SendRNID((uint32_t)cur_board, wwn, type, kvd_bigbuffer, &length) != 0)
        return kvd_cannot_issue();
    kvd_rnid_dump(kvd_bigbuffer, length);
    return KVD_OK;
}

KVD_HANDLER(refresh)
{
    uint32_t count = 0;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: refresh\n");
        return KVD_USAGE;
    }
    if (RefreshInformation((uint32_t)cur_board, 0) != 0)
        return kvd_cannot_issue();
    if (GetEventsCount((uint32_t)cur_board, &count) != 0)
        return kvd_cannot_issue();
    printf("HBA refresh timer 0x%x\n", count);
    return KVD_OK;
}
