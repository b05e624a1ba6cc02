// Function tables of strings, arrays, date-times, enumerations, arguments and contexts.
#include "agent/broker/conversion.h"
#include "agent/broker/objects.h"
#include "agent/cim/coercion.h"

#include <algorithm>

namespace cimd
{
namespace
{

// --- Strings

const char* stringText(const CMPIString* string, CMPIStatus* rc)
{
    return answer(rc, [&] { return objectOf<StringObject>(string).text.c_str(); });
}

// --- Arrays

CMPICount arraySize(const CMPIArray* array, CMPIStatus* rc)
{
    return answer(rc, [&] { return static_cast<CMPICount>(objectOf<ArrayObject>(array).elements.size()); });
}

CMPIType arrayType(const CMPIArray* array, CMPIStatus* rc)
{
    return answer(rc, [&] { return cmpiType(objectOf<ArrayObject>(array).elements.type(), false); });
}

void checkIndex(const CimArray& elements, CMPICount index)
{
    if (index >= elements.size())
        throw CmpiError(CMPI_RC_ERR_NO_SUCH_PROPERTY,
                        "index " + std::to_string(index) + " in an array of " +
                            std::to_string(elements.size()));
}

CMPIData arrayElement(const CMPIArray* array, CMPICount index, CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      const CimArray& elements = objectOf<ArrayObject>(array).elements;
                      checkIndex(elements, index);
                      return toCmpi(elements.at(index));
                  });
}

CMPIStatus setArrayElement(const CMPIArray* array, CMPICount index, const CMPIValue* value, CMPIType type)
{
    return answer(
        [&]
        {
            CimArray& elements = objectOf<ArrayObject>(array).elements;
            checkIndex(elements, index);
            auto element = conform(fromCmpi(value, type), elements.type(), false);
            if (!element)
                throw CmpiError(CMPI_RC_ERR_TYPE_MISMATCH,
                                "CMPI type " + std::to_string(type) + " in an array of " +
                                    typeText(elements.type(), false));
            elements.set(index, std::move(*element));
        });
}

// --- Date-times

CMPIUint64 timeBinary(const CMPIDateTime* time, CMPIStatus* rc)
{
    return answer(rc, [&]() -> CMPIUint64 { return objectOf<DateTimeObject>(time).value.microseconds(); });
}

CMPIString* timeText(const CMPIDateTime* time, CMPIStatus* rc)
{
    return answer(rc, [&] { return trackString(std::string(objectOf<DateTimeObject>(time).value.text())); });
}

CMPIBoolean timeIsInterval(const CMPIDateTime* time, CMPIStatus* rc)
{
    return answer(rc,
                  [&]() -> CMPIBoolean { return objectOf<DateTimeObject>(time).value.isInterval() ? 1 : 0; });
}

// --- Enumerations

CMPIData enumerationNext(const CMPIEnumeration* enumeration, CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      auto& object = objectOf<EnumerationObject>(enumeration);
                      if (object.next >= object.elements.size())
                          throw CmpiError(CMPI_RC_NO_MORE_ELEMENTS, "no more elements");
                      return toCmpi(object.elements[object.next++]);
                  });
}

CMPIBoolean enumerationHasNext(const CMPIEnumeration* enumeration, CMPIStatus* rc)
{
    return answer(rc,
                  [&]() -> CMPIBoolean
                  {
                      const auto& object = objectOf<EnumerationObject>(enumeration);
                      return object.next < object.elements.size() ? 1 : 0;
                  });
}

CMPIArray* enumerationArray(const CMPIEnumeration* enumeration, CMPIStatus* rc)
{
    return answer(rc,
                  [&]() -> CMPIArray*
                  {
                      const auto& object = objectOf<EnumerationObject>(enumeration);
                      return track<ArrayObject>(CimArray(CimValue::array(object.type, object.elements)));
                  });
}

// Items by name or index, of arguments and contexts.

CimValue* findArgument(ArgsObject& object, const char* name)
{
    for (Argument& argument : object.arguments)
        if (equalNoCase(argument.name.str(), name))
            return &argument.value;
    return nullptr;
}

