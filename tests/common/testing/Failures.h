// Makes what a load does with its instances fail on demand.
//
// A program that uses this is linked with the wrappers that tests/common/CMakeLists.txt names: calls from
// outside the library that defines the function come here first. While an object lives, the step fails for
// instances of one class once it has succeeded for the given number of them; one object per step at a time.
#ifndef TESTS_COMMON_TESTING_FAILURES_H
#define TESTS_COMMON_TESTING_FAILURES_H

// cimple::create: null, or std::bad_alloc.
class Create_Failures
{
  public:
    enum class Kind
    {
        ReturnsNull,
        Throws
    };
    explicit Create_Failures(const char* className, int successes = 0, Kind kind = Kind::ReturnsNull);
    ~Create_Failures();
    Create_Failures(const Create_Failures&) = delete;
    Create_Failures& operator=(const Create_Failures&) = delete;
};

// cimple::checkInstanceKeys: finds a key that is not populated.
class Key_Failures
{
  public:
    explicit Key_Failures(const char* className, int successes = 0);
    ~Key_Failures();
    Key_Failures(const Key_Failures&) = delete;
    Key_Failures& operator=(const Key_Failures&) = delete;
};

// Instance_Map_Base::_insert: finds an instance with equal keys in the map.
class Insert_Failures
{
  public:
    explicit Insert_Failures(const char* className, int successes = 0);
    ~Insert_Failures();
    Insert_Failures(const Insert_Failures&) = delete;
    Insert_Failures& operator=(const Insert_Failures&) = delete;
};

#endif
