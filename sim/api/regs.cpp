// Configuration space, control registers, adapter memory, the board and dump
// environments, and the driver's dump and configuration regions.
//
// Failures: environment not open ENXIO, no such board ENODEV, null buffer
// EFAULT, offset or count outside the space EINVAL; a region the board does
// not have ENOENT; a configuration region read while the firmware takes no
// mailbox EBUSY; a region read that a fault rule "region:NAME" or
// "region:NUMBER" fails EIO, with the rule's result as the firmware's
// status. The environment calls return 0 for every failure.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>
#include <vector>

#include "core/entry.hpp"
#include "core/hostmem.hpp"
#include "pci/board_env.hpp"
#include "pci/regions.hpp"
#include "port/port.hpp"

using namespace kvdsim;

namespace
{

// The environment calls answer 0 when they cannot run.
constexpr CallFamily kEnvFamily{0, 0, 0, 0};

// A mailbox the host posted in SLIM: the firmware runs it in place when it
// takes commands; otherwise it stays where it is, owned by the adapter.
void run_slim_mailbox(Board &b)
{
    if (b.fw->state() != BoardState::ready)
        return;
    uint8_t record[MAILBOX_SIZE];
    b.pci->read_mem(0, record, sizeof record);
    ProcessMemory memory;
    b.fw->issue(record, MAILBOX_WORDS, MAILBOX_WORDS, 1, memory);
    b.pci->write_mem(0, record, sizeof record);
    b.pci->mailbox_done();
}

} // namespace

uint32_t KVD_ReadPciCfg(uint32_t board, uint8_t *buffer, uint32_t offset, uint32_t count)
{
    return board_call<uint32_t>(
        "KVD_ReadPciCfg", board, kErrnoFamily, buffer,
        [&](TraceLine &t) { t.arg("board", board).arg_hex("offset", offset).arg("count", count); },
        [&](Call &c, Board &b) -> uint32_t {
            if (!b.pci->config().read(offset, buffer, count))
                return EINVAL;
            c.out(buffer, count);
            c.line.result(0).bytes("out", buffer, count);
            return 0;
        });
}

uint32_t WritePciCfg(uint32_t board, uint32_t *value, uint32_t offset, uint32_t count)
{
    return board_call<uint32_t>(
        "WritePciCfg", board, kErrnoFamily, value,
        [&](TraceLine &t) { t.arg("board", board).arg_hex("offset", offset).arg("count", count); },
        [&](Call &c, Board &b) -> uint32_t {
            if (count != sizeof *value || !b.pci->config().write32(offset, *value))
                return EINVAL;
            c.line.result(0).bytes("in", value, sizeof *value);
            return 0;
        });
}

uint32_t ReadCtlReg(uint32_t board, uint32_t *value, uint32_t offset)
{
    return board_call<uint32_t>(
        "ReadCtlReg", board, kErrnoFamily, value,
        [&](TraceLine &t) { t.arg("board", board).arg_hex("offset", offset); },
        [&](Call &c, Board &b) -> uint32_t {
            auto v = b.pci->read_reg(offset, firmware_view(b));
            if (!v)
                return EINVAL;
            c.out(value, sizeof *value);
            *value = *v;
            c.line.result(0).bytes("out", value, sizeof *value);
            return 0;
        });
}

// A write that posts a mailbox runs it; one that sets HC's restart bit
// restarts the firmware (which also ends a held dump). After a restart the
// link comes up only where the port's settings allow it.
uint32_t WriteCtlReg(uint32_t board, uint32_t *value, uint32_t offset)
{
    return board_call<uint32_t>(
        "WriteCtlReg", board, kErrnoFamily, value,
        [&](TraceLine &t) { t.arg("board", board).arg_hex("offset", offset); },
        [&](Call &c, Board &b) -> uint32_t {
            auto action = b.pci->write_reg(offset, *value, firmware_view(b));
            if (!action)
                return EINVAL;
            if (*action == RegAction::run_mailbox) {
                run_slim_mailbox(b);
            } else if (*action == RegAction::restart_firmware) {
                b.pci->clear_dump();
                b.fw->restart(b.port->link_allowed());
            }
            c.line.result(0).bytes("in", value, sizeof *value);
            return 0;
        });
}

