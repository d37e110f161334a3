// Hex dumps and the WWN, MAC and VLAN identifier parsers and formatter.
#include <stdio.h>
#include <string.h>

#include "kvd.h"

void hexdump(const void *bytes, uint32_t length)
{
    const uint8_t *p = static_cast<const uint8_t *>(bytes);
    char ascii[17] = {0};
    uint32_t k;

    if (length == 0)
        return;
    for (k = 0; k < length; k++) {
        if (k % 16 == 0) {
            if (k != 0)
                printf("%s", ascii);
            printf("\n%4x: ", k);
        }
        ascii[k % 16] = (p[k] >= 32 && p[k] <= 126) ? (char)p[k] : '.';
        ascii[k % 16 + 1] = '\0';
        printf("%02x", p[k]);
        if ((k + 1) % 4 == 0)
            printf("  ");
    }
    if (length % 16 != 0) {
        for (uint32_t pos = length % 16; pos < 16; pos++) {
            printf("  ");
            if ((pos + 1) % 4 == 0)
                printf("  ");
        }
    }
    printf("%s\n", ascii);
}

const char *kvd_fieldtext(char *dest, size_t destsize, const void *src, size_t srcsize)
{
    size_t len = strnlen(static_cast<const char *>(src), srcsize);

    if (len > destsize - 1)
        len = destsize - 1;
    memcpy(dest, src, len);
    dest[len] = '\0';
    return dest;
}

void kvd_mac_sprintf(const uint8_t *src, char *text)
{
    static const char digits[] = "0123456789abcdef";
    char *out = text;

    for (int i = 0; i < 8; i++) {
        if (i != 0)
            *out++ = ':';
        *out++ = digits[src[i] >> 4];
        *out++ = digits[src[i] & 0xf];
    }
    *out = '\0';
}

// One hexadecimal digit read on its own; anything else counts as 0, so a
// mistyped digit is taken leniently rather than refused.
static uint8_t kvd_hexdigit(char c)
{
    if (c >= '0' && c <= '9')
        return (uint8_t)(c - '0');
    if (c >= 'a' && c <= 'f')
        return (uint8_t)(c - 'a' + 10);
    if (c >= 'A' && c <= 'F')
        return (uint8_t)(c - 'A' + 10);
    return 0;
}

// Reads `count` pairs of digits into dest, stepping `stride` characters from
// one pair to the next (2 for bare digits, 3 when a ':' follows each pair).
static void kvd_read_pairs(uint8_t *dest, const char *text, int count, int stride)
{
    for (int i = 0; i < count; i++) {
        const char *pair = text + i * stride;
        dest[i] = (uint8_t)(kvd_hexdigit(pair[0]) << 4 | kvd_hexdigit(pair[1]));
    }
}

int kvd_atowwn(HBA_WWN *wwn, const char *text)
{
    if (strlen(text) == 16) {
        kvd_read_pairs(wwn->wwn, text, 8, 2);
        return 1;
    }
    return kvd_atowwn2(wwn, text);
}

int kvd_atowwn2(HBA_WWN *wwn, const char *text)
{
    size_t len = strlen(text);
    int ok = (len == 23);

    for (size_t i = 2; ok && i < 23; i += 3)
        ok = (text[i] == ':');
    if (!ok) {
        printf("arg %s - arg length %d or missing ':'\n", text, (int)len);
        return 0;
    }
    kvd_read_pairs(wwn->wwn, text, 8, 3);
    return 1;
}

int kvd_atomac(uint8_t *dest, const char *text)
{
    const char *at = text;

    memset(dest, 0, 8);
    if (strlen(text) == 17) {
        int i;
        for (i = 0; i < 6; i++) {
            at = text + i * 3;
            if (i < 5 && at[2] != ':')
                break;
        }
        if (i == 6) {
            kvd_read_pairs(dest + 2, text, 6, 3);
            return 1;
        }
    }
    printf("Invalid MAC address: (%s)\n", at);
    printf("Must be of the form: (XX:XX:XX:XX:XX:XX)\n");
    printf("\n");
    return 0;
}

int kvd_atovlanid(uint8_t *dest, const char *text)
{
    if (strlen(text) != 4)
        return 0;
    kvd_read_pairs(dest, text, 2, 2);
    return 1;
}
