// The Tarvo ASIC model: reply bounds, image validation, FRU data,
// memory and logs, through the exchanges the library hands it.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "asic/asic.hpp"
#include "sim_test.hpp"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

uint32_t word_at(const std::vector<uint8_t> &b, size_t off)
{
    uint32_t w;
    memcpy(&w, b.data() + off, 4);
    return w;
}

// One exchange: returns the transport status; `rsp` keeps what came back.
struct Exchanger {
    Asic asic;
    std::vector<uint8_t> rsp;
    uint32_t delivered = 0;

    explicit Exchanger(const AsicConf &conf = {}) : asic(conf)
    {
    }
    uint32_t send(const std::vector<uint8_t> &cmd, size_t room)
    {
        rsp.assign(room, 0xee);
        return asic.exchange(cmd, rsp, delivered);
    }
    uint32_t get(uint32_t code, uint32_t context, size_t room)
    {
        tarvo_get_cmd_t g{code, context, static_cast<uint32_t>(room)};
        return send(bytes_of(g), room);
    }
    uint32_t status() const
    {
        return word_at(rsp, 0);
    }
};

// A consistent image of `words` body words: header, body, version record.
std::vector<uint8_t> make_image(uint32_t version, uint32_t type, size_t words = 8)
{
    const uint32_t length = static_cast<uint32_t>(32 + words * 4 + 16);
    std::vector<uint8_t> img(length, 0);
    tarvo_image_hdr_t h{};
    h.version = version;
    h.file_length = length;
    h.image_length = static_cast<uint32_t>(words * 4);
    h.checksum_offset = length - 4;
    memcpy(img.data(), &h, sizeof h);
    for (size_t i = 0; i < words; ++i) {
        uint32_t w = static_cast<uint32_t>(0x01010101u * (i + 1));
        memcpy(img.data() + 32 + i * 4, &w, 4);
    }
    tarvo_version_hdr_t v{0, type, version, 0};
    v.checksum = image_checksum(std::span(img).first(length - 16));
    memcpy(img.data() + length - 16, &v, sizeof v);
    return img;
}

std::vector<uint8_t> download_cmd(const std::vector<uint8_t> &img, uint32_t type, uint32_t length)
{
    tarvo_fw_download_cmd_t c{TARVO_CMD_FW_DOWNLOAD, length, type};
    // Sized once and filled by memcpy: g++ 12 at -O3 misreads a vector
    // insert here as an out-of-bounds access (-Warray-bounds).
    std::vector<uint8_t> cmd(sizeof c + img.size());
    memcpy(cmd.data(), &c, sizeof c);
    if (!img.empty())
        memcpy(cmd.data() + sizeof c, img.data(), img.size());
    return cmd;
}

std::string rejected(const std::vector<uint8_t> &img, uint32_t type, uint32_t length)
{
    const char *why = nullptr;
    uint32_t st = check_image(img, length, type, &why);
    return st == kAsicOk ? "accepted" : why;
}

void set_word(std::vector<uint8_t> &img, size_t off, uint32_t w)
{
    memcpy(img.data() + off, &w, 4);
}

} // namespace

TEST(AsicExchange, TransportAndAsicStatuses)
{
    Exchanger x;
    EXPECT_EQ(x.send({1, 0, 0}, 32), uint32_t(TARVO_ERR_GENERAL)); // no whole code word
    EXPECT_EQ(x.get(TARVO_CMD_GET_INIT, 0, 3), uint32_t(TARVO_ERR_RSP_OVERRUN));
    EXPECT_EQ(x.get(TARVO_CMD_GET_INIT, 0, 31), uint32_t(TARVO_ERR_RSP_OVERRUN));
    EXPECT_EQ(x.get(TARVO_CMD_GET_INIT, 0, 32), 0u);
    EXPECT_EQ(x.delivered, 32u);

    EXPECT_EQ(x.get(0x29, 0, 64), 0u); // a code the firmware does not know
    EXPECT_EQ(x.status(), uint32_t(kAsicInvalidCommand));
    EXPECT_EQ(x.delivered, 4u);

    tarvo_init_cmd_t init{TARVO_CMD_INIT, 20, 2048};
    auto cut = bytes_of(init);
    cut.resize(8);
    EXPECT_EQ(x.send(cut, 32), 0u);
    EXPECT_EQ(x.status(), uint32_t(kAsicBadLength));
}

