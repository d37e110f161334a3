// Writes the word lists of the bash completion file from the shell's own
// tables (top-level words, each family's rows, the commands' keywords),
// then the rest of the file from the template named on the command line.
#include <stdio.h>
#include <string.h>

#include "kvd.h"
#include "kvd_sli4cmds.h"
#include "tarvo/tarvo.h"

static void kvd_list(const char *name, const cmdinfo *table, int count)
{
    printf("_kvd_%s='", name);
    for (int i = 0, n = 0; i < count; i++) {
        const char *word = table[i].c_string;
        if (strstr(word, "inval") != NULL || word[0] == '!') // fallback rows, host shell
            continue;
        printf("%s%s", n++ ? " " : "", word);
    }
    printf("'\n");
}

int main(int argc, char **argv)
{
    char line[512];
    FILE *tmpl;

    if (argc != 2 || (tmpl = fopen(argv[1], "r")) == NULL) {
        fprintf(stderr, "usage: kvd_complist template\n");
        return 2;
    }
    // The template's first line is its shell-type comment; the lists follow it.
    if (fgets(line, sizeof(line), tmpl) != NULL)
        fputs(line, stdout);
    kvd_list("words", kvdCmds, kvdcmdcnt);
    kvd_list("mbox", mboxinfo, g_mboxinfo_array_size);
    kvd_list("tarvo", tarvoinfo, tarvoinfo_array_size);
    kvd_list("sli4", sli4info, g_sli4info_array_size);
    kvd_list("sli4iov", sli4iovinfo, g_sli4iovinfo_array_size);
    // _kvd_keywords "command|index|second word" prints the keywords there.
    printf("_kvd_keywords()\n{\n    case $1 in\n");
    for (int i = 0; i < kvd_keywordcnt; i++) {
        const kvd_keywordrow *k = &kvd_keywords[i];
        printf("    '%s|%d|%s'%s) echo '", k->k_command, k->k_word, k->k_after ? k->k_after : "",
               k->k_after ? "" : "*");
        for (int w = 0; k->k_words[w] != NULL; w++)
            printf("%s%s", w ? " " : "", k->k_words[w]);
        printf("' ;;\n");
    }
    printf("    esac\n}\n");
    while (fgets(line, sizeof(line), tmpl) != NULL)
        fputs(line, stdout);
    fclose(tmpl);
    return 0;
}
