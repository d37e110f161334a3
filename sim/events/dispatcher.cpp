// The event dispatcher: subscriptions, the delivery thread, scheduled
// events and the trigger channel.
//
// Delivery and release meet on two atomics, Dekker-fashion: the thread
// publishes the slot it is about to call (running_slot_) and then re-reads
// the slot's id; a release clears the id and then reads running_slot_.
// Either the thread sees the cleared id and skips the callback, or the
// release sees the slot running and waits for it to end. The wait is
// bounded: a callback can block on a lock the interrupted thread holds
// (standard output's, the library's), and the release must not hang then.
// The event thread never waits for itself, and it runs with every signal
// blocked, so the shell's signal handler never runs on top of a callback.
#include "events/events.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "core/state.hpp"
#include "sd/sd.hpp"

namespace kvdsim
{

namespace
{

constexpr size_t kMaxClients = 8;
constexpr size_t kMaxRequest = 4096;
constexpr int kIdleWaitMs = 1000; // longest a release waits for a callback

void sleep_ms(long ms)
{
    timespec ts{0, ms * 1000000L};
    while (nanosleep(&ts, &ts) != 0 && errno == EINTR) {
    }
}

bool on_thread(std::thread::native_handle_type t)
{
    return t != std::thread::native_handle_type{} && pthread_equal(t, pthread_self());
}

void send_line(int fd, const std::string &text)
{
    std::string line = text + "\n";
    size_t off = 0;
    while (off < line.size()) {
        ssize_t n = send(fd, line.data() + off, line.size() - off, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && errno == EAGAIN) {
            pollfd p{fd, POLLOUT, 0};
            if (poll(&p, 1, 1000) <= 0)
                return;
            continue;
        }
        if (n <= 0)
            return;
        off += static_cast<size_t>(n);
    }
}

} // namespace

// Made as the library loads: the release calls reach the dispatcher from
// signal handlers, where nothing may be allocated.
__attribute__((constructor)) static void make_dispatcher()
{
    Dispatcher::instance();
}

// A process that ends without closing the environment (the shell's option
// mode) takes its channel's path away with it.
__attribute__((destructor)) static void remove_channel_at_exit()
{
    Dispatcher::instance().remove_channel();
}

void Dispatcher::remove_channel()
{
    if (channel_made_.exchange(false))
        unlink(channel_path_);
}

Dispatcher &Dispatcher::instance()
{
    // Never destroyed: the thread and the signal handler may outlive exit's
    // destructors.
    static Dispatcher *d = new Dispatcher;
    return *d;
}

Dispatcher::Dispatcher()
{
    if (pipe2(wake_fds_, O_NONBLOCK | O_CLOEXEC) != 0)
        wake_fds_[0] = wake_fds_[1] = -1;
}

void Dispatcher::wake()
{
    if (wake_fds_[1] >= 0) {
        const char c = 1;
        ssize_t n = write(wake_fds_[1], &c, 1); // full pipe: a wake is pending anyway
        (void)n;
    }
}

// ---------------------------------------------------------------------------
// Subscriptions

uint32_t Dispatcher::subscribe(uint32_t board, uint32_t mask, uint32_t size, kvd_event_fn fn, bool ct,
                               uint16_t ct_value, uintptr_t context)
{
    for (int i = 0; i < kSlots; ++i) {
        Slot &s = slots_[i];
        if (s.id.load() != 0 || running_slot_.load() == i)
            continue;
        s.board.store(board, std::memory_order_relaxed);
        s.mask.store(mask, std::memory_order_relaxed);
        s.size.store(size, std::memory_order_relaxed);
        s.fn.store(fn, std::memory_order_relaxed);
        s.ct.store(ct, std::memory_order_relaxed);
        s.ct_value.store(ct_value, std::memory_order_relaxed);
        s.context.store(context, std::memory_order_relaxed);
        uint32_t id = next_id_.fetch_add(1);
        if (id == 0)
            id = next_id_.fetch_add(1);
        s.id.store(id);
        return id;
    }
    return 0;
}

namespace
{
bool matches(bool ct, uint32_t mask, uint16_t ct_value, uint32_t kind, uint16_t event_ct_value)
{
    if (ct)
        return kind == FC_REG_CT_EVENT && ct_value == event_ct_value;
    return kind != FC_REG_CT_EVENT && (mask & kind) != 0;
}
} // namespace

bool Dispatcher::wants(uint32_t board, uint32_t kind, uint16_t ct_value) const
{
    for (const Slot &s : slots_)
        if (s.id.load() != 0 && s.board.load(std::memory_order_relaxed) == board &&
            matches(s.ct.load(std::memory_order_relaxed), s.mask.load(std::memory_order_relaxed),
                    s.ct_value.load(std::memory_order_relaxed), kind, ct_value))
            return true;
    return false;
}

void Dispatcher::wait_idle(int slot)
{
    if (on_thread(thread_id_.load()))
        return;
    for (int waited = 0; waited < kIdleWaitMs; ++waited) {
        const int r = running_slot_.load();
        if (r < 0 || (slot >= 0 && r != slot))
            return;
        sleep_ms(1);
    }
}

int Dispatcher::unsubscribe(uint32_t board, uint32_t id)
{
    int dropped = 0;
    for (int i = 0; i < kSlots; ++i) {
        Slot &s = slots_[i];
        uint32_t cur = s.id.load();
        if (cur == 0 || s.board.load(std::memory_order_relaxed) != board || (id != 0 && cur != id))
            continue;
        if (s.id.compare_exchange_strong(cur, 0)) {
            ++dropped;
            wait_idle(i);
        }
    }
    if (id == 0) // the board's SD subscriptions go with the rest
        dropped += SdSubscriptions::instance().drop_board(board);
    return dropped;
}

void Dispatcher::stop()
{
    want_running_.store(false);
    for (Slot &s : slots_)
        s.id.store(0);
    SdSubscriptions::instance().drop_all();
    remove_channel();
    wake();
    wait_idle(-1);
}

bool Dispatcher::post(Event &&e)
{
    {
        std::lock_guard<std::mutex> lk(queue_mu_);
        if (queue_.size() >= kQueueMax)
            return false;
        queue_.push_back(std::move(e));
    }
    wake();
    return true;
}

// ---------------------------------------------------------------------------
// Delivery

bool Dispatcher::call(int i, const Event &e)
{
    Slot &s = slots_[i];
    running_slot_.store(i);
    struct Done {
        std::atomic<int> &r;
        ~Done()
        {
            r.store(-1);
        }
    } done{running_slot_};

    uint32_t id = s.id.load();
    if (id == 0 || !want_running_.load() || s.board.load(std::memory_order_relaxed) != e.board)
        return false;
    const uint32_t mask = s.mask.load(std::memory_order_relaxed);
    const bool ct = s.ct.load(std::memory_order_relaxed);
    const uint32_t size = s.size.load(std::memory_order_relaxed);
    const kvd_event_fn fn = s.fn.load(std::memory_order_relaxed);
    const uint16_t ct_value = s.ct_value.load(std::memory_order_relaxed);
    const uintptr_t context = s.context.load(std::memory_order_relaxed);
    if (!fn || !matches(ct, mask, ct_value, e.kind, e.ct_value))
        return false;
    // A subscription without "all occurrences" ends with its first event.
    if (!ct && !(mask & FC_REG_ALL_OCCURRENCES)) {
        if (!s.id.compare_exchange_strong(id, 0))
            return false;
    } else if (s.id.load() != id) {
        return false;
    }

    uint8_t payload[BoardEvents::kMaxPayload];
    const size_t room = std::min<size_t>(size ? size : sizeof payload, sizeof payload);
    uint32_t len = static_cast<uint32_t>(std::min(e.payload.size(), ct ? sizeof payload : room));
    if (len)
        std::memcpy(payload, e.payload.data(), len);
    LINKINFO info = e.link;
    uint32_t temp_type = e.temp_type;
    uint32_t celsius = static_cast<uint32_t>(e.celsius);
    // Hostile mode: the records fill their whole room with the pattern, so
    // every count and length inside them points past the record.
    if (library_hostile().wants_events()) {
        const Hostile pat = library_hostile().next_event();
        len = static_cast<uint32_t>(ct ? sizeof payload : room);
        hostile_fill(pat, payload, len);
        hostile_fill(pat, &info, sizeof info);
        hostile_fill(pat, &temp_type, sizeof temp_type);
        hostile_fill(pat, &celsius, sizeof celsius);
    }
    switch (e.kind) {
    case FC_REG_LINK_EVENT: {
        reinterpret_cast<kvd_link_event_fn>(fn)(e.board, &info);
        break;
    }
    case FC_REG_RSCN_EVENT:
        reinterpret_cast<kvd_rscn_event_fn>(fn)(e.board, payload, len);
        break;
    case FC_REG_VPORTRSCN_EVENT:
        reinterpret_cast<kvd_vport_rscn_event_fn>(fn)(e.board, e.vport, payload, len);
        break;
    case FC_REG_TEMPERATURE_EVENT:
        reinterpret_cast<kvd_temperature_event_fn>(fn)(e.board, temp_type, celsius);
        break;
    case FC_REG_CT_EVENT:
        reinterpret_cast<kvd_ct_event_fn>(fn)(e.board, e.ct_value, payload, len, e.tag,
                                              reinterpret_cast<void *>(context));
        break;
    default:
        return false;
    }
    return true;
}

void Dispatcher::deliver(const Event &e)
{
    if (e.kind == kSdEventKind) {
        SdSubscriptions::instance().deliver(e);
        return;
    }
    for (int i = 0; i < kSlots; ++i)
        if (slots_[i].id.load() != 0)
            call(i, e);
}

void Dispatcher::deliver_pending()
{
    for (;;) {
        Event e;
        {
            std::lock_guard<std::mutex> lk(queue_mu_);
            if (queue_.empty())
                return;
            e = std::move(queue_.front());
            queue_.pop_front();
        }
        deliver(e);
    }
}

// ---------------------------------------------------------------------------
// The trigger channel: a Unix stream socket the process creates itself at
// the path KVD_SIM_EVENTS names, owner-only. One request a line; one reply
// a line, "ok..." or "error: ...".

void Dispatcher::open_channel()
{
    const char *path = getenv("KVD_SIM_EVENTS");
    if (!path || !*path)
        return;
    auto refuse = [&](const char *why) {
        fprintf(stderr, "libkvd: KVD_SIM_EVENTS: %s: %s; no event channel\n", path, why);
    };
    sockaddr_un addr{};
    if (strlen(path) >= sizeof addr.sun_path || strlen(path) >= sizeof channel_path_)
        return refuse("path too long");
    struct stat st;
    if (lstat(path, &st) == 0)
        return refuse("already exists, refusing to use it");
    // The directory must not let another user swap the socket for theirs.
    std::string dir(path);
    const size_t slash = dir.rfind('/');
    dir = slash == std::string::npos ? "." : slash == 0 ? "/" : dir.substr(0, slash);
    if (stat(dir.c_str(), &st) != 0)
        return refuse("its directory does not exist");
    if (st.st_uid != geteuid() && st.st_uid != 0)
        return refuse("its directory belongs to another user");
    if ((st.st_mode & (S_IWGRP | S_IWOTH)) && !(st.st_mode & S_ISVTX))
        return refuse("its directory is group- or world-writable");

    int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0)
        return refuse(strerror(errno));
    addr.sun_family = AF_UNIX;
    memcpy(addr.sun_path, path, strlen(path));
    const mode_t old = umask(077);
    const int rc = bind(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr);
    const int bind_errno = errno;
    umask(old);
    if (rc != 0) {
        close(fd);
        return refuse(strerror(bind_errno));
    }
    // What now stands at the path must be our socket, owner-only.
    if (lstat(path, &st) != 0 || !S_ISSOCK(st.st_mode) || st.st_uid != geteuid() ||
        (st.st_mode & (S_IRWXG | S_IRWXO))) {
        close(fd);
        return refuse("not an owner-only socket of this user after creation");
    }
    if (listen(fd, 4) != 0) {
        unlink(path);
        close(fd);
        return refuse(strerror(errno));
    }
    memcpy(channel_path_, path, strlen(path) + 1);
    listen_fd_ = fd;
    channel_made_.store(true);
}

