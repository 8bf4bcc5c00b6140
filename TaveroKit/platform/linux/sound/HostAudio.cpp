#include "platform/linux/processes/HostDesktop.h"
#include "platform/linux/processes/LinuxAudioProcesses.h"
#include "platform/linux/sound/LinuxAudio.h"

#include <unistd.h>

namespace tavero {

AudioSystem hostAudio() {
    return linuxAudio("/", std::make_shared<LinuxAudioProcesses>("/", hostApplicationFolders(),
                                                                 ::getpid(), hostLocale()));
}

} // namespace tavero
