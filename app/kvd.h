/*
 * kvd: the shell's shared state, command rows and helpers.
 *
 * The shell is plain records and tables of handler rows. Everything a command
 * needs from the rest of the shell is declared here.
 */
#ifndef KVD_H
#define KVD_H

#include <stdint.h>
#include <stdio.h>

#include "libkvd.h"

#include "kvd_mboxlist.h"

/* Command statuses (a handler's result; in option mode the exit status). */
#define KVD_OK 0
#define KVD_FAIL (-1)
#define KVD_NO_ADAPTERS (-3)
#define KVD_LIBERR (-4)
#define KVD_BADARG (-5)
#define KVD_NODATA (-7)
#define KVD_PRECOND (-8)
#define KVD_USAGE (-9)

#define KVD_CMDBUF_SIZE 132 /* command line buffer, NUL included */
#define KVD_MAXARGS 50      /* words kept of one line */
#define KVD_SEPARATORS " \t,\n"
#define KVD_CMD_PROMPT "cmd> "

/* One row of a command table. Handlers get their own row and a second
 * argument that is null for top-level commands and the family's record
 * (a zeroed MAILBOX for "mbox") for sub-commands. */
typedef struct cmdinfo {
    const char *c_string;
    int32_t (*c_routine)(struct cmdinfo *row, void *arg);
} cmdinfo;

#define KVD_HANDLER(name) int32_t name(cmdinfo *row, void *arg)

/* Process-wide state. */
extern struct kvd_area kvd_un;
extern uint8_t *kvd_bigbuffer;
extern uint8_t *kvd_slimbuffer;
extern uint32_t kvd_pci_brds;
extern int32_t cur_board;
extern int32_t cur_ring;
extern int32_t cur_iocb;
extern HBA_WWN cur_wwn;
extern int32_t cur_wwn_set;
extern int32_t num_lines;
extern int32_t prompt_to_continue;
extern int32_t margc;
extern char *margv[KVD_MAXARGS];
extern cmdinfo kvdCmds[];
extern int32_t kvdcmdcnt;
extern const char *kvd_err_cannot_issue_cmd;

/* Entry and command loop. */
[[noreturn]] void usage(int status);
[[noreturn]] KVD_HANDLER(quit);
void quit_on_signal(int signo);
int kvd_list_adapters(void);
/* A board count bounded by the 32-entry board table. */
uint32_t kvd_bound_boards(uint32_t count);

/* Command reader and prompt readers. */
cmdinfo *getcmd(char *buffer, int size, int oneshot);
void kvd_readline(char *buffer, int size);
int32_t getint(const char *prompt);
uint32_t getxint(const char *prompt);
int getstring(const char *prompt, char *dest);
void get_a_string(char *dest, int max, const char *prompt);
int promptYesorNo(void);
int promptContinueOrAbort(void);
int kvd_page_break(int item);

/* Line editing at a terminal (history, completion); the reader hands its
 * lines out exactly as fgets would. */
int kvd_lineedit_start(const char *prog);
int kvd_lineedit_gets(char *buffer, int size);
void kvd_lineedit_restore(void); /* safe in a signal handler */
void kvd_show_prompt(const char *text);
int kvd_complete_text(const char *line, char *insert, size_t insertsize);
extern const char *const set_keywords[]; /* null-terminated */
/* Keywords a command takes at one word of its line: after the command word,
 * or after a given second word (a family row, or a keyword of its own). */
typedef struct kvd_keywordrow {
    const char *k_command;
    const char *k_after;        /* the second word, or NULL for any */
    int k_word;                 /* index of the word the keywords stand at */
    const char *const *k_words; /* null-terminated */
} kvd_keywordrow;
extern const kvd_keywordrow kvd_keywords[];
extern const int kvd_keywordcnt;
/* The driver parameters the last "getcfg" listed, and their count. */
extern CFGPARAM cfgparam[KVD_CFG_MAX_PARAMS];
extern int32_t gotcfg;

/* Progress of long transfers on standard error, when it is a terminal. */
void kvd_progress(const char *what, uint64_t done, uint64_t total);
void kvd_progress_end(void);

/* Formatting and parsing. */
void hexdump(const void *bytes, uint32_t length);
void kvd_mac_sprintf(const uint8_t *src, char *text);
int kvd_atowwn(HBA_WWN *wwn, const char *text);
int kvd_atowwn2(HBA_WWN *wwn, const char *text);
int kvd_atomac(uint8_t *dest, const char *text);
int kvd_atovlanid(uint8_t *dest, const char *text);
int kvd_cannot_issue(void);

/* Handlers. */
KVD_HANDLER(inval);
KVD_HANDLER(help);
KVD_HANDLER(shell);
KVD_HANDLER(set);
KVD_HANDLER(getversions);
KVD_HANDLER(adapters);
KVD_HANDLER(kvd_not_implemented);

/* Mailbox family: issuing wrappers, the sub-command table and its size. */
int32_t kvd_IssueMbox(uint32_t board, MAILBOX *mb, uint32_t words_in, uint32_t words_out);
int32_t kvd_IssueMboxV2(uint32_t board, MAILBOX *mb);
#define KVD_MBOX_COUNT_ROW(word, handler, code) +1
constexpr int32_t g_mboxinfo_array_size = 0 KVD_MBOX_ROWS(KVD_MBOX_COUNT_ROW);
#undef KVD_MBOX_COUNT_ROW
extern cmdinfo mboxinfo[g_mboxinfo_array_size];
extern const uint8_t mboxcodes[g_mboxinfo_array_size]; /* command each row issues, 0: none */
KVD_HANDLER(mbinval);

int32_t kvd_RunPciLoopbackTest(uint32_t board, LOOPBACK *lb);

/* Event callbacks the library calls from its own thread. */
void link_event(uint32_t board, LINKINFO *info);
void rscn_event(uint32_t board, void *payload, uint32_t length);
void vport_rscn_event(uint32_t board, HBA_WWN wwpn, void *payload, uint32_t length);
void temperature_event(uint32_t board, uint32_t type, uint32_t celsius);
void ct_event(uint32_t board, uint16_t ct_value, void *payload, uint32_t length, uint32_t tag, void *context);
/* One FCP READ(10) / WRITE(10) of *datasize bytes at block lba, in a command
 * block built here; 1 without a call when cur_board is not below the board
 * count, else the library's result. */
int32_t kvd_SendFcpRead(uint32_t board, HBA_WWN *wwn, uint64_t lun, uint32_t lba, void *data,
                        uint32_t *datasize, void *rsp, uint32_t *rspsize);
int32_t kvd_SendFcpWrite(uint32_t board, HBA_WWN *wwn, uint64_t lun, uint32_t lba, void *data,
                         uint32_t *datasize, void *rsp, uint32_t *rspsize);

/* SLI level (2, 3 or 4) and protocol (0 FCoE, 1 Fibre Channel) of a board,
 * from the driver information; -1 when the query fails. */
int32_t get_sli_mode(uint32_t board);
int32_t get_protocol_mode(uint32_t board);

/* Copies a text field of a library record that need not be NUL-terminated
 * into dest (destsize bytes, terminated); returns dest. */
const char *kvd_fieldtext(char *dest, size_t destsize, const void *src, size_t srcsize);
#define KVD_FIELDTEXT(dest, field) kvd_fieldtext((dest), sizeof(dest), (field), sizeof(field))

#endif
