#include "board_env.hpp"

#include <atomic>

namespace kvdsim
{

namespace
{

constinit std::atomic<KVD_BRDINFO *> g_table{nullptr};

} // namespace

FirmwareView firmware_view(const Board &b)
{
    FirmwareView v;
    const BoardState s = b.fw->state();
    v.ready = s == BoardState::ready;
    v.offline = s == BoardState::offline;
    v.link_tag = b.fw->link().event_tag;
    return v;
}

uint32_t board_env_mode(const Board &b)
{
    return b.fw->state() == BoardState::offline ? 2 : 1;
}

void set_board_online(Board &b, bool online)
{
    if (online)
        b.pci->clear_dump();
    b.fw->set_state(online ? BoardState::ready : BoardState::offline);
}

void board_masks(Library &lib, uint32_t &online, uint32_t &offline)
{
    online = offline = 0;
    for (const BoardConf &cfg : lib.fleet().boards) {
        Board *b = lib.board(cfg.number);
        if (!b)
            continue;
        if (b->fw->state() == BoardState::offline)
            offline |= 1u << cfg.number;
        else
            online |= 1u << cfg.number;
    }
}

void remember_board_table(KVD_BRDINFO *table)
{
    g_table.store(table, std::memory_order_release);
}

void forget_board_table()
{
    g_table.store(nullptr, std::memory_order_release);
}

void publish_board_masks(Library &lib)
{
    KVD_BRDINFO *t = g_table.load(std::memory_order_acquire);
    if (!t)
        return;
    board_masks(lib, t->a_onmask, t->a_offmask);
}

} // namespace kvdsim
