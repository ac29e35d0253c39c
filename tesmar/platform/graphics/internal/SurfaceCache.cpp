#include "tesmar/platform/graphics/internal/SurfaceCache.h"

#include <algorithm>
#include <cxxabi.h>
#include <new>

// Of the shared library or program that contains this code.
extern "C" __attribute__((visibility("hidden"))) void* __dso_handle; // NOLINT(*-identifier*)

namespace tesmar {
namespace {

// A plain pointer, because destructors of thread-local objects may draw.
thread_local SurfaceCache* threadCache = nullptr;

void deleteCache(void* cache) {
    threadCache = nullptr;
    delete static_cast<SurfaceCache*>(cache);
}

} // namespace

SurfaceCache& SurfaceCache::ofThisThread() {
    if (!threadCache) {
        auto cache = std::make_unique<SurfaceCache>();
        // The call that compilers make for a thread-local object. It may be made again while the
        // thread's objects are being destroyed; then the new cache is the next to be deleted. After
        // them, on the main thread, it has no effect.
        if (abi::__cxa_thread_atexit(deleteCache, cache.get(), &__dso_handle) != 0)
            throw std::bad_alloc();
        threadCache = cache.release();
    }
    return *threadCache;
}

std::size_t SurfaceCache::Hash::operator()(const SurfaceKey& key) const {
    std::uint64_t hash = 14695981039346656037u; // FNV-1a over words instead of bytes
    const auto add = [&hash](std::int32_t word) {
        hash = (hash ^ static_cast<std::uint32_t>(word)) * 1099511628211u;
    };
    std::for_each(key.shape.begin(), key.shape.end(), add);
    add(key.tileX);
    add(key.tileY);
    return static_cast<std::size_t>(hash ^ (hash >> 32));
}

bool SurfaceCache::Equal::same(const SurfaceKey& a, const SurfaceKey& b) {
    return a.tileX == b.tileX && a.tileY == b.tileY && std::ranges::equal(a.shape, b.shape);
}

cairo_surface_t* SurfaceCache::find(const SurfaceKey& key) {
    const auto found = index_.find(key);
    if (found == index_.end())
        return nullptr;
    entries_.splice(entries_.begin(), entries_, *found);
    return entries_.front().surface.get();
}

cairo_surface_t* SurfaceCache::insert(const SurfaceKey& key, SurfacePtr surface) {
    const auto bytes = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get())) *
                       static_cast<std::size_t>(cairo_image_surface_get_height(surface.get()));
    entries_.push_front(
        {{key.shape.begin(), key.shape.end()}, key.tileX, key.tileY, std::move(surface), bytes});
    try {
        index_.insert(entries_.begin());
    } catch (...) {
        entries_.pop_front(); // it is not in the index
        throw;
    }
    bytes_ += bytes;
    evict();
    return entries_.front().surface.get();
}

void SurfaceCache::evict() {
    while (bytes_ > kCapacity && entries_.size() > 1) {
        const auto oldest = std::prev(entries_.end());
        bytes_ -= oldest->bytes;
        index_.erase(oldest);
        entries_.erase(oldest);
    }
}

} // namespace tesmar
