// Memory that the switch-access library hands out.
#ifndef PLATFORM_XPL_LIB_H
#define PLATFORM_XPL_LIB_H

// Takes back a block that a library call returned. Null is ignored. What the block points to is not followed:
// a text held in a cell (see switch_server.h) is freed by the caller first.
extern "C" void xpl_libFreeMemory(void* block);

#endif