void Dispatcher::close_channel()
{
    for (Client &c : clients_)
        close(c.fd);
    clients_.clear();
    if (listen_fd_ >= 0)
        close(listen_fd_);
    listen_fd_ = -1;
}

void Dispatcher::serve_clients()
{
    if (listen_fd_ >= 0) {
        for (;;) {
            int fd = accept4(listen_fd_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
            if (fd < 0)
                break;
            ucred cred{};
            socklen_t len = sizeof cred;
            if (getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &cred, &len) != 0 ||
                (cred.uid != geteuid() && cred.uid != 0)) {
                send_line(fd, "error: not this user's channel");
                close(fd);
                continue;
            }
            if (clients_.size() >= kMaxClients) {
                send_line(fd, "error: too many clients");
                close(fd);
                continue;
            }
            clients_.push_back(Client{fd, {}});
        }
    }
    for (size_t i = 0; i < clients_.size();) {
        Client &c = clients_[i];
        bool closed = false;
        char buf[1024];
        for (;;) {
            ssize_t n = recv(c.fd, buf, sizeof buf, 0);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0) {
                closed = n == 0 || errno != EAGAIN;
                break;
            }
            c.in.append(buf, static_cast<size_t>(n));
            if (c.in.size() > 2 * kMaxRequest)
                break;
        }
        size_t nl;
        while (!closed && (nl = c.in.find('\n')) != std::string::npos) {
            std::string line = c.in.substr(0, nl);
            c.in.erase(0, nl + 1);
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            std::string reply;
            if (line.size() > kMaxRequest) {
                reply = "error: request too long";
            } else if (line == "sync") {
                reply = "ok";
            } else {
                std::lock_guard<std::mutex> lk(lib_->mu);
                reply = apply_request(*lib_, line);
            }
            deliver_pending(); // the reply comes after the callbacks ran
            send_line(c.fd, reply);
        }
        if (!closed && c.in.size() > kMaxRequest) {
            send_line(c.fd, "error: request too long");
            closed = true;
        }
        if (closed) {
            close(c.fd);
            clients_.erase(clients_.begin() + static_cast<long>(i));
        } else {
            ++i;
        }
    }
}

