// The records the library hands out, built from a board's description and
// its firmware's run-time state. Each function fills the whole record.
#pragma once

#include <cstdint>

#include "mailbox/firmware.hpp"
#include "core/fleet.hpp"
#include "libkvd.h"

namespace kvdsim
{

// Values the driver reports about itself in KVDDRVINFO.
constexpr uint8_t kDrvType = 0x01;      // FC driver
constexpr uint8_t kQuorvistaLevel = 3;  // rmLevel
constexpr uint8_t kCaldrimeshLevel = 2; // mpLevel
constexpr uint8_t kHbaApiLevel = 2;     // HBA API version 2

// Port attributes: the three numbers after the OSDeviceName text are
// host, channel (always 0) and SCSI target id; the local port has no target
// id and reports -1. The host number follows at KVD_OSDEV_HOST.
constexpr int32_t kLocalPortTarget = -1;

// FC-4 type bit as the HBA API lays them out: 32-bit big-endian words, type
// t in word t/32, bit t%32 (FCP, type 8, is byte 2 bit 0).
void set_fc4_type(HBA_FC4TYPES &types, uint8_t type);

// Board-table entries; the driver-wide fields of entry 0 are left to the caller.
void board_entry(const BoardConf &cfg, KVD_BRDINFO &entry);
void legacy_board_entry(const BoardConf &cfg, BRDINFO &entry);

void adapter_attributes(const Fleet &fleet, const BoardConf &cfg, HBA_ADAPTERATTRIBUTES &out);
void local_port_attributes(const Fleet &fleet, const BoardConf &cfg, const LinkStatus &link, BoardState state,
                           HBA_PORTATTRIBUTES &out);
// Remote ports are seen only while the link is up.
uint32_t discovered_ports(const BoardConf &cfg, const LinkStatus &link);
void remote_port_attributes(const BoardConf &cfg, const RemotePort &port, const LinkStatus &link,
                            HBA_PORTATTRIBUTES &out);
void port_statistics(const PortCounters &c, HBA_PORTSTATISTICS &out);
void link_info(const BoardConf &cfg, const LinkStatus &link, LINKINFO &out);
// Leaves drvInfoVer as the caller set it.
void driver_info(const Fleet &fleet, const BoardConf &cfg, const LinkStatus &link, KVDDRVINFO &out);

} // namespace kvdsim
