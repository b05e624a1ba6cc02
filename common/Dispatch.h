// One provider class behind the toolkit's operation codes.
#ifndef COMMON_DISPATCH_H
#define COMMON_DISPATCH_H

#include <cimple/cimple.h>

#include "Method_Dispatch.h"

namespace cimple
{

// The proc of a provider class. PROC is the toolkit's proc for the class' kind (instance, association or
// indication); it answers every code except the method call, and -1 to codes that the kind does not know.
// Methods are found by name without regard to letter case; -1 for an unknown name and for every method of a
// class that has none. Arguments and results are those of Provider_Proc.
template <class PROVIDER, class PROC>
struct Dispatch
{
    static int proc(const Registration* registration,
                    int operation,
                    void* arg0,
                    void* arg1,
                    void* arg2,
                    void* arg3,
                    void* arg4,
                    void* arg5,
                    void* arg6,
                    void* arg7)
    {
        typedef typename PROVIDER::Class Class;
        if (operation == OPERATION_INVOKE_METHOD)
        {
            return Method_Dispatch<Class>::invoke(
                static_cast<PROVIDER*>(arg0), static_cast<const Class*>(arg1), static_cast<Instance*>(arg2));
        }
        return PROC::proc(registration, operation, arg0, arg1, arg2, arg3, arg4, arg5, arg6, arg7);
    }
};

} // namespace cimple

#endif
