// The shape of a class with one instance for each element of a kind that the local switch numbers: sensors,
// supplies, blades. Each is filled from one batch.
#ifndef COMMON_NUMBERED_PROVIDER_H
#define COMMON_NUMBERED_PROVIDER_H

#include "common/Map_Provider.h"
#include "common/local_system.h"
#include "switchaccess/Attribute.h"
#include "switchaccess/element_count.h"
#include "switchaccess/local_switch.h"

#include <string>
#include <type_traits>

namespace cimple
{

// True for subclasses of CIM_LogicalDevice, false for those of CIM_PhysicalElement.
template <class CLASS, class = void>
struct Is_Device : std::false_type
{
};
template <class CLASS>
struct Is_Device<CLASS, std::void_t<decltype(&CLASS::DeviceID)>> : std::true_type
{
};

// Elements bear the numbers from 1 on; one that cannot be read is left out. What names an element, as
// DeviceID of a device and as Tag of a physical element, is the local switch's WWN, the kind and the number.
// PROVIDER supplies
//   static constexpr const char* kCountKey: the key that tells how many elements there are;
//   static constexpr Attribute<CLASS> kAttributes[]: what the batch reads; the conversion of a key stands for
//     the number;
//   static constexpr const char* kIdKind, *kElementName: the kind in what names the element, and in its
//     ElementName, unless the table has another name for it;
//   static void fill(CLASS& element, std::uint16_t number, const Attribute_Reader<CLASS>& attributes): sets
//     what the table does not say;
// and hides, where it differs,
//   static bool isPublished(const Attribute_Reader<CLASS>& attributes): false for an element that is left
//     out.
template <class PROVIDER, class CLASS>
class Numbered_Provider_Base : public Instance_Provider_Base<PROVIDER, CLASS>
{
  public:
    // Not the count, which is read by a call of its own and must be known.
    static constexpr std::initializer_list<const char*> kDoesWithout = {"xpl_smlGetBatch"};

    static bool isPublished(const Attribute_Reader<CLASS>&) { return true; }

    void build(Map_Writer<CLASS>& map) { publish(map, &PROVIDER::fill); }

  protected:
    // build() with another fill().
    template <class FILL>
    static void publish(Map_Writer<CLASS>& map, FILL fill)
    {
        const std::uint16_t count =
            elementCount(PROVIDER::kCountKey, {PROVIDER::kSource, "load"}, PROVIDER::kReadFailed);
        if (count == 0)
            return;
        const Local_Switch_Wwn localWwn({PROVIDER::kSource, "load"});
        Attribute_Reader<CLASS> attributes(PROVIDER::kAttributes);
        for (std::uint32_t number = 1; number <= count; ++number)
        {
            const std::string text = std::to_string(number);
            if (!attributes.read({text.c_str()}) || !PROVIDER::isPublished(attributes))
                continue;
            Owned<CLASS> element = PROVIDER::make();
            const std::string id = std::string(localWwn.text()) + ":" + PROVIDER::kIdKind + ":" + text;
            if constexpr (Is_Device<CLASS>::value)
            {
                setLocalSystem(*element, localWwn.text());
                element->DeviceID.set(id.c_str());
            }
            else
            {
                element->CreationClassName.set(CLASS::static_meta_class.name);
                element->Tag.set(id.c_str());
            }
            element->ElementName.set((std::string(PROVIDER::kElementName) + " " + text).c_str());
            attributes.fill(*element);
            fill(*element, static_cast<std::uint16_t>(number), attributes);
            PROVIDER::add(map, element);
        }
    }
};

template <class CLASS>
using Numbered_Provider = Numbered_Provider_Base<typename Registered<CLASS>::Provider, CLASS>;

} // namespace cimple

#endif
