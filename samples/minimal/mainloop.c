#include <stdio.h>
#include <time.h>

#include "vesk/vesk_c.h"

static int playing = 1;

static void handle(const vesk_result* result) { /* between two frames, on your own thread */
    switch (result->kind) {
    case VESK_RESULT_LOGIN:
        fprintf(stderr, "login: %d %s\n", (int)result->login->ret_code, result->login->ret_msg);
        playing = result->login->ret_code == VESK_SUCCESS;
        vesk_logout("", "", 0); /* here the visit is over; you enter the lobby with login->openid */
        break;
    case VESK_RESULT_QR_CODE: /* messengers only: you show the image at that address */
        fprintf(stderr, "scan: %s\n", result->qr_code->qr_code_url);
        break;
    case VESK_RESULT_BASE:
        fprintf(stderr, "logged out: %d\n", (int)result->base->ret_code);
        playing = 0;
        break;
    case VESK_RESULT_REFRESHED: /* 0: there is a new login->token; 1002: ask for a new login */
    default:                    /* of a newer library */
        break;
    }
}

static void drawFrame(const vesk_login_state* state) { /* your game, and state->state in words */
    const clock_t end = clock() + CLOCKS_PER_SEC / 60;
    (void)state;
    while (clock() < end) {
    }
}

int main(void) {
    vesk_result* result = NULL;
    vesk_login_state state = {0};
    state.struct_size = sizeof state;
    if (!vesk_queue_results(1)) {
        return 1;
    }
    vesk_set_login_timeout(120000);
    vesk_login("Steam", "", "", ""); /* the player has pressed "Play"; "Back": vesk_cancel_login */
    while (playing) {
        while (vesk_next_result(&result)) {
            handle(result);
            vesk_result_free(result);
        }
        vesk_state(&state);
        drawFrame(&state);
    }
    vesk_wait_idle(3000); /* the logout reaches the backend */
    vesk_uninstall();
    return 0;
}
