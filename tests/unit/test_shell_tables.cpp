// Every command table, shell and engine, walked for duplicate words and
// codes, and the shell's mailbox rows checked against the commands the
// firmware model serves. A family or engine that arrives adds its table
// here.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "kvd.h"
#include "diag/diag.hpp"
#include "asic/asic.hpp"
#include "kvd_sli4cmds.h"
#include "mailbox/firmware.hpp"
#include "sli4/sli4_engine.hpp"
#include "tarvo/tarvo.h"
#include "port/port.hpp"
#include "drvparams/drvparams.hpp"
#include "auth/auth.hpp"

using kvdsim::Asic;
using kvdsim::AuthEngine;
#include "fabric/fabric.hpp"
#include "mailbox/firmware.hpp"
#include "scsi/target.hpp"

using kvdsim::Fabric;
using kvdsim::Firmware;
using kvdsim::Port;
using kvdsim::RowInfo;
using kvdsim::ScsiTargets;
using kvdsim::Sli4Engine;

namespace
{

void expect_unique_words(const cmdinfo *rows, int count, const char *table)
{
    std::set<std::string> seen;
    for (int i = 0; i < count; ++i) {
        ASSERT_NE(rows[i].c_string, nullptr) << table << " row " << i;
        EXPECT_NE(rows[i].c_routine, nullptr) << table << " row " << rows[i].c_string;
        EXPECT_TRUE(seen.insert(rows[i].c_string).second)
            << table << ": \"" << rows[i].c_string << "\" twice";
    }
}

template <class Rows> void expect_unique_codes(const Rows &rows, const char *engine)
{
    std::set<uint32_t> codes;
    std::set<std::string> names;
    for (const RowInfo &r : rows) {
        EXPECT_TRUE(codes.insert(r.code).second) << engine << ": code 0x" << std::hex << r.code << " twice";
        EXPECT_TRUE(names.insert(r.name).second) << engine << ": " << r.name << " twice";
        EXPECT_NE(r.sli_levels, 0) << engine << ": " << r.name << " serves no SLI level";
    }
}

} // namespace

TEST(Tables, ShellWordsAreUnique)
{
    EXPECT_EQ(kvdcmdcnt, 108);
    expect_unique_words(kvdCmds, kvdcmdcnt, "kvdCmds");
    expect_unique_words(mboxinfo, g_mboxinfo_array_size, "mboxinfo");
    expect_unique_words(tarvoinfo, tarvoinfo_array_size, "tarvoinfo");
    expect_unique_words(sli4info, g_sli4info_array_size, "sli4info");
    expect_unique_words(sli4iovinfo, g_sli4iovinfo_array_size, "sli4iovinfo");
    EXPECT_STREQ(kvdCmds[0].c_string, "inval");
    EXPECT_STREQ(mboxinfo[0].c_string, "mbinval");
}

TEST(Tables, EngineCodesAndNamesAreUnique)
{
    expect_unique_codes(Firmware::commands(), "mailbox");
    expect_unique_codes(kvdsim::Diag::resets(), "reset");
}

// The reset command's three types are the reset engine's rows.
TEST(Tables, EveryResetTypeHasARow)
{
    std::set<uint32_t> codes;
    for (const RowInfo &r : kvdsim::Diag::resets())
        codes.insert(r.code);
    EXPECT_EQ(codes, (std::set<uint32_t>{KVD_RESET_SELECTIVE, KVD_RESET_COORDINATED, KVD_RESET_FIRMWARE}));
    expect_unique_codes(Asic::commands(), "asic");
    expect_unique_codes(Port::commands(), "port");
    expect_unique_codes(kvdsim::DrvParams::commands(), "drvparams");
    expect_unique_codes(AuthEngine::commands(), "auth");
    expect_unique_codes(Sli4Engine::commands(), "sli4");
    expect_unique_codes(ScsiTargets::commands(), "scsi");
    expect_unique_codes(Fabric::els_commands(), "els");
    expect_unique_codes(Fabric::ct_commands(), "ct");
}

// What sendscsi's calls, sendfcp, els and ct send is served by a row.
TEST(Tables, EveryCommandTheShellSendsHasARow)
{
    for (uint8_t op : {SCSI_INQUIRY, SCSI_READ_CAPACITY_10, SCSI_SERVICE_ACTION_IN_16, SCSI_REPORT_LUNS,
                       SCSI_READ_10, SCSI_WRITE_10, SCSI_TEST_UNIT_READY})
        EXPECT_NE(ScsiTargets::command(op), nullptr) << "SCSI 0x" << std::hex << int(op);
    for (uint8_t code : {ELS_CMD_ECHO, ELS_CMD_RLS, ELS_CMD_RPS, ELS_CMD_RPL, ELS_CMD_RNID})
        EXPECT_NE(Fabric::els_command(code), nullptr) << "ELS 0x" << std::hex << int(code);
    for (uint16_t code : {CT_GID_FT, CT_GPN_ID, CT_GNN_ID, CT_GSPN_ID})
        EXPECT_NE(Fabric::ct_command(code), nullptr) << "CT 0x" << std::hex << code;
    EXPECT_EQ(ScsiTargets::command(0x55), nullptr);
}

TEST(Tables, EveryMailboxRowIssuesACommandTheFirmwareServes)
{
    int issuing = 0;
    for (int i = 0; i < g_mboxinfo_array_size; ++i) {
        if (mboxcodes[i] == 0)
            continue;
        ++issuing;
        const auto *row = Firmware::command(mboxcodes[i]);
        ASSERT_NE(row, nullptr) << "mbox " << mboxinfo[i].c_string << " issues 0x" << std::hex
                                << int(mboxcodes[i]) << ", which no firmware row serves";
    }
    EXPECT_EQ(issuing, 28);
    // The firmware refuses codes it has no row for (tested with a board in
    // test_sim_firmware); here: the lookup finds nothing for them.
    EXPECT_EQ(Firmware::command(MBX_LOAD_SM), nullptr);
    EXPECT_EQ(Firmware::command(MBX_WRITE_NV), nullptr);
}
