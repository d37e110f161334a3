// Commands whose families are not built yet keep their row and their
// handler name and answer "Not Implemented". The command list marks them
// STUB; a family that arrives marks its rows BUILT there.
#include "kvd_cmds.h"

KVD_HANDLER(kvd_not_implemented)
{
    (void)row;
    (void)arg;
    printf("Not Implemented\n");
    return KVD_OK;
}

#define KVD_STUB_STUB(handler)                                                                               \
    KVD_HANDLER(handler)                                                                                     \
    {                                                                                                        \
        return kvd_not_implemented(row, arg);                                                                \
    }
#define KVD_STUB_BUILT(handler)
#define KVD_STUB(word, handler, state) KVD_STUB_##state(handler)
KVD_COMMANDS(KVD_STUB)
