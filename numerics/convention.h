// How functions of ours hand over numbers on 32-bit Windows.
#pragma once

// That system's functions take numbers in memory and give them back on the x87 stack, from where they come to
// arithmetic through memory again. A function declared with this takes its first three numbers, and gives its
// own, in SSE registers. It is for functions that are called often and do little; what the system, Excel or a
// library calls must do without.
#if defined(_WIN32) && defined(__i386__)
#define KESTRAN_SSE_CALL __attribute__((sysv_abi, sseregparm))
#else
#define KESTRAN_SSE_CALL
#endif
