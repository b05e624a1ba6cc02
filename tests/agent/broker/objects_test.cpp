// Values in and out of CMPI objects.
#include "agent/broker/InstanceObject.h"
#include "agent/broker/conversion.h"
#include "tests/agent/broker/BrokerFixture.h"

#include <memory>

namespace cimd::test
{
namespace
{

class CmpiObjects : public BrokerFixture
{
};

// In a block of exactly its size, so that reading more is caught.
template <class Scalar>
CMPIStatus setExactly(CMPIInstance* instance, const char* name, CMPIType type, Scalar value)
{
    const auto block = std::make_unique<Scalar>(value);
    const CMPIValue* address = static_cast<const CMPIValue*>(static_cast<const void*>(block.get()));
    return instance->ft->setProperty(instance, name, address, type);
}

TEST_F(CmpiObjects, ReadNoMoreThanTheTypedBytes)
{
    CMPIInstance* widget = newWidget();
    setExactly<CMPIBoolean>(widget, "B", CMPI_boolean, 2);
    setExactly<CMPIChar16>(widget, "C16", CMPI_char16, 0x1234);
    setExactly<CMPIUint8>(widget, "U8", CMPI_uint8, 200);
    setExactly<CMPIUint16>(widget, "U16", CMPI_uint16, 60000);
    setExactly<CMPIUint32>(widget, "U32", CMPI_uint32, 4000000000U);
    setExactly<CMPIUint64>(widget, "U64", CMPI_uint64, 1ULL << 63U);
    setExactly<CMPISint8>(widget, "S8", CMPI_sint8, -100);
    setExactly<CMPISint16>(widget, "S16", CMPI_sint16, -30000);
    setExactly<CMPISint32>(widget, "S32", CMPI_sint32, -2000000000);
    setExactly<CMPISint64>(widget, "S64", CMPI_sint64, INT64_MIN);
    setExactly<CMPIReal32>(widget, "R32", CMPI_real32, 0.25F);
    setExactly<CMPIReal64>(widget, "R64", CMPI_real64, 0.1);

    CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
    EXPECT_EQ(CMGetProperty(widget, "b", &status).value.boolean, 1);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    EXPECT_EQ(CMGetProperty(widget, "c16", nullptr).value.char16, 0x1234);
    EXPECT_EQ(CMGetProperty(widget, "u8", nullptr).value.uint8, 200);
    EXPECT_EQ(CMGetProperty(widget, "u16", nullptr).value.uint16, 60000);
    EXPECT_EQ(CMGetProperty(widget, "u32", nullptr).value.uint32, 4000000000U);
    EXPECT_EQ(CMGetProperty(widget, "u64", nullptr).value.uint64, 1ULL << 63U);
    EXPECT_EQ(CMGetProperty(widget, "s8", nullptr).value.sint8, -100);
    EXPECT_EQ(CMGetProperty(widget, "s16", nullptr).value.sint16, -30000);
    EXPECT_EQ(CMGetProperty(widget, "s32", nullptr).value.sint32, -2000000000);
    EXPECT_EQ(CMGetProperty(widget, "s64", nullptr).value.sint64, INT64_MIN);
    EXPECT_EQ(CMGetProperty(widget, "r32", nullptr).value.real32, 0.25F);
    EXPECT_EQ(CMGetProperty(widget, "r64", nullptr).value.real64, 0.1);
    EXPECT_EQ(CMGetPropertyCount(widget, nullptr), 12U);
}

TEST_F(CmpiObjects, TellAbsentFromNull)
{
    CMPIInstance* widget = newWidget();
    CMPIStatus status{CMPI_RC_OK, nullptr};
    EXPECT_TRUE(CMGetProperty(widget, "U8", &status).state & CMPI_notFound);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(widget->ft->setProperty(widget, "U8", nullptr, CMPI_uint8).rc, CMPI_RC_OK);
    const CMPIData data = CMGetProperty(widget, "U8", &status);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    EXPECT_EQ(data.state, CMPI_nullValue);
    EXPECT_EQ(data.type, CMPI_uint8);
    CMPIString* name = nullptr;
    CMGetPropertyAt(widget, 0, &name, &status);
    EXPECT_EQ(text(name), "U8");
    CMGetPropertyAt(widget, 1, &name, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(widget->ft->setProperty(widget, "Nothing", nullptr, CMPI_uint8).rc,
              CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(widget->ft->setProperty(widget, nullptr, nullptr, CMPI_uint8).rc,
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(setExactly<CMPIUint8>(widget, "U16", CMPI_uint8, 1).rc, CMPI_RC_ERR_TYPE_MISMATCH);
}

TEST_F(CmpiObjects, KeepOnlyFilteredProperties)
{
    CMPIInstance* widget = newWidget();
    setExactly<CMPIUint8>(widget, "U8", CMPI_uint8, 1);
    setExactly<CMPIUint16>(widget, "U16", CMPI_uint16, 2);
    const char* properties[] = {"u16", "s8", nullptr};
    const char* keys[] = {"Name", nullptr};
    widget->ft->setPropertyFilter(widget, properties, keys);
    EXPECT_EQ(CMGetPropertyCount(widget, nullptr), 1U); // what was set before is gone as well
    EXPECT_EQ(setExactly<CMPIUint8>(widget, "U8", CMPI_uint8, 1).rc, CMPI_RC_OK);
    EXPECT_EQ(setExactly<CMPISint8>(widget, "S8", CMPI_sint8, 3).rc, CMPI_RC_OK);
    EXPECT_EQ(widget->ft->setProperty(widget, "Name", reinterpret_cast<const CMPIValue*>("w"), CMPI_chars).rc,
              CMPI_RC_OK);
    EXPECT_EQ(CMGetPropertyCount(widget, nullptr), 3U);
    widget->ft->setPropertyFilter(widget, nullptr, nullptr);
    setExactly<CMPIUint8>(widget, "U8", CMPI_uint8, 4);
    EXPECT_EQ(CMGetPropertyCount(widget, nullptr), 4U);
    EXPECT_EQ(CMReturnInstance(call.result(), widget).rc, CMPI_RC_OK);
    EXPECT_EQ(*results.instances.at(0).find("U8"), CimValue::uint8(4));
}

TEST_F(CmpiObjects, HoldArraysOfOneType)
{
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIArray* array = CMNewArray(mb, 3, CMPI_chars, &status);
    EXPECT_EQ(CMGetArrayType(array, nullptr), CMPI_string);
    EXPECT_EQ(CMGetArrayCount(array, nullptr), 3U);
    EXPECT_TRUE(CMIsNullValue(CMGetArrayElementAt(array, 1, nullptr)));
    EXPECT_EQ(array->ft->setElementAt(array, 0, reinterpret_cast<const CMPIValue*>("chars"), CMPI_chars).rc,
              CMPI_RC_OK);
    CMPIString* string = CMNewString(mb, "string", nullptr);
    EXPECT_EQ(array->ft->setElementAt(array, 2, reinterpret_cast<CMPIValue*>(&string), CMPI_string).rc,
              CMPI_RC_OK);
    const CMPIUint32 number = 1;
    EXPECT_EQ(array->ft->setElementAt(array, 1, reinterpret_cast<const CMPIValue*>(&number), CMPI_uint32).rc,
              CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(array->ft->setElementAt(array, 3, nullptr, CMPI_string).rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);

    CMPIInstance* widget = newWidget();
    EXPECT_EQ(widget->ft->setProperty(widget, "Texts", reinterpret_cast<CMPIValue*>(&array), CMPI_stringA).rc,
              CMPI_RC_OK);
    array->ft->setElementAt(array, 0, nullptr, CMPI_null); // the instance has a copy
    const CMPIData data = CMGetProperty(widget, "Texts", nullptr);
    EXPECT_EQ(data.type, CMPI_stringA);
    EXPECT_EQ(text(CMGetArrayElementAt(data.value.array, 0, nullptr).value.string), "chars");
    EXPECT_EQ(text(CMGetArrayElementAt(data.value.array, 2, nullptr).value.string), "string");
    CMGetArrayElementAt(data.value.array, 3, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    // Said to be an array of something else.
    EXPECT_EQ(
        widget->ft->setProperty(widget, "Numbers", reinterpret_cast<CMPIValue*>(&array), CMPI_uint16A).rc,
        CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(CMNewArray(mb, 1, CMPI_args, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
}

TEST_F(CmpiObjects, TellTimesInEveryForm)
{
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIDateTime* time = CMNewDateTimeFromBinary(mb, 1709251199999999ULL, 0, nullptr);
    EXPECT_EQ(text(CMGetStringFormat(time, nullptr)), "20240229235959.999999+000");
    EXPECT_FALSE(CMIsInterval(time, nullptr));
    CMPIDateTime* interval = CMNewDateTimeFromChars(mb, "00000001000000.000001:000", nullptr);
    EXPECT_EQ(CMGetBinaryFormat(interval, nullptr), 86400000001ULL);
    EXPECT_TRUE(CMIsInterval(interval, nullptr));
    EXPECT_EQ(CMNewDateTimeFromChars(mb, "soon", &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CMNewDateTimeFromBinary(mb, UINT64_MAX, 0, &status), nullptr);
    EXPECT_GT(CMGetBinaryFormat(CMNewDateTime(mb, nullptr), nullptr), 1700000000000000ULL);
}

TEST_F(CmpiObjects, KeepPathsAndTheirKeys)
{
    CMPIObjectPath* path = newPath("Test_Widget");
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPISint64 number = -5;
    path->ft->addKey(path, "b", reinterpret_cast<const CMPIValue*>(&number), CMPI_sint64);
    path->ft->addKey(path, "A", reinterpret_cast<const CMPIValue*>("first"), CMPI_chars);
    EXPECT_EQ(path->ft->addKey(path, "c", nullptr, CMPI_string).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CMGetKeyCount(path, nullptr), 2U);
    const CMPIData key = CMGetKey(path, "B", &status);
    EXPECT_EQ(key.state, CMPI_keyValue);
    EXPECT_EQ(key.value.sint64, -5);
    CMPIString* name = nullptr;
    EXPECT_EQ(text(CMGetKeyAt(path, 0, &name, nullptr).value.string), "first");
    EXPECT_EQ(text(name), "A");
    CMGetKey(path, "c", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);

    CMPIObjectPath* other = CMNewObjectPath(mb, nullptr, nullptr, nullptr);
    path->ft->setHostname(path, "host");
    other->ft->setHostAndNameSpaceFromObjectPath(other, path);
    EXPECT_EQ(text(path->ft->toString(other, nullptr)), "//host/root/test:Test_Widget");
    path->ft->getClassQualifier(path, "Key", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);

    CMPIInstance* widget = newWidget("w");
    EXPECT_EQ(widget->ft->setObjectPath(widget, newPath("Test_Sprocket")).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(widget->ft->setObjectPath(widget, newPath("test_widget")).rc, CMPI_RC_OK);
    EXPECT_EQ(CMGetKeyCount(CMGetObjectPath(widget, nullptr), nullptr), 0U);
    widget->ft->setProperty(widget, "Name", reinterpret_cast<const CMPIValue*>("again"), CMPI_chars);
    EXPECT_EQ(text(CMGetKey(CMGetObjectPath(widget, nullptr), "Name", nullptr).value.string), "again");
}

TEST_F(CmpiObjects, CarryInstancesWithinInstances)
{
    CMPIInstance* part = CMNewInstance(mb, newPath("Test_Part"), nullptr);
    part->ft->setProperty(part, "Label", reinterpret_cast<const CMPIValue*>("inner"), CMPI_chars);
    CMPIInstance* widget = newWidget();
    EXPECT_EQ(widget->ft->setProperty(widget, "Part", reinterpret_cast<CMPIValue*>(&part), CMPI_instance).rc,
              CMPI_RC_OK);
    part->ft->setProperty(part, "Label", reinterpret_cast<const CMPIValue*>("changed later"), CMPI_chars);
    const CMPIData data = CMGetProperty(widget, "Part", nullptr);
    EXPECT_EQ(text(CMGetProperty(data.value.inst, "label", nullptr).value.string), "inner");
    // Of the wrong class.
    CMPIInstance* sprocket = CMNewInstance(mb, newPath("Test_Sprocket"), nullptr);
    widget->ft->setProperty(widget, "Part", reinterpret_cast<CMPIValue*>(&sprocket), CMPI_instance);
    EXPECT_NE(CMReturnInstance(call.result(), widget).rc, CMPI_RC_OK);
    EXPECT_TRUE(results.instances.empty());
}

TEST_F(CmpiObjects, RefuseTypesThatCarryNoValue)
{
    CMPIArgs* args = CMNewArgs(mb, nullptr);
    const CMPIUint64 garbage = 0;
    for (const unsigned type : {0x0001U, 0x0777U, 0x1200U, 0x1900U, 0x2001U, 0xFFFFU})
        EXPECT_EQ(CMAddArg(args, "a", &garbage, static_cast<CMPIType>(type)).rc,
                  CMPI_RC_ERR_INVALID_DATA_TYPE)
            << type;
    EXPECT_EQ(CMGetArgCount(args, nullptr), 0U);
    EXPECT_EQ(CMAddArg(args, "a", "text", CMPI_chars).rc, CMPI_RC_OK);
    EXPECT_EQ(CMAddArg(args, "A", nullptr, CMPI_null).rc, CMPI_RC_OK); // replaces
    EXPECT_TRUE(CMIsNullValue(CMGetArgAt(args, 0, nullptr, nullptr)));
    EXPECT_EQ(CMGetArgCount(args, nullptr), 1U);
}

} // namespace
} // namespace cimd::test
