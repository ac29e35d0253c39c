// Work that is repeated at every frame of the main run loop. Main thread only.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <functional>

namespace tesmar {

// Owned by the object that does the work; destroying it stops the work.
class FrameTask {
  public:
    FrameTask() = default;
    ~FrameTask() { stop(); }
    FrameTask(const FrameTask&) = delete;
    FrameTask& operator=(const FrameTask&) = delete;

    bool isRunning() const { return client_ != nullptr; }
    // Calls `work` with the run loop's time, in seconds, at every frame from the next one on, until
    // stop(). `work` may stop or destroy this task. Does nothing while the task is running. Throws
    // std::bad_alloc, and changes nothing, when allocation fails.
    void start(std::function<void(double now)> work);
    void stop();

  private:
    class Client;

    Ref<Client> client_;
};

} // namespace tesmar
