// Two copies of the library in one process, as two plug-ins of one host bring them along.
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class Plugin {
  public:
    explicit Plugin(const fs::path& path) : preferences_(path.string() + ".plist") {
        fs::copy_file(PANEL_COPY, path);
        library_ = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!library_)
            throw std::runtime_error(::dlerror());
    }
    ~Plugin() { ::dlclose(library_); }
    // As pictures, which EXPECT_EQ would print.
    std::size_t tap(const char* identifier) const {
        const auto play = reinterpret_cast<std::string (*)(const char*, const char*)>(
            ::dlsym(library_, "playCopy"));
        return std::hash<std::string>()(play(preferences_.c_str(), identifier));
    }
    std::string saved() const {
        std::ifstream file(preferences_, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

  private:
    std::string preferences_;
    void* library_;
};

TEST(Copies, DoNotDisturbOneAnother) {
    const fs::path directory =
        fs::temp_directory_path() / ("tesmar-copies-" + std::to_string(::getpid()));
    fs::create_directories(directory);
    {
        const Plugin b(directory / "b.so");
        {
            const Plugin a(directory / "a.so");
            const auto pristine = a.tap("");
            EXPECT_EQ(b.tap(""), pristine);
            const auto changed = a.tap("textColorPicker.5");
            EXPECT_NE(changed, pristine);
            EXPECT_EQ(b.tap(""), pristine);
            EXPECT_EQ(b.saved(), "");
            EXPECT_EQ(b.tap("textColorPicker.5"), changed);
            EXPECT_EQ(a.tap("fontPicker.next"), b.tap("fontPicker.next"));
            EXPECT_EQ(a.saved(), b.saved());
            EXPECT_NE(a.saved(), "");
        }
        const auto before = b.saved(); // the other has been unloaded
        b.tap("backgroundColorPicker.1");
        EXPECT_NE(b.saved(), before);
    }
    fs::remove_all(directory);
}

} // namespace
