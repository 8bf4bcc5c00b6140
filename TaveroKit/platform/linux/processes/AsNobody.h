#pragma once

#include <cstdlib>

#include <sys/prctl.h>
#include <unistd.h>

namespace tavero {

// For as long as it lives, the test may do no more than anybody, even if root runs it.
class AsNobody {
  public:
    AsNobody() {
        if (::geteuid() == 0 && ::seteuid(65534) == 0) wasRoot_ = true;
    }
    ~AsNobody() {
        if (wasRoot_ && (::seteuid(0) != 0 || ::prctl(PR_SET_DUMPABLE, 1) != 0)) std::abort();
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

  private:
    bool wasRoot_ = false;
};

} // namespace tavero
