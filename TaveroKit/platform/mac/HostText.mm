#include "apps/Text.h"

#import <Foundation/Foundation.h>

namespace tavero {

std::string lowerCase(std::string_view text) {
    @autoreleasepool {
        // What is not UTF-8 is no text to Foundation; it stays as it is.
        NSString* string = [[NSString alloc] initWithBytes:text.data()
                                                    length:text.size()
                                                  encoding:NSUTF8StringEncoding];
        const char* lower = string.lowercaseString.UTF8String;
        return lower ? std::string(lower) : std::string(text);
    }
}

} // namespace tavero
