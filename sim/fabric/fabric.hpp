// The fabric a board is attached to: the remote ports it can reach (from the
// fleet's remote_ports), their answers to extended link services, the name
// server at 0xFFFFFC, and the responder of management CT requests.
//
// ELS requests and name-server requests are each decoded through one table
// of rows (ELS command code; CT command code).
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "core/engine.hpp"
#include "core/fleet.hpp"

namespace kvdsim
{

// The link error status block a port reports (RLS, RPS).
struct LinkErrorBlock {
    uint32_t link_failure = 0, loss_of_sync = 0, loss_of_signal = 0;
    uint32_t prim_seq_err = 0, invalid_tx_word = 0, invalid_crc = 0;
};

// One ELS exchange: the request as sent and the reply (LS_ACC or LS_RJT).
struct ElsTask {
    uint32_t did = 0;
    const RemotePort *port = nullptr; // null: the fabric's F_Port
    std::span<const uint8_t> req;
    LinkErrorBlock errors; // the link's counters, as the far end sees them
    std::vector<uint8_t> reply;
    const char *name = nullptr;
    int rule = 0;
};

// One CT request to a fabric service.
struct CtTask {
    std::span<const uint8_t> req;
    std::vector<uint8_t> reply;
    const char *name = nullptr;
    int rule = 0;
};

class Fabric;
using ElsRow = EngineRow<void (Fabric::*)(ElsTask &)>;
using CtRow = EngineRow<void (Fabric::*)(CtTask &)>;

class Fabric
{
  public:
    explicit Fabric(const BoardConf &cfg);

    // The port that answers at `did`: true for a remote port (set in *port)
    // and, on a fabric, for the F_Port (*port null).
    bool reachable(uint32_t did, const RemotePort **port) const;
    const RemotePort *port_by_wwpn(const Wwn &wwpn) const;
    // The largest payload one frame to `did` may carry.
    uint32_t max_payload(const RemotePort *port) const;
    bool has_name_server() const;

    // Answers the ELS in t.req (at least 4 bytes) from the port at t.did.
    void els(ElsTask &t);
    // Answers the CT request in t.req (at least 16 bytes).
    void ct(CtTask &t);
    // Answers a management request to `port`: the registered responder when
    // there is one, else the port echoes the request.
    void mgmt(const RemotePort &port, std::span<const uint8_t> req, std::vector<uint8_t> &reply);

    // A responder for management requests (the CT test responder); it
    // returns false to leave the request to the echo.
    std::function<bool(const RemotePort &, std::span<const uint8_t>, std::vector<uint8_t> &)> mgmt_responder;

    static std::span<const RowInfo> els_commands();
    static std::span<const RowInfo> ct_commands();
    static const ElsRow *els_command(uint8_t code);
    static const CtRow *ct_command(uint16_t code);

    // What the name server holds about one port.
    struct Entry {
        uint32_t did = 0;
        Wwn wwpn{};
        Wwn wwnn{};
        std::string symbolic_name;
        bool fcp = true;   // FC-4 type SCSI-FCP registered
        bool npiv = false; // a virtual port behind the board's port (FDISC)
    };
    const std::vector<Entry> &registry() const
    {
        return registry_;
    }

    // NPIV logins of virtual ports behind the board's port. The fabric
    // gives each an address in the port's own area and holds it in the name
    // server until its logout.
    enum class Fdisc { accepted, no_npiv, no_resources };
    bool npiv_supported() const; // a fabric whose login accept offers NPIV
    bool npiv_room() const;      // room for one more NPIV login
    size_t npiv_logins() const;
    // On acceptance sets port.did and registers the port.
    Fdisc fdisc(Entry &port);
    void logo(uint32_t did);

  private:
    friend struct FabricCommands;

    void echo(ElsTask &t);
    void rls(ElsTask &t);
    void rps(ElsTask &t);
    void rpl(ElsTask &t);
    void rnid(ElsTask &t);

    void gid_ft(CtTask &t);
    void gpn_id(CtTask &t);
    void gnn_id(CtTask &t);
    void gspn_id(CtTask &t);

    const Entry *entry(uint32_t did) const;

    BoardConf cfg_;
    std::vector<Entry> registry_; // ascending port identifier
};

// LS_RJT with a reason and an explanation.
std::vector<uint8_t> ls_rjt(uint8_t reason, uint8_t explanation = 0);
// CT reply header for the request `req` (at least 16 bytes): FS_ACC, or
// FS_RJT with a reason and an explanation.
std::vector<uint8_t> ct_reply(std::span<const uint8_t> req, uint16_t code, uint8_t reason = 0,
                              uint8_t explanation = 0);

} // namespace kvdsim
