// The SLI-4 configuration engine and the object store behind it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "core/section.hpp"
#include "sli4/object_store.hpp"
#include "mailbox/firmware.hpp"
#include "sli4/sli4_engine.hpp"
#include "kvd_sli4.h"
#include "sim_test.hpp"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

using Result = ObjectStore::Result;

std::vector<uint8_t> pattern(size_t n, uint8_t seed)
{
    std::vector<uint8_t> v(n);
    for (size_t i = 0; i < n; i++)
        v[i] = static_cast<uint8_t>(seed + i * 7);
    return v;
}

std::vector<uint8_t> read_all(const ObjectStore &s, const std::string &path)
{
    uint32_t size = 0;
    bool eof = false;
    EXPECT_TRUE(s.read(path, 0, {}, size, eof).ok()) << path;
    std::vector<uint8_t> v(size);
    uint32_t got = 0;
    if (size) {
        EXPECT_TRUE(s.read(path, 0, v, got, eof).ok());
    }
    return v;
}

void expect_result(Result r, uint8_t status, uint8_t additional)
{
    EXPECT_EQ(r.status, status);
    EXPECT_EQ(r.additional, additional);
}

ObjectStoreConf quiet_conf()
{
    ObjectStoreConf s;
    s.busy_every = 0;
    return s;
}

} // namespace

TEST(ObjectStore, FactoryTreeHoldsTheWellKnownObjectsWithContent)
{
    ObjectStore s(quiet_conf());
    for (const char *p :
         {"/prg/srb.prg", "/prg/wol.prg", "/vpd/iscsi_vf.vpd", "/xrom/fc.xrom", "/dbg/dump.bin"}) {
        const auto v = read_all(s, p);
        EXPECT_GT(v.size(), 0u) << p;
        EXPECT_EQ(v.size() % 4, 0u) << p;
        EXPECT_GT(std::count_if(v.begin(), v.end(), [](uint8_t b) { return b != 0; }), 0) << p;
    }
    // The linked object reads as its target.
    EXPECT_EQ(read_all(s, "/prg/active.lnk"), read_all(s, "/prg/srb.prg"));

    ObjectStoreConf no_dump = quiet_conf();
    no_dump.dump = false;
    ObjectStore bare(no_dump);
    uint32_t got;
    bool eof;
    expect_result(bare.read("/dbg/dump.bin", 0, {}, got, eof), SLI4_STATUS_FAILED,
                  SLI4_ADDL_OBJECT_NOT_FOUND);
}

TEST(ObjectStore, ReadsByOffsetUpToTheEnd)
{
    ObjectStore s(quiet_conf());
    const auto whole = read_all(s, "/vpd/fc_bf.vpd");
    ASSERT_EQ(whole.size(), 512u);
    std::vector<uint8_t> buf(200);
    uint32_t got = 0;
    bool eof = true;
    ASSERT_TRUE(s.read("/vpd/fc_bf.vpd", 400, buf, got, eof).ok());
    EXPECT_EQ(got, 112u);
    EXPECT_TRUE(eof);
    EXPECT_TRUE(std::equal(buf.begin(), buf.begin() + 112, whole.begin() + 400));
    ASSERT_TRUE(s.read("/vpd/fc_bf.vpd", 0, std::span(buf).first(100), got, eof).ok());
    EXPECT_EQ(got, 100u);
    EXPECT_FALSE(eof);
    // At the end: nothing more, and the end; past it: a bad offset.
    ASSERT_TRUE(s.read("/vpd/fc_bf.vpd", 512, buf, got, eof).ok());
    EXPECT_EQ(got, 0u);
    EXPECT_TRUE(eof);
    expect_result(s.read("/vpd/fc_bf.vpd", 516, buf, got, eof), SLI4_STATUS_ILLEGAL_FIELD,
                  SLI4_ADDL_INVALID_OFFSET);
    expect_result(s.read("/vpd/none.vpd", 0, buf, got, eof), SLI4_STATUS_FAILED, SLI4_ADDL_OBJECT_NOT_FOUND);
    expect_result(s.read("/vpd", 0, buf, got, eof), SLI4_STATUS_ILLEGAL_FIELD, SLI4_ADDL_IS_DIRECTORY);
}

