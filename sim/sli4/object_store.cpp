#include "sli4/object_store.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <sys/mman.h>
#include <unistd.h>

#include "kvd_sli4.h"

namespace kvdsim
{

namespace
{

using Result = ObjectStore::Result;

constexpr Result kOk{};
constexpr Result kNotFound{SLI4_STATUS_FAILED, SLI4_ADDL_OBJECT_NOT_FOUND};
constexpr Result kBadOffset{SLI4_STATUS_ILLEGAL_FIELD, SLI4_ADDL_INVALID_OFFSET};
constexpr Result kNameTooLong{SLI4_STATUS_ILLEGAL_FIELD, SLI4_ADDL_NAME_TOO_LONG};
constexpr Result kReadOnly{SLI4_STATUS_UNAUTHORIZED, SLI4_ADDL_READ_ONLY};
constexpr Result kNotDirectory{SLI4_STATUS_ILLEGAL_FIELD, SLI4_ADDL_NOT_A_DIRECTORY};
constexpr Result kIsDirectory{SLI4_STATUS_ILLEGAL_FIELD, SLI4_ADDL_IS_DIRECTORY};
constexpr Result kFull{SLI4_STATUS_FAILED, SLI4_ADDL_STORE_FULL};

// Objects can grow to what a 32-bit write offset reaches.
constexpr uint64_t kObjectMax = 0xFFFFFFFCull;

// The well-known objects a factory-fresh adapter carries, with their sizes.
struct Seed {
    const char *dir;
    const char *name;
    uint32_t size;
};
constexpr Seed kSeeds[] = {
    {"prg", "srb.prg", 262400},       {"prg", "sp_boot.prg", 131328},  {"prg", "sp_common.prg", 524544},
    {"prg", "sp_fc3.prg", 393472},    {"prg", "sp_fc4.prg", 409856},   {"prg", "sp_ntr.prg", 327936},
    {"prg", "sp_fbt.prg", 98560},     {"prg", "sp_diags.prg", 196864}, {"prg", "ulp_fc3.prg", 229632},
    {"prg", "ulp_fc4.prg", 246016},   {"prg", "ulp_ntr.prg", 213248},  {"prg", "ulp_fbt.prg", 65792},
    {"prg", "ulp_diags.prg", 131328}, {"prg", "wol.prg", 16640},       {"vpd", "fc_pf.vpd", 1024},
    {"vpd", "fc_bf.vpd", 512},        {"vpd", "fc_vf.vpd", 512},       {"vpd", "ntr_pf.vpd", 1024},
    {"vpd", "ntr_bf.vpd", 512},       {"vpd", "ntr_vf.vpd", 512},      {"vpd", "iscsi_pf.vpd", 1024},
    {"vpd", "iscsi_bf.vpd", 512},     {"vpd", "iscsi_vf.vpd", 512},    {"xrom", "fc.xrom", 262656},
    {"xrom", "ntr.xrom", 196864},     {"xrom", "iscsi.xrom", 229632},
};
constexpr uint32_t kDumpSize = 24576;

// Contents that look like what they are: a short header naming the object,
// then bytes from a generator seeded by the name (never all zeros).
std::vector<uint8_t> make_content(const std::string &path, uint32_t size)
{
    std::vector<uint8_t> v(size);
    uint64_t x = 0xcbf29ce484222325ull;
    for (char c : path)
        x = (x ^ static_cast<uint8_t>(c)) * 0x100000001b3ull;
    for (uint32_t i = 0; i < size; i += 8) {
        x ^= x << 13;
        x ^= x >> 7;
        x ^= x << 17;
        std::memcpy(v.data() + i, &x, std::min<uint32_t>(8, size - i));
    }
    const std::string head = "QMOBJ " + path;
    std::memcpy(v.data(), head.data(), std::min<size_t>(head.size(), size));
    return v;
}

// Large staging areas are backed by huge pages where the host allows it:
// a 64 MiB object then takes 32 page faults instead of 16384.
void advise_huge(std::vector<uint8_t> &v)
{
    const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t begin = (reinterpret_cast<uintptr_t>(v.data()) + page - 1) & ~(page - 1);
    const uintptr_t end = (reinterpret_cast<uintptr_t>(v.data()) + v.capacity()) & ~(page - 1);
    if (v.capacity() >= (4u << 20) && end > begin)
        (void)madvise(reinterpret_cast<void *>(begin), end - begin, MADV_HUGEPAGE);
}

} // namespace

ObjectStore::ObjectStore(const ObjectStoreConf &conf) : conf_(conf)
{
    dirs_.push_back({"prg", next_handle_++, false, {}});
    dirs_.push_back({"vpd", next_handle_++, true, {}});
    dirs_.push_back({"xrom", next_handle_++, false, {}});
    dirs_.push_back({"dbg", next_handle_++, false, {}});
    if (!conf_.dir.empty() && load_dir())
        return;
    seed(conf_);
    if (!conf_.dir.empty())
        for (const Directory &d : dirs_)
            for (const Object &o : d.objects)
                persist(d, o);
}

std::string ObjectStore::rev_for(const std::string &dir) const
{
    if (dir == "prg")
        return conf_.firmware_rev;
    if (dir == "xrom")
        return conf_.rom_rev;
    if (dir == "vpd")
        return "VPD 3.1";
    return "";
}

void ObjectStore::seed(const ObjectStoreConf &conf)
{
    for (const Seed &s : kSeeds) {
        const std::string path = std::string("/") + s.dir + "/" + s.name;
        for (Directory &d : dirs_)
            if (d.name == s.dir)
                put(d, s.name, make_content(path, s.size), rev_for(d.name));
    }
    // The image the boot code runs, reachable under a second name.
    Directory &prg = dirs_[0];
    Object &link = put(prg, "active.lnk", {}, "");
    link.type = SLI4_OBJ_TYPE_LINKED;
    link.link = prg.objects.front().handle;
    if (conf.dump)
        put(dirs_[3], "dump.bin", make_content("/dbg/dump.bin", kDumpSize), "dump 0001");
}

void ObjectStore::store_dump(std::vector<uint8_t> image)
{
    Directory &dbg = dirs_[3];
    const Object &o = put(dbg, "dump.bin", std::move(image), "dump 0002");
    if (!conf_.dir.empty())
        persist(dbg, o);
}

ObjectStore::Object &ObjectStore::put(Directory &d, const std::string &name, std::vector<uint8_t> data,
                                      const std::string &rev)
{
    auto content = std::make_shared<const std::vector<uint8_t>>(std::move(data));
    for (Object &o : d.objects) {
        if (o.name == name) {
            o.data = std::move(content);
            o.rev = rev;
            o.type = SLI4_OBJ_TYPE_NORMAL;
            return o;
        }
    }
    d.objects.push_back(Object{name, next_handle_++, SLI4_OBJ_TYPE_NORMAL, 0, rev, std::move(content)});
    return d.objects.back();
}

// Splits "/dir/name" (or "/dir", or "/") and finds what exists of it.
Result ObjectStore::resolve(std::string_view path, Path &p) const
{
    if (path.empty() || path.front() != '/')
        return kNotFound;
    path.remove_prefix(1);
    if (path.empty()) {
        p.root = true;
        return kOk;
    }
    const size_t slash = path.find('/');
    const std::string_view dir = path.substr(0, slash);
    const std::string_view base =
        slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
    if (dir.size() > kBaseNameMax || base.size() > kBaseNameMax)
        return kNameTooLong;
    if (base.find('/') != std::string_view::npos)
        return kNotDirectory;
    auto &dirs = const_cast<std::vector<Directory> &>(dirs_);
    for (Directory &d : dirs) {
        if (d.name != dir)
            continue;
        p.dir = &d;
        p.base = std::string(base);
        for (Object &o : d.objects)
            if (!base.empty() && o.name == base)
                p.object = &o;
        return kOk;
    }
    return kNotFound;
}

const ObjectStore::Object *ObjectStore::follow(const Object *o) const
{
    if (!o || o->type != SLI4_OBJ_TYPE_LINKED)
        return o;
    for (const Directory &d : dirs_)
        for (const Object &t : d.objects)
            if (t.handle == o->link && t.type != SLI4_OBJ_TYPE_LINKED)
                return &t;
    return nullptr;
}

Result ObjectStore::read(std::string_view path, uint32_t offset, std::span<uint8_t> out, uint32_t &got,
                         bool &eof) const
{
    got = 0;
    eof = false;
    Path p;
    if (Result r = resolve(path, p); !r.ok())
        return r;
    if (p.root || p.base.empty())
        return kIsDirectory;
    const Object *o = follow(p.object);
    if (!o)
        return kNotFound;
    const std::vector<uint8_t> &data = *o->data;
    if (out.empty()) {
        got = static_cast<uint32_t>(data.size());
        eof = true;
        return kOk;
    }
    if (offset > data.size())
        return kBadOffset;
    const size_t n = std::min(out.size(), data.size() - offset);
    if (n) // an empty object has no storage to copy from
        std::memcpy(out.data(), data.data() + offset, n);
    got = static_cast<uint32_t>(n);
    eof = offset + n >= data.size();
    return kOk;
}

bool ObjectStore::staging(std::string_view path) const
{
    return std::any_of(staged_.begin(), staged_.end(), [&](const Staged &s) { return s.path == path; });
}

uint64_t ObjectStore::used() const
{
    uint64_t n = 0;
    for (const Directory &d : dirs_)
        for (const Object &o : d.objects)
            n += o.data->size();
    for (const Staged &s : staged_)
        n += s.data.size();
    return n;
}

Result ObjectStore::write(std::string_view path, uint32_t offset, std::span<const uint8_t> data, bool eof,
                          uint32_t &taken)
{
    taken = 0;
    Path p;
    if (Result r = resolve(path, p); !r.ok())
        return r;
    // "/" takes a firmware image; a directory itself takes nothing.
    if (!p.root && p.base.empty())
        return kIsDirectory;
    if (p.dir && p.dir->read_only)
        return kReadOnly;
    if (p.object && p.object->type == SLI4_OBJ_TYPE_LINKED)
        return kReadOnly;

    const std::string key(path);
    auto it = std::find_if(staged_.begin(), staged_.end(), [&](const Staged &s) { return s.path == key; });
    if (offset == 0) {
        if (it == staged_.end()) {
            staged_.push_back({key, {}});
            it = staged_.end() - 1;
        }
        it->data.clear(); // a new sequence drops whatever an earlier one left
        it->writes = 0;
        // Room for all the flash left, claimed once: pages are only taken
        // as data lands, and the staged copy never moves while it grows.
        const uint64_t free = conf_.capacity > used() ? conf_.capacity - used() : 0;
        it->data.reserve(static_cast<size_t>(std::min(free, kObjectMax)));
        advise_huge(it->data);
    } else if (it == staged_.end() || offset != it->data.size()) {
        return kBadOffset;
    }
    if (it->data.size() + data.size() > kObjectMax || used() + data.size() > conf_.capacity)
        return kFull;

    // Busy once in a sequence: its Nth write, unless it is the last, is
    // taken only in part.
    size_t take = data.size();
    if (++it->writes == conf_.busy_every && !eof && take >= 8)
        take = (take / 2) & ~size_t{3};
    it->data.insert(it->data.end(), data.begin(), data.begin() + static_cast<std::ptrdiff_t>(take));
    taken = static_cast<uint32_t>(take);
    if (!eof || take != data.size())
        return kOk;

    // End of file: the staged copy replaces the object.
    std::vector<uint8_t> content = std::move(it->data);
    staged_.erase(it);
    std::string target_dir = p.root ? "prg" : p.dir->name;
    std::string target_name = p.root ? std::string(kDownloadObject).substr(5) : p.base;
    for (Directory &d : dirs_) {
        if (d.name == target_dir) {
            Object &o = put(d, target_name, std::move(content), rev_for(d.name));
            persist(d, o);
        }
    }
    return kOk;
}

Result ObjectStore::list(std::string_view path, uint32_t first, uint32_t want, std::vector<Entry> &out,
                         uint32_t &count) const
{
    count = 0;
    Path p;
    if (Result r = resolve(path, p); !r.ok())
        return r;
    std::vector<Entry> all;
    if (p.root) {
        for (const Directory &d : dirs_)
            all.push_back(
                {d.handle, SLI4_OBJ_TYPE_DIRECTORY, static_cast<uint32_t>(d.objects.size()), d.name, ""});
    } else if (p.base.empty()) {
        for (const Object &o : p.dir->objects) {
            const uint32_t info =
                o.type == SLI4_OBJ_TYPE_LINKED ? o.link : static_cast<uint32_t>(o.data->size());
            all.push_back({o.handle, o.type, info, o.name, o.rev});
        }
    } else {
        return p.object ? kNotDirectory : kNotFound;
    }
    if (want == 0) {
        count = static_cast<uint32_t>(all.size());
        return kOk;
    }
    for (size_t i = first; i < all.size() && out.size() < want; i++)
        out.push_back(all[i]);
    count = static_cast<uint32_t>(out.size());
    return kOk;
}

Result ObjectStore::remove(std::string_view path)
{
    Path p;
    if (Result r = resolve(path, p); !r.ok())
        return r;
    if (p.root || p.base.empty())
        return kIsDirectory;
    if (p.dir->read_only)
        return kReadOnly;
    const std::string key(path);
    staged_.erase(
        std::remove_if(staged_.begin(), staged_.end(), [&](const Staged &s) { return s.path == key; }),
        staged_.end());
    if (!p.object)
        return kNotFound;
    const std::string name = p.object->name;
    auto &objs = p.dir->objects;
    objs.erase(std::find_if(objs.begin(), objs.end(), [&](const Object &o) { return o.name == name; }));
    unpersist(*p.dir, name);
    return kOk;
}

// A host directory keeps one file per object: <dir>/<directory>/<name>.
// Linked objects live only in the adapter's table and are made again.
bool ObjectStore::load_dir()
{
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path root(conf_.dir);
    if (!fs::is_directory(root / "prg", ec))
        return false;
    for (Directory &d : dirs_) {
        std::vector<fs::path> files;
        for (const auto &e : fs::directory_iterator(root / d.name, ec))
            if (e.is_regular_file(ec) && !e.is_symlink(ec))
                files.push_back(e.path());
        std::sort(files.begin(), files.end());
        for (const fs::path &f : files) {
            const std::string name = f.filename().string();
            const uint64_t size = fs::file_size(f, ec);
            if (ec || name.size() > kBaseNameMax || size > kObjectMax || used() + size > conf_.capacity)
                continue;
            std::vector<uint8_t> data(size);
            std::ifstream in(f, std::ios::binary);
            if (!in.read(reinterpret_cast<char *>(data.data()), static_cast<std::streamsize>(size)))
                continue;
            put(d, name, std::move(data), rev_for(d.name));
        }
    }
    if (!dirs_[0].objects.empty()) {
        Object &link = put(dirs_[0], "active.lnk", {}, "");
        link.type = SLI4_OBJ_TYPE_LINKED;
        link.link = dirs_[0].objects.front().handle;
    }
    return true;
}

void ObjectStore::persist(const Directory &d, const Object &o) const
{
    namespace fs = std::filesystem;
    if (conf_.dir.empty() || o.type != SLI4_OBJ_TYPE_NORMAL)
        return;
    std::error_code ec;
    const fs::path dir = fs::path(conf_.dir) / d.name;
    fs::create_directories(dir, ec);
    const fs::path tmp = dir / ("." + o.name + ".new");
    {
        std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char *>(o.data->data()),
                  static_cast<std::streamsize>(o.data->size()));
        if (!out)
            return;
    }
    fs::rename(tmp, dir / o.name, ec);
}

void ObjectStore::unpersist(const Directory &d, const std::string &name) const
{
    if (conf_.dir.empty())
        return;
    std::error_code ec;
    std::filesystem::remove(std::filesystem::path(conf_.dir) / d.name / name, ec);
}

} // namespace kvdsim
