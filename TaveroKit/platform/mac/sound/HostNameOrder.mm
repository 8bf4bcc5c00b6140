#include "sound/NameOrder.h"

#import <Foundation/Foundation.h>

namespace tavero {

namespace {

// What is not UTF-8 is no text to Foundation.
NSString* string(std::string_view text) {
    return [[NSString alloc] initWithBytes:text.data()
                                    length:text.size()
                                  encoding:NSUTF8StringEncoding];
}

} // namespace

bool localizedCaseInsensitiveLess(std::string_view a, std::string_view b) {
    @autoreleasepool {
        NSString* first = string(a);
        NSString* second = string(b);
        if (!first || !second) return a < b;
        return [first localizedCaseInsensitiveCompare:second] == NSOrderedAscending;
    }
}

} // namespace tavero
