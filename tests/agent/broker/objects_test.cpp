// Values in and out of CMPI objects.
#include "agent/broker/InstanceObject.h"
#include "agent/broker/conversion.h"
#include "tests/agent/broker/BrokerFixture.h"

namespace cimd::test
{
namespace
{

using CmpiObjects = BrokerFixture;

TEST_F(CmpiObjects, ReadNoMoreThanTheTypedBytes)
{
    CMPIInstance* widget = newWidget();
    CMPICount count = 0;
    const auto keeps = [&](const char* name, CMPIType type, auto CMPIValue::*member, auto value)
    {
        EXPECT_EQ(set(widget, name, type, value), CMPI_RC_OK) << name;
        EXPECT_EQ(CMGetProperty(widget, name, nullptr).value.*member, value) << name;
        EXPECT_EQ(CMGetPropertyCount(widget, nullptr), ++count);
    };
    keeps("c16", CMPI_char16, &CMPIValue::char16, CMPIChar16{0x1234});
    keeps("U8", CMPI_uint8, &CMPIValue::uint8, CMPIUint8{200});
    keeps("U16", CMPI_uint16, &CMPIValue::uint16, CMPIUint16{60000});
    keeps("U32", CMPI_uint32, &CMPIValue::uint32, CMPIUint32{4000000000U});
    keeps("U64", CMPI_uint64, &CMPIValue::uint64, CMPIUint64{1} << 63U);
    keeps("S8", CMPI_sint8, &CMPIValue::sint8, CMPISint8{-100});
    keeps("S16", CMPI_sint16, &CMPIValue::sint16, CMPISint16{-30000});
    keeps("S32", CMPI_sint32, &CMPIValue::sint32, CMPISint32{-2000000000});
    keeps("S64", CMPI_sint64, &CMPIValue::sint64, CMPISint64{INT64_MIN});
    keeps("R32", CMPI_real32, &CMPIValue::real32, CMPIReal32{0.25F});
    keeps("R64", CMPI_real64, &CMPIValue::real64, CMPIReal64{0.1});
    set<CMPIBoolean>(widget, "B", CMPI_boolean, 2);
    EXPECT_EQ(CMGetProperty(widget, "b", nullptr).value.boolean, 1);
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
    EXPECT_EQ(set<CMPIUint8>(widget, "U16", CMPI_uint8, 1), CMPI_RC_ERR_TYPE_MISMATCH);
}

TEST_F(CmpiObjects, KeepOnlyFilteredProperties)
{
    CMPIInstance* widget = newWidget();
    set<CMPIUint8>(widget, "U8", CMPI_uint8, 1);
    set<CMPIUint16>(widget, "U16", CMPI_uint16, 2);
    const char* properties[] = {"u16", "s8", nullptr};
    const char* keys[] = {"Name", nullptr};
    widget->ft->setPropertyFilter(widget, properties, keys);
    EXPECT_EQ(CMGetPropertyCount(widget, nullptr), 1U); // what was set before is gone as well
    EXPECT_EQ(set<CMPIUint8>(widget, "U8", CMPI_uint8, 1), CMPI_RC_OK);
    EXPECT_EQ(set<CMPISint8>(widget, "S8", CMPI_sint8, 3), CMPI_RC_OK);
    EXPECT_EQ(setText(widget, "Name", "w"), CMPI_RC_OK);
    EXPECT_EQ(CMGetPropertyCount(widget, nullptr), 3U);
    widget->ft->setPropertyFilter(widget, nullptr, nullptr);
    set<CMPIUint8>(widget, "U8", CMPI_uint8, 4);
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
    EXPECT_EQ(set(widget, "Texts", CMPI_stringA, array), CMPI_RC_OK);
    array->ft->setElementAt(array, 0, nullptr, CMPI_null); // the instance has a copy
    const CMPIData data = CMGetProperty(widget, "Texts", nullptr);
    EXPECT_EQ(data.type, CMPI_stringA);
    EXPECT_EQ(text(CMGetArrayElementAt(data.value.array, 0, nullptr)), "chars");
    EXPECT_EQ(text(CMGetArrayElementAt(data.value.array, 2, nullptr)), "string");
    CMGetArrayElementAt(data.value.array, 3, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    // Said to be an array of something else.
    EXPECT_EQ(set(widget, "Numbers", CMPI_uint16A, array), CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(CMNewArray(mb, 1, CMPI_args, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
}

TEST_F(CmpiObjects, HoldBytesAndNullsAmongThem)
{
    CMPIArray* array = CMNewArray(mb, 3, CMPI_uint8, nullptr);
    const auto setElement = [&](CMPICount index, CMPIUint8 value)
    { return array->ft->setElementAt(array, index, reinterpret_cast<CMPIValue*>(&value), CMPI_uint8).rc; };
    CMPIArgs* args = CMNewArgs(mb, nullptr);
    const auto passedOn = [&]
    {
        CMAddArg(args, "a", reinterpret_cast<CMPIValue*>(&array), CMPI_uint8A);
        CMPIArray* passed = CMGetArg(args, "a", nullptr).value.array;
        std::string elements;
        for (CMPICount i = 0; i < CMGetArrayCount(passed, nullptr); ++i)
        {
            const CMPIData data = CMGetArrayElementAt(passed, i, nullptr);
            EXPECT_EQ(data.type, CMPI_uint8);
            elements += CMIsNullValue(data) ? "null " : std::to_string(data.value.uint8) + ' ';
        }
        return elements;
    };
    EXPECT_EQ(passedOn(), "null null null ");
    EXPECT_EQ(setElement(0, 0), CMPI_RC_OK);
    EXPECT_EQ(setElement(2, 255), CMPI_RC_OK);
    EXPECT_EQ(passedOn(), "0 null 255 ");
    EXPECT_EQ(setElement(1, 7), CMPI_RC_OK);
    EXPECT_EQ(setElement(3, 7), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    const CMPISint8 other = 1;
    EXPECT_EQ(array->ft->setElementAt(array, 1, reinterpret_cast<const CMPIValue*>(&other), CMPI_sint8).rc,
              CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(passedOn(), "0 7 255 ");
    EXPECT_TRUE(fromCmpi(reinterpret_cast<CMPIValue*>(&array), CMPI_uint8A).holdsBytes());
    EXPECT_EQ(array->ft->setElementAt(array, 1, nullptr, CMPI_uint8).rc, CMPI_RC_OK);
    EXPECT_EQ(passedOn(), "0 null 255 ");
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
    EXPECT_EQ(text(CMGetKeyAt(path, 0, &name, nullptr)), "first");
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
    setText(widget, "Name", "again");
    EXPECT_EQ(text(CMGetKey(CMGetObjectPath(widget, nullptr), "Name", nullptr)), "again");
}

// The names of a path's keys come from its class, and those of a path that has gone are used again.
TEST_F(CmpiObjects, FillPathsOfOneClassOneAfterTheOther)
{
    const struct
    {
        std::vector<const char*> keys; // as they are added
        const char* text;
    } rows[] = {{{"Id", "Active"}, "Active=TRUE,Id=7"},
                {{}, "root/test:Test_Compound"},
                {{"Active", "Id", "Id"}, "Active=TRUE,Id=7"},
                {{"id"}, "id=7"},
                {{"Id", "ID"}, "Id=7"},
                {{"Id", "Zeal", "Active"}, "Active=TRUE,Id=7,Zeal=7"}};
    for (const auto& row : rows)
    {
        CMPIObjectPath* path = newPath("Test_Compound");
        for (const char* name : row.keys)
        {
            CMPIValue value{};
            const bool isActive = std::string(name) == "Active";
            isActive ? value.boolean = 1 : value.uint32 = 7;
            path->ft->addKey(path, name, &value, isActive ? CMPI_boolean : CMPI_uint32);
        }
        CMPIObjectPath* clone = CMClone(path, nullptr);
        CMRelease(path);
        std::string told = text(clone->ft->toString(clone, nullptr));
        CMRelease(clone);
        told.erase(0, told.find('.') + 1);
        EXPECT_EQ(row.text, told);
    }
}

// An instance that has gone leaves its place to the next of its class, and nothing else.
TEST_F(CmpiObjects, ReturnInstancesOneAfterTheOther)
{
    const struct
    {
        const char* className;
        const char* name; // key in the path
        bool isFiltered;
        std::string given; // names of the properties that are
    } rows[] = {{"Test_Widget", "a", false, "Name U8 "},
                {"Test_Widget", "b", true, ""},
                {"Test_Gadget", "c", false, "Name U8 "},
                {"Test_Sprocket", "d", false, "Name "},
                {"Test_Widget", "e", false, "Name U8 "}};
    const char* none[] = {nullptr};
    for (const auto& row : rows)
        for (const bool isSet : {true, false})
        {
            CMPIObjectPath* path = newPath(row.className);
            path->ft->addKey(path, "Name", reinterpret_cast<const CMPIValue*>(row.name), CMPI_chars);
            CMPIInstance* instance = CMNewInstance(mb, path, nullptr);
            CMPIInstance* other = CMNewInstance(mb, path, nullptr);
            for (CMPIInstance* each : {instance, other})
                if (isSet)
                    set<CMPIUint8>(each, "U8", CMPI_uint8, 1);
            if (row.isFiltered)
                instance->ft->setPropertyFilter(instance, none, none);
            ASSERT_EQ(CMReturnInstance(call.result(), instance).rc, CMPI_RC_OK);
            CMRelease(other);
            CMRelease(instance);
            std::string given;
            for (const Property& property : results.instances.back().properties())
                given += property.value.isNull() ? "" : property.name.str() + ' ';
            EXPECT_EQ(isSet ? row.given : row.given.substr(0, row.given.find("U8")), given) << row.name;
            EXPECT_EQ(row.className, results.instances.back().className().str());
        }
}

// Others may be returning it, too.
TEST_F(CmpiObjects, LeaveReturnedClonesAsTheyAre)
{
    CMPIInstance* widget = newWidget();
    const char* properties[] = {"Name", nullptr};
    widget->ft->setPropertyFilter(widget, properties, nullptr);
    CMPIInstance* clone = CMClone(widget, nullptr);
    EXPECT_EQ(CMReturnInstance(call.result(), clone).rc, CMPI_RC_OK);
    set<CMPIUint8>(clone, "U8", CMPI_uint8, 1);
    EXPECT_EQ(CMGetPropertyCount(clone, nullptr), 0U) << "neither the key nor what is filtered out";
    CMRelease(clone);
    CMPIObjectPath* path = CMClone(CMGetObjectPath(newWidget(), nullptr), nullptr);
    path->ft->setHostname(path, "host");
    EXPECT_EQ(CMReturnObjectPath(call.result(), path).rc, CMPI_RC_OK);
    EXPECT_EQ(text(path->ft->getHostname(path, nullptr)), "host");
    CMRelease(path);
    set<CMPIUint8>(widget, "Name", CMPI_uint8, 1); // of a wrong type, which counts against the clone, too
    clone = CMClone(widget, nullptr);
    EXPECT_NE(CMReturnInstance(call.result(), clone).rc, CMPI_RC_OK);
    CMRelease(clone);
}

TEST_F(CmpiObjects, CarryInstancesWithinInstances)
{
    CMPIInstance* part = CMNewInstance(mb, newPath("Test_Part"), nullptr);
    setText(part, "Label", "inner");
    CMPIInstance* widget = newWidget();
    EXPECT_EQ(set(widget, "Part", CMPI_instance, part), CMPI_RC_OK);
    setText(part, "Label", "changed later");
    const CMPIData data = CMGetProperty(widget, "Part", nullptr);
    EXPECT_EQ(text(CMGetProperty(data.value.inst, "label", nullptr)), "inner");
    // Of the wrong class.
    CMPIInstance* sprocket = CMNewInstance(mb, newPath("Test_Sprocket"), nullptr);
    set(widget, "Part", CMPI_instance, sprocket);
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
