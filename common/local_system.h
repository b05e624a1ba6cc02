// How what the local switch hosts or contains names its system.
#ifndef COMMON_LOCAL_SYSTEM_H
#define COMMON_LOCAL_SYSTEM_H

namespace cimple
{

constexpr char kLocalSystemClass[] = "VRAX_FCSwitch";

// Sets the keys SystemCreationClassName, SystemName and CreationClassName of a device, service or access
// point of the local switch.
template <class CLASS>
void setLocalSystem(CLASS& instance, const char* localWwn)
{
    instance.SystemCreationClassName.set(kLocalSystemClass);
    instance.SystemName.set(localWwn);
    instance.CreationClassName.set(CLASS::static_meta_class.name);
}

} // namespace cimple

#endif
