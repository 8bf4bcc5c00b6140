#pragma once

#include "platform/BundleSource.h"
#include "records/AppIdentity.h"

#include <string>
#include <string_view>

namespace tavero::AppGrouping {

// All tools that come with the developer's kit of macOS.
inline const AppIdentity developerTools{AppIdentity::Kind::tool, "Developer Tools"};

// Who an executable belongs to, by its path alone: the outermost bundle around it, macOS, or a tool
// with a name that stays the same across its versions. Any text gets an answer.
AppIdentity identity(std::string_view path);

// The name of a tool that isn't an app's or the system's: the last part of its path that is no
// version and no folder like "bin".
std::string toolName(std::string_view path);

// As a person would call it. A tool and the system are called by their id; an app by what its
// bundle says, or else by the bundle's file name. `bundles` is null on a machine without bundles.
std::string displayName(const AppIdentity& identity, BundleSource* bundles);

} // namespace tavero::AppGrouping