TEST(AsicExchange, GetLengthBoundsTheReplyWithinTheBuffer)
{
    Exchanger x;
    // The buffer is large, but the record offers less than the reply needs.
    tarvo_get_cmd_t g{TARVO_CMD_GET_CONFIG, 0, 95};
    EXPECT_EQ(x.send(bytes_of(g), 4096), uint32_t(TARVO_ERR_RSP_OVERRUN));
    g.length = 96;
    EXPECT_EQ(x.send(bytes_of(g), 4096), 0u);
    EXPECT_EQ(x.rsp[96], 0xee); // nothing written past the reply
    // A record offering more than the buffer is held to the buffer.
    g.code = TARVO_CMD_GET_PORT_STATS;
    g.context = 2;
    g.length = 204;
    EXPECT_EQ(x.send(bytes_of(g), 200), 0u);
    EXPECT_EQ(x.delivered, 200u);
}

TEST(AsicImage, AcceptedImageIsInstalled)
{
    Exchanger x;
    auto img = make_image(0x02050000, TARVO_IMAGE_OPERATIONAL);
    EXPECT_EQ(x.send(download_cmd(img, TARVO_IMAGE_OPERATIONAL, static_cast<uint32_t>(img.size())), 4), 0u);
    EXPECT_EQ(x.status(), 0u);
    EXPECT_EQ(x.asic.fw_version(), 0x02050000u);
    EXPECT_EQ(x.asic.fw_type(), TARVO_FW_TYPE_OPERATIONAL);

    auto diag = make_image(0x02050001, TARVO_IMAGE_DIAGNOSTIC);
    EXPECT_EQ(x.send(download_cmd(diag, TARVO_IMAGE_DIAGNOSTIC, static_cast<uint32_t>(diag.size())), 4), 0u);
    // The version shows in the ASIC's own memory too.
    tarvo_memory_cmd_t rd{TARVO_CMD_READ_MEM, 4, 1};
    EXPECT_EQ(x.send(bytes_of(rd), 8), 0u);
    EXPECT_EQ(word_at(x.rsp, 4), 0x02050001u);
}

TEST(AsicImage, EachFlawIsRefusedWithoutReadingOutsideTheImage)
{
    auto img = make_image(7, 1);
    const auto len = static_cast<uint32_t>(img.size());
    EXPECT_EQ(rejected(img, 1, len), "accepted");
    EXPECT_EQ(rejected(img, 3, len), "unknown image type");
    EXPECT_EQ(rejected(img, 2, len), "image type mismatch");
    EXPECT_EQ(rejected(img, 1, len + 4), "image truncated"); // length past the bytes sent
    EXPECT_EQ(rejected(std::vector<uint8_t>(img.begin(), img.end() - 4), 1, len), "image truncated");
    EXPECT_EQ(rejected(img, 1, len - 4), "header length disagrees");

    auto odd = img;
    set_word(odd, 12, len - 2);
    EXPECT_EQ(rejected(odd, 1, len - 2), "length not a multiple of 4");

    auto sum = img;
    sum[40] ^= 1;
    EXPECT_EQ(rejected(sum, 1, len), "checksum mismatch");

    auto ver = img;
    set_word(ver, 8, 8); // header says 8, version record 7; fix the sum
    set_word(ver, len - 4, image_checksum(std::span(ver).first(len - 16)));
    EXPECT_EQ(rejected(ver, 1, len), "version mismatch");

    // The version record must lie inside the image, after the header.
    auto off = img;
    set_word(off, 28, len); // one word past the last
    EXPECT_EQ(rejected(off, 1, len), "version record outside the image");
    set_word(off, 28, 0xfffffffc);
    EXPECT_EQ(rejected(off, 1, len), "version record outside the image");
    set_word(off, 28, 40); // record would start inside the header
    EXPECT_EQ(rejected(off, 1, len), "version record outside the image");
    set_word(off, 28, 42);
    EXPECT_EQ(rejected(off, 1, len), "version record outside the image");
}

