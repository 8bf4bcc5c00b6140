#include "window/ToastModel.h"

namespace tavero {

ToastModel::ToastModel(const Monitor& monitor) {
    const auto follow = [this, &monitor] {
        text_ = QString::fromStdString(monitor.toast().value_or(std::string()));
    };
    connect(&monitor, &Monitor::toastChanged, this, follow);
    follow();
}

} // namespace tavero
