// The ASIC's configuration and counters: getcfg, portstat, lifstat and
// asicstat. One labelled line per response field, the label being the
// field's name; per-port pairs print port 0 then port 1, per-priority
// arrays one line per element or per port.
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

struct tvo_field {
    const char *label;
    size_t offset;
    int count; // consecutive 64-bit counters, printed one a line
};

#define TVO_U64(type, f)                                                                                     \
    {                                                                                                        \
#f, offsetof(type, f), 1                                                                             \
    }
#define TVO_ARR(type, f)                                                                                     \
    {                                                                                                        \
#f, offsetof(type, f), TARVO_NUM_PRIORITIES                                                          \
    }

static const tvo_field tvo_fc_fields[] = {
    TVO_U64(tarvo_fc_stats_rsp_t, tx_frames),
    TVO_U64(tarvo_fc_stats_rsp_t, rx_frames),
    TVO_U64(tarvo_fc_stats_rsp_t, tx_words),
    TVO_U64(tarvo_fc_stats_rsp_t, rx_words),
    TVO_U64(tarvo_fc_stats_rsp_t, tx_discards),
    TVO_U64(tarvo_fc_stats_rsp_t, rx_discards),
    TVO_U64(tarvo_fc_stats_rsp_t, crc_errors),
    TVO_U64(tarvo_fc_stats_rsp_t, encoding_errors),
    TVO_U64(tarvo_fc_stats_rsp_t, invalid_tx_words),
    TVO_U64(tarvo_fc_stats_rsp_t, link_failures),
    TVO_U64(tarvo_fc_stats_rsp_t, loss_of_sync),
    TVO_U64(tarvo_fc_stats_rsp_t, loss_of_signal),
    TVO_U64(tarvo_fc_stats_rsp_t, primitive_seq_errors),
    TVO_U64(tarvo_fc_stats_rsp_t, bb_credit_zero_tx),
    TVO_U64(tarvo_fc_stats_rsp_t, bb_credit_zero_rx),
    TVO_U64(tarvo_fc_stats_rsp_t, rx_r_rdy),
    TVO_U64(tarvo_fc_stats_rsp_t, tx_r_rdy),
    TVO_U64(tarvo_fc_stats_rsp_t, fcoe_encap_frames),
    TVO_U64(tarvo_fc_stats_rsp_t, fcoe_decap_frames),
    TVO_U64(tarvo_fc_stats_rsp_t, fcoe_encap_errors),
    TVO_U64(tarvo_fc_stats_rsp_t, fcoe_decap_errors),
    TVO_U64(tarvo_fc_stats_rsp_t, rx_truncated_frames),
    TVO_U64(tarvo_fc_stats_rsp_t, rx_too_long_frames),
    TVO_U64(tarvo_fc_stats_rsp_t, link_resets),
};

#define TVO_NET(f) TVO_U64(tarvo_network_stats_rsp_t, f)
static const tvo_field tvo_net_fields[] = {
    TVO_NET(tx_bytes),
    TVO_NET(rx_bytes),
    TVO_NET(tx_frames),
    TVO_NET(rx_frames),
    TVO_NET(tx_unicast),
    TVO_NET(rx_unicast),
    TVO_NET(tx_multicast),
    TVO_NET(rx_multicast),
    TVO_NET(tx_broadcast),
    TVO_NET(rx_broadcast),
    TVO_NET(tx_pause),
    TVO_NET(rx_pause),
    TVO_ARR(tarvo_network_stats_rsp_t, tx_pfc),
    TVO_ARR(tarvo_network_stats_rsp_t, rx_pfc),
    TVO_NET(rx_crc_errors),
    TVO_NET(rx_undersize),
    TVO_NET(rx_oversize),
    TVO_NET(rx_fragments),
    TVO_NET(rx_jabbers),
    TVO_NET(rx_alignment_errors),
    TVO_NET(rx_symbol_errors),
    TVO_NET(rx_dropped),
    TVO_NET(tx_dropped),
    TVO_NET(rx_fcoe_frames),
    TVO_NET(tx_fcoe_frames),
    TVO_NET(rx_fip_frames),
    TVO_NET(tx_fip_frames),
    TVO_NET(rx_frames_64),
    TVO_NET(rx_frames_65_127),
    TVO_NET(rx_frames_128_255),
    TVO_NET(rx_frames_256_511),
    TVO_NET(rx_frames_512_1023),
    TVO_NET(rx_frames_1024_1518),
    TVO_NET(rx_frames_1519_max),
    TVO_NET(rx_vlan_frames),
    TVO_NET(tx_vlan_frames),
    TVO_NET(link_down_events),
};

