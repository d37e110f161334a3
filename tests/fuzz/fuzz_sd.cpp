// SD events and latency: subscriptions, buckets, data collection and its
// per-target responses.
#include "kvdfuzz.h"

static const char *const words[] = {"sd_all_events",  "sd_free_bucket", "sd_get_bucket",  "sd_get_data",
                                    "sd_granularity", "sd_latency",     "sd_quick_event", "sd_reset_data",
                                    "sd_revent",      "sd_set_bucket",  "sd_show_events", "sd_start_data",
                                    "sd_stop_data",   "sd_test_env",    "sd_urevent",     "sd_verbose"};
KVD_FUZZ_SHELL_TARGET(words)
