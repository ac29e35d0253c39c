// A host that loads and unloads a plug-in again and again. The library that the plug-in links
// stays.
#include <dlfcn.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace {

// On a thread of its own: loads the plug-in, plays a session, and unloads the plug-in, but not the
// library. Returns whether all of that worked.
bool playOnce() {
    bool isPlayed = false;
    std::thread([&] {
        void* const plugin = ::dlopen(PANEL_PLUGIN, RTLD_NOW | RTLD_LOCAL);
        ASSERT_TRUE(plugin) << ::dlerror();
        isPlayed = reinterpret_cast<bool (*)()>(::dlsym(plugin, "playSession"))();
        ::dlclose(plugin);
    }).join();
    return isPlayed && !::dlopen(PANEL_PLUGIN, RTLD_NOW | RTLD_NOLOAD);
}

long residentKiB() {
    std::ifstream statm("/proc/self/statm");
    long total = 0, resident = 0;
    statm >> total >> resident;
    return resident * ::sysconf(_SC_PAGESIZE) / 1024;
}

TEST(Reload, PluginsNeitherCrashNorGrow) {
    long after100 = 0;
    for (int i = 1; i <= 1000; ++i) {
        ASSERT_TRUE(playOnce()) << i;
        if (i == 100)
            after100 = residentKiB();
    }
    EXPECT_LT(residentKiB() - after100, 1024);
}

} // namespace
