// A cache of rendered shapes and images, one for each thread.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <list>
#include <memory>
#include <span>
#include <unordered_set>
#include <vector>

namespace tesmar {

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using SurfacePtr = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

// `shape` lists everything that the pixels depend on: the kind of shape, its size and its position
// within a pixel. Large shapes are cached in tiles.
struct SurfaceKey {
    std::span<const std::int32_t> shape;
    std::int32_t tileX = 0;
    std::int32_t tileY = 0;
};

class SurfaceCache {
  public:
    static constexpr std::size_t kCapacity = 8 * 1024 * 1024; // bytes of pixels

    // Deleted when the thread ends; that of the main thread never. Destructors of static and
    // thread-local objects may use it too.
    static SurfaceCache& ofThisThread();

    // Null if there is none. Owned by the cache, and valid until the next insert. Allocates
    // nothing.
    cairo_surface_t* find(const SurfaceKey& key);
    // Evicts the least recently used surfaces when the capacity is exceeded, but never the new one,
    // which is returned as find() does.
    cairo_surface_t* insert(const SurfaceKey& key, SurfacePtr surface);

  private:
    struct Entry {
        std::vector<std::int32_t> shape;
        std::int32_t tileX;
        std::int32_t tileY;
        SurfacePtr surface;
        std::size_t bytes;
        SurfaceKey key() const { return {shape, tileX, tileY}; }
    };
    using Entries = std::list<Entry>; // most recently used first
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const SurfaceKey& key) const;
        std::size_t operator()(Entries::iterator entry) const { return (*this)(entry->key()); }
    };
    struct Equal {
        using is_transparent = void;
        static SurfaceKey keyOf(const SurfaceKey& key) { return key; }
        static SurfaceKey keyOf(Entries::iterator entry) { return entry->key(); }
        template <class A, class B>
        bool operator()(const A& a, const B& b) const {
            return same(keyOf(a), keyOf(b));
        }
        static bool same(const SurfaceKey& a, const SurfaceKey& b);
    };

    void evict();

    Entries entries_;
    std::unordered_set<Entries::iterator, Hash, Equal> index_;
    std::size_t bytes_ = 0;
};

} // namespace tesmar