// ---------------------------------------------------------------------------
// The thread

void Dispatcher::run_due(std::chrono::steady_clock::time_point now)
{
    while (next_due_ < schedule_.size() && schedule_[next_due_].at <= now) {
        std::string reply;
        {
            std::lock_guard<std::mutex> lk(lib_->mu);
            reply = apply_request(*lib_, schedule_[next_due_].request);
        }
        if (reply.rfind("ok", 0) != 0)
            fprintf(stderr, "libkvd: scheduled event \"%s\": %s\n", schedule_[next_due_].request.c_str(),
                    reply.c_str());
        ++next_due_;
    }
}

void Dispatcher::start(Library &lib)
{
    // A thread told to stop is let finish first (it only closes its
    // channel), so that the new channel is opened here, before the new
    // thread runs, and never by a thread that may still be opening it when
    // the process ends and takes the path away.
    if (!on_thread(thread_id_.load()))
        for (int waited = 0; alive_.load() && !want_running_.load() && waited < kIdleWaitMs; ++waited)
            sleep_ms(1);
    want_running_.store(true);
    bool expected = false;
    if (!alive_.compare_exchange_strong(expected, true)) {
        channel_reopen_.store(true); // the thread is still running: it carries on
        wake();
        return;
    }
    lib_ = &lib;
    if (!channel_made_.load())
        open_channel();
    if (!schedule_built_) {
        schedule_built_ = true;
        const auto now = std::chrono::steady_clock::now();
        for (const BoardConf &b : lib.fleet().boards)
            for (const ScheduledRequest &q : b.events.schedule)
                schedule_.push_back(Due{now + std::chrono::milliseconds(q.after_ms),
                                        std::to_string(b.number) + " " + q.request});
        std::stable_sort(schedule_.begin(), schedule_.end(),
                         [](const Due &a, const Due &b) { return a.at < b.at; });
    }
    // The thread takes no signal: the shell's handlers run on its own thread.
    sigset_t all, old;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &old);
    try {
        std::thread(&Dispatcher::run, this).detach();
    } catch (...) {
        alive_.store(false);
    }
    pthread_sigmask(SIG_SETMASK, &old, nullptr);
}

