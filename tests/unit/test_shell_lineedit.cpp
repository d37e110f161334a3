// Tab completion at the terminal: what one Tab adds to the line, from the
// command tables, the keyword lists and host folders.
#include <gtest/gtest.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "kvd.h"

namespace
{

struct Completion {
    int count;
    std::string insert;
};

Completion complete(const std::string &line)
{
    char insert[1024];
    int count = kvd_complete_text(line.c_str(), insert, sizeof(insert));
    return {count, insert};
}

TEST(Completion, CommandWordsAndFamilyRows)
{
    EXPECT_EQ(complete("mb").insert, "ox ");
    Completion rdr = complete("mbox rdr");
    EXPECT_EQ(rdr.count, 4); // rdrcfg rdrpi rdrev rdrev2
    EXPECT_EQ(rdr.insert, "");
    EXPECT_EQ(complete("mbox rdrev").count, 2);
    EXPECT_EQ(complete("sli4iov qui").insert, "ck");
    EXPECT_EQ(complete("  , sli4 ").count, 6);
    // the fallback row and the host-shell row are no words to offer
    EXPECT_EQ(complete("inv").count, 0);
    EXPECT_EQ(complete("!").count, 0);
    EXPECT_EQ(complete("").count, 106);
    // only the word after a family word is a row
    EXPECT_EQ(complete("mbox rdrev rd").count, 0);
    EXPECT_EQ(complete("rdpci 0").count, 0);
}

TEST(Completion, Keywords)
{
    EXPECT_EQ(complete("set li").insert, "nes ");
    EXPECT_EQ(complete("set,w").insert, "wn ");
    EXPECT_EQ(complete("revent vp").insert, "rscn ");
    EXPECT_EQ(complete("set lines 1").count, 0);
    EXPECT_EQ(complete("sd_set_bucket l").insert, "inear ");
    EXPECT_EQ(complete("sendscsi inquiryw").insert, "wn ");
    EXPECT_EQ(complete("sendscsi re").count, 5); // reportlun readcap reportlunwwn readcapwwn read
    EXPECT_EQ(complete("rnid 2000000011112222 p").insert, " ");
    // keywords after a second word: a command's own or a family row's
    EXPECT_EQ(complete("revent link A").insert, "LL ");
    EXPECT_EQ(complete("revent ct A").count, 0); // the CT value comes first
    EXPECT_EQ(complete("revent ct 0x100 A").insert, "LL ");
    EXPECT_EQ(complete("tarvo reset g").insert, "olden ");
    EXPECT_EQ(complete("tarvo loopback 1 d").insert, "isable ");
    EXPECT_EQ(complete("tarvo loopback d").count, 0);
    EXPECT_EQ(complete("tarvo porttype t").insert, "runk ");
    EXPECT_EQ(complete("mbox reset h").count, 0);
}

// setcfg completes the names the last getcfg fetched, and none before.
TEST(Completion, DriverParameterNames)
{
    int32_t was = gotcfg;
    gotcfg = 0;
    EXPECT_EQ(complete("setcfg ").count, 0);
    snprintf(cfgparam[0].a_string, sizeof(cfgparam[0].a_string), "log_verbose");
    snprintf(cfgparam[1].a_string, sizeof(cfgparam[1].a_string), "link_speed");
    memset(cfgparam[2].a_string, 'l', sizeof(cfgparam[2].a_string)); // no NUL
    gotcfg = 3;
    EXPECT_EQ(complete("setcfg l").count, 3);
    EXPECT_EQ(complete("setcfg log").insert, "_verbose ");
    EXPECT_EQ(complete("setcfg log_verbose 1").count, 0);
    gotcfg = was;
}

TEST(Completion, HostFiles)
{
    char dir[] = "/tmp/kvd_complete.XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    std::string d = dir;
    fclose(fopen((d + "/fw_image.bin").c_str(), "w"));
    fclose(fopen((d + "/fw_notes.txt").c_str(), "w"));
    fclose(fopen((d + "/.hidden").c_str(), "w"));
    fclose(fopen((d + "/two words").c_str(), "w"));
    ASSERT_EQ(mkdir((d + "/objects").c_str(), 0755), 0);

    EXPECT_EQ(complete("sli4iov read " + d + "/fw_").count, 2);
    EXPECT_EQ(complete("sli4iov write " + d + "/fw_i").insert, "mage.bin ");
    EXPECT_EQ(complete("sli4iov read " + d + "/ob").insert, "jects/");
    EXPECT_EQ(complete("tarvo download -o " + d + "/fw_n").insert, "otes.txt ");
    EXPECT_EQ(complete("! cat " + d + "/fw_n").insert, "otes.txt ");
    // hidden names only when asked for, names with separators never
    EXPECT_EQ(complete("sli4iov read " + d + "/").count, 3);
    EXPECT_EQ(complete("sli4iov read " + d + "/.h").insert, "idden ");
    // the object name is no host file
    EXPECT_EQ(complete("sli4iov read " + d + "/fw_image.bin " + d + "/fw_").count, 0);
    EXPECT_EQ(complete("tarvo download " + d + "/fw_").count, 0);

    for (const char *f : {"/fw_image.bin", "/fw_notes.txt", "/.hidden", "/two words"})
        unlink((d + f).c_str());
    rmdir((d + "/objects").c_str());
    rmdir(dir);
}

// Up to 1023 characters before the cursor are looked at; more complete nothing.
TEST(Completion, LineLimit)
{
    EXPECT_EQ(complete("mbox" + std::string(1023 - 7, ' ') + "rdr").count, 4);
    EXPECT_EQ(complete("mbox" + std::string(1024 - 7, ' ') + "rdr").count, 0);
}

} // namespace
