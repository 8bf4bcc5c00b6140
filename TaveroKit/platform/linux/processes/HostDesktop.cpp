#include "platform/linux/processes/HostDesktop.h"

#include "platform/linux/Environment.h"
#include "platform/linux/processes/DesktopFolders.h"

namespace tavero {

std::vector<std::string> hostApplicationFolders() {
    return applicationFolders(environmentVariable("HOME"), environmentVariable("XDG_DATA_HOME"),
                              environmentVariable("XDG_DATA_DIRS"));
}

std::string hostLocale() {
    return std::string(localeOfMessages(environmentVariable("LC_ALL"),
                                        environmentVariable("LC_MESSAGES"),
                                        environmentVariable("LANG")));
}

} // namespace tavero
