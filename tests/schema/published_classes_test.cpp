// The published classes as generated from the schema: keys, superclasses, roles and methods.
#include <cimple/cimple.h>
#include <gtest/gtest.h>
#include <string>

#include "repository.h"

using namespace cimple;

namespace
{

struct Published
{
    const char* name;
    const char* super;
    const char* keys; // in the order of the generated class; a reference with its class
    const char* methods;
};

const Published kPublished[] = {
    {"VRAX_Namespace",
     "CIM_Namespace",
     "SystemCreationClassName SystemName ObjectManagerCreationClassName ObjectManagerName CreationClassName "
     "Name ",
     ""},
    {"VRAX_ObjectManager",
     "CIM_ObjectManager",
     "Name SystemCreationClassName SystemName CreationClassName ",
     "RequestStateChange StartService StopService ChangeAffectedElementsAssignedSequence "},
    {"VRAX_CIMXMLCommunicationMechanism",
     "CIM_CIMXMLCommunicationMechanism",
     "Name SystemCreationClassName SystemName CreationClassName ",
     "RequestStateChange "},
    {"VRAX_NamespaceInManager",
     "CIM_NamespaceInManager",
     "Antecedent:VRAX_ObjectManager Dependent:VRAX_Namespace ",
     ""},
    {"VRAX_CIMXMLCommMechanismForManager",
     "CIM_CommMechanismForManager",
     "Antecedent:VRAX_ObjectManager Dependent:VRAX_CIMXMLCommunicationMechanism ",
     ""},
    {"VRAX_FCPortStatistics", "CIM_FCPortStatistics", "InstanceID ", "ResetSelectedStats "},
    {"VRAX_FCPortRateStatistics", "CIM_FCPortRateStatistics", "InstanceID ", "ResetSelectedStats "},
    {"VRAX_StatisticsCollection", "CIM_StatisticsCollection", "InstanceID ", ""},
};

std::string keysOf(const Meta_Class& mc)
{
    std::string keys;
    for (size_t i = 0; i < mc.num_meta_features; ++i)
    {
        const Meta_Feature* feature = mc.meta_features[i];
        if (!(feature->flags & CIMPLE_FLAG_KEY))
            continue;
        keys += feature->name;
        if (feature->flags & CIMPLE_FLAG_REFERENCE)
            keys += std::string(":") + reinterpret_cast<const Meta_Reference*>(feature)->meta_class->name;
        keys += " ";
    }
    return keys;
}

std::string methodsOf(const Meta_Class& mc)
{
    std::string methods;
    for (size_t i = 0; i < mc.num_meta_features; ++i)
        if (mc.meta_features[i]->flags & CIMPLE_FLAG_METHOD)
            methods += std::string(mc.meta_features[i]->name) + " ";
    return methods;
}

TEST(PublishedClasses, KeysSuperclassesAndMethods)
{
    const Meta_Repository* repository = VRAX_Namespace::static_meta_class.meta_repository;
    for (const Published& expected : kPublished)
    {
        SCOPED_TRACE(expected.name);
        const Meta_Class* mc = find_meta_class(repository, expected.name);
        ASSERT_NE(mc, nullptr);
        EXPECT_STREQ(mc->super_meta_class->name, expected.super);
        EXPECT_EQ(keysOf(*mc), expected.keys);
        EXPECT_EQ(methodsOf(*mc), expected.methods);
    }
}

} // namespace
