// Configuration space, control registers, adapter memory, the board and dump
// environments, and the driver's dump and configuration regions.
//
// Failures: environment not open ENXIO, no such board ENODEV, null buffer
// EFAULT, offset or count outside the space EINVAL; a region the board does
// not have ENOENT; a configuration region read while the firmware takes no
// mailbox EBUSY. The environment calls return 0 for failure.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>
#include <vector>

#include "firmware.hpp"
#include "pci/board_env.hpp"
#include "pci/regions.hpp"
#include "state.hpp"

using namespace kvdsim;

namespace
{

uint32_t check_board(Call &c, uint32_t board, const void *p, Board **out)
{
    if (!Library::is_open())
        return ENXIO;
    Board *b = c.lib.board(board);
    if (!b)
        return ENODEV;
    if (!p)
        return EFAULT;
    *out = b;
    return 0;
}

uint32_t fail(Call &c, uint32_t rc)
{
    c.line.result(rc).emit();
    return rc;
}

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
    try {
        Call c("KVD_ReadPciCfg");
        c.line.arg("board", board).arg_hex("offset", offset).arg("count", count);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (uint32_t rc = check_board(c, board, buffer, &b))
            return fail(c, rc);
        if (!b->pci->config().read(offset, buffer, count))
            return fail(c, EINVAL);
        c.line.result(0).bytes("out", buffer, count).emit();
        return 0;
    } catch (...) {
        return ENOMEM;
    }
}

uint32_t WritePciCfg(uint32_t board, uint32_t *value, uint32_t offset, uint32_t count)
{
    try {
        Call c("WritePciCfg");
        c.line.arg("board", board).arg_hex("offset", offset).arg("count", count);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (uint32_t rc = check_board(c, board, value, &b))
            return fail(c, rc);
        if (count != sizeof *value || !b->pci->config().write32(offset, *value))
            return fail(c, EINVAL);
        c.line.result(0).bytes("in", value, sizeof *value).emit();
        return 0;
    } catch (...) {
        return ENOMEM;
    }
}

uint32_t ReadCtlReg(uint32_t board, uint32_t *value, uint32_t offset)
{
    try {
        Call c("ReadCtlReg");
        c.line.arg("board", board).arg_hex("offset", offset);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (uint32_t rc = check_board(c, board, value, &b))
            return fail(c, rc);
        auto v = b->pci->read_reg(offset, firmware_view(*b));
        if (!v)
            return fail(c, EINVAL);
        *value = *v;
        c.line.result(0).bytes("out", value, sizeof *value).emit();
        return 0;
    } catch (...) {
        return ENOMEM;
    }
}

uint32_t WriteCtlReg(uint32_t board, uint32_t *value, uint32_t offset)
{
    try {
        Call c("WriteCtlReg");
        c.line.arg("board", board).arg_hex("offset", offset);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (uint32_t rc = check_board(c, board, value, &b))
            return fail(c, rc);
        auto action = b->pci->write_reg(offset, *value, firmware_view(*b));
        if (!action)
            return fail(c, EINVAL);
        if (*action == RegAction::run_mailbox) {
            run_slim_mailbox(*b);
        } else if (*action == RegAction::restart_firmware) {
            b->pci->clear_dump();
            b->fw->restart();
        }
        c.line.result(0).bytes("in", value, sizeof *value).emit();
        return 0;
    } catch (...) {
        return ENOMEM;
    }
}

uint32_t WriteMem(uint32_t board, uint8_t *buffer, uint32_t offset, uint32_t count)
{
    try {
        Call c("WriteMem");
        c.line.arg("board", board).arg_hex("offset", offset).arg("count", count);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (uint32_t rc = check_board(c, board, buffer, &b))
            return fail(c, rc);
        if (!b->pci->write_mem(offset, buffer, count))
            return fail(c, EINVAL);
        c.line.result(0).bytes("in", buffer, count).emit();
        return 0;
    } catch (...) {
        return ENOMEM;
    }
}

uint32_t ReadMem(uint32_t board, uint8_t *buffer, uint32_t offset, uint32_t count)
{
    try {
        Call c("ReadMem");
        c.line.arg("board", board).arg_hex("offset", offset).arg("count", count);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (uint32_t rc = check_board(c, board, buffer, &b))
            return fail(c, rc);
        if (!b->pci->read_mem(offset, buffer, count))
            return fail(c, EINVAL);
        c.line.result(0).bytes("out", buffer, count).emit();
        return 0;
    } catch (...) {
        return ENOMEM;
    }
}

