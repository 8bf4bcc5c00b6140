#pragma once

#include "platform/linux/FileDescriptor.h"

#include <filesystem>
#include <functional>
#include <string_view>

struct pw_loop;
struct spa_source;

namespace tavero {

// Tells when it may be worth a try to connect to a service that isn't there: as soon as something
// of its name appears in the folder of its socket, and, as long as a socket lies there that nobody
// answers, now and then. With neither no thread wakes. On the loop's thread only.
class ServiceWatch {
  public:
    ServiceWatch(pw_loop* loop, std::filesystem::path socket, std::function<void()> tryNow);
    ~ServiceWatch();
    ServiceWatch(const ServiceWatch&) = delete;

    // Begins to watch. Harmless if it does.
    void begin();
    // A try failed, or the connection ended: waits for the next, longer each time.
    void failed();
    // The service was there for good.
    void succeeded();

    // Where the service's socket is, from the values of the environment; empty if it has no place.
    static std::filesystem::path socketPath(std::string_view pipewireFolder,
                                            std::string_view runtimeFolder,
                                            std::string_view remote);

  private:
    void readEvents();

    pw_loop* loop_;
    std::filesystem::path socket_;
    std::function<void()> tryNow_;
    FileDescriptor inotify_;
    spa_source* events_ = nullptr;
    spa_source* timer_ = nullptr;
    int failures_ = 0;
};

} // namespace tavero
