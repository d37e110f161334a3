#include "core/state.hpp"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace kvdsim
{

namespace
{

constinit std::atomic<bool> g_open{false};
constinit std::atomic<uint32_t> g_present{0}; // bit per board number

constexpr size_t kMaxFleetFile = 16u << 20;

bool read_whole_file(const char *path, std::string &text, std::string &error)
{
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = std::string(path) + ": cannot open: " + strerror(errno);
        return false;
    }
    text.clear();
    char buf[8192];
    for (;;) {
        ssize_t n = read(fd, buf, sizeof buf);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            error = std::string(path) + ": cannot read: " + strerror(errno);
            close(fd);
            return false;
        }
        if (n == 0)
            break;
        text.append(buf, static_cast<size_t>(n));
        if (text.size() > kMaxFleetFile) {
            error = std::string(path) + ": larger than " + std::to_string(kMaxFleetFile) + " bytes";
            close(fd);
            return false;
        }
    }
    close(fd);
    return true;
}

} // namespace

std::optional<Fleet> read_fleet_file(const char *path, std::string &error)
{
    if (!path || !*path)
        return parse_fleet(default_fleet_json(), "default fleet", error);
    std::string text;
    if (!read_whole_file(path, text, error))
        return std::nullopt;
    return parse_fleet(text, path, error);
}

Library &Library::instance()
{
    static Library *lib = new Library;
    return *lib;
}

void Library::load()
{
    if (loaded_)
        return;
    loaded_ = true;
    std::string error;
    std::optional<Fleet> f = read_fleet_file(getenv("KVD_SIM_FLEET"), error);
    if (!f) {
        fprintf(stderr, "libkvd: %s\n", error.c_str());
        return;
    }
    fleet_ = std::move(*f);
    uint32_t mask = 0;
    try {
        for (const BoardConf &cfg : fleet_.boards) {
            Board &b = boards_[cfg.number];
            b.cfg = &cfg;
            b.fw = std::make_unique<Firmware>(cfg);
            if (cfg.tarvo)
                b.asic = std::make_unique<Asic>(cfg.asic);
            b.fabric = std::make_unique<Fabric>(cfg);
            b.scsi = std::make_unique<ScsiTargets>(cfg);
            if (cfg.sli_mode == 4) {
                b.sli4 = std::make_unique<Sli4Engine>(cfg, fleet_);
                b.fw->attach_sli4(b.sli4.get());
            }
            if (!cfg.online)
                b.fw->set_state(BoardState::offline);
            b.events = std::make_unique<BoardEvents>(cfg.number, cfg.events);
            b.diag = std::make_unique<Diag>(cfg);
            b.fw->set_link_hook(&Library::link_changed, &b);
            b.port = std::make_unique<Port>(cfg);
            b.port->power_on(*b.fw);
            b.fw->attach_port(b.port.get());
            b.pci = std::make_unique<PciEngine>(cfg, b.fw->link().event_tag);
            b.fw->attach_memory(b.pci.get());
            b.mgmt = std::make_unique<MgmtEngine>(cfg, b.fw->link().event_tag);
            b.auth = std::make_unique<AuthEngine>(cfg);
            b.nodes = std::make_unique<Nodes>(cfg);
            b.npiv = std::make_unique<Npiv>(cfg, *b.fabric, *b.nodes, b.events.get());
            b.fw->attach_npiv(b.npiv.get());
            b.sd = std::make_unique<SdEngine>(cfg, b.npiv.get());
            b.drvparams = std::make_unique<DrvParams>(cfg);
            // The driver's NPIV parameter gates virtual ports; the fleet's
            // npiv section may hold them off as well.
            if (auto i = b.drvparams->find("enable_npiv")) {
                b.npiv->set_driver_npiv_enable(cfg.npiv.driver_enable && b.drvparams->current(*i) != 0);
                b.drvparams->on_change("enable_npiv", [npiv = b.npiv.get()](uint32_t on) {
                    npiv->set_driver_npiv_enable(on != 0);
                });
            }
            mask |= 1u << cfg.number;
        }
        start_static_vports();
    } catch (const std::exception &e) {
        fprintf(stderr, "libkvd: cannot start the boards' firmware: %s\n", e.what());
        for (Board &b : boards_) {
            b.cfg = nullptr;
            // Engines that refer to others go first.
            b.npiv.reset();
            b.sd.reset();
            b.port.reset();
            b.drvparams.reset();
            b.fw.reset();
            b.pci.reset();
            b.mgmt.reset();
            b.events.reset();
            b.diag.reset();
            b.auth.reset();
            b.asic.reset();
            b.fabric.reset();
            b.scsi.reset();
            b.sli4.reset();
            b.nodes.reset();
        }
        fleet_.boards.clear();
        mask = 0;
    }
    g_present.store(mask, std::memory_order_release);
}

// The virtual ports of the drivers' configuration come up with the boards,
// their SCSI hosts numbered on from the highest board's. A port the driver
// refuses stops the start, as a fleet error.
void Library::start_static_vports()
{
    uint32_t host = 0;
    for (const BoardConf &cfg : fleet_.boards)
        host = std::max(host, static_cast<uint32_t>(cfg.host) + 1);
    for (size_t i = 0; i < fleet_.boards.size(); ++i) {
        const BoardConf &cfg = fleet_.boards[i];
        Board &b = boards_[cfg.number];
        const bool up = b.fw->state() == BoardState::ready && b.fw->link().up;
        for (size_t k = 0; k < cfg.npiv.vports.size(); ++k)
            if (const uint32_t rc = b.npiv->create_static(cfg.npiv.vports[k], host++, up))
                throw std::runtime_error("boards[" + std::to_string(i) + "].npiv.vports[" +
                                         std::to_string(k) + "]: refused by the driver (" +
                                         strerror(static_cast<int>(rc)) + ")");
    }
}

// The firmware's link attentions become link events of the board.
void Library::link_changed(void *context, const LinkStatus &link)
{
    Board *b = static_cast<Board *>(context);
    if (b->events && b->cfg)
        b->events->link_changed(link, b->cfg->wwpn, b->cfg->wwnn);
    if (b->npiv)
        b->npiv->link_changed(link.up);
    if (b->sd && link.up)
        b->sd->link_up();
}

Board *Library::board(uint32_t number)
{
    if (number >= 32 || !boards_[number].cfg)
        return nullptr;
    return &boards_[number];
}

bool Library::is_open()
{
    return g_open.load(std::memory_order_acquire);
}

void Library::set_open(bool open)
{
    g_open.store(open, std::memory_order_release);
}

bool Library::present(uint32_t number)
{
    return number < 32 && (g_present.load(std::memory_order_acquire) >> number & 1u);
}

} // namespace kvdsim