TEST(ObjectStore, AnObjectIsReplacedOnlyWhenItsEndOfFileLands)
{
    ObjectStore s(quiet_conf());
    const auto old = read_all(s, "/prg/wol.prg");
    const auto img = pattern(3000, 5);
    uint32_t taken = 0;
    ASSERT_TRUE(s.write("/prg/wol.prg", 0, std::span(img).first(1000), false, taken).ok());
    EXPECT_EQ(taken, 1000u);
    EXPECT_TRUE(s.staging("/prg/wol.prg"));
    EXPECT_EQ(read_all(s, "/prg/wol.prg"), old);
    // A gap or an overlap is refused and leaves the staged data.
    expect_result(s.write("/prg/wol.prg", 1004, std::span(img).subspan(1000, 4), false, taken),
                  SLI4_STATUS_ILLEGAL_FIELD, SLI4_ADDL_INVALID_OFFSET);
    expect_result(s.write("/prg/wol.prg", 996, std::span(img).subspan(996, 4), false, taken),
                  SLI4_STATUS_ILLEGAL_FIELD, SLI4_ADDL_INVALID_OFFSET);
    // The sequence stops early: the old object stays; a new one starts over.
    ASSERT_TRUE(s.write("/prg/wol.prg", 0, std::span(img).first(2000), false, taken).ok());
    ASSERT_TRUE(s.write("/prg/wol.prg", 2000, std::span(img).subspan(2000), false, taken).ok());
    EXPECT_EQ(read_all(s, "/prg/wol.prg"), old);
    // An empty end-of-file write completes it.
    ASSERT_TRUE(s.write("/prg/wol.prg", 3000, {}, true, taken).ok());
    EXPECT_FALSE(s.staging("/prg/wol.prg"));
    EXPECT_EQ(read_all(s, "/prg/wol.prg"), img);
    // A write with nothing staged must start at 0.
    expect_result(s.write("/prg/wol.prg", 8, std::span(img).first(4), true, taken), SLI4_STATUS_ILLEGAL_FIELD,
                  SLI4_ADDL_INVALID_OFFSET);
}

TEST(ObjectStore, RefusalsCarryTheirStatus)
{
    ObjectStoreConf conf = quiet_conf();
    conf.capacity = 6u << 20;
    ObjectStore s(conf);
    const auto img = pattern(16, 3);
    uint32_t taken = 0;
    expect_result(s.write("/nodir/x", 0, img, true, taken), SLI4_STATUS_FAILED, SLI4_ADDL_OBJECT_NOT_FOUND);
    expect_result(s.write("/prg", 0, img, true, taken), SLI4_STATUS_ILLEGAL_FIELD, SLI4_ADDL_IS_DIRECTORY);
    expect_result(s.write("/prg/a/b", 0, img, true, taken), SLI4_STATUS_ILLEGAL_FIELD,
                  SLI4_ADDL_NOT_A_DIRECTORY);
    expect_result(s.write("prg/x", 0, img, true, taken), SLI4_STATUS_FAILED, SLI4_ADDL_OBJECT_NOT_FOUND);
    // Base names: 23 characters fit the list entry, 24 do not.
    EXPECT_TRUE(s.write("/prg/" + std::string(23, 'n'), 0, img, true, taken).ok());
    expect_result(s.write("/prg/" + std::string(24, 'n'), 0, img, true, taken), SLI4_STATUS_ILLEGAL_FIELD,
                  SLI4_ADDL_NAME_TOO_LONG);
    // The flash fills up: what is staged counts too.
    const auto big = pattern(2u << 20, 1);
    ASSERT_TRUE(s.write("/prg/big.grp", 0, big, false, taken).ok());
    expect_result(s.write("/prg/big.grp", 2u << 20, big, false, taken), SLI4_STATUS_FAILED,
                  SLI4_ADDL_STORE_FULL);
    // Deleting drops a staged sequence as well.
    EXPECT_TRUE(s.staging("/prg/big.grp"));
    expect_result(s.remove("/prg/big.grp"), SLI4_STATUS_FAILED, SLI4_ADDL_OBJECT_NOT_FOUND);
    EXPECT_FALSE(s.staging("/prg/big.grp"));
    expect_result(s.remove("/prg"), SLI4_STATUS_ILLEGAL_FIELD, SLI4_ADDL_IS_DIRECTORY);
}

