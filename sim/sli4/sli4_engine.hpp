// The SLI-4 configuration engine of one board: the requests that ride in an
// SLI4_CONFIG mailbox (code 0x9B), embedded in the record or in a host
// buffer named by one scatter-gather entry. Controller requests (attributes,
// firmware configuration, beacon, DCBX, no-op) and, on boards of interface
// type 2, the object store's read, write, list and delete.
//
// Requests are rows of a table keyed by (subsystem << 8 | opcode). The
// dispatcher answers an unknown opcode or subsystem, a request length below
// the row's minimum and a response area too small for the reply with a
// non-zero status and additional status in the response header, as the
// firmware does; the mailbox itself then completes with
// MBXERR_SLI4_CONFIG_FAILED.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "core/engine.hpp"
#include "core/fleet.hpp"
#include "core/hostmem.hpp"
#include "kvd_mbox.h"
#include "sli4/object_store.hpp"

namespace kvdsim
{

class Sli4Engine;

// One request as a handler sees it: the request area (header first; the
// response is written over it), the data area that travelled behind the
// record (object requests), and the header as received.
struct Sli4Request {
    std::span<uint8_t> area;
    std::span<uint8_t> data;
    KVD_vexa_sli4_req_hdr hdr;
    // Filled by the handler.
    uint8_t status = 0;
    uint8_t additional = 0;
    uint32_t response_length = 0; // bytes the full reply needs
    uint32_t actual_length = 0;   // bytes written after the header
};

using Sli4Row = EngineRow<void (Sli4Engine::*)(Sli4Request &)>;

class Sli4Engine
{
  public:
    Sli4Engine(const BoardConf &cfg, const Fleet &fleet);
    ~Sli4Engine();

    // Runs the SLI4_CONFIG mailbox `mb`. A non-embedded request is read
    // from `payload` when its scatter-gather entry names exactly that
    // buffer, otherwise through `mem`. Returns the mailbox status. `name`
    // gets the request's row name (null when unknown), `rule` the fault
    // rule that answered it (0: none).
    uint16_t run(MAILBOX &mb, HostMemory &mem, std::span<uint8_t> payload, const char **name = nullptr,
                 int *rule = nullptr);

    static std::span<const RowInfo> commands();

    // The object store, made on first use; null on boards without one.
    ObjectStore *store();

    // Largest non-embedded request buffer the engine reads.
    static constexpr uint32_t kMaxSgeLength = 4096;

  private:
    void dispatch(Sli4Request &r, const char **name, int *rule);

    void cntl_attributes(Sli4Request &r);
    void cntl_addl_attributes(Sli4Request &r);
    void query_fw_config(Sli4Request &r);
    void get_beacon(Sli4Request &r);
    void dcbx_mode(Sli4Request &r);
    void nop(Sli4Request &r);
    void read_object(Sli4Request &r);
    void write_object(Sli4Request &r);
    void list_objects(Sli4Request &r);
    void delete_object(Sli4Request &r);

    template <class T> void reply(Sli4Request &r, const T &body, uint32_t length);
    bool object_name(Sli4Request &r, const char (&field)[SLI4_OBJECT_NAME_SIZE], std::string &name);
    ObjectStore *named_object(Sli4Request &r, const char (&field)[SLI4_OBJECT_NAME_SIZE], std::string &name);
    uint32_t descriptor_bytes(Sli4Request &r, uint32_t count, const host_buffer_descriptor *hbd);
    uint8_t temperature();

    friend struct Sli4Table;

    const BoardConf &cfg_;
    std::string manufacturer_;
    std::string driver_version_;
    std::unique_ptr<ObjectStore> store_;
    uint64_t rng_;
    int drift_ = 0;
};

} // namespace kvdsim
