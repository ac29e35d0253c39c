// Runs GLib's main context inside another loop, without polling: a thread waits for what the
// context waits for, and wakes that loop.
#pragma once

#include <glib.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tesmar {

class MainContextWatch {
  public:
    // `wake` is called on the thread when there is something to dispatch.
    explicit MainContextWatch(std::function<void()> wake);
    ~MainContextWatch();
    MainContextWatch(const MainContextWatch&) = delete;
    MainContextWatch& operator=(const MainContextWatch&) = delete;

    // Whether something is ready to be dispatched.
    bool isPending() const { return g_main_context_pending(nullptr) != FALSE; }
    // Dispatches what is ready.
    void dispatch();
    // Watches for more; to be called before the loop sleeps.
    void arm();

  private:
    void run();
    void interrupt();

    std::function<void()> wake_;
    int interruption_; // an eventfd that is readable while run() must not wait
    std::mutex mutex_;
    std::condition_variable armed_;
    bool isArmed_ = false;
    bool ends_ = false;
    std::vector<GPollFD> descriptors_; // the last is interruption_
    int timeout_ = -1;                 // milliseconds
    std::thread thread_;
};

} // namespace tesmar