TEST(ObjectStore, AHostDirectoryKeepsTheStoreBetweenRuns)
{
    const auto dir = std::filesystem::temp_directory_path() / ("kvd-store-" + std::to_string(getpid()));
    std::filesystem::remove_all(dir);
    ObjectStoreConf conf = quiet_conf();
    conf.dir = dir.string();
    const auto img = pattern(128, 4);
    uint32_t taken = 0;
    {
        ObjectStore s(conf);
        ASSERT_TRUE(s.write("/prg/kept.grp", 0, img, true, taken).ok());
        ASSERT_TRUE(s.remove("/dbg/dump.bin").ok());
    }
    ObjectStore again(conf);
    EXPECT_EQ(read_all(again, "/prg/kept.grp"), img);
    uint32_t got;
    bool eof;
    EXPECT_FALSE(again.read("/dbg/dump.bin", 0, {}, got, eof).ok());
    EXPECT_GT(read_all(again, "/prg/srb.prg").size(), 0u);
    std::filesystem::remove_all(dir);
}

namespace
{

struct Rig {
    BoardConf cfg;
    Fleet fleet;
    FakeMemory mem{8192};
    std::unique_ptr<Sli4Engine> engine;

    explicit Rig(Protocol p = Protocol::fc)
    {
        cfg.sli_mode = 4;
        cfg.if_type = 2;
        cfg.object_store = true;
        cfg.protocol = p;
        cfg.model = "QM16-F4";
        cfg.sli4.busy_every = 0;
        fleet.manufacturer = "Korvan";
        engine = std::make_unique<Sli4Engine>(cfg, fleet);
    }

    MAILBOX embedded(uint8_t op, uint8_t subsystem, uint32_t request_length)
    {
        MAILBOX mb{};
        mb.mbxCommand = MBX_SLI4_CONFIG;
        mb.un.varSli4Cfg.emb = 1;
        KVD_vexa_sli4_req_hdr h{};
        h.opCode = op;
        h.subSystem = subsystem;
        h.request_length = request_length;
        std::memcpy(reinterpret_cast<uint8_t *>(&mb) + SLI4_EMBEDDED_OFFSET, &h, sizeof h);
        return mb;
    }

    static KVD_vexa_sli4_rsp_hdr response(const MAILBOX &mb)
    {
        KVD_vexa_sli4_rsp_hdr r;
        std::memcpy(&r, reinterpret_cast<const uint8_t *>(&mb) + SLI4_EMBEDDED_OFFSET, sizeof r);
        return r;
    }
};

} // namespace

TEST(Sli4Engine, RefusesUnknownRequestsAndShortLengths)
{
    Rig rig;
    MAILBOX mb = rig.embedded(0x77, SLI4_SUBSYSTEM_COMMON, 16);
    EXPECT_EQ(rig.engine->run(mb, rig.mem, {}), MBXERR_SLI4_CONFIG_FAILED);
    EXPECT_EQ(Rig::response(mb).status, SLI4_STATUS_ILLEGAL_REQUEST);
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_INVALID_OPCODE);
    mb = rig.embedded(SLI4_OPC_NOP, 0x42, 16);
    rig.engine->run(mb, rig.mem, {});
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_INVALID_SUBSYSTEM);

    // The firmware configuration needs 140 bytes of request length.
    mb = rig.embedded(SLI4_OPC_QUERY_FW_CONFIG, SLI4_SUBSYSTEM_COMMON, SLI4_FW_CONFIG_LEN - 1);
    EXPECT_EQ(rig.engine->run(mb, rig.mem, {}), MBXERR_SLI4_CONFIG_FAILED);
    EXPECT_EQ(Rig::response(mb).status, SLI4_STATUS_INSUFFICIENT_BUFFER);
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_REQUEST_TOO_SHORT);
    EXPECT_EQ(Rig::response(mb).actual_response_length, 0u);
    mb = rig.embedded(SLI4_OPC_QUERY_FW_CONFIG, SLI4_SUBSYSTEM_COMMON, SLI4_FW_CONFIG_LEN);
    EXPECT_EQ(rig.engine->run(mb, rig.mem, {}), MBXERR_OK);
    EXPECT_EQ(Rig::response(mb).actual_response_length, SLI4_FW_CONFIG_LEN);

    // Controller attributes do not fit the embedded area.
    mb = rig.embedded(SLI4_OPC_GET_CNTL_ATTRIBUTES, SLI4_SUBSYSTEM_COMMON, 548);
    rig.engine->run(mb, rig.mem, {});
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_BAD_LENGTH);
}

