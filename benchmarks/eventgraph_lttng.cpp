#define LTTNG_UST_TRACEPOINT_CREATE_PROBES
#define LTTNG_UST_TRACEPOINT_DEFINE
#include "eventgraph_lttng.h"

void lttngPair(void* data) {
    lttng_ust_tracepoint(kxui_bench, activity, 1, data);
    lttng_ust_tracepoint(kxui_bench, activity, 2, data);
}

bool lttngEnabled() {
    return lttng_ust_tracepoint_enabled(kxui_bench, activity);
}
