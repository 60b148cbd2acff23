// The processors that this process may run on.
#pragma once

namespace trs {

// As the process was started; at least 1.
unsigned processorCount();

// Tells the processor that the thread is waiting for another one in a loop.
inline void relaxProcessor()
{
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__powerpc__)
    __asm__ volatile("or 27,27,27");
#endif
}

} // namespace trs
