#ifndef VESK_TESTS_CINTERFACE_HOST_H
#define VESK_TESTS_CINTERFACE_HOST_H

/* What visit.c needs of its surroundings; host_win32.c has it without a C library. */
void hostPrint(const char* line); /* a line of its own: the SDK prints as well, without line ends */
void hostSignal(void);
int hostWait(void); /* for one signal; 0 when none comes in time */
int visit(void);    /* the exit status */

#endif