TEST(AsicImage, SmallestImageAtTheLimit)
{
    auto img = make_image(1, 1, 0); // header and version record only: 48 bytes
    ASSERT_EQ(img.size(), 48u);
    EXPECT_EQ(rejected(img, 1, 48), "accepted");
    std::vector<uint8_t> shorter(img.begin(), img.begin() + 44);
    EXPECT_EQ(rejected(shorter, 1, 44), "image too short");
    EXPECT_EQ(rejected(img, 1, 12), "image too short");

    Exchanger x;
    EXPECT_EQ(x.send(download_cmd(shorter, 1, 12), 4), 0u);
    EXPECT_EQ(x.status(), uint32_t(kAsicImageRejected));
    EXPECT_EQ(x.asic.fw_version(), AsicConf{}.fw_version);
    EXPECT_EQ(x.asic.log_entries(0).back(), "fw: image refused, image too short");
}

TEST(AsicFru, ChannelsAndPadBytesAreChecked)
{
    // What the shell never sends: a channel count other than 1 or 2, pad
    // bytes set, a second channel without its address.
    Exchanger x;
    const tarvo_set_fru_data_cmd_t s{TARVO_CMD_SET_FRU, {0x55, 0x44, 0x33, 0x22, 0x11, 0x00, 0, 0}, {}, 1};
    auto refused = [&](tarvo_set_fru_data_cmd_t c) {
        x.send(bytes_of(c), 4);
        return x.status() == kAsicInvalidParam;
    };
    auto bad = s;
    bad.flags = 0;
    EXPECT_TRUE(refused(bad));
    bad.flags = 3;
    EXPECT_TRUE(refused(bad));
    bad = s;
    bad.mac0[7] = 1; // pad bytes travel last
    EXPECT_TRUE(refused(bad));
    bad = s;
    bad.flags = 2; // two channels need a second address
    EXPECT_TRUE(refused(bad));
    memcpy(bad.mac1, s.mac0, 8);
    EXPECT_FALSE(refused(bad));
}

TEST(AsicMemory, ReadsAndWritesWithinItsMemory)
{
    AsicConf conf;
    conf.memory_size = 0x400;
    Exchanger x(conf);
    auto read = [&](uint32_t address, uint32_t words) {
        tarvo_memory_cmd_t c{TARVO_CMD_READ_MEM, address, words};
        EXPECT_EQ(x.send(bytes_of(c), 4 + words * 4), 0u);
        return x.status();
    };
    EXPECT_EQ(read(0, 64), 0u); // 256 bytes: the limit
    EXPECT_EQ(x.delivered, 260u);
    EXPECT_EQ(word_at(x.rsp, 4), 0x56524154u);
    EXPECT_EQ(read(0, 65), uint32_t(kAsicInvalidParam));
    EXPECT_EQ(read(0x3fc, 1), 0u); // last word
    EXPECT_EQ(read(0x3fc, 2), uint32_t(kAsicInvalidParam));
    EXPECT_EQ(read(0x402, 1), uint32_t(kAsicInvalidParam));
    EXPECT_EQ(read(0x102, 1), uint32_t(kAsicInvalidParam)); // misaligned

    auto write = [&](uint32_t address, uint32_t value) {
        std::vector<uint8_t> c = bytes_of(tarvo_memory_cmd_t{TARVO_CMD_WRITE_MEM, address, 1});
        c.resize(16);
        memcpy(c.data() + 12, &value, 4);
        EXPECT_EQ(x.send(c, 4), 0u);
        return x.status();
    };
    EXPECT_EQ(write(0x3fc, 2), 0u); // the last word
    EXPECT_EQ(write(0x400, 2), uint32_t(kAsicInvalidParam));
    // A read that does not fit the room offered is a transport overrun.
    tarvo_memory_cmd_t c{TARVO_CMD_READ_MEM, 0, 4};
    EXPECT_EQ(x.send(bytes_of(c), 19), uint32_t(TARVO_ERR_RSP_OVERRUN));
}

