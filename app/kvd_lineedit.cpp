// Line editing at a terminal: cursor keys, history kept between sessions,
// reverse search and completion of command words, family rows, keywords and
// host file names. Only used when standard input and output are terminals;
// every line it returns is handed out exactly as fgets would hand it out, so
// the reader's cut, splitter and "p" treat it like a line from a pipe.
#include <dirent.h>
#include <errno.h>
#include <histedit.h>
#include <limits.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include "kvd.h"
#include "kvd_sli4cmds.h"
#include "tarvo/tarvo.h"

#define KVD_HISTORY_ENTRIES 500 /* entries kept in memory and in the file */
#define KVD_HISTORY_MAXLINE 512 /* longer lines are not remembered */
#define KVD_PROMPT_MAX 256
#define KVD_COMPLETE_SHOWN 200 /* candidates listed at most */
#define KVD_COMPLETE_LINE 1024 /* text before the cursor looked at */

static EditLine *kvd_el;
static History *kvd_hist;
static HistEvent kvd_hev;
static char kvd_histfile[4096];
static int kvd_histfile_ok;
static char kvd_prompt_text[KVD_PROMPT_MAX];
static struct termios kvd_tty_saved;
static volatile sig_atomic_t kvd_tty_saved_ok;

// The rest of the last edited line (with its newline) not yet handed out:
// a line longer than the reader's buffer is handed out in pieces, as fgets
// leaves the rest of a long line in the stream.
static char *kvd_pending;
static size_t kvd_pending_off;

// Keywords a command takes at one word of its line, where the shell keeps
// no table of them (the bash completion file is written from this list too).
static const char *const revent_words[] = {"link", "rscn", "vprscn", "temp", "ct", NULL};
static const char *const all_words[] = {"ALL", NULL};
static const char *const els_words[] = {"echo", "rls", "rps", "rpl", "rnid", NULL};
static const char *const ct_words[] = {"nport", "wwpn", "wwnn", "sym", "test1", NULL};
static const char *const riocb_words[] = {"cmd", "rsp", NULL};
static const char *const sendfcp_words[] = {"read", "write", NULL};
static const char *const sendscsi_words[] = {"inquiry",      "reportlun",  "readcap", "inquirywwn",
                                             "reportlunwwn", "readcapwwn", "read",    "write",
                                             "cdb",          NULL};
static const char *const sd_set_bucket_words[] = {"linear", "power2", NULL};
static const char *const rnid_words[] = {"p", "n", NULL};
static const char *const logging_words[] = {"lib", "drv", NULL};
static const char *const reset_words[] = {"hba", NULL};
static const char *const fcpmap_words[] = {"luid", NULL};
static const char *const tvo_download_words[] = {"-o", "-d", NULL};
static const char *const tvo_fteins_words[] = {"-f", "-d", NULL};
static const char *const tvo_logdata_words[] = {"all", NULL};
static const char *const tvo_pause_words[] = {"sp", "pfc", NULL};
static const char *const tvo_porttype_words[] = {"access", "trunk", NULL};
static const char *const tvo_switch_words[] = {"enable", "disable", NULL};
static const char *const tvo_reset_words[] = {"op", "golden", NULL};

const kvd_keywordrow kvd_keywords[] = {
    {"set", NULL, 1, set_keywords},
    {"revent", NULL, 1, revent_words},
    {"revent", "link", 2, all_words},
    {"revent", "rscn", 2, all_words},
    {"revent", "vprscn", 2, all_words},
    {"revent", "temp", 2, all_words},
    {"revent", "ct", 3, all_words},
    {"els", NULL, 1, els_words},
    {"ct", NULL, 1, ct_words},
    {"riocb", NULL, 1, riocb_words},
    {"sendfcp", NULL, 1, sendfcp_words},
    {"sendscsi", NULL, 1, sendscsi_words},
    {"sd_set_bucket", NULL, 1, sd_set_bucket_words},
    {"rnid", NULL, 2, rnid_words},
    {"logging", NULL, 1, logging_words},
    {"reset", NULL, 1, reset_words},
    {"fcpmap", NULL, 1, fcpmap_words},
    {"tarvo", "download", 2, tvo_download_words},
    {"tarvo", "fteins", 2, tvo_fteins_words},
    {"tarvo", "logdata", 2, tvo_logdata_words},
    {"tarvo", "pause", 2, tvo_pause_words},
    {"tarvo", "porttype", 2, tvo_porttype_words},
    {"tarvo", "loopback", 3, tvo_switch_words},
    {"tarvo", "modeset", 2, tvo_switch_words},
    {"tarvo", "reset", 2, tvo_reset_words},
};
const int kvd_keywordcnt = (int)(sizeof(kvd_keywords) / sizeof(kvd_keywords[0]));

