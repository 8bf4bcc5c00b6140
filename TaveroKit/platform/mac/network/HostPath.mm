#include "platform/mac/Host.h"

#import <Foundation/Foundation.h>
#import <Network/Network.h>

#include <utility>

namespace tavero {

namespace {

PathState state(nw_path_t path) {
    return {
        .isSatisfied = nw_path_get_status(path) == nw_path_status_satisfied,
        .usesWiFi = nw_path_uses_interface_type(path, nw_interface_type_wifi),
        .usesWiredEthernet = nw_path_uses_interface_type(path, nw_interface_type_wired),
        .usesCellular = nw_path_uses_interface_type(path, nw_interface_type_cellular),
    };
}

class HostPath : public PathMonitor {
  public:
    ~HostPath() override {
        if (monitor_ != nil) nw_path_monitor_cancel(monitor_);
    }

    void start(std::function<void(const PathState&)> changed) override {
        monitor_ = nw_path_monitor_create();
        if (monitor_ == nil) return;
        nw_path_monitor_set_update_handler(monitor_, ^(nw_path_t path) {
          changed(state(path));
        });
        nw_path_monitor_set_queue(
            monitor_,
            dispatch_queue_create("com.brimfold.tavero.network-path", DISPATCH_QUEUE_SERIAL));
        nw_path_monitor_start(monitor_);
    }

  private:
    nw_path_monitor_t monitor_ = nil;
};

} // namespace

std::unique_ptr<PathMonitor> hostPath() { return std::make_unique<HostPath>(); }

} // namespace tavero
