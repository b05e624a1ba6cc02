// The shape of the classes of I/O blades: one instance for each blade that is present.
#ifndef COMMON_IO_BLADE_PROVIDER_H
#define COMMON_IO_BLADE_PROVIDER_H

#include "common/Numbered_Provider.h"

namespace cimple
{

// PROVIDER supplies what Numbered_Provider leaves; a row of its table is kPresent.
template <class PROVIDER, class CLASS>
class IO_Blade_Provider_Base : public Numbered_Provider_Base<PROVIDER, CLASS>
{
  public:
    static constexpr const char* kCountKey = "Oper.Switch.IOBlade.Count";
    static constexpr const char* kIdKind = "IOBlade";
    static constexpr const char* kElementName = "I/O Blade";
    static constexpr Attribute<CLASS> kPresent = {"Oper.Switch.IOBlade.%d.Present"};

    static bool isPublished(const Attribute_Reader<CLASS>& attributes)
    {
        static constexpr std::size_t kRow = entryOf(PROVIDER::kAttributes, ".Present");
        return isTrue(attributes.text(kRow));
    }
};

template <class CLASS>
using IO_Blade_Provider = IO_Blade_Provider_Base<typename Registered<CLASS>::Provider, CLASS>;

} // namespace cimple

#endif
