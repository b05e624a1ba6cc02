// Tests of the key check.
#include "support/checkInstanceKeys.h"

#include "VRAX_NamespaceInManager.h"

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

VRAX_Namespace* completeNamespace()
{
    VRAX_Namespace* instance = VRAX_Namespace::create(true);
    for (auto* key : {&instance->SystemCreationClassName,
                      &instance->SystemName,
                      &instance->ObjectManagerCreationClassName,
                      &instance->ObjectManagerName,
                      &instance->CreationClassName,
                      &instance->Name})
        key->set("some text");
    return instance;
}

TEST(CheckInstanceKeys, EveryKeyMustBePopulatedAndNothingElse)
{
    Ref<VRAX_Namespace> instance(completeNamespace());
    instance->ElementName.clear(); // no key
    EXPECT_TRUE(checkInstanceKeys(instance.ptr()));
    instance->SystemName.null = 1;
    EXPECT_FALSE(checkInstanceKeys(instance.ptr()));
    instance->SystemName.set("");
    EXPECT_FALSE(checkInstanceKeys(instance.ptr()));
}

TEST(CheckInstanceKeys, ReferencesMustBeThereAndPopulatedThemselves)
{
    Ref<VRAX_NamespaceInManager> association(VRAX_NamespaceInManager::create(true));
    EXPECT_FALSE(checkInstanceKeys(association.ptr()));
    association->Dependent = completeNamespace();
    association->Antecedent = VRAX_ObjectManager::create(true);
    EXPECT_FALSE(checkInstanceKeys(association.ptr())) << "the manager has no keys";
    for (auto* key : {&association->Antecedent->SystemCreationClassName,
                      &association->Antecedent->SystemName,
                      &association->Antecedent->CreationClassName,
                      &association->Antecedent->Name})
        key->set("some text");
    EXPECT_TRUE(checkInstanceKeys(association.ptr()));
}

} // namespace
} // namespace cimple
