// Two copies of the library in one process, as in a host whose plug-ins each link their own.
#include "tools/drive/TemporaryDirectory.h"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

class Plugin {
  public:
    explicit Plugin(const fs::path& path) : preferences_(path.string() + ".plist") {
        fs::copy_file(PANEL_COPY, path);
        library_ = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        EXPECT_TRUE(library_) << ::dlerror();
    }
    ~Plugin() { ::dlclose(library_); }
    // Returns a hash of the picture.
    std::size_t tap(const char* identifier) const {
        using Play = std::size_t (*)(const char*, const char*);
        return reinterpret_cast<Play>(::dlsym(library_, "playCopy"))(preferences_.c_str(),
                                                                     identifier);
    }
    std::string saved() const {
        std::ifstream file(preferences_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::string preferences_;
    void* library_;
};

TEST(Copies, AreIndependent) {
    const tesmar::drive::TemporaryDirectory directory;
    const Plugin b(directory.path() / "b.so");
    {
        const Plugin a(directory.path() / "a.so");
        const auto pristine = a.tap("");
        EXPECT_EQ(b.tap(""), pristine);
        const auto changed = a.tap("textColorPicker.5");
        EXPECT_NE(changed, pristine);
        EXPECT_EQ(b.tap(""), pristine);
        EXPECT_EQ(b.saved(), "");
        EXPECT_EQ(b.tap("textColorPicker.5"), changed);
        EXPECT_EQ(a.tap("fontPicker.next"), b.tap("fontPicker.next"));
        EXPECT_EQ(a.saved(), b.saved());
    }
    // The other copy is closed now. Whether that unloads it is the compiler's choice: the unique
    // symbols of g++ keep it in memory.
    const auto before = b.saved();
    EXPECT_NE(before, "");
    b.tap("backgroundColorPicker.1");
    EXPECT_NE(b.saved(), before);
}

} // namespace
