#pragma once

// Libraries of the Mac with entry points that no header declares. Each is opened when it is first
// asked for and stays open; null if the system lacks it.
namespace tavero::PrivateSymbols {

void* ioKit();
void* ioReport();
void* networkStatistics();
void* tcc();

// The address of a symbol. Null if the library is, or lacks it.
void* find(void* library, const char* name);

// The same as a function, put where it belongs. False if there is none.
template <typename Function>
bool find(void* library, const char* name, Function*& function) {
    function = reinterpret_cast<Function*>(find(library, name));
    return function != nullptr;
}

} // namespace tavero::PrivateSymbols
