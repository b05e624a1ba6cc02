// Names of the flag bits.
#include <cimple/Strings.h>
#include <cimple/flags.h>

CIMPLE_NAMESPACE_BEGIN

const char* flag_names[] = {"Property",
                            "Reference",
                            "Method",
                            "Class",
                            "Abstract",
                            "Aggregate",
                            "Aggregation",
                            "Association",
                            "Composition",
                            "Counter",
                            "Delete",
                            "DN",
                            "EmbeddedObject",
                            "Exception",
                            "Expensive",
                            "Experimental",
                            "Gauge",
                            "IfDeleted",
                            "In",
                            "Indication",
                            "Invisible",
                            "Key",
                            "Large",
                            "OctetString",
                            "Out",
                            "Read",
                            "Required",
                            "Static",
                            "Terminal",
                            "Weak",
                            "Write",
                            "EmbeddedInstance"};

const size_t num_flag_names = CIMPLE_ARRAY_SIZE(flag_names);

static_assert(CIMPLE_ARRAY_SIZE(flag_names) == 32, "one name a bit");

size_t flag_name_to_index(const char* name)
{
    for (size_t i = 0; i < num_flag_names; i++)
        if (eqi(flag_names[i], name))
            return i;
    return size_t(-1);
}

CIMPLE_NAMESPACE_END
