// The object store of an SLI-4 adapter of interface type 2: a small file
// system in the adapter's flash holding firmware ("/prg"), VPD images
// ("/vpd"), expansion ROMs ("/xrom") and diagnostic dumps ("/dbg").
//
// Paths are "/dir/name": the root holds only directories, directories hold
// only objects. Writes are staged: a write at offset 0 opens a new staging
// copy of the object, each following write must continue exactly where the
// staged data ends, and only the write carrying end-of-file replaces the
// object. A write sequence that stops early leaves the old object as it
// was. Like real firmware under load, the store takes only part of one
// write of each sequence (its Nth, when that is not the last); the host
// sends the rest again.
//
// When given a host directory, the store keeps its objects there, so that
// they outlive the process: committed writes and deletes go through to it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kvdsim
{

struct ObjectStoreConf {
    bool dump = true;                     // "/dbg/dump.bin" present at start
    std::string dir;                      // host directory that keeps the store (empty: memory only)
    uint64_t capacity = 256ull << 20;     // bytes of flash for objects and staged writes
    uint32_t busy_every = 8;              // the Nth write of a sequence is taken in part (0: never)
    std::string firmware_rev = "0.0.0.0"; // revision name of the firmware objects
    std::string rom_rev = "0.0.0.0";      // revision name of the expansion ROMs
};

class ObjectStore
{
  public:
    // Completion of a request: status and additional status as the firmware
    // writes them into the response header (both 0 on success).
    struct Result {
        uint8_t status = 0;
        uint8_t additional = 0;
        bool ok() const
        {
            return status == 0;
        }
    };

    struct Entry {
        uint32_t handle = 0;
        uint8_t type = 0;  // 0 normal, 1 directory, 2 linked
        uint32_t info = 0; // bytes, elements or the linked handle
        std::string name;  // base name
        std::string rev;
    };

    // Longest base name a list entry carries (its 24-byte field, NUL included).
    static constexpr size_t kBaseNameMax = 23;
    static constexpr size_t kRevNameMax = 127;
    // Paths of written firmware images land here.
    static constexpr const char *kDownloadObject = "/prg/download.grp";

    explicit ObjectStore(const ObjectStoreConf &conf);

    // Reads from `offset`: `out.size()` bytes at most, fewer at the end.
    // An empty `out` asks for the size only: `got` is then the object's size.
    Result read(std::string_view path, uint32_t offset, std::span<uint8_t> out, uint32_t &got,
                bool &eof) const;

    // Offers `data` at `offset`; `taken` is how much the store accepted.
    Result write(std::string_view path, uint32_t offset, std::span<const uint8_t> data, bool eof,
                 uint32_t &taken);

    // `want` 0: `count` is the number of entries of the directory. Otherwise
    // up to `want` entries from index `first` go to `out`.
    Result list(std::string_view path, uint32_t first, uint32_t want, std::vector<Entry> &out,
                uint32_t &count) const;

    Result remove(std::string_view path);

    // A forced diagnostic dump of the board: the image becomes
    // "/dbg/dump.bin", replacing an earlier dump.
    void store_dump(std::vector<uint8_t> image);

    // Bytes the objects and staged writes hold.
    uint64_t used() const;
    // True while a write sequence on `path` waits for its end-of-file.
    bool staging(std::string_view path) const;

  private:
    struct Object {
        std::string name;
        uint32_t handle = 0;
        uint8_t type = 0;
        uint32_t link = 0; // handle of the target of a linked object
        std::string rev;
        std::shared_ptr<const std::vector<uint8_t>> data;
    };
    struct Directory {
        std::string name;
        uint32_t handle = 0;
        bool read_only = false;
        std::vector<Object> objects;
    };
    struct Staged {
        std::string path;
        std::vector<uint8_t> data;
        uint32_t writes = 0; // requests of this sequence so far
    };
    struct Path {
        Directory *dir = nullptr;
        Object *object = nullptr;
        std::string base; // object name within dir
        bool root = false;
    };

    Result resolve(std::string_view path, Path &p) const;
    const Object *follow(const Object *o) const;
    Object &put(Directory &d, const std::string &name, std::vector<uint8_t> data, const std::string &rev);
    void seed(const ObjectStoreConf &conf);
    bool load_dir();
    void persist(const Directory &d, const Object &o) const;
    void unpersist(const Directory &d, const std::string &name) const;
    std::string rev_for(const std::string &dir) const;

    ObjectStoreConf conf_;
    std::vector<Directory> dirs_;
    std::vector<Staged> staged_;
    uint32_t next_handle_ = 0x10;
};

} // namespace kvdsim
