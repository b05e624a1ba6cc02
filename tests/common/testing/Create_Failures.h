// Makes the creation of instances fail, for tests of loads.
//
// A program that uses this is linked with VRAX_WRAP_CREATE (CMakeLists.txt): calls of the toolkit's create()
// from outside the toolkit then come here first.
#ifndef TESTS_COMMON_TESTING_CREATE_FAILURES_H
#define TESTS_COMMON_TESTING_CREATE_FAILURES_H

// While the object lives, instances of one class cannot be created; one object at a time.
class Create_Failures
{
  public:
    enum class Kind
    {
        ReturnsNull,
        Throws // std::bad_alloc
    };
    // After `successes` instances of the class the next ones fail.
    explicit Create_Failures(const char* className, int successes = 0, Kind kind = Kind::ReturnsNull);
    ~Create_Failures();
    Create_Failures(const Create_Failures&) = delete;
    Create_Failures& operator=(const Create_Failures&) = delete;
};

#endif
