// Tests of the key check.
#include "support/checkInstanceKeys.h"

#include "VRAX_NamespaceInManager.h"

#include <functional>
#include <memory>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

struct Destroyer
{
    void operator()(Instance* instance) const { destroy(instance); }
};

VRAX_Namespace* completeNamespace()
{
    VRAX_Namespace* instance = VRAX_Namespace::create(true);
    instance->SystemCreationClassName.set("VRAX_FCSwitch");
    instance->SystemName.set("10000000C9000001");
    instance->ObjectManagerCreationClassName.set("VRAX_ObjectManager");
    instance->ObjectManagerName.set("10000000C9000001");
    instance->CreationClassName.set("VRAX_Namespace");
    instance->Name.set("root/interop");
    return instance;
}

TEST(CheckInstanceKeys, EveryKeyMustBePopulatedAndNothingElse)
{
    struct Row
    {
        const char* what;
        std::function<void(VRAX_Namespace&)> change;
        bool populated;
    };
    const Row rows[] = {
        {"as it is", [](VRAX_Namespace&) {}, true},
        {"null key", [](VRAX_Namespace& n) { n.SystemName.null = 1; }, false},
        {"empty text", [](VRAX_Namespace& n) { n.Name.set(""); }, false},
        {"null property that is no key", [](VRAX_Namespace& n) { n.ElementName.clear(); }, true},
    };
    for (const Row& row : rows)
    {
        const std::unique_ptr<VRAX_Namespace, Destroyer> instance(completeNamespace());
        row.change(*instance);
        EXPECT_EQ(checkInstanceKeys(instance.get()), row.populated) << row.what;
    }
}

TEST(CheckInstanceKeys, ReferencesMustBeThereAndPopulatedThemselves)
{
    const std::unique_ptr<VRAX_NamespaceInManager, Destroyer> association(
        VRAX_NamespaceInManager::create(true));
    EXPECT_FALSE(checkInstanceKeys(association.get()));

    association->Dependent = completeNamespace();
    association->Antecedent = VRAX_ObjectManager::create(true);
    EXPECT_FALSE(checkInstanceKeys(association.get())) << "the manager has no keys";

    association->Antecedent->SystemCreationClassName.set("VRAX_FCSwitch");
    association->Antecedent->SystemName.set("10000000C9000001");
    association->Antecedent->CreationClassName.set("VRAX_ObjectManager");
    association->Antecedent->Name.set("10000000C9000001");
    EXPECT_TRUE(checkInstanceKeys(association.get()));
}

} // namespace
} // namespace cimple
