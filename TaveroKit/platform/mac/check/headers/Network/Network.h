// The part of the Network framework that Tavero uses, declared for the check.
#pragma once

#include <dispatch/dispatch.h>
#include <os/object.h>
#include <stdbool.h>

OS_OBJECT_DECL(nw_path);
OS_OBJECT_DECL(nw_path_monitor);

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    nw_path_status_invalid = 0,
    nw_path_status_satisfied = 1,
    nw_path_status_unsatisfied = 2,
    nw_path_status_satisfiable = 3,
} nw_path_status_t;

typedef enum {
    nw_interface_type_other = 0,
    nw_interface_type_wifi = 1,
    nw_interface_type_cellular = 2,
    nw_interface_type_wired = 3,
    nw_interface_type_loopback = 4,
} nw_interface_type_t;

typedef void (^nw_path_monitor_update_handler_t)(nw_path_t path);

nw_path_status_t nw_path_get_status(nw_path_t path);
bool nw_path_uses_interface_type(nw_path_t path, nw_interface_type_t interface_type);

nw_path_monitor_t nw_path_monitor_create(void) __attribute__((ns_returns_retained));
void nw_path_monitor_set_update_handler(nw_path_monitor_t monitor,
                                        nw_path_monitor_update_handler_t update_handler);
void nw_path_monitor_set_queue(nw_path_monitor_t monitor, dispatch_queue_t queue);
void nw_path_monitor_start(nw_path_monitor_t monitor);
void nw_path_monitor_cancel(nw_path_monitor_t monitor);

#ifdef __cplusplus
}
#endif