// Family rows whose argument at a given word index names a host file; "!"
// takes host names at every word.
typedef struct kvd_filerow {
    const char *f_command;
    const char *f_sub;
    int f_word;
} kvd_filerow;

static const kvd_filerow kvd_filewords[] = {
    {"sli4iov", "read", 2},
    {"sli4iov", "write", 2},
    {"sli4iov", "quickdownload", 2},
    {"tarvo", "download", 3},
};

// A family's second-level table, found by its command word.
static const cmdinfo *kvd_family_table(const char *word, int *count)
{
    if (strcmp(word, "mbox") == 0) {
        *count = g_mboxinfo_array_size;
        return mboxinfo;
    }
    if (strcmp(word, "tarvo") == 0) {
        *count = tarvoinfo_array_size;
        return tarvoinfo;
    }
    if (strcmp(word, "sli4") == 0) {
        *count = g_sli4info_array_size;
        return sli4info;
    }
    if (strcmp(word, "sli4iov") == 0) {
        *count = g_sli4iovinfo_array_size;
        return sli4iovinfo;
    }
    *count = 0;
    return NULL;
}

/* ---- Completion ---- */

// Matches gathered for one Tab: all of them narrow the common prefix, the
// first KVD_COMPLETE_SHOWN are kept for the listing.
typedef struct kvd_matches {
    const char *m_prefix;
    size_t m_prefixlen;
    int m_count;
    char m_common[KVD_COMPLETE_LINE];
    char m_shown[KVD_COMPLETE_SHOWN][NAME_MAX + 2];
    int m_isdir; /* the one match is a directory */
} kvd_matches;

static void kvd_match_add(kvd_matches *m, const char *word, int isdir)
{
    size_t len = strlen(word);

    if (strncmp(word, m->m_prefix, m->m_prefixlen) != 0)
        return;
    for (int i = 0; i < m->m_count && i < KVD_COMPLETE_SHOWN; i++) {
        if (strcmp(m->m_shown[i], word) == 0)
            return; // a family row may appear twice under one word
    }
    if (m->m_count == 0) {
        snprintf(m->m_common, sizeof(m->m_common), "%s", word);
    } else {
        size_t i = 0;
        while (m->m_common[i] != '\0' && m->m_common[i] == word[i])
            i++;
        m->m_common[i] = '\0';
    }
    if (m->m_count < KVD_COMPLETE_SHOWN) {
        if (len > NAME_MAX)
            len = NAME_MAX;
        memcpy(m->m_shown[m->m_count], word, len);
        m->m_shown[m->m_count][len] = '\0';
        if (isdir)
            strcat(m->m_shown[m->m_count], "/");
    }
    m->m_isdir = isdir;
    m->m_count++;
}

static void kvd_match_table(kvd_matches *m, const cmdinfo *table, int count, int skip_builtin)
{
    for (int i = 0; i < count; i++) {
        const char *word = table[i].c_string;
        // the fallback rows and the host-shell row are not words to offer
        if (strstr(word, "inval") != NULL || (skip_builtin && word[0] == '!'))
            continue;
        kvd_match_add(m, word, 0);
    }
}