uint32_t WriteMem(uint32_t board, uint8_t *buffer, uint32_t offset, uint32_t count)
{
    return board_call<uint32_t>(
        "WriteMem", board, kErrnoFamily, buffer,
        [&](TraceLine &t) { t.arg("board", board).arg_hex("offset", offset).arg("count", count); },
        [&](Call &c, Board &b) -> uint32_t {
            if (!b.pci->write_mem(offset, buffer, count))
                return EINVAL;
            c.line.result(0).bytes("in", buffer, count);
            return 0;
        });
}

uint32_t ReadMem(uint32_t board, uint8_t *buffer, uint32_t offset, uint32_t count)
{
    return board_call<uint32_t>(
        "ReadMem", board, kErrnoFamily, buffer,
        [&](TraceLine &t) { t.arg("board", board).arg_hex("offset", offset).arg("count", count); },
        [&](Call &c, Board &b) -> uint32_t {
            if (!b.pci->read_mem(offset, buffer, count))
                return EINVAL;
            c.out(buffer, count);
            c.line.result(0).bytes("out", buffer, count);
            return 0;
        });
}

// Mode 0 reports the board's mode; 1 and 2 take it online and offline; 3
// restarts the firmware (the link drops and returns) and leaves the board
// online; 4 stops the firmware for a diagnostic dump, which keeps the board
// offline until it is brought online or restarted. Other flags fail.
uint32_t KVD_SetDumpEnv(uint32_t board, uint32_t flag)
{
    return board_call<uint32_t>(
        "KVD_SetDumpEnv", board, kEnvFamily, [&](TraceLine &t) { t.arg("board", board).arg("flag", flag); },
        [&](Call &c, Board &b) -> uint32_t {
            switch (flag) {
            case KVD_DUMPENV_SHOW:
                return b.pci->dumped() ? KVD_DUMPENV_FORCE_DUMP : board_env_mode(b);
            case KVD_DUMPENV_ONLINE:
                set_board_online(b, true);
                break;
            case KVD_DUMPENV_OFFLINE:
                set_board_online(b, false);
                break;
            case KVD_DUMPENV_WARM_START:
                b.fw->restart(b.port->link_allowed());
                set_board_online(b, true);
                break;
            case KVD_DUMPENV_FORCE_DUMP:
                b.pci->force_dump(firmware_view(b));
                b.fw->set_state(BoardState::offline);
                // A board with an object store keeps the dump there, where
                // "sli4iov quickdump" finds it.
                if (b.sli4)
                    if (ObjectStore *store = b.sli4->store())
                        store->store_dump(b.pci->dump_image());
                break;
            default:
                return 0;
            }
            publish_board_masks(c.lib);
            return flag;
        });
}

uint32_t SetDiagEnv(uint32_t flag)
{
    return library_call<uint32_t>(
        "SetDiagEnv", kEnvFamily, [&](TraceLine &t) { t.arg("flag", flag); },
        [&](Call &c) -> uint32_t {
            if (!Library::is_open() || flag > KVD_DIAGENV_OFFLINE || c.lib.fleet().boards.empty())
                return 0;
            if (flag == KVD_DIAGENV_SHOW) {
                uint32_t on = 0, off = 0;
                board_masks(c.lib, on, off);
                return off ? KVD_DIAGENV_OFFLINE : KVD_DIAGENV_ONLINE;
            }
            for (const BoardConf &cfg : c.lib.fleet().boards)
                if (Board *b = c.lib.board(cfg.number))
                    set_board_online(*b, flag == KVD_DIAGENV_ONLINE);
            publish_board_masks(c.lib);
            return flag;
        });
}

uint32_t SetBrdEnv(uint32_t board, uint32_t flag)
{
    return board_call<uint32_t>(
        "SetBrdEnv", board, kEnvFamily, [&](TraceLine &t) { t.arg("board", board).arg("flag", flag); },
        [&](Call &c, Board &b) -> uint32_t {
            if (flag > KVD_DIAGENV_OFFLINE)
                return 0;
            if (flag != KVD_DIAGENV_SHOW) {
                set_board_online(b, flag == KVD_DIAGENV_ONLINE);
                publish_board_masks(c.lib);
            }
            return board_env_mode(b);
        });
}

