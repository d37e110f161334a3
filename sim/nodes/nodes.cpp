// Nodes, VPD, persistent bindings and the FCP target mapping of one board.
#include "nodes/nodes.hpp"

#include <algorithm>
#include <cstring>

#include "scsi/target.hpp"
#include "core/bytes.hpp"

namespace kvdsim
{

namespace
{

constexpr uint32_t kFPort = 0xFFFFFE;
constexpr uint32_t kNameServer = 0xFFFFFC;
constexpr uint32_t kNoTarget = 0xFFFFFFFFu;

void put_text(char *dst, size_t room, const std::string &s)
{
    const size_t n = std::min(s.size(), room - 1);
    memcpy(dst, s.data(), n);
    dst[n] = 0;
}

NODEINFO node(uint16_t flag, uint16_t state, uint32_t did, const Wwn &wwpn, const Wwn &wwnn, uint32_t target)
{
    NODEINFO n{};
    n.a_flag = flag;
    n.a_state = state;
    n.a_did = did;
    memcpy(n.a_wwpn, wwpn.data(), 8);
    memcpy(n.a_wwnn, wwnn.data(), 8);
    n.a_targetid = target;
    return n;
}

bool mapped(const RemotePort &rp)
{
    return rp.fcp_target && rp.scsi_target >= 0;
}

// Runs one command the driver sends on its own account; the data that came
// back, empty unless the target answered GOOD.
std::vector<uint8_t> ask(ScsiTargets &scsi, const Wwn &wwpn, const std::array<uint8_t, 8> &lun,
                         std::vector<uint8_t> cdb, uint32_t room)
{
    ScsiTask t;
    t.lun = lun;
    t.cdb = cdb;
    t.expected = room;
    scsi.execute(wwpn, t);
    if (t.status != SCSI_STAT_GOOD)
        return {};
    return t.data_in;
}

std::vector<uint8_t> inquiry_page(ScsiTargets &scsi, const Wwn &wwpn, const std::array<uint8_t, 8> &lun,
                                  uint8_t page)
{
    return ask(scsi, wwpn, lun, {SCSI_INQUIRY, 1, page, 0, 255, 0}, 255);
}

} // namespace

Nodes::Nodes(const BoardConf &cfg) : cfg_(cfg)
{
    if (cfg.nodes.bindings) {
        for (const BindingConf &s : *cfg.nodes.bindings) {
            HBA_BIND_ENTRY e{};
            static_assert(sizeof e.bind_type == sizeof s.type);
            memcpy(&e.bind_type, &s.type, sizeof s.type); // any number the driver keeps
            e.scsi_id = s.scsi_id;
            e.did = s.did;
            memcpy(e.wwnn.wwn, s.wwnn.data(), 8);
            memcpy(e.wwpn.wwn, s.wwpn.data(), 8);
            e.flags = s.flags;
            bindings_.push_back(e);
        }
        return;
    }
    // Automatic mapping binds every mapped target by its port name.
    for (const RemotePort &rp : cfg.remote_ports) {
        if (!mapped(rp))
            continue;
        HBA_BIND_ENTRY e{};
        e.bind_type = BIND_WWPN;
        e.scsi_id = static_cast<uint32_t>(rp.scsi_target);
        e.did = rp.did;
        memcpy(e.wwnn.wwn, rp.wwnn.data(), 8);
        memcpy(e.wwpn.wwn, rp.wwpn.data(), 8);
        e.flags = KVD_BIND_AUTOMAP | KVD_BIND_MAPLST | KVD_BIND_RPTLUNCMPL;
        bindings_.push_back(e);
    }
    std::sort(bindings_.begin(), bindings_.end(),
              [](const HBA_BIND_ENTRY &a, const HBA_BIND_ENTRY &b) { return a.scsi_id < b.scsi_id; });
}

std::vector<NODEINFO> Nodes::nodes(bool link_up) const
{
    std::vector<NODEINFO> out;
    if (!link_up)
        return out;
    if (cfg_.topology == Topology::fabric) {
        out.push_back(node(KVD_NODE_FABRIC, KVD_NODE_STE_UNMAPPED, kFPort, cfg_.fabric_name, cfg_.fabric_name,
                           kNoTarget));
        out.push_back(node(KVD_NODE_FABRIC, KVD_NODE_STE_UNMAPPED, kNameServer, cfg_.fabric_name,
                           cfg_.fabric_name, kNoTarget));
    }
    std::vector<const RemotePort *> ports;
    for (const RemotePort &rp : cfg_.remote_ports)
        ports.push_back(&rp);
    std::sort(ports.begin(), ports.end(),
              [](const RemotePort *a, const RemotePort *b) { return a->did < b->did; });
    for (const RemotePort *rp : ports) {
        uint16_t flag = 0;
        uint16_t state = KVD_NODE_STE_PLOGI;
        uint32_t target = kNoTarget;
        if (rp->fcp_target) {
            flag |= KVD_NODE_FCP;
            state = KVD_NODE_STE_UNMAPPED;
        }
        if (mapped(*rp)) {
            flag |= KVD_NODE_MAPPED;
            state = KVD_NODE_STE_MAPPED;
            target = static_cast<uint32_t>(rp->scsi_target);
        }
        out.push_back(node(flag, state, rp->did, rp->wwpn, rp->wwnn, target));
    }
    return out;
}

uint32_t Nodes::vpd(VPD &out) const
{
    const NodesConf &s = cfg_.nodes;
    if (!s.evpd)
        return KVD_VPD_NO_EVPD;
    const bool fc = cfg_.protocol == Protocol::fc;
    put_text(out.ModelDescription, sizeof out.ModelDescription,
             s.model_description.empty() ? cfg_.description : s.model_description);
    put_text(out.Model, sizeof out.Model, s.model.empty() ? cfg_.model : s.model);
    put_text(out.ProgramType, sizeof out.ProgramType,
             !s.program_type.empty() ? s.program_type
             : fc                    ? "Fibre Channel Host Bus Adapter"
                                     : "FCoE Converged Network Adapter");
    put_text(out.PortNum, sizeof out.PortNum, s.port.empty() ? std::to_string(cfg_.function) : s.port);
    return 0;
}

std::vector<HBA_FCPSCSIENTRYV2> Nodes::mapping(ScsiTargets &scsi, const std::string &driver,
                                               bool link_up) const
{
    std::vector<HBA_FCPSCSIENTRYV2> out;
    if (!link_up)
        return out;
    std::vector<const RemotePort *> targets;
    for (const RemotePort &rp : cfg_.remote_ports)
        if (mapped(rp) && scsi.has_target(rp.wwpn))
            targets.push_back(&rp);
    std::sort(targets.begin(), targets.end(),
              [](const RemotePort *a, const RemotePort *b) { return a->scsi_target < b->scsi_target; });
    for (const RemotePort *rp : targets) {
        const std::vector<uint8_t> luns =
            ask(scsi, rp->wwpn, {}, {SCSI_REPORT_LUNS, 0, 0, 0, 0, 0, 0, 0, 0x10, 0, 0, 0}, 0x1000);
        if (luns.size() < 8)
            continue;
        const size_t count = std::min<size_t>(be32(luns.data()) / 8, (luns.size() - 8) / 8);
        for (size_t i = 0; i < count; ++i) {
            std::array<uint8_t, 8> lun;
            memcpy(lun.data(), &luns[8 + 8 * i], 8);
            const int32_t number = ScsiTargets::lun_number(lun);
            if (number < 0)
                continue;
            HBA_FCPSCSIENTRYV2 e{};
            e.ScsiId.ScsiBusNumber = 0;
            e.ScsiId.ScsiTargetNumber = static_cast<uint32_t>(rp->scsi_target);
            e.ScsiId.ScsiOSLun = static_cast<uint32_t>(number);
            e.FcpId.FcId = rp->did;
            memcpy(e.FcpId.NodeWWN.wwn, rp->wwnn.data(), 8);
            memcpy(e.FcpId.PortWWN.wwn, rp->wwpn.data(), 8);
            uint64_t fcp_lun = 0;
            for (uint8_t byte : lun)
                fcp_lun = fcp_lun << 8 | byte;
            e.FcpId.FcpLun = fcp_lun;
            // A target the host gave a device gets the driver's device
            // record over its OS device name.
            if (!rp->os_device.empty()) {
                HBA_OSDN d{};
                put_text(d.drvname, sizeof d.drvname, driver);
                d.instance = cfg_.instance;
                d.target = static_cast<uint32_t>(rp->scsi_target);
                d.lun = static_cast<uint32_t>(number);
                d.bus = 0;
                const std::vector<uint8_t> sn = inquiry_page(scsi, rp->wwpn, lun, VPD_UNIT_SERIAL);
                if (sn.size() > 4) {
                    const size_t n = std::min<size_t>({sn[3], sn.size() - 4, sizeof d.InquirySN});
                    memcpy(d.InquirySN, &sn[4], n);
                    d.sizeSN = static_cast<char>(n);
                    d.flags = KVD_OSDN_SN_VALID;
                }
                memcpy(e.ScsiId.OSDeviceName, &d, sizeof d);
            }
            // The logical unit's first identification descriptor, with its
            // header.
            const std::vector<uint8_t> id = inquiry_page(scsi, rp->wwpn, lun, VPD_DEVICE_ID);
            if (id.size() >= 8) {
                const size_t n = std::min<size_t>({4u + id[7], id.size() - 4, sizeof e.LUID.buffer});
                memcpy(e.LUID.buffer, &id[4], n);
            }
            out.push_back(e);
        }
    }
    return out;
}

} // namespace kvdsim
