// Everything a provider or generated class needs, in one include.
#ifndef CIMPLE_CIMPLE_H
#define CIMPLE_CIMPLE_H

#include <cimple/Array.h>
#include <cimple/Atomic_Counter.h>
#include <cimple/Auto_Mutex.h>
#include <cimple/Datetime.h>
#include <cimple/Error.h>
#include <cimple/Instance.h>
#include <cimple/Instance_Map.h>
#include <cimple/Meta_Class.h>
#include <cimple/Meta_Property.h>
#include <cimple/Meta_Reference.h>
#include <cimple/Meta_Repository.h>
#include <cimple/Mutex.h>
#include <cimple/Property.h>
#include <cimple/Provider.h>
#include <cimple/Ref.h>
#include <cimple/Registration.h>
#include <cimple/String.h>
#include <cimple/Strings.h>
#include <cimple/Thread.h>
#include <cimple/Time.h>
#include <cimple/Type.h>
#include <cimple/boolean.h>
#include <cimple/char16.h>
#include <cimple/cimom.h>
#include <cimple/config.h>
#include <cimple/flags.h>
#include <cimple/flavor.h>
#include <cimple/integer.h>
#include <cimple/log.h>
#include <cimple/real.h>
#include <cimple/scope.h>

#endif