namespace
{

// The driver's dump regions, as this board has them.
uint32_t driver_region(Board &b, uint32_t region, std::vector<uint8_t> &out)
{
    auto word = [&out](uint32_t v) {
        for (int i = 0; i < 4; ++i)
            out.push_back(static_cast<uint8_t>(v >> (8 * i)));
    };
    switch (region) {
    case KVD_DUMP_REGION_REGS: {
        uint32_t regs[4];
        b.pci->host_registers(firmware_view(b), regs);
        for (uint32_t r : regs)
            word(r);
        return 0;
    }
    case KVD_DUMP_REGION_PCI:
        out.resize(64);
        b.pci->config().read(0, out.data(), 64);
        return 0;
    case KVD_DUMP_REGION_MBOX:
        if (b.cfg->sli_mode >= 4)
            return ENOENT; // SLI-4 mailboxes live in host memory
        out.resize(MAILBOX_SIZE);
        b.pci->read_mem(0, out.data(), MAILBOX_SIZE);
        return 0;
    case KVD_DUMP_REGION_STATE: {
        const LinkStatus link = b.fw->link();
        word(board_env_mode(b));
        word(b.pci->dumped() ? 1 : 0);
        word(link.up ? 1 : 0);
        word(link.state);
        word(link.did);
        word(link.event_tag);
        word(link.speed);
        word(static_cast<uint32_t>(b.cfg->sli_mode));
        return 0;
    }
    case KVD_DUMP_REGION_FWDUMP: {
        if (!b.pci->dumped())
            return ENOENT;
        const auto img = b.pci->dump_image();
        out.assign(img.begin(), img.begin() + 32);
        return 0;
    }
    default:
        return ENOENT;
    }
}

} // namespace

uint32_t KVD_GetDriverDumpRegion(uint32_t board, uint32_t region, uint8_t *buffer, uint32_t *length)
{
    return board_call<uint32_t>(
        "KVD_GetDriverDumpRegion", board, kErrnoFamily, buffer,
        [&](TraceLine &t) {
            t.arg("board", board).arg("region", region).arg("length", length ? *length : 0);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!length)
                return EFAULT;
            c.out(buffer, *length);
            c.out(length, sizeof *length);
            std::vector<uint8_t> data;
            if (uint32_t rc = driver_region(b, region, data))
                return rc;
            const uint32_t n = data.size() < *length ? static_cast<uint32_t>(data.size()) : *length;
            memcpy(buffer, data.data(), n);
            *length = n;
            c.line.result(0).bytes("out", buffer, n);
            return 0;
        });
}

uint32_t getRegionData(uint32_t board, uint32_t type, uint32_t region, uint32_t offset, uint8_t *buffer,
                       uint32_t *size, uint16_t *mbx_status, uint32_t flags)
{
    return board_call<uint32_t>(
        "getRegionData", board, kErrnoFamily, buffer,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg("type", type)
                .arg("region", region)
                .arg("offset", offset)
                .arg("size", size ? *size : 0)
                .arg("flags", flags);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!size || !mbx_status)
                return EFAULT;
            if (type != KVD_REGION_TYPE_CONFIG || *size > KVD_REGION_MAX)
                return EINVAL;
            c.out(buffer, *size);
            c.out(size, sizeof *size);
            c.out(mbx_status, sizeof *mbx_status);
            // Regions come through the firmware's dump-memory command.
            const RegionRow *row = region_row(region);
            auto refuse = [&](uint16_t status, uint32_t rc) {
                *mbx_status = status;
                c.line.result(rc);
                if (row)
                    c.line.tag("region", row->name);
                return rc;
            };
            if (b.fw->state() != BoardState::ready)
                return refuse(MBX_NOT_FINISHED, EBUSY);
            if (auto hit = library_faults().match_command("region", region, row ? row->name : nullptr,
                                                          static_cast<int32_t>(b.cfg->number))) {
                refuse(static_cast<uint16_t>(hit->result), EIO);
                c.line.injected(hit->rule);
                return EIO;
            }
            auto data = region == kRegionDriver ? std::optional(b.port->region(region))
                                                : b.pci->region(*b.cfg, region);
            if (!data)
                return refuse(MBXERR_ERROR, ENOENT);
            if (offset > data->size())
                return EINVAL;
            const size_t avail = data->size() - offset;
            const uint32_t n = avail < *size ? static_cast<uint32_t>(avail) : *size;
            memcpy(buffer, data->data() + offset, n);
            *size = n;
            *mbx_status = MBXERR_OK;
            c.line.result(0).tag("region", row->name).bytes("out", buffer, n);
            return 0;
        });
}
