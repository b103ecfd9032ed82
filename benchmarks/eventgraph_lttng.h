#undef LTTNG_UST_TRACEPOINT_PROVIDER
#define LTTNG_UST_TRACEPOINT_PROVIDER kxui_bench

#undef LTTNG_UST_TRACEPOINT_INCLUDE
#define LTTNG_UST_TRACEPOINT_INCLUDE "./eventgraph_lttng.h"

#if !defined(KXUI_BENCH_EVENTGRAPH_LTTNG) || defined(LTTNG_UST_TRACEPOINT_HEADER_MULTI_READ)
#define KXUI_BENCH_EVENTGRAPH_LTTNG

#include <lttng/tracepoint.h>

// clang-format off
LTTNG_UST_TRACEPOINT_EVENT(kxui_bench, activity,
    LTTNG_UST_TP_ARGS(int, type, void*, data),
    LTTNG_UST_TP_FIELDS(
        lttng_ust_field_integer(int, type, type)
        lttng_ust_field_integer_hex(unsigned long, data, (unsigned long)data)))
// clang-format on

#endif

#include <lttng/tracepoint-event.h>
