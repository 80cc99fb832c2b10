/* The page's snippet brings the rest. */
#include <stdio.h>

#include "vesk/vesk_c.h"

void startLogin(void);

int main(void) {
    const uint32_t version = vesk_version_number();
    vesk_login_ret* ret = NULL;
    startLogin();
    vesk_get_login_ret(&ret);
    printf("held: %d %s\nversion: %u.%u.%u.%u\n", ret->ret_code, ret->ret_msg, version >> 24,
           version >> 16 & 255, version >> 8 & 255, version & 255);
    vesk_login_ret_free(ret);
    return 0;
}
