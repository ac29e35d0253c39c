#include "tesmar/platform/ui/internal/FrameTask.h"

#include "tesmar/platform/foundation/NSRunLoop.h"

#include <utility>

namespace tesmar {

// Outlives the task while a frame is running, and the work with it.
class FrameTask::Client : public FrameClient {
  public:
    explicit Client(std::function<void(double)> work) : work_(std::move(work)) {}
    void stop() { running_ = false; }

    bool frame(double now) override {
        if (running_)
            work_(now);
        return running_;
    }

  private:
    std::function<void(double)> work_;
    bool running_ = true;
};

void FrameTask::start(std::function<void(double)> work) {
    const auto client = client_ ? client_ : std::make_shared<Client>(std::move(work));
    NSRunLoop::mainRunLoop().addFrameClient(client);
    client_ = client;
}

void FrameTask::stop() {
    if (client_)
        std::exchange(client_, nullptr)->stop();
}

} // namespace tesmar