TEST(Sli4Engine, NonEmbeddedRequestsGoThroughTheirBuffer)
{
    Rig rig;
    MAILBOX mb{};
    mb.mbxCommand = MBX_SLI4_CONFIG;
    mb.un.varSli4Cfg.sge_count = 1;
    mb.un.varSli4Cfg.un.sge.addr_lo = FakeMemory::kBase;
    mb.un.varSli4Cfg.un.sge.length = 540;
    KVD_vexa_sli4_req_hdr h{};
    h.opCode = SLI4_OPC_GET_CNTL_ATTRIBUTES;
    h.subSystem = SLI4_SUBSYSTEM_COMMON;
    h.request_length = 548;
    std::memcpy(rig.mem.buf.data(), &h, sizeof h);
    ASSERT_EQ(rig.engine->run(mb, rig.mem, {}), MBXERR_OK);
    KVD_vexa_sli4_rsp_hdr r;
    std::memcpy(&r, rig.mem.buf.data(), sizeof r);
    EXPECT_EQ(r.actual_response_length, SLI4_CNTL_ATTR_LEN);

    // A buffer the engine cannot reach, or will not hold, is a DMA error.
    mb.un.varSli4Cfg.un.sge.addr_lo = FakeMemory::kBase + 8000;
    EXPECT_EQ(rig.engine->run(mb, rig.mem, {}), MBXERR_DMA_ERROR);
    mb.un.varSli4Cfg.un.sge.addr_lo = FakeMemory::kBase;
    mb.un.varSli4Cfg.un.sge.length = Sli4Engine::kMaxSgeLength;
    EXPECT_EQ(rig.engine->run(mb, rig.mem, {}), MBXERR_OK);
    mb.un.varSli4Cfg.un.sge.length = Sli4Engine::kMaxSgeLength + 4;
    EXPECT_EQ(rig.engine->run(mb, rig.mem, {}), MBXERR_DMA_ERROR);
    mb.un.varSli4Cfg.un.sge.length = 540;
    mb.un.varSli4Cfg.sge_count = 0;
    EXPECT_EQ(rig.engine->run(mb, rig.mem, {}), MBXERR_DMA_ERROR);
}

TEST(Sli4Engine, ObjectRequestsCheckNamesAndDescriptors)
{
    Rig rig;
    std::vector<uint8_t> data(1024);
    auto read_req = [&](const std::string &name, uint32_t want, uint32_t descriptors) {
        MAILBOX mb{};
        mb.mbxCommand = MBX_SLI4_CONFIG;
        mb.un.varSli4Cfg.emb = 1;
        gorvik_common_read_object_cmd req{};
        req.hdr.opCode = SLI4_OPC_READ_OBJECT;
        req.hdr.subSystem = SLI4_SUBSYSTEM_COMMON;
        req.hdr.request_length = SLI4_OBJ_REQ_LEN + 12 * descriptors;
        req.desiredReadLength = want;
        std::memcpy(req.objectName, name.data(), std::min(name.size(), sizeof req.objectName));
        req.hostBufferDescriptorCount = descriptors;
        for (uint32_t i = 0; i < descriptors && i < SLI4_MAX_HBD; i++)
            req.hbd[i].length = 128;
        std::memcpy(reinterpret_cast<uint8_t *>(&mb) + SLI4_EMBEDDED_OFFSET, &req, sizeof req);
        return mb;
    };
    MAILBOX mb = read_req("/vpd/fc_bf.vpd", 1024, 8);
    ASSERT_EQ(rig.engine->run(mb, rig.mem, data), MBXERR_OK);
    gorvik_common_read_object_rsp rsp;
    std::memcpy(&rsp, reinterpret_cast<uint8_t *>(&mb) + SLI4_EMBEDDED_OFFSET, sizeof rsp);
    EXPECT_EQ(rsp.actualReadLength, 512u);
    EXPECT_EQ(rsp.eof, 1u);

    // 103 characters and the NUL fill the field; 104 leave no room for it.
    mb = read_req("/prg/" + std::string(98, 'a'), 0, 0);
    rig.engine->run(mb, rig.mem, data);
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_NAME_TOO_LONG); // too long a base name
    mb = read_req("/prg/" + std::string(99, 'a'), 0, 0);
    rig.engine->run(mb, rig.mem, data);
    EXPECT_EQ(Rig::response(mb).status, SLI4_STATUS_ILLEGAL_FIELD);
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_NAME_TOO_LONG);

    mb = read_req("/vpd/fc_bf.vpd", 0, SLI4_MAX_HBD + 1);
    rig.engine->run(mb, rig.mem, data);
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_BAD_DESCRIPTOR);
    // More than the descriptors offer, or than came with the record.
    mb = read_req("/vpd/fc_bf.vpd", 260, 2);
    rig.engine->run(mb, rig.mem, data);
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_BAD_LENGTH);
    mb = read_req("/vpd/fc_bf.vpd", 1024, 8);
    rig.engine->run(mb, rig.mem, std::span(data).first(1020));
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_BAD_LENGTH);

    // A board without an object store refuses object requests.
    Rig plain;
    plain.cfg.if_type = 0;
    plain.cfg.object_store = false;
    Sli4Engine e(plain.cfg, plain.fleet);
    mb = read_req("/vpd/fc_bf.vpd", 0, 0);
    e.run(mb, plain.mem, data);
    EXPECT_EQ(Rig::response(mb).additional_status, SLI4_ADDL_NOT_SUPPORTED);
}

