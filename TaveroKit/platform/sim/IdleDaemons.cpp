#include "platform/sim/IdleDaemons.h"

#include <array>

namespace tavero {

namespace {

constexpr std::array systemDaemons = std::to_array<IdleDaemon>({
    {"/usr/libexec/logd", 0.004, 28, 5},
    {"/usr/libexec/UserEventAgent"},
    {"/System/Library/PrivateFrameworks/Uninstall.framework/Resources/uninstalld"},
    {"/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/FSEvents.framework/"
     "Versions/A/Support/fseventsd",
     0.002, 12, 9},
    {"/System/Library/PrivateFrameworks/MediaRemote.framework/Support/mediaremoted", 0.001},
    {"/usr/sbin/systemstats", 0.001, 14},
    {"/usr/libexec/configd", 0.001, 8, 8},
    {"/System/Library/CoreServices/powerd.bundle/powerd", 0.002},
    {"/usr/libexec/keybagd"},
    {"/usr/libexec/watchdogd"},
    {"/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/Metadata.framework/"
     "Versions/A/Support/mds",
     0.005, 48, 7},
    {"/usr/libexec/kernelmanagerd"},
    {"/usr/libexec/diskarbitrationd"},
    {"/usr/sbin/syslogd"},
    {"/usr/libexec/thermalmonitord", 0.002},
    {"/usr/libexec/opendirectoryd", 0.001, 14, 8},
    {"/System/Library/CoreServices/launchservicesd", 0.001, 12},
    {"/usr/libexec/timed"},
    {"/usr/sbin/securityd"},
    {"/System/Library/CoreServices/loginwindow.app/Contents/MacOS/loginwindow", 0.001, 42, 6},
    {"/System/Library/PrivateFrameworks/SkyLight.framework/Resources/WindowServer", 0.085, 420, 22},
    {"/usr/sbin/distnoted"},
    {"/usr/sbin/cfprefsd", 0.001},
    {"/usr/libexec/runningboardd", 0.004, 10, 5},
    {"/System/Library/PrivateFrameworks/CoreDuetContext.framework/Resources/contextstored"},
    {"/usr/sbin/coreaudiod", 0.012, 34, 10},
    {"/usr/sbin/mDNSResponder", 0.002, 10, 4},
    {"/usr/libexec/airportd", 0.002, 16, 7},
    {"/usr/sbin/bluetoothd", 0.003, 18, 12},
    {"/usr/libexec/locationd", 0.001, 15, 6},
    {"/usr/libexec/syspolicyd", 0.001, 20},
    {"/usr/libexec/tccd"},
    {"/usr/libexec/trustd", 0.001, 8},
    {"/usr/libexec/symptomsd", 0.001, 14, 5},
    {"/usr/libexec/mobileassetd", 0.0005, 20},
    {"/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/Metadata.framework/"
     "Versions/A/Support/mds_stores",
     0.008, 180, 6},
});

constexpr std::array userDaemons = std::to_array<IdleDaemon>({
    {"/usr/sbin/cfprefsd", 0.001, 7},
    {"/usr/libexec/UserEventAgent", 0.0005, 9},
    {"/usr/sbin/distnoted", 0.001, 5},
    {"/usr/libexec/lsd", 0.0005, 11},
    {"/usr/libexec/trustd", 0.001, 9},
    {"/usr/libexec/secd", 0.0005, 14},
    {"/System/Library/PrivateFrameworks/TCC.framework/Support/tccd", 0.0005, 8},
    {"/System/Library/PrivateFrameworks/CloudKitDaemon.framework/Support/cloudd", 0.002, 38, 6},
    {"/System/Library/PrivateFrameworks/CloudDocsDaemon.framework/Versions/A/Support/bird", 0.001,
     24, 5},
    {"/usr/libexec/nsurlsessiond", 0.001, 20, 6},
    {"/usr/libexec/sharingd", 0.002, 26, 5},
    {"/usr/libexec/rapportd", 0.001, 14},
    {"/System/Library/PrivateFrameworks/IDS.framework/identityservicesd.app/Contents/MacOS/"
     "identityservicesd",
     0.001, 22, 5},
    {"/System/Library/PrivateFrameworks/TelephonyUtilities.framework/callservicesd", 0.0005, 16},
    {"/usr/libexec/knowledge-agent", 0.0005, 24},
    {"/System/Library/PrivateFrameworks/CoreSuggestions.framework/Versions/A/Support/suggestd",
     0.001, 32},
    {"/System/Library/PrivateFrameworks/PhotoAnalysis.framework/Versions/A/Support/photoanalysisd",
     0.0005, 40, 4},
    {"/System/Library/PrivateFrameworks/PhotoLibraryServices.framework/Versions/A/Support/"
     "photolibraryd",
     0.0005, 28},
    {"/System/Library/Frameworks/CoreSpotlight.framework/corespotlightd", 0.003, 46, 5},
    {"/usr/libexec/pboard", 0.0005, 5},
    {"/usr/sbin/usernoted", 0.001, 15},
    {"/usr/libexec/siriknowledged", 0.0005, 18},
    {"/System/Library/Frameworks/WebKit.framework/Versions/A/XPCServices/"
     "com.apple.WebKit.WebContent.xpc/Contents/MacOS/com.apple.WebKit.WebContent",
     0.004, 150, 9},
    {"/System/Library/Frameworks/WebKit.framework/Versions/A/XPCServices/"
     "com.apple.WebKit.Networking.xpc/Contents/MacOS/com.apple.WebKit.Networking",
     0.001, 34, 6},
});

} // namespace

std::span<const IdleDaemon> idleSystemDaemons() { return systemDaemons; }

std::span<const IdleDaemon> idleUserDaemons() { return userDaemons; }

} // namespace tavero
