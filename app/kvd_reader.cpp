// Command-line reader, word splitter, prompt readers and the pager.
#include <string.h>
#include <stdlib.h>
#include <time.h>

#include "kvd.h"

int32_t margc;
char *margv[KVD_MAXARGS];

// Reads one line of at most size-1 characters. End of input is not a way out
// of the shell: the read is retried until input arrives, with a pause between
// attempts so a closed input never keeps a core busy.
void kvd_readline(char *buffer, int size)
{
    static const struct timespec pause = {0, 200 * 1000 * 1000};

    if (kvd_lineedit_gets(buffer, size))
        return;
    while (fgets(buffer, size, stdin) == NULL) {
        clearerr(stdin);
        nanosleep(&pause, NULL);
    }
}

cmdinfo *getcmd(char *buffer, int size, int oneshot)
{
    char saved[KVD_CMDBUF_SIZE];
    int i;

    // The line is cut at 131 characters however large the buffer; a smaller
    // buffer cuts it at its own size.
    if (size > KVD_CMDBUF_SIZE)
        size = KVD_CMDBUF_SIZE;
    if (size < 2)
        return &kvdCmds[0];
    memcpy(saved, buffer, (size_t)size);
    if (!oneshot)
        kvd_readline(buffer, size);

    for (i = 0; buffer[i] != '\n' && buffer[i] != '\0' && i <= size - 2; i++)
        ;
    buffer[i] = '\0';

    if (strcmp(buffer, "p") == 0) {
        // Repeat: the previous words stand again where margv points.
        memcpy(buffer, saved, (size_t)size);
    } else {
        margv[0] = strtok(buffer, KVD_SEPARATORS);
        if (margv[0] == NULL)
            return &kvdCmds[0];
        for (i = 1; i < KVD_MAXARGS && (margv[i] = strtok(NULL, KVD_SEPARATORS)) != NULL; i++)
            ;
        margc = i;
    }
    if (margv[0] == NULL)
        return &kvdCmds[0];
    for (i = 0; i < kvdcmdcnt; i++) {
        if (strcmp(margv[0], kvdCmds[i].c_string) == 0)
            return &kvdCmds[i];
    }
    return &kvdCmds[0];
}

// Prints the prompt, reads one answer and cuts it at the first separator.
static char *kvd_prompt_word(int hex, const char *prompt, char *line)
{
    char text[256];

    snprintf(text, sizeof(text), hex ? "%s (hex): " : "%s: ", prompt);
    kvd_show_prompt(text);
    kvd_readline(line, KVD_CMDBUF_SIZE);
    return strtok(line, KVD_SEPARATORS);
}

int32_t getint(const char *prompt)
{
    char line[KVD_CMDBUF_SIZE] = {0};
    char *word = kvd_prompt_word(0, prompt, line);

    return word ? atoi(word) : 0;
}

uint32_t getxint(const char *prompt)
{
    char line[KVD_CMDBUF_SIZE] = {0};
    char *word = kvd_prompt_word(1, prompt, line);

    return word ? (uint32_t)strtoul(word, NULL, 16) : 0;
}

int getstring(const char *prompt, char *dest)
{
    char line[KVD_CMDBUF_SIZE] = {0};
    char *word = kvd_prompt_word(0, prompt, line);
    size_t len;

    if (word == NULL)
        return 0;
    len = strlen(word);
    memcpy(dest, word, len + 1);
    return (int)len;
}

void get_a_string(char *dest, int max, const char *prompt)
{
    char word[KVD_CMDBUF_SIZE] = {0};
    int len = getstring(prompt, word);

    memcpy(dest, word, (size_t)(len < max ? len : max));
}

int promptYesorNo(void)
{
    char answer[KVD_CMDBUF_SIZE];

    for (;;) {
        if (getstring("Yes or No:", answer) == 1) {
            if (answer[0] == 'y' || answer[0] == 'Y')
                return 1;
            if (answer[0] == 'n' || answer[0] == 'N')
                return 0;
        }
        printf("Response invalid, please enter y or n\n");
    }
}

int promptContinueOrAbort(void)
{
    int c;

    if (prompt_to_continue == 0)
        return 0;
    printf("\n Hit <CR> to continue (x to abort): ");
    fflush(stdout);
    c = getchar();
    printf("\n");
    if (c != 'x')
        return 0;
    while ((c = getchar()) != '\n' && c != EOF)
        ;
    return 1;
}

// Listings pause after item i when i closes a page of num_lines items; a page
// length of 0 or below never pauses, so "set lines 0" cannot divide by zero.
int kvd_page_break(int item)
{
    if (num_lines <= 0 || item % num_lines != num_lines - 1)
        return 0;
    return promptContinueOrAbort();
}
