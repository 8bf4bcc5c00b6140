#include "history/HistoryStore.h"

#import <Foundation/Foundation.h>

namespace tavero {

std::optional<std::filesystem::path> HistoryStore::defaultURL() {
    @autoreleasepool {
        NSArray<NSURL*>* folders =
            [NSFileManager.defaultManager URLsForDirectory:NSApplicationSupportDirectory
                                                 inDomains:NSUserDomainMask];
        for (NSURL* folder in folders)
            if (const char* path = folder.path.UTF8String)
                return std::filesystem::path(path) / "Tavero/history.sqlite";
        return std::nullopt;
    }
}

} // namespace tavero
