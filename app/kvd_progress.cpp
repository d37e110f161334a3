// Progress of long transfers, on standard error and only when it is a
// terminal: standard output carries the command's exact output.
#include <inttypes.h>
#include <unistd.h>

#include "kvd.h"

static int kvd_progress_shown;

// total 0: the size is not known beforehand, only the bytes so far show.
void kvd_progress(const char *what, uint64_t done, uint64_t total)
{
    if (!isatty(STDERR_FILENO))
        return;
    if (total != 0)
        fprintf(stderr, "\r%s: %" PRIu64 " of %" PRIu64 " bytes (%d%%)", what, done, total,
                (int)(done >= total ? 100 : done * 100 / total));
    else
        fprintf(stderr, "\r%s: %" PRIu64 " bytes", what, done);
    kvd_progress_shown = 1;
}

void kvd_progress_end(void)
{
    if (kvd_progress_shown)
        fprintf(stderr, "\n");
    kvd_progress_shown = 0;
}
