#include "sli4/sli4_engine.hpp"

#include <algorithm>
#include <cstring>
#include <vector>

#include "core/fault.hpp"
#include "kvd_sli4.h"

namespace kvdsim
{

namespace
{

constexpr uint32_t code_of(uint8_t subsystem, uint8_t op)
{
    return static_cast<uint32_t>(subsystem) << 8 | op;
}

constexpr uint32_t kHdr = sizeof(KVD_vexa_sli4_rsp_hdr);
constexpr uint32_t kObjReqLen = SLI4_OBJ_REQ_LEN;
constexpr uint32_t kListEntry = sizeof(read_object_list_descriptor);

// Copies a text into a character field, cut to the field, NUL-padded.
template <size_t N> void put_text(char (&field)[N], const std::string &text)
{
    std::memset(field, 0, N);
    std::memcpy(field, text.data(), std::min(text.size(), N - 1));
}

} // namespace

// The requests the engine serves. min_in is the least request_length the
// request takes; min_out the body bytes its reply needs.
struct Sli4Table {
    static constexpr Sli4Row rows[] = {
        {code_of(SLI4_SUBSYSTEM_COMMON, SLI4_OPC_GET_CNTL_ATTRIBUTES), "GET_CNTL_ATTRIBUTES", kSli4,
         SLI4_CNTL_ATTR_LEN, SLI4_CNTL_ATTR_LEN, &Sli4Engine::cntl_attributes},
        {code_of(SLI4_SUBSYSTEM_COMMON, SLI4_OPC_NOP), "NOP", kSli4, SLI4_NOP_LEN, SLI4_NOP_LEN,
         &Sli4Engine::nop},
        {code_of(SLI4_SUBSYSTEM_COMMON, SLI4_OPC_QUERY_FW_CONFIG), "QUERY_FW_CONFIG", kSli4,
         SLI4_FW_CONFIG_LEN, SLI4_FW_CONFIG_LEN, &Sli4Engine::query_fw_config},
        {code_of(SLI4_SUBSYSTEM_COMMON, SLI4_OPC_GET_BEACON_CONFIG), "GET_BEACON_CONFIG", kSli4,
         SLI4_BEACON_LEN, SLI4_BEACON_LEN, &Sli4Engine::get_beacon},
        {code_of(SLI4_SUBSYSTEM_COMMON, SLI4_OPC_GET_CNTL_ADDL_ATTRIBUTES), "GET_CNTL_ADDL_ATTRIBUTES", kSli4,
         SLI4_CNTL_ADDL_ATTR_LEN, SLI4_CNTL_ADDL_ATTR_LEN, &Sli4Engine::cntl_addl_attributes},
        {code_of(SLI4_SUBSYSTEM_DCBX, SLI4_OPC_DCBX_GET_MODE), "DCBX_GET_MODE", kSli4, SLI4_DCBX_LEN,
         SLI4_DCBX_LEN, &Sli4Engine::dcbx_mode},
        {code_of(SLI4_SUBSYSTEM_COMMON, SLI4_OPC_READ_OBJECT), "READ_OBJECT", kSli4, kObjReqLen, 8,
         &Sli4Engine::read_object},
        {code_of(SLI4_SUBSYSTEM_COMMON, SLI4_OPC_WRITE_OBJECT), "WRITE_OBJECT", kSli4, kObjReqLen, 4,
         &Sli4Engine::write_object},
        {code_of(SLI4_SUBSYSTEM_COMMON, SLI4_OPC_READ_OBJECT_LIST), "READ_OBJECT_LIST", kSli4, kObjReqLen, 4,
         &Sli4Engine::list_objects},
        {code_of(SLI4_SUBSYSTEM_COMMON, SLI4_OPC_DELETE_OBJECT), "DELETE_OBJECT", kSli4,
         SLI4_OBJ_DELETE_REQ_LEN, 0, &Sli4Engine::delete_object},
    };
    static_assert(unique_codes(rows), "one row per request");
    static_assert(unique_names(rows), "one name per request");
    static constexpr auto infos = row_infos(rows);
};

std::span<const RowInfo> Sli4Engine::commands()
{
    return Sli4Table::infos;
}

Sli4Engine::Sli4Engine(const BoardConf &cfg, const Fleet &fleet)
    : cfg_(cfg), manufacturer_(fleet.manufacturer), driver_version_(fleet.driver_version),
      rng_(0x9e3779b97f4a7c15ull ^ (uint64_t{cfg.number} << 32 | cfg.serial.size()))
{
}

Sli4Engine::~Sli4Engine() = default;

ObjectStore *Sli4Engine::store()
{
    if (!store_ && cfg_.object_store && cfg_.if_type == 2) {
        ObjectStoreConf s;
        s.dump = cfg_.sli4.dump;
        s.dir = cfg_.sli4.store_dir;
        s.capacity = cfg_.sli4.capacity;
        s.busy_every = cfg_.sli4.busy_every;
        s.firmware_rev = cfg_.firmware;
        s.rom_rev = cfg_.option_rom_version;
        store_ = std::make_unique<ObjectStore>(s);
    }
    return store_.get();
}

uint16_t Sli4Engine::run(MAILBOX &mb, HostMemory &mem, std::span<uint8_t> payload, const char **name,
                         int *rule)
{
    SLI4_CONFIG cfg;
    std::memcpy(&cfg, &mb.un.varSli4Cfg, sizeof cfg);
    if (name)
        *name = nullptr;
    if (rule)
        *rule = 0;

    std::span<uint8_t> area;
    std::vector<uint8_t> local;
    uint64_t address = 0;
    if (cfg.emb) {
        area =
            std::span<uint8_t>(reinterpret_cast<uint8_t *>(&mb) + SLI4_EMBEDDED_OFFSET, SLI4_EMBEDDED_SIZE);
    } else {
        // One scatter-gather entry naming a buffer the engine can hold.
        const SLI4_SGE sge = cfg.un.sge;
        if (cfg.sge_count != 1 || sge.length < kHdr || sge.length > kMaxSgeLength)
            return MBXERR_DMA_ERROR;
        address = uint64_t{sge.addr_hi} << 32 | sge.addr_lo;
        if (!payload.empty() && address == reinterpret_cast<uintptr_t>(payload.data())) {
            area = payload.first(std::min<size_t>(sge.length, payload.size()));
            payload = {};
        } else {
            local.resize(sge.length);
            if (!mem.read(address, local.data(), local.size()))
                return MBXERR_DMA_ERROR;
            area = local;
        }
    }

    // Not even room for the header: nothing to read or answer.
    if (area.size() < kHdr)
        return MBXERR_DMA_ERROR;
    Sli4Request r{area, payload, {}};
    std::memcpy(&r.hdr, area.data(), sizeof r.hdr);
    dispatch(r, name, rule);

    KVD_vexa_sli4_rsp_hdr rsp;
    std::memcpy(&rsp, area.data(), sizeof rsp);
    rsp.status = r.status;
    rsp.additional_status = r.additional;
    rsp.rsvd2 = 0;
    rsp.response_length = r.response_length;
    rsp.actual_response_length = r.actual_length;
    std::memcpy(area.data(), &rsp, sizeof rsp);

    if (!local.empty() && !mem.write(address, local.data(), local.size()))
        return MBXERR_DMA_ERROR;
    return r.status ? MBXERR_SLI4_CONFIG_FAILED : MBXERR_OK;
}

void Sli4Engine::dispatch(Sli4Request &r, const char **name, int *rule)
{
    const uint32_t code = code_of(r.hdr.subSystem, r.hdr.opCode);
    const Sli4Row *row = find_row(Sli4Table::rows, code);
    if (name)
        *name = row ? row->name : nullptr;
    if (auto hit = library_faults().match_command("sli4", code, row ? row->name : nullptr,
                                                  static_cast<int32_t>(cfg_.number))) {
        r.status = static_cast<uint8_t>(hit->result);
        r.additional = static_cast<uint8_t>(hit->result >> 8);
        if (rule)
            *rule = hit->rule;
        return;
    }
    if (!row || !(row->sli_levels & sli_bit(cfg_.sli_mode))) {
        const bool known = r.hdr.subSystem == SLI4_SUBSYSTEM_COMMON || r.hdr.subSystem == SLI4_SUBSYSTEM_DCBX;
        r.status = SLI4_STATUS_ILLEGAL_REQUEST;
        r.additional = known ? SLI4_ADDL_INVALID_OPCODE : SLI4_ADDL_INVALID_SUBSYSTEM;
        return;
    }
    if (r.hdr.request_length < row->min_in) {
        r.status = SLI4_STATUS_INSUFFICIENT_BUFFER;
        r.additional = SLI4_ADDL_REQUEST_TOO_SHORT;
        r.response_length = row->min_out;
        return;
    }
    if (r.area.size() < kHdr + row->min_out) {
        r.status = SLI4_STATUS_INSUFFICIENT_BUFFER;
        r.additional = SLI4_ADDL_BAD_LENGTH;
        r.response_length = row->min_out;
        return;
    }
    (this->*row->handler)(r);
}

// Writes a reply body after the header: `length` bytes of `body`, as far as
// the request length and the area allow.
template <class T> void Sli4Engine::reply(Sli4Request &r, const T &body, uint32_t length)
{
    static_assert(std::is_trivially_copyable_v<T>);
    const size_t room = std::min<size_t>(r.area.size() - kHdr, r.hdr.request_length);
    const size_t n = std::min({static_cast<size_t>(length), room, sizeof(T)});
    std::memcpy(r.area.data() + kHdr, &body, n);
    r.response_length = length;
    r.actual_length = static_cast<uint32_t>(n);
}

uint8_t Sli4Engine::temperature()
{
    // A slow random walk a few degrees either side of the fleet's value.
    rng_ ^= rng_ << 13;
    rng_ ^= rng_ >> 7;
    rng_ ^= rng_ << 17;
    drift_ += static_cast<int>(rng_ % 3) - 1;
    drift_ = std::clamp(drift_, -3, 4);
    return static_cast<uint8_t>(std::clamp(cfg_.sli4.temperature + drift_, 0, 255));
}

void Sli4Engine::cntl_attributes(Sli4Request &r)
{
    get_cntl_attributes a{};
    put_text(a.version_string, cfg_.firmware);
    put_text(a.manufacturer_name, manufacturer_);
    a.supported_modes = cfg_.protocol == Protocol::fcoe ? 0x00000213u : 0x00000011u;
    a.eprom_version_lo = 0x02;
    a.eprom_version_hi = 0x01;
    a.mbx_data_structure_version = 0x00000004;
    a.ep_firmware_data_structure_version = 0x00000002;
    put_text(a.ncsi_version_string, "1.1.0");
    a.default_extended_timeout = 30;
    put_text(a.model, cfg_.model);
    put_text(a.description, cfg_.description);
    put_text(a.serial_number, cfg_.serial);
    put_text(a.ip_version_string, cfg_.firmware);
    put_text(a.fw_version_string, cfg_.firmware);
    put_text(a.bios_version_string, cfg_.option_rom_version);
    put_text(a.redboot_version_string, cfg_.firmware);
    put_text(a.driver_version_string, driver_version_);
    put_text(a.fw_on_flash_string, cfg_.firmware);
    a.functionalities_supported = cfg_.protocol == Protocol::fcoe ? 0x00000a07u : 0x00000801u;
    a.max_cdb_length = 32;
    a.asic_revision = 0x0b;
    a.generational_guid0 = 0x51;
    for (size_t i = 0; i < sizeof a.generational_guid1; i++)
        a.generational_guid1[i] = static_cast<uint8_t>(cfg_.wwpn[i % 8] ^ (0x11 * i));
    a.generational_guid2 = 0x02;
    a.generational_guid3 = 0x4b06;
    a.hba_port_count = 2;
    a.default_link_down_timeout = 30;
    a.iscsi_version_min_max = 0x00;
    a.multifunctional_device = cfg_.protocol == Protocol::fcoe ? 1 : 0;
    a.cache_valid = 1;
    a.hba_status = 0;
    a.max_domains_supported = 1;
    a.physical_port = cfg_.function;
    a.firmware_post_status = 0x0000c000; // POST complete, ready
    for (uint32_t &mtu : a.hba_mtu)
        mtu = cfg_.protocol == Protocol::fcoe ? 2500 : 2112;
    a.iscsi_features = 0;
    a.pci_vendor_id = cfg_.vendor_id;
    a.pci_device_id = cfg_.device_id;
    a.pci_sub_vendor_id = cfg_.subsys_vendor_id;
    a.pci_sub_system_id = cfg_.subsys_device_id;
    a.pci_bus_number = static_cast<uint8_t>(cfg_.bus);
    a.pci_device_number = static_cast<uint8_t>(cfg_.device);
    a.pci_function_number = cfg_.function;
    a.interface_type = static_cast<uint8_t>(cfg_.if_type);
    std::memcpy(a.unique_identifier, cfg_.wwpn.data(), sizeof a.unique_identifier);
    a.number_of_netfilters = 0;
    reply(r, a, SLI4_CNTL_ATTR_LEN);
}

void Sli4Engine::cntl_addl_attributes(Sli4Request &r)
{
    get_cntl_addl_attributes a{};
    a.ipl_file_number = cfg_.sli4.ipl_file;
    a.ipl_file_version = cfg_.sli4.ipl_version;
    a.on_die_temperature = temperature();
    a.driver_advanced_features_supported = 0x00000007;
    const bool fcoe = cfg_.protocol == Protocol::fcoe;
    const std::string &rom = cfg_.option_rom_version;
    if (fcoe) {
        put_text(a.fcoe_universal_bios_version, rom);
        put_text(a.fcoe_x86_bios_version, rom);
        put_text(a.fcoe_efi_bios_version, rom);
        put_text(a.fcoe_fcode_version, rom);
        put_text(a.uefi_nic_version, rom);
        put_text(a.pxe_x86_bios_version, rom);
    } else {
        put_text(a.fc_universal_bios_version, rom);
        put_text(a.fc_x86_bios_version, rom);
        put_text(a.fc_efi_bios_version, rom);
        put_text(a.fc_fcode_version, rom);
    }
    put_text(a.uefi_bios_version, rom);
    put_text(a.uefi_fcode_version, rom);
    std::memcpy(a.fcoe_default_wwpn, cfg_.wwpn.data(), sizeof a.fcoe_default_wwpn);
    put_text(a.ext_phy_version, "1.0.4");
    put_text(a.ext_phy_crc_version, "5a3c");
    reply(r, a, SLI4_CNTL_ADDL_ATTR_LEN);
}

void Sli4Engine::query_fw_config(Sli4Request &r)
{
    KVD_vexa_sli4_query_fw_config_rsp c{};
    const bool fcoe = cfg_.protocol == Protocol::fcoe;
    c.config_number = 1;
    c.asic_revision = 0x0b;
    c.physical_port = cfg_.function;
    c.function_mode = fcoe ? 0x00000402u : 0x00000400u;
    c.ulp0_oper_mode = 0x00000010; // FCP initiator
    c.ulp0_nic_wqid_base = fcoe ? 0x10 : 0;
    c.ulp0_nic_wq_tot = fcoe ? 8 : 0;
    c.ulp0_toe_rqid_base = 0x40;
    c.ulp0_toe_rqid_tot = 16;
    c.ulp0_toe_defrqid_base = 0x50;
    c.ulp0_toe_defrq_tot = 2;
    c.ulp1_oper_mode = 0;
    c.function_capabilities = fcoe ? 0x00000003u : 0x00000001u;
    c.cqid_base = 0x80;
    c.cqid_tot = 64;
    c.eqid_base = 0x08;
    c.eqid_tot = 16;
    // The body after the header.
    uint8_t body[sizeof c - kHdr];
    std::memcpy(body, reinterpret_cast<const uint8_t *>(&c) + kHdr, sizeof body);
    reply(r, body, SLI4_FW_CONFIG_LEN);
}

void Sli4Engine::get_beacon(Sli4Request &r)
{
    KVD_vexa_sli4_get_beacon_req req{};
    std::memcpy(&req, r.area.data(), std::min(sizeof req, r.area.size()));
    if (req.portNum >= 2) { // two physical ports
        r.status = SLI4_STATUS_ILLEGAL_FIELD;
        r.additional = SLI4_ADDL_BAD_DESCRIPTOR;
        return;
    }
    const uint32_t state = cfg_.sli4.beacon ? 1 : 0;
    reply(r, state, SLI4_BEACON_LEN);
}

void Sli4Engine::dcbx_mode(Sli4Request &r)
{
    if (cfg_.protocol != Protocol::fcoe) {
        r.status = SLI4_STATUS_ILLEGAL_REQUEST;
        r.additional = SLI4_ADDL_NOT_SUPPORTED;
        return;
    }
    const uint32_t mode = cfg_.sli4.dcbx_mode;
    reply(r, mode, SLI4_DCBX_LEN);
}

void Sli4Engine::nop(Sli4Request &r)
{
    KVD_vexa_sli4_nop_req req{};
    std::memcpy(&req, r.area.data(), std::min(sizeof req, r.area.size()));
    const uint32_t contexts[2] = {req.context0, req.context1};
    reply(r, contexts, SLI4_NOP_LEN);
}

// The name must end within its field.
bool Sli4Engine::object_name(Sli4Request &r, const char (&field)[SLI4_OBJECT_NAME_SIZE], std::string &name)
{
    const size_t n = strnlen(field, SLI4_OBJECT_NAME_SIZE);
    if (n == SLI4_OBJECT_NAME_SIZE) {
        r.status = SLI4_STATUS_ILLEGAL_FIELD;
        r.additional = SLI4_ADDL_NAME_TOO_LONG;
        return false;
    }
    name.assign(field, n);
    return true;
}

// Bytes the request's descriptors offer, bounded by the data area that came
// with the record; fails the request on a bad descriptor count or a request
// length that does not cover the descriptors.
uint32_t Sli4Engine::descriptor_bytes(Sli4Request &r, uint32_t count, const host_buffer_descriptor *hbd)
{
    if (count > SLI4_MAX_HBD) {
        r.status = SLI4_STATUS_ILLEGAL_FIELD;
        r.additional = SLI4_ADDL_BAD_DESCRIPTOR;
        return 0;
    }
    if (r.hdr.request_length < kObjReqLen + 12 * count) {
        r.status = SLI4_STATUS_INSUFFICIENT_BUFFER;
        r.additional = SLI4_ADDL_REQUEST_TOO_SHORT;
        return 0;
    }
    uint64_t sum = 0;
    for (uint32_t i = 0; i < count; i++)
        sum += hbd[i].length;
    return static_cast<uint32_t>(std::min<uint64_t>(sum, r.data.size()));
}

template <class T> static T request_of(const Sli4Request &r)
{
    T req{};
    std::memcpy(&req, r.area.data(), std::min(sizeof req, r.area.size()));
    return req;
}

static void fail_with(Sli4Request &r, const ObjectStore::Result &res)
{
    r.status = res.status;
    r.additional = res.additional;
}

// The object store and the object a request names; null, with the
// request's status set, on a board without a store or for a bad name.
ObjectStore *Sli4Engine::named_object(Sli4Request &r, const char (&field)[SLI4_OBJECT_NAME_SIZE],
                                      std::string &name)
{
    ObjectStore *s = store();
    if (!s) {
        r.status = SLI4_STATUS_ILLEGAL_REQUEST;
        r.additional = SLI4_ADDL_NOT_SUPPORTED;
        return nullptr;
    }
    return object_name(r, field, name) ? s : nullptr;
}

void Sli4Engine::read_object(Sli4Request &r)
{
    const auto req = request_of<gorvik_common_read_object_cmd>(r);
    std::string name;
    ObjectStore *s = named_object(r, req.objectName, name);
    if (!s)
        return;
    const uint32_t room = descriptor_bytes(r, req.hostBufferDescriptorCount, req.hbd);
    if (r.status)
        return;
    if (req.desiredReadLength > room) {
        r.status = SLI4_STATUS_ILLEGAL_FIELD;
        r.additional = SLI4_ADDL_BAD_LENGTH;
        return;
    }
    gorvik_common_read_object_rsp rsp{};
    uint32_t got = 0;
    bool eof = false;
    auto res = s->read(name, req.readOffset, r.data.first(req.desiredReadLength), got, eof);
    if (!res.ok())
        return fail_with(r, res);
    rsp.actualReadLength = got;
    rsp.eof = eof ? 1 : 0;
    uint8_t body[8];
    std::memcpy(body, reinterpret_cast<const uint8_t *>(&rsp) + kHdr, sizeof body);
    reply(r, body, sizeof body);
}

void Sli4Engine::write_object(Sli4Request &r)
{
    const auto req = request_of<gorvik_common_write_object_cmd>(r);
    std::string name;
    ObjectStore *s = named_object(r, req.objectName, name);
    if (!s)
        return;
    const uint32_t room = descriptor_bytes(r, req.hostBufferDescriptorCount, req.hbd);
    if (r.status)
        return;
    if (req.desiredWriteLength > room || req.desiredWriteLength % 4 != 0) {
        r.status = SLI4_STATUS_ILLEGAL_FIELD;
        r.additional = SLI4_ADDL_BAD_LENGTH;
        return;
    }
    uint32_t taken = 0;
    auto res = s->write(name, req.writeOffset, r.data.first(req.desiredWriteLength), req.endOfFile, taken);
    if (!res.ok())
        return fail_with(r, res);
    reply(r, taken, 4);
}

void Sli4Engine::list_objects(Sli4Request &r)
{
    const auto req = request_of<gorvik_common_list_object_cmd>(r);
    std::string name;
    ObjectStore *s = named_object(r, req.objectName, name);
    if (!s)
        return;
    const uint32_t room = descriptor_bytes(r, req.hostBufferDescriptorCount, req.hbd);
    if (r.status)
        return;
    const uint32_t fit = room / kListEntry;
    if (req.descriptorCount > 0 && fit == 0) {
        r.status = SLI4_STATUS_ILLEGAL_FIELD;
        r.additional = SLI4_ADDL_BAD_LENGTH;
        return;
    }
    std::vector<ObjectStore::Entry> entries;
    uint32_t count = 0;
    auto res =
        s->list(name, req.descriptorOffset, std::min<uint32_t>(req.descriptorCount, fit), entries, count);
    if (!res.ok())
        return fail_with(r, res);
    for (size_t i = 0; i < entries.size(); i++) {
        read_object_list_descriptor d{};
        d.objectHandle = entries[i].handle & 0xFFFFFF;
        d.objectFileType = entries[i].type & 7;
        d.objectInfo = entries[i].info;
        put_text(d.baseName, entries[i].name);
        put_text(d.revName, entries[i].rev);
        std::memcpy(r.data.data() + i * kListEntry, &d, sizeof d);
    }
    reply(r, count, 4);
}

void Sli4Engine::delete_object(Sli4Request &r)
{
    const auto req = request_of<gorvik_common_delete_object_cmd>(r);
    std::string name;
    ObjectStore *s = named_object(r, req.objectName, name);
    if (!s)
        return;
    auto res = s->remove(name);
    if (!res.ok())
        return fail_with(r, res);
    r.response_length = 0;
    r.actual_length = 0;
}

} // namespace kvdsim
