// Meta data of the sensor and rack classes, and the repository of all test classes.
#include "demo_meta.h"

CIMPLE_NAMESPACE_BEGIN

namespace
{
const uint32 kKey = CIMPLE_FLAG_KEY | CIMPLE_FLAG_READ;
const uint32 kRead = CIMPLE_FLAG_READ;
} // namespace

const Meta_Class Demo_Thing::static_meta_class = {CIMPLE_ATOMIC_INITIALIZER,
                                                  CIMPLE_FLAG_CLASS | CIMPLE_FLAG_ABSTRACT,
                                                  "Demo_Thing",
                                                  nullptr,
                                                  0,
                                                  nullptr,
                                                  0,
                                                  sizeof(Demo_Thing),
                                                  nullptr,
                                                  nullptr,
                                                  0,
                                                  &demo_repository};

DEMO_PROPERTY(Demo_Limits, Low, kRead, SINT32, 0);
DEMO_PROPERTY(Demo_Limits, High, kRead, SINT32, 0);
static const Meta_Feature* _Demo_Limits_MFA[] = {DEMO_FEATURE_ENTRY(_Demo_Limits_Low),
                                                 DEMO_FEATURE_ENTRY(_Demo_Limits_High)};
static const Meta_Feature_Local _Demo_Limits_locals[] = {{1}, {1}};
DEMO_CLASS(Demo_Limits, CIMPLE_FLAG_CLASS, nullptr, 0);

DEMO_PROPERTY(Demo_Rack, Name, kKey, STRING, 0);
static const Meta_Feature* _Demo_Rack_MFA[] = {DEMO_FEATURE_ENTRY(_Demo_Rack_Name)};
static const Meta_Feature_Local _Demo_Rack_locals[] = {{1}};
DEMO_CLASS(Demo_Rack, CIMPLE_FLAG_CLASS, &Demo_Thing::static_meta_class, 1);

static const Meta_Property _Demo_Element_Reset_return_value = {
    CIMPLE_ATOMIC_INITIALIZER,
    CIMPLE_FLAG_PROPERTY | CIMPLE_FLAG_OUT,
    "return_value",
    nullptr,
    0,
    UINT32,
    0,
    CIMPLE_OFF(Demo_Element_Reset_method, return_value),
    nullptr};
static const Meta_Feature* _Demo_Element_Reset_method_MFA[] = {
    DEMO_FEATURE_ENTRY(_Demo_Element_Reset_return_value)};
DEMO_METHOD(Demo_Element_Reset_method, "Reset", 0, UINT32);

DEMO_PROPERTY(Demo_Element, Id, kKey, UINT32, 0);
static const Meta_Value_Scalar<const char*> _Demo_Element_Label_MV = {"unnamed"};
DEMO_PROPERTY_VALUE(Demo_Element, Label, kRead, STRING, 0, &_Demo_Element_Label_MV);
static const Meta_Feature* _Demo_Element_MFA[] = {
    DEMO_FEATURE_ENTRY(_Demo_Element_Id),
    DEMO_FEATURE_ENTRY(_Demo_Element_Label),
    DEMO_FEATURE_ENTRY(Demo_Element_Reset_method::static_meta_class)};
static const Meta_Feature_Local _Demo_Element_locals[] = {{1}, {1}, {1}};
DEMO_CLASS(Demo_Element, CIMPLE_FLAG_CLASS, &Demo_Thing::static_meta_class, 1);

DEMO_PROPERTY(Demo_Sensor_Calibrate_method, Target, CIMPLE_FLAG_IN, UINT32, 0);
DEMO_PROPERTY(Demo_Sensor_Calibrate_method, Drift, CIMPLE_FLAG_OUT, SINT32, 0);
DEMO_REFERENCE(Demo_Sensor_Calibrate_method, Where, CIMPLE_FLAG_IN, 0, Demo_Rack);
DEMO_PROPERTY(Demo_Sensor_Calibrate_method, return_value, CIMPLE_FLAG_OUT, UINT32, 0);
static const Meta_Feature* _Demo_Sensor_Calibrate_method_MFA[] = {
    DEMO_FEATURE_ENTRY(_Demo_Sensor_Calibrate_method_Target),
    DEMO_FEATURE_ENTRY(_Demo_Sensor_Calibrate_method_Drift),
    DEMO_FEATURE_ENTRY(_Demo_Sensor_Calibrate_method_Where),
    DEMO_FEATURE_ENTRY(_Demo_Sensor_Calibrate_method_return_value)};
DEMO_METHOD(Demo_Sensor_Calibrate_method, "Calibrate", 0, UINT32);

DEMO_PROPERTY(Demo_Sensor_CountAll_method, return_value, CIMPLE_FLAG_OUT, UINT32, 0);
static const Meta_Feature* _Demo_Sensor_CountAll_method_MFA[] = {
    DEMO_FEATURE_ENTRY(_Demo_Sensor_CountAll_method_return_value)};
DEMO_METHOD(Demo_Sensor_CountAll_method, "CountAll", CIMPLE_FLAG_STATIC, UINT32);

