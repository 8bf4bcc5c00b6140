#include "platform/mac/Host.h"

#include "platform/mac/HostProperties.h"
#include "platform/mac/PrivateSymbols.h"

#import <Foundation/Foundation.h>

#include <dispatch/dispatch.h>

#include <utility>

namespace tavero {

namespace {

class HostNetworkStatistics : public NetworkStatistics {
  public:
    bool open() override {
        return find(create_, "NStatManagerCreate") && find(addAllTCP_, "NStatManagerAddAllTCP") &&
               find(addAllUDP_, "NStatManagerAddAllUDP") &&
               find(setDescriptionBlock_, "NStatSourceSetDescriptionBlock") &&
               find(setCountsBlock_, "NStatSourceSetCountsBlock") &&
               find(setRemovedBlock_, "NStatSourceSetRemovedBlock") &&
               find(queryDescription_, "NStatSourceQueryDescription") &&
               find(queryAllSources_, "NStatManagerQueryAllSources");
    }

    std::optional<std::string> constant(const char* name) override {
        // The symbol is the variable that holds the text.
        const auto* variable =
            static_cast<const CFStringRef*>(PrivateSymbols::find(library_, name));
        if (variable == nullptr || *variable == nullptr) return std::nullopt;
        const id value = (__bridge id)(*variable);
        if (![value isKindOfClass:NSString.class]) return std::nullopt;
        const char* text = static_cast<NSString*>(value).UTF8String;
        if (text == nullptr) return std::nullopt;
        [keys_ addObject:static_cast<NSString*>(value)];
        return text;
    }

    // The manager is never released: it serves for the life of the program.
    bool create(std::function<void(Source)> added) override {
        manager_ = create_(kCFAllocatorDefault, queue_, ^(void* source) {
          added(source);
        });
        return manager_ != nullptr;
    }
    void addAllTCP() override { addAllTCP_(manager_); }
    void addAllUDP() override { addAllUDP_(manager_); }

    void setDescriptionBlock(Source source, DictionaryBlock block) override {
        setDescriptionBlock_(source, dictionaryBlock(std::move(block)));
    }
    void setCountsBlock(Source source, DictionaryBlock block) override {
        setCountsBlock_(source, dictionaryBlock(std::move(block)));
    }
    void setRemovedBlock(Source source, std::function<void()> block) override {
        setRemovedBlock_(source, ^{
          block();
        });
    }

    void queryDescription(Source source) override { queryDescription_(source); }

    void queryAllSources(std::function<void()> done) override {
        const dispatch_queue_t queue = queue_;
        queryAllSources_(manager_, ^{
          // Behind the counts that may still stand in the queue.
          dispatch_async(queue, ^{
            done();
          });
        });
    }

  private:
    using Block = void (^)(CFDictionaryRef);

    // The service tells far more than is wanted.
    Block dictionaryBlock(DictionaryBlock block) const {
        NSArray<NSString*>* keys = keys_;
        return ^(CFDictionaryRef dictionary) {
          @autoreleasepool {
              NSMutableDictionary* values = [NSMutableDictionary dictionary];
              for (NSString* key in keys) values[key] = ((__bridge NSDictionary*)dictionary)[key];
              block(propertyMap(values));
          }
        };
    }

    template <typename Function>
    bool find(Function*& function, const char* name) {
        return PrivateSymbols::find(library_, name, function);
    }

    void* library_ = PrivateSymbols::networkStatistics();
    void* manager_ = nullptr;
    NSMutableArray<NSString*>* keys_ = [NSMutableArray array]; // complete before the first source
    dispatch_queue_t queue_ =
        dispatch_queue_create("com.brimfold.tavero.network-usage", DISPATCH_QUEUE_SERIAL);

    // The framework declares none of them. Only the first argument of the block is sure to be
    // there.
    void* (*create_)(CFAllocatorRef, dispatch_queue_t, void (^)(void* source)) = nullptr;
    void (*addAllTCP_)(void* manager) = nullptr;
    void (*addAllUDP_)(void* manager) = nullptr;
    void (*setDescriptionBlock_)(void* source, Block) = nullptr;
    void (*setCountsBlock_)(void* source, Block) = nullptr;
    void (*setRemovedBlock_)(void* source, void (^)()) = nullptr;
    void (*queryDescription_)(void* source) = nullptr;
    void (*queryAllSources_)(void* manager, void (^)()) = nullptr;
};

} // namespace

std::shared_ptr<NetworkStatistics> hostNetworkStatistics() {
    return std::make_shared<HostNetworkStatistics>();
}

} // namespace tavero
