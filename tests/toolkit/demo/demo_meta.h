// Short forms for writing the meta data of test classes by hand.
#ifndef TESTS_TOOLKIT_DEMO_DEMO_META_H
#define TESTS_TOOLKIT_DEMO_DEMO_META_H

#include "demo_classes.h"

#define DEMO_PROPERTY_VALUE(CLASS, NAME, FLAGS, TYPE, SUBSCRIPT, VALUE)                                      \
    const Meta_Property _##CLASS##_##NAME = {CIMPLE_ATOMIC_INITIALIZER,                                      \
                                             CIMPLE_FLAG_PROPERTY | (FLAGS),                                 \
                                             #NAME,                                                          \
                                             nullptr,                                                        \
                                             0,                                                              \
                                             TYPE,                                                           \
                                             SUBSCRIPT,                                                      \
                                             CIMPLE_OFF(CLASS, NAME),                                        \
                                             (const Meta_Value*)(void*)VALUE}
#define DEMO_PROPERTY(CLASS, NAME, FLAGS, TYPE, SUBSCRIPT)                                                   \
    DEMO_PROPERTY_VALUE(CLASS, NAME, FLAGS, TYPE, SUBSCRIPT, 0)

#define DEMO_REFERENCE(CLASS, NAME, FLAGS, SUBSCRIPT, TARGET)                                                \
    const Meta_Reference _##CLASS##_##NAME = {CIMPLE_ATOMIC_INITIALIZER,                                     \
                                              CIMPLE_FLAG_REFERENCE | (FLAGS),                               \
                                              #NAME,                                                         \
                                              nullptr,                                                       \
                                              0,                                                             \
                                              SUBSCRIPT,                                                     \
                                              &TARGET::static_meta_class,                                    \
                                              CIMPLE_OFF(CLASS, NAME)}

#define DEMO_FEATURE_ENTRY(X) (const Meta_Feature*)(void*)&X

// The feature table _CLASS_MFA is written out before.
#define DEMO_METHOD(CLASS, NAME, FLAGS, RETURN_TYPE)                                                         \
    const Meta_Method CLASS::static_meta_class = {CIMPLE_ATOMIC_INITIALIZER,                                 \
                                                  CIMPLE_FLAG_METHOD | (FLAGS),                              \
                                                  NAME,                                                      \
                                                  nullptr,                                                   \
                                                  0,                                                         \
                                                  _##CLASS##_MFA,                                            \
                                                  CIMPLE_ARRAY_SIZE(_##CLASS##_MFA),                         \
                                                  sizeof(CLASS),                                             \
                                                  RETURN_TYPE}

// The tables _CLASS_MFA and _CLASS_locals are written out before.
#define DEMO_CLASS(CLASS, FLAGS, SUPER, NUM_KEYS)                                                            \
    static_assert(CIMPLE_ARRAY_SIZE(_##CLASS##_MFA) == CIMPLE_ARRAY_SIZE(_##CLASS##_locals), #CLASS);        \
    const Meta_Class CLASS::static_meta_class = {CIMPLE_ATOMIC_INITIALIZER,                                  \
                                                 (FLAGS),                                                    \
                                                 #CLASS,                                                     \
                                                 nullptr,                                                    \
                                                 0,                                                          \
                                                 _##CLASS##_MFA,                                             \
                                                 CIMPLE_ARRAY_SIZE(_##CLASS##_MFA),                          \
                                                 sizeof(CLASS),                                              \
                                                 _##CLASS##_locals,                                          \
                                                 SUPER,                                                      \
                                                 NUM_KEYS,                                                   \
                                                 &demo_repository}

#endif
