// ASIC memory: rdmem dumps up to 256 bytes as words, wmem writes one word.
// Addresses and lengths are cut to whole words.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

KVD_HANDLER(tvordmem)
{
    tarvo_memory_cmd_t *cmd;
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 4) {
        printf("Usage: tarvo rdmem <address> <length>\n\n");
        printf("            address - Tarvo memory address. (4 byte aligned)\n");
        printf("            length  - Number of bytes to read. (4 byte aligned)\n\n");
        return KVD_OK;
    }
    uint32_t address = (uint32_t)strtoul(margv[2], NULL, 0) & ~3u;
    uint32_t bytes = (uint32_t)strtoul(margv[3], NULL, 0) & ~3u;
    if (bytes > TARVO_MEM_READ_MAX) {
        printf("Unable to read more then 256 bytes at a time.\n");
        return KVD_OK;
    }
    cmd = static_cast<tarvo_memory_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    rsp = tvo_rsp_area(arg);
    memset(rsp, 0, bytes + 4);
    cmd->code = TARVO_CMD_READ_MEM;
    cmd->address = address;
    cmd->length = bytes / 4;
    if (tvo_send(cmd, sizeof(*cmd), rsp, bytes + 4, TVO_CODE_DEC) == 0) {
        uint32_t left = bytes;
        for (uint32_t i = 0; left > 0; i++) {
            if (i % 4 == 0)
                printf("\n%4x: ", i * 4);
            uint32_t word;
            memcpy(&word, rsp->raw + 4 + (size_t)i * 4, sizeof(word));
            printf("%08x  ", word);
            left = left > 4 ? left - 4 : 0;
        }
        printf("\n");
    }
    free(cmd);
    return KVD_OK;
}

KVD_HANDLER(tvowmem)
{
    uint8_t *cmd;
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 4) {
        printf("Usage: tarvo wmem <address> <value>\n\n");
        printf("            address - Tarvo memory address. (4 byte aligned)\n");
        printf("            value   - 4 byte value to be written to memory.\n\n");
        return KVD_OK;
    }
    tarvo_memory_cmd_t mem = {TARVO_CMD_WRITE_MEM, (uint32_t)strtoul(margv[2], NULL, 0) & ~3u, 1};
    uint32_t value = (uint32_t)strtoul(margv[3], NULL, 0);
    cmd = static_cast<uint8_t *>(tvo_alloc_cmd(sizeof(mem) + sizeof(value)));
    if (!cmd)
        return KVD_OK;
    memcpy(cmd, &mem, sizeof(mem));
    memcpy(cmd + sizeof(mem), &value, sizeof(value));
    rsp = tvo_rsp_area(arg);
    memset(rsp, 0, 4);
    if (tvo_send(cmd, sizeof(mem) + sizeof(value), rsp, 4, TVO_CODE_DEC) == 0)
        printf("Done.\n\n");
    free(cmd);
    return KVD_OK;
}