CMPIStatus addArgument(const CMPIArgs* args, const char* name, const CMPIValue* value, CMPIType type)
{
    return answer(
        [&]
        {
            auto& object = objectOf<ArgsObject>(args);
            CimValue converted = fromCmpi(value, type);
            if (CimValue* known = findArgument(object, required(name, "the name of an argument")))
                *known = std::move(converted);
            else
                object.arguments.push_back({CimName(name), std::move(converted)});
        });
}

CMPIData getArgument(const CMPIArgs* args, const char* name, CMPIStatus* rc)
{
    return answerValue(rc, [&] { return findArgument(objectOf<ArgsObject>(args), orEmpty(name)); });
}

CMPIData getArgumentAt(const CMPIArgs* args, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    const auto items = [&]() -> auto&
    {
        return objectOf<ArgsObject>(args).arguments;
    };
    return answerItem(rc, items, index, name);
}

CMPICount argumentCount(const CMPIArgs* args, CMPIStatus* rc)
{
    return answer(rc, [&] { return static_cast<CMPICount>(objectOf<ArgsObject>(args).arguments.size()); });
}

CMPIStatus addEntry(const CMPIContext* context, const char* name, const CMPIValue* value, CMPIType type)
{
    return answer(
        [&] {
            objectOf<ContextObject>(context).set(required(name, "the name of an entry"),
                                                 fromCmpi(value, type));
        });
}

CMPIData getEntry(const CMPIContext* context, const char* name, CMPIStatus* rc)
{
    return answerValue(rc, [&] { return objectOf<ContextObject>(context).find(orEmpty(name)); });
}

CMPIData getEntryAt(const CMPIContext* context, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    const auto items = [&]() -> auto&
    {
        return objectOf<ContextObject>(context).entries;
    };
    return answerItem(rc, items, index, name);
}

CMPICount entryCount(const CMPIContext* context, CMPIStatus* rc)
{
    return answer(rc,
                  [&] { return static_cast<CMPICount>(objectOf<ContextObject>(context).entries.size()); });
}

} // namespace

void ContextObject::set(const std::string& name, CimValue value)
{
    const auto place = std::find_if(
        entries.begin(), entries.end(), [&](const Argument& entry) { return entry.name.str() == name; });
    if (place == entries.end())
        entries.push_back({name, std::move(value)});
    else
        place->value = std::move(value);
}

const CimValue* ContextObject::find(std::string_view name) const
{
    for (const Argument& entry : entries)
        if (entry.name.str() == name)
            return &entry.value;
    return nullptr;
}

const CMPIStringFT kStringTable{
    CMPIVersion200, releaseObject<StringObject>, cloneObject<StringObject>, stringText};

const CMPIArrayFT kArrayTable{CMPIVersion200,
                              releaseObject<ArrayObject>,
                              cloneObject<ArrayObject>,
                              arraySize,
                              arrayType,
                              arrayElement,
                              setArrayElement};

const CMPIDateTimeFT kDateTimeTable{CMPIVersion200,
                                    releaseObject<DateTimeObject>,
                                    cloneObject<DateTimeObject>,
                                    timeBinary,
                                    timeText,
                                    timeIsInterval};

const CMPIEnumerationFT kEnumerationTable{CMPIVersion200,
                                          releaseObject<EnumerationObject>,
                                          cloneObject<EnumerationObject>,
                                          enumerationNext,
                                          enumerationHasNext,
                                          enumerationArray};

const CMPIArgsFT kArgsTable{CMPIVersion200,
                            releaseObject<ArgsObject>,
                            cloneObject<ArgsObject>,
                            addArgument,
                            getArgument,
                            getArgumentAt,
                            argumentCount};

const CMPIContextFT kContextTable{CMPIVersion200,
                                  releaseObject<ContextObject>,
                                  cloneObject<ContextObject>,
                                  getEntry,
                                  getEntryAt,
                                  entryCount,
                                  addEntry};

} // namespace cimd