// Host file names: the typed text up to its last "/" is the folder; names
// holding a separator could not be typed as one word and are left out.
static void kvd_match_files(kvd_matches *m, const char *typed, char *dir, size_t dirsize)
{
    const char *slash = strrchr(typed, '/');
    size_t dirlen = slash ? (size_t)(slash - typed) + 1 : 0;
    struct dirent *entry;
    DIR *folder;

    if (dirlen >= dirsize)
        return;
    memcpy(dir, typed, dirlen);
    dir[dirlen] = '\0';
    m->m_prefix = typed + dirlen;
    m->m_prefixlen = strlen(m->m_prefix);
    folder = opendir(dirlen ? dir : ".");
    if (folder == NULL)
        return;
    while ((entry = readdir(folder)) != NULL) {
        char path[PATH_MAX];
        struct stat st;
        if (strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0)
            continue;
        if (entry->d_name[0] == '.' && m->m_prefix[0] != '.')
            continue;
        if (strpbrk(entry->d_name, KVD_SEPARATORS) != NULL)
            continue;
        int isdir =
            snprintf(path, sizeof(path), "%s%s", dirlen ? dir : "./", entry->d_name) < (int)sizeof(path) &&
            stat(path, &st) == 0 && S_ISDIR(st.st_mode);
        kvd_match_add(m, entry->d_name, isdir);
    }
    closedir(folder);
}

// Splits the text before the cursor into at most 3 leading words and the
// word being typed; returns the index of that word.
static int kvd_complete_words(char *text, char *words[3], char **typed)
{
    int index = 0;
    char *p = text;

    for (;;) {
        p += strspn(p, " \t,");
        char *end = p + strcspn(p, " \t,");
        if (*end == '\0') {
            *typed = p;
            return index;
        }
        *end = '\0';
        if (index < 3)
            words[index] = p;
        index++;
        p = end + 1;
    }
}

static void kvd_gather(kvd_matches *m, int index, char *const words[3], const char *typed, char *dir,
                       size_t dirsize)
{
    int count;

    m->m_prefix = typed;
    m->m_prefixlen = strlen(typed);
    if (index == 0) {
        kvd_match_table(m, kvdCmds, kvdcmdcnt, 1);
        return;
    }
    if (strcmp(words[0], "!") == 0) {
        kvd_match_files(m, typed, dir, dirsize);
        return;
    }
    const cmdinfo *family = kvd_family_table(words[0], &count);
    if (family != NULL && index == 1) {
        kvd_match_table(m, family, count, 0);
        return;
    }
    if (family != NULL) {
        for (size_t i = 0; i < sizeof(kvd_filewords) / sizeof(kvd_filewords[0]); i++) {
            if (strcmp(words[0], kvd_filewords[i].f_command) == 0 &&
                strcmp(words[1], kvd_filewords[i].f_sub) == 0 && index == kvd_filewords[i].f_word) {
                kvd_match_files(m, typed, dir, dirsize);
                return;
            }
        }
    }
    // setcfg takes the names the last getcfg listed; they are the library's
    if (strcmp(words[0], "setcfg") == 0 && index == 1) {
        char name[KVD_CFG_NAME_LEN + 1];
        for (int32_t i = 0; i < gotcfg && i < KVD_CFG_MAX_PARAMS; i++)
            kvd_match_add(m, KVD_FIELDTEXT(name, cfgparam[i].a_string), 0);
        return;
    }
    for (int i = 0; i < kvd_keywordcnt; i++) {
        const kvd_keywordrow *k = &kvd_keywords[i];
        if (index != k->k_word || strcmp(words[0], k->k_command) != 0 ||
            (k->k_after != NULL && strcmp(words[1], k->k_after) != 0))
            continue;
        for (const char *const *w = k->k_words; *w != NULL; w++)
            kvd_match_add(m, *w, 0);
    }
}

static void kvd_show_matches(EditLine *el, const kvd_matches *m)
{
    int columns = 80, width = 1, per_line;
    int shown = m->m_count < KVD_COMPLETE_SHOWN ? m->m_count : KVD_COMPLETE_SHOWN;

    (void)el_get(el, EL_GETTC, "co", &columns, NULL);
    for (int i = 0; i < shown; i++) {
        int len = (int)strlen(m->m_shown[i]) + 2;
        if (len > width)
            width = len;
    }
    per_line = columns > width ? columns / width : 1;
    printf("\n");
    for (int i = 0; i < shown; i++)
        printf("%-*s%s", width, m->m_shown[i], (i % per_line == per_line - 1 || i == shown - 1) ? "\n" : "");
    if (m->m_count > shown)
        printf("(%d more)\n", m->m_count - shown);
    fflush(stdout);
}

