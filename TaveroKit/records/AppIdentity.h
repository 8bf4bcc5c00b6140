#pragma once

#include <compare>
#include <functional>
#include <string>

namespace tavero {

// Who a process belongs to: the key of everything that is kept per app.
struct AppIdentity {
    enum class Kind { app, system, tool };

    Kind kind = Kind::tool;
    std::string id; // the bundle path for an app, a name otherwise

    // The one identity of all processes of the operating system.
    static const AppIdentity system;

    auto operator<=>(const AppIdentity&) const = default;
};

inline const AppIdentity AppIdentity::system{AppIdentity::Kind::system, "macOS System"};

} // namespace tavero

namespace std { // spelled out, since Qt's moc can't read `struct std::hash`

template <>
struct hash<tavero::AppIdentity> {
    size_t operator()(const tavero::AppIdentity& identity) const noexcept {
        return hash<string>{}(identity.id) * 3 + static_cast<size_t>(identity.kind);
    }
};

} // namespace std