#define TVO_LIF(f) TVO_U64(tarvo_lif_stats_rsp_t, f)
static const tvo_field tvo_lif_fields[] = {
    TVO_LIF(tx_frames),      TVO_LIF(rx_frames),      TVO_LIF(tx_bytes),   TVO_LIF(rx_bytes),
    TVO_LIF(tx_fcoe_frames), TVO_LIF(rx_fcoe_frames), TVO_LIF(tx_dropped), TVO_LIF(rx_dropped),
};

#define TVO_ASIC(f) TVO_U64(tarvo_asic_stats_rsp_t, f)
static const tvo_field tvo_asic_fields[] = {
    TVO_ASIC(commands),
    TVO_ASIC(command_errors),
    TVO_ASIC(fw_downloads),
    TVO_ASIC(resets),
    TVO_ASIC(panics),
    TVO_ASIC(ecc_corrected),
    TVO_ASIC(ecc_uncorrected),
    TVO_ASIC(parity_errors),
    TVO_ASIC(pcie_tx_tlps),
    TVO_ASIC(pcie_rx_tlps),
    TVO_ASIC(pcie_errors),
    TVO_ASIC(dma_reads),
    TVO_ASIC(dma_writes),
    TVO_ASIC(ftable_hits),
    TVO_ASIC(ftable_misses),
    TVO_ASIC(ftable_inserts),
    TVO_ASIC(ftable_deletes),
    TVO_ASIC(fip_solicitations),
    TVO_ASIC(fip_advertisements),
    TVO_ASIC(fip_keepalives),
    TVO_ASIC(vlink_creates),
    TVO_ASIC(vlink_deletes),
    TVO_ASIC(log_entries),
};

// Per-port rows of eight priorities.
static const tvo_field tvo_asic_tables[] = {
    {"rx_priority_drops", offsetof(tarvo_asic_stats_rsp_t, rx_priority_drops), TARVO_NUM_PORTS},
    {"pause_time", offsetof(tarvo_asic_stats_rsp_t, pause_time), TARVO_NUM_PORTS},
    {"buffer_high_water", offsetof(tarvo_asic_stats_rsp_t, buffer_high_water), TARVO_NUM_PORTS},
};

#define TVO_COUNT(a) (sizeof(a) / sizeof((a)[0]))

static uint64_t tvo_u64_at(const uint8_t *rec, size_t offset)
{
    uint64_t v;

    memcpy(&v, rec + offset, sizeof(v));
    return v;
}

static void tvo_print_fields(const uint8_t *rec, const tvo_field *fields, size_t n)
{
    char label[40];

    for (size_t i = 0; i < n; i++) {
        for (int k = 0; k < fields[i].count; k++) {
            if (fields[i].count == 1)
                snprintf(label, sizeof(label), "%s", fields[i].label);
            else
                snprintf(label, sizeof(label), "%s[%d]", fields[i].label, k);
            printf("%22s: %llu\n", label,
                   (unsigned long long)tvo_u64_at(rec, fields[i].offset + (size_t)k * sizeof(uint64_t)));
        }
    }
}

static void tvo_print_tables(const uint8_t *rec, const tvo_field *tables, size_t n)
{
    char label[40];

    for (size_t i = 0; i < n; i++) {
        for (int port = 0; port < tables[i].count; port++) {
            snprintf(label, sizeof(label), "%s[%d]", tables[i].label, port);
            printf("%22s:", label);
            for (int pri = 0; pri < TARVO_NUM_PRIORITIES; pri++) {
                size_t at = tables[i].offset + ((size_t)port * TARVO_NUM_PRIORITIES + pri) * sizeof(uint64_t);
                printf(" %llu", (unsigned long long)tvo_u64_at(rec, at));
            }
            printf("\n");
        }
    }
}

static void tvo_pair(const char *label, const uint32_t pair[2])
{
    printf("%22s: %u %u\n", label, pair[0], pair[1]);
}