// Mode 0 reports the board's mode; 1 and 2 take it online and offline; 3
// restarts the firmware (the link drops and returns) and leaves the board
// online; 4 stops the firmware for a diagnostic dump, which keeps the board
// offline until it is brought online or restarted.
uint32_t KVD_SetDumpEnv(uint32_t board, uint32_t flag)
{
    try {
        Call c("KVD_SetDumpEnv");
        c.line.arg("board", board).arg("flag", flag);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (check_board(c, board, &flag, &b) || flag > KVD_DUMPENV_FORCE_DUMP)
            return fail(c, 0);
        uint32_t mode = flag;
        switch (flag) {
        case KVD_DUMPENV_SHOW:
            mode = b->pci->dumped() ? KVD_DUMPENV_FORCE_DUMP : board_env_mode(*b);
            break;
        case KVD_DUMPENV_ONLINE:
            set_board_online(*b, true);
            break;
        case KVD_DUMPENV_OFFLINE:
            set_board_online(*b, false);
            break;
        case KVD_DUMPENV_WARM_START:
            b->fw->restart();
            set_board_online(*b, true);
            break;
        case KVD_DUMPENV_FORCE_DUMP:
            b->pci->force_dump(firmware_view(*b));
            b->fw->set_state(BoardState::offline);
            // The SLI-4 object store takes b->pci->dump_image() as its dump
            // object here once that engine is on the board.
            break;
        }
        publish_board_masks(c.lib);
        return fail(c, mode);
    } catch (...) {
        return 0;
    }
}

uint32_t SetDiagEnv(uint32_t flag)
{
    try {
        Call c("SetDiagEnv");
        c.line.arg("flag", flag);
        if (auto f = c.fault_boardless())
            return static_cast<uint32_t>(*f);
        if (!Library::is_open() || flag > KVD_DIAGENV_OFFLINE || c.lib.fleet().boards.empty())
            return fail(c, 0);
        uint32_t mode = flag;
        if (flag == KVD_DIAGENV_SHOW) {
            uint32_t on = 0, off = 0;
            board_masks(c.lib, on, off);
            mode = off ? KVD_DIAGENV_OFFLINE : KVD_DIAGENV_ONLINE;
        } else {
            for (const BoardSpec &cfg : c.lib.fleet().boards)
                if (Board *b = c.lib.board(cfg.number))
                    set_board_online(*b, flag == KVD_DIAGENV_ONLINE);
            publish_board_masks(c.lib);
        }
        return fail(c, mode);
    } catch (...) {
        return 0;
    }
}

uint32_t SetBrdEnv(uint32_t board, uint32_t flag)
{
    try {
        Call c("SetBrdEnv");
        c.line.arg("board", board).arg("flag", flag);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (check_board(c, board, &flag, &b) || flag > KVD_DIAGENV_OFFLINE)
            return fail(c, 0);
        if (flag != KVD_DIAGENV_SHOW) {
            set_board_online(*b, flag == KVD_DIAGENV_ONLINE);
            publish_board_masks(c.lib);
        }
        return fail(c, board_env_mode(*b));
    } catch (...) {
        return 0;
    }
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
    try {
        Call c("KVD_GetDriverDumpRegion");
        c.line.arg("board", board).arg("region", region).arg("length", length ? *length : 0);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (uint32_t rc = check_board(c, board, buffer, &b))
            return fail(c, rc);
        if (!length)
            return fail(c, EFAULT);
        std::vector<uint8_t> data;
        if (uint32_t rc = driver_region(*b, region, data))
            return fail(c, rc);
        const uint32_t n = data.size() < *length ? static_cast<uint32_t>(data.size()) : *length;
        memcpy(buffer, data.data(), n);
        *length = n;
        c.line.result(0).bytes("out", buffer, n).emit();
        return 0;
    } catch (...) {
        return ENOMEM;
    }
}

uint32_t getRegionData(uint32_t board, uint32_t type, uint32_t region, uint32_t offset, uint8_t *buffer,
                       uint32_t *size, uint16_t *mbx_status, uint32_t flags)
{
    try {
        Call c("getRegionData");
        c.line.arg("board", board)
            .arg("type", type)
            .arg("region", region)
            .arg("offset", offset)
            .arg("size", size ? *size : 0)
            .arg("flags", flags);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        if (uint32_t rc = check_board(c, board, buffer, &b))
            return fail(c, rc);
        if (!size || !mbx_status)
            return fail(c, EFAULT);
        if (type != KVD_REGION_TYPE_CONFIG || *size > KVD_REGION_MAX)
            return fail(c, EINVAL);
        // The region comes through the firmware's dump-memory command.
        if (b->fw->state() != BoardState::ready) {
            *mbx_status = MBX_NOT_FINISHED;
            return fail(c, EBUSY);
        }
        auto data = config_region(*b->cfg, b->pci->config(), region);
        if (!data) {
            *mbx_status = MBXERR_ERROR;
            return fail(c, ENOENT);
        }
        if (offset > data->size())
            return fail(c, EINVAL);
        const size_t avail = data->size() - offset;
        const uint32_t n = avail < *size ? static_cast<uint32_t>(avail) : *size;
        memcpy(buffer, data->data() + offset, n);
        *size = n;
        *mbx_status = MBXERR_OK;
        c.line.result(0).bytes("out", buffer, n).emit();
        return 0;
    } catch (...) {
        return ENOMEM;
    }
}
