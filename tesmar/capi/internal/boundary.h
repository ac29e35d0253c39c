// The border to C: no exception crosses it, and a call on the wrong thread returns an error.
#pragma once

#include "tesmar/capi/tesmar.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

namespace tesmar::capi {

enum class Caller { owner, anyThread };

// Ends the call with that error and text.
[[noreturn]] void fail(tesmar_error error, const std::string& message);
// Fails with TESMAR_ERROR_INVALID unless `holds`.
inline void require(bool holds, const char* message) {
    if (!holds)
        fail(TESMAR_ERROR_INVALID, message);
}

// Makes the current thread the owner; fails if another one is.
void becomeOwner();
void requireOwner();

// For the handler of a call: keeps the text of the exception that is being handled.
int rememberError() noexcept;
void rememberSuccess() noexcept;

// Keeps `object` until the outermost call on this thread ends: it may be in use further out.
void releaseLater(std::shared_ptr<void> object);
// Makes room for `count` objects, so that releaseLater() cannot fail for them.
void reserveReleases(std::size_t count);

// Between its construction and its destruction, a call of the host's runs.
class Call {
  public:
    Call() noexcept;
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
};

// Runs a function of the interface; `failed` makes its result of an error.
template <class Work, class Failed>
auto guarded(Caller caller, const Work& work, const Failed& failed) noexcept {
    const Call call;
    try {
        if (caller == Caller::owner)
            requireOwner();
        auto result = work();
        rememberSuccess();
        return result;
    } catch (...) {
        return failed(rememberError());
    }
}

// `work` returns nothing, or a number that is not negative.
template <class Work>
int guard(Caller caller, const Work& work) noexcept {
    return guarded(
        caller,
        [&]() -> int {
            if constexpr (std::is_void_v<decltype(work())>)
                return work(), TESMAR_OK;
            else
                return work();
        },
        [](int error) { return error; });
}

// `work` returns a pointer; null after an error.
template <class Work>
auto guardPointer(Caller caller, const Work& work) noexcept {
    return guarded(caller, work, [](int) { return decltype(work())(nullptr); });
}

// --- Structures that begin with their size ------------------------------------------------------

// A size that was never set would make the library read or write anywhere.
template <class T>
void requireSize(const T* given, const char* name) {
    constexpr std::size_t kMost = 4096;
    require(given && given->size > sizeof(std::size_t) && given->size <= kMost,
            (std::string(name) + ": its size is not set").c_str());
}

// What the caller gave, with 0 for members that its version lacks.
template <class T>
T read(const T* given, const char* name) {
    requireSize(given, name);
    const auto* const bytes = reinterpret_cast<const unsigned char*>(given);
    const bool isKnown = std::all_of(bytes + std::min(sizeof(T), given->size), bytes + given->size,
                                     [](unsigned char byte) { return byte == 0; });
    require(isKnown, (std::string(name) + ": has members that this library does not know").c_str());
    T value{};
    std::memcpy(&value, given, std::min(sizeof(T), given->size));
    return value;
}

// Writes the members that the caller's version has, and 0 to those that this one lacks.
template <class T>
void write(T value, T* result, const char* name) {
    requireSize(result, name);
    value.size = result->size;
    auto* const bytes = reinterpret_cast<unsigned char*>(result);
    std::memset(bytes, 0, value.size);
    std::memcpy(bytes, &value, std::min(sizeof(T), value.size));
}

} // namespace tesmar::capi