KVD_HANDLER(tvogetcfg)
{
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 2) {
        printf("Usage: tarvo getcfg\n\n");
        return KVD_OK;
    }
    rsp = tvo_rsp_area(arg);
    if (tvo_get(TARVO_CMD_GET_CONFIG, 0, rsp, sizeof(tarvo_get_config_rsp_t), sizeof(tarvo_get_config_rsp_t)))
        return KVD_OK;
    const tarvo_get_config_rsp_t *c = &rsp->config;
    tvo_pair("Pause Type", c->pause_type);
    tvo_pair("Priority", c->priority);
    tvo_pair("FCoE CoS", c->fcoe_cos);
    tvo_pair("UIF Port Type", c->uif_port_type);
    printf("%22s: %u\n", "Log Config Size", c->log_cfg_size);
    printf("%22s: %u\n", "Panic Log Size", c->panic_log_size);
    tvo_pair("DCX Present", c->dcx_present);
    tvo_pair("Current Pause Type", c->current_pause_type);
    tvo_pair("Current Priority", c->current_priority);
    tvo_pair("Current FCoE CoS", c->current_fcoe_cos);
    tvo_pair("Current UIF Port Type", c->current_uif_port_type);
    printf("%22s: x%05x\n", "FCoE Format", c->fcoe_format);
    printf("%22s: x%05x\n", "Current FCoE Format", c->current_fcoe_format);
    printf("%22s: x%05x\n", "Supported FCoE Format", c->supported_fcoe_format);
    printf("\n");
    return KVD_OK;
}

KVD_HANDLER(tvoportstat)
{
    tarvo_rsp_t *rsp;
    uint32_t port = 0;

    (void)row;
    if (margc == 3)
        port = (uint32_t)strtoul(margv[2], NULL, 0);
    if (margc != 3 || port >= TARVO_NUM_PORTS) {
        printf("Usage: tarvo portstat <port>\n\n");
        return KVD_OK;
    }
    rsp = tvo_rsp_area(arg);
    bool fc = port >= TARVO_FC_PORT_FIRST && port <= TARVO_FC_PORT_LAST;
    uint32_t size = fc ? sizeof(tarvo_fc_stats_rsp_t) : sizeof(tarvo_network_stats_rsp_t);
    if (tvo_get(TARVO_CMD_GET_PORT_STATS, port, rsp, size, size + 4))
        return KVD_OK;
    printf("%22s: %u (%s)\n", "port", port, fc ? "FC" : "Ethernet");
    if (fc)
        tvo_print_fields(rsp->raw, tvo_fc_fields, TVO_COUNT(tvo_fc_fields));
    else
        tvo_print_fields(rsp->raw, tvo_net_fields, TVO_COUNT(tvo_net_fields));
    printf("\n");
    return KVD_OK;
}

KVD_HANDLER(tvolifstat)
{
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 3) {
        printf("Usage: tarvo lifstat <port>\n\n");
        return KVD_OK;
    }
    uint32_t lif = (uint32_t)strtoul(margv[2], NULL, 0);
    rsp = tvo_rsp_area(arg);
    uint32_t size = sizeof(tarvo_lif_stats_rsp_t);
    if (tvo_get(TARVO_CMD_GET_LIF_STATS, lif, rsp, size, size + 4))
        return KVD_OK;
    printf("%22s: %u\n", "lif", rsp->lif_stats.lif);
    tvo_print_fields(rsp->raw, tvo_lif_fields, TVO_COUNT(tvo_lif_fields));
    printf("\n");
    return KVD_OK;
}

KVD_HANDLER(tvoasicstat)
{
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 2) {
        printf("Usage: tarvo asicstat\n\n");
        return KVD_OK;
    }
    rsp = tvo_rsp_area(arg);
    uint32_t size = sizeof(tarvo_asic_stats_rsp_t);
    if (tvo_get(TARVO_CMD_GET_ASIC_STATS, 0, rsp, size, size + 4))
        return KVD_OK;
    printf("%22s: %u\n", "uptime", rsp->asic_stats.uptime);
    tvo_print_fields(rsp->raw, tvo_asic_fields, TVO_COUNT(tvo_asic_fields));
    tvo_print_tables(rsp->raw, tvo_asic_tables, TVO_COUNT(tvo_asic_tables));
    printf("\n");
    return KVD_OK;
}