static const Meta_Value_Scalar<boolean> _Demo_Sensor_Enabled_MV = {true};
DEMO_PROPERTY(Demo_Sensor, Modes, kRead, UINT16, -1);
DEMO_PROPERTY(Demo_Sensor, Sampled, kRead, DATETIME, 0);
DEMO_PROPERTY_VALUE(Demo_Sensor, Enabled, kRead, BOOLEAN, 0, &_Demo_Sensor_Enabled_MV);
DEMO_PROPERTY(Demo_Sensor, Health, kRead, UINT16, 0);
DEMO_REFERENCE(Demo_Sensor, Limits, CIMPLE_FLAG_EMBEDDED_INSTANCE, 0, Demo_Limits);
static const Meta_Feature* _Demo_Sensor_MFA[] = {
    DEMO_FEATURE_ENTRY(_Demo_Element_Id),
    DEMO_FEATURE_ENTRY(_Demo_Element_Label),
    DEMO_FEATURE_ENTRY(Demo_Element_Reset_method::static_meta_class),
    DEMO_FEATURE_ENTRY(_Demo_Sensor_Modes),
    DEMO_FEATURE_ENTRY(_Demo_Sensor_Sampled),
    DEMO_FEATURE_ENTRY(_Demo_Sensor_Enabled),
    DEMO_FEATURE_ENTRY(_Demo_Sensor_Health),
    DEMO_FEATURE_ENTRY(_Demo_Sensor_Limits),
    DEMO_FEATURE_ENTRY(Demo_Sensor_Calibrate_method::static_meta_class),
    DEMO_FEATURE_ENTRY(Demo_Sensor_CountAll_method::static_meta_class)};
static const Meta_Feature_Local _Demo_Sensor_locals[] = {{0}, {0}, {0}, {1}, {1}, {1}, {1}, {1}, {1}, {1}};
DEMO_CLASS(Demo_Sensor, CIMPLE_FLAG_CLASS, &Demo_Element::static_meta_class, 1);

DEMO_REFERENCE(Demo_SensorInRack, Rack, CIMPLE_FLAG_KEY, 0, Demo_Rack);
DEMO_REFERENCE(Demo_SensorInRack, Sensor, CIMPLE_FLAG_KEY, 0, Demo_Sensor);
DEMO_PROPERTY(Demo_SensorInRack, Slot, kRead, UINT16, 0);
static const Meta_Feature* _Demo_SensorInRack_MFA[] = {DEMO_FEATURE_ENTRY(_Demo_SensorInRack_Rack),
                                                       DEMO_FEATURE_ENTRY(_Demo_SensorInRack_Sensor),
                                                       DEMO_FEATURE_ENTRY(_Demo_SensorInRack_Slot)};
static const Meta_Feature_Local _Demo_SensorInRack_locals[] = {{1}, {1}, {1}};
DEMO_CLASS(Demo_SensorInRack, CIMPLE_FLAG_ASSOCIATION, nullptr, 2);

DEMO_REFERENCE(Demo_RackAboveRack, Upper, CIMPLE_FLAG_KEY, 0, Demo_Rack);
DEMO_REFERENCE(Demo_RackAboveRack, Lower, CIMPLE_FLAG_KEY, 0, Demo_Rack);
static const Meta_Feature* _Demo_RackAboveRack_MFA[] = {DEMO_FEATURE_ENTRY(_Demo_RackAboveRack_Upper),
                                                        DEMO_FEATURE_ENTRY(_Demo_RackAboveRack_Lower)};
static const Meta_Feature_Local _Demo_RackAboveRack_locals[] = {{1}, {1}};
DEMO_CLASS(Demo_RackAboveRack, CIMPLE_FLAG_ASSOCIATION, nullptr, 2);

DEMO_REFERENCE(Demo_Dependency, Antecedent, CIMPLE_FLAG_KEY, 0, Demo_Thing);
DEMO_REFERENCE(Demo_Dependency, Dependent, CIMPLE_FLAG_KEY, 0, Demo_Thing);
static const Meta_Feature* _Demo_Dependency_MFA[] = {DEMO_FEATURE_ENTRY(_Demo_Dependency_Antecedent),
                                                     DEMO_FEATURE_ENTRY(_Demo_Dependency_Dependent)};
static const Meta_Feature_Local _Demo_Dependency_locals[] = {{1}, {1}};
DEMO_CLASS(Demo_Dependency, CIMPLE_FLAG_ASSOCIATION, nullptr, 2);

DEMO_PROPERTY(Demo_SensorAlert, Text, kRead, STRING, 0);
static const Meta_Feature* _Demo_SensorAlert_MFA[] = {DEMO_FEATURE_ENTRY(_Demo_SensorAlert_Text)};
static const Meta_Feature_Local _Demo_SensorAlert_locals[] = {{1}};
DEMO_CLASS(Demo_SensorAlert, CIMPLE_FLAG_INDICATION, nullptr, 0);

static const Meta_Class* const demo_class_table[] = {
    &Demo_Thing::static_meta_class,
    &Demo_Limits::static_meta_class,
    &Demo_Rack::static_meta_class,
    &Demo_Element::static_meta_class,
    &Demo_Sensor::static_meta_class,
    &Demo_SensorInRack::static_meta_class,
    &Demo_RackAboveRack::static_meta_class,
    &Demo_Dependency::static_meta_class,
    &Demo_SensorAlert::static_meta_class,
    &Demo_Everything::static_meta_class,
};
const Meta_Repository demo_repository = {demo_class_table, CIMPLE_ARRAY_SIZE(demo_class_table)};

CIMPLE_NAMESPACE_END