static kvd_matches matches;

// The completion of the text before the cursor: returns the number of
// matches; insert receives what Tab adds to the line (the rest of the one
// match and its blank or "/", or the rest of the matches' common prefix).
int kvd_complete_text(const char *line, char *insert, size_t insertsize)
{
    char text[KVD_COMPLETE_LINE];
    char dir[PATH_MAX];
    char *words[3] = {NULL, NULL, NULL};
    char *typed;
    int index;

    memset(&matches, 0, sizeof(matches));
    if (insertsize > 0)
        insert[0] = '\0';
    if (strlen(line) >= sizeof(text))
        return 0; // more than any command line holds
    memcpy(text, line, strlen(line) + 1);
    index = kvd_complete_words(text, words, &typed);
    if (index > 0 && words[1] == NULL)
        words[1] = (char *)"";
    kvd_gather(&matches, index, words, typed, dir, sizeof(dir));
    if (matches.m_count > 0 && insertsize > 0) {
        snprintf(insert, insertsize, "%s%s", matches.m_common + matches.m_prefixlen,
                 matches.m_count == 1 ? (matches.m_isdir ? "/" : " ") : "");
    }
    return matches.m_count;
}

static unsigned char kvd_complete(EditLine *el, int ch)
{
    const LineInfo *li = el_line(el);
    size_t before = (size_t)(li->cursor - li->buffer);
    char line[KVD_COMPLETE_LINE];
    char insert[KVD_COMPLETE_LINE];
    (void)ch;
    if (before >= sizeof(line))
        return CC_REFRESH_BEEP;
    memcpy(line, li->buffer, before);
    line[before] = '\0';
    if (kvd_complete_text(line, insert, sizeof(insert)) == 0)
        return CC_REFRESH_BEEP;
    if (insert[0] != '\0')
        return el_insertstr(el, insert) == 0 ? CC_REFRESH : CC_REFRESH_BEEP;
    kvd_show_matches(el, &matches);
    return CC_REDISPLAY;
}

/* ---- History ---- */

static void kvd_history_open(void)
{
    const char *home = getenv("HOME");
    struct stat st;

    kvd_hist = history_init();
    if (kvd_hist == NULL)
        return;
    history(kvd_hist, &kvd_hev, H_SETSIZE, KVD_HISTORY_ENTRIES);
    history(kvd_hist, &kvd_hev, H_SETUNIQUE, 1);
    // A home that is not a writable folder gets no history file.
    if (home == NULL || home[0] != '/' || stat(home, &st) != 0 || !S_ISDIR(st.st_mode) ||
        access(home, W_OK) != 0)
        return;
    if (snprintf(kvd_histfile, sizeof(kvd_histfile), "%s/.kvd_history", home) >= (int)sizeof(kvd_histfile))
        return;
    kvd_histfile_ok = 1;
    (void)history(kvd_hist, &kvd_hev, H_LOAD, kvd_histfile);
}

// Each line is saved at once, so an interrupted session keeps its history.
static void kvd_history_add(const char *line)
{
    size_t len = strlen(line);

    if (kvd_hist == NULL || len == 0 || len > KVD_HISTORY_MAXLINE || strspn(line, KVD_SEPARATORS) == len)
        return;
    history(kvd_hist, &kvd_hev, H_ENTER, line);
    if (kvd_histfile_ok)
        (void)history(kvd_hist, &kvd_hev, H_SAVE, kvd_histfile);
}

/* ---- Set-up, reading, teardown ---- */

static const char *kvd_el_prompt(EditLine *el)
{
    (void)el;
    return kvd_prompt_text;
}

static void kvd_lineedit_end(void)
{
    if (kvd_el != NULL)
        el_end(kvd_el);
    kvd_el = NULL;
    if (kvd_hist != NULL)
        history_end(kvd_hist);
    kvd_hist = NULL;
    free(kvd_pending);
    kvd_pending = NULL;
    kvd_lineedit_restore();
}

