// The event callbacks against the library's event thread: a flood of events
// while commands run loses nothing and splits no event's lines, and the
// release path stops delivery while a callback runs.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <regex>
#include <signal.h>
#include <stdlib.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "kvd.h"

namespace
{

std::atomic<int> temps{0};
std::atomic<int> links{0};

void count_temp(uint32_t, uint32_t, uint32_t)
{
    temps.fetch_add(1);
}

void count_link(uint32_t, LINKINFO *)
{
    links.fetch_add(1);
}

bool wait_for(const std::atomic<int> &counter, int value)
{
    for (int i = 0; i < 60000 && counter.load() < value; i++)
        usleep(1000);
    return counter.load() == value;
}

// A client of the event channel.
int connect_channel(const std::string &path)
{
    int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    snprintf(addr.sun_path, sizeof(addr.sun_path), "%s", path.c_str());
    if (connect(fd, reinterpret_cast<sockaddr *>(&addr), sizeof(addr)) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

std::string request(int fd, const std::string &line)
{
    std::string text = line + "\n";
    // The library may close the channel while a request is on its way (a
    // release races the trigger): that is a failed write, not SIGPIPE.
    if (send(fd, text.data(), text.size(), MSG_NOSIGNAL) != (ssize_t)text.size())
        return "write failed";
    std::string reply;
    char c;
    while (read(fd, &c, 1) == 1 && c != '\n')
        reply += c;
    return reply;
}

std::string channel_path(const char *name)
{
    char dir[] = "/tmp/kvdevXXXXXX";
    EXPECT_NE(mkdtemp(dir), nullptr);
    return std::string(dir) + "/" + name;
}

void run_command(std::vector<const char *> words)
{
    margc = (int32_t)words.size();
    for (size_t i = 0; i < words.size(); i++)
        margv[i] = const_cast<char *>(words[i]);
    cmdinfo *row = &kvdCmds[0];
    for (int32_t i = 0; i < kvdcmdcnt; i++)
        if (strcmp(kvdCmds[i].c_string, words[0]) == 0)
            row = &kvdCmds[i];
    row->c_routine(row, nullptr);
}

TEST(EventStress, ThousandsOfEventsWhileCommandsRun)
{
    constexpr int kPairs = 1500;  // temperature events: 2 per pair
    constexpr int kBounces = 250; // link events: 2 per bounce
    const std::string path = channel_path("ev");
    setenv("KVD_SIM_EVENTS", path.c_str(), 1);
    char out_name[] = "/tmp/kvdoutXXXXXX";
    int out = mkstemp(out_name);
    ASSERT_GE(out, 0);
    fflush(stdout);
    int saved = dup(1);
    dup2(out, 1);

    kvd_pci_brds = KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS);
    prompt_to_continue = 0;
    temps = 0;
    links = 0;
    // The counters come after the shell's callbacks: when they reach their
    // totals, the shell has printed every event.
    ASSERT_NE(RegisterForEvent(0, 0xA0, 0, 0, (kvd_event_fn)temperature_event, 0), 0u);
    ASSERT_NE(RegisterForEvent(0, 0x81, 0, sizeof(LINKINFO), (kvd_event_fn)link_event, 0), 0u);
    ASSERT_NE(RegisterForEvent(0, 0xA0, 0, 0, (kvd_event_fn)count_temp, 0), 0u);
    ASSERT_NE(RegisterForEvent(0, 0x81, 0, sizeof(LINKINFO), (kvd_event_fn)count_link, 0), 0u);

    std::atomic<int> bad_replies{0};
    std::thread producer([&] {
        int fd = connect_channel(path);
        if (fd < 0) {
            bad_replies = -1;
            return;
        }
        for (int i = 0; i < kPairs; i++) {
            if (request(fd, "0 temp 80") != "ok")
                bad_replies++;
            if (request(fd, "0 temp 20") != "ok")
                bad_replies++;
        }
        close(fd);
    });
    for (int i = 0; i < kBounces; i++) {
        MAILBOX mb;
        memset(&mb, 0, sizeof(mb));
        mb.mbxCommand = MBX_DOWN_LINK;
        KVD_IssueMboxWithRetry(0, &mb, 32, 32, 1, 0);
        run_command({"getevent", "3"});
        memset(&mb, 0, sizeof(mb));
        mb.mbxCommand = MBX_INIT_LINK;
        KVD_IssueMboxWithRetry(0, &mb, 32, 32, 1, 0);
        run_command({"revent", "foo"});
    }
    producer.join();
    EXPECT_EQ(bad_replies.load(), 0);
    EXPECT_TRUE(wait_for(temps, 2 * kPairs));
    EXPECT_TRUE(wait_for(links, 2 * kBounces));
    for (uint32_t b = 0; b < kvd_pci_brds; b++)
        unRegisterForEvent(b, 0);
    KVD_FreeDiagEnv();
    fflush(stdout);
    dup2(saved, 1);
    close(saved);
    close(out);
    unsetenv("KVD_SIM_EVENTS");

    // Every line is whole, and every link event's four lines stay together.
    std::ifstream in(out_name);
    std::vector<std::string> lines;
    for (std::string l; std::getline(in, l);)
        lines.push_back(l);
    unlink(out_name);
    const std::regex whole(
        "temperature_event board 0 .* D Celsius\\. |Brd 0 Event .*|PortID .*|ALPAmap \\d+:.*|"
        "Portname [0-9a-f:]{23}  Nodename [0-9a-f:]{23}|Event Data1 .* Missed|"
        "[0-9a-f]{4}  [0-9a-f]{8} [0-9a-f]{8} [0-9a-f]{8} [0-9a-f]{8}|Usage: revent .*");
    int temperature_lines = 0, link_blocks = 0, split = 0;
    for (size_t i = 0; i < lines.size(); i++) {
        if (!std::regex_match(lines[i], whole))
            split++;
        if (lines[i].rfind("temperature_event", 0) == 0)
            temperature_lines++;
        if (lines[i].rfind("Brd 0 Event", 0) == 0) {
            link_blocks++;
            if (i + 3 >= lines.size() || lines[i + 1].rfind("PortID", 0) != 0 ||
                lines[i + 2].rfind("ALPAmap", 0) != 0 || lines[i + 3].rfind("Portname", 0) != 0)
                split++;
        }
    }
    EXPECT_EQ(split, 0);
    EXPECT_EQ(temperature_lines, 2 * kPairs);
    EXPECT_EQ(link_blocks, 2 * kBounces);
}

// Standard output of `work`, as text.
template <class Work> std::string captured(Work work)
{
    char name[] = "/tmp/kvdcapXXXXXX";
    int fd = mkstemp(name);
    fflush(stdout);
    int saved = dup(1);
    dup2(fd, 1);
    work();
    fflush(stdout);
    dup2(saved, 1);
    close(saved);
    std::ifstream in(name);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    close(fd);
    unlink(name);
    return text;
}

// The callbacks bound what the records say by the records themselves.
TEST(Events, CallbacksBoundTheirRecords)
{
    LINKINFO li;
    memset(&li, 0, sizeof(li));
    li.a_alpaCnt = 0;
    EXPECT_NE(captured([&] { link_event(0, &li); }).find("ALPAmap 0:\nPortname"), std::string::npos);
    li.a_alpaCnt = 127; // the last entry the map holds
    li.a_alpaMap[127] = 0xef;
    std::string text = captured([&] { link_event(0, &li); });
    EXPECT_NE(text.find("ALPAmap 127: 0"), std::string::npos);
    EXPECT_NE(text.find(" 0 ef\n"), std::string::npos);
    li.a_alpaCnt = 200; // past the map: the count is shown, the entries stop at 127
    li.a_alpaMap[127] = 0xee;
    text = captured([&] { link_event(0, &li); });
    EXPECT_NE(text.find("ALPAmap 200: 0"), std::string::npos);
    EXPECT_NE(text.find(" 0 ee\n"), std::string::npos);

    // Six bytes dump two words; the partial word reads only its own bytes.
    uint8_t six[6] = {0x61, 0x04, 0x00, 0x08, 0xab, 0xcd};
    EXPECT_EQ(captured([&] { rscn_event(0, six, 6); }), "RSCN Buffer: 6\n\n   0: 61040008  abcd0000  \n");
    EXPECT_EQ(captured([&] { ct_event(0, 0x20, six, 6, 5, (void *)(uintptr_t)KVD_CT_CONTEXT); }),
              "CT Buffer: 0 cnt:6 tag:0x5 ctx:0x51515151\n\n   0: 61040008  abcd0000  \n");
    // A length past the registered 1024-byte buffer is cut to it.
    std::vector<uint8_t> big(1024, 0x11);
    text = captured([&] { rscn_event(0, big.data(), 5000); });
    EXPECT_NE(text.find("\n 3f0: 11111111  11111111  11111111  11111111  \n"), std::string::npos);
    EXPECT_EQ(text.find(" 400: "), std::string::npos);
    EXPECT_EQ(captured([&] { temperature_event(1, 4, 60); }),
              "temperature_event board 1 tempType 0x4 temperature 60 D Celsius. \n");
}

std::atomic<bool> in_callback{false};
std::atomic<int> slow_calls{0};

void slow_temp(uint32_t, uint32_t, uint32_t)
{
    in_callback = true;
    slow_calls++;
    usleep(200 * 1000);
    in_callback = false;
}

std::atomic<bool> was_running_after_release{true};

void release_from_handler(int)
{
    (void)unRegisterForEvent(0, 0);
    KVD_FreeDiagEnv();
    was_running_after_release = in_callback.load();
}

TEST(Events, ReleaseFromSignalHandlerWaitsForTheRunningCallback)
{
    const std::string path = channel_path("ev");
    setenv("KVD_SIM_EVENTS", path.c_str(), 1);
    KVD_BRDINFO table[KVD_MAX_BOARDS];
    ASSERT_EQ(KVD_InitDiagEnv(table, KVD_MAX_BOARDS), 3u);
    slow_calls = 0;
    ASSERT_NE(RegisterForEvent(0, 0xA0, 0, 0, (kvd_event_fn)slow_temp, 0), 0u);
    int fd = -1;
    for (int i = 0; i < 1000 && fd < 0; i++) {
        fd = connect_channel(path);
        if (fd < 0)
            usleep(1000);
    }
    ASSERT_GE(fd, 0);
    std::thread trigger([&] {
        request(fd, "0 temp 99");
        request(fd, "0 temp 20");
    });
    for (int i = 0; i < 10000 && !in_callback; i++)
        usleep(100);
    ASSERT_TRUE(in_callback.load());

    signal(SIGUSR1, release_from_handler);
    raise(SIGUSR1);
    signal(SIGUSR1, SIG_DFL);
    EXPECT_FALSE(was_running_after_release.load());
    trigger.join();
    close(fd);
    // The second event came after the release: nobody hears it.
    EXPECT_EQ(slow_calls.load(), 1);
    unsetenv("KVD_SIM_EVENTS");
    // The path went away with the environment.
    EXPECT_NE(access(path.c_str(), F_OK), 0);
}

} // namespace
