// Loopback tests, the IOCB rings and adapter resets of one board.
//
// The rings are the SLI-2/3 command and response rings the driver shares
// with the adapter. Traffic this library models as IOCBs lands in them (CT
// requests and their responses, loopback frames); the ring image the shell
// reads is built from them, laid out as the board's SLI mode places them.
// Resets answer through a table of rows, one per reset type.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "core/engine.hpp"
#include "core/fleet.hpp"
#include "core/hostmem.hpp"
#include "kvd_events.h"

namespace kvdsim
{

class Firmware;
struct BoardReading;
class Diag;

void read_diag_section(BoardReading &r);

using ResetRow = EngineRow<uint32_t (Diag::*)(Firmware &)>;

// IOCB command codes this library puts in the rings.
constexpr uint8_t kIocbXmitSequence64 = 0x82;
constexpr uint8_t kIocbRcvSequence64 = 0x81;
constexpr uint8_t kIocbXmitBcast64 = 0x84;

// Rings by use.
constexpr uint32_t kRingEls = 0, kRingFcp = 1, kRingCt = 2, kRingDiag = 3;

class Diag
{
  public:
    explicit Diag(const BoardConf &cfg);

    // Loopback: errno results.
    uint32_t config_loopback(Firmware &fw, uint32_t type, uint32_t timeout);
    uint32_t run_loopback(const LOOPBACK &lb, HostMemory &mem);
    uint32_t end_loopback(Firmware &fw, bool bring_up = true);

    // A reset of `type`; EINVAL for a type no row serves. `name` gets the
    // row's name for the trace line.
    // `bring_up` false: the driver holds the link down (link-down
    // persistence), so the reset leaves it down.
    uint32_t reset(Firmware &fw, uint32_t type, const char **name, bool bring_up = true);
    static std::span<const RowInfo> resets();

    // One exchange on a ring: the IOCB the host posted and the one the
    // adapter answered with.
    void exchange(uint32_t ring, uint8_t command, uint32_t size, uint64_t address, uint32_t tag,
                  uint32_t parameter, uint32_t status);

    // The SLI state record followed by the ring memory, into out (bounded
    // by its size and by KVD_SLIM_IMAGE_SIZE); returns the bytes written.
    uint32_t image(std::span<uint8_t> out) const;

    struct Ring {
        uint16_t cmd_entries = 0, rsp_entries = 0;
        uint8_t cmd_idx = 0, rsp_idx = 0;
        std::vector<uint8_t> cmd, rsp; // entries x 32 bytes
    };
    const Ring &ring(uint32_t n) const
    {
        return rings_[n];
    }

  private:
    friend struct ResetRows;
    uint32_t reset_selective(Firmware &fw);
    uint32_t reset_coordinated(Firmware &fw);
    uint32_t reset_firmware(Firmware &fw);
    void clear_rings();

    BoardConf cfg_;
    uint32_t loop_type_ = 0; // 0: no loopback configured
    bool bring_up_ = true;   // the reset under way may bring the link up
    uint16_t iotag_ = 1;
    std::array<Ring, KVD_SLI_MAX_RINGS> rings_{};
};

} // namespace kvdsim
