// The layouts that the decoders rely on, held against the system's own declarations. No code.

#include "platform/mac/SwapUsage.h"
#include "platform/mac/VMStatistics.h"

#include <cstddef>
#include <libproc.h>
#include <mach/mach.h>
#include <net/if.h>
#include <net/route.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/sysctl.h>

namespace tavero {

// CPU ticks.
static_assert(CPU_STATE_MAX == 4 && CPU_STATE_USER == 0 && CPU_STATE_SYSTEM == 1 &&
              CPU_STATE_IDLE == 2 && CPU_STATE_NICE == 3);
static_assert(sizeof(integer_t) == sizeof(std::int32_t));

// Page counts.
constexpr std::size_t byteOffset(VMWord word) {
    return static_cast<std::size_t>(word) * sizeof(std::uint32_t);
}
static_assert(sizeof(vm_statistics64) <= sizeof(VMStatistics));
static_assert(offsetof(vm_statistics64, wire_count) == byteOffset(VMWord::wire));
static_assert(offsetof(vm_statistics64, purgeable_count) == byteOffset(VMWord::purgeable));
static_assert(offsetof(vm_statistics64, compressor_page_count) == byteOffset(VMWord::compressor));
static_assert(offsetof(vm_statistics64, external_page_count) == byteOffset(VMWord::external));
static_assert(offsetof(vm_statistics64, internal_page_count) == byteOffset(VMWord::internal));

// Swap.
static_assert(sizeof(xsw_usage) == sizeof(SwapUsage) && sizeof(SwapUsage) == 32);
static_assert(offsetof(xsw_usage, xsu_total) == offsetof(SwapUsage, total));
static_assert(offsetof(xsw_usage, xsu_avail) == offsetof(SwapUsage, available));
static_assert(offsetof(xsw_usage, xsu_used) == offsetof(SwapUsage, used));
static_assert(offsetof(xsw_usage, xsu_pagesize) == offsetof(SwapUsage, pageSize));

// Interfaces. An ifmibdata has its if_data64 after 52 bytes; <net/if_mib.h> declares it.
static_assert(CTL_NET == 4 && PF_ROUTE == 17 && PF_LINK == 18);
static_assert(NET_RT_IFLIST2 == 6 && RTM_IFINFO2 == 18);
static_assert(sizeof(if_msghdr2) == 160 && offsetof(if_msghdr2, ifm_msglen) == 0);
static_assert(offsetof(if_msghdr2, ifm_type) == 3 && offsetof(if_msghdr2, ifm_index) == 12);
static_assert(offsetof(if_msghdr2, ifm_data) == 32 && sizeof(if_data64) == 128);
static_assert(32 + offsetof(if_data64, ifi_ibytes) == 96);
static_assert(32 + offsetof(if_data64, ifi_obytes) == 104);
static_assert(52 + offsetof(if_data64, ifi_ibytes) == 116);
static_assert(52 + offsetof(if_data64, ifi_obytes) == 124);

// Processes.
static_assert(RUSAGE_INFO_V4 == 4 && sizeof(rusage_info_v4) == 296);
static_assert(offsetof(rusage_info_v4, ri_user_time) == 16);
static_assert(offsetof(rusage_info_v4, ri_system_time) == 24);
static_assert(offsetof(rusage_info_v4, ri_phys_footprint) == 72);
static_assert(offsetof(rusage_info_v4, ri_proc_start_abstime) == 80);
static_assert(offsetof(rusage_info_v4, ri_diskio_bytesread) == 144);
static_assert(offsetof(rusage_info_v4, ri_diskio_byteswritten) == 152);
static_assert(PROC_PIDTASKINFO == 4 && sizeof(proc_taskinfo) == 96);
static_assert(offsetof(proc_taskinfo, pti_threadnum) == 84);
static_assert(PROC_PIDPATHINFO_MAXSIZE == 4096);

} // namespace tavero
