#pragma once

#include "platform/mac/PropertyValue.h"

#include <functional>
#include <optional>
#include <string>

namespace tavero {

// The Mac's statistics service for network connections: the private framework NetworkStatistics,
// which may be missing. Its callbacks come on a serial queue of ours.
class NetworkStatistics {
  public:
    using Source = void*; // one connection

    virtual ~NetworkStatistics() = default;

    // Opens the framework. False if that or a function that is called below is missing; then
    // nothing else may be called.
    virtual bool open() = 0;
    // What an exported constant says: the text of a dictionary's key. Absent if it is missing.
    virtual std::optional<std::string> constant(const char* name) = 0;

    // NStatManagerCreate. `added` is called with each new source. False if there is no manager.
    virtual bool create(std::function<void(Source)> added) = 0;
    virtual void addAllTCP() = 0; // NStatManagerAddAllTCP
    virtual void addAllUDP() = 0; // NStatManagerAddAllUDP

    // Called with what the service tells under the constants that were asked for.
    using DictionaryBlock = std::function<void(const PropertyMap&)>;
    // NStatSourceSetDescriptionBlock, NStatSourceSetCountsBlock, NStatSourceSetRemovedBlock
    virtual void setDescriptionBlock(Source source, DictionaryBlock block) = 0;
    virtual void setCountsBlock(Source source, DictionaryBlock block) = 0;
    virtual void setRemovedBlock(Source source, std::function<void()> block) = 0;

    virtual void queryDescription(Source source) = 0;             // NStatSourceQueryDescription
    virtual void queryAllSources(std::function<void()> done) = 0; // NStatManagerQueryAllSources
};

} // namespace tavero