int kvd_lineedit_start(const char *prog)
{
    if (!isatty(STDIN_FILENO) || !isatty(STDOUT_FILENO) || kvd_el != NULL)
        return 0;
    if (tcgetattr(STDIN_FILENO, &kvd_tty_saved) == 0)
        kvd_tty_saved_ok = 1;
    kvd_el = el_init(prog, stdin, stdout, stderr);
    if (kvd_el == NULL)
        return 0;
    kvd_history_open();
    el_set(kvd_el, EL_SIGNAL, 0); // our own handlers end the shell
    el_set(kvd_el, EL_EDITOR, "emacs");
    el_set(kvd_el, EL_PROMPT, kvd_el_prompt);
    if (kvd_hist != NULL)
        el_set(kvd_el, EL_HIST, history, kvd_hist);
    el_set(kvd_el, EL_ADDFN, "kvd-complete", "complete a command word, row, keyword or file", kvd_complete);
    el_set(kvd_el, EL_BIND, "^I", "kvd-complete", NULL);
    el_set(kvd_el, EL_BIND, "^R", "em-inc-search-prev", NULL);
    el_set(kvd_el, EL_BIND, "^S", "em-inc-search-next", NULL);
    (void)el_source(kvd_el, NULL); // the user's ~/.editrc, if any
    // The pager reads single characters with getchar: unbuffered, the rest
    // of its line stays with the terminal for the editor to read next.
    setvbuf(stdin, NULL, _IONBF, 0);
    atexit(kvd_lineedit_end);
    return 1;
}

int kvd_lineedit_active(void)
{
    return kvd_el != NULL;
}

void kvd_show_prompt(const char *text)
{
    if (kvd_el == NULL) {
        printf("%s", text);
        // Output that nobody reads any more ends the shell, as a closed
        // pipe ends other tools (here when SIGPIPE is blocked or ignored
        // by whoever started us).
        if (fflush(stdout) == EOF && errno == EPIPE)
            quit(NULL, NULL);
        return;
    }
    snprintf(kvd_prompt_text, sizeof(kvd_prompt_text), "%s", text);
}

int kvd_lineedit_gets(char *buffer, int size)
{
    size_t take;

    if (kvd_el == NULL || size < 2)
        return 0;
    while (kvd_pending == NULL) {
        int count = 0;
        el_resize(kvd_el);
        const char *line = el_gets(kvd_el, &count);
        if (line == NULL || count <= 0) {
            // End of input at a terminal (Ctrl-D) ends nothing: read again,
            // pausing so a terminal that is gone never keeps a core busy.
            static const struct timespec pause = {0, 200 * 1000 * 1000};
            printf("\n");
            nanosleep(&pause, NULL);
            continue;
        }
        size_t len = strcspn(line, "\n");
        kvd_pending = (char *)malloc(len + 2);
        if (kvd_pending == NULL)
            return 0;
        memcpy(kvd_pending, line, len);
        kvd_pending[len] = '\0';
        // Command lines are history; answers to a command's questions are not.
        if (strcmp(kvd_prompt_text, KVD_CMD_PROMPT) == 0)
            kvd_history_add(kvd_pending);
        kvd_pending[len] = '\n';
        kvd_pending[len + 1] = '\0';
        kvd_pending_off = 0;
        kvd_prompt_text[0] = '\0';
    }
    if (kvd_prompt_text[0] != '\0') {
        // The rest of a long line is read with no editing, after the prompt.
        printf("%s", kvd_prompt_text);
        fflush(stdout);
        kvd_prompt_text[0] = '\0';
    }
    const char *rest = kvd_pending + kvd_pending_off;
    take = strcspn(rest, "\n") + 1;
    if (take > (size_t)size - 1)
        take = (size_t)size - 1;
    memcpy(buffer, rest, take);
    buffer[take] = '\0';
    kvd_pending_off += take;
    if (kvd_pending[kvd_pending_off] == '\0') {
        free(kvd_pending);
        kvd_pending = NULL;
    }
    return 1;
}

// Safe in a signal handler: puts the terminal back as it was found.
void kvd_lineedit_restore(void)
{
    if (kvd_tty_saved_ok)
        (void)tcsetattr(STDIN_FILENO, TCSANOW, &kvd_tty_saved);
}
