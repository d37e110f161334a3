// The driver's region (23) of the adapter's flash: the port settings the
// driver stores, as type-length-value records after a "QDRV" header. The
// region and the settings are one state: storing a setting rewrites the
// region, and a region write (the region-write call or the configuration
// update) is loaded back into the settings, as the driver loads its region
// at start. A written image reads back as written until the driver next
// stores a setting; an image the driver could not load is refused whole.
#include <cerrno>
#include <cstring>

#include "libkvd.h"
#include "port/port.hpp"
#include "core/bytes.hpp"

namespace kvdsim
{

namespace
{

constexpr size_t kDriverSize = 2048;
constexpr size_t kHeaderSize = 8; // "QDRV", version, records length
constexpr uint16_t kLayoutVersion = 1;
constexpr uint8_t kErased = 0xFF;

// Record types; a record of another type is skipped on loading.
constexpr uint8_t kTlvLinkPersist = 0x01; // u16 linkDownConfig
constexpr uint8_t kTlvFcpPriority = 0x02; // u32 global FCP priority flag
constexpr uint8_t kTlvFcoeParams = 0x03;  // u32 FC-MAP << 8 | VLAN valid, u16 VLAN
constexpr uint8_t kTlvFcfConn = 0x04;     // one FCF connection list entry
constexpr uint8_t kTlvEnd = 0xFF;

// Lengths of the known records' values.
constexpr uint8_t kLenLinkPersist = 2;
constexpr uint8_t kLenFcpPriority = 4;
constexpr uint8_t kLenFcoeParams = 6;
// flags, VLAN, priority, reserved, MAC, switch name, fabric name
constexpr uint8_t kLenFcfConn = 2 + 2 + 1 + 1 + 6 + 8 + 8;

void put_conn(std::vector<uint8_t> &v, const KVD_FCFCONNENTRY &e)
{
    put_be16(v, e.flags);
    put_be16(v, e.vlanId);
    v.push_back(e.priority);
    v.push_back(0);
    v.insert(v.end(), e.fcfMac, e.fcfMac + sizeof e.fcfMac);
    v.insert(v.end(), e.switchName, e.switchName + sizeof e.switchName);
    v.insert(v.end(), e.fabricName, e.fabricName + sizeof e.fabricName);
}

bool valid_vlan(uint16_t id)
{
    return id >= 1 && id <= kMaxVlanId;
}

} // namespace

std::vector<uint8_t> Port::driver_region() const
{
    if (driver_image_)
        return *driver_image_;
    std::vector<uint8_t> tlv;
    tlv.push_back(kTlvLinkPersist);
    tlv.push_back(kLenLinkPersist);
    put_be16(tlv, persist_);
    tlv.push_back(kTlvFcpPriority);
    tlv.push_back(kLenFcpPriority);
    put_be32(tlv, fcp_priority_);
    if (fcoe()) {
        tlv.push_back(kTlvFcoeParams);
        tlv.push_back(kLenFcoeParams);
        put_be32(tlv, fc_map_ << 8 | (vlan_valid_ ? 1u : 0u));
        put_be16(tlv, vlan_id_);
        for (const KVD_FCFCONNENTRY &e : conn_) {
            tlv.push_back(kTlvFcfConn);
            tlv.push_back(kLenFcfConn);
            put_conn(tlv, e);
        }
    }
    tlv.push_back(kTlvEnd);
    std::vector<uint8_t> v = {'Q', 'D', 'R', 'V'};
    put_be16(v, kLayoutVersion);
    put_be16(v, static_cast<uint16_t>(tlv.size()));
    v.insert(v.end(), tlv.begin(), tlv.end());
    v.resize(kDriverSize, kErased);
    return v;
}

// Reads the settings an image holds into `s`, which starts as the board's
// power-on settings: a record the image lacks leaves that setting at its
// power-on value. False when the driver could not load the image: another
// header, a record running past the records length or without the end
// record, a known record of another length, or a value the settings
// requests would refuse.
bool Port::load_driver_region(const std::vector<uint8_t> &image, DriverSettings &s) const
{
    if (image.size() < kHeaderSize || std::memcmp(image.data(), "QDRV", 4) != 0 ||
        be16(&image[4]) != kLayoutVersion)
        return false;
    const size_t end = kHeaderSize + be16(&image[6]);
    if (end > image.size())
        return false;
    s.conn.clear();
    for (size_t at = kHeaderSize; at < end;) {
        const uint8_t type = image[at];
        if (type == kTlvEnd)
            return true;
        if (at + 2 > end || at + 2 + image[at + 1] > end)
            return false;
        const uint8_t len = image[at + 1];
        const uint8_t *p = &image[at + 2];
        at += 2 + static_cast<size_t>(len);
        switch (type) {
        case kTlvLinkPersist:
            if (len != kLenLinkPersist || be16(p) > KVD_LINK_PERSIST_DOWN)
                return false;
            s.persist = be16(p);
            break;
        case kTlvFcpPriority:
            if (len != kLenFcpPriority || be32(p) > KVD_FCP_PRIORITY_ON)
                return false;
            s.fcp_priority = be32(p);
            break;
        case kTlvFcoeParams: {
            if (len != kLenFcoeParams)
                return false;
            if (!fcoe())
                break;
            const uint32_t w = be32(p);
            const uint16_t vlan = be16(p + 4);
            if ((w & 0xFF) > 1 || ((w & 1) && !valid_vlan(vlan)))
                return false;
            s.fc_map = w >> 8;
            s.vlan_valid = (w & 1) != 0;
            s.vlan_id = vlan;
            break;
        }
        case kTlvFcfConn: {
            if (len != kLenFcfConn)
                return false;
            if (!fcoe())
                break;
            KVD_FCFCONNENTRY e{};
            e.flags = be16(p);
            e.vlanId = be16(p + 2);
            e.priority = p[4];
            std::memcpy(e.fcfMac, p + 6, sizeof e.fcfMac);
            std::memcpy(e.switchName, p + 12, sizeof e.switchName);
            std::memcpy(e.fabricName, p + 20, sizeof e.fabricName);
            if (s.conn.size() == KVD_FCFCONN_MAX || (e.flags & ~KVD_FCFCONN_ALL) ||
                ((e.flags & KVD_FCFCONN_VLAN_VALID) && !valid_vlan(e.vlanId)))
                return false;
            s.conn.push_back(e);
            break;
        }
        default:
            break;
        }
    }
    return false;
}

Port::DriverSettings Port::power_on_settings() const
{
    return DriverSettings{cfg_.port.fc_map & 0xFFFFFF, cfg_.port.vlan_valid,        cfg_.port.vlan_id,
                          cfg_.port.fcp_priority,      cfg_.port.persist_link_down, {}};
}

// Takes the settings, then brings the link where they want it; the port
// logs in again when its FCoE parameters or connection list changed.
int32_t Port::apply(Firmware &fw, const DriverSettings &s)
{
    const bool relogin = s.fc_map != fc_map_ || s.vlan_valid != vlan_valid_ || s.vlan_id != vlan_id_ ||
                         s.conn.size() != conn_.size() ||
                         (!conn_.empty() && std::memcmp(s.conn.data(), conn_.data(),
                                                        conn_.size() * sizeof(KVD_FCFCONNENTRY)) != 0);
    fc_map_ = s.fc_map;
    vlan_valid_ = s.vlan_valid;
    vlan_id_ = s.vlan_id;
    fcp_priority_ = s.fcp_priority;
    persist_ = s.persist;
    conn_ = s.conn;
    return settle(fw, relogin && fcoe());
}

int32_t Port::write_driver_region(Firmware &fw, uint32_t offset, const uint8_t *src, uint32_t count)
{
    std::vector<uint8_t> image = driver_region();
    if (offset > image.size() || count > image.size() - offset)
        return EINVAL;
    if (count > 0)
        std::memcpy(image.data() + offset, src, count);
    DriverSettings s = power_on_settings();
    if (!load_driver_region(image, s))
        return EINVAL;
    if (fw.state() != BoardState::ready)
        return EBUSY;
    driver_image_ = std::move(image);
    return apply(fw, s);
}

int32_t Port::restore_driver_region(Firmware &fw)
{
    if (fw.state() != BoardState::ready)
        return EBUSY;
    driver_image_.reset();
    return apply(fw, power_on_settings());
}

} // namespace kvdsim
