#include "platform/mac/bluetooth/MacBluetoothCalls.h"

#import <CoreBluetooth/CoreBluetooth.h>
#import <Foundation/Foundation.h>
#import <IOBluetooth/IOBluetooth.h>

#include <utility>

// Waits for the one answer to an openConnection:.
@interface TaveroConnectWaiter : NSObject {
  @public
    std::function<void(std::int32_t)> _done;
}
- (void)connectionComplete:(IOBluetoothDevice*)device status:(IOReturn)status;
@end

@implementation TaveroConnectWaiter
- (void)connectionComplete:(IOBluetoothDevice*)device status:(IOReturn)status {
    // What is called may release this object.
    if (const auto done = std::exchange(_done, nullptr)) done(status);
}
@end

@interface TaveroBluetoothAsker : NSObject <CBCentralManagerDelegate> {
  @public
    std::function<void()> _updated;
}
@end

@implementation TaveroBluetoothAsker
- (void)centralManagerDidUpdateState:(CBCentralManager*)central {
    if (const auto updated = _updated) updated();
}
@end

namespace tavero {

namespace {

NSString* nsString(const std::string& text) { return [NSString stringWithUTF8String:text.c_str()]; }

class HostBluetoothDevice final : public MacBluetoothDevice {
  public:
    explicit HostBluetoothDevice(IOBluetoothDevice* device) : device_(device) {}
    ~HostBluetoothDevice() override {
        if (waiter_ != nil) waiter_->_done = nullptr;
    }

    bool isConnected() override { return [device_ isConnected]; }
    std::int64_t rawRSSI() override { return [device_ rawRSSI]; }

    std::int32_t openConnection(std::function<void(std::int32_t)> completed) override {
        waiter_ = [[TaveroConnectWaiter alloc] init];
        waiter_->_done = std::move(completed);
        const IOReturn result = [device_ openConnection:waiter_];
        if (result != 0) waiter_->_done = nullptr;
        return result;
    }
    std::int32_t closeConnection() override { return [device_ closeConnection]; }

  private:
    IOBluetoothDevice* device_;
    TaveroConnectWaiter* waiter_ = nil;
};

class HostBluetoothCalls final : public MacBluetoothCalls {
  public:
    ~HostBluetoothCalls() override {
        if (asker_ != nil) asker_->_updated = nullptr;
    }

    std::int64_t authorization() override {
        constexpr std::int64_t restricted = 1;
        return mayAsk() ? [CBManager authorization] : restricted;
    }

    void createCentral(std::function<void()> updated) override {
        if (asker_ != nil) asker_->_updated = nullptr;
        asker_ = [[TaveroBluetoothAsker alloc] init];
        asker_->_updated = std::move(updated);
        central_ = [[CBCentralManager alloc] initWithDelegate:asker_ queue:nil];
    }

    std::unique_ptr<MacBluetoothDevice> device(const std::string& address) override {
        @autoreleasepool {
            NSString* text = nsString(address);
            IOBluetoothDevice* device =
                text != nil ? [IOBluetoothDevice deviceWithAddressString:text] : nil;
            return device != nil ? std::make_unique<HostBluetoothDevice>(device) : nullptr;
        }
    }

    std::optional<std::string> controllerName() override {
        @autoreleasepool {
            NSString* name = [[IOBluetoothHostController defaultController] nameAsString];
            const char* text = name.UTF8String;
            return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
        }
    }

  private:
    // The system ends a program that uses Bluetooth without saying in its bundle what for.
    static bool mayAsk() {
        return [NSBundle.mainBundle
                   objectForInfoDictionaryKey:@"NSBluetoothAlwaysUsageDescription"] != nil;
    }

    TaveroBluetoothAsker* asker_ = nil;
    CBCentralManager* central_ = nil;
};

} // namespace

std::unique_ptr<MacBluetoothCalls> hostBluetoothCalls() {
    return std::make_unique<HostBluetoothCalls>();
}

} // namespace tavero
