#include "hba/attributes.hpp"

#include <cstring>
#include <string>

namespace kvdsim
{

namespace
{

// Copies a text into a fixed field, always NUL-terminated, cut to fit.
template <size_t N> void put_text(char (&dst)[N], const std::string &src)
{
    size_t n = src.size() < N - 1 ? src.size() : N - 1;
    memcpy(dst, src.data(), n);
    dst[n] = '\0';
}

// Stores a 32-bit number at a byte offset of a text field.
void put_int(char *field, size_t offset, int32_t v)
{
    memcpy(field + offset, &v, sizeof v);
}

HBA_PORTTYPE local_port_type(const LinkStatus &link)
{
    if (!link.up)
        return HBA_PORTTYPE_UNKNOWN;
    switch (link.topology) {
    case LNK_FABRIC:
        return HBA_PORTTYPE_NPORT;
    case LNK_PUBLIC_LOOP:
        return HBA_PORTTYPE_NLPORT;
    case LNK_LOOP:
        return HBA_PORTTYPE_LPORT;
    case LNK_PT2PT:
        return HBA_PORTTYPE_PTP;
    default:
        return HBA_PORTTYPE_UNKNOWN;
    }
}

constexpr uint8_t kTypeFcp = 0x08;
constexpr uint8_t kTypeCt = 0x20;

} // namespace

void set_fc4_type(HBA_FC4TYPES &types, uint8_t type)
{
    types.bits[(type / 32) * 4 + 3 - (type % 32) / 8] |= static_cast<uint8_t>(1u << (type % 8));
}

void board_entry(const BoardConf &cfg, KVD_BRDINFO &e)
{
    memset(&e, 0, sizeof e);
    e.a_mem_hi = static_cast<uint32_t>(cfg.mem_base >> 32);
    e.a_mem_low = static_cast<uint32_t>(cfg.mem_base);
    e.a_flash_hi = static_cast<uint32_t>(cfg.flash_base >> 32);
    e.a_flash_low = static_cast<uint32_t>(cfg.flash_base);
    e.a_ctlreg_hi = static_cast<uint32_t>(cfg.ctlreg_base >> 32);
    e.a_ctlreg_low = static_cast<uint32_t>(cfg.ctlreg_base);
    e.a_intrlvl = cfg.irq;
    e.a_pci = static_cast<uint32_t>(cfg.device_id) << 16 | cfg.vendor_id;
    e.a_busid = cfg.bus;
    e.a_devid = cfg.device;
    e.a_pciFunc = cfg.function;
    e.a_siglvl = 0;
    e.a_ddi = cfg.instance;
    put_text(e.a_fwname, cfg.firmware);
    memcpy(e.a_wwpn, cfg.wwpn.data(), 8);
}

void legacy_board_entry(const BoardConf &cfg, BRDINFO &e)
{
    KVD_BRDINFO n;
    board_entry(cfg, n);
    memset(&e, 0, sizeof e);
    e.a_mem_hi = n.a_mem_hi;
    e.a_mem_low = n.a_mem_low;
    e.a_flash_hi = n.a_flash_hi;
    e.a_flash_low = n.a_flash_low;
    e.a_ctlreg_hi = n.a_ctlreg_hi;
    e.a_ctlreg_low = n.a_ctlreg_low;
    e.a_intrlvl = n.a_intrlvl;
    e.a_pci = n.a_pci;
    e.a_busid = n.a_busid;
    e.a_devid = n.a_devid;
    e.a_siglvl = n.a_siglvl;
    e.a_ddi = static_cast<uint8_t>(n.a_ddi); // the old layout has 8 bits
    memcpy(e.a_fwname, n.a_fwname, sizeof e.a_fwname);
}

void adapter_attributes(const Fleet &fleet, const BoardConf &cfg, HBA_ADAPTERATTRIBUTES &a)
{
    memset(&a, 0, sizeof a);
    put_text(a.Manufacturer, fleet.manufacturer);
    put_text(a.SerialNumber, cfg.serial);
    put_text(a.Model, cfg.model);
    put_text(a.ModelDescription, cfg.description);
    memcpy(a.NodeWWN.wwn, cfg.wwnn.data(), 8);
    put_text(a.NodeSymbolicName, cfg.symbolic_name);
    put_text(a.HardwareVersion, cfg.hardware_version);
    put_text(a.DriverVersion, fleet.driver_version);
    put_text(a.OptionROMVersion, cfg.option_rom_version);
    put_text(a.FirmwareVersion, cfg.firmware_version);
    a.VendorSpecificID = static_cast<uint32_t>(cfg.device_id) << 16 | cfg.vendor_id;
    a.NumberOfPorts = 1;
    put_text(a.DriverName, fleet.driver_name);
}

void local_port_attributes(const Fleet &fleet, const BoardConf &cfg, const LinkStatus &link, BoardState state,
                           HBA_PORTATTRIBUTES &p)
{
    memset(&p, 0, sizeof p);
    memcpy(p.NodeWWN.wwn, cfg.wwnn.data(), 8);
    memcpy(p.PortWWN.wwn, cfg.wwpn.data(), 8);
    p.PortFcId = link.up ? link.did : 0;
    p.PortType = local_port_type(link);
    p.PortState = state == BoardState::offline ? HBA_PORTSTATE_OFFLINE
                  : link.up                    ? HBA_PORTSTATE_ONLINE
                                               : HBA_PORTSTATE_LINKDOWN;
    p.PortSupportedClassofService = 0x8; // class 3
    set_fc4_type(p.PortSupportedFc4Types, kTypeFcp);
    set_fc4_type(p.PortSupportedFc4Types, kTypeCt);
    if (link.up)
        p.PortActiveFc4Types = p.PortSupportedFc4Types;
    put_text(p.PortSymbolicName, cfg.model + " FV" + cfg.firmware + " DV" + fleet.driver_version +
                                     " HN:" + fleet.hostname + " OS:Linux");
    std::string dev = "/sys/class/scsi_host/host" + std::to_string(cfg.host);
    memcpy(p.OSDeviceName, dev.data(),
           dev.size() < KVD_OSDEV_TEXT_MAX - 1 ? dev.size() : KVD_OSDEV_TEXT_MAX - 1);
    put_int(p.OSDeviceName, KVD_OSDEV_NUM0, cfg.host);
    put_int(p.OSDeviceName, KVD_OSDEV_NUM1, 0);
    put_int(p.OSDeviceName, KVD_OSDEV_NUM2, kLocalPortTarget);
    put_int(p.OSDeviceName, KVD_OSDEV_HOST, cfg.host);
    p.PortSupportedSpeed = cfg.supported_speeds;
    p.PortSpeed = link.up ? link.speed : HBA_PORTSPEED_UNKNOWN;
    p.PortMaxFrameSize = cfg.max_frame;
    if (link.up && link.topology == LNK_FABRIC)
        memcpy(p.FabricName.wwn, cfg.fabric_name.data(), 8);
    p.NumberofDiscoveredPorts = discovered_ports(cfg, link);
}

uint32_t discovered_ports(const BoardConf &cfg, const LinkStatus &link)
{
    return link.up ? static_cast<uint32_t>(cfg.remote_ports.size()) : 0;
}

void remote_port_attributes(const BoardConf &cfg, const RemotePort &r, const LinkStatus &link,
                            HBA_PORTATTRIBUTES &p)
{
    memset(&p, 0, sizeof p);
    memcpy(p.NodeWWN.wwn, r.wwnn.data(), 8);
    memcpy(p.PortWWN.wwn, r.wwpn.data(), 8);
    p.PortFcId = r.did;
    p.PortType = r.port_type;
    p.PortState = HBA_PORTSTATE_ONLINE;
    p.PortSupportedClassofService = r.cos;
    if (r.fcp_target) {
        set_fc4_type(p.PortSupportedFc4Types, kTypeFcp);
        set_fc4_type(p.PortActiveFc4Types, kTypeFcp);
    }
    put_text(p.PortSymbolicName, r.symbolic_name);
    if (!r.os_device.empty()) {
        memcpy(p.OSDeviceName, r.os_device.data(),
               r.os_device.size() < KVD_OSDEV_TEXT_MAX - 1 ? r.os_device.size() : KVD_OSDEV_TEXT_MAX - 1);
        put_int(p.OSDeviceName, KVD_OSDEV_NUM0, cfg.host);
        put_int(p.OSDeviceName, KVD_OSDEV_NUM1, 0);
        put_int(p.OSDeviceName, KVD_OSDEV_NUM2, r.scsi_target);
        put_int(p.OSDeviceName, KVD_OSDEV_HOST, cfg.host);
    }
    p.PortSupportedSpeed = HBA_PORTSPEED_UNKNOWN;
    p.PortSpeed = link.up ? link.speed : HBA_PORTSPEED_UNKNOWN;
    p.PortMaxFrameSize = r.max_frame;
    if (link.topology == LNK_FABRIC)
        memcpy(p.FabricName.wwn, cfg.fabric_name.data(), 8);
    p.NumberofDiscoveredPorts = 0;
}

void port_statistics(const PortCounters &c, HBA_PORTSTATISTICS &s)
{
    memset(&s, 0, sizeof s);
    s.SecondsSinceLastReset = static_cast<HBA_INT64>(c.seconds_since_reset);
    s.TxFrames = static_cast<HBA_INT64>(c.tx_frames);
    s.TxWords = static_cast<HBA_INT64>(c.tx_words);
    s.RxFrames = static_cast<HBA_INT64>(c.rx_frames);
    s.RxWords = static_cast<HBA_INT64>(c.rx_words);
    s.LIPCount = static_cast<HBA_INT64>(c.lip);
    s.NOSCount = static_cast<HBA_INT64>(c.nos);
    s.ErrorFrames = static_cast<HBA_INT64>(c.error_frames);
    s.DumpedFrames = static_cast<HBA_INT64>(c.dumped_frames);
    s.LinkFailureCount = static_cast<HBA_INT64>(c.link_failure);
    s.LossOfSyncCount = static_cast<HBA_INT64>(c.loss_of_sync);
    s.LossOfSignalCount = static_cast<HBA_INT64>(c.loss_of_signal);
    s.PrimitiveSeqProtocolErrCount = static_cast<HBA_INT64>(c.prim_seq_err);
    s.InvalidTxWordCount = static_cast<HBA_INT64>(c.invalid_tx_word);
    s.InvalidCRCCount = static_cast<HBA_INT64>(c.invalid_crc);
}

void link_info(const BoardConf &cfg, const LinkStatus &link, LINKINFO &l)
{
    memset(&l, 0, sizeof l);
    l.a_linkEventTag = link.event_tag;
    l.a_linkUp = link.up_count;
    l.a_linkDown = link.down_count;
    l.a_linkMulti = link.multi_count;
    l.a_DID = link.did;
    l.a_topology = link.topology;
    l.a_linkState = link.state;
    l.a_alpa = link.alpa;
    l.a_alpaCnt = link.alpa_count;
    memcpy(l.a_alpaMap, link.alpa_map, sizeof l.a_alpaMap);
    memcpy(l.a_wwpName, cfg.wwpn.data(), 8);
    memcpy(l.a_wwnName, cfg.wwnn.data(), 8);
}

void driver_info(const Fleet &fleet, const BoardConf &cfg, const LinkStatus &link, KVDDRVINFO &d)
{
    const uint8_t version = d.drvInfoVer;
    memset(&d, 0, sizeof d);
    d.drvInfoVer = version;
    d.drvType = kDrvType;
    d.rmLevel = kQuorvistaLevel;
    d.mpLevel = kCaldrimeshLevel;
    d.hbaapiLevel = kHbaApiLevel;
    put_text(d.drvVer, fleet.driver_version);
    put_text(d.drvName, fleet.driver_name);
    put_text(d.ftrDrvVer, fleet.driver_version); // the ioctl side is the same driver
    put_text(d.ftrDrvName, fleet.driver_name);
    d.d_id = link.up ? link.did : 0;
    memcpy(d.wwpn, cfg.wwpn.data(), 8);
    memcpy(d.wwnn, cfg.wwnn.data(), 8);
    put_text(d.hostname, fleet.hostname);
    d.NPIVsupport = (cfg.features & KVD_FTR_NPIV) ? 1 : 0;
    d.sliMode = static_cast<uint32_t>(cfg.sli_mode);
    d.featureList = cfg.features;
}

} // namespace kvdsim