void Dispatcher::run()
{
    thread_id_.store(pthread_self());
    for (;;) {
        if (!want_running_.load()) {
            close_channel();
            {
                std::lock_guard<std::mutex> lk(queue_mu_);
                queue_.clear();
            }
            thread_id_.store(std::thread::native_handle_type{});
            alive_.store(false);
            bool expected = false;
            if (!want_running_.load() || !alive_.compare_exchange_strong(expected, true))
                return;
            thread_id_.store(pthread_self()); // restarted meanwhile: carry on
        }
        if (channel_reopen_.exchange(false) && !channel_made_.load()) {
            close_channel();
            open_channel();
        }

        int timeout = -1;
        const auto now = std::chrono::steady_clock::now();
        if (next_due_ < schedule_.size()) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(schedule_[next_due_].at - now).count();
            timeout = left < 0 ? 0 : static_cast<int>(std::min<long long>(left, 60000));
        }
        pollfd fds[2 + kMaxClients];
        nfds_t n = 0;
        fds[n++] = pollfd{wake_fds_[0], POLLIN, 0};
        if (listen_fd_ >= 0)
            fds[n++] = pollfd{listen_fd_, POLLIN, 0};
        for (const Client &c : clients_)
            fds[n++] = pollfd{c.fd, POLLIN, 0};
        poll(fds, n, timeout);
        char drain[64];
        while (read(wake_fds_[0], drain, sizeof drain) > 0) {
        }
        if (!want_running_.load())
            continue;
        run_due(std::chrono::steady_clock::now());
        deliver_pending();
        serve_clients();
    }
}

} // namespace kvdsim
