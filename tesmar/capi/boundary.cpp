#include "tesmar/capi/internal/boundary.h"

#include <mutex>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

namespace tesmar::capi {
namespace {

struct Failure : std::runtime_error {
    Failure(tesmar_error code, const std::string& message)
        : std::runtime_error(message), error(code) {}
    tesmar_error error;
};

struct Owner {
    std::mutex mutex;
    std::thread::id thread; // of no thread while there is none
};

Owner& owner() {
    static auto* const instance = new Owner; // never destroyed
    return *instance;
}

// Ends with the thread, which is then no longer the owner.
struct Ownership {
    ~Ownership() {
        const std::lock_guard lock(owner().mutex);
        if (owner().thread == std::this_thread::get_id())
            owner().thread = {};
    }
    bool isClaimed = false; // the first use of a thread's variable constructs it
};
thread_local Ownership ownership;

// Without memory of the heap, which may be what is missing.
thread_local char lastMessage[256] = "";

thread_local int depth = 0;
thread_local std::vector<std::shared_ptr<void>> released;

int remember(int error, const char* message) noexcept {
    std::strncpy(lastMessage, message, sizeof lastMessage - 1);
    return error;
}

} // namespace

void fail(tesmar_error error, const std::string& message) {
    throw Failure(error, message);
}

void becomeOwner() {
    const std::lock_guard lock(owner().mutex);
    if (owner().thread != std::thread::id() && owner().thread != std::this_thread::get_id())
        fail(TESMAR_ERROR_THREAD, "another thread has called tesmar_init");
    owner().thread = std::this_thread::get_id();
    ownership.isClaimed = true;
}

void requireOwner() {
    if (ownership.isClaimed)
        return;
    const std::lock_guard lock(owner().mutex);
    require(owner().thread != std::thread::id(), "tesmar_init has not been called");
    fail(TESMAR_ERROR_THREAD, "this is not the thread that called tesmar_init");
}

int rememberError() noexcept {
    try {
        throw;
    } catch (const Failure& failure) {
        return remember(failure.error, failure.what());
    } catch (const std::bad_alloc&) {
        return remember(TESMAR_ERROR_NOMEM, "out of memory");
    } catch (const std::exception& exception) {
        return remember(TESMAR_ERROR_GENERIC, exception.what());
    } catch (...) {
        return remember(TESMAR_ERROR_GENERIC, "an exception of a callback");
    }
}

void rememberSuccess() noexcept {
    lastMessage[0] = '\0';
}

void releaseLater(std::shared_ptr<void> object) {
    released.push_back(std::move(object));
}

void reserveReleases(std::size_t count) {
    released.reserve(released.size() + count);
}

Call::Call() noexcept {
    ++depth;
}

// What is released may call functions of the interface.
Call::~Call() {
    if (depth == 1)
        while (!released.empty()) {
            const auto object = std::move(released.back());
            released.pop_back();
        }
    --depth;
}

} // namespace tesmar::capi

using namespace tesmar::capi;

const char* tesmar_error_text(int error) {
    switch (error) {
    case TESMAR_OK:
        return "no error";
    case TESMAR_ERROR_INVALID:
        return "invalid argument";
    case TESMAR_ERROR_NOMEM:
        return "out of memory";
    case TESMAR_ERROR_THREAD:
        return "called on another thread than the owner's";
    case TESMAR_ERROR_GENERIC:
        return "failed";
    default:
        return error > 0 ? "no error" : "unknown error";
    }
}

const char* tesmar_error_message() {
    return lastMessage;
}