TEST(Sli4Fleet, TheSli4SectionBelongsToSli4Boards)
{
    const Fleet f =
        fleet_ok(board_doc(R"("sli_mode": 4, "sli4": {"beacon": true, "dcbx_mode": 1, "dump": false})"));
    EXPECT_TRUE(f.boards.at(0).sli4.beacon);
    EXPECT_FALSE(f.boards.at(0).sli4.dump);
    struct Case {
        std::string fields, message;
    };
    const Case cases[] = {
        {R"("sli4": {})", "t.json: boards[0].sli4: SLI-4 settings given on an SLI-3 board"},
        {R"("sli_mode": 4, "sli4": {"colour": 1})", "t.json: boards[0].sli4.colour: unknown field"},
        {R"("sli_mode": 4, "sli4": {"dcbx_mode": 2})",
         "t.json: boards[0].sli4.dcbx_mode: value 0x2 out of range 0..0x1"},
        {R"("sli_mode": 4, "if_type": 0, "sli4": {"dump": true})",
         "t.json: boards[0].sli4.dump: dump object given on a board without an object store"},
        {R"("sli_mode": 4, "sli4": {"capacity": 1048575})",
         "t.json: boards[0].sli4.capacity: capacity 1048575 below 1 MiB"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(fleet_fault(board_doc(c.fields)), c.message);
}

TEST(Sli4Engine, AnSli3BoardRefusesSli4Config)
{
    Rig rig;
    BoardConf sli3 = rig.cfg;
    sli3.sli_mode = 3;
    Firmware old(sli3);
    MAILBOX mb = rig.embedded(SLI4_OPC_NOP, SLI4_SUBSYSTEM_COMMON, 8);
    ASSERT_EQ(old.issue(reinterpret_cast<uint8_t *>(&mb), 64, 64, 1, rig.mem), 0);
    EXPECT_EQ(mb.mbxStatus, MBXERR_UNKNOWN_CMD);
}

TEST(Sli4Engine, ARequestBufferShorterThanItsHeaderIsNotRead)
{
    Rig rig;
    std::vector<uint8_t> ext(4, 0xEE);
    MAILBOX mb{};
    mb.mbxCommand = MBX_SLI4_CONFIG;
    mb.un.varSli4Cfg.sge_count = 1;
    const uint64_t a = reinterpret_cast<uintptr_t>(ext.data());
    mb.un.varSli4Cfg.un.sge.addr_lo = static_cast<uint32_t>(a);
    mb.un.varSli4Cfg.un.sge.addr_hi = static_cast<uint32_t>(a >> 32);
    mb.un.varSli4Cfg.un.sge.length = 20; // more than the extension holds
    EXPECT_EQ(rig.engine->run(mb, rig.mem, ext), MBXERR_DMA_ERROR);
    EXPECT_EQ(ext, std::vector<uint8_t>(4, 0xEE));
}
