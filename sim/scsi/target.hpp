// The SCSI targets a board reaches: one per remote port that offers FCP,
// each with its logical units. A logical unit belongs to the target's node
// (its WWNN), so the ports of one storage node show the same units with the
// same data. Block data lives in a sparse store for the life of the library.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/engine.hpp"
#include "core/fleet.hpp"
#include "kvd_scsi.h"

namespace kvdsim
{

class Section;

// Reads the board's "scsi" object (its targets' logical units) and gives
// every FCP remote port the fleet does not describe the default units.
void read_scsi_section(Section &board, BoardConf &conf);

struct LogicalUnit {
    LunConf conf;
    std::array<uint8_t, 16> naa{};                                            // NAA 6 designator
    std::unordered_map<uint64_t, std::array<uint8_t, SCSI_BLOCK_SIZE>> store; // written blocks
};

// One command on its way through a target: what the initiator sent and what
// the target answers. `expected` is the data length the initiator allows
// (FCP_DL); data_in never grows beyond it.
struct ScsiTask {
    std::array<uint8_t, 8> lun{};
    std::span<const uint8_t> cdb;
    std::span<const uint8_t> data_out;
    uint32_t expected = 0;

    uint8_t status = SCSI_STAT_GOOD;
    std::vector<uint8_t> data_in;
    uint64_t required = 0; // bytes the command would move, whatever FCP_DL allows
    uint32_t moved = 0;    // bytes that did move (either way)
    SCSI_SENSE sense{};
    const char *name = nullptr; // the command row's name, null when unknown
    int rule = 0;               // fault rule that answered, 0: none
};

class ScsiTargets;
using ScsiRow = EngineRow<uint8_t (ScsiTargets::*)(ScsiTask &, LogicalUnit *)>;

class ScsiTargets
{
  public:
    explicit ScsiTargets(const BoardConf &cfg);

    // True when `wwpn` is an FCP target port of the board.
    bool has_target(const std::array<uint8_t, 8> &wwpn) const;
    // Runs one task on the target port `wwpn` (which must exist).
    void execute(const std::array<uint8_t, 8> &wwpn, ScsiTask &task);

    static std::span<const RowInfo> commands();
    static const ScsiRow *command(uint8_t opcode);
    // The CDB length an operation code's group gives.
    static uint32_t cdb_length(uint8_t opcode);
    // The LUN number an 8-byte LUN addresses, or -1 for a form the targets
    // do not offer (anything but a single-level peripheral or flat LUN).
    static int32_t lun_number(const std::array<uint8_t, 8> &lun);
    // The 8-byte single-level LUN for a number (flat space above 255).
    static std::array<uint8_t, 8> lun_bytes(uint16_t number);

  private:
    friend struct ScsiCommands;
    struct Port {
        std::array<uint8_t, 8> wwpn{};
        std::vector<std::pair<uint16_t, std::shared_ptr<LogicalUnit>>> luns; // ascending LUN
    };
    const Port *port(const std::array<uint8_t, 8> &wwpn) const;
    LogicalUnit *unit(const Port &p, int32_t number) const;

    uint8_t test_unit_ready(ScsiTask &t, LogicalUnit *lu);
    uint8_t request_sense(ScsiTask &t, LogicalUnit *lu);
    uint8_t inquiry(ScsiTask &t, LogicalUnit *lu);
    uint8_t read_capacity10(ScsiTask &t, LogicalUnit *lu);
    uint8_t read10(ScsiTask &t, LogicalUnit *lu);
    uint8_t write10(ScsiTask &t, LogicalUnit *lu);
    uint8_t service_action_in(ScsiTask &t, LogicalUnit *lu);
    uint8_t report_luns(ScsiTask &t, LogicalUnit *lu);

    const Port *current_ = nullptr; // the port of the task being run
    uint32_t board_ = 0;
    std::vector<Port> ports_;
};

// Fixed-format sense data with the given key and additional sense code.
SCSI_SENSE make_sense(uint8_t key, uint8_t asc, uint8_t ascq);
// Ends a task with CHECK CONDITION and this sense.
uint8_t check_condition(ScsiTask &t, uint8_t key, uint8_t asc, uint8_t ascq = 0);

} // namespace kvdsim
