// The WWN, MAC and VLAN identifier parsers and the number prompts on
// arbitrary text, each given an exactly sized string.
#include <string.h>

#include "kvd.h"
#include "kvdfuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kvdfuzz::quiet_shell();
    char *text = new char[size + 1];
    memcpy(text, data, size);
    text[size] = '\0';

    HBA_WWN *wwn = new HBA_WWN;
    (void)kvd_atowwn(wwn, text);
    (void)kvd_atowwn2(wwn, text);
    uint8_t *mac = new uint8_t[8];
    if (kvd_atomac(mac, text)) {
        char *shown = new char[8 * 3];
        kvd_mac_sprintf(mac, shown);
        delete[] shown;
    }
    uint8_t *vlan = new uint8_t[2];
    (void)kvd_atovlanid(vlan, text);
    char *field = new char[9];
    (void)kvd_fieldtext(field, 9, data, size);

    // The prompts read the same bytes as typed answers.
    kvdfuzz::stream_begin(data, size);
    (void)getint("n");
    (void)getxint("x");
    char *word = new char[KVD_CMDBUF_SIZE];
    (void)getstring("s", word);
    get_a_string(field, 8, "s");

    delete[] word;
    delete[] field;
    delete[] vlan;
    delete[] mac;
    delete wwn;
    delete[] text;
    return 0;
}