TEST(AsicLogs, RingKeepsTheNewestAndSizesFollow)
{
    AsicConf conf;
    conf.logs = {{"sys", 3, 16, {"a", "b", "c", "d", "e"}}, {"empty", 0, 8, {}}};
    Exchanger x(conf);
    EXPECT_EQ(x.asic.log_entries(0), (std::vector<std::string>{"c", "d", "e"}));

    ASSERT_EQ(x.get(TARVO_CMD_GET_CONFIG, 0, 96), 0u);
    tarvo_get_config_rsp_t cfg;
    memcpy(&cfg, x.rsp.data(), sizeof cfg);
    EXPECT_EQ(cfg.log_cfg_size, 4u + 2 * 28);
    EXPECT_EQ(cfg.panic_log_size, 156u);

    ASSERT_EQ(x.get(TARVO_CMD_GET_LOG_CONFIG, 0, cfg.log_cfg_size + 4), 0u);
    tarvo_log_t l;
    memcpy(&l, x.rsp.data() + 8, sizeof l);
    EXPECT_EQ(l.num_entries, 3);
    EXPECT_EQ(l.entry_size, 16);
    EXPECT_STREQ(l.name, "sys");
    EXPECT_EQ(x.get(TARVO_CMD_GET_LOG_CONFIG, 0, cfg.log_cfg_size + 3), uint32_t(TARVO_ERR_RSP_OVERRUN));

    ASSERT_EQ(x.get(TARVO_CMD_GET_LOG_DATA, 0, 8 + 3 * 16), 0u);
    uint16_t head;
    memcpy(&head, x.rsp.data() + 4, 2);
    EXPECT_EQ(head, 1); // slots: d e c
    EXPECT_STREQ(reinterpret_cast<const char *>(x.rsp.data() + 8 + 16), "e");
    EXPECT_EQ(x.get(TARVO_CMD_GET_LOG_DATA, 0, 8 + 3 * 16 - 1), uint32_t(TARVO_ERR_RSP_OVERRUN));
    EXPECT_EQ(x.get(TARVO_CMD_GET_LOG_DATA, 1, 8), 0u);
    EXPECT_EQ(x.get(TARVO_CMD_GET_LOG_DATA, 2, 64), 0u);
    EXPECT_EQ(x.status(), uint32_t(kAsicInvalidParam));
}

TEST(AsicLogs, PanicRecordAndResetStatus)
{
    Exchanger x;
    EXPECT_EQ(x.send(bytes_of(uint32_t{TARVO_CMD_PANIC}), 4), 0u);
    EXPECT_TRUE(x.asic.panicked());
    ASSERT_EQ(x.get(TARVO_CMD_GET_INIT, 0, 32), 0u);
    EXPECT_EQ(word_at(x.rsp, offsetof(tarvo_init_rsp_t, reset_status)), 1u);

    ASSERT_EQ(x.get(TARVO_CMD_GET_CONFIG, 0, 96), 0u);
    const uint32_t size = word_at(x.rsp, offsetof(tarvo_get_config_rsp_t, panic_log_size)) + 4;
    EXPECT_EQ(x.get(TARVO_CMD_GET_PANIC_LOG, 0, size - 1), uint32_t(TARVO_ERR_RSP_OVERRUN));
    ASSERT_EQ(x.get(TARVO_CMD_GET_PANIC_LOG, 0, size), 0u);

    tarvo_reset_cmd_t r{TARVO_CMD_RESET, 1};
    EXPECT_EQ(x.send(bytes_of(r), 4), 0u);
    ASSERT_EQ(x.get(TARVO_CMD_GET_INIT, 0, 32), 0u);
    EXPECT_EQ(word_at(x.rsp, offsetof(tarvo_init_rsp_t, reset_status)), 0u);
}

TEST(AsicCounters, MoveWithEveryExchange)
{
    Exchanger x;
    ASSERT_EQ(x.get(TARVO_CMD_GET_PORT_STATS, 0, 416), 0u);
    uint64_t first, second;
    memcpy(&first, x.rsp.data() + offsetof(tarvo_network_stats_rsp_t, tx_frames), 8);
    ASSERT_EQ(x.get(TARVO_CMD_GET_PORT_STATS, 0, 416), 0u);
    memcpy(&second, x.rsp.data() + offsetof(tarvo_network_stats_rsp_t, tx_frames), 8);
    EXPECT_GT(second, first);
    EXPECT_EQ(x.get(TARVO_CMD_GET_PORT_STATS, 5, 416), 0u);
    EXPECT_EQ(x.status(), 0u);
    EXPECT_EQ(x.get(TARVO_CMD_GET_PORT_STATS, 6, 416), 0u);
    EXPECT_EQ(x.status(), uint32_t(kAsicInvalidParam));
    // FC-side ports answer with the FC record.
    EXPECT_EQ(x.get(TARVO_CMD_GET_PORT_STATS, 3, 200), 0u);
    EXPECT_EQ(x.delivered, 200u);
}
