// The fabric model: ELS replies and rejects, the name server's accepts and
// rejects in their formats, who answers where.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/fleet.hpp"
#include "fabric/fabric.hpp"
#include "kvd_passthru.h"

using namespace kvdsim;

namespace
{

Fleet fleet_of(const std::string &topology)
{
    std::string error;
    auto f = parse_fleet(R"({"boards": [{"board": 0, "wwpn": "10:00:06:4b:51:a0:00:50",
      "link": {"topology": ")" +
                             topology + R"(", "did": "0x010200"},
      "remote_ports": [
        {"wwpn": "21:00:06:4b:51:d0:00:01", "did": "0x010300", "symbolic_name": "QSTOR 7100 port 0A"},
        {"wwpn": "21:00:06:4b:51:d0:00:02", "did": "0x020400"}]}]})",
                         "t.json", error);
    EXPECT_TRUE(f.has_value()) << error;
    return f ? *f : Fleet{};
}

struct FabricTest : testing::Test {
    Fleet fleet = fleet_of("fabric");
    Fabric fabric{fleet.boards.at(0)};

    std::vector<uint8_t> els(uint32_t did, std::vector<uint8_t> req)
    {
        ElsTask t;
        t.did = did;
        EXPECT_TRUE(fabric.reachable(did, &t.port));
        t.req = req;
        t.errors.loss_of_sync = 3;
        fabric.els(t);
        return t.reply;
    }
    std::vector<uint8_t> ct(uint16_t code, uint32_t word, uint8_t revision = CT_REVISION, size_t size = 20)
    {
        std::vector<uint8_t> req(size, 0);
        req[0] = revision;
        req[4] = CT_GS_TYPE_DIRECTORY;
        req[5] = CT_GS_SUBTYPE_NAME_SERVER;
        req[8] = uint8_t(code >> 8);
        req[9] = uint8_t(code);
        for (size_t i = 16; i < 20 && i < size; ++i)
            req[i] = uint8_t(word >> (8 * (19 - i)));
        CtTask t;
        t.req = req;
        fabric.ct(t);
        return t.reply;
    }
    static void expect_rjt(const std::vector<uint8_t> &r, uint8_t reason, uint8_t expl)
    {
        ASSERT_EQ(r.size(), 16u);
        EXPECT_EQ(r[8], 0x80);
        EXPECT_EQ(r[9], 0x01);
        EXPECT_EQ(r[13], reason);
        EXPECT_EQ(r[14], expl);
    }
};

} // namespace

TEST_F(FabricTest, ElsRepliesAndRejects)
{
    std::vector<uint8_t> r = els(0x010300, {ELS_CMD_RLS, 0, 0, 0, 0, 0, 0, 0});
    ASSERT_EQ(r.size(), 28u);
    EXPECT_EQ(r[11], 3); // loss of sync, second word of the block
    // Too short for its command; a code nobody serves.
    EXPECT_EQ(els(0x010300, {ELS_CMD_RLS, 0, 0, 0}), ls_rjt(LSRJT_LOGICAL_ERR));
    EXPECT_EQ(els(0x010300, {0x20, 0, 0, 0}), ls_rjt(LSRJT_CMD_UNSUPPORTED));
    // RPS selecting another port.
    EXPECT_EQ(els(0x010300, {ELS_CMD_RPS, 0, 0, 0, 0, 0, 0, 2, 0, 0x01, 0x02, 0}), ls_rjt(LSRJT_UNABLE_TPC));
}

TEST_F(FabricTest, RplPagesThroughTheFabricsPorts)
{
    // F_Port: three ports (ours and two remote), from index 1, at most 1.
    std::vector<uint8_t> r = els(CT_FABRIC_DID, {ELS_CMD_RPL, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1});
    ASSERT_EQ(r.size(), 28u);
    EXPECT_EQ(r[7], 3);  // list length
    EXPECT_EQ(r[11], 1); // first index
    EXPECT_EQ(r[15], 1); // port number
    EXPECT_EQ(r[17], 0x01);
    EXPECT_EQ(r[18], 0x03);
    // An index past the list: no blocks.
    EXPECT_EQ(els(CT_FABRIC_DID, {ELS_CMD_RPL, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3}).size(), 12u);
}

TEST_F(FabricTest, NameServerAcceptsAndRejects)
{
    // Domain scope 2: one port.
    std::vector<uint8_t> r = ct(CT_GID_FT, 0x00020008);
    ASSERT_EQ(r.size(), 20u);
    EXPECT_EQ(r[16], 0x80);
    expect_rjt(ct(CT_GID_FT, 0x01), CT_RJT_UNABLE, CT_EXPL_FC4_TYPES_NOT_REG);

    expect_rjt(ct(CT_GPN_ID, 0x010300, 2), CT_RJT_INVALID_VERSION, 0);
    expect_rjt(ct(CT_GPN_ID, 0x010300, CT_REVISION, 16), CT_RJT_INVALID_SIZE, 0);
    expect_rjt(ct(0x0199, 0), CT_RJT_NOT_SUPPORTED, 0);
}

TEST(Fabric, WhoAnswers)
{
    Fleet loop = fleet_of("loop");
    Fabric on_loop(loop.boards.at(0));
    const RemotePort *p = nullptr;
    EXPECT_FALSE(on_loop.has_name_server());
    EXPECT_FALSE(on_loop.reachable(CT_FABRIC_DID, &p));
    EXPECT_TRUE(on_loop.reachable(0x010300, &p));
    ASSERT_NE(p, nullptr);
    EXPECT_FALSE(on_loop.reachable(0x010301, &p));

    Fleet fab = fleet_of("fabric");
    Fabric on_fabric(fab.boards.at(0));
    EXPECT_TRUE(on_fabric.reachable(CT_FABRIC_DID, &p));
    EXPECT_EQ(p, nullptr);
    // Management: echo unless a responder takes the request.
    std::vector<uint8_t> req = {1, 2, 3, 4}, reply;
    on_fabric.mgmt(fab.boards[0].remote_ports[0], req, reply);
    EXPECT_EQ(reply, req);
    on_fabric.mgmt_responder = [](const RemotePort &, std::span<const uint8_t>, std::vector<uint8_t> &out) {
        out = {9};
        return true;
    };
    on_fabric.mgmt(fab.boards[0].remote_ports[0], req, reply);
    EXPECT_EQ(reply, std::vector<uint8_t>{9});
}
