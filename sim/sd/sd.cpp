// SD events and latency collection of the simulated boards.
#include "sd/sd.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "events/events.hpp"
#include "npiv/npiv.hpp"
#include "scsi/target.hpp"

namespace kvdsim
{

namespace
{

// The kinds this library knows, in the order kvd_sd_show_events lists them.
constexpr SdKind kKinds[] = {
    {SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_PLOGI_RCV, "ELS", "PLOGI_RCV"},
    {SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_PRLO_RCV, "ELS", "PRLO_RCV"},
    {SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_ADISC_RCV, "ELS", "ADISC_RCV"},
    {SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_LSRJT_RCV, "ELS", "LSRJT_RCV"},
    {SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_LOGO_RCV, "ELS", "LOGO_RCV"},
    {SD_CATEGORY_FABRIC, SD_FABRIC_SUBCATEGORY_FABRIC_BUSY, "FABRIC", "FABRIC_BUSY"},
    {SD_CATEGORY_FABRIC, SD_FABRIC_SUBCATEGORY_PORT_BUSY, "FABRIC", "PORT_BUSY"},
    {SD_CATEGORY_FABRIC, SD_FABRIC_SUBCATEGORY_FCPRDCHKERR, "FABRIC", "FCPRDCHKERR"},
    {SD_CATEGORY_FABRIC, 0x8, "FABRIC", "PORT_RJT"},
    {SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_QFULL, "SCSI", "QFULL"},
    {SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_DEVBSY, "SCSI", "DEVBSY"},
    {SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_CHECKCONDITION, "SCSI", "CHECKCONDITION"},
    {SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_LUNRESET, "SCSI", "LUNRESET"},
    {SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_TGTRESET, "SCSI", "TGTRESET"},
    {SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_BUSRESET, "SCSI", "BUSRESET"},
    {SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_VARQUEDEPTH, "SCSI", "VARQUEDEPTH"},
    {SD_CATEGORY_BOARD, SD_BOARD_SUBCATEGORY_PORTINTERR, "BOARD", "PORTINTERR"},
    {SD_CATEGORY_ADAPTER, SD_ADAPTER_SUBCATEGORY_ARRIVAL, "ADAPTER", "ARRIVAL"},
    {0x20, 0x1, "PORT", "SPEED_CHANGE"},
};

std::atomic<int32_t> g_verbosity{0};

// Constant-initialised: the release calls reach it from signal handlers.
SdSubscriptions g_subscriptions;

template <class T> void put(std::vector<uint8_t> &out, size_t at, const T &v)
{
    if (out.size() < at + sizeof v)
        out.resize(at + sizeof v);
    memcpy(out.data() + at, &v, sizeof v);
}

uint64_t key(const Wwn &w)
{
    uint64_t k;
    memcpy(&k, w.data(), sizeof k);
    return k;
}

bool word(const std::string &w, uint64_t max, uint64_t &out)
{
    if (w.empty() || w.size() > 20)
        return false;
    errno = 0;
    char *end = nullptr;
    const unsigned long long v = strtoull(w.c_str(), &end, 0);
    if (errno || *end || w[0] == '-' || v > max)
        return false;
    out = v;
    return true;
}

} // namespace

std::span<const SdKind> sd_kinds()
{
    return kKinds;
}

const SdKind *sd_kind(uint32_t category, uint32_t subcategory)
{
    for (const SdKind &k : kKinds)
        if (k.category == category && k.subcategory == subcategory)
            return &k;
    return nullptr;
}

int32_t sd_verbosity()
{
    return g_verbosity.load(std::memory_order_relaxed);
}

void set_sd_verbosity(int32_t level)
{
    g_verbosity.store(level, std::memory_order_relaxed);
}

// ---------------------------------------------------------------------------
// Buckets

int SdBuckets::bucket(uint64_t ticks) const
{
    int b = 0;
    for (int i = 1; i < KVD_SD_BUCKETS; ++i)
        if (ticks >= static_cast<uint64_t>(bounds[i]))
            b = i;
    return b;
}

SdBuckets &sd_buckets()
{
    static SdBuckets b;
    return b;
}

int32_t sd_define_buckets(uint16_t type, uint32_t base, uint32_t step)
{
    if (type != SD_SEARCH_LINEAR && type != SD_SEARCH_POWER2)
        return SD_ERROR_INVALID_SEARCH_TYPE;
    if (step == 0)
        return SD_ERROR_INVALID_ARG;
    SdBuckets &b = sd_buckets();
    b.set = true;
    b.type = type;
    b.base = base;
    b.step = step;
    // Linear: base, base + step, base + 2 step, ...; power of two: base,
    // base + step, base + 2 step, base + 4 step, ...
    for (int i = 0; i < KVD_SD_BUCKETS; ++i) {
        const uint64_t k = type == SD_SEARCH_LINEAR ? static_cast<uint64_t>(i) : i == 0 ? 0 : 1ull << (i - 1);
        b.bounds[i] = static_cast<int64_t>(base + k * step);
    }
    return SD_OK;
}

// ---------------------------------------------------------------------------
// Subscriptions

SdSubscriptions &SdSubscriptions::instance()
{
    return g_subscriptions;
}

int32_t SdSubscriptions::subscribe(uint32_t board, const Wwn &port, bool virtual_port, uint32_t category,
                                   uint32_t subcategory, kvd_sd_callback_fn fn, void *context,
                                   uint32_t &handle)
{
    const uint64_t port_key = key(port);
    bool category_known = false;
    for (const SdKind &k : kKinds)
        category_known = category_known || k.category == category;
    if (!category_known)
        return SD_ERROR_CATEGORY_NOT_SUPPORTED;
    if (!sd_kind(category, subcategory))
        return SD_ERROR_SUBCATEGORY_NOT_SUPPORTED;
    for (const Slot &s : slots_)
        if (s.handle.load() != 0 && s.board.load(std::memory_order_relaxed) == board &&
            s.port.load(std::memory_order_relaxed) == port_key &&
            s.category.load(std::memory_order_relaxed) == category &&
            s.subcategory.load(std::memory_order_relaxed) == subcategory &&
            s.fn.load(std::memory_order_relaxed) == fn)
            return SD_ERROR_EVENT_ALREADY_REGISTERED;
    Dispatcher &d = Dispatcher::instance();
    for (int i = 0; i < kHandles; ++i) {
        Slot &s = slots_[i];
        if (s.handle.load() != 0)
            continue;
        d.wait_idle(Dispatcher::kSlots + i); // a call of the slot's previous owner may still run
        s.board.store(board, std::memory_order_relaxed);
        s.port.store(port_key, std::memory_order_relaxed);
        s.virtual_port.store(virtual_port, std::memory_order_relaxed);
        s.category.store(category, std::memory_order_relaxed);
        s.subcategory.store(subcategory, std::memory_order_relaxed);
        s.fn.store(fn, std::memory_order_relaxed);
        s.context.store(context, std::memory_order_relaxed);
        uint32_t h = next_handle_.fetch_add(1);
        if (h == 0)
            h = next_handle_.fetch_add(1);
        s.handle.store(h);
        handle = h;
        return SD_OK;
    }
    return SD_ERROR_OUT_OF_HANDLES;
}

int32_t SdSubscriptions::unsubscribe(uint32_t board, const Wwn &port, uint32_t handle)
{
    const uint64_t port_key = key(port);
    bool any = false;
    for (int i = 0; i < kHandles; ++i) {
        Slot &s = slots_[i];
        uint32_t cur = s.handle.load();
        if (cur == 0 || s.board.load(std::memory_order_relaxed) != board ||
            s.port.load(std::memory_order_relaxed) != port_key)
            continue;
        any = true;
        if (cur == handle && s.handle.compare_exchange_strong(cur, 0)) {
            Dispatcher::instance().wait_idle(Dispatcher::kSlots + i);
            return SD_OK;
        }
    }
    return any ? SD_ERROR_REG_HANDLE : SD_ERROR_NO_ACTIVE_REGISTRATION;
}

bool SdSubscriptions::wants(uint32_t board, const Wwn &port, uint32_t category, uint32_t subcategory) const
{
    const uint64_t port_key = key(port);
    for (const Slot &s : slots_)
        if (s.handle.load() != 0 && s.board.load(std::memory_order_relaxed) == board &&
            s.port.load(std::memory_order_relaxed) == port_key &&
            s.category.load(std::memory_order_relaxed) == category &&
            s.subcategory.load(std::memory_order_relaxed) == subcategory)
            return true;
    return false;
}

void SdSubscriptions::show() const
{
    int n = 0;
    for (const Slot &s : slots_)
        n += s.handle.load() != 0;
    printf("libkvd SD registrations: %d of %d handles\n", n, kHandles);
    for (const Slot &s : slots_) {
        const uint32_t h = s.handle.load();
        if (h == 0)
            continue;
        const SdKind *k = sd_kind(s.category.load(std::memory_order_relaxed),
                                  s.subcategory.load(std::memory_order_relaxed));
        printf("  handle %u board %u", h, s.board.load(std::memory_order_relaxed));
        if (s.virtual_port.load(std::memory_order_relaxed)) {
            Wwn w;
            const uint64_t port_key = s.port.load(std::memory_order_relaxed);
            memcpy(w.data(), &port_key, sizeof port_key);
            printf(" vport %02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x", w[0], w[1], w[2], w[3], w[4], w[5], w[6],
                   w[7]);
        }
        printf(" category 0x%x %s subcategory 0x%x %s\n", s.category.load(std::memory_order_relaxed),
               k ? k->category_name : "?", s.subcategory.load(std::memory_order_relaxed), k ? k->name : "?");
    }
    fflush(stdout);
}

int SdSubscriptions::drop_port(uint32_t board, const Wwn &port)
{
    const uint64_t port_key = key(port);
    int dropped = 0;
    for (int i = 0; i < kHandles; ++i) {
        Slot &s = slots_[i];
        uint32_t cur = s.handle.load();
        if (cur != 0 && s.board.load(std::memory_order_relaxed) == board &&
            s.port.load(std::memory_order_relaxed) == port_key && s.handle.compare_exchange_strong(cur, 0)) {
            ++dropped;
            Dispatcher::instance().wait_idle(Dispatcher::kSlots + i);
        }
    }
    return dropped;
}

int SdSubscriptions::drop_board(uint32_t board)
{
    int dropped = 0;
    for (int i = 0; i < kHandles; ++i) {
        Slot &s = slots_[i];
        uint32_t cur = s.handle.load();
        if (cur != 0 && s.board.load(std::memory_order_relaxed) == board &&
            s.handle.compare_exchange_strong(cur, 0)) {
            ++dropped;
            Dispatcher::instance().wait_idle(Dispatcher::kSlots + i);
        }
    }
    return dropped;
}

void SdSubscriptions::drop_all()
{
    for (Slot &s : slots_)
        s.handle.store(0);
}

// Delivery: the event record, its details record and the event, on this
// thread's stack for the length of each call.
void SdSubscriptions::deliver(const Event &e)
{
    Dispatcher &d = Dispatcher::instance();
    const bool trace = sd_verbosity() >= 2;
    uint64_t port_key;
    memcpy(&port_key, e.vport.wwn, sizeof port_key);
    for (uint32_t n = 0; n < e.sd_count; ++n) {
        for (int i = 0; i < kHandles; ++i) {
            Slot &s = slots_[i];
            const uint32_t h = s.handle.load();
            if (h == 0 || s.board.load(std::memory_order_relaxed) != e.board ||
                s.port.load(std::memory_order_relaxed) != port_key ||
                s.category.load(std::memory_order_relaxed) != e.sd_category ||
                s.subcategory.load(std::memory_order_relaxed) != e.sd_subcategory)
                continue;
            struct Leave {
                Dispatcher &d;
                ~Leave()
                {
                    d.leave();
                }
            };
            const bool go = d.enter(Dispatcher::kSlots + i);
            Leave leave{d};
            if (!go)
                return;
            if (s.handle.load() != h) // released meanwhile
                continue;
            const kvd_sd_callback_fn fn = s.fn.load(std::memory_order_relaxed);
            void *context = s.context.load(std::memory_order_relaxed);
            std::array<uint8_t, 32> record = e.sd_record;
            SD_els_event_details_v0 details{0, record.data()};
            SD_event event{0, e.sd_record_len, &details};
            if (trace) {
                // One write: the line stays whole among the shell's own.
                char vport[40] = "";
                if (s.virtual_port.load(std::memory_order_relaxed))
                    snprintf(vport, sizeof vport, " vport %02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x",
                             e.vport.wwn[0], e.vport.wwn[1], e.vport.wwn[2], e.vport.wwn[3], e.vport.wwn[4],
                             e.vport.wwn[5], e.vport.wwn[6], e.vport.wwn[7]);
                fprintf(stderr, "libkvd sd: event board %u%s category 0x%x subcategory 0x%x handle %u\n",
                        e.board, vport, e.sd_category, e.sd_subcategory, h);
            }
            fn(e.board, e.vport, e.sd_category, e.sd_subcategory, context, &event);
        }
    }
}

// ---------------------------------------------------------------------------
// One board

SdEngine::SdEngine(const BoardConf &cfg, const Npiv *npiv) : board_(cfg.number), wwpn_(cfg.wwpn), npiv_(npiv)
{
    uint32_t index = 0;
    for (const RemotePort &p : cfg.remote_ports) {
        if (!p.fcp_target)
            continue;
        Target t;
        t.wwpn = p.wwpn;
        t.wwnn = p.wwnn;
        for (const SdTraffic &tr : cfg.sd.traffic)
            if (tr.wwpn == p.wwpn)
                t.traffic = tr;
        // splitmix64 of seed, board and target: a fixed sequence per target.
        uint64_t z = (static_cast<uint64_t>(cfg.sd.seed) << 32) ^ (uint64_t{board_} << 16) ^ ++index;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
        t.rng = (z ^ (z >> 31)) | 1;
        targets_.push_back(t);
    }
}

bool SdEngine::physical(const HBA_WWN &vport) const
{
    static const uint8_t zero[8] = {};
    return memcmp(vport.wwn, zero, 8) == 0 || memcmp(vport.wwn, wwpn_.data(), 8) == 0;
}

bool SdEngine::port_of(const HBA_WWN &vport, Wwn &port, bool &virtual_port) const
{
    if (physical(vport)) {
        port = wwpn_;
        virtual_port = false;
        return true;
    }
    memcpy(port.data(), vport.wwn, 8);
    virtual_port = true;
    return npiv_ && npiv_->find(port);
}

void SdEngine::raise(uint32_t category, uint32_t subcategory, std::span<const uint8_t> record, uint32_t count,
                     const Wwn *port)
{
    if (!port)
        port = &wwpn_;
    if (count == 0 || !SdSubscriptions::instance().wants(board_, *port, category, subcategory))
        return;
    Event e;
    e.board = board_;
    e.kind = kSdEventKind;
    e.sd_category = category;
    e.sd_subcategory = subcategory;
    e.sd_count = count;
    e.sd_record_len = static_cast<uint32_t>(std::min(record.size(), e.sd_record.size()));
    memcpy(e.sd_record.data(), record.data(), e.sd_record_len);
    memcpy(e.vport.wwn, port->data(), 8);
    Dispatcher::instance().post(std::move(e));
}

std::vector<uint8_t> SdEngine::record_for(uint32_t category, uint32_t subcategory, const Wwn &rport,
                                          const Wwn &rnode, uint32_t lun) const
{
    std::vector<uint8_t> r(12, 0);
    memcpy(r.data() + 4, rport.data(), 8);
    const uint32_t kind = category << 8 | subcategory;
    switch (kind) {
    case SD_CATEGORY_ELS << 8 | SD_ELS_SUBCATEGORY_PLOGI_RCV:
    case SD_CATEGORY_ELS << 8 | SD_ELS_SUBCATEGORY_ADISC_RCV:
        r.resize(20);
        memcpy(r.data() + 12, rnode.data(), 8);
        break;
    case SD_CATEGORY_ELS << 8 | SD_ELS_SUBCATEGORY_LOGO_RCV:
        r.resize(20);
        memcpy(r.data() + 12, rport.data(), 8); // the port the LOGO names: the sender
        break;
    case SD_CATEGORY_ELS << 8 | SD_ELS_SUBCATEGORY_LSRJT_RCV:
        put(r, 12, uint32_t{0x03}); // PLOGI
        put(r, 16, uint32_t{0x09}); // unable to perform command request
        put(r, 20, uint32_t{0x29}); // insufficient resources to support login
        break;
    case SD_CATEGORY_FABRIC << 8 | SD_FABRIC_SUBCATEGORY_FCPRDCHKERR:
        put(r, 12, lun);
        put(r, 16, uint32_t{SCSI_READ_10});
        put(r, 20, uint32_t{0x200}); // bytes the target reported moved
        break;
    case SD_CATEGORY_SCSI << 8 | SD_SCSI_SUBCATEGORY_QFULL:
    case SD_CATEGORY_SCSI << 8 | SD_SCSI_SUBCATEGORY_DEVBSY:
    case SD_CATEGORY_SCSI << 8 | SD_SCSI_SUBCATEGORY_LUNRESET:
    case SD_CATEGORY_SCSI << 8 | SD_SCSI_SUBCATEGORY_TGTRESET:
        put(r, 12, lun);
        break;
    case SD_CATEGORY_SCSI << 8 | SD_SCSI_SUBCATEGORY_VARQUEDEPTH:
        put(r, 12, lun);
        put(r, 16, uint32_t{32});
        put(r, 20, uint32_t{16});
        break;
    case SD_CATEGORY_SCSI << 8 | SD_SCSI_SUBCATEGORY_CHECKCONDITION:
        put(r, 12, lun);
        put(r, 16, uint32_t{SCSI_READ_10});
        put(r, 20, uint32_t{0x6});  // UNIT ATTENTION
        put(r, 24, uint32_t{0x29}); // power on, reset or bus device reset occurred
        put(r, 28, uint32_t{0});
        break;
    default:
        break;
    }
    return r;
}

void SdEngine::els_rejected(const Wwn &rport, uint8_t command, uint8_t reason, uint8_t explanation)
{
    auto r = record_for(SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_LSRJT_RCV, rport, Wwn{}, 0);
    put(r, 12, uint32_t{command});
    put(r, 16, uint32_t{reason});
    put(r, 20, uint32_t{explanation});
    raise(SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_LSRJT_RCV, r);
}

void SdEngine::scsi_completed(const Wwn &target, const ScsiTask &t, uint32_t lun_depth)
{
    const int32_t lun_number = ScsiTargets::lun_number(t.lun);
    const uint32_t lun = lun_number < 0 ? 0 : static_cast<uint32_t>(lun_number);
    Wwn node{};
    Target *found = nullptr;
    for (Target &x : targets_) {
        if (x.wwpn != target)
            continue;
        node = x.wwnn;
        found = &x;
        // Command overhead plus the transfer at about 1 ns a byte.
        if (active_ && sd_buckets().set)
            count(x, uint64_t{x.traffic.min_us} * 1000 + t.moved + t.data_in.size());
    }
    std::vector<uint8_t> r;
    if (t.status == SCSI_STAT_CHECK_CONDITION) {
        r = record_for(SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_CHECKCONDITION, target, node, lun);
        const uint8_t opcode = t.cdb.empty() ? 0 : t.cdb[0];
        put(r, 16, uint32_t{opcode});
        put(r, 20, uint32_t{static_cast<uint32_t>(t.sense.senseKey & 0xf)});
        put(r, 24, uint32_t{t.sense.asc});
        put(r, 28, uint32_t{t.sense.ascq});
        raise(SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_CHECKCONDITION, r);
    } else if (t.status == 0x28 || t.status == SCSI_STAT_BUSY) { // TASK SET FULL, BUSY
        const uint32_t sub = t.status == 0x28 ? SD_SCSI_SUBCATEGORY_QFULL : SD_SCSI_SUBCATEGORY_DEVBSY;
        r = record_for(SD_CATEGORY_SCSI, sub, target, node, lun);
        raise(SD_CATEGORY_SCSI, sub, r);
        if (t.status == 0x28 && found) {
            const uint32_t old = found->depth.count(lun) ? found->depth[lun] : lun_depth;
            const uint32_t lowered = std::max<uint32_t>(old / 2, 1);
            if (lowered != old) {
                found->depth[lun] = lowered;
                r = record_for(SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_VARQUEDEPTH, target, node, lun);
                put(r, 16, old);
                put(r, 20, lowered);
                raise(SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_VARQUEDEPTH, r);
            }
        }
    }
}

void SdEngine::link_up()
{
    for (const Target &t : targets_) {
        const auto r = record_for(SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_PLOGI_RCV, t.wwpn, t.wwnn, 0);
        raise(SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_PLOGI_RCV, r);
    }
    if (!npiv_)
        return;
    for (const Vport &v : npiv_->vports())
        for (const NODEINFO &n : npiv_->seen_by(v)) {
            if (!(n.a_flag & KVD_NODE_FCP))
                continue;
            Wwn rport, rnode;
            memcpy(rport.data(), n.a_wwpn, 8);
            memcpy(rnode.data(), n.a_wwnn, 8);
            const auto r = record_for(SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_PLOGI_RCV, rport, rnode, 0);
            raise(SD_CATEGORY_ELS, SD_ELS_SUBCATEGORY_PLOGI_RCV, r, 1, &v.wwpn);
        }
}

// The board's port and every other logged-in vport log in with a vport
// that does not restrict its logins (what GetNodeInfo shows).
void SdEngine::tell_peers(const Vport &from, uint32_t subcategory)
{
    if (from.state != KVD_VPSTATE_ACTIVE || from.restrict_login)
        return;
    const auto r = record_for(SD_CATEGORY_ELS, subcategory, from.wwpn, from.wwnn, 0);
    raise(SD_CATEGORY_ELS, subcategory, r);
    if (!npiv_)
        return;
    for (const Vport &o : npiv_->vports())
        if (o.wwpn != from.wwpn && o.state == KVD_VPSTATE_ACTIVE && !o.restrict_login)
            raise(SD_CATEGORY_ELS, subcategory, r, 1, &o.wwpn);
}

void SdEngine::vport_created(const Vport &v)
{
    tell_peers(v, SD_ELS_SUBCATEGORY_PLOGI_RCV);
}

void SdEngine::vport_deleted(const Vport &v)
{
    SdSubscriptions::instance().drop_port(board_, v.wwpn);
    tell_peers(v, SD_ELS_SUBCATEGORY_LOGO_RCV);
}

void SdEngine::adapter_reset()
{
    for (Target &t : targets_) // the LUNs are found again at the driver's depth
        t.depth.clear();
    const std::array<uint8_t, 4> version{};
    raise(SD_CATEGORY_SCSI, SD_SCSI_SUBCATEGORY_BUSRESET, version);
    raise(SD_CATEGORY_ADAPTER, SD_ADAPTER_SUBCATEGORY_ARRIVAL, version);
}

std::string SdEngine::request(const std::vector<std::string> &w)
{
    uint64_t category = 0, subcategory = 0, n = 0;
    if (w.size() != 3 && w.size() != 4)
        return "error: sd needs <category> <subcategory> <count> [vport wwpn]";
    if (!word(w[0], 0xFFFFFFFF, category) || !word(w[1], 0xFFFFFFFF, subcategory))
        return "error: bad category or subcategory";
    if (!sd_kind(static_cast<uint32_t>(category), static_cast<uint32_t>(subcategory)))
        return "error: no such SD event";
    if (!word(w[2], kSdMaxBurst, n) || n == 0)
        return "error: count not 1.." + std::to_string(kSdMaxBurst);
    Wwn port = wwpn_;
    if (w.size() == 4) {
        HBA_WWN given{};
        bool virtual_port = false;
        if (!parse_wwn(w[3], port))
            return "error: bad vport WWPN";
        memcpy(given.wwn, port.data(), 8);
        if (!port_of(given, port, virtual_port))
            return "error: no such vport";
    }
    Wwn rport{}, rnode{};
    if (!targets_.empty()) {
        rport = targets_.front().wwpn;
        rnode = targets_.front().wwnn;
    }
    const auto r =
        record_for(static_cast<uint32_t>(category), static_cast<uint32_t>(subcategory), rport, rnode, 0);
    const bool wanted = SdSubscriptions::instance().wants(board_, port, static_cast<uint32_t>(category),
                                                          static_cast<uint32_t>(subcategory));
    raise(static_cast<uint32_t>(category), static_cast<uint32_t>(subcategory), r, static_cast<uint32_t>(n),
          &port);
    return wanted ? "ok" : "ok (no subscriber)";
}

// ---------------------------------------------------------------------------
// Collection

uint64_t SdEngine::next(Target &t)
{
    // xorshift64*
    t.rng ^= t.rng >> 12;
    t.rng ^= t.rng << 25;
    t.rng ^= t.rng >> 27;
    return t.rng * 0x2545f4914f6cdd1dull;
}

void SdEngine::count(Target &t, uint64_t latency_ns)
{
    const int b = sd_buckets().bucket(latency_ns / kSdGranularityNs);
    if (t.counts[b] != UINT32_MAX)
        ++t.counts[b];
}

void SdEngine::background_round()
{
    for (Target &t : targets_) {
        const uint64_t lo = uint64_t{t.traffic.min_us} * 1000;
        const uint64_t span = uint64_t{t.traffic.max_us} * 1000 - lo + 1;
        for (uint32_t i = 0; i < t.traffic.ios; ++i)
            count(t, lo + next(t) % span);
    }
}

int32_t SdEngine::start()
{
    if (active_)
        return SD_ERROR_DATA_COLLECTION_ACTIVE;
    if (!sd_buckets().set)
        return SD_ERROR_BUCKET_NOTSET;
    for (Target &t : targets_)
        t.counts.fill(0);
    active_ = has_data_ = true;
    return SD_OK;
}

int32_t SdEngine::stop()
{
    if (!active_)
        return SD_ERROR_DATA_COLLECTION_NOT_ACTIVE;
    active_ = false;
    return SD_OK;
}

int32_t SdEngine::reset()
{
    if (!active_)
        return SD_ERROR_DATA_COLLECTION_NOT_ACTIVE;
    for (Target &t : targets_)
        t.counts.fill(0);
    return SD_OK;
}

int32_t SdEngine::get_data(uint16_t &count, std::span<uint8_t> out)
{
    if (!has_data_)
        return SD_ERROR_DATA_COLLECTION_NOT_ACTIVE;
    count = static_cast<uint16_t>(std::min<size_t>(targets_.size(), UINT16_MAX));
    if (out.size() / sizeof(SD_IO_Latency_Response) < count)
        return SD_ERROR_MORE_DATA_AVAILABLE;
    if (active_)
        background_round();
    for (size_t i = 0; i < count; ++i) {
        SD_IO_Latency_Response r{};
        memcpy(r.sd_iolatency_target_wwpn.wwn, targets_[i].wwpn.data(), 8);
        for (int b = 0; b < KVD_SD_BUCKETS; ++b)
            r.sd_time_stats_array[b].sd_tstats_bucket_count = targets_[i].counts[b];
        memcpy(out.data() + i * sizeof r, &r, sizeof r);
    }
    return SD_OK;
}

} // namespace kvdsim
